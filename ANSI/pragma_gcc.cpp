// #pragma GCC: system headers, and options for the functions that follow.

#include "error.h"
#include "lexical_int.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma_int.h"
#include "source_file.h"
#include "source_line.h"

namespace {

// The part of a pragma's record that tells what it was.
enum a_gcc_pragma_kind : uint16_t { gpk_none = 0, gpk_system_header = 1, gpk_options = 2 };

// Options that were put aside; this processor has none that a function could
// change, so that a record is no more than a place to go back to.
struct a_gcc_options_entry {
  a_gcc_options_entry* next;
};

a_gcc_options_entry* gcc_pragma_options_stack;
a_gcc_options_entry* avail_gcc_options_entries;

void push_options() {
  a_gcc_options_entry* entry = avail_gcc_options_entries;
  if (entry != nullptr)
    avail_gcc_options_entries = entry->next;
  else
    entry = static_cast<a_gcc_options_entry*>(
        alloc_in_region(front_end_region, sizeof(a_gcc_options_entry)));
  entry->next = gcc_pragma_options_stack;
  gcc_pragma_options_stack = entry;
}

void drop_options() {
  a_gcc_options_entry* entry = gcc_pragma_options_stack;
  gcc_pragma_options_stack = entry->next;
  entry->next = avail_gcc_options_entries;
  avail_gcc_options_entries = entry;
}

void pop_options(const a_source_position* position) {
  if (gcc_pragma_options_stack == nullptr)
    pos_warning(ec_gcc_pragma_nothing_to_pop, position);
  else
    drop_options();
}

void reset_options() {
  while (gcc_pragma_options_stack != nullptr)
    drop_options();
}

bool scan_target_string() {
  if (curr_token != tok_string) {
    pos_error(ec_exp_string_literal, &pos_curr_token);
    return false;
  }
  if (const_for_curr_token.string_char_kind != sck_ordinary) {
    pos_error(ec_target_string_must_be_narrow, &pos_curr_token);
    return false;
  }
  get_token();
  return true;
}

// Behind the word: strings with commas between them, perhaps in one pair of
// parentheses. False after a message.
bool scan_target_strings() {
  bool is_open = loop_token(tok_lparen);
  do {
    if (curr_token == tok_lparen || curr_token == tok_rparen) {
      pos_error(ec_target_unmatched_parens, &pos_curr_token);
      return false;
    }
    if (!scan_target_string())
      return false;
  } while (loop_token(tok_comma));
  if (is_open ? loop_token(tok_rparen) : curr_token != tok_rparen)
    return true;
  bool is_end = curr_token == tok_rparen || curr_token == tok_end_of_source;
  pos_error(is_end ? ec_target_unmatched_parens : ec_exp_string_literal, &pos_curr_token);
  return false;
}

bool scan_target_operands(const a_source_position* position) {
  if (depth_innermost_function_scope >= 0) {
    pos_error(ec_pragma_inside_function, position);
    return false;
  }
  if (!scan_target_strings())
    return false;
  if (gcc_pragma_options_stack == nullptr)
    push_options();
  return true;
}

// The forms with options that newer compilers know; false for none of them.
bool scan_options_word(const a_source_position* position) {
  if (gnu_version < 40400)
    return false;
  if (curr_token_is_identifier_string("push_options"))
    push_options();
  else if (curr_token_is_identifier_string("pop_options"))
    pop_options(position);
  else if (curr_token_is_identifier_string("reset_options"))
    reset_options();
  else
    return false;
  get_token();
  return true;
}

// What the pragma was; gpk_none after a message.
a_gcc_pragma_kind scan_gcc_pragma(const a_pending_pragma* pragma) {
  if (curr_token_is_identifier_string("system_header")) {
    do_not_put_curr_line_in_pp_output = 1;
    mark_current_file_as_system_header(pragma->name_position);
    get_token();
    return gpk_system_header;
  }
  if (curr_token_is_identifier_string("target")) {
    get_token();
    return scan_target_operands(&pragma->directive_position) ? gpk_options : gpk_none;
  }
  if (scan_options_word(&pragma->directive_position))
    return gpk_options;
  pos_warning(ec_unrecognized_gcc_pragma, &pragma->name_position);
  return gpk_none;
}

} // namespace

void gcc_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  begin_rescan_of_pragma_tokens(pragma);
  a_gcc_pragma_kind kind = scan_gcc_pragma(pragma);
  pragma->extra = kind;
  if (kind != gpk_none && curr_token != tok_end_of_source)
    pos_warning(ec_extra_text_in_pp_directive, &error_position);
  wrapup_rescan_of_pragma_tokens(true);
  create_il_entry_for_pragma(pragma, nullptr, nullptr);
}

void gcc_pragma_init() {
  gcc_pragma_options_stack = nullptr;
  avail_gcc_options_entries = nullptr;
}
