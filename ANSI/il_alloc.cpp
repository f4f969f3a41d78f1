#include "il_alloc.h"

#include "if_tags.h"
#include "il.h"
#include "il_constants.h"
#include "mode_words.h"
#include "pragma.h"
#include "source_file.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"

uint8_t initial_value_for_il_lowering_flag;

namespace {

constexpr uint64_t function_prefix_size = 8;
constexpr uint64_t primary_prefix_size = 16;
constexpr uint64_t secondary_prefix_size = 24;
constexpr int32_t primary_file_scope_region = 1;

// Prefix size of file-scope entries of the current translation unit.
uint64_t file_scope_prefix_size = primary_prefix_size;

// Records to use again; each translation unit has its own.
a_template_arg* available_template_args;
a_constant* available_local_constants;

void set_flags(void* entry, bool file_scope) {
  il_entry_prefix_of(entry).file_scope_entry = file_scope;
  il_entry_prefix_of(entry).secondary_trans_unit_entry = !is_primary_translation_unit;
  il_entry_prefix_of(entry).visited_flag = 0;
  il_entry_prefix_of(entry).il_lowering_flag = initial_value_for_il_lowering_flag;
  il_entry_prefix_of(entry).keep_in_il = 0;
}

void set_file_scope_prefix(void* entry) {
  orphan_link_of(entry) = nullptr;
  if (file_scope_prefix_size == secondary_prefix_size)
    trans_unit_corresp_link_of(entry) = nullptr;
  set_flags(entry, true);
}

void* alloc_file_scope_entry(int32_t region, uint64_t size) {
  char* memory = static_cast<char*>(alloc_in_region(region, file_scope_prefix_size + size));
  void* entry = memory + file_scope_prefix_size;
  set_file_scope_prefix(entry);
  return entry;
}

void* alloc_function_entry(uint64_t size) {
  char* memory =
      static_cast<char*>(alloc_in_region(curr_il_region_number, function_prefix_size + size));
  void* entry = memory + function_prefix_size;
  set_flags(entry, false);
  return entry;
}

// Makes the primary or the secondary form of prefixes current for as long as
// the object lives.
class PREFIX_SWITCH {
public:
  explicit PREFIX_SWITCH(bool is_primary) : saved(is_primary_translation_unit) {
    is_primary_translation_unit = is_primary;
    compute_il_prefix_size();
  }
  ~PREFIX_SWITCH() {
    is_primary_translation_unit = saved;
    compute_il_prefix_size();
  }
  PREFIX_SWITCH(const PREFIX_SWITCH&) = delete;
  PREFIX_SWITCH& operator=(const PREFIX_SWITCH&) = delete;

private:
  a_boolean saved;
};

template <class T> T* zeroed(void* entry) {
  return static_cast<T*>(memset(entry, 0, sizeof(T)));
}

template <class T> T* alloc_fs_record() {
  return zeroed<T>(alloc_il(sizeof(T)));
}

template <class T> T* alloc_curr_record() {
  return zeroed<T>(alloc_il_in_current_region(sizeof(T)));
}

// For records that begin with the common head.
template <class T> T* with_head(T* record) {
  init_source_correspondence(&record->source_corresp);
  return record;
}

} // namespace

void compute_il_prefix_size() {
  file_scope_prefix_size =
      is_primary_translation_unit ? primary_prefix_size : secondary_prefix_size;
}

void* alloc_il(uint64_t size) {
  return alloc_file_scope_entry(file_scope_region_number, size);
}

void* alloc_primary_file_scope_il(uint64_t size) {
  PREFIX_SWITCH primary(true);
  return alloc_file_scope_entry(primary_file_scope_region, size);
}

// The file-scope region of the translation unit that declares the entity: the
// current one's for an entity without a symbol.
static int32_t file_scope_region_of_unit_of(const a_source_correspondence* entity) {
  const a_translation_unit* unit =
      entity->symbol == nullptr ? nullptr : trans_unit_for_symbol(entity->symbol);
  return unit == nullptr || unit == curr_translation_unit ? file_scope_region_number
                                                          : unit->file_scope_region;
}

void* alloc_il_in_current_region(uint64_t size) {
  return curr_il_region_number == file_scope_region_number ? alloc_il(size)
                                                           : alloc_function_entry(size);
}

void* alloc_il_like_owner(uint64_t size, const a_source_correspondence* owner) {
  if (owner == nullptr)
    return alloc_il(size);
  if (!is_file_scope_entry(owner))
    return alloc_il_in_current_region(size);
  if (!il_entry_prefix_of(owner).secondary_trans_unit_entry)
    return alloc_primary_file_scope_il(size);
  PREFIX_SWITCH secondary(false);
  return alloc_file_scope_entry(file_scope_region_of_unit_of(owner), size);
}

