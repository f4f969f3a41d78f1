// Expressions of C: conditions and conversions to _Bool become comparisons.

#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lower_c99_int.h"
#include "lower_complex.h"
#include "lower_context.h"
#include "lower_init.h"
#include "lower_insert.h"
#include "lower_vla.h"
#include "mode_words.h"
#include "types.h"

bool loop_repeats_expr;
bool nonreal_types_used;

// ---- Conditions ----

// `value != 0`, with the operand in place.
static an_expr_node* comparison_with_zero(an_expr_node* value) {
  a_constant zero;
  make_zero_of_proper_type(make_unqualified_type(value->type), &zero);
  lower_c99_complex_constant(&zero);
  an_expr_node* operand = value;
  operand->next = alloc_node_for_constant(&zero);
  an_expr_node* result = make_operator_node(eok_ne, integer_type(ik_int), operand);
  result->position = value->position;
  result->range = value->range;
  return result;
}

static bool is_boolean_value(const an_expr_node* expr) {
  return is_bool_type(expr->type) || expr->kind == expr_constant ||
         (expr->kind == expr_operation && is_operator_returning_bool(expr->variant.operation.op));
}

an_expr_node* boolean_controlling_expr(an_expr_node* expr) {
  if (expr == nullptr || is_boolean_value(expr))
    return expr;
  if (is_complex_type(expr->type))
    return complex_ne_0(expr);
  return is_scalar_type(expr->type) ? comparison_with_zero(expr) : expr;
}

// Puts the truth value in the place of the operand, whose list goes on.
static void normalize_boolean_controlling_expr_if_needed(an_expr_node** link) {
  an_expr_node* next = (*link)->next;
  *link = boolean_controlling_expr(*link);
  (*link)->next = next;
}

static void lower_logical_operator(an_expr_node* node) {
  normalize_boolean_controlling_expr_if_needed(&node->variant.operation.operands);
  normalize_boolean_controlling_expr_if_needed(&node->variant.operation.operands->next);
}

static void lower_question_operator(an_expr_node* node) {
  normalize_boolean_controlling_expr_if_needed(&node->variant.operation.operands);
}

// ---- _Bool ----

// A conversion to _Bool asks whether the value differs from zero (C99 6.3.1.2).
static void lower_bool_cast(an_expr_node* cast) {
  an_expr_node* operand = cast->variant.operation.operands;
  if (!is_boolean_value(operand) && is_scalar_type(operand->type))
    cast->variant.operation.operands = comparison_with_zero(operand);
  cast->variant.operation.op = eok_cast;
}

static an_expr_node* bool_value(a_type* type, int64_t value) {
  a_constant constant;
  make_zero_of_proper_type(make_unqualified_type(type), &constant);
  constant.value.int_value = static_cast<uint64_t>(value);
  return alloc_node_for_constant(&constant);
}

static an_expr_node* bool_assignment(const an_expr_node* object, an_expr_node* value) {
  return make_assignment_expr(copy_expr_tree(object, cef_none), eok_assign, value);
}

static an_expr_node* inverted(const an_expr_node* object) {
  an_expr_node* value = copy_expr_tree(object, cef_none);
  value->next = nullptr;
  value = make_operator_node(eok_not, integer_type(ik_int), value);
  return make_operator_node(eok_cast, make_unqualified_type(object->type), value);
}

// A _Bool that is incremented is true, one that is decremented is inverted.
static void lower_bool_incr_decr(an_expr_node* node) {
  an_expr_node* object = node->variant.operation.operands;
  an_expr_operator_kind op = node->variant.operation.op;
  bool is_incr = op == eok_post_incr || op == eok_pre_incr;
  bool old_value_wanted = (op == eok_post_incr || op == eok_post_decr) && !node->result_not_used;
  an_expr_node* result =
      bool_assignment(object, is_incr ? bool_value(object->type, 1) : inverted(object));
  if (old_value_wanted && !is_incr) {
    result = make_comma_node(result, inverted(object));
  } else if (old_value_wanted) {
    an_expr_node* condition = copy_expr_tree(object, cef_none);
    condition->next = bool_value(object->type, 1);
    condition->next->next = make_comma_node(result, bool_value(object->type, 0));
    result = make_operator_node(eok_question, make_unqualified_type(object->type), condition);
  }
  overwrite_node(node, result);
}

an_expr_operator_kind operator_of_compound_assignment(an_expr_operator_kind op) {
  int base = op <= eok_remainder_assign ? eok_add - eok_add_assign
                                        : eok_shift_left - eok_shift_left_assign;
  return static_cast<an_expr_operator_kind>(op + base);
}

// `b op= x` on a _Bool computes in the common type and is true for all but zero.
static void lower_bool_compound_assignment(an_expr_node* node) {
  an_expr_node* object = node->variant.operation.operands;
  an_expr_node* right = object->next;
  a_type* type = compound_assignment_operation_type(node->variant.operation.op, object, right);
  an_expr_operator_kind op = operator_of_compound_assignment(node->variant.operation.op);
  bool is_shift = op == eok_shift_left || op == eok_shift_right;
  an_expr_node* left = add_cast_if_necessary(copy_expr_tree(object, cef_none), type);
  left->next = is_shift ? right : add_cast_if_necessary(right, type);
  an_expr_node* value = make_operator_node(op, type, left);
  value = make_operator_node(eok_cast, make_unqualified_type(object->type),
                             comparison_with_zero(value));
  overwrite_node(node, bool_assignment(object, value));
}

