// Binary operators (C99 6.5.5 to 6.5.15, 6.5.17).

#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"
#include "target.h"

// ---- Common parts of operators ----

void make_error_result(an_operand* left, an_operand* right, an_operand* result) {
  operand_will_not_be_used_because_of_error(left);
  if (right)
    operand_will_not_be_used_because_of_error(right);
  make_error_operand(result);
}

a_fold_context fold_context_of_operator(const a_source_position* position) {
  return {in_constant_expr_kind(), value_is_evaluated(), position, false, false};
}

bool is_refused_in_constant(const a_source_position* position) {
  if (!expr_stack->flags.strict_constant)
    return false;
  expr_pos_error(ec_bad_constant_operator, position);
  return true;
}

// Whether the operand alone makes it worth while to look for a function.
static bool may_have_operator_functions(const an_operand* operand, bool is_first) {
  return operand->kind == ok_error || operand->kind == ok_braced_list ||
         (is_first ? is_overloadable_first_operand_type(operand->type)
                   : is_overloadable_type(operand->type));
}

static bool search_operator(const an_operator_place* place, bool is_postfix, an_operand* left,
                            an_operand* right, an_operand* result) {
  if (in_C_mode() || !(may_have_operator_functions(left, true) ||
                       (right && may_have_operator_functions(right, false))))
    return false;
  an_operator_search search = {};
  search.kind = opname_kind_for_token[place->token];
  search.is_postfix = is_postfix;
  search.must_be_member = search.kind == opn_assign || search.kind == opn_subscript ||
                          search.kind == opn_call || search.kind == opn_arrow;
  search.position = place->position;
  search.sequence_number = place->sequence_number;
  return check_for_operator_overloading(&search, left, right, result);
}

bool operator_is_overloaded(const an_operator_place* place, an_operand* left, an_operand* right,
                            an_operand* result) {
  return search_operator(place, false, left, right, result);
}

bool postfix_operator_is_overloaded(const an_operator_place* place, an_operand* operand,
                                    an_operand* result) {
  return search_operator(place, true, operand, nullptr, result);
}

// ---- Folding and building ----

static void build_binary_result_operand(an_expr_operator_kind op, an_operand* left,
                                        an_operand* right, a_type* type, an_operand* result) {
  an_expr_node* first = make_node_from_operand(left);
  an_expr_node* second = make_node_from_operand(right);
  first->next = second;
  second->next = nullptr;
  an_expr_node* node = make_operator_node(op, type, first);
  if (op == eok_pointer_add)
    node->variant.operation.operands_reversed = !is_pointer_type(first->type);
  if (op == eok_comma)
    set_expr_result_not_used(first);
  make_expression_operand(node, result);
}

// The result when the operands are constants. False: the operation stays.
static bool fold_binary_operation(an_expr_operator_kind op, const an_operand* left,
                                  const an_operand* right, a_type* type,
                                  const a_source_position* position, an_operand* result) {
  if (!is_constant_operand(left) || !is_constant_operand(right))
    return false;
  a_constant constant;
  a_fold_context context = fold_context_of_operator(position);
  clear_constant(&constant, con_error);
  binary_operation(op, &left->variant.constant, &right->variant.constant, type, &constant,
                   &context);
  if (context.not_folded)
    return false;
  make_constant_operand(&constant, result);
  return true;
}

// GNU C compares and subtracts the addresses of known objects early.
static bool is_early_address_operation(an_expr_operator_kind op) {
  return gcc_mode && (op == eok_eq || op == eok_ne || op == eok_pointer_difference);
}

static void force_operands_to_constants(an_expr_operator_kind op, an_operand* left,
                                        an_operand* right) {
  if (expr_stack->flags.constant_context || is_early_address_operation(op)) {
    force_operand_to_constant_if_possible(left);
    force_operand_to_constant_if_possible(right);
  }
}

