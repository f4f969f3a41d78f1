// Binary operators (C99 6.5.5 to 6.5.15, 6.5.17).

#include "const_ints.h"
#include "expr_int.h"
#include "il.h"
#include "mode_words.h"
#include "target.h"

// ---- Classes of tokens ----

static bool is_relational_token(a_token_kind token) {
  return token >= tok_lt && token <= tok_ge;
}

static bool is_equality_token(a_token_kind token) {
  return token == tok_eq || token == tok_ne;
}

// ---- Folding and building ----

static bool is_pointer_arithmetic(an_expr_operator_kind op) {
  return op == eok_pointer_add || op == eok_pointer_subtract;
}

static void build_binary_result_operand(an_expr_operator_kind op, an_operand* left,
                                        an_operand* right, a_type* type, an_operand* result) {
  an_expr_node* first = make_node_from_operand(left);
  an_expr_node* second = make_node_from_operand(right);
  first->next = second;
  second->next = nullptr;
  an_expr_node* node = make_operator_node(op, type, first);
  if (op == eok_pointer_add)
    node->variant.operation.operands_reversed = !is_pointer_type(first->type);
  if (op == eok_comma)
    set_expr_result_not_used(first);
  make_expression_operand(node, result);
}

// The result when the operands are constants. False: the operation stays.
static bool fold_binary_operation(an_expr_operator_kind op, const an_operand* left,
                                  const an_operand* right, a_type* type,
                                  const a_source_position* position, an_operand* result) {
  if (!is_constant_operand(left) || !is_constant_operand(right))
    return false;
  a_constant constant;
  a_fold_context context = {in_constant_expr_kind(), value_is_evaluated(), position, false, false};
  clear_constant(&constant, con_error);
  binary_operation(op, &left->variant.constant, &right->variant.constant, type, &constant,
                   &context);
  if (context.not_folded)
    return false;
  make_constant_operand(&constant, result);
  return true;
}

// GNU C compares and subtracts the addresses of known objects early.
static bool is_early_address_operation(an_expr_operator_kind op) {
  return gcc_mode && (op == eok_eq || op == eok_ne || op == eok_pointer_difference);
}

static void force_operands_to_constants(an_expr_operator_kind op, an_operand* left,
                                        an_operand* right) {
  if (is_pointer_arithmetic(op) && !expr_stack->flags.constant_context)
    return;
  if (in_constant_expr_kind() || is_early_address_operation(op) || is_pointer_arithmetic(op)) {
    force_operand_to_constant_if_possible(left);
    force_operand_to_constant_if_possible(right);
  }
}

void do_binary_operation(an_expr_operator_kind op, an_operand* left, an_operand* right,
                         a_type* type, const a_source_position* position, an_operand* result) {
  if (is_error_operand(left) || is_error_operand(right) || is_error_type(type)) {
    operand_will_not_be_used_because_of_error(left);
    operand_will_not_be_used_because_of_error(right);
    make_error_operand(result);
    return;
  }
  uint8_t rule_out = left->rule_out | right->rule_out;
  force_operands_to_constants(op, left, right);
  if (!fold_binary_operation(op, left, right, type, position, result)) {
    if (in_constant_expr_kind() && value_is_evaluated() && !expr_stack->flags.unevaluated_operand) {
      error_and_make_error_operand(ec_expr_not_constant, position, result);
      return;
    }
    build_binary_result_operand(op, left, right, type, result);
  }
  result->rule_out |= rule_out;
}

// ---- Value checks ----

void warn_about_zero_divisor(a_token_kind token, const an_operand* right,
                             const a_source_position* position) {
  const a_constant* divisor = constant_of_operand(right);
  if (!value_is_evaluated() || !divisor || divisor->kind != con_integer ||
      divisor->value.int_value != 0)
    return;
  bool is_division = token == tok_divide || token == tok_divide_assign;
  expr_pos_warning(is_division ? ec_divide_by_zero : ec_mod_by_zero, position);
}

void warn_about_shift_count(const an_operand* right, a_type* left_type) {
  const a_constant* count = constant_of_operand(right);
  if (!value_is_evaluated() || !count || count->kind != con_integer)
    return;
  an_error_code code = 0;
  check_shift_count(count, left_type, &code);
  if (code != 0)
    expr_pos_warning(code, &right->position);
}

