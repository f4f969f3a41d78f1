// Selections and loops (C99 6.8.4, 6.8.5): conditions, the blocks that stand
// round them and their bodies, and what is reached behind them.

#include "decls.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements_int.h"
#include "types.h"

// ---- Implicit blocks ----

// C99 6.8.4 p3, 6.8.5 p5.
static bool has_implicit_blocks() {
  return in_C_mode() && std_version >= 199901;
}

// The statement that a construct governs; in C99 and in C++ a block even when
// it isn't one (C++11 6.4 p1, 6.5 p2).
static void body_statement() {
  bool needs_block = (has_implicit_blocks() || in_cplusplus_mode()) && curr_token != tok_lbrace;
  if (needs_block)
    open_block(bf_generated, &pos_curr_token);
  statement(true);
  if (needs_block)
    close_block(&end_of_last_statement);
}

static a_statement* open_construct(a_statement_kind kind, a_struct_stmt_kind stack_kind) {
  a_source_position position = pos_curr_token;
  if (has_implicit_blocks())
    open_block(bf_generated, &position);
  a_statement* construct = add_statement_at_stmt_pos(kind, &position);
  push_stmt_entry(stack_kind, construct);
  get_token();
  return construct;
}

void close_construct() {
  top_stmt_entry()->statement->end_position = end_of_last_statement;
  pop_stmt_entry();
  if (has_implicit_blocks())
    close_block(&end_of_last_statement);
}

// ---- Conditions ----

// A declaration as a condition (C++11 6.4 p3, p4): its scope stays open until
// the construct ends.
static an_expr_node* declared_condition(bool is_switch) {
  a_source_position position = pos_curr_token;
  push_scope(sk_condition, -1, nullptr, nullptr);
  flow_open_block(bf_none, &position);
  an_expr_node* node = alloc_expr_node(expr_condition);
  a_condition_supplement* condition = alloc_condition_supplement();
  node->variant.condition = condition;
  node->position = position;
  condition->scope = scope_stack[depth_scope_stack].il_scope;
  a_variable* variable = condition_declaration(&condition->dynamic_init);
  condition->value_expr =
      variable ? make_condition_value_expression(variable, is_switch) : error_node();
  node->type = condition->value_expr->type;
  return node;
}

static an_expr_node* scan_condition(bool is_switch) {
  if (in_cplusplus_mode() && is_decl_not_expr(dst_guess_misspelled_type | dst_condition))
    return declared_condition(is_switch);
  return is_switch ? scan_integer_expression() : scan_boolean_controlling_expression();
}

// Where nothing but the closing parenthesis stands, the message on the opening one
// says enough.
static an_expr_node* parenthesized_condition(bool is_switch) {
  if (curr_token == tok_rparen) {
    pos_error(ec_exp_lparen, &pos_curr_token);
    get_token();
    return error_node();
  }
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  an_expr_node* condition = scan_condition(is_switch);
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  return condition;
}

static void close_scope_of_condition(const an_expr_node* condition) {
  if (!condition || condition->kind != expr_condition)
    return;
  flow_close_block();
  pop_scope();
}

// ---- Selection (C99 6.8.4) ----

static void else_part(a_statement* construct) {
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  construct->variant.if_stmt.else_position = pos_curr_token;
  merge_reachability(&entry->after, &reachability);
  entry->in_else_part = true;
  entry->last_statement = nullptr;
  reachability = entry->saved;
  if (!reachability.code_is_reachable) // reported in the other branch
    reachability.unreachable_warned |= entry->after.unreachable_warned;
  get_token();
  if (curr_token == tok_semicolon)
    pos_remark(ec_empty_else_statement, &pos_curr_token);
  body_statement();
}

void if_statement() {
  a_statement* construct = open_construct(stmk_if, ssk_if);
  construct->expr = parenthesized_condition(false);
  if (curr_token == tok_semicolon && next_token() != tok_else)
    pos_remark(ec_empty_then_statement, &pos_curr_token);
  body_statement();
  if (curr_token == tok_else)
    else_part(construct);
  close_scope_of_condition(construct->expr);
  close_construct();
}

static bool is_effectively_boolean(const an_expr_node* expr) {
  return expr->kind == expr_operation && is_operator_returning_bool(expr->variant.operation.op);
}

static void check_selector(const an_expr_node* selector) {
  if (selector->kind == expr_constant)
    pos_remark(ec_switch_selector_expr_is_constant, &selector->position);
  if (check_misra_c_2004 && is_effectively_boolean(selector))
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_15_4, &selector->position);
}

static a_type* type_of_selector(const an_expr_node* selector) {
  return selector->kind == expr_condition ? selector->variant.condition->value_expr->type
                                          : selector->type;
}

void switch_statement() {
  a_source_position position = pos_curr_token;
  a_statement* construct = open_construct(stmk_switch, ssk_switch);
  construct->expr = parenthesized_condition(true);
  check_selector(construct->expr);
  a_control_flow_descr* flow = flow_open_switch(&position);
  top_stmt_entry()->control_flow = flow;
  top_stmt_entry()->switch_type = type_of_selector(construct->expr);
  // Only its labels lead into the body.
  mark_unreachable();
  body_statement();
  if (top_stmt_entry()->has_dependent_case)
    construct->variant.loop.extra.switch_supplement->sorted_cases = nullptr;
  flow_close_block();
  close_scope_of_condition(construct->expr);
  close_construct();
}

