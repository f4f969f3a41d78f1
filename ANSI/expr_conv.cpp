// Conversions that operands undergo without being asked (C99 6.3), and the
// checks of the class of an operand's type.

#include "expr_int.h"
#include "il.h"
#include "mode_words.h"
#include "target.h"

a_type* boolean_result_type() {
  return in_cplusplus_mode() ? bool_type() : integer_type(ik_int);
}

a_type* prvalue_type(a_type* type) {
  return make_unqualified_type(type);
}

// ---- Arrays and functions (C99 6.3.2.1 p3, p4) ----

void do_array_to_pointer_conversion(an_operand* operand) {
  if (is_error_operand(operand) || operand->kind != ok_expression)
    return;
  an_operand saved = *operand;
  an_expr_node* node = operand->variant.expr;
  a_type* type = type_after_array_to_pointer_transformation(operand->type);
  node->next = nullptr;
  an_expr_node* pointer = make_operator_node(eok_array_to_pointer, type, node);
  pointer->variant.operation.is_implicit = true;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  make_expression_operand(pointer, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// The designator `*p` gives back p.
static an_expr_node* pointer_to_designated_function(an_expr_node* designator) {
  if (designator->kind == expr_routine)
    return function_rvalue_expr(designator->variant.routine.ptr);
  if (is_operation_node(designator, eok_indirect)) {
    an_expr_node* pointer = designator->variant.operation.operands;
    pointer->next = nullptr;
    return pointer;
  }
  return add_address_of_to_node(designator);
}

void conv_function_designator_to_ptr_to_function(an_operand* operand) {
  if (operand->state != os_function_designator || operand->kind != ok_expression)
    return;
  an_operand saved = *operand;
  an_expr_node* designator = operand->variant.expr;
  an_expr_node* pointer = pointer_to_designated_function(designator);
  pointer->position = designator->position;
  pointer->range = designator->range;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  make_expression_operand(pointer, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// ---- The value of an object (C99 6.3.2.1 p2) ----

// A glvalue's node, read: the node itself, which becomes a value.
static an_expr_node* conv_glvalue_expr_to_prvalue(an_expr_node* node) {
  bool is_volatile = is_volatile_qualified_type(node->type);
  node->type = prvalue_type(node->type);
  node->is_lvalue = false;
  node->is_xvalue = false;
  node->is_volatile_access |= is_volatile;
  if (node->kind == expr_operation)
    node->variant.operation.lvalue_semantics = false;
  return node;
}

void conv_glvalue_to_prvalue(an_operand* operand) {
  if (!is_glvalue_operand(operand))
    return;
  change_unmarked_ref_kinds(operand->ref_entries, srk_value_read);
  if (is_incomplete_type(operand->type) && !is_void_type(operand->type)) {
    error_in_operand(ec_incomplete_type_not_allowed, operand);
    return;
  }
  if (expr_stack->flags.strict_constant) {
    error_in_operand(ec_expr_not_constant, operand);
    return;
  }
  an_operand saved = *operand;
  make_expression_operand(conv_glvalue_expr_to_prvalue(operand->variant.expr), operand);
  restore_operand_details(operand, &saved);
  rule_out_expr_kinds(rule_out_integral_constant | rule_out_constant, operand);
}

// ---- All of them ----

void eliminate_unusual_operand_kinds(an_operand* operand) {
  do_operand_transformations(operand, ot_keep_function | ot_keep_array | ot_keep_glvalue);
}

static bool array_decays(const an_operand* operand) {
  return is_glvalue_operand(operand) || in_cplusplus_mode() || std_version > 199900 || gcc_mode;
}

void do_operand_transformations(an_operand* operand, unsigned mask) {
  if (operand->kind == ok_undefined_symbol)
    finish_undefined_symbol_operand(operand);
  normalize_error_operand(operand);
  if (is_error_operand(operand))
    return;
  if (is_array_type(operand->type)) {
    if (!(mask & ot_keep_array) && array_decays(operand))
      do_array_to_pointer_conversion(operand);
  } else if (!(mask & ot_keep_glvalue)) {
    conv_glvalue_to_prvalue(operand);
  }
  if (operand->kind == ok_braced_list) {
    error_in_operand(ec_braced_init_list_not_allowed, operand);
    return;
  }
  if (operand->state == os_function_designator && !(mask & ot_keep_function))
    conv_function_designator_to_ptr_to_function(operand);
}

void do_void_operand_transformations(an_operand* operand, bool keep_glvalue) {
  do_operand_transformations(operand, keep_glvalue ? ot_keep_glvalue : ot_all);
}

// ---- Promotions (C99 6.3.1.1) ----

static bool passes_bit_field_on(an_expr_operator_kind op) {
  return is_assignment_operator(op) || is_increment_operator(op) || op == eok_parens;
}

a_field* bit_field_of_node(const an_expr_node* node, bool through_operators) {
  while (node->kind == expr_operation) {
    an_expr_operator_kind op = node->variant.operation.op;
    an_expr_node* first = node->variant.operation.operands;
    if (op == eok_dot_field || op == eok_arrow_field) {
      a_field* field = first->next->variant.field.ptr;
      return field->is_bit_field ? field : nullptr;
    }
    if (!through_operators)
      return nullptr;
    if (op == eok_comma)
      node = first->next;
    else if (passes_bit_field_on(op))
      node = first;
    else
      return nullptr;
  }
  return nullptr;
}

a_type* operand_type_after_integral_promotion(const an_operand* operand) {
  if (operand->kind == ok_expression && C_dialect != cd_k_and_r) {
    a_field* field = bit_field_of_node(operand->variant.expr, true);
    if (field)
      return type_after_bit_field_promotion(operand->type, field->bit_size);
  }
  a_type* type = type_after_integral_promotion(operand->type);
  return in_C_mode() && is_enum_type(type) ? integer_type(int_kind_of(type)) : type;
}

void promote_operand(an_operand* operand) {
  if (!is_error_operand(operand) && is_integral_or_enum_type(operand->type))
    cast_operand(operand_type_after_integral_promotion(operand), operand, true);
}

void arg_default_promote_operand(an_operand* operand, bool) {
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  if (is_array_type(operand->type)) {
    bool is_reported = !gcc_mode || strict_ansi_mode;
    if (is_reported)
      expr_pos_diagnostic(es_discretionary_error, ec_bad_rvalue_array, &operand->position);
    do_array_to_pointer_conversion(operand);
  } else if (is_integral_or_enum_type(operand->type)) {
    promote_operand(operand);
  } else if (is_incomplete_type(operand->type)) {
    error_in_operand(ec_incomplete_type_not_allowed, operand);
  } else if (is_floating_type(operand->type)) {
    cast_operand(default_argument_promotion(operand->type), operand, true);
  }
}

// ---- Usual arithmetic conversions (C99 6.3.1.8) ----

a_type* determine_arithmetic_conversions(const an_operand* left, const an_operand* right) {
  if (is_error_operand(left) || is_error_operand(right))
    return error_type();
  return usual_arithmetic_conversions(operand_type_after_integral_promotion(left),
                                      operand_type_after_integral_promotion(right));
}

void change_binary_operand_types(a_type* type, an_operand* left, an_operand* right) {
  cast_operand(type, left, true);
  cast_operand(type, right, true);
}

// ---- Checks of the class of a type ----

static bool check_class_of_operand(bool is_good, an_error_code code, an_operand* operand) {
  if (is_error_operand(operand))
    return false;
  if (!is_good)
    error_in_operand(code, operand);
  return is_good;
}

static bool scoped_enums_exist() {
  return in_cplusplus_mode() && (std_version > 201100 || implicit_microsoft_cpp11_mode);
}

static an_error_code choose_code(an_error_code plain, an_error_code with_enum,
                                 an_error_code with_unscoped_enum) {
  if (il_header.enum_type_is_integral)
    return plain;
  return scoped_enums_exist() ? with_unscoped_enum : with_enum;
}

bool check_integral_or_enum_operand(an_operand* operand) {
  return check_class_of_operand(is_integral_or_enum_type(operand->type),
                                choose_code(ec_expr_not_integral, ec_expr_not_integral_or_enum,
                                            ec_expr_not_integral_or_unscoped_enum),
                                operand);
}

bool check_arithmetic_or_enum_operand(an_operand* operand) {
  return check_class_of_operand(is_arithmetic_or_enum_type(operand->type),
                                choose_code(ec_expr_not_arithmetic, ec_expr_not_arithmetic_or_enum,
                                            ec_expr_not_arithmetic_or_unscoped_enum),
                                operand);
}

bool check_scalar_operand(an_operand* operand) {
  return check_class_of_operand(is_scalar_type(operand->type),
                                choose_code(ec_expr_not_scalar,
                                            ec_expr_not_arithmetic_or_enum_or_pointer,
                                            ec_expr_not_arithmetic_or_unscoped_enum_or_pointer),
                                operand);
}

void check_boolean_controlling_expr(an_operand* operand) {
  do_operand_transformations(operand, ot_all);
  check_scalar_operand(operand);
}

// C99 6.3.2.1 p1.
static bool is_modifiable_type(a_type* type) {
  if (is_const_qualified_type(type) || is_array_type(type) || is_incomplete_type(type))
    return false;
  a_type* bare = skip_typerefs(type);
  return !is_class_struct_union_kind(bare->kind) || in_cplusplus_mode() ||
         !bare->variant.class_struct_union.any_const_fields;
}

bool check_modifiable_lvalue_operand(an_operand* operand) {
  if (is_error_operand(operand))
    return false;
  if (operand->state == os_glvalue) {
    if (is_modifiable_type(operand->type))
      return true;
    bool is_const_object = is_const_qualified_type(operand->type) &&
                           !is_array_type(operand->type) && !is_incomplete_type(operand->type);
    if (gcc_mode && is_const_object) {
      expr_pos_diagnostic(es_discretionary_error, ec_expr_not_a_modifiable_lvalue,
                          &operand->position);
      return true;
    }
    if (is_incomplete_type(operand->type) && !is_void_type(operand->type) &&
        !is_array_type(operand->type)) {
      error_in_operand(ec_incomplete_type_not_allowed, operand);
      return false;
    }
  }
  error_in_operand(ec_expr_not_a_modifiable_lvalue, operand);
  return false;
}
