// Declarations and the translation unit.

#ifndef DECLS_H
#define DECLS_H

#include "basics.h"

void decls_one_time_init();
void decls_init();
void decls_trans_unit_init();

#endif
