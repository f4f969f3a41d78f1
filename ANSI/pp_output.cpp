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

static bool is_sign_of_exponent(char last, char next) {
  return (next == '+' || next == '-') && strchr("eEpP", last) != nullptr;
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

// Where the run of names and numbers begins that ends the text.
static size_t start_of_last_word(const std::string& text) {
  size_t start = text.size();
  while (start > 0 && (is_id_or_digit(text[start - 1]) || text[start - 1] == '.' ||
                       (start > 1 && is_sign_of_exponent(text[start - 2], text[start - 1]))))
    --start;
  return start;
}

// Whether a preprocessing number ends the text (C99 6.4.8).
static bool ends_with_number(const std::string& text) {
  bool in_number = false;
  bool in_name = false;
  for (size_t i = start_of_last_word(text); i < text.size(); ++i) {
    char c = text[i];
    bool goes_on = is_id_or_digit(c) || c == '.' || (i > 0 && is_sign_of_exponent(text[i - 1], c));
    bool begins = is_digit(c) || (c == '.' && i + 1 < text.size() && is_digit(text[i + 1]));
    in_number = in_number ? goes_on : begins && !in_name;
    in_name = !in_number && is_id_or_digit(c);
  }
  return in_number;
}

// Whether the name that ends the text is the prefix of a literal.
static bool ends_with_literal_prefix(const std::string& text, char quote) {
  static const char* const prefixes[] = {"L", "u", "U", "u8", "R", "LR", "uR", "UR", "u8R"};
  std::string word = text.substr(start_of_last_word(text));
  for (const char* prefix : prefixes)
    if (word == prefix)
      return quote == '"' || word.back() != 'R';
  return false;
}

static bool tokens_join(const std::string& text, char next) {
  char last = text.back();
  bool is_sign = text.size() > 1 && is_sign_of_exponent(text[text.size() - 2], last);
  if (is_id_or_digit(last) || last == '.' || is_sign) {
    bool is_number = ends_with_number(text);
    if (is_number && (next == '.' || next == '\'' || is_sign_of_exponent(last, next)))
      return next != '\'' || digit_separators_enabled;
    if (is_number || is_id_or_digit(last))
      return is_id_or_digit(next) || next == '\\' ||
             ((next == '"' || next == '\'') && ends_with_literal_prefix(text, next));
    if (last == '.' && is_digit(next))
      return true;
  }
  if (last == '"' || last == '\'')
    return in_cplusplus_mode() && is_id_or_digit(next);
  return operators_join(last, next);
}

// -- The line after replacement -------------------------------------------------------------

namespace {
struct a_replayed_line {
  std::string text;
  bool separator_is_due;
};
} // namespace

static void replay_text(a_replayed_line* line, const char* start, const char* end) {
  if (start == end)
    return;
  if (line->separator_is_due && !line->text.empty() && tokens_join(line->text, *start))
    line->text.push_back(' ');
  line->separator_is_due = false;
  line->text.append(start, end);
}

static void ask_for_separator(a_replayed_line* line) {
  line->separator_is_due = !no_token_separators_in_this_line_of_pp_output;
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
      const char trigraph[3] = {'?', '?', static_cast<char>((*modif)->extra)};
      replay_text(line, trigraph, trigraph + 3);
      p++;
    }
  }
  return p;
}

// Where the text around a modification goes on, and in which modification. Null
// behind the text that stands before a directive that isn't written.
static const char* leave_modif(a_replayed_line* line, a_source_line_modif** modif) {
  a_source_line_modif* left = *modif;
  *modif = parent_source_line_modif(left);
  if (left->location == nullptr) {
    if (do_not_put_curr_line_in_pp_output)
      return nullptr;
    if (curr_line_is_directive())
      line->text.push_back('\n');
    return curr_source_line;
  }
  if (left->length != 0)
    return left->location + left->length;
  replay_text(line, &left->saved_char, &left->saved_char + 1);
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
    ask_for_separator(line);
    return *modif != nullptr ? leave_modif(line, modif) : nullptr;
  case mtm_separator:
    ask_for_separator(line);
    return p + 2;
  case mtm_variadic_comma:
    return p + 3;
  default:
    return p + 2;
  }
}

