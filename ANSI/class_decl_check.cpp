// What is said of a class as a whole once its members are known.

#include "class_decl_int.h"

#include "attribute.h"
#include "error.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "types.h"

// The texts "const %n" and "reference %n" of the lists of members.
static constexpr an_error_code text_const_member = 421;
static constexpr an_error_code text_reference_member = 422;

// ---- Members that a constructor alone could initialise ----

static bool needs_initializer(const a_field* field) {
  if (!field->source_corresp.symbol || field->has_default_init)
    return false;
  a_type* type = field->type;
  return is_reference_type(type) || (is_const_qualified_type(skip_array_types(type)) &&
                                     !is_class_struct_union_type(skip_array_types(type)));
}

// Such members get a value from a braced initializer at most.
static void check_members_without_constructor(const a_type* class_type) {
  const a_class_type_supplement* supplement = class_supplement_of(class_type);
  if (supplement->has_user_constructor || supplement->is_lambda_closure ||
      class_type->kind == tk_union ||
      class_type->variant.class_struct_union.has_error_in_definition)
    return;
  a_diagnostic* diag = nullptr;
  for (const a_field* field = class_type->variant.class_struct_union.fields; field;
       field = field->next) {
    if (!needs_initializer(field))
      continue;
    if (!diag)
      diag = pos_ty_start_diagnostic(es_warning, ec_no_ctor_but_const_or_ref_member,
                                     &class_type->source_corresp.position, class_type);
    sym_add_diag_info(diag,
                      is_reference_type(field->type) ? text_reference_member : text_const_member,
                      field->source_corresp.symbol);
  }
  if (diag)
    end_diagnostic(diag);
}

// A class with constructors has no field of its own name (C++11 9.2 p17).
static void check_names_of_fields(const a_type* class_type) {
  const a_symbol* class_symbol = class_type->source_corresp.symbol;
  if (!class_supplement_of(class_type)->has_user_constructor)
    return;
  for (const a_field* field = class_type->variant.class_struct_union.fields; field;
       field = field->next) {
    const a_symbol* symbol = field->source_corresp.symbol;
    if (symbol && !symbol->not_in_lookup && symbol->header == class_symbol->header)
      pos_error(ec_class_and_member_name_conflict, &symbol->position);
  }
}

// ---- Bases ----

// An object that is deleted through a pointer to such a base isn't destroyed.
static void check_destructors_of_bases(const a_type* class_type) {
  if (error_threshold >= 5)
    return;
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next) {
    const a_routine* destructor = class_supplement_of(class_of_base(base))->destructor;
    if (base->is_direct && destructor && !destructor->is_virtual &&
        destructor->source_corresp.access == as_public)
      pos_ty_remark(ec_base_class_with_nonvirtual_dtor, &base->position, base->type);
  }
}

void check_members_of_complete_class(a_type* class_type) {
  check_names_of_fields(class_type);
  check_members_without_constructor(class_type);
  check_destructors_of_bases(class_type);
}

// ---- Allocation functions ----

static bool declares_operator(const a_type* class_type, an_opname_kind kind) {
  const a_scope* scope = class_supplement_of(class_type)->scope;
  for (const a_routine* routine = scope ? scope->routines : nullptr; routine;
       routine = routine->next)
    if (routine->special_kind == rsk_operator && routine->special_data.operator_kind == kind)
      return true;
  return false;
}

// Where an initialization in `new` throws, the storage is freed by the delete
// that belongs to it.
static void check_correspondence_of_operator(a_type* class_type, an_opname_kind new_kind,
                                             an_opname_kind delete_kind) {
  if (declares_operator(class_type, new_kind) &&
      !opname_member_function_symbol(class_type, delete_kind))
    pos_stty_diagnostic(es_remark, ec_no_corresponding_member_delete,
                        &class_type->source_corresp.position, opname_names[delete_kind],
                        class_type);
}

// C++11 3.7.4.2 p2: a delete without a size goes before one that takes it.
static a_routine* usual_delete(const std::vector<a_routine*>& routines) {
  a_routine* with_size = nullptr;
  for (a_routine* routine : routines) {
    const a_param_type* param =
        is_error_type(routine->type) ? nullptr : param_types_of(skip_typerefs(routine->type));
    if (!param || routine->is_template_function)
      continue;
    if (!param->next)
      return routine;
    if (!param->next->next && identical_types(param->next->type, size_t_type()))
      with_size = routine;
  }
  return with_size;
}

