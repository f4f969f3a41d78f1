// Preprocessing directives: the frame of a directive and the simple ones, and
// the run that only preprocesses.

#include "preproc.h"

#include <cstring>
#include <string>

#include "cfe.h"
#include "error.h"
#include "lookup.h"
#include "macro_int.h"
#include "misra.h"
#include "mode_words.h"
#include "pp_output.h"
#include "pragma.h"
#include "preproc_int.h"
#include "source_file.h"

a_boolean some_error_in_curr_directive;
a_boolean no_token_separators_in_this_line_of_pp_output;
uint32_t next_seq_in_pp_output;

// -- The rest of a line ------------------------------------------------------------------

void skip_rest_of_directive() {
  fetch_pp_tokens = 1;
  expand_macros = 0;
  exp_header_name = exp_system_header_name = exp_digit_sequence = 0;
  while (curr_token != tok_newline && curr_token != tok_end_of_source)
    get_token();
}

// What stands behind a complete directive is only reported when nothing was
// wrong with the directive itself.
static void report_extra_text(an_error_severity severity) {
  if (curr_token != tok_newline && curr_token != tok_end_of_source && !some_error_in_curr_directive)
    pos_diagnostic(severity, ec_extra_text_in_pp_directive, &pos_curr_token);
}

void check_for_end_of_directive() {
  fetch_pp_tokens = 1;
  expand_macros = 0;
  if (curr_token != tok_newline)
    get_token();
  if (!pcc_preprocessing_mode)
    report_extra_text(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning);
  skip_rest_of_directive();
}

void end_directive_line() {
  report_extra_text(es_discretionary_error);
  skip_rest_of_directive();
}

// The text from the scanner's place to the end of the line, comments and all.
static std::string rest_of_line() {
  skip_white_space();
  std::string text;
  for (const char* p = curr_char_loc; *p != 0 || p[1] == lm_nul_character; ++p) {
    if (*p == 0)
      ++p;
    else
      text += *p;
  }
  return text;
}

// -- Directive names ---------------------------------------------------------------------

struct a_directive_name {
  const char* name;
  a_directive_kind kind;
};

static const a_directive_name directive_names[] = {
    {"if", dk_if},           {"ifdef", dk_ifdef},     {"ifndef", dk_ifndef},
    {"elif", dk_elif},       {"else", dk_else},       {"endif", dk_endif},
    {"include", dk_include}, {"define", dk_define},   {"undef", dk_undef},
    {"line", dk_line},       {"error", dk_error},     {"pragma", dk_pragma},
    {"warn", dk_warning},    {"warning", dk_warning}, {"include_next", dk_include_next}};

a_directive_kind classify_directive() {
  exp_digit_sequence = 1;
  get_token();
  exp_digit_sequence = 0;
  if (curr_token == tok_newline || curr_token == tok_end_of_source)
    return dk_null;
  if (curr_token == tok_digit_sequence)
    return dk_digit_sequence;
  if (curr_token == tok_identifier)
    for (const a_directive_name& row : directive_names)
      if (strlen(row.name) == len_of_curr_token &&
          memcmp(row.name, start_of_curr_token, len_of_curr_token) == 0)
        return row.kind;
  return dk_unknown;
}

// -- Simple directives -------------------------------------------------------------------

// Of the predefined macros the GNU modes keep but the operator of #if.
static bool may_be_undefined(const a_macro_def* def) {
  return !def->is_protected || (gnu_mode && def->builtin_kind != bmk_defined);
}

static void proc_undef() {
  scanning_macro_name = 1;
  get_token();
  scanning_macro_name = 0;
  if (curr_token != tok_identifier) {
    syntax_error(ec_exp_identifier);
    some_error_in_curr_directive = 1;
    return;
  }
  a_symbol_header* header = header_of_curr_identifier();
  if (header == va_args_header) {
    pos_error(ec_VA_ARGS_not_allowed, &pos_curr_token);
    some_error_in_curr_directive = 1;
    return;
  }
  if (check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_19_6, &pos_curr_token);
  a_symbol* symbol = find_macro_symbol(header);
  if (symbol != nullptr && may_be_undefined(macro_def_of(symbol))) {
    undefine_macro(symbol);
  } else if (symbol != nullptr) {
    pos_diagnostic(es_discretionary_error, ec_cannot_undef_predef_macro, &pos_curr_token);
    some_error_in_curr_directive = 1;
  }
  check_for_end_of_directive();
}

[[noreturn]] static void proc_error() {
  std::string text = rest_of_line();
  pos_st_catastrophe(ec_error_directive, &pos_curr_token, text.c_str());
}

static void proc_warning() {
  std::string text = rest_of_line();
  pos_st_warning(ec_warning_directive, &pos_curr_token, text.c_str());
  skip_rest_of_directive();
}

// Without a parser behind it, of the pragmas only those that change what is read
// act; `#pragma GCC system_header` is one of them.
static bool is_system_header_pragma(const a_pragma_kind_description* description) {
  if (description == nullptr || description->kind != pk_gcc)
    return false;
  get_token();
  return curr_token_is_identifier_string("system_header");
}

static bool acts_while_scanned(const a_pragma_kind_description* description) {
  return description != nullptr && description->binding == pragma_runs_while_scanned;
}

// The text of a pragma from its name, the current token, to the end of the line.
static std::string rest_of_pragma() {
  std::string text;
  for (; curr_token != tok_newline && curr_token != tok_end_of_source; get_token()) {
    if (text.empty() || kind_of_white_space_skipped != ws_none)
      text += ' ';
    text.append(start_of_curr_token, len_of_curr_token);
  }
  return text;
}

