// The checks of the MISRA-C:2004 rules.

#ifndef MISRA_H
#define MISRA_H

#include "basics.h"

// Reports what only the whole unit can show.
void misra_wrapup();

void misra_early_init();
void misra_one_time_init();

#endif
