// Text output of the preprocessor: the preprocessed source, the raw listing
// and the list of macros.

#ifndef PP_OUTPUT_H
#define PP_OUTPUT_H

#include "basics.h"

#include <string>

// Writes a directive that tells the line and file of the next line to be read,
// or of the current one.
void gen_pp_line_info(bool at_next_line);
// The same for the raw listing; `mark` is '1' at the start of an included file,
// '2' on the return to its parent, and a blank elsewhere.
void gen_rlisting_line_info(char mark);

// Writes the current logical line as it stands after replacement.
void gen_pp_output_for_curr_line();
// Writes a pragma before the current line, in which it stands among the arguments
// of a macro; what is behind the word "pragma" comes with its leading blank.
void gen_pp_output_for_pragma_in_arguments(const std::string& operands);
// Writes the current line's expanded form to the raw listing, if it differs.
void gen_expanded_raw_listing_output_for_curr_line(bool has_modifs);

// One line of the dependency list, for a file that is entered.
void write_dependency_line(const char* file_name);
// One line of the include trace; the nesting depth of a file that the primary
// one includes is 1.
void write_include_trace_line(const char* file_name, int depth);

// Closes the raw listing; a fatal diagnostic ends it too. A catastrophe when it
// could not be written.
void finish_raw_listing_file();

// Writes each macro of the unit as a #define directive to f_pp_output.
void gen_pp_output_for_macro_definitions();

#endif