char* alloc_text_of_string_literal(uint64_t size) {
  return static_cast<char*>(alloc_il(size));
}

char* copy_string_of_length_to_region(int32_t region, const char* string, uint64_t length) {
  void* memory;
  if (region == front_end_region)
    memory = alloc_in_region(region, length + 1);
  else if (region == file_scope_region_number)
    memory = alloc_il(length + 1);
  else
    memory = alloc_general(length + 1);
  char* copy = static_cast<char*>(memory);
  memcpy(copy, string, length);
  copy[length] = '\0';
  return copy;
}

char* copy_string_to_region(int32_t region, const char* string) {
  return copy_string_of_length_to_region(region, string, strlen(string));
}

// --- File scope.

a_scope_orphaned_list* alloc_scope_orphaned_list_header() {
  return alloc_fs_record<a_scope_orphaned_list>();
}

a_param_type* alloc_param_type(a_type* type) {
  auto* param = alloc_fs_record<a_param_type>();
  param->type = type;
  param->declared_type = type;
  return param;
}

a_derivation_step* alloc_derivation_step() {
  return alloc_fs_record<a_derivation_step>();
}

a_base_class_derivation* alloc_base_class_derivation() {
  return alloc_fs_record<a_base_class_derivation>();
}

a_vcall_offset_entry* alloc_vcall_offset_entry() {
  return alloc_fs_record<a_vcall_offset_entry>();
}

an_overriding_virtual_function* alloc_overriding_virtual_function() {
  return alloc_fs_record<an_overriding_virtual_function>();
}

a_template_arg* alloc_template_arg(a_template_arg_kind kind) {
  a_template_arg* arg = available_template_args;
  if (arg != nullptr) {
    available_template_args = arg->next;
    set_file_scope_prefix(arg);
    zeroed<a_template_arg>(arg);
  } else {
    arg = alloc_fs_record<a_template_arg>();
  }
  arg->kind = kind;
  return arg;
}

void free_template_arg_list(a_template_arg* list) {
  if (list == nullptr)
    return;
  a_template_arg* last = list;
  while (last->next != nullptr)
    last = last->next;
  last->next = available_template_args;
  available_template_args = list;
}

a_base_class* alloc_base_class(a_type* type) {
  auto* base_class = alloc_fs_record<a_base_class>();
  base_class->type = type;
  return base_class;
}

a_class_list_entry* alloc_list_entry_for_class() {
  return alloc_fs_record<a_class_list_entry>();
}

a_routine_list_entry* alloc_list_entry_for_routine() {
  return alloc_fs_record<a_routine_list_entry>();
}

a_variable_template_info* alloc_variable_template_info() {
  return alloc_fs_record<a_variable_template_info>();
}

a_field* alloc_field(a_type* type) {
  auto* field = with_head(alloc_fs_record<a_field>());
  field->type = type;
  return field;
}

an_exception_specification* alloc_exception_specification() {
  return alloc_fs_record<an_exception_specification>();
}

an_exception_specification_type* alloc_exception_specification_type() {
  return alloc_fs_record<an_exception_specification_type>();
}

a_routine* alloc_routine() {
  auto* routine = with_head(alloc_fs_record<a_routine>());
  routine->virtual_function_index = no_virtual_function_index;
  return routine;
}

a_routine_gnu_supplement* alloc_gnu_supplement_for_routine() {
  auto* supplement = alloc_fs_record<a_routine_gnu_supplement>();
  supplement->constructor_priority = -1;
  supplement->destructor_priority = -1;
  return supplement;
}

a_namespace* alloc_namespace() {
  return with_head(alloc_fs_record<a_namespace>());
}

a_template_param* alloc_template_parameter() {
  return with_head(alloc_fs_record<a_template_param>());
}

a_template_decl* alloc_template_decl() {
  return alloc_fs_record<a_template_decl>();
}

a_template* alloc_template() {
  return with_head(alloc_fs_record<a_template>());
}

a_macro* alloc_macro() {
  return with_head(alloc_fs_record<a_macro>());
}

a_name_qualifier* alloc_name_qualifier() {
  return alloc_fs_record<a_name_qualifier>();
}

a_name_reference* alloc_name_reference() {
  return alloc_fs_record<a_name_reference>();
}

an_attribute* alloc_attribute() {
  return alloc_fs_record<an_attribute>();
}

an_attribute_arg* alloc_attribute_arg() {
  return alloc_fs_record<an_attribute_arg>();
}

an_attribute_group* alloc_attribute_group() {
  return alloc_fs_record<an_attribute_group>();
}

a_source_file* alloc_source_file() {
  return zeroed<a_source_file>(alloc_primary_file_scope_il(sizeof(a_source_file)));
}

