// Member functions as a class declares them (C++11 9.3, 12, 13.5).

#include "class_decl_int.h"

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "types.h"

// ---- Names ----

void make_constructor_locator(const a_type* class_type, a_symbol_locator* locator) {
  const a_symbol* symbol = class_type->source_corresp.symbol;
  clear_locator(locator, &symbol->position);
  locator->header = symbol->header;
  locator->is_constructor_name = true;
}

void make_destructor_locator(const a_type* class_type, a_symbol_locator* locator) {
  clear_locator(locator, &class_type->source_corresp.symbol->position);
  locator->header = destructor_header(class_type);
  locator->is_destructor_name = true;
}

void make_operator_locator(unsigned operator_kind, const a_source_position* position,
                           a_symbol_locator* locator) {
  clear_locator(locator, position);
  locator->header = header_of_operator(static_cast<an_opname_kind>(operator_kind));
  locator->is_operator_name = true;
  locator->operator_kind = operator_kind;
}

static bool is_allocation_name(const a_symbol_locator* locator) {
  return locator->is_operator_name && locator->operator_kind <= opn_array_delete;
}

// ---- Entering ----

static a_routine_special_kind special_kind_of(const a_symbol_locator* locator) {
  return locator->is_constructor_name        ? rsk_constructor
         : locator->is_destructor_name       ? rsk_destructor
         : locator->is_conversion_name       ? rsk_conversion
         : locator->is_operator_name         ? rsk_operator
         : locator->is_literal_operator_name ? rsk_literal_operator
                                             : rsk_ordinary;
}

static a_routine_type_supplement* supplement_of_routine(a_type* type) {
  return skip_typerefs(type)->variant.routine.routine_supplement;
}

// The type as a member of the class has it.
static void make_member_type(a_type* type, a_type* class_type, bool is_static) {
  if (is_function_type(type))
    supplement_of_routine(type)->this_class = is_static ? nullptr : class_type;
}

static a_symbol* add_to_set(a_symbol* set, a_symbol* symbol) {
  return set ? add_symbol_to_overload_list(set, symbol) : symbol;
}

// Constructors, destructors and conversion functions are in no table: their
// names are found by the class alone (C++11 12.1 p2).
static a_symbol* enter_nameless_function(a_type* class_type, a_symbol_locator* locator) {
  a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  a_symbol* symbol = make_symbol(symk_member_function, locator);
  symbol->scope_number = scope_stack[depth_scope_stack].number;
  symbol->parent.class_type = class_type;
  symbol->is_class_member = true;
  if (symbol->not_in_lookup)
    return symbol;
  if (locator->is_constructor_name)
    info->constructor = add_to_set(info->constructor, symbol);
  else if (locator->is_destructor_name)
    info->destructor = symbol;
  else
    info->conversion_functions = add_to_set(info->conversion_functions, symbol);
  return symbol;
}

// What the class itself has by the name, but for a class or an enumeration,
// which a function hides.
static a_symbol* member_in_the_way(a_symbol_locator* locator) {
  a_symbol_locator own = *locator;
  own.symbol = nullptr;
  const a_symbol* symbol = curr_scope_id_lookup(&own, ilo_accept_projections);
  return !symbol || is_tag_symbol_kind(symbol->kind) ? nullptr : own.symbol;
}

static a_symbol* enter_named_function(a_type* class_type, a_symbol_locator* locator) {
  bool check_hiding = false;
  a_symbol* previous = locator->is_error_locator ? nullptr : member_in_the_way(locator);
  if (previous && !is_function_symbol_kind(fundamental_symbol_of(previous)->kind))
    previous = nullptr;
  locator->symbol = nullptr;
  a_symbol* symbol =
      previous ? enter_overloaded_symbol(symk_member_function, previous, locator, depth_scope_stack)
               : enter_symbol(symk_member_function, locator, depth_scope_stack, &check_hiding);
  if (locator->is_operator_name && locator->operator_kind == opn_assign && !symbol->not_in_lookup)
    class_symbol_supplement_of(class_type)->assignment_operator =
        symbol->supplement.overload_set ? symbol->supplement.overload_set : symbol;
  return symbol;
}

static void append_to_list(a_routine_list_entry** list, a_routine* routine) {
  while (*list)
    list = &(*list)->next;
  *list = alloc_list_entry_for_routine();
  (*list)->routine = routine;
}

