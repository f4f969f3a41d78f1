// Double arithmetic that gives the same value in single precision is written
// in single precision: the processor has no instructions for doubles.

#include "error.h"
#include "float_pt.h"
#include "il_alloc.h"
#include "il_to_if_int.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"

namespace {

bool is_float_of_kind(const a_type* type, int kind) {
  return type_kind(type) == tk_float && f_skip_typerefs(type)->variant.float_kind == kind;
}

bool is_float(const a_type* type) {
  return is_float_of_kind(type, fk_float);
}

bool is_double(const a_type* type) {
  return is_float_of_kind(type, fk_double);
}

// The bits that hold the value of an arithmetic type.
int value_bits(const a_type* type) {
  if (is_integral_or_enum_type(type))
    return static_cast<int>(size_of_type(type) * targ_char_bit);
  return is_float(type) ? targ_flt_mant_dig : targ_dbl_mant_dig;
}

// ---- Exact operands ----

bool is_widening_cast(const an_expr_node* node) {
  if (!is_operation_node(node, eok_cast))
    return false;
  if (!relaxed_fp && !node->variant.operation.is_implicit)
    return false;
  const a_type* from = node->variant.operation.operands->type;
  const a_type* to = node->type;
  bool to_floating = is_float(to) || is_double(to);
  bool from_known = is_float(from) || is_double(from) || is_integral_or_enum_type(from);
  return to_floating && from_known && value_bits(to) >= value_bits(from);
}

an_expr_node* strip_widening_casts(an_expr_node* node) {
  while (is_widening_cast(node))
    node = node->variant.operation.operands;
  return node;
}

bool is_double_constant(const an_expr_node* node) {
  return node->kind == expr_constant && node->variant.constant.ptr->kind == con_float &&
         is_double(node->type);
}

// Whether a double goes to single precision and back unchanged.
bool is_exact_as_float(const a_float_value* value) {
  a_float_value narrow, back;
  bool overflow = false, underflow = false;
  fp_change_kind(value, fk_double, &narrow, fk_float, &overflow, &underflow);
  if (overflow || underflow)
    return false;
  fp_change_kind(&narrow, fk_float, &back, fk_double, &overflow, &underflow);
  return fp_same_representation(value, &back);
}

bool can_be_represented_exactly_in_single_precision(an_expr_node* node) {
  node = strip_widening_casts(node);
  if (is_double_constant(node))
    return is_exact_as_float(&node->variant.constant.ptr->value.float_value);
  return is_float(node->type) ||
         (is_integral_or_enum_type(node->type) && value_bits(node->type) <= targ_flt_mant_dig);
}

// ---- Narrowing ----

an_expr_node* narrowed_constant(const an_expr_node* node, a_type* type) {
  const a_constant* wide = node->variant.constant.ptr;
  a_constant* narrow = alloc_constant(con_float);
  copy_constant(wide, narrow);
  bool overflow = false, underflow = false;
  fp_change_kind(&wide->value.float_value, fk_double, &narrow->value.float_value, fk_float,
                 &overflow, &underflow);
  narrow->type = type;
  an_expr_node* result = alloc_node_for_allocated_constant(narrow);
  result->position = node->position;
  result->range = node->range;
  return result;
}

// Puts the operand in single precision in the place of the one at *link.
void narrow_operand(an_expr_node** link, a_type* type) {
  an_expr_node* rest = (*link)->next;
  an_expr_node* operand = strip_widening_casts(*link);
  operand = is_double_constant(operand) ? narrowed_constant(operand, type)
                                        : add_cast_if_necessary(operand, type);
  operand->next = rest;
  *link = operand;
}

bool is_compound_assignment(an_expr_operator_kind op) {
  switch (op) {
  case eok_add_assign:
  case eok_subtract_assign:
  case eok_multiply_assign:
  case eok_divide_assign:
    return true;
  default:
    return false;
  }
}

// The type in which an operation can be done instead of in double; null for
// none. Rounding the exact sum, product or quotient of two floats to double and
// then to float gives what rounding it once gives, so the result may only go
// to a float.
a_type* narrow_type(an_expr_node* node, const a_type* target) {
  an_expr_node* operands = node->variant.operation.operands;
  const a_type* done_in = node->type;
  if (is_compound_assignment(node->variant.operation.op))
    done_in = usual_arithmetic_conversions(operands->type, operands->next->type);
  if (!is_double(done_in) || !is_float(target))
    return nullptr;
  if (relaxed_fp)
    return float_type(fk_float);
  for (an_expr_node* operand = operands; operand != nullptr; operand = operand->next)
    if (!can_be_represented_exactly_in_single_precision(operand))
      return nullptr;
  return float_type(fk_float);
}

void narrow_arithmetic(an_expr_node* node, const a_type* target) {
  a_type* type = narrow_type(node, target);
  if (type == nullptr)
    return;
  for (an_expr_node** link = &node->variant.operation.operands; *link != nullptr;
       link = &(*link)->next)
    narrow_operand(link, type);
  node->type = type;
}

bool is_exact_or_relaxed_constant(an_expr_node* node) {
  return is_double_constant(node) &&
         (relaxed_fp || can_be_represented_exactly_in_single_precision(node));
}

// Against a constant a comparison narrows when both sides are exact.
void narrow_comparison(an_expr_node* node) {
  an_expr_node* left = node->variant.operation.operands;
  an_expr_node* right = left->next;
  bool left_narrows =
      is_exact_or_relaxed_constant(left) && can_be_represented_exactly_in_single_precision(right);
  bool right_narrows =
      is_exact_or_relaxed_constant(right) && can_be_represented_exactly_in_single_precision(left);
  if (!left_narrows && !right_narrows)
    return;
  narrow_operand(&node->variant.operation.operands, float_type(fk_float));
  narrow_operand(&node->variant.operation.operands->next, float_type(fk_float));
}

void narrow_compound_assignment(an_expr_node* node, const a_type* target) {
  if (a_type* type = narrow_type(node, target))
    narrow_operand(&node->variant.operation.operands->next, type);
}

void narrow_operation(an_expr_node* node, const a_type* target) {
  if (node->variant.operation.operation_kind != tk_float)
    return;
  switch (node->variant.operation.op) {
  case eok_negate:
  case eok_add:
  case eok_subtract:
  case eok_multiply:
  case eok_divide:
    return narrow_arithmetic(node, target);
  case eok_eq:
  case eok_ne:
  case eok_lt:
  case eok_gt:
  case eok_le:
  case eok_ge:
    return narrow_comparison(node);
  default:
    if (is_compound_assignment(node->variant.operation.op))
      narrow_compound_assignment(node, target);
  }
}

// ---- The remark ----

// The conversions of the analysis don't count: the source has a float there.
bool is_needlessly_double(const an_expr_node* constant, const an_expr_node* other) {
  while (is_operation_node(other, eok_cast) && other->variant.operation.is_implicit)
    other = other->variant.operation.operands;
  return is_float(other->type) && is_double_constant(constant) &&
         is_exact_as_float(&constant->variant.constant.ptr->value.float_value);
}

// Whether the remark was given.
bool remark_in(const an_expr_node* expr) {
  check_stack_limit();
  if (expr->kind != expr_operation)
    return false;
  bool is_call = expr->variant.operation.op == eok_call;
  for (const an_expr_node* operand = expr->variant.operation.operands; operand != nullptr;
       operand = operand->next) {
    if (remark_in(operand))
      return true;
    const an_expr_node* other = operand->next;
    if (other == nullptr || is_call)
      continue;
    const an_expr_node* wide = is_needlessly_double(other, operand)   ? other
                               : is_needlessly_double(operand, other) ? operand
                                                                      : nullptr;
    if (wide != nullptr) {
      pos_remark(ec_redundant_flt_to_dbl_conversion, &wide->position);
      return true;
    }
  }
  return false;
}

} // namespace

void narrow_float_expr(an_expr_node* expr, const a_type* target) {
  check_stack_limit();
  if (expr == nullptr || expr->kind != expr_operation)
    return;
  narrow_operation(expr, target);
  bool is_cast = expr->variant.operation.op == eok_cast;
  for (an_expr_node* operand = expr->variant.operation.operands; operand != nullptr;
       operand = operand->next)
    narrow_float_expr(operand, is_cast ? expr->type : operand->type);
}

void float_constant_remark(const an_expr_node* expr) {
  if (expr != nullptr)
    remark_in(expr);
}
