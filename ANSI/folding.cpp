#include "folding.h"

void folding_one_time_init() {
  // Registers the variables kept for each unit.
}

void folding_init() {
  // Clears the work constants.
}

void folding_trans_unit_init() {
  // Clears the caches of folded values.
}
