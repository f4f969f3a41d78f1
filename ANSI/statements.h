// Statements and function bodies (C99 6.8).

#ifndef STATEMENTS_H
#define STATEMENTS_H

#include "basics.h"
#include "il_statements.h"

// The depth of the statement stack; -1 when it is empty.
extern int depth_stmt_stack;

// A brace-enclosed block, at its `{`. Of a function's body the current token
// is the `}` afterwards.
a_statement* compound_statement_full(bool is_function_body);

// Makes a statement at the current place and updates reachability.
a_statement* add_statement_at_stmt_pos(a_statement_kind kind, const a_source_position* position);

// Reports once that the current place can't be reached.
void warn_if_code_is_unreachable(an_error_code code, const a_source_position* position);

// Hooks of declarations inside functions: jumps past them are judged later.
void update_init_statement_control_flow(a_statement* statement);
void record_trivial_init_control_flow(a_variable* variable);
void record_entity_in_decl_stmt_if_needed(a_symbol* symbol);

// Frees the control-flow records at the end of a function.
void wrapup_control_flow_processing(a_scope* scope);

void statements_one_time_init();
void statements_init();
void statements_trans_unit_init();

#endif
