#include "trans_copy.h"

void mark_secondary_trans_unit_IL_entities_used_from_primary_as_needed() {
  // Only secondary units have such entities.
}

void copy_secondary_trans_unit_IL_to_primary() {
  // Only secondary units have such entities.
}

void trans_copy_one_time_init() {
  // No variable of this module is kept for each unit.
}
