// Conditional directives and the skipping of groups (C99 6.10.1).

#include <cstring>
#include <vector>

#include "error.h"
#include "macro_int.h"
#include "misra.h"
#include "mode_words.h"
#include "preproc_int.h"
#include "source_file.h"
#include "symbol_ref.h"

int pp_if_stack_depth = -1;
int base_pp_if_stack_depth = -1;

static std::vector<a_pp_if_stack_entry> pp_if_stack;

static void push_pp_if(const a_source_position& position) {
  ++pp_if_stack_depth;
  pp_if_stack.push_back({position, false});
}

static void pop_pp_if() {
  --pp_if_stack_depth;
  pp_if_stack.pop_back();
}

bool conditionals_may_span_files() {
  return C_dialect == cd_k_and_r || check_misra_c_2004;
}

void verify_that_all_pp_ifs_were_closed() {
  while (pp_if_stack_depth > base_pp_if_stack_depth) {
    pos_error(ec_missing_endif, &pp_if_stack.back().position);
    pop_pp_if();
  }
}

// -- Include guards -------------------------------------------------------------------

// Whether the innermost conditional lies inside of another one of the file, so
// that it says nothing about the file's guard.
static bool is_nested_in_file() {
  return pp_if_stack_depth > base_pp_if_stack_depth + 1;
}

void leave_include_guard() {
  an_include_guard_state state = get_ifg_state();
  if (state == igs_start || state == igs_closed)
    set_ifg_state(igs_unguarded);
}

// #else or #elif: the guard's text isn't the whole file.
static void guard_has_alternative() {
  if (!is_nested_in_file() && get_ifg_state() != igs_pragma_once)
    set_ifg_state(igs_unguarded);
}

static void end_guard() {
  an_include_guard_state state = get_ifg_state();
  if (is_nested_in_file() || state == igs_pragma_once)
    return;
  if (state == igs_inside) {
    set_ifg_state(igs_closed);
    // What stood inside the guard doesn't count as a token of the file.
    any_tokens_fetched_from_curr_input_file = 0;
  } else {
    set_ifg_state(igs_unguarded);
  }
}

// A directive that tests one macro, at the start of a file, may begin its guard.
static void begin_guard(const char* name, size_t length, bool tests_not_defined) {
  if (get_ifg_state() == igs_start)
    record_include_guard(name, length, tests_not_defined);
  else
    leave_include_guard();
}

static const char* skip_blanks(const char* p) {
  while (*p == ' ' || *p == '\t')
    ++p;
  return p;
}

static const char* skip_name(const char* p) {
  while (is_id_char[static_cast<unsigned char>(*p)])
    ++p;
  return p;
}

// Whether the text of an #if is `defined(x)`, `defined x` or the opposite, with
// nothing behind.
static bool is_guard_condition(const char* p, const char** name, size_t* length,
                               bool* tests_not_defined) {
  p = skip_blanks(p);
  *tests_not_defined = *p == '!';
  if (*p == '!')
    p = skip_blanks(p + 1);
  if (strncmp(p, "defined", 7) != 0 || is_id_char[static_cast<unsigned char>(p[7])])
    return false;
  p = skip_blanks(p + 7);
  bool has_paren = *p == '(';
  if (has_paren)
    p = skip_blanks(p + 1);
  *name = p;
  p = skip_name(p);
  *length = static_cast<size_t>(p - *name);
  p = skip_blanks(p);
  if (has_paren) {
    if (*p != ')')
      return false;
    p = skip_blanks(p + 1);
  }
  return is_valid_identifier(*name, *length) && p[0] == 0 && p[1] == lm_end_of_line;
}

static void check_for_guard_condition() {
  const char* name;
  size_t length;
  bool tests_not_defined;
  if (is_guard_condition(curr_char_loc, &name, &length, &tests_not_defined))
    begin_guard(name, length, tests_not_defined);
  else
    leave_include_guard();
}

// -- Conditions -------------------------------------------------------------------------

static bool eval_pp_condition() {
  a_boolean saved_skip = currently_in_pp_if_skip;
  currently_in_pp_if_skip = 0;
  in_pp_if_expression = 1;
  expand_macros = 1;
  fetch_pp_tokens = 0;
  get_token();
  a_constant value;
  bool is_good = scan_pp_expression(&value);
  in_pp_if_expression = 0;
  expand_macros = 0;
  fetch_pp_tokens = 1;
  currently_in_pp_if_skip = saved_skip;
  if (!is_good || some_error_in_curr_directive) {
    some_error_in_curr_directive = 1;
    return false;
  }
  return value.value.int_value != 0;
}

// A conditional is to end in the file in which it began.
static void check_that_if_is_in_this_file() {
  if (!check_misra_c_2004)
    return;
  a_source_file* file;
  conv_seq_to_physical_file_and_line(pp_if_stack.back().position.seq, &file, nullptr, nullptr);
  if (file != curr_ise->source_file)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_19_17, &pos_curr_token);
}

// -- Skipping -------------------------------------------------------------------------------

enum a_skip_result : uint8_t { sr_go_on, sr_group_found, sr_end };

static a_skip_result else_already_seen(an_error_severity severity) {
  pos_diagnostic(severity, ec_pp_else_already_appeared, &pos_curr_token);
  return sr_go_on;
}

static an_error_severity severity_of_repeated_else() {
  return C_dialect == cd_k_and_r ? es_warning : es_discretionary_error;
}

