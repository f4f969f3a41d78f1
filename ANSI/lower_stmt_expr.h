// Lowering of GNU statement expressions: their statements move in front of the
// statement, and their values go into temporaries.

#ifndef LOWER_STMT_EXPR_H
#define LOWER_STMT_EXPR_H

#include "basics.h"

// Set where one is parsed; as long as it is off, nothing is looked for.
extern a_boolean any_statement_expressions;

// Takes the statement expressions out of the expressions that a statement
// evaluates once. The statements that must run before it are returned, in
// order; null for none.
a_statement* take_statement_expressions_out(a_statement* statement);
// Out of the condition of a loop, and with `is_condition` off out of its
// increment: what must run before each evaluation is attached to the loop.
void loop_serialization_init(a_statement* loop, bool is_condition);

#endif
