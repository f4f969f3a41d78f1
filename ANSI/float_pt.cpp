#include "float_pt.h"

void float_pt_init() {
  // Computes the limits of the float kinds.
}
