// The symbols of the intermediate file: routines and variables with their
// pragmas, sections and definition states.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <initializer_list>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "cmd_line.h"
#include "decl_spec.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_to_if_int.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma.h"
#include "source_file.h"
#include "stack_limit.h"
#include "target.h"

namespace {

enum a_content_class { cc_text, cc_data, cc_const };

// The first entity of a section, with which the others must agree.
struct a_section_entry {
  a_source_correspondence* entity;
  a_content_class content;
};

std::deque<SYMTAB> symbols;
std::map<std::string, a_section_entry> sections;
std::unordered_map<const void*, std::vector<a_pragma*>> file_pragmas; // by entity
unsigned function_name_counter;
unsigned temp_name_counter;
unsigned local_static_counter;
int32_t local_value_counter;
bool weak_symbol_remark_done;

} // namespace

// The pragmas of a scope's entities stand in one list. That of the file scope
// may be long and is looked up by entity.
static void index_file_pragmas() {
  for (a_pragma* pragma = il_header.primary_scope->pragmas; pragma != nullptr;
       pragma = pragma->next)
    if (pragma->entity_kind != iek_none)
      file_pragmas[pragma->entity].push_back(pragma);
}

void start_symbols() {
  function_name_counter = temp_name_counter = local_static_counter = 0;
  local_value_counter = 0;
  weak_symbol_remark_done = false;
  index_file_pragmas();
}

void end_symbols() {
  symbols.clear();
  sections.clear();
  file_pragmas.clear();
}

SYMTAB* new_symbol() {
  return &symbols.emplace_back();
}

int32_t next_temporary_number() {
  return local_value_counter++;
}

PSN psn_of(const a_source_position& position) {
  uint32_t line = 0;
  const a_source_file* file = source_file_for_seq(position.seq, &line, nullptr, false);
  if (file == nullptr)
    return {nullptr, 0, 0};
  const char* name = file->full_name != nullptr ? file->full_name : file->file_name;
  return {name, line == 0 ? 1 : line, position.column};
}

// ---- Names ----

static const char* keep_name(a_source_correspondence* entity, const std::string& name) {
  entity->name = copy_string_to_region(file_scope_region_number, name.c_str());
  return entity->name;
}

const char* sym_name(a_source_correspondence* entity, unsigned index) {
  if (entity->name == nullptr)
    keep_name(entity, "$P$T" + std::to_string(temp_name_counter++));
  constexpr char pack_prefix[] = "$P$PE$";
  if (index == 0 || strncmp(entity->name, pack_prefix, sizeof(pack_prefix) - 1) == 0)
    return entity->name;
  return keep_name(entity, pack_prefix + std::to_string(index) + "$" + entity->name);
}

std::string routine_name(a_routine* routine) {
  const a_routine_gnu_supplement* gnu = routine->gnu_supplement;
  if (gnu != nullptr && gnu->asm_name != nullptr)
    return gnu->asm_name;
  if (routine->source_corresp.name == nullptr)
    keep_name(&routine->source_corresp, "$P$F" + std::to_string(function_name_counter++));
  return routine->source_corresp.name;
}

// ---- Pragmas of the IL ----

std::vector<a_pragma*> assoc_pragmas(const void* entity) {
  std::vector<a_pragma*> found;
  for (const a_scope* scope = gen_scope; scope != nullptr && scope != il_header.primary_scope;
       scope = scope->parent)
    for (a_pragma* pragma = scope->pragmas; pragma != nullptr; pragma = pragma->next)
      if (pragma->entity == entity && pragma->entity_kind != iek_none && !pragma->is_disabled)
        found.push_back(pragma);
  if (auto entry = file_pragmas.find(entity); entry != file_pragmas.end())
    for (a_pragma* pragma : entry->second)
      if (!pragma->is_disabled)
        found.push_back(pragma);
  return found;
}

void gen_assoc_pragmas(const void* entity, uint8_t placement) {
  for (const a_pragma* pragma : assoc_pragmas(entity))
    if (pragma->pragma_object != nullptr && pragma->placement == placement)
      gen_file->if_write_pragma(pragma->pragma_object);
}

