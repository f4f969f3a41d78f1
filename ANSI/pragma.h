// Pragmas: what each kind is and when it acts, and the records of those that
// wait for a token, a construct or the end of a scope.

#ifndef PRAGMA_H
#define PRAGMA_H

#include "basics.h"
#include "lexical.h"

enum a_pragma_kind_tag : uint8_t {
  pk_none = 0,
  pk_argsused = 3,
  pk_varargs = 4,
  pk_notreached = 5,
  pk_pack = 10,
  pk_once = 11,
  pk_hdrstop = 12,
  pk_no_pch = 13,
  pk_stdc = 15,
  pk_gcc = 17,
  pk_diag_suppress = 18,
  pk_diag_remark = 19,
  pk_diag_warning = 20,
  pk_diag_error = 21,
  pk_diag_once = 22,
  pk_diag_default = 23,
  pk_push_macro = 24,
  pk_pop_macro = 25,
  pk_diag_push = 26,
  pk_diag_pop = 27,
  pk_last = 115
};

// When the action of a pragma runs.
enum a_pragma_binding : uint32_t {
  pragma_binds_to_construct = 1, // the next declaration or statement takes it
  pragma_runs_at_token = 2,
  pragma_runs_at_end_of_directive = 3,
  pragma_runs_at_end_of_scope = 4,
  pragma_runs_while_scanned = 5 // never queued
};

enum a_pragma_flag : uint16_t {
  pragma_may_precede_declaration = 0x0001,
  pragma_may_precede_statement = 0x0002,
  pragma_to_file_scope = 0x0004,
  pragma_add_to_il = 0x0008,
  pragma_keep_text = 0x0010,
  pragma_expand_macros = 0x0020,
  pragma_recognize_keywords = 0x0040,
  pragma_raw_tokens = 0x0080,
  pragma_front_end_only = 0x0100,
  pragma_is_comment = 0x0200, // told by a lint comment, never by a directive
  pragma_allowed_in_operator = 0x0800,
  pragma_header_name_operand = 0x1000
};

struct a_pragma_kind_description {
  a_pragma_kind_description* next;
  a_pragma_kind_tag kind;
  a_pragma_binding binding;
  uint8_t action; // index into function_pointers; 0 none
  uint16_t flags;
  an_error_severity misplaced_severity; // es_suppressed: silence
};
typedef void (*a_pragma_action)(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);

extern a_pragma_kind_description* pragma_kind_descriptions;
extern a_pragma_kind_description* pragma_description_for_pragma_kind[pk_last];
const char* pragma_name(a_pragma_kind_tag kind);

// One use of a pragma.
struct a_pending_pragma {
  a_pending_pragma* next;
  a_pragma_kind_description* description;
  a_token_cache tokens;
  a_source_position name_position;
  a_source_position directive_position;
  uint8_t has_tokens : 1; // they end with the record
  uint8_t from_operator : 1;
  uint8_t immediate_done : 1;
  const char* argument_text;
  a_pragma* il_entry;
  uint16_t extra;
};

// Reads the next token, a pragma's name, and its position; null for a name that
// is no pragma.
a_pragma_kind_description* look_up_pragma_id(a_source_position* position);
// Takes up the pragma whose operands follow, or reports it as unrecognized.
// `from_operator` says that they end with a closing parenthesis.
void record_pragma(a_pragma_kind_description* description,
                   const a_source_position* directive_position,
                   const a_source_position* name_position, bool from_operator);

a_pending_pragma* alloc_pending_pragma(a_pragma_kind_description* description);
inline bool pragma_allowed_in_operators(const a_pragma_kind_description* description) {
  return (description->flags & pragma_allowed_in_operator) != 0;
}
// For a lint comment: a pending pragma of the kind at the current token.
a_pending_pragma* add_curr_token_pseudo_pragma(a_pragma_kind_tag kind,
                                               const a_source_position* position);
// Whether the pragma saves or restores a macro: it acts in every run, and never
// stays in preprocessed output. The description may be null.
inline bool is_macro_stack_pragma(const a_pragma_kind_description* description) {
  return description != nullptr &&
         (description->kind == pk_push_macro || description->kind == pk_pop_macro);
}
void free_pending_pragma(a_pending_pragma* pragma);
void free_pending_pragma_list(a_pending_pragma* pragmas);
a_pending_pragma* make_copy_of_pragma_list(const a_pending_pragma* pragmas);

// At the end of a directive: the actions that don't wait for a token.
void process_immediate_pragmas();
// At a token: the pragmas that wait there.
void process_curr_token_pragmas();
// Where `#pragma STDC` may stand (C99 6.10.6): between external declarations and
// at the start of a block. Obeys those that wait at the current token.
void check_for_stdc_pragmas();
// Whether the comment NOTREACHED stood in front of the current token; it acts once.
bool take_not_reached_pragma();
// Obeys or reports the pragmas that no construct took.
void process_pragmas_at_end_of_source();

// At the end of a scope: a pragma that waited for it, and those that the last
// construct of the scope left behind, which are reported.
void process_c_pragma(a_pending_pragma* pragma);
void end_of_scope_pragma_processing(a_pending_pragma* pragmas);

// The actions, named by index in the kinds' descriptions.
void once_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void hdrstop_or_no_pch_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void stdc_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void push_macro_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void pop_macro_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void gcc_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);

void pragma_one_time_init();
void pragma_init();

#endif
