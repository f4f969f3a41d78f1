// Default arguments.

#ifndef DEF_ARG_H
#define DEF_ARG_H

#include "basics.h"

void def_arg_one_time_init();
void def_arg_init();

#endif