void gen_pragmas(a_pragma* list, const void* entity, uint8_t placement) {
  for (const a_pragma* pragma = list; pragma != nullptr; pragma = pragma->next)
    if (pragma->entity == entity && !pragma->is_disabled && pragma->pragma_object != nullptr &&
        pragma->placement == placement)
      gen_file->if_write_pragma(pragma->pragma_object);
}

// The same for an entity that tells whether it has any.
static std::vector<a_pragma*> pragmas_of(const a_source_correspondence* entity) {
  return entity->has_associated_pragma ? assoc_pragmas(entity) : std::vector<a_pragma*>();
}

static bool has_pragma(const a_source_correspondence* entity, std::initializer_list<int> kinds) {
  for (const a_pragma* pragma : pragmas_of(entity))
    for (int kind : kinds)
      if (pragma->tool_kind == kind)
        return true;
  return false;
}

static const PRAGMA* pragma_object_of(const a_source_correspondence* entity, int kind) {
  for (const a_pragma* pragma : pragmas_of(entity))
    if (pragma->tool_kind == kind)
      return pragma->pragma_object;
  return nullptr;
}

static const std::string& first_string(const PRAGMA* pragma) {
  static const std::string none;
  return pragma->strings.empty() ? none : pragma->strings.front();
}

static bool location_is_kept(const a_source_correspondence* entity, const SYMTAB* symbol,
                             const a_pragma* pragma) {
  constexpr int absolute_static = 24, absolute_global = 28;
  if (symbol->storage_class != ifsc_static && symbol->storage_class != absolute_static &&
      symbol->storage_class != ifsc_global && symbol->storage_class != absolute_global)
    return true;
  const std::string& address = first_string(pragma->pragma_object);
  uint64_t alignment = symbol->align / targ_char_bit;
  if (alignment <= 1 || strtoull(address.c_str(), nullptr, 0) % alignment == 0)
    return true;
  pos_st2_sy_diagnostic(es_warning, ec_pragma_location_align, &entity->position,
                        std::to_string(alignment).c_str(), address.c_str(), entity->symbol);
  return false;
}

static void note_entity(an_error_code code, const a_source_correspondence* entity) {
  pos_sy_diagnostic(es_warning, code, &entity->position, entity->symbol);
}

static bool noinit_suits_initializer(const a_variable* variable) {
  if (variable->init_kind != initk_constant && variable->init_kind != initk_dynamic)
    return true;
  note_entity(ec_noinit_was_init, &variable->source_corresp);
  return false;
}

static bool persistent_suits_initializer(const a_variable* variable) {
  bool is_missing =
      variable->init_kind == initk_none || variable->init_kind == initk_zero ||
      (variable->init_kind == initk_constant && is_empty_aggregate(variable->initializer.constant));
  if (is_missing)
    note_entity(ec_persistent_requires_init, &variable->source_corresp);
  else if (variable->init_kind == initk_dynamic)
    note_entity(ec_persistent_was_dynamic, &variable->source_corresp);
  return !is_missing && variable->init_kind != initk_dynamic;
}

static bool retention_is_kept(const a_source_correspondence* entity, const a_variable* variable,
                              const SYMTAB* symbol, const a_pragma* pragma) {
  bool is_noinit = pragma->tool_kind == ifpk_NOINIT;
  if (symbol->find_pragma(ifpk_DATA_SECTION) != nullptr) {
    pos_st2_sy_diagnostic(es_error, ec_cannot_coexist_with_datasection, &entity->position,
                          is_noinit ? "noinit" : "persistent", symbol->name.c_str(),
                          entity->symbol);
    return false;
  }
  if (symbol->find_pragma(is_noinit ? ifpk_PERSISTENT : ifpk_NOINIT) != nullptr) {
    note_entity(ec_cannot_mix_noinit_and_persistent, entity);
    return false;
  }
  if (variable == nullptr)
    return true;
  return is_noinit ? noinit_suits_initializer(variable) : persistent_suits_initializer(variable);
}

static bool pragma_is_kept(const a_source_correspondence* entity, const a_variable* variable,
                           const SYMTAB* symbol, const a_pragma* pragma) {
  switch (pragma->tool_kind) {
  case ifpk_LOCATION:
    return location_is_kept(entity, symbol, pragma);
  case ifpk_NOINIT:
  case ifpk_PERSISTENT:
    return retention_is_kept(entity, variable, symbol, pragma);
  default:
    return true;
  }
}

