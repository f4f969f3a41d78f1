// Private to the directives.

#ifndef PREPROC_INT_H
#define PREPROC_INT_H

#include "lexical_int.h"
#include "preproc.h"

// Passes the rest of the directive's line.
void skip_rest_of_directive();
// Reports text that stands behind a complete directive, at the severity of the
// directives that look for it themselves, and passes it.
void check_for_end_of_directive();
// The same for all other directives, behind whose operands the first token has
// been read.
void end_directive_line();

// Whether the directive stands in the arguments of a macro, whose line goes on
// behind it.
inline bool is_inside_argument_list() {
  return line_end_action == lea_append;
}

// The conditional directives; the scanner stands behind the directive's name.
void proc_if(const a_source_position& position);
void proc_ifdef(bool is_ifndef, const a_source_position& position);
void proc_elif();
void proc_else();
void proc_endif();

void proc_include(bool from_next_directory);
// `has_token` says that the line number is the current token: `# 33 "a.h"`.
void proc_line(bool has_token);

a_directive_kind classify_directive();
// A directive other than a conditional one: the file is no guarded one.
void leave_include_guard();

void preproc_if_trans_unit_init();

#endif
