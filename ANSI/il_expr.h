// Expression nodes of the intermediate language: the tree form of run-time
// and dependent expressions.

#ifndef IL_EXPR_H
#define IL_EXPR_H

#include "basics.h"
#include "il_entities.h"
#include "il_types.h"

enum an_expr_kind : uint8_t {
  expr_error = 0,
  expr_operation = 1,
  expr_constant = 2,
  expr_variable = 3,
  expr_field = 4,
  expr_temp_init = 5, // a temporary
  expr_new_delete = 6,
  expr_lambda = 7,
  expr_throw = 8,
  expr_condition = 9, // a declaration in a condition
  expr_with_lifetime = 10,
  expr_typed_expr = 11,
  expr_sizeof_like = 12,
  expr_alignof_like = 13,
  expr_typeid_like = 14,
  expr_dependent_other = 15,
  expr_statement = 16, // a GNU statement expression
  expr_reuse_value = 17,
  expr_forward_params = 18, // the current parameters, in a wrapper routine
  expr_routine = 19,
  expr_vla_dealloc = 20,
  expr_type_only = 21,
  expr_dependent_op = 22,
  expr_param_ref = 23,
  expr_braced_list = 24,
  expr_with_list = 25,
  expr_call_like = 26
};
inline constexpr int num_expr_kinds = 27;

// Operators. The values are stored, and the table of il_operators.def and the
// translation to the intermediate file are indexed by them; numbers without a
// name are reserved.
enum an_expr_operator_kind : uint8_t {
  eok_address_of = 0,
  eok_indirect = 3,
  eok_ref_indirect = 4, // through a reference
  eok_cast = 5,
  eok_lvalue_cast = 6,
  eok_ref_cast = 7,
  eok_glvalue_cast = 8,
  eok_class_to_lvalue = 9,     // a class prvalue becomes an lvalue
  eok_derived_class_cast = 14, // down
  eok_base_class_cast = 15,    // up
  eok_from_bool = 16,
  eok_to_bool = 20,
  eok_array_to_pointer = 21,
  eok_dependent_dot = 22,
  eok_dependent_arrow = 23,
  eok_parens = 25,
  eok_negate = 26,
  eok_unary_plus = 27,
  eok_complement = 28,
  eok_not = 29,
  eok_conjugate = 32,
  eok_real_part = 33,
  eok_imag_part = 34,
  eok_post_incr = 35,
  eok_post_decr = 36,
  eok_pre_incr = 37,
  eok_pre_decr = 38,
  eok_add = 39,
  eok_subtract = 40,
  eok_multiply = 41,
  eok_divide = 42,
  eok_remainder = 43,
  // Products and quotients of imaginary values, whose result is real.
  eok_imag_multiply = 44,
  eok_imag_divide = 45,
  // A real and an imaginary value make a complex one.
  eok_real_plus_imag = 46,
  eok_real_minus_imag = 47,
  eok_imag_plus_real = 48,
  eok_imag_minus_real = 49,
  eok_pointer_add = 50,
  eok_pointer_subtract = 51,
  eok_pointer_difference = 52,
  eok_shift_left = 53,
  eok_shift_right = 54,
  eok_bit_and = 55,
  eok_bit_or = 56,
  eok_bit_xor = 57,
  eok_eq = 58,
  eok_ne = 59,
  eok_gt = 60,
  eok_lt = 61,
  eok_ge = 62,
  eok_le = 63,
  eok_gnu_min = 70,
  eok_gnu_max = 71,
  eok_assign = 72,
  eok_add_assign = 73,
  eok_subtract_assign = 74,
  eok_multiply_assign = 75,
  eok_divide_assign = 76,
  eok_remainder_assign = 77,
  eok_shift_left_assign = 78,
  eok_shift_right_assign = 79,
  eok_and_assign = 80,
  eok_or_assign = 81,
  eok_xor_assign = 82,
  eok_pointer_add_assign = 83,
  eok_pointer_subtract_assign = 84,
  eok_array_assign = 85, // block assignment of an array
  eok_land = 86,
  eok_lor = 87,
  eok_comma = 90,
  eok_subscript = 91,
  eok_dot_field = 93,
  eok_arrow_field = 94,
  eok_dot_ptr_to_member = 95,
  eok_arrow_ptr_to_member = 96,
  eok_dot_base_field = 99,
  eok_arrow_base_field = 100,
  eok_dependent_question = 101,
  eok_question = 102,
  eok_binary_question = 103, // a ?: b
  eok_call = 104,
  eok_dot_member_call = 105,
  eok_arrow_member_call = 106,
  eok_dot_ptr_to_member_call = 107,
  eok_arrow_ptr_to_member_call = 108,
  eok_dependent_call = 115,
  eok_param_address = 116,
  eok_last = 117
};
inline constexpr int num_expr_operator_kinds = eok_last + 1;

