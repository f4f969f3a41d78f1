// Text output of the preprocessor.

#include "pp_output.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "lexical.h"
#include "macro.h"
#include "mode_words.h"
#include "preproc.h"
#include "source_file.h"
#include "source_line.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

// A gap of more lines than this is told by a directive.
static constexpr uint32_t max_gap_filled_by_newlines = 5;

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

// -- Tokens that must not join -----------------------------------------------------------

static bool is_id_or_digit(char c) {
  return is_id_char[static_cast<unsigned char>(c)] || static_cast<unsigned char>(c) >= 0x80;
}

static bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// Whether two operator characters begin or continue an operator, a digraph or a
// comment.
static bool operators_join(char last, char next) {
  static const char pairs[] = "++ -- -> << >> <= >= == != && || += -= *= /= %= &= ^= |= ## <: :> "
                              "<% %> %: // /* .. #@ <? >? ";
  static const char cplusplus_pairs[] = ":: .* >* ";
  const char pair[] = {last, next, ' ', '\0'};
  return strstr(pairs, pair) != nullptr ||
         (in_cplusplus_mode() && strstr(cplusplus_pairs, pair) != nullptr);
}

// -- The line after replacement -------------------------------------------------------------

namespace {
// The text being written, with what is known of its last token.
struct a_replayed_line {
  std::string text;
  bool in_number; // a preprocessing number ends the text
  bool separator_is_due;
};
} // namespace

static bool is_sign_of_exponent(char last, char next) {
  return (next == '+' || next == '-') && strchr("eEpP", last) != nullptr;
}

static bool tokens_join(const a_replayed_line& line, char next) {
  char last = line.text.back();
  if (line.in_number && (next == '.' || is_sign_of_exponent(last, next)))
    return true;
  if (last == '.' && is_digit(next))
    return true;
  bool next_is_quote = next == '"' || next == '\'';
  if (is_id_or_digit(last))
    return is_id_or_digit(next) || next_is_quote;
  if (last == '"' || last == '\'')
    return in_cplusplus_mode() && is_id_or_digit(next);
  return operators_join(last, next);
}

static void replay_char(a_replayed_line* line, char c) {
  if (line->separator_is_due && !line->text.empty() && tokens_join(*line, c)) {
    line->text.push_back(' ');
    line->in_number = false;
  }
  line->separator_is_due = false;
  char last = line->text.empty() ? ' ' : line->text.back();
  if (line->in_number)
    line->in_number = is_id_or_digit(c) || c == '.' || is_sign_of_exponent(last, c);
  else
    line->in_number = is_digit(c) && !is_id_or_digit(last);
  line->text.push_back(c);
}

// Writes back what was taken from the physical text at `p`. Returns the place at
// which the text goes on.
static const char* replay_orig_line_modifs(a_replayed_line* line, const char* p,
                                           const an_orig_line_modif** modif) {
  while (*modif != nullptr && (*modif)->location < p)
    *modif = (*modif)->next;
  for (; *modif != nullptr && (*modif)->location == p; *modif = (*modif)->next) {
    if ((*modif)->kind == olm_splice) {
      line->text += "\\\n";
    } else if ((*modif)->kind == olm_trigraph) {
      line->text += "?\?";
      line->text.push_back(static_cast<char>((*modif)->extra));
      p++;
    }
  }
  return p;
}

// Where the text around a modification goes on, and in which modification.
static const char* leave_modif(a_replayed_line* line, a_source_line_modif** modif) {
  a_source_line_modif* left = *modif;
  *modif = parent_source_line_modif(left);
  if (left->location == nullptr)
    return curr_source_line;
  if (left->length != 0)
    return left->location + left->length;
  replay_char(line, left->saved_char);
  return left->location + 1;
}

// Obeys the marker at `p`. Null at the end of the line.
static const char* replay_marker(a_replayed_line* line, const char* p,
                                 a_source_line_modif** modif) {
  switch (p[1]) {
  case lm_end_of_line:
    return nullptr;
  case lm_newline:
    line->text.push_back('\n');
    return p + 2;
  case lm_nul_character:
    line->text.push_back('\0');
    return p + 2;
  case mtm_end_of_text:
    line->separator_is_due = !no_token_separators_in_this_line_of_pp_output;
    return *modif != nullptr ? leave_modif(line, modif) : nullptr;
  case mtm_separator:
    line->separator_is_due = !no_token_separators_in_this_line_of_pp_output;
    return p + 2;
  case mtm_variadic_comma:
    return p + 3;
  default:
    return p + 2;
  }
}

// The current logical line as the reader of the output is to see it.
static const std::string& replayed_line() {
  static a_replayed_line line;
  line.text.clear();
  line.in_number = line.separator_is_due = false;
  const an_orig_line_modif* orig_modif = orig_line_modif_list;
  a_source_line_modif* modif = line_start_source_line_modif;
  const char* p = modif != nullptr ? modif->text_start : curr_source_line;
  while (p != nullptr) {
    if (modif == nullptr)
      p = replay_orig_line_modifs(&line, p, &orig_modif);
    a_source_line_modif* replacement = *p == '\n' ? source_line_modif_at(p) : nullptr;
    if (replacement != nullptr) {
      modif = replacement;
      p = modif->text_start;
      line.separator_is_due = !no_token_separators_in_this_line_of_pp_output;
    } else if (*p == '\0') {
      p = replay_marker(&line, p, &modif);
    } else {
      replay_char(&line, *p++);
    }
  }
  return line.text;
}

void gen_pp_output_for_curr_line() {
  if (!do_not_put_curr_line_in_pp_output) {
    fill_gap_in_pp_output();
    const std::string& text = replayed_line();
    if (fwrite(text.data(), 1, text.size(), f_pp_output) != text.size() ||
        putc('\n', f_pp_output) == EOF)
      file_write_error(fk_pp_output, errno);
    next_seq_in_pp_output += 1 + static_cast<uint32_t>(std::count(text.begin(), text.end(), '\n'));
  }
  no_token_separators_in_this_line_of_pp_output = no_token_separators_in_pp_output;
}

static bool line_has_expansions() {
  for (auto* modif = source_line_modif_list; modif != nullptr; modif = modif->next)
    if (modif->macro != nullptr)
      return true;
  return false;
}

void gen_expanded_raw_listing_output_for_curr_line(bool has_modifs) {
  if (!has_modifs || do_not_put_curr_line_in_pp_output || !line_has_expansions())
    return;
  putc('X', f_raw_listing);
  for (char c : replayed_line()) {
    putc(c, f_raw_listing);
    if (c == '\n')
      putc('X', f_raw_listing);
  }
  putc('\n', f_raw_listing);
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
  file_write_error(fk_raw_listing, 0);
}

void gen_pp_output_for_macro_definitions() {
  for (const a_macro* macro = il_header.macros; macro != nullptr; macro = macro->next)
    if (!macro->is_undef)
      fprintf(f_pp_output, "#define %s\n", macro->text);
}
