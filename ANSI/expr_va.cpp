// Variable arguments by builtin functions, as <stdarg.h> has them (C99 7.15). A
// list is a pointer to the next argument; the arguments lie one behind the other,
// in slots of a multiple of 4 bytes.

#include "declarator.h"
#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "target.h"

// ---- Parts of the forms ----

static void scan_plain_argument(an_operand* argument) {
  scan_expr(argument, nullptr, lev_none, sef_no_comma);
  finish_undefined_symbol_operand(argument);
}

static bool is_list_type(const a_type* type) {
  return is_pointer_type(type) && is_character_type(type_pointed_to(type));
}

// A list that the form changes; an error operand behind a message.
static bool scan_list(an_error_code code, unsigned ref_kinds, an_operand* list) {
  scan_plain_argument(list);
  do_operand_transformations(list, ot_keep_glvalue);
  if (is_error_operand(list))
    return false;
  if (!is_glvalue_operand(list) || !is_list_type(list->type)) {
    error_in_operand(code, list);
    return false;
  }
  change_ref_kinds(list->ref_entries, ref_kinds);
  return true;
}

static bool comma_follows(an_operand* result) {
  if (loop_token(tok_comma))
    return true;
  error_and_make_error_operand(ec_too_few_arguments, &pos_curr_token, result);
  return false;
}

static an_expr_node* slot_size_node(a_type* type) {
  constexpr uint64_t slot = 4;
  an_operand size;
  make_size_operand((size_of_type(type) + slot - 1) / slot * slot, &size);
  return make_node_from_operand(&size);
}

// What changes a list has no value.
static void make_list_assignment(an_operand* list, an_expr_node* value, an_operand* result) {
  an_expr_node* node = make_assignment_expr(list->variant.expr, eok_assign, value);
  make_expression_operand(node, result);
  rule_out_expr_kinds(rule_out_constant, result);
  cast_operand_to_void(result);
}

// ---- va_start ----

static const a_routine* innermost_routine() {
  return depth_innermost_function_scope < 0 ? nullptr
                                            : scope_stack[depth_innermost_function_scope].routine;
}

static void check_place_of_va_start(const an_operand* function) {
  const a_routine* routine = innermost_routine();
  if (routine && !routine_type_has_ellipsis(routine->type))
    expr_pos_error(ec_va_start_requires_ellipsis_function, &function->position);
}

void scan_va_start(an_operand* function, an_operand* result) {
  an_operand list, last;
  check_place_of_va_start(function);
  bool good = scan_list(ec_bad_va_arg, srk_modified, &list);
  if (!comma_follows(result))
    return;
  scan_plain_argument(&last);
  a_type* type = last.type;
  if (!good || !take_address_of_parameter(&last)) {
    make_error_operand(result);
    return;
  }
  an_expr_node* address = cast_node(prvalue_type(list.type), make_node_from_operand(&last));
  address->next = slot_size_node(type);
  make_list_assignment(&list, make_operator_node(eok_pointer_add, address->type, address), result);
}

// ---- va_arg ----

// A type that an argument of `...` never has, since it is promoted.
static void check_promotion(a_type* type, const a_source_position* position) {
  an_operand argument;
  make_dummy_lvalue_operand(type, &argument);
  arg_default_promote_operand(&argument, false);
  if (!is_error_operand(&argument) &&
      !f_types_are_compatible(prvalue_type(type), argument.type, tcf_none) &&
      expr_diagnostic_should_be_issued(es_warning, ec_va_arg_would_have_been_promoted, position))
    pos_ty_warning(ec_va_arg_would_have_been_promoted, position, type);
}

static bool check_argument_type(a_type* type, const a_source_position* position) {
  if (is_error_type(type))
    return false;
  if (is_incomplete_type(type) || is_function_type(type)) {
    expr_pos_error(ec_incomplete_type_not_allowed, position);
    return false;
  }
  if (!is_array_type(type))
    check_promotion(type, position);
  return true;
}

void scan_va_arg(an_operand*, an_operand* result) {
  an_operand list;
  bool good = scan_list(ec_bad_va_arg, srk_value_read | srk_modified, &list);
  if (!comma_follows(result))
    return;
  a_source_position position = pos_curr_token;
  a_type* type = type_name();
  if (!check_argument_type(type, &position) || !good) {
    make_error_operand(result);
    return;
  }
  an_expr_node* next =
      make_assignment_expr(list.variant.expr, eok_pointer_add_assign, slot_size_node(type));
  next->next = slot_size_node(type);
  an_expr_node* argument = make_operator_node(eok_pointer_subtract, next->type, next);
  make_expression_operand(cast_node(make_pointer_type(type), argument), result);
  rule_out_expr_kinds(rule_out_constant, result);
  do_indirection(result);
  if (!va_arg_returns_lvalue && !is_array_type(type))
    conv_glvalue_to_prvalue(result);
}

// ---- va_end, va_copy ----

void scan_va_end(an_operand*, an_operand* result) {
  if (!scan_list(ec_bad_va_end, srk_value_read, result))
    return;
  cast_operand_to_void(result);
}

void scan_va_copy(an_operand*, an_operand* result) {
  an_operand to, from;
  bool good = scan_list(ec_bad_va_copy, srk_modified, &to);
  if (!comma_follows(result))
    return;
  scan_plain_argument(&from);
  do_operand_transformations(&from, ot_all);
  if (!is_error_operand(&from) && !is_list_type(from.type))
    error_in_operand(ec_bad_va_copy, &from);
  if (!good || is_error_operand(&from)) {
    make_error_operand(result);
    return;
  }
  make_list_assignment(&to, cast_node(prvalue_type(to.type), make_node_from_operand(&from)),
                       result);
}