// How an operation is written.
enum an_operator_form : uint8_t {
  of_none, // a reserved operator
  of_prefix,
  of_postfix,
  of_infix,
  of_assign, // infix, grouped from the right
  of_cast,
  of_transparent, // shows as its operand
  of_parens,
  of_select, // an object and a member
  of_subscript,
  of_question,
  of_binary_question,
  of_call,
  of_member_call // the object, the function, the arguments
};

// The levels of the grammar, the loosest first (C99 6.5, C++11 clause 5).
enum an_operator_precedence : uint8_t {
  prec_none,
  prec_comma,
  prec_assignment,
  prec_question,
  prec_logical_or,
  prec_logical_and,
  prec_bit_or,
  prec_bit_xor,
  prec_bit_and,
  prec_equality,
  prec_relational,
  prec_shift,
  prec_additive,
  prec_multiplicative,
  prec_ptr_to_member,
  prec_unary,
  prec_postfix,
  prec_primary
};

// Bits that say which operands an operator uses as lvalues.
enum an_operator_lvalue_use : uint8_t {
  lvalue_none = 0,
  lvalue_op1 = 2,
  lvalue_op2 = 16,
  lvalue_both = lvalue_op1 | lvalue_op2
};

struct an_operator_description {
  const char* text; // as the source language spells it; empty for none
  uint8_t lvalue_uses;
  an_operator_form form;
  an_operator_precedence precedence;
};

// A reserved operator has no text and the form of_none.
const an_operator_description& description_of_operator(an_expr_operator_kind op);

struct a_new_delete_supplement {
  // The low bits of the flag byte start as 1.
  uint8_t is_new : 1;
  uint8_t is_array : 1;
  uint8_t is_global : 1; // written `::new` or `::delete`
  uint8_t has_initializer : 1;
  uint8_t has_placement : 1;
  uint8_t has_size_param : 1;
  uint8_t unused_flags : 2;
  a_type* type;
  a_routine* routine; // the allocation or deallocation function
  an_expr_node* arg_list;
  a_dynamic_init* dynamic_init;
  a_dynamic_init* delete_dynamic_init;
  an_expr_node* placement_expr;
};

struct a_throw_supplement {
  a_type* type;
  a_dynamic_init* dynamic_init;
  a_routine* destructor;
};

struct a_condition_supplement {
  a_scope* scope;
  a_dynamic_init* dynamic_init;
  an_expr_node* value_expr;
};

