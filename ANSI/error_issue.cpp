// Issuing a diagnostic: its effective severity, the filters, the instantiation
// context, and what follows an error.

#include <set>
#include <utility>

#include "cfe.h"
#include "error_int.h"
#include "il_write.h"
#include "macro.h"
#include "pp_output.h"
#include "source_file.h"

namespace {

a_boolean in_catastrophe;
a_boolean in_internal_error;

// The places of power advice that is given once a line.
std::set<std::pair<uint32_t, an_error_code>> advised_places;

bool is_advice_once_a_line(an_error_code code) {
  return code >= ec_nrg_5_1 && code <= ec_nrg_6_1;
}

// Whether the severity is too low for the place that the diagnostic is about.
bool severity_is_filtered(const a_diagnostic* diag) {
  if (diag->severity < error_threshold) {
    return true;
  }
  if (diag->severity < es_error && seq_is_in_system_header(diag->position.position.seq)) {
    return true;
  }
  return curr_cmd_line_or_predef_macro_def && diag->severity < es_discretionary_error;
}

// Whether the diagnostic has been said before.
bool is_repeat(const a_diagnostic* diag) {
  bool is_once_only = diag->severity <= es_warning && number_is_once_only(diag->error_code);
  if (is_once_only && number_was_issued(diag->error_code)) {
    return true;
  }
  note_number_issued(diag->error_code);
  if (is_repeat_of_instantiation(diag)) {
    return true;
  }
  if (is_advice_once_a_line(diag->error_code)) {
    return !advised_places.insert({diag->position.position.seq, diag->error_code}).second;
  }
  return false;
}

// A fault in a macro definition of the command line is a fault of the command
// line, whatever the scanner calls it.
void check_for_bad_macro_definition(const a_diagnostic* diag) {
  if (curr_cmd_line_or_predef_macro_def && !processing_predefined_macro &&
      diag->error_code != ec_bad_cmd_line_macro) {
    str_command_line_error(ec_bad_cmd_line_macro, curr_cmd_line_or_predef_macro_def);
  }
}

// A diagnostic that ends the compilation may arise while one is being written.
void check_for_loop(const a_diagnostic* diag) {
  a_boolean* guard = nullptr;
  a_vocabulary_code text = vc_loop_in_catastrophe;
  if (diag->severity == es_catastrophe) {
    guard = &in_catastrophe;
  } else if (diag->severity == es_internal_error) {
    guard = &in_internal_error;
    text = vc_internal_error_loop;
  }
  if (!guard) {
    return;
  }
  if (*guard) {
    fprintf(f_error, "%s\n", error_text(text));
    term_compilation(diag->severity);
  }
  *guard = true;
}

bool has_context(const a_diagnostic* diag) {
  if (diag->severity == es_internal_error) {
    return false;
  }
  return diag->severity != es_catastrophe || display_error_context_on_catastrophe;
}

void write_if_wanted(a_diagnostic* diag) {
  if (severity_is_filtered(diag) || is_repeat(diag)) {
    return;
  }
  check_for_bad_macro_definition(diag);
  check_for_loop(diag);
  if (has_context(diag)) {
    add_instantiation_context(diag);
  }
  write_diagnostic(diag);
}

[[noreturn]] void stop_at_error_limit() {
  fprintf(f_error, "%s\n", error_text(vc_error_limit_reached));
  if (f_raw_listing) {
    fputs("C \"\" 0 0 error limit reached\n", f_raw_listing);
  }
  finish_raw_listing_file();
  term_compilation(es_catastrophe);
}

} // namespace

void clear_issue_state() {
  in_catastrophe = false;
  in_internal_error = false;
  clear_repeat_table();
}

void issue_diagnostic(a_diagnostic* diag) {
  forget_fetched_source_line();
  diag->severity = severity_at_position(diag->error_code, diag->severity, &diag->position.position);
  write_if_wanted(diag);
  unsigned long error_count = total_errors + total_catastrophes;
  if (error_count != 0) {
    cancel_il_file(); // no compilation with an error leaves one
  }
  if (diag->severity >= es_catastrophe) {
    finish_raw_listing_file();
    term_compilation(diag->severity);
  }
  if (error_count >= error_limit) {
    stop_at_error_limit();
  }
  free_diagnostic(diag);
}