void do_binary_operation(an_expr_operator_kind op, an_operand* left, an_operand* right,
                         a_type* type, const a_source_position* position, an_operand* result) {
  if (is_error_operand(left) || is_error_operand(right) || is_error_type(type)) {
    make_error_result(left, right, result);
    return;
  }
  uint8_t rule_out = left->rule_out | right->rule_out;
  force_operands_to_constants(op, left, right);
  if (!fold_binary_operation(op, left, right, type, position, result)) {
    if (in_constant_expr_kind() && value_is_evaluated() && !expr_stack->flags.unevaluated_operand) {
      error_and_make_error_operand(ec_expr_not_constant, position, result);
      return;
    }
    build_binary_result_operand(op, left, right, type, result);
  }
  result->rule_out |= rule_out;
}

// ---- Value checks ----

void warn_about_zero_divisor(a_token_kind token, const an_operand* right,
                             const a_source_position* position) {
  const a_constant* divisor = constant_of_operand(right);
  if (!value_is_evaluated() || !divisor || divisor->kind != con_integer ||
      divisor->value.int_value != 0)
    return;
  bool is_division = token == tok_divide || token == tok_divide_assign;
  expr_pos_warning(is_division ? ec_divide_by_zero : ec_mod_by_zero, position);
}

void warn_about_shift_count(const an_operand* right, a_type* left_type, a_type* full_left_type) {
  const a_constant* count = constant_of_operand(right);
  if (!value_is_evaluated() || !count || count->kind != con_integer)
    return;
  an_error_code code = 0;
  check_shift_count(count, left_type, full_left_type, &code);
  if (code != 0)
    expr_pos_warning(code, &right->position);
}

// ---- Arithmetic ----

static bool is_imaginary_operation(const an_operand* left, const an_operand* right) {
  auto is_simple = [](const an_operand* operand) {
    return is_imaginary_type(operand->type) ||
           (!is_complex_type(operand->type) && is_arithmetic_or_enum_type(operand->type));
  };
  return is_simple(left) && is_simple(right) &&
         (is_imaginary_type(left->type) || is_imaginary_type(right->type));
}

// A real operand stays real beside an imaginary one: the product and the
// quotient of both is imaginary, that of two imaginary ones real, and a sum has
// each as a part (C99 G.5). Gives the operator and returns the result's type.
static a_type* determine_imaginary_operation_type(an_operand* left, an_operand* right,
                                                  an_expr_operator_kind* op) {
  a_float_kind kind =
      skip_typerefs(determine_arithmetic_conversions(left, right))->variant.float_kind;
  bool left_is_imaginary = is_imaginary_type(left->type);
  bool both_imaginary = left_is_imaginary && is_imaginary_type(right->type);
  for (an_operand* operand : {left, right})
    cast_operand(is_imaginary_type(operand->type) ? imaginary_type(kind) : float_type(kind),
                 operand, true);
  bool is_sum = *op == eok_add || *op == eok_subtract;
  if (both_imaginary && !is_sum) {
    *op = *op == eok_multiply ? eok_imag_multiply : eok_imag_divide;
    return float_type(kind);
  }
  if (both_imaginary || !is_sum)
    return imaginary_type(kind);
  if (*op == eok_add)
    *op = left_is_imaginary ? eok_imag_plus_real : eok_real_plus_imag;
  else
    *op = left_is_imaginary ? eok_imag_minus_real : eok_real_minus_imag;
  return complex_type(kind);
}

static bool has_imaginary_form(an_expr_operator_kind op) {
  return op == eok_add || op == eok_subtract || op == eok_multiply || op == eok_divide;
}

static void arithmetic_operation(a_token_kind token, an_operand* left, an_operand* right,
                                 const a_source_position* position, an_operand* result) {
  bool takes_floating = token == tok_star || token == tok_divide || token == tok_plus ||
                        token == tok_minus || token == tok_min || token == tok_max;
  bool good = takes_floating ? check_arithmetic_or_enum_operand(left)
                             : check_integral_or_enum_operand(left);
  good &= takes_floating ? check_arithmetic_or_enum_operand(right)
                         : check_integral_or_enum_operand(right);
  if (!good) {
    make_error_result(left, right, result);
    return;
  }
  if (token == tok_ampersand || token == tok_or || token == tok_excl_or) {
    misra_check_bitwise_operand(left);
    misra_check_bitwise_operand(right);
  }
  an_expr_operator_kind op = which_binary_operator(token);
  a_type* type;
  if (has_imaginary_form(op) && is_imaginary_operation(left, right)) {
    type = determine_imaginary_operation_type(left, right, &op);
  } else {
    type = determine_arithmetic_conversions(left, right);
    change_binary_operand_types(type, left, right);
  }
  if ((token == tok_divide || token == tok_remainder) && !is_constant_operand(left))
    warn_about_zero_divisor(token, right, &right->position);
  do_binary_operation(op, left, right, type, position, result);
}

