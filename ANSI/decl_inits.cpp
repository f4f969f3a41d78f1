// Initialisers of declared variables: from tokens to components, and from the
// value to the variable.

#include "decl_inits.h"

#include "decl_inits_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "statements.h"
#include "types.h"

// ---- Components ----

static an_init_component* avail_init_components;

an_init_component* alloc_init_component(an_init_component_kind kind) {
  an_init_component* component = avail_init_components;
  if (component)
    avail_init_components = component->next;
  else
    component = static_cast<an_init_component*>(alloc_in_region(0, sizeof *component));
  component->next = nullptr;
  component->kind = kind;
  component->parenthesized = false;
  component->variant.designator = {};
  return component;
}

void free_init_component_list(an_init_component* list) {
  check_stack_limit();
  while (an_init_component* component = list) {
    list = component->next;
    if (component->kind == ick_braced_list)
      free_init_component_list(component->variant.braced.first);
    component->next = avail_init_components;
    avail_init_components = component;
  }
}

a_source_position init_component_pos(const an_init_component* component) {
  switch (component->kind) {
  case ick_expression:
    return component->variant.operand.position;
  case ick_braced_list:
    return component->variant.braced.start_position;
  default:
    return component->variant.designator.position;
  }
}

static a_constant* scan_index() {
  a_constant index;
  scan_integral_constant_expression(&index);
  return index.kind == con_integer ? alloc_unshared_constant(&index) : nullptr;
}

static an_init_component* scan_index_designator() {
  an_init_component* component = alloc_init_component(ick_designator);
  component->variant.designator.position = pos_curr_token;
  get_token();
  add_stop_token(tok_rbracket);
  component->variant.designator.index = scan_index();
  if (curr_token == tok_ellipsis && gnu_mode) {
    get_token();
    component->variant.designator.range_end = scan_index();
  }
  remove_stop_token(tok_rbracket);
  required_token(tok_rbracket, ec_exp_rbracket);
  return component;
}

static an_init_component* scan_field_designator() {
  an_init_component* component = alloc_init_component(ick_designator);
  component->variant.designator.position = pos_curr_token;
  get_token();
  if (curr_token == tok_identifier)
    component->variant.designator.field_name = locator_for_curr_id.header;
  required_token(tok_identifier, ec_exp_identifier);
  return component;
}

// C99 6.7.8 p1: designators and their `=`, appended to a list.
static an_init_component** scan_designators(an_init_component** link) {
  bool any = false;
  while (designators_allowed && (curr_token == tok_lbracket || curr_token == tok_period)) {
    *link = curr_token == tok_lbracket ? scan_index_designator() : scan_field_designator();
    link = &(*link)->next;
    any = true;
  }
  if (any && !(gnu_mode && curr_token != tok_assign))
    required_token(tok_assign, ec_exp_assign);
  return link;
}

// At the `{`; the `}` is read.
static an_init_component* get_braced_init_list() {
  an_init_component* list = alloc_init_component(ick_braced_list);
  an_init_component** link = &list->variant.braced.first;
  list->variant.braced.start_position = pos_curr_token;
  get_token();
  add_stop_token(tok_rbrace);
  add_stop_token(tok_comma);
  while (curr_token != tok_rbrace && curr_token != tok_end_of_source) {
    link = scan_designators(link);
    *link = scan_init_component();
    link = &(*link)->next;
    if (!loop_token(tok_comma))
      break;
  }
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rbrace);
  list->variant.braced.end_position = end_pos_curr_token;
  required_token(tok_rbrace, ec_exp_rbrace);
  return list;
}

an_init_component* scan_init_component() {
  check_stack_limit();
  if (curr_token == tok_lbrace)
    return get_braced_init_list();
  an_init_component* component = alloc_init_component(ick_expression);
  component->parenthesized = curr_token == tok_lparen;
  add_stop_token(tok_comma);
  scan_expr(&component->variant.operand, nullptr, 0, sef_no_comma);
  remove_stop_token(tok_comma);
  return component;
}

// ---- The value of a whole initialiser ----

static void report_excess(const an_init_component* list, an_init_state* state) {
  if (!list || state->error_reported)
    return;
  a_source_position position = init_component_pos(list);
  pos_error(ec_too_many_initializer_values, &position);
  state->error_reported = true;
}

// Reads and matches an initialiser. The type of an array of unknown bound
// becomes complete.
static a_constant* scan_and_match(a_type** type, an_init_state* state) {
  an_expr_stack_entry entry;
  push_expr_stack(ek_normal, &entry, false, false);
  entry.flags.constant_context = state->constant_required;
  an_init_component* list = scan_init_component();
  a_constant* value = init_object(&list, type, state);
  report_excess(list, state);
  free_init_component_list(list);
  pop_expr_stack();
  return state->error_reported ? nullptr : value;
}