static void list_special_function(a_type* class_type, a_routine* routine) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  switch (routine->special_kind) {
  case rsk_constructor:
    append_to_list(&supplement->constructors, routine);
    break;
  case rsk_destructor:
    if (!supplement->destructor)
      supplement->destructor = routine;
    break;
  case rsk_conversion:
    append_to_list(&supplement->conversions, routine);
    break;
  default:
    break;
  }
}

static void set_special_kind(a_routine* routine, const a_symbol_locator* locator) {
  set_routine_special_kind(routine, special_kind_of(locator));
  if (routine->special_kind == rsk_operator)
    routine->special_data.operator_kind = static_cast<uint8_t>(locator->operator_kind);
  else if (routine->special_kind == rsk_conversion)
    routine->special_data.conversion_target = locator->conversion_type;
}

// A class without linkage gives its members none (C++11 3.5 p5).
an_id_linkage_kind linkage_of_member(const a_type* class_type) {
  const auto& info = class_type->variant.class_struct_union;
  return info.is_local_class || info.is_member_of_local_class || is_in_unnamed_namespace()
             ? idl_internal
             : idl_external;
}

a_symbol* enter_member_function(a_type* class_type, a_symbol_locator* locator, a_type* type,
                                a_storage_kind storage) {
  const a_symbol_locator name = *locator;
  bool is_static = storage == sc_static || is_allocation_name(locator);
  make_member_type(type, class_type, is_static);
  a_symbol* symbol = names_special_function(locator) ? enter_nameless_function(class_type, locator)
                                                     : enter_named_function(class_type, locator);
  a_routine* routine = make_routine(type, sc_extern, depth_scope_stack);
  symbol->variant.routine = routine;
  set_source_corresp_with_scope_depth(&routine->source_corresp, symbol, depth_scope_stack);
  routine->source_corresp.linkage = linkage_of_member(class_type);
  routine->is_static_member = is_static;
  routine->virtual_function_index = no_virtual_function_index;
  set_special_kind(routine, &name);
  if (!symbol->not_in_lookup)
    list_special_function(class_type, routine);
  return symbol;
}

// ---- Specifiers (C++11 7.1.2) ----

static void check_virtual_word(const a_type* class_type, const a_decl_parse_state* state,
                               const a_symbol_locator* locator) {
  if (!state->modifiers.virtual_seen)
    return;
  const a_source_position* position = &state->modifiers.virtual_position;
  if (class_type->kind == tk_union || locator->is_constructor_name)
    pos_error(ec_virtual_not_allowed, position);
  else if (state->storage_class == sc_static || is_allocation_name(locator))
    pos_error(ec_virtual_static_not_allowed, position);
  else if (state->modifiers.constexpr_seen)
    pos_error(ec_constexpr_virtual_combination, position);
}

static void check_words_of_function(const a_type* class_type, a_decl_parse_state* state,
                                    const a_symbol_locator* locator) {
  const a_decl_modifiers_block& modifiers = state->modifiers;
  check_virtual_word(class_type, state, locator);
  bool may_be_explicit = locator->is_constructor_name ||
                         (locator->is_conversion_name && (std_version >= 201103 || gnu_mode));
  if (modifiers.explicit_seen && !may_be_explicit)
    pos_error(ec_explicit_not_allowed, &modifiers.explicit_position);
  if (modifiers.mutable_seen)
    pos_error(ec_mutable_not_allowed, &modifiers.mutable_position);
  if (modifiers.constexpr_seen && locator->is_destructor_name)
    pos_error(ec_invalid_constexpr, &modifiers.constexpr_position);
  if (state->storage_class == sc_static && names_special_function(locator)) {
    pos_error(locator->is_conversion_name ? ec_bad_conversion_function_decl : ec_static_not_allowed,
              &state->storage_class_position);
    state->storage_class = sc_none;
  }
}

// ---- The type ----

static bool has_function_qualifier(const a_routine_type_supplement* supplement) {
  return supplement->this_qualifiers != 0 || supplement->has_lvalue_ref_qualifier ||
         supplement->has_rvalue_ref_qualifier;
}

// A constructor, a destructor and a static function have no qualified object.
static void check_function_qualifier(a_type* type, bool is_static,
                                     const a_symbol_locator* locator) {
  a_routine_type_supplement* supplement = supplement_of_routine(type);
  if (!has_function_qualifier(supplement))
    return;
  an_error_code code = is_allocation_name(locator) ? ec_function_qualifier_on_new_or_delete
                       : locator->is_constructor_name || locator->is_destructor_name
                           ? ec_function_qualifier_on_ctor_or_dtor
                       : is_static ? ec_function_qualifier_on_static_member
                                   : 0;
  if (code == 0)
    return;
  pos_error(code, &locator->position);
  supplement->this_qualifiers = 0;
  supplement->has_lvalue_ref_qualifier = supplement->has_rvalue_ref_qualifier = false;
}

