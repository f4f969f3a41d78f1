// Prefix operators (C99 6.5.3), and increments on either side (6.5.2.4,
// 6.5.3.1).

#include "expr_int.h"
#include "il.h"
#include "mode_words.h"

// The operand of a prefix operator, behind the operator.
static void scan_prefix_operand(an_operand* operand, a_source_position* operator_position) {
  *operator_position = pos_curr_token;
  get_token();
  scan_expr(operand, nullptr, lev_unary, 0);
  finish_undefined_symbol_operand(operand);
}

static void set_prefix_positions(an_operand* operand, const a_source_position* operator_position,
                                 const a_source_position* end) {
  set_operator_positions(operand, operator_position, operator_position, end);
  operand->flags.names_variable = false;
}

// ---- & (C99 6.5.3.2 p3) ----

// `&*p` and `&a[i]` evaluate neither `*` nor, of an array's element, a read.
static an_expr_node* address_of_node(an_expr_node* node) {
  if (is_operation_node(node, eok_indirect)) {
    an_expr_node* pointer = node->variant.operation.operands;
    pointer->next = nullptr;
    return pointer;
  }
  an_expr_node* address = add_address_of_to_node(node);
  if (is_operation_node(address, eok_address_of))
    address->variant.operation.is_implicit = false;
  return address;
}

static bool can_take_address(an_operand* operand) {
  if (operand->state != os_glvalue && operand->state != os_function_designator) {
    error_in_operand(ec_expr_not_an_lvalue_or_function_designator, operand);
    return false;
  }
  if (operand->kind == ok_expression && bit_field_of_node(operand->variant.expr, false)) {
    error_in_operand(ec_address_of_bit_field, operand);
    return false;
  }
  return true;
}

bool make_address_operand(an_operand* operand, const a_source_position* operator_position) {
  normalize_error_operand(operand);
  if (is_error_operand(operand) || !can_take_address(operand))
    return false;
  an_operand saved = *operand;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  if (operand->state == os_function_designator) {
    conv_function_designator_to_ptr_to_function(operand);
    return false;
  }
  a_type* type = make_pointer_type(operand->type);
  make_expression_operand(address_of_node(operand->variant.expr), operand);
  operand->type = operand->variant.expr->type = type;
  operand->variant.expr->position = *operator_position;
  restore_operand_details_incl_ref(operand, &saved);
  return true;
}

void take_address_of_operand(an_operand* operand, const a_source_position* operator_position) {
  if (make_address_operand(operand, operator_position))
    force_operand_to_constant_if_possible(operand);
}

void scan_address_of(an_operand* result) {
  a_source_position position;
  if (expr_stack->kind == ek_integral_constant)
    expr_pos_error(ec_bad_integral_operator, &pos_curr_token);
  scan_prefix_operand(result, &position);
  a_source_position end = result->end_position;
  take_address_of_operand(result, &position);
  set_prefix_positions(result, &position, &end);
}

// ---- __va_parmadr ----

// `__va_parmadr(p)` is where the caller has put the parameter: the arguments
// of an ellipsis follow there. `&p` may be a copy of it.
static bool is_parameter_operand(const an_operand* operand) {
  return operand->kind == ok_expression && operand->state == os_glvalue &&
         operand->variant.expr->kind == expr_variable &&
         operand->variant.expr->variant.variable.ptr->is_parameter;
}

