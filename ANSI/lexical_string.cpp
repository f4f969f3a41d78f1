// String literals: raw ones, the values of all, and the joining of those that
// stand side by side.

#include <cstring>
#include <string>
#include <vector>

#include "error.h"
#include "host_envir.h"
#include "il_alloc.h"
#include "lexical_literal_int.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

a_boolean keep_string_literals_raw;

// The elements of the string literal being converted, as they lie in the
// target's memory.
static std::string literal_bytes;

// -- Raw strings (C++11 2.14.5) --------------------------------------------------------

bool is_raw_string_delimiter_char[256];

static constexpr size_t max_raw_string_delimiter = 16;

// The text of the raw string being scanned as it was written, from behind the
// opening quote on; newlines and NULs are markers, as in the line buffer.
static std::string raw_text;
// It differs from the text in the line buffer.
static bool raw_text_is_changed;
// The first change against the physical text behind the place of scanning, as
// far as the line buffer is being scanned.
static const an_orig_line_modif* next_orig_modif;

static void start_raw_text() {
  raw_text.clear();
  raw_text_is_changed = false;
  next_orig_modif = curr_text_modif == nullptr ? orig_line_modif_list : nullptr;
  while (next_orig_modif != nullptr && next_orig_modif->location < curr_char_loc)
    next_orig_modif = next_orig_modif->next;
}

// A raw string has no splices and trigraphs: those at the place of scanning go
// to the text as they were written.
static void take_orig_modifs() {
  while (next_orig_modif != nullptr && next_orig_modif->location <= curr_char_loc) {
    const an_orig_line_modif* modif = next_orig_modif;
    next_orig_modif = modif->next;
    if (modif->kind == olm_splice) {
      const char splice[] = {'\\', '\0', lm_newline};
      raw_text.append(splice, sizeof splice);
    } else if (modif->kind == olm_trigraph) {
      raw_text += "?\?";
      raw_text += static_cast<char>(modif->extra);
      ++curr_char_loc;
    } else {
      continue;
    }
    raw_text_is_changed = true;
  }
}

// Takes a character, or what was written in its place. False at a NUL.
static bool take_raw_char() {
  size_t length = raw_text.size();
  take_orig_modifs();
  if (raw_text.size() != length)
    return true;
  if (*curr_char_loc == 0)
    return false;
  raw_text += *curr_char_loc++;
  return true;
}

static constexpr size_t no_raw_string = SIZE_MAX;

// Behind the quote: reads to behind the parenthesis. The length of the
// delimiter; no_raw_string, after a message, where there's none.
static size_t scan_raw_string_delimiter() {
  for (size_t length = 0;; ++length) {
    bool is_char = length < raw_text.size() || take_raw_char();
    char c = is_char ? raw_text[length] : '\0';
    if (c == '(')
      return length;
    bool is_too_long = length == max_raw_string_delimiter;
    if (is_too_long || !is_raw_string_delimiter_char[static_cast<unsigned char>(c)]) {
      report_token_error(is_too_long ? ec_missing_raw_string_delim_lparen
                                     : ec_bad_raw_string_delim_char,
                         start_of_curr_token);
      return no_raw_string;
    }
  }
}

// At a NUL in a raw string: takes it, and goes on in a further line if need be.
static bool take_nul_in_raw_string() {
  char marker = curr_char_loc[1];
  if (marker == lm_end_of_line && curr_text_modif == nullptr) {
    const an_orig_line_modif* last = end_orig_line_modif_list;
    if (read_logical_source_line(false, true))
      return false;
    if (next_orig_modif == nullptr)
      next_orig_modif = last != nullptr ? last->next : orig_line_modif_list;
  } else if (marker != lm_newline && marker != lm_nul_character) {
    return false;
  }
  raw_text.append(curr_char_loc, 2);
  curr_char_loc += 2;
  return true;
}

// Whether a quote behind the text taken so far ends the string: the delimiter
// holds no parenthesis, so the text before the quote decides.
static bool ends_before_quote(size_t delimiter_length) {
  size_t end_length = delimiter_length + 1;
  if (raw_text.size() < 2 * end_length)
    return false;
  const char* end = raw_text.data() + raw_text.size() - end_length;
  return *end == ')' && memcmp(end + 1, raw_text.data(), delimiter_length) == 0;
}

static bool find_raw_string_end(size_t delimiter_length) {
  for (;;) {
    take_orig_modifs();
    const char* limit = next_orig_modif != nullptr ? next_orig_modif->location : nullptr;
    char* p = curr_char_loc;
    while (*p != '"' && *p != 0 && p != limit)
      ++p;
    raw_text.append(curr_char_loc, static_cast<size_t>(p - curr_char_loc));
    curr_char_loc = p;
    if (*p == '"' && p != limit) {
      if (ends_before_quote(delimiter_length))
        return true;
      raw_text += *curr_char_loc++;
    } else if (*p == 0 && !take_nul_in_raw_string()) {
      return false;
    }
  }
}

