#include "expr.h"

void expr_one_time_init() {
  // Registers the variables kept for each unit.
}

void expr_init() {
  // Clears the free lists of operands and the expression stack.
}

void expr_trans_unit_init() {
  // Clears the state of the innermost expression.
}