// The folder reports the count of a constant left operand, which for it has the
// type that the shift is done in.
static bool folder_reports_shift_count(const an_operand* left, const an_operand* right) {
  const a_constant* count = constant_of_operand(right);
  an_error_code code = 0;
  if (is_constant_operand(left) && count)
    check_shift_count(count, left->type, &code);
  return code != 0;
}

static void shift_operation(a_token_kind token, an_operand* left, an_operand* right,
                            const a_source_position* position, an_operand* result) {
  bool good = check_integral_or_enum_operand(left);
  good &= check_integral_or_enum_operand(right);
  if (!good) {
    make_error_result(left, right, result);
    return;
  }
  misra_check_bitwise_operand(left);
  a_type* full_left_type = left->type;
  promote_operand(left);
  promote_operand(right);
  if (!folder_reports_shift_count(left, right))
    warn_about_shift_count(right, left->type, full_left_type);
  do_binary_operation(which_binary_operator(token), left, right, left->type, position, result);
}

// ---- Pointer arithmetic (C99 6.5.6) ----

// The object that the pointer steps over is of known size; GNU C gives void and
// functions the size 1.
bool check_pointer_arithmetic_operand(an_operand* operand) {
  a_type* pointed_to = type_pointed_to(operand->type);
  bool is_nonobject = is_void_type(pointed_to) || is_function_type(pointed_to);
  if (is_nonobject ? strict_ansi_mode || in_cplusplus_mode() : is_incomplete_type(pointed_to)) {
    error_in_operand(ec_expr_not_object_pointer, operand);
    return false;
  }
  if (is_nonobject && !gnu_mode)
    expr_pos_warning(ec_nonobject_pointer_arithmetic, &operand->position);
  return true;
}

static void pointer_plus_or_minus_integer(a_token_kind token, an_operand* left, an_operand* right,
                                          const a_source_position* position, an_operand* result) {
  an_operand* pointer = is_pointer_type(left->type) ? left : right;
  an_operand* integer = pointer == left ? right : left;
  misra_check_pointer_arithmetic(position);
  bool good = check_integral_or_enum_operand(integer);
  good &= !is_error_operand(pointer) && check_pointer_arithmetic_operand(pointer);
  if (!good) {
    make_error_result(left, right, result);
    return;
  }
  promote_operand(integer);
  do_binary_operation(token == tok_plus ? eok_pointer_add : eok_pointer_subtract, left, right,
                      pointer->type, position, result);
}

static void pointer_difference(an_operand* left, an_operand* right,
                               const a_source_position* position, an_operand* result) {
  misra_check_pointer_arithmetic(position);
  bool good = check_pointer_arithmetic_operand(left);
  good &= check_pointer_arithmetic_operand(right);
  if (!good) {
    make_error_result(left, right, result);
    return;
  }
  a_type* left_object = make_unqualified_type(type_pointed_to(left->type));
  a_type* right_object = make_unqualified_type(type_pointed_to(right->type));
  if (!types_are_compatible(left_object, right_object)) {
    bool same_size = size_of_type(left_object) == size_of_type(right_object);
    bool is_error = strict_ansi_mode || in_cplusplus_mode() || !same_size;
    an_error_severity severity = is_error ? es_error : es_warning;
    if (expr_diagnostic_should_be_issued(severity, ec_nonstandard_ptr_minus_ptr, position))
      pos_ty2_diagnostic(severity, ec_nonstandard_ptr_minus_ptr, position, left->type, right->type);
    if (severity == es_error) {
      make_error_result(left, right, result);
      return;
    }
  }
  do_binary_operation(eok_pointer_difference, left, right, ptrdiff_t_type(), position, result);
}

