// Laying a diagnostic out and writing it.

#include <cstdio>

#include "error_int.h"

namespace {

// What belongs to a severity: its label in the catalogue (lower case, the upper
// case follows), the count that it goes to, and its letter in a raw listing.
struct a_severity_description {
  a_vocabulary_code label;
  unsigned long* count;
  char listing_letter;
};

const a_severity_description severity_descriptions[] = {
    {vc_error, nullptr, '?'},
    {vc_error, nullptr, '?'},
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

// The indents of the first line and of its continuation.
struct a_layout {
  unsigned first_indent;
  unsigned next_indent;
};

constexpr unsigned line_width = 79;

a_layout layout_of(const a_diagnostic* diag) {
  switch (diag->kind) {
  case dk_main:
    return {0, 10};
  case dk_context:
    if (diag == diag->parent->context_list.head) {
      return {10, 20};
    }
    return {12, 22};
  default:
    return {12, 22};
  }
}

bool is_continuation_byte(char byte) {
  return (byte & 0xC0) == 0x80;
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

} // namespace

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

namespace {

void add_header(const a_diagnostic* diag, std::string& text) {
  const a_severity_description& description = severity_descriptions[diag->severity];
  if (diag->header_position.position.seq != 0) {
    text += error_text(vc_capital_line);
    text += ' ' + std::to_string(diag->header_position.line) + ": ";
    text += error_text(description.label);
  } else {
    text += error_text(description.label + 1);
  }
  if (display_error_number && diag->error_code != 0) {
    text += " #" + std::to_string(diag->error_code);
    if (diag->severity <= es_discretionary_error) {
      text += error_text(vc_number_suffix);
    }
  }
  text += ": ";
}

void add_diagnostic(const a_diagnostic* diag, std::string& out) {
  std::string text;
  if (diag->kind == dk_main) {
    add_header(diag, text);
    if (unsigned long* count = severity_descriptions[diag->severity].count) {
      ++*count;
    }
  }
  format_message(diag, text);
  a_layout layout = layout_of(diag);
  wrap_text(text, layout.first_indent, layout.next_indent, out);
  for (const a_diagnostic* line = diag->add_on_list.head; line; line = line->next) {
    add_diagnostic(line, out);
  }
  for (const a_diagnostic* note = diag->more_info_list.head; note; note = note->next) {
    add_diagnostic(note, out);
  }
  for (const a_diagnostic* line = diag->context_list.head; line; line = line->next) {
    add_diagnostic(line, out);
  }
}

} // namespace

void write_diagnostic(a_diagnostic* diag) {
  std::string out;
  add_diagnostic(diag, out);
  fputs(out.c_str(), stderr);
  fflush(stderr);
}
