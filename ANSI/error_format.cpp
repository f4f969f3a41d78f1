// The message of a diagnostic: the catalogue text with its format codes
// replaced by the arguments.

#include <cctype>
#include <cstring>

#include "error_int.h"
#include "host_envir.h"
#include "source_file.h"

namespace {

// A format code behind its percent sign.
struct a_format_code {
  char kind_letter;
  int ordinal; // which argument of the kind, from 1
  a_diag_argument_format format;
};

// The terms that the two managed dialects spell differently: the number of the
// first spelling, which is also the term in the brackets; the next number is
// the second spelling's.
constexpr an_error_code first_dialect_term = 2665;
constexpr an_error_code last_dialect_term = 2677;

// Sets the flags of one option letter.
void read_option_letter(char letter, a_format_code* code) {
  switch (letter) {
  case 'a':
    code->format.show_template_args = true;
    break;
  case 'd':
    code->format.show_declared_at = true;
    break;
  case 'f':
    code->format.with_signature = true;
    break;
  case 'o':
    code->format.omit_kind_word = true;
    break;
  case 'p':
    code->format.fully_qualified = true;
    break;
  case 'q':
    code->format.in_quotes = true;
    break;
  case 't':
    code->format.type_only = true;
    break;
  case 'T':
    code->format.show_translation_unit = true;
    break;
  default:
    break;
  }
}

// Reads the code at `text`, which follows the percent sign or the opening
// brace; returns the place behind it.
const char* read_format_code(const char* text, a_format_code* code) {
  *code = a_format_code{};
  code->ordinal = 1;
  code->kind_letter = *text++;
  for (; isalnum(static_cast<unsigned char>(*text)); ++text) {
    if (isdigit(static_cast<unsigned char>(*text))) {
      code->ordinal = *text - '0';
    } else {
      read_option_letter(*text, code);
    }
  }
  return text;
}

a_diag_argument_kind argument_kind_for_letter(char letter) {
  switch (letter) {
  case 'n':
    return dak_symbol;
  case 'p':
    return dak_position;
  case 's':
    return dak_string;
  case 't':
    return dak_type;
  default:
    return dak_number;
  }
}

const a_diag_argument* find_argument(const a_diagnostic* diag, a_diag_argument_kind kind,
                                     int ordinal) {
  for (const a_diag_argument* argument = diag->args.head; argument; argument = argument->next) {
    if (argument->arg_kind == kind && --ordinal == 0) {
      return argument;
    }
  }
  return nullptr;
}

// Adds the argument that the code asks for; one that the call site left out
// adds nothing.
void add_formatted_argument(const a_diagnostic* diag, const a_format_code& code,
                            std::string& text) {
  const a_diag_argument* argument =
      find_argument(diag, argument_kind_for_letter(code.kind_letter), code.ordinal);
  if (!argument) {
    return;
  }
  switch (argument->arg_kind) {
  case dak_number:
    text += std::to_string(argument->value.number);
    break;
  case dak_position:
    add_position_to_text(text, argument->value.position, diag->position.position.seq, "", "",
                         error_text(vc_at_end_of_source_in_parentheses));
    break;
  case dak_string:
    if (code.format.in_quotes) {
      text += '"';
    }
    text += argument->value.string;
    if (code.format.in_quotes) {
      text += '"';
    }
    break;
  case dak_symbol:
    add_symbol_to_text(argument->value.symbol, code.format, argument->scope_index,
                       diag->position.position.seq, text);
    break;
  case dak_type:
    add_type_to_text(argument->value.type, text);
    break;
  }
}

// Adds the present dialect's spelling of the term behind "%[" and returns the
// place behind its bracket.
const char* add_dialect_term(const char* term, std::string& text) {
  size_t length = strcspn(term, "]");
  for (an_error_code code = first_dialect_term; code <= last_dialect_term; code += 2) {
    const char* spelling = error_text(code);
    if (strlen(spelling) == length && strncmp(spelling, term, length) == 0) {
      text += spelling;
      break;
    }
  }
  return term[length] ? term + length + 1 : term + length;
}

} // namespace

void format_message(const a_diagnostic* diag, std::string& text) {
  const char* format = error_text(diag->error_code);
  while (*format) {
    if (*format != '%') {
      text += *format++;
      continue;
    }
    ++format;
    if (*format == '%') {
      text += *format++;
    } else if (*format == '[') {
      format = add_dialect_term(format + 1, text);
    } else if (*format) {
      bool in_braces = *format == '{';
      a_format_code code;
      format = read_format_code(format + in_braces, &code);
      if (in_braces && *format == '}') {
        ++format;
      }
      add_formatted_argument(diag, code, text);
    }
  }
}

void add_position_to_text(std::string& text, const a_source_position& position,
                          uint32_t reference_seq, const char* prefix, const char* suffix,
                          const char* at_end_text) {
  const char* file = nullptr;
  const char* reference_file = nullptr;
  uint32_t line = 0;
  a_boolean at_end = false;
  conv_seq_to_file_and_line(position.seq, &file, nullptr, &line, &at_end);
  if (at_end) {
    text += at_end_text;
    return;
  }
  conv_seq_to_file_and_line(reference_seq, &reference_file, nullptr, nullptr, nullptr);
  text += prefix;
  if (line != 0) {
    text += error_text(vc_at_line) + std::to_string(line);
  }
  bool is_other_file =
      file && strcmp(file, "-") != 0 && (!reference_file || strcmp(file, reference_file) != 0);
  if (is_other_file) {
    text += error_text(line != 0 ? vc_of_file : vc_in_file);
    text += '"';
    text += format_file_name(file);
    text += '"';
  }
  text += suffix;
}

bool text_takes_arguments(const char* text) {
  while ((text = strchr(text, '%'))) {
    if (text[1] != '%') {
      return true;
    }
    text += 2;
  }
  return false;
}
