// Initialisers of declared variables: the forms that they have, and what
// becomes of the value.

#include "decl_inits.h"

#include "class_decl.h"
#include "decl_inits_int.h"
#include "error.h"
#include "expr.h"
#include "expr_int.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "interpret.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "statements.h"
#include "types.h"

static bool has_static_duration(const a_variable* variable) {
  return variable->storage_kind < sc_auto;
}

// ---- Forms ----

bool is_initializer_start(const a_type* type) {
  return curr_token == tok_assign || curr_token == tok_lbrace ||
         (curr_token == tok_lparen && in_cplusplus_mode() && !is_function_type(type));
}

// Takes a `=`, and judges a list that has none.
static void scan_start_of_initializer(an_init_state* state) {
  state->is_parenthesized = curr_token == tok_lparen;
  if (curr_token == tok_assign) {
    get_token();
  } else if (in_C_mode()) {
    pos_error(ec_exp_assign, &pos_curr_token);
  } else if (curr_token == tok_lbrace) {
    state->is_direct_list = true;
    if (!list_init_enabled)
      pos_error(ec_list_initializer_nonstandard_in_current_mode, &pos_curr_token);
  }
  state->is_list_init = curr_token == tok_lbrace && in_cplusplus_mode();
}

static an_init_component* scan_parenthesized_list() {
  an_init_component* list = nullptr;
  an_init_component** link = &list;
  get_token();
  add_stop_token(tok_rparen);
  do {
    *link = scan_init_component();
    link = &(*link)->next;
  } while (loop_token(tok_comma));
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  return list;
}

// The object that a constructor makes of the arguments takes their place.
static an_init_component* construct_from_list(a_type* type, an_init_component* list,
                                              const a_source_position* position,
                                              an_init_state* state) {
  an_init_component* object = alloc_init_component(ick_expression);
  make_class_temporary(type, list, position, &object->variant.operand);
  state->error_reported |= object->variant.operand.kind == ok_error;
  free_init_component_list(list);
  return object;
}

// `(value)`. A class may have constructors of any number of arguments.
static an_init_component* scan_parenthesized_component(a_type* type, an_init_state* state) {
  a_source_position position = pos_curr_token;
  an_init_component* list = scan_parenthesized_list();
  if (is_class_struct_union_type(type))
    return construct_from_list(type, list, &position, state);
  if (list->next) {
    a_source_position second = init_component_pos(list->next);
    init_error(ec_exp_rparen, &second, state);
    free_init_component_list(list->next);
    list->next = nullptr;
  }
  return list;
}

// C89 knows only constants between braces (6.5.7 of that standard).
static bool run_time_elements_are_allowed() {
  return allow_nonconstant_auto_aggr_init_in_c_mode && !(strict_ansi_mode && std_version < 199901);
}

static an_init_component* scan_full_initializer_expr_as_component(a_type* type,
                                                                  an_init_state* state) {
  if (state->is_parenthesized)
    return scan_parenthesized_component(type, state);
  if (curr_token == tok_lbrace && in_C_mode() && is_aggregate_or_union_type(type) &&
      !run_time_elements_are_allowed())
    state->constant_required = true;
  return scan_partial_init_component();
}

// ---- Values ----

static a_dynamic_init* dynamic_init_of_value(a_constant* value, const an_init_state* state) {
  if (value->kind == con_dynamic_init)
    return value->value.dynamic_init;
  a_dynamic_init* init =
      alloc_dynamic_init(state->contains_nonconstant ? dik_nonconstant_aggregate : dik_constant);
  init->variant.constant = value;
  init->contains_nonconstant = state->contains_nonconstant;
  init->is_list_init = state->is_list_init;
  return init;
}

static void set_result(a_constant* value, an_init_state* state) {
  if (!value || state->error_reported)
    return;
  if (value->kind == con_dynamic_init || state->contains_nonconstant)
    state->result_dynamic_init = dynamic_init_of_value(value, state);
  else
    state->result_constant = value;
}

