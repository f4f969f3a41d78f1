// Pragmas: recognising them, keeping those that wait, and running their actions.

#include "pragma.h"

#include <cstring>
#include <iterator>
#include <string>

#include "error.h"
#include "function_pointers.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical_int.h"
#include "macro.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "nrg.h"
#include "pragma_int.h"
#include "scope_stk.h"
#include "source_file.h"

a_pragma_kind_description* pragma_kind_descriptions;
a_pragma_kind_description* pragma_description_for_pragma_kind[pk_last];

static a_pending_pragma* avail_pending_pragmas;

// -- Kinds ---------------------------------------------------------------------------

struct a_pragma_row {
  a_pragma_kind_description description;
  const char* name;
  bool (*exists)(); // whether this compilation has it
};

// What names its subject in C stands in front of it in C++.
#define SYMBOL_PRAGMA(kind, name, flags, severity)                                                 \
  PRAGMA_KIND(kind, name, pragma_runs_at_end_of_scope, fpi_none, flags, severity, in_C_mode())     \
  PRAGMA_KIND(kind, name, pragma_binds_to_construct, fpi_process_cpp_pragma, 0x861, es_error,      \
              in_cplusplus_mode())
#define PRAGMA_KIND(kind, name, binding, action, flags, severity, condition)                       \
  {{nullptr, kind, binding, action, flags, severity}, name, [] { return bool(condition); }},
static const a_pragma_row pragma_rows[] = {
#include "pragma_kinds.def"
};
#undef PRAGMA_KIND
#undef SYMBOL_PRAGMA

const char* pragma_name(a_pragma_kind_tag kind) {
  for (const a_pragma_row& row : pragma_rows)
    if (row.description.kind == kind)
      return row.name;
  return "none";
}

static void register_pragma_kind(const a_pragma_kind_description& model) {
  a_pragma_kind_description* description = static_cast<a_pragma_kind_description*>(
      alloc_in_region(front_end_region, sizeof(a_pragma_kind_description)));
  *description = model;
  description->next = pragma_kind_descriptions;
  pragma_kind_descriptions = description;
  pragma_description_for_pragma_kind[model.kind] = description;
}

// Comments tell some kinds, and some are made for the file alone.
static bool has_directive(const a_pragma_kind_description* description) {
  return (description->flags & pragma_is_comment) == 0 &&
         (description->kind < pk_lpm_info || description->kind > pk_fox_status);
}

a_pragma_kind_description* look_up_pragma_id(a_source_position* position) {
  a_boolean saved_expand_macros = expand_macros;
  expand_macros = 0;
  get_token();
  expand_macros = saved_expand_macros;
  *position = pos_curr_token;
  if (curr_token != tok_identifier)
    return nullptr;
  if (variadic_macros_allowed && curr_token_is_identifier_string("__VA_ARGS__"))
    pos_error(ec_VA_ARGS_not_allowed, &pos_curr_token);
  a_pragma_kind_description* description = pragma_kind_descriptions;
  while (description != nullptr &&
         (!has_directive(description) ||
          !curr_token_is_identifier_string(pragma_name(description->kind))))
    description = description->next;
  return description;
}

// -- Records -----------------------------------------------------------------------------

a_pending_pragma* alloc_pending_pragma(a_pragma_kind_description* description) {
  a_pending_pragma* pragma = avail_pending_pragmas;
  if (pragma != nullptr)
    avail_pending_pragmas = pragma->next;
  else
    pragma =
        static_cast<a_pending_pragma*>(alloc_in_region(front_end_region, sizeof(a_pending_pragma)));
  *pragma = {};
  pragma->description = description;
  pragma->has_tokens = 1;
  return pragma;
}

void free_pending_pragma(a_pending_pragma* pragma) {
  if (pragma->has_tokens)
    discard_token_cache(&pragma->tokens);
  pragma->next = avail_pending_pragmas;
  avail_pending_pragmas = pragma;
}

void free_pending_pragma_list(a_pending_pragma* pragmas) {
  while (pragmas != nullptr) {
    a_pending_pragma* next = pragmas->next;
    free_pending_pragma(pragmas);
    pragmas = next;
  }
}

a_pending_pragma* make_copy_of_pragma_list(const a_pending_pragma* pragmas) {
  a_pending_pragma* first = nullptr;
  a_pending_pragma** link = &first;
  for (; pragmas != nullptr; pragmas = pragmas->next) {
    a_pending_pragma* copy = alloc_pending_pragma(pragmas->description);
    *copy = *pragmas;
    copy->next = nullptr;
    copy->has_tokens = 0;
    copy->immediate_done = 0;
    *link = copy;
    link = &copy->next;
  }
  return first;
}

// -- Reading a pragma's operands --------------------------------------------------------------

static bool at_end_of_operands() {
  return curr_token == tok_newline || curr_token == tok_end_of_source;
}

