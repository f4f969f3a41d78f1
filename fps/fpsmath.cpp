#include "fpsmath.h"

#include <bit>
#include <cstring>

#include "fps_int.h"

thread_local unsigned fp_error;

// A value of one digit, whose exponent is 16.
static constexpr simul_fval small_value(uint16_t value) {
  return {{value, 0, 0, 0, 0, 0}, value == 0 ? zero_exponent : 16, 0, {}};
}

const simul_fval pos_zero = {{}, zero_exponent, 0, {}};
const simul_fval neg_zero = {{}, zero_exponent, 1, {}};
const simul_fval pos_infin = {{}, special_exponent, 0, {}};
const simul_fval neg_infin = {{}, special_exponent, 1, {}};
const simul_fval a_nan = {{0xc000, 0, 0, 0, 0, 0}, special_exponent, 0, {}};
const simul_fval const_ten = small_value(10);
const simul_fval const_sixteen = small_value(16);
const simul_fval const_dig[16] = {
    small_value(0),  small_value(1),  small_value(2),  small_value(3),
    small_value(4),  small_value(5),  small_value(6),  small_value(7),
    small_value(8),  small_value(9),  small_value(10), small_value(11),
    small_value(12), small_value(13), small_value(14), small_value(15),
};

// Unused low bits of the wide word beside a stored mantissa of 96 bits.
static constexpr int guard_bits = 32;

// Beyond the range the result is special, and told by fp_error.
static int out_of_range(unsigned error, bool negative, simul_fval* result) {
  fp_error |= error;
  set_special(error == fpe_overflow ? pos_infin : pos_zero, negative, result);
  return -1;
}

int set_special(const simul_fval& special, bool negative, simul_fval* result) {
  *result = special;
  result->sign = negative;
  return 0;
}

static int invalid_operation(simul_fval* result) {
  fp_error |= fpe_invalid;
  *result = a_nan;
  return -1;
}

bool f_is_infinity(const simul_fval* value) {
  return value->exponent == special_exponent && value->mantissa[0] == 0;
}

bool f_is_nan(const simul_fval* value) {
  return value->exponent == special_exponent && value->mantissa[0] != 0;
}

static a_wide_word get_mantissa(const simul_fval* value) {
  a_wide_word result = 0;
  for (uint16_t word : value->mantissa)
    result = result << 16 | word;
  return result << guard_bits;
}

static void put_mantissa(a_wide_word mantissa, simul_fval* value) {
  mantissa >>= guard_bits;
  for (int i = 6; i-- > 0; mantissa >>= 16)
    value->mantissa[i] = static_cast<uint16_t>(mantissa);
}

bool f_is_zero(const simul_fval* value) {
  return value->exponent != special_exponent && get_mantissa(value) == 0;
}

a_wide_word shift_right_sticky(a_wide_word word, int count) {
  if (count <= 0)
    return word;
  if (count > 127)
    return word != 0;
  const a_wide_word lost = word & ((a_wide_word{1} << count) - 1);
  return word >> count | (lost != 0);
}

static int leading_zeros(a_wide_word word) {
  const uint64_t high = static_cast<uint64_t>(word >> 64);
  return high != 0 ? std::countl_zero(high) : 64 + std::countl_zero(static_cast<uint64_t>(word));
}

void normalize(an_unpacked* value) {
  if (value->mantissa == 0) {
    value->kind = fc_zero;
    return;
  }
  const int zeros = leading_zeros(value->mantissa);
  value->mantissa <<= zeros;
  value->exponent -= zeros;
  value->kind = fc_finite;
}

an_unpacked unpack(const simul_fval* value) {
  an_unpacked result = {get_mantissa(value), value->exponent, value->sign != 0, fc_finite};
  if (value->exponent == special_exponent)
    result.kind = value->mantissa[0] == 0 ? fc_infinity : fc_nan;
  else
    normalize(&result);
  return result;
}

int pack(const an_unpacked& value, simul_fval* result) {
  switch (value.kind) {
  case fc_zero:
    return set_special(pos_zero, value.negative, result);
  case fc_infinity:
    return set_special(pos_infin, value.negative, result);
  case fc_nan:
    return set_special(a_nan, value.negative, result);
  case fc_finite:
    break;
  }
  // The shift that f_align_radix_pt would make, without losing the last bit.
  const int32_t aligned = (value.exponent + 15) & ~15;
  if (aligned >= special_exponent)
    return out_of_range(fpe_overflow, value.negative, result);
  if (value.exponent < zero_exponent)
    return out_of_range(fpe_underflow, value.negative, result);
  const int shift = aligned - value.exponent + guard_bits;
  put_mantissa(shift_right_sticky(value.mantissa, shift) << guard_bits, result);
  result->exponent = aligned;
  result->sign = value.negative;
  memset(result->unused, 0, sizeof result->unused);
  return 0;
}