struct an_expr_node {
  a_type* type;
  a_type* orig_type;  // used by a few lowered forms
  an_expr_node* next; // next sibling in an operand list
  an_expr_kind kind;
  uint16_t is_lvalue : 1;
  uint16_t is_xvalue : 1;
  uint16_t result_not_used : 1;
  uint16_t is_volatile_access : 1;
  uint16_t from_extension : 1; // written under __extension__
  uint16_t compiler_generated : 1;
  uint16_t is_type_dependent : 1;
  uint16_t is_value_dependent : 1;
  uint16_t is_pack_expansion : 1;
  uint16_t virtual_function_by_name : 1;
  uint16_t parenthesized : 1;
  uint16_t kept_in_overwrite : 1; // belongs to the place in the tree, not to the value
  uint16_t is_discarded_call : 1;
  uint16_t contains_error : 1;
  uint16_t unused_flags : 2;
  a_source_position position;
  a_source_range range;
  union {
    struct {
      an_expr_operator_kind op;
      a_type_kind operation_kind;    // the type kind in which it is done
      uint16_t lvalue_semantics : 1; // the result is a glvalue
      uint16_t is_implicit : 1;      // added by the analysis, not written
      uint16_t checked_cast : 1;
      uint16_t is_reinterpret_cast : 1;
      uint16_t is_static_cast : 1;
      uint16_t is_const_cast : 1;
      uint16_t is_functional_cast : 1;
      uint16_t is_virtual_call : 1;
      uint16_t found_by_adl : 1;
      uint16_t is_implicit_this : 1;
      uint16_t returns_class_by_cctor : 1;
      uint16_t contains_comma : 1;
      uint16_t unevaluated_branch : 1;
      uint16_t operands_reversed : 1; // integer + pointer: the pointer is the second operand
      uint16_t unused_op_flags : 2;
      an_expr_node* operands; // the first; further ones through `next`
    } operation;
    struct {
      a_constant* ptr;
      a_name_reference* name_reference;
    } constant;
    struct {
      a_variable* ptr;
      a_name_reference* name_reference;
    } variable; // expr_variable, expr_vla_dealloc
    struct {
      a_field* ptr;
      a_name_reference* name_reference;
    } field;
    struct {
      a_routine* ptr;
      a_name_reference* name_reference;
    } routine;
    struct {
      a_type* ptr; // null: the default case of a selection
      a_name_reference* name_reference;
    } type_only;
    a_dynamic_init* dynamic_init; // expr_temp_init, expr_reuse_value
    a_new_delete_supplement* new_delete;
    struct {
      a_lambda* ptr;
      a_dynamic_init* dynamic_init;
    } lambda;
    a_throw_supplement* throw_info; // null: a rethrow
    a_condition_supplement* condition;
    struct {
      an_expr_node* expr;
      an_object_lifetime* object_lifetime;
    } with_lifetime;
    struct {
      a_type* type;
      an_expr_node* expr;
    } typed_expr;
    struct {
      uint8_t is_type;
      uint8_t skip; // expr_alignof_like: the operand is not traversed
      union {
        a_type* type;
        an_expr_node* expr;
      } operand;
    } sizeof_like; // expr_sizeof_like, expr_alignof_like, expr_typeid_like
    a_statement* statement;
    struct {
      an_expr_operator_kind op;
      an_expr_node* operands;
    } dependent_op;
    struct {
      uint32_t number; // 0: `this`
      uint32_t level;
    } param_ref;
    an_expr_node* braced_list;
    struct {
      an_expr_node* list;
      an_expr_node* expr;
    } with_list;
    struct {
      an_expr_node* list;
      uint8_t flag;
    } call_like;
  } variant;
  an_expr_rescan_info_entry* rescan_info; // null in stored IL
  uint8_t has_rescan_position : 1;
  uint8_t is_full_expression : 1;
};
static_assert(sizeof(an_expr_node::variant) == 16);
static_assert(num_expr_kinds == expr_call_like + 1 && num_expr_operator_kinds == 118);

// ---- Allocation and initial states ----

an_expr_node* alloc_expr_node(an_expr_kind kind);
// Gives a record its whole initial state, as the error-free empty form of
// `kind`.
void clear_expr_node(an_expr_node* node, an_expr_kind kind);
void set_expr_node_kind(an_expr_node* node, an_expr_kind kind);
a_new_delete_supplement* alloc_new_delete_supplement();
a_throw_supplement* alloc_throw_supplement();
a_condition_supplement* alloc_condition_supplement();

// A node of kind expr_error with the error type, in the current region or
// (fs_) in the file-scope region.
an_expr_node* error_node();
an_expr_node* fs_error_node();