void scan_parameter_address(an_operand* result) {
  a_source_position position = pos_curr_token;
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  scan_expr(result, nullptr, lev_comma, 0);
  finish_undefined_symbol_operand(result);
  remove_stop_token(tok_rparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  if (is_error_operand(result))
    return;
  if (in_constant_expr_kind() || !is_parameter_operand(result)) {
    error_in_operand(ec_bad_va_parmadr, result);
  } else {
    an_operand saved = *result;
    change_unmarked_ref_kinds(result->ref_entries, srk_address_taken);
    an_expr_node* address = make_operator_node(eok_param_address, make_pointer_type(result->type),
                                               result->variant.expr);
    make_expression_operand(address, result);
    restore_operand_details_incl_ref(result, &saved);
  }
  set_operator_positions(result, &position, &position, &end);
}

// ---- * (C99 6.5.3.2 p4) ----

void do_indirection(an_operand* operand) {
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  if (!is_pointer_type(operand->type)) {
    error_in_operand(ec_bad_indirection_operand, operand);
    return;
  }
  an_operand saved = *operand;
  an_expr_node* pointer = make_node_from_operand(operand);
  pointer->next = nullptr;
  // The pointer's own references were reads.
  change_ref_kinds(operand->ref_entries, srk_value_read);
  a_type* type = type_pointed_to(operand->type);
  an_expr_node* object = make_lvalue_operator_node(eok_indirect, type, pointer);
  make_glvalue_expression_operand(object, operand);
  restore_operand_details(operand, &saved);
}

void scan_indirection(an_operand* result) {
  a_source_position position;
  scan_prefix_operand(result, &position);
  a_source_position end = result->end_position;
  do_indirection(result);
  set_prefix_positions(result, &position, &end);
}

// ---- + - ~ ! (C99 6.5.3.3) ----

static an_expr_operator_kind unary_operator(a_token_kind token) {
  switch (token) {
  case tok_minus:
    return eok_negate;
  case tok_plus:
    return eok_unary_plus;
  case tok_compl:
    return eok_complement;
  default:
    return eok_not;
  }
}

static void do_unary_operation(an_expr_operator_kind op, a_type* type, an_operand* operand,
                               const a_source_position* position) {
  an_operand saved = *operand;
  if (op == eok_not && in_constant_expr_kind())
    force_operand_to_constant_if_possible(operand);
  if (is_constant_operand(operand)) {
    a_constant constant;
    a_fold_context context = {in_constant_expr_kind(), value_is_evaluated(), position, false,
                              false};
    clear_constant(&constant, con_error);
    unary_operation(op, &operand->variant.constant, type, &constant, &context);
    if (!context.not_folded) {
      make_constant_operand(&constant, operand);
      restore_operand_details(operand, &saved);
      return;
    }
  }
  if (in_constant_expr_kind() && value_is_evaluated()) {
    error_in_operand(ec_expr_not_constant, operand);
    return;
  }
  an_expr_node* node = make_node_from_operand(operand);
  node->next = nullptr;
  // Unary plus leaves nothing to do behind the promotion.
  make_expression_operand(op == eok_unary_plus ? node : make_operator_node(op, type, node),
                          operand);
  restore_operand_details(operand, &saved);
}

void scan_unary_arithmetic(an_operand* result) {
  an_expr_operator_kind op = unary_operator(curr_token);
  a_source_position position;
  scan_prefix_operand(result, &position);
  a_source_position end = result->end_position;
  do_operand_transformations(result, ot_all);
  bool is_good;
  if (op == eok_not)
    is_good = check_scalar_operand(result);
  else if (op == eok_complement)
    is_good = check_integral_or_enum_operand(result);
  else
    is_good = check_arithmetic_or_enum_operand(result);
  if (is_good) {
    if (op != eok_not)
      promote_operand(result);
    do_unary_operation(op, op == eok_not ? boolean_result_type() : result->type, result, &position);
  }
  set_prefix_positions(result, &position, &end);
}

// ---- ++ and -- ----

static void do_incr_decr(an_expr_operator_kind op, an_operand* operand,
                         const a_source_position* position) {
  do_operand_transformations(operand, ot_keep_glvalue | ot_keep_array);
  if (is_error_operand(operand))
    return;
  if (expr_stack->flags.strict_constant) {
    expr_pos_error(ec_bad_constant_operator, position);
    conv_to_error_operand(operand);
    return;
  }
  if (!check_modifiable_lvalue_operand(operand) || !check_scalar_operand(operand))
    return;
  if (is_pointer_type(operand->type) && !check_pointer_arithmetic_operand(operand))
    return;
  an_operand saved = *operand;
  change_ref_kinds(operand->ref_entries, srk_value_read | srk_modified);
  an_expr_node* object = operand->variant.expr;
  object->next = nullptr;
  an_expr_node* node = make_operator_node(op, prvalue_type(operand->type), object);
  node->is_volatile_access = is_volatile_qualified_type(operand->type);
  make_expression_operand(node, operand);
  restore_operand_details(operand, &saved);
  rule_out_expr_kinds(rule_out_constant, operand);
}

void scan_prefix_incr_decr(an_operand* result) {
  an_expr_operator_kind op = curr_token == tok_plus_plus ? eok_pre_incr : eok_pre_decr;
  a_source_position position;
  scan_prefix_operand(result, &position);
  a_source_position end = result->end_position;
  do_incr_decr(op, result, &position);
  set_prefix_positions(result, &position, &end);
}

void scan_postfix_incr_decr(an_operand* operand) {
  an_expr_operator_kind op = curr_token == tok_plus_plus ? eok_post_incr : eok_post_decr;
  a_source_position start = operand->position, position = pos_curr_token;
  a_source_position end = end_pos_curr_token;
  get_token();
  do_incr_decr(op, operand, &position);
  set_operator_positions(operand, &start, &position, &end);
}
