// Numbers: their scanning, and their values and types.

#include <cstring>
#include <string>

#include "error.h"
#include "float_pt.h"
#include "host_envir.h"
#include "lexical_literal_int.h"
#include "macro.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

int digit_value(char c) {
  if (is_digit(c))
    return c - '0';
  c = static_cast<char>(c | 0x20);
  return c >= 'a' && c <= 'z' ? c - 'a' + 10 : 99;
}

// -- Numbers -------------------------------------------------------------------------

// A preprocessing number (C99 6.4.8).
static a_token_kind scan_pp_number(char* p) {
  for (;;) {
    size_t length;
    if ((*p == 'e' || *p == 'E' || *p == 'p' || *p == 'P') && (p[1] == '+' || p[1] == '-'))
      p += 2;
    else if (is_plain_id_char(*p) || *p == '.')
      ++p;
    else if (*p == '\'' && digit_separators_enabled && is_plain_id_char(p[1]))
      p += 2;
    else if (f_is_identifier_char(p, false, &length, nullptr))
      p += length;
    else
      break;
  }
  curr_char_loc = p;
  return tok_pp_number;
}

static a_token_kind scan_digit_sequence(char* p) {
  while (is_digit(*p))
    ++p;
  curr_char_loc = p;
  return tok_digit_sequence;
}

// At an apostrophe where digits go on or begin. True when it is part of the
// number; it is passed then.
static bool scan_digit_separator(char** location, int base, bool follows_digit) {
  char* p = *location;
  bool precedes_digit = digit_value(p[1]) < base;
  if (!digit_separators_enabled) {
    if (follows_digit)
      report_token_diagnostic(es_warning, ec_digit_separators_not_enabled, p);
    return false;
  }
  if (!follows_digit && !precedes_digit)
    return false;
  if (!follows_digit || !precedes_digit)
    report_token_error(ec_bad_digit_separator_pos, p);
  ++*location;
  return true;
}

// Digits of the base, which are at most 10 also read up to 9: a digit too large
// is the converter's fault to find.
static char* scan_digits(char* p, int base) {
  int limit = base < 10 ? 10 : base;
  char* start = p;
  for (;;) {
    if (digit_value(*p) < limit)
      ++p;
    else if (*p != '\'' || !scan_digit_separator(&p, limit, p != start))
      return p;
  }
}

// What was found out about a number while it was scanned.
struct a_scanned_number {
  int base;
  bool is_float;
  char* digits;       // behind the prefix
  char* end_of_value; // where the suffix begins
};

static void report_bad_float(const char* location, bool quiet) {
  if (!quiet)
    report_token_error(ec_bad_float_constant, location);
}

static void scan_exponent(char** location, char letter, bool required, bool quiet) {
  char* p = *location;
  bool has_exponent = (*p | 0x20) == letter;
  if (!has_exponent) {
    if (required)
      report_bad_float(p, quiet);
    return;
  }
  ++p;
  if (*p == '+' || *p == '-')
    ++p;
  char* digits = p;
  p = scan_digits(digits, 10);
  if (p == digits)
    report_bad_float(p, quiet);
  *location = p;
}

// A hexadecimal floating constant in a dialect without them. True when it is an
// error, so that its form doesn't matter any more.
static bool hex_float_is_refused(const char* location) {
  if (hex_floating_point_constants_allowed || fixed_point_enabled)
    return false;
  report_token_diagnostic(strict_ansi_mode ? strict_ansi_error_severity : es_remark,
                          ec_hex_fp_constant, location);
  if (!strict_ansi_mode)
    return false;
  err_code_for_error_token = ec_hex_fp_constant;
  return true;
}

// Whether 0b or 0B stands at `p` as the prefix of a binary number.
static bool is_binary_prefix(const char* p) {
  if (*p != '0' || (p[1] | 0x20) != 'b' || !binary_literals_allowed)
    return false;
  return is_digit(p[2]) || (p[2] == '\'' && digit_separators_enabled && is_digit(p[3]));
}

