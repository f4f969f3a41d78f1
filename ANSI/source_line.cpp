// Reading logical lines into the line buffer.

#include "source_line.h"
#include "source_line_int.h"

#include "cfe.h"
#include "error.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pp_output.h"
#include "preproc.h"
#include "source_file.h"

#include <array>
#include <cstring>
#include <string_view>
#include <vector>

static constexpr size_t first_line_capacity = 3000;
// Room that is always left behind the text: the marker of a newline that the
// end of the file hides, and the end marker.
static constexpr size_t marker_room = 4;

char* curr_source_line;
char* after_end_of_curr_source_line;
char* curr_char_loc;
a_boolean curr_source_line_is_plain;
a_boolean do_not_put_curr_line_in_pp_output;
a_source_position pos_of_macro_invocation;

static size_t line_capacity;
// Behind the text read so far.
static char* line_end;
static std::vector<void (*)(const a_moved_buffer&)> line_adjusters;

// The line hasn't been written to the output and the listing yet.
static a_boolean curr_line_is_owed_to_output;
// A backslash before white space ended the last line.
static a_boolean backslash_warning_is_pending;
static a_source_position pending_backslash_position;
// The offset in the line of the first trigraph that stays as it is.
static constexpr size_t no_trigraph = SIZE_MAX;
static size_t ignored_trigraph_offset;

// -- The buffer --------------------------------------------------------------------------

void register_source_line_adjuster(void (*adjust)(const a_moved_buffer& moved)) {
  line_adjusters.push_back(adjust);
}

void adjust_curr_source_line_structure_after_realloc(const a_moved_buffer& moved) {
  curr_char_loc = moved_pointer(moved, curr_char_loc);
  adjust_source_line_modifs(moved);
  for (auto adjust : line_adjusters)
    adjust(moved);
}

void ensure_min_curr_source_line_length(size_t length) {
  if (length <= line_capacity)
    return;
  size_t capacity = line_capacity;
  while (capacity < length)
    capacity *= 2;
  a_moved_buffer moved = {curr_source_line, curr_source_line + line_capacity, nullptr};
  char* storage = realloc_buffer(curr_source_line - 1, line_capacity + 1, capacity + 1);
  moved.new_start = storage + 1;
  line_capacity = capacity;
  curr_source_line = moved.new_start;
  line_end = moved_pointer(moved, line_end);
  after_end_of_curr_source_line = moved_pointer(moved, after_end_of_curr_source_line);
  adjust_curr_source_line_structure_after_realloc(moved);
}

static size_t line_length() {
  return static_cast<size_t>(line_end - curr_source_line);
}

static void write_end_marker() {
  line_end[0] = '\0';
  line_end[1] = lm_end_of_line;
  after_end_of_curr_source_line = line_end + 2;
}

// Makes the buffer a line without text.
static void clear_line() {
  free_orig_line_modifs();
  free_source_line_modifs();
  line_end = curr_source_line;
  curr_char_loc = curr_source_line;
  curr_source_line_is_plain = 1;
  write_end_marker();
}

// -- Diagnostics of the line ----------------------------------------------------------------

// The position of a place in the line that is being read.
static a_source_position position_in_line(const char* location) {
  a_source_position position;
  write_end_marker();
  conv_line_loc_to_source_pos(location, &position);
  return position;
}

static void report_in_line(an_error_severity severity, an_error_code code, const char* location) {
  a_source_position position = position_in_line(location);
  pos_diagnostic(severity, code, &position);
}

static void report_pending_backslash() {
  if (!backslash_warning_is_pending)
    return;
  backslash_warning_is_pending = 0;
  pos_warning(ec_not_a_line_splice, &pending_backslash_position);
}

// -- Physical lines -----------------------------------------------------------------------------

// The character that `??c` stands for (C99 5.2.1.1); 0 for none.
static char trigraph_replacement(char c) {
  static const char third[] = "=(/)'<!>-";
  static const char replacement[] = "#[\\]^{|}~";
  const char* place = c != '\0' ? strchr(third, c) : nullptr;
  return place != nullptr ? replacement[place - third] : '\0';
}

