// The conditional operator (C99 6.5.15, C++11 5.16).

#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "templates.h"

struct a_question {
  an_operand condition, second, third;
  an_operator_place place;
  a_source_position end;
  bool is_known; // the condition is a constant
  bool is_true;
};

// ---- a ?: b ----

// A variable of the function for a value that is used twice.
static a_variable* make_variable_for_value(a_type* type) {
  a_variable* variable = alloc_temporary_variable(type, false);
  add_to_variables_list(variable, depth_innermost_function_scope);
  return variable;
}

// Whether a copy of an expression may stand beside it: it has no effects, and no
// statements or objects of its own.
static bool may_stand_twice(an_expr_node* expr) {
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.skip_unevaluated = true;
  block.process_expr = [](an_expr_node* node, an_expr_or_stmt_traversal_block* b) {
    if (node->kind == expr_statement || node->kind == expr_temp_init)
      b->found = b->terminate = true;
  };
  traverse_expr(expr, &block);
  return !block.found && !node_has_side_effects(expr);
}

// A second operand of the same value. What computing the value does happens
// once, in the first operand.
static void make_operand_reusable(an_operand* operand, an_operand* copy) {
  bool is_kept = operand->kind == ok_expression && value_is_evaluated() &&
                 depth_innermost_function_scope >= 0 && !may_stand_twice(operand->variant.expr);
  if (!is_kept) {
    clone_operand(operand, copy);
    return;
  }
  a_variable* variable = make_variable_for_value(prvalue_type(operand->type));
  an_operand saved = *operand;
  make_expression_operand(
      make_assignment_expr(var_lvalue_expr(variable), eok_assign, make_node_from_operand(operand)),
      operand);
  restore_operand_details_incl_ref(operand, &saved);
  make_expression_operand(var_rvalue_expr(variable), copy);
  set_operand_range(copy, &saved.position, &saved.end_position);
}

// ---- The operands ----

static void analyse_condition(a_question* question) {
  an_operand* condition = &question->condition;
  check_boolean_controlling_expr(condition);
  flush_operand_ref_entries(condition);
  if (expr_stack->flags.constant_context)
    force_operand_to_constant_if_possible(condition);
  const a_constant* constant = constant_of_operand(condition);
  question->is_known = constant && constant_bool_value_known_at_compile_time(constant);
  question->is_true = question->is_known && constant_bool_value(constant);
}

static void begin_branch(const a_question* question, bool is_taken,
                         const an_expr_stack_flags* outer) {
  bool is_dead = question->is_known && !is_taken;
  expr_stack->flags.branch_context = true;
  expr_stack->flags.value_is_evaluated = !is_dead && outer->value_is_evaluated;
}

static void end_branches(const an_expr_stack_flags* outer) {
  expr_stack->flags.branch_context = outer->branch_context;
  expr_stack->flags.value_is_evaluated = outer->value_is_evaluated;
}

// In C++ the operands may stay what they are: objects.
static unsigned branch_transformations() {
  return in_C_mode() ? ot_all : ot_keep_glvalue | ot_keep_array | ot_keep_function;
}

static void scan_second_operand(a_question* question, const an_expr_stack_flags* outer) {
  begin_branch(question, question->is_true, outer);
  if (gnu_mode && curr_token == tok_colon) {
    make_operand_reusable(&question->condition, &question->second);
    return;
  }
  add_stop_token(tok_colon);
  ++expr_stack->template_arg_paren_depth;
  scan_expr(&question->second, nullptr, lev_none, 0);
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_colon);
  do_operand_transformations(&question->second, branch_transformations());
}

// In C an assignment takes the whole conditional as its left operand.
static int level_of_third_operand() {
  bool is_old_cplusplus = cfront_2_1_mode || cfront_3_0_mode;
  return in_cplusplus_mode() && !is_old_cplusplus ? lev_assignment : lev_question;
}

static void scan_third_operand(a_question* question, const an_expr_stack_flags* outer) {
  begin_branch(question, !question->is_true, outer);
  scan_expr(&question->third, nullptr, level_of_third_operand(), sef_no_comma);
  question->end = question->third.end_position;
  do_operand_transformations(&question->third, branch_transformations());
}

// ---- The type of the result (C99 6.5.15 p3 to p6) ----

