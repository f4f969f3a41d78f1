// Initialisers.

#ifndef DECL_INITS_H
#define DECL_INITS_H

#include "basics.h"

void decl_inits_one_time_init();
void decl_inits_init();
void decl_inits_trans_unit_init();

#endif
