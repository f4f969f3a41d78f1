// Declaration specifiers.

#ifndef DECL_SPEC_H
#define DECL_SPEC_H

#include "basics.h"

void decl_spec_one_time_init();

#endif
