// Initialisers (C99 6.7.8, C++11 8.5).

#ifndef DECL_INITS_H
#define DECL_INITS_H

#include "decl_spec.h"
#include "expr_operand.h"

// Whether an initialiser stands behind the declarator of the type: `=`, braces,
// or parentheses in C++.
bool is_initializer_start(const a_type* type);
// The initialiser of the variable just declared (state->symbol), at its first
// token; sets its init_kind and its initialiser, completes an array of unknown
// bound, and in a function adds the statement.
void initializer(a_decl_parse_state* state);
// No initialiser was written: default initialisation (C++11 8.5 p6).
void def_initializer(a_symbol* symbol, const a_source_position* position);
// Reports an object that must have an initialiser.
// An object of class type without an initialiser, by its default constructor.
void initialize_by_default_constructor(a_symbol* symbol);
void check_for_missing_initializer_full(a_symbol* symbol, a_type* type);

// The braces of a compound literal (C99 6.5.2.5), at `{`: a constant or, with
// a null result, *init is its dynamic initialisation.
a_constant* scan_compound_literal_initializer(a_type** type, bool is_static, a_dynamic_init** init);

// The value of a union whose member `field` has the value of the operand, as the
// braces of a compound literal give it: { .field = operand }.
a_constant* union_value_of_operand(a_type* union_type, const a_field* field,
                                   const an_operand* operand, bool is_static,
                                   a_dynamic_init** init);

// The unnamed object that an initialisation makes where an expression stands; it
// is made anew each time that this is evaluated.
void make_temp_init_operand(a_type* type, a_dynamic_init* init, bool is_lvalue,
                            const a_source_position* position, an_operand* result);

// The object that a list in braces makes for the expression around it (C++11
// 5.2.3 p3, 8.5.4); the list is freed. A list that isn't `is_direct` may not use
// an explicit constructor.
void make_list_operand(an_init_component* list, a_type* type, bool is_direct,
                       const a_source_position* start, an_operand* result);

// What initialises an object of the type, at an expression or, where C++11 has
// it there, at a list in braces (C++11 8.5 p14). An expression that doesn't
// convert is reported under the code.
void scan_initializing_operand(a_type* type, an_error_code code, unsigned flags,
                               an_operand* result);

// ---- Components ----

an_init_component* alloc_init_component(an_init_component_kind kind);
// What isn't read yet of a list is read and dropped.
void free_init_component_list(an_init_component* list);
a_source_position init_component_pos(const an_init_component* component);
// Of an expression, or of a list that has been read to its end.
a_source_position init_component_end_pos(const an_init_component* component);
// An assignment expression or a braced list, at its first token.
an_init_component* scan_init_component();
// At the `{`: the list as far as its first element; the rest is read as the
// list is walked, so that a long list is never in memory at once.
an_init_component* get_braced_init_list();
// Reads a list to its end.
void complete_braced_init_list_parsing(an_init_component* list);

void decl_inits_one_time_init();
void decl_inits_init();
void decl_inits_trans_unit_init();

#endif
