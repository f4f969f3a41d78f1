// Anonymous structs and unions, whose members are those of the class around
// them (C11 6.7.2.1 p13, C++11 9.5 p5).

#include "class_decl_int.h"

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

// A name of the anonymous member becomes one of the class.
static void enter_anonymous_field(a_field* field, a_type* class_type) {
  a_symbol_locator locator;
  clear_locator(&locator, &field->source_corresp.position);
  locator.header = field->source_corresp.symbol->header;
  a_symbol* symbol = make_symbol(symk_field, &locator);
  symbol->variant.field = field;
  symbol->is_anonymous_union_member = true;
  set_class_membership(symbol, nullptr, class_type);
  bool check_hiding = true;
  add_symbol_to_symbol_table(symbol, depth_scope_stack, &check_hiding);
  field->is_anonymous_union_member = true;
}

static void enter_anonymous_fields(a_type* anonymous_type, a_type* class_type) {
  check_stack_limit();
  a_field* field = skip_typerefs(anonymous_type)->variant.class_struct_union.fields;
  for (; field; field = field->next) {
    if (is_anonymous_member(field))
      enter_anonymous_fields(field->type, class_type);
    else if (field->source_corresp.name && field->source_corresp.symbol)
      enter_anonymous_field(field, class_type);
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
  if (!skip_typerefs(state->type_specifier_type)->variant.class_struct_union.fields)
    pos_error(ec_empty_anonymous_union, position);
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

static a_field* anonymous_member(a_type* class_type, const a_decl_parse_state* state) {
  check_anonymous_member_mode(state);
  if (in_cplusplus_mode()) {
    check_anonymous_union_symbols(skip_typerefs(state->type_specifier_type));
    if (state->modifiers.mutable_seen)
      pos_error(ec_no_mutable_allowed_on_anonymous_union, &state->modifiers.mutable_position);
    if (state->storage_class == sc_static)
      pos_error(ec_static_not_allowed, &state->storage_class_position);
  }
  a_field* field =
      make_unnamed_field(class_type, type_of_anonymous_member(state), &state->specifiers_position);
  a_type* type = skip_typerefs(field->type);
  a_class_type_supplement* supplement = class_supplement_of(type);
  type->variant.class_struct_union.is_anonymous_union = true;
  supplement->anonymous_union_kind = auk_field;
  supplement->assoc_entity_is_set = true;
  supplement->assoc_entity_kind = iek_field;
  supplement->assoc_entity.field = field;
  enter_anonymous_fields(type, class_type);
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
