// Statements of the intermediate language, the initialisations that run, and
// the lifetimes of objects.

#ifndef IL_STATEMENTS_H
#define IL_STATEMENTS_H

#include "basics.h"
#include "il_entities.h"
#include "il_expr.h"

enum a_statement_kind : uint8_t {
  stmk_expr = 0,
  stmk_if = 1,
  stmk_while = 2,
  stmk_goto = 3,
  stmk_label = 4,
  stmk_return = 5,
  stmk_block = 6,
  stmk_do = 7,
  stmk_for = 8,
  stmk_range_for = 9,
  stmk_case = 10,
  stmk_switch = 11,
  stmk_init = 12, // run-time initialisation of a local variable
  stmk_asm = 13,
  stmk_try = 14,
  stmk_decl = 15, // declarations kept in place
  stmk_set_vla_size = 16,
  stmk_vla_decl = 17,
  stmk_assigned_goto = 18,
  stmk_null = 19,
  stmk_stmt_expr_value = 20 // the value of a statement expression
};
inline constexpr int num_statement_kinds = 21;
static_assert(num_statement_kinds == stmk_stmt_expr_value + 1);

enum a_dynamic_init_kind : uint8_t {
  dik_none = 0, // only a destruction is recorded
  dik_zero = 1,
  dik_constant = 2,
  dik_expr = 3,
  dik_class_expr = 4, // a value of class type constructed in place
  dik_constructor = 5,
  dik_nonconstant_aggregate = 6,
  dik_bitwise_copy = 7
};

enum an_object_lifetime_kind : uint8_t {
  olk_none = 0, // placeholder
  olk_block = 1,
  olk_full_expr = 2,
  olk_function = 3,
  olk_other = 4,
  olk_conditional = 5
};

struct a_block_supplement {
  a_source_position end_position;
  a_scope* scope; // null until something is declared
  an_object_lifetime* object_lifetime;
  uint8_t generated_start : 1;
  uint8_t is_function_body : 1;
  uint8_t holds_single_statement : 1; // generated to hold a single statement
};

struct a_for_loop_supplement {
  a_statement* init_statement;
  an_expr_node* increment_expr;
  a_scope* scope;
  // GNU mode: what runs before the increment and before the condition.
  a_statement* pre_increment_statement;
  a_statement* pre_condition_statement;
};

struct a_range_based_for_supplement {
  a_variable* range_variable;
  a_variable* begin_variable;
  a_scope* range_scope;
  a_scope* iterator_scope;
  a_scope* body_scope;
  a_variable* end_variable;
  a_variable* next_variable; // the declared one
  an_expr_node* condition_expr;
  an_expr_node* increment_expr;
};

struct a_switch_stmt_supplement {
  a_switch_case_entry* first_case; // all entries in source order
  a_switch_case_entry* default_case;
  a_switch_case_entry* sorted_cases; // by value
};

struct a_switch_case_entry {
  a_statement* statement;
  a_constant* case_value;     // null for `default`
  a_constant* case_range_end; // null but for a GNU case range
  a_switch_case_entry* next_in_source_order;
  a_switch_case_entry* next_sorted;
  a_source_position position;
  a_source_range value_range;
  uint8_t is_unsigned : 1;
  uint8_t is_dependent : 1;
  uint16_t reserved_word; // a_token_kind of the word that was written
  uint32_t file_label;    // set while the intermediate file is written
};

struct a_try_supplement {
  a_scope* object_lifetime_scope;
  a_statement* try_block;
  a_handler* handlers;
  an_object_lifetime* lifetime;
};

struct a_handler {
  a_handler* next;
  a_source_position position;
  a_variable* parameter; // null for `...`
  a_statement* body;
  a_dynamic_init* parameter_init;
};

struct a_vla_dimension {
  a_vla_dimension* next;
  a_type* array_type;
  an_expr_node* size_expr;
  a_variable* size_variable;
  a_boolean is_param;
  a_source_position position;
  a_vla_dimension* canonical; // the record that this one duplicates, or null
};

struct a_statement {
  a_source_position position;
  a_source_position end_position;
  a_statement* next;   // in the enclosing block
  a_statement* parent; // the enclosing statement
  an_attribute* attributes;
  a_statement_kind kind;
  uint8_t is_generated : 1;
  uint8_t is_lowering_boilerplate : 1;
  uint8_t from_extension : 1; // written under __extension__
  uint8_t is_unreachable : 1; // control cannot reach it
  an_expr_node* expr;
  union {
    struct {
      a_statement* then_statement;
      a_statement* else_statement; // null when no `else` was written
      a_source_position else_position;
    } if_stmt;
    struct {
      a_statement* body;
      union {
        a_for_loop_supplement* for_supplement;
        a_range_based_for_supplement* range_for_supplement;
        a_switch_case_entry* switch_case_entry;
        a_switch_stmt_supplement* switch_supplement;
      } extra;
    } loop; // stmk_while, do, for, range_for, case, switch
    struct {
      a_label* ptr;
      a_name_reference* name_reference;
    } label;                     // stmk_goto, stmk_label
    a_dynamic_init* return_init; // stmk_return, stmk_stmt_expr_value
    struct {
      a_statement* first_statement;
      a_block_supplement* block_supplement;
    } block;
    a_dynamic_init* dynamic_init; // stmk_init
    an_asm_entry* asm_entry;
    a_try_supplement* try_supplement;
    an_il_entity_list_entry* declarations;
    a_vla_dimension* vla_dimension;
    struct {
      uint8_t is_typedef;
      a_variable* variable; // of the variably modified type
    } vla_decl;
  } variant;
  uint8_t has_associated_pragma : 1;
  a_statement* pre_statement; // GNU mode: runs before the condition of a loop
};

