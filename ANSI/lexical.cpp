// The scanner's state, the fetching of a token and the skipping of white space.

#include "lexical.h"

#include <cstring>

#include "cfe.h"
#include "error.h"
#include "lexical_int.h"
#include "macro_int.h"
#include "mode_words.h"
#include "pragma.h"
#include "preproc.h"
#include "source_file.h"

const char* const token_names[num_token_kinds] = {
#define TOKEN(number, enumerator, name) name,
#include "token_kinds.def"
#undef TOKEN
};

a_token_kind curr_token;
a_source_position pos_curr_token;
a_source_position end_pos_curr_token;
char* start_of_curr_token;
char* end_of_curr_token;
size_t len_of_curr_token;
a_constant const_for_curr_token;
a_constant const_with_curr_tok_spelling;
a_symbol* ud_lit_op_sym_for_curr_token;
a_type* ud_lit_type_for_curr_token;
const char* curr_token_asm_string;
a_boolean curr_token_is_inert_macro;
a_boolean curr_token_is_temporarily_inert_macro;
a_boolean curr_token_is_undefined_pp_identifier;
a_pending_pragma* curr_token_pragmas;
a_token_sequence_number curr_token_sequence_number;
a_token_sequence_number last_token_sequence_number_of_token;
a_token_sequence_number last_token_sequence_number_used;
a_cached_token* curr_cached_token_handle;
an_error_code err_code_for_error_token;
uint8_t kind_of_white_space_skipped;

a_boolean in_preprocessing_directive;
a_boolean fetch_pp_tokens;
a_boolean expand_macros;
a_boolean do_string_literal_concatenation;
a_boolean treat_newline_as_token;
a_boolean caching_tokens;
a_boolean caching_pragma_tokens;
a_boolean scanning_pragma_tokens;
a_boolean recognize_keywords_in_pragma;
a_boolean in_pp_if_expression;
a_boolean exp_header_name;
a_boolean exp_system_header_name;
a_boolean exp_digit_sequence;
a_boolean suppress_keyword_recognition;
a_boolean currently_in_pp_if_skip;
a_boolean scanning_macro_name;
a_boolean any_initial_get_token_tests_needed;

bool is_id_char[256];

a_source_line_modif* curr_text_modif;
a_boolean line_has_token;
a_line_end_action line_end_action;
unsigned num_lines_read_ahead;

static a_saved_line_loc* saved_line_locs;

bool is_keyword_token(a_token_kind kind) {
  return kind >= tok_lbracket && is_id_char[static_cast<unsigned char>(token_names[kind][0])];
}

// -- Places in the text ------------------------------------------------------------

a_saved_line_loc::a_saved_line_loc(char* location) : loc(location), next(saved_line_locs) {
  saved_line_locs = this;
}

a_saved_line_loc::~a_saved_line_loc() {
  saved_line_locs = next;
}

// The line buffer moved.
static void adjust_scanner_pointers(const a_moved_buffer& moved) {
  start_of_curr_token = moved_pointer(moved, start_of_curr_token);
  end_of_curr_token = moved_pointer(moved, end_of_curr_token);
  delete_source_from_loc = moved_pointer(moved, delete_source_from_loc);
  for (a_saved_line_loc* saved = saved_line_locs; saved != nullptr; saved = saved->next)
    saved->loc = moved_pointer(moved, saved->loc);
}

a_source_line_modif* add_text_modif(char* location, size_t length, char* text, char* text_end) {
  a_source_line_modif* modif = add_source_line_modif(location, length, text, text_end);
  // The list stays in the order of making, newest first, so that a group of
  // modifications can be taken back.
  modif->stays_in_place = 1;
  modif->parent = curr_text_modif;
  modif->parent_is_valid = 1;
  return modif;
}

void discard_text_modifs_since(uint32_t mark) {
  while (source_line_modif_list != nullptr && source_line_modif_list->sequence_id > mark)
    remove_source_line_modif(source_line_modif_list);
}

