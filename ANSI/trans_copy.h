// Copying the IL of secondary units into the primary one.

#ifndef TRANS_COPY_H
#define TRANS_COPY_H

#include "basics.h"

// Marks what the primary unit refers to in secondary ones.
void mark_secondary_trans_unit_IL_entities_used_from_primary_as_needed();

// Copies the entities that the primary unit needs.
void copy_secondary_trans_unit_IL_to_primary();

void trans_copy_one_time_init();

#endif
