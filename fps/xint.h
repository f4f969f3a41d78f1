// Integers of 128 bits in two's complement, most significant byte first.

#ifndef XINT_H
#define XINT_H

#include <cstdint>

struct XI {
  uint8_t byte[16];
};

// These return the carry out of the top bit (a borrow for XI_sub).
int XI_add(const XI* a, const XI* b, XI* result);
int XI_sub(const XI* a, const XI* b, XI* result);
void XI_neg(const XI* value, XI* result);
void XI_mpy(const XI* a, const XI* b, XI* result);
// Truncate towards zero. -1 for a zero divisor, which leaves the result alone.
int XI_div(const XI* a, const XI* b, XI* result);
int XI_mod(const XI* a, const XI* b, XI* result);

void XI_and(const XI* a, const XI* b, XI* result);
void XI_or(const XI* a, const XI* b, XI* result);
void XI_xor(const XI* a, const XI* b, XI* result);
void XI_notb(const XI* value, XI* result);
// From 128 on nothing but the fill is left; XI_shr fills with the sign.
void XI_shl(const XI* value, unsigned count, XI* result);
void XI_shr(const XI* value, unsigned count, XI* result);

// -1, 0 or 1, as signed numbers.
int XI_cmp(const XI* a, const XI* b);
bool XI_eq(const XI* a, const XI* b);
bool XI_ne(const XI* a, const XI* b);
bool XI_lt(const XI* a, const XI* b);
bool XI_le(const XI* a, const XI* b);
bool XI_gt(const XI* a, const XI* b);
bool XI_ge(const XI* a, const XI* b);
void XI_asg(const XI* value, XI* result);

void XI_itox(int value, XI* result);
void XI_llitox(long long value, XI* result);
void XI_utox(unsigned value, XI* result);
void XI_llutox(unsigned long long value, XI* result);
// The low bits.
int XI_xtoi(const XI* value);
long long XI_xtolli(const XI* value);
unsigned XI_xtou(const XI* value);
unsigned long long XI_xtollu(const XI* value);

// The count of significant bits, at least 1, without a negative number's run of sign bits.
int XI_size(const XI* value);
// 32 hexadecimal digits in a static buffer.
const char* XI_dump(const XI* value);

#endif
