#include "lower_c99.h"

#include "decl_spec.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lower_il.h"
#include "lower_init.h"
#include "lower_stmt_expr.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

bool c99_il_lowering_needed() {
  if (suppress_il_lowering || total_errors != 0 || !in_C_mode())
    return false;
  return designators_allowed || compound_literals_allowed || gnu_mode || c99_bool_is_keyword ||
         c99_complex_enabled || allow_nonconstant_auto_aggr_init_in_c_mode;
}

// The expression being lowered is evaluated in each turn of a loop.
static bool loop_repeats_expr;

// ---- Expressions ----

// `value != 0`, with the operand in place.
static an_expr_node* comparison_with_zero(an_expr_node* value) {
  a_constant zero;
  make_zero_of_proper_type(make_unqualified_type(value->type), &zero);
  an_expr_node* operand = value;
  operand->next = alloc_node_for_constant(&zero);
  an_expr_node* result = make_operator_node(eok_ne, integer_type(ik_int), operand);
  result->position = value->position;
  result->range = value->range;
  return result;
}

static bool is_boolean_value(const an_expr_node* expr) {
  return is_bool_type(expr->type) || expr->kind == expr_constant ||
         (expr->kind == expr_operation && is_operator_returning_bool(expr->variant.operation.op));
}

// A condition becomes a test against zero, unless it is a truth value already.
static an_expr_node* boolean_controlling_expr(an_expr_node* expr) {
  if (expr == nullptr || is_boolean_value(expr) || !is_scalar_type(expr->type))
    return expr;
  return comparison_with_zero(expr);
}

// A conversion to _Bool asks whether the value differs from zero (C99 6.3.1.2).
static void lower_bool_cast(an_expr_node* cast) {
  an_expr_node* operand = cast->variant.operation.operands;
  if (!is_boolean_value(operand) && is_scalar_type(operand->type))
    cast->variant.operation.operands = comparison_with_zero(operand);
  cast->variant.operation.op = eok_cast;
}

static an_expr_node* bool_value(a_type* type, int64_t value) {
  a_constant constant;
  make_zero_of_proper_type(make_unqualified_type(type), &constant);
  constant.value.int_value = static_cast<uint64_t>(value);
  return alloc_node_for_constant(&constant);
}

static an_expr_node* bool_assignment(const an_expr_node* object, an_expr_node* value) {
  return make_assignment_expr(copy_expr_tree(object, cef_none), eok_assign, value);
}

static an_expr_node* inverted(const an_expr_node* object) {
  an_expr_node* value = copy_expr_tree(object, cef_none);
  value->next = nullptr;
  value = make_operator_node(eok_not, integer_type(ik_int), value);
  return make_operator_node(eok_cast, make_unqualified_type(object->type), value);
}

// A _Bool that is incremented is true, one that is decremented is inverted.
static void lower_bool_incr_decr(an_expr_node* node) {
  an_expr_node* object = node->variant.operation.operands;
  an_expr_operator_kind op = node->variant.operation.op;
  bool is_incr = op == eok_post_incr || op == eok_pre_incr;
  bool old_value_wanted = (op == eok_post_incr || op == eok_post_decr) && !node->result_not_used;
  an_expr_node* result =
      bool_assignment(object, is_incr ? bool_value(object->type, 1) : inverted(object));
  if (old_value_wanted && !is_incr) {
    result = make_comma_node(result, inverted(object));
  } else if (old_value_wanted) {
    an_expr_node* condition = copy_expr_tree(object, cef_none);
    condition->next = bool_value(object->type, 1);
    condition->next->next = make_comma_node(result, bool_value(object->type, 0));
    result = make_operator_node(eok_question, make_unqualified_type(object->type), condition);
  }
  overwrite_node(node, result);
}

static an_expr_operator_kind operator_of_compound_assignment(an_expr_operator_kind op) {
  int base = op <= eok_remainder_assign ? eok_add - eok_add_assign
                                        : eok_shift_left - eok_shift_left_assign;
  return static_cast<an_expr_operator_kind>(op + base);
}

