// References to symbols: marks of use on entities, checks of what may be used,
// and the cross-reference listing.

#ifndef SYMBOL_REF_H
#define SYMBOL_REF_H

#include "basics.h"
#include "symbol_tbl.h"

// What a record of a declaration or reference says, a bit mask.
enum a_symbol_reference_kind : uint32_t {
  srk_declaration = 1u << 0,
  srk_definition = 1u << 1,
  srk_reference = 1u << 2,
  srk_value_read = 1u << 3,
  srk_modified = 1u << 4,
  srk_address_taken = 1u << 5,
  srk_error = 1u << 6, // the operand was dropped
  srk_template_generic = 1u << 13,
  srk_type = 1u << 14,
  srk_instance_declaration = 1u << 15,
  srk_folded = 1u << 16 // the use came to a constant
};

// Each marks the entity, makes the checks of a use, and writes a line of the
// cross-reference when one is wanted. `corresp` is the entity of the symbol or
// null for "as the symbol says".
void record_symbol_declaration(uint32_t kind, a_symbol* symbol, const a_source_position* position,
                               a_source_correspondence* corresp);
void record_symbol_reference(uint32_t kind, a_symbol* symbol, const a_source_position* position,
                             bool evaluated);
void record_symbol_reference_full(uint32_t kind, a_symbol* symbol,
                                  const a_source_position* position,
                                  a_source_correspondence* corresp, bool evaluated);
// Deprecated and deleted entities are reported at their use.
void check_use_of_deprecated_entity(a_symbol* symbol, const a_source_position* position);
void check_use_of_deleted_function(a_symbol* symbol, const a_source_position* position);

// A variable was given a value, or its value was read.
void mark_variable_value_set(a_symbol* symbol);
void mark_variable_value_used(a_symbol* symbol);
// What a reference does with the value of a variable, in the order of the
// source: reports the use of one that can't have a value yet, once.
void note_use_of_value(uint32_t kind, a_symbol* variable, const a_source_position* position);

void symbol_ref_one_time_init();

#endif
