// The scanner of expressions: precedence climbing over the operators.

#include "decl_inits_int.h"
#include "expr_int.h"
#include "mode_words.h"

// ---- Operators of tokens ----

// An operator that stands behind its left operand. `op` is the operation on
// arithmetic types, `assignment_op` that of an assignment.
struct an_operator_token {
  a_token_kind token;
  an_expr_level level;
  an_expr_operator_kind op;
  an_expr_operator_kind assignment_op;
};

static constexpr an_operator_token operator_tokens[] = {
    // clang-format off
    {tok_error, lev_none, eok_last, eok_last}, // every other token
    {tok_lbracket, lev_postfix, eok_subscript, eok_last},
    {tok_lparen, lev_postfix, eok_call, eok_last},
    {tok_period, lev_postfix, eok_dot_field, eok_last},
    {tok_arrow, lev_postfix, eok_arrow_field, eok_last},
    {tok_plus_plus, lev_postfix, eok_post_incr, eok_last},
    {tok_minus_minus, lev_postfix, eok_post_decr, eok_last},
    {tok_period_star, lev_ptr_to_member, eok_dot_ptr_to_member, eok_last},
    {tok_arrow_star, lev_ptr_to_member, eok_arrow_ptr_to_member, eok_last},
    {tok_star, lev_multiplicative, eok_multiply, eok_last},
    {tok_divide, lev_multiplicative, eok_divide, eok_last},
    {tok_remainder, lev_multiplicative, eok_remainder, eok_last},
    {tok_plus, lev_additive, eok_add, eok_last},
    {tok_minus, lev_additive, eok_subtract, eok_last},
    {tok_shift_left, lev_shift, eok_shift_left, eok_last},
    {tok_shift_right, lev_shift, eok_shift_right, eok_last},
    {tok_lt, lev_relational, eok_lt, eok_last},
    {tok_gt, lev_relational, eok_gt, eok_last},
    {tok_le, lev_relational, eok_le, eok_last},
    {tok_ge, lev_relational, eok_ge, eok_last},
    {tok_eq, lev_equality, eok_eq, eok_last},
    {tok_ne, lev_equality, eok_ne, eok_last},
    {tok_min, lev_min_max, eok_gnu_min, eok_last},
    {tok_max, lev_min_max, eok_gnu_max, eok_last},
    {tok_ampersand, lev_bit_and, eok_bit_and, eok_last},
    {tok_excl_or, lev_bit_xor, eok_bit_xor, eok_last},
    {tok_or, lev_bit_or, eok_bit_or, eok_last},
    {tok_and_and, lev_land, eok_land, eok_last},
    {tok_or_or, lev_lor, eok_lor, eok_last},
    {tok_question, lev_question, eok_question, eok_last},
    {tok_assign, lev_assignment, eok_last, eok_assign},
    {tok_times_assign, lev_assignment, eok_multiply, eok_multiply_assign},
    {tok_divide_assign, lev_assignment, eok_divide, eok_divide_assign},
    {tok_remainder_assign, lev_assignment, eok_remainder, eok_remainder_assign},
    {tok_plus_assign, lev_assignment, eok_add, eok_add_assign},
    {tok_minus_assign, lev_assignment, eok_subtract, eok_subtract_assign},
    {tok_shift_left_assign, lev_assignment, eok_shift_left, eok_shift_left_assign},
    {tok_shift_right_assign, lev_assignment, eok_shift_right, eok_shift_right_assign},
    {tok_and_assign, lev_assignment, eok_bit_and, eok_and_assign},
    {tok_excl_or_assign, lev_assignment, eok_bit_xor, eok_xor_assign},
    {tok_or_assign, lev_assignment, eok_bit_or, eok_or_assign},
    {tok_comma, lev_comma, eok_comma, eok_last},
    // clang-format on
};

namespace {

// The row of each token.
struct an_operator_index {
  uint8_t row[num_token_kinds];

  constexpr an_operator_index() : row() {
    uint8_t number = 0;
    for (const an_operator_token& entry : operator_tokens)
      row[entry.token] = number++;
  }
};

constexpr an_operator_index operator_index;

const an_operator_token& operator_of_token(a_token_kind token) {
  return operator_tokens[operator_index.row[token]];
}

} // namespace

int level_of_token(a_token_kind token) {
  return operator_of_token(token).level;
}

