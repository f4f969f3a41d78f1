// Lambda expressions (C++11 5.1.2): closure classes, and the captures by which
// a body reaches what is around it.

#ifndef LAMBDA_H
#define LAMBDA_H

#include "expr_operand.h"

// At the `[`.
void scan_lambda(an_operand* result);

// While the initialiser of a placeholder type is read for its type, lambdas may
// stand in it, and are kept for when it is read again. Returns the former state.
bool set_lambda_prescan(bool is_prescanning);

// Notes the field or the parameter whose initialiser is read from here on, to
// which its lambdas belong; returns the former one. Null: they belong to the
// function at hand.
void* set_initialized_entity(void* entity);
// Names the closures of a field's initialiser after it, those in the default
// arguments of a function after the function.
void set_parent_field_for_closure_types(a_field* field);
void set_parent_entity_for_closure_types(a_routine* routine);

// Whether the innermost function is the body of a lambda.
bool in_lambda_body();
// The body's way to a variable of a function around it: the member of the closure
// that a capture makes. False when the variable is one of the body's own, or its
// value alone is wanted; true with an error operand after a message.
bool make_captured_variable_operand(a_symbol* symbol, an_operand* result);
// The same for the member of a closure that an init-capture names.
bool make_init_capture_operand(a_symbol* symbol, an_operand* result);
// Whether a body at the current place has `this`, or may capture it.
bool may_capture_this();
// Whether a variable is an integral constant or a constexpr reference, which are
// known without their object.
bool is_constant_variable(a_variable* variable);

// The pointer to function that a closure without captures converts to, when it
// has the wanted type; false with nothing reported otherwise.
bool convert_closure_to_pointer(an_operand* operand, a_type* type);
// Whether the function at hand has the type that its return statements say: a
// lambda that states none (p4).
bool returns_deduced_type();
// The type that the operand of a return statement is converted to there. The first
// one gives it; another one of another type is refused.
a_type* deduce_return_type(an_operand* operand);

void lambda_init();

#endif
