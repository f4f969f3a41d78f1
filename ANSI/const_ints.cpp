// Exact integers of the target.

#include "const_ints.h"

#include <bit>
#include <charconv>

#include "il_constants.h"
#include "target.h"
#include "types.h"

uint64_t min_integer_value_of_kind[num_integer_kinds];
uint64_t max_integer_value_of_kind[num_integer_kinds];

static bool is_negative(uint64_t word, bool is_signed) {
  return is_signed && static_cast<int64_t>(word) < 0;
}

static uint64_t magnitude(uint64_t word, bool negative) {
  return negative ? 0 - word : word;
}

bool int_constant_is_signed(const a_constant* constant) {
  return int_kind_is_signed(int_kind_of(constant->type));
}

int64_t value_of_integer_value(uint64_t word, bool is_signed, bool* overflow) {
  *overflow = !is_signed && word > INT64_MAX;
  return static_cast<int64_t>(word);
}

int64_t value_of_integer_constant(const a_constant* constant, bool* overflow) {
  return value_of_integer_value(constant->value.int_value, int_constant_is_signed(constant),
                                overflow);
}

uint64_t unsigned_value_of_integer_constant(const a_constant* constant, bool* overflow) {
  *overflow = is_negative(constant->value.int_value, int_constant_is_signed(constant));
  return constant->value.int_value;
}

int cmp_integer_values(uint64_t a, bool a_signed, uint64_t b, bool b_signed) {
  bool a_negative = is_negative(a, a_signed), b_negative = is_negative(b, b_signed);
  if (a_negative != b_negative)
    return a_negative ? -1 : 1;
  // With equal signs the order of the words is that of the values.
  return a < b ? -1 : a > b;
}

int cmp_integer_constants(const a_constant* a, const a_constant* b) {
  return cmp_integer_values(a->value.int_value, int_constant_is_signed(a), b->value.int_value,
                            int_constant_is_signed(b));
}

int cmplit_integer_constant(const a_constant* constant, long long literal) {
  return cmp_integer_values(constant->value.int_value, int_constant_is_signed(constant),
                            static_cast<uint64_t>(literal), true);
}

int cmpulit_integer_constant(const a_constant* constant, unsigned long long literal) {
  return cmp_integer_values(constant->value.int_value, int_constant_is_signed(constant), literal,
                            false);
}

bool in_range_for_integer_kind(uint64_t value, bool is_signed, int kind) {
  bool kind_signed = int_kind_is_signed(kind);
  return cmp_integer_values(value, is_signed, min_integer_value_of_kind[kind], kind_signed) >= 0 &&
         cmp_integer_values(value, is_signed, max_integer_value_of_kind[kind], kind_signed) <= 0;
}

bool in_range_for_integer_kind(const a_constant* low, const a_constant* high, int kind) {
  return in_range_for_integer_kind(low->value.int_value, int_constant_is_signed(low), kind) &&
         (low == high ||
          in_range_for_integer_kind(high->value.int_value, int_constant_is_signed(high), kind));
}

bool le_max_integer_value_of_kind(uint64_t value, int kind) {
  return value <= max_integer_value_of_kind[kind];
}

bool is_max_value_for_integer_kind(const a_constant* constant, int kind) {
  return cmp_integer_values(constant->value.int_value, int_constant_is_signed(constant),
                            max_integer_value_of_kind[kind], int_kind_is_signed(kind)) == 0;
}

int bits_required_to_represent_integer_constant(const a_constant* constant) {
  uint64_t word = constant->value.int_value;
  if (is_negative(word, int_constant_is_signed(constant)))
    return std::bit_width(~word) + 1;
  return word == 0 ? 1 : std::bit_width(word);
}

void add_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow) {
  if (is_signed) {
    int64_t result;
    *overflow = __builtin_add_overflow(static_cast<int64_t>(*a), static_cast<int64_t>(b), &result);
    *a = static_cast<uint64_t>(result);
  } else {
    *overflow = __builtin_add_overflow(*a, b, a);
  }
}

void subtract_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow) {
  if (is_signed) {
    int64_t result;
    *overflow = __builtin_sub_overflow(static_cast<int64_t>(*a), static_cast<int64_t>(b), &result);
    *a = static_cast<uint64_t>(result);
  } else {
    *overflow = __builtin_sub_overflow(*a, b, a);
  }
}

// An unsigned result is exact when the carry out of the words is just what the
// signs of the operands contribute above them.
void add_mixed_signed_integer_values(uint64_t* a, bool a_signed, uint64_t b, bool b_signed,
                                     bool* overflow) {
  const int above = -static_cast<int>(is_negative(*a, a_signed)) - is_negative(b, b_signed);
  const int carry = __builtin_add_overflow(*a, b, a);
  *overflow = above + carry != 0;
}

