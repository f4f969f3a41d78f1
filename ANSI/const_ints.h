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
bool le_max_integer_value_of_kind(uint64_t value, int kind);
bool is_max_value_for_integer_kind(const a_constant* constant, int kind);
// At least 1; of a negative value with its sign bit.
int bits_required_to_represent_integer_constant(const a_constant* constant);

void add_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow);
void subtract_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow);
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

// Decimal text in a static buffer that stays valid until the next call.
const char* str_for_integer_value(uint64_t value, bool is_signed);
const char* str_for_integer_constant(const a_constant* constant);

// Kinds by size; num_integer_kinds means none.
int int_kind_for_size(uint64_t size, bool want_signed);
int int_kind_for_bit_size(int bits, bool want_signed);

void const_ints_init();

#endif