void position_of_loc(const char* location, a_source_position* position) {
  if (curr_text_modif != nullptr) {
    *position = curr_text_modif->position;
    if (curr_text_modif->position_is_fixed)
      position->column += static_cast<uint16_t>(location - curr_text_modif->text_start);
  } else if (curr_source_line_is_plain) {
    ptrdiff_t column = location - curr_source_line + 1;
    *position = {curr_seq_number, static_cast<uint16_t>(column > UINT16_MAX ? UINT16_MAX : column),
                 0};
  } else {
    conv_line_loc_to_source_pos(location, position);
  }
}

static char empty_text[] = {0, mtm_end_of_text};

// The text from delete_source_from_loc to the end of the current text belongs
// to the invocation that is being read: it goes, and the invocation now begins
// where the text around it goes on.
static void delete_rest_of_text(a_source_line_modif* text) {
  if (delete_source_from_loc < text->text_end)
    add_text_modif(delete_source_from_loc,
                   static_cast<size_t>(text->text_end - delete_source_from_loc), empty_text,
                   empty_text);
}

bool leave_macro_text() {
  a_source_line_modif* text = curr_text_modif;
  if (text == nullptr || text->stops_scan)
    return false;
  bool invocation_begins_here = delete_source_from_loc != nullptr &&
                                delete_source_from_loc >= text->text_start &&
                                delete_source_from_loc <= text->text_end;
  if (invocation_begins_here)
    delete_rest_of_text(text);
  curr_text_modif = text->parent;
  if (text->location == nullptr) {
    curr_char_loc = curr_source_line;
    line_has_token = 0;
  } else {
    curr_char_loc = text->location + text->length;
    if (text->length == 0) {
      // An inserted text: what it stood before comes to light again.
      remove_source_line_modif(text);
    }
  }
  if (invocation_begins_here)
    delete_source_from_loc = curr_char_loc;
  return true;
}

// At a modification's marker: goes into its text.
static void enter_source_line_modif() {
  a_source_line_modif* modif = source_line_modif_at(curr_char_loc);
  if (modif == nullptr) {
    ++curr_char_loc;
    return;
  }
  curr_text_modif = modif;
  curr_char_loc = modif->text_start;
}

// -- White space ---------------------------------------------------------------------

void report_token_diagnostic(an_error_severity severity, an_error_code code, const char* location) {
  if (fetch_pp_tokens)
    return;
  a_source_position position;
  position_of_loc(location, &position);
  pos_diagnostic(severity, code, &position);
}

void report_token_error(an_error_code code, const char* location) {
  err_code_for_error_token = code;
  report_token_diagnostic(es_error, code, location);
}

static void stray_carriage_return() {
  if (currently_in_pp_if_skip)
    return;
  a_source_position position;
  position_of_loc(curr_char_loc, &position);
  pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_remark,
                 ec_stray_carriage_return, &position);
}

static void nul_in_source() {
  if (currently_in_pp_if_skip)
    return;
  a_source_position position;
  position_of_loc(curr_char_loc, &position);
  if (null_chars_allowed_in_source)
    pos_warning(ec_null_char_ignored, &position);
  else
    pos_diagnostic(es_discretionary_error, ec_invalid_char, &position);
}

// The name of a macro is the last of a line, and its argument list is looked for
// in the next: the line as it goes to the output ends before the name.
static void delete_rest_of_line() {
  char* end = after_end_of_curr_source_line - 2;
  if (generate_pp_output && delete_source_from_loc != nullptr && delete_source_from_loc < end)
    add_text_modif(delete_source_from_loc, static_cast<size_t>(end - delete_source_from_loc),
                   empty_text, empty_text);
}

// Makes the next line the one in the buffer. False at the end of the file.
static bool read_line_ahead() {
  if (num_lines_read_ahead == 0)
    delete_rest_of_line();
  if (read_logical_source_line(false, false))
    return false;
  ++num_lines_read_ahead;
  delete_source_from_loc = curr_source_line;
  return true;
}

// The text of the line that was read before isn't needed any more.
static void give_back_macro_text() {
  if (num_macro_invocations_in_process == 0)
    reset_macro_text_buffer();
}

