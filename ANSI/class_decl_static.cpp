// Static data members (C++11 9.4.2) and the typedefs of classes.

#include "class_decl_int.h"

#include "attribute.h"
#include "decl_inits.h"
#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "types.h"

// ---- Typedefs ----

// C++11 9.2 p16.
static void check_name_of_class(a_symbol_locator* locator, const a_decl_parse_state* state) {
  const a_type* class_type = scope_stack[depth_scope_stack].assoc_type;
  const a_symbol* symbol = class_type->source_corresp.symbol;
  if (locator->is_error_locator || locator->header != symbol->header ||
      skip_typerefs(state->declared_type) == class_type)
    return;
  pos_error(ec_class_and_member_name_conflict, &locator->position);
  set_to_error_locator(locator);
}

void decl_member_typedef(a_symbol_locator* locator, a_decl_parse_state* state) {
  check_name_of_class(locator, state);
  a_symbol_locator own = *locator;
  own.symbol = nullptr;
  const a_symbol* previous = own.is_error_locator ? nullptr : curr_scope_id_lookup(&own, ilo_none);
  // C++11 7.1.3 p4: in a class a typedef may not be repeated.
  if (previous && previous->kind == symk_type) {
    pos_st_error(ec_duplicate_typedef_in_class, &locator->position, locator->header->identifier);
    set_to_error_locator(locator);
  }
  decl_typedef(locator, state);
}

// ---- The declaration ----

static void check_place(const a_type* class_type, const a_source_position* position) {
  const auto& info = class_type->variant.class_struct_union;
  bool is_in_old_union = class_type->kind == tk_union && std_version < 201103 && !gnu_mode;
  if (info.is_local_class || info.is_member_of_local_class || is_in_old_union)
    pos_error(ec_static_data_member_not_allowed, position);
}

static void check_earlier_member(a_symbol_locator* locator) {
  if (locator->is_error_locator)
    return;
  a_symbol_locator own = *locator;
  own.symbol = nullptr;
  const a_symbol* previous = curr_scope_id_lookup(&own, ilo_accept_projections);
  if (!previous || is_tag_symbol_kind(previous->kind))
    return;
  pos_st_error(ec_id_already_declared, &locator->position, locator->header->identifier);
  set_to_error_locator(locator);
}

static void check_type(a_decl_parse_state* state, const a_symbol_locator* locator) {
  if (is_void_type(state->declared_type)) {
    pos_error(ec_incomplete_type_not_allowed, &locator->position);
    state->declared_type = error_type();
  } else if (is_abstract_class_type(state->declared_type)) {
    abstract_class_diagnostic(ec_abstract_class_object_not_allowed, state->declared_type,
                              &locator->position);
    state->declared_type = error_type();
  }
}

static a_variable* enter_static_data_member(const a_type* class_type, a_symbol_locator* locator,
                                            a_decl_parse_state* state) {
  bool check_hiding = false;
  locator->symbol = nullptr;
  a_symbol* symbol =
      enter_symbol(symk_static_data_member, locator, depth_scope_stack, &check_hiding);
  a_variable* variable = make_variable(state->declared_type, sc_extern, depth_scope_stack);
  symbol->variant.variable = variable;
  state->symbol = symbol;
  set_source_corresp_with_scope_depth(&variable->source_corresp, symbol, depth_scope_stack);
  variable->is_static_data_member = true;
  variable->is_constexpr = state->modifiers.constexpr_seen;
  variable->source_corresp.linkage = linkage_of_member(class_type);
  return variable;
}

// ---- Initialisers in the class (C++11 9.4.2 p3) ----

static bool is_valid_static_member_constant_type(a_type* type) {
  return is_error_type(type) || is_integral_or_enum_type(type);
}

// GNU C++ before 2011 has constants of floating type.
static an_error_severity severity_of_invalid_constant_type(a_type* type) {
  return gnu_mode && std_version < 201103 && is_floating_type(type) ? es_warning : es_error;
}

static void check_in_class_initializer(const a_decl_parse_state* state,
                                       const a_source_position* position) {
  a_type* type = state->declared_type;
  if (state->modifiers.constexpr_seen || is_error_type(type))
    return;
  if (!is_const_qualified_type(skip_array_types(type)))
    pos_error(ec_member_constant_not_const, position);
  else if (!is_valid_static_member_constant_type(type))
    pos_diagnostic(severity_of_invalid_constant_type(type), ec_invalid_member_constant_type,
                   position);
}

// The value, which waits for nothing: what it names was declared before.
static void scan_member_constant_for_variable(a_decl_parse_state* state) {
  a_variable* variable = state->symbol->variant.variable;
  const a_source_position equals_position = pos_curr_token;
  check_in_class_initializer(state, &state->symbol->position);
  if (curr_token == tok_assign)
    get_token();
  a_source_range range = {pos_curr_token, pos_curr_token};
  initializer(state);
  range.end = curr_construct_end_position;
  note_definition_range(&variable->source_corresp, &equals_position, &range);
}

void decl_static_data_member(a_type* class_type, a_symbol_locator* locator,
                             a_decl_parse_state* state) {
  const a_source_position position = locator->position;
  bool has_initializer =
      curr_token == tok_assign || (curr_token == tok_lbrace && list_init_enabled);
  check_place(class_type, &position);
  check_type(state, locator);
  check_earlier_member(locator);
  scan_gnu_asm_name(state);
  append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
  a_variable* variable = enter_static_data_member(class_type, locator, state);
  apply_asm_name_to_variable(state->symbol, state, false);
  update_variable_decl_modifiers(state);
  attach_decl_attributes(state, false);
  record_symbol_declaration(srk_declaration, state->symbol, &position, nullptr);
  update_decl_pos_info(&variable->source_corresp, state);
  if (has_initializer)
    scan_member_constant_for_variable(state);
  else if (state->modifiers.constexpr_seen)
    pos_error(ec_constexpr_static_data_member_without_initializer,
              &state->modifiers.constexpr_position);
}
