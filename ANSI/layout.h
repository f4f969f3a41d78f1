// Class and aggregate layout.

#ifndef LAYOUT_H
#define LAYOUT_H

#include "basics.h"

// Gives the fields of a struct or union their offsets, and the type its size
// and alignment (in bytes). The second call on a type does nothing.
void do_class_layout(a_type* class_type);

// The alignment of a field, in bytes, with packing and attributes.
uint32_t alignment_of_field_full(a_field* field, bool for_bit_field);

void layout_one_time_init();
void layout_init();
void layout_trans_unit_init();

#endif