// ---- Arithmetic ----

static void arithmetic_operation(a_token_kind token, an_operand* left, an_operand* right,
                                 const a_source_position* position, an_operand* result) {
  bool is_multiplicative = token == tok_star || token == tok_divide || token == tok_plus ||
                           token == tok_minus || token == tok_min || token == tok_max;
  bool good = is_multiplicative ? check_arithmetic_or_enum_operand(left)
                                : check_integral_or_enum_operand(left);
  good &= is_multiplicative ? check_arithmetic_or_enum_operand(right)
                            : check_integral_or_enum_operand(right);
  if (!good) {
    make_error_operand(result);
    return;
  }
  a_type* type = determine_arithmetic_conversions(left, right);
  change_binary_operand_types(type, left, right);
  if ((token == tok_divide || token == tok_remainder) && !is_constant_operand(left))
    warn_about_zero_divisor(token, right, &right->position);
  do_binary_operation(which_binary_operator(token), left, right, type, position, result);
}

static void shift_operation(a_token_kind token, an_operand* left, an_operand* right,
                            const a_source_position* position, an_operand* result) {
  bool good = check_integral_or_enum_operand(left);
  good &= check_integral_or_enum_operand(right);
  if (!good) {
    make_error_operand(result);
    return;
  }
  promote_operand(left);
  promote_operand(right);
  // The folder reports the count of a constant left operand.
  if (!is_constant_operand(left))
    warn_about_shift_count(right, left->type);
  do_binary_operation(which_binary_operator(token), left, right, left->type, position, result);
}

// ---- Pointer arithmetic (C99 6.5.6) ----

bool check_pointer_arithmetic_operand(an_operand* operand) {
  a_type* pointed_to = type_pointed_to(operand->type);
  if (is_void_type(pointed_to) || is_function_type(pointed_to)) {
    bool is_error = !gnu_mode || strict_ansi_mode;
    if (is_error && strict_ansi_mode) {
      error_in_operand(ec_expr_not_object_pointer, operand);
      return false;
    }
    if (!gnu_mode)
      expr_pos_warning(ec_nonobject_pointer_arithmetic, &operand->position);
    return true;
  }
  if (is_incomplete_type(pointed_to)) {
    error_in_operand(ec_expr_not_object_pointer, operand);
    return false;
  }
  return true;
}

static void pointer_plus_or_minus_integer(a_token_kind token, an_operand* left, an_operand* right,
                                          const a_source_position* position, an_operand* result) {
  an_operand* pointer = is_pointer_type(left->type) ? left : right;
  an_operand* integer = pointer == left ? right : left;
  bool good = check_integral_or_enum_operand(integer);
  good &= !is_error_operand(pointer) && check_pointer_arithmetic_operand(pointer);
  if (!good) {
    make_error_operand(result);
    return;
  }
  promote_operand(integer);
  do_binary_operation(token == tok_plus ? eok_pointer_add : eok_pointer_subtract, left, right,
                      pointer->type, position, result);
}

static void pointer_difference(an_operand* left, an_operand* right,
                               const a_source_position* position, an_operand* result) {
  if (!check_pointer_arithmetic_operand(left) || !check_pointer_arithmetic_operand(right)) {
    make_error_operand(result);
    return;
  }
  a_type* left_object = make_unqualified_type(type_pointed_to(left->type));
  a_type* right_object = make_unqualified_type(type_pointed_to(right->type));
  if (!types_are_compatible(left_object, right_object)) {
    bool same_size = size_of_type(left_object) == size_of_type(right_object);
    an_error_severity severity = strict_ansi_mode || !same_size ? es_error : es_warning;
    if (expr_diagnostic_should_be_issued(severity, ec_nonstandard_ptr_minus_ptr, position))
      pos_ty2_diagnostic(severity, ec_nonstandard_ptr_minus_ptr, position, left->type, right->type);
    if (severity == es_error) {
      make_error_operand(result);
      return;
    }
  }
  do_binary_operation(eok_pointer_difference, left, right, ptrdiff_t_type(), position, result);
}

