// Prefix operators (C99 6.5.3), and increments on either side (6.5.2.4,
// 6.5.3.1).

#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"

// The operand of a prefix operator, at the operator.
static void scan_prefix_operand(an_operand* operand, uint32_t flags) {
  get_token();
  bool is_qualified = curr_token == tok_colon_colon  ? next_token() == tok_identifier
                      : curr_token == tok_identifier ? next_token() == tok_colon_colon
                                                     : false;
  if (in_cplusplus_mode() && is_qualified && (flags & sef_address_of_overload_allowed))
    note_operand_of_address();
  scan_expr(operand, nullptr, lev_unary, flags);
  finish_undefined_symbol_operand(operand);
}

static void set_prefix_positions(an_operand* operand, const a_source_position* operator_position,
                                 const a_source_position* end) {
  set_operator_positions(operand, operator_position, operator_position, end);
  operand->flags.names_variable = false;
}

// ---- & (C99 6.5.3.2 p3) ----

// `&*p` and `&a[i]` evaluate neither `*` nor, of an array's element, a read.
static an_expr_node* address_of_node(an_expr_node* node) {
  if (is_operation_node(node, eok_indirect)) {
    an_expr_node* pointer = node->variant.operation.operands;
    pointer->next = nullptr;
    return pointer;
  }
  an_expr_node* address = add_address_of_to_node(node);
  if (is_operation_node(address, eok_address_of))
    address->variant.operation.is_implicit = false;
  return address;
}

static bool is_bit_field_operand(const an_operand* operand) {
  return operand->kind == ok_expression && bit_field_of_node(operand->variant.expr, false);
}

static bool can_take_address(an_operand* operand) {
  an_error_code code = 0;
  if (operand->state == os_prvalue && in_cplusplus_mode() &&
      is_class_struct_union_type(operand->type))
    code = ec_taking_address_of_temporary;
  else if (operand->state != os_glvalue && operand->state != os_function_designator)
    code = ec_expr_not_an_lvalue_or_function_designator;
  else if (operand->kind == ok_expression && operand->variant.expr->is_xvalue)
    code = ec_expr_not_an_lvalue_or_function_designator;
  else if (is_bit_field_operand(operand))
    code = ec_address_of_bit_field;
  if (code != 0)
    error_in_operand(code, operand);
  return code == 0;
}

// The member that the qualified name of C++ means, of any object.
static void make_ptr_to_member_constant_operand(an_operand* operand) {
  a_symbol* symbol = operand->symbol;
  bool is_field = symbol->kind == symk_field;
  an_operand saved = *operand;
  a_constant constant;
  clear_constant(&constant, con_ptr_to_member);
  a_type* member_type = is_field ? symbol->variant.field->type : symbol->variant.routine->type;
  constant.type = ptr_to_member_type_full(member_type, symbol->parent.class_type, 0);
  constant.value.ptr_to_member.is_routine = !is_field;
  if (is_field)
    constant.value.ptr_to_member.member.field = symbol->variant.field;
  else
    constant.value.ptr_to_member.member.routine = symbol->variant.routine;
  make_constant_operand(&constant, operand);
  restore_operand_details(operand, &saved);
}

bool make_address_operand(an_operand* operand, const a_source_position* operator_position) {
  normalize_error_operand(operand);
  if (operand->kind == ok_sym_for_member) {
    make_ptr_to_member_constant_operand(operand);
    return false;
  }
  if (is_error_operand(operand) || !can_take_address(operand))
    return false;
  if (C_dialect == cd_k_and_r && is_array_type(operand->type)) {
    expr_pos_warning(ec_pcc_address_of_array, operator_position);
    do_array_to_pointer_conversion(operand);
    return false;
  }
  an_operand saved = *operand;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  if (operand->state == os_function_designator) {
    conv_function_designator_to_ptr_to_function(operand);
    return false;
  }
  a_type* type = make_pointer_type(operand->type);
  make_expression_operand(address_of_node(operand->variant.expr), operand);
  operand->type = operand->variant.expr->type = type;
  operand->variant.expr->position = *operator_position;
  restore_operand_details_incl_ref(operand, &saved);
  return true;
}

void take_address_of_operand(an_operand* operand, const a_source_position* operator_position) {
  if (make_address_operand(operand, operator_position))
    force_operand_to_constant_if_possible(operand);
}

// An operator that has no place in some constant expressions; true when it is
// refused here.
static bool is_refused_operator(an_error_code in_integral, an_error_code in_template_arg) {
  an_error_code code = 0;
  if (expr_stack->kind == ek_pp)
    code = ec_bad_pp_operator;
  else if (expr_stack->kind == ek_integral_constant)
    code = in_integral;
  else if (expr_stack->kind == ek_template_arg)
    code = in_template_arg;
  if (code != 0)
    expr_pos_error(code, &pos_curr_token);
  return code != 0;
}

