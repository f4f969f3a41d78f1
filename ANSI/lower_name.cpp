#include "lower_name.h"

void init_name_linkage_constants() {
  // C has a single name linkage.
}

void do_all_name_mangling() {
  // C names stand as written.
}

void do_final_name_mangling() {
  // C names stand as written.
}

void lower_name_one_time_init() {
  // No variable of this module is kept for each unit.
}

void lower_name_init() {
  // Nothing of this module lives on from an earlier run.
}
