// Laying a diagnostic out and writing it.

#include <cstring>

#include "cfe.h"
#include "error_int.h"
#include "host_envir.h"
#include "macro.h"
#include "source_file.h"

namespace {

// What belongs to a severity: its label in the catalogue (lower case, the upper
// case follows), the count that it goes to, and its letter in a raw listing.
struct a_severity_description {
  a_vocabulary_code label;
  unsigned long* count;
  char listing_letter;
};

const a_severity_description severity_descriptions[] = {
    {vc_note, nullptr, '?'}, // no diagnostic has the severities 0 and 1
    {vc_note, nullptr, '?'},
    {vc_note, nullptr, '?'},
    {vc_note, nullptr, '?'},
    {vc_remark, &total_remarks, 'R'},
    {vc_remark, &total_remarks, 'R'},
    {vc_warning, &total_warnings, 'W'},
    {vc_advice, &total_remarks, 'A'},
    {vc_command_line_warning, &total_warnings, 'W'},
    {vc_error, &total_errors, 'E'},
    {vc_error, &total_errors, 'E'},
    {vc_catastrophe, &total_catastrophes, 'F'},
    {vc_command_line_error, &total_catastrophes, 'F'},
    {vc_internal_error, &total_catastrophes, 'F'},
};

// The indents of the first line of a text and of its continuation.
struct a_layout {
  unsigned first_indent;
  unsigned next_indent;
};

constexpr unsigned line_width = 79;

// The texts of the diagnostic being written; kept, so that they don't grow anew
// for each.
std::string output_text;
std::string message_text;

a_layout layout_of(const a_diagnostic* diag) {
  switch (diag->kind) {
  case dk_main:
    return {0, 10};
  case dk_context:
    if (diag == diag->parent->context_list.head) {
      return {10, 20};
    }
    return {12, 22};
  case dk_add_on:
    break;
  }
  return {12, 22};
}

// The length in bytes of what fits in `room` columns; a multibyte character
// takes one column.
size_t fitting_length(const std::string& text, size_t start, unsigned room) {
  size_t end = start;
  for (unsigned columns = 0; end < text.size(); ++end) {
    if (!is_continuation_byte(text[end]) && columns++ == room) {
      break;
    }
  }
  return end - start;
}

// A diagnostic about a line behind which the scanner already is names the
// column when its source line can't be shown.
bool column_must_be_told(const a_source_position& position) {
  const std::string* line;
  return position.seq < curr_seq_number && !fetch_source_line_for_seq(position.seq, &line);
}

void add_location(const a_diag_position& where, std::string& text) {
  bool is_standard_input = strcmp(where.file_name, "-") == 0;
  if (is_standard_input) {
    text += error_text(vc_capital_line);
    text += ' ' + std::to_string(where.line);
  } else {
    text += '"';
    text += format_file_name(where.file_name);
    text += '"';
    if (where.line != 0) {
      text += ", ";
      text += error_text(vc_line);
      text += ' ' + std::to_string(where.line);
    }
  }
  if (column_must_be_told(where.position)) {
    text += " (";
    text += error_text(vc_column);
    text += ' ' + std::to_string(where.position.column) + ')';
  }
}

// The place of the diagnostic, its label and, if asked for, its number.
void add_header(const a_diagnostic* diag, std::string& text) {
  const a_diag_position& where = diag->header_position;
  if (processing_predefined_macro) {
    text += error_text(vc_in_predefined_macro_file);
    text += ": ";
  } else if (where.position.seq != 0) {
    if (where.at_end_of_source) {
      text += error_text(vc_at_end_of_source);
    } else {
      add_location(where, text);
    }
    text += ": ";
  }
  bool is_upper_case = where.position.seq == 0;
  text += error_text(severity_descriptions[diag->severity].label + is_upper_case);
  if (display_error_number && diag->error_code != 0) {
    text += " #" + std::to_string(diag->error_code);
    if (diag->severity <= es_discretionary_error) {
      text += error_text(vc_number_suffix);
    }
  }
  text += ": ";
}

// One line of a diagnostic for the raw listing. A line or a note that belongs
// to another diagnostic has the letter of that one, in lower case.
void write_raw_listing_line(const a_diagnostic* diag, const std::string& message) {
  const a_diagnostic* owner = diag->parent ? diag->parent : diag;
  char letter = severity_descriptions[owner->severity].listing_letter;
  if (diag->parent && letter != '?') {
    letter = static_cast<char>(letter - 'A' + 'a');
  }
  const a_diag_position& where = diag->kind == dk_main ? diag->position : owner->position;
  if (where.position.seq == 0) {
    fprintf(f_raw_listing, "%c \"\" 0 0 ", letter);
  } else {
    fprintf(f_raw_listing, "%c \"%s\" %u %d ", letter, format_file_name(where.file_name),
            where.line, where.position.column);
  }
  if (diag->severity == es_internal_error) {
    fputs("(internal error) ", f_raw_listing);
  }
  fprintf(f_raw_listing, "%s\n", message.c_str());
}

void add_diagnostic(const a_diagnostic* diag, std::string& out);

void add_diagnostics(const a_diag_list& list, std::string& out) {
  for (const a_diagnostic* diag = list.head; diag; diag = diag->next) {
    add_diagnostic(diag, out);
  }
}

// Adds a text, with its header for a diagnostic of its own, to the output.
void add_text(const a_diagnostic* diag, std::string& out) {
  message_text.clear();
  if (diag->kind == dk_main) {
    add_header(diag, message_text);
    if (unsigned long* count = severity_descriptions[diag->severity].count) {
      ++*count;
    }
  }
  size_t header_length = message_text.size();
  format_message(diag, message_text);
  a_layout layout = layout_of(diag);
  wrap_text(message_text, layout.first_indent, layout.next_indent, out);
  if (f_raw_listing) {
    write_raw_listing_line(diag, message_text.substr(header_length));
  }
}

void add_diagnostic(const a_diagnostic* diag, std::string& out) {
  add_text(diag, out);
  if (diag->kind != dk_main) {
    return;
  }
  add_diagnostics(diag->add_on_list, out);
  if (!brief_diagnostics && diag->position.position.seq != 0 && !diag->position.at_end_of_source) {
    add_source_line_and_caret(diag->position.position, out);
  }
  if (diag->severity == es_note) {
    return; // a part of the text that it belongs to
  }
  add_diagnostics(diag->more_info_list, out);
  add_diagnostics(diag->context_list, out);
  if (!brief_diagnostics) {
    out += '\n';
  }
}

} // namespace

bool is_continuation_byte(char byte) {
  return (byte & 0xC0) == 0x80;
}

void wrap_text(const std::string& text, unsigned first_indent, unsigned next_indent,
               std::string& out) {
  size_t start = 0;
  unsigned indent = first_indent;
  out.append(indent, ' ');
  while (!brief_diagnostics && !do_not_wrap_diagnostics) {
    size_t length = fitting_length(text, start, line_width - indent);
    if (start + length == text.size()) {
      break;
    }
    size_t blank = text.rfind(' ', start + length);
    bool cut_at_blank = blank != std::string::npos && blank > start;
    size_t end = cut_at_blank ? blank : start + length;
    out.append(text, start, end - start);
    out += '\n';
    start = end + cut_at_blank;
    indent = next_indent;
    out.append(indent, ' ');
  }
  out.append(text, start, std::string::npos);
  out += '\n';
}

void write_diagnostic(const a_diagnostic* diag) {
  output_text.clear();
  add_diagnostic(diag, output_text);
  fputs(output_text.c_str(), f_error);
  fflush(f_error);
}
