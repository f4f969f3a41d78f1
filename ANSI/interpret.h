// The evaluation of constexpr functions at compile time.

#ifndef INTERPRET_H
#define INTERPRET_H

#include "il_statements.h"

// Returns the memory of the interpreter, if it was ever started.
void release_interpreter_arenas();

// The constant that an initialisation comes down to when it is evaluated. False,
// with nothing reported, when it has none.
bool interpret_dynamic_init(const a_dynamic_init* init, a_constant** value);

void interpret_one_time_init();
void interpret_init();
void interpret_trans_unit_init();

#endif
