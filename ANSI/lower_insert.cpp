#include "lower_insert.h"

#include "il_expr.h"
#include "il_statements.h"
#include "lower_il.h"

// ---- Places ----

void set_insert_location(a_statement* statement, an_insert_location* location) {
  *location = {statement->parent, nullptr, statement, nullptr};
}

void set_block_start_insert_location(a_statement* block, an_insert_location* location) {
  *location = {block, nullptr, nullptr, nullptr};
}

void set_expr_insert_location(an_expr_node* expr, an_insert_location* location) {
  *location = {nullptr, nullptr, nullptr, expr};
}

// The link that the next statement goes to.
static a_statement** link_at(an_insert_location* location) {
  if (location->prev != nullptr)
    return &location->prev->next;
  return location->block != nullptr ? &location->block->variant.block.first_statement
                                    : &location->first;
}

// ---- Statements ----

void insert_statement_full(a_statement* statement, an_insert_location* location, bool is_list) {
  a_statement** link = link_at(location);
  a_statement* behind = *link;
  *link = statement;
  for (;; statement = statement->next) {
    if (location->block != nullptr)
      statement->parent = location->block;
    location->prev = statement;
    if (!is_list || statement->next == nullptr)
      break;
  }
  statement->next = behind;
}

void insert_statement(a_statement* statement, an_insert_location* location) {
  insert_statement_full(statement, location, false);
}

void insert_expr_statement(an_expr_node* expr, an_insert_location* location) {
  expr->next = nullptr;
  a_statement* statement = alloc_expr_statement(expr);
  statement->position = code_pos_for_lowering;
  insert_statement(statement, location);
}

void insert_var_assignment_statement(a_variable* variable, an_expr_node* value,
                                     an_insert_location* location) {
  value->next = nullptr;
  insert_expr_statement(make_assignment_expr(var_lvalue_expr(variable), eok_assign, value),
                        location);
}

a_statement* insert_statements_before(a_statement* statement, a_statement* list) {
  a_statement* inner = change_statement_into_block(statement);
  an_insert_location location;
  set_block_start_insert_location(statement, &location);
  insert_statement_full(list, &location, true);
  return inner;
}

// ---- Expressions ----

void insert_expr(an_expr_node* expr, an_insert_location* location) {
  an_expr_node* rest = copy_node(location->expr);
  overwrite_node(location->expr, make_comma_node(expr, rest));
  location->expr = rest;
}
