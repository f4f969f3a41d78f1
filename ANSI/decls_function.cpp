// Function definitions (C99 6.9.1, C++11 8.4).

#include "attribute.h"
#include "class_decl_int.h"
#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "layout.h"
#include "lexical.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "source_file.h"
#include "statements_int.h"
#include "symbol_ref.h"
#include "target.h"
#include "types.h"

// ---- Parameters of the old style ----

// The names of the list are known in the declarations of the parameters, and
// the tags declared there in the body.
static void scan_old_style_declarations(a_type* routine_type, a_func_info_block* func_info) {
  push_scope(sk_function_prototype, func_info->prototype_scope_number, routine_type, nullptr);
  for (a_param_id* param = func_info->param_id_list; param; param = param->next)
    if (param->symbol && !param->symbol->not_in_lookup)
      reenter_symbol(param->symbol, depth_scope_stack, true);
  while (curr_token != tok_lbrace && curr_token != tok_end_of_source &&
         (curr_token == tok_identifier || is_decl_start(0)))
    declaration(false, true, false, false, func_info, nullptr);
  if (curr_token == tok_ellipsis && gcc_mode) {
    routine_type->variant.routine.routine_supplement->has_ellipsis = true;
    get_token();
  }
  func_info->first_prototype_symbol = scope_stack[depth_scope_stack].pointers.first_symbol;
  pop_scope();
}

// C99 6.9.1 p6 wants a declaration of each parameter; before, one without was
// an int.
static void assume_int(a_param_id* param) {
  param->type = param->declared_type = integer_type(ik_int);
  param->storage_class = sc_auto;
  param->is_implicit = true;
  if (std_version >= 199901)
    pos_sy_diagnostic(tolerated_breach_severity(), ec_undeclared_parameter, &param->position,
                      param->symbol);
}

static a_param_type* make_old_style_param_type(const a_param_id* param, uint32_t number) {
  a_type* type =
      remove_qualifiers_from_param_types ? make_unqualified_type(param->type) : param->type;
  // A float arrives as a double (C99 6.5.2.2 p6).
  if (type_kind(type) == tk_float && skip_typerefs(type)->variant.float_kind == fk_float)
    type = float_type(fk_double);
  a_param_type* param_type = make_param_type(type);
  param_type->declared_type = param->declared_type;
  param_type->param_qualifiers = get_type_qualifiers(param->type) & 0xff;
  param_type->param_number = number;
  param_type->name = param->symbol->header->identifier;
  param_type->is_register = param->is_register;
  set_arg_transfer_method_flag(param_type);
  return param_type;
}

// `int f(a, b) char b; {...}`, behind the declarator.
static void old_style_parameter_declarations(a_type* routine_type, a_func_info_block* func_info) {
  scan_old_style_declarations(routine_type, func_info);
  a_routine_type_supplement* supplement = routine_type->variant.routine.routine_supplement;
  a_param_type** link = &supplement->param_types;
  uint32_t number = 1;
  for (a_param_id* param = func_info->param_id_list; param; param = param->next) {
    if (!param->type)
      assume_int(param);
    param->param_type = *link = make_old_style_param_type(param, number++);
    attach_attributes(param->attributes, param->param_type, iek_param_type);
    link = &param->param_type->next;
  }
  supplement->old_style_definition = true;
}

// ---- main (C99 5.1.2.2.1, C++11 3.6.1) ----

static void check_return_type_of_main(a_type* type, const a_source_position* position) {
  a_type* return_type = return_type_of(type);
  if (type_kind(return_type) == tk_integer &&
      identical_types(make_unqualified_type(return_type), integer_type(ik_int)))
    return;
  pos_diagnostic(in_cplusplus_mode() && !is_error_type(return_type) ? es_discretionary_error
                                                                    : es_warning,
                 ec_bad_return_type_on_main, position);
}

static void check_main(const a_routine* routine, const a_decl_parse_state* state,
                       const a_source_position* position) {
  if (!is_main_function(routine) || is_error_type(routine->type))
    return;
  if (routine->is_inline && !state->modifiers.constexpr_seen) // C99 6.7.4 p4
    pos_error(ec_inline_main, position);
  if (state->modifiers.constexpr_seen)
    pos_error(ec_constexpr_main, position);
  else if (in_cplusplus_mode() && state->storage_class == sc_static)
    pos_error(ec_bad_function_storage_class, &state->storage_class_position);
  check_return_type_of_main(routine->type, position);
}

