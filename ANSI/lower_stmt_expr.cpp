#include "lower_stmt_expr.h"

#include "il.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_expr_int.h"
#include "il_statements.h"
#include "lower_context.h"
#include "lower_il.h"
#include "lower_insert.h"
#include "lower_vla.h"
#include "stack_limit.h"
#include "types.h"

a_boolean any_statement_expressions;

namespace {

// ---- What holds a statement expression ----

bool holds_statement_expression(an_expr_node* expr);

bool bounds_hold_statement_expression(const an_expr_node* node) {
  for (an_expr_node* bound : unevaluated_bounds(node))
    if (holds_statement_expression(bound))
      return true;
  return false;
}

bool holds_statement_expression(an_expr_node* expr) {
  if (!expr)
    return false;
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.skip_unevaluated = true;
  block.process_expr = [](an_expr_node* node, an_expr_or_stmt_traversal_block* b) {
    if (node->kind == expr_statement || bounds_hold_statement_expression(node))
      b->found = b->terminate = true;
  };
  traverse_expr(expr, &block);
  return block.found;
}

void take_out_of(an_expr_node* expr, an_insert_location* list);

// ---- Statements that stand for operators ----

// A block of the statements, to be one branch.
a_statement* branch_of(const an_insert_location& list, a_statement* parent) {
  a_statement* block = alloc_statement(stmk_block);
  block->position = block->end_position = code_pos_for_lowering;
  block->is_generated = true;
  block->parent = parent;
  block->variant.block.first_statement = list.first;
  set_parent_of_substatements(block);
  return block;
}

a_statement* append_if(an_expr_node* condition, an_insert_location* list) {
  a_statement* statement = alloc_statement(stmk_if);
  statement->position = statement->end_position = code_pos_for_lowering;
  condition->next = nullptr;
  statement->expr = condition;
  insert_statement(statement, list);
  return statement;
}

void set_branches(a_statement* statement, const an_insert_location& then_list,
                  const an_insert_location& else_list) {
  statement->variant.if_stmt.then_statement = branch_of(then_list, statement);
  if (else_list.first)
    statement->variant.if_stmt.else_statement = branch_of(else_list, statement);
}

// Nothing is left to be evaluated.
void make_no_value(an_expr_node* expr) {
  overwrite_node(expr, add_cast(node_for_integer_constant(0, ik_int), void_type()));
}

void make_value_of(a_variable* variable, an_expr_node* expr) {
  overwrite_node(expr, var_rvalue_expr(variable));
}

// `a && b`: what `b` needs may only run when `a` is true.
void take_out_of_logical(an_expr_node* expr, an_insert_location* list) {
  bool is_and = expr->variant.operation.op == eok_land;
  an_expr_node* left = expr->variant.operation.operands;
  an_expr_node* right = left->next;
  a_variable* value = make_lowered_temporary(expr->type);
  take_out_of(left, list);
  insert_var_assignment_statement(value, node_for_integer_constant(is_and ? 0 : 1, ik_int), list);
  a_statement* outer = append_if(left, list);
  an_insert_location right_list = {}, decided = {}, nothing = {};
  take_out_of(right, &right_list);
  a_statement* inner = append_if(right, &right_list);
  insert_var_assignment_statement(value, node_for_integer_constant(is_and ? 1 : 0, ik_int),
                                  &decided);
  if (is_and) {
    set_branches(inner, decided, nothing);
    set_branches(outer, right_list, nothing);
  } else {
    set_branches(inner, nothing, decided);
    set_branches(outer, nothing, right_list);
  }
  make_value_of(value, expr);
}

// One branch of `a ? b : c`.
void take_out_of_branch(an_expr_node* branch, a_variable* value, an_insert_location* list) {
  take_out_of(branch, list);
  if (value)
    insert_var_assignment_statement(value, branch, list);
  else
    insert_expr_statement(branch, list);
}

void take_out_of_question(an_expr_node* expr, an_insert_location* list) {
  an_expr_node* condition = expr->variant.operation.operands;
  an_expr_node* second = condition->next;
  an_expr_node* third = second->next;
  bool is_void = is_void_type(expr->type);
  a_variable* value = is_void ? nullptr : make_lowered_temporary(expr->type);
  take_out_of(condition, list);
  a_statement* statement = append_if(condition, list);
  an_insert_location then_list = {}, else_list = {};
  take_out_of_branch(second, value, &then_list);
  take_out_of_branch(third, value, &else_list);
  set_branches(statement, then_list, else_list);
  if (is_void)
    make_no_value(expr);
  else
    make_value_of(value, expr);
}

// `a ?: b`.
void take_out_of_binary_question(an_expr_node* expr, an_insert_location* list) {
  an_expr_node* first = expr->variant.operation.operands;
  an_expr_node* second = first->next;
  a_variable* value = make_lowered_temporary(expr->type);
  take_out_of(first, list);
  insert_var_assignment_statement(value, first, list);
  a_statement* statement = append_if(var_rvalue_expr(value), list);
  an_insert_location nothing = {}, else_list = {};
  take_out_of_branch(second, value, &else_list);
  set_branches(statement, nothing, else_list);
  make_value_of(value, expr);
}

void take_out_of_comma(an_expr_node* expr, an_insert_location* list) {
  an_expr_node* left = expr->variant.operation.operands;
  an_expr_node* right = left->next;
  take_out_of(left, list);
  insert_expr_statement(left, list);
  take_out_of(right, list);
  overwrite_node(expr, right);
}

// An operator that orders its operands, and evaluates one of them later than
// the statements in front of the expression: those become statements as a
// whole. False for every other operator.
bool lower_sequence_point_expr(an_expr_node* expr, an_insert_location* list) {
  an_expr_operator_kind op = expr->variant.operation.op;
  if (op != eok_comma && op != eok_land && op != eok_lor && op != eok_question &&
      op != eok_binary_question)
    return false;
  an_expr_node* second = expr->variant.operation.operands->next;
  if (!holds_statement_expression(second) && !holds_statement_expression(second->next))
    return false;
  if (op == eok_comma)
    take_out_of_comma(expr, list);
  else if (op == eok_question)
    take_out_of_question(expr, list);
  else if (op == eok_binary_question)
    take_out_of_binary_question(expr, list);
  else
    take_out_of_logical(expr, list);
  return true;
}

// ---- Taking out ----

a_statement* last_statement_of(const a_statement* block) {
  a_statement* statement = block->variant.block.first_statement;
  while (statement && statement->next)
    statement = statement->next;
  return statement;
}

void lower_gnu_statement_expression(an_expr_node* expr, an_insert_location* list) {
  a_statement* block = expr->variant.statement;
  a_statement* last = last_statement_of(block);
  block->next = nullptr;
  insert_statement(block, list);
  if (!last || last->kind != stmk_stmt_expr_value) {
    make_no_value(expr);
    return;
  }
  an_expr_node* value = last->expr;
  set_statement_kind(last, stmk_expr);
  if (expr->result_not_used) {
    set_expr_result_not_used(value);
    make_no_value(expr);
    return;
  }
  a_variable* variable = make_lowered_temporary(expr->type);
  last->expr = make_assignment_expr(var_lvalue_expr(variable), eok_assign, value);
  set_expr_result_not_used(last->expr);
  make_value_of(variable, expr);
}

void take_out_of_init(a_dynamic_init* init, an_insert_location* list);

void take_out_of_constant(a_constant* constant, an_insert_location* list) {
  check_stack_limit();
  if (constant->kind == con_dynamic_init)
    take_out_of_init(constant->value.dynamic_init, list);
  else if (constant->kind == con_aggregate)
    for (a_constant* item = constant->value.aggregate.first; item; item = item->next)
      take_out_of_constant(item, list);
}

void take_out_of_init(a_dynamic_init* init, an_insert_location* list) {
  if (init->kind == dik_expr)
    take_out_of(init->variant.expr, list);
  else if (init->kind == dik_nonconstant_aggregate)
    take_out_of_constant(init->variant.constant, list);
}

void take_out_of(an_expr_node* expr, an_insert_location* list) {
  check_stack_limit();
  if (!holds_statement_expression(expr))
    return;
  if (expr->kind == expr_statement) {
    lower_gnu_statement_expression(expr, list);
  } else if (expr->kind == expr_temp_init) {
    take_out_of_init(expr->variant.dynamic_init, list);
  } else if (expr->kind != expr_operation || !lower_sequence_point_expr(expr, list)) {
    const an_operand_list_heads lists = operand_lists_of_node(expr);
    for (int i = 0; i < lists.count; i++)
      for (an_expr_node* operand = *lists.heads[i]; operand; operand = operand->next)
        take_out_of(operand, list);
  }
  for (an_expr_node* bound : unevaluated_bounds(expr))
    take_out_of(bound, list);
}

void take_out_of_asm(const an_asm_entry* entry, an_insert_location* list) {
  for (const an_asm_operand* operand = entry->operands; operand; operand = operand->next)
    take_out_of(operand->expr, list);
}

} // namespace

