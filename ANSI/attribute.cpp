#include "attribute.h"

bool gnu_attribute_is_supported(const char*) {
  return false;
}

void attribute_one_time_init() {
  // Sorts the table of attributes by name.
}

void attribute_init() {
  // Clears the free lists of attributes.
}

void attribute_trans_unit_init() {
  // Clears the attributes that wait for a declaration.
}
