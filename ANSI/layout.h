// Class and aggregate layout.

#ifndef LAYOUT_H
#define LAYOUT_H

#include "basics.h"

void layout_one_time_init();
void layout_init();
void layout_trans_unit_init();

#endif
