// Allocation and initial states of expression nodes, operators, and what can
// be told from one node.

#include "il_expr.h"

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr_int.h"
#include "lower_il.h"
#include "types.h"

#include <cstring>
#include <vector>

// ---- Allocation and initial states ----

an_expr_node* alloc_expr_node(an_expr_kind kind) {
  an_expr_node* node = static_cast<an_expr_node*>(alloc_il_in_current_region(sizeof(an_expr_node)));
  clear_expr_node(node, kind);
  return node;
}

void clear_expr_node(an_expr_node* node, an_expr_kind kind) {
  memset(static_cast<void*>(node), 0, sizeof *node);
  set_expr_node_kind(node, kind);
}

template <typename T> static T* alloc_supplement() {
  T* supplement = static_cast<T*>(alloc_il_in_current_region(sizeof(T)));
  memset(static_cast<void*>(supplement), 0, sizeof(T));
  return supplement;
}

a_new_delete_supplement* alloc_new_delete_supplement() {
  a_new_delete_supplement* supplement = alloc_supplement<a_new_delete_supplement>();
  supplement->is_new = true;
  return supplement;
}

a_throw_supplement* alloc_throw_supplement() {
  return alloc_supplement<a_throw_supplement>();
}

a_condition_supplement* alloc_condition_supplement() {
  return alloc_supplement<a_condition_supplement>();
}

void set_expr_node_kind(an_expr_node* node, an_expr_kind kind) {
  node->kind = kind;
  node->orig_type = nullptr;
  memset(static_cast<void*>(&node->variant), 0, sizeof node->variant);
  switch (kind) {
  case expr_new_delete:
    node->variant.new_delete = alloc_new_delete_supplement();
    break;
  case expr_condition:
    node->variant.condition = alloc_condition_supplement();
    break;
  default:
    break;
  }
}

an_expr_node* error_node() {
  an_expr_node* node = alloc_expr_node(expr_error);
  node->type = error_type();
  return node;
}

an_expr_node* fs_error_node() {
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  an_expr_node* node = error_node();
  switch_back_to_original_region(saved_region);
  return node;
}

bool is_error_node(const an_expr_node* node) {
  return node->kind == expr_error;
}

an_operand_list_heads operand_lists_of_node(an_expr_node* node) {
  switch (node->kind) {
  case expr_operation:
    return {{&node->variant.operation.operands}, 1};
  case expr_dependent_op:
    return {{&node->variant.dependent_op.operands}, 1};
  case expr_with_lifetime:
    return {{&node->variant.with_lifetime.expr}, 1};
  case expr_typed_expr:
    return {{&node->variant.typed_expr.expr}, 1};
  case expr_braced_list:
    return {{&node->variant.braced_list}, 1};
  case expr_with_list:
    return {{&node->variant.with_list.list, &node->variant.with_list.expr}, 2};
  case expr_call_like:
    return {{&node->variant.call_like.list}, 1};
  case expr_new_delete: {
    a_new_delete_supplement* supplement = node->variant.new_delete;
    return {{&supplement->placement_expr, &supplement->arg_list}, 2};
  }
  case expr_condition:
    return {{&node->variant.condition->value_expr}, 1};
  case expr_sizeof_like:
  case expr_alignof_like:
  case expr_typeid_like:
    if (node->variant.sizeof_like.is_type ||
        (node->kind == expr_alignof_like && node->variant.sizeof_like.skip))
      return {};
    return {{&node->variant.sizeof_like.operand.expr}, 1};
  default:
    return {};
  }
}

// ---- Operators ----

namespace {

struct an_operator_table {
  an_operator_description rows[num_expr_operator_kinds];

  constexpr an_operator_table() : rows() {
    for (an_operator_description& row : rows)
      row = {"", lvalue_none, of_none, prec_none};
#define OPERATOR(op, uses, form, precedence, text) rows[op] = {text, uses, form, precedence};
#include "il_operators.def"
#undef OPERATOR
  }
};

constexpr an_operator_table operator_table;

bool is_between(an_expr_operator_kind op, an_expr_operator_kind low, an_expr_operator_kind high) {
  return op >= low && op <= high;
}

} // namespace

const an_operator_description& description_of_operator(an_expr_operator_kind op) {
  return operator_table.rows[op];
}

bool operator_takes_lvalue_op1(an_expr_operator_kind op) {
  return (operator_table.rows[op].lvalue_uses & lvalue_op1) != 0;
}

bool operator_takes_lvalue_op2(an_expr_operator_kind op) {
  return (operator_table.rows[op].lvalue_uses & lvalue_op2) != 0;
}

bool is_compound_assignment_operator(an_expr_operator_kind op) {
  return is_between(op, eok_add_assign, eok_pointer_subtract_assign);
}

