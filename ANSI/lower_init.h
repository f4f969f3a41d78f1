// Lowering of initialisations that run: each becomes assignments.

#ifndef LOWER_INIT_H
#define LOWER_INIT_H

#include "basics.h"

// An initialisation statement whose aggregate holds values that are known at
// run time only becomes a block: the constant part of the object in one step,
// and an assignment for each of the other values.
void lower_nonconstant_aggregate(a_statement* statement);
// The object of a compound literal becomes a variable. A constant value is
// assigned by a statement that waits for insert_pending_stmk_init_statements;
// in an expression that a loop repeats, and where values of run time are in it,
// the expression itself assigns it.
void lower_temp_init(an_expr_node* expr, bool in_loop);
// The value of a constant static of the function, made for the aggregate.
an_expr_node* static_copy_of(a_constant* value);
// Puts the waiting initialisations before a statement.
void insert_pending_stmk_init_statements(a_statement* statement);

// The initialisations that wait for the statement at hand.
extern a_statement* pending_stmk_init_statements;

#endif
