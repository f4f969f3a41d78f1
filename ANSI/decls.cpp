#include "decls.h"

void decls_one_time_init() {
  // Registers the variables kept for each unit.
}

void decls_init() {
  // Clears the free lists of declaration records.
}

void decls_trans_unit_init() {
  // Clears the state of the outermost declaration.
}
