#include "lower_c99.h"

void lower_c99_one_time_init() {
  // Registers the variables kept for each unit.
}

void lower_c99_init() {
  // Clears the table of run-time routines.
}

void lower_c99_trans_unit_init() {
  // Clears the routines that the unit has declared.
}