// At the end of the line buffer's line. False when scanning stops there.
static bool go_to_next_line() {
  if (in_preprocessing_directive)
    return false;
  if (treat_newline_as_token && curr_token != tok_newline)
    return false;
  kind_of_white_space_skipped |= ws_real;
  bool found;
  if (line_end_action == lea_append) {
    found = !read_logical_source_line(false, true);
  } else {
    found = line_end_action == lea_look_ahead
                ? read_line_ahead()
                : !read_logical_source_line(line_end_action == lea_read_next, false);
    if (found)
      give_back_macro_text();
  }
  line_has_token = 0;
  return found;
}

// -- Comments ---------------------------------------------------------------------------

// A comment is left out of the preprocessed output and the listing.
static void replace_comment_by_blank(char* start, char* end) {
  static char blank_text[] = {' ', 0, mtm_end_of_text};
  bool is_listed = generate_pp_output || f_raw_listing != nullptr;
  if (is_listed && !keep_comments_in_pp_output && curr_text_modif == nullptr)
    add_text_modif(start, static_cast<size_t>(end - start), blank_text, blank_text + 1);
}

// What lint comments say about the code goes the way of pragmas.

static bool lint_word_matches(const char** p, const char* word) {
  size_t length = strlen(word);
  if (strncmp(*p, word, length) != 0)
    return false;
  *p += length;
  return true;
}

static bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Behind VARARGS: the number of arguments to be checked. False for none.
static bool scan_lint_count(const char** p, unsigned* count) {
  bool found = false;
  for (; **p >= '0' && **p <= '9'; ++*p, found = true)
    *count = *count * 10 + static_cast<unsigned>(**p - '0');
  return found;
}

// `p` is behind the characters that begin a comment.
static void check_for_lint_comment(const char* p, const a_source_position& position) {
  if (in_preprocessing_directive || currently_in_pp_if_skip || fetch_pp_tokens)
    return;
  while (*p == ' ' || *p == '\t')
    ++p;
  unsigned count = 0;
  a_pragma_kind_tag kind = pk_none;
  if (lint_word_matches(&p, "ARGSUSED"))
    kind = pk_argsused;
  else if (lint_word_matches(&p, "VARARGS") && scan_lint_count(&p, &count))
    kind = pk_varargs;
  else if (lint_word_matches(&p, "NOTREACHED"))
    kind = pk_notreached;
  if (kind != pk_none && !is_letter(*p))
    add_curr_token_pseudo_pragma(kind, &position)->extra = static_cast<uint16_t>(count);
}

static void skip_end_of_line_comment() {
  char* start = curr_char_loc;
  char* p = start + 2;
  a_source_position start_position;
  position_of_loc(start, &start_position);
  check_for_lint_comment(p, start_position);
  while (*p != 0 || p[1] == lm_nul_character)
    p += *p == 0 ? 2 : 1;
  curr_char_loc = p;
  replace_comment_by_blank(start, p);
}

static void nested_comment(const char* location) {
  if (currently_in_pp_if_skip)
    return;
  a_source_position position;
  position_of_loc(location, &position);
  if (check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_2_3, &position);
  else
    pos_warning(ec_nested_comment, &position);
}

static void skip_block_comment() {
  a_source_position start_position;
  position_of_loc(curr_char_loc, &start_position);
  a_saved_line_loc start(curr_char_loc);
  curr_char_loc += 2;
  check_for_lint_comment(curr_char_loc, start_position);
  for (;;) {
    char* p = curr_char_loc;
    while (*p != '*' && *p != '/' && *p != 0)
      ++p;
    curr_char_loc = p + 1;
    if (*p == '*') {
      if (p[1] == '/') {
        curr_char_loc = p + 2;
        break;
      }
    } else if (*p == '/') {
      if (p[1] == '*')
        nested_comment(p);
    } else if (p[1] == lm_end_of_line || p[1] == mtm_end_of_text) {
      curr_char_loc = p;
      if (curr_text_modif == nullptr && curr_ise != nullptr)
        pass_over_comment_lines();
      if (curr_text_modif != nullptr || read_logical_source_line(false, true)) {
        pos_error(ec_comment_unclosed_at_eof, &start_position);
        break;
      }
    } else {
      curr_char_loc = p + 2;
    }
  }
  replace_comment_by_blank(start.loc, curr_char_loc);
}

