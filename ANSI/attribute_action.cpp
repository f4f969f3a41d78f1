// What attributes do to routines, variables and classes.

#include <cstring>

#include "attribute_int.h"
#include "decls.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "layout.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "symbol_tbl.h"
#include "target.h"
#include "types.h"

static a_symbol* symbol_of_entity(void* entity, an_il_entry_kind kind) {
  a_source_correspondence* corresp = source_corresp_of_entity(entity, kind);
  return corresp == nullptr ? nullptr : corresp->symbol;
}

static a_routine_gnu_supplement* gnu_supplement_of(a_routine* routine) {
  if (routine->gnu_supplement == nullptr)
    routine->gnu_supplement = alloc_gnu_supplement_for_routine();
  return routine->gnu_supplement;
}

// ---- Diagnosed or kept ----

void* deprecated_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_routine)
    static_cast<a_routine*>(entity)->is_deprecated = true;
  else if (kind == iek_type && static_cast<a_type*>(entity)->source_corresp.is_unnamed)
    drop_attribute(es_warning, ec_attribute_ignored_on_unnamed_type, attribute);
  return entity;
}

void suppress_report_of_unused(void* entity, an_il_entry_kind kind) {
  if (a_symbol* symbol = symbol_of_entity(entity, kind))
    symbol->unused_reported = true;
}

void* unused_action(an_attribute*, void* entity, an_il_entry_kind kind) {
  if (kind == iek_label)
    static_cast<a_label*>(entity)->is_unused_attr = true;
  else if (kind == iek_param_type)
    static_cast<a_param_type*>(entity)->is_unused = true;
  else
    suppress_report_of_unused(entity, kind);
  return entity;
}

static bool returns_void(const a_routine* routine) {
  return is_function_type(routine->type) && is_void_type(return_type_of(routine->type));
}

void* warn_unused_result_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_routine && returns_void(static_cast<a_routine*>(entity))) {
    pos_warning(ec_warn_unused_result_with_void_return, &attribute->position);
    attribute->kind = attrk_dropped;
  }
  return entity;
}

void* nodiscard_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_routine && returns_void(static_cast<a_routine*>(entity))) {
    pos_warning(ec_nodiscard_doesnt_apply, &attribute->position);
    attribute->kind = attrk_dropped;
  }
  return entity;
}

// ---- Definitions that must stay ----

void* used_action(an_attribute*, void* entity, an_il_entry_kind kind) {
  if (kind == iek_routine)
    static_cast<a_routine*>(entity)->is_used = true;
  else
    static_cast<a_variable*>(entity)->is_used = true;
  suppress_report_of_unused(entity, kind);
  mark_as_needed(entity, kind);
  return entity;
}

void* weak_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_variable) {
    static_cast<a_variable*>(entity)->is_weak = true;
    return entity;
  }
  a_routine* routine = static_cast<a_routine*>(entity);
  if (find_attribute_of_kind(routine->source_corresp.attributes, attrk_ifunc) != nullptr) {
    pos_error(ec_ifunc_cant_be_weak, &attribute->position);
    attribute->kind = attrk_dropped;
  } else {
    routine->is_weak = true;
  }
  return entity;
}

// ---- Sections ----

static void report_section_conflict(const an_attribute* attribute, const a_symbol* symbol) {
  pos_sy_error(ec_decl_modifiers_incompatible_with_previous_decl, &attribute->position, symbol);
}

void* section_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  const char* name = text_argument(attribute, 0);
  if (name == nullptr || *name == '\0') {
    bad_attribute_argument(attribute);
    return entity;
  }
  bool is_accepted =
      kind == iek_routine
          ? set_routine_section_specification(static_cast<a_routine*>(entity), so_declaration, name,
                                              &attribute->position)
          : set_variable_section_specification(static_cast<a_variable*>(entity), so_declaration,
                                               name, &attribute->position);
  if (!is_accepted)
    report_section_conflict(attribute, symbol_of_entity(entity, kind));
  return entity;
}

// ---- Functions ----

void* naked_action(an_attribute*, void* entity, an_il_entry_kind) {
  static_cast<a_routine*>(entity)->is_naked = true;
  return entity;
}

