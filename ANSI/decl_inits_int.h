// Shared by the files of initialisers: the tree of components that tokens are
// read into, and the walk that matches it against a type.

#ifndef DECL_INITS_INT_H
#define DECL_INITS_INT_H

#include "decl_inits.h"
#include "error.h"
#include "expr_operand.h"

// The state of the walk over one initialiser.
struct an_init_state {
  a_constant* result_constant;
  a_dynamic_init* result_dynamic_init;
  a_type* enclosing_type; // the innermost aggregate being initialised
  const a_symbol* symbol; // of the variable; null for an object without a name
  uint32_t constant_required : 1;
  uint32_t constant_wanted : 1;      // constexpr
  uint32_t is_static : 1;            // the object has static duration
  uint32_t is_list_init : 1;         // list initialisation of C++11
  uint32_t is_direct_list : 1;       // without a `=` before the braces
  uint32_t is_parenthesized : 1;     // `T x(value)`
  uint32_t contains_nonconstant : 1; // some element needs run-time work
  uint32_t error_reported : 1;
  uint32_t designator_used : 1;
  uint32_t is_scalar_zero : 1;  // the innermost list in braces is `{0}`
  uint32_t flexible_member : 1; // the next object is a flexible array member
  uint32_t enclosing_is_outermost_union : 1;
  uint32_t is_condition : 1;     // the variable is declared in a condition
  uint32_t has_overlaps : 1;     // some element goes on with one that was given before
  uint32_t in_range_element : 1; // within the element that stands for a whole range
  uint32_t depth;                // of aggregates within one another
  // Designators of what follows the element of a range: it belongs to the last
  // element alone.
  an_init_component* behind_range;
};

// Where an aggregate's walk stands. Positions count array elements, and the
// fields that can be initialised.
struct an_aggregate_walk {
  a_type* type; // of the aggregate, without typerefs
  a_constant* aggregate;
  uint64_t position;      // of the next element
  uint64_t next_in_order; // the position behind the last element stored
  uint64_t limit;         // the number of elements; UINT64_MAX: unknown bound
  uint64_t greatest;      // one above the greatest position stored
  a_field* field;         // at `position`, of a struct or union
  a_field* last_field;    // the one before it
  bool has_braces;
  bool is_outermost; // the whole object, or the member of a union that is
};

// ---- Components ----

// A list in braces that is read to its end.
an_init_component* get_whole_braced_init_list();
// An assignment expression, or a list as far as its first element.
an_init_component* scan_partial_init_component();
// What takes the place of a continuation: the next element with its
// designators, or null at the end of the list.
an_init_component* get_continued_elem(an_init_component* continuation);
// The first component of a list, which is read on if need be; null at its end.
an_init_component* first_init_component(an_init_component** list);
// Unlinks and frees the first component, read to its end.
void drop_first_init_component(an_init_component** list);
// How many components have been taken from lists so far.
extern uint64_t number_of_dropped_init_components;
// The literal of a string component, or null.
bool is_string_literal_component(const an_init_component* component, const a_constant** literal);
bool is_error_component(const an_init_component* component);

// ---- Messages, of which an initialiser gets one ----

void init_error(an_error_code code, const a_source_position* position, an_init_state* state);
void init_type_error(an_error_code code, const a_source_position* position, a_type* type,
                     an_init_state* state);
void init_feature_error(const char* construct, const a_source_position* position,
                        an_init_state* state);
// Reports what no object is left for, unless an error has been reported.
void report_excess_components(an_init_component** list, an_init_state* state);

// ---- The walk ----

// Walks `list` against `type`; what it takes is unlinked from the list. An
// array type of unknown bound is completed. Null after an error.
a_constant* init_element(an_init_component** list, a_type** type, an_init_state* state);
// The same for a whole object, which takes braces when it is an aggregate.
a_constant* init_object(an_init_component** list, a_type** type, an_init_state* state);
// A braced list against an aggregate, and an aggregate whose braces were left
// out: it takes what it needs of the list around it.
a_constant* braced_aggregate(an_init_component** list, a_type** type, an_init_state* state);
a_constant* unbraced_aggregate(an_init_component** list, a_type** type, an_init_state* state);
// Takes the designator at the head of the list; `count` is the number of
// elements that it names.
bool apply_designator(an_aggregate_walk* walk, an_init_component** list, uint64_t* count,
                      an_init_state* state);

// ---- Values ----

// The conversion of an expression to the type that it initialises. The result
// is a constant; one of kind con_dynamic_init for a value of run time.
a_constant* convert_initializer(an_init_component* component, a_type* type, an_init_state* state);
// The value of `{}` for a type that is no aggregate (C++11 8.5 p7).
a_constant* value_initialized_scalar(a_type* type, const a_source_position* position,
                                     an_init_state* state);
// An expression of the struct's own type initialises it as a whole (C99 6.7.8
// p13).
bool whole_aggr_class_init_possible(const an_init_component* component, a_type* type);
// The string literal that initialises a whole array, with or without braces;
// *is_parenthesized says that the literal stands in parentheses. Null for none.
const a_constant* whole_array_init_possible(const an_init_component* component, const a_type* array,
                                            bool* is_parenthesized);
// Whether a literal can initialise an array of the type (C99 6.7.8 p14, p15);
// *too_long: it has characters that don't fit.
bool check_string_constant_initializer_full(const a_type* array, const a_constant* literal,
                                            bool* too_long);
// The array's value; the type of an array of unknown bound becomes complete.
a_constant* string_initializer(const a_constant* literal, a_type** type,
                               const a_source_position* position);

#endif
