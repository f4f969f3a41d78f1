// Statements and function bodies.

#ifndef STATEMENTS_H
#define STATEMENTS_H

#include "basics.h"

// The depth of the statement stack; -1 when it is empty.
extern int depth_stmt_stack;

void statements_one_time_init();
void statements_init();
void statements_trans_unit_init();

#endif