// `b op= x` on a _Bool computes in the common type and is true for all but zero.
static void lower_bool_compound_assignment(an_expr_node* node) {
  an_expr_node* object = node->variant.operation.operands;
  an_expr_node* right = object->next;
  a_type* type = compound_assignment_operation_type(node->variant.operation.op, object, right);
  an_expr_operator_kind op = operator_of_compound_assignment(node->variant.operation.op);
  bool is_shift = op == eok_shift_left || op == eok_shift_right;
  an_expr_node* left = add_cast_if_necessary(copy_expr_tree(object, cef_none), type);
  left->next = is_shift ? right : add_cast_if_necessary(right, type);
  an_expr_node* value = make_operator_node(op, type, left);
  value = make_operator_node(eok_cast, make_unqualified_type(object->type),
                             comparison_with_zero(value));
  overwrite_node(node, bool_assignment(object, value));
}

// What an operation names twice must be evaluated once: the pointer that leads
// to the object goes into a temporary. The assignment to it is returned.
static an_expr_node* name_object_once(an_expr_node* object) {
  while (is_operation_node(object, eok_dot_field))
    object = object->variant.operation.operands;
  bool is_arrow = is_operation_node(object, eok_arrow_field);
  an_expr_node* place = is_arrow ? object->variant.operation.operands : object;
  an_expr_node* pointer = copy_node(place);
  pointer->next = nullptr;
  if (!is_arrow)
    pointer = add_address_of_to_node(pointer);
  a_variable* temporary = make_lowering_temporary(pointer->type);
  an_expr_node* value = var_rvalue_expr(temporary);
  overwrite_node(place, is_arrow ? value : add_indirection_to_node(value));
  return make_assignment_expr(var_lvalue_expr(temporary), eok_assign, pointer);
}

static void lower_bool_operation(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  if (op == eok_cast || op == eok_to_bool)
    return lower_bool_cast(node);
  bool is_compound = is_compound_assignment_operator(op);
  if (!is_compound && !is_increment_operator(op))
    return;
  an_expr_node* object = node->variant.operation.operands;
  an_expr_node* naming = node_has_side_effects(object) ? name_object_once(object) : nullptr;
  if (is_compound)
    lower_bool_compound_assignment(node);
  else
    lower_bool_incr_decr(node);
  if (naming)
    overwrite_node(node, make_comma_node(naming, copy_node(node)));
}

static void lower_c99_node(an_expr_node* node, an_expr_or_stmt_traversal_block*) {
  if (node->kind == expr_temp_init)
    lower_temp_init(node, loop_repeats_expr);
  else if (node->kind == expr_constant && node->variant.constant.ptr->kind == con_aggregate)
    lower_designated_initializers(node->variant.constant.ptr, nullptr);
  else if (node->kind == expr_operation && is_bool_type(node->type))
    lower_bool_operation(node);
}

void lower_c99_full_expr(an_expr_node* expr) {
  if (expr == nullptr)
    return;
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.process_expr_after = lower_c99_node;
  traverse_expr(expr, &block);
}

static void lower_condition(an_expr_node*& condition) {
  lower_c99_full_expr(condition);
  condition = boolean_controlling_expr(condition);
}

static void lower_repeated_condition(an_expr_node*& condition) {
  loop_repeats_expr = true;
  lower_condition(condition);
  loop_repeats_expr = false;
}

// ---- Statements ----

static void lower_init_statement(a_statement* statement) {
  a_dynamic_init* init = statement->variant.dynamic_init;
  switch (init->kind) {
  case dik_constant:
    lower_designated_initializers(init->variant.constant, init);
    break;
  case dik_expr:
    lower_c99_full_expr(init->variant.expr);
    break;
  case dik_nonconstant_aggregate:
    lower_designated_initializers(init->variant.constant, init);
    lower_nonconstant_aggregate(statement);
    break;
  default:
    break;
  }
}

// With what must run before each test.
static void lower_loop_condition(a_statement* loop) {
  if (any_statement_expressions) {
    loop_serialization_init(loop, true);
    lower_c99_statement(loop->kind == stmk_for
                            ? loop->variant.loop.extra.for_supplement->pre_condition_statement
                            : loop->pre_statement);
  }
  lower_repeated_condition(loop->expr);
}

static void lower_for(a_statement* statement) {
  a_for_loop_supplement* supplement = statement->variant.loop.extra.for_supplement;
  if (supplement->init_statement != nullptr)
    lower_c99_statement(supplement->init_statement);
  lower_loop_condition(statement);
  if (any_statement_expressions) {
    loop_serialization_init(statement, false);
    lower_c99_statement(supplement->pre_increment_statement);
  }
  loop_repeats_expr = true;
  lower_c99_full_expr(supplement->increment_expr);
  loop_repeats_expr = false;
  lower_c99_statement(statement->variant.loop.body);
}

