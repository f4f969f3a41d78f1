// The operands of extended asm statements.

#ifndef EXTASM_H
#define EXTASM_H

#include "il_entities.h"

// What follows the text of an asm statement in GNU form, at the first colon:
// output operands, input operands, clobbers and labels.
void asm_operands_spec(an_asm_entry* entry);

void extasm_one_time_init();

#endif
