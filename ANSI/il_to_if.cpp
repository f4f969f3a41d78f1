#include "il_to_if.h"

#include "error.h"
#include "host_envir.h"
#include "if_write.h"
#include "if_write_util.h"
#include "mode_words.h"
#include "source_file.h"
#include "trans_unit.h"
#include "type_pkg.h"

#include <cerrno>
#include <cstring>
#include <string>

namespace {

constexpr an_error_code ec_il_output_kind = 1981;
constexpr size_t command_comment_limit = 511;

// The command line, for a reader of the file. Words that don't fit are left
// out with all that follow.
std::string command_line_comment() {
  std::string text = ";\t";
  for (int i = 0; i < sys_argc; i++) {
    if (text.size() + strlen(sys_argv[i]) + 1 > command_comment_limit)
      break;
    text += sys_argv[i];
    text += ' ';
  }
  return text;
}

[[noreturn]] void report_write_failure(int error_number) {
  const char* kind = "generated IL output";
  if (error_number == 0)
    str_catastrophe(ec_file_write_error, kind);
  pos_str2_catastrophe(ec_file_write_error_errno, &error_position, kind, strerror(error_number));
}

} // namespace

void back_end() {
  error_position = null_source_position;
  if (i_file_name == nullptr)
    i_file_name = derived_name(primary_source_file_name, ".if");
  FILE* stream = open_output_file_with_error_handling(i_file_name, true, false, tolerate_nothing,
                                                      ec_il_output_kind);
  in_front_end = 0;
  error_position = {1, 0, 0};
  type_pkg = new TYPE_PKG;
  I_FILE* file = if_create(stream, type_pkg, translation_units->primary_source_file->full_name);
  if_set_output_name(i_file_name);
  file->if_write_comment(command_line_comment().c_str());
  if (file->if_close(keep_unneeded_types != 0, false))
    report_write_failure(errno);
  delete type_pkg;
  type_pkg = nullptr;
}
