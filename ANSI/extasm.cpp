#include "extasm.h"

void extasm_one_time_init() {
  // Registers the variables kept for each unit.
}
