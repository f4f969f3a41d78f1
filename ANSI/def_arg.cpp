#include "def_arg.h"

void def_arg_one_time_init() {
  // Registers the variables kept for each unit.
}

void def_arg_init() {
  // Clears the list of default arguments that wait for the end of a class.
}
