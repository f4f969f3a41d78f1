// Assignment (C99 6.5.16).

#include "expr_int.h"
#include "il.h"
#include "mode_words.h"

// What every assignment asks of its left operand.
static bool prepare_left_operand(an_operand* left, const a_source_position* position) {
  do_operand_transformations(left, ot_keep_glvalue | ot_keep_array);
  if (is_error_operand(left))
    return false;
  if (expr_stack->flags.strict_constant) {
    expr_pos_error(ec_bad_constant_operator, position);
    conv_to_error_operand(left);
    return false;
  }
  return check_modifiable_lvalue_operand(left);
}

// ---- = ----

static void build_assignment(an_expr_operator_kind op, an_operand* left, an_operand* right,
                             an_operand* result) {
  an_expr_node* object = left->variant.expr;
  an_expr_node* node = make_assignment_expr(object, op, make_node_from_operand(right));
  node->is_volatile_access = is_volatile_qualified_type(left->type);
  make_expression_operand(node, result);
  rule_out_expr_kinds(rule_out_constant, result);
}

static void process_simple_assignment(an_operand* left, an_operand* right, an_operand* result) {
  if (!is_error_operand(left)) {
    change_ref_kinds(left->ref_entries, srk_modified);
    prep_conversion_operand(right, left->type, ec_incompatible_assignment_operands,
                            &right->position);
  }
  if (is_error_operand(left) || is_error_operand(right)) {
    operand_will_not_be_used_because_of_error(right);
    make_error_operand(result);
    return;
  }
  build_assignment(eok_assign, left, right, result);
}

// ---- The compound forms (C99 6.5.16.2) ----

static bool takes_any_arithmetic(a_token_kind token) {
  return token == tok_times_assign || token == tok_divide_assign || token == tok_plus_assign ||
         token == tok_minus_assign;
}

static bool is_shift_assign(a_token_kind token) {
  return token == tok_shift_left_assign || token == tok_shift_right_assign;
}

static bool prepare_pointer_step(an_operand* left, an_operand* right) {
  if (!check_pointer_arithmetic_operand(left) || !check_integral_or_enum_operand(right))
    return false;
  promote_operand(right);
  return true;
}

static bool check_compound_operands(a_token_kind token, an_operand* left, an_operand* right) {
  if (takes_any_arithmetic(token))
    return check_arithmetic_or_enum_operand(left) && check_arithmetic_or_enum_operand(right);
  return check_integral_or_enum_operand(left) && check_integral_or_enum_operand(right);
}

// The right operand takes the type in which the operation is done; the left is
// converted to it, and the result back, by the operator itself.
static bool prepare_arithmetic_step(a_token_kind token, an_operand* left, an_operand* right) {
  if (!check_compound_operands(token, left, right))
    return false;
  if (is_shift_assign(token)) {
    promote_operand(right);
    warn_about_shift_count(right, operand_type_after_integral_promotion(left));
  } else {
    cast_operand(determine_arithmetic_conversions(left, right), right, true);
  }
  if (token == tok_divide_assign || token == tok_remainder_assign)
    warn_about_zero_divisor(token, right, &right->position);
  return !is_error_operand(right);
}

static void process_compound_assignment(a_token_kind token, an_operand* left, an_operand* right,
                                        an_operand* result) {
  bool is_additive = token == tok_plus_assign || token == tok_minus_assign;
  an_expr_operator_kind op = which_assignment_operator(token);
  do_operand_transformations(right, ot_all);
  bool good = !is_error_operand(left) && !is_error_operand(right);
  if (good && is_additive && is_pointer_type(left->type)) {
    op = token == tok_plus_assign ? eok_pointer_add_assign : eok_pointer_subtract_assign;
    good = prepare_pointer_step(left, right);
  } else if (good) {
    good = prepare_arithmetic_step(token, left, right);
  }
  if (!good) {
    make_error_operand(result);
    return;
  }
  change_ref_kinds(left->ref_entries, srk_value_read | srk_modified);
  build_assignment(op, left, right, result);
}

void scan_assignment_operator(an_operand* operand) {
  a_token_kind token = curr_token;
  a_source_position position = pos_curr_token;
  an_operand left = *operand, right;
  prepare_left_operand(&left, &position);
  get_token();
  scan_expr(&right, nullptr, lev_assignment, 0);
  a_source_position end = right.end_position;
  if (token == tok_assign)
    process_simple_assignment(&left, &right, operand);
  else
    process_compound_assignment(token, &left, &right, operand);
  set_operator_positions(operand, &left.position, &position, &end);
}
