// Lowering of C99 complex arithmetic.

#ifndef LOWER_C99_H
#define LOWER_C99_H

#include "basics.h"

void lower_c99_one_time_init();
void lower_c99_init();
void lower_c99_trans_unit_init();

#endif
