// Declarations (C99 6.7, 6.9): the entities that declarators make or find, and
// the rules by which a new declaration is reconciled with an earlier one.

#ifndef DECLS_H
#define DECLS_H

#include "declarator.h"

// Parses the primary source to its end.
void translation_unit();

// One declaration, at its first token; reads through its `;`, which is the
// current token afterwards when `leave_terminator` is on. Used in blocks and
// for old-style parameters.
void declaration(bool is_file_scope, bool is_old_style_param, bool is_top_level,
                 bool has_extension_prefix, a_func_info_block* param_ids, a_source_range* range);
// A declaration as the first clause of a for statement; the `;` is left.
void for_init_declaration();
void scan_nonmember_declaration(a_decl_parse_state* state, a_source_range* range);
// The variable that a condition declares, in the current scope (C++11 6.4), and
// its initialisation; null after an error.
a_variable* condition_declaration(a_dynamic_init** init);
// The same for a variable of a range-based for, which may have any type.
a_variable* loop_variable_declaration();
// The parameter of a handler, behind the `(` (C++11 15.3), in the current scope.
a_variable* handler_declaration();

enum a_decl_variable_flag : unsigned {
  dvf_declaration = 1,
  dvf_definition = 2,
  dvf_tentative = 512,
  dvf_initialized = 2048
};
void decl_variable(a_symbol_locator* locator, a_decl_parse_state* state, unsigned flags);

enum a_decl_routine_flag : unsigned { drf_declaration = 1, drf_definition = 2, drf_implicit = 128 };
void decl_routine(a_symbol_locator* locator, a_decl_parse_state* state,
                  a_func_info_block* func_info, unsigned flags);
void decl_typedef(a_symbol_locator* locator, a_decl_parse_state* state);
// The implicit declaration, at file scope, of a called name (C89 3.3.2.2).
a_symbol* decl_default_function(a_symbol_locator* locator);

void function_definition(a_symbol_locator* locator, a_decl_parse_state* state,
                         a_func_info_block* func_info);
// Takes the comment ARGSUSED in front of a definition; VARARGS tells nothing.
void record_lint_argsused_and_varargs_state(a_func_info_block* func_info);
void scan_function_body(a_routine* routine, a_func_info_block* func_info);

a_routine* make_routine(a_type* type, a_storage_kind storage, int depth);

// C11 6.7.10 and C++11 7 p4, at the keyword; the `;` is left.
void static_assert_declaration();
// Text for the assembler, at the keyword; the `;` is left. A declaration is
// listed with its scope, a statement is what becomes of the entry.
an_asm_entry* asm_declaration(bool is_statement);
// `asm("name")` behind a declarator, if it is there: noted in the state.
void scan_gnu_asm_name(a_decl_parse_state* state);
// `using name = type`, at the name; the `;` is left (C++11 7.1.3 p2).
void alias_declaration();

// Puts target modifiers of the declaration onto its entity.
void update_variable_decl_modifiers(a_decl_parse_state* state);
void update_routine_decl_modifiers(a_routine* routine, const a_decl_parse_state* state);

// The section of an entity. False when another one was given to it alone before,
// which stays; one that came from a default gives way.
bool set_routine_section_specification(a_routine* routine, a_section_origin origin,
                                       const char* name, const a_source_position* position);
bool set_variable_section_specification(a_variable* variable, a_section_origin origin,
                                        const char* name, const a_source_position* position);
// The section of all functions, or of all objects of static duration, that are
// defined from here on and have none of their own; null: none.
void set_default_section(bool of_routines, const char* name, const a_source_position* position);
void apply_default_section_to_routine(a_routine* routine);
void apply_default_section_to_variable(a_variable* variable);
void clear_default_sections();

// What a C++ unit declares before its first line (C++11 3.7.4 p2, 18.7.1): the
// namespaces std and abi, the class type_info, the allocation functions.
void enter_predeclared_entities();

// Opens the namespaces or the class between the current scope and an entity
// declared outside of its own, or those that a qualifier names; the result is for
// the last.
int push_scopes_of_member(const a_symbol* member);
int push_scopes_of_qualifier(const a_symbol_locator* locator);
void pop_scopes_of_member(int pushed);

void decls_one_time_init();
void decls_init();
void decls_trans_unit_init();

#endif
