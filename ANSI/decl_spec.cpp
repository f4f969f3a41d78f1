#include "decl_spec.h"

void decl_spec_one_time_init() {
  // Registers the variables kept for each unit.
}