// ---- Iteration (C99 6.8.5) ----

static void place_continue_label() {
  if (!top_stmt_entry()->continue_label)
    return;
  mark_reachable();
  place_label(top_stmt_entry()->continue_label);
}

// Nothing led to the loop, nor does a label lead into it. What its body made of
// the state doesn't count.
static void end_unreachable_loop(const a_reachability* before, const a_source_position* position) {
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  reachability = *before;
  warn_if_code_is_unreachable(ec_loop_not_reachable, position);
  entry->saved = entry->after = reachability;
  entry->is_unreachable_loop = true;
}

void loop_body(const a_source_position* loop_position) {
  a_reachability before = reachability;
  // A label further down may lead to its start: that is judged at its end.
  if (!before.code_is_reachable)
    mark_reachable();
  body_statement();
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  if (a_statement* body = entry->statement->variant.loop.body)
    body->end_position = end_of_last_statement;
  place_continue_label();
  if (!before.code_is_reachable && !entry->label_seen && !entry->case_seen)
    end_unreachable_loop(&before, loop_position);
}

void while_statement() {
  a_source_position position = pos_curr_token;
  a_statement* construct = open_construct(stmk_while, ssk_while);
  construct->expr = parenthesized_condition(false);
  loop_body(&position);
  close_scope_of_condition(construct->expr);
  close_construct();
}

void do_statement() {
  a_source_position position = pos_curr_token;
  a_statement* construct = open_construct(stmk_do, ssk_do);
  add_stop_token(tok_while);
  loop_body(&position);
  remove_stop_token(tok_while);
  if (required_token(tok_while, ec_exp_while)) {
    required_token(tok_lparen, ec_exp_lparen);
    add_stop_token(tok_rparen);
    construct->expr = scan_boolean_controlling_expression();
    remove_stop_token(tok_rparen);
    required_token(tok_rparen, ec_exp_rparen);
  }
  required_semicolon();
  close_construct();
}

// ---- for (C99 6.8.5.3) ----

// In C++ what the initialisation declares lives in a scope of the loop's own,
// unless the old rule is asked for.
static bool open_for_init_scope(a_statement* construct) {
  if (in_C_mode() || !use_new_for_init_scoping)
    return false;
  a_source_position position = pos_curr_token;
  push_for_init_scope(nullptr);
  construct->variant.loop.extra.for_supplement->scope =
      ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  flow_open_block(bf_none, &position);
  return true;
}

static void close_for_init_scope() {
  flow_close_block();
  pop_scope();
}

// Whether a scope was opened for it.
static bool for_initialisation(a_statement* construct) {
  bool has_scope = false;
  top_stmt_entry()->in_for_init = true;
  if ((in_cplusplus_mode() || std_version >= 199901) &&
      is_decl_not_expr(dst_guess_misspelled_type | dst_statement)) {
    has_scope = open_for_init_scope(construct);
    for_init_declaration();
  } else if (curr_token != tok_semicolon) {
    a_statement* init = add_statement_at_stmt_pos(stmk_expr, &pos_curr_token);
    init->expr = scan_void_expression();
  }
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  entry->in_for_init = false;
  entry->last_statement = nullptr;
  return has_scope;
}

// It is evaluated behind the body, whatever is reached here, and has the values
// that are set there.
static void for_increment(a_statement* construct) {
  a_reachability saved = reachability;
  a_boolean saved_suppress = suppress_used_before_set_warnings;
  mark_reachable();
  suppress_used_before_set_warnings = true;
  construct->variant.loop.extra.for_supplement->increment_expr = scan_void_expression();
  suppress_used_before_set_warnings = saved_suppress;
  reachability = saved;
}

static void for_condition(a_statement* construct) {
  construct->expr = scan_condition(false);
  if (check_misra_c_2004 && is_floating_type(construct->expr->type))
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_13_4, &construct->expr->position);
}

// The clauses behind the `(`.
static bool for_clauses(a_statement* construct) {
  add_stop_token(tok_semicolon);
  bool has_scope = for_initialisation(construct);
  required_semicolon();
  if (curr_token != tok_semicolon)
    for_condition(construct);
  required_semicolon();
  remove_stop_token(tok_semicolon);
  if (curr_token != tok_rparen)
    for_increment(construct);
  return has_scope;
}

void for_statement() {
  a_source_position position = pos_curr_token;
  a_statement* construct = open_construct(stmk_for, ssk_for);
  required_token(tok_lparen, ec_exp_lparen);
  if (is_start_of_range_based_for()) {
    range_based_for(&position);
    return;
  }
  add_stop_token(tok_rparen);
  bool has_scope = for_clauses(construct);
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  loop_body(&position);
  close_scope_of_condition(construct->expr);
  if (has_scope)
    close_for_init_scope();
  close_construct();
}
