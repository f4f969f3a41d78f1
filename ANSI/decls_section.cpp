// The sections of functions and of objects: one a pragma or an attribute gives
// to an entity, and the defaults for all definitions that follow.

#include <cstring>

#include "decls.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "symbol_tbl.h"

static a_section_info default_section_of_routines;
static a_section_info default_section_of_variables;

static bool set_section(a_section_info** place, const a_source_correspondence* owner,
                        const a_section_info* wanted) {
  const a_section_info* present = *place;
  if (present != nullptr && present->origin == so_declaration)
    return strcmp(present->text, wanted->text) == 0;
  a_section_info* section =
      static_cast<a_section_info*>(alloc_il_like_owner(sizeof(a_section_info), owner));
  *section = *wanted;
  *place = section;
  return true;
}

bool set_routine_section_specification(a_routine* routine, a_section_origin origin,
                                       const char* name, const a_source_position* position) {
  a_section_info wanted = {origin, name, *position};
  return set_section(&routine->section_info, &routine->source_corresp, &wanted);
}

bool set_variable_section_specification(a_variable* variable, a_section_origin origin,
                                        const char* name, const a_source_position* position) {
  a_section_info wanted = {origin, name, *position};
  return set_section(&variable->section_info, &variable->source_corresp, &wanted);
}

// ---- Defaults ----

void set_default_section(bool of_routines, const char* name, const a_source_position* position) {
  (of_routines ? default_section_of_routines : default_section_of_variables) = {so_default, name,
                                                                                *position};
}

// One that the entity was given alone stays, without a word.
static bool takes_default_section(const a_section_info* present) {
  return present == nullptr || present->origin == so_default;
}

void apply_default_section_to_routine(a_routine* routine) {
  if (default_section_of_routines.text != nullptr && takes_default_section(routine->section_info))
    set_section(&routine->section_info, &routine->source_corresp, &default_section_of_routines);
}

void apply_default_section_to_variable(a_variable* variable) {
  if (default_section_of_variables.text != nullptr &&
      takes_default_section(variable->section_info) && variable->storage_kind < sc_auto)
    set_section(&variable->section_info, &variable->source_corresp, &default_section_of_variables);
}

void clear_default_sections() {
  default_section_of_routines = default_section_of_variables = {};
}
