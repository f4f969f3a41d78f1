#include "decl_inits.h"

void decl_inits_one_time_init() {
  // Registers the variables kept for each unit.
}

void decl_inits_init() {
  // Clears the free lists of initialiser components.
}

void decl_inits_trans_unit_init() {
  // Clears the current initialiser.
}