static void additive_operation(a_token_kind token, an_operand* left, an_operand* right,
                               const a_source_position* position, an_operand* result) {
  bool left_is_pointer = is_pointer_type(left->type);
  bool right_is_pointer = is_pointer_type(right->type);
  if (left_is_pointer && right_is_pointer && token == tok_minus)
    pointer_difference(left, right, position, result);
  else if (left_is_pointer && !is_error_operand(right))
    pointer_plus_or_minus_integer(token, left, right, position, result);
  else if (right_is_pointer && token == tok_plus && !is_error_operand(left))
    pointer_plus_or_minus_integer(token, left, right, position, result);
  else
    arithmetic_operation(token, left, right, position, result);
}

// ---- Comparison (C99 6.5.8, 6.5.9) ----

static bool is_unsigned_comparison(a_type* type) {
  return is_integral_or_enum_type(type) && !is_signed_integral_type(type);
}

static bool is_negative_constant(const a_constant* constant) {
  return constant && constant->kind == con_integer && is_integral_or_enum_type(constant->type) &&
         cmplit_integer_constant(constant, 0) < 0;
}

static bool is_zero_integer(const a_constant* constant) {
  return constant && constant->kind == con_integer && constant->value.int_value == 0;
}

// `u < 0`, `u >= 0` and their mirror images have one answer.
static bool is_pointless_with_zero(a_token_kind token, const a_constant* left,
                                   const a_constant* right) {
  if (is_zero_integer(right) && !left)
    return token == tok_lt || token == tok_ge;
  if (is_zero_integer(left) && !right)
    return token == tok_gt || token == tok_le;
  return false;
}

struct a_sign_summary {
  bool unsigned_meets_negative;
  bool signs_differ;
};

static bool is_signed_nonconstant(const an_operand* operand) {
  return !is_constant_operand(operand) &&
         is_signed_integral_type(operand_type_after_integral_promotion(operand));
}

static bool is_unsigned_operand(const an_operand* operand) {
  return is_unsigned_comparison(operand_type_after_integral_promotion(operand));
}

static a_sign_summary summarize_signs(const an_operand* left, const an_operand* right) {
  a_sign_summary summary = {};
  if (!is_integral_or_enum_type(left->type) || !is_integral_or_enum_type(right->type))
    return summary;
  bool left_unsigned = is_unsigned_operand(left), right_unsigned = is_unsigned_operand(right);
  summary.unsigned_meets_negative =
      (left_unsigned && is_negative_constant(constant_of_operand(right))) ||
      (right_unsigned && is_negative_constant(constant_of_operand(left)));
  summary.signs_differ = (left_unsigned && is_signed_nonconstant(right)) ||
                         (right_unsigned && is_signed_nonconstant(left));
  return summary;
}

static void warn_about_unsigned_comparison(a_token_kind token, const a_sign_summary* signs,
                                           a_type* type, const an_operand* left,
                                           const an_operand* right,
                                           const a_source_position* position) {
  if (!value_is_evaluated() || !is_unsigned_comparison(type))
    return;
  if (signs->unsigned_meets_negative)
    expr_pos_warning(ec_unsigned_compare_with_negative, position);
  else if (!is_relational_token(token))
    return;
  else if (is_pointless_with_zero(token, constant_of_operand(left), constant_of_operand(right)))
    expr_pos_warning(ec_unsigned_compare_with_zero, position);
  else if (signs->signs_differ)
    expr_pos_diagnostic(es_remark, ec_signed_unsigned_comparison, position);
}

static void arithmetic_comparison(a_token_kind token, an_operand* left, an_operand* right,
                                  const a_source_position* position, an_operand* result) {
  if (!check_scalar_operand(left) || !check_scalar_operand(right)) {
    make_error_operand(result);
    return;
  }
  a_sign_summary signs = summarize_signs(left, right);
  a_type* type = determine_arithmetic_conversions(left, right);
  // The message about the comparison stands for that about the constant.
  bool was_evaluated = expr_stack->flags.value_is_evaluated;
  if (signs.unsigned_meets_negative)
    expr_stack->flags.value_is_evaluated = false;
  change_binary_operand_types(type, left, right);
  expr_stack->flags.value_is_evaluated = was_evaluated;
  if (!is_error_operand(left) && !is_error_operand(right))
    warn_about_unsigned_comparison(token, &signs, type, left, right, position);
  do_binary_operation(which_binary_operator(token), left, right, boolean_result_type(), position,
                      result);
}

static bool is_null_pointer_operand(const an_operand* operand) {
  return is_constant_operand(operand) && is_null_pointer_constant(&operand->variant.constant);
}