// The value's part of a number, from its first byte to its suffix.
static a_scanned_number scan_number_value(char* p) {
  a_scanned_number number = {10, false, p, p};
  if (*p == '0' && (p[1] | 0x20) == 'x') {
    number.base = 16;
  } else if (is_binary_prefix(p)) {
    number.base = 2;
  } else if (*p == '0') {
    number.base = 8;
  }
  if (number.base == 16 || number.base == 2)
    number.digits = p + 2;
  p = scan_digits(number.digits, number.base);
  if (number.base == 16) {
    bool has_digits = p != number.digits;
    if (*p == '.' || (*p | 0x20) == 'p') {
      bool is_refused = hex_float_is_refused(p);
      number.is_float = true;
      if (*p == '.') {
        char* fraction = p + 1;
        p = scan_digits(fraction, 16);
        has_digits = has_digits || p != fraction;
      }
      scan_exponent(&p, 'p', true, is_refused);
    }
    if (!has_digits)
      report_token_error(ec_bad_hex_digit, number.digits);
  } else if (number.base != 2 && (*p == '.' || (*p | 0x20) == 'e')) {
    number.is_float = true;
    if (*p == '.')
      p = scan_digits(p + 1, 10);
    scan_exponent(&p, 'e', false, false);
  }
  number.end_of_value = p;
  return number;
}

// The suffix of the number being scanned when it is a user-defined literal.
static a_symbol_header* number_ud_suffix;

struct an_integer_suffix {
  bool is_unsigned;
  int num_l;
};

// A suffix of integers: one u, and l or ll, in either order (C99 6.4.4.1).
static an_integer_suffix scan_integer_suffix(char** location) {
  an_integer_suffix suffix = {false, 0};
  char* p = *location;
  for (;;) {
    if ((*p == 'u' || *p == 'U') && !suffix.is_unsigned) {
      suffix.is_unsigned = true;
      ++p;
    } else if ((*p == 'l' || *p == 'L') && suffix.num_l == 0) {
      suffix.num_l = p[1] == *p ? 2 : 1;
      p += suffix.num_l;
    } else {
      break;
    }
  }
  *location = p;
  return suffix;
}

// Letters and digits that don't belong to the number any more, which are a
// fault of the given number.
static char* skip_extra_characters(char* p, an_error_code code) {
  if (!is_plain_id_char(*p))
    return p;
  if (err_code_for_error_token == 0)
    report_token_error(code, p);
  while (is_plain_id_char(*p))
    ++p;
  return p;
}

// The suffix of a user-defined literal, unless it is a standard one, which ends
// at `standard_end`. Null for none.
static char* scan_number_ud_suffix(char* suffix, char* standard_end) {
  number_ud_suffix = nullptr;
  if (!user_defined_literals_enabled || in_pp_if_expression)
    return nullptr;
  if (standard_end != suffix && !is_plain_id_char(*standard_end))
    return nullptr;
  curr_char_loc = suffix;
  return scan_ud_suffix(&number_ud_suffix) ? curr_char_loc : nullptr;
}

static bool is_imaginary_letter(char c) {
  return c == 'i' || c == 'j' || c == 'I' || c == 'J';
}

static char* scan_suffix_of_integer(char* p) {
  char* digits_end = p;
  an_integer_suffix suffix = scan_integer_suffix(&p);
  if (char* end = scan_number_ud_suffix(digits_end, p))
    return end;
  if (suffix.num_l == 2 && strict_ansi_mode && !long_long_is_standard)
    report_token_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_long_long, p);
  if (gnu_mode && !user_defined_literals_enabled && is_imaginary_letter(*p) &&
      !is_plain_id_char(p[1])) {
    report_token_diagnostic(es_discretionary_error, ec_complex_integral_type, p);
    ++p;
  }
  // What goes on behind a good beginning is a bad suffix.
  return skip_extra_characters(p, p != digits_end ? ec_bad_suffix : ec_extra_chars_on_number);
}

static bool is_precision_letter(char c) {
  return c == 'f' || c == 'F' || c == 'l' || c == 'L';
}

