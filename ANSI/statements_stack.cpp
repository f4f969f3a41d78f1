// The stack of open statements, and the reachability of the current place.

#include <cstring>

#include "attribute.h"
#include "error.h"
#include "folding.h"
#include "il.h"
#include "il_alloc.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "statements_int.h"

a_struct_stmt_stack_entry* struct_stmt_stack;
int depth_stmt_stack = -1;
a_reachability reachability;
an_attribute* waiting_attributes;

static int size_stmt_stack;
// Of the last nested body, for the next one.
static a_struct_stmt_stack_entry* spare_stmt_stack;
static int size_spare_stmt_stack;
static constexpr int stmt_stack_increment = 30;

// ---- Reachability ----

void mark_reachable() {
  reachability = {true, true, false};
}

void mark_unreachable() {
  reachability = {false, false, false};
}

void mark_not_returning() {
  reachability.code_can_fall_through = false;
  reachability.unreachable_warned = true;
}

void merge_reachability(a_reachability* into, const a_reachability* from) {
  into->code_is_reachable |= from->code_is_reachable;
  into->code_can_fall_through |= from->code_can_fall_through;
  into->unreachable_warned |= from->unreachable_warned;
}

void warn_if_code_is_unreachable(an_error_code code, const a_source_position* position) {
  if (reachability.code_is_reachable || reachability.unreachable_warned)
    return;
  bool is_misra_rule =
      code == ec_code_is_unreachable && check_misra_c_2004 &&
      misra_c_2004_generate_diagnostic(ec_misra_c_2004_14_1, misra_required_severity);
  if (is_misra_rule)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_14_1, position);
  else
    pos_warning(code, position);
  reachability.unreachable_warned = true;
}

// ---- Linking statements ----

// The place of a construct's next statement.
static a_statement** slot_of(a_struct_stmt_stack_entry* entry) {
  a_statement* statement = entry->statement;
  switch (statement->kind) {
  case stmk_if:
    return entry->in_else_part ? &statement->variant.if_stmt.else_statement
                               : &statement->variant.if_stmt.then_statement;
  case stmk_for:
    return entry->in_for_init ? &statement->variant.loop.extra.for_supplement->init_statement
                              : &statement->variant.loop.body;
  case stmk_block:
    return &statement->variant.block.first_statement;
  case stmk_try:
    return &statement->variant.try_supplement->try_block;
  default:
    return &statement->variant.loop.body;
  }
}

static bool is_single_statement_block(const a_statement* statement) {
  return statement->kind == stmk_block &&
         statement->variant.block.block_supplement->holds_single_statement;
}

// A second statement for a slot that holds one, as behind a label: a generated
// block takes both.
static void extend_slot(a_struct_stmt_stack_entry* entry, a_statement** slot,
                        a_statement* statement) {
  a_statement* block = *slot;
  if (!is_single_statement_block(block)) {
    block = alloc_statement(stmk_block);
    block->is_generated = true;
    block->position = (*slot)->position;
    block->end_position = (*slot)->end_position;
    block->variant.block.block_supplement->holds_single_statement = true;
    block->variant.block.first_statement = *slot;
    block->parent = entry->statement;
    (*slot)->parent = block;
    *slot = block;
  }
  entry->last_statement->next = statement;
  statement->parent = block;
}

// C++17 10.6.5 p1: the next statement is a label of the switch.
static void check_fallthrough(const a_statement* last) {
  if (!last || last->kind != stmk_null || !last->attributes ||
      !find_attribute_of_kind(last->attributes, attrk_fallthrough))
    return;
  pos_diagnostic(clang_mode ? strict_ansi_discretionary_severity : es_error,
                 ec_fallthrough_must_precede_switch_case, &last->position);
}

void attach_statement(a_statement* statement) {
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  a_statement** slot = slot_of(entry);
  statement->parent = entry->statement;
  if (statement->kind != stmk_case)
    check_fallthrough(entry->last_statement);
  if (!*slot)
    *slot = statement;
  else if (entry->statement->kind == stmk_block)
    entry->last_statement->next = statement;
  else
    extend_slot(entry, slot, statement);
  entry->last_statement = statement;
  entry->decl_statement = nullptr;
}

static void take_waiting_attributes(a_statement* statement) {
  an_attribute* list = waiting_attributes;
  waiting_attributes = nullptr;
  attach_attributes(list, statement, iek_statement);
}

a_statement* add_statement_at_stmt_pos(a_statement_kind kind, const a_source_position* position) {
  a_statement* statement = alloc_statement(kind);
  statement->position = *position;
  statement->is_unreachable = !reachability.code_is_reachable;
  attach_statement(statement);
  if (kind != stmk_label)
    take_waiting_attributes(statement);
  if (kind != stmk_label && kind != stmk_case && kind != stmk_decl)
    process_curr_construct_pragmas(nullptr, statement);
  if (kind == stmk_goto || kind == stmk_return)
    mark_unreachable();
  return statement;
}

// ---- The stack ----

