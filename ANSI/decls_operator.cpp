// What functions by the name of an operator must look like (C++11 3.7.4, 13.5).

#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "mode_words.h"
#include "overload.h"
#include "types.h"

static const a_param_type* params_of(a_type* type) {
  return skip_typerefs(type)->variant.routine.routine_supplement->param_types;
}

static bool is_size_t(a_type* type) {
  return identical_types(make_unqualified_type(type), size_t_type());
}

static bool is_pointer_to_void(a_type* type) {
  return is_pointer_type(type) && is_void_type(type_pointed_to(type)) &&
         get_type_qualifiers(type_pointed_to(type)) == tq_none;
}

// ---- Allocation functions (C++11 3.7.4.1, 3.7.4.2) ----

static void check_operator_new(a_type* type, const a_source_position* position) {
  const a_param_type* first = params_of(type);
  if (!first || (!is_error_type(first->type) && !is_size_t(first->type)))
    pos_error(ec_bad_arg_type_for_operator_new, position);
  else if (first->has_default_arg)
    pos_error(ec_default_arg_expr_not_allowed, position);
  if (!is_error_type(return_type_of(type)) && !is_pointer_to_void(return_type_of(type)))
    pos_error(ec_bad_return_type_for_op_new, position);
}

static void check_operator_delete(a_type* type, const a_source_position* position) {
  const a_param_type* first = params_of(type);
  if (!first || (!is_error_type(first->type) && !is_pointer_to_void(first->type)))
    pos_error(ec_bad_first_arg_type_for_operator_delete, position);
  if (!is_error_type(return_type_of(type)) && !is_void_type(return_type_of(type)))
    pos_error(ec_bad_return_type_for_op_delete, position);
}

// ---- Operators (C++11 13.5) ----

namespace {

// How many operands an operator takes.
struct an_operand_range {
  unsigned least, most;
};

} // namespace

static an_operand_range operands_of_operator(unsigned kind) {
  switch (kind) {
  case opn_plus:
  case opn_minus:
  case opn_star:
  case opn_ampersand:
  case opn_plus_plus:
  case opn_minus_minus:
    return {1, 2};
  case opn_not:
  case opn_compl:
  case opn_arrow:
    return {1, 1};
  case opn_question:
    return {3, 3};
  default:
    return {2, 2};
  }
}

// C++11 13.5.3, 13.5.4, 13.5.5, 13.5.6.
static bool must_be_member(unsigned kind) {
  return kind == opn_assign || kind == opn_call || kind == opn_subscript || kind == opn_arrow;
}

static bool is_class_or_enum(a_type* type) {
  if (is_reference_type(type))
    type = type_pointed_to(type);
  return is_class_struct_union_type(type) || is_enum_type(type) || is_error_type(type) ||
         is_template_param_type(type);
}

static bool has_class_or_enum_param(a_type* type) {
  for (const a_param_type* param = params_of(type); param; param = param->next)
    if (is_class_or_enum(param->type))
      return true;
  return false;
}

static void check_number_of_operands(unsigned kind, unsigned number,
                                     const a_source_position* position) {
  an_operand_range range = operands_of_operator(kind);
  if (number < range.least)
    pos_error(ec_too_few_args_for_operator, position);
  else if (number > range.most)
    pos_error(ec_too_many_args_for_operator, position);
}

// The parameter that tells the postfix form of ++ and -- from the prefix one
// (C++11 13.5.7).
static void check_postfix_param(a_type* type, bool is_member, const a_source_position* position) {
  const a_param_type* param = params_of(type);
  if (param && !is_member)
    param = param->next;
  if (param && !is_error_type(param->type) && !identical_types(param->type, integer_type(ik_int)))
    pos_error(ec_bad_extra_arg_for_postfix_operator, position);
}

static void check_default_args(a_type* type, const a_source_position* position) {
  for (const a_param_type* param = params_of(type); param; param = param->next)
    if (param->has_default_arg) {
      pos_error(ec_default_arg_expr_not_allowed, position);
      return;
    }
}

static void check_operator(unsigned kind, const char* name, a_type* type,
                           an_operator_member_kind member_kind, const a_source_position* position) {
  if (member_kind == omk_static)
    pos_error(ec_static_member_operator_not_allowed, position);
  if (member_kind == omk_nonmember && must_be_member(kind)) {
    pos_st_error(ec_nonmember_operator_not_allowed, position, name);
    return;
  }
  if (kind == opn_call)
    return;
  if (skip_typerefs(type)->variant.routine.routine_supplement->has_ellipsis) {
    pos_error(ec_ellipsis_on_operator_function, position);
    return;
  }
  unsigned number = member_kind == omk_nonstatic;
  for (const a_param_type* param = params_of(type); param; param = param->next)
    ++number;
  check_number_of_operands(kind, number, position);
  check_default_args(type, position);
  if (kind == opn_plus_plus || kind == opn_minus_minus)
    check_postfix_param(type, member_kind == omk_nonstatic, position);
  if (member_kind == omk_nonmember && !has_class_or_enum_param(type))
    pos_error(operator_overloading_on_enums_enabled ? ec_no_params_with_class_or_enum_type
                                                    : ec_no_params_with_class_type,
              position);
}

void check_operator_function_params(const a_symbol_locator* locator, a_type* type,
                                    an_operator_member_kind member_kind) {
  if (!is_function_type(type))
    return;
  const a_source_position* position = &locator->position;
  unsigned kind = locator->operator_kind;
  if (kind == opn_new || kind == opn_array_new)
    check_operator_new(type, position);
  else if (kind == opn_delete || kind == opn_array_delete)
    check_operator_delete(type, position);
  else
    check_operator(kind, locator->header->identifier, type, member_kind, position);
}
