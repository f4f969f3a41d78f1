// Statements and function bodies (C99 6.8).

#include "statements.h"

#include "attribute.h"
#include "decls.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "statements_int.h"
#include "symbol_ref.h"
#include "types.h"

static void required_semicolon() {
  required_token(tok_semicolon, ec_exp_semicolon);
}

// ---- Labels (C99 6.8.1, 6.8.6.1) ----

// At the label's name, which is read.
static a_label* scan_label(bool is_definition) {
  a_symbol_locator locator = locator_for_curr_id;
  locator.symbol = nullptr;
  a_source_position position = pos_curr_token;
  a_symbol* symbol = find_label_symbol(locator.header);
  get_token();
  if (!symbol) {
    symbol = enter_symbol(symk_label, &locator, depth_innermost_function_scope, nullptr);
    a_label* label = alloc_label();
    symbol->variant.label = label;
    set_source_corresp(&label->source_corresp, symbol);
    add_to_labels_list(label, depth_innermost_function_scope);
  }
  a_label* label = symbol->variant.label;
  if (!is_definition) {
    symbol->referenced = true;
    label->is_used = true;
  } else if (symbol->defined) {
    pos_sy_error(ec_already_defined, &position, symbol);
  } else {
    symbol->defined = true;
    symbol->position = label->source_corresp.position = position;
  }
  record_symbol_declaration(is_definition ? srk_definition : srk_reference, symbol, &position,
                            nullptr);
  return label;
}

static void label_statement() {
  a_source_position position = pos_curr_token;
  a_label* label = scan_label(true);
  get_token(); // the colon
  bool was_reachable = reachability.code_is_reachable != 0;
  mark_reachable();
  a_statement* statement = add_statement_at_stmt_pos(stmk_label, &position);
  statement->variant.label.ptr = label;
  top_stmt_entry()->label_seen = true;
  if (label->def_statement) // reported as defined twice
    return;
  label->def_statement = statement;
  label->was_reachable = was_reachable;
  attach_attributes(scan_gnu_attribute_groups(al_label), label, iek_label);
}

// ---- Jumps (C99 6.8.6) ----

static void break_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  a_struct_stmt_stack_entry* entry = innermost_loop(true);
  get_token();
  if (!entry) {
    pos_error(ec_break_must_be_in_loop_or_switch, &position);
  } else {
    if (entry->kind == ssk_switch)
      merge_reachability(&entry->after, &reachability);
    if (!entry->break_label)
      entry->break_label = make_generated_label(entry->kind == ssk_switch);
    jump_to_label(entry->break_label, &position);
  }
  required_semicolon();
}

static void continue_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  a_struct_stmt_stack_entry* entry = innermost_loop(false);
  get_token();
  if (!entry) {
    pos_error(ec_continue_must_be_in_loop, &position);
  } else {
    if (!entry->continue_label)
      entry->continue_label = make_generated_label(false);
    jump_to_label(entry->continue_label, &position);
  }
  required_semicolon();
}

static void goto_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  get_token();
  if (curr_token == tok_star && gnu_mode) {
    pos_st_error(ec_not_supported, &position, "GCC-style assigned goto");
    flush_tokens();
  } else if (required_token_no_advance(tok_identifier, ec_exp_identifier)) {
    a_label* label = scan_label(false);
    a_statement* statement = add_statement_at_stmt_pos(stmk_goto, &position);
    statement->variant.label.ptr = label;
    if (!label->first_goto)
      label->first_goto = statement;
  }
  required_semicolon();
}

// ---- Bodies and conditions ----

static bool has_implicit_blocks() {
  return in_C_mode() && std_version >= 199901;
}

// The statement that a construct governs; in C99 a block even when it isn't
// one (C99 6.8.4 p3, 6.8.5 p5).
static void body_statement() {
  bool needs_block = has_implicit_blocks() && curr_token != tok_lbrace;
  if (needs_block)
    open_block(true, &pos_curr_token);
  statement(true);
  if (needs_block)
    close_block(&end_pos_curr_token);
}

static a_statement* open_construct(a_statement_kind kind, a_struct_stmt_kind stack_kind) {
  a_source_position position = pos_curr_token;
  if (has_implicit_blocks())
    open_block(true, &position);
  a_statement* construct = add_statement_at_stmt_pos(kind, &position);
  push_stmt_entry(stack_kind, construct);
  get_token();
  return construct;
}

