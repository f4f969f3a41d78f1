// What the modules of the simulated arithmetic share: an unpacked form with
// room for guard bits, and natural numbers of any length.

#ifndef FPS_INT_H
#define FPS_INT_H

#include <cstddef>
#include <string>
#include <vector>

#include "fpsmath.h"

struct XI;

using a_wide_word = unsigned __int128;

enum a_float_class : uint8_t { fc_zero, fc_finite, fc_infinity, fc_nan };

// 0.mantissa times two to the exponent, with the mantissa's top bit set when
// finite. A set last bit may stand for any amount below it.
struct an_unpacked {
  a_wide_word mantissa;
  int32_t exponent;
  bool negative;
  a_float_class kind;
};

an_unpacked unpack(const simul_fval* value);
// Rounds to odd. Beyond the range: an infinity or a zero, with fp_error set, and -1.
int pack(const an_unpacked& value, simul_fval* result);
// Sets the mantissa's top bit; a zero mantissa makes a zero.
void normalize(an_unpacked* value);
// Right by any count; bits that fall out leave the last bit set.
a_wide_word shift_right_sticky(a_wide_word word, int count);
// The upper half of a product, the last bit sticky.
a_wide_word multiply_high(a_wide_word a, a_wide_word b);
// a / b of left-justified fractions, a number below 2 with 127 bits behind the
// point, the last bit sticky.
a_wide_word divide_fractions(a_wide_word a, a_wide_word b);

// The bits of a 128-bit integer as a word, and back.
a_wide_word word_of(const XI* value);
void store_word(a_wide_word word, XI* result);

int set_special(const simul_fval& special, bool negative, simul_fval* result);
simul_fval float_of_int(int64_t value);

// A natural number: words of 32 bits, least significant first, no leading zero.
using a_natural = std::vector<uint32_t>;

a_natural natural_from(a_wide_word value);
int bit_length(const a_natural& number);
void multiply_small(a_natural* number, uint32_t factor, uint32_t addend);
void multiply_power_of_five(a_natural* number, unsigned power);
void shift_left(a_natural* number, unsigned count);
// -1, 0 or 1.
int compare(const a_natural& a, const a_natural& b);
// Replaces the dividend by the remainder; the divisor isn't 0.
a_natural divide(a_natural* dividend, const a_natural& divisor);
std::string decimal_digits(a_natural number);
// The top 128 bits, left-justified, the last one sticky.
a_wide_word top_bits(const a_natural& number);

#endif
