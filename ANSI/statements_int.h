// Shared by the files of statement parsing: the stack of open statements, the
// reachability of the current place, and the records of jumps.

#ifndef STATEMENTS_INT_H
#define STATEMENTS_INT_H

#include "statements.h"

// ---- The stack of open statements (statements_stack.cpp) ----

enum a_struct_stmt_kind : uint8_t {
  ssk_block = 0,
  ssk_if = 1,
  ssk_switch = 2,
  ssk_while = 3,
  ssk_do = 4,
  ssk_for = 5,
  ssk_range_for = 6,
  ssk_try = 7
};

// A statement that is being parsed.
struct a_struct_stmt_stack_entry {
  a_struct_stmt_kind kind;
  uint16_t in_else_part : 1;
  uint16_t in_for_init : 1;
  uint16_t has_dependent_case : 1; // a value that isn't known: nothing is sorted
  uint16_t label_seen : 1;
  uint16_t case_seen : 1;
  uint16_t declaration_seen : 1;
  uint16_t is_statement_expression : 1;
  uint16_t is_constructor_handler : 1; // of the function try block of a constructor
  uint16_t is_unreachable_loop : 1;    // by no way, not even by a label in it
  a_statement* statement;
  a_statement* last_statement; // tail of the block's list, or of the construct's slot
  a_label* break_label;        // made at first need
  a_label* continue_label;
  a_type* switch_type; // promoted
  a_switch_case_entry* last_case;
  a_switch_case_entry* last_sorted_case;
  int64_t overlap_steps_left; // since two ranges overlap and neighbours don't tell all
  a_statement* decl_statement;
  an_il_entity_list_entry* last_declaration;
  a_control_flow_descr* control_flow; // of a switch: where its labels are reached from
  int32_t scope_depth;                // at which the block's scope was pushed, or -1
  a_reachability saved;               // at the push
  a_reachability after;               // or-ed from the branches that end
};

extern a_struct_stmt_stack_entry* struct_stmt_stack;
extern a_reachability reachability;

inline a_struct_stmt_stack_entry* top_stmt_entry() {
  return &struct_stmt_stack[depth_stmt_stack];
}

// Attributes that the next statement takes, but for a label.
extern an_attribute* waiting_attributes;

void mark_reachable();
void mark_unreachable();
// Behind a call that doesn't return: nothing is reported, since what the
// attribute says may be meant as advice.
void mark_not_returning();
void merge_reachability(a_reachability* into, const a_reachability* from);

// Links a statement at the current place.
void attach_statement(a_statement* statement);
void push_stmt_entry(a_struct_stmt_kind kind, a_statement* statement);
// The end of a construct other than a block: what can be reached behind it,
// and its break label.
void pop_stmt_entry();

enum a_block_flag : unsigned {
  bf_none = 0,
  bf_generated = 1, // surrounds a construct (C99 6.8.5 p5)
  bf_detached = 2,  // isn't linked at the current place
  bf_try = 4,
  bf_handler = 8,
  bf_statement_expression = 16,
  bf_scope_is_open = 32 // the caller has opened the scope
};
// Opens and closes a block.
a_statement* open_block(unsigned flags, const a_source_position* position);
void close_block(const a_source_position* end_position);
// The innermost entry of a loop or, with `or_switch`, of a switch; null for
// none.
a_struct_stmt_stack_entry* innermost_loop(bool or_switch);
a_struct_stmt_stack_entry* innermost_switch();

a_label* make_generated_label(bool ends_switch);
// A generated label's statement, at the current place.
void place_label(a_label* label);
// A goto to a generated label; what follows it can't be reached.
void jump_to_label(a_label* label, const a_source_position* position);

// ---- Jumps (statements_flow.cpp) ----

extern a_control_flow_state control_flow;

// Whether a goto leaves the block that is open or one around it.
bool any_goto_in_open_blocks();
// The flags tell what may not be jumped into.
void flow_open_block(unsigned block_flags, const a_source_position* position);
void flow_close_block();
// Returns the place from which the labels of a switch are reached.
a_control_flow_descr* flow_open_switch(const a_source_position* position);
// C99 6.8.6.1 p1, 6.8.4.2 p2, C++11 6.7 p3, 15 p2: judges the jumps that the
// place ends, and keeps it for those to come.
void flow_goto(a_label* label, const a_source_position* position);
void flow_label(a_label* label, const a_source_position* position);
void flow_case(const a_struct_stmt_stack_entry* switch_entry, const a_source_position* position);

// ---- Labels (statements_label.cpp) ----

a_label* scan_label(bool is_definition, bool is_block_local);
bool is_label_start();
// Labels, each of which another statement must follow.
bool scan_labels();
void case_statement();
void default_statement();
// GNU: `__label__ a, b;` at the start of a block.
void local_label_declarations();
void break_statement();
void continue_statement();
void goto_statement();

// ---- Statements ----

// One statement. In a body position a declaration is refused in C.
void statement(bool is_body);
void return_statement();
// The function's end is reached: its return statement.
void return_at_end_of_function(const a_source_position* position);
// The end of the last token of the last statement that was read.
extern a_source_position end_of_last_statement;
void required_semicolon();

// ---- Arrays of variable length (statements_vla.cpp) ----

// At the start of a function's body: the bounds of its parameters.
void set_vla_sizes_of_parameters();
// At the end of the block on top, or of the function's body: its arrays are given
// back.
void add_vla_deallocations_of_block(const a_source_position* position);
// In front of a return: all arrays are given back, behind the evaluation of the
// value, which is returned in the form that is left of it.
an_expr_node* add_vla_deallocations_of_return(an_expr_node* value,
                                              const a_source_position* position);

// ---- Constructs (statements_loop.cpp) ----

void if_statement();
void switch_statement();
void while_statement();
void do_statement();
void for_statement();
// Behind the `(` of a range-based for (C++11 6.5.4), whose entry is on top.
void range_based_for(const a_source_position* position);
// The statement that a loop governs, and the label that `continue` goes to.
void loop_body(const a_source_position* loop_position);
void close_construct();

// ---- Exceptions (statements_try.cpp) ----

void try_statement();
// Reads the `try`.
void open_try();
// `is_function_try`: the block is the body of a function.
void try_block_and_handlers(bool is_function_try, bool is_constructor);

#endif