// The line gets the text as it was written, so that arguments of macros,
// replacement lists and the output get it too.
static void put_raw_text_in_line(size_t offset) {
  char* start = start_of_curr_token + offset;
  size_t length = static_cast<size_t>(curr_char_loc - start);
  replace_orig_line_text(start, length, raw_text.data(), raw_text.size());
  curr_char_loc = start_of_curr_token + offset + raw_text.size();
}

bool scan_raw_string(size_t prefix_length, bool* is_closed) {
  size_t offset = prefix_length + 1;
  curr_char_loc = start_of_curr_token + offset;
  start_raw_text();
  size_t delimiter_length = scan_raw_string_delimiter();
  if (delimiter_length == no_raw_string)
    return false;
  *is_closed = find_raw_string_end(delimiter_length);
  if (raw_text_is_changed)
    put_raw_text_in_line(offset);
  size_t taken = delimiter_length + 1;
  curr_literal.is_raw = true;
  curr_literal.text_offset = offset + taken;
  curr_literal.text_length = raw_text.size() - taken;
  if (!*is_closed) {
    report_token_error(ec_missing_raw_string_delimiter, start_of_curr_token);
    return true;
  }
  curr_literal.text_length -= taken;
  ++curr_char_loc;
  return true;
}

// -- Strings ---------------------------------------------------------------------------

// How many bytes from `text` on stand for themselves in a narrow literal.
static size_t length_of_plain_run(const char* text, const char* text_end, bool is_raw) {
  const char* p = text;
  while (p < text_end && *p != 0 && (*p != '\\' || is_raw) &&
         (static_cast<unsigned char>(*p) < 0x80 || !multibyte_chars_in_source_enabled))
    ++p;
  return static_cast<size_t>(p - text);
}

