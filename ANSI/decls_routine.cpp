// Declarations and definitions of functions (C99 6.7.5.3, 6.9.1).

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "layout.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "types.h"

a_routine* make_routine(a_type* type, a_storage_kind storage, int depth) {
  a_routine* routine = alloc_routine();
  routine->type = type;
  routine->storage_kind = storage;
  add_to_routines_list(routine, depth);
  return routine;
}

// The function that the declaration declares again. A predeclared function gives
// way to a static one and to one of another type.
static a_symbol* find_routine(a_symbol_locator* locator, const a_decl_parse_state* state) {
  a_symbol* match = find_linked_declaration(locator, true);
  if (match && is_predeclared_function(match) &&
      (state->storage_class == sc_static ||
       !redeclaration_types_are_compatible(state->declared_type, match->variant.routine->type)))
    return forget_predeclared_function(match);
  return match;
}

static bool is_routine_symbol(const a_symbol* symbol) {
  return symbol->kind == symk_routine || symbol->kind == symk_extern_routine;
}

// ---- Redeclaration ----

static void reconcile_routine_types(a_routine* routine, a_type* new_type, bool is_definition) {
  a_type* old_type = routine->type;
  if (is_error_type(new_type) || is_error_type(old_type))
    return;
  // The type of a definition knows its parameters.
  if (is_definition)
    routine->type =
        routine_type_is_prototyped(new_type) ? composite_type(new_type, old_type) : new_type;
  else if (!routine->defined && !routine->has_body)
    routine->type = composite_type(new_type, old_type);
}

// C99 6.2.2 p5: a function is declared as with `extern`, which takes the
// linkage of a visible declaration only.
static void reconcile_storage(a_routine* routine, a_decl_parse_state* state,
                              const a_symbol_locator* locator) {
  bool was_static = routine->source_corresp.linkage == idl_internal;
  bool wants_static = state->storage_class == sc_static;
  if (was_static ? wants_static || !is_hidden_by_local(locator) : !wants_static)
    return;
  pos_diagnostic(strict_ansi_mode ? strict_ansi_error_severity : es_warning, ec_linkage_conflict,
                 &locator->position);
}

static void redeclare_routine(a_symbol* match, a_symbol_locator* locator, a_decl_parse_state* state,
                              bool is_definition) {
  a_routine* routine = match->variant.routine;
  if (match->position.seq == 0)
    match->position = routine->source_corresp.position = locator->position;
  if (redeclaration_types_are_compatible(state->declared_type, routine->type)) {
    reconcile_routine_types(routine, state->declared_type, is_definition);
  } else {
    report_incompatible_redeclaration(&locator->position, match);
    if (is_definition)
      routine->type = state->declared_type;
  }
  reconcile_storage(routine, state, locator);
  if (state->modifiers.inline_seen && routine->called && !routine->is_inline)
    pos_sy_remark(ec_called_function_redeclared_inline, &locator->position, match);
}

static a_routine* new_routine(a_symbol* symbol, a_decl_parse_state* state) {
  bool is_static = state->storage_class == sc_static;
  a_routine* routine = make_routine(state->declared_type, is_static ? sc_static : sc_extern, 0);
  symbol->variant.routine = routine;
  set_source_corresp_with_scope_depth(&routine->source_corresp, symbol, 0);
  routine->source_corresp.linkage = is_static ? idl_internal : idl_external;
  return routine;
}

static void note_modifiers(a_routine* routine, const a_decl_parse_state* state) {
  if (state->modifiers.inline_seen)
    set_inline_flag(routine, true);
  if (state->modifiers.noreturn_seen) {
    routine->no_return = true;
    if (is_function_type(routine->type))
      skip_typerefs(routine->type)->variant.routine.routine_supplement->does_not_return = true;
  }
}

// Which definitions of inline functions are external ones. One file-scope
// declaration without `inline` or with `extern` makes it so (C99 6.7.4 p6); in
// the older GNU meaning the definition alone tells, unless it is `extern inline`.
static void note_inline_definition(a_routine* routine, const a_decl_parse_state* state,
                                   unsigned flags) {
  if ((flags & drf_implicit) || is_in_function())
    return;
  const bool says_inline = state->modifiers.inline_seen;
  const bool says_extern = state->storage_class == sc_extern;
  const bool c99_meaning = std_c99_inlining && !routine->is_gnu_inline;
  if (c99_meaning ? !says_inline || says_extern
                  : (flags & drf_definition) && !(says_inline && says_extern))
    routine->has_external_declaration = true;
}