// At two question marks: replaces the trigraph, if it is one, and returns true.
static bool copy_trigraph(const char* p, const char* end) {
  char replacement = end - p >= 3 && p[1] == '?' ? trigraph_replacement(p[2]) : '\0';
  if (replacement == '\0')
    return false;
  if (!trigraphs_allowed) {
    if (ignored_trigraph_offset == no_trigraph)
      ignored_trigraph_offset = line_length();
    return false;
  }
  add_orig_line_modif(line_end, olm_trigraph, static_cast<unsigned char>(p[2]));
  *line_end++ = replacement;
  if (check_misra_c_2004)
    report_in_line(misra_required_severity, ec_misra_c_2004_4_2, line_end - 1);
  return true;
}

// Copies text that may hold NULs and trigraphs.
static void copy_with_care(const char* p, const char* end) {
  bool look_for_trigraphs = C_dialect != cd_k_and_r;
  ensure_min_curr_source_line_length(line_length() + 2 * static_cast<size_t>(end - p) +
                                     marker_room);
  while (p < end) {
    if (*p == '?' && look_for_trigraphs && copy_trigraph(p, end)) {
      p += 3;
      continue;
    }
    *line_end++ = *p;
    if (*p++ == '\0') {
      add_orig_line_modif(line_end - 1, olm_nul, 0);
      *line_end++ = lm_nul_character;
    }
  }
}

// Whether a trigraph stands in the line; lines are asked about in their order.
static bool holds_trigraph(a_source_text* text, const char* p, const char* end) {
  while (text->next_trigraph != nullptr && text->next_trigraph < p)
    text->next_trigraph = find_trigraph(text->next_trigraph + 2, text->end);
  return text->next_trigraph != nullptr && text->next_trigraph < end;
}

static void copy_text(a_source_text* text, const char* p, const char* end) {
  size_t size = static_cast<size_t>(end - p);
  if ((text->may_hold_nul && memchr(p, '\0', size) != nullptr) || holds_trigraph(text, p, end)) {
    copy_with_care(p, end);
    return;
  }
  ensure_min_curr_source_line_length(line_length() + size + marker_room);
  memcpy(line_end, p, size);
  line_end += size;
}

void replace_orig_line_text(char* location, size_t length, const char* text, size_t text_length) {
  size_t offset = static_cast<size_t>(location - curr_source_line);
  ensure_min_curr_source_line_length(line_length() - length + text_length + marker_room);
  char* start = curr_source_line + offset;
  char* end = start + length;
  memmove(start + text_length, end, static_cast<size_t>(after_end_of_curr_source_line - end));
  memcpy(start, text, text_length);
  restore_orig_line_modifs(start, end, start + text_length);
  line_end = line_end - length + text_length;
  after_end_of_curr_source_line = line_end + 2;
}

static void count_physical_line() {
  ++seq_number_last_read;
  ++curr_ise->lines_read;
  if (++curr_ise->lines_since_start == curr_ise->next_index_line)
    curr_ise->next_index_line = static_cast<uint32_t>(
        update_file_index(curr_ise->source_file, curr_ise->lines_since_start,
                          static_cast<long>(curr_ise->cursor - curr_ise->text.start)));
}

static bool at_end_of_text() {
  return curr_ise->cursor == curr_ise->text.end;
}

// Adds the next physical line without its newline and the carriage returns
// before it. False when the file ends without a newline.
static bool read_physical_line() {
  count_physical_line();
  const a_source_text& text = curr_ise->text;
  const char* p = curr_ise->cursor;
  const char* newline =
      static_cast<const char*>(memchr(p, '\n', static_cast<size_t>(text.end - p)));
  const char* end = newline != nullptr ? newline : text.end;
  curr_ise->cursor = newline != nullptr ? newline + 1 : text.end;
  while (end > p && end[-1] == '\r')
    end--;
  copy_text(&curr_ise->text, p, end);
  return newline != nullptr;
}

// -- Splices ----------------------------------------------------------------------------

