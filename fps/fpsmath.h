// Floating point in a software format that is wider than any format of the
// target. No host floating point takes part. Every result keeps at least 81
// bits, and a result that isn't exact has its last bit set (rounding to odd),
// so that the one rounding to the target's format that follows is exact.
//
// The functions return 0, or -1 with a bit of fp_error set.

#ifndef FPSMATH_H
#define FPSMATH_H

#include <cstdint>

// The value is 0.mantissa times two to the exponent; the exponent is a
// multiple of 16 in any stored value. Precompiled headers hold it.
struct simul_fval {
  uint16_t mantissa[6]; // most significant word first
  int32_t exponent;
  uint8_t sign; // 1 for negative
  uint8_t unused[3];
};
static_assert(sizeof(simul_fval) == 20);

// Exponents that mark special values: with a mantissa whose first word is zero
// an infinity, else a NaN; and the zeros.
inline constexpr int32_t special_exponent = 32767;
inline constexpr int32_t zero_exponent = -32767;

// Sticky status; callers clear it.
enum an_fp_error : unsigned {
  fpe_invalid = 1,
  fpe_zero_division = 2,
  fpe_overflow = 4,
  fpe_underflow = 8
};
extern thread_local unsigned fp_error;

extern const simul_fval pos_zero, neg_zero, pos_infin, neg_infin, a_nan, const_ten, const_sixteen;
extern const simul_fval const_dig[16]; // the values 0 to 15

// Rounds the exponent up to a multiple of 16 and shifts the mantissa to match.
// An exponent beyond the range makes an infinity: -1.
int f_align_radix_pt(simul_fval* value);
// Undoes that on a copy: the top bit of the mantissa is set.
int f_left_justify(const simul_fval* value, simul_fval* result);

bool f_is_zero(const simul_fval* value);
bool f_is_infinity(const simul_fval* value);
bool f_is_nan(const simul_fval* value);

int f_add(const simul_fval* a, const simul_fval* b, simul_fval* result);
int f_sub(const simul_fval* a, const simul_fval* b, simul_fval* result);
int f_mul(const simul_fval* a, const simul_fval* b, simul_fval* result);
int f_div(const simul_fval* a, const simul_fval* b, simul_fval* result);
int f_neg(const simul_fval* value, simul_fval* result);
int f_abs(const simul_fval* value, simul_fval* result);

// C99 7.12: the functions of those names.
int f_sqrt(const simul_fval* value, simul_fval* result);
int f_exp(const simul_fval* value, simul_fval* result);
int f_log(const simul_fval* value, simul_fval* result);
int f_log10(const simul_fval* value, simul_fval* result);
int f_pow(const simul_fval* base, const simul_fval* power, simul_fval* result);
int f_fmod(const simul_fval* a, const simul_fval* b, simul_fval* result);
int f_modf(const simul_fval* value, simul_fval* whole, simul_fval* fraction);
int f_frexp(const simul_fval* value, simul_fval* fraction, int* exponent);
int f_ldexp(const simul_fval* value, int exponent, simul_fval* result);
int f_floor(const simul_fval* value, simul_fval* result);
int f_ceil(const simul_fval* value, simul_fval* result);
int f_trunc(const simul_fval* value, simul_fval* result);
int f_round(const simul_fval* value, simul_fval* result);
int f_min(const simul_fval* a, const simul_fval* b, simul_fval* result);
int f_max(const simul_fval* a, const simul_fval* b, simul_fval* result);
// -1, 0 or 1 as a value.
int f_sgn(const simul_fval* value, simul_fval* result);
// The integer part, towards zero.
int f_int(const simul_fval* value, simul_fval* result);

// Comparisons: false with a NaN but for f_ne. f_bit_eq compares representations.
bool f_eq(const simul_fval* a, const simul_fval* b);
bool f_ne(const simul_fval* a, const simul_fval* b);
bool f_lt(const simul_fval* a, const simul_fval* b);
bool f_le(const simul_fval* a, const simul_fval* b);
bool f_gt(const simul_fval* a, const simul_fval* b);
bool f_ge(const simul_fval* a, const simul_fval* b);
bool f_bit_eq(const simul_fval* a, const simul_fval* b);

#endif