void push_stmt_entry(a_struct_stmt_kind kind, a_statement* statement) {
  if (++depth_stmt_stack >= size_stmt_stack) {
    uint64_t entry_size = sizeof(a_struct_stmt_stack_entry);
    int new_size = size_stmt_stack + stmt_stack_increment;
    struct_stmt_stack = reinterpret_cast<a_struct_stmt_stack_entry*>(
        realloc_buffer(reinterpret_cast<char*>(struct_stmt_stack), size_stmt_stack * entry_size,
                       new_size * entry_size));
    size_stmt_stack = new_size;
  }
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  *entry = a_struct_stmt_stack_entry();
  entry->kind = kind;
  entry->statement = statement;
  entry->scope_depth = -1;
  entry->saved = reachability;
}

void new_struct_stmt_stack(a_stmt_stack_state* state) {
  *state = {struct_stmt_stack, size_stmt_stack,    depth_stmt_stack,
            reachability,      waiting_attributes, control_flow};
  struct_stmt_stack = spare_stmt_stack;
  size_stmt_stack = size_spare_stmt_stack;
  spare_stmt_stack = nullptr;
  size_spare_stmt_stack = 0;
  depth_stmt_stack = -1;
  waiting_attributes = nullptr;
  control_flow = {};
}

void restore_struct_stmt_stack(const a_stmt_stack_state* state) {
  spare_stmt_stack = struct_stmt_stack;
  size_spare_stmt_stack = size_stmt_stack;
  struct_stmt_stack = state->stack;
  size_stmt_stack = state->size;
  depth_stmt_stack = state->depth;
  reachability = state->reachability;
  waiting_attributes = state->waiting_attributes;
  control_flow = state->control_flow;
}

static void pass_on_flags(const a_struct_stmt_stack_entry* entry) {
  if (depth_stmt_stack < 0)
    return;
  a_struct_stmt_stack_entry* parent = top_stmt_entry();
  parent->label_seen |= entry->label_seen;
  if (entry->kind != ssk_switch)
    parent->case_seen |= entry->case_seen;
}

static bool is_loop(a_struct_stmt_kind kind) {
  return kind >= ssk_while && kind <= ssk_range_for;
}

// Whether the value of a condition is known, and true. What computes it first
// doesn't count, nor do conversions to a truth value.
static bool is_known_true(const an_expr_node* condition) {
  while (condition->kind == expr_operation) {
    an_expr_operator_kind op = condition->variant.operation.op;
    const an_expr_node* operand = condition->variant.operation.operands;
    if (op == eok_comma)
      operand = operand->next;
    else if (op != eok_cast && op != eok_to_bool)
      return false;
    condition = operand;
  }
  if (condition->kind != expr_constant)
    return false;
  const a_constant* constant = condition->variant.constant.ptr;
  return constant_bool_value_known_at_compile_time(constant) && constant_bool_value(constant);
}

// Whether control leaves a construct by its condition.
static bool condition_can_fail(const a_statement* statement) {
  return statement->expr && !is_known_true(statement->expr);
}

static void set_reachability_behind_loop(a_struct_stmt_stack_entry* entry) {
  merge_reachability(&entry->after, &reachability);
  if (entry->kind != ssk_range_for && !condition_can_fail(entry->statement)) {
    mark_unreachable();
    return;
  }
  if (entry->kind != ssk_do)
    merge_reachability(&entry->after, &entry->saved);
  reachability = entry->after;
}

static void set_reachability_behind_if(a_struct_stmt_stack_entry* entry) {
  merge_reachability(&entry->after, &reachability);
  if (!entry->in_else_part && condition_can_fail(entry->statement))
    merge_reachability(&entry->after, &entry->saved);
  reachability = entry->after;
}

static void set_reachability_behind_switch(a_struct_stmt_stack_entry* entry) {
  merge_reachability(&entry->after, &reachability);
  if (!entry->statement->variant.loop.extra.switch_supplement->default_case)
    merge_reachability(&entry->after, &entry->saved);
  reachability = entry->after;
}

static void set_reachability_behind(a_struct_stmt_stack_entry* entry) {
  switch (entry->kind) {
  case ssk_block:
    break;
  case ssk_if:
    return set_reachability_behind_if(entry);
  case ssk_switch:
    return set_reachability_behind_switch(entry);
  case ssk_try:
    merge_reachability(&entry->after, &reachability);
    reachability = entry->after;
    break;
  default:
    return set_reachability_behind_loop(entry);
  }
}

void pop_stmt_entry() {
  a_struct_stmt_stack_entry entry = *top_stmt_entry();
  set_reachability_behind(&entry);
  --depth_stmt_stack;
  pass_on_flags(&entry);
  if (entry.break_label) {
    if (entry.kind != ssk_switch && !entry.is_unreachable_loop)
      mark_reachable();
    place_label(entry.break_label);
  }
}

// ---- Blocks ----

