// Declarators and type names. A declarator is read into a list of derivations
// in the order in which they bind to the name; the type is built from the other
// end, around the specifiers' type.

#include "declarator.h"

#include <algorithm>

#include "attribute.h"
#include "declarator_int.h"
#include "decls.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "lexical.h"
#include "lookup.h"
#include "misra.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "target.h"
#include "types.h"

// ---- Pointers ----

static void scan_pointer(a_decl_parse_state* state, a_derivation* pointer) {
  if (curr_token == tok_star || curr_token == tok_ampersand || curr_token == tok_and_and) {
    pointer->kind = curr_token == tok_star        ? dk_pointer
                    : curr_token == tok_ampersand ? dk_reference
                                                  : dk_rvalue_reference;
    get_token();
  } else {
    pointer->kind = dk_ptr_to_member;
    pointer->class_type = scan_class_of_ptr_to_member();
    if (!pointer->class_type)
      pointer->kind = dk_pointer;
  }
  a_source_position position = pos_curr_token;
  pointer->qualifiers = collect_type_qualifiers(nullptr);
  // _Alignas stands among the specifiers alone (C11 6.7.6 p1).
  while (is_attribute_start(al_specifiers) && !(in_C_mode() && curr_token == tok_alignas)) {
    append_attributes(&state->attributes_after, scan_attributes(al_specifiers));
    pointer->qualifiers |= collect_type_qualifiers(nullptr);
  }
  bool is_reference = pointer->kind == dk_reference || pointer->kind == dk_rvalue_reference;
  if (is_reference && (pointer->qualifiers & ~(gnu_mode ? tq_restrict : tq_none))) {
    pos_error(ec_qualified_reference_type, &position);
    pointer->qualifiers = tq_none;
  }
}

static bool at_pointer_operator() {
  if (curr_token == tok_star)
    return true;
  if (in_C_mode())
    return false;
  return curr_token == tok_ampersand || (curr_token == tok_and_and && rvalue_references_enabled) ||
         at_ptr_to_member();
}

void pointer_declarator(a_decl_parse_state* state) {
  std::vector<a_derivation> pointers;
  while (at_pointer_operator()) {
    a_derivation pointer = {};
    pointer.position = pos_curr_token;
    scan_pointer(state, &pointer);
    pointers.push_back(pointer);
  }
  derivations.insert(derivations.end(), pointers.rbegin(), pointers.rend());
}

// ---- Names ----

bool names_special_function(const a_symbol_locator* locator) {
  return locator->is_constructor_name || locator->is_destructor_name || locator->is_conversion_name;
}

// Whether the qualifier is the namespace that the declaration stands in.
static bool is_qualified_by_own_namespace(const a_symbol_locator* locator) {
  const a_scope_stack_entry* entry = &scope_stack[decl_scope_level];
  return !locator->is_class_qualified && !locator->is_enum_qualified &&
         locator->qualifier.namespace_entry && decl_scope_level > 0 &&
         entry->namespace_entry == locator->qualifier.namespace_entry;
}

// A qualified name declares a member again, and nothing else can be (C++11 8.3
// p1).
static void check_qualified_name(unsigned options, const a_decl_parse_state* state,
                                 a_symbol_locator* locator) {
  if (locator->is_error_locator || state->modifiers.friend_seen)
    return;
  if (options & do_member) {
    pos_error(ec_qualifier_in_member_declaration, &locator->position);
  } else if (options & (do_parameter | do_for_init | do_k_and_r_parameter)) {
    pos_error(ec_qualified_name_not_allowed, &locator->position);
  } else if (depth_innermost_function_scope >= 0) {
    pos_error(ec_qualified_name_not_allowed, &locator->position);
  } else if (is_qualified_by_own_namespace(locator)) {
    pos_error(ec_qualifier_in_namespace_member_decl, &locator->position);
  } else if (locator->is_global_qualified && depth_scope_stack == 0) {
    pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_qualifier_in_global_scope_decl,
                   &locator->position);
    return;
  } else {
    return;
  }
  set_to_error_locator(locator);
}

