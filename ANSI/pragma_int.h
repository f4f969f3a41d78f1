// What the files of the pragma module share.

#ifndef PRAGMA_INT_H
#define PRAGMA_INT_H

#include <cstdint>
#include <string>
#include <vector>

#include "il_entry_kinds.h"
#include "pragma.h"

// ---- The framework ----

void run_pragma_action(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
// To the end of the directive.
void skip_operands();
// A copy of the text for as long as the unit lives.
const char* lasting_text(const std::string& text);

// Makes the pragma's entry in the intermediate language: of an entity, of a
// statement or, with iek_none, of a scope, which is the file's if asked for.
// Nothing happens in a scope whose pragmas leave no entry.
void add_pragma_to_il(a_pending_pragma* pragma, an_il_entry_kind kind, void* entity,
                      bool to_file_scope);
// The same if the kind's description says so.
void add_pragma_to_il_if_due(a_pending_pragma* pragma, an_il_entry_kind kind, void* entity);
// The same for a symbol, a statement or, both null, a scope. Nothing is made
// while tokens are cached: they come back.
void create_il_entry_for_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);

void standard_pragmas_init();
void gcc_pragma_init();

// ---- Target pragmas ----

// 1: the form was bad, and the dispatcher is to report it.
typedef int (*a_target_pragma_action)(a_pending_pragma* pragma, a_symbol* symbol,
                                      a_statement* statement);

// The form opened a parenthesis, so that another one is due.
extern bool pragma_has_parens;
// A fault was reported, so that what is left of the pragma is passed over.
extern bool pragma_had_error;

// Reads the end of the operands, and ends the rescanning of the tokens. False,
// after a message, when a closing parenthesis is missing.
bool scan_end_of_pragma();
// Reports a fault; the value is what an action returns then.
int pragma_fault(an_error_code code, const a_source_position* position);
// An integral constant expression; false after a message for none.
bool scan_icon(uint64_t* value);
// A string literal of plain characters; null after a message.
const char* scan_pragma_string();
// The comma behind the symbol, in the form of C.
bool scan_comma_behind_symbol();

bool is_routine(const a_symbol* symbol);
bool is_routine_definition(const a_symbol* symbol);
bool is_file_level_routine(const a_symbol* symbol);
bool is_file_level_variable(const a_symbol* symbol);
bool is_static_storage_variable(const a_symbol* symbol);

// Ends the action with a warning that names the pragma and the symbol.
int pragma_symbol_fault(an_error_code code, const a_pending_pragma* pragma, const a_symbol* symbol);
// Makes the entry, and the record that it is in the intermediate file.
void make_pragma_entry(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement,
                       std::vector<std::string> strings);

#define TARGET_PRAGMA_ACTION(name)                                                                 \
  int name(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement)
TARGET_PRAGMA_ACTION(data_align_pragma);
TARGET_PRAGMA_ACTION(data_section_pragma);
TARGET_PRAGMA_ACTION(code_section_pragma);
TARGET_PRAGMA_ACTION(function_mark_pragma);
TARGET_PRAGMA_ACTION(definition_mark_pragma);
TARGET_PRAGMA_ACTION(interrupt_pragma);
TARGET_PRAGMA_ACTION(near_far_pragma);
TARGET_PRAGMA_ACTION(retain_clink_pragma);
TARGET_PRAGMA_ACTION(weak_pragma);
TARGET_PRAGMA_ACTION(location_pragma);
TARGET_PRAGMA_ACTION(noinit_persistent_pragma);
TARGET_PRAGMA_ACTION(trampoline_pragma);
TARGET_PRAGMA_ACTION(calls_pragma);
TARGET_PRAGMA_ACTION(function_options_pragma);
TARGET_PRAGMA_ACTION(bat_vreg_pragma);
TARGET_PRAGMA_ACTION(owl_reg_pragma);
TARGET_PRAGMA_ACTION(unroll_pragma);
TARGET_PRAGMA_ACTION(must_iterate_pragma);
TARGET_PRAGMA_ACTION(prob_iterate_pragma);
TARGET_PRAGMA_ACTION(no_alias_clone_pragma);
TARGET_PRAGMA_ACTION(loop_mark_pragma);
TARGET_PRAGMA_ACTION(inline_statement_pragma);
#undef TARGET_PRAGMA_ACTION

#endif