int f_align_radix_pt(simul_fval* value) {
  if (value->exponent == special_exponent || value->exponent == zero_exponent)
    return 0;
  const int32_t aligned = (value->exponent + 15) & ~15;
  if (aligned >= special_exponent)
    return out_of_range(fpe_overflow, value->sign != 0, value);
  put_mantissa(get_mantissa(value) >> (aligned - value->exponent), value);
  value->exponent = aligned;
  return 0;
}

int f_left_justify(const simul_fval* value, simul_fval* result) {
  *result = *value;
  if (value->exponent == special_exponent)
    return 0;
  an_unpacked wide = unpack(value);
  if (wide.kind == fc_zero)
    return set_special(pos_zero, wide.negative, result);
  if (wide.exponent < zero_exponent)
    return out_of_range(fpe_underflow, wide.negative, result);
  put_mantissa(wide.mantissa, result);
  result->exponent = wide.exponent;
  return 0;
}

simul_fval float_of_int(int64_t value) {
  const uint64_t magnitude =
      value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  an_unpacked wide = {magnitude, 128, value < 0, fc_finite};
  normalize(&wide);
  simul_fval result;
  pack(wide, &result);
  return result;
}

// Whether one of the operands is a NaN, which is then the result.
static bool takes_nan(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  const simul_fval* nan = f_is_nan(a) ? a : f_is_nan(b) ? b : nullptr;
  if (nan == nullptr)
    return false;
  *result = *nan;
  return true;
}

// The sum of magnitudes, or the difference: a is the greater, both are finite.
static int add_magnitudes(an_unpacked a, const an_unpacked& b, simul_fval* result) {
  const a_wide_word addend = shift_right_sticky(b.mantissa, a.exponent - b.exponent);
  if (a.negative != b.negative) {
    a.mantissa -= addend;
    if (a.mantissa == 0)
      a.negative = false;
  } else {
    a.mantissa += addend;
    if (a.mantissa < addend) {
      a.mantissa = shift_right_sticky(a.mantissa, 1) | a_wide_word{1} << 127;
      a.exponent++;
    }
  }
  normalize(&a);
  return pack(a, result);
}

static bool magnitude_less(const an_unpacked& a, const an_unpacked& b) {
  if (a.exponent != b.exponent)
    return a.exponent < b.exponent;
  return a.mantissa < b.mantissa;
}

static int add_unpacked(const an_unpacked& a, const an_unpacked& b, simul_fval* result) {
  if (a.kind == fc_infinity && b.kind == fc_infinity && a.negative != b.negative)
    return invalid_operation(result);
  if (a.kind == fc_infinity)
    return pack(a, result);
  if (b.kind == fc_infinity)
    return pack(b, result);
  // Zeros of different signs add up to the positive one.
  if (a.kind == fc_zero && b.kind == fc_zero)
    return set_special(pos_zero, a.negative && b.negative, result);
  if (a.kind == fc_zero)
    return pack(b, result);
  if (b.kind == fc_zero)
    return pack(a, result);
  return magnitude_less(a, b) ? add_magnitudes(b, a, result) : add_magnitudes(a, b, result);
}

int f_add(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  if (takes_nan(a, b, result))
    return 0;
  return add_unpacked(unpack(a), unpack(b), result);
}

int f_sub(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  if (takes_nan(a, b, result))
    return 0;
  an_unpacked subtrahend = unpack(b);
  subtrahend.negative = !subtrahend.negative;
  return add_unpacked(unpack(a), subtrahend, result);
}

a_wide_word multiply_high(a_wide_word a, a_wide_word b) {
  const uint64_t a1 = static_cast<uint64_t>(a >> 64), a0 = static_cast<uint64_t>(a);
  const uint64_t b1 = static_cast<uint64_t>(b >> 64), b0 = static_cast<uint64_t>(b);
  const a_wide_word low = a_wide_word{a0} * b0;
  const a_wide_word cross1 = a_wide_word{a1} * b0;
  const a_wide_word cross2 = a_wide_word{a0} * b1;
  const a_wide_word middle =
      (low >> 64) + static_cast<uint64_t>(cross1) + static_cast<uint64_t>(cross2);
  const a_wide_word high = a_wide_word{a1} * b1 + (cross1 >> 64) + (cross2 >> 64) + (middle >> 64);
  const bool lost = static_cast<uint64_t>(middle) != 0 || static_cast<uint64_t>(low) != 0;
  return high | lost;
}

int f_mul(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  if (takes_nan(a, b, result))
    return 0;
  const an_unpacked x = unpack(a), y = unpack(b);
  const bool negative = x.negative != y.negative;
  if (x.kind == fc_infinity || y.kind == fc_infinity) {
    if (x.kind == fc_zero || y.kind == fc_zero)
      return invalid_operation(result);
    return set_special(pos_infin, negative, result);
  }
  if (x.kind == fc_zero || y.kind == fc_zero)
    return set_special(pos_zero, negative, result);
  an_unpacked product = {multiply_high(x.mantissa, y.mantissa), x.exponent + y.exponent, negative,
                         fc_finite};
  normalize(&product);
  return pack(product, result);
}

