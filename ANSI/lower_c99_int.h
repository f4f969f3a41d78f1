// Shared by the files of the lowering of C.

#ifndef LOWER_C99_INT_H
#define LOWER_C99_INT_H

#include "il_expr.h"
#include "lower_c99.h"

// The expression being lowered is evaluated in each turn of a loop.
extern bool loop_repeats_expr;

// The unit has complex or imaginary types.
extern bool nonreal_types_used;

// `op` of `op=`.
an_expr_operator_kind operator_of_compound_assignment(an_expr_operator_kind op);
// What an operation names twice must be evaluated once: the pointer that leads
// to the object goes into a temporary. The assignment to it is returned.
an_expr_node* name_object_once(an_expr_node* object);
// Lowers an operation that reads and writes its object, which is named once.
void lower_change_of_object(an_expr_node* node, void (*lower)(an_expr_node*));
// The value that the operand had before `object++` or `object--` changes it: a
// temporary keeps it where the operation's value is wanted. `value` reads the object;
// what the change computes with is returned.
struct a_kept_value {
  a_variable* temporary; // null: the value isn't wanted
  an_expr_node* keeping; // the assignment to it
};
an_expr_node* keep_old_value(const an_expr_node* node, an_expr_node* value, a_kept_value* kept);
// The change, with the kept value as its result.
an_expr_node* change_with_kept_value(const a_kept_value& kept, an_expr_node* change);
// A condition as a test against zero, unless it is a truth value already; null for
// null.
an_expr_node* boolean_controlling_expr(an_expr_node* expr);
// Lowers a condition, and makes a truth value of it.
void lower_c99_boolean_controlling_expr(an_expr_node** condition);

#endif
