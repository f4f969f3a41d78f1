// Natural numbers of any length, for the conversions that must be exact.
#include <algorithm>
#include <bit>

#include "fps_int.h"

static void trim(a_natural* number) {
  while (!number->empty() && number->back() == 0)
    number->pop_back();
}

a_natural natural_from(a_wide_word value) {
  a_natural result;
  for (; value != 0; value >>= 32)
    result.push_back(static_cast<uint32_t>(value));
  return result;
}

int bit_length(const a_natural& number) {
  if (number.empty())
    return 0;
  return static_cast<int>(number.size()) * 32 - std::countl_zero(number.back());
}

void multiply_small(a_natural* number, uint32_t factor, uint32_t addend) {
  uint64_t carry = addend;
  for (uint32_t& word : *number) {
    carry += uint64_t{word} * factor;
    word = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  if (carry != 0)
    number->push_back(static_cast<uint32_t>(carry));
}

void multiply_power_of_five(a_natural* number, unsigned power) {
  constexpr uint32_t five_to_13 = 1220703125;
  for (; power >= 13; power -= 13)
    multiply_small(number, five_to_13, 0);
  for (; power != 0; power--)
    multiply_small(number, 5, 0);
}

void shift_left(a_natural* number, unsigned count) {
  if (number->empty())
    return;
  const unsigned bits = count % 32;
  if (bits != 0) {
    uint32_t carry = 0;
    for (uint32_t& word : *number) {
      const uint32_t shifted = word << bits | carry;
      carry = word >> (32 - bits);
      word = shifted;
    }
    if (carry != 0)
      number->push_back(carry);
  }
  number->insert(number->begin(), count / 32, 0);
}

int compare(const a_natural& a, const a_natural& b) {
  if (a.size() != b.size())
    return a.size() < b.size() ? -1 : 1;
  for (size_t i = a.size(); i-- > 0;)
    if (a[i] != b[i])
      return a[i] < b[i] ? -1 : 1;
  return 0;
}

static uint32_t divide_small(a_natural* dividend, uint32_t divisor) {
  uint64_t remainder = 0;
  for (size_t i = dividend->size(); i-- > 0;) {
    remainder = remainder << 32 | (*dividend)[i];
    (*dividend)[i] = static_cast<uint32_t>(remainder / divisor);
    remainder %= divisor;
  }
  trim(dividend);
  return static_cast<uint32_t>(remainder);
}

// Subtracts factor times the divisor from the dividend's words from `at` on;
// returns whether that borrowed.
static bool subtract_multiple(a_natural* dividend, const a_natural& divisor, size_t at,
                              uint64_t factor) {
  uint64_t carry = 0;
  int64_t borrow = 0;
  for (size_t i = 0; i < divisor.size(); i++) {
    carry += factor * divisor[i];
    borrow += int64_t{(*dividend)[at + i]} - static_cast<int64_t>(carry & 0xffffffff);
    (*dividend)[at + i] = static_cast<uint32_t>(borrow);
    borrow >>= 32;
    carry >>= 32;
  }
  borrow += int64_t{(*dividend)[at + divisor.size()]} - static_cast<int64_t>(carry);
  (*dividend)[at + divisor.size()] = static_cast<uint32_t>(borrow);
  return borrow < 0;
}

static void add_back(a_natural* dividend, const a_natural& divisor, size_t at) {
  uint64_t carry = 0;
  for (size_t i = 0; i < divisor.size(); i++) {
    carry += uint64_t{(*dividend)[at + i]} + divisor[i];
    (*dividend)[at + i] = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  (*dividend)[at + divisor.size()] += static_cast<uint32_t>(carry);
}

static void shift_right(a_natural* number, int count) {
  uint32_t carry = 0;
  for (size_t i = number->size(); count != 0 && i-- > 0;) {
    const uint32_t word = (*number)[i];
    (*number)[i] = word >> count | carry;
    carry = word << (32 - count);
  }
  trim(number);
}

// Knuth, The Art of Computer Programming 4.3.1, algorithm D.
static a_natural divide_long(a_natural* dividend, a_natural divisor) {
  const int shift = std::countl_zero(divisor.back());
  shift_left(dividend, static_cast<unsigned>(shift));
  shift_left(&divisor, static_cast<unsigned>(shift));
  const size_t n = divisor.size();
  const size_t m = dividend->size() - n;
  dividend->push_back(0);
  a_natural quotient(m + 1);
  for (size_t j = m + 1; j-- > 0;) {
    const uint64_t top = uint64_t{(*dividend)[j + n]} << 32 | (*dividend)[j + n - 1];
    uint64_t digit = top / divisor[n - 1];
    uint64_t rest = top % divisor[n - 1];
    while (digit >> 32 || digit * divisor[n - 2] > (rest << 32 | (*dividend)[j + n - 2])) {
      digit--;
      rest += divisor[n - 1];
      if (rest >> 32)
        break;
    }
    if (subtract_multiple(dividend, divisor, j, digit)) {
      digit--;
      add_back(dividend, divisor, j);
    }
    quotient[j] = static_cast<uint32_t>(digit);
  }
  trim(dividend);
  shift_right(dividend, shift);
  trim(&quotient);
  return quotient;
}

a_natural divide(a_natural* dividend, const a_natural& divisor) {
  if (compare(*dividend, divisor) < 0)
    return {};
  if (divisor.size() > 1)
    return divide_long(dividend, divisor);
  a_natural quotient = *dividend;
  const uint32_t remainder = divide_small(&quotient, divisor[0]);
  *dividend = natural_from(remainder);
  return quotient;
}

std::string decimal_digits(a_natural number) {
  if (number.empty())
    return "0";
  std::string reversed;
  while (!number.empty()) {
    uint32_t group = divide_small(&number, 1000000000);
    for (int i = 0; i < 9 && (group != 0 || !number.empty()); i++, group /= 10)
      reversed += static_cast<char>('0' + group % 10);
  }
  return {reversed.rbegin(), reversed.rend()};
}

a_wide_word top_bits(const a_natural& number) {
  if (number.empty())
    return 0;
  a_wide_word result = 0;
  size_t i = number.size();
  int filled = 0;
  for (; i > 0 && filled < 4; filled++)
    result = result << 32 | number[--i];
  result <<= 32 * (4 - filled);
  const int shift = std::countl_zero(number.back());
  uint32_t lost = 0;
  if (shift != 0) {
    result <<= shift;
    if (i > 0) {
      result |= number[--i] >> (32 - shift);
      lost = number[i] << shift;
    }
  }
  while (lost == 0 && i > 0)
    lost = number[--i];
  return result | (lost != 0);
}
