// The records of expression analysis: the operand, the context stack, and the
// control block of a rescan.

#ifndef EXPR_OPERAND_H
#define EXPR_OPERAND_H

#include "basics.h"
#include "il_constants.h"
#include "il_entities.h"
#include "il_expr.h"

enum an_operand_kind : uint8_t {
  ok_error = 0,
  ok_expression = 1,
  ok_constant = 2,
  ok_indefinite_function = 3, // an overload set or function template
  ok_sym_for_member = 4,      // a nonstatic member named without an object
  ok_braced_list = 5,         // not yet given a type
  ok_undefined_symbol = 6     // kept for the one token after it
};

enum an_operand_state : uint8_t {
  os_none = 0,
  os_lhsref_glvalue = 1,
  os_glvalue = 2, // an lvalue or xvalue; the node's flags tell which
  os_prvalue = 3,
  os_function_designator = 4
};

// Constant-expression kinds that an operand rules out; bits of `rule_out`.
inline constexpr uint8_t rule_out_integral_constant = 2;
inline constexpr uint8_t rule_out_constant = 4;

// The flags cleared when an operand becomes an error: bits 1, 3, 4, 7, 8, 10.
inline constexpr uint32_t operand_flags_cleared_on_error = 0x59a;

struct an_operand_flags {
  uint32_t bound_function : 1;         // a member function selected through an object
  uint32_t selector_is_pointer : 1;    // chooses the arrow form of a selection
  uint32_t virtual_call_candidate : 1; // named without qualification
  uint32_t names_variable : 1;         // a plain id-expression; decltype reads it
  uint32_t id_detail : 1;
  uint32_t qualified_name : 1;
  uint32_t locator_detail : 1;
  uint32_t has_operator_position : 1;
  uint32_t kept_detail : 1;
  uint32_t has_template_args : 1;
  uint32_t string_literal : 1;
  uint32_t unused_11 : 1;
  uint32_t id_detail_2 : 1;
  uint32_t unbound_pm_call : 1;
  uint32_t parenthesized : 1;
  uint32_t has_name_reference : 1;
  uint32_t class_instantiated_during_scan : 1;
  uint32_t unused : 15;
};
static_assert(sizeof(an_operand_flags) == 4);

// One reference to a symbol, held until it is known what the reference does.
struct a_ref_entry {
  uint32_t kind; // a_symbol_reference_kind
  a_boolean recorded;
  a_symbol* symbol;
  a_source_correspondence* source_corresp; // of the symbol's entity, or null
  a_source_position position;
  a_ref_entry* next; // of the whole current expression; also the free list
  a_ref_entry* next_for_operand;
};

// A plain value, copied whole when it is saved; never shared.
struct an_operand {
  a_type* type;
  an_operand_kind kind;
  an_operand_state state;
  an_operand_flags flags;
  a_name_reference name_reference; // valid with has_name_reference
  uint8_t rule_out;
  a_source_position position;
  a_source_position end_position;
  a_ref_entry* ref_entries; // chained through next_for_operand
  a_ref_entry** ref_entries_tail_link;
  a_template_arg* template_args;
  a_source_position name_position;     // ok_indefinite_function, ok_undefined_symbol
  a_source_position operator_position; // valid with has_operator_position
  an_expr_rescan_info_entry* rescan_info;
  a_symbol* symbol; // kinds 3, 4 and 6
  union {
    an_expr_node* expr;
    an_init_component* init_component;
    a_constant constant; // in place, so that a constant needs no allocation
  } variant;
};

// What is kept of an operand for a rescan; hangs from its expression node.
struct an_expr_rescan_info_entry {
  an_operand operand;
  uint8_t expr_stack_kind; // in force when it was made; 4 by default
  a_source_position operator_position;
  uint32_t operator_token;
  a_source_position second_position; // of the closing token
  a_type* type;
};

// An argument of a call, recycled on a free list.
struct an_arg_operand {
  an_arg_operand* next;
  an_operand operand;
  a_conv_descr* conversion;
  a_source_position full_expr_position;
  uint8_t is_pack_expansion : 1;
  uint8_t is_permanent : 1;
};

enum an_init_component_kind : uint16_t {
  ick_expression = 0,
  ick_braced_list = 1,
  ick_designator = 2,
  ick_continuation = 3 // the rest of a list that is read on demand
};

