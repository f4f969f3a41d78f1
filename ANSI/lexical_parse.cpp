// The parser's way into the token stream: required tokens, recovery from
// errors, and the stacks of lexical states and stop tokens.

#include <cstring>
#include <string>
#include <vector>

#include "error.h"
#include "lexical_int.h"
#include "macro.h"
#include "mem_manage.h"
#include "pragma.h"

a_lexical_state_stack_entry* lexical_state_stack;
a_stop_token_stack_entry* curr_stop_token_stack_entry;

static a_lexical_state_stack_entry* avail_lexical_states;
static a_stop_token_stack_entry* avail_stop_token_entries;

// -- Stacks ----------------------------------------------------------------------------

void push_lexical_state_stack() {
  a_lexical_state_stack_entry* entry = avail_lexical_states;
  if (entry != nullptr)
    avail_lexical_states = entry->next;
  else
    entry =
        static_cast<a_lexical_state_stack_entry*>(alloc_in_region(front_end_region, sizeof *entry));
  *entry = {lexical_state_stack, 0, 0, error_position, {}, caching_tokens, false};
  lexical_state_stack = entry;
}

void pop_lexical_state_stack() {
  a_lexical_state_stack_entry* entry = lexical_state_stack;
  lexical_state_stack = entry->next;
  error_position = entry->saved_error_position;
  caching_tokens = entry->saved_caching_tokens;
  entry->next = avail_lexical_states;
  avail_lexical_states = entry;
}

void push_stop_token_stack() {
  a_stop_token_stack_entry* entry = avail_stop_token_entries;
  if (entry != nullptr)
    avail_stop_token_entries = entry->next;
  else
    entry =
        static_cast<a_stop_token_stack_entry*>(alloc_in_region(front_end_region, sizeof *entry));
  memset(entry, 0, sizeof *entry);
  entry->next = curr_stop_token_stack_entry;
  curr_stop_token_stack_entry = entry;
}

void pop_stop_token_stack() {
  a_stop_token_stack_entry* entry = curr_stop_token_stack_entry;
  curr_stop_token_stack_entry = entry->next;
  entry->next = avail_stop_token_entries;
  avail_stop_token_entries = entry;
}

void lexical_parse_init() {
  avail_lexical_states = nullptr;
  avail_stop_token_entries = nullptr;
  lexical_state_stack = nullptr;
  curr_stop_token_stack_entry = nullptr;
}

// -- Required tokens ---------------------------------------------------------------------

bool required_token_no_advance(a_token_kind kind, an_error_code code) {
  if (curr_token == kind)
    return true;
  add_stop_token(kind);
  syntax_error(code);
  remove_stop_token(kind);
  return false;
}

bool required_token(a_token_kind kind, an_error_code code) {
  bool found = required_token_no_advance(kind, code);
  if (curr_token == kind)
    get_token();
  return found;
}

bool loop_token(a_token_kind kind) {
  if (curr_token != kind)
    return false;
  get_token();
  return true;
}

// -- Error recovery -----------------------------------------------------------------------

static bool is_opening_token(a_token_kind kind) {
  return kind == tok_lparen || kind == tok_lbracket || kind == tok_lbrace;
}

static bool is_stop_token(a_token_kind kind, const a_token_set_array* extra_stop_tokens) {
  return kind == tok_end_of_source || curr_stop_token_stack_entry->stop_tokens[kind] != 0 ||
         (kind == tok_newline && in_preprocessing_directive) ||
         (extra_stop_tokens != nullptr && extra_stop_tokens->member[kind]);
}

void flush_tokens_with_stop_tokens_and_warning_flag(const a_token_set_array* extra_stop_tokens,
                                                    bool warn) {
  bool any_discarded = false;
  while (!is_stop_token(curr_token, extra_stop_tokens)) {
    any_discarded = true;
    if (is_opening_token(curr_token))
      flush_until_matching_token_full(false);
    else
      get_token();
  }
  if (any_discarded && warn && curr_token != tok_end_of_source && !in_preprocessing_directive)
    pos_remark(ec_end_of_flush, &pos_curr_token);
}

void flush_tokens() {
  flush_tokens_with_stop_tokens_and_warning_flag(nullptr, true);
}

void flush_tokens_without_warning() {
  flush_tokens_with_stop_tokens_and_warning_flag(nullptr, false);
}

