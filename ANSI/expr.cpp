// The entry points of the parser into expressions. Each opens a full
// expression of its kind, scans it, and finishes it as its context asks.

#include "const_ints.h"
#include "decl_inits.h"
#include "declarator.h"
#include "expr_int.h"
#include "il.h"
#include "il_alloc.h"
#include "lambda.h"
#include "mode_words.h"
#include "overload.h"
#include "statements.h"
#include "target.h"

// ---- Expressions of statements ----

static an_expr_node* finish_full_expression(an_operand* operand) {
  return wrap_up_full_expression(make_node_from_operand(operand));
}

static void check_integer_controlling_expr(an_operand* operand) {
  if (is_class_struct_union_type(operand->type))
    try_to_convert_class_operand_to_builtin_type(operand,
                                                 bts_integral | bts_enum | bts_scoped_enum);
  do_operand_transformations(operand, ot_all);
  check_integral_or_enum_operand(operand);
  promote_operand(operand);
}

an_expr_node* scan_integer_expression() {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  scan_expr(&operand, nullptr, lev_none, sef_controlling_expression);
  check_integer_controlling_expr(&operand);
  an_expr_node* node = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return node;
}

an_expr_node* scan_boolean_controlling_expression() {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  scan_expr(&operand, nullptr, lev_none, sef_controlling_expression);
  // `if (a = 0)` was hardly meant.
  if (operand.kind == ok_expression && !operand.flags.parenthesized &&
      is_operation_node(operand.variant.expr, eok_assign) &&
      operand.variant.expr->variant.operation.operands->next->kind == expr_constant)
    expr_pos_warning(ec_assign_where_compare_meant, &operand.operator_position);
  check_boolean_controlling_expr(&operand);
  an_expr_node* node = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return node;
}

// The value of a variable declared in a condition.
an_expr_node* make_condition_value_expression(a_variable* variable, bool is_switch) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  a_ref_entry* ref =
      make_ref_entry(srk_reference, variable->source_corresp.symbol, &pos_curr_token);
  make_lvalue_variable_operand(variable, ref, &operand);
  if (is_switch) {
    check_integer_controlling_expr(&operand);
  } else {
    check_boolean_controlling_expr(&operand);
    cast_operand(boolean_result_type(), &operand, true);
  }
  an_expr_node* node = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return node;
}

// An operation that does nothing but yield a value, which nobody takes.
static bool has_no_effect(const an_operand* operand) {
  if (is_error_operand(operand) || is_void_type(operand->type))
    return false;
  if (operand->kind == ok_constant)
    return true;
  if (operand->kind != ok_expression)
    return false;
  // What stands left of a comma has been looked at.
  an_expr_node* node = operand->variant.expr;
  while (is_operation_node(node, eok_comma))
    node = node->variant.operation.operands->next;
  return !node_has_side_effects(node) && !node->is_volatile_access;
}

void check_for_no_effect(const an_operand* operand) {
  if (has_no_effect(operand) && value_is_evaluated())
    expr_pos_warning(ec_expr_has_no_effect, &operand->position);
}

an_expr_node* scan_void_expression() {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  scan_expr(&operand, nullptr, lev_none, sef_result_is_discarded);
  do_void_operand_transformations(&operand, false);
  check_for_no_effect(&operand);
  an_expr_node* node = finish_full_expression(&operand);
  set_expr_result_not_used(node);
  end_full_expression(&full, &operand);
  return node;
}

// The last expression of a statement expression yields its value, as an object
// of the function's result type would (but for arrays and functions, which
// decay).
static an_expr_node* finish_value_of_statement_expression(an_operand* operand) {
  do_operand_transformations(operand, ot_all);
  if (!is_error_operand(operand) && is_variably_modified_type(operand->type) &&
      is_vla_type(operand->type))
    error_in_operand(ec_statement_expr_with_vla_type, operand);
  return finish_full_expression(operand);
}

an_expr_node* scan_expression_of_statement(bool is_extension, bool* keeps_value) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  uint32_t flags = sef_result_is_discarded;
  if (is_extension)
    flags |= sef_as_extension;
  scan_expr(&operand, nullptr, lev_none, flags);
  an_expr_node* node;
  *keeps_value = is_last_in_statement_expression() && !is_error_operand(&operand) &&
                 !is_void_type(operand.type);
  if (*keeps_value) {
    node = finish_value_of_statement_expression(&operand);
  } else {
    do_void_operand_transformations(&operand, false);
    check_for_no_effect(&operand);
    node = finish_full_expression(&operand);
    set_expr_result_not_used(node);
  }
  end_full_expression(&full, &operand);
  return node;
}

an_expr_node* scan_typed_expression(a_type* type, an_error_code code) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  scan_expr(&operand, nullptr, lev_none, 0);
  prep_initializer_operand(&operand, type, code);
  an_expr_node* node = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return node;
}

