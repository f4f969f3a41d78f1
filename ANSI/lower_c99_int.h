// Shared by the files of the lowering of C.

#ifndef LOWER_C99_INT_H
#define LOWER_C99_INT_H

#include "lower_c99.h"

// The expression being lowered is evaluated in each turn of a loop.
extern bool loop_repeats_expr;

// A condition as a test against zero, unless it is a truth value already; null for
// null.
an_expr_node* boolean_controlling_expr(an_expr_node* expr);
// Lowers a condition, and makes a truth value of it.
void lower_c99_boolean_controlling_expr(an_expr_node** condition);

#endif
