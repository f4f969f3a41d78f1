// Arrays of variable length among the statements (C99 6.7.5.2 p5, 6.8.6.1): where
// their bounds are evaluated, and where their room is given back.

#include <vector>

#include "il.h"
#include "il_alloc.h"
#include "il_expr.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements_int.h"
#include "types.h"

// ---- Bounds ----

void set_vla_size_statement(a_vla_dimension* dimension, const a_source_position* position) {
  a_statement* statement = add_statement_at_stmt_pos(stmk_set_vla_size, position);
  statement->variant.vla_dimension = dimension;
}

void set_vla_sizes_of_parameters() {
  for (a_vla_dimension* dimension = innermost_function_scope->vla_dimensions; dimension;
       dimension = dimension->next)
    if (dimension->is_param)
      set_vla_size_statement(dimension, &dimension->position);
}

// ---- Deallocation ----

static bool deallocation_is_wanted() {
  return vla_deallocations_in_il && depth_innermost_function_scope >= 0 &&
         scope_stack[depth_innermost_function_scope].routine->has_vla;
}

// The arrays that have been declared in the scopes, the last one first.
static std::vector<a_variable*> arrays_of_scopes(int innermost, int outermost) {
  std::vector<a_variable*> arrays;
  for (int depth = outermost; depth <= innermost; depth++) {
    const a_scope* scope = scope_stack[depth].il_scope;
    for (a_variable* variable = scope ? scope->local_variables : nullptr; variable;
         variable = variable->next)
      if (variable->is_vla)
        arrays.push_back(variable);
  }
  return {arrays.rbegin(), arrays.rend()};
}

static void add_deallocation(a_variable* variable, const a_source_position* position) {
  a_statement* statement = add_statement_at_stmt_pos(stmk_expr, position);
  statement->is_generated = true;
  statement->expr = alloc_expr_node(expr_vla_dealloc);
  statement->expr->type = void_type();
  statement->expr->variant.variable.ptr = variable;
}

void add_vla_deallocations_of_block(const a_source_position* position) {
  if (!deallocation_is_wanted() || !reachability.code_is_reachable)
    return;
  for (a_variable* variable : arrays_of_scopes(depth_scope_stack, depth_scope_stack))
    add_deallocation(variable, position);
}

// What computes the value may use the arrays.
static an_expr_node* value_in_temporary(an_expr_node* value, const a_source_position* position) {
  a_variable* temporary = alloc_temporary_variable(make_unqualified_type(value->type), false);
  add_to_variables_list(temporary, depth_innermost_function_scope);
  a_statement* statement = add_statement_at_stmt_pos(stmk_expr, position);
  statement->expr = make_assignment_expr(var_lvalue_expr(temporary), eok_assign, value);
  set_expr_result_not_used(statement->expr);
  return var_rvalue_expr(temporary);
}

an_expr_node* add_vla_deallocations_of_return(an_expr_node* value,
                                              const a_source_position* position) {
  if (!deallocation_is_wanted())
    return value;
  std::vector<a_variable*> arrays =
      arrays_of_scopes(depth_scope_stack, depth_innermost_function_scope);
  if (arrays.empty())
    return value;
  if (value && !is_error_type(value->type) && !is_invariant_expr(value))
    value = value_in_temporary(value, position);
  for (a_variable* variable : arrays)
    add_deallocation(variable, position);
  return value;
}