// A name that means something else here, or a function defined twice: the
// declaration goes its own way with a symbol that nobody finds.
static a_symbol* usable_match(a_symbol* match, a_symbol_locator* locator, bool is_definition) {
  if (!match)
    return nullptr;
  if (!is_routine_symbol(match))
    report_incompatible_redeclaration(&locator->position, match);
  else if (is_definition && match->variant.routine->has_body)
    pos_sy_error(ec_function_redefinition, &locator->position, match);
  else
    return match;
  set_to_error_locator(locator);
  return nullptr;
}

static a_symbol* symbol_in_this_scope(a_symbol* match, a_symbol_locator* locator) {
  if (match && match->kind == symk_routine &&
      match->scope_number == scope_stack[decl_scope_level].number)
    return match;
  bool check = true;
  locator->symbol = nullptr;
  return enter_symbol(symk_routine, locator, decl_scope_level, &check);
}

void decl_routine(a_symbol_locator* locator, a_decl_parse_state* state, a_func_info_block*,
                  unsigned flags) {
  bool is_definition = (flags & drf_definition) != 0;
  // C99 6.8.5 p3: a function is `extern`, whatever its declaration says.
  if (state->parse_flags.is_for_init && in_C_mode() && state->storage_class == sc_none &&
      !state->decl_flags.specifier_error)
    pos_error(ec_invalid_storage_class_in_for_init, &locator->position);
  a_symbol* match = usable_match(find_routine(locator, state), locator, is_definition);
  a_symbol* symbol = symbol_in_this_scope(match, locator);
  if (scope_stack[decl_scope_level].kind == sk_function_prototype)
    pos_warning(ec_decl_in_prototype_scope, &locator->position);
  a_routine* routine;
  if (match) {
    routine = match->variant.routine;
    redeclare_routine(match, locator, state, is_definition);
    symbol->variant.routine = routine;
  } else {
    routine = new_routine(symbol, state);
    if (is_in_function() && !locator->is_error_locator && !(flags & drf_implicit))
      enter_extern_symbol(symk_extern_routine, locator)->variant.routine = routine;
  }
  note_modifiers(routine, state);
  state->symbol = symbol;
  attach_decl_attributes(state, is_definition);
  note_inline_definition(routine, state, flags);
  routine->is_implicitly_declared = (flags & drf_implicit) != 0;
  if (is_definition) {
    // The definition is what positions in messages and in the file point at.
    symbol->defined = true;
    symbol->position = routine->source_corresp.position = locator->position;
  }
  record_symbol_declaration(is_definition ? srk_definition : srk_declaration, symbol,
                            &locator->position, nullptr);
}

a_symbol* decl_default_function(a_symbol_locator* locator) {
  a_decl_parse_state state;
  a_func_info_block func_info;
  int32_t saved_region, saved_level = decl_scope_level;
  clear_decl_parse_state(&state);
  clear_func_info(&func_info);
  switch_to_file_scope_region(&saved_region);
  decl_scope_level = 0;
  state.storage_class = sc_extern;
  state.declared_type = make_routine_type(integer_type(ik_int));
  decl_routine(locator, &state, &func_info, drf_declaration | drf_implicit);
  decl_scope_level = saved_level;
  switch_back_to_original_region(saved_region);
  return state.symbol;
}

// ---- Definitions ----

// `int f(a, b) char b; {...}`, behind the declarator.
static void old_style_parameter_declarations(a_type* routine_type, a_func_info_block* func_info) {
  push_scope(sk_function_prototype, -1, routine_type, nullptr);
  while (curr_token != tok_lbrace && curr_token != tok_end_of_source && is_decl_start(0))
    declaration(false, true, false, false, func_info, nullptr);
  pop_scope();
  a_routine_type_supplement* supplement = routine_type->variant.routine.routine_supplement;
  a_param_type** link = &supplement->param_types;
  uint32_t number = 1;
  for (a_param_id* param = func_info->param_id_list; param; param = param->next) {
    if (!param->type) {
      param->type = param->declared_type = integer_type(ik_int);
      if (std_version >= 199901 && strict_ansi_mode)
        pos_sy_diagnostic(strict_ansi_error_severity, ec_undeclared_parameter, &param->position,
                          param->symbol);
    }
    param->param_type = *link = make_param_type(make_unqualified_type(param->type));
    param->param_type->param_number = number++;
    param->param_type->name = param->symbol->header->identifier;
    param->param_type->is_register = param->is_register;
    set_arg_transfer_method_flag(param->param_type);
    attach_attributes(param->attributes, param->param_type, iek_param_type);
    link = &param->param_type->next;
  }
  supplement->old_style_definition = true;
}

static void check_main(const a_routine* routine, const a_source_position* position) {
  if (!is_main_function(routine) || is_error_type(routine->type))
    return;
  if (routine->is_inline) // C99 6.7.4 p4
    pos_error(ec_inline_main, position);
  if (type_kind(return_type_of(routine->type)) != tk_integer ||
      !identical_types(make_unqualified_type(return_type_of(routine->type)), integer_type(ik_int)))
    pos_warning(ec_bad_return_type_on_main, position);
}