// C++11 12.8 p6: the parameter would itself have to be copied.
static void check_copy_by_value(a_type* class_type, a_type* type, const a_symbol_locator* locator) {
  const a_param_type* param = supplement_of_routine(type)->param_types;
  if (param && (!param->next || param->next->has_default_arg) &&
      skip_typerefs(param->type) == class_type)
    pos_ty2_error(ec_bad_constructor_param, &locator->position, class_type, param->type);
}

// A conversion to the class itself, to a base of it or to void is never used
// (C++11 12.3.2 p1).
static void check_conversion_target(const a_type* class_type, const a_symbol_locator* locator,
                                    const a_symbol* symbol) {
  a_type* target = locator->conversion_type;
  if (is_reference_type(target))
    target = type_pointed_to(target);
  if (is_error_type(target))
    return;
  if (is_void_type(target) || skip_typerefs(target) == class_type ||
      (is_class_struct_union_type(target) && find_base_class_of(class_type, target)))
    pos_sy_warning(ec_conversion_function_not_usable, &locator->position, symbol);
}

static void check_special_function_type(a_type* class_type, a_type* type, bool is_from_typedef,
                                        const a_symbol_locator* locator) {
  const a_routine_type_supplement* supplement = supplement_of_routine(type);
  if (is_from_typedef)
    pos_error(ec_bad_constructor_type, &locator->position);
  else if (locator->is_destructor_name && (supplement->param_types || supplement->has_ellipsis))
    pos_error(ec_too_many_params_for_destructor, &locator->position);
  else if (locator->is_conversion_name && (supplement->param_types || supplement->has_ellipsis))
    pos_error(ec_too_many_args_for_conversion, &locator->position);
  else if (locator->is_constructor_name)
    check_copy_by_value(class_type, type, locator);
}

// C++11 10.4 p3.
void check_abstract_types_of_function(a_type* type, const a_source_position* position) {
  if (is_abstract_class_type(return_type_of(type)))
    abstract_class_diagnostic(ec_function_returning_abstract_class, return_type_of(type), position);
  for (const a_param_type* param = supplement_of_routine(type)->param_types; param;
       param = param->next)
    if (is_abstract_class_type(param->type))
      abstract_class_diagnostic(ec_abstract_class_param_type, param->type, position);
}

static bool is_static_function(const a_decl_parse_state* state, const a_symbol_locator* locator) {
  return state->storage_class == sc_static || is_allocation_name(locator);
}

static a_type* checked_function_type(a_type* class_type, a_decl_parse_state* state,
                                     const a_symbol_locator* locator,
                                     const a_func_info_block* func_info) {
  a_type* type = skip_typerefs(state->declared_type);
  bool is_static = is_static_function(state, locator);
  if (func_info->is_from_typedef)
    type = copy_routine_type_with_param_types(type);
  check_function_qualifier(type, is_static, locator);
  if (names_special_function(locator))
    check_special_function_type(class_type, type, func_info->is_from_typedef, locator);
  check_abstract_types_of_function(type, &locator->position);
  if (locator->is_literal_operator_name)
    pos_error(ec_udl_cannot_be_class_member, &locator->position);
  else if (locator->is_operator_name)
    check_operator_function_params(locator, type, is_static ? omk_static : omk_nonstatic);
  make_member_type(type, class_type, is_static);
  state->declared_type = type;
  return type;
}

// ---- Redeclaration (C++11 9.3 p2, 13.1) ----

static bool has_same_params(a_type* a, a_type* b) {
  return param_types_are_compatible_full(skip_typerefs(a), skip_typerefs(b),
                                         tcf_error_matches | tcf_distinct_enums, nullptr);
}

static bool has_same_object(a_type* a, a_type* b) {
  const a_routine_type_supplement* x = supplement_of_routine(a);
  const a_routine_type_supplement* y = supplement_of_routine(b);
  return x->this_qualifiers == y->this_qualifiers &&
         x->has_lvalue_ref_qualifier == y->has_lvalue_ref_qualifier &&
         x->has_rvalue_ref_qualifier == y->has_rvalue_ref_qualifier;
}

