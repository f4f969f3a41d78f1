// Attributes.

#ifndef ATTRIBUTE_H
#define ATTRIBUTE_H

#include "basics.h"

// For __has_attribute: whether the GNU attribute is known.
bool gnu_attribute_is_supported(const char* name);

void attribute_one_time_init();
void attribute_init();
void attribute_trans_unit_init();

#endif
