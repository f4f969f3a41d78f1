// Casts, written and implied (C99 6.5.4, 6.3), and conversions as if by
// assignment (C99 6.5.16.1).

#include "const_ints.h"
#include "decl_inits.h"
#include "declarator.h"
#include "expr_int.h"
#include "il.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "target.h"

static a_fold_context fold_context_here(const a_source_position* position) {
  return {in_constant_expr_kind(), value_is_evaluated(), position, false, false};
}

// ---- The conversion itself ----

static void cast_expression(a_type* type, an_operand* operand, bool is_implicit) {
  an_operand saved = *operand;
  an_expr_node* node = make_node_from_operand(operand);
  if (is_implicit && cast_identical_types(node->type, type)) {
    node->type = type;
  } else {
    node->next = nullptr;
    an_expr_node* cast = make_operator_node(eok_cast, type, node);
    cast->variant.operation.is_implicit = is_implicit;
    cast->position = node->position;
    cast->range = node->range;
    node = cast;
  }
  make_expression_operand(node, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

static void cast_constant(a_type* type, an_operand* operand, const a_source_position* position,
                          bool is_implicit) {
  a_fold_context context = fold_context_here(position);
  an_operand saved = *operand;
  type_change_constant_full(&operand->variant.constant, type, !is_implicit, &context);
  if (!context.not_folded) {
    operand->type = operand->variant.constant.type;
    if (operand->variant.constant.kind == con_error)
      conv_to_error_operand(operand);
    return;
  }
  operand->variant.constant = saved.variant.constant;
  if (in_constant_expr_kind() && value_is_evaluated())
    error_in_operand(ec_expr_not_constant, operand);
  else
    cast_expression(type, operand, is_implicit);
}

void cast_operand_to_void(an_operand* operand) {
  if (is_error_operand(operand))
    return;
  an_operand saved = *operand;
  an_expr_node* node = make_node_from_operand(operand);
  node->next = nullptr;
  an_expr_node* cast = make_operator_node(eok_cast, void_type(), node);
  cast->position = node->position;
  set_expr_result_not_used(node);
  make_expression_operand(cast, operand);
  restore_operand_details(operand, &saved);
}

void cast_operand_full(a_type* type, an_operand* operand, const a_source_position* position,
                       bool is_implicit) {
  if (is_error_operand(operand))
    return;
  type = prvalue_type(type);
  if (is_error_type(type)) {
    conv_to_error_operand(operand);
  } else if (is_void_type(type)) {
    if (!is_implicit || !is_void_type(operand->type))
      cast_operand_to_void(operand);
  } else if (is_constant_operand(operand)) {
    if (!is_implicit || !identical_types(type, operand->type))
      cast_constant(type, operand, position, is_implicit);
  } else if (!is_implicit || !identical_types(type, operand->type)) {
    cast_expression(type, operand, is_implicit);
  }
}

void cast_operand(a_type* type, an_operand* operand, bool is_implicit) {
  a_source_position position = operand->position;
  cast_operand_full(type, operand, &position, is_implicit);
}

// ---- As if by assignment ----

static an_error_severity c_conversion_severity() {
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

// What C lets pass with a message.
static void report_doubtful_conversion(const a_std_conv_descr* descr, const an_operand* operand,
                                       a_type* type, an_error_code code,
                                       const a_source_position* position) {
  bool is_doubtful =
      descr->is_mixed_pointer || descr->is_pointer_integer_mix || descr->drops_qualifiers;
  an_error_severity severity = c_conversion_severity();
  if (!is_doubtful && !(descr->function_object_mix && strict_ansi_mode))
    return;
  if (expr_diagnostic_should_be_issued(severity, code, position))
    pos_ty2_diagnostic(severity, code, position, operand->type, type);
}

// An enumerated type takes the values of its own enumerators.
static void check_enum_mix(const an_operand* operand, a_type* type,
                           const a_source_position* position) {
  if (is_enum_type(type) && is_enum_type(operand->type) &&
      f_skip_typerefs(type) != f_skip_typerefs(operand->type))
    expr_pos_warning(ec_mixed_enum_type, position);
}

void prep_conversion_operand(an_operand* operand, a_type* type, an_error_code code,
                             const a_source_position* position) {
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  type = prvalue_type(type);
  if (is_error_type(type)) {
    conv_to_error_operand(operand);
    return;
  }
  a_std_conv_descr descr;
  if (!impl_conversion_possible(operand->type, false, constant_of_operand(operand), type, &descr)) {
    if (expr_error_should_be_issued())
      pos_ty2_error(code, position, operand->type, type);
    conv_to_error_operand(operand);
    return;
  }
  if (in_C_mode()) {
    report_doubtful_conversion(&descr, operand, type, code, position);
    check_enum_mix(operand, type, position);
  }
  if (descr.is_lossy)
    expr_pos_warning(descr.error_code, position);
  cast_operand_full(type, operand, position, true);
}

void prep_initializer_operand(an_operand* operand, a_type* type, an_error_code code) {
  a_source_position position = operand->position;
  prep_conversion_operand(operand, type, code, &position);
}

// ---- Constants ----

void force_operand_to_constant_if_possible(an_operand* operand) {
  if (operand->kind != ok_expression || operand->state != os_prvalue ||
      !is_pointer_type(operand->type))
    return;
  a_constant constant;
  if (!constant_prvalue_pointer(operand->variant.expr, &constant))
    return;
  an_operand saved = *operand;
  make_constant_operand(&constant, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

bool operand_constant_value(an_operand* operand, a_constant* constant) {
  if (operand_is_string_literal(operand)) {
    copy_constant(operand->variant.expr->variant.constant.ptr, constant);
    return true;
  }
  force_operand_to_constant_if_possible(operand);
  if (!is_constant_operand(operand))
    return false;
  copy_constant(&operand->variant.constant, constant);
  return true;
}

// ---- Cast expressions ----

static bool check_cast_target(a_type* type, const a_source_position* position) {
  if (is_error_type(type))
    return false;
  if (is_void_type(type) || is_scalar_type(type))
    return true;
  if (!is_class_struct_union_type(type) || !gnu_mode) {
    if (expr_error_should_be_issued())
      pos_ty_error(ec_cast_to_bad_type, position, type);
    return false;
  }
  return true;
}

// In GNU C a class may be cast to itself.
static bool is_no_op_class_cast(a_type* type, const an_operand* operand) {
  return is_class_struct_union_type(type) &&
         f_skip_typerefs(type) == f_skip_typerefs(operand->type);
}

static void warn_about_pointer_size(a_type* type, const an_operand* operand,
                                    const a_source_position* position) {
  if (is_pointer_type(operand->type) && is_integral_or_enum_type(type) && !is_bool_type(type) &&
      size_of_type(type) < size_of_type(operand->type))
    expr_pos_warning(ec_pointer_conversion_loses_bits, position);
}

static void do_cast(a_type* type, an_operand* operand, const a_source_position* position) {
  if (is_void_type(type)) {
    do_void_operand_transformations(operand, false);
    cast_operand_to_void(operand);
    return;
  }
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  if (!check_cast_target(type, position)) {
    conv_to_error_operand(operand);
    return;
  }
  a_std_conv_descr descr;
  if (is_no_op_class_cast(type, operand))
    return;
  if (!expl_conversion_possible(operand->type, constant_of_operand(operand), type, &descr)) {
    error_in_operand(ec_bad_cast, operand);
    return;
  }
  if (is_pointer_type(operand->type) && !is_pointer_type(type))
    force_operand_to_constant_if_possible(operand);
  warn_about_pointer_size(type, operand, position);
  cast_operand_full(type, operand, position, false);
  if (!is_error_operand(operand) && !is_constant_operand(operand) && in_constant_expr_kind() &&
      value_is_evaluated() && !is_pointer_type(type))
    error_in_operand(ec_expr_not_constant, operand);
}

// C99 6.5.2.5, at the `{`.
static void scan_compound_literal(a_type* type, const a_source_position* start,
                                  an_operand* result) {
  bool is_static = depth_innermost_function_scope < 0;
  a_dynamic_init* init = nullptr;
  if (in_C_mode() && strict_ansi_mode && std_version < 199901)
    expr_pos_diagnostic(strict_ansi_discretionary_severity, ec_compound_literal_is_nonstandard,
                        start);
  if (is_function_type(type) || is_void_type(type) || is_vla_type(type)) {
    if (expr_error_should_be_issued())
      pos_ty_error(ec_bad_compound_literal_type, start, type);
    type = error_type();
  }
  a_constant* value = scan_compound_literal_initializer(&type, is_static, &init);
  if (is_error_type(type) || (!value && !init) || (value && value->kind == con_error)) {
    make_error_operand(result);
    return;
  }
  // The object has no place in the intermediate file yet.
  if (expr_error_should_be_issued())
    pos_st_error(ec_feature_not_allowed_in_current_mode, start, "compound literal");
  make_error_operand(result);
}

void scan_cast_expression(an_operand* result, const a_source_position* start) {
  check_stack_limit();
  add_stop_token(tok_rparen);
  a_type* type = scan_type_for_cast();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  if (curr_token == tok_lbrace) {
    scan_compound_literal(type, start, result);
    return;
  }
  scan_expr(result, nullptr, lev_cast, sef_no_comma | sef_float_literal_allowed);
  a_source_position end = result->end_position;
  do_cast(type, result, start);
  set_operator_positions(result, start, start, &end);
  result->flags.names_variable = false;
}
