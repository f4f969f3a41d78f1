#include "float_pt.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "const_ints.h"
#include "fpsconv.h"
#include "fpsmath.h"
#include "fpstarg.h"
#include "il_types.h"
#include "target.h"
#include "types.h"

a_boolean strict_fp_representation = 1;

static bool is_double_kind(int kind) {
  return kind != fk_float;
}

// The way through the target's format that ends every operation.
static void round_through_target(int kind, a_float_value* value, bool* failed) {
  trg_fval image;
  fp_error = 0;
  f_cvt_stot(value, &image, is_double_kind(kind));
  if ((fp_error & (fpe_overflow | fpe_underflow)) != 0)
    *failed = true;
  f_cvt_ttos(&image, value, is_double_kind(kind));
}

using a_binary_operation = int(const simul_fval*, const simul_fval*, simul_fval*);

static void operate(a_binary_operation* operation, int kind, const a_float_value* a,
                    const a_float_value* b, a_float_value* result, bool* failed, bool* inexact) {
  *failed = *inexact = false;
  fp_error = 0;
  if (operation(a, b, result) != 0 || fp_error != 0)
    *failed = true;
  else
    round_through_target(kind, result, failed);
}

void fp_add(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
            bool* failed, bool* inexact) {
  operate(f_add, kind, a, b, result, failed, inexact);
}

void fp_subtract(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
                 bool* failed, bool* inexact) {
  operate(f_sub, kind, a, b, result, failed, inexact);
}

void fp_multiply(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
                 bool* failed, bool* inexact) {
  operate(f_mul, kind, a, b, result, failed, inexact);
}

void fp_divide(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
               bool* failed, bool* inexact) {
  operate(f_div, kind, a, b, result, failed, inexact);
}

void fp_negate(int kind, const a_float_value* value, a_float_value* result, bool* failed) {
  *failed = false;
  f_neg(value, result);
  round_through_target(kind, result, failed);
}

int fp_compare(int, const a_float_value* a, const a_float_value* b, bool* unordered) {
  *unordered = f_is_nan(a) || f_is_nan(b);
  return f_gt(a, b) ? 1 : f_lt(a, b) ? -1 : 0;
}

bool fp_is_negative(const a_float_value* value) {
  return value->sign != 0;
}

bool fp_is_zero_constant(const a_constant* constant) {
  return f_is_zero(&constant->value.float_value);
}

bool fp_is_nan(const a_float_value* value) {
  return f_is_nan(value);
}

bool fp_is_infinity(const a_float_value* value) {
  return f_is_infinity(value);
}

bool fp_is_normalized(int kind, const a_float_value* value) {
  if (is_double_kind(kind)) {
    const an_ieee_parts parts = get_ieee_dbl_fmt(ieee_cvt_stod(value));
    return parts.exponent != 0 && parts.exponent != 0x7ff;
  }
  const an_ieee_parts parts = get_ieee_flt_fmt(ieee_cvt_stof(value));
  return parts.exponent != 0 && parts.exponent != 0xff;
}

void fp_change_kind(const a_float_value* from, int, a_float_value* to, int to_kind, bool* overflow,
                    bool* underflow) {
  bool failed = false;
  *to = *from;
  round_through_target(to_kind, to, &failed);
  *overflow = (fp_error & fpe_overflow) != 0;
  *underflow = (fp_error & fpe_underflow) != 0;
}

void fp_string_to_float(int kind, const char* text, a_float_value* result, bool* failed) {
  *failed = false;
  fp_error = 0;
  if (f_atof(text, result) != 0)
    *failed = true;
  else
    round_through_target(kind, result, failed);
}

// The bits of the mantissa that the kind keeps of a value 0.m times two to the
// exponent; below the normal range each step costs one.
static int mantissa_bits(int kind, int32_t exponent) {
  const int32_t least = is_double_kind(kind) ? targ_dbl_min_exp : targ_flt_min_exp;
  const int bits = is_double_kind(kind) ? targ_dbl_mant_dig : targ_flt_mant_dig;
  return exponent >= least ? bits : bits - std::min(least - exponent, bits);
}