// GNU C takes an imaginary letter before or behind that of the precision.
static char* scan_suffix_of_float(char* p) {
  char* digits_end = p;
  bool is_imaginary = gnu_mode && is_imaginary_letter(*p) && is_precision_letter(p[1]);
  if (is_imaginary)
    ++p;
  if (is_precision_letter(*p))
    ++p;
  if (char* end = scan_number_ud_suffix(digits_end, p))
    return end;
  if (!is_imaginary && gnu_mode && is_imaginary_letter(*p) && !is_plain_id_char(p[1]))
    ++p;
  return skip_extra_characters(p, ec_extra_chars_on_number);
}

// The number as written, without what only separates its digits.
static std::string number_spelling(const char* start, const char* end) {
  std::string text;
  for (const char* p = start; p < end; ++p)
    if (*p != '\'')
      text += *p;
  return text;
}

a_token_kind scan_number(char* start) {
  if (exp_digit_sequence && is_digit(*start))
    return scan_digit_sequence(start);
  if (fetch_pp_tokens)
    return scan_pp_number(start);
  err_code_for_error_token = 0;
  a_scanned_number number = scan_number_value(start);
  char* p = number.end_of_value;
  curr_char_loc = number.is_float ? scan_suffix_of_float(p) : scan_suffix_of_integer(p);
  char* end = number_ud_suffix != nullptr ? p : curr_char_loc;
  end_of_curr_token = end - 1;
  bool is_faulty = err_code_for_error_token != 0;
  an_error_code error = 0;
  char* error_location = start;
  if (number.is_float)
    conv_float_literal(&error);
  else
    conv_integer_literal(in_pp_if_expression, &error, &error_location);
  if (error != 0 && !is_faulty)
    report_token_error(error, error_location);
  if (number_ud_suffix != nullptr)
    return finish_ud_literal(number_ud_suffix, number_spelling(start, end));
  return number.is_float ? tok_float_constant : tok_integer;
}

static uint64_t max_of_integer_kind(int kind, bool is_unsigned) {
  int bits = size_of_integer_kind(kind) * targ_char_bit;
  uint64_t all = bits >= 64 ? UINT64_MAX : (uint64_t{1} << bits) - 1;
  return is_unsigned ? all : all >> 1;
}

// The type of an integer constant by its value (C99 6.4.4.1p5, and C89 3.1.3.2
// for the older dialects, whose decimal constants also become unsigned long).
// -1 for a value of no type.
static int integer_kind_of_constant(uint64_t value, bool is_decimal, an_integer_suffix suffix) {
  static const int signed_kinds[] = {ik_int, ik_long, ik_long_long};
  static const int unsigned_kinds[] = {ik_unsigned_int, ik_unsigned_long, ik_unsigned_long_long};
  bool c99_rules = in_cplusplus_mode() ? std_version >= 201103 || implicit_microsoft_cpp11_mode
                                       : std_version >= 199901;
  for (int rank = suffix.num_l; rank < 3; ++rank) {
    bool unsigned_allowed = suffix.is_unsigned || !is_decimal || (!c99_rules && rank == 1);
    if (!suffix.is_unsigned && value <= max_of_integer_kind(signed_kinds[rank], false))
      return signed_kinds[rank];
    if (unsigned_allowed && value <= max_of_integer_kind(unsigned_kinds[rank], true))
      return unsigned_kinds[rank];
  }
  return -1;
}

static bool has_intmax() {
  return in_cplusplus_mode() ? std_version >= 201103 || implicit_microsoft_cpp11_mode
                             : std_version >= 199901;
}

static bool is_unsigned_kind(int kind) {
  return kind == ik_unsigned_short || kind == ik_unsigned_int || kind == ik_unsigned_long ||
         kind == ik_unsigned_long_long;
}

int widened_integer_kind(int kind) {
  bool is_unsigned = is_unsigned_kind(kind);
  if (has_intmax())
    return is_unsigned ? targ_uintmax_kind : targ_intmax_kind;
  if (kind == ik_long_long || kind == ik_unsigned_long_long)
    return kind;
  return is_unsigned ? ik_unsigned_long : ik_long;
}