void subtract_mixed_signed_integer_values(uint64_t* a, bool a_signed, uint64_t b, bool b_signed,
                                          bool* overflow) {
  const int above = is_negative(b, b_signed) - static_cast<int>(is_negative(*a, a_signed));
  const int borrow = __builtin_sub_overflow(*a, b, a);
  *overflow = above - borrow != 0;
}

void multiply_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow) {
  if (is_signed) {
    int64_t result;
    *overflow = __builtin_mul_overflow(static_cast<int64_t>(*a), static_cast<int64_t>(b), &result);
    *a = static_cast<uint64_t>(result);
  } else {
    *overflow = __builtin_mul_overflow(*a, b, a);
  }
}

void divide_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow) {
  bool a_negative = is_negative(*a, is_signed), b_negative = is_negative(b, is_signed);
  uint64_t quotient = magnitude(*a, a_negative) / magnitude(b, b_negative);
  *a = magnitude(quotient, a_negative != b_negative);
  // Only the most negative value by -1 has no quotient.
  *overflow = a_negative && b_negative && is_negative(*a, is_signed);
}

void remainder_integer_values(uint64_t* a, uint64_t b, bool is_signed, bool* overflow) {
  bool a_negative = is_negative(*a, is_signed);
  uint64_t divisor = magnitude(b, is_negative(b, is_signed));
  *a = magnitude(magnitude(*a, a_negative) % divisor, a_negative);
  *overflow = false;
}

void negate_integer_value(uint64_t* a, bool is_signed, bool* overflow) {
  *overflow = is_signed && *a == uint64_t{1} << 63;
  *a = 0 - *a;
}

void shift_left_integer_value(uint64_t* a, unsigned count, bool is_signed, bool* overflow) {
  uint64_t original = *a;
  *a <<= count;
  uint64_t back = *a;
  shift_right_integer_value(&back, count, is_signed);
  *overflow = back != original;
}

void shift_right_integer_value(uint64_t* a, unsigned count, bool is_signed) {
  bool negative = is_negative(*a, is_signed);
  *a = negative ? ~(~*a >> count) : *a >> count;
}

uint64_t make_integer_value_mask(int bits) {
  return ~uint64_t{0} >> (64 - bits);
}

uint64_t truncate_integer_value(uint64_t value, int kind) {
  int bits = precision_of_int_kind(kind);
  value &= make_integer_value_mask(bits);
  if (int_kind_is_signed(kind) && value >> (bits - 1) & 1)
    value |= ~make_integer_value_mask(bits);
  return value;
}

char* f_unsigned_to_string_buf(uint64_t value, char* buffer) {
  char* end = std::to_chars(buffer, buffer + integer_text_size - 1, value).ptr;
  *end = '\0';
  return end;
}

const char* str_for_integer_value(uint64_t value, bool is_signed) {
  static char buffer[integer_text_size + 1];
  char* digits = buffer;
  const bool negative = is_negative(value, is_signed);
  if (negative)
    *digits++ = '-';
  f_unsigned_to_string_buf(magnitude(value, negative), digits);
  return buffer;
}

const char* str_for_integer_constant(const a_constant* constant) {
  return str_for_integer_value(constant->value.int_value, int_constant_is_signed(constant));
}

static bool kind_is_candidate(int kind, bool want_signed) {
  return kind != ik_char && int_kind_is_signed(kind) == want_signed;
}

int int_kind_for_size_and_alignment(uint64_t size, uint32_t alignment, bool want_signed) {
  for (int kind = ik_signed_char; kind < num_integer_kinds; ++kind) {
    uint64_t kind_size;
    uint32_t kind_alignment;
    get_integer_size_and_alignment(kind, &kind_size, &kind_alignment, nullptr);
    if (kind_is_candidate(kind, want_signed) && kind_size == size && kind_alignment == alignment)
      return kind;
  }
  return num_integer_kinds;
}

int int_kind_for_bit_size(int bits, bool want_signed) {
  for (int kind = ik_signed_char; kind < num_integer_kinds; ++kind)
    if (kind_is_candidate(kind, want_signed) && precision_of_int_kind(kind) == bits)
      return kind;
  return num_integer_kinds;
}

void const_ints_init() {
  for (int kind = 0; kind < num_integer_kinds; ++kind) {
    uint64_t all_bits = make_integer_value_mask(precision_of_int_kind(kind));
    bool is_signed = int_kind_is_signed(kind);
    max_integer_value_of_kind[kind] = is_signed ? all_bits >> 1 : all_bits;
    min_integer_value_of_kind[kind] = is_signed ? ~(all_bits >> 1) : 0;
  }
}
