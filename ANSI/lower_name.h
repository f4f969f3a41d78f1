// External names of entities.

#ifndef LOWER_NAME_H
#define LOWER_NAME_H

#include "basics.h"

// Sets the name linkage that depends on the language.
void init_name_linkage_constants();

// Gives entities their external names, for those known so far.
void do_all_name_mangling();

// Gives the remaining entities their external names.
void do_final_name_mangling();

void lower_name_one_time_init();
void lower_name_init();

#endif
