// The simulated arithmetic beside the host's hardware, bit for bit, over random
// and adversarial operands; the host's C library checks the conversions of text.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "float_pt.h"
#include "fpsconv.h"
#include "fpsmath.h"
#include "fpstarg.h"
#include "il_types.h"
#include "xint.h"

namespace {

double as_double(uint64_t image) {
  return std::bit_cast<double>(image);
}

uint64_t image_of(double value) {
  return std::bit_cast<uint64_t>(value);
}

uint32_t image_of(float value) {
  return std::bit_cast<uint32_t>(value);
}

simul_fval simulated(double value) {
  simul_fval result;
  ieee_cvt_dtos(image_of(value), &result);
  return result;
}

simul_fval simulated(float value) {
  simul_fval result;
  ieee_cvt_ftos(image_of(value), &result);
  return result;
}

// Operands near the places where arithmetic goes wrong: exponents close together,
// denormals, long runs of zeros and of ones, integers.
class AN_OPERAND_SOURCE {
public:
  uint64_t next() {
    uint64_t image = random();
    switch (random() % 6) {
    case 0:
      return (image & 0x800fffffffffffff) | (0x3fb + random() % 8) << 52;
    case 1:
      return image & 0x800fffffffffffff;
    case 2:
      return image & ~((uint64_t{1} << random() % 52) - 1);
    case 3:
      return image | ((uint64_t{1} << random() % 52) - 1);
    case 4:
      return image_of(static_cast<double>(static_cast<int64_t>(random() >> random() % 64)));
    default:
      return image;
    }
  }
  // A value whose last bits meet the other operand's rounding point.
  uint64_t near(uint64_t image) {
    double scaled = ldexp(as_double(image), static_cast<int>(random() % 120) - 60);
    return image_of(scaled) + random() % 3 - 1;
  }
  std::mt19937_64 random{20};
};

bool same(double ours, double theirs) {
  return image_of(ours) == image_of(theirs) || (std::isnan(ours) && std::isnan(theirs));
}

bool same(float ours, float theirs) {
  return image_of(ours) == image_of(theirs) || (std::isnan(ours) && std::isnan(theirs));
}

using an_operation = int(const simul_fval*, const simul_fval*, simul_fval*);
an_operation* const operations[] = {f_add, f_sub, f_mul, f_div};

template <typename A_FLOAT> A_FLOAT rounded(const simul_fval* value);
template <> double rounded<double>(const simul_fval* value) {
  return as_double(ieee_cvt_stod(value));
}
template <> float rounded<float>(const simul_fval* value) {
  return std::bit_cast<float>(ieee_cvt_stof(value));
}

template <typename A_FLOAT> void expect_operations_agree(A_FLOAT a, A_FLOAT b) {
  const A_FLOAT expected[] = {a + b, a - b, a * b, a / b};
  const simul_fval x = simulated(a), y = simulated(b);
  for (int i = 0; i < 4; i++) {
    simul_fval result;
    operations[i](&x, &y, &result);
    ASSERT_TRUE(same(rounded<A_FLOAT>(&result), expected[i]))
        << std::hexfloat << "operation " << i << " of " << a << " and " << b;
  }
  ASSERT_EQ(f_lt(&x, &y), a < b);
  ASSERT_EQ(f_eq(&x, &y), a == b);
  ASSERT_EQ(f_ge(&x, &y), a >= b);
}

void expect_conversions_agree(double value, int64_t integer) {
  const simul_fval x = simulated(value);
  simul_fval result;
  ASSERT_TRUE(same(rounded<float>(&x), static_cast<float>(value))) << std::hexfloat << value;
  f_itof(integer, &result);
  ASSERT_TRUE(same(rounded<double>(&result), static_cast<double>(integer)));
  ASSERT_TRUE(same(rounded<float>(&result), static_cast<float>(integer)));
  f_utof(static_cast<uint64_t>(integer), &result);
  ASSERT_TRUE(same(rounded<float>(&result), static_cast<float>(static_cast<uint64_t>(integer))));
  if (fabs(value) < 9e18) {
    int64_t truncated;
    ASSERT_EQ(f_ftoi(&x, &truncated), 0);
    ASSERT_EQ(truncated, static_cast<int64_t>(value));
  }
  f_sqrt(&x, &result);
  ASSERT_TRUE(same(rounded<double>(&result), sqrt(value))) << std::hexfloat << value;
}

} // namespace

