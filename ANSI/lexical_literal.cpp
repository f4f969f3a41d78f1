// Literals: numbers, characters, strings and header names, and their values in
// the target's representation.

#include <cstring>
#include <string>

#include "error.h"
#include "float_pt.h"
#include "host_envir.h"
#include "il_alloc.h"
#include "lexical_int.h"
#include "macro.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

a_boolean keep_string_literals_raw;

// The elements of the string literal being converted, as they lie in the
// target's memory.
static std::string literal_bytes;

static bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

static bool is_plain_id_char(char c) {
  return is_id_char[static_cast<unsigned char>(c)];
}

static int digit_value(char c) {
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

// At an apostrophe behind a digit. True when it is part of the number; it is
// passed then.
static bool scan_digit_separator(char** location, int base) {
  char* p = *location;
  if (!digit_separators_enabled) {
    report_token_diagnostic(es_warning, ec_digit_separators_not_enabled, p);
    return false;
  }
  if (digit_value(p[1]) >= base)
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
    else if (*p != '\'' || p == start || !scan_digit_separator(&p, limit))
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

static void scan_exponent(char** location, char letter, bool required) {
  char* p = *location;
  bool has_exponent = (*p | 0x20) == letter;
  if (!has_exponent) {
    if (required)
      report_token_error(ec_bad_float_constant, p);
    return;
  }
  ++p;
  if (*p == '+' || *p == '-')
    ++p;
  if (!is_digit(*p))
    report_token_error(ec_bad_float_constant, p);
  *location = scan_digits(p, 10);
}

static void hex_float_not_allowed(const char* location) {
  if (hex_floating_point_constants_allowed || fixed_point_enabled)
    return;
  report_token_diagnostic(strict_ansi_mode ? strict_ansi_error_severity : es_remark,
                          ec_hex_fp_constant, location);
}

// The value's part of a number, from its first byte to its suffix.
static a_scanned_number scan_number_value(char* p) {
  a_scanned_number number = {10, false, p, p};
  char letter = static_cast<char>(p[1] | 0x20);
  if (*p == '0' && letter == 'x') {
    number.base = 16;
  } else if (*p == '0' && letter == 'b' && binary_literals_allowed && is_digit(p[2])) {
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
      hex_float_not_allowed(p);
      number.is_float = true;
      if (*p == '.') {
        char* fraction = p + 1;
        p = scan_digits(fraction, 16);
        has_digits = has_digits || p != fraction;
      }
      scan_exponent(&p, 'p', true);
    }
    if (!has_digits)
      report_token_error(ec_bad_hex_digit, number.digits);
  } else if (number.base != 2 && (*p == '.' || (*p | 0x20) == 'e')) {
    number.is_float = true;
    if (*p == '.')
      p = scan_digits(p + 1, 10);
    scan_exponent(&p, 'e', false);
  }
  number.end_of_value = p;
  return number;
}

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

// Letters and digits that don't belong to the number any more.
static char* skip_extra_characters(char* p, bool is_integer) {
  if (!is_plain_id_char(*p))
    return p;
  char letter = static_cast<char>(*p | 0x20);
  bool looks_like_suffix = letter == 'u' || letter == 'l';
  report_token_error(is_integer && looks_like_suffix ? ec_bad_suffix : ec_extra_chars_on_number, p);
  while (is_plain_id_char(*p))
    ++p;
  return p;
}

static bool is_imaginary_letter(char c) {
  return c == 'i' || c == 'j' || c == 'I' || c == 'J';
}

static char* scan_suffix_of_integer(char* p) {
  an_integer_suffix suffix = scan_integer_suffix(&p);
  if (suffix.num_l == 2 && strict_ansi_mode && !long_long_is_standard)
    report_token_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_long_long, p);
  if (gnu_mode && !user_defined_literals_enabled && is_imaginary_letter(*p) &&
      !is_plain_id_char(p[1])) {
    report_token_diagnostic(es_discretionary_error, ec_complex_integral_type, p);
    ++p;
  }
  return skip_extra_characters(p, true);
}