static bool has_static_duration(const a_variable* variable) {
  return variable->storage_kind < sc_auto;
}

static void set_error_initializer(a_variable* variable) {
  a_constant* error = alloc_constant(con_error);
  error->type = error_type();
  variable->init_kind = initk_constant;
  variable->initializer.constant = error;
}

static a_dynamic_init* dynamic_init_of_value(a_constant* value, const an_init_state* state) {
  if (value->kind == con_dynamic_init)
    return value->value.dynamic_init;
  a_dynamic_init* init =
      alloc_dynamic_init(state->contains_nonconstant ? dik_nonconstant_aggregate : dik_constant);
  init->variant.constant = value;
  init->contains_nonconstant = state->contains_nonconstant;
  return init;
}

static void initialize_automatic(a_variable* variable, a_constant* value,
                                 const an_init_state* state, const a_source_position* position) {
  a_dynamic_init* init = dynamic_init_of_value(value, state);
  init->variable = variable;
  warn_if_code_is_unreachable(ec_initialization_not_reachable, position);
  variable->init_kind = initk_dynamic;
  variable->initializer.dynamic = init;
  a_statement* statement = add_statement_at_stmt_pos(stmk_init, position);
  statement->variant.dynamic_init = init;
  statement->end_position = curr_construct_end_position;
  update_init_statement_control_flow(statement);
}

static bool may_be_initialized(a_symbol* symbol, const a_source_position* position) {
  a_variable* variable = symbol->variant.variable;
  if (variable->storage_kind == sc_extern && depth_innermost_function_scope >= 0) {
    pos_sy_error(ec_cannot_initialize, position, symbol);
    return false;
  }
  if (variable->init_kind != initk_none) {
    pos_sy_error(ec_already_initialized, position, symbol);
    return false;
  }
  return true;
}

static bool needs_constant(const a_variable* variable) {
  return has_static_duration(variable) ||
         (!allow_nonconstant_auto_aggr_init_in_c_mode && curr_token == tok_lbrace &&
          is_aggregate_or_union_type(variable->type));
}

void initializer(a_decl_parse_state* state) {
  a_source_position position = pos_curr_token;
  a_symbol* symbol = state->symbol;
  a_variable* variable = symbol->variant.variable;
  bool may_store = may_be_initialized(symbol, &position);
  an_init_state init_state = {};
  int32_t saved_region = 0;
  init_state.constant_required = needs_constant(variable);
  a_type* type = is_error_type(state->declared_type) ? error_type() : variable->type;
  // A static's value outlives the function that declares it.
  if (has_static_duration(variable))
    switch_to_file_scope_region(&saved_region);
  a_constant* value = scan_and_match(&type, &init_state);
  variable->has_explicit_init = true;
  variable->initializer_range = {position, curr_construct_end_position};
  if (!may_store) {
    // reported
  } else if (!value) {
    if (has_static_duration(variable))
      set_error_initializer(variable);
    if (is_incomplete_array_type(variable->type))
      variable->type = error_type();
  } else {
    variable->type = type;
    if (has_static_duration(variable)) {
      variable->init_kind = initk_constant;
      variable->initializer.constant = value;
    } else {
      initialize_automatic(variable, value, &init_state, &position);
    }
  }
  switch_back_to_original_region(saved_region);
}

void def_initializer(a_symbol* symbol, const a_source_position*) {
  if (symbol->kind == symk_variable)
    check_for_missing_initializer_full(symbol, symbol->variant.variable->type);
}

// C permits a const object without an initialiser; one of automatic duration
// never gets a value.
void check_for_missing_initializer_full(a_symbol* symbol, a_type* type) {
  const a_variable* variable = symbol->variant.variable;
  if (!is_const_qualified_type(type) || is_error_type(type) || has_static_duration(variable))
    return;
  pos_sy_diagnostic(strict_ansi_mode ? es_warning : es_remark, ec_missing_initializer_on_const,
                    &symbol->position, symbol);
}

a_constant* scan_compound_literal_initializer(a_type** type, bool is_static,
                                              a_dynamic_init** init) {
  an_init_state state = {};
  state.constant_required = is_static;
  *init = nullptr;
  an_init_component* list = get_braced_init_list();
  a_constant* value = init_element(&list, type, &state);
  report_excess(list, &state);
  free_init_component_list(list);
  if (!value || state.error_reported)
    return nullptr;
  if (value->kind != con_dynamic_init && !state.contains_nonconstant)
    return value;
  *init = dynamic_init_of_value(value, &state);
  return nullptr;
}

void decl_inits_one_time_init() {
  avail_init_components = nullptr;
}

void decl_inits_init() {
  // Nothing of this module lives on from an earlier run.
}

void decl_inits_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