void function_definition(a_symbol_locator* locator, a_decl_parse_state* state,
                         a_func_info_block* func_info) {
  if (func_info->is_from_typedef) {
    pos_error(ec_function_type_must_come_from_declarator, &locator->position);
    state->declared_type = copy_routine_type_with_param_types(skip_typerefs(state->declared_type));
  }
  if (state->storage_class != sc_none && state->storage_class != sc_extern &&
      state->storage_class != sc_static) {
    pos_error(ec_bad_function_storage_class, &state->storage_class_position);
    state->storage_class = sc_none;
  }
  if (func_info->is_old_style)
    old_style_parameter_declarations(skip_typerefs(state->declared_type), func_info);
  decl_routine(locator, state, func_info, drf_declaration | drf_definition);
  run_end_of_parse_actions(state, false);
  a_routine* routine = state->symbol->variant.routine;
  check_main(routine, &locator->position);
  if (curr_token != tok_lbrace) {
    syntax_error(ec_exp_lbrace);
    if (curr_token != tok_lbrace)
      return;
  }
  scan_function_body(routine, func_info);
}

static void check_parameter(a_param_id* param) {
  if (is_incomplete_type(param->type) && !is_error_type(param->type)) {
    pos_error(ec_incomplete_type_not_allowed, &param->position);
    param->type = error_type();
  }
  if (!param->symbol && in_C_mode())
    pos_diagnostic(es_discretionary_error, ec_all_proto_params_must_be_named, &param->position);
}

static void enter_parameter(a_param_id* param, a_variable* variable) {
  a_symbol_locator locator;
  clear_locator(&locator, &param->position);
  locator.header = param->symbol->header;
  locator.position = param->symbol->position;
  if (param->symbol->not_in_lookup)
    set_to_error_locator(&locator);
  a_symbol* symbol = enter_local_symbol(symk_variable, &locator, nullptr);
  symbol->variant.variable = variable;
  symbol->defined = true;
  set_source_corresp_with_scope_depth(&variable->source_corresp, symbol, depth_scope_stack);
  record_symbol_declaration(srk_definition, symbol, &locator.position, nullptr);
  mark_variable_value_set(symbol);
}

static void make_parameter_variable(a_param_id* param) {
  check_parameter(param);
  a_variable* variable = alloc_variable(param->is_register ? sc_register : sc_auto);
  variable->type = param->type;
  variable->param_type = param->param_type;
  variable->is_parameter = true;
  variable->is_defined = true;
  variable->source_corresp.local_to_function = true;
  variable->source_corresp.position = param->position;
  param->variable = variable;
  add_to_parameters_list(variable, depth_scope_stack);
  if (param->symbol)
    enter_parameter(param, variable);
  attach_attributes(get_param_variable_attr_copies(param->param_type), variable, iek_variable);
}

// Tags and enumerators of the parameter list are known in the body.
static void reactivate_prototype_scope_symbols(a_func_info_block* func_info) {
  a_symbol* next;
  for (a_symbol* symbol = func_info->first_prototype_symbol; symbol; symbol = next) {
    next = symbol->next_in_scope;
    if (symbol->kind != symk_parameter)
      reenter_symbol(symbol, depth_scope_stack, false);
  }
}

static void check_return_type_of_definition(a_routine* routine) {
  if (is_error_type(routine->type))
    return;
  a_type* type = return_type_of(routine->type);
  if (is_incomplete_type(type) && !is_void_type(type) && !is_error_type(type))
    pos_error(ec_incomplete_type_not_allowed, &routine->source_corresp.position);
}

// At the `{`; the `}` is read.
void scan_function_body(a_routine* routine, a_func_info_block* func_info) {
  if (routine->storage_kind == sc_extern)
    routine->storage_kind = sc_none;
  check_return_type_of_definition(routine);
  routine->has_body = true;
  skip_typerefs(routine->type)->variant.routine.routine_supplement->definition = routine;
  a_pack_alignment_state pack_state;
  reset_pack_alignment_state(current_pack_pragma_value(), &pack_state);
  push_function_scope(routine);
  a_scope* scope = scope_stack[depth_scope_stack].il_scope;
  reactivate_prototype_scope_symbols(func_info);
  for (a_param_id* param = func_info->param_id_list; param; param = param->next)
    make_parameter_variable(param);
  push_stop_token_stack();
  a_statement* body = compound_statement_full(true);
  scope->assoc_statement = body;
  pop_stop_token_stack();
  pop_scope();
  required_token(tok_rbrace, ec_exp_rbrace);
  // A pragma in front of the brace has acted now.
  restore_pack_alignment_state(&pack_state);
}