a_seq_number_lookup_entry* alloc_seq_number_lookup_entry() {
  auto* entry = zeroed<a_seq_number_lookup_entry>(
      alloc_primary_file_scope_il(sizeof(a_seq_number_lookup_entry)));
  entry->last_seq = seq_lookup_open;
  return entry;
}

// --- Types.

namespace {

bool kind_starts_incomplete(a_type_kind kind) {
  switch (kind) {
  case tk_void:
  case tk_array:
  case tk_class:
  case tk_struct:
  case tk_union:
    return true;
  default:
    return false;
  }
}

void set_class_supplement_defaults(a_class_type_supplement* supplement) {
  supplement->nonvirtual_alignment = 1;
  supplement->pack_alignment = 0;
  supplement->max_member_alignment = 65535;
  supplement->virtual_function_info_offset = -3;
}

void init_kind_fields(a_type* type) {
  auto& variant = type->variant;
  switch (type->kind) {
  case tk_error:
    type->size = 1;
    type->alignment = 1;
    break;
  case tk_integer:
    variant.integer.int_kind = ik_int;
    variant.integer.enum_may_be_smaller_than_int =
        targ_enum_types_can_be_smaller_than_int || il_header.short_enums;
    variant.integer.integer_supplement = alloc_fs_record<an_integer_type_supplement>();
    break;
  case tk_routine:
    variant.routine.routine_supplement = alloc_fs_record<a_routine_type_supplement>();
    variant.routine.routine_supplement->name_linkage = default_routine_name_linkage;
    variant.routine.routine_supplement->param_count_info = 65535;
    break;
  case tk_class:
  case tk_struct:
  case tk_union:
    variant.class_struct_union.class_supplement = alloc_fs_record<a_class_type_supplement>();
    set_class_supplement_defaults(variant.class_struct_union.class_supplement);
    break;
  case tk_typeref:
    variant.typeref.typeref_supplement = alloc_fs_record<a_typeref_type_supplement>();
    variant.typeref.typeref_supplement->index = -1;
    break;
  case tk_template_param:
    variant.template_param.template_param_supplement =
        alloc_fs_record<a_template_param_type_supplement>();
    break;
  default:
    break;
  }
}

} // namespace

void set_type_kind(a_type* type, a_type_kind kind) {
  type->kind = kind;
  type->is_incomplete = kind_starts_incomplete(kind);
  memset(static_cast<void*>(&type->variant), 0, sizeof type->variant);
  init_kind_fields(type);
}

void clear_type(a_type* type, a_type_kind kind) {
  with_head(zeroed<a_type>(type))->alignment = 1;
  set_type_kind(type, kind);
}

a_type* alloc_type(a_type_kind kind) {
  auto* type = static_cast<a_type*>(alloc_il(sizeof(a_type)));
  clear_type(type, kind);
  return type;
}

void clear_class_type_definition_fields(a_type* type) {
  auto& variant = type->variant.class_struct_union;
  a_class_type_supplement* supplement = variant.class_supplement;
  a_scope* scope = supplement->scope;
  a_template* assoc_template = supplement->assoc_template;
  a_template_arg* template_args = supplement->template_args;
  a_lambda* lambda = supplement->lambda;
  bool is_lambda_closure = supplement->is_lambda_closure;
  zeroed<a_class_type_supplement>(supplement);
  set_class_supplement_defaults(supplement);
  supplement->scope = scope;
  supplement->assoc_template = assoc_template;
  supplement->template_args = template_args;
  supplement->lambda = lambda;
  supplement->is_lambda_closure = is_lambda_closure;
  variant.fields = nullptr;
  variant.is_complete_definition = 0;
  variant.is_empty = 0;
  variant.has_virtual_functions = 0;
  variant.layout_pending = 0;
  variant.is_abstract = 0;
  variant.is_polymorphic = 0;
  variant.is_standard_layout = 0;
  variant.has_nonempty_base = 0;
  variant.any_volatile_fields = 0;
  variant.any_const_fields = 0;
  variant.has_vptr = 0;
  type->size = 0;
  type->alignment = 1;
  type->is_incomplete = 1;
}

// --- Current.

an_asm_entry* alloc_asm_entry() {
  return with_head(alloc_curr_record<an_asm_entry>());
}

an_asm_operand* alloc_asm_operand() {
  return alloc_curr_record<an_asm_operand>();
}

a_named_register* alloc_named_register_list() {
  return alloc_curr_record<a_named_register>();
}

a_label_list_entry* alloc_label_list() {
  return alloc_curr_record<a_label_list_entry>();
}

a_label* alloc_label() {
  auto* label = with_head(alloc_curr_record<a_label>());
  label->was_reachable = 1;
  return label;
}

a_local_expr_node_ref* alloc_local_expr_node_ref() {
  return alloc_curr_record<a_local_expr_node_ref>();
}

