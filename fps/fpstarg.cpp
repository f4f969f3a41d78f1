#include "fpstarg.h"

#include "fps_int.h"

// One row a format: bits of the fraction, and the bias of 0.1fraction's exponent.
struct an_ieee_format {
  int fraction_bits;
  int exponent_bits;
  int bias; // of an exponent that belongs to a fraction below 1

  constexpr int special() const {
    return (1 << exponent_bits) - 1;
  }
  constexpr uint64_t fraction_mask() const {
    return (uint64_t{1} << fraction_bits) - 1;
  }
  constexpr int sign_shift() const {
    return fraction_bits + exponent_bits;
  }
};

static constexpr an_ieee_format single_format = {23, 8, 126};
static constexpr an_ieee_format double_format = {52, 11, 1022};

static uint64_t assemble(const an_ieee_format& format, bool negative, int exponent,
                         uint64_t fraction) {
  return uint64_t{negative} << format.sign_shift() |
         static_cast<uint64_t>(exponent) << format.fraction_bits | fraction;
}

// The mantissa's first `bits` bits, rounded to nearest, ties to even. None or
// fewer bits are left of a value far below the range.
static uint64_t round_to_even(a_wide_word mantissa, int bits) {
  if (bits < 0)
    return 0;
  const uint64_t kept = bits == 0 ? 0 : static_cast<uint64_t>(mantissa >> (128 - bits));
  const a_wide_word rest = mantissa << bits;
  const a_wide_word half = a_wide_word{1} << 127;
  return kept + (rest > half || (rest == half && (kept & 1)));
}

static uint64_t round_finite(const an_ieee_format& format, const an_unpacked& value) {
  int exponent = value.exponent + format.bias;
  int bits = format.fraction_bits + 1;
  if (exponent < 1) {
    // Denormal: each step below the normal range costs a bit.
    bits -= 1 - exponent;
    exponent = 1;
  }
  // The hidden bit adds 1 to an exponent that starts one too low, so that a
  // carry out of the fraction makes a denormal normal and a normal the next.
  const uint64_t rounded = round_to_even(value.mantissa, bits);
  const uint64_t packed = (static_cast<uint64_t>(exponent - 1) << format.fraction_bits) + rounded;
  if (packed >> format.fraction_bits >= static_cast<uint64_t>(format.special())) {
    fp_error |= fpe_overflow;
    return assemble(format, value.negative, format.special(), 0);
  }
  if (packed == 0)
    fp_error |= fpe_underflow;
  return uint64_t{value.negative} << format.sign_shift() | packed;
}

static uint64_t round_to(const an_ieee_format& format, const simul_fval* value) {
  const an_unpacked wide = unpack(value);
  const uint64_t quiet = uint64_t{1} << (format.fraction_bits - 1);
  switch (wide.kind) {
  case fc_zero:
    return assemble(format, wide.negative, 0, 0);
  case fc_infinity:
    return assemble(format, wide.negative, format.special(), 0);
  case fc_nan:
    return assemble(format, wide.negative, format.special(), quiet);
  case fc_finite:
    break;
  }
  return round_finite(format, wide);
}

static an_ieee_parts parts_of(const an_ieee_format& format, uint64_t image) {
  return {(image >> format.sign_shift() & 1) != 0,
          static_cast<int32_t>(image >> format.fraction_bits) & format.special(),
          image & format.fraction_mask()};
}

static void widen(const an_ieee_format& format, uint64_t image, simul_fval* value) {
  const an_ieee_parts parts = parts_of(format, image);
  if (parts.exponent == format.special()) {
    set_special(parts.fraction == 0 ? pos_infin : a_nan, parts.negative, value);
    return;
  }
  const bool normal = parts.exponent != 0;
  const uint64_t fraction = parts.fraction | (normal ? uint64_t{1} << format.fraction_bits : 0);
  an_unpacked wide = {a_wide_word{fraction} << (127 - format.fraction_bits),
                      (normal ? parts.exponent : 1) - format.bias, parts.negative, fc_finite};
  normalize(&wide);
  pack(wide, value);
}

uint32_t ieee_cvt_stof(const simul_fval* value) {
  return static_cast<uint32_t>(round_to(single_format, value));
}

uint64_t ieee_cvt_stod(const simul_fval* value) {
  return round_to(double_format, value);
}

void ieee_cvt_ftos(uint32_t image, simul_fval* value) {
  widen(single_format, image, value);
}

void ieee_cvt_dtos(uint64_t image, simul_fval* value) {
  widen(double_format, image, value);
}

an_ieee_parts get_ieee_flt_fmt(uint32_t image) {
  return parts_of(single_format, image);
}

an_ieee_parts get_ieee_dbl_fmt(uint64_t image) {
  return parts_of(double_format, image);
}

void f_cvt_stot(const simul_fval* value, trg_fval* image, bool is_double) {
  const uint64_t bits = is_double ? ieee_cvt_stod(value) : uint64_t{ieee_cvt_stof(value)} << 32;
  *image = {{static_cast<uint32_t>(bits >> 32), static_cast<uint32_t>(bits)}};
}

void f_cvt_ttos(const trg_fval* image, simul_fval* value, bool is_double) {
  if (is_double)
    ieee_cvt_dtos(uint64_t{image->word[0]} << 32 | image->word[1], value);
  else
    ieee_cvt_ftos(image->word[0], value);
}