// The words of the command line that hold for the entity alone: the file's set of
// them, or, in a file without sets, their text.
static void add_option_override(SYMTAB* symbol, const a_source_correspondence& entity) {
  const OPT_OVERRIDE* entry =
      entity.name == nullptr ? nullptr : get_opt_override(entity.name, &entity.position);
  if (entry == nullptr)
    return;
  if (icode_optlist.empty())
    symbol->add_pragma(ifpk_OPT_OVERRIDE, texts_of_override(*entry));
  else
    symbol->option_set = entry->set_id;
}

// `variable` is null for a routine.
static void add_il_pragmas(a_source_correspondence* entity, a_variable* variable, SYMTAB* symbol) {
  for (const a_pragma* pragma : pragmas_of(entity))
    if (pragma->pragma_object != nullptr && pragma->placement == placed_at_symbol &&
        pragma_is_kept(entity, variable, symbol, pragma))
      symbol->add_pragma(pragma->pragma_object->kind, pragma->pragma_object->strings);
  if (variable == nullptr)
    symbol->add_pragma(ifpk_SRC_LANGUAGE, {in_cplusplus_mode() ? "C++" : "C"});
  if (entity->is_class_member)
    symbol->add_pragma(ifpk_IS_CLASS_MEMBER);
  add_option_override(symbol, *entity);
}

// ---- Sections ----

static const char* content_name(a_content_class content) {
  static const char* const names[] = {"text", "data", "const"};
  return names[content];
}

// Whether an entity may go to a section.
static bool section_takes(const char* section, a_source_correspondence* entity,
                          a_content_class content) {
  auto [entry, is_new] = sections.try_emplace(section, a_section_entry{entity, content});
  if (is_new || entry->second.content == content)
    return true;
  pos_st3_sy2_diagnostic(es_warning, ec_incompatible_objects_in_section, &entity->position, section,
                         content_name(entry->second.content), content_name(content),
                         entry->second.entity->symbol, entity->symbol);
  return false;
}

void process_routine_section_specification(a_routine* routine, SYMTAB* symbol) {
  const a_section_info* info = routine->section_info;
  if (info != nullptr && section_takes(info->text, &routine->source_corresp, cc_text))
    symbol->add_pragma(ifpk_CODE_SECTION, {info->text});
}

void process_variable_section_specification(a_variable* variable, SYMTAB* symbol) {
  const a_section_info* info = variable->section_info;
  if (info == nullptr || variable->storage_kind >= sc_auto)
    return;
  bool is_const = !is_eabi && is_const_qualified_type(variable->type);
  if (section_takes(info->text, &variable->source_corresp, is_const ? cc_const : cc_data))
    symbol->add_pragma(ifpk_DATA_SECTION, {info->text});
}

// ---- Common parts of symbols ----

static int qualifier_bits(uint32_t modifiers) {
  static const struct {
    int bit;
    int result;
  } rows[] = {{5, 0x0001},  {6, 0x0002}, {12, 0x0010}, {11, 0x0040},
              {13, 0x0080}, {8, 0x0100}, {7, 0x0800}};
  int result = 0;
  for (const auto& row : rows)
    if (modifiers & 1u << row.bit)
      result |= row.result;
  return result;
}

static void add_visibility(SYMTAB* symbol, uint32_t modifiers, a_storage_kind storage) {
  if (storage == sc_static)
    return;
  int visibility = canonical_symbol_visibility(modifiers, 0, storage != sc_extern, 0);
  if (visibility != 0)
    symbol->add_pragma(ifpk_SYM_VISIBILITY, {symbol_visibility_to_string(visibility)});
}

static void set_symbol_position(SYMTAB* symbol, const a_source_correspondence& entity) {
  typed_entity_position = entity.position;
  if (entity.position.seq != 0)
    symbol->set_psn(psn_of(entity.position));
}

