#include "il.h"

#include "il_alloc.h"
#include "il_constants.h"
#include "il_statements.h"
#include "mode_words.h"
#include "source_file.h"
#include "symbol_tbl.h"
#include "trans_unit.h"
#include "types.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

an_il_header il_header;
an_orphaned_entry_list orphaned_file_scope_il_entries[last_il_entry_kind + 1];
static_assert(sizeof orphaned_file_scope_il_entries == 1200);
int32_t curr_il_region_number;
a_boolean okay_to_eliminate_unneeded_il_entries;
int32_t curr_fp_contract_state;
int32_t curr_fenv_access_state;
int32_t curr_cx_limited_range_state;
uint8_t default_routine_name_linkage;

namespace {

constexpr int32_t pragma_state_at_start = 3;

// What every head starts as; made once.
a_source_correspondence source_corresp_template;

} // namespace

// --- Regions.

void switch_il_region(int32_t region) {
  curr_il_region_number = region;
}

void switch_to_file_scope_region(int32_t* saved) {
  *saved = 0;
  if (curr_il_region_number == file_scope_region_number)
    return;
  *saved = curr_il_region_number;
  curr_il_region_number = file_scope_region_number;
}

void switch_back_to_original_region(int32_t saved) {
  if (saved != 0)
    curr_il_region_number = saved;
}

a_scope* new_file_scope(int32_t scope_number) {
  curr_il_region_number = file_scope_region_number;
  a_scope* scope = alloc_scope(sk_file, scope_number);
  il_header.region_scope_table[file_scope_region_number] = scope;
  return scope;
}

a_scope* new_function_scope(int32_t scope_number, a_routine* routine, int32_t region) {
  int32_t number = new_function_def_number();
  if (region == 0) {
    region = new_memory_region();
    routine->owns_region = 1;
  }
  curr_il_region_number = region;
  a_scope* scope = alloc_scope(sk_function, scope_number);
  scope->assoc.routine = routine;
  il_header.function_def_table[number] = {scope, region};
  routine->function_def_number = number;
  routine->region_number = region;
  a_scope*& head = il_header.region_scope_table[region];
  scope->next = head;
  if (head != nullptr)
    head->prev = scope;
  head = scope;
  return scope;
}

// --- The common head.

void init_source_correspondence(a_source_correspondence* source_corresp) {
  *source_corresp = source_corresp_template;
}

a_source_correspondence* source_corresp_for_il_entry(void* entry, an_il_entry_kind kind) {
  switch (kind) {
  case iek_constant:
  case iek_type:
  case iek_variable:
  case iek_field:
  case iek_routine:
  case iek_label:
  case iek_namespace:
  case iek_asm_entry:
  case iek_template:
  case iek_macro:
  case iek_template_param:
    return static_cast<a_source_correspondence*>(entry);
  default:
    return nullptr;
  }
}

void break_source_corresp(a_source_correspondence* source_corresp) {
  source_corresp->symbol = nullptr;
  source_corresp->name = nullptr;
  source_corresp->source_name = nullptr;
  source_corresp->trans_unit_corresp = nullptr;
  source_corresp->parent_scope = nullptr;
  source_corresp->decl_position_supplement = nullptr;
  source_corresp->name_reference = nullptr;
  source_corresp->external_name_id = 0;
  source_corresp->template_entity = nullptr;
  source_corresp->access = as_public;
  source_corresp->needed = 0;
  source_corresp->is_class_member = 0;
  source_corresp->name_is_lowered = 0;
  source_corresp->is_externalized = 0;
  source_corresp->is_global_name = 0;
  source_corresp->is_unnamed = 0;
}

void break_instance_source_corresp(a_source_correspondence* source_corresp) {
  source_corresp->decl_position_supplement = nullptr;
  source_corresp->name_reference = nullptr;
  source_corresp->needed = 0;
}

void break_constant_source_corresp(a_constant* constant) {
  if (constant->kind == con_template_param) {
    switch (constant->value.template_param.param_kind) {
    case tpck_invalid:
    case tpck_param_ref:
    case tpck_proxy_nontype:
    case tpck_type:
      break_instance_source_corresp(&constant->source_corresp);
      return;
    default:
      break;
    }
  }
  break_source_corresp(&constant->source_corresp);
}

void set_source_corresp(a_source_correspondence* source_corresp, a_symbol* symbol) {
  source_corresp->symbol = symbol;
  source_corresp->position = symbol->position;
  source_corresp->name = symbol->header->identifier;
}

a_namespace* f_skip_namespace_aliases(a_namespace* namespace_entry) {
  while (namespace_entry->is_alias)
    namespace_entry = namespace_entry->variant.aliased;
  return namespace_entry;
}

