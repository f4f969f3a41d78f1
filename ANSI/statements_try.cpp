// Try blocks and their handlers (C++11 15).

#include "decls.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements_int.h"
#include "types.h"

static void check_exceptions_enabled(const a_source_position* position) {
  if (embedded_cplusplus_mode)
    pos_error(ec_exceptions_in_embedded_cplusplus, position);
  else if (!exceptions_enabled)
    pos_warning(ec_exception_handler_used, position);
}

// ---- Handlers ----

static const a_type* caught_class(const a_type* type) {
  if (is_reference_type(type))
    type = type_pointed_to(const_cast<a_type*>(type));
  return skip_typerefs(type);
}

// C++11 15.3 p3: of the same type, or of a base class of it.
static bool masks(const a_handler* earlier, const a_handler* handler) {
  a_type* caught = const_cast<a_type*>(caught_class(earlier->parameter->type));
  a_type* type = const_cast<a_type*>(caught_class(handler->parameter->type));
  if (is_error_type(caught) || is_error_type(type))
    return false;
  if (identical_types(make_unqualified_type(caught), make_unqualified_type(type)))
    return true;
  return is_class_struct_union_type(caught) && is_class_struct_union_type(type) &&
         is_derived_class(type, caught);
}

// A handler that an earlier one leaves nothing to (C++11 15.3 p4, p5).
static void check_masking(const a_handler* handlers, const a_handler* handler) {
  for (const a_handler* earlier = handlers; earlier && earlier != handler;
       earlier = earlier->next) {
    if (!earlier->parameter) {
      pos_error(ec_masked_by_default_handler, &handler->position);
      return;
    }
    if (handler->parameter && masks(earlier, handler)) {
      pos_ty_warning(ec_masked_by_handler, &handler->position, earlier->parameter->type);
      return;
    }
  }
}

static void handler_declaration_in_parentheses(a_handler* handler) {
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  if (curr_token == tok_rparen)
    pos_error(ec_missing_exception_declaration, &pos_curr_token);
  else if (!loop_token(tok_ellipsis))
    handler->parameter = handler_declaration();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
}

// At the `catch`. The parameter lives in a scope round the handler's block.
static a_handler* scan_handler(bool is_function_try, bool is_constructor) {
  a_handler* handler = alloc_handler();
  handler->position = pos_curr_token;
  a_statement* block = open_block(bf_generated | bf_detached | bf_handler, &pos_curr_token);
  block->parent = struct_stmt_stack[depth_stmt_stack - 1].statement;
  handler->body = block;
  top_stmt_entry()->is_constructor_handler = is_constructor;
  scope_stack[depth_scope_stack].is_handler = true;
  scope_stack[depth_scope_stack].is_function_try_handler = is_function_try;
  get_token();
  handler_declaration_in_parentheses(handler);
  if (required_token_no_advance(tok_lbrace, ec_exp_lbrace))
    statement(false);
  close_block(&end_of_last_statement);
  return handler;
}

static void scan_handlers(a_try_supplement* supplement, bool is_function_try, bool is_constructor) {
  a_handler** link = &supplement->handlers;
  if (curr_token != tok_catch)
    pos_error(ec_missing_handler, &pos_curr_token);
  while (curr_token == tok_catch) {
    a_struct_stmt_stack_entry* entry = top_stmt_entry();
    merge_reachability(&entry->after, &reachability);
    reachability = entry->saved;
    *link = scan_handler(is_function_try, is_constructor);
    check_masking(supplement->handlers, *link);
    link = &(*link)->next;
  }
}

// ---- Try blocks ----

void open_try() {
  a_source_position position = pos_curr_token;
  check_exceptions_enabled(&position);
  push_stmt_entry(ssk_try, add_statement_at_stmt_pos(stmk_try, &position));
  get_token();
}

void try_block_and_handlers(bool is_function_try, bool is_constructor) {
  a_statement* construct = top_stmt_entry()->statement;
  if (required_token_no_advance(tok_lbrace, ec_exp_lbrace)) {
    a_source_position start = pos_curr_token;
    open_block(bf_try, &start);
    compound_statement_full(false);
  }
  scan_handlers(construct->variant.try_supplement, is_function_try, is_constructor);
  pop_stmt_entry();
}

void try_statement() {
  warn_if_code_is_unreachable(ec_code_is_unreachable, &pos_curr_token);
  open_try();
  try_block_and_handlers(false, false);
}
