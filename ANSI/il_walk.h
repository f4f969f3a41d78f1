// The generic walk over the intermediate language: every entry that a starting
// point leads to is visited once. Instead of a side table the walk uses a flag
// in each entry's prefix whose meaning alternates between walks.

#ifndef IL_WALK_H
#define IL_WALK_H

#include "il_entities.h"

struct an_il_walk_callbacks {
  // Called for each entry when its fields have been walked.
  void (*entry)(void* entry, an_il_entry_kind kind);
  // Called with each text field; the length includes the terminator.
  const char* (*text)(const char* text, an_il_entry_kind kind, uint64_t length);
  // Called with each pointer field, before the entry that it leads to.
  void* (*pointer)(void* pointer, an_il_entry_kind kind);
  // Called instead of `pointer` for the links and heads of lists.
  void* (*list)(void* pointer, an_il_entry_kind kind);
  // Called first for each entry; true ends the visit of that entry.
  bool (*filter)(void* entry, an_il_entry_kind kind);
  // The filter turns away the types that are needed and kept already: it isn't
  // asked about them.
  bool passes_over_kept_types = false;
};

// The value of an entry's visited_flag that means: visited in this walk.
extern uint8_t flag_value_meaning_visited;

// Each may have null callbacks. With `clear_front_end_fields` the fields that
// have no meaning outside the front end are nulled.
void walk_file_scope_il(const an_il_walk_callbacks& callbacks, bool clear_front_end_fields);
void walk_routine_scope_il(int32_t region, const an_il_walk_callbacks& callbacks,
                           bool clear_front_end_fields);
void walk_il_subtree(void* entry, an_il_entry_kind kind, const an_il_walk_callbacks& callbacks);

void il_walk_init();

#endif
