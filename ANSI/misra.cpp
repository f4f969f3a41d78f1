#include "misra.h"

void misra_wrapup() {
  // No finding waits for the end of the unit.
}

void misra_early_init() {
  // No rule is on before the command line is read.
}

void misra_one_time_init() {
  // No variable of this module is kept for each unit.
}