static void scan_identifier(unsigned options, const a_decl_parse_state* state,
                            a_symbol_locator* locator, a_source_position* name_end) {
  if (in_cplusplus_mode())
    coalesce_and_lookup_qualified_name(ilo_none);
  *name_end = end_pos_curr_token;
  *locator = locator_for_curr_id;
  if (locator->is_qualified)
    check_qualified_name(options, state, locator);
  else
    locator->symbol = nullptr;
  // The name of the class without a type in front of it.
  if ((options & do_member) && in_cplusplus_mode() && !locator->is_qualified &&
      is_unknown_type(state->type_specifier_type) && !names_special_function(locator))
    locator->is_constructor_name = true;
  get_token();
}

// At the `~` of a member's declarator. Elsewhere a destructor has a qualifier.
static void scan_destructor_name(unsigned options, const a_decl_parse_state* state,
                                 a_symbol_locator* locator, a_source_position* name_end) {
  const a_scope_stack_entry* entry = &scope_stack[depth_scope_stack];
  bool is_member = (options & do_member) && entry->kind == sk_class;
  if (is_member && entry->assoc_type->source_corresp.symbol != nullptr) {
    fold_destructor_name(entry->assoc_type);
    scan_identifier(options, state, locator, name_end);
    return;
  }
  pos_error(ec_bad_destructor_decl, &pos_curr_token);
  clear_locator(locator, &pos_curr_token);
  set_to_error_locator(locator);
  get_token();
  loop_token(tok_identifier);
}

// *name_end is left alone where there is no name.
static void scan_name(unsigned options, const a_decl_parse_state* state, a_symbol_locator* locator,
                      a_source_position* name_end) {
  bool may_be_named = !(options & do_abstract_only);
  if (may_be_named && f_is_generalized_identifier_start()) {
    scan_identifier(options, state, locator, name_end);
  } else if (may_be_named && in_cplusplus_mode() && curr_token == tok_compl) {
    scan_destructor_name(options, state, locator, name_end);
  } else if (options & do_name_required) {
    syntax_error(ec_exp_identifier);
    clear_locator(locator, &pos_curr_token);
    set_to_error_locator(locator);
  } else {
    make_unnamed_locator(locator, &pos_curr_token);
  }
}

// ---- The declarator ----

// Whether the `(` at hand encloses a declarator and not parameters.
static bool parenthesis_encloses_declarator(unsigned options) {
  if (!(options & (do_name_optional | do_abstract_only)))
    return true;
  a_token_cache cache;
  clear_token_cache(&cache, false);
  cache_curr_token(&cache);
  get_token();
  bool encloses = at_ptr_to_member() ||
                  (curr_token != tok_rparen && curr_token != tok_ellipsis && !is_decl_start(0));
  f_rescan_cached_tokens(&cache, true);
  return encloses;
}

// Whether the `(` behind a name holds parameters. In C++ it may hold the
// initializer instead: what can be a declaration of parameters is one (C++11
// 8.2).
static bool parenthesis_encloses_parameters(unsigned options, const a_symbol_locator* locator) {
  if (in_C_mode() || (options & (do_parameter | do_abstract_only | do_member)) ||
      names_special_function(locator) || locator->is_operator_name)
    return true;
  a_token_cache cache;
  clear_token_cache(&cache, false);
  cache_curr_token(&cache);
  get_token();
  bool encloses = curr_token == tok_rparen || curr_token == tok_ellipsis ||
                  is_decl_not_expr(dst_parameter | dst_guess_misspelled_type) ||
                  (allow_anachronisms && depth_innermost_function_scope < 0);
  f_rescan_cached_tokens(&cache, true);
  return encloses;
}

static void suffixes(unsigned options, const a_symbol_locator* locator,
                     a_func_info_block* func_info, bool is_next_to_name) {
  for (;; is_next_to_name = false) {
    if (curr_token == tok_lbracket)
      array_declarator(options, is_next_to_name);
    else if (curr_token == tok_lparen && parenthesis_encloses_parameters(options, locator))
      function_declarator(options, func_info);
    else
      return;
    func_info = nullptr; // only the derivation next to the name can be a definition
  }
}

