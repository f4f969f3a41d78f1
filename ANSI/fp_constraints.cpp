#include "fp_constraints.h"

#include "error.h"
#include "il_entities.h"
#include "il_expr.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

namespace {

// Values of legal_float_precision.
enum a_legal_precision { lfp_none = 0, lfp_all = 1, lfp_single = 2, lfp_double = 3 };

bool is_any_floating_type(const a_type* type) {
  switch (type_kind(type)) {
  case tk_float:
  case tk_imaginary:
  case tk_complex:
    return true;
  default:
    return false;
  }
}

bool is_conversion(an_expr_operator_kind op) {
  return op == eok_cast || op == eok_lvalue_cast || op == eok_to_bool || op == eok_from_bool;
}

// Operators whose operands take part in a calculation. Assignments and choices
// only move values.
bool is_arithmetic(an_expr_operator_kind op) {
  return (op >= eok_negate && op <= eok_not) ||
         (op >= eok_conjugate && op <= eok_imag_minus_real) || (op >= eok_eq && op <= eok_le) ||
         op == eok_gnu_min || op == eok_gnu_max ||
         (op >= eok_add_assign && op <= eok_divide_assign) || op == eok_land || op == eok_lor;
}

} // namespace

bool FP_OPERATION_CONSTRAINTS::float_type_allowed(a_type* type) {
  if (!is_any_floating_type(type))
    return true;
  if (legal_float_precision == lfp_none)
    return false;
  const int bits = (f_skip_typerefs(type)->variant.float_kind == fk_float ? targ_sizeof_float
                                                                          : targ_sizeof_double) *
                   targ_char_bit;
  const int legal_bits = legal_float_precision == lfp_single ? 32 : 64;
  return legal_float_precision == lfp_all || bits == legal_bits;
}

void FP_OPERATION_CONSTRAINTS::issue_floating_point_diag(const a_source_position* position) {
  if (current_routine != nullptr && current_routine->is_compiler_generated)
    return;
  // The formats that are not allowed.
  const char* formats = legal_float_precision == lfp_single   ? "64-bit "
                        : legal_float_precision == lfp_double ? "32-bit "
                                                              : "";
  pos_st_diagnostic(es_discretionary_error, ec_float_support_disabled, position, formats);
}

bool FP_OPERATION_CONSTRAINTS::operands_allowed(an_expr_node* expr) {
  for (an_expr_node* operand = expr->variant.operation.operands; operand != nullptr;
       operand = operand->next)
    if (!float_type_allowed(operand->type))
      return false;
  return true;
}

// The first operand of a call is the function.
bool FP_OPERATION_CONSTRAINTS::call_allowed(an_expr_node* call) {
  if (!float_type_allowed(call->type))
    return false;
  for (an_expr_node* argument = call->variant.operation.operands->next; argument != nullptr;
       argument = argument->next)
    if (!float_type_allowed(argument->type))
      return false;
  return true;
}

void FP_OPERATION_CONSTRAINTS::expression(an_expr_node* expr) {
  if (expr->kind != expr_operation)
    return;
  const an_expr_operator_kind op = expr->variant.operation.op;
  bool is_allowed = true;
  if (is_conversion(op))
    is_allowed = float_type_allowed(expr->type) && operands_allowed(expr);
  else if (op == eok_call)
    is_allowed = call_allowed(expr);
  else if (is_arithmetic(op))
    is_allowed = operands_allowed(expr);
  if (!is_allowed)
    issue_floating_point_diag(expression_position(expr));
}

void FP_OPERATION_CONSTRAINTS::dynamic_variable_initialization(a_dynamic_init* init) {
  a_variable* variable = init->variable;
  if (variable != nullptr && init->kind > dik_constant && !float_type_allowed(variable->type))
    issue_floating_point_diag(&variable->source_corresp.position);
}

void FP_OPERATION_CONSTRAINTS::routine_definition(a_routine* routine) {
  bool is_allowed = float_type_allowed(return_type_of(routine->type));
  for (a_param_type* param = param_types_of(f_skip_typerefs(routine->type)); param != nullptr;
       param = param->next)
    is_allowed = is_allowed && float_type_allowed(param->type);
  if (!is_allowed)
    issue_floating_point_diag(&routine->source_corresp.position);
}

IL_HOOKS* FP_OPERATION_CONSTRAINTS_FACTORY::instantiate() {
  return legal_float_precision == lfp_all ? nullptr : new FP_OPERATION_CONSTRAINTS;
}
