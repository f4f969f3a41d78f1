#include "statements.h"

int depth_stmt_stack = -1;

void wrapup_control_flow_processing(a_scope*) {
  // Jumps are checked where there are statements.
}

void statements_one_time_init() {
  // Registers the variables kept for each unit.
}

void statements_init() {
  // Clears the free lists of statement stack entries.
}

void statements_trans_unit_init() {
  // Clears the state of the innermost statement.
}