// Reads a declarator; its derivations are pushed, the one that binds first
// being the lowest.
static void scan_declarator(unsigned options, a_decl_parse_state* state, a_symbol_locator* locator,
                            a_func_info_block* func_info, a_source_position* name_end) {
  check_stack_limit();
  size_t start = derivations.size();
  pointer_declarator(state);
  size_t number_of_pointers = derivations.size() - start;
  if (curr_token == tok_lparen && parenthesis_encloses_declarator(options)) {
    get_token();
    add_stop_token(tok_rparen);
    append_attributes(&state->attributes_after, scan_attributes(al_specifiers));
    scan_declarator(options | do_parenthesized, state, locator, func_info, name_end);
    remove_stop_token(tok_rparen);
    required_token(tok_rparen, ec_exp_rparen);
  } else {
    scan_name(options, state, locator, name_end);
    if (curr_token == tok_lbracket)
      append_attributes(&state->attributes_after, scan_attributes(al_declarator));
  }
  bool is_next_to_name = derivations.size() == start + number_of_pointers;
  // What follows may name members without a qualifier (C++11 3.4.1 p8).
  int pushed = push_scopes_of_qualifier(locator);
  suffixes(options, locator, is_next_to_name ? func_info : nullptr, is_next_to_name);
  pop_scopes_of_member(pushed);
  // The pointers bind after what has been read since.
  std::rotate(derivations.begin() + static_cast<ptrdiff_t>(start),
              derivations.begin() + static_cast<ptrdiff_t>(start + number_of_pointers),
              derivations.end());
}

// ---- The declared type ----

static a_type* type_of_derivations(size_t base, a_type* type) {
  while (derivations.size() > base) {
    a_derivation derivation = derivations.back();
    derivations.pop_back();
    type = add_to_derived_type_list(&derivation, type);
  }
  return type;
}

// C++11 8.3.5 p6: only the type of a member, a typedef and the like may have
// the qualifiers of a member function.
static void check_function_qualifiers(unsigned options, a_decl_parse_state* state,
                                      const a_symbol_locator* locator) {
  if (!is_function_type(state->declared_type) || (options & (do_member | do_abstract_only)) ||
      state->storage_class == sc_typedef || locator->is_class_qualified)
    return;
  const a_routine_type_supplement* supplement =
      skip_typerefs(state->declared_type)->variant.routine.routine_supplement;
  an_error_code code =
      supplement->this_qualifiers != 0 ? ec_function_qualifier_on_nonmember
      : supplement->has_lvalue_ref_qualifier || supplement->has_rvalue_ref_qualifier
          ? ec_ref_qualifier_not_allowed
          : 0;
  if (code == 0)
    return;
  pos_error(code, &locator->position);
  state->declared_type = error_type();
}

// C++11 15.4 p2: a typedef can't have one.
static void check_exception_specification(a_decl_parse_state* state,
                                          const a_func_info_block* func_info) {
  if (state->storage_class != sc_typedef || func_info->prototype_scope_number == -1 ||
      !is_function_type(state->declared_type))
    return;
  a_routine_type_supplement* supplement =
      skip_typerefs(state->declared_type)->variant.routine.routine_supplement;
  if (!supplement->exception_specification)
    return;
  pos_error(ec_exception_specification_not_allowed,
            &supplement->exception_specification->range.start);
  supplement->exception_specification = nullptr;
}

// Whether a declaration with `register` at file scope may name a register that the
// whole program shares, which has no initializer. The name of a variable of C++ is
// judged later.
static bool may_be_global_register(const a_decl_parse_state* state,
                                   const a_symbol_locator* locator) {
  if (is_function_type(state->declared_type))
    return gnu_mode; // reported as a function
  if (curr_token == tok_assign)
    return false;
  return (gnu_mode && curr_token == tok_asm) || in_cplusplus_mode() ||
         (locator->header != nullptr && is_global_register_name(locator->header->identifier));
}

static void check_file_scope_register(a_decl_parse_state* state, const a_symbol_locator* locator) {
  if (state->storage_class != sc_register || !state->parse_flags.is_file_scope)
    return;
  const bool is_reported = state->decl_flags.specifier_error || locator->is_error_locator;
  if (!is_reported && may_be_global_register(state, locator))
    return;
  if (!is_reported)
    pos_error(ec_bad_file_scope_storage_class, &state->storage_class_position);
  state->storage_class = sc_none;
}

// Rule 17.5. The array of a parameter doesn't count.
static void check_misra_pointer_depth(unsigned options, a_type* type,
                                      const a_source_position* position) {
  if ((options & do_parameter) && is_array_type(type))
    type = array_element_type(type);
  if (misra_get_pointer_depth(type, false) > 2)
    pos_diagnostic(misra_advisory_severity, ec_misra_c_2004_17_5, position);
}