static void check_asm_object(an_operand* operand, bool is_output) {
  do_operand_transformations(operand, ot_keep_glvalue | ot_keep_array);
  if (is_error_operand(operand))
    return;
  if (is_output && (is_array_type(operand->type) || check_modifiable_lvalue_operand(operand)))
    change_ref_kinds(operand->ref_entries, srk_modified);
  else if (!is_output && is_glvalue_operand(operand))
    change_ref_kinds(operand->ref_entries, srk_value_read);
  else if (!is_output)
    error_in_operand(ec_expr_not_an_lvalue, operand);
}

an_expr_node* scan_asm_operand_expression(bool is_output, bool needs_object) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  scan_expr(&operand, nullptr, lev_none, 0);
  if (needs_object)
    check_asm_object(&operand, is_output);
  else
    do_operand_transformations(&operand, ot_all);
  an_expr_node* node = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return node;
}

// ---- return ----

static const a_variable* automatic_variable_of(const an_expr_node* object) {
  while (object->kind == expr_operation) {
    if (object->variant.operation.op != eok_dot_field)
      return nullptr;
    object = object->variant.operation.operands;
  }
  if (object->kind != expr_variable || !object->is_lvalue)
    return nullptr;
  const a_variable* variable = object->variant.variable.ptr;
  return variable->storage_kind >= sc_auto ? variable : nullptr;
}

static void warn_about_local_address(const an_operand* operand) {
  if (operand->kind != ok_expression)
    return;
  const an_expr_node* node = operand->variant.expr;
  while (is_cast_operation_node(node) && is_pointer_type(node->type))
    node = node->variant.operation.operands;
  if (!is_operation_node(node, eok_address_of) && !is_operation_node(node, eok_array_to_pointer))
    return;
  if (automatic_variable_of(node->variant.operation.operands))
    expr_pos_warning(ec_returning_ptr_to_local_variable, &operand->position);
}

// A list in braces gives no type (C++11 5.1.2 p4).
static an_expr_node* braced_list_for_deduced_type() {
  pos_error(ec_braced_list_for_implicit_lambda_type, &pos_curr_token);
  flush_until_matching_token();
  return error_node();
}

an_expr_node* scan_return_expression(a_type* type) {
  a_full_expression full;
  an_operand operand;
  if (in_cplusplus_mode() && curr_token == tok_lbrace && returns_deduced_type())
    return braced_list_for_deduced_type();
  begin_full_expression(ek_normal, &full);
  if (in_cplusplus_mode() && returns_deduced_type()) {
    scan_expr(&operand, nullptr, lev_none, 0);
    prep_initializer_operand(&operand, deduce_return_type(&operand), ec_bad_return_value_type);
  } else {
    scan_initializing_operand(type, ec_bad_return_value_type, 0, &operand);
  }
  warn_about_local_address(&operand);
  an_expr_node* node = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return node;
}

// ---- Constant expressions (C99 6.6) ----

static bool is_integral_constant(const an_operand* operand) {
  return operand->kind == ok_constant && operand->variant.constant.kind == con_integer &&
         is_integral_or_enum_type(operand->type);
}

void extract_constant_from_operand(an_operand* operand, a_constant* constant) {
  if (operand->kind == ok_expression)
    error_in_operand(ec_expr_not_constant, operand);
  if (is_constant_operand(operand)) {
    copy_constant(&operand->variant.constant, constant);
    return;
  }
  conv_to_error_operand(operand);
  clear_constant(constant, con_error);
  set_error_constant(constant);
}

// An address in the clothes of an integer is a constant, but has no value here.
static void extract_integral_constant(an_operand* operand, a_constant* constant) {
  if (is_constant_operand(operand) && !is_integral_constant(operand))
    error_in_operand(ec_expr_not_integral_constant, operand);
  extract_constant_from_operand(operand, constant);
}

// Only what folds at once is a constant.
static void finish_strict_constant_expression(an_operand* operand, a_constant* constant) {
  do_operand_transformations(operand, ot_all);
  if (!is_error_operand(operand) && !is_integral_constant(operand))
    error_in_operand(ec_expr_not_integral_constant, operand);
  extract_constant_from_operand(operand, constant);
}

// A converted constant expression: no conversion may narrow (C++11 5.19 p3).
static void convert_constant_operand(an_operand* operand, a_type* type) {
  const a_constant* constant = constant_of_operand(operand);
  bool is_possible =
      is_integral_or_enum_type(operand->type) &&
      (!is_scoped_enum_type(operand->type) || identical_types(prvalue_type(operand->type), type)) &&
      !is_narrowing_conversion(operand->type, constant, type, nullptr);
  if (is_possible)
    cast_operand(type, operand, true);
  else
    type2_error_in_operand(ec_unconvertible_con_expr, operand, operand->type, type);
}

static void check_type_of_constant_expression(an_operand* operand) {
  if (is_error_operand(operand) || is_integral_or_enum_type(operand->type))
    return;
  if (expr_error_should_be_issued())
    pos_stty_error(ec_bad_conv_constant_expr_type, &operand->position, "integral or enum",
                   operand->type);
  conv_to_error_operand(operand);
}

