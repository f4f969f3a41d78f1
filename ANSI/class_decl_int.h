// What the files of the class_decl module share.

#ifndef CLASS_DECL_INT_H
#define CLASS_DECL_INT_H

#include "class_decl.h"
#include "il_types.h"

// The member declarations, up to the `}` that ends the class.
void member_declaration_list(a_type* class_type);

// Whether the unnamed field is an anonymous struct or union.
bool is_anonymous_member(const a_field* field);

// Whether a struct, or a union of them, ends with an array of unknown bound.
bool holds_flexible_array(const a_type* type);

#endif
