// Assignment (C99 6.5.16).

#include "decl_inits.h"
#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"

// ---- Common to all forms ----

// What every assignment asks of its left operand.
static bool prepare_left_operand(an_operand* left, const a_source_position* position) {
  do_operand_transformations(left, ot_keep_glvalue | ot_keep_array);
  if (is_error_operand(left))
    return false;
  if (is_refused_in_constant(position)) {
    conv_to_error_operand(left);
    return false;
  }
  return check_modifiable_lvalue_operand(left);
}

// In C++ the result is the object.
static void build_assignment(an_expr_operator_kind op, an_operand* left, an_operand* right,
                             an_operand* result) {
  an_expr_node* node = make_assignment_expr(left->variant.expr, op, make_node_from_operand(right));
  node->is_volatile_access = is_volatile_qualified_type(left->type);
  if (in_cplusplus_mode()) {
    node->type = left->type;
    node->is_lvalue = true;
    node->variant.operation.lvalue_semantics = true;
  }
  make_lvalue_or_rvalue_expression_operand(node, result);
  rule_out_expr_kinds(rule_out_constant, result);
}

// ---- = ----

// A list initialises an object of the left operand's type (C++11 5.17 p9).
static void convert_right_list(const an_operand* left, an_operand* right) {
  an_init_component* list = right->variant.init_component;
  a_source_position start = right->position, end = right->end_position;
  bool has_type = left->kind == ok_expression && left->type;
  make_list_operand(list, has_type ? make_unqualified_type(left->type) : error_type(), false,
                    &start, right);
  set_operand_range(right, &start, &end);
}

static bool prep_right_operand(an_operand* left, an_operand* right) {
  prep_assignment_operand(right, left->type, ec_incompatible_assignment_operands, &right->position);
  return !is_error_operand(right);
}

static void process_simple_assignment(an_operand* left, an_operand* right,
                                      const an_operator_place* place, an_operand* result) {
  if (right->kind == ok_braced_list)
    convert_right_list(left, right);
  if (operator_is_overloaded(place, left, right, result))
    return;
  bool good = prepare_left_operand(left, &place->position);
  if (good)
    change_ref_kinds(left->ref_entries, srk_modified);
  else
    do_operand_transformations(right, ot_keep_glvalue | ot_keep_array);
  if (!good || !prep_right_operand(left, right)) {
    make_error_result(left, right, result);
    return;
  }
  misra_check_pointer_assignment(left, right, &place->position);
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

static bool prepare_pointer_step(an_operand* left, an_operand* right,
                                 const a_source_position* position) {
  misra_check_pointer_arithmetic(position);
  bool good = check_pointer_arithmetic_operand(left);
  good &= check_integral_or_enum_operand(right);
  if (good)
    promote_operand(right);
  return good && !is_error_operand(right);
}

static bool check_compound_operands(a_token_kind token, an_operand* left, an_operand* right) {
  bool any_arithmetic = takes_any_arithmetic(token);
  bool good = any_arithmetic ? check_arithmetic_or_enum_operand(left)
                             : check_integral_or_enum_operand(left);
  good &= any_arithmetic ? check_arithmetic_or_enum_operand(right)
                         : check_integral_or_enum_operand(right);
  return good;
}

// In C++ an integer doesn't convert to an enumeration (C++11 5.17 p7).
static bool check_left_enum(an_operand* left) {
  if (in_C_mode() || !is_enum_type(left->type))
    return true;
  if (allow_anachronisms) {
    expr_pos_warning(ec_mixed_enum_type_anachronism, &left->position);
    return true;
  }
  error_in_operand(ec_enum_type_not_allowed, left);
  return false;
}

// The right operand takes the type in which the operation is done; the left is
// converted to it, and the result back, by the operator itself.
static bool prepare_arithmetic_step(a_token_kind token, an_operand* left, an_operand* right) {
  if (!check_compound_operands(token, left, right) || !check_left_enum(left))
    return false;
  if (is_shift_assign(token)) {
    promote_operand(right);
    warn_about_shift_count(right, operand_type_after_integral_promotion(left), left->type);
  } else {
    cast_operand(determine_arithmetic_conversions(left, right), right, true);
  }
  if (token == tok_divide_assign || token == tok_remainder_assign)
    warn_about_zero_divisor(token, right, &right->position);
  return !is_error_operand(right);
}

static void process_compound_assignment(const an_operator_place* place, an_operand* left,
                                        an_operand* right, an_operand* result) {
  a_token_kind token = place->token;
  bool is_additive = token == tok_plus_assign || token == tok_minus_assign;
  an_expr_operator_kind op = which_assignment_operator(token);
  bool good = prepare_left_operand(left, &place->position);
  do_operand_transformations(right, ot_all);
  good &= !is_error_operand(right);
  if (good && is_additive && is_pointer_type(left->type)) {
    op = token == tok_plus_assign ? eok_pointer_add_assign : eok_pointer_subtract_assign;
    good = prepare_pointer_step(left, right, &place->position);
  } else if (good) {
    good = prepare_arithmetic_step(token, left, right);
  }
  if (!good) {
    make_error_result(left, right, result);
    return;
  }
  change_ref_kinds(left->ref_entries, srk_value_read | srk_modified);
  build_assignment(op, left, right, result);
}

static void scan_right_operand(an_operand* right) {
  if (curr_token != tok_lbrace || !list_init_enabled) {
    scan_expr(right, nullptr, lev_assignment, 0);
    return;
  }
  a_source_position start = pos_curr_token;
  an_init_component* list = scan_init_component();
  clear_operand(ok_braced_list, right);
  right->variant.init_component = list;
  right->position = start;
  right->end_position = list->variant.braced.end_position;
}

void scan_assignment_operator(an_operand* operand) {
  an_operator_place place = place_of_curr_token();
  an_operand left = *operand, right;
  get_token();
  scan_right_operand(&right);
  a_source_position end = right.end_position;
  if (place.token == tok_assign) {
    process_simple_assignment(&left, &right, &place, operand);
    set_operator_positions(operand, &left.position, &place.position, &end);
    return;
  }
  an_init_component* list = right.kind == ok_braced_list ? right.variant.init_component : nullptr;
  if (!operator_is_overloaded(&place, &left, &right, operand))
    process_compound_assignment(&place, &left, &right, operand);
  free_init_component_list(list);
  set_operator_positions(operand, &left.position, &place.position, &end);
}