// A // where the dialect has none: C89 under strict rules reads it as a comment
// all the same, with one warning.
static bool is_end_of_line_comment(const char* p) {
  if (end_of_line_comments_allowed)
    return true;
  static a_boolean warned;
  if (!strict_ansi_mode || in_cplusplus_mode() || std_version >= 199901 ||
      currently_in_pp_if_skip || p[2] == '*')
    return false;
  if (!warned) {
    warned = 1;
    a_source_position position;
    position_of_loc(p, &position);
    pos_warning(ec_illegal_end_of_line_comment, &position);
  }
  return true;
}

enum a_marker_result : uint8_t { mr_skipped, mr_token, mr_stop };
static a_marker_result skip_marker();

// One step inside a comment that a macro has begun: over a character, a marker
// or a name, which may be a macro that ends the comment. False at what ends the
// text.
static bool skip_in_macro_comment() {
  char* p = curr_char_loc;
  if (*p == 0) {
    a_marker_result result = skip_marker();
    if (result == mr_token)
      curr_char_loc += 2;
    return result != mr_stop;
  }
  if (*p == '\n') {
    enter_source_line_modif();
  } else if (is_id_char[static_cast<unsigned char>(*p)]) {
    start_of_curr_token = p;
    if (*p >= '0' && *p <= '9')
      scan_number(p);
    else
      scan_identifier(p, inert_none);
  } else {
    ++curr_char_loc;
  }
  return true;
}

// Old-style preprocessing lets macros make the delimiters of comments, though
// not while it looks for an argument list or reads one.
static bool skip_macro_comment() {
  if (!pcc_preprocessing_mode || curr_char_loc[1] != '*' || line_end_action != lea_read_next)
    return false;
  a_source_position start_position;
  position_of_loc(curr_char_loc, &start_position);
  a_boolean saved_fetch_pp_tokens = fetch_pp_tokens;
  fetch_pp_tokens = 1;
  curr_char_loc += 2;
  bool is_closed;
  do
    is_closed = *curr_char_loc == '*' && curr_char_loc[1] == '/';
  while (!is_closed && skip_in_macro_comment());
  fetch_pp_tokens = saved_fetch_pp_tokens;
  if (is_closed)
    curr_char_loc += 2;
  else
    pos_error(ec_comment_unclosed_at_eof, &start_position);
  kind_of_white_space_skipped |= ws_old_style_comment;
  return true;
}

// At a slash. Text of a macro holds no comments but in old-style preprocessing:
// two tokens may have come to stand side by side there.
static bool skip_comment() {
  if (curr_text_modif != nullptr && curr_text_modif->is_macro_expansion)
    return skip_macro_comment();
  char* p = curr_char_loc;
  if (p[1] == '*')
    skip_block_comment();
  else if (p[1] == '/' && is_end_of_line_comment(p))
    skip_end_of_line_comment();
  else
    return false;
  kind_of_white_space_skipped |= pcc_preprocessing_mode ? ws_old_style_comment : ws_real;
  return true;
}

// At a NUL.
static a_marker_result skip_marker() {
  switch (curr_char_loc[1]) {
  case lm_end_of_line:
    return go_to_next_line() ? mr_skipped : mr_stop;
  case lm_newline:
    if (in_preprocessing_directive || (treat_newline_as_token && curr_token != tok_newline))
      return mr_stop;
    kind_of_white_space_skipped |= ws_real;
    line_has_token = 0;
    break;
  case mtm_end_of_text:
    return leave_macro_text() ? mr_skipped : mr_stop;
  case mtm_inert:
  case mtm_temporarily_inert:
    return mr_token;
  case lm_nul_character:
    nul_in_source();
    kind_of_white_space_skipped |= ws_real;
    break;
  case mtm_arg_comma:
    comma_is_from_argument = 1;
    break;
  case mtm_start_of_text:
    pos_of_macro_invocation = null_source_position;
    break;
  case mtm_raw_or_expanded:
    choose_raw_or_expanded_arg = 1;
    break;
  case mtm_variadic_comma:
    if (in_macro_arg_list) {
      comma_is_magic = 1;
    } else {
      ++curr_char_loc;
      kind_of_white_space_skipped |= ws_real;
    }
    break;
  case mtm_empty_variadic:
    empty_variadic_macro_seen = 1;
    break;
  default:
    break;
  }
  curr_char_loc += 2;
  return mr_skipped;
}

