#include "fpsconv.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fps_int.h"
#include "fpstarg.h"
#include "xint.h"

static bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

int f_utof(uint64_t value, simul_fval* result) {
  an_unpacked wide = {value, 128, false, fc_finite};
  normalize(&wide);
  return pack(wide, result);
}

int f_itof(int64_t value, simul_fval* result) {
  *result = float_of_int(value);
  return 0;
}

// The magnitude without its fraction; false when it needs more than 128 bits.
static bool whole_magnitude(const an_unpacked& value, a_wide_word* result) {
  *result = 0;
  if (value.kind == fc_zero || (value.kind == fc_finite && value.exponent <= 0))
    return true;
  if (value.kind != fc_finite || value.exponent > 128)
    return false;
  *result = value.mantissa >> (128 - value.exponent);
  return true;
}

static int conversion_fails() {
  fp_error |= fpe_invalid;
  return -1;
}

int f_ftoi(const simul_fval* value, int64_t* result) {
  const an_unpacked wide = unpack(value);
  a_wide_word magnitude;
  const a_wide_word limit = a_wide_word{INT64_MAX} + wide.negative;
  if (!whole_magnitude(wide, &magnitude) || magnitude > limit) {
    *result = wide.kind == fc_nan ? 0 : wide.negative ? INT64_MIN : INT64_MAX;
    return conversion_fails();
  }
  const uint64_t word = static_cast<uint64_t>(magnitude);
  *result = static_cast<int64_t>(wide.negative ? 0 - word : word);
  return 0;
}

int f_ftou(const simul_fval* value, uint64_t* result) {
  const an_unpacked wide = unpack(value);
  a_wide_word magnitude;
  const a_wide_word limit = wide.negative ? 0 : UINT64_MAX;
  if (!whole_magnitude(wide, &magnitude) || magnitude > limit) {
    *result = wide.kind == fc_nan || wide.negative ? 0 : UINT64_MAX;
    return conversion_fails();
  }
  *result = static_cast<uint64_t>(magnitude);
  return 0;
}

int f_xtof(const XI* value, simul_fval* result) {
  const bool negative = value->byte[0] >= 0x80;
  const a_wide_word word = word_of(value);
  an_unpacked wide = {negative ? 0 - word : word, 128, negative, fc_finite};
  normalize(&wide);
  return pack(wide, result);
}

int f_ftox(const simul_fval* value, XI* result) {
  const an_unpacked wide = unpack(value);
  const a_wide_word top = a_wide_word{1} << 127;
  const a_wide_word limit = wide.negative ? top : top - 1;
  a_wide_word magnitude;
  const bool fits = whole_magnitude(wide, &magnitude) && magnitude <= limit;
  if (!fits)
    magnitude = wide.kind == fc_nan ? 0 : limit;
  store_word(wide.negative ? 0 - magnitude : magnitude, result);
  return fits ? 0 : conversion_fails();
}

double f_ftoh(const simul_fval* value) {
  const uint64_t image = ieee_cvt_stod(value);
  double result;
  memcpy(&result, &image, sizeof result);
  return result;
}

// A decimal constant taken apart: an integer of `count` digits times ten to the exponent.
struct a_decimal {
  const char* digits;  // the first digit that isn't zero
  uint64_t leading[2]; // the values of the first 19 digits and of the next 19
  int64_t count;       // of digits from the first nonzero one on
  int64_t exponent;
};

// So many digits always fit 64 and 128 bits.
static constexpr int word_digits = 19;
static constexpr int leading_digits = 2 * word_digits;

// Digits that an exact conversion looks at; beyond them only "more or not" counts.
static constexpr int64_t exact_digits = 1200;

// The first decimal exponent that is out of range.
static constexpr int64_t decimal_exponent_limit = 512;

static void take_digit(char c, a_decimal* decimal, const char* at) {
  if (decimal->count == 0) {
    if (c == '0')
      return;
    decimal->digits = at;
  }
  uint64_t* word = &decimal->leading[decimal->count >= word_digits];
  if (decimal->count++ < leading_digits)
    *word = *word * 10 + static_cast<unsigned>(c - '0');
}

static a_decimal scan_decimal(const char* text) {
  a_decimal decimal = {text, {0, 0}, 0, 0};
  for (; is_digit(*text); text++)
    take_digit(*text, &decimal, text);
  if (*text == '.') {
    for (text++; is_digit(*text); text++) {
      take_digit(*text, &decimal, text);
      decimal.exponent--;
    }
  }
  if (*text == 'e' || *text == 'E')
    decimal.exponent += std::clamp(strtol(text + 1, nullptr, 10), -1000000000L, 1000000000L);
  return decimal;
}

