// Constant folding: the choice of the operation by the kinds of its operands,
// operators on integer constants, and what a failure means at its place.

#include "folding.h"

#include "const_ints.h"
#include "error.h"
#include "expr.h"
#include "folding_int.h"
#include "il_types.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

// ---- Problems ----

an_error_severity integer_overflow_severity() {
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

a_boolean IEEE_handling_on_float_operation_exceptions;

static bool constant_is_wanted(const a_fold_context* context) {
  if (!expr_stack)
    return context->in_constant_kind;
  return (context->in_constant_kind || expr_stack->flags.constant_context) &&
         !expr_stack->flags.unevaluated_operand;
}

static void issue_fold_problem(an_error_severity severity, an_error_code code,
                               a_fold_context* context) {
  if (severity == es_error && context->error_code_out)
    *context->error_code_out = code;
  else if (severity != es_error || expr_error_should_be_issued())
    pos_diagnostic(severity, code, context->position);
}

// Where no constant is required, an operation that has no value becomes code
// behind a warning; the program may never reach it.
void report_fold_problem(const a_fold_problem* problem, a_constant* result,
                         a_fold_context* context) {
  an_error_severity severity = problem->severity;
  if (problem->code == 0)
    return;
  if (!context->value_evaluated) {
    context->not_folded = true;
    return;
  }
  if (severity == es_error && !constant_is_wanted(context)) {
    severity = es_warning;
    context->not_folded = true;
  }
  if (severity == es_error) {
    set_error_constant(result);
    context->not_folded = false;
    context->error_reported = true;
  }
  issue_fold_problem(severity, problem->code, context);
}

void trunc_and_set_integer(uint64_t value, bool is_signed, a_constant* constant,
                           bool check_overflow, bool saturate, an_error_code* code,
                           an_error_severity* severity) {
  an_integer_kind kind = int_kind_of(constant->type);
  if (!in_range_for_integer_kind(value, is_signed, kind)) {
    if (check_overflow && *code == 0) {
      *code = ec_integer_overflow;
      *severity = integer_overflow_severity();
    }
    if (saturate) {
      bool negative = is_signed && static_cast<int64_t>(value) < 0;
      value = negative ? min_integer_value_of_kind[kind] : max_integer_value_of_kind[kind];
    }
  }
  set_constant_kind(constant, con_integer);
  constant->value.int_value = truncate_integer_value(value, kind);
}

void check_shift_count(const a_constant* count, a_type* left_type, an_error_code* code) {
  int width = precision_of_int_kind(int_kind_of(left_type));
  if (cmplit_integer_constant(count, 0) < 0)
    *code = ec_negative_shift_count;
  else if (cmplit_integer_constant(count, width) >= 0)
    *code = ec_shift_count_too_large;
}

// ---- Binary operators on integers ----

static bool is_pointer_valued(const a_constant* constant) {
  return constant->kind == con_address || is_pointer_type(constant->type);
}

void start_result(a_type* type, a_constant* result, const a_fold_context* context) {
  clear_constant(result, con_integer);
  result->type = type;
  if (context->position)
    result->position = *context->position;
}

// A shift out of the width leaves nothing but the sign.
static uint64_t shifted_value(an_expr_operator_kind op, const a_constant* left,
                              const a_constant* right, bool is_signed, a_fold_problem* problem,
                              bool* overflow) {
  uint64_t value = left->value.int_value;
  *overflow = false;
  check_shift_count(right, left->type, &problem->code);
  if (problem->code != 0) {
    problem->severity = es_warning;
    bool negative = is_signed && static_cast<int64_t>(value) < 0;
    return op == eok_shift_right && negative ? ~uint64_t{0} : 0;
  }
  unsigned count = static_cast<unsigned>(right->value.int_value);
  if (op == eok_shift_right)
    shift_right_integer_value(&value, count, is_signed);
  else
    shift_left_integer_value(&value, count, is_signed, overflow);
  return value;
}

static uint64_t arithmetic_value(an_expr_operator_kind op, uint64_t left, uint64_t right,
                                 bool is_signed, a_fold_problem* problem, bool* overflow) {
  *overflow = false;
  switch (op) {
  case eok_add:
    add_integer_values(&left, right, is_signed, overflow);
    break;
  case eok_subtract:
    subtract_integer_values(&left, right, is_signed, overflow);
    break;
  case eok_multiply:
    multiply_integer_values(&left, right, is_signed, overflow);
    break;
  case eok_divide:
  case eok_remainder:
    if (right == 0)
      *problem = {op == eok_divide ? ec_divide_by_zero : ec_mod_by_zero, es_error};
    else if (op == eok_divide)
      divide_integer_values(&left, right, is_signed, overflow);
    else
      remainder_integer_values(&left, right, is_signed, overflow);
    break;
  case eok_bit_and:
    return left & right;
  case eok_bit_or:
    return left | right;
  case eok_bit_xor:
    return left ^ right;
  case eok_gnu_min:
    return cmp_integer_values(left, is_signed, right, is_signed) <= 0 ? left : right;
  case eok_gnu_max:
    return cmp_integer_values(left, is_signed, right, is_signed) >= 0 ? left : right;
  default:
    internal_error("arithmetic_value: bad operator");
  }
  return left;
}

static void fold_integer_arithmetic(an_expr_operator_kind op, const a_constant* left,
                                    const a_constant* right, a_type* result_type,
                                    a_constant* result, a_fold_context* context) {
  bool is_signed = int_constant_is_signed(left), overflow;
  a_fold_problem problem = {};
  uint64_t value;
  if (op == eok_shift_left || op == eok_shift_right)
    value = shifted_value(op, left, right, is_signed, &problem, &overflow);
  else
    value = arithmetic_value(op, left->value.int_value, right->value.int_value, is_signed, &problem,
                             &overflow);
  if (overflow && is_signed && op != eok_shift_left)
    problem = {ec_integer_overflow, integer_overflow_severity()};
  start_result(result_type, result, context);
  trunc_and_set_integer(value, is_signed, result, is_signed && op != eok_shift_left, false,
                        &problem.code, &problem.severity);
  report_fold_problem(&problem, result, context);
}

bool relation_holds(an_expr_operator_kind op, int order) {
  switch (op) {
  case eok_eq:
    return order == 0;
  case eok_ne:
    return order != 0;
  case eok_gt:
    return order > 0;
  case eok_lt:
    return order < 0;
  case eok_ge:
    return order >= 0;
  default:
    return order <= 0;
  }
}

static bool is_comparison(an_expr_operator_kind op) {
  return op >= eok_eq && op <= eok_le;
}

static void fold_comparison(an_expr_operator_kind op, const a_constant* left,
                            const a_constant* right, a_type* result_type, a_constant* result,
                            a_fold_context* context) {
  if (left->kind == con_address || right->kind == con_address) {
    fold_address_comparison(op, left, right, result_type, result, context);
    return;
  }
  if (is_floating_constant(left)) {
    fold_float_comparison(op, left, right, result_type, result, context);
    return;
  }
  // Pointers made from integers compare as unsigned values.
  bool is_signed = !is_pointer_valued(left) && int_constant_is_signed(left);
  int order =
      cmp_integer_values(left->value.int_value, is_signed, right->value.int_value, is_signed);
  start_result(result_type, result, context);
  result->value.int_value = relation_holds(op, order);
}

static void fold_logical(an_expr_operator_kind op, const a_constant* left, const a_constant* right,
                         a_type* result_type, a_constant* result, a_fold_context* context) {
  if (!constant_bool_value_known_at_compile_time(left) ||
      !constant_bool_value_known_at_compile_time(right)) {
    context->not_folded = true;
    return;
  }
  bool a = constant_bool_value(left), b = constant_bool_value(right);
  start_result(result_type, result, context);
  result->value.int_value = op == eok_land ? a && b : a || b;
}

static bool both_are_integers(const a_constant* left, const a_constant* right) {
  return left->kind == con_integer && right->kind == con_integer;
}

static bool both_are_floating(const a_constant* left, const a_constant* right) {
  return is_floating_constant(left) && is_floating_constant(right);
}

static bool is_foldable_operand(const a_constant* constant) {
  return constant->kind == con_integer || constant->kind == con_address ||
         is_floating_constant(constant);
}

void binary_operation(an_expr_operator_kind op, const a_constant* left, const a_constant* right,
                      a_type* result_type, a_constant* result, a_fold_context* context) {
  if (left->kind == con_error || right->kind == con_error) {
    set_error_constant(result);
  } else if (op == eok_comma) {
    copy_constant(right, result);
  } else if (!is_foldable_operand(left) || !is_foldable_operand(right)) {
    context->not_folded = true;
  } else if (op == eok_land || op == eok_lor) {
    fold_logical(op, left, right, result_type, result, context);
  } else if (op == eok_pointer_add || op == eok_pointer_subtract) {
    fold_pointer_arithmetic(op, left, right, result_type, result, context);
  } else if (op == eok_pointer_difference) {
    do_pdiff(left, right, result_type, result, context);
  } else if (is_floating_constant(left) != is_floating_constant(right)) {
    context->not_folded = true;
  } else if (is_comparison(op)) {
    fold_comparison(op, left, right, result_type, result, context);
  } else if (both_are_integers(left, right) && is_integral_or_enum_type(result_type)) {
    fold_integer_arithmetic(op, left, right, result_type, result, context);
  } else if (both_are_floating(left, right) && is_floating_type(result_type)) {
    fold_float_arithmetic(op, left, right, result_type, result, context);
  } else {
    context->not_folded = true;
  }
}

// ---- Unary operators ----

static void fold_negate(const a_constant* operand, a_type* result_type, a_constant* result,
                        a_fold_context* context) {
  bool is_signed = int_constant_is_signed(operand), overflow;
  uint64_t value = operand->value.int_value;
  a_fold_problem problem = {};
  negate_integer_value(&value, is_signed, &overflow);
  if (overflow)
    problem = {ec_integer_overflow, integer_overflow_severity()};
  start_result(result_type, result, context);
  trunc_and_set_integer(value, is_signed, result, is_signed, false, &problem.code,
                        &problem.severity);
  // A later change of sign is what -1u asked for.
  if (!is_signed && value != 0)
    result->overflow_or_wrap = true;
  report_fold_problem(&problem, result, context);
}

void unary_operation(an_expr_operator_kind op, const a_constant* operand, a_type* result_type,
                     a_constant* result, a_fold_context* context) {
  if (operand->kind == con_error) {
    set_error_constant(result);
  } else if (op == eok_not) {
    if (!is_foldable_operand(operand) || !constant_bool_value_known_at_compile_time(operand)) {
      context->not_folded = true;
      return;
    }
    start_result(result_type, result, context);
    result->value.int_value = !constant_bool_value(operand);
  } else if (is_floating_constant(operand)) {
    fold_float_unary(op, operand, result_type, result, context);
  } else if (operand->kind != con_integer || !is_integral_or_enum_type(operand->type)) {
    context->not_folded = true;
  } else if (op == eok_negate) {
    fold_negate(operand, result_type, result, context);
  } else {
    uint64_t value = operand->value.int_value;
    start_result(result_type, result, context);
    result->value.int_value =
        truncate_integer_value(op == eok_complement ? ~value : value, int_kind_of(result_type));
  }
}

// ---- Truth and null pointers ----

bool is_false_constant(const a_constant* constant) {
  return constant_bool_value_known_at_compile_time(constant) && !constant_bool_value(constant);
}

bool constant_bool_value_known_at_compile_time(const a_constant* constant) {
  switch (constant->kind) {
  case con_template_param:
  case con_address_difference:
  case con_dynamic_init:
    return false;
  case con_address:
    if (constant->value.address.base_kind == abk_variable)
      return variable_has_non_null_address(constant->value.address.base.variable);
    if (constant->value.address.base_kind == abk_routine)
      return routine_has_non_null_address(constant->value.address.base.routine);
    return true;
  default:
    return true;
  }
}

bool constant_bool_value(const a_constant* constant) {
  return is_floating_constant(constant) ? float_constant_is_true(constant)
                                        : !is_zero_constant(constant);
}

bool variable_has_non_null_address(const a_variable* variable) {
  return !variable->is_weak;
}

bool routine_has_non_null_address(const a_routine* routine) {
  return !routine->is_weak;
}

bool is_null_pointer_value(const a_constant* constant) {
  return constant->kind == con_integer && constant->value.int_value == 0 &&
         (is_pointer_type(constant->type) || is_nullptr_type(constant->type));
}

// C99 6.3.2.3 p3: an integer constant expression of value 0, or one cast to
// `void *`.
bool is_null_pointer_constant(const a_constant* constant) {
  if (constant->kind != con_integer || constant->value.int_value != 0)
    return false;
  if (is_nullptr_type(constant->type))
    return true;
  if (is_integral_or_enum_type(constant->type))
    return in_C_mode() || (constant->is_null_literal && !is_enum_type(constant->type)) ||
           std_version < 201103;
  return in_C_mode() && is_void_star_type(constant->type);
}

void folding_one_time_init() {
  // No variable of this module is kept for each unit.
}

void folding_init() {
  IEEE_handling_on_float_operation_exceptions = !strict_ansi_mode;
}

void folding_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
