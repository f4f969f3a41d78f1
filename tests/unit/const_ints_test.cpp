// The exact integers against 128-bit arithmetic of the host.

#include "const_ints.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

#include "target.h"
#include "types.h"

namespace {

typedef __int128 wide;

wide widen(uint64_t word, bool is_signed) {
  return is_signed ? static_cast<wide>(static_cast<int64_t>(word)) : static_cast<wide>(word);
}

bool fits(wide value, bool is_signed) {
  return is_signed ? value >= INT64_MIN && value <= INT64_MAX : value >= 0 && value <= UINT64_MAX;
}

// Words near the borders are as likely as others.
uint64_t random_word(std::mt19937_64& random) {
  static const uint64_t borders[] = {0, 1, ~uint64_t{0}, uint64_t{1} << 63, INT64_MAX, 2};
  uint64_t word = random() >> (random() % 64);
  switch (random() % 4) {
  case 0:
    return borders[random() % 6] + random() % 3 - 1;
  case 1:
    return 0 - word;
  default:
    return word;
  }
}

struct operation {
  void (*step)(uint64_t*, uint64_t, bool, bool*);
  wide (*exact)(wide, wide);
  bool needs_divisor;
};

const operation operations[] = {
    {add_integer_values, [](wide a, wide b) { return a + b; }, false},
    {subtract_integer_values, [](wide a, wide b) { return a - b; }, false},
    {multiply_integer_values, [](wide a, wide b) { return a * b; }, false},
    {divide_integer_values, [](wide a, wide b) { return a / b; }, true},
    {remainder_integer_values, [](wide a, wide b) { return a % b; }, true},
};

// The bounds of a kind by its width.
bool value_in_kind(wide value, int kind) {
  const int bits = precision_of_int_kind(kind);
  const bool is_signed = int_kind_is_signed(kind);
  const wide limit = static_cast<wide>(1) << (is_signed ? bits - 1 : bits);
  return value < limit && value >= (is_signed ? -limit : 0);
}

class ConstInts : public testing::Test {
protected:
  void SetUp() override {
    target_early_init();
    const_ints_init();
  }
  std::mt19937_64 random{20260101};
};

TEST_F(ConstInts, OperationsAgreeWithExactArithmetic) {
  for (int i = 0; i < 200000; ++i) {
    uint64_t a = random_word(random), b = random_word(random);
    bool is_signed = random() & 1;
    for (const operation& op : operations) {
      if (op.needs_divisor && b == 0)
        continue;
      // The product of two unsigned words needs the 128th bit.
      bool overflow, expect_overflow;
      uint64_t result = a, expected;
      op.step(&result, b, is_signed, &overflow);
      if (op.step == multiply_integer_values && !is_signed) {
        unsigned __int128 product = static_cast<unsigned __int128>(a) * b;
        expected = static_cast<uint64_t>(product);
        expect_overflow = product >> 64 != 0;
      } else {
        wide exact = op.exact(widen(a, is_signed), widen(b, is_signed));
        expected = static_cast<uint64_t>(exact);
        expect_overflow = !fits(exact, is_signed);
      }
      ASSERT_EQ(result, expected) << a << " " << b << " " << is_signed;
      ASSERT_EQ(overflow, expect_overflow) << a << " " << b << " " << is_signed;
    }
    wide difference = widen(a, is_signed) - widen(b, !is_signed);
    ASSERT_EQ(cmp_integer_values(a, is_signed, b, !is_signed),
              difference < 0 ? -1 : difference > 0);
  }
}

TEST_F(ConstInts, MixedOperandsGiveAnUnsignedResult) {
  for (int i = 0; i < 200000; ++i) {
    const uint64_t a = random_word(random), b = random_word(random);
    const bool a_signed = random() & 1;
    uint64_t sum = a, difference = a;
    bool overflow;
    const wide exact_sum = widen(a, a_signed) + widen(b, !a_signed);
    add_mixed_signed_integer_values(&sum, a_signed, b, !a_signed, &overflow);
    ASSERT_EQ(sum, static_cast<uint64_t>(exact_sum));
    ASSERT_EQ(overflow, !fits(exact_sum, false)) << a << " " << b << " " << a_signed;
    const wide exact_difference = widen(a, a_signed) - widen(b, !a_signed);
    subtract_mixed_signed_integer_values(&difference, a_signed, b, !a_signed, &overflow);
    ASSERT_EQ(difference, static_cast<uint64_t>(exact_difference));
    ASSERT_EQ(overflow, !fits(exact_difference, false)) << a << " " << b << " " << a_signed;
  }
}

TEST_F(ConstInts, UnaryOperationsAndConversionsAgreeWithExactArithmetic) {
  for (int i = 0; i < 100000; ++i) {
    const uint64_t word = random_word(random);
    const bool is_signed = random() & 1;
    uint64_t negated = word;
    bool overflow;
    negate_integer_value(&negated, is_signed, &overflow);
    ASSERT_EQ(negated, static_cast<uint64_t>(-widen(word, is_signed)));
    ASSERT_EQ(overflow, is_signed && !fits(-widen(word, true), true)) << word;
    value_of_integer_value(word, is_signed, &overflow);
    ASSERT_EQ(overflow, !fits(widen(word, is_signed), true)) << word;
    uint64_t shifted = word;
    const unsigned count = random() % 64;
    shift_left_integer_value(&shifted, count, false, &overflow);
    const unsigned __int128 exact = static_cast<unsigned __int128>(word) << count;
    ASSERT_EQ(shifted, static_cast<uint64_t>(exact));
    ASSERT_EQ(overflow, exact >> 64 != 0);
    const int kind = static_cast<int>(random() % num_integer_kinds);
    const wide cut = widen(truncate_integer_value(word, kind), int_kind_is_signed(kind));
    ASSERT_EQ(value_in_kind(widen(word, is_signed), kind),
              in_range_for_integer_kind(word, is_signed, kind));
    ASSERT_TRUE(cut == widen(word, is_signed) || !value_in_kind(widen(word, is_signed), kind));
  }
}

TEST_F(ConstInts, TextIsThatOfTheHost) {
  for (int i = 0; i < 20000; ++i) {
    const uint64_t word = random_word(random);
    ASSERT_EQ(str_for_integer_value(word, false), std::to_string(word));
    ASSERT_EQ(str_for_integer_value(word, true), std::to_string(static_cast<int64_t>(word)));
    char buffer[integer_text_size];
    char* end = f_unsigned_to_string_buf(word, buffer);
    ASSERT_EQ(std::string(buffer, end), std::to_string(word));
  }
}

TEST_F(ConstInts, KindsAreFoundBySizeAndAlignment) {
  EXPECT_EQ(int_kind_for_size_and_alignment(1, 1, false), ik_unsigned_char);
  EXPECT_EQ(int_kind_for_size_and_alignment(4, 1, true), ik_int);
  EXPECT_EQ(int_kind_for_size_and_alignment(8, 1, false), ik_unsigned_long_long);
  EXPECT_EQ(int_kind_for_size_and_alignment(4, 4, true), num_integer_kinds);
  EXPECT_EQ(int_kind_for_size_and_alignment(3, 1, true), num_integer_kinds);
  EXPECT_EQ(int_kind_for_bit_size(16, true), ik_short);
  EXPECT_EQ(int_kind_for_bit_size(24, true), num_integer_kinds);
}

TEST_F(ConstInts, ShiftsKeepTheSignAndReportLostBits) {
  for (int i = 0; i < 100000; ++i) {
    uint64_t word = random_word(random), shifted = word;
    unsigned count = random() % 64;
    bool overflow;
    shift_left_integer_value(&shifted, count, true, &overflow);
    wide exact = widen(word, true) * (static_cast<wide>(1) << count);
    ASSERT_EQ(shifted, static_cast<uint64_t>(exact));
    ASSERT_EQ(overflow, !fits(exact, true));
    shifted = word;
    shift_right_integer_value(&shifted, count, true);
    ASSERT_EQ(static_cast<int64_t>(shifted), static_cast<int64_t>(word) >> count);
  }
}

TEST_F(ConstInts, KindsCutAndExtend) {
  EXPECT_EQ(truncate_integer_value(0x1ff, ik_signed_char), ~uint64_t{0});
  EXPECT_EQ(truncate_integer_value(0x1ff, ik_char), 0xffu); // plain char is unsigned here
  EXPECT_EQ(truncate_integer_value(0x180000000, ik_int), 0xffffffff80000000u);
  EXPECT_EQ(truncate_integer_value(~uint64_t{0}, ik_unsigned_int), 0xffffffffu);
  EXPECT_TRUE(in_range_for_integer_kind(0x7fffffff, true, ik_int));
  EXPECT_FALSE(in_range_for_integer_kind(0x80000000, true, ik_int));
  EXPECT_FALSE(in_range_for_integer_kind(~uint64_t{0}, true, ik_unsigned_long_long));
  EXPECT_TRUE(in_range_for_integer_kind(~uint64_t{0}, false, ik_unsigned_long_long));
}

} // namespace