// Appends the elements of a literal's text to literal_bytes.
static void append_literal_text(char* text, char* text_end, a_string_char_kind char_kind,
                                bool is_raw) {
  while (text < text_end) {
    if (char_kind == sck_ordinary) {
      size_t length = length_of_plain_run(text, text_end, is_raw);
      literal_bytes.append(text, length);
      text += length;
      if (text == text_end)
        break;
    }
    if (is_raw && (*text == 0 || *text == '\\')) {
      char value = *text != 0 ? *text : text[1] == lm_newline ? '\n' : '\0';
      append_char(&literal_bytes, static_cast<unsigned char>(value), false, char_kind);
      text += *text == 0 ? 2 : 1;
      continue;
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
  a_string_char_kind char_kind = char_kind_of_prefix(curr_literal.prefix);
  char* text = text_of_curr_literal();
  literal_bytes.clear();
  append_literal_text(text, text + curr_literal.text_length, char_kind, curr_literal.is_raw);
  finish_string_constant(char_kind);
}

// The text of an ordinary literal.
static bool scan_plain_string(size_t prefix_length) {
  bool is_closed = accum_quoted_string(start_of_curr_token + prefix_length, true, '"');
  curr_literal.text_offset = prefix_length + 1;
  curr_literal.text_length = static_cast<size_t>(curr_char_loc - start_of_curr_token) -
                             curr_literal.text_offset - (is_closed ? 1 : 0);
  if (!is_closed)
    report_token_error(ec_unclosed_string, start_of_curr_token);
  return is_closed;
}

a_token_kind scan_string_literal(unsigned prefix, size_t prefix_length) {
  curr_literal = {prefix, 0, 0, false, nullptr};
  bool is_closed;
  if ((prefix & ep_raw) == 0 || !scan_raw_string(prefix_length, &is_closed))
    is_closed = scan_plain_string(prefix_length);
  if (!is_closed && fetch_pp_tokens)
    return tok_error;
  bool is_ud_literal = is_closed && scan_ud_suffix(&curr_literal.suffix);
  end_of_curr_token = curr_char_loc - 1;
  if (fetch_pp_tokens)
    return is_ud_literal ? tok_ud_literal : tok_string;
  // Pieces to be joined are converted by concat_adjacent_string_literals.
  if (do_string_literal_concatenation || keep_string_literals_raw)
    return tok_string;
  conv_string_literal();
  return is_ud_literal ? finish_ud_literal(curr_literal.suffix, std::string()) : tok_string;
}

// -- Joining -----------------------------------------------------------------------------

void widen_string_literal(a_constant* constant, a_string_char_kind char_kind) {
  std::string bytes;
  for (uint64_t i = 0; i < constant->value.string.length; ++i)
    append_element(&bytes, static_cast<unsigned char>(constant->value.string.text[i]),
                   character_size[char_kind]);
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

// The pieces of a literal whose kind isn't settled yet: when a wide one follows
// narrow ones, their characters are converted anew.
struct a_string_piece {
  size_t start; // in piece_texts
  size_t length;
  bool is_raw;
};
static std::vector<a_string_piece> string_pieces;
static std::string piece_texts;

// The literal that pieces are being joined to.
struct a_joined_string {
  unsigned prefix; // an encoding, without further bits
  a_symbol_header* suffix;
};

static void convert_pieces_anew(a_string_char_kind char_kind) {
  a_boolean saved_fetch_pp_tokens = fetch_pp_tokens;
  fetch_pp_tokens = 1; // what is wrong with the pieces has been told
  literal_bytes.clear();
  for (const a_string_piece& piece : string_pieces) {
    char* text = piece_texts.data() + piece.start;
    append_literal_text(text, text + piece.length, char_kind, piece.is_raw);
  }
  fetch_pp_tokens = saved_fetch_pp_tokens;
}

// The prefix of the whole when a piece follows (C11 6.4.5p5, C++11 2.14.5p13):
// a piece without one takes that of the others, and no two of them mix.
static unsigned combined_prefix(unsigned whole, unsigned piece) {
  if (whole == piece)
    return whole;
  bool one_is_plain = whole == ep_none || piece == ep_none;
  unsigned result = whole == ep_none ? piece : whole;
  if (!one_is_plain || (result != ep_u8 && !mixed_concatenation_allowed()))
    pos_error(ec_mixed_string_concatenation, &pos_curr_token);
  return result;
}

// The suffixes of the pieces have to agree; a piece may have none.
static void combine_suffixes(a_joined_string* whole) {
  if (whole->suffix == nullptr)
    whole->suffix = curr_literal.suffix;
  else if (curr_literal.suffix != nullptr && curr_literal.suffix != whole->suffix)
    pos_st_error(ec_ud_string_suffix_mismatch, &pos_curr_token, whole->suffix->identifier);
}

// Appends the string token that is the current one.
static void append_piece(a_joined_string* whole) {
  combine_suffixes(whole);
  a_string_char_kind old_kind = char_kind_of_prefix(whole->prefix);
  whole->prefix = combined_prefix(whole->prefix, curr_literal.prefix & ep_kind_mask);
  a_string_char_kind char_kind = char_kind_of_prefix(whole->prefix);
  if (char_kind != old_kind)
    convert_pieces_anew(char_kind);
  char* text = text_of_curr_literal();
  append_literal_text(text, text + curr_literal.text_length, char_kind, curr_literal.is_raw);
}

static void keep_piece() {
  string_pieces.push_back({piece_texts.size(), curr_literal.text_length, curr_literal.is_raw});
  piece_texts.append(text_of_curr_literal(), curr_literal.text_length);
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

static void finish_joined_string(const a_joined_string& whole) {
  finish_string_constant(char_kind_of_prefix(whole.prefix));
  curr_token =
      whole.suffix != nullptr ? finish_ud_literal(whole.suffix, std::string()) : tok_string;
}

// Reads the pieces that follow. The token behind them is read too, and put back.
static void append_following_pieces(a_joined_string* whole) {
  a_source_position start_position = pos_curr_token;
  a_source_position end_position = end_pos_curr_token;
  a_token_sequence_number sequence_number = curr_token_sequence_number;
  uint8_t white_space = kind_of_white_space_skipped;
  a_pending_pragma* pragmas = curr_token_pragmas;
  curr_token_pragmas = nullptr;
  string_pieces.clear();
  piece_texts.clear();
  keep_piece();
  keep_string_literals_raw = 1;
  push_lexical_state_stack();
  while (get_token() == tok_string && start_of_curr_token != nullptr) {
    append_piece(whole);
    keep_piece();
    end_position = end_pos_curr_token;
  }
  pop_lexical_state_stack();
  keep_string_literals_raw = 0;
  put_back_token_behind_string();
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
}

void concat_adjacent_string_literals() {
  a_joined_string whole = {curr_literal.prefix & ep_kind_mask, nullptr};
  literal_bytes.clear();
  append_piece(&whole);
  if (!no_string_can_follow())
    append_following_pieces(&whole);
  finish_joined_string(whole);
}

static bool is_raw_delimiter(int c) {
  return c > ' ' && c < 127 && strchr("()\\$@`", c) == nullptr;
}

void lexical_string_one_time_init() {
  for (int c = 0; c < 256; ++c)
    is_raw_string_delimiter_char[c] = is_raw_delimiter(c);
}