static bool is_white_space(char c) {
  return c == ' ' || c == '\t' || c == '\f' || c == '\v' || c == '\r';
}

// Whether the physical line that begins at `start` goes on in the next one; if
// so, the backslash and what stands behind it are taken off.
static bool remove_splice(const char* start) {
  char* end = line_end;
  while (end > start && is_white_space(end[-1]))
    end--;
  if (end == start || end[-1] != '\\')
    return false;
  char* backslash = end - 1;
  if (end != line_end) {
    if (!gnu_mode) {
      pending_backslash_position = position_in_line(backslash);
      backslash_warning_is_pending = 1;
      return false;
    }
    report_in_line(es_warning, ec_white_space_inside_splice, backslash);
  }
  line_end = backslash;
  return true;
}

static an_error_severity last_line_severity(an_error_severity lenient) {
  return strict_ansi_mode ? strict_ansi_error_severity : lenient;
}

// Adds physical lines as long as each is spliced to the next. Ends with the
// end marker in place.
static void read_spliced_lines() {
  for (;;) {
    size_t start = line_length();
    bool has_newline = read_physical_line();
    if (!has_newline) {
      report_in_line(last_line_severity(es_warning), ec_last_line_incomplete, line_end);
      break;
    }
    if (!remove_splice(curr_source_line + start))
      break;
    if (at_end_of_text()) {
      remove_trigraph_modif_at(line_end);
      report_in_line(gnu_mode ? es_warning : es_error, ec_last_line_backslash, line_end);
      *line_end++ = '\0';
      *line_end++ = lm_newline;
      break;
    }
    add_splice_modif(line_end, seq_number_last_read + 1);
  }
  write_end_marker();
}

// -- Listings ---------------------------------------------------------------------------

// The physical lines between the two places, each behind the letter.
static void write_raw_listing_lines(const char* p, const char* end, char letter) {
  while (p < end) {
    const char* newline = static_cast<const char*>(memchr(p, '\n', static_cast<size_t>(end - p)));
    const char* line_stop = newline != nullptr ? newline : end;
    const char* text_stop = line_stop;
    while (text_stop > p && text_stop[-1] == '\r')
      text_stop--;
    putc(letter, f_raw_listing);
    fwrite(p, 1, static_cast<size_t>(text_stop - p), f_raw_listing);
    putc('\n', f_raw_listing);
    p = newline != nullptr ? newline + 1 : end;
  }
}

void flush_pp_output_of_curr_line() {
  if (!curr_line_is_owed_to_output)
    return;
  curr_line_is_owed_to_output = 0;
  if (generate_pp_output && f_pp_output != nullptr)
    gen_pp_output_for_curr_line();
  if (f_raw_listing != nullptr)
    gen_expanded_raw_listing_output_for_curr_line(source_line_modif_list != nullptr);
  no_token_separators_in_this_line_of_pp_output = no_token_separators_in_pp_output;
}

bool curr_line_is_directive() {
  const char* p = curr_source_line;
  while (is_white_space(*p))
    p++;
  bool is_sharp = *p == '#' || (*p == '%' && p[1] == ':' && alternative_tokens_allowed);
  return is_sharp && !is_double_sharp(p);
}

// -- Logical lines ----------------------------------------------------------------------

static bool holds_multibyte_chars() {
  if (curr_ise->text.is_ascii || !multibyte_chars_in_source_enabled)
    return false;
  for (const char* p = curr_source_line; p < line_end; p++)
    if (static_cast<unsigned char>(*p) >= 0x80)
      return true;
  return false;
}

// Leaves the files that have ended. True at the end of the input, or in a file
// that isn't to be left.
static bool leave_ended_files() {
  while (curr_ise != nullptr && at_end_of_text()) {
    at_end_of_source_file = 1;
    if (curr_ise->stop_at_end_of_file)
      return true;
    pop_input_stack();
  }
  return curr_ise == nullptr;
}

// The end marker of the line becomes a newline, behind which the next physical
// line begins.
static void prepare_to_append() {
  line_end = after_end_of_curr_source_line - 2;
  ensure_min_curr_source_line_length(line_length() + marker_room);
  line_end[1] = lm_newline;
  line_end += 2;
  add_orig_line_modif(line_end, olm_newline, seq_number_last_read + 1);
}

