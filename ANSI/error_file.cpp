// Files: the reports of those that can't be opened, written or closed, and the
// functions that open them with such a report.

#include <cerrno>
#include <cstring>

#include "error_int.h"
#include "host_envir.h"
#include "source_file.h"

const char* open_failure_reason(const an_open_file_result& result) {
  if (result.flags & off_not_found) {
    return nullptr;
  }
  if (result.flags & off_other_error) {
    return strerror(result.error_number);
  }
  if (result.flags & off_not_a_regular_file) {
    return error_text(vc_not_a_regular_file);
  }
  if (result.flags & off_directory) {
    return error_text(vc_is_a_directory);
  }
  return error_text(vc_invalid_file_name);
}

namespace {

// The bits of a result that a mask of tolerated results covers. An invalid name
// never is: its bit asks for another severity in the mask.
constexpr unsigned toleration_bits =
    tolerate_not_found | tolerate_other_error | tolerate_not_a_regular_file | tolerate_directory;

void report_unless_tolerated(const an_open_file_result& result, unsigned tolerated,
                             an_error_code kind, const char* name) {
  if ((result.flags & ~(tolerated & toleration_bits)) != 0) {
    bool is_command_line_error = (tolerated & report_as_command_line_error) != 0;
    file_open_error(is_command_line_error ? es_command_line_error : es_catastrophe, kind, name,
                    &result);
  }
}

} // namespace

void file_open_error(an_error_severity severity, an_error_code kind, const char* name,
                     const an_open_file_result* result) {
  constexpr a_source_position command_line_position = {0, 1, 0};
  const a_source_position* position =
      severity == es_command_line_error ? &command_line_position : &error_position;
  const char* reason = open_failure_reason(*result);
  a_diagnostic* diag = create_diagnostic(
      severity, reason ? ec_cannot_open_file_reason : ec_cannot_open_file, position);
  add_argument(diag, error_text(kind));
  add_argument(diag, name);
  add_argument(diag, reason);
  issue_diagnostic(diag);
}

void output_file_open_error(bool is_invalid_name, an_error_code kind, const char* name,
                            an_error_severity severity) {
  an_open_file_result result;
  clear_open_file_result(&result);
  if (is_invalid_name) {
    result.flags = off_invalid_name;
  } else {
    result.flags = off_other_error;
    result.error_number = static_cast<uint16_t>(errno);
  }
  file_open_error(severity, kind, name, &result);
  internal_error("an unopened output file must end the compilation");
}

void file_write_error(an_error_code kind, int errno_value) {
  named_file_write_error(error_text(kind), errno_value);
}

void named_file_write_error(const char* kind, int errno_value) {
  error_position = null_source_position; // no line of the source is at fault
  if (errno_value == 0) {
    str_catastrophe(ec_file_write_error, kind);
  }
  pos_str2_catastrophe(ec_file_write_error_errno, &error_position, kind, strerror(errno_value));
}

bool open_source_file_with_error_handling(const char* name, a_source_text* text, unsigned tolerated,
                                          an_error_code kind) {
  an_open_file_result result;
  bool opened = open_source_file(name, text, &result);
  report_unless_tolerated(result, tolerated, kind, name);
  return opened;
}

FILE* open_input_file_with_error_handling(const char* name, bool binary, unsigned tolerated,
                                          an_error_code kind) {
  an_open_file_result result;
  FILE* file = open_input_file(name, binary, &result);
  report_unless_tolerated(result, tolerated, kind, name);
  return file;
}

FILE* open_output_file_with_error_handling(const char* name, bool binary, bool update,
                                           unsigned tolerated, an_error_code kind) {
  an_open_file_result result;
  FILE* file = open_output_file(name, binary, update, &result);
  report_unless_tolerated(result, tolerated, kind, name);
  return file;
}

FILE* fopen_with_error(const char* name, const char* mode, an_error_code kind) {
  an_open_file_result result;
  FILE* file = fopen_with_result(name, mode, &result);
  report_unless_tolerated(result, tolerate_nothing, kind, name);
  return file;
}

void close_output_file_with_error_handling(FILE** file, an_error_code kind) {
  FILE* stream = *file;
  *file = nullptr;
  int error_number = 0;
  if (stream && close_output_file(stream, &error_number)) {
    file_write_error(kind, error_number);
  }
}