bool is_same_member_function(a_type* a, a_type* b) {
  return is_function_type(a) && is_function_type(b) && has_same_params(a, b) &&
         has_same_object(a, b);
}

// The first function of the set, or the only one, that passes the test.
template <typename F> static a_symbol* find_function(a_symbol* symbol, F test) {
  if (!symbol)
    return nullptr;
  if (symbol->kind != symk_overloaded_function)
    return symbol->kind == symk_member_function && test(symbol) ? symbol : nullptr;
  for (a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym)
    if (s->kind == symk_member_function && test(s))
      return s;
  return nullptr;
}

a_symbol* functions_of_name(a_type* class_type, const a_symbol_locator* locator) {
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (locator->is_constructor_name)
    return info->constructor;
  if (locator->is_destructor_name)
    return info->destructor;
  if (locator->is_conversion_name)
    return info->conversion_functions;
  return nullptr;
}

static a_symbol* declared_functions(a_type* class_type, a_symbol_locator* locator) {
  return names_special_function(locator) ? functions_of_name(class_type, locator)
                                         : member_in_the_way(locator);
}

a_symbol* member_function_redecl_sym(a_symbol* functions, a_type* type,
                                     const a_symbol_locator* locator) {
  return find_function(functions, [type, locator](const a_symbol* s) {
    a_type* old_type = s->variant.routine->type;
    if (is_error_type(type) || is_error_type(old_type))
      return true;
    if (locator->is_conversion_name &&
        !identical_types(return_type_of(type), return_type_of(old_type)))
      return false;
    return is_same_member_function(type, old_type);
  });
}

static a_symbol* function_that_differs_in_static(a_symbol* functions, a_type* type,
                                                 bool is_static) {
  return find_function(functions, [type, is_static](const a_symbol* s) {
    const a_routine* routine = s->variant.routine;
    return static_cast<bool>(routine->is_static_member) != is_static &&
           is_function_type(routine->type) && has_same_params(type, routine->type);
  });
}

static bool is_hidden_by_function(a_symbol* symbol, a_type* type) {
  const a_symbol* real = fundamental_symbol_of(symbol);
  return symbol->kind == symk_projection && real->kind == symk_member_function &&
         is_same_member_function(type, real->variant.routine->type);
}

// A function that a using-declaration brought in gives way to one of the class
// with the same parameters (C++11 7.3.3 p15).
static void check_for_conflicts_with_using_decls(a_symbol* functions, a_type* type) {
  if (functions->kind == symk_projection) {
    if (is_hidden_by_function(functions, type))
      remove_symbol(functions);
    return;
  }
  if (functions->kind != symk_overloaded_function)
    return;
  for (a_symbol* s = functions->variant.overload_list; s;) {
    a_symbol* next = s->next_homonym;
    if (is_hidden_by_function(s, type))
      remove_symbol_from_overload_set(s, functions);
    s = next;
  }
}

void remove_functions_hidden_by_class(a_symbol* functions) {
  std::vector<a_type*> own_types;
  if (functions->kind != symk_overloaded_function)
    return;
  for (const a_symbol* s = functions->variant.overload_list; s; s = s->next_homonym)
    if (s->kind == symk_member_function)
      own_types.push_back(s->variant.routine->type);
  for (a_type* type : own_types)
    if (functions->kind == symk_overloaded_function)
      check_for_conflicts_with_using_decls(functions, type);
}

// Reports what the class has already; the locator is then that of an error.
static void check_redeclaration(a_type* class_type, a_decl_parse_state* state,
                                a_symbol_locator* locator) {
  if (locator->is_error_locator)
    return;
  a_type* type = state->declared_type;
  a_symbol* functions = declared_functions(class_type, locator);
  if (!functions)
    return;
  if (!is_function_symbol_kind(fundamental_symbol_of(functions)->kind)) {
    pos_st_error(ec_id_already_declared, &locator->position, locator->header->identifier);
    set_to_error_locator(locator);
    return;
  }
  bool is_static = is_static_function(state, locator);
  an_error_code code = 0;
  const a_symbol* previous = function_that_differs_in_static(functions, type, is_static);
  if (previous) {
    code = ec_static_nonstatic_with_same_param_types;
  } else if ((previous = member_function_redecl_sym(functions, type, locator)) != nullptr) {
    bool same_return =
        identical_types(return_type_of(type), return_type_of(previous->variant.routine->type));
    code = same_return ? ec_member_function_redeclaration
                       : ec_return_type_cannot_distinguish_functions;
  }
  if (code != 0) {
    pos_sy_error(code, &locator->position, previous);
    set_to_error_locator(locator);
    return;
  }
  check_for_conflicts_with_using_decls(functions, type);
}