void* noinline_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind != iek_routine)
    return entity;
  a_routine* routine = static_cast<a_routine*>(entity);
  if (routine->always_inline) {
    pos_error(ec_inline_gnu_noinline_conflict, &attribute->position);
    attribute->kind = attrk_dropped;
    return entity;
  }
  if (routine->is_inline)
    pos_warning(ec_inline_gnu_noinline_conflict, &attribute->position);
  routine->no_inline = true;
  return entity;
}

void* always_inline_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  a_routine* routine = static_cast<a_routine*>(entity);
  if (routine->no_inline) {
    pos_error(ec_inline_gnu_noinline_conflict, &attribute->position);
    attribute->kind = attrk_dropped;
    return entity;
  }
  set_inline_flag(routine, true);
  routine->always_inline = true;
  return entity;
}

void* gnu_inline_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  a_routine* routine = static_cast<a_routine*>(entity);
  if (!routine->is_inline) {
    pos_warning(ec_gnu_inline_requires_inline, &attribute->position);
    attribute->kind = attrk_dropped;
  } else {
    routine->is_gnu_inline = true;
  }
  return entity;
}

void* malloc_action(an_attribute*, void* entity, an_il_entry_kind) {
  static_cast<a_routine*>(entity)->returns_unique_pointer = true;
  return entity;
}

// Runs at start-up; the priority, if there is one, orders it among the others.
void* constructor_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  a_routine* routine = static_cast<a_routine*>(entity);
  if (routine->source_corresp.is_class_member && !routine->is_static_member) {
    drop_attribute(es_warning, ec_attribute_ignored_on_nonstatic_member_function, attribute);
    return entity;
  }
  int64_t priority = 65535;
  if (integer_argument(attribute, 0, &priority) && (priority < 0 || priority > 65535)) {
    bad_attribute_argument(attribute);
    return entity;
  }
  gnu_supplement_of(routine)->constructor_priority = static_cast<int32_t>(priority);
  routine->in_init_array = true;
  suppress_report_of_unused(routine, iek_routine);
  mark_as_needed(routine, iek_routine);
  return entity;
}

void* target_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  const an_attribute_arg* arg = attribute->arguments;
  const a_cached_token* token = arg == nullptr ? nullptr : arg->value.tokens;
  bool is_bad = token == nullptr;
  for (bool wants_string = true; token != nullptr; token = token->next) {
    is_bad |= token->kind != (wants_string ? tok_string : tok_comma);
    wants_string = !wants_string;
  }
  if (is_bad)
    pos_error(ec_exp_string_literal, &attribute->position);
  else
    validate_target_argument(&attribute->position);
  attribute->kind = attrk_dropped;
  return entity;
}

// ---- Aliases ----

static void* alias_or_ifunc(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  const char* target = text_argument(attribute, 0);
  if (target == nullptr || *target == '\0') {
    bad_attribute_argument(attribute);
    return entity;
  }
  if (kind == iek_variable) {
    pos_st_error(ec_attribute_not_supported_for_variables, &attribute->position, attribute->name);
    attribute->kind = attrk_dropped;
    return entity;
  }
  a_routine* routine = static_cast<a_routine*>(entity);
  gnu_supplement_of(routine)->alias_target = target;
  add_alias_fixup(routine->source_corresp.symbol, attribute->name, target, &attribute->position);
  return entity;
}

void* alias_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  return alias_or_ifunc(attribute, entity, kind);
}

void* ifunc_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  a_routine* routine = static_cast<a_routine*>(entity);
  if (routine->is_weak) {
    pos_error(ec_ifunc_cant_be_weak, &attribute->position);
    attribute->kind = attrk_dropped;
    return entity;
  }
  return alias_or_ifunc(attribute, entity, kind);
}

// ---- Variables ----

void* init_priority_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  const a_variable* variable = static_cast<const a_variable*>(entity);
  int64_t priority = 0;
  if (!integer_argument(attribute, 0, &priority) || priority < 1 || priority > 65535) {
    bad_attribute_argument(attribute);
  } else if (variable->storage_kind >= sc_auto || variable->storage_kind == sc_extern ||
             !is_class_struct_union_type(skip_array_types(variable->type))) {
    pos_error(ec_bad_variable_for_init_priority, &attribute->position);
    attribute->kind = attrk_dropped;
  }
  return entity;
}

// ---- Alignment ----

static void refuse_alignment(an_attribute* attribute) {
  if (attribute->form == af_alignas) {
    report_bad_attribute_target(es_error, attribute);
    return;
  }
  pos_error(ec_attribute_not_allowed, &attribute->position);
  attribute->kind = attrk_dropped;
}