TEST(FPS_TEST, OperationsAgreeWithTheHardware) {
  AN_OPERAND_SOURCE source;
  for (int i = 0; i < 150000 && !HasFatalFailure(); i++) {
    const uint64_t a = source.next();
    const uint64_t b = i % 4 == 0 ? source.near(a) : source.next();
    expect_operations_agree(as_double(a), as_double(b));
    expect_operations_agree(static_cast<float>(as_double(a)), static_cast<float>(as_double(b)));
    expect_conversions_agree(as_double(a), static_cast<int64_t>(source.random() >> i % 64));
  }
}

TEST(FPS_TEST, RemaindersAgreeWithTheHost) {
  AN_OPERAND_SOURCE source;
  for (int i = 0; i < 5000; i++) {
    const double a = as_double(source.next()), b = as_double(source.next());
    const simul_fval x = simulated(a), y = simulated(b);
    simul_fval result;
    f_fmod(&x, &y, &result);
    ASSERT_TRUE(same(rounded<double>(&result), fmod(a, b))) << std::hexfloat << a << " " << b;
  }
}

static void expect_text_agrees(const char* text) {
  simul_fval value;
  f_atof(text, &value);
  ASSERT_TRUE(same(rounded<double>(&value), strtod(text, nullptr))) << text;
  ASSERT_TRUE(same(rounded<float>(&value), strtof(text, nullptr))) << text;
}

TEST(FPS_TEST, TextIsReadAsTheHostReadsIt) {
  AN_OPERAND_SOURCE source;
  char text[1400];
  const char* const formats[] = {"%.17g", "%.16g", "%.20e", "%.9g", "%.40e", "%a"};
  for (int i = 0; i < 150000 && !HasFatalFailure(); i++) {
    snprintf(text, sizeof text, formats[i % 6], as_double(source.next()));
    expect_text_agrees(text);
    snprintf(text, sizeof text, "%d.%lue%d", i, source.random() >> i % 60,
             static_cast<int>(source.random() % 700) - 350);
    expect_text_agrees(text);
  }
}

TEST(FPS_TEST, HalfwayTextIsDecidedExactly) {
  AN_OPERAND_SOURCE source;
  char text[1400];
  for (int i = 0; i < 500 && !HasFatalFailure(); i++) {
    const double low = fabs(as_double(source.next()));
    const double high = as_double(image_of(low) + 1);
    if (!std::isfinite(low) || !std::isfinite(high))
      continue;
    const long double middle = (static_cast<long double>(low) + high) / 2;
    snprintf(text, sizeof text, "%.1100Le", middle);
    expect_text_agrees(text);
    *(strchr(text, 'e') - 1) = '1'; // just above the middle
    expect_text_agrees(text);
    snprintf(text, sizeof text, "%.770Le", middle);
    expect_text_agrees(text);
  }
}

// A hexadecimal constant is rounded once, straight to the bits that its value
// has room for, also below the normal range.
TEST(FPS_TEST, HexadecimalTextIsRoundedOnce) {
  std::mt19937_64 random{5};
  const int exponents[] = {0, -1022, -1060, -1074, -1080, 1020, -126, -140, -149, 127};
  for (int i = 0; i < 100000; i++) {
    char text[80];
    const uint64_t low = i % 3 == 0 ? 0 : random() >> random() % 64;
    const uint64_t high = random() >> random() % 64 & ~((uint64_t{1} << random() % 64) - 1);
    snprintf(text, sizeof text, "0x%lx.%016lxp%d", high, low,
             exponents[random() % 10] - static_cast<int>(random() % 60));
    a_float_value value;
    bool failed;
    fp_hex_string_to_float(fk_double, text, &value, &failed);
    const double expected = strtod(text, nullptr);
    ASSERT_TRUE(same(rounded<double>(&value), expected)) << text;
    ASSERT_EQ(failed, std::isinf(expected) || (expected == 0 && (high | low) != 0)) << text;
    fp_hex_string_to_float(fk_float, text, &value, &failed);
    ASSERT_TRUE(same(rounded<float>(&value), strtof(text, nullptr))) << text;
  }
}

TEST(FPS_TEST, ZerosOfTwoSignsAreTwoConstants) {
  const simul_fval plus = simulated(0.0), minus = simulated(-0.0);
  bool unordered;
  EXPECT_EQ(fp_compare(fk_double, &plus, &minus, &unordered), 0);
  EXPECT_FALSE(fp_same_representation(&plus, &minus));
  EXPECT_TRUE(fp_same_representation(&plus, &pos_zero));
  strict_fp_representation = 0;
  EXPECT_TRUE(fp_same_representation(&plus, &minus));
  strict_fp_representation = 1;
}