static char* scan_suffix_of_float(char* p) {
  char letter = static_cast<char>(*p | 0x20);
  if (letter == 'f' || letter == 'l')
    ++p;
  if (gnu_mode && is_imaginary_letter(*p) && !is_plain_id_char(p[1]))
    ++p;
  return skip_extra_characters(p, false);
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
  end_of_curr_token = curr_char_loc - 1;
  bool is_faulty = err_code_for_error_token != 0;
  an_error_code error = 0;
  char* error_location = start;
  if (number.is_float)
    conv_float_literal(&error);
  else
    conv_integer_literal(in_pp_if_expression, &error, &error_location);
  if (error != 0 && !is_faulty)
    report_token_error(error, error_location);
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

// In #if all constants have the widest type of their signedness.
static int widened_integer_kind(int kind) {
  bool is_unsigned =
      kind == ik_unsigned_int || kind == ik_unsigned_long || kind == ik_unsigned_long_long;
  bool has_intmax = in_cplusplus_mode() ? std_version >= 201103 || implicit_microsoft_cpp11_mode
                                        : std_version >= 199901;
  if (has_intmax)
    return is_unsigned ? targ_uintmax_kind : targ_intmax_kind;
  if (kind == ik_long_long || kind == ik_unsigned_long_long)
    return kind;
  return is_unsigned ? ik_unsigned_long : ik_long;
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
      *error = base == 8 ? ec_bad_octal_digit : ec_bad_binary_digit;
      *error_location = p;
      digit = 0;
    } else if (digit >= base) {
      break;
    }
    if (value > (UINT64_MAX - digit) / base)
      overflow = true;
    value = value * base + digit;
  }
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
  set_integer_literal(value, is_pp ? widened_integer_kind(kind) : kind, is_decimal);
}

