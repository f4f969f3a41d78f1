// The construction of operands. Each constructor clears the operand first and
// takes the current token's position; the caller overwrites it when it knows
// better.

#include "expr_int.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"

#include <cstddef>
#include <cstring>

// The constant in the operand is as large as all the rest, and is always set as
// a whole: it need not be cleared.
void clear_operand(an_operand_kind kind, an_operand* operand) {
  memset(static_cast<void*>(operand), 0, offsetof(an_operand, variant));
  operand->variant.expr = nullptr;
  operand->kind = kind;
  operand->type = kind == ok_error ? error_type() : unknown_type();
  operand->position = pos_curr_token;
  operand->end_position = end_pos_curr_token;
}

void make_error_operand(an_operand* operand) {
  clear_operand(ok_error, operand);
}

void conv_to_error_operand(an_operand* operand) {
  operand_will_not_be_used_because_of_error(operand);
  uint32_t word;
  static_assert(sizeof word == sizeof operand->flags);
  __builtin_memcpy(&word, &operand->flags, sizeof word);
  word &= ~operand_flags_cleared_on_error;
  __builtin_memcpy(&operand->flags, &word, sizeof word);
  operand->kind = ok_error;
  operand->state = os_none;
  operand->type = error_type();
}

void normalize_error_operand(an_operand* operand) {
  if (operand->kind != ok_error && is_error_type(operand->type))
    conv_to_error_operand(operand);
}

void make_constant_operand(const a_constant* constant, an_operand* operand) {
  clear_operand(constant->kind == con_error ? ok_error : ok_constant, operand);
  if (operand->kind == ok_error)
    return;
  operand->type = constant->type;
  operand->state = os_prvalue;
  operand->variant.constant = *constant;
}

void make_expression_operand(an_expr_node* expr, an_operand* operand) {
  clear_operand(is_error_node(expr) ? ok_error : ok_expression, operand);
  if (operand->kind == ok_error)
    return;
  operand->type = expr->type;
  operand->state = os_prvalue;
  operand->variant.expr = expr;
}

void set_glvalue_operand_state(an_operand* operand) {
  if (is_function_type(operand->type))
    operand->state = os_function_designator;
  else
    operand->state = is_lhsref_type(operand->type) ? os_lhsref_glvalue : os_glvalue;
}

void make_glvalue_expression_operand(an_expr_node* expr, an_operand* operand) {
  make_expression_operand(expr, operand);
  if (operand->kind == ok_expression)
    set_glvalue_operand_state(operand);
  normalize_error_operand(operand);
}

void make_lvalue_or_rvalue_expression_operand(an_expr_node* expr, an_operand* operand) {
  if (expr->is_lvalue || expr->is_xvalue)
    make_glvalue_expression_operand(expr, operand);
  else
    make_expression_operand(expr, operand);
}

void make_lvalue_variable_operand(a_variable* variable, a_ref_entry* ref, an_operand* operand) {
  an_expr_node* expr = var_lvalue_expr(variable);
  expr->position = pos_curr_token;
  expr->range = {pos_curr_token, end_pos_curr_token};
  make_glvalue_expression_operand(expr, operand);
  operand->ref_entries = ref;
}

void make_function_designator_operand(a_routine* routine, a_ref_entry* ref, an_operand* operand) {
  an_expr_node* expr = function_lvalue_expr(routine);
  expr->position = pos_curr_token;
  expr->range = {pos_curr_token, end_pos_curr_token};
  make_glvalue_expression_operand(expr, operand);
  operand->ref_entries = ref;
}

void make_lhsref_expression_operand(an_expr_node* expr, an_operand* operand) {
  make_expression_operand(expr, operand);
  if (operand->kind == ok_expression)
    operand->state = os_lhsref_glvalue;
  normalize_error_operand(operand);
}

void make_indefinite_function_operand(a_symbol* symbol, an_operand* operand) {
  clear_operand(ok_indefinite_function, operand);
  operand->state = os_function_designator;
  operand->symbol = symbol;
  operand->name_position = pos_curr_token;
}