// ---- The definition ----

static bool is_in_header(uint32_t seq) {
  uint32_t line;
  a_boolean at_end;
  const a_source_file* file = source_file_for_seq(seq, &line, &at_end, false);
  return file && file->is_include_file;
}

static void check_misra_rules(const a_decl_parse_state* state, const a_source_position* position) {
  if (!check_misra_c_2004)
    return;
  if (is_in_header(position->seq))
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_8_5, position);
  if (is_function_type(state->declared_type) &&
      skip_typerefs(state->declared_type)->variant.routine.routine_supplement->has_ellipsis)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_16_1, position);
}

static void check_storage_class(a_decl_parse_state* state) {
  if (state->storage_class == sc_none || state->storage_class == sc_extern ||
      state->storage_class == sc_static)
    return;
  pos_error(ec_bad_function_storage_class, &state->storage_class_position);
  state->storage_class = sc_none;
}

// `= delete` (C++11 8.4.3), `= default` (8.4.2).
static void definition_by_word(a_routine* routine, const a_decl_parse_state* state,
                               const a_source_position* position) {
  get_token();
  if (curr_token == tok_delete) {
    if (is_main_function(routine))
      pos_error(ec_deleted_main, position);
    else if (state->parse_flags.is_redeclaration)
      pos_error(ec_deleted_function_definition_must_be_first_declaration, position);
    routine->is_deleted = true;
  } else {
    define_defaulted_function(routine, state);
  }
  get_token();
}

bool is_definition_by_word() {
  if (in_C_mode() || curr_token != tok_assign)
    return false;
  a_token_kind next = next_token();
  return next == tok_delete || next == tok_default;
}

void record_lint_argsused_and_varargs_state(a_func_info_block* func_info) {
  if (!has_construct_pragmas())
    return;
  a_pending_pragma* pragmas = extract_specific_pragmas(pk_argsused);
  func_info->has_unused_parameters = pragmas != nullptr;
  free_pending_pragma_list(pragmas);
}

void function_definition(a_symbol_locator* locator, a_decl_parse_state* state,
                         a_func_info_block* func_info) {
  record_lint_argsused_and_varargs_state(func_info);
  check_misra_rules(state, &locator->position);
  if (func_info->is_from_typedef) {
    pos_error(ec_function_type_must_come_from_declarator, &locator->position);
    state->declared_type = copy_routine_type_with_param_types(skip_typerefs(state->declared_type));
  }
  check_storage_class(state);
  if (func_info->is_old_style)
    old_style_parameter_declarations(skip_typerefs(state->declared_type), func_info);
  if (state->asm_name) {
    pos_error(ec_asm_name_in_rout_defn, &state->asm_name_position);
    state->asm_name = nullptr;
  }
  decl_routine(locator, state, func_info, drf_declaration | drf_definition);
  check_access_of_declaration(state->symbol);
  run_end_of_parse_actions(state, false);
  a_routine* routine = state->symbol->variant.routine;
  apply_default_section_to_routine(routine);
  check_main(routine, state, &locator->position);
  if (is_definition_by_word()) {
    definition_by_word(routine, state, &locator->position);
    return;
  }
  state->parse_flags.is_function_definition = true;
  if (curr_token != tok_lbrace && curr_token != tok_colon && curr_token != tok_try) {
    syntax_error(ec_exp_lbrace);
    if (curr_token != tok_lbrace)
      return;
  }
  a_source_range body = {pos_curr_token, pos_curr_token};
  scan_function_body(routine, func_info);
  body.end = curr_construct_end_position;
  note_definition_range(&routine->source_corresp, nullptr, &body);
}

// ---- The body ----

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
  attach_attributes(get_param_variable_attr_copies(param->param_type), variable, iek_variable);
  mark_variable_value_set(symbol);
}