// Finds what frees an object of the class, a member of it or of a base; the virtual
// destructor relies on one (C++11 12.5 p4, p9).
static void set_class_assoc_operator_delete_routine(a_type* class_type) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  std::vector<a_routine*> routines;
  a_symbol* symbol = opname_member_function_symbol(class_type, opn_delete);
  if (!symbol)
    return;
  add_routines_of_set(symbol, &routines);
  supplement->assoc_operator_delete = usual_delete(routines);
  if (!supplement->assoc_operator_delete && supplement->destructor &&
      supplement->destructor->is_virtual)
    pos_ty_error(ec_no_default_delete_in_virtual_dtor, &class_type->source_corresp.position,
                 class_type);
}

// ---- The attribute "base_check" ----

static a_symbol* member_of_bases(const a_type* class_type, const a_symbol* symbol) {
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next) {
    a_symbol_locator locator = cleared_locator;
    locator.header = symbol->header;
    a_symbol* found = base->is_direct
                          ? class_qualified_id_lookup(&locator, class_of_base(base), ilo_none)
                          : nullptr;
    if (found && !found->is_injected_class_name)
      return found;
  }
  return nullptr;
}

static bool overrides_any(const a_type* class_type, const a_routine* routine) {
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next)
    for (const an_overriding_virtual_function* record = base->overriding_functions; record;
         record = record->next)
      if (record->overrider == routine && !record->adjustment_base)
        return true;
  return false;
}

// One member against the bases: a function that overrides must say so, anything
// else that has the name of a member there must say that it hides it.
static void check_base_check_member(const a_type* class_type, const a_symbol* symbol) {
  const a_source_correspondence* corresp = source_corresp_entry_for_symbol(symbol);
  if (!corresp || symbol->is_injected_class_name)
    return;
  bool says_hiding = find_attribute_of_kind(corresp->attributes, attrk_hiding) != nullptr;
  const a_routine* routine =
      symbol->kind == symk_member_function ? symbol->variant.routine : nullptr;
  if (routine && routine->is_compiler_generated)
    return;
  if (routine && overrides_any(class_type, routine)) {
    if (!routine->is_override)
      pos_sy_error(ec_missing_override_attr_in_base_check_class, &symbol->position, symbol);
    if (says_hiding)
      pos_sy_error(ec_hiding_attr_on_nonhiding_member, &symbol->position, symbol);
    return;
  }
  bool hides = member_of_bases(class_type, symbol) != nullptr;
  if (hides && !says_hiding)
    pos_sy_error(ec_hiding_attr_required, &symbol->position, symbol);
  else if (!hides && says_hiding)
    pos_sy_error(ec_hiding_attr_on_unhidden_member, &symbol->position, symbol);
}

static void check_base_check_class(const a_type* class_type) {
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  const a_scope_pointers_block* block = info ? info->pointers_block : nullptr;
  for (const a_symbol* symbol = block ? block->first_symbol : nullptr; symbol;
       symbol = symbol->next_in_scope) {
    if (symbol->kind != symk_overloaded_function) {
      check_base_check_member(class_type, symbol);
      continue;
    }
    for (const a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym)
      check_base_check_member(class_type, s);
  }
}

void check_complete_class(a_type* class_type) {
  set_class_assoc_operator_delete_routine(class_type);
  check_correspondence_of_operator(class_type, opn_new, opn_delete);
  check_correspondence_of_operator(class_type, opn_array_new, opn_array_delete);
  if (class_type->variant.class_struct_union.is_base_check)
    check_base_check_class(class_type);
}

// ---- Local classes (C++11 9.8 p2) ----

static void check_functions_defined(const a_type* class_type) {
  check_stack_limit();
  const a_scope* scope = class_supplement_of(class_type)->scope;
  if (!scope)
    return;
  for (const a_routine* routine = scope->routines; routine; routine = routine->next) {
    const a_symbol* symbol = routine->source_corresp.symbol;
    if (symbol && !symbol->defined && !symbol->not_in_lookup && !routine->is_pure &&
        !routine->is_deleted && !routine->is_compiler_generated)
      pos_sy_error(ec_local_class_function_def_missing, &symbol->position, symbol);
  }
  for (const a_type* type = scope->types; type; type = type->next)
    if (is_class_struct_union_kind(type->kind))
      check_functions_defined(type);
}

void check_functions_of_local_class(const a_type* class_type) {
  if (class_type->variant.class_struct_union.is_local_class)
    check_functions_defined(class_type);
}
