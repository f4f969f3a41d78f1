#include "interpret.h"

void release_interpreter_arenas() {
  // Nothing is held until the first evaluation.
}

void interpret_one_time_init() {
  // Registers the variables kept for each unit.
}

void interpret_init() {
  // Clears the interpreter state of the run.
}

void interpret_trans_unit_init() {
  // Clears the evaluation stack.
}
