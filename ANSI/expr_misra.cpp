// Checks of MISRA-C:2004 rules about operators and their operands.

#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"

static void report_required(an_error_code code, const a_source_position* position) {
  expr_pos_diagnostic(misra_required_severity, code, position);
}

void misra_check_pointer_arithmetic(const a_source_position* position) {
  if (check_misra_c_2004)
    report_required(ec_misra_c_2004_17_4, position);
}

void misra_check_equality_operands(const an_operand* left, const an_operand* right,
                                   const a_source_position* position) {
  if (check_misra_c_2004 && (is_floating_type(left->type) || is_floating_type(right->type)))
    report_required(ec_misra_c_2004_13_3, position);
}

// The type that the operand had before promotion.
static const a_type* underlying_type(const an_operand* operand) {
  const a_type* type = operand->type;
  if (operand->kind != ok_expression)
    return type;
  const an_expr_node* node = operand->variant.expr;
  while (is_operation_node(node, eok_cast) && node->variant.operation.is_implicit)
    node = node->variant.operation.operands;
  return node->type;
}

void misra_check_bitwise_operand(const an_operand* operand) {
  if (check_misra_c_2004 && !is_constant_operand(operand) &&
      is_signed_integral_type(underlying_type(operand)))
    report_required(ec_misra_c_2004_12_7, &operand->position);
}

void misra_check_unary_minus(const an_operand* operand) {
  const a_type* type = underlying_type(operand);
  if (check_misra_c_2004 && is_integral_or_enum_type(type) && !is_signed_integral_type(type))
    report_required(ec_misra_c_2004_12_9, &operand->position);
}

// A name, a constant or a parenthesised expression; calls and selections too.
static bool misra_operand_is_primary_expr(const an_operand* operand) {
  if (operand->flags.parenthesized || operand->kind != ok_expression)
    return true;
  const an_expr_node* node = operand->variant.expr;
  if (node->kind != expr_operation)
    return true;
  switch (node->variant.operation.op) {
  case eok_call:
  case eok_subscript:
  case eok_dot_field:
  case eok_arrow_field:
  case eok_not:
    return true;
  default:
    return false;
  }
}

// A chain of one of the two operators needs no parentheses.
static bool continues_chain(an_expr_operator_kind op, const an_operand* left) {
  return left->kind == ok_expression && is_operation_node(left->variant.expr, op);
}

static void check_logical_operand(const an_operand* operand) {
  if (!is_error_operand(operand) && !misra_operand_is_primary_expr(operand))
    report_required(ec_misra_c_2004_12_5, &operand->position);
}

void misra_check_logical_operands(an_expr_operator_kind op, const an_operand* left,
                                  const an_operand* right) {
  if (!check_misra_c_2004)
    return;
  if (right->kind == ok_expression && node_has_side_effects(right->variant.expr))
    report_required(ec_misra_c_2004_12_4, &right->position);
  if (!continues_chain(op, left))
    check_logical_operand(left);
  check_logical_operand(right);
}

void misra_check_sizeof_operand(const an_operand* operand) {
  if (check_misra_c_2004 && operand->kind == ok_expression &&
      node_has_side_effects(operand->variant.expr))
    report_required(ec_misra_c_2004_12_3, &operand->position);
}

void misra_check_comma(const a_source_position* position) {
  if (check_misra_c_2004)
    report_required(ec_misra_c_2004_12_10, position);
}

// The object of which a place is a part.
static const an_expr_node* whole_object(const an_expr_node* place) {
  for (;;) {
    bool is_element = is_operation_node(place, eok_subscript) &&
                      is_operation_node(place->variant.operation.operands, eok_array_to_pointer);
    if (is_element)
      place = place->variant.operation.operands;
    else if (!is_operation_node(place, eok_dot_field))
      return place;
    place = place->variant.operation.operands;
  }
}

// The automatic variable whose address the operand is.
static const a_variable* is_operand_ptr_to_nonstatic(const an_operand* operand) {
  if (operand->kind != ok_expression)
    return nullptr;
  const an_expr_node* node = operand->variant.expr;
  while (is_operation_node(node, eok_cast))
    node = node->variant.operation.operands;
  if (!is_operation_node(node, eok_address_of) && !is_operation_node(node, eok_array_to_pointer))
    return nullptr;
  node = whole_object(node->variant.operation.operands);
  if (node->kind != expr_variable || node->variant.variable.ptr->storage_kind < sc_auto)
    return nullptr;
  return node->variant.variable.ptr;
}

static bool variables_in_same_scope(const a_variable* a, const a_variable* b) {
  return a->source_corresp.parent_scope == b->source_corresp.parent_scope;
}

void misra_check_pointer_assignment(const an_operand* left, const an_operand* right,
                                    const a_source_position* position) {
  if (!check_misra_c_2004)
    return;
  const a_variable* object = is_operand_ptr_to_nonstatic(right);
  if (!object || left->kind != ok_expression || left->variant.expr->kind != expr_variable)
    return;
  const a_variable* holder = left->variant.expr->variant.variable.ptr;
  if (holder->storage_kind < sc_auto || !variables_in_same_scope(object, holder))
    report_required(ec_misra_c_2004_17_6, position);
}