// C11 6.7.4 p2, and the like of the target.
static void check_function_words(a_decl_parse_state* state) {
  if (is_function_type(state->declared_type) || is_error_type(state->declared_type) ||
      state->storage_class == sc_typedef)
    return;
  if (state->modifiers.noreturn_seen)
    pos_error(ec_bad_c11_noreturn, &state->modifiers.noreturn_position);
  if (state->modifiers.mask & (dm_interrupt | dm_trap | dm_reentrant))
    pos_error(ec_arm_interrupt_not_allowed, &state->modifiers.position);
}

// The type that a constructor, a destructor or a conversion function returns,
// which its specifiers don't say (C++11 12.1 p1, 12.3.2 p4, 12.4 p1).
static a_type* base_type_of_declarator(const a_decl_parse_state* state, a_type* type,
                                       const a_symbol_locator* locator) {
  if (!type)
    type = state->type_specifier_type;
  if (!names_special_function(locator))
    return is_unknown_type(type) ? error_type() : type;
  if (!is_unknown_type(type) && !is_error_type(type))
    pos_error(locator->is_constructor_name  ? ec_return_type_on_constructor
              : locator->is_destructor_name ? ec_return_type_on_destructor
                                            : ec_return_type_on_conversion_function,
              &state->specifiers_position);
  return locator->is_conversion_name ? locator->conversion_type : void_type();
}

// No type of a typedef is deduced, and no type of a field (C++11 7.1.6.4 p4).
static bool placeholder_is_allowed(unsigned options, const a_decl_parse_state* state) {
  return state->storage_class != sc_typedef &&
         (!(options & do_member) || state->storage_class == sc_static);
}

static void finish_declared_type(unsigned options, a_decl_parse_state* state,
                                 const a_symbol_locator* locator,
                                 const a_func_info_block* func_info) {
  if (in_cplusplus_mode()) {
    check_function_qualifiers(options, state, locator);
    check_exception_specification(state, func_info);
    if (state->decl_flags.has_auto_type)
      state->declared_type = deduce_placeholder_type(
          state->declared_type, placeholder_is_allowed(options, state), state, &locator->position);
    // C++11 7.1.5 p9.
    if (state->modifiers.constexpr_seen && !is_function_type(state->declared_type))
      state->declared_type = make_qualified_type(state->declared_type, tq_const);
  }
  check_file_scope_register(state, locator);
  check_function_words(state);
  if (check_misra_c_2004)
    check_misra_pointer_depth(options, state->declared_type, &locator->position);
}

void declarator(unsigned options, a_decl_parse_state* state, a_type* type,
                a_symbol_locator* locator, a_func_info_block* func_info) {
  size_t base = derivations.size();
  state->declarator_position = pos_curr_token;
  state->positions.name_end_position = end_pos_curr_token;
  scan_declarator(options, state, locator, func_info, &state->positions.name_end_position);
  state->declarator_range.start = locator->position;
  state->declarator_range.end = curr_construct_end_position;
  state->positions.declarator_range = {state->declarator_position, state->declarator_range.end};
  state->base_type = base_type_of_declarator(state, type, locator);
  state->declared_type = type_of_derivations(base, state->base_type);
  finish_declared_type(options, state, locator, func_info);
  func_info->is_from_typedef =
      is_function_type(state->declared_type) && func_info->prototype_scope_number == -1;
}

// ---- Type names ----

a_type* type_name_full(a_decl_parse_state* state) {
  a_symbol_locator locator;
  a_func_info_block func_info;
  clear_func_info(&func_info);
  decl_specifiers(dso_type_specifiers, state);
  declarator(do_abstract_only | do_vla, state, nullptr, &locator, &func_info);
  append_attributes(&state->attributes_before, state->attributes_after);
  append_attributes(&state->attributes_before, scan_gnu_attribute_groups(al_declarator));
  discard_end_of_parse_actions(state);
  state->declared_type =
      transform_type_with_gnu_attributes(state->declared_type, state->attributes_before);
  return state->declared_type;
}

a_type* type_name() {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  return type_name_full(&state);
}

a_type* new_type_name() {
  a_decl_parse_state state;
  size_t base = derivations.size();
  clear_decl_parse_state(&state);
  decl_specifiers(dso_type_specifiers, &state);
  pointer_declarator(&state);
  discard_end_of_parse_actions(&state);
  return type_of_derivations(base, state.type_specifier_type);
}

a_type* scan_type_for_cast() {
  return type_name();
}

a_type* scan_type_for_sizeof() {
  return type_name();
}
