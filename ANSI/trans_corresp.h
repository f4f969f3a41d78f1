// The correspondence of entities of several translation units.

#ifndef TRANS_CORRESP_H
#define TRANS_CORRESP_H

#include "basics.h"

// Relates the entities of the current unit to those of earlier ones.
void set_trans_unit_correspondences();

// Makes one instance the master of its counterparts.
void set_master_instance_information();

void corresp_one_time_init();
void corresp_init();
void corresp_trans_unit_init();

#endif