// ---- What stands behind the declarator ----

void scan_virt_specifiers(a_virt_specifiers* virt) {
  for (;; get_token()) {
    if (curr_token_is_identifier_string("override")) {
      if (virt->is_override)
        pos_error(ec_dupl_decl_specifier, &pos_curr_token);
      virt->is_override = true;
      virt->override_position = pos_curr_token;
    } else if (curr_token_is_identifier_string("final") || curr_token == tok_final) {
      if (virt->is_final)
        pos_error(ec_dupl_decl_specifier, &pos_curr_token);
      virt->is_final = true;
      virt->final_position = pos_curr_token;
    } else {
      break;
    }
  }
  if (curr_token != tok_assign)
    return;
  a_token_kind next = next_token();
  if (next == tok_delete || next == tok_default)
    return;
  virt->is_pure = true;
  virt->pure_position = pos_curr_token;
  get_token();
  bool is_zero = curr_token == tok_integer && const_for_curr_token.kind == con_integer &&
                 const_for_curr_token.value.int_value == 0;
  if (!is_zero)
    pos_error(ec_bad_pure_specifier, &pos_curr_token);
  if (curr_token != tok_semicolon && curr_token != tok_lbrace && curr_token != tok_comma)
    get_token();
}

void scan_function_definition_word(a_routine* routine, a_decl_parse_state* state) {
  if (curr_token != tok_assign || (next_token() != tok_delete && next_token() != tok_default))
    return;
  get_token();
  if (curr_token == tok_delete) {
    routine->is_deleted = true;
  } else {
    routine->is_defaulted = true;
    if (state->modifiers.friend_seen)
      pos_error(ec_function_defaulted_in_friend_decl, &pos_curr_token);
    else
      check_defaulted_or_deleted_function(routine, state);
  }
  if (state->symbol)
    state->symbol->defined = true;
  set_inline_flag(routine, true);
  get_token();
}

void function_body_in_class(a_routine* routine, a_type* class_type, a_decl_parse_state* state,
                            const a_symbol_locator* locator, const a_func_info_block* func_info) {
  uint8_t flags = state->modifiers.friend_seen ? rff_friend : 0;
  if (func_info->is_from_typedef)
    pos_error(ec_function_type_must_come_from_declarator, &locator->position);
  if (routine->is_pure)
    pos_error(ec_pure_virtual_definition, &pos_curr_token);
  if (curr_token != tok_lbrace)
    flags |= rff_has_initializers;
  set_inline_flag(routine, true); // C++11 9.3 p2
  routine->is_user_provided = true;
  state->symbol->defined = true;
  apply_default_section_to_routine(routine);
  add_routine_fixup(routine, func_info, class_type, flags);
}

// ---- The declaration ----

static void set_flags_of_class(a_type* class_type, const a_routine* routine) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  supplement->has_user_constructor |= routine->special_kind == rsk_constructor;
  supplement->has_user_destructor |= routine->special_kind == rsk_destructor;
}

a_routine* decl_member_function(a_type* class_type, a_decl_parse_state* state,
                                a_symbol_locator* locator, const a_func_info_block* func_info,
                                const a_virt_specifiers* virt) {
  const a_symbol_locator name = *locator;
  check_words_of_function(class_type, state, locator);
  a_type* type = checked_function_type(class_type, state, locator, func_info);
  check_redeclaration(class_type, state, locator);
  a_symbol* symbol = enter_member_function(class_type, locator, type, state->storage_class);
  a_routine* routine = symbol->variant.routine;
  state->symbol = symbol;
  routine->is_explicit = state->modifiers.explicit_seen;
  routine->is_constexpr = state->modifiers.constexpr_seen;
  update_routine_decl_modifiers(routine, state);
  set_flags_of_class(class_type, routine);
  if (name.is_conversion_name)
    check_conversion_target(class_type, &name, symbol);
  apply_asm_name_to_routine(symbol, state, false);
  check_virtual_function(class_type, symbol, state, virt);
  attach_decl_attributes(state, false);
  record_symbol_declaration(srk_declaration, symbol, &name.position, nullptr);
  update_decl_pos_info(&routine->source_corresp, state);
  return routine;
}
