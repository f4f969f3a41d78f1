// Statements and function bodies (C99 6.8).

#ifndef STATEMENTS_H
#define STATEMENTS_H

#include "basics.h"
#include "il_statements.h"

struct a_reachability {
  a_boolean code_is_reachable;     // control may be here
  a_boolean code_can_fall_through; // control really arrives here
  a_boolean unreachable_warned;    // this dead region was reported
};

struct a_struct_stmt_stack_entry;

// The depth of the statement stack; -1 when it is empty.
extern int depth_stmt_stack;

// A brace-enclosed block, at its `{`. Of a function's body the current token
// is the `}` afterwards.
a_statement* compound_statement_full(bool is_function_body);
// The statements of a GNU statement expression, at the `{`. `*type` is the type
// of its value, void for none.
a_statement* statement_expression_block(a_type** type);
// Whether the current place is inside one.
bool inside_statement_expression();
// Whether the expression statement that ends at the current `;` is the last one
// of a statement expression.
bool is_last_in_statement_expression();
bool in_switch_statement();
// A label as an operand, at its name.
a_label* scan_label_reference();

// `try` in front of a function's body (C++11 15 p3).
bool start_of_function_try_block();
// At the `try`: the body and its handlers. `scan_initializers` reads what stands
// in front of the block.
typedef void (*an_initializer_scanner)(a_routine* routine, a_scope* scope);
a_statement* function_try_block(a_routine* routine, a_scope* scope,
                                an_initializer_scanner scan_initializers);

// Makes a statement at the current place and updates reachability.
a_statement* add_statement_at_stmt_pos(a_statement_kind kind, const a_source_position* position);

// Reports once that the current place can't be reached.
void warn_if_code_is_unreachable(an_error_code code, const a_source_position* position);

// Whether the current place surely runs before all that stands further down in
// the function, as far as the values of the variable go. In a loop that began
// behind its declaration this can be said of steps only (`is_step`), as of a
// counter, that run in the first turn.
bool precedes_all_values(const a_symbol* variable, bool is_step);

// Hooks of declarations inside functions: jumps past them are judged later.
void update_init_statement_control_flow(a_statement* statement);
void record_trivial_init_control_flow(a_variable* variable);
void record_entity_in_decl_stmt_if_needed(a_symbol* symbol);
// The bound of an array of variable length is evaluated here.
void set_vla_size_statement(a_vla_dimension* dimension, const a_source_position* position);

// Frees the control-flow records at the end of a function.
void wrapup_control_flow_processing(a_scope* scope);

// The records of one function's blocks, initialisations, gotos and labels, in
// the order of the source.
struct a_control_flow_state {
  a_control_flow_descr* first;
  a_control_flow_descr* last;
  a_control_flow_descr* block; // the innermost open one
  uint32_t next_number;
  uint32_t num_hazards; // places that a jump may not pass or enter
};

// A body inside another function begins with a stack of its own.
struct a_stmt_stack_state {
  a_struct_stmt_stack_entry* stack;
  int size;
  int depth;
  a_reachability reachability;
  an_attribute* waiting_attributes;
  a_control_flow_state control_flow;
};
void new_struct_stmt_stack(a_stmt_stack_state* state);
void restore_struct_stmt_stack(const a_stmt_stack_state* state);

void statements_one_time_init();
void statements_init();
void statements_trans_unit_init();

#endif
