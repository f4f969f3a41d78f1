// Calls of builtin functions that have a syntax or a meaning of their own: their
// arguments aren't evaluated, and the result may be known at once.

#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "sys_predef.h"
#include "target.h"

// ---- Arguments ----

static void begin_builtin_call() {
  get_token();
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
}

static void end_builtin_call(a_source_position* end) {
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rparen);
  *end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

static void scan_argument(an_operand* argument) {
  scan_expr(argument, nullptr, lev_none, sef_no_comma);
  finish_undefined_symbol_operand(argument);
}

// Arguments beyond what the function takes.
static void scan_excess_arguments() {
  if (curr_token != tok_comma)
    return;
  expr_pos_error(ec_too_many_arguments, &pos_curr_token);
  while (loop_token(tok_comma)) {
    an_operand ignored;
    scan_argument(&ignored);
  }
}

static void scan_unevaluated_argument(bool is_lenient_constant, bool references_count,
                                      an_operand* argument) {
  an_expr_stack_entry entry;
  push_nested_expr_stack(ek_unevaluated, &entry);
  entry.flags.constant_context = is_lenient_constant;
  entry.flags.references_count = references_count;
  entry.flags.keep_side_effects = true;
  scan_argument(argument);
  if (is_lenient_constant) {
    do_operand_transformations(argument, ot_all);
    force_operand_to_constant_if_possible(argument);
  }
  pop_expr_stack();
}

// ---- __builtin_constant_p ----

static bool is_string_literal_pointer(const a_constant* constant) {
  return constant->kind == con_address && constant->value.address.base_kind == abk_constant &&
         constant->value.address.offset == 0;
}

static bool is_known_constant(const an_operand* argument) {
  const a_constant* constant = constant_of_operand(argument);
  if (!constant)
    return false;
  return constant->kind != con_address || is_string_literal_pointer(constant);
}

static bool in_file_scope() {
  return depth_innermost_function_scope < 0;
}

// Where no later pass can tell, what isn't known isn't constant.
static bool constant_p_is_settled() {
  return in_file_scope() || in_constant_expr_kind() || always_fold_calls_to_builtin_constant_p;
}

// The call stays for a later pass to decide.
static void keep_call(an_operand* function, an_operand* argument, an_operand* result) {
  do_operand_transformations(function, ot_all);
  a_type* type = prvalue_type(return_type_of(skip_typerefs(type_pointed_to(function->type))));
  change_ref_kinds(function->ref_entries, srk_reference);
  an_expr_node* callee = make_node_from_operand(function);
  callee->next = make_node_from_operand(argument);
  callee->next->next = nullptr;
  make_expression_operand(make_operator_node(eok_call, type, callee), result);
  rule_out_expr_kinds(rule_out_constant, result);
}

static void scan_constant_p(an_operand* function, an_operand* result) {
  an_operand argument;
  bool references_count = !always_fold_calls_to_builtin_constant_p && !in_file_scope();
  scan_unevaluated_argument(true, references_count, &argument);
  if (is_error_operand(&argument))
    make_error_operand(result);
  else if (is_known_constant(&argument))
    make_integer_constant_operand(1, ik_int, result);
  else if (constant_p_is_settled())
    make_integer_constant_operand(0, ik_int, result);
  else
    keep_call(function, &argument, result);
}

// ---- __builtin_choose_expr ----

static void scan_choice(bool is_chosen, an_operand* result) {
  if (is_chosen) {
    scan_argument(result);
    return;
  }
  an_operand ignored;
  scan_unevaluated_argument(false, false, &ignored);
}

static bool scan_condition_of_choice(bool* is_true) {
  an_operand condition;
  scan_argument(&condition);
  do_operand_transformations(&condition, ot_all);
  if (!check_integral_or_enum_operand(&condition))
    return false;
  const a_constant* constant = constant_of_operand(&condition);
  if (!constant || !constant_bool_value_known_at_compile_time(constant)) {
    error_in_operand(ec_expr_not_constant, &condition);
    return false;
  }
  *is_true = constant_bool_value(constant);
  return true;
}

// The operand chosen stands for the call as it is, an lvalue too.
static void scan_choose_expr(an_operand*, an_operand* result) {
  bool is_true = false;
  make_error_operand(result);
  bool is_good = scan_condition_of_choice(&is_true);
  for (bool is_second : {true, false}) {
    if (!loop_token(tok_comma)) {
      expr_pos_error(ec_too_few_arguments, &pos_curr_token);
      make_error_operand(result);
      return;
    }
    scan_choice(is_good && is_true == is_second, result);
  }
}

// ---- __builtin_classify_type ----

static bool classes_since(int version) {
  return gpp_mode && gnu_version >= version;
}

static int class_of_integer_type(const a_type* type) {
  if (classes_since(30400) && is_bool_type(type))
    return 4;
  return classes_since(30400) && is_enum_type(type) ? 3 : 1;
}

static int class_of_ptr_to_member_type(const a_type* type) {
  if (gnu_version < 30400)
    return 5;
  return is_function_type(pm_member_type(type)) ? 12 : 7;
}

static int class_of_type(const a_type* type) {
  switch (type_kind(type)) {
  case tk_void:
    return 0;
  case tk_integer:
    return class_of_integer_type(type);
  case tk_float:
    return 8;
  case tk_complex:
  case tk_imaginary:
    return 9;
  case tk_pointer:
    return is_pointer_type(type) ? 5 : 6;
  case tk_routine:
    return classes_since(30400) ? 10 : 5;
  case tk_array:
    return classes_since(30400) ? 14 : 5;
  case tk_class:
  case tk_struct:
    return 12;
  case tk_union:
    return 13;
  case tk_ptr_to_member:
    return class_of_ptr_to_member_type(type);
  default:
    return -1;
  }
}