void skip_operands() {
  while (!at_end_of_operands())
    get_token();
}

// The text of a run without a parser is compiled later, without the macros.
static void pass_to_text_output(const a_pragma_kind_description* description) {
  a_boolean saved_expand_macros = expand_macros;
  expand_macros = description != nullptr && (description->flags & pragma_expand_macros) != 0;
  skip_operands();
  expand_macros = saved_expand_macros;
}

const char* lasting_text(const std::string& text) {
  return copy_string_of_length_to_region(file_scope_region_number, text.data(), text.size());
}

// Behind the name: the rest of the directive as text.
static void collect_raw_operands(a_pending_pragma* pragma) {
  a_boolean saved_expand_macros = expand_macros;
  expand_macros = (pragma->description->flags & pragma_expand_macros) != 0;
  std::string text;
  for (get_token(); !at_end_of_operands(); get_token()) {
    if (kind_of_white_space_skipped != ws_none && !text.empty())
      text += ' ';
    text.append(start_of_curr_token, len_of_curr_token);
  }
  expand_macros = saved_expand_macros;
  pragma->argument_text = lasting_text(text);
}

// Behind the name: the rest of the directive as tokens.
static void collect_operand_tokens(a_pending_pragma* pragma) {
  uint16_t flags = pragma->description->flags;
  a_boolean saved_fetch_pp_tokens = fetch_pp_tokens;
  a_boolean saved_expand_macros = expand_macros;
  a_boolean saved_concatenation = do_string_literal_concatenation;
  // The pragmas before this one wait for the next token, not for its operands.
  a_pending_pragma* saved_pragmas = curr_token_pragmas;
  curr_token_pragmas = nullptr;
  fetch_pp_tokens = 0;
  expand_macros = (flags & pragma_expand_macros) != 0;
  recognize_keywords_in_pragma = (flags & pragma_recognize_keywords) != 0;
  do_string_literal_concatenation = recognize_keywords_in_pragma;
  scanning_pragma_tokens = 1;
  exp_header_name = (flags & pragma_header_name_operand) != 0;
  std::string text;
  for (get_token(); !at_end_of_operands(); get_token()) {
    if (kind_of_white_space_skipped != ws_none && !text.empty())
      text += ' ';
    if (start_of_curr_token != nullptr)
      text.append(start_of_curr_token, len_of_curr_token);
    cache_curr_token(&pragma->tokens);
  }
  terminate_token_cache(&pragma->tokens);
  if ((flags & pragma_keep_text) != 0)
    pragma->argument_text = lasting_text(text);
  exp_header_name = 0;
  scanning_pragma_tokens = 0;
  recognize_keywords_in_pragma = 0;
  do_string_literal_concatenation = saved_concatenation;
  expand_macros = saved_expand_macros;
  fetch_pp_tokens = saved_fetch_pp_tokens;
  curr_token_pragmas = saved_pragmas;
}

// -- Running --------------------------------------------------------------------------

void run_pragma_action(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement) {
  uint8_t index = pragma->description->action;
  if (index != fpi_none)
    reinterpret_cast<a_pragma_action>(function_pointers[index])(pragma, symbol, statement);
}

static void append_to_curr_token_pragmas(a_pending_pragma* pragma) {
  a_pending_pragma** link = &curr_token_pragmas;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = pragma;
  any_initial_get_token_tests_needed = 1;
}

a_pending_pragma* add_curr_token_pseudo_pragma(a_pragma_kind_tag kind,
                                               const a_source_position* position) {
  a_pending_pragma* pragma = alloc_pending_pragma(pragma_description_for_pragma_kind[kind]);
  pragma->directive_position = pragma->name_position = *position;
  append_to_curr_token_pragmas(pragma);
  return pragma;
}

void record_pragma(a_pragma_kind_description* description,
                   const a_source_position* directive_position,
                   const a_source_position* name_position, bool from_operator) {
  bool is_scanned_kind =
      description != nullptr && description->binding == pragma_runs_while_scanned;
  if (do_preprocessing_only && !is_scanned_kind) {
    pass_to_text_output(description);
    return;
  }
  if (description == nullptr) {
    pos_warning(ec_unrecognized_pragma, name_position);
    skip_operands();
    return;
  }
  a_pending_pragma* pragma = alloc_pending_pragma(description);
  pragma->directive_position = *directive_position;
  pragma->name_position = *name_position;
  pragma->from_operator = from_operator;
  bool makes_text = (description->flags & pragma_raw_tokens) != 0;
  if (!makes_text)
    collect_operand_tokens(pragma);
  else if (!is_scanned_kind)
    collect_raw_operands(pragma);
  if (!is_scanned_kind) {
    append_to_curr_token_pragmas(pragma);
    return;
  }
  run_pragma_action(pragma, nullptr, nullptr);
  if (!do_preprocessing_only && (description->flags & pragma_add_to_il))
    add_pragma_to_il(pragma, iek_none, nullptr, true);
  free_pending_pragma(pragma);
}