static bool is_negative_bound(const an_operand* operand) {
  const a_constant* constant = constant_of_operand(operand);
  return constant && constant->kind == con_integer && is_integral_or_enum_type(operand->type) &&
         cmplit_integer_constant(constant, 0) < 0;
}

// With a target type the bound of an array.
static void finish_constant_expression(an_operand* operand, a_type* target_type,
                                       a_constant* constant) {
  do_operand_transformations(operand, ot_all);
  force_operand_to_constant_if_possible(operand);
  check_type_of_constant_expression(operand);
  if (target_type && is_negative_bound(operand))
    error_in_operand(ec_array_size_must_be_positive, operand);
  if (target_type && operand->kind == ok_expression)
    error_in_operand(ec_expr_not_constant, operand);
  if (target_type && !is_error_operand(operand))
    convert_constant_operand(operand, target_type);
  extract_integral_constant(operand, constant);
}

// GNU compilers without constexpr take as constant what folds at once.
static bool folds_constant_expressions_at_once() {
  return !constexpr_enabled && (gcc_mode || (gpp_mode && gnu_version <= 39999));
}

static void scan_constant_expression(a_type* target_type, a_constant* constant) {
  a_full_expression full;
  an_operand operand;
  bool is_strict = folds_constant_expressions_at_once();
  begin_full_expression(is_strict ? ek_strict_constant : ek_integral_constant, &full);
  scan_expr(&operand, nullptr, lev_none, sef_no_comma);
  if (is_strict)
    finish_strict_constant_expression(&operand, constant);
  else
    finish_constant_expression(&operand, target_type, constant);
  wrap_up_constant_full_expression(constant);
  end_full_expression(&full, &operand);
}

void scan_integral_constant_expression(a_constant* constant) {
  scan_constant_expression(nullptr, constant);
}

void scan_constant_dimension_expression(a_constant* constant) {
  bool has_target = in_cplusplus_mode() &&
                    (std_version > 201102 || implicit_microsoft_cpp11_mode) && constexpr_enabled;
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  scan_constant_expression(has_target ? size_t_type() : nullptr, constant);
  switch_back_to_original_region(saved_region);
}

void scan_bool_constant_expression(a_constant* constant) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_integral_constant, &full);
  scan_expr(&operand, nullptr, lev_none, sef_no_comma);
  check_boolean_controlling_expr(&operand);
  force_operand_to_constant_if_possible(&operand);
  if (!is_error_operand(&operand))
    cast_operand(boolean_result_type(), &operand, true);
  extract_constant_from_operand(&operand, constant);
  wrap_up_constant_full_expression(constant);
  end_full_expression(&full, &operand);
}

void scan_case_label_constant(a_type* switch_type, a_constant* constant) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(constexpr_enabled ? ek_strict_constant : ek_integral_constant, &full);
  scan_expr(&operand, nullptr, lev_none, sef_no_comma);
  do_operand_transformations(&operand, ot_all);
  if (is_integral_constant(&operand) && !is_error_type(switch_type))
    cast_operand(switch_type, &operand, true);
  finish_strict_constant_expression(&operand, constant);
  wrap_up_constant_full_expression(constant);
  end_full_expression(&full, &operand);
}

// An expression that isn't constant is the bound of a variable length array, where
// these are enabled (C99 6.7.5.2 p4); everywhere else it must be constant.
bool scan_array_bound_expression(a_constant* constant, an_expr_node** expr) {
  *expr = nullptr;
  if (!vla_enabled) {
    scan_constant_dimension_expression(constant);
    return true;
  }
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_normal, &full);
  full.entry.flags.constant_context = true;
  scan_expr(&operand, nullptr, lev_none, sef_no_comma);
  do_operand_transformations(&operand, ot_all);
  check_integral_or_enum_operand(&operand);
  bool is_constant = operand.kind != ok_expression;
  if (is_constant)
    finish_strict_constant_expression(&operand, constant);
  else
    *expr = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return is_constant;
}

// ---- Expressions that aren't evaluated ----

an_expr_node* scan_expr_for_attribute() {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_unevaluated, &full);
  scan_expr(&operand, nullptr, lev_none, sef_no_comma);
  do_operand_transformations(&operand, ot_all);
  force_operand_to_constant_if_possible(&operand);
  an_expr_node* node = finish_full_expression(&operand);
  end_full_expression(&full, &operand);
  return node;
}

a_type* scan_typeof_operand() {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_unevaluated, &full);
  full.entry.flags.in_decltype_or_typeof = true;
  full.entry.flags.keep_side_effects = true;
  scan_expr(&operand, nullptr, lev_none, 0);
  eliminate_unusual_operand_kinds(&operand);
  a_type* type = operand.type;
  // Bounds that the type depends on are evaluated where it is declared.
  if (is_variably_modified_type(type))
    full.waiting_vla_dimensions = num_waiting_vla_dimensions();
  end_full_expression(&full, &operand);
  return type;
}