static void proc_pragma(const a_source_position& directive_position) {
  a_source_position name_position;
  a_pragma_kind_description* description = look_up_pragma_id(&name_position);
  // The line of a macro's arguments keeps nothing of its directives, so that a
  // pragma that passes goes out before it.
  if (is_inside_argument_list() && do_preprocessing_only && !acts_while_scanned(description)) {
    expand_macros = description != nullptr && (description->flags & pragma_expand_macros) != 0;
    gen_pp_output_for_pragma_in_arguments(rest_of_pragma());
    return;
  }
  if (!is_inside_argument_list())
    do_not_put_curr_line_in_pp_output = is_macro_stack_pragma(description);
  if (do_preprocessing_only && is_system_header_pragma(description)) {
    do_not_put_curr_line_in_pp_output = 1;
    mark_current_file_as_system_header(name_position);
    skip_rest_of_directive();
  } else {
    record_pragma(description, &directive_position, &name_position, false);
  }
}

static void unknown_directive() {
  if (check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_19_16, &pos_curr_token);
  else
    pos_diagnostic(es_discretionary_error, ec_bad_pp_directive_keyword, &pos_curr_token);
  skip_rest_of_directive();
}

// -- The frame ---------------------------------------------------------------------------

namespace {

// The scanner's modes in a directive; what they were comes back at its end.
struct a_directive_scan {
  a_directive_scan();
  ~a_directive_scan();
  a_directive_scan(const a_directive_scan&) = delete;
  a_directive_scan& operator=(const a_directive_scan&) = delete;
  a_boolean saved_fetch_pp_tokens;
  a_boolean saved_expand_macros;
  a_boolean saved_concatenation;
  a_boolean saved_in_pp_if_expression;
  a_saved_line_loc saved_delete_from;
};

} // namespace

a_directive_scan::a_directive_scan()
    : saved_fetch_pp_tokens(fetch_pp_tokens), saved_expand_macros(expand_macros),
      saved_concatenation(do_string_literal_concatenation),
      saved_in_pp_if_expression(in_pp_if_expression), saved_delete_from(delete_source_from_loc) {
  in_preprocessing_directive = 1;
  fetch_pp_tokens = 1;
  expand_macros = 0;
  do_string_literal_concatenation = 0;
  in_pp_if_expression = 0;
  delete_source_from_loc = nullptr;
  actual_include_was_suppressed = 0;
  some_error_in_curr_directive = 0;
  push_lexical_state_stack();
  add_stop_token(tok_newline);
}

a_directive_scan::~a_directive_scan() {
  remove_stop_token(tok_newline);
  pop_lexical_state_stack();
  in_preprocessing_directive = 0;
  fetch_pp_tokens = saved_fetch_pp_tokens;
  expand_macros = saved_expand_macros;
  do_string_literal_concatenation = saved_concatenation;
  in_pp_if_expression = saved_in_pp_if_expression;
  delete_source_from_loc = saved_delete_from.loc;
}

static bool is_conditional_directive(a_directive_kind kind) {
  return kind <= dk_endif;
}

static void act_on_directive(a_directive_kind kind, const a_source_position& position) {
  switch (kind) {
  case dk_if:
    proc_if(position);
    break;
  case dk_ifdef:
  case dk_ifndef:
    proc_ifdef(kind == dk_ifndef, position);
    break;
  case dk_elif:
    proc_elif();
    break;
  case dk_else:
    proc_else();
    break;
  case dk_endif:
    proc_endif();
    break;
  case dk_include:
  case dk_include_next:
    proc_include(kind == dk_include_next);
    break;
  case dk_define:
    proc_define();
    break;
  case dk_undef:
    proc_undef();
    break;
  case dk_line:
  case dk_digit_sequence:
    proc_line(kind == dk_digit_sequence);
    break;
  case dk_error:
    proc_error();
  case dk_pragma:
    proc_pragma(position);
    break;
  case dk_null:
    break;
  case dk_warning:
    proc_warning();
    break;
  case dk_unknown:
    unknown_directive();
    break;
  }
}

void pp_directive() {
  a_source_position position = pos_curr_token;
  // A comment may stand before the directive, so that the line's start didn't
  // show it. In the arguments of a macro the line is more than the directive.
  if (!is_inside_argument_list())
    do_not_put_curr_line_in_pp_output = 1;
  {
    a_directive_scan scan;
    a_directive_kind kind = classify_directive();
    if (!is_conditional_directive(kind))
      leave_include_guard();
    act_on_directive(kind, position);
    end_directive_line();
  }
  if (curr_token_pragmas != nullptr)
    process_immediate_pragmas();
}

// -- Preprocessing alone -----------------------------------------------------------------

void process_macro_preincludes() {
  a_boolean saved_output = generate_pp_output;
  generate_pp_output = 0;
  while (curr_ise != nullptr && curr_ise->stop_at_end_of_file) {
    while (get_token() != tok_end_of_source)
      continue;
    pop_input_stack();
  }
  generate_pp_output = saved_output;
}

void cpp_driver() {
  expand_macros = 1;
  fetch_pp_tokens = 1;
  process_macro_preincludes();
  while (get_token() != tok_end_of_source)
    continue;
  flush_pp_output_of_curr_line();
}

// -- Initialisation ----------------------------------------------------------------------

void preproc_one_time_init() {
  // No variable of this module is kept for each unit.
}

void preproc_trans_unit_init() {
  fetch_pp_tokens = 0;
  expand_macros = 1;
  do_string_literal_concatenation = 1;
  in_pp_if_expression = 0;
  next_seq_in_pp_output = 1;
  some_error_in_curr_directive = 0;
  preproc_if_trans_unit_init();
}

void preproc_init() {
  no_token_separators_in_this_line_of_pp_output = no_token_separators_in_pp_output;
}