static void read_and_list_lines() {
  const char* start = curr_ise->cursor;
  read_spliced_lines();
  if (f_raw_listing != nullptr)
    write_raw_listing_lines(start, curr_ise->cursor, currently_in_pp_if_skip ? 'S' : 'N');
  if (ignored_trigraph_offset != no_trigraph)
    report_in_line(es_warning, ec_trigraph_ignored, curr_source_line + ignored_trigraph_offset);
  curr_source_line_is_plain = orig_line_modif_list == nullptr && !holds_multibyte_chars();
}

// The characters of which no comment, literal, splice or directive is made,
// whatever stands around them.
static constexpr std::array<bool, 256> idle_chars = [] {
  std::array<bool, 256> table = {};
  for (unsigned char c : std::string_view("\t !&()*+,-.0123456789:;<=>[]^_{|}~"))
    table[c] = true;
  for (unsigned char c = 'a'; c <= 'z'; c++)
    table[c] = table[c - 'a' + 'A'] = true;
  return table;
}();

// Whether the text of the lines goes anywhere but to the scanner.
static bool lines_are_kept() {
  return f_raw_listing != nullptr || (generate_pp_output && f_pp_output != nullptr);
}

void pass_over_comment_lines() {
  if (lines_are_kept())
    return;
  a_source_text* text = &curr_ise->text;
  for (;;) {
    const char* p = curr_ise->cursor;
    const auto* newline =
        static_cast<const char*>(memchr(p, '\n', static_cast<size_t>(text->end - p)));
    if (newline == nullptr || newline + 1 == text->end)
      return;
    size_t length = static_cast<size_t>(newline - p);
    if (memchr(p, '/', length) != nullptr || memchr(p, '\\', length) != nullptr ||
        holds_trigraph(text, p, newline))
      return;
    count_physical_line();
    curr_ise->cursor = newline + 1;
  }
}

// In a group that is skipped most lines mean nothing: they are counted only.
static void pass_over_idle_lines() {
  if (lines_are_kept())
    return;
  const char* end = curr_ise->text.end;
  for (;;) {
    const char* p = curr_ise->cursor;
    while (p < end && idle_chars[static_cast<unsigned char>(*p)])
      p++;
    if (p == end || *p != '\n' || p + 1 == end) // the end of a file is no matter of counting
      return;
    count_physical_line();
    curr_ise->cursor = p + 1;
  }
}

bool read_logical_source_line(bool pop_at_eof, bool append) {
  report_pending_backslash();
  at_end_of_source_file = 0;
  ignored_trigraph_offset = no_trigraph;
  if (curr_ise == nullptr || (!pop_at_eof && at_end_of_text())) {
    at_end_of_source_file = 1;
    return true;
  }
  if (append) {
    prepare_to_append();
    read_and_list_lines();
    return false;
  }
  flush_pp_output_of_curr_line();
  if (currently_in_pp_if_skip)
    pass_over_idle_lines();
  if (leave_ended_files()) {
    curr_seq_number = seq_number_last_read + 1;
    clear_line();
    return true;
  }
  curr_seq_number = seq_number_last_read + 1;
  clear_line();
  read_and_list_lines();
  curr_line_is_owed_to_output = 1;
  do_not_put_curr_line_in_pp_output = currently_in_pp_if_skip || curr_line_is_directive();
  return false;
}

// -- Initialisation ---------------------------------------------------------------------

void source_line_one_time_init() {
  line_capacity = first_line_capacity;
  char* storage = alloc_resizable_buffer(line_capacity + 1);
  storage[0] = ' ';
  curr_source_line = storage + 1;
  clear_line();
}

void source_line_init() {
  clear_source_line_modif_free_lists();
}

void source_line_reset() {
  curr_line_is_owed_to_output = 0;
  backslash_warning_is_pending = 0;
  pos_of_macro_invocation = null_source_position;
  clear_line();
}
