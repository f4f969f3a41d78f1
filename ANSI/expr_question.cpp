// The conditional operator (C99 6.5.15).

#include "expr_int.h"
#include "il.h"
#include "mode_words.h"

struct a_question {
  an_operand condition, second, third;
  a_source_position start, position, end;
  bool is_known; // the condition is a constant
  bool is_true;
};

static void begin_branch(const a_question* question, bool is_taken,
                         const an_expr_stack_flags* outer) {
  expr_stack->flags.branch_context = true;
  if (question->is_known && !is_taken) {
    expr_stack->flags.value_is_evaluated = false;
    expr_stack->flags.strict_constant = false;
  } else {
    expr_stack->flags.value_is_evaluated = outer->value_is_evaluated;
    expr_stack->flags.strict_constant = outer->strict_constant;
  }
}

static void end_branches(const an_expr_stack_flags* outer) {
  expr_stack->flags.branch_context = outer->branch_context;
  expr_stack->flags.value_is_evaluated = outer->value_is_evaluated;
  expr_stack->flags.strict_constant = outer->strict_constant;
}

static void analyse_condition(a_question* question) {
  check_boolean_controlling_expr(&question->condition);
  flush_operand_ref_entries(&question->condition);
  if (in_constant_expr_kind())
    force_operand_to_constant_if_possible(&question->condition);
  const a_constant* constant = constant_of_operand(&question->condition);
  question->is_known = constant && constant_bool_value_known_at_compile_time(constant);
  question->is_true = question->is_known && constant_bool_value(constant);
}

// In `a ?: b` the condition is the second operand too; its node is computed
// once by the operator of its own.
static bool scan_second_operand(a_question* question, const an_expr_stack_flags* outer) {
  begin_branch(question, question->is_true, outer);
  if (gnu_mode && curr_token == tok_colon) {
    question->second = question->condition;
    question->second.ref_entries = nullptr;
    return true;
  }
  add_stop_token(tok_colon);
  ++expr_stack->template_arg_paren_depth;
  scan_expr(&question->second, nullptr, lev_none, 0);
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_colon);
  do_operand_transformations(&question->second, ot_all);
  return false;
}

static void scan_third_operand(a_question* question, const an_expr_stack_flags* outer) {
  begin_branch(question, !question->is_true, outer);
  scan_expr(&question->third, nullptr, in_cplusplus_mode() ? lev_assignment : lev_question,
            sef_no_comma);
  question->end = question->third.end_position;
  do_operand_transformations(&question->third, ot_all);
}

// ---- The type of the result (C99 6.5.15 p3 to p6) ----

static a_type* incompatible_branches(a_question* question) {
  if (expr_error_should_be_issued())
    pos_ty2_error(ec_incompatible_operands, &question->position, question->second.type,
                  question->third.type);
  return nullptr;
}

static a_type* type_of_void_branches(a_question* question) {
  bool both = is_void_type(question->second.type) && is_void_type(question->third.type);
  if (!both && !gnu_mode && strict_ansi_mode)
    return incompatible_branches(question);
  if (!both && !gnu_mode && !strict_ansi_mode)
    return incompatible_branches(question);
  cast_operand(void_type(), &question->second, true);
  cast_operand(void_type(), &question->third, true);
  return void_type();
}

static a_type* type_of_class_branches(a_question* question) {
  if (f_skip_typerefs(question->second.type) != f_skip_typerefs(question->third.type))
    return incompatible_branches(question);
  return make_unqualified_type(question->second.type);
}

static a_type* convert_branches(a_question* question) {
  an_operand* second = &question->second;
  an_operand* third = &question->third;
  a_type* type;
  if (is_void_type(second->type) || is_void_type(third->type))
    return type_of_void_branches(question);
  if (is_class_struct_union_type(second->type) || is_class_struct_union_type(third->type))
    return type_of_class_branches(question);
  if (is_pointer_type(second->type) || is_pointer_type(third->type))
    type = check_compatibility_of_pointer_operands(second, third, &question->position, false);
  else if (is_arithmetic_or_enum_type(second->type) && is_arithmetic_or_enum_type(third->type))
    type = determine_arithmetic_conversions(second, third);
  else
    return incompatible_branches(question);
  if (type)
    change_binary_operand_types(type, second, third);
  return type;
}

// ---- The result ----

// A constant condition selects; where no constant is due, the operand selected
// must be one to stand for the whole.
static bool fold_question(a_question* question, an_operand* result) {
  an_operand* taken = question->is_true ? &question->second : &question->third;
  if (!question->is_known || !is_constant_operand(taken))
    return false;
  a_constant constant = taken->variant.constant;
  make_constant_operand(&constant, result);
  return true;
}

static void build_question(a_question* question, a_type* type, bool is_binary, an_operand* result) {
  an_expr_node* condition = make_node_from_operand(&question->condition);
  an_expr_node* second = make_node_from_operand(&question->second);
  an_expr_node* third = make_node_from_operand(&question->third);
  if (is_binary)
    second = copy_expr_tree(second, cef_none);
  condition->next = second;
  second->next = third;
  third->next = nullptr;
  make_expression_operand(make_operator_node(eok_question, type, condition), result);
}

static void do_question_operation(a_question* question, bool is_binary, an_operand* result) {
  if (is_error_operand(&question->condition) || is_error_operand(&question->second) ||
      is_error_operand(&question->third)) {
    make_error_operand(result);
    return;
  }
  a_type* type = convert_branches(question);
  if (!type || is_error_operand(&question->second) || is_error_operand(&question->third)) {
    make_error_operand(result);
    return;
  }
  if (fold_question(question, result))
    return;
  if (in_constant_expr_kind() && value_is_evaluated()) {
    error_and_make_error_operand(ec_constant_value_not_known, &question->position, result);
    return;
  }
  build_question(question, type, is_binary, result);
}

void scan_question_operator(an_operand* operand) {
  check_stack_limit();
  a_question question;
  question.condition = *operand;
  question.start = operand->position;
  question.position = pos_curr_token;
  get_token();
  analyse_condition(&question);
  an_expr_stack_flags outer = expr_stack->flags;
  bool is_binary = scan_second_operand(&question, &outer);
  if (required_token(tok_colon, ec_exp_colon)) {
    scan_third_operand(&question, &outer);
    // Its value is needed twice; what computing it does may happen once.
    if (is_binary && question.condition.kind == ok_expression &&
        node_has_side_effects(question.condition.variant.expr)) {
      if (expr_error_should_be_issued())
        pos_st_error(ec_feature_not_allowed_in_current_mode, &question.position, "?:");
      conv_to_error_operand(&question.condition);
    }
  } else {
    question.end = pos_curr_token;
    make_error_operand(&question.third);
  }
  end_branches(&outer);
  do_question_operation(&question, is_binary, operand);
  set_operator_positions(operand, &question.start, &question.position, &question.end);
}
