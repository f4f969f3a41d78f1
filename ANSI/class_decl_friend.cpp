// Friends of a class (C++11 11.3).

#include "class_decl_int.h"

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "types.h"

static a_symbol* symbol_of_type(const a_type* type) {
  return type->source_corresp.symbol;
}

// ---- Classes ----

// The scope in which a friend that isn't declared yet is declared: the
// innermost one around the class that is no class (C++11 7.3.1.2 p3, 11.3 p11).
static int depth_of_new_friend() {
  int depth = decl_scope_level;
  while (depth > 0 &&
         (scope_stack[depth].kind == sk_class || scope_stack[depth].kind == sk_class_reactivation))
    --depth;
  return depth;
}

// What the name means in the scopes up to the innermost namespace.
static a_symbol* tag_in_reach(a_symbol_locator* locator) {
  a_symbol* symbol = normal_id_lookup(locator, ilo_tag | ilo_friend_declaration);
  if (!symbol || symbol->is_class_member)
    return symbol;
  return scope_depth_of_symbol(symbol, nullptr) >= depth_innermost_namespace_scope ? symbol
                                                                                   : nullptr;
}

a_type* friend_class_type(a_type_kind kind, a_symbol_kind symbol_kind, a_symbol_locator* locator) {
  a_symbol* symbol = locator->is_qualified && locator->symbol
                         ? fundamental_symbol_of(locator->symbol)
                     : locator->is_qualified ? nullptr
                                             : tag_in_reach(locator);
  if (symbol && symbol->kind == symbol_kind)
    return symbol->variant.type;
  if (symbol) {
    pos_sy_error(ec_tag_kind_incompatible_with_declaration, &locator->position, symbol);
    return error_type();
  }
  if (locator->is_qualified) {
    if (!locator->is_error_locator)
      pos_st_error(ec_undefined_identifier, &locator->position, locator->header->identifier);
    return error_type();
  }
  locator->symbol = nullptr;
  a_type* type = make_class_type(kind, symbol_kind, locator, depth_of_new_friend());
  if (!friend_class_injection_enabled)
    symbol_of_type(type)->is_friend_only = true;
  return type;
}

static bool is_friend_class_already(const a_type* class_type, const a_type* friend_type) {
  for (const a_class_list_entry* entry = class_supplement_of(class_type)->friends; entry;
       entry = entry->next)
    if (skip_typerefs(entry->class_type) == friend_type)
      return true;
  return false;
}

// Words that say nothing of a friend.
static void check_words_of_friend(a_decl_parse_state* state) {
  const a_decl_modifiers_block& modifiers = state->modifiers;
  if (modifiers.virtual_seen)
    pos_error(ec_virtual_not_allowed, &modifiers.virtual_position);
  if (modifiers.explicit_seen)
    pos_error(ec_explicit_not_allowed, &modifiers.explicit_position);
  if (modifiers.mutable_seen)
    pos_error(ec_mutable_not_allowed, &modifiers.mutable_position);
  if (state->storage_class != sc_none) {
    pos_error(ec_storage_class_in_friend_decl, &state->storage_class_position);
    state->storage_class = sc_none;
  }
}

// `friend C;` without the keyword of a class is new in C++11 (11.3 p3).
static void check_form_of_friend_class(const a_decl_parse_state* state) {
  if (state->decl_flags.declares_tag || std_version >= 201103)
    return;
  pos_st_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                    ec_nonstd_friend_decl, &state->specifiers_position, "class");
}

void decl_friend_class(a_type* class_type, a_decl_parse_state* state) {
  a_type* type = skip_typerefs(state->type_specifier_type);
  check_words_of_friend(state);
  if (is_error_type(type))
    return;
  if (state->decl_flags.defines_tag) {
    pos_error(ec_bad_friend_decl, &state->specifiers_position);
    return;
  }
  if (!is_class_struct_union_kind(type->kind)) {
    if (std_version < 201103)
      pos_error(ec_bad_friend_decl, &state->specifiers_position);
    return;
  }
  check_form_of_friend_class(state);
  if (type == class_type) {
    pos_error(ec_self_friendship, &state->specifiers_position);
    return;
  }
  if (is_friend_class_already(class_type, type)) {
    pos_sy_remark(ec_duplicate_friend_decl, &state->specifiers_position, symbol_of_type(type));
    return;
  }
  a_class_list_entry* entry = alloc_list_entry_for_class();
  entry->class_type = type;
  a_class_list_entry** link = &class_supplement_of(class_type)->friends;
  while (*link)
    link = &(*link)->next;
  *link = entry;
}

// ---- Functions ----

static void note_friend_function(a_type* class_type, a_routine* routine,
                                 const a_source_position* position) {
  a_routine_list_entry** link = &class_supplement_of(class_type)->friend_routines;
  for (; *link; link = &(*link)->next)
    if ((*link)->routine == routine) {
      pos_sy_remark(ec_duplicate_friend_decl, position, routine->source_corresp.symbol);
      return;
    }
  *link = alloc_list_entry_for_routine();
  (*link)->routine = routine;
  a_class_list_entry* entry = alloc_list_entry_for_class();
  entry->class_type = class_type;
  entry->next = routine->friend_classes;
  routine->friend_classes = entry;
}

