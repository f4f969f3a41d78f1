// External names of entities.

#ifndef LOWER_NAME_H
#define LOWER_NAME_H

#include "basics.h"

struct a_source_correspondence;

// `\u00E9` in the name of an entity becomes `_u00E9`, which every assembler takes. The
// name as written stays for messages.
void rewrite_ucns_in_name(a_source_correspondence* corresp);

// Sets the name linkage that depends on the language.
void init_name_linkage_constants();

// Gives entities their external names, for those known so far.
void do_all_name_mangling();

// Gives the remaining entities their external names.
void do_final_name_mangling();

void lower_name_one_time_init();
void lower_name_init();

#endif
