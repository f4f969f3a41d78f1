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

a_source_position end_of_last_statement;

void required_semicolon() {
  if (curr_token == tok_semicolon)
    end_of_last_statement = end_pos_curr_token;
  required_token(tok_semicolon, ec_exp_semicolon);
}

// ---- Other statements ----

static const an_expr_node* skip_void_casts_and_commas(const an_expr_node* expr) {
  while (expr->kind == expr_operation) {
    const an_expr_node* operand = expr->variant.operation.operands;
    if (expr->variant.operation.op == eok_comma)
      expr = operand->next;
    else if (expr->variant.operation.op == eok_cast && is_void_type(expr->type))
      expr = operand;
    else
      break;
  }
  return expr;
}

// The function that a call names, or the pointer that leads to it.
static const an_expr_node* called_function(const an_expr_node* call) {
  const an_expr_node* function = call->variant.operation.operands;
  an_expr_operator_kind op = call->variant.operation.op;
  return op == eok_call || op == eok_dependent_call ? function : function->next;
}

static const a_type* called_type(const an_expr_node* function) {
  a_type* type = skip_typerefs(function->type);
  if (type->kind == tk_pointer)
    type = skip_typerefs(type_pointed_to(type));
  return type->kind == tk_routine ? type : nullptr;
}

// For the MISRA rule on unreachable code these functions end the program,
// however they are declared.
static bool is_program_end(const an_expr_node* function) {
  if (!check_misra_c_2004 || function->kind != expr_routine ||
      !misra_c_2004_generate_diagnostic(ec_misra_c_2004_14_1, misra_required_severity))
    return false;
  const char* name = function->variant.routine.ptr->source_corresp.name;
  return name &&
         (strcmp(name, "abort") == 0 || strcmp(name, "exit") == 0 || strcmp(name, "_exit") == 0);
}

// What the end of an expression statement means for the code behind it.
static void update_reachability_behind(const an_expr_node* expr) {
  if (skip_void_casts_and_commas(expr)->kind == expr_throw) {
    mark_unreachable();
    return;
  }
  if (expr->kind != expr_operation || !is_call_operator(expr->variant.operation.op))
    return;
  const an_expr_node* function = called_function(expr);
  const a_type* type = called_type(function);
  if (is_program_end(function))
    mark_unreachable();
  else if (type && type->variant.routine.routine_supplement->does_not_return)
    mark_not_returning();
}

static void expression_statement(bool is_extension) {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  a_statement* statement = add_statement_at_stmt_pos(stmk_expr, &position);
  statement->from_extension = is_extension;
  bool keeps_value = false;
  statement->expr = scan_expression_of_statement(is_extension, &keeps_value);
  if (keeps_value)
    set_statement_kind(statement, stmk_stmt_expr_value);
  statement->end_position = curr_construct_end_position;
  update_reachability_behind(statement->expr);
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
  add_statement_at_stmt_pos(stmk_null, &pos_curr_token);
  if (curr_token == tok_semicolon)
    get_token();
}

// The end of the block where a statement must stand, as behind a label.
static void missing_statement() {
  pos_diagnostic(gcc_mode ? es_warning : strict_ansi_error_severity, ec_exp_statement,
                 &pos_curr_token);
  add_statement_at_stmt_pos(stmk_null, &pos_curr_token);
}

static void asm_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  an_asm_entry* entry = asm_declaration(true);
  a_statement* statement = add_statement_at_stmt_pos(stmk_asm, &position);
  statement->variant.asm_entry = entry;
  for (a_label_list_entry* item = entry->labels; item; item = item->next)
    flow_goto(item->label, &position);
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

static void declaration_statement(bool is_extension) {
  hand_attributes_to_declaration();
  top_stmt_entry()->declaration_seen = true;
  declaration(false, false, false, is_extension, nullptr, nullptr);
}

static bool is_declaration() {
  return is_decl_not_expr(dst_guess_misspelled_type | dst_statement);
}

static void null_statement() {
  add_statement_at_stmt_pos(stmk_null, &pos_curr_token);
  end_of_last_statement = end_pos_curr_token;
  get_token();
}

static void nested_block() {
  a_source_position position = pos_curr_token;
  open_block(bf_none, &position);
  compound_statement_full(false);
}

// Where C allows statements alone, C++ has declarations too (C++11 6.7).
static void declaration_or_expression(bool is_body, bool is_labelled, bool is_extension) {
  if ((in_cplusplus_mode() || is_body || is_labelled) && is_declaration()) {
    if (in_C_mode())
      pos_error(is_labelled ? ec_labeled_declaration : ec_dependent_stmt_is_declaration,
                &pos_curr_token);
    declaration_statement(is_extension);
  } else {
    expression_statement(is_extension);
  }
}

static void obey_not_reached_pragma() {
  if ((curr_token_pragmas || has_construct_pragmas()) && take_not_reached_pragma())
    mark_not_returning();
}

static void unlabelled_statement(bool is_body, bool is_labelled, bool is_extension) {
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
  case tok_try:
    return try_statement();
  case tok_rbrace:
    return missing_statement();
  default:
    if (!can_begin_expression())
      bad_statement();
    else
      declaration_or_expression(is_body, is_labelled, is_extension);
  }
}

