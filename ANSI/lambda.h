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

// Whether the innermost function is the body of a lambda.
bool in_lambda_body();
// The body's way to a variable of a function around it: the member of the closure
// that a capture makes. False when the variable is one of the body's own, or its
// value alone is wanted; true with an error operand after a message.
bool make_captured_variable_operand(a_symbol* symbol, an_operand* result);
// `this` of the function around the lambda; true as above.
bool make_captured_this_operand(an_operand* result);

// The pointer to function that a closure without captures converts to, when it
// has the wanted type; false with nothing reported otherwise.
bool convert_closure_to_pointer(an_operand* operand, a_type* type);
// The type of the first return statement is that of a lambda without one (p4).
a_type* deduce_return_type_of_lambda(an_operand* operand);

#endif