bool skip_to_token() {
  for (;;) {
    switch (*curr_char_loc) {
    case '\r':
      stray_carriage_return();
      [[fallthrough]];
    case ' ':
    case '\t':
    case '\v':
    case '\f':
      kind_of_white_space_skipped |= ws_real;
      ++curr_char_loc;
      break;
    case '\n':
      enter_source_line_modif();
      break;
    case '/':
      if (!skip_comment())
        return true;
      break;
    case '\0': {
      a_marker_result result = skip_marker();
      if (result != mr_skipped)
        return result == mr_token;
      break;
    }
    default:
      return true;
    }
  }
}

void skip_white_space() {
  skip_to_token();
}

// -- Fetching a token ----------------------------------------------------------------------

void number_curr_token() {
  last_token_sequence_number_used += 2;
  curr_token_sequence_number = last_token_sequence_number_used;
  last_token_sequence_number_of_token = last_token_sequence_number_used;
}

static uint16_t shown_column(size_t column) {
  return static_cast<uint16_t>(column > UINT16_MAX ? UINT16_MAX : column);
}

void set_curr_token_spelling_and_position() {
  size_t length = static_cast<size_t>(curr_char_loc - start_of_curr_token);
  end_of_curr_token = curr_char_loc - 1;
  len_of_curr_token = length;
  if (curr_text_modif == nullptr && curr_source_line_is_plain) {
    size_t column = static_cast<size_t>(start_of_curr_token - curr_source_line) + 1;
    pos_curr_token = {curr_seq_number, shown_column(column), 0};
    end_pos_curr_token = {curr_seq_number, shown_column(column + length - (length != 0)), 0};
  } else {
    position_of_loc(start_of_curr_token, &pos_curr_token);
    position_of_loc(end_of_curr_token, &end_pos_curr_token);
  }
  error_position = pos_curr_token;
}

static a_token_kind punctuator(a_token_kind kind, int length) {
  curr_char_loc += length;
  return kind;
}

// At what skip_to_token doesn't pass.
static a_token_kind end_token() {
  char marker = curr_char_loc[1];
  bool is_newline =
      marker == lm_newline ||
      (marker == lm_end_of_line &&
       (in_preprocessing_directive || (treat_newline_as_token && curr_token != tok_newline)));
  return is_newline ? tok_newline : tok_end_of_source;
}

// A character that begins no token.
static a_token_kind unrecognized_token() {
  report_token_error(ec_bad_token, curr_char_loc);
  int length = 1;
  if (multibyte_chars_in_source_enabled && static_cast<unsigned char>(*curr_char_loc) >= 0x80)
    length = utf8_char_length(curr_char_loc);
  curr_char_loc += length;
  return tok_error;
}

// At # or %: of `length` bytes: a directive, an operator of a macro definition,
// or a fault. What begins a line with ## is no directive.
static a_token_kind scan_sharp(int length) {
  char* p = curr_char_loc;
  bool is_double = is_double_sharp(p);
  if (in_preprocessing_directive)
    return is_double ? punctuator(tok_sharp_sharp, 2 * length) : punctuator(tok_sharp, length);
  if (curr_text_modif == nullptr && !line_has_token && !is_double) {
    if (currently_in_pp_if_skip)
      return punctuator(tok_sharp, length);
    curr_char_loc += length;
    set_curr_token_spelling_and_position();
    if (check_misra_c_2004 && in_macro_arg_list)
      pos_diagnostic(misra_required_severity, ec_misra_c_2004_19_9, &pos_curr_token);
    pp_directive();
    return scan_again;
  }
  report_token_error(ec_bad_use_of_sharp, p);
  return punctuator(tok_error, is_double ? 2 * length : length);
}

