// The evaluation of constexpr functions at compile time.

#ifndef INTERPRET_H
#define INTERPRET_H

#include "basics.h"

// Returns the memory of the interpreter, if it was ever started.
void release_interpreter_arenas();

void interpret_one_time_init();
void interpret_init();
void interpret_trans_unit_init();

#endif
