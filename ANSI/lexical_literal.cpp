// Quoted text: header names, the prefixes of literals, and characters with
// their values in the target's representation.

#include <cstring>
#include <string>

#include "error.h"
#include "host_envir.h"
#include "lexical_literal_int.h"
#include "misra.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

a_scanned_literal curr_literal;

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

bool accum_quoted_string(char* opening_quote, bool has_escapes, char closing_quote) {
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
  if (check_misra_c_2004)
    misra_check_header_name(start + 1, static_cast<size_t>(curr_char_loc - start) - 2,
                            closing_delimiter);
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

a_string_char_kind char_kind_of_prefix(unsigned prefix) {
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

// The digits behind \x; a value that is too large for any character keeps its
// low bits, and one above them.
static uint64_t scan_hex_escape(char** location, char* end) {
  constexpr uint64_t too_large = uint64_t{1} << 32;
  uint64_t value = 0;
  char* start = *location;
  for (; *location < end && digit_value(**location) < 16; ++*location) {
    uint64_t wider = value << 4 | static_cast<uint64_t>(digit_value(**location));
    value = wider % too_large | (wider >= too_large ? too_large : 0);
  }
  if (*location == start)
    report_token_error(ec_bad_hex_digit, start);
  return value;
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

static void report_unrecognized_escape(const char* location) {
  if (check_misra_c_2004)
    report_token_diagnostic(misra_required_severity, ec_misra_c_2004_4_1, location);
  else
    report_token_diagnostic(es_warning, ec_unrecognized_char_escape, location);
}

// Behind the backslash.
static uint32_t scan_escape(char** location, char* end, a_string_char_kind char_kind,
                            bool* is_code_point) {
  char* start = *location - 1;
  char c = **location;
  uint32_t simple_value;
  uint64_t value;
  if (c >= '0' && c <= '7') {
    value = scan_octal_escape(location, end);
    if (check_misra_c_2004 && (c != '0' || *location != start + 2))
      report_token_diagnostic(misra_required_severity, ec_misra_c_2004_7_1, start);
  } else if (c == 'x' && C_dialect != cd_k_and_r) {
    ++*location;
    value = scan_hex_escape(location, end);
  } else if ((c == 'u' || c == 'U') && universal_character_names_allowed) {
    *location = start;
    *is_code_point = true;
    return scan_universal_character(location, false, false, true);
  } else if (find_simple_escape(c, &simple_value)) {
    ++*location;
    return simple_value;
  } else if ((c == 'e' || c == 'E') && gnu_mode) {
    ++*location;
    return 27;
  } else {
    // The character stands for itself, of however many bytes it is.
    report_unrecognized_escape(start);
    return conv_single_char(location, end, char_kind, is_code_point);
  }
  if (value > max_of_char_kind(char_kind))
    report_token_diagnostic(es_discretionary_error, ec_bad_character_value, start);
  return static_cast<uint32_t>(value & max_of_char_kind(char_kind));
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
  uint32_t value;
  a_boolean invalid = 0;
  int length = mbc_to_wide_char(p, &value, &invalid, false);
  if (invalid) {
    report_token_diagnostic(es_discretionary_error, ec_bad_multibyte_char, p);
    // The bytes of a narrow literal stand as they are.
    *location += char_kind == sck_ordinary ? 1 : length;
    return char_kind == sck_ordinary ? static_cast<unsigned char>(*p) : 0;
  }
  *location += length;
  *is_code_point = true;
  return value;
}

void append_element(std::string* bytes, uint64_t value, int size) {
  for (int i = 0; i < size; ++i) {
    int shift = targ_char_bit * (targ_little_endian ? i : size - 1 - i);
    bytes->push_back(static_cast<char>(value >> shift));
  }
}

void append_char(std::string* bytes, uint32_t value, bool is_code_point,
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

static uint64_t element_at(const std::string& bytes, size_t index, int size) {
  return extract_character_from_string(bytes.data() + index * static_cast<size_t>(size), size);
}

// Several characters of a plain constant packed into an int.
static uint64_t pack_characters(const std::string& bytes) {
  size_t limit = static_cast<size_t>(targ_sizeof_int);
  size_t first = bytes.size() > limit ? bytes.size() - limit : 0;
  if (first != 0)
    report_token_diagnostic(es_warning, ec_too_many_characters, start_of_curr_token);
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
    kind = widened_integer_kind(kind);
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

// A constant of more than one element.
static void set_multichar_constant(const std::string& bytes, a_string_char_kind char_kind) {
  int size = character_size[char_kind];
  size_t last = bytes.size() / static_cast<size_t>(size) - 1;
  if (curr_literal.suffix != nullptr)
    report_token_error(ec_multichar_ud_lit, start_of_curr_token);
  else if ((curr_literal.prefix & ep_kind_mask) == ep_u8)
    report_token_error(ec_utf8_char_lit_too_long, start_of_curr_token);
  else if (char_kind == sck_ordinary) {
    set_char_constant(pack_characters(bytes), char_kind, true);
    return;
  } else {
    report_token_diagnostic(es_warning, ec_too_many_characters, start_of_curr_token);
  }
  set_char_constant(element_at(bytes, last, size), char_kind, false);
}

void conv_char_literal() {
  a_string_char_kind char_kind = char_kind_of_prefix(curr_literal.prefix);
  char* text = text_of_curr_literal();
  char* text_end = text + curr_literal.text_length;
  std::string bytes;
  while (text < text_end) {
    bool is_code_point;
    uint32_t value = conv_single_char(&text, text_end, char_kind, &is_code_point);
    append_char(&bytes, value, is_code_point, char_kind);
  }
  int size = character_size[char_kind];
  if (bytes.empty()) {
    report_token_error(ec_zero_length_string, start_of_curr_token);
    set_char_constant(0, char_kind, false);
  } else if (bytes.size() == static_cast<size_t>(size)) {
    set_char_constant(element_at(bytes, 0, size), char_kind, false);
  } else {
    set_multichar_constant(bytes, char_kind);
  }
}

a_token_kind scan_char_literal(unsigned prefix, size_t prefix_length) {
  curr_literal = {prefix, prefix_length + 1, 0, false, nullptr};
  bool is_closed = accum_quoted_string(start_of_curr_token + prefix_length, true, '\'');
  if (!is_closed) {
    report_token_error(ec_unclosed_string, start_of_curr_token);
    if (fetch_pp_tokens)
      return tok_error;
    set_char_constant(0, char_kind_of_prefix(prefix), false);
    return tok_char_constant;
  }
  curr_literal.text_length = static_cast<size_t>(curr_char_loc - text_of_curr_literal()) - 1;
  bool is_ud_literal = scan_ud_suffix(&curr_literal.suffix);
  end_of_curr_token = curr_char_loc - 1;
  if (fetch_pp_tokens)
    return is_ud_literal ? tok_ud_literal : tok_char_constant;
  conv_char_literal();
  return is_ud_literal ? finish_ud_literal(curr_literal.suffix, std::string()) : tok_char_constant;
}