// At a digraph that `:` follows: whether its own colon belongs to a `::` instead
// (C++11 2.5p3). Where it doesn't, the digraph is likely not what was meant.
static bool colon_is_for_scope(an_error_code code) {
  if (!in_cplusplus_mode())
    return false;
  bool is_cpp11 = std_version >= 201103 || implicit_microsoft_cpp11_mode;
  if (is_cpp11 && (!gnu_mode || clang_mode || gnu_version >= 40800))
    return true;
  report_token_diagnostic(es_warning, code, curr_char_loc);
  return false;
}

static a_token_kind scan_less_than() {
  char* p = curr_char_loc;
  if (exp_system_header_name)
    return scan_header_name(p, '>');
  switch (p[1]) {
  case '<':
    return p[2] == '=' ? punctuator(tok_shift_left_assign, 3) : punctuator(tok_shift_left, 2);
  case '=':
    return punctuator(tok_le, 2);
  case ':':
    if (!alternative_tokens_allowed)
      break;
    if (p[2] == ':' && p[3] != ':' && p[3] != '>' &&
        colon_is_for_scope(ec_probable_inadvertent_lbracket_digraph))
      break;
    return punctuator(tok_lbracket, 2);
  case '%':
    if (alternative_tokens_allowed)
      return punctuator(tok_lbrace, 2);
    break;
  case '?':
    if (alternative_tokens_allowed && gnu_mode && in_cplusplus_mode())
      return punctuator(tok_min, 2);
    break;
  default:
    break;
  }
  return punctuator(tok_lt, 1);
}

static a_token_kind scan_greater_than() {
  char* p = curr_char_loc;
  if (p[1] == '>')
    return p[2] == '=' ? punctuator(tok_shift_right_assign, 3) : punctuator(tok_shift_right, 2);
  if (p[1] == '=')
    return punctuator(tok_ge, 2);
  if (p[1] == '?' && alternative_tokens_allowed && gnu_mode && in_cplusplus_mode())
    return punctuator(tok_max, 2);
  return punctuator(tok_gt, 1);
}

static a_token_kind scan_percent() {
  char* p = curr_char_loc;
  if (p[1] == '=')
    return punctuator(tok_remainder_assign, 2);
  if (alternative_tokens_allowed) {
    if (p[1] == '>')
      return punctuator(tok_rbrace, 2);
    bool is_digraph = p[1] == ':' && !(p[2] == ':' && p[3] != ':' &&
                                       colon_is_for_scope(ec_probable_inadvertent_sharp_digraph));
    if (is_digraph)
      return scan_sharp(2);
  }
  return punctuator(tok_remainder, 1);
}

static a_token_kind scan_minus() {
  char* p = curr_char_loc;
  switch (p[1]) {
  case '-':
    return punctuator(tok_minus_minus, 2);
  case '=':
    return punctuator(tok_minus_assign, 2);
  case '>':
    if (p[2] == '*' && in_cplusplus_mode())
      return punctuator(tok_arrow_star, 3);
    return punctuator(tok_arrow, 2);
  default:
    return punctuator(tok_minus, 1);
  }
}

static a_token_kind scan_period() {
  char* p = curr_char_loc;
  if (p[1] >= '0' && p[1] <= '9')
    return scan_number(p);
  if (p[1] == '.' && p[2] == '.')
    return punctuator(tok_ellipsis, 3);
  if (p[1] == '*' && in_cplusplus_mode())
    return punctuator(tok_period_star, 2);
  return punctuator(tok_period, 1);
}

static a_token_kind scan_colon() {
  char* p = curr_char_loc;
  if (p[1] == ':' && in_cplusplus_mode())
    return punctuator(tok_colon_colon, 2);
  if (p[1] == '>' && alternative_tokens_allowed)
    return punctuator(tok_rbracket, 2);
  return punctuator(tok_colon, 1);
}

// An operator that may be followed by itself or by `=`.
static a_token_kind scan_operator(a_token_kind single, a_token_kind doubled,
                                  a_token_kind assigning) {
  char* p = curr_char_loc;
  if (p[1] == '=')
    return punctuator(assigning, 2);
  if (doubled != tok_error && p[1] == p[0])
    return punctuator(doubled, 2);
  return punctuator(single, 1);
}

