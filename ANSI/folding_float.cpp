// Constant folding: operators on floating constants. Every step is rounded to
// the format of the target (IEEE 754), so no intermediate result is wider.

#include "const_ints.h"
#include "error.h"
#include "float_pt.h"
#include "folding_int.h"
#include "mode_words.h"
#include "types.h"

// ---- Parts ----

// A floating constant by its parts. A part that the kind of the value lacks is
// no zero: real + imaginary keeps the sign of a zero (C99 G.5).
struct a_float_parts {
  bool has_real;
  bool has_imaginary;
  a_float_value real;
  a_float_value imaginary;
};

bool is_floating_constant(const a_constant* constant) {
  return constant->kind == con_float || constant->kind == con_imaginary ||
         constant->kind == con_complex;
}

static a_float_parts parts_of_constant(const a_constant* constant) {
  switch (constant->kind) {
  case con_complex:
    return {true, true, constant->value.complex_value->real,
            constant->value.complex_value->imaginary};
  case con_imaginary:
    return {false, true, pos_zero, constant->value.float_value};
  default:
    return {true, false, constant->value.float_value, pos_zero};
  }
}

int float_kind_of(const a_type* type) {
  return skip_typerefs(type)->variant.float_kind;
}

// The result has the kind of its type; a part that the parts lack is zero.
static void store_parts(const a_float_parts* parts, a_type* type, a_constant* result,
                        const a_fold_context* context) {
  make_zero_of_proper_type(type, result);
  if (context->position)
    result->position = *context->position;
  if (result->kind == con_complex)
    *result->value.complex_value = {parts->real, parts->imaginary};
  else
    result->value.float_value = result->kind == con_float ? parts->real : parts->imaginary;
}

// ---- One step ----

// The kind in which an operation is done, and whether a step of it has failed.
struct a_float_operation {
  int kind;
  bool failed;
  // A zero divisor gives an infinity or a NaN in silence (C99 F.8.2).
  bool zero_divisor_passes;
};

using a_float_step = void(int kind, const a_float_value* a, const a_float_value* b,
                          a_float_value* result, bool* failed, bool* inexact);

static a_float_value step(a_float_step* function, a_float_operation* operation,
                          const a_float_value& a, const a_float_value& b) {
  a_float_value result;
  bool failed, inexact;
  function(operation->kind, &a, &b, &result, &failed, &inexact);
  operation->failed |= failed;
  return result;
}

static a_float_value quotient(a_float_operation* operation, const a_float_value& a,
                              const a_float_value& b) {
  a_float_operation apart = *operation;
  a_float_value result = step(fp_divide, &apart, a, b);
  if (!(f_is_zero(&b) && operation->zero_divisor_passes))
    operation->failed |= apart.failed;
  return result;
}

static a_float_value negated(a_float_operation* operation, const a_float_value& value) {
  a_float_value result;
  bool failed;
  fp_negate(operation->kind, &value, &result, &failed);
  return result;
}

// ---- Operators ----

static a_float_value sum_of_parts(a_float_step* function, a_float_operation* operation,
                                  bool has_left, const a_float_value& left, bool has_right,
                                  const a_float_value& right) {
  if (has_left && has_right)
    return step(function, operation, left, right);
  if (!has_right)
    return left;
  return function == fp_subtract ? negated(operation, right) : right;
}

static a_float_parts add_or_subtract(a_float_step* function, a_float_operation* operation,
                                     const a_float_parts& a, const a_float_parts& b) {
  return {a.has_real || b.has_real, a.has_imaginary || b.has_imaginary,
          sum_of_parts(function, operation, a.has_real, a.real, b.has_real, b.real),
          sum_of_parts(function, operation, a.has_imaginary, a.imaginary, b.has_imaginary,
                       b.imaginary)};
}

static bool is_complex_value(const a_float_parts& parts) {
  return parts.has_real && parts.has_imaginary;
}

static const a_float_value& only_part(const a_float_parts& parts) {
  return parts.has_real ? parts.real : parts.imaginary;
}

// Real or imaginary by real or imaginary.
static a_float_parts product_of_single_parts(a_float_operation* operation, const a_float_parts& a,
                                             const a_float_parts& b) {
  a_float_value product = step(fp_multiply, operation, only_part(a), only_part(b));
  if (a.has_real != b.has_real)
    return {false, true, pos_zero, product};
  if (a.has_imaginary)
    product = negated(operation, product);
  return {true, false, product, pos_zero};
}

static a_float_parts quotient_of_single_parts(a_float_operation* operation, const a_float_parts& a,
                                              const a_float_parts& b) {
  a_float_value value = quotient(operation, only_part(a), only_part(b));
  if (a.has_real == b.has_real)
    return {true, false, value, pos_zero};
  if (b.has_imaginary)
    value = negated(operation, value);
  return {false, true, pos_zero, value};
}

