// The scanner of expressions: precedence climbing over the operators.

#include "expr_int.h"
#include "mode_words.h"

// ---- Levels of tokens ----

static int level_of_token(a_token_kind token) {
  switch (token) {
  case tok_lbracket:
  case tok_lparen:
  case tok_period:
  case tok_arrow:
  case tok_plus_plus:
  case tok_minus_minus:
    return lev_postfix;
  case tok_period_star:
  case tok_arrow_star:
    return lev_ptr_to_member;
  case tok_star:
  case tok_divide:
  case tok_remainder:
    return lev_multiplicative;
  case tok_plus:
  case tok_minus:
    return lev_additive;
  case tok_shift_left:
  case tok_shift_right:
    return lev_shift;
  case tok_lt:
  case tok_gt:
  case tok_le:
  case tok_ge:
    return lev_relational;
  case tok_eq:
  case tok_ne:
    return lev_equality;
  case tok_min:
  case tok_max:
    return lev_min_max;
  case tok_ampersand:
    return lev_bit_and;
  case tok_excl_or:
    return lev_bit_xor;
  case tok_or:
    return lev_bit_or;
  case tok_and_and:
    return lev_land;
  case tok_or_or:
    return lev_lor;
  case tok_question:
    return lev_question;
  case tok_assign:
  case tok_times_assign:
  case tok_divide_assign:
  case tok_remainder_assign:
  case tok_plus_assign:
  case tok_minus_assign:
  case tok_shift_left_assign:
  case tok_shift_right_assign:
  case tok_and_assign:
  case tok_excl_or_assign:
  case tok_or_assign:
    return lev_assignment;
  case tok_comma:
    return lev_comma;
  default:
    return lev_none;
  }
}

static bool is_right_associative(int level) {
  return level == lev_assignment || level == lev_question;
}

// In a template argument list a `>` outside parentheses ends the expression.
static bool closes_template_arguments(a_token_kind token) {
  if (!expr_stack->flags.in_template_argument_list || expr_stack->template_arg_paren_depth != 0)
    return false;
  return token == tok_gt || (token == tok_shift_right && std_version >= 201103);
}

static bool expr_level_stops(a_token_kind token, int level, uint32_t flags) {
  int token_level = level_of_token(token);
  if (token_level == lev_none || token_level < level)
    return true;
  if (token_level == level && !is_right_associative(level))
    return true;
  if (token == tok_comma && (flags & sef_no_comma))
    return true;
  return closes_template_arguments(token);
}

// ---- Old C: `a + = b` ----

static a_token_kind compound_assignment_of(a_token_kind token) {
  switch (token) {
  case tok_ampersand:
    return tok_and_assign;
  case tok_star:
    return tok_times_assign;
  case tok_plus:
    return tok_plus_assign;
  case tok_minus:
    return tok_minus_assign;
  case tok_divide:
    return tok_divide_assign;
  case tok_remainder:
    return tok_remainder_assign;
  case tok_shift_left:
    return tok_shift_left_assign;
  case tok_shift_right:
    return tok_shift_right_assign;
  case tok_excl_or:
    return tok_excl_or_assign;
  case tok_or:
    return tok_or_assign;
  default:
    return tok_error;
  }
}

static void join_old_style_assignment() {
  a_token_kind joined = compound_assignment_of(curr_token);
  if (joined == tok_error || next_token() != tok_assign)
    return;
  a_source_position position = pos_curr_token;
  get_token();
  curr_token = joined;
  pos_curr_token = position;
}

// ---- Operators behind a left operand ----

static void scan_operator(an_operand* operand) {
  switch (curr_token) {
  case tok_lbracket:
    scan_subscript(operand);
    break;
  case tok_lparen:
    scan_function_call(operand);
    break;
  case tok_period:
  case tok_arrow:
    scan_field_selection(operand);
    break;
  case tok_plus_plus:
  case tok_minus_minus:
    scan_postfix_incr_decr(operand);
    break;
  case tok_and_and:
  case tok_or_or:
    scan_logical_operator(operand);
    break;
  case tok_question:
    scan_question_operator(operand);
    break;
  case tok_comma:
    scan_comma_operator(operand);
    break;
  default:
    if (level_of_token(curr_token) == lev_assignment)
      scan_assignment_operator(operand);
    else
      scan_binary_operator(operand);
    break;
  }
}

static void mark_as_extension(an_operand* operand) {
  if (operand->kind == ok_expression)
    operand->variant.expr->from_extension = true;
  else if (operand->kind == ok_constant)
    operand->variant.constant.from_extension = true;
}

void scan_expr(an_operand* result, an_operand*, int level, uint32_t flags) {
  check_stack_limit();
  a_ref_entry* saved_ref_entries = curr_expr_ref_entries;
  curr_expr_ref_entries = nullptr;
  bool is_extension = flags & sef_as_extension;
  while (curr_token == tok_extension) {
    is_extension = true;
    get_token();
  }
  scan_primary_or_prefix(result, flags);
  for (;;) {
    if (C_dialect == cd_k_and_r)
      join_old_style_assignment();
    if (expr_level_stops(curr_token, level, flags))
      break;
    if (curr_token != tok_lparen)
      finish_undefined_symbol_operand(result);
    scan_operator(result);
  }
  finish_undefined_symbol_operand(result);
  if (is_extension)
    mark_as_extension(result);
  flush_ref_entries(result, saved_ref_entries);
}