static void additive_operation(a_token_kind token, an_operand* left, an_operand* right,
                               const a_source_position* position, an_operand* result) {
  bool left_is_pointer = is_pointer_type(left->type);
  bool right_is_pointer = is_pointer_type(right->type);
  if (left_is_pointer && right_is_pointer && token == tok_minus)
    pointer_difference(left, right, position, result);
  else if (left_is_pointer && !is_error_operand(right))
    pointer_plus_or_minus_integer(token, left, right, position, result);
  else if (right_is_pointer && token == tok_plus && !is_error_operand(left))
    pointer_plus_or_minus_integer(token, left, right, position, result);
  else
    arithmetic_operation(token, left, right, position, result);
}

// ---- The common frame ----

static bool is_comparison_level(int level) {
  return level == lev_relational || level == lev_equality;
}

// A template argument of the old kind is computed from integers alone.
static void check_template_arg_operand(const an_operand* operand) {
  if (expr_stack->kind == ek_template_arg && expr_stack->flags.strict_constant &&
      !is_error_operand(operand) && !is_integral_or_enum_type(operand->type) &&
      !is_template_param_type(operand->type))
    expr_pos_error(ec_non_integral_operation_in_templ_arg, &operand->position);
}

static void builtin_binary_operation(const an_operator_place* place, an_operand* left,
                                     an_operand* right, an_operand* result) {
  a_token_kind token = place->token;
  check_template_arg_operand(left);
  check_template_arg_operand(right);
  do_operand_transformations(left, ot_all);
  do_operand_transformations(right, ot_all);
  if (token == tok_plus || token == tok_minus)
    additive_operation(token, left, right, &place->position, result);
  else if (token == tok_shift_left || token == tok_shift_right)
    shift_operation(token, left, right, &place->position, result);
  else if (is_comparison_level(level_of_token(token)))
    comparison_operation(token, left, right, &place->position, result);
  else
    arithmetic_operation(token, left, right, &place->position, result);
}

void scan_binary_operator(an_operand* operand) {
  if (level_of_token(curr_token) == lev_ptr_to_member) {
    scan_ptr_to_member_operator(operand);
    return;
  }
  an_operator_place place = place_of_curr_token();
  an_operand left = *operand, right;
  bool saved_gcc_equality = expr_stack->flags.gcc_equality_operands;
  int level = level_of_token(place.token);
  if (gcc_mode && level == lev_equality && expr_stack->kind == ek_strict_constant)
    expr_stack->flags.gcc_equality_operands = true;
  get_token();
  scan_expr(&right, nullptr, level, 0);
  expr_stack->flags.gcc_equality_operands = saved_gcc_equality;
  a_source_position end = right.end_position;
  if (!operator_is_overloaded(&place, &left, &right, operand))
    builtin_binary_operation(&place, &left, &right, operand);
  set_operator_positions(operand, &left.position, &place.position, &end);
}

// ---- && and || (C99 6.5.13, 6.5.14) ----

// Whether the left operand alone gives the result.
static bool left_decides(an_expr_operator_kind op, const an_operand* left) {
  const a_constant* constant = constant_of_operand(left);
  return constant && constant_bool_value_known_at_compile_time(constant) &&
         constant_bool_value(constant) == (op == eok_lor);
}

static void make_truth_operand(bool value, an_operand* result) {
  make_integer_constant_operand(value, ik_int, result);
  if (in_cplusplus_mode())
    cast_operand(bool_type(), result, true);
}

static void logical_result(an_expr_operator_kind op, an_operand* left, an_operand* right,
                           const a_source_position* position, an_operand* result) {
  bool both_good = !is_error_operand(left) && !is_error_operand(right);
  if (!both_good || !left_decides(op, left)) {
    do_binary_operation(op, left, right, boolean_result_type(), position, result);
    return;
  }
  change_ref_kinds(right->ref_entries, srk_reference);
  make_truth_operand(op == eok_lor, result);
}

// An operator function takes the operands as they are, and both of them.
static bool may_be_user_logical_operator(a_token_kind token) {
  return in_cplusplus_mode() && any_opname_function_symbol(opname_kind_for_token[token]);
}

