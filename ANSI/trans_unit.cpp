#include "trans_unit.h"

#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"

#include <cstring>
#include <new>

a_translation_unit* translation_units;
a_translation_unit* curr_translation_unit;
int secondary_trans_units_on_stack;
a_boolean is_primary_translation_unit;
const char* trans_unit_file_name;
a_boolean translation_unit_needed_only_for_exported_templates;

namespace {

// A variable that each unit has its own value of.
struct a_registered_variable {
  a_registered_variable* next;
  void* address;
  size_t size;
  size_t save_area_offset;
  size_t unit_offset; // 0: no pointer in the unit record
};

struct a_trans_unit_stack_entry {
  a_trans_unit_stack_entry* next;
  a_translation_unit* unit;
};

a_registered_variable* registered_variables;
a_registered_variable* last_registered_variable;
size_t save_area_size;

a_translation_unit* last_translation_unit;
a_trans_unit_stack_entry* trans_unit_stack;
a_trans_unit_stack_entry* avail_trans_unit_stack_entries;

bool is_secondary(const a_translation_unit* unit) {
  return unit != translation_units;
}

void store_il_header_words(a_translation_unit* unit) {
  unit->saved_il_header_words[0] = il_header.main_routine;
  unit->saved_il_header_words[1] = il_header.macros;
  unit->saved_il_header_words[2] = il_header.scope_orphaned_lists;
  unit->saved_il_header_words[3] = il_header.secondary_entities;
}

void load_il_header_words(const a_translation_unit* unit) {
  il_header.primary_scope = unit->unit_file_scope;
  il_header.main_routine = static_cast<a_routine*>(unit->saved_il_header_words[0]);
  il_header.macros = static_cast<a_macro*>(unit->saved_il_header_words[1]);
  il_header.scope_orphaned_lists =
      static_cast<a_scope_orphaned_list*>(unit->saved_il_header_words[2]);
  il_header.secondary_entities =
      static_cast<an_il_entity_list_entry*>(unit->saved_il_header_words[3]);
}

// An instantiation sees no directive that stands behind what it is for.
uint32_t limit_of_using_directives() {
  return dependent_name_processing_enabled && depth_innermost_instantiation_scope >= 0
             ? f_get_effective_decl_seq()
             : 0;
}

// A scope knows its depth on the stack only while its unit is current, and its
// directives act only then.
void set_depths_of_open_scopes(bool unit_is_current) {
  set_active_using_list_scope_depths(depth_scope_stack, unit_is_current,
                                     unit_is_current ? limit_of_using_directives() : 0);
  for (int depth = depth_scope_stack; depth >= 0; depth--)
    if (a_scope* scope = scope_stack[depth].il_scope)
      scope->scope_stack_depth = unit_is_current ? depth : -1;
}

void restore_variables(const a_translation_unit* unit) {
  for (a_registered_variable* v = registered_variables; v != nullptr; v = v->next)
    memcpy(v->address, unit->saved_variables + v->save_area_offset, v->size);
}

} // namespace

void f_register_trans_unit_variable(void* variable, size_t size, size_t offset) {
  void* memory = alloc_general(sizeof(a_registered_variable)); // no region exists yet
  a_registered_variable* entry =
      new (memory) a_registered_variable{nullptr, variable, size, save_area_size, offset};
  if (registered_variables == nullptr)
    registered_variables = entry;
  else
    last_registered_variable->next = entry;
  last_registered_variable = entry;
  save_area_size += (size + 7) & ~size_t{7};
}

void fix_up_translation_unit(a_translation_unit* unit) {
  for (a_registered_variable* v = registered_variables; v != nullptr; v = v->next) {
    if (v->unit_offset == 0)
      continue;
    char* copy = unit->saved_variables + v->save_area_offset;
    memcpy(reinterpret_cast<char*>(unit) + v->unit_offset, &copy, sizeof copy);
  }
}

void save_curr_translation_unit() {
  for (a_registered_variable* v = registered_variables; v != nullptr; v = v->next)
    memcpy(curr_translation_unit->saved_variables + v->save_area_offset, v->address, v->size);
  store_il_header_words(curr_translation_unit);
  set_depths_of_open_scopes(false);
}

void switch_translation_unit(a_translation_unit* unit) {
  if (unit == curr_translation_unit)
    return;
  if (curr_translation_unit != nullptr)
    save_curr_translation_unit();
  curr_translation_unit = unit;
  restore_variables(unit);
  compute_il_prefix_size();
  load_il_header_words(unit);
  set_depths_of_open_scopes(true);
}

void push_translation_unit_stack(a_translation_unit* unit) {
  a_trans_unit_stack_entry* entry = avail_trans_unit_stack_entries;
  if (entry != nullptr)
    avail_trans_unit_stack_entries = entry->next;
  else
    entry = static_cast<a_trans_unit_stack_entry*>(
        alloc_in_region(front_end_region, sizeof(a_trans_unit_stack_entry)));
  *entry = {trans_unit_stack, unit};
  trans_unit_stack = entry;
  secondary_trans_units_on_stack += is_secondary(unit);
  switch_translation_unit(unit);
}

void pop_translation_unit_stack() {
  a_trans_unit_stack_entry* entry = trans_unit_stack;
  secondary_trans_units_on_stack -= is_secondary(entry->unit);
  trans_unit_stack = entry->next;
  entry->next = avail_trans_unit_stack_entries;
  avail_trans_unit_stack_entries = entry;
  if (trans_unit_stack != nullptr)
    switch_translation_unit(trans_unit_stack->unit);
}

bool push_translation_unit_if_needed(a_symbol* symbol) {
  a_translation_unit* unit = trans_unit_for_symbol(symbol);
  if (unit == nullptr || unit == curr_translation_unit)
    return false;
  push_translation_unit_stack(unit);
  return true;
}

a_translation_unit* alloc_translation_unit(an_exported_template_file* exported_file) {
  void* memory = alloc_in_region(front_end_region, sizeof(a_translation_unit));
  a_translation_unit* unit = new (memory) a_translation_unit();
  unit->saved_variables = static_cast<char*>(alloc_in_region(front_end_region, save_area_size));
  memset(unit->saved_variables, 0, save_area_size);
  void* block = alloc_in_region(front_end_region, sizeof(a_scope_pointers_block));
  unit->scope_pointers = new (block) a_scope_pointers_block();
  unit->exported_template_file = exported_file;
  unit->is_full_unit = exported_file == nullptr;
  unit->unit_flag = 1;
  fix_up_translation_unit(unit);
  return unit;
}

void enter_translation_unit(a_translation_unit* unit) {
  if (translation_units == nullptr)
    translation_units = unit;
  else
    last_translation_unit->next = unit;
  last_translation_unit = unit;
  curr_translation_unit = unit;
  push_translation_unit_stack(unit);
}

void trans_unit_early_init() {
  registered_variables = nullptr;
  last_registered_variable = nullptr;
  save_area_size = 0;
  f_register_trans_unit_variable(&is_primary_translation_unit, sizeof is_primary_translation_unit,
                                 0);
  f_register_trans_unit_variable(&trans_unit_file_name, sizeof trans_unit_file_name, 0);
  f_register_trans_unit_variable(&translation_unit_needed_only_for_exported_templates,
                                 sizeof translation_unit_needed_only_for_exported_templates, 0);
}

void trans_unit_one_time_init() {
  avail_trans_unit_stack_entries = nullptr;
}

void trans_unit_init() {
  curr_translation_unit = nullptr;
  translation_units = nullptr;
  last_translation_unit = nullptr;
  trans_unit_stack = nullptr;
  secondary_trans_units_on_stack = 0;
}