// A piece of an initialiser or an argument of a call, as it was written;
// recycled on a free list.
struct an_init_component {
  an_init_component* next;
  an_init_component_kind kind;
  uint16_t parenthesized : 1;
  uint16_t pack_expansion : 1;
  union {
    an_operand operand;
    struct {
      an_init_component* first;
      a_source_position start_position;
      a_source_position end_position;
    } braced;
    struct {
      a_symbol_header* field_name; // null for an index
      a_field* field;              // set when the walk knows the field by itself
      a_constant* index;
      a_constant* range_end; // GNU `[a ... b]`
      a_source_position position;
    } designator;
    struct {
      an_init_component* list; // the list that goes on; its tokens are the next to be read
      bool is_behind_element;  // the comma behind the last element isn't read yet
    } continuation;
  } variant;
};

struct an_initializer_cache {
  an_init_component* first;
  an_init_component* last;
};

// A kind below ek_normal is a constant-expression kind.
enum an_expression_kind : uint8_t {
  ek_pp = 0,
  ek_integral_constant = 1,
  ek_template_arg = 2,
  ek_strict_constant = 3,
  ek_normal = 4,
  ek_unevaluated = 5
};

struct an_expr_stack_flags {
  uint32_t value_is_evaluated : 1;
  uint32_t references_count : 1;
  uint32_t unevaluated_operand : 1;
  uint32_t member_without_object_seen : 1;
  uint32_t unused_4 : 1;
  uint32_t in_decltype_or_typeof : 1;
  uint32_t in_default_argument : 1;
  uint32_t in_template_argument_list : 1;
  uint32_t const_variables_count : 1;
  uint32_t statement_value_wanted : 1;
  uint32_t constant_context : 1;
  uint32_t branch_context : 1; // the right side of a logical or conditional operator
  uint32_t keep_side_effects : 1;
  uint32_t sfinae_context : 1;
  uint32_t suppress_errors : 1;
  uint32_t error_suppressed : 1;
  uint32_t keep_rescan_info : 1;
  uint32_t carried_17 : 1; // passes from entry to entry with the full context
  uint32_t transfer_to_nested_full_expression : 1;
  uint32_t nonconstant_seen : 1;
  uint32_t strict_constant : 1;
  uint32_t constexpr_interpretation_allowed : 1;
  uint32_t constexpr_interpretation_refused : 1;
  uint32_t decltype_top_level : 1;
  uint32_t gcc_equality_operands : 1;
  uint32_t unused_25 : 1;
  uint32_t check_no_effect_deeply : 1;
  uint32_t unused : 5;
};
static_assert(sizeof(an_expr_stack_flags) == 4);

// One per expression context, on the machine stack.
struct an_expr_stack_entry {
  an_expr_stack_entry* previous;
  a_ref_entry* saved_ref_entries; // curr_expr_ref_entries at entry
  an_expression_kind kind;
  an_expr_stack_flags flags;
  a_dynamic_init_dtor_fixup* dtor_fixups;
  int32_t template_arg_paren_depth;
  an_object_lifetime* object_lifetime;
  int32_t scope_number; // of the innermost scope at entry; -1: none
  an_object_lifetime* enclosing_lifetime;
  an_il_entity_list_entry* scope_entity_tail; // ek_unevaluated: for undoing
  a_source_position start_position;
  a_source_position member_without_object_position;
  a_source_position end_position;
  a_lambda* lambda_context;
  an_il_entity_list_entry** entity_list_tail;
  an_expr_rescan_info_entry* rescan_info;
  an_initializer_cache* initializer_cache;
  a_rescan_control_block* rescan_control_block;
};

struct a_rescan_control_flags {
  uint32_t unused_0 : 2;
  uint32_t kind_at_least_3 : 1;
  uint32_t unused_3 : 1;
  uint32_t set_up_at_outermost_level : 1;
  uint32_t unused_5 : 2;
  uint32_t constant_rescan : 1;
  uint32_t unused_8 : 3;
  uint32_t dependent_call_context : 1;
  uint32_t overloaded_function_conversion_allowed : 1;
  uint32_t for_substitution : 19; // passed on to template substitution
};
static_assert(sizeof(a_rescan_control_flags) == 4);

struct a_rescan_control_block {
  an_expr_node* expr; // now being rescanned
  uint32_t operator_token;
  a_template_arg* template_args;
  a_template_param* template_params;
  a_rescan_control_flags flags;
  const a_source_position* position;
  a_boolean error_seen;
};

#endif