static void begin_logical_right_operand(an_expr_operator_kind op, const an_operand* left) {
  if (left_decides(op, left))
    expr_stack->flags.value_is_evaluated = false;
  expr_stack->flags.branch_context = true;
}

static void restore_branch_flags(const an_expr_stack_flags* saved) {
  expr_stack->flags.value_is_evaluated = saved->value_is_evaluated;
  expr_stack->flags.branch_context = saved->branch_context;
}

void scan_logical_operator(an_operand* operand) {
  an_operator_place place = place_of_curr_token();
  an_expr_operator_kind op = which_binary_operator(place.token);
  bool may_be_user_operator = may_be_user_logical_operator(place.token);
  an_operand left = *operand, right;
  an_expr_stack_flags saved = expr_stack->flags;
  if (!may_be_user_operator) {
    check_boolean_controlling_expr(&left);
    flush_operand_ref_entries(&left);
    if (expr_stack->flags.constant_context)
      force_operand_to_constant_if_possible(&left);
    begin_logical_right_operand(op, &left);
  }
  get_token();
  scan_expr(&right, nullptr, level_of_token(place.token), 0);
  a_source_position end = right.end_position;
  if (!may_be_user_operator || !operator_is_overloaded(&place, &left, &right, operand)) {
    if (may_be_user_operator)
      check_boolean_controlling_expr(&left);
    misra_check_logical_operands(op, &left, &right);
    check_boolean_controlling_expr(&right);
    restore_branch_flags(&saved);
    logical_result(op, &left, &right, &place.position, operand);
  }
  set_operator_positions(operand, &left.position, &place.position, &end);
}

// ---- Comma (C99 6.5.17) ----

// Nobody sees the object of a class that a discarded call returns.
static void discard_left_operand(an_operand* left) {
  flush_operand_ref_entries(left);
  do_void_operand_transformations(left, false);
  check_for_no_effect(left);
  if (left->kind == ok_expression && is_operation_node(left->variant.expr, eok_call) &&
      is_class_struct_union_type(left->type))
    left->variant.expr->is_discarded_call = true;
}

static bool has_side_effects(const an_operand* operand) {
  return operand->kind == ok_expression && node_has_side_effects(operand->variant.expr);
}

static void comma_result(an_operand* left, an_operand* right, const a_source_position* position,
                         an_operand* result) {
  bool is_unevaluated_c99 = in_C_mode() && std_version >= 199901 && !value_is_evaluated();
  if (expr_stack->flags.strict_constant && !is_unevaluated_c99) {
    error_and_make_error_operand(ec_bad_constant_operator, position, result);
  } else if (is_error_operand(left) || is_error_operand(right)) {
    make_error_result(left, right, result);
  } else if (constexpr_enabled && in_constant_expr_kind() && is_constant_operand(right) &&
             !has_side_effects(left)) {
    *result = *right;
  } else {
    bool is_lvalue = is_glvalue_operand(right) || right->state == os_function_designator;
    build_binary_result_operand(eok_comma, left, right, right->type, result);
    if (is_lvalue && result->kind == ok_expression) {
      copy_node_value_category(right->variant.expr, result->variant.expr);
      set_glvalue_operand_state(result);
    }
  }
}

void scan_comma_operator(an_operand* operand) {
  an_operator_place place = place_of_curr_token();
  an_operand left = *operand, right;
  misra_check_comma(&place.position);
  bool may_be_user_operator = may_be_user_logical_operator(tok_comma);
  if (!may_be_user_operator)
    discard_left_operand(&left);
  get_token();
  scan_expr(&right, nullptr, lev_comma, 0);
  a_source_position end = right.end_position;
  if (!may_be_user_operator || !operator_is_overloaded(&place, &left, &right, operand)) {
    if (may_be_user_operator)
      discard_left_operand(&left);
    do_operand_transformations(&right, in_C_mode() ? ot_all : ot_keep_glvalue | ot_keep_array);
    comma_result(&left, &right, &place.position, operand);
    rule_out_expr_kinds(rule_out_constant, operand);
  }
  set_operator_positions(operand, &left.position, &place.position, &end);
}
