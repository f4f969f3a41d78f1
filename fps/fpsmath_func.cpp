// Roots, exponentials, remainders and roundings of the software format.
#include <algorithm>
#include <bit>

#include "fps_int.h"
#include "fpsconv.h"

static int invalid_argument(simul_fval* result) {
  fp_error |= fpe_invalid;
  *result = a_nan;
  return -1;
}

// The square root of a fraction in [1/4, 1), with 100 bits, left-justified; a
// rest sets the last bit.
static a_wide_word root_of_fraction(a_wide_word fraction) {
  constexpr int bits = 100;
  a_wide_word root = 0, rest = 0;
  for (int step = 0; step < bits; step++) {
    rest = rest << 2 | fraction >> 126;
    fraction <<= 2;
    const a_wide_word trial = root << 2 | 1;
    root <<= 1;
    if (rest >= trial) {
      rest -= trial;
      root |= 1;
    }
  }
  return root << (128 - bits) | (rest != 0);
}

int f_sqrt(const simul_fval* value, simul_fval* result) {
  an_unpacked wide = unpack(value);
  if (wide.kind == fc_nan || wide.kind == fc_zero)
    return *result = *value, 0;
  if (wide.negative)
    return invalid_argument(result);
  if (wide.kind == fc_infinity)
    return *result = *value, 0;
  if (wide.exponent % 2 != 0) {
    wide.mantissa = shift_right_sticky(wide.mantissa, 1);
    wide.exponent++;
  }
  wide.mantissa = root_of_fraction(wide.mantissa);
  wide.exponent /= 2;
  normalize(&wide);
  return pack(wide, result);
}

// The terms x^n / (n! ) of the exponential until they no longer count; those of
// a tiny x may leave the range without a word.
static simul_fval exponential_series(const simul_fval* x) {
  const unsigned status = fp_error;
  simul_fval sum = const_dig[1], term = const_dig[1];
  for (int n = 1; n < 40; n++) {
    const simul_fval divisor = float_of_int(n);
    f_mul(&term, x, &term);
    f_div(&term, &divisor, &term);
    f_add(&sum, &term, &sum);
  }
  fp_error = status;
  return sum;
}

// Twice the inverse hyperbolic tangent of t, for a small t.
static simul_fval twice_artanh(const simul_fval* t) {
  simul_fval square, power = *t, sum = *t;
  f_mul(t, t, &square);
  for (int n = 3; n < 90; n += 2) {
    const simul_fval divisor = float_of_int(n);
    simul_fval term;
    f_mul(&power, &square, &power);
    f_div(&power, &divisor, &term);
    f_add(&sum, &term, &sum);
  }
  f_add(&sum, &sum, &sum);
  return sum;
}

static const simul_fval& log_of_two() {
  // log 2 = 2 artanh(1/3)
  static const simul_fval value = [] {
    simul_fval third;
    f_div(&const_dig[1], &const_dig[3], &third);
    return twice_artanh(&third);
  }();
  return value;
}

static const simul_fval& log_of_ten() {
  static const simul_fval value = [] {
    simul_fval result;
    f_log(&const_ten, &result);
    return result;
  }();
  return value;
}

// Beyond this every exponential leaves the range.
static constexpr int64_t greatest_exponent = 24000;

int f_exp(const simul_fval* value, simul_fval* result) {
  const an_unpacked wide = unpack(value);
  if (wide.kind == fc_nan)
    return *result = *value, 0;
  if (wide.kind == fc_zero)
    return *result = const_dig[1], 0;
  if (wide.kind == fc_infinity)
    return *result = wide.negative ? pos_zero : pos_infin, 0;
  const simul_fval limit = float_of_int(greatest_exponent);
  simul_fval magnitude;
  f_abs(value, &magnitude);
  if (f_gt(&magnitude, &limit)) {
    fp_error |= wide.negative ? fpe_underflow : fpe_overflow;
    *result = wide.negative ? pos_zero : pos_infin;
    return -1;
  }
  // exp(x) = 2^k exp(r), with r below log 2
  simul_fval quotient, multiple, rest;
  int64_t twos;
  f_div(value, &log_of_two(), &quotient);
  f_ftoi(&quotient, &twos);
  multiple = float_of_int(twos);
  f_mul(&multiple, &log_of_two(), &multiple);
  f_sub(value, &multiple, &rest);
  *result = exponential_series(&rest);
  return f_ldexp(result, static_cast<int>(twos), result);
}

