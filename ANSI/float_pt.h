// The simulated floating point of the target.

#ifndef FLOAT_PT_H
#define FLOAT_PT_H

#include "basics.h"

void float_pt_init();

#endif
