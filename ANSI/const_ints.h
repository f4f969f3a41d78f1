// Exact integers of the target.

#ifndef CONST_INTS_H
#define CONST_INTS_H

#include "basics.h"

void const_ints_init();

#endif
