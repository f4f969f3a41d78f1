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

void write_count(unsigned long count, const char* singular) {
  fprintf(f_error, "%lu %s%s", count, singular, count == 1 ? "" : "s");
}

} // namespace

void write_signoff() {
  if (asm_header_mode || total_errors + total_catastrophes == 0)
    return;
  if (total_errors != 0)
    write_count(total_errors, "error");
  if (total_errors != 0 && total_catastrophes != 0)
    fputs(" and ", f_error);
  if (total_catastrophes != 0)
    write_count(total_catastrophes, "catastrophic error");
  const char* name = primary_source_file_name;
  if (name != nullptr && *name != '\0' && strcmp(name, "-") != 0) {
    fputs(" detected in the compilation of \"", f_error);
    write_file_name(name, f_error, false, false);
    fputs("\".\n", f_error);
  } else {
    fputs(" detected in this compilation.\n", f_error);
  }
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
