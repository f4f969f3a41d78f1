// Function calls (C99 6.5.2.2).

#include "decl_inits.h"
#include "decls.h"
#include "expr_int.h"
#include "il.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"

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

static an_init_component* scan_call_argument() {
  if (curr_token == tok_lbrace && list_init_enabled)
    return scan_init_component();
  an_init_component* component = alloc_init_component(ick_expression);
  scan_expr(&component->variant.operand, nullptr, lev_none, sef_no_comma);
  return component;
}

// Behind the `(`; the `)` is read.
static an_init_component* scan_call_argument_list(a_source_position* closing_position,
                                                  a_source_position* end) {
  an_init_component* list = nullptr;
  an_init_component** link = &list;
  add_stop_token(tok_rparen);
  ++expr_stack->template_arg_paren_depth;
  if (curr_token != tok_rparen) {
    add_stop_token(tok_comma);
    do {
      *link = scan_call_argument();
      link = &(*link)->next;
    } while (loop_token(tok_comma));
    remove_stop_token(tok_comma);
  }
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rparen);
  *closing_position = pos_curr_token;
  *end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  return list;
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
                                   an_expr_node* arguments, an_operand* result) {
  a_type* return_type = prvalue_type(return_type_of(function_type));
  a_routine* routine = routine_of_call(function);
  if (routine && expr_stack->flags.references_count)
    routine->called = true;
  an_expr_node* callee = make_node_from_operand(function);
  callee->next = arguments;
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
  get_token();
  start_call_argument_processing(function_type, routine_of_call(&function), &block);
  an_init_component* arg_list = scan_call_argument_list(&block.position, &end);
  an_expr_node* arguments = process_call_argument_list(arg_list, &block);
  free_init_component_list(arg_list);
  if (!function_type || is_refused || block.any_error ||
      !check_type_of_result(return_type_of(function_type), &start)) {
    make_error_operand(operand);
  } else {
    assemble_function_call(&function, function_type, arguments, operand);
    rule_out_expr_kinds(rule_out_constant, operand);
  }
  set_operator_positions(operand, &start, &position, &end);
}