int f_log(const simul_fval* value, simul_fval* result) {
  const an_unpacked wide = unpack(value);
  if (wide.kind == fc_nan)
    return *result = *value, 0;
  if (wide.kind == fc_zero) {
    fp_error |= fpe_zero_division;
    *result = neg_infin;
    return -1;
  }
  if (wide.negative)
    return invalid_argument(result);
  if (wide.kind == fc_infinity)
    return *result = *value, 0;
  // log(f 2^k) = k log 2 + 2 artanh((f - 1) / (f + 1)), with f near 1
  simul_fval fraction, upper, lower;
  int twos;
  f_frexp(value, &fraction, &twos);
  const simul_fval bound = {{0xb504, 0, 0, 0, 0, 0}, 0, 0, {}}; // about the root of 1/2
  if (f_lt(&fraction, &bound)) {
    f_add(&fraction, &fraction, &fraction);
    twos--;
  }
  f_sub(&fraction, &const_dig[1], &upper);
  f_add(&fraction, &const_dig[1], &lower);
  f_div(&upper, &lower, &upper);
  const simul_fval near = twice_artanh(&upper);
  simul_fval far = float_of_int(twos);
  f_mul(&far, &log_of_two(), &far);
  return f_add(&far, &near, result);
}

int f_log10(const simul_fval* value, simul_fval* result) {
  const int status = f_log(value, result);
  return status != 0 ? status : f_div(result, &log_of_ten(), result);
}

static bool is_whole(const simul_fval* value) {
  simul_fval whole;
  f_trunc(value, &whole);
  return f_eq(value, &whole);
}

// Of a whole number; one that needs more than 128 bits, or an infinity, is even.
static bool is_odd(const simul_fval* value) {
  const an_unpacked wide = unpack(value);
  return wide.kind == fc_finite && wide.exponent <= 128 &&
         (wide.mantissa >> (128 - wide.exponent) & 1) != 0;
}

// Whole powers up to this are multiplied out.
static constexpr int64_t greatest_whole_power = 1024;

// Whether the power of a finite value is multiplied out.
static bool is_small_whole_power(const simul_fval* power) {
  const simul_fval limit = float_of_int(greatest_whole_power);
  simul_fval magnitude;
  f_abs(power, &magnitude);
  return f_le(&magnitude, &limit) && is_whole(power);
}

static int power_by_squares(const simul_fval* base, uint64_t exponent, simul_fval* result) {
  simul_fval square = *base, product = const_dig[1];
  int status = 0;
  for (; exponent != 0 && status == 0; exponent >>= 1) {
    if (exponent & 1)
      status = f_mul(&product, &square, &product);
    if (exponent > 1 && status == 0)
      status = f_mul(&square, &square, &square);
  }
  *result = status == 0 ? product : square;
  return status;
}

// Of the reciprocal for a negative power, since the positive one could leave the
// range at the other end.
static int whole_power(const simul_fval* base, int64_t power, simul_fval* result) {
  if (power >= 0)
    return power_by_squares(base, static_cast<uint64_t>(power), result);
  simul_fval reciprocal;
  const int status = f_div(&const_dig[1], base, &reciprocal);
  if (status == 0)
    return power_by_squares(&reciprocal, static_cast<uint64_t>(-power), result);
  // Of a zero.
  set_special(reciprocal, reciprocal.sign != 0 && power % 2 != 0, result);
  return status;
}

// The power of a magnitude; f_pow has dealt with the signs.
static int positive_power(const simul_fval* base, const simul_fval* power, simul_fval* result) {
  if (f_is_zero(base)) {
    if (!power->sign)
      return *result = pos_zero, 0;
    fp_error |= fpe_zero_division;
    *result = pos_infin;
    return -1;
  }
  if (f_eq(base, &const_dig[1]))
    return *result = const_dig[1], 0;
  simul_fval exponent;
  f_log(base, &exponent);
  f_mul(&exponent, power, &exponent);
  return f_exp(&exponent, result);
}