static a_variable* make_parameter_variable(a_param_id* param) {
  a_variable* variable = alloc_variable(param->is_register ? sc_register : sc_auto);
  variable->type = param->type;
  variable->param_type = param->param_type;
  variable->is_parameter = true;
  variable->is_implicit = param->is_implicit;
  variable->is_defined = true;
  variable->source_corresp.local_to_function = true;
  variable->source_corresp.position = param->position;
  add_to_parameters_list(variable, depth_scope_stack);
  return variable;
}

static void declare_parameter(a_param_id* param, bool may_be_unused) {
  check_parameter(param);
  param->variable = make_parameter_variable(param);
  if (!param->symbol)
    return;
  enter_parameter(param, param->variable);
  if (may_be_unused)
    param->variable->source_corresp.symbol->unused_reported = true;
}

// The bounds of a prototype see the parameters in front of them. An identifier list
// says nothing about the order of the declarations.
static void declare_parameters(const a_func_info_block* func_info) {
  for (a_param_id* param = func_info->param_id_list; param; param = param->next) {
    if (!func_info->is_old_style)
      fix_vla_bounds_of_parameter(param);
    declare_parameter(param, func_info->has_unused_parameters);
  }
  if (func_info->is_old_style)
    for (a_param_id* param = func_info->param_id_list; param; param = param->next)
      fix_vla_bounds_of_parameter(param);
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

// What a constructor or destructor does beside its block.
static void scan_initializers_of_body(a_routine* routine, a_scope* scope) {
  if (routine->special_kind == rsk_constructor) {
    ctor_initializer(routine, scope);
  } else if (curr_token == tok_colon) {
    syntax_error(ec_bad_data_member_initialization);
    while (curr_token != tok_lbrace && curr_token != tok_end_of_source)
      get_token();
  }
  if (routine->special_kind == rsk_destructor)
    dtor_initializer(routine, scope);
}

// The block of the body, whose `}` is left, or the try block that takes its
// place, which holds the initialisers too (C++11 15 p4).
static a_statement* scan_outermost_block(a_routine* routine, a_scope* scope) {
  if (start_of_function_try_block())
    return function_try_block(routine, scope, scan_initializers_of_body);
  scan_initializers_of_body(routine, scope);
  return compound_statement_full(true);
}

// A function inside another one, as of a local class, leaves the statements
// around it alone.
static void scan_body_in_its_scope(a_routine* routine, a_func_info_block* func_info) {
  a_stmt_stack_state outer_statements;
  bool is_nested = depth_stmt_stack >= 0;
  if (is_nested)
    new_struct_stmt_stack(&outer_statements);
  push_function_scope(routine);
  a_scope* scope = scope_stack[depth_scope_stack].il_scope;
  if (in_cplusplus_mode())
    declare_this_parameter(routine, scope);
  reactivate_prototype_scope_symbols(func_info);
  declare_parameters(func_info);
  push_stop_token_stack();
  scope->assoc_statement = scan_outermost_block(routine, scope);
  pop_stop_token_stack();
  pop_scope();
  if (is_nested)
    restore_struct_stmt_stack(&outer_statements);
}

// At the `{`, or at the `:` of a constructor; the `}` is read.
void scan_function_body(a_routine* routine, a_func_info_block* func_info) {
  if (routine->storage_kind == sc_extern)
    routine->storage_kind = sc_none;
  bool is_try_block = start_of_function_try_block();
  if (is_try_block && routine->special_kind == rsk_constructor && routine->is_constexpr)
    pos_error(ec_constexpr_constructor_with_function_try_block, &pos_curr_token);
  check_return_type_of_definition(routine);
  routine->has_body = true;
  skip_typerefs(routine->type)->variant.routine.routine_supplement->definition = routine;
  a_pack_alignment_state pack_state;
  reset_pack_alignment_state(current_pack_pragma_value(), &pack_state);
  const a_symbol* symbol = routine->source_corresp.symbol;
  int pushed = symbol ? push_scopes_of_member(symbol) : 0;
  scan_body_in_its_scope(routine, func_info);
  pop_scopes_of_member(pushed);
  if (!is_try_block)
    required_token(tok_rbrace, ec_exp_rbrace);
  // A pragma in front of the brace has acted now.
  restore_pack_alignment_state(&pack_state);
}