TEST(FPS_TEST, LimitsOfText) {
  struct a_row {
    std::string text;
    double value;
    unsigned error;
  };
  const std::vector<a_row> rows = {
      {"0e999", 0.0, 0},
      {"-0.0", -0.0, 0},
      {"1e512", INFINITY, fpe_overflow},
      {"-1e600", -INFINITY, fpe_overflow},
      {"1e-600", 0.0, fpe_underflow},
      {"1e99999999999999999999", INFINITY, fpe_overflow},
      {"0." + std::string(100000, '0') + "1e100001", 1.0, 0},
      {"1" + std::string(100000, '0') + "e-100000", 1.0, 0},
      {std::string(100000, '9') + "e-100000", 1.0, 0},
      {"NaN", NAN, 0},
      {"-InF", -INFINITY, 0},
      {"0x1.8p+1", 3.0, 0},
      {"0x" + std::string(100000, '0') + ".8", 0.5, 0},
      {"0x1p99999999999", INFINITY, fpe_overflow},
  };
  for (const a_row& row : rows) {
    simul_fval value;
    fp_error = 0;
    f_atof(row.text.c_str(), &value);
    EXPECT_TRUE(same(rounded<double>(&value), row.value)) << row.text.substr(0, 40);
    EXPECT_EQ(fp_error, row.error) << row.text.substr(0, 40);
  }
}

TEST(FPS_TEST, TextIsWrittenAsTheHostWritesIt) {
  AN_OPERAND_SOURCE source;
  const char* const formats[] = {"%.16e", "%.5g", "%g", "%.17g", "%.3f", "%.0E", "%.30e", "%12.4f"};
  for (int i = 0; i < 40000; i++) {
    const double value = as_double(source.next());
    if (!std::isfinite(value))
      continue;
    const simul_fval operand = simulated(value);
    char ours[512], theirs[512];
    f_ftoa(ours, formats[i % 8], &operand);
    snprintf(theirs, sizeof theirs, formats[i % 8], value);
    ASSERT_STREQ(ours, theirs) << formats[i % 8];
  }
}

TEST(FPS_TEST, ShortestTextReadsBack) {
  AN_OPERAND_SOURCE source;
  for (int i = 0; i < 1000; i++) {
    const double value = as_double(source.next());
    if (!std::isfinite(value))
      continue;
    const simul_fval wide = simulated(value);
    ASSERT_TRUE(same(strtod(fp_to_string(fk_double, &wide), nullptr), value));
    ASSERT_TRUE(same(strtod(fp_to_hex_string(fk_double, &wide), nullptr), value));
    const simul_fval narrow = simulated(static_cast<float>(value));
    ASSERT_TRUE(same(strtof(fp_to_string(fk_float, &narrow), nullptr), static_cast<float>(value)));
  }
  const simul_fval tenth = simulated(0.1f);
  EXPECT_STREQ(fp_to_string(fk_float, &tenth), "0.1");
  const simul_fval third = simulated(1.0 / 3);
  EXPECT_STREQ(fp_to_string(fk_double, &third), "0.3333333333333333");
}

TEST(FPS_TEST, FunctionsAreFaithful) {
  std::mt19937_64 random{7};
  for (int i = 0; i < 500; i++) {
    const double a = static_cast<double>(random() % 1000000) / 1000 - 500;
    const double b = static_cast<double>(random() % 10000) / 1000 - 5;
    const simul_fval x = simulated(a), y = simulated(b);
    simul_fval result;
    const auto near = [&](double theirs) {
      const double ours = f_ftoh(&result);
      return same(ours, theirs) || fabs(ours - theirs) <= fabs(theirs) * 4e-16;
    };
    f_exp(&x, &result);
    EXPECT_TRUE(near(exp(a))) << a;
    f_log(&x, &result);
    EXPECT_TRUE(near(log(a))) << a;
    f_log10(&x, &result);
    EXPECT_TRUE(near(log10(a))) << a;
    f_pow(&x, &y, &result);
    EXPECT_TRUE(near(pow(a, b))) << a << " " << b;
    f_round(&y, &result);
    EXPECT_TRUE(near(round(b)));
    f_floor(&y, &result);
    EXPECT_TRUE(near(floor(b)));
    f_ceil(&y, &result);
    EXPECT_TRUE(near(ceil(b)));
  }
}

