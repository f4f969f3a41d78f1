// Reports of files that can't be opened, written or closed.

#include <cerrno>
#include <cstring>

#include "error_int.h"

void file_write_error(an_error_code kind, int errno_value) {
  if (errno_value == 0) {
    str_catastrophe(ec_file_write_error, error_text(kind));
  }
  pos_str2_catastrophe(ec_file_write_error_errno, &error_position, error_text(kind),
                       strerror(errno_value));
}

void close_output_file_with_error_handling(FILE** file, an_error_code kind) {
  FILE* stream = *file;
  *file = nullptr;
  if (!stream) {
    return;
  }
  bool failed = fflush(stream) != 0 || ferror(stream);
  int error = errno;
  if (stream != stdout && fclose(stream) != 0 && !failed) {
    failed = true;
    error = errno;
  }
  if (failed) {
    file_write_error(kind, error);
  }
}
