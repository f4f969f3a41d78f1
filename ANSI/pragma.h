// Pragmas.

#ifndef PRAGMA_H
#define PRAGMA_H

#include "basics.h"

// Obeys or reports the pragmas that no construct took.
void process_pragmas_at_end_of_source();

void pragma_one_time_init();
void pragma_init();

#endif