static const an_attribute* find_attribute(const a_source_correspondence& entity, const char* name) {
  const an_attribute* attribute = entity.attributes;
  while (attribute != nullptr &&
         (attribute->kind == 0 || attribute->name == nullptr || strcmp(attribute->name, name) != 0))
    attribute = attribute->next;
  return attribute;
}

// ---- Routines ----

bool routine_is_interrupt(const a_routine* routine) {
  return (routine->decl_modifiers & dm_interrupt) != 0;
}

static bool interrupt_bit_is_due(a_routine* routine) {
  const PRAGMA* pragma = pragma_object_of(&routine->source_corresp, ifpk_INTERRUPT);
  a_type* type = f_skip_typerefs(routine->type);
  if (pragma != nullptr && first_string(pragma) == "SWI")
    return true;
  if (!is_void_type(return_type_of(type)))
    pos_error(ec_pragma_interrupt_requires_void, &routine->source_corresp.position);
  else if (param_types_of(type) != nullptr)
    pos_st_error(ec_pragma_interrupt_has_params, &routine->source_corresp.position,
                 routine->source_corresp.name);
  else if (pragma == nullptr || first_string(pragma) != "BACKGROUND")
    return true;
  routine->decl_modifiers &= ~dm_interrupt;
  return false;
}

static int routine_qualifiers(a_routine* routine) {
  int result = qualifier_bits(routine->decl_modifiers);
  if (routine_is_interrupt(routine) && interrupt_bit_is_due(routine))
    result |= 0x0020;
  if (routine->inline_candidate)
    result |= routine->address_taken ? 0x0004 : 0x000C;
  return result;
}

static const char* alias_target_of(const a_routine* routine) {
  return routine->gnu_supplement == nullptr ? nullptr : routine->gnu_supplement->alias_target;
}

static void add_flag_pragmas(a_routine* routine, SYMTAB* symbol) {
  const a_routine_type_supplement& type =
      *f_skip_typerefs(routine->type)->variant.routine.routine_supplement;
  const struct {
    uint64_t applies;
    an_if_pragma_kind kind;
  } rows[] = {{routine->always_inline || (routine->inline_candidate && always_inline_funcs),
               ifpk_FUNC_ALWAYS_INLINE},
              {routine->no_inline, ifpk_FUNC_CANNOT_INLINE},
              {routine->no_side_effects, ifpk_FUNC_NO_GLOBAL_ASG},
              {routine->no_side_effects, ifpk_FUNC_NO_IND_ASG},
              {routine->is_weak, ifpk_QL_WEAK},
              {routine->in_init_array, ifpk_FUNC_IN_INIT_ARRAY},
              {type.does_not_return, ifpk_FUNC_NEVER_RETURNS},
              {type.is_pure || type.is_const_function, ifpk_FUNC_IS_PURE},
              {routine->returns_unique_pointer, ifpk_FUNC_RET_UNIQUE_POINTER},
              {routine->is_naked, ifpk_FUNC_IS_NAKED},
              {routine->is_naked, ifpk_FUNC_CANNOT_INLINE}};
  if (routine->wrapper_of != nullptr)
    symbol->add_pragma(ifpk_TRAMPOLINE, {routine->wrapper_of->source_corresp.name});
  for (const auto& row : rows)
    if (row.applies)
      symbol->add_pragma(row.kind);
}

// Which part of an object a constructor or destructor makes or ends, by the number
// that its external name has (Itanium C++ ABI 5.1.4.3).
static void add_ctor_dtor_pragma(const a_routine* routine, SYMTAB* symbol) {
  static const char* const numbers[] = {"?", "1", "2", "0", "9", "?", "?", "?"};
  if (routine->special_kind == rsk_constructor || routine->special_kind == rsk_destructor)
    symbol->add_pragma(
        ifpk_FUNC_IS_CTOR_DTOR,
        {routine->special_kind == rsk_constructor ? "C" : "D", numbers[routine->ctor_kind]});
}