void fp_hex_string_to_float(int kind, const char* text, a_float_value* result, bool* failed) {
  a_mantissa mantissa;
  int32_t exponent;
  *failed = false;
  fp_error = 0;
  if (!conv_hex_string_to_mantissa_and_exponent(text, &mantissa, &exponent)) {
    *result = pos_zero;
    *failed = true;
    return;
  }
  const int bits = mantissa_bits(kind, exponent);
  if (bits > 0)
    round_hex_fp_value(&mantissa, &exponent, bits);
  if (conv_mantissa_to_floating_point(&mantissa, exponent, result) != 0)
    *failed = true;
  else
    round_through_target(kind, result, failed);
}

static bool reads_back(int kind, const char* text, const a_float_value* value) {
  a_float_value back;
  bool failed;
  fp_string_to_float(kind, text, &back, &failed);
  return f_bit_eq(&back, value);
}

// The text of a value may have a sign, 17 digits, a point and an exponent.
static thread_local char number_buffer[64];

static const char* in_buffer(const std::string& text) {
  snprintf(number_buffer, sizeof number_buffer, "%s", text.c_str());
  return number_buffer;
}

const char* fp_to_string(int kind, const a_float_value* value) {
  const int most_digits = is_double_kind(kind) ? 17 : 9;
  for (int digits = 1; digits < most_digits; digits++)
    if (reads_back(kind, in_buffer(f_f2ascii(value, 'g', digits)), value))
      return number_buffer;
  return in_buffer(f_f2ascii(value, 'g', most_digits));
}

const char* fp_to_hex_string(int, const a_float_value* value) {
  return in_buffer(f_f2ascii(value, 'a', 0));
}

void fp_host_large_integer_to_float(int kind, int64_t value, a_float_value* result, bool* failed) {
  *failed = false;
  f_itof(value, result);
  round_through_target(kind, result, failed);
}

void fp_host_large_unsigned_to_float(int kind, uint64_t value, a_float_value* result,
                                     bool* failed) {
  *failed = false;
  f_utof(value, result);
  round_through_target(kind, result, failed);
}

int64_t fp_to_host_large_integer(const a_float_value* value, bool* failed) {
  int64_t result;
  *failed = f_ftoi(value, &result) != 0;
  return result;
}

uint64_t fp_to_host_large_unsigned(const a_float_value* value, bool* failed) {
  uint64_t result;
  *failed = f_ftou(value, &result) != 0;
  return result;
}

uint64_t make_saturated_integer_for_float(const a_float_value* value, int int_kind) {
  const uint64_t least = min_integer_value_of_kind[int_kind];
  const uint64_t most = max_integer_value_of_kind[int_kind];
  bool failed;
  if (!int_kind_is_signed(int_kind)) {
    const uint64_t word = fp_to_host_large_unsigned(value, &failed);
    return word > most ? most : word;
  }
  const int64_t word = fp_to_host_large_integer(value, &failed);
  if (word < static_cast<int64_t>(least))
    return least;
  return word > static_cast<int64_t>(most) ? most : static_cast<uint64_t>(word);
}

void make_fp_nan(a_float_value* result) {
  *result = a_nan;
}

void make_fp_infinity(bool negative, a_float_value* result) {
  *result = negative ? neg_infin : pos_infin;
}

void make_huge_fp_val(int, a_float_value* result) {
  make_fp_infinity(false, result);
}

bool fp_same_representation(const a_float_value* a, const a_float_value* b) {
  return !strict_fp_representation || f_bit_eq(a, b);
}

uint32_t fp_hash(const a_float_value* value) {
  const uint8_t* byte = reinterpret_cast<const uint8_t*>(value);
  uint32_t sum = 0;
  for (size_t i = 0; i < sizeof *value; i++)
    sum += byte[i];
  return sum;
}

double fetch_host_fp_value(const a_float_value* value) {
  return f_ftoh(value);
}

void float_pt_init() {
  fp_error = 0;
}