a_statement* open_block(unsigned flags, const a_source_position* position) {
  a_statement* block = alloc_statement(stmk_block);
  block->position = *position;
  block->is_generated = (flags & bf_generated) != 0;
  block->is_unreachable = !reachability.code_is_reachable;
  if (!(flags & bf_detached))
    attach_statement(block);
  if (!(flags & (bf_generated | bf_detached))) {
    take_waiting_attributes(block);
    process_curr_construct_pragmas(nullptr, block);
  }
  if (!(flags & bf_scope_is_open)) {
    // Those of the statement that a generated block stands round. A statement
    // expression leaves them to the statement that it is in.
    bool takes_pragmas = (flags & bf_generated) && has_construct_pragmas();
    a_pending_pragma* pragmas = takes_pragmas ? extract_curr_construct_pragmas() : nullptr;
    push_block_scope(nullptr);
    reactivate_curr_construct_pragmas(pragmas);
  }
  push_stmt_entry(ssk_block, block);
  top_stmt_entry()->is_statement_expression = (flags & bf_statement_expression) != 0;
  top_stmt_entry()->scope_depth = depth_scope_stack;
  flow_open_block(flags, position);
  return block;
}

static void bind_scope_to_block(a_statement* block, a_scope* scope) {
  block->variant.block.block_supplement->scope = scope;
  if (scope)
    scope->assoc_statement = block;
}

// A marked fall-through may not be the last statement of a switch.
static void check_fallthrough_at_end(const a_struct_stmt_stack_entry* entry) {
  if (depth_stmt_stack > 0 && struct_stmt_stack[depth_stmt_stack - 1].kind == ssk_switch)
    check_fallthrough(entry->last_statement);
}

void close_block(const a_source_position* end_position) {
  a_struct_stmt_stack_entry entry = *top_stmt_entry();
  check_fallthrough_at_end(&entry);
  add_vla_deallocations_of_block(end_position);
  entry.statement->end_position = *end_position;
  entry.statement->variant.block.block_supplement->end_position = *end_position;
  bind_scope_to_block(entry.statement, scope_stack[depth_scope_stack].il_scope);
  flow_close_block();
  pop_scope();
  --depth_stmt_stack;
  if (!entry.is_statement_expression)
    pass_on_flags(&entry);
}

a_struct_stmt_stack_entry* innermost_loop(bool or_switch) {
  for (int depth = depth_stmt_stack; depth >= 0; --depth) {
    a_struct_stmt_stack_entry* entry = &struct_stmt_stack[depth];
    if (is_loop(entry->kind) || (or_switch && entry->kind == ssk_switch))
      return entry;
  }
  return nullptr;
}

a_struct_stmt_stack_entry* innermost_switch() {
  for (int depth = depth_stmt_stack; depth >= 0; --depth)
    if (struct_stmt_stack[depth].kind == ssk_switch)
      return &struct_stmt_stack[depth];
  return nullptr;
}

bool in_switch_statement() {
  return innermost_switch() != nullptr;
}

bool inside_statement_expression() {
  for (int depth = depth_stmt_stack; depth >= 0; --depth)
    if (struct_stmt_stack[depth].is_statement_expression)
      return true;
  return false;
}

// ---- The order of execution ----

// Whether the entry holds the declaration of what is declared at the depth, or
// is around it.
static bool holds_scope(const a_struct_stmt_stack_entry* entry, int depth) {
  return entry->scope_depth >= 0 && entry->scope_depth <= depth;
}

static bool any_label_in_open_statements() {
  for (int depth = depth_stmt_stack; depth >= 0; --depth)
    if (struct_stmt_stack[depth].label_seen)
      return true;
  return false;
}

bool precedes_all_values(const a_symbol* variable, bool is_step) {
  int scope_depth = scope_depth_of_symbol(variable, nullptr);
  if (depth_stmt_stack < 0 || scope_depth < depth_innermost_function_scope ||
      !reachability.code_can_fall_through || any_label_in_open_statements())
    return false;
  bool in_loop = false, is_conditional = false;
  for (int depth = depth_stmt_stack; depth >= 0; --depth) {
    const a_struct_stmt_stack_entry* entry = &struct_stmt_stack[depth];
    if (holds_scope(entry, scope_depth))
      break;
    in_loop |= is_loop(entry->kind);
    is_conditional |= (entry->kind != ssk_block && !is_loop(entry->kind)) || entry->continue_label;
  }
  return !in_loop || (is_step && !is_conditional && !any_goto_in_open_blocks());
}

// ---- Generated labels ----

a_label* make_generated_label(bool ends_switch) {
  a_label* label = alloc_label();
  label->is_break_or_continue = true;
  label->ends_switch = ends_switch;
  label->source_corresp.is_unnamed = true;
  add_to_labels_list(label, depth_innermost_function_scope);
  return label;
}

void place_label(a_label* label) {
  a_source_position position = null_source_position;
  a_statement* statement = add_statement_at_stmt_pos(stmk_label, &position);
  statement->variant.label.ptr = label;
  statement->is_generated = true;
  label->def_statement = statement;
  label->was_reachable = reachability.code_is_reachable != 0;
}

void jump_to_label(a_label* label, const a_source_position* position) {
  a_statement* statement = add_statement_at_stmt_pos(stmk_goto, position);
  statement->variant.label.ptr = label;
  statement->is_generated = true;
  label->is_used = true;
  mark_unreachable();
}