static a_float_parts multiply(a_float_operation* operation, const a_float_parts& x,
                              const a_float_parts& y) {
  if (!is_complex_value(x) && !is_complex_value(y))
    return product_of_single_parts(operation, x, y);
  const a_float_value &a = x.real, &b = x.imaginary, &c = y.real, &d = y.imaginary;
  a_float_value ac = step(fp_multiply, operation, a, c), bd = step(fp_multiply, operation, b, d);
  a_float_value ad = step(fp_multiply, operation, a, d), bc = step(fp_multiply, operation, b, c);
  return {true, true, step(fp_subtract, operation, ac, bd), step(fp_add, operation, ad, bc)};
}

static a_float_parts divide(a_float_operation* operation, const a_float_parts& x,
                            const a_float_parts& y) {
  if (!is_complex_value(x) && !is_complex_value(y))
    return quotient_of_single_parts(operation, x, y);
  const a_float_value &a = x.real, &b = x.imaginary, &c = y.real, &d = y.imaginary;
  a_float_value cc = step(fp_multiply, operation, c, c), dd = step(fp_multiply, operation, d, d);
  a_float_value ac = step(fp_multiply, operation, a, c), bd = step(fp_multiply, operation, b, d);
  a_float_value bc = step(fp_multiply, operation, b, c), ad = step(fp_multiply, operation, a, d);
  a_float_value magnitude = step(fp_add, operation, cc, dd);
  return {true, true, quotient(operation, step(fp_add, operation, ac, bd), magnitude),
          quotient(operation, step(fp_subtract, operation, bc, ad), magnitude)};
}

static a_float_parts smaller_or_greater(an_expr_operator_kind op, const a_float_parts& a,
                                        const a_float_parts& b) {
  bool takes_left = op == eok_gnu_min ? f_lt(&a.real, &b.real) : f_gt(&a.real, &b.real);
  return takes_left ? a : b;
}

static bool is_zero_parts(const a_float_parts& parts) {
  return f_is_zero(&parts.real) && f_is_zero(&parts.imaginary);
}

static bool is_division(an_expr_operator_kind op) {
  return op == eok_divide || op == eok_imag_divide;
}

// Whether the operator has a meaning for floating operands; *result is its
// value then.
static bool operate(an_expr_operator_kind op, a_float_operation* operation, const a_float_parts& a,
                    const a_float_parts& b, a_float_parts* result) {
  switch (op) {
  case eok_add:
  case eok_real_plus_imag:
  case eok_imag_plus_real:
    *result = add_or_subtract(fp_add, operation, a, b);
    return true;
  case eok_subtract:
  case eok_real_minus_imag:
  case eok_imag_minus_real:
    *result = add_or_subtract(fp_subtract, operation, a, b);
    return true;
  case eok_multiply:
  case eok_imag_multiply:
    *result = multiply(operation, a, b);
    return true;
  case eok_divide:
  case eok_imag_divide:
    *result = divide(operation, a, b);
    return true;
  case eok_gnu_min:
  case eok_gnu_max:
    *result = smaller_or_greater(op, a, b);
    return true;
  default:
    return false;
  }
}

void fold_float_arithmetic(an_expr_operator_kind op, const a_constant* left,
                           const a_constant* right, a_type* result_type, a_constant* result,
                           a_fold_context* context) {
  a_float_parts a = parts_of_constant(left), b = parts_of_constant(right), value;
  a_float_operation operation = {float_kind_of(result_type), false,
                                 IEEE_handling_on_float_operation_exceptions != 0};
  a_fold_problem problem = {};
  if (!operate(op, &operation, a, b, &value)) {
    context->not_folded = true;
    return;
  }
  if (is_division(op) && is_zero_parts(b) && !operation.zero_divisor_passes)
    problem = {ec_divide_by_zero, es_error};
  else if (operation.failed)
    problem = {is_complex_type(result_type) ? ec_bad_complex_operation_result
                                            : ec_bad_float_operation_result,
               es_error};
  store_parts(&value, result_type, result, context);
  report_fold_problem(&problem, result, context);
}

// ---- Comparison ----

void fold_float_comparison(an_expr_operator_kind op, const a_constant* left,
                           const a_constant* right, a_type* result_type, a_constant* result,
                           const a_fold_context* context) {
  a_float_parts a = parts_of_constant(left), b = parts_of_constant(right);
  int kind = float_kind_of(left->type);
  bool unordered, imaginary_unordered;
  int order = fp_compare(kind, &a.real, &b.real, &unordered);
  int imaginary_order = fp_compare(kind, &a.imaginary, &b.imaginary, &imaginary_unordered);
  // Of two values with one order both lack the other part, which is equal then.
  if (order == 0)
    order = imaginary_order;
  start_result(result_type, result, context);
  result->value.int_value =
      unordered || imaginary_unordered ? op == eok_ne : relation_holds(op, order);
}

// ---- Unary operators ----

