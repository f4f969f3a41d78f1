#include "xint.h"

#include <bit>
#include <cstdio>

#include "fps_int.h"

using a_signed_word = __int128;

a_wide_word word_of(const XI* value) {
  a_wide_word result = 0;
  for (uint8_t byte : value->byte)
    result = result << 8 | byte;
  return result;
}

void store_word(a_wide_word word, XI* result) {
  for (int i = 16; i-- > 0; word >>= 8)
    result->byte[i] = static_cast<uint8_t>(word);
}

static bool is_negative(const XI* value) {
  return value->byte[0] >= 0x80;
}

static a_wide_word magnitude(const XI* value) {
  return is_negative(value) ? 0 - word_of(value) : word_of(value);
}

int XI_add(const XI* a, const XI* b, XI* result) {
  const a_wide_word x = word_of(a), sum = x + word_of(b);
  store_word(sum, result);
  return sum < x;
}

int XI_sub(const XI* a, const XI* b, XI* result) {
  const a_wide_word x = word_of(a), y = word_of(b);
  store_word(x - y, result);
  return x < y;
}

void XI_neg(const XI* value, XI* result) {
  store_word(0 - word_of(value), result);
}

void XI_mpy(const XI* a, const XI* b, XI* result) {
  store_word(word_of(a) * word_of(b), result);
}

int XI_div(const XI* a, const XI* b, XI* result) {
  if (word_of(b) == 0)
    return -1;
  const bool negative = is_negative(a) != is_negative(b);
  const a_wide_word quotient = magnitude(a) / magnitude(b);
  store_word(negative ? 0 - quotient : quotient, result);
  return 0;
}

int XI_mod(const XI* a, const XI* b, XI* result) {
  if (word_of(b) == 0)
    return -1;
  const a_wide_word remainder = magnitude(a) % magnitude(b);
  store_word(is_negative(a) ? 0 - remainder : remainder, result);
  return 0;
}

void XI_and(const XI* a, const XI* b, XI* result) {
  store_word(word_of(a) & word_of(b), result);
}

void XI_or(const XI* a, const XI* b, XI* result) {
  store_word(word_of(a) | word_of(b), result);
}

void XI_xor(const XI* a, const XI* b, XI* result) {
  store_word(word_of(a) ^ word_of(b), result);
}

void XI_notb(const XI* value, XI* result) {
  store_word(~word_of(value), result);
}

void XI_shl(const XI* value, unsigned count, XI* result) {
  store_word(count < 128 ? word_of(value) << count : 0, result);
}

void XI_shr(const XI* value, unsigned count, XI* result) {
  const a_signed_word word = static_cast<a_signed_word>(word_of(value));
  store_word(static_cast<a_wide_word>(word >> (count < 128 ? count : 127)), result);
}

int XI_cmp(const XI* a, const XI* b) {
  const a_signed_word x = static_cast<a_signed_word>(word_of(a)),
                      y = static_cast<a_signed_word>(word_of(b));
  return x < y ? -1 : x > y;
}

bool XI_eq(const XI* a, const XI* b) {
  return XI_cmp(a, b) == 0;
}

bool XI_ne(const XI* a, const XI* b) {
  return XI_cmp(a, b) != 0;
}

bool XI_lt(const XI* a, const XI* b) {
  return XI_cmp(a, b) < 0;
}

bool XI_le(const XI* a, const XI* b) {
  return XI_cmp(a, b) <= 0;
}

bool XI_gt(const XI* a, const XI* b) {
  return XI_cmp(a, b) > 0;
}

bool XI_ge(const XI* a, const XI* b) {
  return XI_cmp(a, b) >= 0;
}

void XI_asg(const XI* value, XI* result) {
  *result = *value;
}

void XI_itox(int value, XI* result) {
  XI_llitox(value, result);
}

void XI_llitox(long long value, XI* result) {
  store_word(static_cast<a_wide_word>(static_cast<a_signed_word>(value)), result);
}

void XI_utox(unsigned value, XI* result) {
  store_word(value, result);
}

void XI_llutox(unsigned long long value, XI* result) {
  store_word(value, result);
}

int XI_xtoi(const XI* value) {
  return static_cast<int>(word_of(value));
}

long long XI_xtolli(const XI* value) {
  return static_cast<long long>(word_of(value));
}

unsigned XI_xtou(const XI* value) {
  return static_cast<unsigned>(word_of(value));
}

unsigned long long XI_xtollu(const XI* value) {
  return static_cast<unsigned long long>(word_of(value));
}

int XI_size(const XI* value) {
  const a_wide_word word = is_negative(value) ? ~word_of(value) : word_of(value);
  const uint64_t high = static_cast<uint64_t>(word >> 64);
  const int bits =
      high != 0 ? 128 - std::countl_zero(high) : 64 - std::countl_zero(static_cast<uint64_t>(word));
  return bits > 0 ? bits : 1;
}

const char* XI_dump(const XI* value) {
  static thread_local char buffer[33];
  for (int i = 0; i < 16; i++)
    snprintf(buffer + 2 * i, 3, "%02x", value->byte[i]);
  return buffer;
}