inline bool is_loop_statement(const a_statement* statement) {
  return statement->kind == stmk_while || statement->kind == stmk_do || statement->kind == stmk_for;
}
static_assert(sizeof(a_statement::variant) == 3 * sizeof(void*));

struct a_dynamic_init {
  a_dynamic_init* next; // in `dynamic_inits` of a scope
  a_variable* variable; // null for a temporary
  a_routine* destructor;
  an_object_lifetime* lifetime;           // in whose destruction list it is
  a_dynamic_init* next_destruction;       // in that list
  an_object_lifetime* following_lifetime; // the lifetime in force when it was made
  a_dynamic_init_kind kind;
  uint32_t is_static_temporary : 1;
  uint32_t is_temporary : 1;
  uint32_t is_function_static : 1;
  uint32_t is_reference_bound : 1;
  uint32_t is_explicit_cast : 1;
  uint32_t is_result_of_new : 1;
  uint32_t is_partial_aggregate_cleanup : 1;
  uint32_t destroys_on_exception_only : 1;
  uint32_t is_generated : 1;
  uint32_t unordered : 1;
  uint32_t cleanup_by_nested_lifetime : 1;
  uint32_t contains_comma : 1;
  uint32_t is_array_element_init : 1;
  uint32_t is_compound_literal : 1;
  uint32_t has_been_lowered : 1;
  uint32_t contains_nonconstant : 1;
  uint32_t is_default_member_init : 1;
  uint32_t is_copy_elided : 1;
  uint32_t is_list_init : 1;
  uint32_t is_return_value : 1;
  uint32_t unused_flags : 4;
  union {
    a_constant* constant; // dik_constant, dik_nonconstant_aggregate
    an_expr_node* expr;   // dik_expr, dik_class_expr, dik_bitwise_copy (may be null)
    struct {
      a_routine* routine;
      an_expr_node* args;
      uint8_t value_init : 1;
      uint8_t is_copy : 1;
      uint8_t is_elidable : 1;
      uint8_t is_inherited : 1;
    } constructor;
  } variant;
  an_object_lifetime* source_lifetime; // noted when a nested lifetime cleans up
  a_variable* guard;
  a_dynamic_init* next_aggregate_part;
  a_dynamic_init* partial_cleanup_next;
  an_expr_node* array_count_expr;
  a_variable* promoted_variable;
};

// The initialisation of a local static variable, which may lie in the
// function's region while the variable lies at file scope.
struct a_local_static_variable_init {
  a_local_static_variable_init* next;
  a_variable* variable;
  an_init_kind init_kind; // as a variable's
  union {
    a_constant* constant;
    a_dynamic_init* dynamic;
    void* generic;
  } initializer;
  an_object_lifetime* lifetime;
};

struct an_object_lifetime {
  an_object_lifetime_kind kind;
  uint8_t has_full_expr_child : 1;
  uint8_t useful_inner_function_lifetime : 1;
  uint8_t is_linked : 1;       // among its parent's children
  an_il_entry_kind assoc_kind; // of `assoc`: 13, 19, 20, 23, 30 or 31
  union {
    void* entry; // whichever it is
    an_expr_node* expr;
    a_try_supplement* try_supplement;
    a_block_supplement* block;
    a_scope* scope;
    a_dynamic_init* dynamic_init;
    a_local_static_variable_init* local_static_init;
  } assoc;
  a_dynamic_init* destructions; // newest first
  an_object_lifetime* parent;
  // The head of the parent's list when this lifetime began: what must be
  // destroyed on leaving the parent from here.
  a_dynamic_init* first_destruction_at_entry;
  an_object_lifetime* first_child;
  an_object_lifetime* next_sibling;
};

// The top of the tree of lifetimes during analysis.
extern an_object_lifetime* curr_object_lifetime;

// ---- Statements ----