// The end of the text from `p` on that is copied as it stands; `limit` is the
// place of the next change against the physical text, or null.
static const char* end_of_plain_text(const char* p, const char* limit) {
  while (*p != '\0' && *p != '\n' && p != limit)
    ++p;
  return p;
}

// The current logical line as the reader of the output is to see it.
static const std::string& replayed_line() {
  static a_replayed_line line;
  line.text.clear();
  line.separator_is_due = false;
  const an_orig_line_modif* orig_modif = orig_line_modif_list;
  a_source_line_modif* modif = line_start_source_line_modif;
  const char* p = modif != nullptr ? modif->text_start : curr_source_line;
  while (p != nullptr) {
    const char* limit = nullptr;
    if (modif == nullptr) {
      p = replay_orig_line_modifs(&line, p, &orig_modif);
      limit = orig_modif != nullptr ? orig_modif->location : nullptr;
    }
    const char* end = end_of_plain_text(p, limit);
    replay_text(&line, p, end);
    p = end;
    a_source_line_modif* replacement = *p == '\n' ? source_line_modif_at(p) : nullptr;
    if (replacement != nullptr) {
      modif = replacement;
      p = modif->text_start;
      ask_for_separator(&line);
    } else if (*p == '\0') {
      p = replay_marker(&line, p, &modif);
    } else if (*p == '\n') {
      line.text.push_back(*p++);
    }
  }
  return line.text;
}

static void write_pp_output(const char* text, size_t length) {
  if (fwrite(text, 1, length, f_pp_output) != length || putc('\n', f_pp_output) == EOF)
    file_write_error(fk_pp_output, errno);
}

// A line with no modification of any kind, nor any marker before its end, is
// written as it stands.
static bool curr_line_is_unmodified() {
  return orig_line_modif_list == nullptr && source_line_modif_list == nullptr &&
         curr_source_line + strlen(curr_source_line) + 2 == after_end_of_curr_source_line;
}

static void write_curr_line() {
  fill_gap_in_pp_output();
  ++next_seq_in_pp_output;
  if (curr_line_is_unmodified()) {
    write_pp_output(curr_source_line,
                    static_cast<size_t>(after_end_of_curr_source_line - 2 - curr_source_line));
    return;
  }
  const std::string& text = replayed_line();
  write_pp_output(text.data(), text.size());
  next_seq_in_pp_output += static_cast<uint32_t>(std::count(text.begin(), text.end(), '\n'));
}

// Of a line that doesn't go out, the text at its start does: the name of a macro
// that ended an earlier line.
void gen_pp_output_for_curr_line() {
  if (!do_not_put_curr_line_in_pp_output || line_start_source_line_modif != nullptr)
    write_curr_line();
}

void gen_pp_output_for_pragma_in_arguments(const std::string& operands) {
  if (!generate_pp_output || f_pp_output == nullptr)
    return;
  fill_gap_in_pp_output();
  std::string text = "#pragma" + operands;
  write_pp_output(text.data(), text.size());
  ++next_seq_in_pp_output;
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

// Whether the record is that of a definition in force: it wasn't followed by
// another definition or an #undef.
static bool macro_is_in_force(const a_macro* macro) {
  size_t length = 0;
  while (macro->text[length] != ' ' && macro->text[length] != '(' && macro->text[length] != '\0')
    ++length;
  a_symbol_locator locator = cleared_locator;
  const a_symbol* symbol = find_macro_symbol(find_symbol_header(macro->text, length, &locator));
  return symbol != nullptr && macro_def_of(symbol)->il_macro == macro;
}

void gen_pp_output_for_macro_definitions() {
  for (const a_macro* macro = il_header.macros; macro != nullptr; macro = macro->next)
    if (!macro->is_undef && macro_is_in_force(macro))
      fprintf(f_pp_output, "#define %s\n", macro->text);
}
