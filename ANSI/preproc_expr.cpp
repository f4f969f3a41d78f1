// The constant expression of #if and #elif (C99 6.10.1): integers of the
// target's widest types, `long` before C99, with the operators of 6.6 that need
// no object.

#include "error.h"
#include "il_constants.h"
#include "lexical_int.h"
#include "macro.h"
#include "mode_words.h"
#include "preproc.h"
#include "target.h"
#include "types.h"

namespace {

struct a_pp_value {
  uint64_t bits; // two's complement; extended to 64 bits as the type asks
  bool is_unsigned;
  int width; // of the type, in bits
};

// How deep operands may nest.
constexpr int max_nesting = 500;

// The state of one evaluation. After a fault it only goes to the end.
struct a_pp_evaluation {
  bool failed;
  int nesting;
  int unevaluated; // how many short-circuits the current operand lies in
};

} // namespace

static a_pp_evaluation evaluation;

static a_pp_value scan_conditional();

// Cuts the value to its type.
static a_pp_value wrapped(a_pp_value value) {
  if (value.width >= 64)
    return value;
  uint64_t unused = ~uint64_t{0} << value.width;
  bool is_negative = !value.is_unsigned && (value.bits >> (value.width - 1) & 1) != 0;
  value.bits = is_negative ? value.bits | unused : value.bits & ~unused;
  return value;
}

// The width of the type that an `int` has here.
static int default_width() {
  bool has_intmax = in_cplusplus_mode() ? std_version >= 201103 || implicit_microsoft_cpp11_mode
                                        : std_version >= 199901;
  return precision_of_int_kind(has_intmax ? targ_intmax_kind : ik_long);
}

static a_pp_value signed_value(bool truth) {
  return {truth ? uint64_t{1} : uint64_t{0}, false, default_width()};
}

static a_pp_value fail(an_error_code code, const a_source_position& position) {
  if (!evaluation.failed)
    pos_error(code, &position);
  evaluation.failed = true;
  return signed_value(false);
}

static bool is_negative(a_pp_value value) {
  return !value.is_unsigned && static_cast<int64_t>(value.bits) < 0;
}

static void overflow(const a_source_position& position) {
  if (evaluation.unevaluated == 0)
    pos_warning(ec_integer_overflow, &position);
}

// The value of a calculation whose exact result may not fit.
static a_pp_value checked(a_pp_value value, bool overflowed, const a_source_position& position) {
  a_pp_value result = wrapped(value);
  if (!value.is_unsigned && (overflowed || result.bits != value.bits))
    overflow(position);
  return result;
}

// -- Operands ----------------------------------------------------------------------------

static a_pp_value value_of_constant() {
  int kind = const_for_curr_token.type != nullptr
                 ? const_for_curr_token.type->variant.integer.int_kind
                 : ik_int;
  a_pp_value value = {const_for_curr_token.value.int_value, !int_kind_is_signed(kind),
                      precision_of_int_kind(kind)};
  if (value.width < default_width())
    value.width = default_width();
  get_token();
  return wrapped(value);
}

static a_pp_value scan_parenthesized() {
  get_token();
  a_pp_value value = scan_conditional();
  if (curr_token != tok_rparen)
    return fail(ec_exp_rparen, pos_curr_token);
  get_token();
  return value;
}

static a_pp_value scan_primary() {
  switch (curr_token) {
  case tok_integer:
  case tok_char_constant:
    return value_of_constant();
  case tok_lparen:
    return scan_parenthesized();
  case tok_float_constant:
  case tok_string:
    return fail(ec_expr_not_integral, pos_curr_token);
  default:
    return fail(ec_exp_primary_expr, pos_curr_token);
  }
}

static a_pp_value negated(a_pp_value value, const a_source_position& position) {
  bool overflowed = value.bits == uint64_t{1} << 63;
  value.bits = -value.bits;
  return checked(value, overflowed, position);
}

// The increments and the like are tokens of expressions, but no operators here.
static bool is_operator_of_objects(a_token_kind kind) {
  return kind == tok_plus_plus || kind == tok_minus_minus || kind == tok_ampersand ||
         kind == tok_star;
}

// What would make the operand before it an object, a function or a member.
static bool is_postfix_operator(a_token_kind kind) {
  return kind == tok_lparen || kind == tok_lbracket || kind == tok_period || kind == tok_arrow ||
         kind == tok_plus_plus || kind == tok_minus_minus;
}

