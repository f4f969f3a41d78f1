#include "trans_corresp.h"

void set_trans_unit_correspondences() {
  // A single unit has no counterpart.
}

void set_master_instance_information() {
  // A single unit has no counterpart.
}

void corresp_one_time_init() {
  // Registers the variables kept for each unit.
}

void corresp_init() {
  // Clears the table of corresponding entities.
}

void corresp_trans_unit_init() {
  // Clears the list of pending comparisons.
}
