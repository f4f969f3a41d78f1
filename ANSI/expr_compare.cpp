// Comparisons (C99 6.5.8, 6.5.9), and the common type of pointers that meet in an
// operator.

#include "const_ints.h"
#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"

static bool is_relational_token(a_token_kind token) {
  return token >= tok_lt && token <= tok_ge;
}

// ---- Arithmetic operands ----

static bool is_unsigned_comparison(a_type* type) {
  return is_integral_or_enum_type(type) && !is_signed_integral_type(type);
}

static bool is_negative_constant(const a_constant* constant) {
  return constant && constant->kind == con_integer && is_integral_or_enum_type(constant->type) &&
         cmplit_integer_constant(constant, 0) < 0;
}

static bool is_zero_integer(const a_constant* constant) {
  return constant && constant->kind == con_integer && constant->value.int_value == 0;
}

// `u < 0`, `u >= 0` and their mirror images have one answer.
static bool is_pointless_with_zero(a_token_kind token, const a_constant* left,
                                   const a_constant* right) {
  if (is_zero_integer(right) && !left)
    return token == tok_lt || token == tok_ge;
  if (is_zero_integer(left) && !right)
    return token == tok_gt || token == tok_le;
  return false;
}

struct a_sign_summary {
  bool unsigned_meets_negative;
  bool signs_differ;
};

static bool is_signed_nonconstant(const an_operand* operand) {
  return !is_constant_operand(operand) &&
         is_signed_integral_type(operand_type_after_integral_promotion(operand));
}

static bool is_unsigned_operand(const an_operand* operand) {
  return is_unsigned_comparison(operand_type_after_integral_promotion(operand));
}

static a_sign_summary summarize_signs(const an_operand* left, const an_operand* right) {
  a_sign_summary summary = {};
  if (!is_integral_or_enum_type(left->type) || !is_integral_or_enum_type(right->type))
    return summary;
  bool left_unsigned = is_unsigned_operand(left), right_unsigned = is_unsigned_operand(right);
  summary.unsigned_meets_negative =
      (left_unsigned && is_negative_constant(constant_of_operand(right))) ||
      (right_unsigned && is_negative_constant(constant_of_operand(left)));
  summary.signs_differ = (left_unsigned && is_signed_nonconstant(right)) ||
                         (right_unsigned && is_signed_nonconstant(left));
  return summary;
}

static void warn_about_unsigned_comparison(a_token_kind token, const a_sign_summary* signs,
                                           a_type* type, const an_operand* left,
                                           const an_operand* right,
                                           const a_source_position* position) {
  if (!value_is_evaluated() || !is_unsigned_comparison(type))
    return;
  if (signs->unsigned_meets_negative)
    expr_pos_warning(ec_unsigned_compare_with_negative, position);
  else if (!is_relational_token(token))
    return;
  else if (is_pointless_with_zero(token, constant_of_operand(left), constant_of_operand(right)))
    expr_pos_warning(ec_unsigned_compare_with_zero, position);
  else if (signs->signs_differ)
    expr_pos_diagnostic(es_remark, ec_signed_unsigned_comparison, position);
}

// Complex and imaginary values have no order (C99 6.5.8 p2).
static bool check_ordered_operand(an_operand* operand) {
  if (!is_complex_type(operand->type) && !is_imaginary_type(operand->type))
    return true;
  error_in_operand(ec_complex_type_not_allowed, operand);
  return false;
}

static bool check_compared_operand(a_token_kind token, an_operand* operand) {
  return check_scalar_operand(operand) &&
         (!is_relational_token(token) || check_ordered_operand(operand));
}

static void arithmetic_comparison(a_token_kind token, an_operand* left, an_operand* right,
                                  const a_source_position* position, an_operand* result) {
  if (!check_compared_operand(token, left) || !check_compared_operand(token, right)) {
    make_error_result(left, right, result);
    return;
  }
  a_sign_summary signs = summarize_signs(left, right);
  a_type* type = determine_arithmetic_conversions(left, right);
  // The message about the comparison stands for that about the constant.
  bool was_evaluated = expr_stack->flags.value_is_evaluated;
  if (signs.unsigned_meets_negative)
    expr_stack->flags.value_is_evaluated = false;
  change_binary_operand_types(type, left, right);
  expr_stack->flags.value_is_evaluated = was_evaluated;
  if (!is_error_operand(left) && !is_error_operand(right))
    warn_about_unsigned_comparison(token, &signs, type, left, right, position);
  do_binary_operation(which_binary_operator(token), left, right, boolean_result_type(), position,
                      result);
}

// ---- Pointers ----

static bool is_null_pointer_operand(const an_operand* operand) {
  return is_constant_operand(operand) && is_null_pointer_constant(&operand->variant.constant);
}

