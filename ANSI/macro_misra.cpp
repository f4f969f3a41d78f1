// What MISRA-C:2004 asks of macros: the form of a definition (rules 19.4, 19.5,
// 19.7, 19.10, 19.12 and 19.13), of an invocation (19.8) and of `defined` (19.14).

#include <cstring>
#include <string>

#include "error.h"
#include "macro_int.h"
#include "mode_words.h"
#include "scope_stk.h"

namespace {

// What the tokens of a replacement list have formed so far.
enum a_list_form : uint8_t {
  lf_empty,
  lf_constant,
  lf_strings,
  lf_specifiers,     // type qualifiers and storage classes
  lf_open_bracket,   // inside the parentheses or braces that began the list
  lf_closed_bracket, // behind them, or behind the loop
  lf_do,
  lf_do_body,
  lf_while,
  lf_while_paren,
  lf_while_zero,
  lf_other
};

struct a_list_check {
  a_list_form form;
  int depth; // of brackets
  int num_operators;
  bool param_is_bare;     // a parameter stood outside of parentheses
  bool param_needs_paren; // the last token was a parameter behind a parenthesis
  bool param_is_awaited;  // the last token was # or ##
  bool behind_paren;
  a_source_position operator_position;
};

} // namespace

static a_list_check check;

void misra_begin_macro() {
  check = {};
}

static bool curr_token_is(const char* text) {
  return strlen(text) == len_of_curr_token &&
         memcmp(start_of_curr_token, text, len_of_curr_token) == 0;
}

static bool curr_token_is_specifier() {
  static const char* const specifiers[] = {"const",    "volatile", "restrict", "static", "extern",
                                           "register", "auto",     "typedef",  "inline"};
  for (const char* specifier : specifiers)
    if (curr_token_is(specifier))
      return true;
  return false;
}

static bool opens_bracket() {
  return curr_token == tok_lparen || curr_token == tok_lbrace;
}

static bool closes_bracket() {
  return curr_token == tok_rparen || curr_token == tok_rbrace;
}

static a_list_form form_of_first_token() {
  if (curr_token == tok_pp_number || curr_token == tok_char_constant)
    return lf_constant;
  if (curr_token == tok_string)
    return lf_strings;
  if (opens_bracket())
    return lf_open_bracket;
  if (curr_token == tok_identifier && curr_token_is("do"))
    return lf_do;
  return curr_token == tok_identifier && curr_token_is_specifier() ? lf_specifiers : lf_other;
}

// The form with the current token at its end; the depth includes the token.
static a_list_form next_form() {
  switch (check.form) {
  case lf_empty:
    return form_of_first_token();
  case lf_strings:
    return curr_token == tok_string ? lf_strings : lf_other;
  case lf_specifiers:
    return curr_token == tok_identifier && curr_token_is_specifier() ? lf_specifiers : lf_other;
  case lf_open_bracket:
    return check.depth == 0 ? lf_closed_bracket : lf_open_bracket;
  case lf_do:
    return curr_token == tok_lbrace ? lf_do_body : lf_other;
  case lf_do_body:
    if (check.depth != 0)
      return lf_do_body;
    return curr_token == tok_rbrace ? lf_while : lf_other;
  case lf_while:
    return curr_token == tok_identifier && curr_token_is("while") ? lf_while_paren : lf_other;
  case lf_while_paren:
    return curr_token == tok_lparen ? lf_while_zero : lf_other;
  case lf_while_zero:
    if (curr_token == tok_rparen)
      return lf_closed_bracket;
    return curr_token_is("0") ? lf_while_zero : lf_other;
  default:
    return lf_other;
  }
}

// Notes whether a parameter stands in parentheses of its own.
static void check_param(bool is_param) {
  if (check.param_needs_paren && curr_token != tok_rparen && curr_token != tok_sharp_sharp)
    check.param_is_bare = true;
  check.param_needs_paren = false;
  if (!is_param || check.param_is_awaited)
    return;
  check.param_needs_paren = true;
  // Behind anything but a parenthesis only ## may follow.
  if (!check.behind_paren && strncmp(curr_char_loc, "##", 2) != 0 &&
      strncmp(curr_char_loc, " ##", 3) != 0)
    check.param_is_bare = true;
}

void misra_check_macro_token(bool is_param) {
  if (!check_misra_c_2004)
    return;
  if (opens_bracket())
    ++check.depth;
  else if (closes_bracket())
    --check.depth;
  check.form = next_form();
  check_param(is_param);
  bool is_operator = curr_token == tok_sharp_sharp || curr_token == tok_sharp;
  if (is_operator && check.num_operators++ == 0)
    check.operator_position = pos_curr_token;
  check.param_is_awaited = is_operator;
  check.behind_paren = curr_token == tok_lparen;
}

static bool form_is_allowed() {
  switch (check.form) {
  case lf_empty:
  case lf_constant:
  case lf_strings:
  case lf_specifiers:
  case lf_closed_bracket:
    return true;
  default:
    return false;
  }
}

// Of a definition; the command line has no place that could be shown.
static void report(an_error_severity severity, an_error_code code,
                   const a_source_position& position) {
  if (curr_cmd_line_or_predef_macro_def == nullptr)
    pos_diagnostic(severity, code, &position);
  else if (!processing_predefined_macro && misra_c_2004_generate_diagnostic(code, severity))
    misra_command_line_diagnostic(severity, code,
                                  (std::string(": ") + curr_cmd_line_or_predef_macro_def).c_str());
}

void misra_check_macro_definition(const a_macro_def* def, const a_source_position& position) {
  if (!check_misra_c_2004)
    return;
  if (!form_is_allowed())
    report(misra_required_severity, ec_misra_c_2004_19_4, position);
  if (depth_scope_stack > 0)
    report(misra_required_severity, ec_misra_c_2004_19_5, position);
  if (!def->is_object_like)
    report(misra_advisory_severity, ec_misra_c_2004_19_7, position);
  if (check.param_is_bare || check.param_needs_paren)
    report(misra_required_severity, ec_misra_c_2004_19_10, position);
  if (check.num_operators > 1)
    report(misra_required_severity, ec_misra_c_2004_19_12, check.operator_position);
  if (check.num_operators > 0)
    report(misra_advisory_severity, ec_misra_c_2004_19_13, check.operator_position);
}

void misra_check_missing_macro_argument(const a_source_position& position) {
  if (check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_19_8, &position);
}

void misra_check_defined_operator(bool has_standard_form, const a_source_position& position) {
  if (check_misra_c_2004 && !has_standard_form)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_19_14, &position);
}
