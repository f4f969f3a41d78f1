// Exact integers of the target. A value is one unsigned 64-bit word; whether
// it is signed comes from its type, so every operation is told. Operations
// work in place on the first word and say whether the exact result did not
// fit 64 bits of the given signedness.

#ifndef CONST_INTS_H
#define CONST_INTS_H

#include "basics.h"
#include "il_types.h"

// The values of a constant of an integer or enum type.
bool int_constant_is_signed(const a_constant* constant);
int64_t value_of_integer_value(uint64_t word, bool is_signed, bool* overflow);
int64_t value_of_integer_constant(const a_constant* constant, bool* overflow);
uint64_t unsigned_value_of_integer_constant(const a_constant* constant, bool* overflow);

// -1, 0 or 1; operands of different signedness are compared by their values.
int cmp_integer_values(uint64_t a, bool a_signed, uint64_t b, bool b_signed);
int cmp_integer_constants(const a_constant* a, const a_constant* b);
int cmplit_integer_constant(const a_constant* constant, long long literal);
int cmpulit_integer_constant(const a_constant* constant, unsigned long long literal);

// The range of an integer kind, as words of its signedness.
extern uint64_t min_integer_value_of_kind[num_integer_kinds];
extern uint64_t max_integer_value_of_kind[num_integer_kinds];
bool in_range_for_integer_kind(uint64_t value, bool is_signed, int kind);
// Of a range of values, whose bounds may be one constant.
bool in_range_for_integer_kind(const a_constant* low, const a_constant* high, int kind);
bool le_max_integer_value_of_kind(uint64_t value, int kind);
bool is_max_value_for_integer_kind(const a_constant* constant, int kind);
// At least 1; of a negative value with its sign bit.
int bits_required_to_represent_integer_constant(const a_constant* constant);

void add_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow);
void subtract_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow);
// Operands of different signedness: the result is unsigned, and *overflow says
// that the exact one is negative or needs more than 64 bits.
void add_mixed_signed_integer_values(uint64_t* a, bool a_signed, uint64_t b, bool b_signed,
                                     bool* overflow);
void subtract_mixed_signed_integer_values(uint64_t* a, bool a_signed, uint64_t b, bool b_signed,
                                          bool* overflow);
void multiply_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow);
// Division truncates (C99 6.5.5 p6); the divisor isn't 0.
void divide_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow);
void remainder_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow);
void negate_integer_value(uint64_t* a, bool is_signed, bool* overflow);
// The count is below 64.
void shift_left_integer_value(uint64_t* a, unsigned count, bool is_signed, bool* overflow);
void shift_right_integer_value(uint64_t* a, unsigned count, bool is_signed);

// A word with the low `bits` set; 1 to 64.
uint64_t make_integer_value_mask(int bits);
// Cuts a word to the width of an integer kind and extends its sign.
uint64_t truncate_integer_value(uint64_t value, int kind);

// Decimal digits into a buffer with room for integer_text_size bytes, of which the
// end is returned.
inline constexpr size_t integer_text_size = 24;
char* f_unsigned_to_string_buf(uint64_t value, char* buffer);
// Decimal text in a static buffer that stays valid until the next call.
const char* str_for_integer_value(uint64_t value, bool is_signed);
const char* str_for_integer_constant(const a_constant* constant);
inline const char* decimal_str_for_integer_constant(const a_constant* constant) {
  return str_for_integer_constant(constant);
}

// Kinds by size and alignment in bytes, or by size in bits; num_integer_kinds
// means none.
int int_kind_for_size_and_alignment(uint64_t size, uint32_t alignment, bool want_signed);
int int_kind_for_bit_size(int bits, bool want_signed);

void const_ints_init();

#endif
