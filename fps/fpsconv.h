// Conversions of the software format from and to text and integers.

#ifndef FPSCONV_H
#define FPSCONV_H

#include <string>

#include "fpsmath.h"

struct XI;

int f_itof(int64_t value, simul_fval* result);
int f_utof(uint64_t value, simul_fval* result);
// Truncate towards zero. Out of range or a NaN: -1, invalid, and the nearest
// value of the type (0 for a NaN).
int f_ftoi(const simul_fval* value, int64_t* result);
int f_ftou(const simul_fval* value, uint64_t* result);
int f_xtof(const XI* value, simul_fval* result);
int f_ftox(const simul_fval* value, XI* result);
// To the host's double, for reports and tests.
double f_ftoh(const simul_fval* value);

// The value of a decimal or hexadecimal constant without its suffix, of "nan"
// or of "inf", in any case of letters. The exact value decides every later
// rounding. Decimal exponents from 512 on: an infinity, overflow and -1; from
// -512 down: a zero, underflow and -1.
int f_atof(const char* text, simul_fval* result);

// Digits without a point, correctly rounded, ties to even; *point is where the
// point belongs. f_ecvt gives `count` digits in all, f_fcvt `count` behind the
// point, f_acvt hexadecimal digits, all of them.
std::string f_ecvt(const simul_fval* value, int count, int* point, bool* negative);
std::string f_fcvt(const simul_fval* value, int count, int* point, bool* negative);
std::string f_acvt(const simul_fval* value, int* exponent, bool* negative);
// The text for a conversion character of C99 7.19.6.1: a, e, f or g, or their capitals.
std::string f_f2ascii(const simul_fval* value, char conversion, int precision);
// Writes the value through the one conversion in the format; the precision's
// default is 6. The buffer has room for 512 bytes.
void f_ftoa(char* buffer, const char* format, const simul_fval* value);

// A hexadecimal constant rounded to `bits` bits in one step, ties to even.
struct a_mantissa {
  uint32_t word[4]; // most significant first
  uint32_t sticky;
};
bool conv_hex_string_to_mantissa_and_exponent(const char* text, a_mantissa* mantissa,
                                              int32_t* exponent);
void round_hex_fp_value(a_mantissa* mantissa, int32_t* exponent, int bits);
int conv_mantissa_to_floating_point(const a_mantissa* mantissa, int32_t exponent,
                                    simul_fval* result);

#endif