static a_type* incompatible_branches(a_question* question) {
  if (expr_error_should_be_issued())
    pos_ty2_error(ec_incompatible_operands, &question->place.position, question->second.type,
                  question->third.type);
  return nullptr;
}

static bool is_throw_operand(const an_operand* operand) {
  return operand->kind == ok_expression && operand->variant.expr->kind == expr_throw;
}

// A throw expression has the type of the other operand.
static a_type* type_of_void_branches(a_question* question) {
  an_operand* second = &question->second;
  an_operand* third = &question->third;
  bool both = is_void_type(second->type) && is_void_type(third->type);
  if (!both && is_throw_operand(second))
    return prvalue_type(third->type);
  if (!both && is_throw_operand(third))
    return prvalue_type(second->type);
  if (!both && !gcc_mode)
    return incompatible_branches(question);
  cast_operand(void_type(), second, true);
  cast_operand(void_type(), third, true);
  return void_type();
}

static a_type* type_of_class_branches(a_question* question) {
  if (f_skip_typerefs(question->second.type) != f_skip_typerefs(question->third.type))
    return incompatible_branches(question);
  return make_unqualified_type(question->second.type);
}

static a_type* common_type_of_branches(a_question* question) {
  an_operand* second = &question->second;
  an_operand* third = &question->third;
  const a_source_position* position = &question->place.position;
  if (is_nullptr_type(second->type) || is_nullptr_type(third->type))
    return check_compatibility_of_nullptr_operands(second, third, position);
  if (is_ptr_to_member_type(second->type) || is_ptr_to_member_type(third->type))
    return check_ptr_to_member_operands_for_compatibility(second, third, position);
  if (is_pointer_type(second->type) || is_pointer_type(third->type))
    return check_compatibility_of_pointer_operands(second, third, position, false);
  if (is_scoped_enum_type(second->type) || is_scoped_enum_type(third->type))
    return check_binary_scoped_enum_operation(second, third, position) ? second->type : nullptr;
  if (is_arithmetic_or_enum_type(second->type) && is_arithmetic_or_enum_type(third->type)) {
    // Two operands of one enumeration keep it in C++ (C++11 5.16 p6).
    if (in_cplusplus_mode() &&
        identical_types(prvalue_type(second->type), prvalue_type(third->type)))
      return prvalue_type(second->type);
    return determine_arithmetic_conversions(second, third);
  }
  return incompatible_branches(question);
}

static a_type* convert_branches(a_question* question) {
  an_operand* second = &question->second;
  an_operand* third = &question->third;
  if (is_void_type(second->type) || is_void_type(third->type))
    return type_of_void_branches(question);
  if (is_class_struct_union_type(second->type) || is_class_struct_union_type(third->type))
    return type_of_class_branches(question);
  a_type* type = common_type_of_branches(question);
  if (type)
    change_binary_operand_types(type, second, third);
  return type;
}

// ---- C++: conversions of classes, and objects as results ----

// C++11 5.16 p3: one operand may convert to the type of the other.
static void convert_class_branch(a_question* question) {
  an_operand* second = &question->second;
  an_operand* third = &question->third;
  bool second_converts = conditional_operator_conversion_possible(second, third);
  bool third_converts = conditional_operator_conversion_possible(third, second);
  if (second_converts && third_converts) {
    if (expr_error_should_be_issued())
      pos_ty2_error(ec_ambiguous_question_operator, &question->place.position, second->type,
                    third->type);
    conv_to_error_operand(second);
  } else if (second_converts) {
    user_convert_operand(second, third->type);
  } else if (third_converts) {
    user_convert_operand(third, second->type);
  }
}

static bool is_xvalue_operand(const an_operand* operand) {
  return operand->kind == ok_expression && operand->variant.expr->is_xvalue;
}

// The type of the object that the result is, when both operands are objects of
// one type; null when it is a value.
static a_type* type_of_glvalue_result(const a_question* question) {
  const an_operand* second = &question->second;
  const an_operand* third = &question->third;
  bool both_glvalues = second->state == os_glvalue && third->state == os_glvalue;
  bool are_xvalues = is_xvalue_operand(second);
  if (in_C_mode() || !both_glvalues || are_xvalues != is_xvalue_operand(third) ||
      (are_xvalues && gpp_mode && gnu_version < 40900) ||
      !identical_types(make_unqualified_type(second->type), make_unqualified_type(third->type)) ||
      bit_field_of_node(second->variant.expr, false) ||
      bit_field_of_node(third->variant.expr, false))
    return nullptr;
  return type_plus_qualifiers_from_second_type(second->type, third->type);
}

