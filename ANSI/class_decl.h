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

// An anonymous union outside of a class, behind its specifiers: declares the object
// without a name, and its members as names of the current scope (C++11 9.5 p5).
void declare_anonymous_union_object(a_decl_parse_state* state);
// The object of the anonymous union in which the field lies; null for a field that
// lies in none.
a_variable* anonymous_union_object_around(const a_field* field);

// Scans what waited for the outermost class: default arguments, exception
// specifications, field initialisers, bodies; nothing while a class is open.
void process_deferred_class_fixups_and_instantiations();

// Whether the type is that of a class with pure virtual functions.
bool is_abstract_class_type(const a_type* type);
// Reports `code`, whose text ends with a colon, with the pure virtual functions
// of the abstract class.
void abstract_class_diagnostic(an_error_code code, a_type* class_type,
                               const a_source_position* position);

// No parameter and no result of a function is an object of an abstract class.
void check_abstract_types_of_function(a_type* type, const a_source_position* position);

// Gives classes of the old C++ modes the linkage that their use asks for.
void check_class_linkage();

// At the end of a body in C++: builds the virtual destructors that the classes
// declared in it need. `scope` is null for a block without declarations.
void generate_required_virtual_destructor_bodies(a_scope* scope);

// ---- Special member functions (C++11 12) ----

enum a_special_member_kind : uint8_t {
  smk_default_constructor = 0,
  smk_copy_constructor = 1,
  smk_move_constructor = 2,
  smk_copy_assignment = 3,
  smk_move_assignment = 4,
  smk_destructor = 5
};
inline constexpr int num_special_member_kinds = 6;

// Whether a routine is one, by its parameters; *qualifiers are those of the
// objects that it copies.
bool is_default_constructor(const a_routine* routine);
bool is_copy_constructor(const a_routine* routine, a_type_qualifier_set* qualifiers);
bool routine_is_move_constructor(const a_routine* routine);
bool is_copy_assignment_operator_type(const a_type* type, const a_type* class_type,
                                      a_type_qualifier_set* qualifiers);
bool is_assignment_operator_for_copy(const a_routine* routine, a_type_qualifier_set* qualifiers);
bool routine_is_move_assignment_operator(const a_routine* routine);
// The function that serves for an object of the class: of a copy or a move, for
// a source with the qualifiers. Null for none, and for several alike.
a_routine* special_member_of_class(a_type* class_type, a_special_member_kind kind,
                                   a_type_qualifier_set source_qualifiers);
// The initialisation of an object or an array of the class, by its default
// constructor; null when that does nothing, an error constant after a message.
a_dynamic_init* default_constructor_init(a_type* type, const a_source_position* position);
// Whether objects of the class, which may be qualified, can be copied from here.
bool is_copyable_class(a_type* class_type);
// Works out the exception specification of an implicit function (C++11 15.4 p14).
void resolve_indeterminate_exception_specification(a_routine* routine);
// Settles whether a complete class is a literal type (C++11 3.9 p10).
void set_literal_type_flag(a_type* class_type);

void class_decl_one_time_init();
void class_decl_init();
void class_decl_trans_unit_init();

#endif
