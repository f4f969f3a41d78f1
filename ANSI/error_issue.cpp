// Issuing a diagnostic: its effective severity, the filters, the instantiation
// context, and what follows an error.

#include <cstdlib>

#include "error_int.h"

void issue_diagnostic(a_diagnostic* diag) {
  diag->severity = severity_at_position(diag->error_code, diag->severity, &diag->position.position);
  bool wanted = diag->severity >= error_threshold;
  if (diag->severity <= es_warning && number_is_once_only(diag->error_code) &&
      number_was_issued(diag->error_code)) {
    wanted = false;
  }
  note_number_issued(diag->error_code);
  if (wanted) {
    write_diagnostic(diag);
  }
  if (diag->severity >= es_catastrophe) {
    exit(diag->severity == es_internal_error ? 2 : 4);
  }
  free_diagnostic(diag);
}

void clear_repeat_table() {}
