// Primary expressions (C99 6.5.1) and what a prefix token begins.

#include "declarator.h"
#include "expr_operator.h"
#include "il.h"
#include "il_alloc.h"
#include "lambda.h"
#include "lower_stmt_expr.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements.h"

#include <cstring>

// ---- Literals ----

// An integral constant expression has floating literals as the operands of its
// casts only (C99 6.6 p6).
static bool may_be_floating_literal(uint32_t flags) {
  bool is_integral_context =
      expr_stack->kind == ek_integral_constant || expr_stack->kind == ek_strict_constant;
  return !is_integral_context || constexpr_enabled || (flags & sef_float_literal_allowed);
}

static void scan_constant_literal(an_operand* result, uint32_t flags) {
  make_constant_operand(&const_for_curr_token, result);
  if (result->kind == ok_constant)
    result->variant.constant.position = pos_curr_token;
  if (curr_token == tok_float_constant && !may_be_floating_literal(flags))
    check_integral_or_enum_operand(result);
  get_token();
}

// true and false (C++11 2.14.6).
static void scan_boolean_literal(an_operand* result) {
  a_constant constant;
  clear_constant(&constant, con_integer);
  constant.type = bool_type();
  constant.value.int_value = curr_token == tok_true;
  constant.is_boolean_literal = true;
  make_constant_operand(&constant, result);
  get_token();
}

static an_integer_kind int_kind_as_wide_as_pointer() {
  uint64_t width = size_of_type(void_star_type());
  for (an_integer_kind kind : {ik_int, ik_long, ik_long_long})
    if (size_of_type(integer_type(kind)) == width)
      return kind;
  return ik_int;
}

// nullptr (C++11 2.14.7), and GNU's __null: a zero as wide as a pointer.
static void scan_null_literal(an_operand* result) {
  a_constant constant;
  clear_constant(&constant, con_integer);
  if (curr_token == tok_nullptr)
    constant.type = standard_nullptr_type();
  else
    set_integer_constant(&constant, 0, int_kind_as_wide_as_pointer());
  constant.is_null_literal = true;
  make_constant_operand(&constant, result);
  get_token();
}

static void scan_string_literal_operand(an_operand* result) {
  if (const_for_curr_token.kind == con_string)
    make_string_constant_operand(&const_for_curr_token, result);
  else
    make_error_operand(result);
  get_token();
}

// ---- __func__ (C99 6.4.2.2) ----

static void make_function_name_constant(const char* name, a_constant* constant) {
  size_t length = strlen(name) + 1;
  char* text = alloc_text_of_string_literal(length);
  memcpy(text, name, length);
  clear_constant(constant, con_string);
  constant->type = string_literal_type(sck_ordinary, length);
  if (in_C_mode())
    constant->type = make_qualified_type(constant->type, tq_const);
  constant->value.string.text = text;
  constant->value.string.length = length;
  constant->is_function_name = true;
}

static const char* name_of_enclosing_function() {
  if (depth_innermost_function_scope < 0)
    return nullptr;
  const a_routine* routine = scope_stack[depth_innermost_function_scope].routine;
  const char* name = routine ? routine->source_corresp.name : nullptr;
  return name ? name : "";
}

static void scan_function_name(an_operand* result) {
  const char* name = name_of_enclosing_function();
  if (!name && !gnu_mode) {
    if (expr_error_should_be_issued())
      pos_st_error(ec_undefined_identifier, &pos_curr_token, token_names[curr_token]);
    make_error_operand(result);
  } else {
    a_constant constant;
    make_function_name_constant(name ? name : "", &constant);
    make_string_constant_operand(&constant, result);
    // The literal is an object of its own, which initialises no array.
    result->flags.string_literal = false;
  }
  get_token();
}

// ---- Parentheses ----

// `(` in front of a type begins a cast; with the parenthesis read already, the
// caller has seen that none does.
static void scan_parenthesized_expression(an_operand* result, uint32_t flags,
                                          const a_source_position* start) {
  constexpr uint32_t kept_flags =
      sef_float_literal_allowed | sef_address_of_overload_allowed | sef_controlling_expression;
  add_stop_token(tok_rparen);
  ++expr_stack->template_arg_paren_depth;
  // In C++ `(p->*f)(1)` calls a member function.
  uint32_t member_flags = in_cplusplus_mode() ? sef_keep_bound_function : 0u;
  scan_expr(result, nullptr, lev_none, (flags & kept_flags) | sef_parenthesized | member_flags);
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  set_operand_range(result, start, &end);
  result->flags.names_variable = false;
  result->flags.parenthesized = true;
  if (result->kind == ok_expression)
    result->variant.expr->parenthesized = true;
}

// Why no statement expression may stand here, or 0.
static an_error_code refusal_of_statement_expression() {
  if (in_constant_expr_kind())
    return ec_expr_not_constant;
  if (depth_innermost_function_scope < 0 || depth_stmt_stack < 0)
    return ec_statement_expression_in_function_only;
  return expr_stack->flags.in_default_argument ? ec_statement_expr_in_default_arg : 0;
}

static void skip_statement_expression(an_operand* result) {
  make_error_operand(result);
  flush_until_matching_token_full(false);
  required_token(tok_rparen, ec_exp_rparen);
}

// The block's statements are full expressions of their own.
static a_statement* scan_statements_of_expression(a_type** type) {
  an_expr_stack_entry* saved_expr_stack = expr_stack;
  a_ref_entry* saved_ref_entries = curr_expr_ref_entries;
  expr_stack = nullptr;
  curr_expr_ref_entries = nullptr;
  push_stop_token_stack();
  a_statement* block = statement_expression_block(type);
  pop_stop_token_stack();
  expr_stack = saved_expr_stack;
  curr_expr_ref_entries = saved_ref_entries;
  return block;
}

