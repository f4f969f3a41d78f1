// Translation units: the record of each, the variables that are kept for each
// by copying, and the stack of units being worked on.

#ifndef TRANS_UNIT_H
#define TRANS_UNIT_H

#include "basics.h"

#include <cstddef>

struct an_exported_template_file;
struct an_orphaned_entry_list;

struct a_translation_unit {
  a_translation_unit* next; // in order of creation
  a_scope* unit_file_scope;
  char* saved_variables;                  // save area of the registered variables
  a_scope_pointers_block* scope_pointers; // the tails of the file scope's lists
  a_source_file* primary_source_file;
  void* saved_il_header_words[4]; // list heads swapped with words of il_header
  an_exported_template_file* exported_template_file;
  uint8_t is_full_unit; // made without an exported template file
  uint8_t unit_flag;
  int32_t file_scope_region;
  an_orphaned_entry_list* orphaned_entries; // the unit's saved copy of the orphaned lists
};

extern a_translation_unit* translation_units; // the head is the primary unit
extern a_translation_unit* curr_translation_unit;
extern int secondary_trans_units_on_stack;

// Per-unit variables.
extern a_boolean is_primary_translation_unit;
extern const char* trans_unit_file_name;
extern a_boolean translation_unit_needed_only_for_exported_templates;

// Makes the `size` bytes at `variable` part of the state of each unit. With an
// offset that isn't 0, a pointer to the variable's copy in the save area is
// also kept at that offset of the unit record. To be called at one-time init.
void f_register_trans_unit_variable(void* variable, size_t size, size_t offset);

// Reads one source file as a unit. The primary unit is the first; a secondary
// one may be read only for the exported templates of `exported_file`.
void process_translation_unit(const char* file_name, bool is_primary,
                              an_exported_template_file* exported_file);

// Makes a record for a unit, with room for its variables.
a_translation_unit* alloc_translation_unit(an_exported_template_file* exported_file);

// Adds the unit to the list of units and to the unit stack; it becomes current
// with the variables as they are.
void enter_translation_unit(a_translation_unit* unit);

// Makes the unit current, saving and restoring the registered variables.
void switch_translation_unit(a_translation_unit* unit);

// Saves the current unit's variables without making another unit current.
void save_curr_translation_unit();

void push_translation_unit_stack(a_translation_unit* unit);
void pop_translation_unit_stack();

// Pushes the unit of the symbol when it isn't the current one; true if so.
bool push_translation_unit_if_needed(a_symbol* symbol);

// Fills in the pointers of the unit record to its registered variables.
void fix_up_translation_unit(a_translation_unit* unit);

void trans_unit_early_init();
void trans_unit_one_time_init();

// Forgets all units.
void trans_unit_init();

#endif