// Takes the pragmas whose action has run out of a list: they may not come back
// with the tokens of a cache, and a long run of directives keeps it short.
static a_pending_pragma* drop_finished_pragmas(a_pending_pragma* pragmas) {
  a_pending_pragma** link = &pragmas;
  while (a_pending_pragma* pragma = *link) {
    if (pragma->immediate_done) {
      *link = pragma->next;
      free_pending_pragma(pragma);
    } else {
      link = &pragma->next;
    }
  }
  return pragmas;
}

void process_immediate_pragmas() {
  a_pending_pragma* pragmas = curr_token_pragmas;
  curr_token_pragmas = nullptr;
  // The directive may stand in the arguments of a macro.
  a_boolean saved_fetch_pp_tokens = fetch_pp_tokens;
  fetch_pp_tokens = 0;
  for (a_pending_pragma* pragma = pragmas; pragma != nullptr; pragma = pragma->next) {
    if (pragma->description->binding != pragma_runs_at_end_of_directive || pragma->immediate_done)
      continue;
    pragma->immediate_done = 1;
    add_pragma_to_il_if_due(pragma, iek_none, nullptr);
    run_pragma_action(pragma, nullptr, nullptr);
  }
  fetch_pp_tokens = saved_fetch_pp_tokens;
  curr_token_pragmas = drop_finished_pragmas(pragmas);
  update_initial_get_token_tests_needed();
}

static void report_misplaced_pragma(const a_pending_pragma* pragma) {
  const a_pragma_kind_description* description = pragma->description;
  if (description->misplaced_severity == es_suppressed)
    return;
  bool before_declaration = (description->flags & pragma_may_precede_declaration) != 0;
  bool before_statement = (description->flags & pragma_may_precede_statement) != 0;
  an_error_code code = ec_pragma_must_precede_statement;
  if (before_declaration)
    code =
        before_statement ? ec_pragma_must_precede_decl_or_stmt : ec_pragma_must_precede_declaration;
  pos_diagnostic(description->misplaced_severity, code, &pragma->name_position);
}

static void queue_on_innermost_scope(a_pending_pragma* pragma) {
  pragma->next = nullptr;
  a_pending_pragma** link = &scope_stack[depth_scope_stack].pending_pragmas;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = pragma;
}

void process_curr_token_pragmas() {
  a_pending_pragma* pragma = curr_token_pragmas;
  curr_token_pragmas = nullptr;
  while (pragma != nullptr) {
    a_pending_pragma* next = pragma->next;
    if (pragma->description->binding == pragma_runs_at_end_of_scope) {
      queue_on_innermost_scope(pragma);
    } else {
      if (pragma->description->binding == pragma_binds_to_construct) {
        report_misplaced_pragma(pragma);
      } else {
        add_pragma_to_il_if_due(pragma, iek_none, nullptr);
        run_pragma_action(pragma, nullptr, nullptr);
      }
      free_pending_pragma(pragma);
    }
    pragma = next;
  }
}

void process_pragmas_at_end_of_source() {
  process_curr_token_pragmas();
}

// -- Rescanning a pragma's tokens -------------------------------------------------------

void begin_rescan_of_pragma_tokens(a_pending_pragma* pragma) {
  push_lexical_state_stack();
  caching_tokens = 0;
  push_stop_token_stack();
  pos_of_macro_invocation = null_source_position;
  if ((pragma->description->flags & pragma_raw_tokens) != 0)
    fetch_pp_tokens = 1;
  if (pragma->tokens.first != nullptr)
    rescan_copy_of_cache(&pragma->tokens);
  push_scope(sk_pragma_rescan, -1, nullptr, nullptr);
}

void wrapup_rescan_of_pragma_tokens(bool had_error) {
  if (!had_error && curr_token != tok_end_of_source)
    pos_error(ec_extra_text_in_pp_directive, &pos_curr_token);
  while (curr_token != tok_end_of_source)
    get_token();
  get_token();
  fetch_pp_tokens = 0;
  pop_stop_token_stack();
  pop_lexical_state_stack();
  pop_scope();
}

// -- Initialisation ------------------------------------------------------------------

void pragma_one_time_init() {
  // No variable of this module is kept for each unit.
}

void pragma_init() {
  avail_pending_pragmas = nullptr;
  pragma_kind_descriptions = nullptr;
  for (a_pragma_kind_description*& description : pragma_description_for_pragma_kind)
    description = nullptr;
  for (const a_pragma_row& row : pragma_rows)
    if (row.exists())
      register_pragma_kind(row.description);
  standard_pragmas_init();
}

void pragma_trans_unit_init() {
  always_inline_funcs = 0;
  clear_port_references();
}