// A function of no class has no qualified object.
static void check_for_invalid_friend_declaration(a_type* type, const a_symbol_locator* locator) {
  a_routine_type_supplement* supplement = skip_typerefs(type)->variant.routine.routine_supplement;
  if (supplement->this_qualifiers != 0 && !locator->is_class_qualified) {
    pos_error(ec_function_qualifier_on_nonmember, &locator->position);
    supplement->this_qualifiers = 0;
  }
  if (names_special_function(locator) && !locator->is_class_qualified)
    pos_error(ec_bad_friend_decl, &locator->position);
}

// C++11 8.3.6 p4: default arguments make the friend declaration the definition.
static void check_default_args_of_friend(a_type* type, bool is_definition,
                                         const a_source_position* position) {
  const a_param_type* param = skip_typerefs(type)->variant.routine.routine_supplement->param_types;
  for (; param; param = param->next)
    if (param->has_default_arg && !is_definition) {
      pos_error(ec_friend_with_def_arg_must_be_definition, position);
      return;
    }
}

// A routine that no name leads to, for a friend in error.
static a_routine* make_error_friend(a_decl_parse_state* state, a_symbol_locator* locator) {
  set_to_error_locator(locator);
  int32_t saved_level = decl_scope_level;
  decl_scope_level = depth_of_new_friend();
  a_func_info_block func_info;
  clear_func_info(&func_info);
  decl_routine(locator, state, &func_info, drf_declaration);
  decl_scope_level = saved_level;
  return state->symbol->variant.routine;
}

// A member of another class must be one of its functions.
static a_routine* friend_member_function(a_decl_parse_state* state, a_symbol_locator* locator) {
  a_symbol* symbol = find_member_function_declaration(locator, state->declared_type);
  if (!symbol)
    return make_error_friend(state, locator);
  state->symbol = symbol;
  return symbol->variant.routine;
}

// A friend with a namespace in its name must be declared already.
static a_routine* friend_of_namespace(a_decl_parse_state* state, a_symbol_locator* locator) {
  a_symbol* symbol = locator->symbol ? fundamental_symbol_of(locator->symbol) : nullptr;
  a_symbol* function = symbol ? select_overload(state->declared_type, symbol) : nullptr;
  if (!function) {
    if (!locator->is_error_locator)
      pos_st_error(ec_undefined_identifier, &locator->position, locator->header->identifier);
    return make_error_friend(state, locator);
  }
  state->symbol = function;
  return function->variant.routine;
}

// An unqualified name declares a function of the innermost namespace, which
// ordinary lookup doesn't find until that declares it too.
static a_routine* friend_function(a_decl_parse_state* state, a_symbol_locator* locator,
                                  a_func_info_block* func_info, bool is_definition) {
  int32_t saved_level = decl_scope_level;
  uint32_t seq_before = decl_seq_counter;
  decl_scope_level = depth_of_new_friend();
  bool is_local = depth_innermost_function_scope >= 0;
  decl_routine(locator, state, func_info,
               is_definition ? drf_declaration | drf_definition : drf_declaration);
  decl_scope_level = saved_level;
  a_symbol* symbol = state->symbol;
  bool is_new = symbol->decl_seq >= seq_before && !symbol->not_in_lookup;
  if (is_new && is_local)
    pos_error(ec_local_class_friend_requires_prior_decl, &symbol->position);
  if (is_new)
    symbol->is_friend_only = true;
  return symbol->variant.routine;
}

a_routine* decl_friend_function(a_type* class_type, a_decl_parse_state* state,
                                a_symbol_locator* locator, a_func_info_block* func_info,
                                const a_virt_specifiers* virt) {
  const a_source_position position = locator->position;
  bool is_definition = curr_token == tok_lbrace || curr_token == tok_try;
  check_words_of_friend(state);
  if (virt->is_pure)
    pos_error(ec_pure_specifier_on_nonvirtual_function, &virt->pure_position);
  if (virt->is_override)
    pos_error(ec_override_requires_virtual, &virt->override_position);
  if (virt->is_final)
    pos_error(ec_final_modifier_requires_virtual_function, &virt->final_position);
  check_for_invalid_friend_declaration(state->declared_type, locator);
  check_default_args_of_friend(state->declared_type, is_definition, &position);
  bool is_qualified = locator->is_qualified;
  if (is_qualified && is_definition)
    pos_error(ec_no_qualified_friend_definition, &position);
  a_routine* routine = locator->is_class_qualified ? friend_member_function(state, locator)
                       : is_qualified              ? friend_of_namespace(state, locator)
                                      : friend_function(state, locator, func_info, is_definition);
  if (is_definition)
    routine->is_friend_definition = true;
  if (!state->symbol->not_in_lookup || !is_error_type(routine->type))
    note_friend_function(class_type, routine, &position);
  return routine;
}
