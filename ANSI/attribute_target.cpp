// The attributes of the processor: memory, sections of their own, registers,
// and what statements are told.

#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "attribute_int.h"
#include "error.h"
#include "if_tags.h"
#include "if_util.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "mode_words.h"
#include "scope_stk.h"
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

// Kinds of pragmas with an attribute form.
enum a_pragma_of_attribute : uint8_t {
  pa_calls = 53,
  pa_unroll = 63,
  pa_retain = 94,
  pa_location = 100,
  pa_noinit = 101,
  pa_persistent = 102
};

// The objects of the entries, at addresses that stay.
static std::deque<PRAGMA> pragma_objects;

static a_pragma* make_pragma(a_pragma_of_attribute kind, const an_attribute* attribute,
                             const a_source_correspondence* owner, void* entity,
                             an_il_entry_kind entity_kind, std::vector<std::string> strings) {
  a_pragma* pragma = alloc_pragma(kind, owner);
  pragma->entity = entity;
  pragma->entity_kind = entity_kind;
  pragma->position = attribute->position;
  pragma->pragma_object = &pragma_objects.emplace_back(pragma->tool_kind, std::move(strings));
  return pragma;
}

static void add_pragma_to_entity(a_pragma_of_attribute kind, const an_attribute* attribute,
                                 void* entity, an_il_entry_kind entity_kind,
                                 std::vector<std::string> strings) {
  a_source_correspondence* corresp = source_corresp_of_entity(entity, entity_kind);
  a_pragma* pragma = make_pragma(kind, attribute, corresp, entity, entity_kind, std::move(strings));
  add_to_pragma_list(pragma, nullptr, corresp);
}

static bool has_static_storage(const void* entity, an_il_entry_kind kind) {
  return kind == iek_variable && static_cast<const a_variable*>(entity)->storage_kind < sc_auto &&
         static_cast<const a_variable*>(entity)->storage_kind != sc_extern;
}

static void report_needs_static_storage(an_attribute* attribute, const void* entity,
                                        an_il_entry_kind kind) {
  const a_source_correspondence* corresp =
      source_corresp_of_entity(const_cast<void*>(entity), kind);
  pos_stsy_warning(ec_requires_static_storage, &attribute->position, attribute->name,
                   corresp->symbol);
  attribute->kind = attrk_dropped;
}

void* location_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  int64_t address;
  if (!integer_argument(attribute, 0, &address)) {
    bad_attribute_argument(attribute);
    return entity;
  }
  const a_type* type = kind == iek_variable ? static_cast<const a_variable*>(entity)->type
                                            : static_cast<const a_routine*>(entity)->type;
  uint32_t alignment;
  uint64_t bits = size_of_pointer_to(type, &alignment) * static_cast<uint64_t>(targ_char_bit);
  if (bits < 64 && static_cast<uint64_t>(address) >> bits != 0) {
    pos_st_warning(ec_pragma_location_value_too_large, &attribute->position, "attribute");
    attribute->kind = attrk_dropped;
    return entity;
  }
  add_pragma_to_entity(pa_location, attribute, entity, kind,
                       {std::to_string(static_cast<uint64_t>(address))});
  return entity;
}

void* noinit_persistent_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (!has_static_storage(entity, kind))
    report_needs_static_storage(attribute, entity, kind);
  else
    add_pragma_to_entity(attribute->kind == attrk_noinit ? pa_noinit : pa_persistent, attribute,
                         entity, kind, {});
  return entity;
}

void* retain_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_variable && !has_static_storage(entity, kind)) {
    a_source_correspondence* corresp = source_corresp_of_entity(entity, kind);
    pos_stsy_warning(ec_pragma_requires_func_or_obj_def, &attribute->position, "RETAIN",
                     corresp->symbol);
    attribute->kind = attrk_dropped;
    return entity;
  }
  mark_as_needed(entity, kind);
  suppress_report_of_unused(entity, kind);
  add_pragma_to_entity(pa_retain, attribute, entity, kind, {});
  return entity;
}

void* calls_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  std::vector<std::string> names;
  for (int i = 0; const char* name = text_argument(attribute, i); ++i)
    names.push_back(name);
  add_pragma_to_entity(pa_calls, attribute, entity, kind, std::move(names));
  return entity;
}

// ---- Statements ----

static bool is_loop(const a_statement* statement) {
  return statement->kind == stmk_for || statement->kind == stmk_while || statement->kind == stmk_do;
}

void* unroll_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  a_statement* statement = static_cast<a_statement*>(entity);
  int64_t count;
  if (!is_loop(statement)) {
    pos_st2_error(ec_pragma_must_precede_loop, &attribute->position, "attribute", "unroll");
    attribute->kind = attrk_dropped;
    return entity;
  }
  if (!integer_argument(attribute, 0, &count) || no_loop_pragmas)
    return entity;
  if (count <= 0) {
    pos_st_error(ec_parm_gt_zero, &statement->position, "unroll");
  } else if (count > INT32_MAX) {
    pos_error(ec_integer_outofrange, &attribute->position);
  } else {
    a_pragma* pragma =
        make_pragma(pa_unroll, attribute, nullptr, statement, kind, {std::to_string(count)});
    add_to_pragma_list(pragma, scope_stack[depth_innermost_function_scope].il_scope, nullptr);
    statement->has_associated_pragma = true;
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
