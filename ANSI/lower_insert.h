// Where statements and expressions that lowering makes go.

#ifndef LOWER_INSERT_H
#define LOWER_INSERT_H

#include "basics.h"

// What is inserted stands in order, each behind the one before. An empty location is
// the start of a list that is to become a block, or part of one.
struct an_insert_location {
  a_statement* block; // that the statements belong to; null: a list without a block yet
  a_statement* first; // of such a list
  a_statement* prev;  // the statement in front of the place; null: the start
  an_expr_node* expr; // what the expressions are evaluated in front of
};

// Behind a statement of a block.
void set_insert_location(a_statement* statement, an_insert_location* location);
// In front of all statements of a block.
void set_block_start_insert_location(a_statement* block, an_insert_location* location);
// In front of an expression, as the left operand of a comma.
void set_expr_insert_location(an_expr_node* expr, an_insert_location* location);

// A statement, or a list of them with `is_list`.
void insert_statement_full(a_statement* statement, an_insert_location* location, bool is_list);
void insert_statement(a_statement* statement, an_insert_location* location);
// Expressions as statements of their own.
void insert_expr_statement(an_expr_node* expr, an_insert_location* location);
void insert_var_assignment_statement(a_variable* variable, an_expr_node* value,
                                     an_insert_location* location);
void insert_expr(an_expr_node* expr, an_insert_location* location);

// Puts a list of statements before a statement, which becomes a block; the
// statement itself is returned in its new place.
a_statement* insert_statements_before(a_statement* statement, a_statement* list);

#endif
