#include "def_arg.h"

void def_arg_one_time_init() {
  // No variable of this module is kept for each unit.
}

void def_arg_init() {
  // Nothing of this module lives on from an earlier run.
}