static a_pp_value scan_unary() {
  if (evaluation.failed || ++evaluation.nesting > max_nesting)
    return fail(ec_program_too_large, pos_curr_token);
  a_source_position position = pos_curr_token;
  a_token_kind op = curr_token;
  a_pp_value value;
  if (op == tok_plus || op == tok_minus || op == tok_compl || op == tok_not) {
    get_token();
    value = scan_unary();
    if (op == tok_minus)
      value = negated(value, position);
    else if (op == tok_compl)
      value = wrapped({~value.bits, value.is_unsigned, value.width});
    else if (op == tok_not)
      value = signed_value(value.bits == 0);
  } else if (is_operator_of_objects(op)) {
    value = fail(ec_bad_pp_operator, position);
  } else {
    value = scan_primary();
    if (is_postfix_operator(curr_token))
      value = fail(ec_bad_pp_operator, pos_curr_token);
  }
  --evaluation.nesting;
  return value;
}

// -- Operators of two operands ------------------------------------------------------------------

// Higher binds tighter; 0 for a token that is no operator of two operands.
static int precedence_of(a_token_kind kind) {
  switch (kind) {
  case tok_star:
  case tok_divide:
  case tok_remainder:
    return 10;
  case tok_plus:
  case tok_minus:
    return 9;
  case tok_shift_left:
  case tok_shift_right:
    return 8;
  case tok_lt:
  case tok_gt:
  case tok_le:
  case tok_ge:
    return 7;
  case tok_eq:
  case tok_ne:
    return 6;
  case tok_ampersand:
    return 5;
  case tok_excl_or:
    return 4;
  case tok_or:
    return 3;
  case tok_and_and:
    return 2;
  case tok_or_or:
    return 1;
  default:
    return 0;
  }
}

static a_pp_value divide(a_token_kind op, a_pp_value left, a_pp_value right,
                         const a_source_position& position) {
  bool is_division = op == tok_divide;
  if (right.bits == 0) {
    if (evaluation.unevaluated != 0)
      return right;
    return fail(is_division ? ec_divide_by_zero : ec_mod_by_zero, position);
  }
  if (left.is_unsigned) {
    left.bits = is_division ? left.bits / right.bits : left.bits % right.bits;
    return left;
  }
  int64_t a = static_cast<int64_t>(left.bits);
  int64_t b = static_cast<int64_t>(right.bits);
  if (is_division && b == -1)
    return negated(left, position);
  left.bits = is_division ? static_cast<uint64_t>(a / b)
              : b == -1   ? 0
                          : static_cast<uint64_t>(a % b);
  return left;
}

// A count that is negative shifts the other way round; one that is too large
// leaves nothing but the sign.
static a_pp_value shift(a_token_kind op, a_pp_value left, a_pp_value right,
                        const a_source_position& position) {
  bool to_left = op == tok_shift_left;
  uint64_t count = right.bits;
  uint64_t width = static_cast<uint64_t>(left.width);
  if (is_negative(right)) {
    if (evaluation.unevaluated == 0)
      pos_warning(ec_negative_shift_count, &position);
    to_left = !to_left;
    count = -count;
  } else if (count >= width && evaluation.unevaluated == 0) {
    pos_warning(ec_shift_count_too_large, &position);
  }
  uint64_t fill = !to_left && is_negative(left) ? UINT64_MAX : 0;
  if (count >= width) {
    left.bits = fill;
  } else if (count != 0) {
    left.bits = to_left ? left.bits << count : left.bits >> count | fill << (64 - count);
  }
  return wrapped(left);
}

static bool is_less(a_pp_value left, a_pp_value right) {
  return left.is_unsigned ? left.bits < right.bits
                          : static_cast<int64_t>(left.bits) < static_cast<int64_t>(right.bits);
}

static a_pp_value arithmetic(a_token_kind op, a_pp_value left, a_pp_value right,
                             const a_source_position& position) {
  int64_t result = 0;
  int64_t a = static_cast<int64_t>(left.bits);
  int64_t b = static_cast<int64_t>(right.bits);
  bool overflowed = false;
  switch (op) {
  case tok_plus:
    overflowed = __builtin_add_overflow(a, b, &result);
    left.bits += right.bits;
    break;
  case tok_minus:
    overflowed = __builtin_sub_overflow(a, b, &result);
    left.bits -= right.bits;
    break;
  default:
    overflowed = __builtin_mul_overflow(a, b, &result);
    left.bits *= right.bits;
    break;
  }
  return checked(left, overflowed, position);
}