static void report_unattached_attributes() {
  if (waiting_attributes)
    pos_warning(ec_unattached_attribute, &waiting_attributes->position);
  waiting_attributes = nullptr;
}

static bool skip_extension_prefix() {
  bool any = false;
  while (loop_token(tok_extension))
    any = true;
  return any;
}

static void statement_behind_prefix(bool is_body, bool is_extension) {
  check_stack_limit();
  append_attributes(&waiting_attributes, scan_attributes(al_statement));
  bool is_labelled = scan_labels();
  select_curr_construct_pragmas(true);
  append_attributes(&waiting_attributes, scan_attributes(al_statement));
  obey_not_reached_pragma();
  is_extension |= skip_extension_prefix();
  unlabelled_statement(is_body, is_labelled, is_extension);
  report_unattached_attributes();
}

void statement(bool is_body) {
  select_curr_construct_pragmas(false);
  bool is_extension = skip_extension_prefix();
  statement_behind_prefix(is_body, is_extension);
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

// A declaration or a statement.
static void block_item(bool* statement_seen) {
  select_curr_construct_pragmas(false);
  waiting_attributes = scan_attributes(al_statement);
  bool is_extension = skip_extension_prefix();
  if (in_C_mode() && !is_label_start() && is_declaration()) {
    check_declaration_behind_statement(*statement_seen);
    declaration_statement(is_extension);
  } else {
    statement_behind_prefix(false, is_extension);
    *statement_seen = true;
  }
}

static void block_items() {
  bool statement_seen = false;
  check_for_stdc_pragmas();
  add_stop_token(tok_rbrace);
  add_stop_token(tok_semicolon);
  local_label_declarations();
  while (curr_token != tok_rbrace && curr_token != tok_end_of_source) {
    a_token_sequence_number first = curr_token_sequence_number;
    obey_not_reached_pragma();
    block_item(&statement_seen);
    // What nothing takes must not hold the loop.
    if (curr_token_sequence_number == first && curr_token != tok_end_of_source)
      get_token();
  }
  obey_not_reached_pragma();
  // What is left has nothing to bind to, or waits for the end of this scope.
  if (curr_token_pragmas)
    process_curr_token_pragmas();
  remove_stop_token(tok_semicolon);
  remove_stop_token(tok_rbrace);
}

static a_statement* open_function_body() {
  a_statement* block = alloc_statement(stmk_block);
  block->position = pos_curr_token;
  depth_stmt_stack = -1;
  block->variant.block.block_supplement->is_function_body = true;
  block->variant.block.block_supplement->scope = innermost_function_scope;
  push_stmt_entry(ssk_block, block);
  mark_reachable();
  flow_open_block(bf_none, &pos_curr_token);
  set_vla_sizes_of_parameters();
  return block;
}

static void close_function_body(a_statement* block) {
  a_source_position end = pos_curr_token;
  add_vla_deallocations_of_block(&end);
  if (reachability.code_is_reachable)
    return_at_end_of_function(&end);
  block->end_position = end;
  block->variant.block.block_supplement->end_position = end;
  depth_stmt_stack = -1;
}

static a_statement* function_body() {
  a_statement* block = open_function_body();
  required_token(tok_lbrace, ec_exp_lbrace);
  block_items();
  close_function_body(block);
  return block;
}

a_statement* compound_statement_full(bool is_function_body) {
  if (is_function_body)
    return function_body();
  a_statement* block = top_stmt_entry()->statement;
  required_token(tok_lbrace, ec_exp_lbrace);
  block_items();
  close_block(&pos_curr_token);
  end_of_last_statement = end_pos_curr_token;
  required_token(tok_rbrace, ec_exp_rbrace);
  return block;
}

// ---- Function try blocks (C++11 15 p3) ----

bool start_of_function_try_block() {
  return in_cplusplus_mode() && curr_token == tok_try;
}

a_statement* function_try_block(a_routine* routine, a_scope* scope,
                                an_initializer_scanner scan_initializers) {
  a_statement* block = open_function_body();
  open_try();
  scan_initializers(routine, scope);
  try_block_and_handlers(true, routine->special_kind == rsk_constructor);
  close_function_body(block);
  return block;
}

// ---- Statement expressions ----

bool is_last_in_statement_expression() {
  return depth_stmt_stack >= 0 && top_stmt_entry()->is_statement_expression &&
         curr_token == tok_semicolon && next_token() == tok_rbrace;
}

// What is reached behind it can't be told from its statements alone, since it
// may stand in an operand that isn't always evaluated.
a_statement* statement_expression_block(a_type** type) {
  a_reachability before = reachability;
  an_attribute* saved_attributes = waiting_attributes;
  waiting_attributes = nullptr;
  a_statement* block = open_block(bf_detached | bf_statement_expression, &pos_curr_token);
  required_token(tok_lbrace, ec_exp_lbrace);
  block_items();
  const a_statement* last = top_stmt_entry()->last_statement;
  *type = last && last->kind == stmk_stmt_expr_value ? last->expr->type : void_type();
  close_block(&pos_curr_token);
  required_token(tok_rbrace, ec_exp_rbrace);
  waiting_attributes = saved_attributes;
  merge_reachability(&reachability, &before);
  return block;
}

// ---- Hooks of declarations ----

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