// GNU: `({ ... })`, at the `{`.
static void scan_statement_expression(an_operand* result, const a_source_position* start) {
  an_error_code code = refusal_of_statement_expression();
  if (code != 0) {
    expr_pos_error(code, start);
    skip_statement_expression(result);
    return;
  }
  if (report_gnu_extensions)
    expr_pos_warning(ec_statement_expression_is_gnu_extension, start);
  scope_stack[depth_innermost_function_scope].has_statement_expression = true;
  any_statement_expressions = true;
  an_expr_node* node = alloc_expr_node(expr_statement);
  node->variant.statement = scan_statements_of_expression(&node->type);
  node->position = *start;
  make_expression_operand(node, result);
  rule_out_expr_kinds(rule_out_constant, result);
  a_source_position end = end_pos_curr_token;
  set_operand_range(result, start, &end);
  required_token(tok_rparen, ec_exp_rparen);
}

static bool token_begins_cast() {
  return is_decl_not_expr(dst_expr_context);
}

static void scan_parenthesis(an_operand* result, uint32_t flags) {
  a_source_position start = pos_curr_token;
  get_token();
  if (curr_token == tok_lbrace && gnu_mode)
    scan_statement_expression(result, &start);
  else if (token_begins_cast())
    scan_cast_expression(result, &start);
  else
    scan_parenthesized_expression(result, flags, &start);
}

// GNU: `&&label`, a constant. The file has no form for it.
static void scan_address_of_label(an_operand* result) {
  a_source_position start = pos_curr_token;
  get_token();
  a_source_position end = end_pos_curr_token;
  if (strict_ansi_mode)
    expr_pos_diagnostic(strict_ansi_error_severity, ec_nonstd_address_of_label, &start);
  if (depth_stmt_stack < 0 || !required_token_no_advance(tok_identifier, ec_exp_identifier)) {
    error_and_make_error_operand(ec_expr_not_constant, &start, result);
    return;
  }
  if (!suppress_back_end)
    pos_st_error(ec_not_supported, &start, "address of a label");
  a_constant constant;
  clear_constant(&constant, con_address);
  set_label_address_constant(scan_label_reference(), &constant);
  make_constant_operand(&constant, result);
  set_operand_range(result, &start, &end);
}

// ---- The first token ----

// Keyword forms that stand only for code that the program doesn't write.
static bool is_refused_keyword(a_token_kind token) {
  return token == tok_va_start || token == tok_va_arg || token == tok_va_end ||
         token == tok_va_copy;
}

static void refuse_keyword(an_operand* result) {
  if (expr_error_should_be_issued())
    pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, token_names[curr_token]);
  make_error_operand(result);
  get_token();
  if (curr_token == tok_lparen)
    flush_until_matching_token();
}

static void missing_expression(an_operand* result) {
  make_error_operand(result);
  if (is_type_start(dst_expr_context)) {
    expr_syntax_error(ec_type_identifier_not_allowed);
    return;
  }
  if (curr_token == tok_error && err_code_for_error_token != 0)
    expr_syntax_error(err_code_for_error_token);
  else
    expr_syntax_error(ec_exp_primary_expr);
}

// At a `::` (C++11 5.3.4 p9, 5.3.5 p9).
static void scan_global_form(an_operand* result) {
  const a_token_kind next = next_token();
  if (next == tok_new)
    scan_new(result);
  else if (next == tok_delete)
    scan_delete(result);
  else
    scan_identifier(result);
}

void scan_primary_or_prefix(an_operand* result, uint32_t flags) {
  if (flags & sef_opening_paren_taken) {
    a_source_position start = pos_curr_token;
    scan_parenthesized_expression(result, flags, &start);
    return;
  }
  switch (curr_token) {
  case tok_identifier:
  case tok_operator:
    scan_identifier(result);
    break;
  case tok_colon_colon:
    scan_global_form(result);
    break;
  case tok_integer:
  case tok_char_constant:
  case tok_float_constant:
    scan_constant_literal(result, flags);
    break;
  case tok_true:
  case tok_false:
    scan_boolean_literal(result);
    break;
  case tok_nullptr:
  case tok_null_constant:
    scan_null_literal(result);
    break;
  case tok_this:
    scan_this(result);
    break;
  case tok_const_cast:
  case tok_static_cast:
  case tok_reinterpret_cast:
  case tok_dynamic_cast:
    scan_named_cast(result);
    break;
  case tok_string:
    scan_string_literal_operand(result);
    break;
  case tok_func_name:
  case tok_function_name:
  case tok_pretty_function_name:
    scan_function_name(result);
    break;
  case tok_lparen:
    scan_parenthesis(result, flags);
    break;
  case tok_ampersand:
    scan_address_of(result);
    break;
  case tok_star:
    scan_indirection(result);
    break;
  case tok_plus:
  case tok_minus:
  case tok_compl:
  case tok_not:
    scan_unary_arithmetic(result);
    break;
  case tok_plus_plus:
  case tok_minus_minus:
    scan_prefix_incr_decr(result);
    break;
  case tok_sizeof:
    scan_sizeof(result);
    break;
  case tok_alignof:
  case tok_gnu_alignof:
    scan_alignof(result);
    break;
  case tok_lbracket:
    if (lambdas_enabled)
      scan_lambda(result);
    else
      missing_expression(result);
    break;
  case tok_and_and:
    if (gnu_mode)
      scan_address_of_label(result);
    else
      missing_expression(result);
    break;
  default:
    if (is_refused_keyword(curr_token))
      refuse_keyword(result);
    else if (in_cplusplus_mode() && simple_type_of_token(curr_token))
      scan_simple_type_cast(result);
    else if (!scan_keyword_form(result))
      missing_expression(result);
    break;
  }
}