// ---- Nodes of operations ----

// An operation on a list of operands that the caller has chained.
an_expr_node* make_operator_node(an_expr_operator_kind op, a_type* type,
                                 an_expr_node* first_operand);
// The same, for a result that is an lvalue.
an_expr_node* make_lvalue_operator_node(an_expr_operator_kind op, a_type* type,
                                        an_expr_node* first_operand);
// Turns a node, which keeps its positions and its place in a list, into an
// operation; the operation kind is computed from the operands.
void set_node_operator(an_expr_node* node, an_expr_operator_kind op, a_type* type, bool is_lvalue,
                       an_expr_node* first_operand);
an_expr_node* make_comma_node(an_expr_node* left, an_expr_node* right);
// The right operand alone when the left is null.
an_expr_node* make_comma_node_if_necessary(an_expr_node* left, an_expr_node* right);
// What the kinds of complex and imaginary types become by lowering: a struct and
// a floating type.
a_type_kind lowered_nonreal_kind(a_type_kind kind);
// The type kind of an operation, stored so that nobody computes it again.
a_type_kind operation_type_kind(an_expr_operator_kind op, a_type* result_type,
                                an_expr_node* first_operand);
a_type_kind binary_operation_type_kind(an_expr_operator_kind op, a_type* type1, a_type* type2);
// The type in which `a op= b` computes (C99 6.5.16.2).
a_type* compound_assignment_operation_type(an_expr_operator_kind op, an_expr_node* left,
                                           an_expr_node* right);

// ---- Nodes of values ----

// A node whose constant is a lasting, possibly shared record of the value.
an_expr_node* alloc_node_for_constant(const a_constant* constant);
// A node for a constant that is already a lasting record.
an_expr_node* alloc_node_for_allocated_constant(a_constant* constant);
an_expr_node* node_for_integer_constant(int64_t value, an_integer_kind int_kind);
an_expr_node* node_for_unsigned_constant(uint64_t value, an_integer_kind int_kind);
an_expr_node* var_lvalue_expr(a_variable* variable);
an_expr_node* var_rvalue_expr(a_variable* variable);
an_expr_node* var_addr_expr(a_variable* variable);
an_expr_node* function_lvalue_expr(a_routine* routine);
an_expr_node* function_rvalue_expr(a_routine* routine);
an_expr_node* function_addr_expr(a_routine* routine);
an_expr_node* type_only_expr(a_type* type);
// The address of a glvalue. An indirection that was not written, and any while
// lowering, is cancelled rather than addressed; otherwise the entity under an
// lvalue counts as address-taken.
an_expr_node* add_address_of_to_node(an_expr_node* node);
an_expr_node* add_indirection_to_node(an_expr_node* node);
// The reference that binds to a glvalue.
an_expr_node* add_reference_to_to_node(an_expr_node* node);
an_expr_node* add_ref_indirection_to_node(an_expr_node* node);
an_expr_node* add_cast(an_expr_node* node, a_type* type);
an_expr_node* add_cast_if_necessary(an_expr_node* node, a_type* type);
an_expr_node* add_cast_to_glvalue(an_expr_node* node, a_type* type);
// Selections of a field from an object (an lvalue or a value of class type).
an_expr_node* field_lvalue_selection_expr(an_expr_node* object, a_field* field);
an_expr_node* field_rvalue_selection_expr(an_expr_node* object, a_field* field);
an_expr_node* base_class_selection_expr(an_expr_node* object, a_base_class* base_class);
an_expr_node* make_assignment_expr(an_expr_node* left, an_expr_operator_kind op,
                                   an_expr_node* right);
// Marks the entity that a glvalue names as having its address taken.
void mark_address_taken_in_lvalue(an_expr_node* node);

// ---- Changes ----

// Replaces a node in place, without touching its parent: `target` keeps its
// place in its list and what its user said about its result.
void overwrite_node(an_expr_node* target, an_expr_node* source);
void copy_node_value_category(const an_expr_node* source, an_expr_node* target);
// Says that nobody uses the value, also to the nodes that pass it on.
void set_expr_result_not_used(an_expr_node* node);

