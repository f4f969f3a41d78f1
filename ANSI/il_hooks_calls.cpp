// Calls of the hook functions: every function calls one when it is entered, and
// one before each return.

#include <cstring>

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_hooks.h"
#include "il_statements.h"
#include "il_to_if_int.h"
#include "lower_context.h"
#include "lower_il.h"
#include "mem_manage.h"
#include "stack_limit.h"
#include "types.h"

bool is_hook_function(const a_routine* routine) {
  for (const HOOK_DESCRIPTOR* hook : {entry_hook_descriptor, exit_hook_descriptor})
    if (hook != nullptr && hook->routine == routine)
      return true;
  return false;
}

namespace {

// ---- The call ----

an_expr_node* name_argument(const a_routine* routine) {
  const char* name = routine->source_corresp.name;
  if (name == nullptr)
    name = "<unknown>";
  a_constant* text = alloc_constant(con_string);
  text->value.string.text = name;
  text->value.string.length = strlen(name) + 1;
  text->type = string_literal_type(sck_ordinary, text->value.string.length);
  a_constant address;
  set_constant_address_constant(text, &address);
  address.type = make_pointer_type(array_element_type(text->type));
  return alloc_node_for_constant(&address);
}

an_expr_node* hook_call(const HOOK_DESCRIPTOR* hook, a_routine* routine) {
  an_expr_node* callee = function_lvalue_expr(hook->routine);
  an_expr_node* argument = hook->pass_name      ? name_argument(routine)
                           : hook->pass_address ? function_addr_expr(routine)
                                                : nullptr;
  if (argument != nullptr)
    callee->next = add_cast_if_necessary(argument, hook->parameter_type);
  return make_operator_node(eok_call, void_type(), callee);
}

a_statement* hook_statement(const HOOK_DESCRIPTOR* hook, a_routine* routine,
                            const a_source_position& position) {
  a_statement* statement = alloc_expr_statement(hook_call(hook, routine));
  statement->expr->position = statement->position = statement->end_position = position;
  statement->is_generated = true;
  return statement;
}

// ---- Places ----

void insert_at_start(a_statement* block, a_statement* statement) {
  statement->parent = block;
  statement->next = block->variant.block.first_statement;
  block->variant.block.first_statement = statement;
}

// What a return would evaluate behind the hook is evaluated before it.
a_statement* evaluated_value(a_statement* return_statement) {
  an_expr_node* value = return_statement->expr;
  if (value == nullptr || is_invariant_expr(value))
    return nullptr;
  a_variable* temporary = make_lowered_temporary(value->type);
  return_statement->expr = var_rvalue_expr(temporary);
  return make_assignment_statement(var_lvalue_expr(temporary), value);
}

void add_exit_call(a_routine* routine, a_statement* statement) {
  a_statement* inner = change_statement_into_block(statement);
  a_statement* evaluation = evaluated_value(inner);
  insert_at_start(statement, hook_statement(exit_hook_descriptor, routine, statement->position));
  if (evaluation == nullptr)
    return;
  evaluation->position = statement->position;
  insert_at_start(statement, evaluation);
}

void add_exit_calls(a_routine* routine, a_statement* statement) {
  check_stack_limit();
  if (statement == nullptr)
    return;
  switch (statement->kind) {
  case stmk_return:
    // The end of a function is no return.
    if (!statement->is_generated)
      add_exit_call(routine, statement);
    return;
  case stmk_if:
    add_exit_calls(routine, statement->variant.if_stmt.then_statement);
    return add_exit_calls(routine, statement->variant.if_stmt.else_statement);
  case stmk_while:
  case stmk_do:
  case stmk_for:
  case stmk_switch:
    return add_exit_calls(routine, statement->variant.loop.body);
  case stmk_block:
    for (a_statement* item = statement->variant.block.first_statement; item != nullptr;
         item = item->next)
      add_exit_calls(routine, item);
    return;
  default:
    return;
  }
}

bool calls_hooks(const a_routine* routine) {
  if (routine->region_number == 0 || !routine->defined || routine->defined_elsewhere ||
      routine->wrapper_of != nullptr || is_hook_function(routine))
    return false;
  if (routine->source_corresp.has_associated_pragma)
    for (const a_pragma* pragma : assoc_pragmas(routine))
      if (pragma->tool_kind == ifpk_NO_HOOKS)
        return false;
  return true;
}

void add_hook_calls_to_routine(a_routine* routine) {
  const a_scope* scope = scope_for_routine_or_null(routine);
  if (scope == nullptr || scope->assoc_statement == nullptr)
    return;
  a_statement* body = scope->assoc_statement;
  switch_il_region(routine->region_number);
  if (exit_hook_descriptor != nullptr)
    add_exit_calls(routine, body);
  if (entry_hook_descriptor != nullptr)
    insert_at_start(body, hook_statement(entry_hook_descriptor, routine, body->position));
}

} // namespace

void add_hook_calls_to_il() {
  if (entry_hook_descriptor == nullptr && exit_hook_descriptor == nullptr)
    return;
  il_lowering_underway = 1;
  for (a_routine* routine = il_header.primary_scope->routines; routine != nullptr;
       routine = routine->next)
    if (calls_hooks(routine))
      add_hook_calls_to_routine(routine);
  il_lowering_underway = 0;
  switch_il_region(file_scope_region_number);
}
