#include "def_arg.h"

#include "class_decl_int.h"
#include "decl_inits.h"
#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "lambda.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"

#include <new>

// ---- The tokens ----

void prescan_default_arg_expr(a_token_cache* cache, bool is_template_arg) {
  a_token_set_array stop_set = {};
  stop_set.member[tok_comma] = true;
  stop_set.member[is_template_arg ? tok_gt : tok_rparen] = true;
  stop_set.member[tok_semicolon] = true;
  stop_set.member[tok_rbrace] = true;
  clear_token_cache(cache, is_template_arg);
  cache_token_stream_full(cache, &stop_set, ctsf_template_argument | ctsf_stop_at_unbalanced);
  if (is_template_arg && curr_token != tok_comma && curr_token != tok_gt)
    pos_error(ec_invalid_default_arg, &pos_curr_token);
  terminate_token_cache(cache);
  if (is_template_arg)
    adjust_token_handles(cache);
}

void prescan_member_function_default_arg_expr(a_param_id* param) {
  param->default_arg = new (alloc_in_region(0, sizeof(a_token_cache))) a_token_cache();
  prescan_default_arg_expr(param->default_arg, false);
  param->param_type->default_arg_is_deferred = true;
}

// ---- The expression ----

// A value that initialises the parameter, up to a comma.
static an_expr_node* scan_default_value(a_type* type) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  expr_stack->flags.in_default_argument = true;
  scan_initializing_operand(type, ec_bad_default_arg_type, sef_no_comma, &operand);
  an_expr_node* node = make_node_from_operand(&operand);
  wrap_up_full_expression(node);
  end_full_expression(&full, &operand);
  return node;
}

static an_expr_node* scan_default_value_at_file_scope(a_param_type* param, a_type* type) {
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  void* saved_entity = set_initialized_entity(param);
  an_expr_node* node = scan_default_value(type);
  set_initialized_entity(saved_entity);
  switch_back_to_original_region(saved_region);
  return node;
}

void scan_default_argument(a_param_id* param) {
  a_source_position position = pos_curr_token;
  get_token();
  if (in_C_mode()) {
    pos_error(ec_initializer_in_param, &position);
    flush_tokens();
    return;
  }
  param->param_type->has_default_arg = true;
  if (is_in_open_class())
    prescan_member_function_default_arg_expr(param);
  else
    param->param_type->default_arg_expr =
        scan_default_value_at_file_scope(param->param_type, param->type);
}

// ---- Delayed scans ----

// The member with the declarator; null for that of a friend.
static a_routine* routine_of_type(const a_prototype_context* context) {
  a_routine* routine = class_supplement_of(context->class_type)->scope->routines;
  while (routine && skip_typerefs(routine->type) != context->routine_type)
    routine = routine->next;
  return routine;
}

void delayed_scan_of_default_arg_expr(a_def_arg_expr_fixup* fixup) {
  if (fixup->is_scanned || fixup->is_being_scanned)
    return;
  fixup->is_being_scanned = true;
  push_prototype_context(&fixup->context);
  begin_delayed_scan(&fixup->expression);
  fixup->param->default_arg_expr =
      scan_default_value_at_file_scope(fixup->param, fixup->param->type);
  end_delayed_scan(is_error_node(fixup->param->default_arg_expr)
                       ? an_error_code{0}
                       : ec_unexpected_end_of_default_arg);
  pop_prototype_context();
  if (a_routine* routine = routine_of_type(&fixup->context))
    set_parent_entity_for_closure_types(routine);
  fixup->param->default_arg_is_deferred = false;
  fixup->is_scanned = true;
}

an_expr_node* default_arg_expr_of_param(a_param_type* param, const a_source_position* position) {
  if (param->default_arg_is_deferred) {
    a_def_arg_expr_fixup* fixup = find_def_arg_fixup(param);
    if (fixup && !fixup->is_being_scanned)
      delayed_scan_of_default_arg_expr(fixup);
    else
      expr_pos_error(ec_default_arg_expr_not_allowed, position);
  }
  return param->default_arg_expr ? param->default_arg_expr : error_node();
}

void def_arg_one_time_init() {
  // No variable of this module is kept for each unit.
}

void def_arg_init() {
  // Nothing of this module lives on from an earlier run.
}