void flush_to_closing_paren() {
  static const a_token_set_array closing_paren = [] {
    a_token_set_array set = {};
    set.member[tok_rparen] = true;
    return set;
  }();
  flush_tokens_with_stop_tokens_and_warning_flag(&closing_paren, false);
}

void flush_to_end_of_arg_list() {
  static const a_token_set_array end_of_arg = [] {
    a_token_set_array set = {};
    set.member[tok_comma] = set.member[tok_rparen] = true;
    return set;
  }();
  while (!is_stop_token(curr_token, &end_of_arg) || curr_token == tok_comma) {
    if (is_opening_token(curr_token))
      flush_until_matching_token_full(false);
    else
      get_token();
  }
}

static a_token_kind partner_of(a_token_kind opening) {
  switch (opening) {
  case tok_lparen:
    return tok_rparen;
  case tok_lbracket:
    return tok_rbracket;
  case tok_lbrace:
    return tok_rbrace;
  default:
    return tok_gt;
  }
}

static bool is_closing_token(a_token_kind kind) {
  return kind == tok_rparen || kind == tok_rbracket || kind == tok_rbrace;
}

// Opening and closing tokens are counted; a closing token that doesn't belong
// is a mistake, and after a number of them, small but for braces, the search
// ends where it is.
void flush_until_matching_token_full(bool warn) {
  a_token_kind outermost = partner_of(curr_token);
  std::vector<a_token_kind> expected = {outermost};
  int mistakes_left = outermost == tok_rbrace ? 20 : 2;
  for (;;) {
    get_token();
    if (curr_token == tok_end_of_source ||
        (curr_token == tok_newline && in_preprocessing_directive))
      break;
    bool in_angle_brackets = expected.back() == tok_gt;
    if (in_angle_brackets && curr_token == tok_shift_right && expected.size() > 1 &&
        expected[expected.size() - 2] == tok_gt) {
      // It closes two lists of template arguments.
      expected.pop_back();
      curr_token = tok_gt;
    }
    if (is_opening_token(curr_token) || (in_angle_brackets && curr_token == tok_lt)) {
      expected.push_back(partner_of(curr_token));
    } else if (curr_token == expected.back()) {
      expected.pop_back();
      if (expected.empty()) {
        get_token();
        break;
      }
    } else if (is_closing_token(curr_token) && mistakes_left-- == 0) {
      break;
    }
  }
  if (warn && curr_token != tok_end_of_source)
    pos_remark(ec_end_of_flush, &pos_curr_token);
}

void flush_until_matching_token() {
  flush_until_matching_token_full(true);
}

// -- Generated text --------------------------------------------------------------------------

a_text_scan::a_text_scan(char* text, char* text_end, const a_source_position& position)
    : saved_loc(curr_char_loc), saved_text(curr_text_modif), saved_line_has_token(line_has_token),
      saved_list(hide_rescan_list()), saved_tests_needed(any_initial_get_token_tests_needed) {
  modif = {};
  modif.parent = curr_text_modif;
  modif.parent_is_valid = 1;
  modif.is_macro_expansion = 1;
  modif.stops_scan = 1;
  modif.text_start = text;
  modif.text_end = text_end;
  modif.position = position;
  curr_text_modif = &modif;
  curr_char_loc = text;
  any_initial_get_token_tests_needed = 0;
}

a_text_scan::~a_text_scan() {
  curr_char_loc = saved_loc.loc;
  curr_text_modif = saved_text;
  line_has_token = saved_line_has_token;
  restore_rescan_list(saved_list);
  any_initial_get_token_tests_needed |= saved_tests_needed;
}

void insert_string_into_token_stream(const char* text, size_t length, bool expand,
                                     const a_source_position* position) {
  std::string scanned(text, length);
  scanned += '\0';
  scanned += static_cast<char>(mtm_end_of_text);
  a_boolean saved_expand_macros = expand_macros;
  expand_macros = expand;
  a_token_cache tokens;
  clear_token_cache(&tokens, false);
  cache_curr_token(&tokens);
  {
    uint32_t mark = sequence_id_for_source_line_modifs;
    push_lexical_state_stack();
    a_text_scan scan(scanned.data(), scanned.data() + scanned.size() - 2, *position);
    while (get_token() != tok_end_of_source)
      cache_curr_token(&tokens);
    pop_lexical_state_stack();
    discard_text_modifs_since(mark);
  }
  expand_macros = saved_expand_macros;
  f_rescan_cached_tokens(&tokens, false);
}
