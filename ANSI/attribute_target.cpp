// The attributes of the processor: memory, sections of their own, registers,
// and what statements are told.

#include <cstring>
#include <string>
#include <vector>

#include "attribute_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "mode_words.h"
#include "pragma_int.h"
#include "statements_int.h"
#include "symbol_tbl.h"
#include "target.h"
#include "types.h"

static uint32_t* decl_modifiers_of(void* entity, an_il_entry_kind kind) {
  if (kind == iek_variable)
    return &static_cast<a_variable*>(entity)->decl_modifiers;
  return kind == iek_routine ? &static_cast<a_routine*>(entity)->decl_modifiers : nullptr;
}

// ---- Visibility ----

static uint32_t modifier_of_dll_kind(uint8_t kind) {
  return kind == attrk_dllimport   ? dm_dllimport
         : kind == attrk_dllexport ? dm_dllexport
                                   : dm_notshared;
}

void* dll_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  uint32_t* modifiers = decl_modifiers_of(entity, kind);
  if (modifiers != nullptr) {
    uint32_t all = *modifiers | modifier_of_dll_kind(attribute->kind);
    if ((all & dm_dllimport) && (all & dm_dllexport)) {
      pos_error(ec_bad_combination_of_dll_attributes, &attribute->position);
      attribute->kind = attrk_dropped;
    } else {
      *modifiers = all;
    }
  } else if (static_cast<a_type*>(entity)->kind == tk_integer) {
    pos_warning(ec_extended_modifier_ignored_on_enum, &attribute->position);
    attribute->kind = attrk_dropped;
  } else if (in_C_mode()) {
    pos_warning(ec_struct_declspec_ignored_in_C_mode, &attribute->position);
    attribute->kind = attrk_dropped;
  }
  return entity;
}

// ---- Memory ----

void* near_far_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (uint32_t* modifiers = decl_modifiers_of(entity, kind))
    *modifiers |= attribute->kind == attrk_far ? dm_far : dm_near;
  return entity;
}

void* cregister_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  const char* second = text_argument(attribute, 1);
  if (second == nullptr)
    second = text_argument(attribute, 0);
  for (const char* word : {"near", "__near", "far", "__far"})
    if (second != nullptr && strcmp(second, word) == 0)
      return entity;
  pos_error(ec_krt_cregister_requires_near_far, &attribute->position);
  attribute->kind = attrk_dropped;
  return entity;
}

// ---- Marks that reach the intermediate file as pragmas ----

namespace {

// A pragma that says what an attribute says; it ends with its scope.
struct a_pragma_of_attribute {
  a_pending_pragma* pragma;

  a_pragma_of_attribute(a_pragma_kind_tag kind, const an_attribute* attribute)
      : pragma(alloc_pending_pragma(pragma_description_for_pragma_kind[kind])) {
    pragma->directive_position = pragma->name_position = attribute->position;
  }
  ~a_pragma_of_attribute() {
    free_pending_pragma(pragma);
  }
};

} // namespace

static a_symbol* symbol_of(void* entity, an_il_entry_kind kind) {
  return source_corresp_of_entity(entity, kind)->symbol;
}

void* location_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  int64_t address;
  a_pragma_of_attribute location(pk_location, attribute);
  if (!integer_argument(attribute, 0, &address))
    bad_attribute_argument(attribute);
  else if (!pragma_location_backend(location.pragma, symbol_of(entity, kind),
                                    static_cast<uint64_t>(address), true))
    attribute->kind = attrk_dropped;
  return entity;
}

void* noinit_persistent_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  a_pragma_of_attribute mark(attribute->kind == attrk_noinit ? pk_noinit : pk_persistent,
                             attribute);
  if (!pragma_noinit_persistent_backend(mark.pragma, symbol_of(entity, kind), attribute->name))
    attribute->kind = attrk_dropped;
  return entity;
}

void* retain_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  a_symbol* symbol = symbol_of(entity, kind);
  a_pragma_of_attribute mark(pk_retain, attribute);
  if (kind != iek_variable || is_static_storage_variable(symbol)) {
    pragma_retain_backend(mark.pragma, symbol);
  } else {
    pos_stsy_warning(ec_pragma_requires_func_or_obj_def, &attribute->position, "RETAIN", symbol);
    attribute->kind = attrk_dropped;
  }
  return entity;
}

void* calls_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  std::vector<std::string> names;
  for (int i = 0; const char* name = text_argument(attribute, i); ++i)
    names.push_back(name);
  a_pragma_of_attribute calls(pk_calls, attribute);
  if (!create_pragma_calls(calls.pragma, symbol_of(entity, kind), std::move(names)))
    attribute->kind = attrk_dropped;
  return entity;
}

// ---- Statements ----

void* unroll_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  a_statement* statement = static_cast<a_statement*>(entity);
  int64_t count;
  if (!is_loop_statement(statement)) {
    pos_st2_error(ec_pragma_must_precede_loop, &attribute->position, "attribute", "unroll");
    attribute->kind = attrk_dropped;
  } else if (integer_argument(attribute, 0, &count) && !no_loop_pragmas) {
    a_pragma_of_attribute unroll(pk_unroll, attribute);
    pragma_unroll_backend(unroll.pragma, statement, static_cast<uint64_t>(count), "unroll");
  }
  return entity;
}

// C++17 10.6.5.
void* fallthrough_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  if (static_cast<const a_statement*>(entity)->kind != stmk_null) {
    pos_error(ec_fallthrough_applies_to_null_statement, &attribute->position);
    attribute->kind = attrk_dropped;
  } else if (!innermost_switch()) {
    pos_error(ec_fallthrough_not_in_switch, &attribute->position);
    attribute->kind = attrk_dropped;
  }
  return entity;
}