void conv_float_literal(an_error_code* error) {
  char* start = start_of_curr_token;
  bool is_hex = start[0] == '0' && (start[1] | 0x20) == 'x';
  std::string text;
  int kind = fk_double;
  bool is_imaginary = false;
  for (char* p = start; p <= end_of_curr_token; ++p) {
    if (*p == '\'')
      continue;
    bool in_hex_digits = is_hex && text.find_first_of("pP") == std::string::npos;
    char letter = static_cast<char>(*p | 0x20);
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

// -- Quoted text ------------------------------------------------------------------------

char* find_closing_quote(char* text, char quote, bool has_escapes, char** text_end) {
  char* p = text;
  for (;;) {
    if (*p == quote)
      return p;
    if (*p == '\n' || (*p == 0 && p[1] != lm_nul_character)) {
      *text_end = p;
      return nullptr;
    }
    bool takes_next = *p == 0 || (*p == '\\' && has_escapes && p[1] != 0 && p[1] != '\n');
    p += takes_next ? 2 : 1;
  }
}

// The whole literal from its opening quote; false, when it isn't closed.
static bool accum_quoted_string(char* opening_quote, bool has_escapes, char closing_quote) {
  char* text_end;
  char* closing = find_closing_quote(opening_quote + 1, closing_quote, has_escapes, &text_end);
  curr_char_loc = closing != nullptr ? closing + 1 : text_end;
  return closing != nullptr;
}

a_token_kind scan_header_name(char* start, char closing_delimiter) {
  if (!accum_quoted_string(start, false, closing_delimiter)) {
    report_token_error(ec_unclosed_string, start);
    return tok_error;
  }
  if (curr_char_loc - start <= 2) {
    err_code_for_error_token = ec_exp_file_name;
    return tok_error;
  }
  return tok_header_name;
}

unsigned scan_encoding_prefix(const char* text, size_t* prefix_length) {
  const char* p = text;
  unsigned kind = ep_none;
  if (*p == 'L') {
    kind = ep_L;
    ++p;
  } else if (uliterals_enabled && *p == 'u') {
    kind = p[1] == '8' ? ep_u8 : ep_u;
    p += kind == ep_u8 ? 2 : 1;
  } else if (uliterals_enabled && *p == 'U') {
    kind = ep_U;
    ++p;
  }
  bool is_raw = *p == 'R' && raw_string_literals_enabled;
  if (is_raw)
    ++p;
  *prefix_length = static_cast<size_t>(p - text);
  if (*p == '"')
    return kind | ep_string | (is_raw ? unsigned{ep_raw} : 0u);
  if (*p == '\'' && !is_raw && (kind != ep_u8 || utf8_char_literals_enabled))
    return kind;
  return 0;
}

static a_string_char_kind char_kind_of_prefix(unsigned prefix) {
  switch (prefix & ep_kind_mask) {
  case ep_L:
    return sck_wide;
  case ep_u:
    return sck_char16;
  case ep_U:
    return sck_char32;
  default:
    return sck_ordinary;
  }
}

static uint64_t max_of_char_kind(a_string_char_kind char_kind) {
  int bits = character_size[char_kind] * targ_char_bit;
  return bits >= 64 ? UINT64_MAX : (uint64_t{1} << bits) - 1;
}

// -- Characters ----------------------------------------------------------------------------

static uint32_t scan_octal_escape(char** location, char* end) {
  uint32_t value = 0;
  for (int i = 0; i < 3 && *location < end && **location >= '0' && **location <= '7'; ++i)
    value = value * 8 + static_cast<uint32_t>(*(*location)++ - '0');
  return value;
}

// The digits behind \x; all ones when the value is too large for anything.
static uint32_t scan_hex_escape(char** location, char* end) {
  uint64_t value = 0;
  char* start = *location;
  for (; *location < end && digit_value(**location) < 16; ++*location) {
    value = value * 16 + static_cast<uint64_t>(digit_value(**location));
    if (value > UINT32_MAX)
      value = uint64_t{UINT32_MAX} + 1;
  }
  if (*location == start)
    report_token_error(ec_bad_hex_digit, start);
  if (value <= UINT32_MAX)
    return static_cast<uint32_t>(value);
  report_token_diagnostic(es_discretionary_error, ec_bad_character_value, start);
  return UINT32_MAX;
}

// The escapes of one letter: the letter, then its value.
static const char simple_escapes[] = "a\ab\bf\fn\nr\rt\tv\v\\\\''\"\"?\?";

static bool find_simple_escape(char c, uint32_t* value) {
  for (const char* p = simple_escapes; *p != 0; p += 2) {
    if (*p == c) {
      *value = static_cast<unsigned char>(p[1]);
      return true;
    }
  }
  return false;
}

// Behind the backslash.
static uint32_t scan_escape(char** location, char* end, a_string_char_kind char_kind,
                            bool* is_code_point) {
  char* start = *location - 1;
  char c = **location;
  uint32_t value;
  if (c >= '0' && c <= '7') {
    value = scan_octal_escape(location, end);
  } else if (c == 'x' && C_dialect != cd_k_and_r) {
    ++*location;
    value = scan_hex_escape(location, end);
  } else if ((c == 'u' || c == 'U') && universal_character_names_allowed) {
    *location = start;
    *is_code_point = true;
    return scan_universal_character(location, false, false, true);
  } else if (find_simple_escape(c, &value)) {
    ++*location;
    return value;
  } else if ((c == 'e' || c == 'E') && gnu_mode) {
    ++*location;
    return 27;
  } else {
    report_token_diagnostic(es_warning, ec_unrecognized_char_escape, start);
    ++*location;
    return static_cast<unsigned char>(c);
  }
  if (value > max_of_char_kind(char_kind)) {
    report_token_diagnostic(es_discretionary_error, ec_bad_character_value, start);
    value &= static_cast<uint32_t>(max_of_char_kind(char_kind));
  }
  return value;
}

uint32_t conv_single_char(char** location, char* end, a_string_char_kind char_kind,
                          bool* is_code_point) {
  *is_code_point = false;
  char* p = *location;
  if (*p == '\\' && p + 1 < end) {
    ++*location;
    return scan_escape(location, end, char_kind, is_code_point);
  }
  if (*p == 0) {
    *location += 2; // a NUL of the source and its marker
    return 0;
  }
  bool is_multibyte = static_cast<unsigned char>(*p) >= 0x80 && multibyte_chars_in_source_enabled;
  if (!is_multibyte) {
    ++*location;
    return static_cast<unsigned char>(*p);
  }
  if (char_kind == sck_ordinary) {
    ++*location; // the bytes of the source stand as they are
    return static_cast<unsigned char>(*p);
  }
  uint32_t value;
  a_boolean invalid = 0;
  *location += mbc_to_wide_char(p, &value, &invalid, false);
  if (invalid) {
    report_token_diagnostic(es_discretionary_error, ec_bad_multibyte_char, p);
    return 0;
  }
  *is_code_point = true;
  return value;
}

// Appends one element in the target's byte order.
static void append_element(std::string* bytes, uint64_t value, int size) {
  for (int i = 0; i < size; ++i) {
    int shift = targ_char_bit * (targ_little_endian ? i : size - 1 - i);
    bytes->push_back(static_cast<char>(value >> shift));
  }
}

// Appends a character: a code point as its encoding in the element type.
static void append_char(std::string* bytes, uint32_t value, bool is_code_point,
                        a_string_char_kind char_kind) {
  int size = character_size[char_kind];
  if (is_code_point && size == 1 && value > 0x7F) {
    char utf8[4];
    bytes->append(utf8, static_cast<size_t>(unicode_to_utf8(value, utf8)));
  } else if (is_code_point && size == 2) {
    uint16_t units[2];
    int num_units = ucn_to_utf16(value, units);
    for (int i = 0; i < num_units; ++i)
      append_element(bytes, units[i], size);
  } else {
    append_element(bytes, value, size);
  }
}

// The text between the quotes of the current token, behind its prefix.
static void text_of_literal(size_t prefix_length, bool is_closed, char** text, char** text_end) {
  *text = start_of_curr_token + prefix_length + 1;
  *text_end = end_of_curr_token + (is_closed ? 0 : 1);
}

static uint64_t element_at(const std::string& bytes, size_t index, int size) {
  return extract_character_from_string(bytes.data() + index * static_cast<size_t>(size), size);
}

// Several characters of a plain constant packed into an int.
static uint64_t pack_characters(const std::string& bytes) {
  size_t limit = static_cast<size_t>(targ_sizeof_int);
  size_t first = bytes.size() > limit ? bytes.size() - limit : 0;
  if (first != 0)
    report_token_diagnostic(es_discretionary_error, ec_too_many_characters, start_of_curr_token);
  uint64_t value = 0;
  for (size_t i = first; i < bytes.size(); ++i) {
    size_t index =
        targ_char_constant_first_char_most_significant ? i : bytes.size() - 1 - i + first;
    value = value << targ_char_bit | static_cast<unsigned char>(bytes[index]);
  }
  return value;
}

static bool plain_char_is_signed() {
  return plain_char_int_kind == ik_signed_char;
}

static int int_kind_of_char_constant(a_string_char_kind char_kind, bool is_multichar) {
  switch (char_kind) {
  case sck_wide:
    return targ_wchar_t_int_kind;
  case sck_char16:
    return targ_char16_t_int_kind;
  case sck_char32:
    return targ_char32_t_int_kind;
  default:
    return in_cplusplus_mode() && !is_multichar ? ik_char : ik_int;
  }
}

static void set_char_constant(uint64_t value, a_string_char_kind char_kind, bool is_multichar) {
  int kind = int_kind_of_char_constant(char_kind, is_multichar);
  if (in_pp_if_expression)
    kind = widened_integer_kind(ik_int);
  if (char_kind == sck_ordinary && !is_multichar && plain_char_is_signed() && value > 0x7F)
    value |= ~uint64_t{0xFF};
  else if (is_multichar && targ_sizeof_int * targ_char_bit == 32)
    value = static_cast<uint64_t>(int64_t{static_cast<int32_t>(value)});
  clear_constant(&const_for_curr_token, con_integer);
  set_unsigned_integer_constant(&const_for_curr_token, value, static_cast<an_integer_kind>(kind));
  const_for_curr_token.is_character_literal = 1;
  const_for_curr_token.string_char_kind = char_kind;
  if (!in_pp_if_expression && in_cplusplus_mode() && char_kind != sck_ordinary)
    const_for_curr_token.type = char_type_of_kind(char_kind);
}

static void conv_char_literal_text(char* text, char* text_end, a_string_char_kind char_kind) {
  std::string bytes;
  while (text < text_end) {
    bool is_code_point;
    uint32_t value = conv_single_char(&text, text_end, char_kind, &is_code_point);
    append_char(&bytes, value, is_code_point, char_kind);
  }
  size_t size = static_cast<size_t>(character_size[char_kind]);
  size_t num_elements = bytes.size() / size;
  if (num_elements == 0) {
    report_token_error(ec_zero_length_string, start_of_curr_token);
    set_char_constant(0, char_kind, false);
  } else if (num_elements == 1) {
    set_char_constant(element_at(bytes, 0, static_cast<int>(size)), char_kind, false);
  } else if (char_kind == sck_ordinary) {
    set_char_constant(pack_characters(bytes), char_kind, true);
  } else {
    report_token_diagnostic(es_discretionary_error, ec_too_many_characters, start_of_curr_token);
    set_char_constant(element_at(bytes, num_elements - 1, static_cast<int>(size)), char_kind,
                      false);
  }
}

void conv_char_literal() {
  size_t prefix_length;
  unsigned prefix = scan_encoding_prefix(start_of_curr_token, &prefix_length);
  char* text;
  char* text_end;
  text_of_literal(prefix_length, true, &text, &text_end);
  conv_char_literal_text(text, text_end, char_kind_of_prefix(prefix));
}

a_token_kind scan_char_literal(char* start, unsigned prefix, size_t prefix_length) {
  bool is_closed = accum_quoted_string(start + prefix_length, true, '\'');
  end_of_curr_token = curr_char_loc - 1;
  if (!is_closed) {
    report_token_error(ec_unclosed_string, start);
    if (fetch_pp_tokens)
      return tok_error;
    set_char_constant(0, char_kind_of_prefix(prefix), false);
    return tok_char_constant;
  }
  if (!fetch_pp_tokens)
    conv_char_literal();
  return tok_char_constant;
}

// -- Strings --------------------------------------------------------------------------------

// Appends the elements of the current token's text to literal_bytes.
static void append_literal_text(char* text, char* text_end, a_string_char_kind char_kind) {
  while (text < text_end) {
    char* p = text;
    if (char_kind == sck_ordinary) {
      while (p < text_end && *p != '\\' && *p != 0)
        ++p;
      literal_bytes.append(text, static_cast<size_t>(p - text));
      text = p;
      if (p == text_end)
        break;
    }
    bool is_code_point;
    uint32_t value = conv_single_char(&text, text_end, char_kind, &is_code_point);
    append_char(&literal_bytes, value, is_code_point, char_kind);
  }
}

// Makes the constant of the current token from literal_bytes.
static void finish_string_constant(a_string_char_kind char_kind) {
  size_t size = static_cast<size_t>(character_size[char_kind]);
  literal_bytes.append(size, '\0');
  uint64_t length = literal_bytes.size();
  char* text = alloc_text_of_string_literal(length);
  memcpy(text, literal_bytes.data(), length);
  clear_constant(&const_for_curr_token, con_string);
  const_for_curr_token.value.string.length = length;
  const_for_curr_token.value.string.text = text;
  const_for_curr_token.string_char_kind = char_kind;
  const_for_curr_token.type = string_literal_type(char_kind, length / size);
  if (!string_literals_shared)
    f_assign_string_literal_sequence_number(&const_for_curr_token);
}

void conv_string_literal() {
  size_t prefix_length;
  unsigned prefix = scan_encoding_prefix(start_of_curr_token, &prefix_length);
  char* text;
  char* text_end;
  text_of_literal(prefix_length, true, &text, &text_end);
  literal_bytes.clear();
  append_literal_text(text, text_end, char_kind_of_prefix(prefix));
  finish_string_constant(char_kind_of_prefix(prefix));
}

// The piece whose value isn't in a constant yet, by its prefix.
static unsigned raw_piece_prefix;
static size_t raw_piece_prefix_length;
static bool raw_piece_is_closed;

a_token_kind scan_string_literal(char* start, unsigned prefix, size_t prefix_length) {
  bool is_closed = accum_quoted_string(start + prefix_length, true, '"');
  end_of_curr_token = curr_char_loc - 1;
  raw_piece_prefix = prefix;
  raw_piece_prefix_length = prefix_length;
  raw_piece_is_closed = is_closed;
  if (!is_closed) {
    report_token_error(ec_unclosed_string, start);
    if (fetch_pp_tokens)
      return tok_error;
  }
  // Pieces to be joined are converted by concat_adjacent_string_literals.
  if (!fetch_pp_tokens && !do_string_literal_concatenation && !keep_string_literals_raw)
    conv_string_literal();
  return tok_string;
}

// Widens the elements from `first_byte` on.
static void widen_literal_bytes(std::string* bytes, a_string_char_kind char_kind) {
  std::string wide;
  wide.reserve(bytes->size() * static_cast<size_t>(character_size[char_kind]));
  for (char c : *bytes)
    append_element(&wide, static_cast<unsigned char>(c), character_size[char_kind]);
  bytes->swap(wide);
}

void widen_string_literal(a_constant* constant, a_string_char_kind char_kind) {
  std::string bytes(constant->value.string.text, constant->value.string.length);
  widen_literal_bytes(&bytes, char_kind);
  char* text = alloc_text_of_string_literal(bytes.size());
  memcpy(text, bytes.data(), bytes.size());
  constant->value.string.text = text;
  constant->value.string.length = bytes.size();
  constant->string_char_kind = char_kind;
  size_t size = static_cast<size_t>(character_size[char_kind]);
  constant->type = string_literal_type(char_kind, bytes.size() / size);
}

void concat_string_literals(const a_constant* first, const a_constant* second, a_constant* result) {
  a_string_char_kind char_kind = static_cast<a_string_char_kind>(first->string_char_kind);
  uint64_t terminator = static_cast<uint64_t>(character_size[char_kind]);
  uint64_t first_length = first->value.string.length - terminator;
  uint64_t length = first_length + second->value.string.length;
  char* text = alloc_text_of_string_literal(length);
  memcpy(text, first->value.string.text, first_length);
  memcpy(text + first_length, second->value.string.text, second->value.string.length);
  copy_constant(first, result);
  result->value.string.text = text;
  result->value.string.length = length;
  result->type = string_literal_type(char_kind, length / terminator);
}

// Whether narrow and wide literals may stand side by side (C99 6.4.5p4).
static bool mixed_concatenation_allowed() {
  if (mixed_string_concat_enabled)
    return true;
  return in_cplusplus_mode() ? std_version >= 201103 : std_version >= 199901;
}

// The kind of the whole when a piece of kind `piece` follows one of `whole`.
static a_string_char_kind combined_char_kind(a_string_char_kind whole, a_string_char_kind piece) {
  if (whole == piece)
    return whole;
  bool one_is_narrow = whole == sck_ordinary || piece == sck_ordinary;
  if (!one_is_narrow || !mixed_concatenation_allowed())
    pos_error(ec_mixed_string_concatenation, &pos_curr_token);
  return whole == sck_ordinary ? piece : whole;
}

// Appends the raw string token that is the current one.
static void append_raw_piece(a_string_char_kind* char_kind) {
  a_string_char_kind piece_kind = char_kind_of_prefix(raw_piece_prefix);
  a_string_char_kind new_kind = combined_char_kind(*char_kind, piece_kind);
  if (new_kind != *char_kind) {
    widen_literal_bytes(&literal_bytes, new_kind);
    *char_kind = new_kind;
  }
  char* text;
  char* text_end;
  text_of_literal(raw_piece_prefix_length, raw_piece_is_closed, &text, &text_end);
  append_literal_text(text, text_end, *char_kind);
}

// Whether the text behind a string literal shows, without a token being
// fetched, that no further literal follows.
static bool no_string_can_follow() {
  const char* p = curr_char_loc;
  while (*p == ' ')
    ++p;
  switch (*p) {
  case ',':
  case ')':
  case ';':
  case ']':
  case '}':
  case '+':
  case ':':
    return true;
  case '\0':
    return in_preprocessing_directive && (p[1] == lm_end_of_line || p[1] == lm_newline);
  default:
    return false;
  }
}

// The current token becomes the string that the pieces made; the token behind
// them, which has been fetched, is the next to be read.
static void put_back_token_behind_string() {
  if (curr_token != tok_end_of_source && curr_token != tok_newline) {
    unget_token();
  } else if (curr_token_pragmas != nullptr) {
    unget_token();
  }
}

void concat_adjacent_string_literals() {
  a_string_char_kind char_kind = char_kind_of_prefix(raw_piece_prefix);
  literal_bytes.clear();
  append_raw_piece(&char_kind);
  if (no_string_can_follow()) {
    finish_string_constant(char_kind);
    return;
  }
  a_source_position start_position = pos_curr_token;
  a_source_position end_position = end_pos_curr_token;
  a_token_sequence_number sequence_number = curr_token_sequence_number;
  uint8_t white_space = kind_of_white_space_skipped;
  a_pending_pragma* pragmas = curr_token_pragmas;
  curr_token_pragmas = nullptr;
  keep_string_literals_raw = 1;
  push_lexical_state_stack();
  while (get_token() == tok_string && start_of_curr_token != nullptr) {
    append_raw_piece(&char_kind);
    end_position = end_pos_curr_token;
  }
  pop_lexical_state_stack();
  keep_string_literals_raw = 0;
  put_back_token_behind_string();
  curr_token = tok_string;
  curr_token_pragmas = pragmas;
  pos_curr_token = error_position = start_position;
  end_pos_curr_token = end_position;
  last_token_sequence_number_of_token = last_token_sequence_number_used;
  curr_token_sequence_number = sequence_number;
  kind_of_white_space_skipped = white_space;
  curr_token_is_inert_macro = curr_token_is_temporarily_inert_macro = 0;
  curr_cached_token_handle = nullptr;
  start_of_curr_token = end_of_curr_token = nullptr;
  len_of_curr_token = 0;
  finish_string_constant(char_kind);
}

void lexical_literal_init() {
  literal_bytes.clear();
}