bool is_assignment_operator(an_expr_operator_kind op) {
  return is_between(op, eok_assign, eok_array_assign);
}

bool is_increment_operator(an_expr_operator_kind op) {
  return is_between(op, eok_post_incr, eok_pre_decr);
}

bool is_relational_operator(an_expr_operator_kind op) {
  return is_between(op, eok_eq, eok_le);
}

bool is_call_operator(an_expr_operator_kind op) {
  return is_between(op, eok_call, eok_arrow_ptr_to_member_call);
}

bool is_operator_returning_bool(an_expr_operator_kind op) {
  return op == eok_to_bool || op == eok_not || is_relational_operator(op) || op == eok_land ||
         op == eok_lor;
}

bool is_cast_operation_node(const an_expr_node* node) {
  if (node->kind != expr_operation)
    return false;
  switch (static_cast<int>(node->variant.operation.op)) {
  case eok_cast:
  case eok_class_to_lvalue:
  case 13:
  case 17:
    return true;
  default:
    return false;
  }
}

// ---- The type kind of an operation ----

a_type_kind lowered_nonreal_kind(a_type_kind kind) {
  if (kind == tk_complex)
    return tk_struct;
  return kind == tk_imaginary ? tk_float : kind;
}

// All classes count as one kind.
static a_type_kind merged_kind(const a_type* type) {
  const a_type_kind kind = type_kind(type);
  if (il_lowering_underway)
    return is_class_struct_union_kind(kind) ? tk_struct : lowered_nonreal_kind(kind);
  return is_class_struct_union_kind(kind) ? tk_struct : kind;
}

static a_type_kind kind_of_mixed_operation(an_expr_operator_kind op, a_type_kind kind1,
                                           a_type_kind kind2) {
  const auto either = [&](a_type_kind kind) { return kind1 == kind || kind2 == kind; };
  const bool real_and_imaginary = either(tk_float) && either(tk_imaginary);
  if (either(tk_error))
    return tk_error;
  if (either(tk_template_param) || either(tk_unknown))
    return tk_template_param;
  if (either(tk_pointer))
    return tk_pointer;
  if (either(tk_ptr_to_member))
    return tk_ptr_to_member;
  if (either(tk_complex))
    return tk_complex;
  if (real_and_imaginary)
    return op == eok_multiply ? tk_imaginary : tk_float;
  return either(tk_nullptr) ? tk_nullptr : tk_unknown;
}

a_type_kind binary_operation_type_kind(an_expr_operator_kind op, a_type* type1, a_type* type2) {
  if (op == eok_land || op == eok_lor)
    return tk_integer;
  if (op == eok_comma)
    return tk_unknown;
  const a_type_kind kind1 = merged_kind(type1);
  const a_type_kind kind2 = merged_kind(type2);
  if (kind1 != kind2)
    return kind_of_mixed_operation(op, kind1, kind2);
  return kind1 == tk_imaginary && op != eok_multiply ? tk_float : kind1;
}

a_type* compound_assignment_operation_type(an_expr_operator_kind op, an_expr_node* left,
                                           an_expr_node* right) {
  if (op == eok_pointer_add_assign || op == eok_pointer_subtract_assign)
    return left->type;
  if (!is_arithmetic_or_enum_type(left->type) || !is_arithmetic_or_enum_type(right->type))
    return left->type;
  if (op == eok_shift_left_assign || op == eok_shift_right_assign)
    return type_after_integral_promotion(left->type);
  return usual_arithmetic_conversions(left->type, right->type);
}

a_type_kind operation_type_kind(an_expr_operator_kind op, a_type* result_type,
                                an_expr_node* first_operand) {
  switch (static_cast<int>(op)) {
  case 0:
  case 1:
  case 2:
  case 3:
  case 4:
  case 10:
  case 11:
  case 12:
  case 13:
  case 18:
  case eok_pointer_add:
  case eok_pointer_subtract:
  case eok_pointer_difference:
  case eok_pointer_add_assign:
  case eok_pointer_subtract_assign:
  case eok_subscript:
    return tk_pointer;
  case eok_cast:
  case eok_lvalue_cast:
  case eok_ref_cast:
  case eok_glvalue_cast: {
    const a_type_kind kind = merged_kind(result_type);
    return kind == merged_kind(first_operand->type) ? kind : tk_unknown;
  }
  case eok_class_to_lvalue:
    return tk_struct;
  case eok_array_to_pointer:
    return tk_array;
  case 24:
  case eok_land:
  case eok_lor:
    return tk_integer;
  case eok_imag_multiply:
  case eok_imag_divide:
    return tk_imaginary;
  case eok_real_plus_imag:
  case eok_real_minus_imag:
  case eok_imag_plus_real:
  case eok_imag_minus_real:
    return tk_complex;
  case eok_from_bool:
  case 17:
  case eok_to_bool:
  case eok_not:
  case eok_shift_left:
  case eok_shift_right:
  case eok_assign:
    return merged_kind(first_operand->type);
  case eok_eq:
  case eok_ne:
  case eok_gt:
  case eok_lt:
  case eok_ge:
  case eok_le:
    if (is_template_param_type(result_type))
      return tk_template_param;
    return binary_operation_type_kind(op, first_operand->type, first_operand->next->type);
  case eok_last:
    return tk_error;
  default:
    if (is_compound_assignment_operator(op))
      return merged_kind(
          compound_assignment_operation_type(op, first_operand, first_operand->next));
    return merged_kind(result_type);
  }
}