a_scope* scope_of_namespace(a_namespace* namespace_entry) {
  return f_skip_namespace_aliases(namespace_entry)->variant.scope;
}

a_type* class_of_member(const a_source_correspondence* source_corresp) {
  const a_scope* parent = source_corresp->parent_scope;
  return source_corresp->is_class_member && parent != nullptr ? parent->assoc.type : nullptr;
}

a_scope* scope_for_routine_or_null(const a_routine* routine) {
  if (routine->function_def_number == 0 || mem_region_table[routine->region_number] == nullptr)
    return nullptr;
  return il_header.function_def_table[routine->function_def_number].scope;
}

a_scope* scope_for_routine(const a_routine* routine) {
  return scope_for_routine_or_null(routine);
}

// --- Variables, routines, fields.

void set_variable_address_taken(a_variable* variable) {
  variable->address_taken = 1;
  if (variable->storage_kind == sc_register)
    variable->address_taken_of_register = 1;
}

void set_routine_address_taken(a_routine* routine) {
  routine->address_taken = 1;
}

void set_routine_special_kind(a_routine* routine, a_routine_special_kind kind) {
  routine->special_kind = kind;
  routine->special_data.words[0] = 0;
  routine->special_data.words[1] = 0;
}

void set_inline_flag(a_routine* routine, bool is_inline) {
  routine->is_inline = is_inline;
}

a_field* next_initializable_field(a_field* field) {
  while (field != nullptr && field->is_bit_field && field->source_corresp.is_unnamed)
    field = field->next;
  return field;
}

bool is_main_function(const a_routine* routine) {
  const a_source_correspondence& head = routine->source_corresp;
  if (head.is_class_member ||
      (head.parent_scope != nullptr && head.parent_scope->kind == sk_namespace))
    return false;
  const char* name = head.name_is_lowered ? head.source_name : head.name;
  return name != nullptr && strcmp(name, "main") == 0;
}

// --- Life cycle.

void rebuild_structures_on_il_read() {
  rebuild_seq_number_lookup();
}

void il_one_time_init() {
  f_register_trans_unit_variable(&curr_il_region_number, sizeof curr_il_region_number, 0);
  f_register_trans_unit_variable(&okay_to_eliminate_unneeded_il_entries,
                                 sizeof okay_to_eliminate_unneeded_il_entries, 0);
  f_register_trans_unit_variable(orphaned_file_scope_il_entries,
                                 sizeof orphaned_file_scope_il_entries,
                                 offsetof(a_translation_unit, orphaned_entries));
  f_register_trans_unit_variable(&curr_object_lifetime, sizeof curr_object_lifetime, 0);
  f_register_trans_unit_variable(&curr_fp_contract_state, sizeof curr_fp_contract_state, 0);
  f_register_trans_unit_variable(&curr_fenv_access_state, sizeof curr_fenv_access_state, 0);
  f_register_trans_unit_variable(&curr_cx_limited_range_state, sizeof curr_cx_limited_range_state,
                                 0);
  source_corresp_template = {};
  source_corresp_template.position = null_source_position;
  source_corresp_template.name_hash_index = -1;
  default_routine_name_linkage = in_cplusplus_mode() ? nlk_cplusplus : nlk_c;
  il_alloc_one_time_init();
  types_one_time_init();
  il_constants_one_time_init();
}

void il_init() {
  il_alloc_init();
  il_header.source_files = nullptr;
  il_header.primary_scope = nullptr;
  il_header.main_routine = nullptr;
  il_header.il_version = nullptr;
  il_header.compilation_time = nullptr;
  il_header.macros = nullptr;
  il_header.scope_orphaned_lists = nullptr;
  il_header.secondary_entities = nullptr;
  il_header.seq_lookup_entries = nullptr;
  il_header.num_seq_lookup_entries = 0;
}

void il_trans_unit_init() {
  il_alloc_trans_unit_init();
  curr_il_region_number = 0;
  curr_object_lifetime = nullptr;
  okay_to_eliminate_unneeded_il_entries = remove_unneeded_entities;
  curr_fp_contract_state = pragma_state_at_start;
  curr_fenv_access_state = pragma_state_at_start;
  curr_cx_limited_range_state = pragma_state_at_start;
  std::fill(std::begin(orphaned_file_scope_il_entries), std::end(orphaned_file_scope_il_entries),
            an_orphaned_entry_list{nullptr, nullptr});
  types_trans_unit_init();
  il_constants_trans_unit_init();
  begin_marking_for_trans_unit();
}
