#include "extasm.h"

void extasm_one_time_init() {
  // No variable of this module is kept for each unit.
}