static void close_construct() {
  pop_stmt_entry();
  if (has_implicit_blocks())
    close_block(&end_pos_curr_token);
}

static an_expr_node* parenthesized_condition() {
  an_expr_node* condition;
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  condition = scan_boolean_controlling_expression();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  return condition;
}

// ---- Selection (C99 6.8.4) ----

static void else_part(a_statement* construct) {
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  construct->variant.if_stmt.else_position = pos_curr_token;
  merge_reachability(&entry->after, &reachability);
  entry->in_else_part = true;
  entry->last_statement = nullptr;
  reachability = entry->saved;
  get_token();
  if (curr_token == tok_semicolon)
    pos_remark(ec_empty_else_statement, &pos_curr_token);
  body_statement();
}

static void if_statement() {
  a_statement* construct = open_construct(stmk_if, ssk_if);
  construct->expr = parenthesized_condition();
  if (curr_token == tok_semicolon && next_token() != tok_else)
    pos_remark(ec_empty_then_statement, &pos_curr_token);
  body_statement();
  if (curr_token == tok_else)
    else_part(construct);
  close_construct();
}

static void switch_statement() {
  a_statement* construct = open_construct(stmk_switch, ssk_switch);
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  construct->expr = scan_integer_expression();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  if (construct->expr->kind == expr_constant)
    pos_remark(ec_switch_selector_expr_is_constant, &construct->expr->position);
  top_stmt_entry()->switch_type = construct->expr->type;
  // Only its labels lead into the body.
  mark_unreachable();
  reachability.unreachable_warned = false;
  body_statement();
  close_construct();
}

// ---- Iteration (C99 6.8.5) ----

static void place_continue_label() {
  if (!top_stmt_entry()->continue_label)
    return;
  mark_reachable();
  place_label(top_stmt_entry()->continue_label);
}

// The body of a loop, with the label that `continue` goes to at its end.
static void loop_body(const a_source_position* loop_position) {
  bool was_reachable = reachability.code_is_reachable != 0;
  body_statement();
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  if (!was_reachable && !entry->label_seen && !entry->case_seen &&
      !entry->saved.unreachable_warned) {
    pos_warning(ec_loop_not_reachable, loop_position);
    reachability.unreachable_warned = entry->saved.unreachable_warned = true;
  }
  place_continue_label();
}

static void while_statement() {
  a_source_position position = pos_curr_token;
  a_statement* construct = open_construct(stmk_while, ssk_while);
  construct->expr = parenthesized_condition();
  loop_body(&position);
  close_construct();
}

static void do_statement() {
  a_source_position position = pos_curr_token;
  a_statement* construct = open_construct(stmk_do, ssk_do);
  add_stop_token(tok_while);
  loop_body(&position);
  remove_stop_token(tok_while);
  if (required_token(tok_while, ec_exp_while))
    construct->expr = parenthesized_condition();
  close_construct();
  required_semicolon();
}

static void for_initialisation() {
  top_stmt_entry()->in_for_init = true;
  if (is_start_of_range_based_for())
    pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, "range-based for");
  if ((in_cplusplus_mode() || std_version >= 199901) &&
      is_decl_not_expr(dst_guess_misspelled_type | dst_statement)) {
    for_init_declaration();
  } else if (curr_token != tok_semicolon) {
    a_statement* init = add_statement_at_stmt_pos(stmk_expr, &pos_curr_token);
    init->expr = scan_void_expression();
  }
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  entry->in_for_init = false;
  entry->last_statement = nullptr;
}

static void for_statement() {
  a_source_position position = pos_curr_token;
  a_statement* construct = open_construct(stmk_for, ssk_for);
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  add_stop_token(tok_semicolon);
  for_initialisation();
  required_semicolon();
  if (curr_token != tok_semicolon)
    construct->expr = scan_boolean_controlling_expression();
  required_semicolon();
  remove_stop_token(tok_semicolon);
  if (curr_token != tok_rparen)
    construct->variant.loop.extra.for_supplement->increment_expr = scan_void_expression();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  loop_body(&position);
  close_construct();
}

// ---- Other statements ----

