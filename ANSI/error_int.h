// What the files of the diagnostic engine share.

#ifndef ERROR_INT_H
#define ERROR_INT_H

#include <string>

#include "error.h"

// The numbers of the engine's own vocabulary in the catalogue. Labels stand in
// pairs, lower case then upper case.
enum a_vocabulary_code : an_error_code {
  vc_contexts = 455,
  vc_contexts_not_shown = 1226,
  vc_from_translation_unit = 1243,
  vc_at_line = 1732,
  vc_of_file = 1733,
  vc_keyword = 1735,
  vc_macro = 1736,
  vc_label = 1737,
  vc_template_parameter = 1738,
  vc_type = 1739,
  vc_union = 1740,
  vc_class = 1741,
  vc_struct = 1742,
  vc_template_template_parameter = 1743,
  vc_template = 1744,
  vc_class_template = 1745,
  vc_enum = 1746,
  vc_parameter = 1747,
  vc_handler_parameter = 1748,
  vc_variable = 1749,
  vc_nontype = 1750,
  vc_constant = 1751,
  vc_function = 1752,
  vc_overloaded_function = 1753,
  vc_member = 1754,
  vc_field = 1755,
  vc_namespace = 1756,
  vc_named_register = 1757,
  vc_named_address_space = 1758,
  vc_function_template = 1759,
  vc_based_on_argument = 1760,
  vc_based_on_arguments = 1761,
  vc_declared = 1762,
  vc_at_end_of_source_in_parentheses = 1763,
  vc_at_end_of_source = 1764,
  vc_capital_line = 1765,
  vc_line = 1766,
  vc_column = 1767,
  vc_remark = 1768,
  vc_warning = 1770,
  vc_error = 1772,
  vc_catastrophe = 1774,
  vc_command_line_error = 1776,
  vc_internal_error = 1778,
  vc_number_suffix = 1780,
  vc_error_limit_reached = 1782,
  vc_internal_error_loop = 1783,
  vc_loop_in_catastrophe = 1784,
  vc_string = 1812,
  vc_not_a_regular_file = 1973,
  vc_is_a_directory = 1974,
  vc_invalid_file_name = 1975,
  vc_in_file = 2515,
  vc_advice = 2624,
  vc_declared_implicitly = 2682,
  vc_in_predefined_macro_file = 2735,
  vc_command_line_warning = 3017,
  vc_note = 3045,
  vc_variable_template = 3110
};

// The size of the tables that are indexed by number.
inline constexpr int error_table_size = last_error_number + 2;

enum a_diag_kind : int {
  dk_main,   // a diagnostic, or a note that belongs to one
  dk_add_on, // a further line of a diagnostic
  dk_context // a line of the instantiation context
};

enum a_diag_argument_kind : int { dak_number, dak_position, dak_string, dak_symbol, dak_type };

// How a format code wants its argument shown.
struct a_diag_argument_format {
  uint8_t with_signature : 1;        // f
  uint8_t omit_kind_word : 1;        // o
  uint8_t fully_qualified : 1;       // p
  uint8_t type_only : 1;             // t
  uint8_t show_declared_at : 1;      // d
  uint8_t show_template_args : 1;    // a
  uint8_t show_translation_unit : 1; // T
  uint8_t in_quotes : 1;             // q
};

// One argument of a diagnostic.
struct a_diag_argument {
  a_diag_argument_kind arg_kind;
  a_diag_argument* next;
  union {
    long number;
    a_source_position position;
    const char* string;
    const a_symbol* symbol;
    const a_type* type;
  } value;
  char* owned_string; // the copy that `value.string` is, if it is one
  int scope_index;    // the open scope whose template arguments explain a symbol; -1: none
};

struct a_diag_argument_list {
  a_diag_argument* head;
  a_diag_argument* tail;
};

// A position with what a reader is to see of it.
struct a_diag_position {
  a_source_position position;
  a_boolean at_end_of_source;
  const char* file_name;
  uint32_t line;
};