// All digits as one number, cut off where they can't matter; the exponent follows.
static a_natural all_digits(a_decimal* decimal) {
  a_natural number;
  const int64_t kept = std::min(decimal->count, exact_digits);
  const char* p = decimal->digits;
  for (int64_t i = 0; i < kept; p++)
    if (is_digit(*p)) {
      multiply_small(&number, 10, static_cast<uint32_t>(*p - '0'));
      i++;
    }
  if (decimal->count > kept) {
    multiply_small(&number, 10, strspn(p, "0.") == strspn(p, "0123456789.") ? 0 : 1);
    decimal->exponent += decimal->count - kept - 1;
  }
  return number;
}

static an_unpacked convert_exactly(a_decimal decimal) {
  a_natural number = all_digits(&decimal);
  const int power = static_cast<int>(decimal.exponent);
  if (power >= 0) {
    multiply_power_of_five(&number, static_cast<unsigned>(power));
    return {top_bits(number), bit_length(number) + power, false, fc_finite};
  }
  a_natural divisor = {1};
  multiply_power_of_five(&divisor, static_cast<unsigned>(-power));
  const int shift = std::max(0, bit_length(divisor) - bit_length(number) + 130);
  shift_left(&number, static_cast<unsigned>(shift));
  const a_natural quotient = divide(&number, divisor);
  return {top_bits(quotient) | !number.empty(), bit_length(quotient) - shift + power, false,
          fc_finite};
}

// Powers of five that fit 128 bits.
static constexpr int exact_powers = 56;
static constexpr auto power_of_five = [] {
  std::array<a_wide_word, exact_powers> table{};
  table[0] = 1;
  for (int i = 1; i < exact_powers; i++)
    table[i] = table[i - 1] * 5;
  return table;
}();

// Their continuation: 5 to the multiples of 56, each within one unit in the last place.
static constexpr int big_powers = 12;
static const std::array<an_unpacked, big_powers>& powers_of_five_56() {
  static const auto table = [] {
    std::array<an_unpacked, big_powers> result{};
    a_natural power = {1};
    for (an_unpacked& entry : result) {
      entry = {top_bits(power), bit_length(power), false, fc_finite};
      multiply_power_of_five(&power, exact_powers);
    }
    return result;
  }();
  return table;
}

static an_unpacked multiply(const an_unpacked& a, const an_unpacked& b) {
  an_unpacked product = {multiply_high(a.mantissa, b.mantissa), a.exponent + b.exponent, false,
                         fc_finite};
  normalize(&product);
  return product;
}

static an_unpacked scale(const an_unpacked& value, const an_unpacked& power, bool divided) {
  if (!divided)
    return multiply(value, power);
  an_unpacked quotient = {divide_fractions(value.mantissa, power.mantissa),
                          value.exponent - power.exponent + 1, false, fc_finite};
  normalize(&quotient);
  return quotient;
}

// Whether an error of a few units in the last place leaves all stored bits,
// and that there is a rest below them, as they are.
static bool is_certain(const an_unpacked& value) {
  constexpr uint32_t most = 64;
  const uint32_t low = static_cast<uint32_t>(value.mantissa);
  return low > most && low < UINT32_MAX - most;
}

static an_unpacked leading_value(const a_decimal& decimal) {
  a_wide_word word = decimal.leading[0];
  for (int64_t i = word_digits; i < decimal.count; i++)
    word *= 10;
  an_unpacked value = {word + decimal.leading[1], 128, false, fc_finite};
  normalize(&value);
  return value;
}

static an_unpacked convert_decimal(const a_decimal& decimal) {
  const int64_t power = decimal.exponent < 0 ? -decimal.exponent : decimal.exponent;
  if (decimal.count > leading_digits || power >= exact_powers * big_powers)
    return convert_exactly(decimal);
  const an_unpacked value = leading_value(decimal);
  an_unpacked factor = {power_of_five[power % exact_powers], 128, false, fc_finite};
  normalize(&factor);
  if (power >= exact_powers)
    factor = multiply(factor, powers_of_five_56()[power / exact_powers]);
  an_unpacked result = scale(value, factor, decimal.exponent < 0);
  result.exponent += static_cast<int>(decimal.exponent);
  return power < exact_powers || is_certain(result) ? result : convert_exactly(decimal);
}

static int atof_decimal(const char* text, bool negative, simul_fval* result) {
  const a_decimal decimal = scan_decimal(text);
  if (decimal.count == 0)
    return set_special(pos_zero, negative, result);
  const int64_t scientific = decimal.exponent + decimal.count - 1;
  if (scientific >= decimal_exponent_limit || scientific <= -decimal_exponent_limit) {
    fp_error |= scientific > 0 ? fpe_overflow : fpe_underflow;
    set_special(scientific > 0 ? pos_infin : pos_zero, negative, result);
    return -1;
  }
  an_unpacked value = convert_decimal(decimal);
  value.negative = negative;
  return pack(value, result);
}