// In bytes; 0 asks for none, and after an error.
static uint32_t alignment_of_argument(an_attribute* attribute) {
  const an_attribute_arg* arg = attribute->arguments;
  if (arg == nullptr)
    return attribute->form == af_alignas ? 0
                                         : static_cast<uint32_t>(targ_maximum_intrinsic_alignment);
  if (arg->arg_kind == aak_type)
    return f_alignment_of_type(arg->value.type);
  int64_t value;
  if (!integer_argument(attribute, 0, &value)) {
    bad_attribute_argument(attribute);
    return 0;
  }
  // C11 6.7.5 p6: zero has no effect.
  if (value == 0 && attribute->form == af_alignas)
    return 0;
  if (value <= 0 || (value & (value - 1)) != 0 || value > targ_maximum_pack_alignment) {
    pos_error(ec_bad_attribute_alignment, &attribute->position);
    attribute->kind = attrk_dropped;
    return 0;
  }
  return static_cast<uint32_t>(value);
}

// C11 6.7.5 p2; what isn't listed there takes no alignment in any form.
static bool takes_alignment(const an_attribute* attribute, const void* entity,
                            an_il_entry_kind kind) {
  bool is_alignas = attribute->form == af_alignas;
  switch (kind) {
  case iek_variable: {
    const a_variable* variable = static_cast<const a_variable*>(entity);
    return !variable->is_parameter && !(is_alignas && variable->storage_kind == sc_register);
  }
  case iek_field:
    return !(is_alignas && static_cast<const a_field*>(entity)->is_bit_field);
  case iek_routine:
    return !is_alignas;
  case iek_type:
    return !(is_alignas && static_cast<const a_type*>(entity)->kind == tk_typeref);
  default:
    return false;
  }
}

// The strictest of several counts (C11 6.7.5 p7).
static void set_declspec_align(void* entity, an_il_entry_kind kind, uint32_t alignment) {
  if (kind == iek_variable) {
    a_variable* variable = static_cast<a_variable*>(entity);
    if (alignment > variable->alignment)
      variable->alignment = static_cast<uint16_t>(alignment);
  } else if (kind == iek_field) {
    a_field* field = static_cast<a_field*>(entity);
    if (alignment > field->declared_alignment)
      field->declared_alignment = alignment;
  } else if (kind == iek_routine) {
    a_routine* routine = static_cast<a_routine*>(entity);
    if (alignment > routine->alignment)
      routine->alignment = alignment;
  } else {
    a_type* type = static_cast<a_type*>(entity);
    if (!type->has_explicit_alignment || alignment > type->alignment)
      type->alignment = alignment;
    type->has_explicit_alignment = true;
  }
}

// C11 6.7.5 p4, C++11 7.6.2 p5: all specifiers together mustn't lower the alignment of
// the type. Fields are checked with the layout.
static void check_alignment_is_kept(const an_attribute* attribute, const a_variable* variable) {
  const an_attribute* later = attribute->next;
  while (later != nullptr && later->form != af_alignas)
    later = later->next;
  if (later == nullptr && variable->alignment < f_alignment_of_type(variable->type))
    pos_error(ec_invalid_alignment_reducing_attr, &attribute->position);
}

// What is laid out already is neither aligned nor packed.
static bool is_laid_out_class(const a_type* type) {
  return is_class_struct_union_kind(type->kind) &&
         type->variant.class_struct_union.is_complete_definition &&
         !type->variant.class_struct_union.is_being_defined;
}

static void ignore_on_type(an_attribute* attribute, a_type* type) {
  pos_ty_warning(ec_attribute_does_not_apply_to_type, &attribute->position, type);
  attribute->kind = attrk_dropped;
}

void* align_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (!takes_alignment(attribute, entity, kind)) {
    refuse_alignment(attribute);
    return entity;
  }
  if (kind == iek_type && is_laid_out_class(static_cast<a_type*>(entity))) {
    ignore_on_type(attribute, static_cast<a_type*>(entity));
    return entity;
  }
  uint32_t alignment = alignment_of_argument(attribute);
  if (alignment != 0)
    set_declspec_align(entity, kind, alignment);
  if (alignment != 0 && attribute->form == af_alignas && kind == iek_variable)
    check_alignment_is_kept(attribute, static_cast<const a_variable*>(entity));
  return entity;
}

// ---- Packing ----