void make_sym_for_member_operand(a_symbol* symbol, an_operand* operand) {
  clear_operand(ok_sym_for_member, operand);
  bool is_field = symbol->kind == symk_field;
  operand->state = is_field ? os_prvalue : os_function_designator;
  operand->type = is_field                               ? symbol->variant.field->type
                  : symbol->kind == symk_member_function ? symbol->variant.routine->type
                                                         : unknown_type();
  operand->symbol = symbol;
  operand->name_position = pos_curr_token;
}

void make_braced_init_list_operand(an_init_component* component, an_operand* operand) {
  clear_operand(ok_braced_list, operand);
  operand->variant.init_component = component;
}

void make_undefined_symbol_operand(const a_symbol_locator* locator, an_operand* operand) {
  clear_operand(ok_undefined_symbol, operand);
  operand->name_position = locator->position;
  a_symbol_locator copy = *locator;
  operand->symbol = make_symbol(symk_undefined, &copy);
}

void make_sym_constant_operand(a_symbol* symbol, an_operand* operand) {
  make_constant_operand(symbol->variant.constant, operand);
  if (operand->kind == ok_error)
    return;
  a_constant* constant = &operand->variant.constant;
  constant->next = nullptr;
  constant->ref_symbol = nullptr;
  operand->ref_entries = make_ref_entry(srk_reference, symbol, &pos_curr_token);
}

void make_string_constant_operand(const a_constant* constant, an_operand* operand) {
  an_expr_node* expr = alloc_node_for_constant(constant);
  expr->position = pos_curr_token;
  expr->range = {pos_curr_token, end_pos_curr_token};
  make_glvalue_expression_operand(expr, operand);
  operand->flags.string_literal = true;
}

void make_integer_constant_operand(int64_t value, int int_kind, an_operand* operand) {
  a_constant constant;
  clear_constant(&constant, con_integer);
  set_integer_constant(&constant, value, static_cast<an_integer_kind>(int_kind));
  make_constant_operand(&constant, operand);
}

void make_dummy_lvalue_operand(a_type* type, an_operand* operand) {
  a_constant zero;
  clear_constant(&zero, con_integer);
  make_zero_of_proper_type(make_pointer_type(type), &zero);
  an_expr_node* pointer = alloc_node_for_constant(&zero);
  make_glvalue_expression_operand(add_indirection_to_node(pointer), operand);
}

// ---- Value categories ----

bool is_an_xvalue(const an_operand* operand) {
  return operand->kind == ok_expression && operand->variant.expr->is_xvalue;
}

bool is_a_cplusplus_lvalue(const an_operand* operand) {
  if (operand->state == os_glvalue)
    return !is_an_xvalue(operand);
  return operand->state == os_function_designator && operand->kind != ok_indefinite_function &&
         operand->kind != ok_sym_for_member;
}

bool operand_is_string_literal(const an_operand* operand) {
  return operand->flags.string_literal && operand->kind == ok_expression &&
         is_array_type(operand->type);
}

// ---- Details that outlive a change of form ----

// The position of the operator stays with what is still to be resolved.
static bool keeps_operator_position(const an_operand* operand) {
  return operand->kind == ok_indefinite_function ||
         (operand->kind == ok_constant && operand->variant.constant.kind == con_template_param);
}

void restore_operand_form_of_name_reference(an_operand* operand, const an_operand* saved) {
  operand->flags.has_name_reference = saved->flags.has_name_reference;
  if (saved->flags.has_name_reference)
    operand->name_reference = saved->name_reference;
}

void restore_operand_details(an_operand* operand, const an_operand* saved) {
  operand->position = saved->position;
  operand->end_position = saved->end_position;
  operand->rule_out |= saved->rule_out;
  operand->flags.kept_detail = saved->flags.kept_detail;
  operand->flags.parenthesized = saved->flags.parenthesized;
  operand->flags.class_instantiated_during_scan = saved->flags.class_instantiated_during_scan;
  if (saved->flags.has_operator_position && keeps_operator_position(saved)) {
    operand->flags.has_operator_position = true;
    operand->operator_position = saved->operator_position;
  }
  restore_operand_form_of_name_reference(operand, saved);
}

void restore_operand_details_incl_ref(an_operand* operand, const an_operand* saved) {
  restore_operand_details(operand, saved);
  operand->ref_entries = saved->ref_entries;
  operand->ref_entries_tail_link = saved->ref_entries_tail_link;
}