static void add_final_pragmas(a_routine* routine, SYMTAB* symbol) {
  add_ctor_dtor_pragma(routine, symbol);
  if (routine->is_inline_comdat)
    symbol->add_pragma(ifpk_COMDAT_GROUP, {symbol->name});
  if (alias_target_of(routine) != nullptr && !routine->detached_redeclaration &&
      routine->storage_kind != sc_extern)
    symbol->add_pragma(ifpk_FUNC_SYNONYM, {alias_target_of(routine), ""});
  add_visibility(symbol, routine->decl_modifiers, routine->storage_kind);
  if (f_skip_typerefs(routine->type)
          ->variant.routine.routine_supplement->returns_via_copy_constructor)
    symbol->add_pragma(ifpk_FUNC_RET_BY_CCTOR);
  if (is_hook_function(routine))
    symbol->add_pragma(ifpk_HOOK_FUNCTION);
  if (ramfunc || find_attribute(routine->source_corresp, "ramfunc") != nullptr)
    symbol->add_pragma(ifpk_RAMFUNC);
  if (routine->is_internal_runtime)
    symbol->add_pragma(ifpk_FUNC_IS_INTERNAL_RUNTIME);
}

static uint8_t routine_definition_state(a_routine* routine, const SYMTAB* symbol) {
  const a_source_correspondence* entity = &routine->source_corresp;
  if (routine->defined_elsewhere)
    return 3;
  if (has_pragma(entity, {ifpk_RETAIN, ifpk_FUNC_EXT_CALLED}) || routine->is_used)
    return 1;
  bool is_kept = (routine->extern_template_instance && extern_template_allowed) ||
                 has_pragma(entity, {ifpk_INTERRUPT, ifpk_NMI_INTERRUPT}) ||
                 (symbol->cqual & 0x1020) != 0;
  return !is_kept && routine->is_comdat_definition ? 2 : 0;
}

static void note_weak_symbol(const SYMTAB* symbol) {
  if (!embed_icode || weak_symbol_remark_done || symbol->find_pragma(ifpk_QL_WEAK) == nullptr)
    return;
  weak_symbol_remark_done = true;
  str_remark(ec_prevent_lto, "weak symbols");
  gen_file->if_set_flags(if_flag_not_embeddable);
}

static int class_of_routine(a_storage_kind storage) {
  switch (storage) {
  case sc_none:
    return ifsc_global;
  case sc_extern:
    return ifsc_extern;
  case sc_static:
    return ifsc_static;
  default:
    return ifsc_auto;
  }
}

SYMTAB* routine_symbol(a_routine* routine) {
  if (routine->file_symbol != nullptr)
    return routine->file_symbol;
  SYMTAB* symbol = routine->file_symbol = new_symbol();
  set_symbol_position(symbol, routine->source_corresp);
  symbol->type = tp_type(routine->type, tpm_lowered);
  TYPE* return_type = tp_type(return_type_of(f_skip_typerefs(routine->type)), tpm_lowered);
  symbol->cpp_type = routine->type->source_file_type;
  symbol->storage_class = class_of_routine(routine->storage_kind);
  symbol->cqual = routine_qualifiers(routine);
  std::unique_ptr<OPTION_STATE> options_before =
      process_opt_override(routine->source_corresp.name, &routine->source_corresp.position);
  symbol->name = routine_name(routine);
  symbol->size = return_type == nullptr ? 0 : static_cast<uint32_t>(return_type->size);
  symbol->align = routine->alignment * targ_char_bit;
  process_routine_section_specification(routine, symbol);
  add_flag_pragmas(routine, symbol);
  add_il_pragmas(&routine->source_corresp, nullptr, symbol);
  add_final_pragmas(routine, symbol);
  symbol->definition_state = routine_definition_state(routine, symbol);
  note_weak_symbol(symbol);
  return symbol;
}

SYMTAB* referenced_routine_symbol(a_routine* routine) {
  SYMTAB* symbol = routine_symbol(routine);
  if (!symbol->is_entered())
    gen_file->if_enter_global(symbol);
  return symbol;
}

// ---- Variables ----

int top_level_alignment(const a_variable* variable) {
  if (is_array_type(variable->type))
    return TRG_top_aryaln(variable->storage_kind);
  return is_class_struct_union_type(variable->type) ? targ_top_structaln : 0;
}

