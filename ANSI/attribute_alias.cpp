// Names for the assembler, and aliases, whose targets are known by such names
// and may be declared later.

#include <cstring>
#include <string>
#include <unordered_map>

#include "attribute_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "symbol_tbl.h"
#include "trans_unit.h"
#include "types.h"

namespace {

// An alias that waits for the end of the unit.
struct an_alias_fixup {
  an_alias_fixup* next;
  a_symbol* symbol;
  const char* name; // of the attribute
  const char* target_name;
  a_source_position position;
};

} // namespace

static an_alias_fixup* first_alias_fixup;
static an_alias_fixup* last_alias_fixup;

// The entities that have a name for the assembler, by that name.
static std::unordered_map<std::string, a_symbol*> symbols_by_asm_name;

// ---- Names for the assembler ----

static const char* asm_name_of(const a_symbol* symbol) {
  an_il_entry_kind kind;
  const void* entity = il_entry_for_symbol(symbol, &kind);
  if (entity == nullptr)
    return nullptr;
  if (kind == iek_routine) {
    const a_routine* routine = static_cast<const a_routine*>(entity);
    return routine->gnu_supplement == nullptr ? nullptr : routine->gnu_supplement->asm_name;
  }
  if (kind != iek_variable)
    return nullptr;
  const a_variable* variable = static_cast<const a_variable*>(entity);
  return variable->holds_asm_name ? variable->asm_name.text : nullptr;
}

void record_asm_name_for_lookup(a_symbol* symbol) {
  if (const char* name = asm_name_of(symbol))
    symbols_by_asm_name.try_emplace(name, symbol);
}

// ---- Aliases ----

void add_alias_fixup(a_symbol* symbol, const char* name, const char* target_name,
                     const a_source_position* position) {
  an_alias_fixup* fixup = static_cast<an_alias_fixup*>(alloc_in_region(0, sizeof *fixup));
  *fixup = {nullptr, symbol, name, target_name, *position};
  if (last_alias_fixup != nullptr)
    last_alias_fixup->next = fixup;
  else
    first_alias_fixup = fixup;
  last_alias_fixup = fixup;
}

// By its name for the assembler, or as a function of the file scope.
static a_symbol* find_alias_target(const char* name) {
  auto found = symbols_by_asm_name.find(name);
  if (found != symbols_by_asm_name.end())
    return found->second;
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header(name, strlen(name), &locator);
  for (a_symbol* list : {header->first_symbol, header->first_inactive_symbol})
    for (a_symbol* symbol = list; symbol != nullptr; symbol = symbol->next_homonym)
      if (symbol->kind == symk_routine && symbol->scope_number == file_scope_number)
        return symbol;
  return nullptr;
}

static bool is_ifunc(const an_alias_fixup* fixup) {
  return strcmp(fixup->name, "ifunc") == 0;
}

static void check_alias_types(const an_alias_fixup* fixup, const a_routine* alias,
                              const a_symbol* target_symbol, const a_routine* target) {
  if (is_error_type(alias->type) || is_error_type(target->type))
    return;
  if (is_ifunc(fixup)) {
    a_type* returned = return_type_of(target->type);
    if (!is_pointer_type(returned) || !is_function_type(type_pointed_to(returned)))
      pos_warning(ec_incompatible_ifunc_resolver_type, &fixup->position);
  } else if (!f_types_are_compatible(alias->type, target->type, tcf_error_matches)) {
    pos_sy2_diagnostic(gnu_mode ? es_warning : es_discretionary_error, ec_aliased_name_undeclared,
                       &fixup->position, fixup->symbol, target_symbol);
  }
}

static void resolve_alias(const an_alias_fixup* fixup) {
  if (fixup->symbol == nullptr || fixup->symbol->kind != symk_routine)
    return;
  a_routine* alias = fixup->symbol->variant.routine;
  a_symbol* target_symbol = find_alias_target(fixup->target_name);
  if (alias->has_body) {
    pos_sy_error(ec_alias_cannot_have_definition, &fixup->position, fixup->symbol);
    return;
  }
  if (target_symbol == nullptr || target_symbol->kind != symk_routine ||
      target_symbol->variant.routine == alias) {
    pos_sy_error(ec_aliased_name_bad_kind, &fixup->position, fixup->symbol);
    return;
  }
  a_routine* target = target_symbol->variant.routine;
  check_alias_types(fixup, alias, target_symbol, target);
  alias->gnu_supplement->alias_routine = target;
  // The alias is a definition of its own of the name.
  if (alias->storage_kind == sc_extern)
    alias->storage_kind = sc_none;
  mark_as_needed(alias, iek_routine);
  mark_as_needed(target, iek_routine);
  // A static target is used, though nothing calls it by its own name.
  target_symbol->referenced = true;
  target->source_corresp.referenced = true;
}

void process_alias_fixup_list() {
  for (const an_alias_fixup* fixup = first_alias_fixup; fixup != nullptr; fixup = fixup->next)
    resolve_alias(fixup);
  first_alias_fixup = last_alias_fixup = nullptr;
}

void register_alias_variables() {
  f_register_trans_unit_variable(&first_alias_fixup, sizeof first_alias_fixup, 0);
  f_register_trans_unit_variable(&last_alias_fixup, sizeof last_alias_fixup, 0);
}

void reset_alias_fixups() {
  first_alias_fixup = last_alias_fixup = nullptr;
  symbols_by_asm_name.clear();
}
