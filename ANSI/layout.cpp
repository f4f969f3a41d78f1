#include "layout.h"

void layout_one_time_init() {
  // Registers the variables kept for each unit.
}

void layout_init() {
  // Clears the free lists of layout records.
}

void layout_trans_unit_init() {
  // Clears the cache of empty base offsets.
}
