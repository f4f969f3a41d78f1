// Struct, union and class definitions.

#ifndef CLASS_DECL_H
#define CLASS_DECL_H

#include "basics.h"

// Gives classes of the old C++ modes the linkage that their use asks for.
void check_class_linkage();

void class_decl_one_time_init();
void class_decl_init();
void class_decl_trans_unit_init();

#endif
