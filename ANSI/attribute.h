// Attributes.

#ifndef ATTRIBUTE_H
#define ATTRIBUTE_H

#include "basics.h"

void attribute_one_time_init();
void attribute_init();
void attribute_trans_unit_init();

#endif
