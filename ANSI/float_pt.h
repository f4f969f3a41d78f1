// Floating-point values as the target holds them. Every operation is computed
// in the wide format and its result rounded once to the kind's format, nearest
// with ties to even; long double and wider kinds are held as double (IEEE 754).

#ifndef FLOAT_PT_H
#define FLOAT_PT_H

#include "basics.h"
#include "il_constants.h"

// *failed is set when the result is an infinity, a zero by underflow or a NaN
// that the operands were not; fp_error tells which. *inexact has no bit of its
// own in that word and stays clear.
void fp_add(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
            bool* failed, bool* inexact);
void fp_subtract(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
                 bool* failed, bool* inexact);
void fp_multiply(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
                 bool* failed, bool* inexact);
void fp_divide(int kind, const a_float_value* a, const a_float_value* b, a_float_value* result,
               bool* failed, bool* inexact);
void fp_negate(int kind, const a_float_value* value, a_float_value* result, bool* failed);

// -1, 0 or 1; with a NaN 0 and *unordered set.
int fp_compare(int kind, const a_float_value* a, const a_float_value* b, bool* unordered);
bool fp_is_negative(const a_float_value* value);
bool fp_is_zero_constant(const a_constant* constant);
bool fp_is_nan(const a_float_value* value);
bool fp_is_infinity(const a_float_value* value);
bool fp_is_normalized(int kind, const a_float_value* value);

void fp_change_kind(const a_float_value* from, int from_kind, a_float_value* to, int to_kind,
                    bool* overflow, bool* underflow);

// The value of a constant without its suffix. *failed: it is out of range, and
// the result an infinity or a zero.
void fp_string_to_float(int kind, const char* text, a_float_value* result, bool* failed);
// `0x` and digits without a sign.
void fp_hex_string_to_float(int kind, const char* text, a_float_value* result, bool* failed);

// The shortest decimal text that reads back to the same value of the kind, and
// the exact hexadecimal one; in a static buffer until the next call.
const char* fp_to_string(int kind, const a_float_value* value);
const char* fp_to_hex_string(int kind, const a_float_value* value);

void fp_host_large_integer_to_float(int kind, int64_t value, a_float_value* result, bool* failed);
void fp_host_large_unsigned_to_float(int kind, uint64_t value, a_float_value* result, bool* failed);
// Truncate towards zero; out of range: the nearest value, and *failed.
int64_t fp_to_host_large_integer(const a_float_value* value, bool* failed);
uint64_t fp_to_host_large_unsigned(const a_float_value* value, bool* failed);
// The integer of the kind that is nearest to the truncated value, as a word.
uint64_t make_saturated_integer_for_float(const a_float_value* value, int int_kind);

void make_fp_nan(a_float_value* result);
void make_fp_infinity(bool negative, a_float_value* result);
// The value of HUGE_VAL and its like: in the kinds of the target, an infinity.
void make_huge_fp_val(int kind, a_float_value* result);

// Whether equal values are the same constant. With strict_fp_representation, as
// at the start, zeros of different signs are two.
extern a_boolean strict_fp_representation;
bool fp_same_representation(const a_float_value* a, const a_float_value* b);
uint32_t fp_hash(const a_float_value* value);
double fetch_host_fp_value(const a_float_value* value);

void float_pt_init();

#endif
