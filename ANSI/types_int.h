// What the parts of the types module share.

#ifndef TYPES_INT_H
#define TYPES_INT_H

#include "types.h"

// An array with neither a number, nor a constant, nor an expression as bound.
bool array_has_no_bound(const a_type* array);
// Explicit alignment of a type, in bytes, by an attribute on it or on one of
// its typerefs; 0 for none.
uint32_t explicit_alignment_of_type(const a_type* type);
// Forgets all work that waits for the completion of a type, and with
// `also_free_list` the records for more of it.
void reset_dependent_type_fixups(bool also_free_list);
// Makes the waiting work part of the state of a translation unit and of a
// precompiled header.
void register_dependent_type_fixups();

#endif