static void scan_address_operand(an_operand* result, an_operator_place* place) {
  *place = place_of_curr_token();
  bool is_refused = is_refused_operator(ec_bad_integral_operator, 0);
  scan_prefix_operand(result, sef_address_of_overload_allowed);
  if (is_refused)
    conv_to_error_operand(result);
}

void scan_address_of(an_operand* result) {
  an_operator_place place;
  scan_address_operand(result, &place);
  a_source_position end = result->end_position;
  if (!operator_is_overloaded(&place, result, nullptr, result))
    take_address_of_operand(result, &place.position);
  set_prefix_positions(result, &place.position, &end);
}

// ---- * (C99 6.5.3.2 p4) ----

void do_indirection(an_operand* operand) {
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  if (!is_pointer_type(operand->type)) {
    error_in_operand(ec_bad_indirection_operand, operand);
    return;
  }
  a_type* type = type_pointed_to(operand->type);
  if (in_cplusplus_mode() && is_void_type(type)) {
    error_in_operand(ec_expr_not_object_pointer, operand);
    return;
  }
  an_operand saved = *operand;
  an_expr_node* pointer = make_node_from_operand(operand);
  pointer->next = nullptr;
  // The pointer's own references were reads.
  change_ref_kinds(operand->ref_entries, srk_value_read);
  an_expr_node* object = make_lvalue_operator_node(eok_indirect, type, pointer);
  make_glvalue_expression_operand(object, operand);
  restore_operand_details(operand, &saved);
}

void scan_indirection(an_operand* result) {
  an_operator_place place = place_of_curr_token();
  bool is_refused = is_refused_operator(0, ec_bad_templ_arg_expr_operator);
  scan_prefix_operand(result, 0);
  if (is_refused)
    conv_to_error_operand(result);
  a_source_position end = result->end_position;
  if (!operator_is_overloaded(&place, result, nullptr, result))
    do_indirection(result);
  set_prefix_positions(result, &place.position, &end);
}

// ---- + - ~ ! (C99 6.5.3.3) ----

static an_expr_operator_kind unary_operator(a_token_kind token) {
  switch (token) {
  case tok_minus:
    return eok_negate;
  case tok_plus:
    return eok_unary_plus;
  case tok_compl:
    return eok_complement;
  default:
    return eok_not;
  }
}

static void do_unary_operation(an_expr_operator_kind op, a_type* type, an_operand* operand,
                               const a_source_position* position) {
  an_operand saved = *operand;
  if (op == eok_not && expr_stack->flags.constant_context)
    force_operand_to_constant_if_possible(operand);
  if (is_constant_operand(operand)) {
    a_constant constant;
    a_fold_context context = fold_context_of_operator(position);
    clear_constant(&constant, con_error);
    unary_operation(op, &operand->variant.constant, type, &constant, &context);
    if (!context.not_folded) {
      make_constant_operand(&constant, operand);
      restore_operand_details(operand, &saved);
      return;
    }
  }
  if (in_constant_expr_kind() && value_is_evaluated()) {
    error_in_operand(ec_expr_not_constant, operand);
    return;
  }
  an_expr_node* node = make_node_from_operand(operand);
  node->next = nullptr;
  // Unary plus leaves nothing to do behind the promotion.
  make_expression_operand(op == eok_unary_plus ? node : make_operator_node(op, type, node),
                          operand);
  restore_operand_details(operand, &saved);
}

static bool check_unary_operand(an_expr_operator_kind op, an_operand* operand) {
  switch (op) {
  case eok_not:
    check_boolean_controlling_expr(operand);
    return !is_error_operand(operand);
  case eok_conjugate:
    return true;
  case eok_complement:
    misra_check_bitwise_operand(operand);
    return check_integral_or_enum_operand(operand);
  case eok_unary_plus:
    if (in_cplusplus_mode() && is_pointer_type(operand->type))
      return true;
    return check_arithmetic_or_enum_operand(operand);
  default:
    misra_check_unary_minus(operand);
    return check_arithmetic_or_enum_operand(operand);
  }
}

// In strict C the result isn't one of the floating literals that an integral
// constant expression may convert.
static void rule_out_floating_constant(an_operand* operand) {
  bool is_cplusplus_constant = in_cplusplus_mode() && constexpr_enabled;
  if (strict_ansi_mode && !is_cplusplus_constant && is_constant_operand(operand) &&
      is_floating_type(operand->type))
    rule_out_expr_kinds(rule_out_integral_constant, operand);
}