// The usual arithmetic conversions (C99 6.3.1.8).
static void convert_to_common_type(a_pp_value* left, a_pp_value* right) {
  bool is_unsigned = left->is_unsigned || right->is_unsigned;
  if (left->width != right->width)
    is_unsigned = left->width > right->width ? left->is_unsigned : right->is_unsigned;
  left->width = right->width = left->width > right->width ? left->width : right->width;
  left->is_unsigned = right->is_unsigned = is_unsigned;
  *left = wrapped(*left);
  *right = wrapped(*right);
}

static a_pp_value apply(a_token_kind op, a_pp_value left, a_pp_value right,
                        const a_source_position& position) {
  if (op == tok_shift_left || op == tok_shift_right)
    return shift(op, left, right, position);
  convert_to_common_type(&left, &right);
  switch (op) {
  case tok_divide:
  case tok_remainder:
    return divide(op, left, right, position);
  case tok_lt:
    return signed_value(is_less(left, right));
  case tok_gt:
    return signed_value(is_less(right, left));
  case tok_le:
    return signed_value(!is_less(right, left));
  case tok_ge:
    return signed_value(!is_less(left, right));
  case tok_eq:
    return signed_value(left.bits == right.bits);
  case tok_ne:
    return signed_value(left.bits != right.bits);
  case tok_ampersand:
    left.bits &= right.bits;
    return left;
  case tok_excl_or:
    left.bits ^= right.bits;
    return left;
  case tok_or:
    left.bits |= right.bits;
    return left;
  default:
    return arithmetic(op, left, right, position);
  }
}

static a_pp_value scan_binary(int lowest);

// && and ||: the right operand may stand unevaluated.
static a_pp_value scan_logical(a_token_kind op, a_pp_value left, int precedence) {
  bool decides = op == tok_and_and ? left.bits == 0 : left.bits != 0;
  evaluation.unevaluated += decides;
  a_pp_value right = scan_binary(precedence + 1);
  evaluation.unevaluated -= decides;
  bool right_truth = right.bits != 0;
  return signed_value(op == tok_and_and ? !decides && right_truth : decides || right_truth);
}

// Operators that bind at least as tightly as `lowest`.
static a_pp_value scan_binary(int lowest) {
  a_pp_value left = scan_unary();
  for (;;) {
    a_token_kind op = curr_token;
    int precedence = precedence_of(op);
    if (evaluation.failed || precedence == 0 || precedence < lowest)
      return left;
    a_source_position position = pos_curr_token;
    get_token();
    if (op == tok_and_and || op == tok_or_or)
      left = scan_logical(op, left, precedence);
    else
      left = apply(op, left, scan_binary(precedence + 1), position);
  }
}

static a_pp_value scan_conditional() {
  a_pp_value condition = scan_binary(1);
  if (curr_token != tok_question || evaluation.failed)
    return condition;
  if (++evaluation.nesting > max_nesting)
    return fail(ec_program_too_large, pos_curr_token);
  bool truth = condition.bits != 0;
  get_token();
  evaluation.unevaluated += !truth;
  a_pp_value second = scan_conditional();
  evaluation.unevaluated -= !truth;
  if (curr_token != tok_colon)
    return fail(ec_exp_colon, pos_curr_token);
  get_token();
  evaluation.unevaluated += truth;
  a_pp_value third = scan_conditional();
  evaluation.unevaluated -= truth;
  --evaluation.nesting;
  convert_to_common_type(&second, &third);
  return truth ? second : third;
}

static bool is_assignment_operator(a_token_kind kind) {
  return kind >= tok_assign && kind <= tok_or_assign;
}

bool scan_pp_expression(a_constant* result) {
  evaluation = {};
  a_pp_value value = scan_conditional();
  bool is_operator = is_assignment_operator(curr_token) || curr_token == tok_comma;
  if (!evaluation.failed && is_operator)
    fail(ec_bad_pp_operator, pos_curr_token);
  if (evaluation.failed)
    value = signed_value(false);
  clear_constant(result, con_integer);
  set_unsigned_integer_constant(
      result, value.bits,
      static_cast<an_integer_kind>(value.is_unsigned ? targ_uintmax_kind : targ_intmax_kind));
  return !evaluation.failed;
}
