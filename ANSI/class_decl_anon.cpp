// Anonymous structs and unions, whose members are those of the class around
// them (C11 6.7.2.1 p13, C++11 9.5 p5).

#include "class_decl_int.h"

#include "decl_inits.h"
#include "decls.h"
#include "error.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "types.h"

bool is_anonymous_member(const a_field* field) {
  return field->source_corresp.is_unnamed && !field->is_bit_field &&
         is_class_struct_union_type(field->type) &&
         class_supplement_of(field->type)->anonymous_union_kind == auk_field;
}

static a_type* class_of_field(const a_field* field) {
  const a_scope* scope = field->source_corresp.parent_scope;
  return scope ? scope->assoc.type : nullptr;
}

a_field* anonymous_field_around(const a_field* field, const a_type* class_type) {
  a_field* around = nullptr;
  for (;;) {
    a_type* type = class_of_field(field);
    if (!type || type == class_type)
      return around;
    const a_class_type_supplement* supplement = class_supplement_of(type);
    if (supplement->anonymous_union_kind != auk_field)
      return around;
    field = around = supplement->assoc_entity.field;
  }
}

a_variable* anonymous_union_object_around(const a_field* field) {
  for (;;) {
    a_type* type = class_of_field(field);
    const a_class_type_supplement* supplement = type ? class_supplement_of(type) : nullptr;
    if (!supplement || supplement->anonymous_union_kind == auk_none)
      return nullptr;
    if (supplement->anonymous_union_kind == auk_variable)
      return supplement->assoc_entity.variable;
    field = supplement->assoc_entity.field;
  }
}

static void set_scope_of_anonymous_field(a_symbol* symbol, int depth) {
  if (!scope_stack[depth].namespace_entry)
    return;
  symbol->parent.namespace_entry = scope_stack[depth].namespace_entry;
  symbol->is_namespace_member = true;
}

// A name of the anonymous member becomes one of the class or, when that is null,
// of the scope at the depth.
static void enter_anonymous_field(a_field* field, a_type* class_type, int depth) {
  a_symbol_locator locator;
  clear_locator(&locator, &field->source_corresp.position);
  locator.header = field->source_corresp.symbol->header;
  a_symbol* symbol = make_symbol(symk_field, &locator);
  symbol->variant.field = field;
  symbol->is_anonymous_union_member = true;
  if (class_type)
    set_class_membership(symbol, nullptr, class_type);
  else
    set_scope_of_anonymous_field(symbol, depth);
  bool check_hiding = true;
  add_symbol_to_symbol_table(symbol, depth, &check_hiding);
  field->is_anonymous_union_member = true;
}

static void enter_anonymous_fields(a_type* anonymous_type, a_type* class_type, int depth) {
  check_stack_limit();
  a_field* field = skip_typerefs(anonymous_type)->variant.class_struct_union.fields;
  for (; field; field = field->next) {
    if (is_anonymous_member(field))
      enter_anonymous_fields(field->type, class_type, depth);
    else if (field->source_corresp.symbol && !field->source_corresp.symbol->not_in_lookup)
      enter_anonymous_field(field, class_type, depth);
  }
}

static void check_anonymous_member_mode(const a_decl_parse_state* state) {
  const a_source_position* position = &state->specifiers_position;
  if (in_C_mode()) {
    if (!allow_c11_anonymous_unions && !gnu_mode)
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                     ec_nonstd_unnamed_field, position);
    return;
  }
  bool is_union = is_union_type(state->type_specifier_type);
  if (!is_union && !nonstd_anonymous_unions)
    pos_error(ec_nonstd_unnamed_field, position);
}

static void check_anonymous_union_has_members(const a_decl_parse_state* state) {
  if (!skip_typerefs(state->type_specifier_type)->variant.class_struct_union.fields)
    pos_error(ec_empty_anonymous_union, &state->specifiers_position);
}

// The type of the unnamed field. Its qualifiers reach the members in C; in C++
// they are left out.
static a_type* type_of_anonymous_member(const a_decl_parse_state* state) {
  if (state->qualifiers == tq_none)
    return state->type_specifier_type;
  if (in_cplusplus_mode()) {
    pos_warning(ec_anonymous_union_qualifier_ignored, &state->specifiers_position);
    return state->type_specifier_type;
  }
  if (!allow_c11_anonymous_unions)
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_remark,
                   ec_nonstandard_anonymous_union_qualifier, &state->specifiers_position);
  return make_qualified_type(state->type_specifier_type, state->qualifiers);
}

static bool is_implicit_function(const a_symbol* symbol) {
  if (symbol->kind == symk_overloaded_function)
    symbol = symbol->variant.overload_list;
  return symbol->kind == symk_member_function && symbol->variant.routine->is_compiler_generated;
}

