// The ways out of the process.

#include "cfe.h"

#include "error.h"
#include "host_envir.h"
#include "mode_words.h"

#include <cstdlib>
#include <cstring>

FILE* f_error = stderr;
FILE* f_pp_output;
FILE* f_raw_listing;
FILE* f_xref_info;

namespace {

// The texts of the sign-off; that of several stands behind that of one.
enum a_signoff_code : an_error_code {
  vc_signoff_error = 2011,
  vc_signoff_catastrophe = 2013,
  vc_signoff_and = 2015,
  vc_signoff_detected_in_file = 2016,
  vc_signoff_detected = 2017
};

void write_count(unsigned long count, an_error_code text_of_one) {
  fprintf(f_error, "%lu %s", count, error_text(count == 1 ? text_of_one : text_of_one + 1));
}

} // namespace

void write_signoff() {
  if (asm_header_mode || total_errors + total_catastrophes == 0)
    return;
  if (total_errors != 0)
    write_count(total_errors, vc_signoff_error);
  if (total_errors != 0 && total_catastrophes != 0)
    fprintf(f_error, " %s ", error_text(vc_signoff_and));
  if (total_catastrophes != 0)
    write_count(total_catastrophes, vc_signoff_catastrophe);
  putc(' ', f_error);
  const char* name = primary_source_file_name;
  if (name != nullptr && *name != '\0' && strcmp(name, "-") != 0)
    fprintf(f_error, error_text(vc_signoff_detected_in_file), format_file_name(name));
  else
    fputs(error_text(vc_signoff_detected), f_error);
  putc('\n', f_error);
}

void exit_compilation(an_error_severity severity) {
  switch (severity) {
  case es_suppressed:
  case es_remark:
  case es_lower_remark:
  case es_warning:
    exit(0);
  case es_error:
    exit(2);
  case es_catastrophe:
  case es_command_line_error:
    fputs("Compilation terminated.\n", f_error);
    exit(4);
  case es_internal_error:
    fputs("Compilation aborted.\n", f_error);
    break;
  default:
    break;
  }
  fflush(f_error);
  abort();
}

void term_compilation(an_error_severity severity) {
  write_signoff();
  exit_compilation(severity);
}
