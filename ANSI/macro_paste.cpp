// What the ## operator makes of two texts: whether the last token of the left
// and the first of the right form one token (C99 6.10.3.3p3, 6.4p3).

#include <algorithm>
#include <cstring>
#include <string>

#include "lexical.h"
#include "macro_int.h"
#include "mode_words.h"

static bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// A byte of a name or a number; a name's other characters are those beyond
// ASCII and universal character names.
static bool is_name_byte(char c) {
  return is_id_char[static_cast<unsigned char>(c)] || static_cast<unsigned char>(c) >= 0x80;
}

static bool is_universal_name(const char* p, const char* end) {
  return end - p > 2 && *p == '\\' && (p[1] == 'u' || p[1] == 'U');
}

static const char* end_of_name(const char* p, const char* end) {
  while (p < end && (is_name_byte(*p) || is_universal_name(p, end)))
    p += *p == '\\' ? 2 : 1;
  return p;
}

static const char* end_of_number(const char* p, const char* end) {
  for (++p; p < end; ++p) {
    bool is_sign = (*p == '+' || *p == '-') && strchr("eEpP", p[-1]) != nullptr;
    bool is_separator = *p == '\'' && digit_separators_enabled && p + 1 < end && is_name_byte(p[1]);
    if (!is_name_byte(*p) && *p != '.' && !is_sign && !is_separator)
      break;
  }
  return p;
}

// At the opening quote.
static const char* end_of_raw_string(const char* p, const char* end) {
  const char* open = p + 1;
  while (open < end && *open != '(')
    ++open;
  std::string closing = ')' + std::string(p + 1, open) + '"';
  for (; open < end; ++open)
    if (static_cast<size_t>(end - open) >= closing.size() &&
        memcmp(open, closing.data(), closing.size()) == 0)
      return open + closing.size();
  return end;
}

// At the opening quote; a suffix belongs to the literal where there are some.
static const char* end_of_literal(const char* p, const char* end) {
  char quote = *p;
  for (++p; p < end && *p != quote; ++p)
    if (*p == '\\' && p + 1 < end)
      ++p;
  if (p < end)
    ++p;
  return user_defined_literals_enabled ? end_of_name(p, end) : p;
}

// Whether a name in front of a quote is the prefix of the literal.
static bool is_literal_prefix(const char* name, size_t length, bool* is_raw) {
  *is_raw = raw_string_literals_enabled && length != 0 && name[length - 1] == 'R';
  if (*is_raw && --length == 0)
    return true;
  if (length == 1 && *name == 'L')
    return true;
  return uliterals_enabled && ((length == 1 && (*name == 'u' || *name == 'U')) ||
                               (length == 2 && memcmp(name, "u8", 2) == 0));
}

static const char* end_of_name_or_literal(const char* p, const char* end) {
  const char* behind = end_of_name(p, end);
  bool is_raw;
  if (behind == end || (*behind != '"' && *behind != '\'') ||
      !is_literal_prefix(p, static_cast<size_t>(behind - p), &is_raw))
    return behind;
  return is_raw && *behind == '"' ? end_of_raw_string(behind, end) : end_of_literal(behind, end);
}

static const char* end_of_operator(const char* p, const char* end) {
  // The longer ones first.
  static const char* const common[] = {"...", "<<=", ">>=", "->", "++", "--", "<<", ">>",
                                       "<=",  ">=",  "==",  "!=", "&&", "||", "*=", "/=",
                                       "%=",  "+=",  "-=",  "&=", "^=", "|=", "##"};
  static const char* const in_cplusplus[] = {"->*", ".*", "::"};
  static const char* const alternative[] = {"%:%:", "<:", ":>", "<%", "%>", "%:"};
  auto longest = [p, end](const auto& list, size_t length) {
    for (const char* text : list) {
      size_t size = strlen(text);
      if (size > length && size <= static_cast<size_t>(end - p) && memcmp(p, text, size) == 0)
        length = size;
    }
    return length;
  };
  size_t length = longest(common, 1);
  if (in_cplusplus_mode())
    length = longest(in_cplusplus, length);
  if (alternative_tokens_allowed)
    length = longest(alternative, length);
  return p + length;
}

// Behind the token that begins at a place of macro text.
static const char* end_of_pp_token(const char* p, const char* end) {
  if (*p == 0)
    return p + 2; // a marker, or a NUL of the source
  if (is_digit(*p) || (*p == '.' && p + 1 < end && is_digit(p[1])))
    return end_of_number(p, end);
  if (is_name_byte(*p) || is_universal_name(p, end))
    return end_of_name_or_literal(p, end);
  if (*p == '"' || *p == '\'')
    return end_of_literal(p, end);
  return end_of_operator(p, end);
}

size_t offset_of_last_pp_token(const char* start, const char* end) {
  const char* last = start;
  for (const char* p = start; p < end; p = end_of_pp_token(p, end))
    if (*p != ' ' && (*p != 0 || p[1] == mtm_nul_character))
      last = p;
  return static_cast<size_t>(last - start);
}

static size_t length_of_first_token(const std::string& text) {
  const char* start = text.data();
  return static_cast<size_t>(end_of_pp_token(start, start + text.size()) - start);
}

// Of the longest operator, less its first character.
static constexpr size_t max_look_ahead = 3;

a_pasting paste_tokens(const char* left, const char* seam, const char* right, const char* end) {
  static std::string joined; // keeps its space
  const char* behind_right = end_of_pp_token(right, end);
  joined.assign(left, seam);
  joined.append(right, behind_right);
  size_t left_length = static_cast<size_t>(seam - left), length = joined.size();
  bool makes_token = length_of_first_token(joined) == length;
  // An operator, or the sign of a number, may reach over what the pasting takes.
  joined.append(behind_right, std::min(static_cast<size_t>(end - behind_right), max_look_ahead));
  size_t token_length = length_of_first_token(joined);
  // Comments aren't operators, and a third dot makes one of two.
  bool is_special = left_length == 1 && ((*left == '/' && (*right == '/' || *right == '*')) ||
                                         (*left == '.' && *right == '.'));
  return {static_cast<size_t>(behind_right - right), makes_token,
          makes_token && token_length > length,
          !makes_token && (token_length > left_length || is_special)};
}
