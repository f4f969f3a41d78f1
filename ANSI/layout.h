// Class and aggregate layout: the offsets of bases and fields, the size and
// alignment of structs, unions and classes, and the state of #pragma pack.

#ifndef LAYOUT_H
#define LAYOUT_H

#include "basics.h"

// Gives the bases and fields of a class their offsets, and the type its size
// and alignment (in bytes). A class whose layout isn't pending is left alone.
// A class above targ_max_class_object_size keeps its last good size and is
// reported once. Bases are placed as the Itanium C++ ABI 2.4 says.
void do_class_layout(a_type* class_type);

// The alignment in bytes of a field, with packing and attributes.
uint32_t alignment_of_field_full(a_field* field, bool for_bit_field);
// The alignment in bytes of a type as a member.
uint32_t field_alignment_for(const a_type* type);

// A class of C++ without data: no fields but bit-fields of width 0, no virtual
// functions or virtual bases, and only empty bases. Its layout must be done.
bool is_empty_class_type(const a_type* type);

// Whether bit-fields of the two types share a container where each container
// has the type of its fields.
bool compatible_ms_bit_field_container_types(const a_type* type1, const a_type* type2);

// A union with the attribute is passed as its first field, which must reach over
// all of it and be passed like an integer; else, with a warning, it loses the
// attribute.
void check_transparent_union(a_type* union_type, const a_source_position* position);

// ---- #pragma pack ----

// The member alignment in force for the class that is about to be defined, and
// for what follows; 0: no limit.
uint16_t current_max_alignment_for_class_members();
uint16_t current_pack_pragma_value();

// Whether a power of two in the target's range of packing alignments; stores it.
bool check_pack_alignment_value(const a_constant* value, uint16_t* out);

struct a_pack_entry;

// What a function's body, which has a state of its own, puts aside.
struct a_pack_alignment_state {
  int32_t max_member_alignment;
  a_pack_entry* stack;
  bool is_saved;
};
// Around the body of a function: its pragmas act on nothing behind it. In the
// definition of a class template nothing is put aside.
void reset_pack_alignment_state(uint16_t value, a_pack_alignment_state* save);
void restore_pack_alignment_state(const a_pack_alignment_state* save);

// #pragma pack
void pack_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);

void layout_one_time_init();
void layout_init();
void layout_trans_unit_init();

// Whether a bit-field of the enum holds a sign: one without negative enumerators
// needs none.
bool enum_bit_field_is_signed(const a_type* enum_type);

#endif