// What an anonymous union may not have: access that differs, member functions,
// static members (C++11 9.5 p5). Types are let pass.
static void check_anonymous_union_symbol(const a_symbol* symbol) {
  switch (symbol->kind) {
  case symk_member_function:
  case symk_overloaded_function:
    if (!is_implicit_function(symbol))
      pos_error(ec_anon_union_member_function, &symbol->position);
    break;
  case symk_static_data_member:
    pos_error(ec_static_data_member_not_allowed, &symbol->position);
    break;
  case symk_field:
    if (!symbol->is_anonymous_union_member &&
        symbol->variant.field->source_corresp.access != as_public)
      pos_error(ec_anon_union_member_access, &symbol->position);
    break;
  default:
    break;
  }
}

void check_anonymous_union_symbols(const a_type* union_type) {
  const a_class_symbol_supplement* info = class_symbol_supplement_of(union_type);
  const a_scope_pointers_block* block = info ? info->pointers_block : nullptr;
  for (const a_symbol* symbol = block ? block->first_symbol : nullptr; symbol;
       symbol = symbol->next_in_scope)
    check_anonymous_union_symbol(symbol);
  if (info && info->conversion_functions)
    check_anonymous_union_symbol(info->conversion_functions);
}

// Notes what holds the anonymous union.
static a_class_type_supplement* set_holder(a_type* type, an_anonymous_union_kind kind) {
  a_class_type_supplement* supplement = class_supplement_of(type);
  type->variant.class_struct_union.is_anonymous_union = true;
  supplement->anonymous_union_kind = kind;
  supplement->assoc_entity_is_set = true;
  supplement->assoc_entity_kind = kind == auk_field ? iek_field : iek_variable;
  return supplement;
}

void declare_anonymous_union_object(a_decl_parse_state* state) {
  a_type* type = skip_typerefs(state->type_specifier_type);
  a_symbol_locator locator;
  check_anonymous_union_has_members(state);
  check_anonymous_union_symbols(type);
  make_unnamed_locator(&locator, &state->specifiers_position);
  state->declared_type = type;
  decl_variable(&locator, state, dvf_declaration | dvf_definition);
  a_variable* variable = state->symbol->variant.variable;
  variable->is_anonymous_union_object = true;
  set_holder(type, auk_variable)->assoc_entity.variable = variable;
  enter_anonymous_fields(type, nullptr, decl_scope_level);
  initialize_by_default_constructor(state->symbol);
}

static a_field* anonymous_member(a_type* class_type, const a_decl_parse_state* state) {
  check_anonymous_member_mode(state);
  if (in_cplusplus_mode()) {
    check_anonymous_union_has_members(state);
    check_anonymous_union_symbols(skip_typerefs(state->type_specifier_type));
    if (state->modifiers.mutable_seen)
      pos_error(ec_no_mutable_allowed_on_anonymous_union, &state->modifiers.mutable_position);
    if (state->storage_class == sc_static)
      pos_error(ec_static_not_allowed, &state->storage_class_position);
  }
  a_field* field =
      make_unnamed_field(class_type, type_of_anonymous_member(state), &state->specifiers_position);
  a_type* type = skip_typerefs(field->type);
  set_holder(type, auk_field)->assoc_entity.field = field;
  enter_anonymous_fields(type, class_type, depth_scope_stack);
  note_qualified_field(class_type, field->type);
  return field;
}

// Whether the specifiers define a struct or union without a tag.
static bool defines_unnamed_class(const a_decl_parse_state* state) {
  return state->decl_flags.defines_tag && is_class_struct_union_type(state->type_specifier_type) &&
         skip_typerefs(state->type_specifier_type)->source_corresp.is_unnamed;
}

// A member declaration that ends behind its specifiers: an anonymous member, or
// nothing, unless it defines a type.
a_field* member_without_declarator(a_type* class_type, const a_decl_parse_state* state) {
  if (is_error_type(state->type_specifier_type))
    return nullptr;
  if (state->storage_class == sc_typedef) {
    pos_diagnostic(state->decl_flags.defines_tag || state->decl_flags.declares_tag ? es_warning
                                                                                   : es_error,
                   ec_missing_typedef_name, &state->specifiers_position);
    return nullptr;
  }
  if (defines_unnamed_class(state))
    return anonymous_member(class_type, state);
  if (in_cplusplus_mode() && (state->decl_flags.defines_tag || state->decl_flags.declares_tag))
    return nullptr;
  if (!state->decl_flags.defines_tag)
    pos_warning(ec_useless_decl, &state->specifiers_position);
  else if (in_C_mode() && is_class_struct_union_type(state->type_specifier_type))
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                   ec_nonstd_unnamed_member, &state->specifiers_position);
  return nullptr;
}