static void report_pointer_mismatch(an_error_severity severity, an_operand* left, an_operand* right,
                                    const a_source_position* position) {
  if (expr_diagnostic_should_be_issued(severity, ec_incompatible_operands, position))
    pos_ty2_diagnostic(severity, ec_incompatible_operands, position, left->type, right->type);
}

static an_error_severity mixed_pointer_severity() {
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

// Both are pointers.
static a_type* common_pointer_type(an_operand* left, an_operand* right,
                                   const a_source_position* position, bool is_relational) {
  a_type* left_object = type_pointed_to(left->type);
  a_type* right_object = type_pointed_to(right->type);
  a_type_qualifier_set qualifiers =
      get_type_qualifiers(left_object) | get_type_qualifiers(right_object);
  a_type* left_bare = make_unqualified_type(left_object);
  a_type* right_bare = make_unqualified_type(right_object);
  if (types_are_compatible(left_bare, right_bare))
    return make_pointer_type(
        make_qualified_type(composite_type(left_bare, right_bare), qualifiers));
  bool left_void = is_void_type(left_bare), right_void = is_void_type(right_bare);
  if (left_void || right_void) {
    bool with_function = is_function_type(left_bare) || is_function_type(right_bare);
    if ((with_function || is_relational) && strict_ansi_mode)
      report_pointer_mismatch(strict_ansi_error_severity, left, right, position);
    return make_pointer_type(make_qualified_type(void_type(), qualifiers));
  }
  report_pointer_mismatch(mixed_pointer_severity(), left, right, position);
  return make_pointer_type(make_qualified_type(void_type(), qualifiers));
}

// A pointer and an integer.
static a_type* pointer_met_by_integer(an_operand* left, an_operand* right,
                                      const a_source_position* position, bool is_relational) {
  an_operand* pointer = is_pointer_type(left->type) ? left : right;
  an_operand* other = pointer == left ? right : left;
  if (!is_integral_or_enum_type(other->type)) {
    report_pointer_mismatch(es_error, left, right, position);
    return nullptr;
  }
  bool is_good = is_null_pointer_operand(other) && (!is_relational || !strict_ansi_mode);
  if (!is_good)
    report_pointer_mismatch(mixed_pointer_severity(), left, right, position);
  return pointer->type;
}

a_type* check_compatibility_of_pointer_operands(an_operand* left, an_operand* right,
                                                const a_source_position* position,
                                                bool is_relational) {
  if (is_pointer_type(left->type) && is_pointer_type(right->type)) {
    if (!is_relational && is_null_pointer_operand(right) && !is_null_pointer_operand(left))
      return left->type;
    if (!is_relational && is_null_pointer_operand(left) && !is_null_pointer_operand(right))
      return right->type;
    return common_pointer_type(left, right, position, is_relational);
  }
  return pointer_met_by_integer(left, right, position, is_relational);
}

// The address that the pointer holds is that of an object or a function.
static bool can_never_be_null(const an_operand* operand) {
  an_operand copy = *operand;
  force_operand_to_constant_if_possible(&copy);
  const a_constant* constant = constant_of_operand(&copy);
  return constant && constant->kind == con_address &&
         constant_bool_value_known_at_compile_time(constant) && constant_bool_value(constant);
}

static void remark_on_comparison_with_null(const an_operand* left, const an_operand* right,
                                           const a_source_position* position) {
  bool is_known = (is_null_pointer_operand(right) && can_never_be_null(left)) ||
                  (is_null_pointer_operand(left) && can_never_be_null(right));
  if (is_known && value_is_evaluated())
    expr_pos_diagnostic(es_remark, ec_known_comparison_with_null, position);
}

static void pointer_comparison(a_token_kind token, an_operand* left, an_operand* right,
                               const a_source_position* position, an_operand* result) {
  bool is_relational = is_relational_token(token);
  a_type* type = check_compatibility_of_pointer_operands(left, right, position, is_relational);
  if (!type) {
    make_error_operand(result);
    return;
  }
  if (!is_relational)
    remark_on_comparison_with_null(left, right, position);
  change_binary_operand_types(type, left, right);
  do_binary_operation(which_binary_operator(token), left, right, boolean_result_type(), position,
                      result);
}

static void comparison(a_token_kind token, an_operand* left, an_operand* right,
                       const a_source_position* position, an_operand* result) {
  if (is_error_operand(left) || is_error_operand(right))
    do_binary_operation(which_binary_operator(token), left, right, error_type(), position, result);
  else if (is_pointer_type(left->type) || is_pointer_type(right->type))
    pointer_comparison(token, left, right, position, result);
  else
    arithmetic_comparison(token, left, right, position, result);
}

// ---- The common frame ----

void scan_binary_operator(an_operand* operand) {
  a_token_kind token = curr_token;
  a_source_position position = pos_curr_token;
  an_operand left = *operand, right;
  get_token();
  scan_expr(&right, nullptr, level_of_token(token), 0);
  a_source_position end = right.end_position;
  do_operand_transformations(&left, ot_all);
  do_operand_transformations(&right, ot_all);
  if (token == tok_plus || token == tok_minus)
    additive_operation(token, &left, &right, &position, operand);
  else if (token == tok_shift_left || token == tok_shift_right)
    shift_operation(token, &left, &right, &position, operand);
  else if (is_relational_token(token) || is_equality_token(token))
    comparison(token, &left, &right, &position, operand);
  else
    arithmetic_operation(token, &left, &right, &position, operand);
  set_operator_positions(operand, &left.position, &position, &end);
}

// ---- && and || (C99 6.5.13, 6.5.14) ----

// Whether the left operand alone gives the result.
static bool left_decides(an_expr_operator_kind op, const an_operand* left) {
  const a_constant* constant = constant_of_operand(left);
  return constant && constant_bool_value_known_at_compile_time(constant) &&
         constant_bool_value(constant) == (op == eok_lor);
}

static void logical_result(an_expr_operator_kind op, an_operand* left, an_operand* right,
                           const a_source_position* position, an_operand* result) {
  bool both_good = !is_error_operand(left) && !is_error_operand(right);
  if (!both_good || !left_decides(op, left)) {
    do_binary_operation(op, left, right, boolean_result_type(), position, result);
    return;
  }
  change_ref_kinds(right->ref_entries, srk_reference);
  make_integer_constant_operand(op == eok_lor, ik_int, result);
}

void scan_logical_operator(an_operand* operand) {
  an_expr_operator_kind op = which_binary_operator(curr_token);
  a_source_position position = pos_curr_token;
  an_operand left = *operand, right;
  check_boolean_controlling_expr(&left);
  flush_operand_ref_entries(&left);
  if (in_constant_expr_kind())
    force_operand_to_constant_if_possible(&left);
  an_expr_stack_flags saved = expr_stack->flags;
  if (left_decides(op, &left)) {
    expr_stack->flags.value_is_evaluated = false;
    expr_stack->flags.strict_constant = false;
  }
  expr_stack->flags.branch_context = true;
  get_token();
  scan_expr(&right, nullptr, op == eok_land ? lev_land : lev_lor, 0);
  a_source_position end = right.end_position;
  check_boolean_controlling_expr(&right);
  expr_stack->flags.value_is_evaluated = saved.value_is_evaluated;
  expr_stack->flags.strict_constant = saved.strict_constant;
  expr_stack->flags.branch_context = saved.branch_context;
  logical_result(op, &left, &right, &position, operand);
  set_operator_positions(operand, &left.position, &position, &end);
}

// ---- Comma (C99 6.5.17) ----

void scan_comma_operator(an_operand* operand) {
  a_source_position position = pos_curr_token;
  an_operand left = *operand, right;
  flush_operand_ref_entries(&left);
  do_void_operand_transformations(&left, false);
  check_for_no_effect(&left);
  get_token();
  scan_expr(&right, nullptr, lev_comma, 0);
  a_source_position end = right.end_position;
  do_operand_transformations(&right, ot_all);
  bool is_unevaluated_c99 = in_C_mode() && std_version >= 199901 && !value_is_evaluated();
  if (expr_stack->flags.strict_constant && !is_unevaluated_c99)
    error_and_make_error_operand(ec_bad_constant_operator, &position, operand);
  else if (is_error_operand(&left) || is_error_operand(&right))
    make_error_operand(operand);
  else
    build_binary_result_operand(eok_comma, &left, &right, right.type, operand);
  rule_out_expr_kinds(rule_out_constant, operand);
  set_operator_positions(operand, &left.position, &position, &end);
}
