// The two formats of the target, IEEE 754 binary32 and binary64.

#ifndef FPSTARG_H
#define FPSTARG_H

#include "fpsmath.h"

// The image of a value in the target's memory: one word for single format, two
// for double, with the sign and the exponent in the first.
struct trg_fval {
  uint32_t word[2];
};

// Rounds to nearest, ties to even. fp_error gets overflow (the image is an
// infinity) or underflow (a zero).
void f_cvt_stot(const simul_fval* value, trg_fval* image, bool is_double);
void f_cvt_ttos(const trg_fval* image, simul_fval* value, bool is_double);

uint32_t ieee_cvt_stof(const simul_fval* value);
uint64_t ieee_cvt_stod(const simul_fval* value);
void ieee_cvt_ftos(uint32_t image, simul_fval* value);
void ieee_cvt_dtos(uint64_t image, simul_fval* value);

// The parts of an image: sign, biased exponent, fraction without the hidden bit.
struct an_ieee_parts {
  bool negative;
  int32_t exponent;
  uint64_t fraction;
};
an_ieee_parts get_ieee_flt_fmt(uint32_t image);
an_ieee_parts get_ieee_dbl_fmt(uint64_t image);

#endif
