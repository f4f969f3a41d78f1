// Statements: all control flow becomes labels and two branch opcodes. A
// CBRANCH goes to its label when the condition is false.

#include <algorithm>
#include <string>

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_to_if_int.h"
#include "lower_runtime.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "sys_predef.h"
#include "target.h"

namespace {

// The enclosing block statement, whose end is the position of destructor calls.
a_statement* gen_block;

constexpr int64_t code_never_executed = 3865;

// ---- Jumps ----

void gen_label(uint32_t label) {
  gen_file->if_write_label(label);
}

void gen_branch(uint32_t label) {
  gen_expr_start();
  gen_node(ifop_BRANCH, nullptr);
  gen_label_node(label);
}

void gen_branch_if_false(an_expr_node* condition, uint32_t label) {
  gen_expr_start();
  gen_node(ifop_CBRANCH, nullptr);
  gen_expr(condition);
  gen_label_node(label);
}

void gen_branch_if_true(an_expr_node* condition, uint32_t label) {
  gen_expr_start();
  gen_node(ifop_CBRANCH, nullptr);
  gen_node(ifop_EXCLAIM, condition->type);
  gen_expr(condition);
  gen_label_node(label);
}

// ---- Simple statements ----

void gen_expr_statement(a_statement* statement) {
  gen_expr_start();
  gen_expr(statement->expr);
  float_constant_remark(statement->expr);
}

void gen_if(a_statement* statement) {
  a_statement* else_statement = statement->variant.if_stmt.else_statement;
  uint32_t false_label = next_label++;
  uint32_t end_label = else_statement == nullptr ? 0 : next_label++;
  gen_branch_if_false(statement->expr, false_label);
  gen_statement(statement->variant.if_stmt.then_statement);
  if (else_statement != nullptr)
    gen_branch(end_label);
  gen_label(false_label);
  if (else_statement != nullptr) {
    gen_statement(else_statement);
    gen_label(end_label);
  }
  float_constant_remark(statement->expr);
}

uint32_t label_number(const a_label* label) {
  return static_cast<uint32_t>(label->file_symbol->value);
}

void gen_return(a_statement* statement) {
  a_routine* routine = gen_function_scope->assoc.routine;
  SYMTAB* symbol = referenced_routine_symbol(routine);
  gen_expr_start();
  gen_node(statement->expr == nullptr ? ifop_URETURN : ifop_RETURN,
           statement->expr == nullptr ? nullptr : statement->expr->type);
  gen_name(routine->type, symbol);
  gen_expr(statement->expr);
}

// ---- Blocks ----

void open_block(a_scope* scope) {
  gen_level++;
  gen_file->if_write_begin_block(gen_position);
  gen_scope = scope;
  gen_pragmas(scope->pragmas, nullptr, placed_at_file);
  gen_locals(scope);
  gen_file->if_write_end_locals(gen_position);
  gen_zero_fills(scope);
}

void close_block(const a_source_position& end_position) {
  update_gen_position(end_position);
  gen_level--;
  gen_file->if_write_end_block(gen_position);
}

void gen_block_statement(a_statement* statement) {
  const a_block_supplement* supplement = statement->variant.block.block_supplement;
  a_scope* scope = supplement->scope;
  bool has_bracket = scope != nullptr && scope != gen_function_scope;
  a_scope* outer_scope = gen_scope;
  a_statement* outer_block = gen_block;
  if (has_bracket)
    open_block(scope);
  if (statement->position.seq != 0)
    gen_block = statement;
  for (a_statement* item = statement->variant.block.first_statement; item != nullptr;
       item = item->next)
    gen_statement(item);
  if (has_bracket)
    close_block(supplement->end_position);
  gen_scope = outer_scope;
  gen_block = outer_block;
  update_gen_position(supplement->end_position);
}

// ---- Loops ----

unsigned node_count(const an_expr_node* expr) {
  check_stack_limit();
  if (expr == nullptr)
    return 0;
  unsigned count = 1;
  if (expr->kind == expr_operation)
    for (const an_expr_node* operand = expr->variant.operation.operands; operand != nullptr;
         operand = operand->next)
      count += node_count(operand);
  return count;
}

// Code with a label of its own can't stand twice.
bool holds_label(a_statement* statement) {
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.process_statement = [](a_statement* part, an_expr_or_stmt_traversal_block* b) {
    if (part->kind == stmk_label)
      b->found = b->terminate = true;
  };
  traverse_statement(statement, &block);
  return block.found;
}

// What runs before each evaluation of a loop's condition: it came from GNU
// statement expressions.
a_statement* attached_to_condition(const a_statement* loop) {
  return loop->kind == stmk_for ? loop->variant.loop.extra.for_supplement->pre_condition_statement
                                : loop->pre_statement;
}

bool test_is_duplicated(const a_statement* loop) {
  constexpr int goal_of_size = 3;
  a_statement* attached = attached_to_condition(loop);
  if (attached != nullptr && holds_label(attached))
    return false;
  return node_count(loop->expr) <= (targ_size_speed_goal >= goal_of_size ? 4u : 10u);
}

std::string line_text(const a_source_position& position) {
  return std::to_string(position.seq == 0 ? 0 : psn_of(position).line);
}

const char* loop_keyword(const a_statement* statement) {
  switch (statement->kind) {
  case stmk_for:
    return "for";
  case stmk_do:
    return "do";
  default:
    return "while";
  }
}

// Tells where the loop and its body stand in the source.
void gen_loop_pragma(const a_statement* statement, const a_statement* body) {
  PSN psn = psn_of(statement->position);
  std::string place =
      std::string(psn.file == nullptr ? "unk" : psn.file) + ":" + std::to_string(psn.line);
  if (body != nullptr && body->kind == stmk_block && body->position.seq == 0)
    body = body->variant.block.first_statement;
  PRAGMA pragma(ifpk_SRC_LOOP, {place, body == nullptr ? "0" : line_text(body->position),
                                body == nullptr ? "0" : line_text(body->end_position),
                                loop_keyword(statement), ""});
  gen_file->if_write_pragma(&pragma);
}

void gen_loop_pragmas(const a_statement* statement, const a_statement* body) {
  gen_loop_pragma(statement, body);
  if (statement->has_associated_pragma)
    gen_assoc_pragmas(statement, placed_at_statement);
}

void prepare_condition(const a_statement* loop) {
  gen_statement(attached_to_condition(loop));
  update_gen_position(loop->expr->range.start.seq != 0 ? loop->expr->range.start
                                                       : loop->expr->position);
}

// Back to the start of the body while the condition holds.
void gen_bottom_test(const a_statement* loop, uint32_t body_label) {
  if (loop->expr == nullptr) {
    gen_branch(body_label);
    return;
  }
  prepare_condition(loop);
  gen_branch_if_true(loop->expr, body_label);
}

void gen_increment(const a_statement* loop, an_expr_node* increment) {
  if (increment == nullptr)
    return;
  gen_statement(loop->variant.loop.extra.for_supplement->pre_increment_statement);
  update_gen_position(increment->position);
  gen_expr_start();
  gen_expr(increment);
}

void gen_body(a_statement* loop, an_expr_node* increment, a_statement* body) {
  gen_statement(body);
  gen_increment(loop, increment);
}

// A short test stands twice, so that a loop that runs has one branch a turn; a
// long one stands at the bottom alone and is entered by a jump.
void gen_loop(a_statement* statement, a_statement* init, an_expr_node* increment,
              a_statement* body) {
  an_expr_node* condition = statement->expr;
  bool is_duplicated = test_is_duplicated(statement);
  uint32_t body_label = next_label++;
  uint32_t test_or_exit_label = is_duplicated && condition == nullptr ? 0 : next_label++;
  gen_statement(init);
  gen_loop_pragmas(statement, body);
  if (!is_duplicated) {
    gen_branch(test_or_exit_label);
  } else if (condition != nullptr) {
    prepare_condition(statement);
    gen_branch_if_false(condition, test_or_exit_label);
  }
  gen_label(body_label);
  gen_body(statement, increment, body);
  if (!is_duplicated)
    gen_label(test_or_exit_label);
  gen_bottom_test(statement, body_label);
  if (is_duplicated && condition != nullptr)
    gen_label(test_or_exit_label);
}

void gen_for(a_statement* statement) {
  a_for_loop_supplement* supplement = statement->variant.loop.extra.for_supplement;
  gen_loop(statement, supplement->init_statement, supplement->increment_expr,
           statement->variant.loop.body);
}

void gen_do(a_statement* statement) {
  uint32_t body_label = next_label++;
  gen_loop_pragmas(statement, statement->variant.loop.body);
  gen_label(body_label);
  gen_statement(statement->variant.loop.body);
  gen_bottom_test(statement, body_label);
  float_constant_remark(statement->expr);
}

// ---- Switches ----

// How many values lead to an entry; the greatest number for more.
uint64_t value_count(const a_switch_case_entry* entry) {
  if (entry->case_value == nullptr)
    return 0;
  if (entry->case_range_end == nullptr)
    return 1;
  uint64_t span = entry->case_range_end->value.int_value - entry->case_value->value.int_value;
  return span == UINT64_MAX ? span : span + 1;
}

// How many values a switch tells apart.
uint64_t value_count_of_switch(const a_switch_stmt_supplement* supplement) {
  uint64_t values = 0;
  for (const a_switch_case_entry* entry = supplement->first_case; entry != nullptr;
       entry = entry->next_in_source_order)
    if (__builtin_add_overflow(values, value_count(entry), &values))
      return UINT64_MAX;
  return values;
}

// A value becomes COMMA, CASE, LCON and LABEL.
bool has_room_for_values(uint64_t values) {
  uint64_t nodes;
  if (__builtin_mul_overflow(values, uint64_t(4), &nodes))
    nodes = UINT64_MAX;
  return gen_file->if_has_room_for(nodes);
}

// The number that a case statement's label got, kept in its entry.
uint32_t case_label(const a_switch_case_entry* entry) {
  return entry->file_label;
}

void gen_case_statement(a_statement* statement) {
  a_switch_case_entry* entry = statement->variant.loop.extra.switch_case_entry;
  entry->file_label = next_label++;
  gen_label(entry->file_label);
  gen_statement(statement->variant.loop.body);
}

void gen_case_values(const a_switch_case_entry* entry, a_type* type) {
  uint64_t count = value_count(entry);
  for (uint64_t i = 0; i < count; i++) {
    gen_node(ifop_CASE, integer_type(ik_int));
    gen_lcon(type, entry->case_value->value.int_value + i);
    gen_label_node(case_label(entry));
  }
}

// Whether the default of a switch says that it is never reached.
bool default_is_never_executed(const a_switch_case_entry* entry) {
  const a_statement* statement = entry == nullptr ? nullptr : entry->statement;
  if (statement != nullptr && statement->kind == stmk_case)
    statement =
        statement->variant.loop.body != nullptr ? statement->variant.loop.body : statement->next;
  while (statement != nullptr && statement->kind == stmk_block)
    statement = statement->variant.block.first_statement;
  if (statement == nullptr || statement->kind != stmk_expr || statement->expr == nullptr ||
      !is_operation_node(statement->expr, eok_call))
    return false;
  const an_expr_node* callee = statement->expr->variant.operation.operands;
  return callee->kind == expr_routine &&
         builtin_code_of(callee->variant.routine.ptr) == code_never_executed;
}

void gen_default(const a_switch_case_entry* entry, uint64_t values, uint32_t exit_label) {
  if (entry == nullptr && values != 0)
    return;
  gen_node(ifop_DEFAULT, nullptr);
  gen_label_node(entry == nullptr ? exit_label : case_label(entry));
}

void gen_dispatch(a_statement* statement, uint32_t exit_label) {
  const a_switch_stmt_supplement* supplement = statement->variant.loop.extra.switch_supplement;
  a_type* type = statement->expr->type;
  uint64_t values = value_count_of_switch(supplement);
  if (!has_room_for_values(values))
    return;
  if (default_is_never_executed(supplement->default_case)) {
    PRAGMA pragma(ifpk_DEFAULT_NEVER_EXECUTED);
    gen_file->if_write_pragma(&pragma);
  }
  gen_expr_start();
  NODE node(ifop_SWITCH, tp_type(type, tpm_lowered));
  node.value.integer = values;
  gen_file->if_write_expr_node(&node);
  gen_expr(statement->expr);
  uint64_t entries = values + (supplement->default_case != nullptr ? 1 : 0);
  gen_void_nodes(ifop_COMMA, entries > 0 ? entries - 1 : 0);
  for (const a_switch_case_entry* entry = supplement->first_case; entry != nullptr;
       entry = entry->next_in_source_order)
    gen_case_values(entry, type);
  gen_default(supplement->default_case, values, exit_label);
}

// The labels of the cases are known behind the body, so the dispatch stands
// there.
void gen_switch(a_statement* statement) {
  uint32_t dispatch_label = next_label++;
  uint32_t exit_label = next_label++;
  gen_branch(dispatch_label);
  gen_statement(statement->variant.loop.body);
  gen_branch(exit_label);
  gen_label(dispatch_label);
  gen_dispatch(statement, exit_label);
  gen_label(exit_label);
}

// ---- Initialisation of locals ----

bool is_zero_string(const a_constant* constant) {
  const a_string_value& string = constant->value.string;
  return std::all_of(string.text, string.text + string.length, [](char c) { return c == 0; });
}

bool is_zero_entry(const a_constant* entry) {
  if (entry->kind == con_repeat)
    entry = entry->value.repeat.element;
  return entry->kind == con_integer && entry->value.int_value == 0;
}

// Whether a call that clears the object is all of its initialisation: bytes that
// are zero, or an aggregate of integers that are.
bool is_zero_data(const a_constant* constant, const a_type* type) {
  if (constant->kind == con_string)
    return size_of_type(array_element_type(f_skip_typerefs(type))) == 1 && is_zero_string(constant);
  if (constant->kind != con_aggregate)
    return false;
  for (const a_constant* entry = constant->value.aggregate.first; entry != nullptr;
       entry = entry->next)
    if (!is_zero_entry(entry))
      return false;
  return true;
}

void gen_aggregate_init(a_variable* variable, a_constant* constant, an_if_opcode opcode) {
  if (is_zero_data(constant, variable->type)) {
    gen_zero_fill(variable);
    return;
  }
  a_variable* data = make_static_copy(variable, constant);
  gen_expr_start();
  gen_node(opcode, variable->type);
  gen_name(variable->type, referenced_variable_symbol(variable));
  gen_name(data->type, data->file_symbol);
}

void gen_init(a_statement* statement) {
  a_dynamic_init* init = statement->variant.dynamic_init;
  a_variable* variable = init->variable;
  hooks->dynamic_variable_initialization(init);
  if (init->kind < dik_constant || variable == nullptr)
    return;
  // A class that stands for its scalar may have no value of its own.
  bool is_constant = init->kind == dik_constant || init->kind == dik_nonconstant_aggregate;
  an_if_opcode opcode = assignment_opcode(variable->type);
  if (is_constant && (opcode != ifop_ASG || is_empty_aggregate(init->variant.constant))) {
    gen_aggregate_init(variable, init->variant.constant, opcode);
    return;
  }
  if (!is_constant)
    narrow_float_expr(init->variant.expr, variable->type);
  gen_expr_start();
  gen_node(opcode, variable->type);
  gen_name(variable->type, referenced_variable_symbol(variable));
  if (is_constant) {
    gen_constant(init->variant.constant, variable->type);
    return;
  }
  gen_expr(init->variant.expr);
  float_constant_remark(init->variant.expr);
}

bool is_destructor_call(const an_expr_node* expr) {
  if (expr == nullptr || !is_operation_node(expr, eok_call))
    return false;
  const an_expr_node* callee = expr->variant.operation.operands;
  return callee->kind == expr_routine &&
         callee->variant.routine.ptr->special_kind == rsk_destructor;
}

void set_statement_position(const a_statement* statement) {
  if (statement->position.seq != 0)
    update_gen_position(statement->position);
  else if (statement->kind == stmk_expr && is_destructor_call(statement->expr) &&
           gen_block != nullptr)
    update_gen_position(gen_block->variant.block.block_supplement->end_position);
}

} // namespace