an_expr_operator_kind which_binary_operator(a_token_kind token) {
  return operator_of_token(token).op;
}

an_expr_operator_kind which_assignment_operator(a_token_kind token) {
  return operator_of_token(token).assignment_op;
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

// The assignment whose operation the token is.
static a_token_kind compound_assignment_of(a_token_kind token) {
  int level = level_of_token(token);
  bool is_binary = level >= lev_bit_or && level <= lev_multiplicative;
  for (const an_operator_token& entry : operator_tokens)
    if (is_binary && entry.level == lev_assignment && entry.op == which_binary_operator(token))
      return entry.token;
  return tok_error;
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

// ---- Operands that were scanned before ----

// An expression that turned out to belong to another aggregate is handed on.
static bool fetch_operand_from_initializer_cache(an_operand* result) {
  an_initializer_cache* cache = expr_stack->initializer_cache;
  if (!cache || !cache->first)
    return false;
  an_init_component* component = cache->first;
  cache->first = component->next;
  if (!cache->first)
    cache->last = nullptr;
  component->next = nullptr;
  if (component->kind == ick_expression) {
    *result = component->variant.operand;
    free_init_component_list(component);
  } else {
    make_braced_init_list_operand(component, result);
    result->position = init_component_pos(component);
  }
  error_position = result->position;
  return true;
}

// ---- Branches that aren't evaluated ----

static bool in_unevaluated_branch_of_constant() {
  return gnu_mode && expr_stack->flags.strict_constant && !expr_stack->flags.value_is_evaluated;
}

// What GNU C lets stand on the right of `0 &&` in a constant expression need be
// no constant; a zero of its type takes its place.
static void scan_unevaluated_branch(an_operand* result, an_operand* selector, int level,
                                    uint32_t flags) {
  an_expr_stack_entry entry;
  const an_expr_stack_entry* enclosing = expr_stack;
  push_nested_expr_stack(ek_normal, &entry);
  entry.flags.value_is_evaluated = false;
  entry.flags.constant_context = true;
  entry.flags.in_template_argument_list = enclosing->flags.in_template_argument_list;
  entry.template_arg_paren_depth = enclosing->template_arg_paren_depth;
  scan_expr(result, selector, level, flags);
  do_operand_transformations(result, ot_keep_glvalue);
  result->ref_entries = nullptr;
  pop_expr_stack();
  if (is_error_operand(result) || is_constant_operand(result))
    return;
  if (!is_scalar_type(result->type)) {
    error_in_operand(ec_expr_not_constant, result);
    return;
  }
  an_operand saved = *result;
  a_constant zero;
  clear_constant(&zero, con_integer);
  make_zero_of_proper_type(prvalue_type(saved.type), &zero);
  make_constant_operand(&zero, result);
  restore_operand_details(result, &saved);
}

// ---- The scanner ----

void scan_operators(an_operand* result, int level, uint32_t flags) {
  for (;;) {
    if (C_dialect == cd_k_and_r)
      join_old_style_assignment();
    if (expr_level_stops(curr_token, level, flags))
      break;
    if (curr_token != tok_lparen) {
      finish_undefined_symbol_operand(result);
      finish_bound_function_operand(result);
    }
    scan_operator(result);
    expr_stack->flags.decltype_top_level = false;
  }
}

void scan_expr(an_operand* result, an_operand* selector, int level, uint32_t flags) {
  check_stack_limit();
  if (fetch_operand_from_initializer_cache(result))
    return;
  if (in_unevaluated_branch_of_constant()) {
    scan_unevaluated_branch(result, selector, level, flags);
    return;
  }
  bool saved_top_level = expr_stack->flags.decltype_top_level;
  a_ref_entry* saved_ref_entries = curr_expr_ref_entries;
  curr_expr_ref_entries = nullptr;
  bool is_extension = flags & sef_as_extension;
  while (curr_token == tok_extension) {
    is_extension = true;
    get_token();
  }
  scan_primary_or_prefix(result, flags);
  scan_operators(result, level, flags);
  finish_undefined_symbol_operand(result);
  if (!(flags & sef_keep_bound_function))
    finish_bound_function_operand(result);
  if (is_extension)
    mark_as_extension(result);
  flush_ref_entries(result, saved_ref_entries);
  expr_stack->flags.decltype_top_level = saved_top_level;
}
