// The pragmas that are no target's: file guards, #pragma STDC, saved macros, and
// names outside of the unit.

#include <cstring>
#include <string>

#include "error.h"
#include "il.h"
#include "il_types.h"
#include "lexical_int.h"
#include "macro.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pch.h"
#include "pragma_int.h"
#include "source_file.h"
#include "symbol_tbl.h"
#include "types.h"

void once_pragma(a_pending_pragma*, a_symbol*, a_statement*) {
  set_ifg_state(igs_pragma_once);
  get_token();
}

// No precompiled header is made, so there's nothing to stop.
void hdrstop_or_no_pch_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  if (pragma->description->kind == pk_no_pch)
    cannot_create_pch_file = 1;
  get_token();
  skip_operands();
}

// -- #pragma STDC ----------------------------------------------------------------------------

namespace {
struct a_stdc_pragma_row {
  const char* name;
  uint8_t number;
  int32_t* state;
};
struct a_stdc_state_row {
  const char* word;
  int32_t value;
};
} // namespace

static const a_stdc_pragma_row stdc_pragma_rows[] = {
    {"FP_CONTRACT", 1, &curr_fp_contract_state},
    {"FENV_ACCESS", 2, &curr_fenv_access_state},
    {"CX_LIMITED_RANGE", 3, &curr_cx_limited_range_state}};
static const a_stdc_state_row stdc_state_rows[] = {{"OFF", 1}, {"ON", 2}, {"DEFAULT", 3}};

// The pragma that the current token names; null, after a message, for none.
static const a_stdc_pragma_row* scan_stdc_pragma_name() {
  for (const a_stdc_pragma_row& row : stdc_pragma_rows)
    if (in_C_mode() && std_version >= 199901 && curr_token_is_identifier_string(row.name)) {
      get_token();
      return &row;
    }
  pos_diagnostic(strict_ansi_error_severity, ec_unrecognized_stdc_pragma, &pos_curr_token);
  return nullptr;
}

// The value of the word that is the current token; 0, after a message, for none.
static int32_t scan_stdc_pragma_state() {
  for (const a_stdc_state_row& row : stdc_state_rows)
    if (curr_token_is_identifier_string(row.word)) {
      get_token();
      return row.value;
    }
  pos_diagnostic(strict_ansi_error_severity, ec_bad_stdc_pragma_arg, &pos_curr_token);
  return 0;
}

static void obey_stdc_pragma(a_pending_pragma* pragma) {
  begin_rescan_of_pragma_tokens(pragma);
  const a_stdc_pragma_row* row = scan_stdc_pragma_name();
  int32_t value = row != nullptr ? scan_stdc_pragma_state() : 0;
  wrapup_rescan_of_pragma_tokens(value == 0);
  if (value == 0)
    return;
  // Only now: the scope of the rescanning has kept the states as they were.
  *row->state = value;
  create_il_entry_for_pragma(pragma, nullptr, nullptr);
  if (pragma->il_entry != nullptr) {
    pragma->il_entry->stdc_name = row->number;
    pragma->il_entry->stdc_state = static_cast<uint8_t>(value);
  }
}

// Takes the first pragma of a kind that waits at the current token.
static a_pending_pragma* take_curr_token_pragma(a_pragma_kind_tag kind) {
  for (a_pending_pragma** link = &curr_token_pragmas; *link != nullptr; link = &(*link)->next) {
    a_pending_pragma* pragma = *link;
    if (pragma->description->kind == kind) {
      *link = pragma->next;
      pragma->next = nullptr;
      return pragma;
    }
  }
  return nullptr;
}

void check_for_stdc_pragmas() {
  while (a_pending_pragma* pragma = take_curr_token_pragma(pk_stdc)) {
    obey_stdc_pragma(pragma);
    free_pending_pragma(pragma);
  }
  update_initial_get_token_tests_needed();
}

bool take_not_reached_pragma() {
  a_pending_pragma* pragma = take_curr_token_pragma(pk_notreached);
  if (pragma == nullptr)
    pragma = extract_specific_pragmas(pk_notreached);
  if (pragma == nullptr)
    return false;
  free_pending_pragma_list(pragma);
  update_initial_get_token_tests_needed();
  return true;
}

