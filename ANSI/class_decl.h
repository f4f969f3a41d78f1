// Struct, union and class definitions.

#ifndef CLASS_DECL_H
#define CLASS_DECL_H

#include "decl_spec.h"

// A struct, union or class specifier (C99 6.7.2.1), at the keyword; the error
// type after an error.
a_type* class_specifier(a_decl_parse_state* state);

// The unnamed field of a class in whose anonymous struct or union a field that
// lookup found in the class lies; null when it is a member of the class itself.
a_field* anonymous_field_around(const a_field* field, const a_type* class_type);

// Scans what waited for the outermost class: default arguments, exception
// specifications, field initialisers, bodies; nothing while a class is open.
void process_deferred_class_fixups_and_instantiations();

// Gives classes of the old C++ modes the linkage that their use asks for.
void check_class_linkage();

// At the end of a body in C++: builds the virtual destructors that the classes
// declared in it need. `scope` is null for a block without declarations.
void generate_required_virtual_destructor_bodies(a_scope* scope);

void class_decl_one_time_init();
void class_decl_init();
void class_decl_trans_unit_init();

#endif
