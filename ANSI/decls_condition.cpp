// Declarations in conditions and in handlers (C++11 6.4 p1, 15.3 p1).

#include "attribute.h"
#include "decl_inits.h"
#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_constants.h"
#include "il_statements.h"
#include "lexical.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "types.h"

// Specifiers and one declarator, after which the state knows the whole type.
static void scan_single_declarator(unsigned specifier_options, unsigned declarator_options,
                                   a_decl_parse_state* state, a_symbol_locator* locator) {
  a_func_info_block func_info;
  clear_func_info(&func_info);
  state->attributes_before = scan_attributes(al_declaration_start);
  decl_specifiers(specifier_options, state);
  if (state->storage_class != sc_none)
    pos_error(ec_storage_class_not_allowed, &state->storage_class_position);
  declarator(declarator_options, state, nullptr, locator, &func_info);
  append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
}

// ---- Conditions ----

// It declares an object, neither an array nor a function.
static bool check_type_of_condition(a_decl_parse_state* state, const a_symbol_locator* locator) {
  a_type* type = state->declared_type;
  bool is_object = !is_array_type(type) && !is_function_type(type);
  if (is_error_type(type) || (is_object && !is_incomplete_type(type)))
    return true;
  pos_error(is_object ? ec_incomplete_type_not_allowed : ec_exp_declarator_in_condition_decl,
            &locator->position);
  state->declared_type = error_type();
  return false;
}

static a_dynamic_init* initialize_condition(a_decl_parse_state* state) {
  initializer(state);
  mark_variable_value_set(state->symbol);
  const a_variable* variable = state->symbol->variant.variable;
  return variable->init_kind == initk_dynamic ? variable->initializer.dynamic : nullptr;
}

// At the first token; `*init` stays null without an initialiser.
static a_variable* scan_initialized_variable(bool is_condition, a_dynamic_init** init) {
  a_decl_parse_state state;
  a_symbol_locator locator;
  clear_decl_parse_state(&state);
  state.parse_flags.is_condition = true;
  add_stop_token(tok_assign);
  scan_single_declarator(dso_type_specifiers | dso_storage_class, do_name_required, &state,
                         &locator);
  remove_stop_token(tok_assign);
  if (is_condition && !check_type_of_condition(&state, &locator))
    flush_tokens();
  state.storage_class = sc_auto;
  decl_variable(&locator, &state, dvf_declaration | dvf_definition | dvf_initialized);
  if (curr_token == tok_assign || (curr_token == tok_lbrace && list_init_enabled))
    *init = initialize_condition(&state);
  else if (!is_error_type(state.declared_type))
    syntax_error(ec_exp_declarator_in_condition_decl);
  run_end_of_parse_actions(&state, false);
  return state.symbol->variant.variable;
}

a_variable* condition_declaration(a_dynamic_init** init) {
  return scan_initialized_variable(true, init);
}

a_variable* loop_variable_declaration() {
  a_dynamic_init* init = nullptr;
  return scan_initialized_variable(false, &init);
}

// ---- Handlers ----

// C++11 15.3 p1, p2.
static void check_type_of_handler(a_decl_parse_state* state, const a_source_position* position) {
  a_type* type = state->declared_type = adjust_parameter_type(state->declared_type);
  a_type* target = is_pointer_type(type) || is_reference_type(type) ? type_pointed_to(type) : type;
  if (is_error_type(type))
    return;
  bool is_void_pointer = is_pointer_type(type) && is_void_type(target);
  if (is_rvalue_reference_type(type))
    pos_error(ec_rvalue_reference_catch_type, position);
  else if (is_incomplete_type(target) && !is_void_pointer)
    pos_error(ec_incomplete_type_not_allowed, position);
  else if (is_class_struct_union_type(type) &&
           skip_typerefs(type)->variant.class_struct_union.is_abstract)
    pos_ty_error(ec_abstract_class_catch_type, position, type);
  else
    return;
  state->declared_type = error_type();
}

static void enter_handler_parameter(a_variable* variable, a_symbol_locator* locator) {
  bool check = true;
  a_symbol* symbol = enter_local_symbol(symk_variable, locator, &check);
  symbol->variant.variable = variable;
  symbol->defined = true;
  set_source_corresp_with_scope_depth(&variable->source_corresp, symbol, depth_scope_stack);
  record_symbol_declaration(srk_definition, symbol, &locator->position, nullptr);
  mark_variable_value_set(symbol);
}

a_variable* handler_declaration() {
  a_decl_parse_state state;
  a_symbol_locator locator;
  a_source_position position = pos_curr_token;
  clear_decl_parse_state(&state);
  scan_single_declarator(dso_type_specifiers, do_name_optional, &state, &locator);
  run_end_of_parse_actions(&state, false);
  check_type_of_handler(&state, &position);
  a_variable* variable = make_handler_parameter(state.declared_type);
  variable->is_defined = true;
  variable->source_corresp.local_to_function = true;
  variable->source_corresp.position = position;
  add_to_variables_list(variable, depth_scope_stack);
  if (!locator.is_error_locator && locator.header)
    enter_handler_parameter(variable, &locator);
  append_attributes(&state.attributes_before, state.attributes_after);
  attach_attributes(state.attributes_before, variable, iek_variable);
  return variable;
}
