// Shared by the files of statement parsing: the stack of open statements and
// the reachability of the current place.

#ifndef STATEMENTS_INT_H
#define STATEMENTS_INT_H

#include "statements.h"

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

struct a_reachability {
  a_boolean code_is_reachable;     // control may be here
  a_boolean code_can_fall_through; // control really arrives here
  a_boolean unreachable_warned;    // this dead region was reported
};

// A statement that is being parsed.
struct a_struct_stmt_stack_entry {
  a_struct_stmt_kind kind;
  uint16_t in_else_part : 1;
  uint16_t in_for_init : 1;
  uint16_t value_expected : 1; // the function's end must not be reached
  uint16_t label_seen : 1;
  uint16_t case_seen : 1;
  uint16_t declaration_seen : 1;
  uint16_t is_generated : 1; // a block that the source doesn't have
  a_statement* statement;
  a_statement* last_statement; // tail of the block's list, or of the construct's slot
  a_label* break_label;        // made at first need
  a_label* continue_label;
  a_type* switch_type; // promoted
  a_switch_case_entry* last_case;
  a_switch_case_entry* last_sorted_case;
  a_statement* decl_statement;
  an_il_entity_list_entry* last_declaration;
  a_reachability saved; // at the push
  a_reachability after; // or-ed from the branches that end
};

// The open statements around a body inside another function, which begins with a
// stack of its own.
struct a_stmt_stack_state {
  a_struct_stmt_stack_entry* stack;
  int size;
  int depth;
  a_reachability reachability;
  an_attribute* waiting_attributes;
};
void new_struct_stmt_stack(a_stmt_stack_state* state);
void restore_struct_stmt_stack(const a_stmt_stack_state* state);

extern a_struct_stmt_stack_entry* struct_stmt_stack;
extern a_reachability reachability;

inline a_struct_stmt_stack_entry* top_stmt_entry() {
  return &struct_stmt_stack[depth_stmt_stack];
}

// Attributes that the next statement takes, but for a label.
extern an_attribute* waiting_attributes;

void mark_reachable();
void mark_unreachable();
void merge_reachability(a_reachability* into, const a_reachability* from);

// Links a statement at the current place.
void attach_statement(a_statement* statement);
void push_stmt_entry(a_struct_stmt_kind kind, a_statement* statement);
// The end of a construct other than a block: what can be reached behind it,
// and its break label.
void pop_stmt_entry();
// Opens and closes a block; a generated one surrounds a construct (C99 6.8.5
// p5).
a_statement* open_block(bool is_generated, const a_source_position* position);
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

// One statement. In a body position a declaration is refused.
void statement(bool is_body);
void case_statement();
void default_statement();
void return_statement();
// The function's end is reached: its return statement.
void return_at_end_of_function(const a_source_position* position);

#endif
