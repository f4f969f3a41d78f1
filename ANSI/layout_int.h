// What the files of the layout module share: the cursor that moves over the
// class, and the placing of bit-fields and bases.

#ifndef LAYOUT_INT_H
#define LAYOUT_INT_H

#include <map>
#include <vector>

#include "il_types.h"
#include "layout.h"

// An empty subobject of a class; no other of its type may have its address.
typedef std::multimap<uint64_t, const a_type*> an_empty_subobject_map;

// The open container of a run of bit-fields, where containers have the types of
// their fields.
struct an_open_container {
  const a_type* type; // null: none is open
  uint64_t bits_left;
};

struct a_layout_cursor {
  a_type* class_type;
  uint64_t offset;     // bytes
  uint64_t bit_offset; // 0 to targ_char_bit - 1, below offset
  uint64_t class_alignment;
  bool too_large_reported;
  // The farthest end of a union's fields.
  uint64_t largest_offset;
  uint64_t largest_bit_offset;
  // Where the declared containers of the bit-fields end, in bytes.
  uint64_t container_end;
  an_open_container open_container;

  // The farthest end of anything placed: an empty base may lie beyond the
  // cursor, which it doesn't move.
  uint64_t farthest_end;
  // The end of the bases with their tail padding, and the bytes of padding that
  // hold something else.
  uint64_t padded_end;
  uint64_t padding_used;

  // The empty subobjects placed so far, and the greatest size of an empty base:
  // up to there those of other bases and of fields count. 0: none do.
  an_empty_subobject_map empty_subobjects;
  uint64_t empty_subobject_limit;
  uint64_t subobjects_visited;
};

inline uint64_t align_up(uint64_t value, uint64_t alignment) {
  return (value + alignment - 1) / alignment * alignment;
}

a_class_type_supplement* supplement_of_class(const a_type* class_type);
bool is_union(const a_layout_cursor* cursor);
// The packing in force at the class's opening brace; 0: none.
uint32_t pack_alignment_of(const a_type* class_type);
// Whether the field, or its class for all fields, is packed.
bool is_packed_field(const a_field* field);
// What a message names the field by, an unnamed one included.
const a_symbol* symbol_of_field(const a_field* field);

// Reports, once, that the class exceeds the greatest object.
void report_too_large(a_layout_cursor* cursor);
// Moves the cursor to a byte offset; a place beyond the greatest object is
// refused and leaves the cursor where it was.
bool move_to(a_layout_cursor* cursor, uint64_t offset);
void round_up_to_byte(a_layout_cursor* cursor);
bool align_cursor(a_layout_cursor* cursor, uint64_t alignment);
void advance_bits(a_layout_cursor* cursor, uint64_t bits);
void raise_class_alignment(a_layout_cursor* cursor, uint64_t alignment);

void lay_out_bit_field(a_layout_cursor* cursor, a_field* field);
// Moves the cursor over what is left of an open container.
void close_container(a_layout_cursor* cursor);

// The virtual function pointer and the bases that aren't virtual.
void lay_out_nonvirtual_bases(a_layout_cursor* cursor);
void lay_out_virtual_bases(a_layout_cursor* cursor);
// Offsets of the indirect bases, and what the finished layout says of bases.
void finish_bases(a_layout_cursor* cursor);
// Moves the cursor on while an empty subobject at it would share its address
// with another of its type; then the field's own are noted.
void avoid_empty_subobjects(a_layout_cursor* cursor, a_field* field, uint64_t alignment);
// A field was placed at the cursor: does it lie in the padding of a base?
void note_use_of_tail_padding(a_layout_cursor* cursor, const a_field* field);

void register_pack_state();
void init_pack_state(bool new_run);

#endif
