#include "trans_corresp.h"

void set_trans_unit_correspondences() {
  // A single unit has no counterpart.
}

void set_master_instance_information() {
  // A single unit has no counterpart.
}

void corresp_one_time_init() {
  // No variable of this module is kept for each unit.
}

void corresp_init() {
  // Nothing of this module lives on from an earlier run.
}

void corresp_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
