// Class and aggregate layout: the offsets of fields, the size and alignment of
// structs and unions.

#ifndef LAYOUT_H
#define LAYOUT_H

#include "basics.h"

// Gives the fields of a struct or union their offsets, and the type its size
// and alignment (in bytes). A class whose layout isn't pending is left alone.
// A class above targ_max_class_object_size keeps its last good size and is
// reported once.
void do_class_layout(a_type* class_type);

// The alignment in bytes of a field, with packing and attributes.
uint32_t alignment_of_field_full(a_field* field, bool for_bit_field);
// The alignment in bytes of a type as a member.
uint32_t field_alignment_for(const a_type* type);

// The start, in bits, of the declared container of a bit-field at `bit_start`;
// false when that container would not hold the field.
bool get_container_offset_for_field(uint64_t container_bits, uint64_t alignment_bits,
                                    uint64_t bit_start, uint64_t bit_size, uint64_t* offset);

// #pragma pack in force for the class that is about to be defined; 0: none.
uint16_t current_max_alignment_for_class_members();

void layout_one_time_init();
void layout_init();
void layout_trans_unit_init();

#endif