static void lower_statement_by_kind(a_statement* statement) {
  switch (statement->kind) {
  case stmk_expr:
  case stmk_return:
  case stmk_assigned_goto:
    lower_c99_full_expr(statement->expr);
    break;
  case stmk_if:
    lower_condition(statement->expr);
    lower_c99_statement(statement->variant.if_stmt.then_statement);
    lower_c99_statement(statement->variant.if_stmt.else_statement);
    break;
  case stmk_while:
  case stmk_do:
    lower_loop_condition(statement);
    lower_c99_statement(statement->variant.loop.body);
    break;
  case stmk_for:
    lower_for(statement);
    break;
  case stmk_case:
    lower_c99_statement(statement->variant.loop.body);
    break;
  case stmk_switch:
    lower_c99_full_expr(statement->expr);
    lower_c99_statement(statement->variant.loop.body);
    break;
  case stmk_block:
    for (a_statement* item = statement->variant.block.first_statement; item != nullptr;) {
      a_statement* next = item->next; // lowering may put a block round the item
      lower_c99_statement(item);
      item = next;
    }
    break;
  case stmk_init:
    lower_init_statement(statement);
    break;
  default:
    break;
  }
}

// The statements that stood in its expressions run before the statement.
static bool lower_statement_expressions(a_statement* statement) {
  a_statement* before = take_statement_expressions_out(statement);
  if (before == nullptr)
    return false;
  insert_statements_before(statement, before);
  lower_c99_statement(statement);
  return true;
}

void lower_c99_statement(a_statement* statement) {
  check_stack_limit();
  if (statement == nullptr)
    return;
  code_pos_for_lowering = statement->position;
  if (any_statement_expressions && lower_statement_expressions(statement))
    return;
  a_statement* saved_pending = pending_stmk_init_statements;
  pending_stmk_init_statements = nullptr;
  lower_statement_by_kind(statement);
  insert_pending_stmk_init_statements(statement);
  pending_stmk_init_statements = saved_pending;
}

// ---- Scopes ----

static void lower_variable(a_variable* variable) {
  if (variable->init_kind == initk_constant)
    lower_designated_initializers(variable->initializer.constant, nullptr);
  if (force_variable_definition_via_zeroing && variable->storage_kind == sc_none &&
      variable->init_kind == initk_none && !variable->is_tentative)
    variable->init_kind = initk_zero;
}

static void lower_variables(a_variable* list) {
  for (a_variable* variable = list; variable != nullptr; variable = variable->next)
    lower_variable(variable);
}

// The next pass may put the body of an inline function in the place of a call.
// It can't take over a frame that is special, or arguments that aren't named.
static void check_routine_for_inlining(a_routine* routine) {
  routine->inline_candidate = !routine->no_inline && !routine->is_naked &&
                              (routine->decl_modifiers & dm_interrupt) == 0 &&
                              !routine_type_has_ellipsis(f_skip_typerefs(routine->type));
}

static void lower_c99_scope(a_scope* scope) {
  check_stack_limit();
  scope->is_lowered = true;
  lower_variables(scope->local_variables);
  lower_variables(scope->variables);
  for (a_scope* nested = scope->first_nested; nested != nullptr; nested = nested->next)
    if (!nested->is_lowered)
      lower_c99_scope(nested);
  for (a_local_static_variable_init* init = scope->local_static_inits; init != nullptr;
       init = init->next)
    if (init->init_kind == initk_constant)
      lower_designated_initializers(init->initializer.constant, nullptr);
  if (scope->kind != sk_function)
    return;
  lower_c99_statement(scope->assoc_statement);
  if (scope->assoc.routine->is_inline)
    check_routine_for_inlining(scope->assoc.routine);
}

void lower_c99_il_memory_region(int32_t region) {
  a_scope* scope = il_header.region_scope_table[region];
  int32_t saved_region = curr_il_region_number;
  a_source_position saved_position = error_position;
  a_boolean was_underway = il_lowering_underway;
  il_lowering_underway = 1;
  switch_il_region(region);
  initial_value_for_il_lowering_flag = 1;
  for (; scope != nullptr; scope = scope->next)
    if (!scope->is_lowered)
      lower_c99_scope(scope);
  initial_value_for_il_lowering_flag = 0;
  il_lowering_underway = was_underway;
  error_position = saved_position;
  switch_il_region(saved_region);
}

void lower_c99_one_time_init() {
  // No variable of this module is kept for each unit.
}

void lower_c99_init() {
  // Nothing of this module lives on from an earlier run.
}

void lower_c99_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
