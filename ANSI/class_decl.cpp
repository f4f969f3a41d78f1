#include "class_decl.h"

void check_class_linkage() {
  // Classes of the two old C++ modes only.
}

void class_decl_one_time_init() {
  // Registers the variables kept for each unit.
}

void class_decl_init() {
  // Clears the free lists of parse states.
}

void class_decl_trans_unit_init() {
  // Clears the state of the innermost class definition.
}