// C99 F.9.4.4: powers that are special, whole and great, or both.
TEST(FPS_TEST, PowersOfAllKindsAreThoseOfTheHost) {
  const double operands[] = {0.0,    -0.0,    1,     -1,     2,      -2,   0.5,      -0.5,
                             3,      1.5,     1e20,  -1e20,  1e300,  1025, 1e-300,   -INFINITY,
                             5e-324, -1025.0, 1e-20, 0x1p53, -1e300, NAN,  INFINITY, 0x1p53 - 1};
  for (double base : operands)
    for (double power : operands) {
      const simul_fval x = simulated(base), y = simulated(power);
      simul_fval result;
      fp_error = 0;
      const bool failed = f_pow(&x, &y, &result) != 0;
      EXPECT_EQ(failed, fp_error != 0) << base << " " << power;
      const double ours = rounded<double>(&result), theirs = pow(base, power);
      EXPECT_TRUE(same(ours, theirs) || fabs(ours - theirs) <= fabs(theirs) * 4e-16)
          << base << " " << power << ": " << ours << " " << theirs;
    }
}

TEST(FPS_TEST, FailuresAreTold) {
  const simul_fval one = simulated(1.0), huge = simulated(1.7e308), least = simulated(5e-324);
  a_float_value result;
  bool failed, inexact;
  fp_divide(fk_double, &one, &pos_zero, &result, &failed, &inexact);
  EXPECT_TRUE(failed && fp_is_infinity(&result) && fp_error == fpe_zero_division);
  fp_divide(fk_double, &pos_zero, &pos_zero, &result, &failed, &inexact);
  EXPECT_TRUE(failed && fp_is_nan(&result) && fp_error == fpe_invalid);
  fp_add(fk_double, &huge, &huge, &result, &failed, &inexact);
  EXPECT_TRUE(failed && fp_is_infinity(&result) && fp_error == fpe_overflow);
  fp_multiply(fk_double, &least, &least, &result, &failed, &inexact);
  EXPECT_TRUE(failed && fp_error == fpe_underflow);
  fp_string_to_float(fk_float, "1.0e40", &result, &failed);
  EXPECT_TRUE(failed && fp_is_infinity(&result));
  // Rounds up to the threshold of single format.
  bool overflow, underflow;
  const simul_fval edge = simulated(3.4028235677973366e38);
  fp_change_kind(&edge, fk_double, &result, fk_float, &overflow, &underflow);
  EXPECT_TRUE(overflow && fp_is_infinity(&result));
  int64_t integer;
  fp_error = 0;
  EXPECT_EQ(f_ftoi(&huge, &integer), -1);
  EXPECT_EQ(integer, INT64_MAX);
}

static __int128 value_of(const XI& number) {
  unsigned __int128 word = 0;
  for (uint8_t byte : number.byte)
    word = word << 8 | byte;
  return static_cast<__int128>(word);
}

static XI number_of(unsigned __int128 word) {
  XI result;
  for (int i = 16; i-- > 0; word >>= 8)
    result.byte[i] = static_cast<uint8_t>(word);
  return result;
}

static __int128 random_wide(std::mt19937_64& random) {
  const auto word = static_cast<unsigned __int128>(random()) << 64 | random();
  const auto part = static_cast<__int128>(word >> random() % 128);
  return random() % 2 == 0 ? part : ~part;
}

TEST(XINT_TEST, CarriesBitsAndOrderAgreeWithTheCompilersIntegers) {
  using an_unsigned = unsigned __int128;
  std::mt19937_64 random{11};
  for (int i = 0; i < 100000; i++) {
    const __int128 x = random_wide(random), y = i % 16 == 0 ? x : random_wide(random);
    const an_unsigned ux = static_cast<an_unsigned>(x), uy = static_cast<an_unsigned>(y);
    const XI a = number_of(ux), b = number_of(uy);
    XI result;
    ASSERT_EQ(XI_add(&a, &b, &result), ux + uy < ux);
    ASSERT_EQ(XI_sub(&a, &b, &result), ux < uy);
    ASSERT_TRUE(value_of(result) == static_cast<__int128>(ux - uy));
    XI_neg(&a, &result);
    ASSERT_TRUE(value_of(result) == static_cast<__int128>(0 - ux));
    XI_and(&a, &b, &result);
    ASSERT_TRUE(value_of(result) == (x & y));
    XI_or(&a, &b, &result);
    ASSERT_TRUE(value_of(result) == (x | y));
    XI_xor(&a, &b, &result);
    ASSERT_TRUE(value_of(result) == (x ^ y));
    XI_notb(&a, &result);
    ASSERT_TRUE(value_of(result) == ~x);
    const unsigned count = random() % 160;
    XI_shl(&a, count, &result);
    ASSERT_TRUE(value_of(result) == (count < 128 ? static_cast<__int128>(ux << count) : 0));
    XI_shr(&a, count, &result);
    ASSERT_TRUE(value_of(result) == x >> (count < 128 ? count : 127));
    ASSERT_EQ(XI_lt(&a, &b), x < y);
    ASSERT_EQ(XI_le(&a, &b), x <= y);
    ASSERT_EQ(XI_gt(&a, &b), x > y);
    ASSERT_EQ(XI_ge(&a, &b), x >= y);
    ASSERT_EQ(XI_eq(&a, &b), x == y);
    ASSERT_EQ(XI_ne(&a, &b), x != y);
    ASSERT_EQ(XI_xtoi(&a), static_cast<int>(x));
    ASSERT_EQ(XI_xtou(&a), static_cast<unsigned>(x));
    ASSERT_EQ(XI_xtolli(&a), static_cast<long long>(x));
    ASSERT_EQ(XI_xtollu(&a), static_cast<unsigned long long>(x));
    XI_llitox(static_cast<long long>(x), &result);
    ASSERT_TRUE(value_of(result) == static_cast<long long>(x));
    XI_llutox(static_cast<unsigned long long>(x), &result);
    ASSERT_TRUE(value_of(result) == static_cast<unsigned long long>(x));
  }
}