static int hex_digit(char c) {
  if (is_digit(c))
    return c - '0';
  const char letter = static_cast<char>(c | 0x20);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

static void take_hex_digit(int digit, a_wide_word* word, uint32_t* sticky, int64_t* exponent) {
  if (*word >> 124 == 0) {
    *word = *word << 4 | static_cast<unsigned>(digit);
  } else {
    *sticky |= digit != 0;
    *exponent += 4;
  }
}

static a_wide_word word_of(const a_mantissa* mantissa) {
  a_wide_word word = 0;
  for (uint32_t part : mantissa->word)
    word = word << 32 | part;
  return word;
}

static void store_word(a_wide_word word, a_mantissa* mantissa) {
  for (int i = 4; i-- > 0; word >>= 32)
    mantissa->word[i] = static_cast<uint32_t>(word);
}

bool conv_hex_string_to_mantissa_and_exponent(const char* text, a_mantissa* mantissa,
                                              int32_t* exponent) {
  const char* p = text;
  if (p[0] == '0' && (p[1] | 0x20) == 'x')
    p += 2;
  const char* start = p;
  a_wide_word word = 0;
  int64_t twos = 0;
  bool fraction = false;
  mantissa->sticky = 0;
  for (;; p++) {
    const int digit = hex_digit(*p);
    if (digit >= 0)
      take_hex_digit(digit, &word, &mantissa->sticky, &twos);
    else if (*p == '.' && !fraction)
      fraction = true;
    else
      break;
    if (fraction && digit >= 0)
      twos -= 4;
  }
  if (p == start)
    return false;
  if ((*p | 0x20) == 'p')
    twos += std::clamp(strtol(p + 1, nullptr, 10), -1000000000L, 1000000000L);
  an_unpacked wide = {word, 128, false, fc_finite};
  normalize(&wide);
  store_word(wide.mantissa, mantissa);
  *exponent = static_cast<int32_t>(wide.exponent + twos);
  return true;
}

void round_hex_fp_value(a_mantissa* mantissa, int32_t* exponent, int bits) {
  a_wide_word word = word_of(mantissa);
  const a_wide_word unit = a_wide_word{1} << (128 - bits), half = unit >> 1;
  const a_wide_word rest = word & (unit - 1);
  const bool up = rest > half || (rest == half && (mantissa->sticky != 0 || (word & unit) != 0));
  word -= rest;
  if (up && (word += unit) == 0) {
    word = a_wide_word{1} << 127;
    ++*exponent;
  }
  mantissa->sticky = 0;
  store_word(word, mantissa);
}

int conv_mantissa_to_floating_point(const a_mantissa* mantissa, int32_t exponent,
                                    simul_fval* result) {
  an_unpacked wide = {word_of(mantissa) | (mantissa->sticky != 0), exponent, false, fc_finite};
  normalize(&wide);
  return pack(wide, result);
}

static int atof_hexadecimal(const char* text, bool negative, simul_fval* result) {
  a_mantissa mantissa;
  int32_t exponent;
  if (!conv_hex_string_to_mantissa_and_exponent(text, &mantissa, &exponent)) {
    *result = pos_zero;
    return conversion_fails();
  }
  const int status = conv_mantissa_to_floating_point(&mantissa, exponent, result);
  result->sign = negative;
  return status;
}

static bool starts_with(const char* text, const char* word) {
  for (; *word != '\0'; text++, word++)
    if ((*text | 0x20) != *word)
      return false;
  return true;
}

int f_atof(const char* text, simul_fval* result) {
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+')
    text++;
  if (starts_with(text, "nan"))
    return set_special(a_nan, negative, result);
  if (starts_with(text, "inf"))
    return set_special(pos_infin, negative, result);
  if (text[0] == '0' && (text[1] | 0x20) == 'x')
    return atof_hexadecimal(text, negative, result);
  return atof_decimal(text, negative, result);
}

// The value times ten to the power, rounded to an integer, ties to even.
static a_natural scaled_integer(const an_unpacked& value, int power) {
  a_natural number = natural_from(value.mantissa);
  a_natural divisor = {1};
  multiply_power_of_five(power >= 0 ? &number : &divisor,
                         static_cast<unsigned>(power >= 0 ? power : -power));
  const int shift = value.exponent - 128 + power;
  shift_left(shift >= 0 ? &number : &divisor, static_cast<unsigned>(shift >= 0 ? shift : -shift));
  a_natural quotient = divide(&number, divisor);
  shift_left(&number, 1);
  const int order = compare(number, divisor);
  const bool odd = !quotient.empty() && (quotient[0] & 1) != 0;
  if (order > 0 || (order == 0 && odd))
    multiply_small(&quotient, 1, 1);
  return quotient;
}

std::string f_ecvt(const simul_fval* value, int count, int* point, bool* negative) {
  const an_unpacked wide = unpack(value);
  *negative = wide.negative;
  *point = 1;
  if (wide.kind != fc_finite)
    return std::string(static_cast<size_t>(count), '0');
  // At most one too low, by the digits of log10(2).
  int power = static_cast<int>((int64_t{wide.exponent} - 1) * 30103 / 100000) - 1;
  for (;; power++) {
    std::string digits = decimal_digits(scaled_integer(wide, count - 1 - power));
    const int length = static_cast<int>(digits.size());
    // One digit too many may be the carry of rounding 99.. up, or a power too low.
    if (length > count && digits.find_first_not_of('0', 1) != std::string::npos)
      continue;
    if (length > count + 1)
      continue;
    *point = power + 1 + (length - count);
    return digits.substr(0, static_cast<size_t>(count));
  }
}

std::string f_fcvt(const simul_fval* value, int count, int* point, bool* negative) {
  const an_unpacked wide = unpack(value);
  *negative = wide.negative;
  std::string digits =
      wide.kind == fc_finite ? decimal_digits(scaled_integer(wide, count)) : std::string("0");
  *point = static_cast<int>(digits.size()) - count;
  return digits;
}

std::string f_acvt(const simul_fval* value, int* exponent, bool* negative) {
  const an_unpacked wide = unpack(value);
  *negative = wide.negative;
  *exponent = wide.kind == fc_finite ? wide.exponent - 1 : 0;
  if (wide.kind != fc_finite)
    return "0";
  std::string digits = "1";
  for (a_wide_word rest = wide.mantissa << 1; rest != 0; rest <<= 4)
    digits += "0123456789abcdef"[static_cast<unsigned>(rest >> 124)];
  return digits;
}

static std::string with_exponent(const std::string& digits, char letter, int exponent,
                                 int least_digits) {
  char tail[16];
  snprintf(tail, sizeof tail, "%c%+0*d", letter, least_digits + 1, exponent);
  return digits.substr(0, 1) + (digits.size() > 1 ? "." + digits.substr(1) : "") + tail;
}

static std::string with_point(std::string digits, int point) {
  if (point <= 0)
    digits.insert(0, static_cast<size_t>(1 - point), '0');
  const size_t whole = static_cast<size_t>(std::max(point, 1));
  return digits.size() > whole ? digits.insert(whole, ".") : digits;
}

static std::string general_form(const simul_fval* value, int precision, bool* negative) {
  precision = std::max(precision, 1);
  int point;
  std::string digits = f_ecvt(value, precision, &point, negative);
  const int exponent = point - 1;
  digits.erase(std::max<size_t>(digits.find_last_not_of('0') + 1, 1));
  if (exponent < -4 || exponent >= precision)
    return with_exponent(digits, 'e', exponent, 2);
  if (static_cast<int>(digits.size()) < point)
    digits.resize(static_cast<size_t>(point), '0');
  return with_point(digits, point);
}

std::string f_f2ascii(const simul_fval* value, char conversion, int precision) {
  bool negative = value->sign != 0;
  int point;
  std::string text, digits;
  const char letter = static_cast<char>(conversion | 0x20);
  if (f_is_nan(value) || f_is_infinity(value)) {
    text = f_is_nan(value) ? "nan" : "inf";
  } else if (letter == 'f') {
    digits = f_fcvt(value, precision, &point, &negative);
    text = with_point(digits, point);
  } else if (letter == 'e') {
    digits = f_ecvt(value, precision + 1, &point, &negative);
    text = with_exponent(digits, 'e', point - 1, 2);
  } else if (letter == 'a') {
    digits = f_acvt(value, &point, &negative);
    text = "0x" + with_exponent(digits, 'p', point, 1);
  } else {
    text = general_form(value, precision, &negative);
  }
  if (letter != conversion)
    for (char& c : text)
      if (c >= 'a' && c <= 'z')
        c = static_cast<char>(c - 'a' + 'A');
  return negative ? "-" + text : text;
}

void f_ftoa(char* buffer, const char* format, const simul_fval* value) {
  const char* percent = strchr(format, '%');
  if (percent == nullptr)
    percent = format + strlen(format);
  std::string text(format, percent);
  if (*percent == '%') {
    char* p;
    const long width = strtol(percent + 1, &p, 10);
    const long precision = *p == '.' ? strtol(p + 1, &p, 10) : 6;
    std::string number = f_f2ascii(value, *p, static_cast<int>(std::clamp(precision, 0L, 400L)));
    if (static_cast<long>(number.size()) < width)
      number.insert(0, static_cast<size_t>(std::min(width, 400L)) - number.size(), ' ');
    text += number;
    if (*p != '\0')
      text += p + 1;
  }
  snprintf(buffer, 512, "%s", text.c_str());
}