static void scan_classify_type(an_operand*, an_operand* result) {
  an_operand argument;
  scan_unevaluated_argument(false, false, &argument);
  if (is_error_operand(&argument))
    make_error_operand(result);
  else
    make_integer_constant_operand(class_of_type(argument.type), ik_int, result);
}

// ---- __builtin_va_arg_pack, __builtin_va_arg_pack_len ----

static bool in_inline_function_with_ellipsis() {
  if (in_file_scope())
    return false;
  const a_routine* routine = scope_stack[depth_innermost_function_scope].routine;
  return routine && routine->is_inline && routine_type_has_ellipsis(routine->type);
}

static void scan_va_arg_pack(an_operand* function, an_operand* result) {
  if (!in_inline_function_with_ellipsis()) {
    error_and_make_error_operand(ec_bad_function_for_gnu_va_arg_pack, &function->position, result);
    return;
  }
  refuse_construct("__builtin_va_arg_pack", &function->position);
  make_error_operand(result);
}

// ---- Comparisons that raise no exception (C99 7.12.14) ----

// On this target they are the operators.
static void scan_comparison(a_token_kind token, an_operand* function, an_operand* result) {
  an_operand left, right;
  scan_argument(&left);
  do_operand_transformations(&left, ot_all);
  if (!loop_token(tok_comma)) {
    error_and_make_error_operand(ec_too_few_arguments, &pos_curr_token, result);
    return;
  }
  scan_argument(&right);
  do_operand_transformations(&right, ot_all);
  comparison_operation(token, &left, &right, &function->position, result);
}

static void scan_isgreater(an_operand* function, an_operand* result) {
  scan_comparison(tok_gt, function, result);
}

static void scan_isgreaterequal(an_operand* function, an_operand* result) {
  scan_comparison(tok_ge, function, result);
}

static void scan_isless(an_operand* function, an_operand* result) {
  scan_comparison(tok_lt, function, result);
}

static void scan_islessequal(an_operand* function, an_operand* result) {
  scan_comparison(tok_le, function, result);
}

// ---- __builtin_prefetch, __builtin_object_size ----

// The processor has no cache: the address is computed, and that is all.
static void scan_prefetch(an_operand*, an_operand* result) {
  scan_argument(result);
  do_operand_transformations(result, ot_all);
  for (int i = 0; i < 2 && loop_token(tok_comma); ++i) {
    an_operand ignored;
    scan_unevaluated_argument(true, false, &ignored);
  }
  cast_operand_to_void(result);
}

// No size is known: the greatest, or where the second argument asks for the
// least, 0.
static void scan_object_size(an_operand*, an_operand* result) {
  an_operand object, kind;
  scan_unevaluated_argument(false, false, &object);
  if (!loop_token(tok_comma)) {
    error_and_make_error_operand(ec_too_few_arguments, &pos_curr_token, result);
    return;
  }
  scan_unevaluated_argument(true, false, &kind);
  const a_constant* constant = constant_of_operand(&kind);
  bool asks_for_least =
      constant && constant->kind == con_integer && (constant->value.int_value & 2) != 0;
  make_size_operand(asks_for_least ? 0 : targ_size_t_max, result);
}

// ---- The table ----

struct a_special_builtin {
  a_builtin_code code;
  void (*scan)(an_operand* function, an_operand* result);
};

static constexpr a_special_builtin special_builtins[] = {
    {bc_classify_type, scan_classify_type},
    {bc_constant_p, scan_constant_p},
    {bc_va_arg_pack, scan_va_arg_pack},
    {bc_va_arg_pack_len, scan_va_arg_pack},
    {bc_choose_expr, scan_choose_expr},
    {bc_isgreater, scan_isgreater},
    {bc_isgreaterequal, scan_isgreaterequal},
    {bc_isless, scan_isless},
    {bc_islessequal, scan_islessequal},
    {bc_object_size, scan_object_size},
    {bc_prefetch, scan_prefetch},
    {bc_va_start, scan_va_start},
    {bc_va_arg, scan_va_arg},
    {bc_va_end, scan_va_end},
    {bc_va_copy, scan_va_copy},
};

static const a_special_builtin* special_builtin_of(const an_operand* function) {
  if (function->kind != ok_expression || function->variant.expr->kind != expr_routine)
    return nullptr;
  const a_routine* routine = function->variant.expr->variant.routine.ptr;
  int64_t code = builtin_code_of(routine);
  for (const a_special_builtin& builtin : special_builtins)
    if (builtin.code == code)
      return &builtin;
  return nullptr;
}

bool scan_special_builtin_call(an_operand* function) {
  const a_special_builtin* builtin = special_builtin_of(function);
  if (!builtin || !builtin_functions_enabled || expr_stack->kind == ek_pp)
    return false;
  an_operand callee = *function;
  a_source_position position = pos_curr_token, end;
  begin_builtin_call();
  builtin->scan(&callee, function);
  scan_excess_arguments();
  end_builtin_call(&end);
  change_ref_kinds(callee.ref_entries, srk_reference);
  set_operator_positions(function, &callee.position, &position, &end);
  return true;
}