static void builtin_unary_operation(an_expr_operator_kind op, an_operand* operand,
                                    const a_source_position* position) {
  do_operand_transformations(operand, ot_all);
  // The conjugate of GNU C; that of an imaginary value is its negative.
  if (op == eok_complement && gnu_mode && is_complex_type(operand->type))
    op = eok_conjugate;
  else if (op == eok_complement && gnu_mode && is_imaginary_type(operand->type))
    op = eok_negate;
  if (!check_unary_operand(op, operand))
    return;
  if (op != eok_not)
    promote_operand(operand);
  rule_out_floating_constant(operand);
  do_unary_operation(op, op == eok_not ? boolean_result_type() : operand->type, operand, position);
}

void scan_unary_arithmetic(an_operand* result) {
  an_operator_place place = place_of_curr_token();
  scan_prefix_operand(result, 0);
  a_source_position end = result->end_position;
  if (!operator_is_overloaded(&place, result, nullptr, result))
    builtin_unary_operation(unary_operator(place.token), result, &place.position);
  set_prefix_positions(result, &place.position, &end);
}

// ---- ++ and -- ----

static bool is_increment(an_expr_operator_kind op) {
  return op == eok_pre_incr || op == eok_post_incr;
}

// C++11 5.3.2: a bool may be incremented, which C++17 took back, and not
// decremented. A complex value is stepped by an extension.
static bool check_class_of_stepped_operand(an_expr_operator_kind op, an_operand* operand) {
  an_error_code code = 0;
  if (in_cplusplus_mode() && is_bool_type(operand->type)) {
    if (!is_increment(op))
      code = ec_bool_type_not_allowed;
    else if (std_version >= 201700)
      code = ec_incr_of_bool_not_allowed;
  } else if (in_cplusplus_mode() && is_enum_type(operand->type)) {
    code = ec_enum_type_not_allowed;
  } else if (!gnu_mode && (is_complex_type(operand->type) || is_imaginary_type(operand->type))) {
    code = ec_complex_type_not_allowed;
  }
  if (code != 0)
    error_in_operand(code, operand);
  return code == 0 && check_scalar_operand(operand);
}

// The node of a prefix form is an lvalue in C++.
static an_expr_node* make_step_node(an_expr_operator_kind op, const an_operand* operand) {
  an_expr_node* object = operand->variant.expr;
  object->next = nullptr;
  bool is_lvalue = in_cplusplus_mode() && (op == eok_pre_incr || op == eok_pre_decr);
  an_expr_node* node = is_lvalue ? make_lvalue_operator_node(op, operand->type, object)
                                 : make_operator_node(op, prvalue_type(operand->type), object);
  node->is_volatile_access = is_volatile_qualified_type(operand->type);
  return node;
}

static void do_incr_decr(an_expr_operator_kind op, an_operand* operand,
                         const a_source_position* position) {
  do_operand_transformations(operand, ot_keep_glvalue | ot_keep_array);
  if (is_error_operand(operand))
    return;
  if (is_refused_in_constant(position)) {
    conv_to_error_operand(operand);
    return;
  }
  if (!check_modifiable_lvalue_operand(operand) || !check_class_of_stepped_operand(op, operand))
    return;
  if (is_pointer_type(operand->type)) {
    if (!check_pointer_arithmetic_operand(operand))
      return;
    misra_check_pointer_arithmetic(position);
  }
  an_operand saved = *operand;
  change_ref_kinds(operand->ref_entries, srk_value_read | srk_modified);
  make_lvalue_or_rvalue_expression_operand(make_step_node(op, operand), operand);
  restore_operand_details(operand, &saved);
  rule_out_expr_kinds(rule_out_constant, operand);
}

void scan_prefix_incr_decr(an_operand* result) {
  an_operator_place place = place_of_curr_token();
  scan_prefix_operand(result, 0);
  a_source_position end = result->end_position;
  if (!operator_is_overloaded(&place, result, nullptr, result))
    do_incr_decr(place.token == tok_plus_plus ? eok_pre_incr : eok_pre_decr, result,
                 &place.position);
  set_prefix_positions(result, &place.position, &end);
}

void scan_postfix_incr_decr(an_operand* operand) {
  an_operator_place place = place_of_curr_token();
  a_source_position start = operand->position;
  a_source_position end = end_pos_curr_token;
  get_token();
  if (!postfix_operator_is_overloaded(&place, operand, operand))
    do_incr_decr(place.token == tok_plus_plus ? eok_post_incr : eok_post_decr, operand,
                 &place.position);
  set_operator_positions(operand, &start, &place.position, &end);
}