bool packed_attribute_allowed_on_type(const a_type* type) {
  if (is_class_struct_union_kind(type->kind))
    return !is_laid_out_class(type);
  return type->kind == tk_integer && type->variant.integer.is_enum && type->is_incomplete;
}

static void pack_class(a_type* type, bool is_packed) {
  auto& info = type->variant.class_struct_union;
  info.is_packed = is_packed;
  info.class_supplement->has_packed_attribute = is_packed;
  for (a_field* field = info.fields; field != nullptr; field = field->next) {
    if (is_packed && !field->is_unpacked)
      field->is_packed = true;
    else if (!is_packed)
      field->is_unpacked = true;
  }
}

static void set_type_packing(an_attribute* attribute, a_type* type, bool is_packed) {
  if (!packed_attribute_allowed_on_type(type)) {
    ignore_on_type(attribute, type);
  } else if (type->kind == tk_integer) {
    type->variant.integer.is_packed_enum = is_packed;
  } else {
    pack_class(type, is_packed);
  }
}

void* packed_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_field)
    static_cast<a_field*>(entity)->is_packed = true;
  else
    set_type_packing(attribute, static_cast<a_type*>(entity), true);
  return entity;
}

void* unpacked_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  set_type_packing(attribute, static_cast<a_type*>(entity), false);
  return entity;
}

// A union is passed as its first member would be.
void* transparent_union_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_param_type) {
    pos_warning(ec_transparent_attribute_ignored, &attribute->position);
    attribute->kind = attrk_dropped;
    return entity;
  }
  a_type* type = skip_typerefs(static_cast<a_type*>(entity));
  if (type->kind != tk_union) {
    pos_error(ec_transparent_type_is_not_union, &attribute->position);
    attribute->kind = attrk_dropped;
  } else {
    type->variant.class_struct_union.is_transparent_union = true;
    // A union that is being defined is checked with its layout.
    if (type->variant.class_struct_union.is_complete_definition)
      check_transparent_union(type, &attribute->position);
  }
  return entity;
}

// ---- Classes and virtual functions ----

static bool is_declared_in_class(an_attribute* attribute, const a_routine* routine) {
  if (routine->source_corresp.is_class_member)
    return true;
  drop_attribute(es_error, ec_attr_must_appear_in_class_definition, attribute);
  return false;
}

void* final_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_type) {
    a_type* type = static_cast<a_type*>(entity);
    type->variant.class_struct_union.is_declared_final = true;
    type->variant.class_struct_union.class_supplement->is_final = true;
  } else if (is_declared_in_class(attribute, static_cast<a_routine*>(entity))) {
    static_cast<a_routine*>(entity)->is_final = true;
  }
  pos_warning(ec_attribute_is_nonstandard, &attribute->position);
  return entity;
}

void* override_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  if (is_declared_in_class(attribute, static_cast<a_routine*>(entity)))
    static_cast<a_routine*>(entity)->is_override = true;
  pos_warning(ec_attribute_is_nonstandard, &attribute->position);
  return entity;
}

void* hiding_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (kind == iek_routine)
    is_declared_in_class(attribute, static_cast<a_routine*>(entity));
  pos_warning(ec_attribute_is_nonstandard, &attribute->position);
  return entity;
}

void* base_check_action(an_attribute* attribute, void* entity, an_il_entry_kind) {
  static_cast<a_type*>(entity)->variant.class_struct_union.is_base_check = true;
  pos_warning(ec_attribute_is_nonstandard, &attribute->position);
  return entity;
}

// Tags that become part of the external name.
void* abi_tag_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (in_C_mode()) {
    pos_warning(ec_abi_tag_ignored_in_C_mode, &attribute->position);
    attribute->kind = attrk_dropped;
  } else if (kind == iek_namespace &&
             static_cast<a_namespace*>(entity)->source_corresp.is_unnamed) {
    drop_attribute(es_warning, ec_ignoring_attribute_on_anonymous_namespace, attribute);
  } else if (kind == iek_namespace && !static_cast<a_namespace*>(entity)->is_inline) {
    drop_attribute(es_warning, ec_ignoring_attribute_on_non_inline_namespace, attribute);
  } else if (kind != iek_namespace && attribute->arguments == nullptr) {
    drop_attribute(es_error, ec_invalid_empty_attribute_arg_list, attribute);
  } else {
    gnu_abi_tag_attribute_seen = 1;
  }
  return entity;
}
