// Text output of the preprocessor.

#include "pp_output.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "mode_words.h"
#include "preproc.h"
#include "source_file.h"
#include "source_line.h"

#include <cerrno>

// A gap of more lines than this is told by a directive.
static constexpr uint32_t max_gap_filled_by_newlines = 5;
// The catalogue's text that names the preprocessed output.
static constexpr an_error_code pp_output_kind = 1787;

void gen_pp_line_info(bool at_next_line) {
  if (!generate_pp_output || !gen_line_info_in_pp_output || f_pp_output == nullptr)
    return;
  uint32_t line = curr_ise->lines_read + 1;
  next_seq_in_pp_output = seq_number_last_read + 1;
  if (!at_next_line) {
    conv_seq_to_file_and_line(curr_seq_number, nullptr, nullptr, &line, nullptr);
    next_seq_in_pp_output = curr_seq_number;
  }
  const char* directive = gnu_mode || pcc_preprocessing_mode ? "#" : "#line";
  fprintf(f_pp_output, "%s %lu \"", directive, static_cast<unsigned long>(line));
  write_file_name(curr_ise->file_name, f_pp_output, !pcc_preprocessing_mode, false);
  fputs("\"\n", f_pp_output);
}

void gen_rlisting_line_info(char mark) {
  if (f_raw_listing == nullptr)
    return;
  fprintf(f_raw_listing, "L %lu \"%s\"", static_cast<unsigned long>(curr_ise->lines_read + 1),
          format_file_name(curr_ise->file_name));
  if (mark != ' ')
    fprintf(f_raw_listing, " %c", mark);
  putc('\n', f_raw_listing);
}

// Brings the output to the current line.
static void fill_gap_in_pp_output() {
  if (curr_seq_number == next_seq_in_pp_output)
    return;
  uint32_t gap = curr_seq_number - next_seq_in_pp_output;
  if (gap > max_gap_filled_by_newlines)
    gen_pp_line_info(false);
  else if (gen_line_info_in_pp_output)
    for (; gap != 0; gap--)
      putc('\n', f_pp_output);
  next_seq_in_pp_output = curr_seq_number;
}

void gen_pp_output_for_curr_line() {
  if (do_not_put_curr_line_in_pp_output)
    return;
  fill_gap_in_pp_output();
  if (fputs(curr_source_line, f_pp_output) == EOF || putc('\n', f_pp_output) == EOF)
    file_write_error(pp_output_kind, errno);
  next_seq_in_pp_output++;
}

void gen_expanded_raw_listing_output_for_curr_line(bool has_modifs) {
  if (has_modifs)
    fprintf(f_raw_listing, "X%s\n", curr_source_line);
}

void write_dependency_line(const char* file_name) {
  if (f_pp_output == nullptr)
    return;
  fprintf(f_pp_output, "%s:", makefile_format_file_name(object_file_name));
  fprintf(f_pp_output, " %s\n", makefile_format_file_name(file_name));
}

void write_include_trace_line(const char* file_name, int depth) {
  if (f_pp_output != nullptr)
    fprintf(f_pp_output, "%*s%s\n", depth - 1, "", format_file_name(file_name));
}

void finish_raw_listing_file() {
  if (f_raw_listing == nullptr)
    return;
  FILE* file = f_raw_listing;
  f_raw_listing = nullptr;
  int error_number;
  if (!close_output_file(file, &error_number))
    return;
  str_catastrophe(ec_file_write_error, "raw listing");
}

void gen_pp_output_for_macro_definitions() {
  for (const a_macro* macro = il_header.macros; macro != nullptr; macro = macro->next)
    if (!macro->is_undef)
      fprintf(f_pp_output, "#define %s\n", macro->text);
}