TEST(XINT_TEST, ConvertsToAndFromFloatingPoint) {
  std::mt19937_64 random{12};
  for (int i = 0; i < 50000; i++) {
    const __int128 x = random_wide(random);
    const XI a = number_of(static_cast<unsigned __int128>(x));
    simul_fval value;
    XI back;
    ASSERT_EQ(f_xtof(&a, &value), 0);
    ASSERT_TRUE(same(rounded<double>(&value), static_cast<double>(x)));
    ASSERT_TRUE(same(rounded<float>(&value), static_cast<float>(x)));
    const double fraction = static_cast<double>(x) / 3;
    value = simulated(fraction);
    ASSERT_EQ(f_ftox(&value, &back), 0);
    ASSERT_TRUE(value_of(back) == static_cast<__int128>(fraction));
  }
  const __int128 most = static_cast<__int128>(~static_cast<unsigned __int128>(0) >> 1);
  XI back;
  const simul_fval above = simulated(ldexp(1.0, 127)), below = simulated(-ldexp(1.0, 127));
  EXPECT_EQ(f_ftox(&above, &back), -1);
  EXPECT_TRUE(value_of(back) == most);
  EXPECT_EQ(f_ftox(&below, &back), 0);
  EXPECT_TRUE(value_of(back) == -most - 1);
  EXPECT_EQ(f_ftox(&a_nan, &back), -1);
  EXPECT_TRUE(value_of(back) == 0);
}

TEST(XINT_TEST, AgreesWithTheCompilersIntegers) {
  std::mt19937_64 random{3};
  for (int i = 0; i < 100000; i++) {
    const unsigned shift = random() % 128;
    const auto x = static_cast<__int128>(random()) << 64 >> shift | (random() >> random() % 64);
    const auto y = static_cast<__int128>(random() >> random() % 64) * (i % 2 ? 1 : -1);
    const XI a = number_of(static_cast<unsigned __int128>(x));
    const XI b = number_of(static_cast<unsigned __int128>(y));
    XI result;
    using an_unsigned = unsigned __int128;
    XI_add(&a, &b, &result);
    ASSERT_TRUE(value_of(result) == static_cast<__int128>(an_unsigned(x) + an_unsigned(y)));
    XI_mpy(&a, &b, &result);
    ASSERT_TRUE(value_of(result) == static_cast<__int128>(an_unsigned(x) * an_unsigned(y)));
    if (y != 0) {
      XI_div(&a, &b, &result);
      ASSERT_TRUE(value_of(result) == x / y);
      XI_mod(&a, &b, &result);
      ASSERT_TRUE(value_of(result) == x % y);
    }
    XI_shr(&a, shift, &result);
    ASSERT_TRUE(value_of(result) == x >> shift);
    ASSERT_EQ(XI_cmp(&a, &b), x < y ? -1 : x > y);
  }
  XI number;
  const int sizes[][2] = {{0, 1}, {1, 1}, {255, 8}, {-1, 1}, {-2, 1}, {-256, 8}, {-257, 9}};
  for (const auto& row : sizes) {
    XI_itox(row[0], &number);
    EXPECT_EQ(XI_size(&number), row[1]) << row[0];
  }
  EXPECT_EQ(XI_div(&number, &number, &number), 0);
  const XI zero = number_of(0);
  EXPECT_EQ(XI_div(&number, &zero, &number), -1);
}