struct a_diagnostic {
  a_diag_kind kind;
  a_diagnostic* next;
  a_diagnostic* parent;
  a_diag_list add_on_list;
  a_diag_list context_list;
  a_diag_list more_info_list;
  a_translation_unit* translation_unit;
  a_diag_position position;
  a_diag_position header_position;
  an_error_code error_code;
  an_error_severity severity;
  a_diag_argument_list args;
};

// -- Records (error_record.cpp) ------------------------------------------------

// Creates an unissued diagnostic; its records go back to the free lists when it
// has been issued.
a_diagnostic* create_diagnostic(an_error_severity severity, an_error_code code,
                                const a_source_position* position);
// Appends a line of `kind` to the list of its parent that holds such lines.
a_diagnostic* create_child_diagnostic(a_diagnostic* parent, a_diag_kind kind, an_error_code code);
void append_diagnostic(a_diag_list* list, a_diagnostic* diag);
void free_diagnostic(a_diagnostic* diag);
void clear_diagnostic_records();
// Gives the diagnostic copies of its argument strings.
void own_argument_strings(a_diagnostic* diag);

void add_argument(a_diagnostic* diag, long number);
void add_argument(a_diagnostic* diag, const a_source_position* position);
void add_argument(a_diagnostic* diag, const char* string);
void add_argument(a_diagnostic* diag, const a_symbol* symbol);
void add_argument(a_diagnostic* diag, const a_type* type);

// -- Severities (error.cpp) ----------------------------------------------------

// What the tables and the source ranges make of a severity up to 9.
an_error_severity severity_at_position(an_error_code code, an_error_severity severity,
                                       const a_source_position* position);
bool number_is_once_only(an_error_code code);
void note_number_issued(an_error_code code);
bool number_was_issued(an_error_code code);
// Saves the override table, and puts the last saved one back as if by pragmas
// at the position; false when none is saved.
void push_severities();
bool pop_severities(const a_source_position* position);

// -- Issuing (error_issue.cpp) -------------------------------------------------

// Filters, writes and counts a diagnostic, and gives its records back. Does not
// return for es_catastrophe and above.
void issue_diagnostic(a_diagnostic* diag);
void clear_issue_state();

// -- Template instantiations (error_context.cpp) ---------------------------------

// Adds the context lines that tell how the instantiations being made came about.
void add_instantiation_context(a_diagnostic* diag);
// Whether the diagnostic was issued at the same place for another instantiation.
bool is_repeat_of_instantiation(const a_diagnostic* diag);
void clear_repeat_table();

// -- Text (error_format.cpp, error_symbol.cpp, error_write.cpp)
// --------------------------------------

// Adds the message of a diagnostic, its format codes replaced.
void format_message(const a_diagnostic* diag, std::string& text);
// Adds "at line 3 of "x.h"" between prefix and suffix; the file only when it
// isn't that of the reference position.
void add_position_to_text(std::string& text, const a_source_position& position,
                          uint32_t reference_seq, const char* prefix, const char* suffix,
                          const char* at_end_text);
bool text_takes_arguments(const char* text);
// Add a type, and a symbol as its format code wants it. `scope_index` is the
// open scope whose template arguments explain the symbol, or -1.
void add_type_to_text(const a_type* type, std::string& text);
void add_symbol_to_text(const a_symbol* symbol, const a_diag_argument_format& format,
                        int scope_index, uint32_t reference_seq, std::string& text);
// The memory of the type printer's buffer ends with the compilation.
void forget_type_buffer();
// Writes a diagnostic with its lines and notes, and counts it.
void write_diagnostic(const a_diagnostic* diag);
// Lays `text` out from `first_indent`, continued at `next_indent`.
void wrap_text(const std::string& text, unsigned first_indent, unsigned next_indent,
               std::string& out);
bool is_continuation_byte(char byte);

// -- Source lines (error_source.cpp) -------------------------------------------------

// The physical line of a sequence number without its newline, as it stands in
// the file; valid until the next call. False when it can't be had.
bool fetch_source_line_for_seq(uint32_t seq, const std::string** line);
void forget_fetched_source_line();
// Adds the line with a caret under the column; nothing if it can't be had.
void add_source_line_and_caret(const a_source_position& position, std::string& text);

#endif