static void report_pointer_mismatch(an_error_severity severity, an_operand* left, an_operand* right,
                                    const a_source_position* position) {
  if (expr_diagnostic_should_be_issued(severity, ec_incompatible_operands, position))
    pos_ty2_diagnostic(severity, ec_incompatible_operands, position, left->type, right->type);
}

static an_error_severity mixed_pointer_severity() {
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

// C++11 5.9 p2: the composite pointer type.
static a_type* composite_pointer_type(an_operand* left, an_operand* right,
                                      const a_source_position* position) {
  a_type* left_bare = make_unqualified_type(type_pointed_to(left->type));
  a_type* right_bare = make_unqualified_type(type_pointed_to(right->type));
  a_type_qualifier_set qualifiers = get_type_qualifiers(type_pointed_to(left->type)) |
                                    get_type_qualifiers(type_pointed_to(right->type));
  if (is_void_type(left_bare) || is_void_type(right_bare))
    return make_pointer_type(make_qualified_type(void_type(), qualifiers));
  a_base_class* base;
  bool left_is_derived;
  if (f_related_class_pointers(left->type, right->type, &base, &left_is_derived))
    return make_pointer_type(
        make_qualified_type(left_is_derived ? right_bare : left_bare, qualifiers));
  a_type* type = multilevel_composite_pointer_type(left->type, right->type);
  if (!type)
    report_pointer_mismatch(es_error, left, right, position);
  return type;
}

// Both are pointers.
static a_type* common_pointer_type(an_operand* left, an_operand* right,
                                   const a_source_position* position, bool is_relational) {
  if (in_cplusplus_mode())
    return composite_pointer_type(left, right, position);
  a_type* left_object = type_pointed_to(left->type);
  a_type* right_object = type_pointed_to(right->type);
  a_type_qualifier_set qualifiers =
      get_type_qualifiers(left_object) | get_type_qualifiers(right_object);
  a_type* left_bare = make_unqualified_type(left_object);
  a_type* right_bare = make_unqualified_type(right_object);
  if (types_are_compatible(left_bare, right_bare))
    return make_pointer_type(
        make_qualified_type(composite_type(left_bare, right_bare), qualifiers));
  bool left_void = is_void_type(left_bare), right_void = is_void_type(right_bare);
  if (left_void || right_void) {
    bool with_function = is_function_type(left_bare) || is_function_type(right_bare);
    if ((with_function || is_relational) && strict_ansi_mode)
      report_pointer_mismatch(strict_ansi_error_severity, left, right, position);
    return make_pointer_type(make_qualified_type(void_type(), qualifiers));
  }
  report_pointer_mismatch(mixed_pointer_severity(), left, right, position);
  return make_pointer_type(make_qualified_type(void_type(), qualifiers));
}

// A pointer and an integer.
static a_type* pointer_met_by_integer(an_operand* left, an_operand* right,
                                      const a_source_position* position, bool is_relational) {
  an_operand* pointer = is_pointer_type(left->type) ? left : right;
  an_operand* other = pointer == left ? right : left;
  if (!is_integral_or_enum_type(other->type)) {
    report_pointer_mismatch(es_error, left, right, position);
    return nullptr;
  }
  bool is_good = is_null_pointer_operand(other) && (!is_relational || !strict_ansi_mode);
  if (is_good)
    return pointer->type;
  an_error_severity severity = in_cplusplus_mode() ? es_error : mixed_pointer_severity();
  report_pointer_mismatch(severity, left, right, position);
  return in_cplusplus_mode() ? nullptr : pointer->type;
}

a_type* check_compatibility_of_pointer_operands(an_operand* left, an_operand* right,
                                                const a_source_position* position,
                                                bool is_relational) {
  if (is_pointer_type(left->type) && is_pointer_type(right->type)) {
    if (!is_relational && is_null_pointer_operand(right) && !is_null_pointer_operand(left))
      return left->type;
    if (!is_relational && is_null_pointer_operand(left) && !is_null_pointer_operand(right))
      return right->type;
    return common_pointer_type(left, right, position, is_relational);
  }
  return pointer_met_by_integer(left, right, position, is_relational);
}

// The address that the pointer holds is that of an object or a function.
static bool can_never_be_null(const an_operand* operand) {
  an_operand copy = *operand;
  force_operand_to_constant_if_possible(&copy);
  const a_constant* constant = constant_of_operand(&copy);
  return constant && constant->kind == con_address &&
         constant_bool_value_known_at_compile_time(constant) && constant_bool_value(constant);
}

static void remark_on_comparison_with_null(const an_operand* left, const an_operand* right,
                                           const a_source_position* position) {
  bool is_known = (is_null_pointer_operand(right) && can_never_be_null(left)) ||
                  (is_null_pointer_operand(left) && can_never_be_null(right));
  if (is_known && value_is_evaluated())
    expr_pos_diagnostic(es_remark, ec_known_comparison_with_null, position);
}

static void pointer_comparison(a_token_kind token, an_operand* left, an_operand* right,
                               const a_source_position* position, an_operand* result) {
  bool is_relational = is_relational_token(token);
  a_type* type = check_compatibility_of_pointer_operands(left, right, position, is_relational);
  if (!type) {
    make_error_result(left, right, result);
    return;
  }
  if (!is_relational)
    remark_on_comparison_with_null(left, right, position);
  change_binary_operand_types(type, left, right);
  do_binary_operation(which_binary_operator(token), left, right, boolean_result_type(), position,
                      result);
}

// ---- Operands of C++ types ----

static void report_incompatible_operands(const an_operand* left, const an_operand* right,
                                         const a_source_position* position) {
  if (expr_error_should_be_issued())
    pos_ty2_error(ec_incompatible_operands, position, left->type, right->type);
}

bool check_binary_scoped_enum_operation(an_operand* left, an_operand* right,
                                        const a_source_position* position) {
  if (identical_types(prvalue_type(left->type), prvalue_type(right->type)))
    return true;
  report_incompatible_operands(left, right, position);
  return false;
}

// nullptr meets itself, a pointer, a pointer to member or a null constant.
a_type* check_compatibility_of_nullptr_operands(an_operand* left, an_operand* right,
                                                const a_source_position* position) {
  an_operand* other = is_nullptr_type(left->type) ? right : left;
  bool is_good = is_nullptr_type(other->type) || is_pointer_type(other->type) ||
                 is_ptr_to_member_type(other->type) || is_null_pointer_operand(other);
  if (!is_good) {
    report_incompatible_operands(left, right, position);
    return nullptr;
  }
  return is_null_pointer_operand(other) && !is_pointer_type(other->type) ? standard_nullptr_type()
                                                                         : other->type;
}

a_type* check_ptr_to_member_operands_for_compatibility(an_operand* left, an_operand* right,
                                                       const a_source_position* position) {
  an_operand* member = is_ptr_to_member_type(left->type) ? left : right;
  an_operand* other = member == left ? right : left;
  if (is_null_pointer_operand(other) || identical_types(member->type, other->type))
    return member->type;
  a_std_conv_descr descr;
  if (is_ptr_to_member_type(other->type)) {
    if (impl_ptr_to_member_conversion(other->type, nullptr, member->type, &descr))
      return member->type;
    if (impl_ptr_to_member_conversion(member->type, nullptr, other->type, &descr))
      return other->type;
  }
  report_incompatible_operands(left, right, position);
  return nullptr;
}

// The common type of two operands of which one is special to C++; null after
// an error.
static a_type* common_cplusplus_type(an_operand* left, an_operand* right,
                                     const a_source_position* position) {
  if (is_nullptr_type(left->type) || is_nullptr_type(right->type))
    return check_compatibility_of_nullptr_operands(left, right, position);
  if (is_ptr_to_member_type(left->type) || is_ptr_to_member_type(right->type))
    return check_ptr_to_member_operands_for_compatibility(left, right, position);
  return check_binary_scoped_enum_operation(left, right, position) ? left->type : nullptr;
}

static bool is_special_to_cplusplus(const a_type* type) {
  return in_cplusplus_mode() &&
         (is_nullptr_type(type) || is_ptr_to_member_type(type) || is_scoped_enum_type(type));
}

static void cplusplus_comparison(a_token_kind token, an_operand* left, an_operand* right,
                                 const a_source_position* position, an_operand* result) {
  a_type* type = common_cplusplus_type(left, right, position);
  if (!type) {
    make_error_result(left, right, result);
    return;
  }
  change_binary_operand_types(type, left, right);
  do_binary_operation(which_binary_operator(token), left, right, boolean_result_type(), position,
                      result);
}

// ---- The operators ----

void comparison_operation(a_token_kind token, an_operand* left, an_operand* right,
                          const a_source_position* position, an_operand* result) {
  if (!is_relational_token(token))
    misra_check_equality_operands(left, right, position);
  if (is_error_operand(left) || is_error_operand(right))
    make_error_result(left, right, result);
  else if (is_special_to_cplusplus(left->type) || is_special_to_cplusplus(right->type))
    cplusplus_comparison(token, left, right, position, result);
  else if (is_pointer_type(left->type) || is_pointer_type(right->type))
    pointer_comparison(token, left, right, position, result);
  else
    arithmetic_comparison(token, left, right, position, result);
}
