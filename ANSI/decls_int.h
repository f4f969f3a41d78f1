// Shared by the files of declaration processing.

#ifndef DECLS_INT_H
#define DECLS_INT_H

#include "decls.h"

bool is_in_function();
// The depth of the namespace, or of the file scope, that holds what a
// declaration with linkage declares here.
int depth_of_linked_entities();
// Whether what is declared there is known to this unit alone (C++11 3.5 p4).
bool is_in_unnamed_namespace();

// The names that a declaration used before the symbol was known had to wait for
// it; null: it declares nothing.
void check_access_of_declaration(const a_symbol* symbol);

// ---- Earlier declarations ----

// The type check of a redeclaration; true when the new type may stand beside
// the old one.
bool redeclaration_types_are_compatible(a_type* new_type, a_type* old_type);
// The entity's symbol that a declaration in this scope joins: of the scope
// itself or, for a declaration with linkage, of an outer one. Null for none.
a_symbol* find_linked_declaration(a_symbol_locator* locator, bool has_linkage);
// The member that a qualified declarator names; null, with an error locator,
// behind a message. Its namespace must be around the declaration (C++11 8.3 p1).
a_symbol* find_qualified_declaration(a_symbol_locator* locator, bool is_definition);
// The member function that a qualified declarator with the type declares again;
// null, with an error locator, behind a message.
a_symbol* find_member_function_declaration(a_symbol_locator* locator, a_type* type);
// The static data member that a qualified declarator defines; null, with an
// error locator, behind a message.
a_symbol* find_data_member_declaration(a_symbol_locator* locator, bool is_definition);
// The function of a set, or the only one, that has the parameters of the type.
a_symbol* select_overload(a_type* type, a_symbol* symbol);
// Whether a name without linkage stands between here and the file scope.
bool is_hidden_by_local(const a_symbol_locator* locator);
void report_incompatible_redeclaration(const a_source_position* position, a_symbol* symbol);
// C99 6.2.2 p7.
void report_linkage_conflict(const a_source_position* position);
// The severity of a breach of the language that older compilers tolerate.
an_error_severity tolerated_breach_severity();

// Whether the symbol belongs to the current scope or to one inside it.
bool is_declared_within_current_scope(const a_symbol* symbol);

// Whether `= delete` or `= default` follows the declarator of a function.
bool is_definition_by_word();

// ---- Operator functions (decls_operator.cpp) ----

enum an_operator_member_kind : uint8_t { omk_nonmember, omk_nonstatic, omk_static };
// The parameters and the result that a function by the name of an operator must
// have (C++11 3.7.4, 13.5).
void check_operator_function_params(const a_symbol_locator* locator, a_type* type,
                                    an_operator_member_kind member_kind);

// ---- Positions and asm names ----

// Notes the positions of the declaration in the entity.
void update_decl_pos_info(a_source_correspondence* source_corresp, const a_decl_parse_state* state);
// The initialiser or the body has been read.
void note_definition_range(a_source_correspondence* source_corresp,
                           const a_source_position* equals_position, const a_source_range* range);
// Gives the entity the name that stood behind its declarator. `is_redeclared`:
// it was declared before.
void apply_asm_name_to_variable(a_symbol* symbol, a_decl_parse_state* state, bool is_redeclared);
void apply_asm_name_to_routine(a_symbol* symbol, a_decl_parse_state* state, bool is_redeclared);

// ---- Forms of C++ ----

// The namespace of a symbol just entered in the current scope, still closed.
a_namespace* make_namespace(a_symbol* symbol, bool is_inline);

// A namespace, a using-declaration, an alias or a linkage specification with
// braces; false for a declaration with specifiers.
bool is_cplusplus_declaration(a_decl_parse_state* state);
// Behind `using`, at the name of an alias declaration; the `;` is left.
void scan_alias_declaration();
// At `extern "C"` before a declaration: makes that linkage the current one.
void scan_linkage_prefix(a_decl_parse_state* state);

#endif
