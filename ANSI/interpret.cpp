#include "interpret.h"

void release_interpreter_arenas() {
  // Nothing is held until the first evaluation.
}

bool interpret_dynamic_init(const a_dynamic_init* init, a_constant** value) {
  *value = constant_value_of_dynamic_init(init);
  return *value != nullptr;
}

void interpret_one_time_init() {
  // No variable of this module is kept for each unit.
}

void interpret_init() {
  // Nothing of this module lives on from an earlier run.
}

void interpret_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