static bool unary_parts(an_expr_operator_kind op, const a_float_parts& operand,
                        a_float_operation* operation, a_float_parts* result) {
  *result = operand;
  switch (op) {
  case eok_unary_plus:
    return true;
  case eok_negate:
    if (operand.has_real)
      result->real = negated(operation, operand.real);
    if (operand.has_imaginary)
      result->imaginary = negated(operation, operand.imaginary);
    return true;
  case eok_complement: // of GNU C
  case eok_conjugate:
    if (operand.has_imaginary)
      result->imaginary = negated(operation, operand.imaginary);
    return true;
  case eok_real_part:
    *result = {true, false, operand.real, pos_zero};
    return true;
  case eok_imag_part:
    *result = {true, false, operand.imaginary, pos_zero};
    return true;
  default:
    return false;
  }
}

void fold_float_unary(an_expr_operator_kind op, const a_constant* operand, a_type* result_type,
                      a_constant* result, a_fold_context* context) {
  a_float_operation operation = {float_kind_of(result_type), false, true};
  a_float_parts value;
  if (!is_floating_type(result_type) ||
      !unary_parts(op, parts_of_constant(operand), &operation, &value)) {
    context->not_folded = true;
    return;
  }
  store_parts(&value, result_type, result, context);
}

bool float_constant_is_true(const a_constant* constant) {
  return !is_zero_parts(parts_of_constant(constant));
}

// ---- Conversion (C99 6.3.1.4 to 6.3.1.7, G.4) ----

static an_error_severity lossy_conversion_severity() {
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

static a_float_value in_kind(const a_float_value& value, int from, int to,
                             a_fold_problem* problem) {
  a_float_value result;
  bool overflow, underflow;
  fp_change_kind(&value, from, &result, to, &overflow, &underflow);
  if (overflow)
    *problem = {ec_float_to_float_conversion, lossy_conversion_severity()};
  return result;
}

void conv_float_to_float(a_constant* constant, a_type* type, a_fold_problem* problem) {
  int from = float_kind_of(constant->type), to = float_kind_of(type);
  a_float_parts parts = parts_of_constant(constant);
  parts.real = in_kind(parts.real, from, to, problem);
  parts.imaginary = in_kind(parts.imaginary, from, to, problem);
  set_constant_kind(constant, is_real_floating_type(type) ? con_float
                              : is_complex_type(type)     ? con_complex
                                                          : con_imaginary);
  constant->type = type;
  if (constant->kind == con_complex)
    *constant->value.complex_value = {parts.real, parts.imaginary};
  else
    constant->value.float_value = constant->kind == con_float ? parts.real : parts.imaginary;
}

void conv_integer_value_to_float(uint64_t word, bool is_signed, a_float_value* value, int kind,
                                 bool* failed) {
  if (is_signed)
    fp_host_large_integer_to_float(kind, static_cast<int64_t>(word), value, failed);
  else
    fp_host_large_unsigned_to_float(kind, word, value, failed);
}

static bool is_exact_float(uint64_t word, bool is_signed, const a_float_value* value) {
  bool failed;
  uint64_t back = is_signed ? static_cast<uint64_t>(fp_to_host_large_integer(value, &failed))
                            : fp_to_host_large_unsigned(value, &failed);
  return !failed && back == word;
}

void conv_integer_to_float(a_constant* constant, a_type* type, bool warn, a_fold_problem* problem) {
  uint64_t word = constant->value.int_value;
  bool is_signed = int_constant_is_signed(constant), failed;
  a_float_value value;
  conv_integer_value_to_float(word, is_signed, &value, float_kind_of(type), &failed);
  if (warn && !is_imaginary_type(type) && !is_exact_float(word, is_signed, &value))
    *problem = {ec_integer_to_float_conversion, es_remark};
  set_constant_kind(constant, con_float);
  constant->value.float_value = value;
  constant->type = float_type(float_kind_of(type));
  conv_float_to_float(constant, type, problem);
}

static bool saturates_floats() {
  return gcc_mode && gnu_version >= 30400;
}

// The word of the truncated value in the target's signedness.
static uint64_t truncated_word(const a_float_value* value, int target_kind, bool* failed) {
  // A value above -1 is zero in every kind, also in one without sign.
  if (fp_is_negative(value) || int_kind_is_signed(target_kind)) {
    int64_t word = fp_to_host_large_integer(value, failed);
    *failed |= !in_range_for_integer_kind(static_cast<uint64_t>(word), true, target_kind);
    return static_cast<uint64_t>(word);
  }
  uint64_t word = fp_to_host_large_unsigned(value, failed);
  *failed |= !in_range_for_integer_kind(word, false, target_kind);
  return word;
}

void conv_float_to_integer(a_constant* constant, a_type* type, bool is_explicit,
                           a_fold_problem* problem) {
  a_float_value value = parts_of_constant(constant).real;
  int kind = int_kind_of(type);
  bool failed;
  uint64_t word = truncated_word(&value, kind, &failed);
  if (failed) {
    *problem = {ec_float_to_integer_conversion, is_explicit && gcc_mode ? es_warning : es_error};
    if (saturates_floats())
      word = make_saturated_integer_for_float(&value, kind);
  }
  set_constant_kind(constant, con_integer);
  constant->type = type;
  constant->value.int_value = truncate_integer_value(word, kind);
}