// ---- The result ----

static an_expr_node* question_operands(a_question* question) {
  an_expr_node* condition = make_node_from_operand(&question->condition);
  an_expr_node* second = make_node_from_operand(&question->second);
  an_expr_node* third = make_node_from_operand(&question->third);
  condition->next = second;
  second->next = third;
  third->next = nullptr;
  return condition;
}

static void make_glvalue_result(a_question* question, a_type* type, an_operand* result) {
  if (question->is_known) {
    *result = question->is_true ? question->second : question->third;
    return;
  }
  an_expr_node* operands = question_operands(question);
  an_expr_node* node = make_lvalue_operator_node(eok_question, type, operands);
  copy_node_value_category(operands->next, node);
  make_glvalue_expression_operand(node, result);
}

// A constant condition selects an operand; where a constant is due it must be
// one.
static void do_question_operation(a_question* question, a_type* type, an_operand* result) {
  if (question->is_known) {
    an_operand* taken = question->is_true ? &question->second : &question->third;
    an_operand* dropped = question->is_true ? &question->third : &question->second;
    bool is_constant = is_constant_operand(taken);
    change_ref_kinds(dropped->ref_entries, srk_reference);
    if (!is_constant && in_constant_expr_kind() && value_is_evaluated())
      error_and_make_error_operand(ec_constant_value_not_known, &question->place.position, result);
    else
      *result = *taken;
    return;
  }
  if (in_constant_expr_kind() && value_is_evaluated())
    error_and_make_error_operand(ec_constant_value_not_known, &question->place.position, result);
  else
    make_expression_operand(make_operator_node(eok_question, type, question_operands(question)),
                            result);
}

static bool any_error_operand(const a_question* question) {
  return is_error_operand(&question->condition) || is_error_operand(&question->second) ||
         is_error_operand(&question->third);
}

static void make_error_question(a_question* question, an_operand* result) {
  operand_will_not_be_used_because_of_error(&question->condition);
  make_error_result(&question->second, &question->third, result);
}

static bool is_dependent_question(const a_question* question) {
  return in_cplusplus_mode() && (is_template_dependent_type(question->second.type) ||
                                 is_template_dependent_type(question->third.type));
}

static void question_of_values(a_question* question, an_operand* result) {
  do_operand_transformations(&question->second, ot_all);
  do_operand_transformations(&question->third, ot_all);
  a_type* type = any_error_operand(question) ? nullptr : convert_branches(question);
  if (!type || any_error_operand(question))
    make_error_question(question, result);
  else
    do_question_operation(question, type, result);
}

static void finish_question(a_question* question, an_operand* result) {
  if (any_error_operand(question)) {
    make_error_question(question, result);
    return;
  }
  if (is_dependent_question(question)) {
    template_question_operation(&question->condition, &question->second, &question->third,
                                &question->place.position, result);
    return;
  }
  bool with_classes = in_cplusplus_mode() && (is_class_struct_union_type(question->second.type) ||
                                              is_class_struct_union_type(question->third.type));
  if (with_classes &&
      f_skip_typerefs(question->second.type) != f_skip_typerefs(question->third.type)) {
    convert_class_branch(question);
    if (operator_is_overloaded(&question->place, &question->second, &question->third, result))
      return;
  }
  a_type* glvalue_type = type_of_glvalue_result(question);
  if (glvalue_type)
    make_glvalue_result(question, glvalue_type, result);
  else
    question_of_values(question, result);
}

void scan_question_operator(an_operand* operand) {
  check_stack_limit();
  a_question question;
  a_source_position start = operand->position;
  question.condition = *operand;
  question.place = place_of_curr_token();
  get_token();
  analyse_condition(&question);
  an_expr_stack_flags outer = expr_stack->flags;
  scan_second_operand(&question, &outer);
  if (required_token(tok_colon, ec_exp_colon)) {
    scan_third_operand(&question, &outer);
  } else {
    question.end = pos_curr_token;
    make_error_operand(&question.third);
  }
  end_branches(&outer);
  finish_question(&question, operand);
  set_operator_positions(operand, &start, &question.place.position, &question.end);
}