// ---- Copies and comparison ----

enum a_copy_expr_flag : unsigned {
  cef_none = 0,
  cef_copy_dynamic_inits = 2, // temporaries get dynamic initialisations of their own
  cef_keep_rescan_info = 4,
  cef_copy_constants = 8 // constants are copied in depth into the current region
};
an_expr_node* copy_node(const an_expr_node* node); // the node alone; operands stay shared
an_expr_node* copy_expr_tree(const an_expr_node* node, unsigned flags);
an_expr_node* copy_list_of_expr_trees(const an_expr_node* list, unsigned flags);
// Whether two trees are the same expression.
bool compare_expressions(const an_expr_node* a, const an_expr_node* b, unsigned flags);

// ---- Predicates ----

inline bool is_operation_node(const an_expr_node* node, an_expr_operator_kind op) {
  return node->kind == expr_operation && node->variant.operation.op == op;
}
bool operator_takes_lvalue_op1(an_expr_operator_kind op);
bool operator_takes_lvalue_op2(an_expr_operator_kind op);
bool is_compound_assignment_operator(an_expr_operator_kind op);
bool is_assignment_operator(an_expr_operator_kind op); // plain or compound
bool is_increment_operator(an_expr_operator_kind op);  // ++ and --, either side
bool is_relational_operator(an_expr_operator_kind op);
bool is_call_operator(an_expr_operator_kind op);
bool is_operator_returning_bool(an_expr_operator_kind op);
bool is_cast_operation_node(const an_expr_node* node);
bool is_error_node(const an_expr_node* node);
// Whether evaluation does more than yield a value: assignments, calls,
// volatile reads, throws, initialisations that do.
bool node_has_side_effects(an_expr_node* node);
// Whether two evaluations yield the same value whatever runs between them.
bool is_invariant_expr(an_expr_node* node);
bool expr_might_throw(an_expr_node* node);
bool expr_contains_error(an_expr_node* node);

// ---- Traversal ----

// The state of one walk over a tree. A callback set to null is not called.
// The walk visits a node before its operands; it keeps its own stack, so that
// the depth of a tree is bounded by memory alone.
struct an_expr_or_stmt_traversal_block {
  // Called with each entry before what it holds.
  void (*process_expr)(an_expr_node* node, an_expr_or_stmt_traversal_block* block);
  void (*process_statement)(a_statement* statement, an_expr_or_stmt_traversal_block* block);
  void (*process_constant)(a_constant* constant, an_expr_or_stmt_traversal_block* block);
  void (*process_dynamic_init)(a_dynamic_init* init, an_expr_or_stmt_traversal_block* block);
  // Called with each expression after its operands.
  void (*process_expr_after)(an_expr_node* node, an_expr_or_stmt_traversal_block* block);
  void* data;               // the caller's
  bool found;               // the caller's answer
  bool terminate;           // set by a callback: the walk ends at once
  bool suppress_subtree;    // set by a callback: what the entry holds is passed over
  bool follow_source_exprs; // the backing expressions of constants are walked too
  bool skip_unevaluated;    // operands of sizeof and its like are passed over
};

void clear_expr_or_stmt_traversal_block(an_expr_or_stmt_traversal_block* block);
void traverse_expr(an_expr_node* node, an_expr_or_stmt_traversal_block* block);
void traverse_expr_list(an_expr_node* list, an_expr_or_stmt_traversal_block* block);
void traverse_constant(a_constant* constant, an_expr_or_stmt_traversal_block* block);
void traverse_constant_list(a_constant* list, an_expr_or_stmt_traversal_block* block);
void traverse_dynamic_init(a_dynamic_init* init, an_expr_or_stmt_traversal_block* block);
void traverse_statement(a_statement* statement, an_expr_or_stmt_traversal_block* block);
void traverse_statement_list(a_statement* list, an_expr_or_stmt_traversal_block* block);

#endif