// The kind of a constant in #if. Where that has the widest types, int and long
// are as wide (C99 6.10.1p3), so that a hexadecimal constant too is signed as
// long as its value fits.
static int pp_integer_kind(int kind, uint64_t value, an_integer_suffix suffix) {
  if (has_intmax() && !suffix.is_unsigned && value <= max_of_integer_kind(targ_intmax_kind, false))
    return targ_intmax_kind;
  return widened_integer_kind(kind);
}

static void set_integer_literal(uint64_t value, int kind, bool is_decimal) {
  clear_constant(&const_for_curr_token, con_integer);
  set_unsigned_integer_constant(&const_for_curr_token, value, static_cast<an_integer_kind>(kind));
  const_for_curr_token.non_decimal_literal = !is_decimal;
}

void conv_integer_literal(bool is_pp, an_error_code* error, char** error_location) {
  char* p = start_of_curr_token;
  char* end = end_of_curr_token + 1;
  uint64_t base = 10;
  if (*p == '0' && p + 1 < end) {
    char letter = static_cast<char>(p[1] | 0x20);
    base = letter == 'x' ? 16 : letter == 'b' && binary_literals_allowed ? 2 : 8;
    p += base == 8 ? 0 : 2;
  }
  uint64_t value = 0;
  bool overflow = false;
  for (; p < end; ++p) {
    if (*p == '\'')
      continue;
    uint64_t digit = static_cast<uint64_t>(digit_value(*p));
    if (digit >= base && digit < 10) {
      if (*error == 0)
        *error_location = p;
      *error = base == 8 ? ec_bad_octal_digit : ec_bad_binary_digit;
      digit = 0;
    } else if (digit >= base) {
      break;
    }
    if (value > (UINT64_MAX - digit) / base)
      overflow = true;
    value = value * base + digit;
  }
  if (check_misra_c_2004 && base == 8 && p > start_of_curr_token + 1)
    report_token_diagnostic(misra_required_severity, ec_misra_c_2004_7_1, start_of_curr_token);
  an_integer_suffix suffix = scan_integer_suffix(&p);
  if (*error != 0)
    value = 0;
  bool is_decimal = base == 10;
  int kind = overflow ? -1 : integer_kind_of_constant(value, is_decimal, suffix);
  if (overflow) {
    *error = ec_integer_too_large;
    *error_location = start_of_curr_token;
    value = 0;
    kind = ik_int;
  } else if (kind < 0) {
    report_token_diagnostic(es_warning, ec_c99_constant_in_unsigned_long_long_range,
                            start_of_curr_token);
    kind = ik_unsigned_long_long;
  }
  set_integer_literal(value, is_pp ? pp_integer_kind(kind, value, suffix) : kind, is_decimal);
}

void conv_float_literal(an_error_code* error) {
  char* start = start_of_curr_token;
  bool is_hex = start[0] == '0' && (start[1] | 0x20) == 'x';
  std::string text;
  int kind = number_ud_suffix != nullptr ? fk_long_double : fk_double;
  bool is_imaginary = false, in_hex_digits = is_hex;
  for (char* p = start; p <= end_of_curr_token; ++p) {
    if (*p == '\'')
      continue;
    char letter = static_cast<char>(*p | 0x20);
    if (letter == 'p')
      in_hex_digits = false;
    if (!in_hex_digits && letter == 'f')
      kind = fk_float;
    else if (letter == 'l')
      kind = fk_long_double;
    else if (is_imaginary_letter(*p))
      is_imaginary = true;
    else
      text += *p;
  }
  clear_constant(&const_for_curr_token, is_imaginary ? con_imaginary : con_float);
  const_for_curr_token.type = is_imaginary ? imaginary_type(kind) : float_type(kind);
  bool is_out_of_range = false;
  if (is_hex)
    fp_hex_string_to_float(kind, text.c_str(), &const_for_curr_token.value.float_value,
                           &is_out_of_range);
  else
    fp_string_to_float(kind, text.c_str(), &const_for_curr_token.value.float_value,
                       &is_out_of_range);
  if (is_out_of_range)
    *error = ec_bad_float_value;
}

void make_pp_int_constant(int64_t value) {
  clear_constant(&const_for_curr_token, con_integer);
  set_integer_constant(&const_for_curr_token, value,
                       static_cast<an_integer_kind>(widened_integer_kind(ik_int)));
}