// At a letter that may begin the prefix of a literal.
static a_token_kind scan_prefixed_literal_or_identifier(char* p) {
  size_t prefix_length;
  unsigned prefix = scan_encoding_prefix(p, &prefix_length);
  if (prefix == 0)
    return scan_identifier(p, inert_none);
  return (prefix & ep_string) != 0 ? scan_string_literal(prefix, prefix_length)
                                   : scan_char_literal(prefix, prefix_length);
}

// At a NUL or another character that isn't part of a token by itself.
static a_token_kind scan_after_white_space() {
  char* p = curr_char_loc;
  if (*p == 0 && (p[1] == mtm_inert || p[1] == mtm_temporarily_inert)) {
    start_of_curr_token = p + 2;
    return scan_identifier(p + 2, p[1] == mtm_inert ? inert_for_good : inert_for_now);
  }
  return skip_to_token() ? scan_again : end_token();
}

// The switch on a token's first byte.
static a_token_kind scan_one_token() {
  char* p = curr_char_loc;
  switch (static_cast<unsigned char>(*p)) {
  case '\0':
  case '\t':
  case '\v':
  case '\f':
  case '\r':
  case '\n':
  case ' ':
    return scan_after_white_space();
  case '"':
    if (exp_header_name)
      return scan_header_name(p, '"');
    return scan_string_literal(ep_none | ep_string, 0);
  case '\'':
    return scan_char_literal(ep_none, 0);
  case '#':
    return scan_sharp(1);
  case '.':
    return scan_period();
  case '0':
  case '1':
  case '2':
  case '3':
  case '4':
  case '5':
  case '6':
  case '7':
  case '8':
  case '9':
    return scan_number(p);
  case '(':
    return punctuator(tok_lparen, 1);
  case ')':
    return punctuator(tok_rparen, 1);
  case '[':
    return punctuator(tok_lbracket, 1);
  case ']':
    return punctuator(tok_rbracket, 1);
  case '{':
    return punctuator(tok_lbrace, 1);
  case '}':
    return punctuator(tok_rbrace, 1);
  case ',':
    return punctuator(tok_comma, 1);
  case ';':
    return punctuator(tok_semicolon, 1);
  case '?':
    return punctuator(tok_question, 1);
  case '~':
    return punctuator(tok_compl, 1);
  case ':':
    return scan_colon();
  case '-':
    return scan_minus();
  case '+':
    return scan_operator(tok_plus, tok_plus_plus, tok_plus_assign);
  case '*':
    return scan_operator(tok_star, tok_error, tok_times_assign);
  case '&':
    return scan_operator(tok_ampersand, tok_and_and, tok_and_assign);
  case '|':
    return scan_operator(tok_or, tok_or_or, tok_or_assign);
  case '^':
    return scan_operator(tok_excl_or, tok_error, tok_excl_or_assign);
  case '=':
    return p[1] == '=' ? punctuator(tok_eq, 2) : punctuator(tok_assign, 1);
  case '!':
    return p[1] == '=' ? punctuator(tok_ne, 2) : punctuator(tok_not, 1);
  case '<':
    return scan_less_than();
  case '>':
    return scan_greater_than();
  case '%':
    return scan_percent();
  case '/':
    if (skip_comment())
      return scan_again;
    return scan_operator(tok_divide, tok_error, tok_divide_assign);
  case '@':
    return nrg_standalone_iar ? punctuator(tok_at, 1) : unrecognized_token();
  case '\\':
    if ((p[1] == 'u' || p[1] == 'U') && universal_character_names_allowed)
      return scan_identifier(p, inert_none);
    return unrecognized_token();
  case 'L':
  case 'u':
  case 'U':
  case 'R':
    return scan_prefixed_literal_or_identifier(p);
  default: {
    size_t length;
    if (is_id_char[static_cast<unsigned char>(*p)] ||
        f_is_identifier_char(p, true, &length, nullptr))
      return scan_identifier(p, inert_none);
    return unrecognized_token();
  }
  }
}

// A token that ends at the seam of two pasted operands, and doesn't reach over
// it, shows that the pasting made no single token.
static void check_concatenation_at_token_end() {
  if (curr_text_modif != nullptr && curr_text_modif->concatenation_records != nullptr)
    report_failed_concatenation(curr_text_modif, end_of_curr_token + 1);
}

