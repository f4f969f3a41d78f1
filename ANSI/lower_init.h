// Lowering of initialisations that run: each becomes assignments.

#ifndef LOWER_INIT_H
#define LOWER_INIT_H

#include "basics.h"

// An initialisation statement whose aggregate holds values that are known at
// run time only becomes a block: the constant part of the object in one step,
// and an assignment for each of the other values.
void lower_nonconstant_aggregate(a_statement* statement);

#endif
