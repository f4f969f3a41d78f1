#include "expr.h"

an_expr_stack_entry* expr_stack;
a_ref_entry* curr_expr_ref_entries;
a_source_position curr_construct_end_position;

bool expr_error_should_be_issued() {
  if (!expr_stack || !expr_stack->flags.suppress_errors)
    return true;
  expr_stack->flags.error_suppressed = true;
  return false;
}

void expr_one_time_init() {
  // Registers the variables kept for each unit.
}

void expr_init() {
  expr_stack = nullptr;
  curr_expr_ref_entries = nullptr;
}

void expr_trans_unit_init() {
  // Clears the state of the innermost expression.
}