// The next 64 bits of a / b, where a is less than b; leaves the remainder in a.
// Knuth, The Art of Computer Programming 4.3.1, algorithm D.
static uint64_t next_digit(a_wide_word* a, a_wide_word b) {
  const uint64_t high = static_cast<uint64_t>(b >> 64), low = static_cast<uint64_t>(b);
  uint64_t digit = *a >> 64 == high ? ~uint64_t{0} : static_cast<uint64_t>(*a / high);
  a_wide_word rest = *a - a_wide_word{digit} * high;
  while (rest >> 64 == 0 && a_wide_word{digit} * low > rest << 64) {
    digit--;
    rest += high;
  }
  *a = (rest << 64) - a_wide_word{digit} * low;
  return digit;
}

a_wide_word divide_fractions(a_wide_word a, a_wide_word b) {
  const bool above = a >= b;
  if (above)
    a -= b;
  const uint64_t high = next_digit(&a, b), low = next_digit(&a, b);
  const a_wide_word fraction = a_wide_word{high} << 64 | low;
  return a_wide_word{above} << 127 | fraction >> 1 | ((fraction & 1) != 0 || a != 0);
}

int f_div(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  if (takes_nan(a, b, result))
    return 0;
  const an_unpacked x = unpack(a), y = unpack(b);
  const bool negative = x.negative != y.negative;
  if (x.kind == y.kind && x.kind != fc_finite)
    return invalid_operation(result);
  if (y.kind == fc_zero) {
    if (x.kind == fc_infinity)
      return set_special(pos_infin, negative, result);
    fp_error |= fpe_zero_division;
    set_special(pos_infin, negative, result);
    return -1;
  }
  if (x.kind == fc_infinity)
    return set_special(pos_infin, negative, result);
  if (x.kind == fc_zero || y.kind == fc_infinity)
    return set_special(pos_zero, negative, result);
  an_unpacked quotient = {divide_fractions(x.mantissa, y.mantissa), x.exponent - y.exponent + 1,
                          negative, fc_finite};
  normalize(&quotient);
  return pack(quotient, result);
}

int f_neg(const simul_fval* value, simul_fval* result) {
  *result = *value;
  result->sign = value->sign == 0;
  return 0;
}

int f_abs(const simul_fval* value, simul_fval* result) {
  *result = *value;
  result->sign = 0;
  return 0;
}

enum an_order { ord_less = -1, ord_equal, ord_greater, ord_unordered };

static an_order order_of_magnitudes(const an_unpacked& a, const an_unpacked& b) {
  if (a.kind != b.kind)
    return a.kind < b.kind ? ord_less : ord_greater;
  if (a.kind != fc_finite)
    return ord_equal;
  return magnitude_less(a, b) ? ord_less : magnitude_less(b, a) ? ord_greater : ord_equal;
}

static an_order order(const simul_fval* a, const simul_fval* b) {
  const an_unpacked x = unpack(a), y = unpack(b);
  if (x.kind == fc_nan || y.kind == fc_nan)
    return ord_unordered;
  if (x.kind == fc_zero && y.kind == fc_zero)
    return ord_equal;
  if (x.negative != y.negative)
    return x.negative ? ord_less : ord_greater;
  return x.negative ? order_of_magnitudes(y, x) : order_of_magnitudes(x, y);
}

bool f_eq(const simul_fval* a, const simul_fval* b) {
  return order(a, b) == ord_equal;
}

bool f_ne(const simul_fval* a, const simul_fval* b) {
  return order(a, b) != ord_equal;
}

bool f_lt(const simul_fval* a, const simul_fval* b) {
  return order(a, b) == ord_less;
}

bool f_le(const simul_fval* a, const simul_fval* b) {
  const an_order result = order(a, b);
  return result == ord_less || result == ord_equal;
}

bool f_gt(const simul_fval* a, const simul_fval* b) {
  return order(a, b) == ord_greater;
}

bool f_ge(const simul_fval* a, const simul_fval* b) {
  const an_order result = order(a, b);
  return result == ord_greater || result == ord_equal;
}

bool f_bit_eq(const simul_fval* a, const simul_fval* b) {
  return memcmp(a->mantissa, b->mantissa, sizeof a->mantissa) == 0 && a->exponent == b->exponent &&
         a->sign == b->sign;
}

int f_min(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  *result = f_is_nan(a) || f_lt(b, a) ? *b : *a;
  return 0;
}

int f_max(const simul_fval* a, const simul_fval* b, simul_fval* result) {
  *result = f_is_nan(a) || f_gt(b, a) ? *b : *a;
  return 0;
}

int f_sgn(const simul_fval* value, simul_fval* result) {
  if (f_is_zero(value) || f_is_nan(value))
    *result = *value;
  else
    *result = float_of_int(value->sign ? -1 : 1);
  return 0;
}
