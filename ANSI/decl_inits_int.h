// Shared by the files of initialisers: the tree of components that tokens are
// read into, and the walk that matches it against a type.

#ifndef DECL_INITS_INT_H
#define DECL_INITS_INT_H

#include "decl_inits.h"
#include "expr_operand.h"

enum an_init_component_kind : uint16_t {
  ick_expression = 0,
  ick_braced_list = 1,
  ick_designator = 2
};

// A piece of an initialiser, as it was written.
struct an_init_component {
  an_init_component* next;
  an_init_component_kind kind;
  uint16_t parenthesized : 1;
  union {
    an_operand operand;
    struct {
      an_init_component* first;
      a_source_position start_position;
      a_source_position end_position;
    } braced;
    struct {
      a_symbol_header* field_name; // null for an index
      a_constant* index;
      a_constant* range_end; // GNU `[a ... b]`
      a_source_position position;
    } designator;
  } variant;
};

an_init_component* alloc_init_component(an_init_component_kind kind);
void free_init_component_list(an_init_component* list);
a_source_position init_component_pos(const an_init_component* component);
// An assignment expression or a braced list, at its first token.
an_init_component* scan_init_component();

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
