// #pragma diag_suppress and its kin, which set severities from their place on.

#include "const_ints.h"
#include "error_int.h"
#include "lexical.h"
#include "pragma.h"

namespace {

an_error_severity severity_set_by(a_pragma_kind_tag kind) {
  switch (kind) {
  case pk_diag_suppress:
    return es_suppressed;
  case pk_diag_remark:
    return es_remark;
  case pk_diag_warning:
    return es_warning;
  case pk_diag_error:
    return es_discretionary_error;
  case pk_diag_once:
    return es_once;
  default: // diag_default
    return es_none;
  }
}

bool at_end_of_pragma() {
  return curr_token == tok_end_of_source;
}

bool skip_rest_of_pragma() {
  while (!at_end_of_pragma()) {
    get_token();
  }
  return false;
}

// The number that an integer literal names, -1 for one out of any range.
long number_of_curr_token() {
  bool overflow = false;
  int64_t value = value_of_integer_constant(&const_for_curr_token, &overflow);
  return overflow ? -1 : value;
}

// Sets the severity of the tag or number at the current token, from its place
// on. False, with the rest skipped, for a token that is neither.
bool process_diag_item(an_error_severity severity) {
  if (curr_token == tok_identifier) {
    if (set_severity_for_error_tag(locator_for_curr_id.header->identifier, severity,
                                   &pos_curr_token, false)) {
      pos_warning(ec_invalid_error_tag, &error_position);
    }
  } else if (curr_token == tok_integer) {
    if (set_severity_for_error_number(number_of_curr_token(), severity, &pos_curr_token, false)) {
      pos_warning(ec_invalid_error_number, &error_position);
    }
  } else {
    pos_warning(ec_exp_error_argument, &error_position);
    return skip_rest_of_pragma();
  }
  get_token();
  return true;
}

// One of the pragmas without arguments. True if it has none.
bool pragma_is_empty() {
  if (at_end_of_pragma()) {
    return true;
  }
  pos_warning(ec_bad_pragma_format, &error_position);
  return false;
}

} // namespace

void diag_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  an_error_severity severity = severity_set_by(pragma->description->kind);
  begin_rescan_of_pragma_tokens(pragma);
  loop_token(tok_assign);
  while (process_diag_item(severity) && !at_end_of_pragma()) {
    if (!loop_token(tok_comma)) {
      pos_warning(ec_exp_comma, &error_position);
      skip_rest_of_pragma();
      break;
    }
  }
  wrapup_rescan_of_pragma_tokens(true);
}

void diag_push_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  begin_rescan_of_pragma_tokens(pragma);
  if (pragma_is_empty()) {
    push_severities();
  }
  wrapup_rescan_of_pragma_tokens(true);
}

void diag_pop_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  begin_rescan_of_pragma_tokens(pragma);
  if (pragma_is_empty() && !pop_severities(&pos_curr_token)) {
    pos_warning(ec_pragma_diag_pop_unmatched, &error_position);
  }
  wrapup_rescan_of_pragma_tokens(true);
}
