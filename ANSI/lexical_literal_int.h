// Private to the scanning of literals: what numbers, characters, strings and
// user-defined literals share.

#ifndef LEXICAL_LITERAL_INT_H
#define LEXICAL_LITERAL_INT_H

#include <string>

#include "lexical_int.h"

inline bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

inline bool is_plain_id_char(char c) {
  return is_id_char[static_cast<unsigned char>(c)];
}

// The value of a digit in bases up to 36; 99 for no digit.
int digit_value(char c);

// The parts of the character or string literal that is the current token,
// counted from its start.
struct a_scanned_literal {
  unsigned prefix;
  size_t text_offset; // of what stands between the quotes or parentheses
  size_t text_length;
  bool is_raw;
  a_symbol_header* suffix; // of a user-defined literal; null for none
};
extern a_scanned_literal curr_literal;

inline char* text_of_curr_literal() {
  return start_of_curr_token + curr_literal.text_offset;
}

a_string_char_kind char_kind_of_prefix(unsigned prefix);

// The whole literal from its opening quote; false, when it isn't closed.
// curr_char_loc moves behind it.
bool accum_quoted_string(char* opening_quote, bool has_escapes, char closing_quote);

// Appends a character: a code point as its encoding in the element type.
void append_char(std::string* bytes, uint32_t value, bool is_code_point,
                 a_string_char_kind char_kind);
// Appends one element in the target's byte order.
void append_element(std::string* bytes, uint64_t value, int size);

// At the quote of a raw string, `prefix_length` bytes behind the start of the
// current token: false, after a message, when it has no delimiter and is to be
// read as an ordinary literal. Otherwise curr_char_loc moves behind it, and the
// line holds its text as it was written.
bool scan_raw_string(size_t prefix_length, bool* is_closed);

// The type that a constant of the kind is widened to in #if.
int widened_integer_kind(int kind);

// -- User-defined literals (C++11 2.14.8) ------------------------------------------

// Behind a literal: takes the suffix, if one follows that the dialect knows, and
// names it in *suffix. Under fetch_pp_tokens the suffix stays null.
bool scan_ud_suffix(a_symbol_header** suffix);
// Makes the literal in const_for_curr_token a user-defined one. `spelling` is
// the number as it was written, empty for characters and strings.
a_token_kind finish_ud_literal(a_symbol_header* suffix, const std::string& spelling);

#endif