// The routine type that a call goes to, or null.
static const a_type* called_type(const an_expr_node* expr) {
  if (!is_operation_node(expr, eok_call))
    return nullptr;
  a_type* type = skip_typerefs(expr->variant.operation.operands->type);
  if (type->kind == tk_pointer)
    type = skip_typerefs(type_pointed_to(type));
  return type->kind == tk_routine ? type : nullptr;
}

// Behind a call that doesn't return nothing is reported, since what the
// attribute says may be meant as advice.
static void note_call_that_does_not_return(const an_expr_node* expr) {
  const a_type* type = called_type(expr);
  if (!type || !type->variant.routine.routine_supplement->does_not_return)
    return;
  reachability.code_can_fall_through = false;
  reachability.unreachable_warned = true;
}

static void expression_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  a_statement* statement = add_statement_at_stmt_pos(stmk_expr, &position);
  statement->expr = scan_void_expression();
  statement->end_position = curr_construct_end_position;
  note_call_that_does_not_return(statement->expr);
  required_semicolon();
}

static bool can_begin_expression() {
  switch (curr_token) {
  case tok_rbrace:
  case tok_end_of_source:
  case tok_else:
  case tok_rparen:
  case tok_rbracket:
    return false;
  default:
    return true;
  }
}

static void bad_statement() {
  syntax_error(ec_exp_statement);
  if (curr_token == tok_semicolon)
    get_token();
}

static void asm_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  a_statement* statement = add_statement_at_stmt_pos(stmk_asm, &position);
  statement->variant.asm_entry = asm_declaration(true);
  required_semicolon();
}

// Attributes that were read before it was known that a declaration follows.
static void hand_attributes_to_declaration() {
  if (!waiting_attributes)
    return;
  bool has_specifiers = curr_token != tok_static_assert && curr_token != tok_asm;
  if (has_specifiers)
    unscan_attributes(waiting_attributes);
  else
    pos_error(ec_attributes_with_no_decl, &waiting_attributes->position);
  waiting_attributes = nullptr;
}

// A declaration where a statement must stand.
static void misplaced_declaration(bool is_body) {
  pos_error(is_body ? ec_dependent_stmt_is_declaration : ec_labeled_declaration, &pos_curr_token);
  hand_attributes_to_declaration();
  declaration(false, false, false, false, nullptr, nullptr);
}

static void null_statement() {
  add_statement_at_stmt_pos(stmk_null, &pos_curr_token);
  get_token();
}

static bool is_label_start() {
  return curr_token == tok_identifier && next_token() == tok_colon;
}

// Labels, each of which another statement must follow.
static bool scan_labels() {
  bool any = false;
  for (;; any = true) {
    if (is_label_start())
      label_statement();
    else if (curr_token == tok_case)
      case_statement();
    else if (curr_token == tok_default)
      default_statement();
    else
      return any;
  }
}

static void nested_block() {
  a_source_position position = pos_curr_token;
  open_block(false, &position);
  compound_statement_full(false);
}

static void unlabelled_statement(bool is_body, bool is_labelled) {
  switch (curr_token) {
  case tok_lbrace:
    return nested_block();
  case tok_semicolon:
    return null_statement();
  case tok_break:
    return break_statement();
  case tok_continue:
    return continue_statement();
  case tok_goto:
    return goto_statement();
  case tok_if:
    return if_statement();
  case tok_switch:
    return switch_statement();
  case tok_while:
    return while_statement();
  case tok_do:
    return do_statement();
  case tok_for:
    return for_statement();
  case tok_return:
    return return_statement();
  case tok_asm:
  case tok_ms_asm:
    return asm_statement();
  default:
    if (!can_begin_expression())
      bad_statement();
    else if ((is_body || is_labelled) &&
             is_decl_not_expr(dst_guess_misspelled_type | dst_statement))
      misplaced_declaration(!is_labelled);
    else
      expression_statement();
  }
}

static void report_unattached_attributes() {
  if (waiting_attributes)
    pos_warning(ec_unattached_attribute, &waiting_attributes->position);
  waiting_attributes = nullptr;
}

void statement(bool is_body) {
  check_stack_limit();
  while (curr_token == tok_extension)
    get_token();
  append_attributes(&waiting_attributes, scan_attributes(al_statement));
  bool is_labelled = scan_labels();
  append_attributes(&waiting_attributes, scan_attributes(al_statement));
  unlabelled_statement(is_body, is_labelled);
  report_unattached_attributes();
}