int f_pow(const simul_fval* base, const simul_fval* power, simul_fval* result) {
  if (f_is_zero(power) || f_eq(base, &const_dig[1]))
    return *result = const_dig[1], 0;
  if (f_is_nan(base) || f_is_nan(power))
    return *result = a_nan, 0;
  if (is_small_whole_power(power)) {
    int64_t count;
    f_ftoi(power, &count);
    return whole_power(base, count, result);
  }
  const bool whole = is_whole(power);
  if (base->sign && !f_is_zero(base) && !f_is_infinity(base) && !whole)
    return invalid_argument(result);
  const bool negative = base->sign && whole && is_odd(power);
  simul_fval magnitude;
  f_abs(base, &magnitude);
  const int status = positive_power(&magnitude, power, result);
  result->sign = negative;
  return status;
}

// The remainder of the mantissas, one bit of the quotient at a time.
static an_unpacked remainder_of(an_unpacked a, const an_unpacked& b) {
  int steps = a.exponent - b.exponent;
  bool carry = false;
  for (;; steps--) {
    if (carry || a.mantissa >= b.mantissa)
      a.mantissa -= b.mantissa;
    if (steps == 0)
      break;
    carry = a.mantissa >> 127 != 0;
    a.mantissa <<= 1;
  }
  a.exponent = b.exponent;
  normalize(&a);
  return a;
}

int f_fmod(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  const an_unpacked x = unpack(a), y = unpack(b);
  if (x.kind == fc_nan || y.kind == fc_nan)
    return *result = a_nan, 0;
  if (x.kind == fc_infinity || y.kind == fc_zero)
    return invalid_argument(result);
  if (x.kind == fc_zero || y.kind == fc_infinity || x.exponent < y.exponent)
    return *result = *a, 0;
  return pack(remainder_of(x, y), result);
}

int f_trunc(const simul_fval* value, simul_fval* result) {
  an_unpacked wide = unpack(value);
  *result = *value;
  if (wide.kind != fc_finite || wide.exponent >= 128)
    return 0;
  if (wide.exponent <= 0)
    return set_special(pos_zero, wide.negative, result);
  wide.mantissa = wide.mantissa >> (128 - wide.exponent) << (128 - wide.exponent);
  return pack(wide, result);
}

int f_int(const simul_fval* value, simul_fval* result) {
  return f_trunc(value, result);
}

int f_modf(const simul_fval* value, simul_fval* whole, simul_fval* fraction) {
  const simul_fval operand = *value;
  f_trunc(&operand, whole);
  if (f_is_infinity(&operand))
    return set_special(pos_zero, operand.sign, fraction);
  f_sub(&operand, whole, fraction);
  if (!f_is_nan(fraction))
    fraction->sign = operand.sign;
  return 0;
}

int f_frexp(const simul_fval* value, simul_fval* fraction, int* exponent) {
  an_unpacked wide = unpack(value);
  *exponent = 0;
  *fraction = *value;
  if (wide.kind != fc_finite)
    return 0;
  *exponent = wide.exponent;
  wide.exponent = 0;
  return pack(wide, fraction);
}

int f_ldexp(const simul_fval* value, int exponent, simul_fval* result) {
  an_unpacked wide = unpack(value);
  // Far beyond the range of exponents, but far from the ends of the word.
  wide.exponent += std::clamp(exponent, -200000, 200000);
  return pack(wide, result);
}

int f_floor(const simul_fval* value, simul_fval* result) {
  const simul_fval operand = *value;
  f_trunc(&operand, result);
  if (f_lt(&operand, result))
    return f_sub(result, &const_dig[1], result);
  return 0;
}

int f_ceil(const simul_fval* value, simul_fval* result) {
  const simul_fval operand = *value;
  f_trunc(&operand, result);
  if (f_gt(&operand, result))
    return f_add(result, &const_dig[1], result);
  return 0;
}

// To the nearest whole number, halves away from zero.
int f_round(const simul_fval* value, simul_fval* result) {
  simul_fval fraction, half, whole;
  f_modf(value, &whole, &fraction);
  f_abs(&fraction, &fraction);
  f_ldexp(&const_dig[1], -1, &half);
  const bool up = f_ge(&fraction, &half);
  const bool negative = value->sign != 0;
  *result = whole;
  if (!up)
    return 0;
  return negative ? f_sub(&whole, &const_dig[1], result) : f_add(&whole, &const_dig[1], result);
}
