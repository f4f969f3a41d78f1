// Preprocessing directives: reading one, the stack of conditionals, skipped
// groups, #include, #line and the rest, and the run that only preprocesses.

#ifndef PREPROC_H
#define PREPROC_H

#include "basics.h"
#include "lexical.h"

// An open conditional.
struct a_pp_if_stack_entry {
  a_source_position position; // of the #if
  bool else_seen;
};

// Index of the innermost open conditional, and of the innermost one that was
// open when the current file began; -1 for none.
extern int pp_if_stack_depth;
extern int base_pp_if_stack_depth;

// A message about the directive was given: none about extra text follows.
extern a_boolean some_error_in_curr_directive;
extern a_boolean no_token_separators_in_this_line_of_pp_output;
// The sequence number that the preprocessed output has reached.
extern uint32_t next_seq_in_pp_output;

enum a_directive_kind : uint8_t {
  dk_if = 0,
  dk_ifdef = 1,
  dk_ifndef = 2,
  dk_elif = 3,
  dk_else = 4,
  dk_endif = 5,
  dk_include = 6,
  dk_define = 7,
  dk_undef = 8,
  dk_line = 9,
  dk_error = 10,
  dk_pragma = 11,
  dk_null = 12,
  dk_digit_sequence = 13, // # 123 "file"
  dk_include_next = 14,
  dk_warning = 15,
  dk_unknown = 16
};

// All the work for one directive line; the scanner stands behind the `#`.
void pp_directive();

// Reads a header name in any of its three forms as the current token. False,
// when there's none.
bool get_header_name();
// The name in the current header name or string token, without its delimiters,
// NUL-terminated; valid until the next call.
const char* extract_header_name(bool process_escapes, size_t* length);
// A replacement for the header name just read; null in this configuration.
const char* check_for_include_alias();

// Whether a file may leave conditionals open and end those of the file that
// included it, as in K&R C and where a rule of its own reports it.
bool conditionals_may_span_files();
// Reports the conditionals of the current file that are still open.
void verify_that_all_pp_ifs_were_closed();
void process_macro_preincludes();

// The run that only preprocesses: reads all tokens. Output is written as lines
// are read.
void cpp_driver();

// The constant expression of #if and #elif, in the target's widest integers
// (C99 6.10.1). False after a fault, which has been reported. The newline token
// is the current one afterwards, or the first that doesn't belong.
bool scan_pp_expression(a_constant* result);

void preproc_one_time_init();
void preproc_trans_unit_init();
void preproc_init();

#endif