// ---- Blocks (C99 6.8.2) ----

static void check_declaration_behind_statement(bool statement_seen) {
  if (!statement_seen)
    return;
  if (!allow_decl_after_stmt)
    pos_diagnostic(strict_ansi_error_severity, ec_declaration_after_statements, &pos_curr_token);
  else if (std_version < 199000)
    pos_remark(ec_declaration_after_statements, &pos_curr_token);
}

static void block_items() {
  bool statement_seen = false;
  check_for_stdc_pragmas();
  add_stop_token(tok_rbrace);
  add_stop_token(tok_semicolon);
  while (curr_token != tok_rbrace && curr_token != tok_end_of_source) {
    a_token_sequence_number first = curr_token_sequence_number;
    waiting_attributes = scan_attributes(al_statement);
    if (!is_label_start() && is_decl_not_expr(dst_guess_misspelled_type | dst_statement)) {
      check_declaration_behind_statement(statement_seen);
      hand_attributes_to_declaration();
      top_stmt_entry()->declaration_seen = true;
      declaration(false, false, false, false, nullptr, nullptr);
    } else {
      statement(false);
      statement_seen = true;
    }
    // What nothing takes must not hold the loop.
    if (curr_token_sequence_number == first && curr_token != tok_end_of_source)
      get_token();
  }
  remove_stop_token(tok_semicolon);
  remove_stop_token(tok_rbrace);
}

static void begin_function_body(a_statement* block) {
  depth_stmt_stack = -1;
  block->variant.block.block_supplement->is_function_body = true;
  block->variant.block.block_supplement->scope = innermost_function_scope;
  push_stmt_entry(ssk_block, block);
  mark_reachable();
}

static a_statement* function_body() {
  a_statement* block = alloc_statement(stmk_block);
  block->position = pos_curr_token;
  begin_function_body(block);
  required_token(tok_lbrace, ec_exp_lbrace);
  block_items();
  a_source_position end = pos_curr_token;
  if (reachability.code_is_reachable)
    return_at_end_of_function(&end);
  block->end_position = end;
  block->variant.block.block_supplement->end_position = end;
  depth_stmt_stack = -1;
  return block;
}

a_statement* compound_statement_full(bool is_function_body) {
  if (is_function_body)
    return function_body();
  a_statement* block = top_stmt_entry()->statement;
  required_token(tok_lbrace, ec_exp_lbrace);
  block_items();
  close_block(&pos_curr_token);
  required_token(tok_rbrace, ec_exp_rbrace);
  return block;
}

// ---- Hooks of declarations ----

// Only arrays of variable length and C++ objects may not be jumped over, so
// that C blocks keep no record of their initialisations.
void update_init_statement_control_flow(a_statement*) {}

void record_trivial_init_control_flow(a_variable*) {}

void wrapup_control_flow_processing(a_scope*) {}

static void append_declaration(a_struct_stmt_stack_entry* entry, void* entity,
                               an_il_entry_kind kind) {
  an_il_entity_list_entry* item = alloc_il_entity_list_entry(kind, entity);
  if (entry->last_declaration)
    entry->last_declaration->next = item;
  else
    entry->decl_statement->variant.declarations = item;
  entry->last_declaration = item;
}

void record_entity_in_decl_stmt_if_needed(a_symbol* symbol) {
  if (depth_stmt_stack < 0 || depth_innermost_function_scope < 0)
    return;
  an_il_entry_kind kind;
  void* entity = il_entry_for_symbol(symbol, &kind);
  if (!entity || kind == iek_none)
    return;
  a_struct_stmt_stack_entry* entry = top_stmt_entry();
  if (entry->kind != ssk_block)
    return;
  if (!entry->decl_statement) {
    a_statement* decl = add_statement_at_stmt_pos(stmk_decl, &symbol->position);
    entry->decl_statement = decl;
    entry->last_declaration = nullptr;
  }
  append_declaration(entry, entity, kind);
}

void statements_one_time_init() {
  // No variable of this module is kept for each unit.
}

void statements_init() {
  depth_stmt_stack = -1;
  waiting_attributes = nullptr;
}

void statements_trans_unit_init() {
  mark_reachable();
}