// Whether values of const variables may make the initialiser a constant: that of an
// object which is initialised before the program runs, and of one whose own value
// counts as a constant (C++11 3.6.2 p2, 5.19 p3).
static bool const_variables_count(const a_type* type, const an_init_state* state) {
  return in_cplusplus_mode() &&
         (state->is_static || (is_const_qualified_type(type) && is_integral_or_enum_type(type)));
}

// Reads and matches an initialiser. The type of an array of unknown bound
// becomes complete. Neither result is set after an error.
static void scan_and_match(a_type** type, an_init_state* state) {
  an_expr_stack_entry entry;
  push_expr_stack(ek_normal, &entry, false, false);
  entry.flags.constant_context = state->constant_required || state->constant_wanted;
  entry.flags.const_variables_count = const_variables_count(*type, state);
  an_init_component* list = scan_full_initializer_expr_as_component(*type, state);
  a_constant* value = state->error_reported ? nullptr : init_object(&list, type, state);
  report_excess_components(&list, state);
  free_init_component_list(list);
  pop_expr_stack();
  set_result(value, state);
}

// C++11 7.1.5 p9: the value is known, or it is reported.
static void reduce_to_constant(an_init_state* state, const a_source_position* position) {
  if (interpret_dynamic_init(state->result_dynamic_init, &state->result_constant)) {
    state->result_dynamic_init = nullptr;
    return;
  }
  init_error(ec_expr_not_constant, position, state);
  state->result_dynamic_init = nullptr;
}

// ---- Static duration ----

static void set_constant_initializer(a_variable* variable, a_constant* value) {
  variable->init_kind = initk_constant;
  variable->initializer.constant = value;
}

static void set_error_initializer(a_variable* variable) {
  a_constant* error = alloc_constant(con_error);
  error->type = error_type();
  set_constant_initializer(variable, error);
}

static bool refers_to_local_entity(const a_constant* value) {
  return value->kind == con_address && value->value.address.base_kind == abk_variable &&
         !is_file_scope_entry(value->value.address.base.variable);
}

// The value of a function's static goes with the function when it is large, or
// names what the function declares; a small one goes to the file scope.
static void initialize_static_to_constant(a_variable* variable, a_constant* value) {
  if (is_file_scope_entry(value)) {
    set_constant_initializer(variable, value);
  } else if (value->kind == con_aggregate || refers_to_local_entity(value)) {
    make_local_static_variable_init(variable, nullptr, initk_constant, value, nullptr);
  } else {
    int32_t saved_region = 0;
    switch_to_file_scope_region(&saved_region);
    set_constant_initializer(variable, alloc_unshared_constant(value));
    switch_back_to_original_region(saved_region);
  }
}

static void initialize_static_at_run_time(a_variable* variable, a_dynamic_init* init,
                                          const a_source_position* position) {
  init->variable = variable;
  if (innermost_function_scope == nullptr) {
    variable->init_kind = initk_dynamic;
    variable->initializer.dynamic = init;
    variable->has_fs_dynamic_init = true;
    add_to_dynamic_inits_list(init, -1);
    mark_as_needed(variable, iek_variable);
  } else {
    warn_if_code_is_unreachable(ec_initialization_not_reachable, position);
    if (inside_statement_expression())
      pos_error(ec_dyn_local_static_in_statement_expr, position);
    init->is_function_static = true;
    make_local_static_variable_init(variable, nullptr, initk_dynamic, nullptr, init);
  }
  record_end_of_lifetime_destruction(init, true, true);
}

// ---- Automatic duration ----

// Of a condition the initialisation is part of the expression.
static void initialize_automatic(a_variable* variable, a_dynamic_init* init, bool is_condition,
                                 const a_source_position* position) {
  init->variable = variable;
  warn_if_code_is_unreachable(ec_initialization_not_reachable, position);
  variable->init_kind = initk_dynamic;
  variable->initializer.dynamic = init;
  if (is_condition) {
    record_trivial_init_control_flow(variable);
    return;
  }
  a_statement* statement = add_statement_at_stmt_pos(stmk_init, position);
  statement->variant.dynamic_init = init;
  statement->end_position = curr_construct_end_position;
  update_init_statement_control_flow(statement);
  record_end_of_lifetime_destruction(init, false, true);
}

