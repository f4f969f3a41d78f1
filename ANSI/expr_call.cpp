// Function calls (C99 6.5.2.2).

#include "decls.h"
#include "expr_int.h"
#include "il.h"
#include "mode_words.h"
#include "scope_stk.h"

// The state of one call's argument list.
struct an_arg_check_block {
  a_type* function_type; // a routine type; null after an error
  a_param_type* param;   // the next parameter
  bool is_prototyped;
  bool has_ellipsis;
  bool excess_reported;
  bool any_error;
  an_expr_node* first;
  an_expr_node* last;
};

// ---- Implicit declarations (C89 3.3.2.2) ----

static an_error_severity implicit_declaration_severity() {
  if (std_version < 199901)
    return es_remark;
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

static void declare_implicitly(an_operand* operand) {
  a_symbol_locator locator = cleared_locator;
  locator.header = operand->symbol->header;
  locator.position = operand->name_position;
  an_error_severity severity = implicit_declaration_severity();
  if (expr_diagnostic_should_be_issued(severity, ec_implicit_func_decl, &locator.position))
    pos_st_diagnostic(severity, ec_implicit_func_decl, &locator.position,
                      locator.header->identifier);
  a_source_position start = operand->position, end = operand->end_position;
  a_symbol* symbol = decl_default_function(&locator);
  if (symbol && symbol->kind == symk_routine)
    make_function_designator_operand(symbol->variant.routine,
                                     make_ref_entry(srk_reference, symbol, &start), operand);
  else
    make_error_operand(operand);
  set_operand_range(operand, &start, &end);
}

static bool may_be_declared_implicitly() {
  return in_C_mode() && expr_stack->kind != ek_pp;
}

// ---- The function ----

// The routine type that the operand designates; null after an error.
static a_type* check_call_function_pointer_operand(an_operand* function) {
  if (function->kind == ok_undefined_symbol) {
    if (may_be_declared_implicitly())
      declare_implicitly(function);
    else
      finish_undefined_symbol_operand(function);
  }
  do_operand_transformations(function, ot_all);
  if (is_error_operand(function))
    return nullptr;
  if (!is_pointer_type(function->type) || !is_function_type(type_pointed_to(function->type))) {
    error_in_operand(ec_expr_not_ptr_to_function, function);
    return nullptr;
  }
  // A call of the function takes no address.
  bool is_direct = function->kind == ok_expression && function->variant.expr->kind == expr_routine;
  change_ref_kinds(function->ref_entries, is_direct ? srk_reference : srk_value_read);
  return skip_typerefs(type_pointed_to(function->type));
}

static a_routine* routine_of_call(const an_operand* function) {
  if (function->kind != ok_expression || function->variant.expr->kind != expr_routine)
    return nullptr;
  return function->variant.expr->variant.routine.ptr;
}

// ---- Arguments ----

static void start_call_argument_processing(a_type* function_type, an_arg_check_block* block) {
  *block = {};
  block->function_type = function_type;
  if (!function_type)
    return;
  block->param = param_types_of(function_type);
  block->is_prototyped = routine_type_is_prototyped(function_type);
  block->has_ellipsis = routine_type_has_ellipsis(function_type);
}

static bool has_parameter_types(const an_arg_check_block* block) {
  return block->is_prototyped || block->param;
}

// A definition in the old style tells the types of its parameters, which the
// promoted arguments must have (C99 6.5.2.2 p6).
static void check_old_style_argument(an_operand* argument, an_arg_check_block* block) {
  a_type* param_type = default_argument_promotion(block->param->type);
  arg_default_promote_operand(argument, true);
  block->param = block->param->next;
  if (is_error_operand(argument) || is_error_type(param_type) ||
      f_types_are_compatible(argument->type, param_type, tcf_ignore_top_qualifiers) ||
      (is_pointer_type(argument->type) && is_pointer_type(param_type)) ||
      (is_integral_or_enum_type(argument->type) && is_integral_or_enum_type(param_type) &&
       size_of_type(argument->type) == size_of_type(param_type)))
    return;
  if (expr_diagnostic_should_be_issued(es_warning, ec_old_style_incompatible_param,
                                       &argument->position))
    pos_ty2_warning(ec_old_style_incompatible_param, &argument->position, argument->type,
                    param_type);
}

static void report_too_many_arguments(an_arg_check_block* block,
                                      const a_source_position* position) {
  an_error_severity severity = block->is_prototyped ? es_error : es_warning;
  if (!block->excess_reported)
    expr_pos_diagnostic(severity, ec_too_many_arguments, position);
  block->excess_reported = true;
  if (severity == es_error)
    block->any_error = true;
}

static void process_call_argument(an_operand* argument, an_arg_check_block* block) {
  bool is_known_old_style =
      block->function_type && !block->is_prototyped &&
      block->function_type->variant.routine.routine_supplement->old_style_definition;
  if (!block->function_type || is_error_operand(argument)) {
    if (block->param)
      block->param = block->param->next;
    do_operand_transformations(argument, ot_all);
  } else if (block->is_prototyped && block->param) {
    prep_conversion_operand(argument, block->param->type, ec_incompatible_param,
                            &argument->position);
    block->param = block->param->next;
  } else if (is_known_old_style && block->param) {
    check_old_style_argument(argument, block);
  } else {
    if ((block->is_prototyped && !block->has_ellipsis) || is_known_old_style)
      report_too_many_arguments(block, &argument->position);
    arg_default_promote_operand(argument, true);
  }
  if (!is_error_operand(argument) && is_void_type(argument->type))
    error_in_operand(ec_incomplete_type_not_allowed, argument);
}

static void add_argument(an_operand* argument, an_arg_check_block* block) {
  process_call_argument(argument, block);
  if (is_error_operand(argument))
    block->any_error = true;
  an_expr_node* node = make_node_from_operand(argument);
  node->next = nullptr;
  if (block->last)
    block->last->next = node;
  else
    block->first = node;
  block->last = node;
}

// Behind the `(`; the `)` is read.
static void scan_call_arguments(an_arg_check_block* block, a_source_position* end) {
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  ++expr_stack->template_arg_paren_depth;
  if (curr_token != tok_rparen) {
    do {
      an_operand argument;
      scan_expr(&argument, nullptr, lev_none, sef_no_comma);
      add_argument(&argument, block);
    } while (loop_token(tok_comma));
  }
  --expr_stack->template_arg_paren_depth;
  if (block->param && has_parameter_types(block)) {
    bool is_error = block->is_prototyped;
    expr_pos_diagnostic(is_error ? es_error : es_warning, ec_too_few_arguments, &pos_curr_token);
    block->any_error |= is_error;
  }
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rparen);
  *end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

// ---- The call ----

static bool check_type_of_result(a_type* type, const a_source_position* position) {
  if (!is_incomplete_type(type) || is_void_type(type))
    return true;
  if (expr_error_should_be_issued())
    pos_ty_error(ec_incomplete_function_return_type, position, type);
  return false;
}

static void assemble_function_call(an_operand* function, a_type* function_type,
                                   an_arg_check_block* block, an_operand* result) {
  a_type* return_type = prvalue_type(return_type_of(function_type));
  a_routine* routine = routine_of_call(function);
  if (routine && expr_stack->flags.references_count)
    routine->called = true;
  an_expr_node* callee = make_node_from_operand(function);
  callee->next = block->first;
  an_expr_node* call = make_operator_node(eok_call, return_type, callee);
  make_expression_operand(call, result);
  normalize_error_operand(result);
}

void scan_function_call(an_operand* operand) {
  check_stack_limit();
  a_source_position start = operand->position, position = pos_curr_token, end;
  an_operand function = *operand;
  an_arg_check_block block;
  a_type* function_type = check_call_function_pointer_operand(&function);
  bool is_refused = expr_stack->flags.strict_constant && function_type;
  if (is_refused)
    expr_pos_error(ec_bad_constant_function_call, &position);
  start_call_argument_processing(function_type, &block);
  get_token();
  scan_call_arguments(&block, &end);
  if (!function_type || is_refused || block.any_error ||
      !check_type_of_result(return_type_of(function_type), &start)) {
    make_error_operand(operand);
  } else {
    assemble_function_call(&function, function_type, &block, operand);
    rule_out_expr_kinds(rule_out_constant, operand);
  }
  set_operator_positions(operand, &start, &position, &end);
}