// ---- Zero fill ----

void gen_zero_fill(a_variable* variable) {
  a_routine* routine = make_rout_entry("memset", make_routine_type(void_star_type()));
  routine->source_corresp.needed = true;
  referenced_routine_symbol(routine);
  an_expr_node* callee = function_rvalue_expr(routine);
  callee->next = add_cast(var_addr_expr(variable), void_star_type());
  callee->next->next = node_for_integer_constant(0, ik_int);
  callee->next->next->next = node_for_unsigned_constant(
      size_of_type(variable->type), static_cast<an_integer_kind>(targ_size_t_int_kind));
  gen_expr_start();
  gen_call(make_operator_node(eok_call, void_star_type(), callee));
}

void gen_statement(a_statement* statement) {
  check_stack_limit();
  if (statement == nullptr || statement->kind == stmk_null)
    return;
  if (statement->has_associated_pragma && !is_loop_statement(statement))
    gen_assoc_pragmas(statement, placed_at_statement);
  set_statement_position(statement);
  if (statement->expr != nullptr)
    narrow_float_expr(statement->expr, statement->expr->type);
  switch (statement->kind) {
  case stmk_expr:
    return gen_expr_statement(statement);
  case stmk_if:
    return gen_if(statement);
  case stmk_while:
    return gen_loop(statement, nullptr, nullptr, statement->variant.loop.body);
  case stmk_goto:
    return gen_branch(label_number(statement->variant.label.ptr));
  case stmk_label:
    return gen_label(label_number(statement->variant.label.ptr));
  case stmk_return:
    return gen_return(statement);
  case stmk_block:
    return gen_block_statement(statement);
  case stmk_do:
    return gen_do(statement);
  case stmk_for:
    return gen_for(statement);
  case stmk_case:
    return gen_case_statement(statement);
  case stmk_switch:
    return gen_switch(statement);
  case stmk_init:
    return gen_init(statement);
  case stmk_asm:
    return gen_assembly(statement->variant.asm_entry);
  default:
    // Lowering has removed the others.
    return;
  }
}