an_expr_node* name_object_once(an_expr_node* object) {
  while (is_operation_node(object, eok_dot_field))
    object = object->variant.operation.operands;
  bool is_arrow = is_operation_node(object, eok_arrow_field);
  an_expr_node* place = is_arrow ? object->variant.operation.operands : object;
  an_expr_node* pointer = copy_node(place);
  pointer->next = nullptr;
  if (!is_arrow)
    pointer = add_address_of_to_node(pointer);
  a_variable* temporary = make_temporary(pointer->type, true);
  an_expr_node* value = var_rvalue_expr(temporary);
  overwrite_node(place, is_arrow ? value : add_indirection_to_node(value));
  return make_assignment_expr(var_lvalue_expr(temporary), eok_assign, pointer);
}

an_expr_node* keep_old_value(const an_expr_node* node, an_expr_node* value, a_kept_value* kept) {
  const an_expr_operator_kind op = node->variant.operation.op;
  *kept = {};
  if ((op != eok_post_incr && op != eok_post_decr) || node->result_not_used)
    return value;
  kept->temporary = make_temporary(value->type, true);
  kept->keeping = make_assignment_expr(var_lvalue_expr(kept->temporary), eok_assign, value);
  return var_rvalue_expr(kept->temporary);
}

an_expr_node* change_with_kept_value(const a_kept_value& kept, an_expr_node* change) {
  if (kept.temporary == nullptr)
    return change;
  change = make_comma_node(change, var_rvalue_expr(kept.temporary));
  return make_comma_node(kept.keeping, change);
}

// ---- The walk ----

void lower_change_of_object(an_expr_node* node, void (*lower)(an_expr_node*)) {
  an_expr_node* object = node->variant.operation.operands;
  an_expr_node* naming = node_has_side_effects(object) ? name_object_once(object) : nullptr;
  lower(node);
  if (naming == nullptr)
    return;
  an_insert_location location;
  set_expr_insert_location(node, &location);
  insert_expr(naming, &location);
}

static void lower_operator_of_bool(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  if (op == eok_cast || op == eok_to_bool)
    lower_bool_cast(node);
  else if (is_compound_assignment_operator(op))
    lower_change_of_object(node, lower_bool_compound_assignment);
  else if (is_increment_operator(op))
    lower_change_of_object(node, lower_bool_incr_decr);
}

static void lower_c99_operator(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  bool is_complex = nonreal_types_used && takes_part_in_complex_arithmetic(node);
  if (is_complex)
    lower_c99_complex_node(node);
  if (op == eok_land || op == eok_lor)
    lower_logical_operator(node);
  else if (op == eok_question)
    lower_question_operator(node);
  else if (!is_complex && is_bool_type(node->type))
    lower_operator_of_bool(node);
}

static void lower_designated_initializers(a_constant* constant, a_dynamic_init* init) {
  if (!designators_allowed || constant->kind != con_aggregate)
    return;
  put_elements_in_order(constant);
  if (init != nullptr && init->kind == dik_nonconstant_aggregate)
    init->contains_nonconstant = constant->value.aggregate.has_dynamic_init;
}

void lower_c99_constant(a_constant* constant, a_dynamic_init* init) {
  lower_designated_initializers(constant, init);
  if (nonreal_types_used)
    lower_c99_complex_constant(constant);
}

static void lower_c99_constant_expr(an_expr_node* node) {
  a_constant* constant = node->variant.constant.ptr;
  if (nonreal_types_used && takes_part_in_complex_arithmetic(node))
    lower_c99_complex_node(node);
  else if (constant->kind == con_aggregate)
    lower_c99_constant(constant, nullptr);
}

// The operands come before the node.
static void lower_c99_node(an_expr_node* node, an_expr_or_stmt_traversal_block*) {
  if (function_has_vlas)
    lower_vla_node(node);
  switch (node->kind) {
  case expr_operation:
    lower_c99_operator(node);
    break;
  case expr_constant:
    lower_c99_constant_expr(node);
    break;
  case expr_temp_init:
    lower_temp_init(node, loop_repeats_expr);
    break;
  default:
    break;
  }
}

void lower_c99_expr(an_expr_node* expr) {
  if (expr == nullptr)
    return;
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.process_expr_after = lower_c99_node;
  traverse_expr(expr, &block);
}

void lower_c99_full_expr(an_expr_node* expr) {
  lower_c99_expr(expr);
  end_of_full_expr_processing();
}

void lower_c99_boolean_controlling_expr(an_expr_node** condition) {
  lower_c99_full_expr(*condition);
  if (*condition != nullptr)
    normalize_boolean_controlling_expr_if_needed(condition);
}