a_constructor_init* alloc_ctor_init() {
  return alloc_curr_record<a_constructor_init>();
}

a_using_decl* alloc_using_decl() {
  return alloc_curr_record<a_using_decl>();
}

a_scope* alloc_scope(a_scope_kind kind, int32_t scope_number) {
  auto* scope = alloc_curr_record<a_scope>();
  scope->kind = kind;
  scope->scope_number = scope_number;
  scope->scope_stack_depth = -1;
  return scope;
}

a_local_scope_ref* alloc_local_scope_ref() {
  return alloc_curr_record<a_local_scope_ref>();
}

an_element_position* alloc_element_position() {
  return alloc_curr_record<an_element_position>();
}

a_lambda* alloc_lambda() {
  return alloc_curr_record<a_lambda>();
}

a_lambda_capture* alloc_lambda_capture() {
  return alloc_curr_record<a_lambda_capture>();
}

an_il_entity_list_entry* alloc_il_entity_list_entry(an_il_entry_kind kind, void* entity) {
  auto* entry = alloc_curr_record<an_il_entity_list_entry>();
  entry->entity_kind = kind;
  entry->entity = entity;
  return entry;
}

// --- Other placements.

a_decl_position_supplement* alloc_decl_position_supplement(bool at_file_scope) {
  return at_file_scope ? alloc_fs_record<a_decl_position_supplement>()
                       : alloc_curr_record<a_decl_position_supplement>();
}

a_variable* alloc_variable(a_storage_kind storage_kind) {
  auto* variable = with_head(storage_kind < sc_auto ? alloc_fs_record<a_variable>()
                                                    : alloc_curr_record<a_variable>());
  variable->storage_kind = storage_kind;
  variable->holds_asm_name = 1;
  if (storage_kind == sc_static && keep_unneeded_statics)
    variable->source_corresp.needed = 1;
  return variable;
}

a_class_list_entry* alloc_list_entry_for_class_full(const a_source_correspondence* owner) {
  return zeroed<a_class_list_entry>(alloc_il_like_owner(sizeof(a_class_list_entry), owner));
}

a_based_type_list_member* alloc_based_type_list_member(a_based_type_kind derivation,
                                                       const a_source_correspondence* owner) {
  auto* member = zeroed<a_based_type_list_member>(
      alloc_il_like_owner(sizeof(a_based_type_list_member), owner));
  member->derivation = derivation;
  return member;
}

static void set_tool_kind(a_pragma* pragma) {
  switch (pragma->kind) {
#define PRAGMA_TOOL_KIND(kind, name, place)                                                        \
  case kind:                                                                                       \
    pragma->tool_kind = ifpk_##name;                                                               \
    pragma->placement = place;                                                                     \
    break;
#include "pragma_tool_kinds.def"
#undef PRAGMA_TOOL_KIND
  default:
    break;
  }
}

a_pragma* alloc_pragma(uint8_t kind, const a_source_correspondence* owner) {
  void* memory = owner != nullptr ? alloc_il_like_owner(sizeof(a_pragma), owner)
                                  : alloc_il_in_current_region(sizeof(a_pragma));
  auto* pragma = zeroed<a_pragma>(memory);
  pragma->kind = kind;
  set_tool_kind(pragma);
  return pragma;
}

// --- Constants that serve as temporaries.

a_constant* local_constant() {
  a_constant* constant = available_local_constants;
  if (constant == nullptr)
    return static_cast<a_constant*>(alloc_il(sizeof(a_constant)));
  available_local_constants = constant->next;
  set_file_scope_prefix(constant);
  return constant;
}

void release_local_constant(a_constant** constant) {
  (*constant)->next = available_local_constants;
  available_local_constants = *constant;
  *constant = nullptr;
}

a_constant* move_local_constant_to_il(a_constant** constant) {
  a_constant* temporary = *constant;
  a_constant* result = temporary;
  if (curr_il_region_number != file_scope_region_number) {
    result = alloc_constant(temporary->kind);
    copy_constant(temporary, result);
    release_local_constant(constant);
  } else if (has_non_file_scope_ref(temporary)) {
    result = fs_constant(temporary->kind);
    copy_constant_full(temporary, result);
    release_local_constant(constant);
  }
  *constant = nullptr;
  break_constant_source_corresp(result);
  fix_memory_region_problems_in_copied_constant(result);
  return result;
}

void empty_available_local_constants() {
  available_local_constants = nullptr;
}

void il_alloc_one_time_init() {
  f_register_trans_unit_variable(&available_template_args, sizeof available_template_args, 0);
  f_register_trans_unit_variable(&available_local_constants, sizeof available_local_constants, 0);
}

void il_alloc_init() {
  il_alloc_trans_unit_init();
}

void il_alloc_trans_unit_init() {
  available_template_args = nullptr;
  available_local_constants = nullptr;
}