void restore_operand_details_for_cast(an_operand* operand, const an_operand* saved) {
  restore_operand_details_incl_ref(operand, saved);
  bool is_same_expr = operand->kind == ok_expression && saved->kind == ok_expression &&
                      operand->variant.expr == saved->variant.expr;
  if (is_same_expr)
    operand->rescan_info = saved->rescan_info;
}

void restore_operand_id_details(an_operand* operand, const an_operand* saved) {
  operand->flags.names_variable = saved->flags.names_variable;
  operand->flags.id_detail = saved->flags.id_detail;
  operand->flags.id_detail_2 = saved->flags.id_detail_2;
}

void clone_operand(const an_operand* source, an_operand* target) {
  *target = *source;
  target->ref_entries = nullptr;
  if (source->kind == ok_expression)
    target->variant.expr = copy_expr_tree(source->variant.expr, cef_none);
}

void set_operand_range(an_operand* operand, const a_source_position* start,
                       const a_source_position* end) {
  operand->position = *start;
  operand->end_position = *end;
  if (operand->kind == ok_expression)
    operand->variant.expr->range = {*start, *end};
}

void set_operator_positions(an_operand* result, const a_source_position* start,
                            const a_source_position* operator_position,
                            const a_source_position* end) {
  set_operand_range(result, start, end);
  result->flags.parenthesized = false;
  result->flags.has_operator_position = true;
  result->operator_position = *operator_position;
  if (result->kind == ok_expression)
    result->variant.expr->position = *operator_position;
  else if (result->kind == ok_constant)
    result->variant.constant.position = *start;
  error_position = *start;
  curr_construct_end_position = *end;
}

void rule_out_expr_kinds(uint8_t bits, an_operand* operand) {
  if (constexpr_enabled)
    return;
  if (bits & rule_out_constant) {
    bits |= rule_out_integral_constant;
    expr_stack->flags.nonconstant_seen = true;
  }
  operand->rule_out |= bits;
}

// ---- From operands to nodes ----

static an_expr_node* node_of_constant(const an_operand* operand) {
  an_expr_node* node = alloc_node_for_constant(&operand->variant.constant);
  node->position = operand->position;
  node->range = {operand->position, operand->end_position};
  return node;
}

// The operand as it is, kept with its node for a second pass in which the
// arguments of a template are known.
static void attach_rescan_info(an_operand* operand, an_expr_node* node) {
  an_expr_rescan_info_entry* inner = node->rescan_info;
  an_expr_rescan_info_entry* info = alloc_expr_rescan_info_entry();
  if (inner)
    *info = *inner;
  info->operand = *operand;
  info->operand.ref_entries = nullptr;
  info->operand.rescan_info = inner;
  info->expr_stack_kind = expr_stack->kind;
  if (operand->flags.has_operator_position)
    info->operator_position = operand->operator_position;
  info->type = operand->type;
  node->rescan_info = info;
}

an_expr_node* make_node_from_operand(an_operand* operand) {
  an_expr_node* node;
  switch (operand->kind) {
  case ok_expression:
    node = operand->variant.expr;
    break;
  case ok_constant:
    node = node_of_constant(operand);
    break;
  default:
    return error_node();
  }
  if (expr_stack && expr_stack->flags.keep_rescan_info)
    attach_rescan_info(operand, node);
  return node;
}

void finish_bound_function_operand(an_operand* operand) {
  if (!operand->flags.bound_function || is_error_operand(operand))
    return;
  error_in_operand(ec_bound_function_must_be_called, operand);
}

// ---- Undefined names ----

// The name is known as undefined in the function, so that it isn't reported
// there again.
void finish_undefined_symbol_operand(an_operand* operand) {
  if (operand->kind != ok_undefined_symbol)
    return;
  a_symbol* symbol = operand->symbol;
  int depth = depth_innermost_function_scope >= 0 ? depth_innermost_function_scope : 0;
  if (expr_error_should_be_issued()) {
    pos_st_error(ec_undefined_identifier, &operand->name_position, symbol->header->identifier);
    add_symbol_to_symbol_table(symbol, depth, nullptr);
  }
  operand->symbol = nullptr;
  conv_to_error_operand(operand);
}