// A small object is aligned as the smallest integer that holds it.
static uint32_t alignment_of_covering_integer(const a_variable* variable) {
  const TYPE::IKIND candidates[] = {TYPE::ikind_unsigned_char, TYPE::ikind_short, TYPE::ikind_int,
                                    TYPE::ikind_long, TYPE::ikind_long_long};
  uint64_t size = size_of_type(variable->type) * targ_char_bit;
  for (TYPE::IKIND kind : candidates)
    if (type_pkg->integers[kind]->size >= size)
      return type_pkg->integers[kind]->align;
  return 0;
}

static uint32_t variable_alignment(const a_variable* variable, const TYPE* type) {
  int declared = variable->alignment != 0 ? variable->alignment : top_level_alignment(variable);
  uint32_t result = static_cast<uint32_t>(declared * targ_char_bit);
  if (type != nullptr && type->align > result)
    result = type->align;
  bool is_lifted = is_class_struct_union_type(variable->type) &&
                   (variable->storage_kind == sc_register || variable->storage_kind == sc_static);
  return is_lifted ? std::max(result, alignment_of_covering_integer(variable)) : result;
}

static int class_of_variable(const a_variable* variable) {
  switch (variable->storage_kind) {
  case sc_none:
    return ifsc_global;
  case sc_extern:
    return ifsc_extern;
  case sc_static:
    return ifsc_static;
  case sc_register:
    return is_volatile_qualified_type(variable->type) ? ifsc_auto : ifsc_temp;
  default:
    return ifsc_auto;
  }
}

static const char* name_before_numbering(a_variable* variable, unsigned index) {
  if (variable->is_this_parameter)
    return "this";
  if (variable->name_in_own_text && variable->holds_asm_name && variable->asm_name.text != nullptr)
    return variable->asm_name.text;
  return sym_name(&variable->source_corresp, index);
}

// The statics of functions are numbered through the file, those with an asm name too.
static std::string variable_name(a_variable* variable, unsigned index) {
  std::string name = name_before_numbering(variable, index);
  if (variable->storage_kind == sc_static && gen_level != 0)
    name += "$" + std::to_string(++local_static_counter);
  return name;
}

static std::string text_of_argument(const an_attribute_arg* argument) {
  if (argument == nullptr || argument->value.generic == nullptr)
    return "";
  switch (argument->arg_kind) {
  case aak_string:
  case aak_name:
    return argument->value.text;
  case aak_constant:
    return argument->value.constant->kind == con_string
               ? argument->value.constant->value.string.text
               : "";
  default:
    return "";
  }
}

static bool cregister_is_combined(const a_source_position* position, const SYMTAB* symbol) {
  bool is_combined = false;
  for (const auto& [kind, name] :
       {std::pair{ifpk_LOCATION, "location"}, std::pair{ifpk_DATA_SECTION, "data section"}}) {
    if (symbol->find_pragma(kind) == nullptr)
      continue;
    pos_st_error(ec_krt_cregister_cannot_combine, position, name);
    is_combined = true;
  }
  return is_combined;
}

// A variable that stands for a register of the processor's constant table.
static void add_cregister_pragmas(const a_variable* variable, SYMTAB* symbol) {
  const an_attribute* cregister = find_attribute(variable->source_corresp, "cregister");
  bool is_peripheral = find_attribute(variable->source_corresp, "peripheral") != nullptr;
  const a_source_position* position = &variable->source_corresp.position;
  if (cregister == nullptr) {
    if (is_peripheral)
      pos_error(ec_krt_peripheral_requires_cregister, position);
    return;
  }
  if (cregister_is_combined(position, symbol))
    return;
  const an_attribute_arg* argument = cregister->arguments;
  std::string region = text_of_argument(argument);
  std::string mode = text_of_argument(argument == nullptr ? nullptr : argument->next);
  if (mode.starts_with("__"))
    mode.erase(0, 2);
  if (mode.empty())
    mode = "near";
  if (is_peripheral)
    symbol->add_pragma(ifpk_QL_WEAK);
  symbol->add_pragma(ifpk_CREGISTER, {region, mode});
  symbol->add_pragma(ifpk_DATA_SECTION,
                     {".creg." + region + (is_peripheral ? ".noload." : ".") + mode});
}