static a_skip_result skipped_elif(bool may_take_else) {
  check_that_if_is_in_this_file();
  guard_has_alternative();
  if (pp_if_stack.back().else_seen)
    return else_already_seen(es_error);
  if (!may_take_else)
    return sr_go_on;
  bool truth = eval_pp_condition();
  end_directive_line();
  return truth ? sr_group_found : sr_go_on;
}

static a_skip_result skipped_else(bool may_take_else) {
  check_that_if_is_in_this_file();
  guard_has_alternative();
  if (pp_if_stack.back().else_seen)
    return else_already_seen(severity_of_repeated_else());
  pp_if_stack.back().else_seen = true;
  if (!may_take_else)
    return sr_go_on;
  check_for_end_of_directive();
  return sr_group_found;
}

// A directive in a skipped group, `outer_depth` being that of the conditional
// the group belongs to.
static a_skip_result proc_skipped_directive(int outer_depth, bool may_take_else) {
  a_source_position position = pos_curr_token;
  bool is_outer = pp_if_stack_depth == outer_depth;
  some_error_in_curr_directive = 0;
  switch (classify_directive()) {
  case dk_if:
  case dk_ifdef:
  case dk_ifndef:
    push_pp_if(position);
    return sr_go_on;
  case dk_elif:
    return is_outer ? skipped_elif(may_take_else) : sr_go_on;
  case dk_else:
    return is_outer ? skipped_else(may_take_else) : sr_go_on;
  case dk_endif:
    if (is_outer) {
      check_that_if_is_in_this_file();
      end_guard();
      check_for_end_of_directive();
    }
    pop_pp_if();
    return is_outer ? sr_end : sr_go_on;
  default:
    return sr_go_on;
  }
}

// Passes the lines up to the group that counts, if there is one, or to behind
// the #endif. The line of the directive itself has been read.
static void skip_pp_group(bool may_take_else) {
  int outer_depth = pp_if_stack_depth;
  a_line_end_action saved_line_end_action = line_end_action;
  if (line_end_action == lea_read_next && !conditionals_may_span_files())
    line_end_action = lea_read_in_file;
  currently_in_pp_if_skip = 1;
  fetch_pp_tokens = 1;
  expand_macros = 0;
  for (;;) {
    in_preprocessing_directive = 0;
    do
      get_token();
    while (curr_token != tok_sharp && curr_token != tok_end_of_source);
    in_preprocessing_directive = 1;
    if (curr_token == tok_end_of_source)
      break;
    a_skip_result result = proc_skipped_directive(outer_depth, may_take_else);
    skip_rest_of_directive();
    if (result != sr_go_on)
      break;
  }
  currently_in_pp_if_skip = 0;
  line_end_action = saved_line_end_action;
}

// -- Directives ----------------------------------------------------------------------------------

void proc_if(const a_source_position& position) {
  check_for_guard_condition();
  bool truth = eval_pp_condition();
  end_directive_line();
  push_pp_if(position);
  if (!truth)
    skip_pp_group(true);
}

// The operand of #ifdef and #ifndef; false after a fault.
static bool scan_tested_macro(bool is_ifndef, bool* truth) {
  get_token();
  if (curr_token != tok_identifier) {
    bool begins_with_digit = curr_token == tok_pp_number;
    if (begins_with_digit && !(strict_ansi_mode && strict_ansi_error_severity >= es_error))
      pos_warning(ec_exp_identifier, &pos_curr_token);
    else
      syntax_error(ec_exp_identifier);
    leave_include_guard();
    return false;
  }
  a_symbol_header* header = header_of_curr_identifier();
  if (header == va_args_header)
    pos_error(ec_VA_ARGS_not_allowed, &pos_curr_token);
  begin_guard(header->identifier, header->length, is_ifndef);
  a_symbol* symbol = find_defined_macro(header);
  if (symbol != nullptr)
    record_symbol_reference(srk_reference, symbol, &pos_curr_token, true);
  *truth = (symbol != nullptr) != is_ifndef;
  return true;
}

void proc_ifdef(bool is_ifndef, const a_source_position& position) {
  bool truth = false;
  if (scan_tested_macro(is_ifndef, &truth))
    check_for_end_of_directive();
  skip_rest_of_directive();
  push_pp_if(position);
  if (!truth)
    skip_pp_group(true);
}

// Whether a conditional is open that this file may go on with.
static bool has_open_conditional() {
  if (pp_if_stack_depth > (conditionals_may_span_files() ? -1 : base_pp_if_stack_depth))
    return true;
  pos_error(ec_missing_pp_if, &pos_curr_token);
  some_error_in_curr_directive = 1;
  return false;
}

void proc_elif() {
  if (!has_open_conditional())
    return;
  check_that_if_is_in_this_file();
  guard_has_alternative();
  if (pp_if_stack.back().else_seen)
    else_already_seen(es_error);
  skip_rest_of_directive();
  skip_pp_group(false);
}

void proc_else() {
  if (!has_open_conditional())
    return;
  check_that_if_is_in_this_file();
  guard_has_alternative();
  if (pp_if_stack.back().else_seen)
    else_already_seen(severity_of_repeated_else());
  pp_if_stack.back().else_seen = true;
  check_for_end_of_directive();
  skip_pp_group(false);
}

void proc_endif() {
  if (!has_open_conditional())
    return;
  check_that_if_is_in_this_file();
  end_guard();
  pop_pp_if();
  check_for_end_of_directive();
}

void preproc_if_trans_unit_init() {
  pp_if_stack.clear();
  pp_if_stack.reserve(31);
  pp_if_stack_depth = -1;
  base_pp_if_stack_depth = -1;
}
