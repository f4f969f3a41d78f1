// The operands of extended asm statements.

#ifndef EXTASM_H
#define EXTASM_H

#include "basics.h"

void extasm_one_time_init();

#endif