static void store_result(a_variable* variable, a_type* type, const an_init_state* state,
                         const a_source_position* position) {
  a_constant* constant = state->result_constant;
  a_dynamic_init* init = state->result_dynamic_init;
  if (!constant && !init) {
    if (has_static_duration(variable))
      set_error_initializer(variable);
    if (is_incomplete_array_type(variable->type)) {
      variable->type = error_type();
      variable->source_corresp.symbol->unused_reported = true; // nothing more to say of it
    }
    return;
  }
  if (is_incomplete_array_type(variable->type))
    variable->type = type;
  if (!has_static_duration(variable))
    initialize_automatic(variable, init ? init : dynamic_init_of_value(constant, state),
                         state->is_condition, position);
  else if (constant)
    initialize_static_to_constant(variable, constant);
  else
    initialize_static_at_run_time(variable, init, position);
}

// The destructor that runs where the object ends (C++11 12.4 p11).
static void check_destruction_of_variable(const a_variable* variable,
                                          const a_source_position* position) {
  if (in_cplusplus_mode() && !is_error_type(variable->type))
    check_use_of_destructor(variable->type, position);
}

// An object without an initialiser: what its default constructor does, if
// anything (C++11 8.5 p6).
void initialize_by_default_constructor(a_symbol* symbol) {
  a_variable* variable = symbol->variant.variable;
  a_type* element = skip_array_types(variable->type);
  if (variable->storage_kind == sc_extern || variable->init_kind != initk_none ||
      is_incomplete_type(element))
    return;
  a_dynamic_init* init = default_constructor_init(variable->type, &symbol->position);
  check_destruction_of_variable(variable, &symbol->position);
  if (!init || is_error_dynamic_init(init))
    return;
  if (has_static_duration(variable))
    initialize_static_at_run_time(variable, init, &symbol->position);
  else
    initialize_automatic(variable, init, false, &symbol->position);
}

// With exceptions, what an object of static duration is made of lives in a
// lifetime of its own until the object is complete.
static an_object_lifetime* push_lifetime_of_static(const a_variable* variable) {
  return exceptions_enabled && in_cplusplus_mode() && has_static_duration(variable)
             ? push_object_lifetime(iek_none, nullptr, olk_other)
             : nullptr;
}

static void pop_lifetime_of_static(an_object_lifetime* lifetime, a_variable* variable) {
  if (!lifetime || !pop_object_lifetime())
    return;
  a_local_static_variable_init* local = variable->init_kind == initk_local_static
                                            ? find_local_static_variable_init(variable, nullptr)
                                            : nullptr;
  if (local)
    bind_object_lifetime(lifetime, iek_local_static_variable_init, local);
  else if (variable->init_kind == initk_dynamic)
    bind_object_lifetime(lifetime, iek_dynamic_init, variable->initializer.dynamic);
}

// ---- The initialiser of a variable ----

static bool has_error_initializer(const a_variable* variable) {
  return variable->init_kind == initk_constant && is_error_constant(variable->initializer.constant);
}

static bool may_be_initialized(a_symbol* symbol, const a_source_position* position) {
  a_variable* variable = symbol->variant.variable;
  bool is_block_extern = variable->storage_kind == sc_extern && depth_innermost_function_scope >= 0;
  if (is_block_extern || is_vla_type(variable->type)) {
    pos_sy_error(ec_cannot_initialize, position, symbol);
    return false;
  }
  if (variable->init_kind != initk_none && !has_error_initializer(variable)) {
    pos_sy_error(ec_already_initialized, position, symbol);
    return false;
  }
  if (gnu_mode && (variable->decl_modifiers & dm_global)) {
    pos_error(ec_register_mapped_variable_cannot_have_initializer, position);
    return false;
  }
  return true;
}