a_statement* alloc_statement(a_statement_kind kind);
void set_statement_kind(a_statement* statement, a_statement_kind kind);
// The statements that a statement holds directly (bodies and branches) have
// it as their parent afterwards.
void set_parent_of_substatements(a_statement* statement);
// Copies over a statement that keeps its place in its block. The parts are
// shared with the source and have the copy as their parent.
void copy_statement(const a_statement* source, a_statement* target);
a_statement* alloc_expr_statement(an_expr_node* expr);
a_statement* make_assignment_statement(an_expr_node* left, an_expr_node* right);
a_statement* make_array_assignment_statement(an_expr_node* left, an_expr_node* right);
// Puts a block round a statement, in its place; the statement itself becomes
// a copy inside, which is returned.
a_statement* change_statement_into_block(a_statement* statement);
a_switch_case_entry* alloc_switch_case_entry();
a_switch_case_entry* copy_switch_case_entry(const a_switch_case_entry* entry);
a_handler* alloc_handler();
// Ties a handler's block and its scope to one another.
void set_block_scope_handler(a_statement* block, a_scope* scope);
a_vla_dimension* alloc_vla_dimension(a_type* array_type);
a_vla_dimension* find_vla_dimension(a_vla_dimension* dimension);

// ---- Dynamic initialisations ----

a_dynamic_init* alloc_dynamic_init(a_dynamic_init_kind kind);
void set_dynamic_init_kind(a_dynamic_init* init, a_dynamic_init_kind kind);
void set_dynamic_init_constant(a_dynamic_init* init, a_constant* constant);
// Appends to the list of a file or namespace scope; -1 takes the scope of the
// variable.
void add_to_dynamic_inits_list(a_dynamic_init* init, int depth);
a_dynamic_init* copy_dynamic_init(const a_dynamic_init* init);
a_dynamic_init* make_error_constant_dynamic_init();
// The constant that the initialisation comes down to, or null.
a_constant* constant_value_of_dynamic_init(const a_dynamic_init* init);
// Passes from a constructor call that was evaluated to its value.
const a_dynamic_init* skip_constexpr_ctor_eval(const a_dynamic_init* init);
bool is_generated_dynamic_init(const a_dynamic_init* init);
bool is_error_dynamic_init(const a_dynamic_init* init);
bool dynamic_init_has_side_effects(a_dynamic_init* init);
bool dynamic_init_might_throw(a_dynamic_init* init);
// The record of the initialisation of a static variable of a function: a
// constant or a dynamic initialisation, as `init_kind` says. A null routine is
// the innermost one that is open. The variable is marked as having a record.
a_local_static_variable_init* make_local_static_variable_init(a_variable* variable,
                                                              const a_routine* routine,
                                                              an_init_kind init_kind,
                                                              a_constant* constant,
                                                              a_dynamic_init* dynamic_init);
a_local_static_variable_init* alloc_local_static_variable_init();
// The record of a local static in a scope or one of its parents, or null.
a_local_static_variable_init* find_local_static_variable_init(a_variable* variable, a_scope* scope);
// How a variable is initialised: `init_kind` and the pointer it governs, with
// the record of a local static followed. A null scope means the variable's.
void get_variable_initializer(a_variable* variable, a_scope* scope, an_init_kind* init_kind,
                              void** initializer);
// The constant initialiser of a variable, or null.
a_constant* initializer_constant(a_variable* variable, a_scope* scope);

// ---- Lifetimes ----

an_object_lifetime* alloc_object_lifetime(an_object_lifetime_kind kind);
an_object_lifetime* push_object_lifetime(an_il_entry_kind kind, void* entry,
                                         an_object_lifetime_kind lifetime_kind);
an_object_lifetime* push_or_repush_object_lifetime(an_il_entry_kind kind, void* entry,
                                                   an_object_lifetime* existing,
                                                   an_object_lifetime_kind lifetime_kind,
                                                   bool repush);
// Makes the parent current; a lifetime without use is taken out of the tree.
// Returns whether it stayed. With `keep` set it always stays.
bool pop_object_lifetime_full(bool keep);
bool pop_object_lifetime();
void bind_object_lifetime(an_object_lifetime* lifetime, an_il_entry_kind kind, void* entry);
void unbind_object_lifetime(an_object_lifetime* lifetime);
// Puts the destruction of an object on the list of the lifetime that ends it:
// the current one, or the innermost function's, or the nearest block's.
void record_end_of_lifetime_destruction(a_dynamic_init* init, bool to_function_lifetime,
                                        bool to_block);
void record_partial_aggregate_cleanup_destruction(a_dynamic_init* part, a_dynamic_init* whole);
void add_to_end_of_destructions_list(a_dynamic_init* init, an_object_lifetime* lifetime);
void add_to_destructions_list_following(a_dynamic_init* init, a_dynamic_init* position);
void remove_from_destruction_list(a_dynamic_init* init);
// Moves destructions and children of a lifetime to the current one, which
// encloses it.
void promote_lifetime_contents_to_curr_object_lifetime(an_object_lifetime* lifetime);
an_object_lifetime* innermost_block_object_lifetime();
bool is_useless_object_lifetime(const an_object_lifetime* lifetime);
void mark_object_lifetime_as_useless(an_object_lifetime* lifetime);
void detach_from_object_lifetime_tree(an_object_lifetime* lifetime);
void free_object_lifetime(an_object_lifetime* lifetime);
an_expr_node* add_object_lifetime_to_expr(an_expr_node* expr, an_object_lifetime* lifetime);

#endif
