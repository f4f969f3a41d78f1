#include "attribute.h"

bool gnu_attribute_is_supported(const char*) {
  return false;
}

void attribute_one_time_init() {
  // Sorts the table of attributes by name.
}

void attribute_init() {
  // Nothing of this module lives on from an earlier run.
}

void attribute_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