void initializer(a_decl_parse_state* state) {
  an_init_state init_state = {};
  a_symbol* symbol = state->symbol;
  a_variable* variable = symbol->variant.variable;
  init_state.symbol = symbol;
  scan_start_of_initializer(&init_state);
  a_source_position position = pos_curr_token;
  bool may_store = may_be_initialized(symbol, &position);
  init_state.is_static = has_static_duration(variable);
  init_state.constant_required = init_state.is_static && in_C_mode();
  init_state.constant_wanted = state->modifiers.constexpr_seen;
  init_state.is_condition = state->parse_flags.is_condition;
  a_type* type = may_store && !is_error_type(state->declared_type) ? variable->type : error_type();
  an_object_lifetime* lifetime = push_lifetime_of_static(variable);
  scan_and_match(&type, &init_state);
  variable->has_explicit_init = true;
  variable->initializer_range = {position, curr_construct_end_position};
  if (init_state.constant_wanted && init_state.result_dynamic_init)
    reduce_to_constant(&init_state, &position);
  if (may_store)
    store_result(variable, type, &init_state, &position);
  check_destruction_of_variable(variable, &symbol->position);
  pop_lifetime_of_static(lifetime, variable);
}

// ---- Compound literals ----

static a_constant* match_compound_literal(an_init_component* list, a_type** type, bool is_static,
                                          a_dynamic_init** init) {
  an_init_state state = {};
  state.constant_required = is_static;
  state.is_static = is_static;
  state.is_list_init = in_cplusplus_mode();
  a_constant* value = init_element(&list, type, &state);
  report_excess_components(&list, &state);
  free_init_component_list(list);
  set_result(value, &state);
  *init = state.result_dynamic_init;
  return state.result_constant;
}

a_constant* scan_compound_literal_initializer(a_type** type, bool is_static,
                                              a_dynamic_init** init) {
  return match_compound_literal(get_braced_init_list(), type, is_static, init);
}

a_constant* union_value_of_operand(a_type* union_type, const a_field* field,
                                   const an_operand* operand, bool is_static,
                                   a_dynamic_init** init) {
  an_init_component* list = alloc_init_component(ick_braced_list);
  an_init_component* designator = alloc_init_component(ick_designator);
  list->variant.braced.start_position = operand->position;
  list->variant.braced.end_position = operand->end_position;
  list->variant.braced.first = designator;
  designator->variant.designator.position = operand->position;
  designator->variant.designator.field_name = field->source_corresp.symbol->header;
  designator->next = alloc_init_component(ick_expression);
  designator->next->variant.operand = *operand;
  return match_compound_literal(list, &union_type, is_static, init);
}

// ---- Objects that lists make in C++ ----

void make_temp_init_operand(a_type* type, a_dynamic_init* init, bool is_lvalue,
                            const a_source_position* position, an_operand* result) {
  an_expr_node* expr = alloc_expr_node(expr_temp_init);
  expr->type = type;
  expr->is_lvalue = is_lvalue;
  expr->position = *position;
  expr->variant.dynamic_init = init;
  if (is_lvalue)
    make_glvalue_expression_operand(expr, result);
  else
    make_expression_operand(expr, result);
}

void make_list_operand(an_init_component* list, a_type* type, bool is_direct,
                       const a_source_position* start, an_operand* result) {
  an_init_state state = {};
  state.is_list_init = true;
  state.is_direct_list = is_direct;
  a_constant* value = init_element(&list, &type, &state);
  report_excess_components(&list, &state);
  free_init_component_list(list);
  set_result(value, &state);
  a_dynamic_init* init = state.result_dynamic_init;
  if (state.result_constant && (is_class_struct_union_type(type) || is_array_type(type)))
    init = dynamic_init_of_value(value, &state);
  if (!init && state.result_constant)
    make_constant_operand(value, result);
  else if (!init)
    make_error_operand(result);
  else if (init->kind == dik_expr)
    make_expression_operand(init->variant.expr, result);
  else
    make_temp_init_operand(type, init, false, start, result);
}

void scan_initializing_operand(a_type* type, an_error_code code, unsigned flags,
                               an_operand* result) {
  if (curr_token != tok_lbrace || !list_init_enabled) {
    scan_expr(result, nullptr, lev_none, flags);
    prep_initializer_operand(result, type, code);
    return;
  }
  a_source_position start = pos_curr_token;
  make_list_operand(get_braced_init_list(), type, false, &start, result);
  set_operand_range(result, &start, &curr_construct_end_position);
}

void decl_inits_init() {
  // Nothing of this module lives on from an earlier run.
}

void decl_inits_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
