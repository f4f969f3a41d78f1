// The simulated floating point of the target.

#ifndef FLOAT_PT_H
#define FLOAT_PT_H

#include "basics.h"
#include "il_constants.h"

// The value of a decimal, and of a hexadecimal, constant without its suffix,
// rounded to the float kind. *out_of_range is set when it overflows.
void fp_string_to_float(int float_kind, const char* text, a_float_value* result,
                        bool* out_of_range);
void fp_hex_string_to_float(int float_kind, const char* text, a_float_value* result,
                            bool* out_of_range);

void float_pt_init();

#endif
