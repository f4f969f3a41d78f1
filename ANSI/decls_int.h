// Shared by the files of declaration processing.

#ifndef DECLS_INT_H
#define DECLS_INT_H

#include "decls.h"

bool is_in_function();
// The type check of a redeclaration; true when the new type may stand beside
// the old one.
bool redeclaration_types_are_compatible(a_type* new_type, a_type* old_type);
// The entity's symbol that a declaration in this scope joins: of the scope
// itself or, for a declaration with linkage, of an outer one. Null for none.
a_symbol* find_linked_declaration(a_symbol_locator* locator, bool has_linkage);
// Whether a name without linkage stands between here and the file scope.
bool is_hidden_by_local(const a_symbol_locator* locator);
void report_incompatible_redeclaration(const a_source_position* position, a_symbol* symbol);

#endif
