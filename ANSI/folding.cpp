// Constant folding: the choice of the operation by the kinds of its operands,
// operators on integer constants, and what a failure means at its place.

#include "folding.h"

#include "const_ints.h"
#include "error.h"
#include "expr.h"
#include "folding_int.h"
#include "il_types.h"
#include "lower_il.h"
#include "mode_words.h"
#include "scope_stk.h"
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

// A value that an `int` of 32 bits would hold, where it has fewer.
static bool depends_on_width_of_int(uint64_t value, bool is_signed, an_integer_kind kind) {
  if (!check_32bit_int_portability || (kind != ik_int && kind != ik_unsigned_int))
    return false;
  uint64_t mask = make_integer_value_mask(32);
  uint64_t most = kind == ik_int ? mask >> 1 : mask, least = kind == ik_int ? ~most : 0;
  return cmp_integer_values(value, is_signed, least, kind == ik_int) >= 0 &&
         cmp_integer_values(value, is_signed, most, kind == ik_int) <= 0;
}

void trunc_and_set_integer(uint64_t value, bool is_signed, a_constant* constant,
                           bool check_overflow, bool saturate, an_error_code* code,
                           an_error_severity* severity) {
  an_integer_kind kind = int_kind_of(constant->type);
  if (!in_range_for_integer_kind(value, is_signed, kind)) {
    if (*code == 0 && depends_on_width_of_int(value, is_signed, kind)) {
      *code = ec_folding_int;
      *severity = es_warning;
    }
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

static int width_of_integer_type(const a_type* type) {
  return precision_of_int_kind(int_kind_of(type));
}

void check_shift_count(const a_constant* count, a_type* left_type, a_type* full_left_type,
                       an_error_code* code) {
  if (count->kind != con_integer)
    return;
  bool is_negative = cmplit_integer_constant(count, 0) < 0;
  if (is_negative)
    *code = ec_negative_shift_count;
  else if (cmplit_integer_constant(count, width_of_integer_type(left_type)) >= 0)
    *code = ec_shift_count_too_large;
  if (check_misra_c_2004 &&
      (is_negative || cmplit_integer_constant(count, width_of_integer_type(full_left_type)) >= 0))
    *code = ec_misra_c_2004_12_8;
}

// ---- Binary operators on integers ----

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

// Pointers made from integers compare as unsigned values.
static void fold_integer_comparison(an_expr_operator_kind op, const a_constant* left,
                                    const a_constant* right, a_type* result_type,
                                    a_constant* result, const a_fold_context* context) {
  bool is_signed = is_integral_or_enum_type(left->type) && int_constant_is_signed(left);
  int order =
      cmp_integer_values(left->value.int_value, is_signed, right->value.int_value, is_signed);
  start_result(result_type, result, context);
  result->value.int_value = relation_holds(op, order);
}

static bool both_are(a_constant_kind kind, const a_constant* left, const a_constant* right) {
  return left->kind == kind && right->kind == kind;
}

static bool is_equality(an_expr_operator_kind op) {
  return op == eok_eq || op == eok_ne;
}

static void fold_comparison(an_expr_operator_kind op, const a_constant* left,
                            const a_constant* right, a_type* result_type, a_constant* result,
                            a_fold_context* context) {
  if (both_are(con_integer, left, right)) {
    fold_integer_comparison(op, left, right, result_type, result, context);
  } else if (is_floating_constant(left) && is_floating_constant(right)) {
    fold_float_comparison(op, left, right, result_type, result, context);
  } else if (both_are(con_ptr_to_member, left, right) && is_equality(op)) {
    bool equal = compare_constants(left, right, ccf_ignore_types);
    start_result(result_type, result, context);
    result->value.int_value = equal == (op == eok_eq);
  } else if (left->kind == con_address || right->kind == con_address) {
    fold_address_comparison(op, left, right, result_type, result, context);
  } else {
    context->not_folded = true;
  }
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

// ---- Any operands ----

static void fold_by_operator(an_expr_operator_kind op, const a_constant* left,
                             const a_constant* right, a_type* result_type, a_constant* result,
                             a_fold_context* context) {
  if (op == eok_comma)
    copy_constant(right, result);
  else if (op == eok_land || op == eok_lor)
    fold_logical(op, left, right, result_type, result, context);
  else if (op == eok_pointer_add || op == eok_pointer_subtract)
    fold_pointer_arithmetic(op, left, right, result_type, result, context);
  else if (op == eok_pointer_difference)
    do_pdiff(left, right, result_type, result, context);
  else if (is_comparison(op))
    fold_comparison(op, left, right, result_type, result, context);
  else if (both_are(con_integer, left, right) && is_integral_or_enum_type(result_type))
    fold_integer_arithmetic(op, left, right, result_type, result, context);
  else if (is_floating_constant(left) && is_floating_constant(right) &&
           is_floating_type(result_type))
    fold_float_arithmetic(op, left, right, result_type, result, context);
  else
    context->not_folded = true;
}

bool is_integer_valued_address(const a_constant* constant) {
  return constant->kind == con_address && is_integral_or_enum_type(constant->type);
}

static bool is_zero_integer(const a_constant* constant) {
  return constant->kind == con_integer && constant->value.int_value == 0;
}

static bool subtracts_integer_valued_addresses() {
  return gcc_mode || (gpp_mode && gnu_version < 40000);
}

// `(int)&object`: what it is as a number only the linker knows, so that little
// can be done with it.
static void fold_integer_valued_address(an_expr_operator_kind op, const a_constant* left,
                                        const a_constant* right, a_type* result_type,
                                        a_constant* result, a_fold_context* context) {
  bool both = is_integer_valued_address(left) && is_integer_valued_address(right);
  const a_constant* other = is_integer_valued_address(left) ? right : left;
  if (op == eok_add && other->kind == con_integer) {
    fold_pointer_arithmetic(eok_pointer_add, left, right, result_type, result, context);
  } else if (op == eok_subtract && right->kind == con_integer) {
    fold_pointer_arithmetic(eok_pointer_subtract, left, right, result_type, result, context);
  } else if (op == eok_subtract && both && subtracts_integer_valued_addresses()) {
    do_pdiff(left, right, result_type, result, context);
  } else if (op == eok_bit_and && gnu_mode && is_zero_integer(other)) {
    start_result(result_type, result, context);
    result->overflow_or_wrap = true;
  } else {
    context->not_folded = true;
  }
}

static bool is_dependent_constant(const a_constant* constant) {
  return constant->kind == con_template_param ||
         (constant->kind == con_aggregate && is_template_dependent_type(constant->type));
}

// In a template, what depends on its parameters waits for their arguments.
static bool is_dependent_operation(const a_constant* left, const a_constant* right,
                                   a_type* result_type) {
  bool in_template = in_cplusplus_mode() && !il_lowering_underway && depth_scope_stack >= 0 &&
                     scope_stack[depth_scope_stack].is_dependent;
  return in_template && (is_dependent_constant(left) || is_dependent_constant(right) ||
                         is_template_dependent_type(result_type));
}

// Whether the operand may stand in an integer constant expression (C99 6.6 p6).
static bool is_strict_integer(const a_constant* constant) {
  return constant->kind == con_integer && !constant->not_strict_constant &&
         (!constant->is_pointer_value || constant->value.int_value == 0);
}

void binary_operation(an_expr_operator_kind op, const a_constant* left, const a_constant* right,
                      a_type* result_type, a_constant* result, a_fold_context* context) {
  if (left->kind == con_error || right->kind == con_error) {
    set_error_constant(result);
    return;
  }
  bool is_strict = is_strict_integer(left) && is_strict_integer(right);
  if (is_dependent_operation(left, right, result_type))
    context->not_folded = context->error_reported = true;
  else if (left->kind == con_address_difference || right->kind == con_address_difference)
    context->not_folded = true;
  else if (is_integer_valued_address(left) || is_integer_valued_address(right))
    fold_integer_valued_address(op, left, right, result_type, result, context);
  else
    fold_by_operator(op, left, right, result_type, result, context);
  if (!context->not_folded)
    result->not_strict_constant = !is_strict;
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

static void fold_not(const a_constant* operand, a_type* result_type, a_constant* result,
                     a_fold_context* context) {
  if (!constant_bool_value_known_at_compile_time(operand)) {
    context->not_folded = true;
    return;
  }
  bool truth = constant_bool_value(operand);
  start_result(result_type, result, context);
  result->value.int_value = !truth;
}

static void fold_integer_unary(an_expr_operator_kind op, const a_constant* operand,
                               a_type* result_type, a_constant* result, a_fold_context* context) {
  an_error_code code = 0;
  an_error_severity severity = es_none;
  uint64_t value = operand->value.int_value;
  switch (op) {
  case eok_negate:
    fold_negate(operand, result_type, result, context);
    return;
  case eok_complement:
    value = ~value;
    break;
  case eok_imag_part:
    value = 0;
    break;
  case eok_unary_plus:
  case eok_real_part:
  case eok_conjugate:
    break;
  default:
    context->not_folded = true;
    return;
  }
  start_result(result_type, result, context);
  trunc_and_set_integer(value, int_constant_is_signed(operand), result, false, false, &code,
                        &severity);
}

void unary_operation(an_expr_operator_kind op, const a_constant* operand, a_type* result_type,
                     a_constant* result, a_fold_context* context) {
  bool is_strict = is_strict_integer(operand);
  if (operand->kind == con_error) {
    set_error_constant(result);
    return;
  }
  if (is_dependent_operation(operand, operand, result_type))
    context->not_folded = context->error_reported = true;
  else if (op == eok_not)
    fold_not(operand, result_type, result, context);
  else if (is_floating_constant(operand))
    fold_float_unary(op, operand, result_type, result, context);
  else if (operand->kind == con_integer && is_integral_or_enum_type(operand->type) &&
           is_integral_or_enum_type(result_type))
    fold_integer_unary(op, operand, result_type, result, context);
  else
    context->not_folded = true;
  if (!context->not_folded)
    result->not_strict_constant = !is_strict;
}

// ---- Truth and null pointers ----

bool is_false_constant(const a_constant* constant) {
  return constant_bool_value_known_at_compile_time(constant) && !constant_bool_value(constant);
}

static const an_address_value* label_of_address(const a_constant* constant) {
  bool is_label = constant->kind == con_address && constant->value.address.base_kind == abk_label;
  return is_label ? &constant->value.address : nullptr;
}

// Two labels whose distance is that of their offsets.
static bool is_known_difference(const an_address_difference_value* difference) {
  const an_address_value* a = label_of_address(difference->minuend);
  const an_address_value* b = label_of_address(difference->subtrahend);
  return a && b && a->base.label == b->base.label;
}

bool constant_bool_value_known_at_compile_time(const a_constant* constant) {
  switch (constant->kind) {
  case con_template_param:
  case con_dynamic_init:
    return false;
  case con_address_difference:
    return is_known_difference(&constant->value.address_difference);
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
  switch (constant->kind) {
  case con_float:
  case con_imaginary:
  case con_complex:
    return float_constant_is_true(constant);
  case con_ptr_to_member:
    return constant->value.ptr_to_member.is_routine || constant->value.ptr_to_member.member.field;
  case con_address_difference:
    return constant->value.address_difference.minuend->value.address.offset !=
           constant->value.address_difference.subtrahend->value.address.offset;
  default:
    return !is_zero_constant(constant);
  }
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

// C99 6.3.2.3 p3, C++11 4.10 p1: an integer constant expression of value 0 or, in
// C, one cast to `void *`.
bool is_null_pointer_constant(const a_constant* constant) {
  if (constant->kind != con_integer || constant->value.int_value != 0)
    return false;
  if (strict_ansi_mode && constant->not_strict_constant)
    return false;
  if (is_nullptr_type(constant->type))
    return true;
  if (is_integral_or_enum_type(constant->type))
    return in_C_mode() || !is_enum_type(constant->type);
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