// ---- Nodes of operations ----

void set_node_operator(an_expr_node* node, an_expr_operator_kind op, a_type* type, bool is_lvalue,
                       an_expr_node* first_operand) {
  set_expr_node_kind(node, expr_operation);
  node->type = type;
  node->is_lvalue = is_lvalue;
  node->is_xvalue = false;
  node->variant.operation.op = op;
  node->variant.operation.lvalue_semantics = is_lvalue;
  node->variant.operation.operands = first_operand;
  node->variant.operation.operation_kind = operation_type_kind(op, type, first_operand);
}

static an_expr_node* make_operation(an_expr_operator_kind op, a_type* type, bool is_lvalue,
                                    an_expr_node* first_operand) {
  an_expr_node* node = alloc_expr_node(expr_error);
  set_node_operator(node, op, type, is_lvalue, first_operand);
  if (first_operand != nullptr) {
    node->position = first_operand->position;
    node->range.start = first_operand->range.start;
    const an_expr_node* last = first_operand;
    while (last->next != nullptr)
      last = last->next;
    node->range.end = last->range.end;
  }
  return node;
}

an_expr_node* make_operator_node(an_expr_operator_kind op, a_type* type,
                                 an_expr_node* first_operand) {
  return make_operation(op, type, false, first_operand);
}

an_expr_node* make_lvalue_operator_node(an_expr_operator_kind op, a_type* type,
                                        an_expr_node* first_operand) {
  return make_operation(op, type, true, first_operand);
}

an_expr_node* make_comma_node(an_expr_node* left, an_expr_node* right) {
  left->next = right;
  right->next = nullptr;
  set_expr_result_not_used(left);
  an_expr_node* node = make_operation(eok_comma, right->type, right->is_lvalue, left);
  node->is_xvalue = right->is_xvalue;
  return node;
}

an_expr_node* make_comma_node_if_necessary(an_expr_node* left, an_expr_node* right) {
  return left == nullptr ? right : make_comma_node(left, right);
}

// ---- Changes ----

void overwrite_node(an_expr_node* target, an_expr_node* source) {
  if (target == source)
    return;
  an_expr_node* next = target->next;
  const bool result_not_used = target->result_not_used;
  const bool kept_in_overwrite = target->kept_in_overwrite;
  *target = *source;
  target->next = next;
  target->result_not_used = result_not_used;
  target->kept_in_overwrite = kept_in_overwrite;
}

void copy_node_value_category(const an_expr_node* source, an_expr_node* target) {
  target->is_lvalue = source->is_lvalue;
  target->is_xvalue = source->is_xvalue;
}

static bool is_conditional_node(const an_expr_node* node) {
  return is_operation_node(node, eok_question) || is_operation_node(node, eok_dependent_question);
}

// The operand that passes its value on as the whole node's, when the value is
// not used; null for none. Of a conditional it is the third.
static an_expr_node* operand_with_value_of_node(an_expr_node* node) {
  if (node->kind == expr_with_lifetime)
    return node->variant.with_lifetime.expr;
  if (node->kind != expr_operation)
    return nullptr;
  an_expr_node* first = node->variant.operation.operands;
  switch (node->variant.operation.op) {
  case eok_cast:
    return is_void_type(node->type) ? first : nullptr;
  case eok_parens:
    return first;
  case eok_comma:
  case eok_binary_question: // the first operand is needed as the condition
    return first->next;
  case eok_dependent_question:
  case eok_question:
    return first->next->next;
  default:
    return nullptr;
  }
}

void set_expr_result_not_used(an_expr_node* node) {
  std::vector<an_expr_node*> second_arms;
  while (node != nullptr) {
    node->result_not_used = true;
    if (is_conditional_node(node))
      second_arms.push_back(node->variant.operation.operands->next);
    node = operand_with_value_of_node(node);
    if (node == nullptr && !second_arms.empty()) {
      node = second_arms.back();
      second_arms.pop_back();
    }
  }
}