static void TRG_sym_transform(const a_variable* variable, SYMTAB* symbol) {
  if ((symbol->cqual & 0x3) == 0 && variable->storage_kind != sc_auto)
    symbol->cqual |= targ_data_access_model == 1 ? 0x2 : 0x1;
}

static uint8_t variable_definition_state(a_variable* variable) {
  if (variable->defined_elsewhere)
    return 3;
  if (has_pragma(&variable->source_corresp, {ifpk_RETAIN}) || variable->is_used)
    return 1;
  if (variable->extern_template_instance && extern_template_allowed)
    return 0;
  return variable->comdat_name != nullptr ? 2 : 0;
}

static void add_variable_pragmas(a_variable* variable, SYMTAB* symbol) {
  process_variable_section_specification(variable, symbol);
  if (variable->is_weak)
    symbol->add_pragma(ifpk_QL_WEAK);
  add_il_pragmas(&variable->source_corresp, variable, symbol);
  if (variable->comdat_name != nullptr)
    symbol->add_pragma(ifpk_COMDAT_GROUP, {variable->comdat_name});
  add_visibility(symbol, variable->decl_modifiers, variable->storage_kind);
  if (variable->has_fs_dynamic_init)
    symbol->add_pragma(ifpk_FS_DYNAMIC_INIT);
  add_cregister_pragmas(variable, symbol);
}

// Where the elements of a flexible array member end, in bytes from the start of an
// object of the class with this value; 0 without any. The array may be that of a
// struct inside (a union's member, or the last member of a struct).
static uint64_t end_of_flexible_elements(const a_constant* value, const a_type* class_type) {
  check_stack_limit();
  const a_field* field = next_initializable_field(class_type->variant.class_struct_union.fields);
  for (const a_constant* item = value->value.aggregate.first; item != nullptr; item = item->next) {
    if (item->kind == con_designator) {
      field = item->value.designator.designated.field;
      continue;
    }
    if (field == nullptr)
      break;
    if (field->is_flexible_array)
      return field->offset + num_array_elements(f_skip_typerefs(item->type)) *
                                 size_of_type(array_element_type(field->type));
    if (item->kind == con_aggregate && is_class_struct_union_type(field->type))
      if (uint64_t end = end_of_flexible_elements(item, f_skip_typerefs(field->type)))
        return field->offset + end;
    field = next_initializable_field(field->next);
  }
  return 0;
}

// The size in bits. An object grows by the elements that its initialiser gives
// to a flexible array member.
static uint32_t size_of_variable(a_variable* variable, uint64_t size_of_its_type) {
  const a_type* type = f_skip_typerefs(variable->type);
  uint64_t size = size_of_its_type;
  if (is_class_struct_union_kind(type->kind) && class_supplement_of(type)->has_flexible_array &&
      variable->storage_kind < sc_auto) {
    const a_constant* value = initializer_constant(variable, nullptr);
    if (value != nullptr && value->kind == con_aggregate)
      size = std::max(size, end_of_flexible_elements(value, type) * targ_char_bit);
  }
  return static_cast<uint32_t>(size);
}

SYMTAB* variable_symbol(a_variable* variable, unsigned index) {
  if (variable->file_symbol != nullptr)
    return variable->file_symbol;
  SYMTAB* symbol = variable->file_symbol = new_symbol();
  set_symbol_position(symbol, variable->source_corresp);
  symbol->type = tp_type(variable->type, tpm_lowered);
  symbol->cpp_type = variable->type->source_file_type;
  symbol->align = variable_alignment(variable, symbol->type);
  symbol->name = variable_name(variable, index);
  symbol->size = symbol->type == nullptr ? 0 : size_of_variable(variable, symbol->type->size);
  symbol->storage_class = class_of_variable(variable);
  symbol->cqual = qualifier_bits(variable->decl_modifiers);
  add_variable_pragmas(variable, symbol);
  TRG_sym_transform(variable, symbol);
  symbol->definition_state = variable_definition_state(variable);
  return symbol;
}

SYMTAB* referenced_variable_symbol(a_variable* variable) {
  SYMTAB* symbol = variable_symbol(variable);
  if (!symbol->is_entered() && variable->storage_kind < sc_auto)
    gen_file->if_enter_global(symbol);
  return symbol;
}
