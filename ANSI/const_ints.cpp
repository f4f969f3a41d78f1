#include "const_ints.h"

void const_ints_init() {
  // Computes the limits of the integer kinds.
}
