// Shared by the files of initialisers: the tree of components that tokens are
// read into, and the walk that matches it against a type.

#ifndef DECL_INITS_INT_H
#define DECL_INITS_INT_H

#include "decl_inits.h"
#include "expr_operand.h"

struct an_init_state {
  bool constant_required;
  bool contains_nonconstant; // some element needs run-time work
  bool error_reported;
};

// Walks `list` against `type`; what it takes is unlinked from the list. An
// array type of unknown bound is completed. Null after an error.
a_constant* init_element(an_init_component** list, a_type** type, an_init_state* state);
// The same for a whole object, which takes braces when it is an aggregate.
a_constant* init_object(an_init_component** list, a_type** type, an_init_state* state);
// The literal of a string component, or null.
const a_constant* string_literal_of_component(const an_init_component* component);
// The conversion of an expression to the type that it initialises. The result
// is a constant; one of kind con_dynamic_init for a value of run time.
a_constant* convert_initializer(an_init_component* component, a_type* type, an_init_state* state);

#endif
