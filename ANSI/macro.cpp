// Definitions of macros.

#include "macro.h"

int macro_depth;
int num_macro_invocations_in_process;

void macro_one_time_init() {}

void macro_trans_unit_init() {}

void macro_init() {
  num_macro_invocations_in_process = 0;
}
