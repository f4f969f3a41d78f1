// Constant folding.

#ifndef FOLDING_H
#define FOLDING_H

#include "basics.h"

void folding_one_time_init();
void folding_init();
void folding_trans_unit_init();

#endif