a_statement* take_statement_expressions_out(a_statement* statement) {
  an_insert_location list = {};
  if (statement->kind == stmk_init)
    take_out_of_init(statement->variant.dynamic_init, &list);
  else if (statement->kind == stmk_set_vla_size)
    take_out_of(statement->variant.vla_dimension->size_expr, &list);
  else if (statement->kind == stmk_asm)
    take_out_of_asm(statement->variant.asm_entry, &list);
  else if (statement->kind != stmk_while && statement->kind != stmk_do &&
           statement->kind != stmk_for)
    take_out_of(statement->expr, &list);
  // What is left of a lone statement expression does nothing.
  if (list.first && statement->kind == stmk_expr && !node_has_side_effects(statement->expr)) {
    statement->expr = nullptr;
    set_statement_kind(statement, stmk_null);
  }
  return list.first;
}

void loop_serialization_init(a_statement* loop, bool is_condition) {
  a_for_loop_supplement* supplement =
      loop->kind == stmk_for ? loop->variant.loop.extra.for_supplement : nullptr;
  an_expr_node* expr = is_condition ? loop->expr : supplement->increment_expr;
  an_insert_location list = {};
  take_out_of(expr, &list);
  if (!list.first)
    return;
  a_statement* block = branch_of(list, loop);
  if (!is_condition)
    supplement->pre_increment_statement = block;
  else if (supplement)
    supplement->pre_condition_statement = block;
  else
    loop->pre_statement = block;
}
