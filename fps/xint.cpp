#include "xint.h"

#include <bit>
#include <cstdio>

using an_unsigned = unsigned __int128;
using a_signed = __int128;

static an_unsigned load(const XI* value) {
  an_unsigned result = 0;
  for (uint8_t byte : value->byte)
    result = result << 8 | byte;
  return result;
}

static void store(an_unsigned value, XI* result) {
  for (int i = 16; i-- > 0; value >>= 8)
    result->byte[i] = static_cast<uint8_t>(value);
}

static bool is_negative(const XI* value) {
  return value->byte[0] >= 0x80;
}

static an_unsigned magnitude(const XI* value) {
  return is_negative(value) ? 0 - load(value) : load(value);
}

int XI_add(const XI* a, const XI* b, XI* result) {
  const an_unsigned x = load(a), sum = x + load(b);
  store(sum, result);
  return sum < x;
}

int XI_sub(const XI* a, const XI* b, XI* result) {
  const an_unsigned x = load(a), y = load(b);
  store(x - y, result);
  return x < y;
}

void XI_neg(const XI* value, XI* result) {
  store(0 - load(value), result);
}

void XI_mpy(const XI* a, const XI* b, XI* result) {
  store(load(a) * load(b), result);
}

int XI_div(const XI* a, const XI* b, XI* result) {
  if (load(b) == 0)
    return -1;
  const bool negative = is_negative(a) != is_negative(b);
  const an_unsigned quotient = magnitude(a) / magnitude(b);
  store(negative ? 0 - quotient : quotient, result);
  return 0;
}

int XI_mod(const XI* a, const XI* b, XI* result) {
  if (load(b) == 0)
    return -1;
  const an_unsigned remainder = magnitude(a) % magnitude(b);
  store(is_negative(a) ? 0 - remainder : remainder, result);
  return 0;
}

void XI_and(const XI* a, const XI* b, XI* result) {
  store(load(a) & load(b), result);
}

void XI_or(const XI* a, const XI* b, XI* result) {
  store(load(a) | load(b), result);
}

void XI_xor(const XI* a, const XI* b, XI* result) {
  store(load(a) ^ load(b), result);
}

void XI_notb(const XI* value, XI* result) {
  store(~load(value), result);
}

void XI_shl(const XI* value, unsigned count, XI* result) {
  store(count < 128 ? load(value) << count : 0, result);
}

void XI_shr(const XI* value, unsigned count, XI* result) {
  const a_signed word = static_cast<a_signed>(load(value));
  store(static_cast<an_unsigned>(word >> (count < 128 ? count : 127)), result);
}

int XI_cmp(const XI* a, const XI* b) {
  const a_signed x = static_cast<a_signed>(load(a)), y = static_cast<a_signed>(load(b));
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
  store(static_cast<an_unsigned>(static_cast<a_signed>(value)), result);
}

void XI_utox(unsigned value, XI* result) {
  store(value, result);
}

void XI_llutox(unsigned long long value, XI* result) {
  store(value, result);
}

int XI_xtoi(const XI* value) {
  return static_cast<int>(load(value));
}

long long XI_xtolli(const XI* value) {
  return static_cast<long long>(load(value));
}

unsigned XI_xtou(const XI* value) {
  return static_cast<unsigned>(load(value));
}

unsigned long long XI_xtollu(const XI* value) {
  return static_cast<unsigned long long>(load(value));
}

int XI_size(const XI* value) {
  const an_unsigned word = is_negative(value) ? ~load(value) : load(value);
  const uint64_t high = static_cast<uint64_t>(word >> 64);
  const int bits =
      high != 0 ? 128 - std::countl_zero(high) : 64 - std::countl_zero(static_cast<uint64_t>(word));
  return bits > 0 ? bits : 1;
}

const char* XI_dump(const XI* value) {
  static char buffer[33];
  for (int i = 0; i < 16; i++)
    snprintf(buffer + 2 * i, 3, "%02x", value->byte[i]);
  return buffer;
}