static a_token_kind scan_fresh_token() {
  kind_of_white_space_skipped = ws_none;
  curr_cached_token_handle = nullptr;
  a_token_kind kind;
  do {
    number_curr_token();
    curr_token_is_inert_macro = 0;
    curr_token_is_temporarily_inert_macro = 0;
    curr_token_is_undefined_pp_identifier = 0;
    err_code_for_error_token = 0;
    char* p = curr_char_loc;
    if (*p == ' ') {
      do
        ++p;
      while (*p == ' ');
      curr_char_loc = p;
      kind_of_white_space_skipped |= ws_real;
    }
    start_of_curr_token = p;
    kind = scan_one_token();
    if (kind == tok_newline || kind == tok_end_of_source)
      start_of_curr_token = curr_char_loc;
  } while (kind == scan_again);
  curr_token = kind;
  set_curr_token_spelling_and_position();
  check_concatenation_at_token_end();
  if (kind == tok_identifier)
    locator_for_curr_id.position = pos_curr_token;
  line_has_token = 1;
  if (!in_preprocessing_directive && kind != tok_end_of_source)
    any_tokens_fetched_from_curr_input_file = 1;
  if (kind == tok_string && do_string_literal_concatenation && !fetch_pp_tokens &&
      !keep_string_literals_raw)
    concat_adjacent_string_literals();
  return curr_token;
}

a_token_kind get_token() {
  if (!any_initial_get_token_tests_needed || !get_saved_token())
    scan_fresh_token();
  a_lexical_state_stack_entry* state = lexical_state_stack;
  if (state->caching_depth > 0 && curr_token_sequence_number > state->first_sequence_cached) {
    cache_curr_token(&state->cached_tokens);
    state->first_sequence_cached = curr_token_sequence_number;
  }
  return curr_token;
}

a_token_kind get_token_to_be_cached() {
  a_boolean saved = caching_tokens;
  caching_tokens = 1;
  get_token();
  caching_tokens = saved;
  return curr_token;
}

// -- Initialisation ---------------------------------------------------------------------------

// Letters of ISO 8859-1, for sources whose bytes are characters.
static bool is_latin_1_letter(int c) {
  return c == 170 || c == 181 || c == 186 || (c >= 192 && c != 215 && c != 247);
}

static bool is_ascii_id_char(int c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         (c == '$' && allow_dollar_in_id_chars);
}

void lexical_one_time_init() {
  for (int c = 0; c < 256; ++c)
    is_id_char[c] =
        c < 128 ? is_ascii_id_char(c) : !multibyte_chars_in_source_enabled && is_latin_1_letter(c);
  lexical_string_one_time_init();
  static bool registered;
  if (!registered)
    register_source_line_adjuster(adjust_scanner_pointers);
  registered = true;
}

void lexical_init() {
  source_line_init();
  source_file_init();
  lexical_cache_init();
  lexical_parse_init();
}

// No token, no text and no mode of an earlier unit.
void lexical_reset() {
  source_line_reset();
  curr_token = tok_error;
  pos_curr_token = end_pos_curr_token = error_position = null_source_position;
  start_of_curr_token = end_of_curr_token = nullptr;
  len_of_curr_token = 0;
  curr_token_pragmas = nullptr;
  curr_cached_token_handle = nullptr;
  curr_text_modif = nullptr;
  line_has_token = 0;
  line_end_action = lea_read_next;
  in_preprocessing_directive = 0;
  treat_newline_as_token = 0;
  caching_tokens = caching_pragma_tokens = scanning_pragma_tokens = 0;
  recognize_keywords_in_pragma = 0;
  exp_header_name = exp_system_header_name = exp_digit_sequence = 0;
  suppress_keyword_recognition = 0;
  currently_in_pp_if_skip = 0;
  scanning_macro_name = 0;
  keep_string_literals_raw = 0;
  any_initial_get_token_tests_needed = 0;
}

void lexical_trans_unit_init() {
  lexical_reset();
  lexical_identifier_trans_unit_init();
  push_lexical_state_stack();
  push_stop_token_stack();
}

void lexical_pch_reset() {
  source_file_reset();
  lexical_reset();
}