// Runs for those that stood where they may not.
void stdc_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  pos_diagnostic(strict_ansi_error_severity, ec_stdc_pragma_not_allowed_here,
                 &pragma->directive_position);
}

// -- #pragma push_macro and pop_macro ----------------------------------------------------------

// `("name")`; an empty name after a fault.
static std::string scan_macro_name_operand() {
  if (get_token() != tok_lparen) {
    pos_warning(ec_exp_lparen, &pos_curr_token);
    return std::string();
  }
  if (get_token() != tok_string) {
    pos_warning(ec_exp_string_literal, &pos_curr_token);
    return std::string();
  }
  std::string name(start_of_curr_token + 1, len_of_curr_token - 2);
  if (get_token() != tok_rparen) {
    pos_warning(ec_exp_rparen, &pos_curr_token);
    return std::string();
  }
  get_token();
  return name;
}

void push_macro_pragma(a_pending_pragma*, a_symbol*, a_statement*) {
  std::string name = scan_macro_name_operand();
  if (!name.empty())
    push_macro_definition(name.data(), name.size());
  else
    skip_operands();
}

void pop_macro_pragma(a_pending_pragma*, a_symbol*, a_statement*) {
  std::string name = scan_macro_name_operand();
  if (!name.empty())
    pop_macro_definition(name.data(), name.size());
  else
    skip_operands();
}

// -- #pragma redefine_extname ------------------------------------------------------------------

namespace {

// A name outside of the unit that declarations of another name stand for.
struct a_redefined_name {
  a_redefined_name* next;
  const char* old_name;
  const char* new_name;
  a_source_position position;
};

} // namespace

static a_redefined_name* first_redefined_name;
static a_redefined_name* last_redefined_name;

const char* redefined_external_name(const char* name) {
  for (const a_redefined_name* pair = first_redefined_name; pair != nullptr; pair = pair->next)
    if (strcmp(pair->old_name, name) == 0)
      return pair->new_name;
  return nullptr;
}

static void add_redefined_name(const char* old_name, const char* new_name,
                               const a_source_position* position) {
  a_redefined_name* pair =
      static_cast<a_redefined_name*>(alloc_in_region(front_end_region, sizeof(a_redefined_name)));
  *pair = {nullptr, old_name, new_name, *position};
  (last_redefined_name != nullptr ? last_redefined_name->next : first_redefined_name) = pair;
  last_redefined_name = pair;
}

// The identifier at the current token; null after a message for none.
static const char* scan_name_operand() {
  if (curr_token != tok_identifier) {
    pos_error(ec_exp_identifier, &pos_curr_token);
    return nullptr;
  }
  const char* name = lasting_text(locator_for_curr_id.header->identifier);
  get_token();
  return name;
}

void redefine_extname_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  begin_rescan_of_pragma_tokens(pragma);
  const char* old_name = scan_name_operand();
  const char* new_name = old_name != nullptr ? scan_name_operand() : nullptr;
  wrapup_rescan_of_pragma_tokens(new_name == nullptr);
  if (new_name == nullptr)
    return;
  add_redefined_name(old_name, new_name, &pragma->directive_position);
  pragma->argument_text =
      lasting_text(std::string("redefine_extname ") + old_name + " " + new_name);
  create_il_entry_for_pragma(pragma, nullptr, nullptr);
}

// -- #pragma __printf_args and __scanf_args ------------------------------------------------------

void record_arg_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  begin_rescan_of_pragma_tokens(pragma);
  wrapup_rescan_of_pragma_tokens(false);
  if (!is_routine(symbol) || !is_function_type(symbol->variant.routine->type))
    return;
  a_routine_type_supplement* supplement =
      skip_typerefs(symbol->variant.routine->type)->variant.routine.routine_supplement;
  if (pragma->description->kind == pk_printf_args)
    supplement->is_printf_like = true;
  else
    supplement->is_scanf_like = true;
}

void standard_pragmas_init() {
  first_redefined_name = last_redefined_name = nullptr;
  gcc_pragma_init();
}
