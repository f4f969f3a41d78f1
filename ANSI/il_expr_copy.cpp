// Copies and comparison of expression trees. Both keep their own stack of work
// still to be done, since operands nest as deep as a source line is long.

#include "il_constants.h"
#include "il_expr.h"
#include "il_expr_int.h"
#include "il_statements.h"
#include "stack_limit.h"
#include "types.h"

#include <vector>

// ---- Copies ----

an_expr_node* copy_node(const an_expr_node* node) {
  an_expr_node* copy = alloc_expr_node(expr_error);
  *copy = *node;
  copy->next = nullptr;
  return copy;
}

static a_dynamic_init* copied_init(a_dynamic_init* init, unsigned flags) {
  return init != nullptr && (flags & cef_copy_dynamic_inits) ? copy_dynamic_init(init) : init;
}

// Gives the copy of a node records of its own where the node owns records
// beside its operands.
static void copy_parts_of_node(an_expr_node* copy, unsigned flags) {
  if (!(flags & cef_keep_rescan_info))
    copy->rescan_info = nullptr;
  switch (copy->kind) {
  case expr_constant:
    if (flags & cef_copy_constants)
      copy->variant.constant.ptr = alloc_unshared_constant(copy->variant.constant.ptr);
    break;
  case expr_temp_init:
  case expr_reuse_value:
    copy->variant.dynamic_init = copied_init(copy->variant.dynamic_init, flags);
    break;
  case expr_lambda:
    copy->variant.lambda.dynamic_init = copied_init(copy->variant.lambda.dynamic_init, flags);
    break;
  case expr_new_delete: {
    a_new_delete_supplement* supplement = alloc_new_delete_supplement();
    *supplement = *copy->variant.new_delete;
    supplement->dynamic_init = copied_init(supplement->dynamic_init, flags);
    supplement->delete_dynamic_init = copied_init(supplement->delete_dynamic_init, flags);
    copy->variant.new_delete = supplement;
    break;
  }
  case expr_throw:
    if (copy->variant.throw_info != nullptr) {
      a_throw_supplement* supplement = alloc_throw_supplement();
      *supplement = *copy->variant.throw_info;
      supplement->dynamic_init = copied_init(supplement->dynamic_init, flags);
      copy->variant.throw_info = supplement;
    }
    break;
  case expr_condition: {
    a_condition_supplement* supplement = alloc_condition_supplement();
    *supplement = *copy->variant.condition;
    supplement->dynamic_init = copied_init(supplement->dynamic_init, flags);
    copy->variant.condition = supplement;
    break;
  }
  default:
    break;
  }
}

an_expr_node* copy_list_of_expr_trees(const an_expr_node* list, unsigned flags) {
  struct a_pending_copy {
    const an_expr_node* source;
    an_expr_node** target;
  };
  an_expr_node* result = nullptr;
  std::vector<a_pending_copy> pending = {{list, &result}};
  while (!pending.empty()) {
    a_pending_copy work = pending.back();
    pending.pop_back();
    *work.target = nullptr;
    for (; work.source != nullptr; work.source = work.source->next) {
      an_expr_node* copy = copy_node(work.source);
      copy_parts_of_node(copy, flags);
      *work.target = copy;
      work.target = &copy->next;
      an_operand_list_heads lists = operand_lists_of_node(copy);
      for (int i = 0; i < lists.count; ++i) {
        // The copied head still leads to the source's operands.
        if (*lists.heads[i] != nullptr)
          pending.push_back({*lists.heads[i], lists.heads[i]});
      }
    }
  }
  return result;
}

an_expr_node* copy_expr_tree(const an_expr_node* node, unsigned flags) {
  if (node == nullptr)
    return nullptr;
  an_expr_node* copy = copy_node(node);
  copy_parts_of_node(copy, flags);
  an_operand_list_heads lists = operand_lists_of_node(copy);
  for (int i = 0; i < lists.count; ++i)
    *lists.heads[i] = copy_list_of_expr_trees(*lists.heads[i], flags);
  return copy;
}

// ---- Comparison ----

static bool same_dynamic_init(const a_dynamic_init* a, const a_dynamic_init* b, unsigned flags) {
  check_stack_limit();
  if (a == b)
    return true;
  if (a == nullptr || b == nullptr || a->kind != b->kind || a->destructor != b->destructor)
    return false;
  switch (a->kind) {
  case dik_none:
  case dik_zero:
    return true;
  case dik_constant:
  case dik_nonconstant_aggregate:
    return compare_constants(a->variant.constant, b->variant.constant, flags);
  case dik_expr:
  case dik_class_expr:
  case dik_bitwise_copy:
    return compare_expressions(a->variant.expr, b->variant.expr, flags);
  case dik_constructor:
    return a->variant.constructor.routine == b->variant.constructor.routine &&
           compare_expressions(a->variant.constructor.args, b->variant.constructor.args, flags);
  }
  return false;
}

static bool same_sizeof_like(const an_expr_node* a, const an_expr_node* b) {
  if (a->variant.sizeof_like.is_type != b->variant.sizeof_like.is_type ||
      a->variant.sizeof_like.skip != b->variant.sizeof_like.skip)
    return false;
  if (a->variant.sizeof_like.is_type)
    return same_type_or_null(a->variant.sizeof_like.operand.type,
                             b->variant.sizeof_like.operand.type);
  return !a->variant.sizeof_like.skip ||
         a->variant.sizeof_like.operand.expr == b->variant.sizeof_like.operand.expr;
}

static bool same_new_delete(const a_new_delete_supplement* a, const a_new_delete_supplement* b,
                            unsigned flags) {
  return a->is_new == b->is_new && a->is_array == b->is_array && a->is_global == b->is_global &&
         same_type_or_null(a->type, b->type) && a->routine == b->routine &&
         same_dynamic_init(a->dynamic_init, b->dynamic_init, flags) &&
         same_dynamic_init(a->delete_dynamic_init, b->delete_dynamic_init, flags);
}

static bool same_throw(const a_throw_supplement* a, const a_throw_supplement* b, unsigned flags) {
  if (a == b)
    return true;
  return a != nullptr && b != nullptr && same_type_or_null(a->type, b->type) &&
         a->destructor == b->destructor &&
         same_dynamic_init(a->dynamic_init, b->dynamic_init, flags);
}

bool same_node(const an_expr_node* a, const an_expr_node* b, unsigned flags) {
  if (a->kind != b->kind || a->is_lvalue != b->is_lvalue || a->is_xvalue != b->is_xvalue)
    return false;
  if (!(flags & ccf_ignore_types) && !same_type_or_null(a->type, b->type))
    return false;
  switch (a->kind) {
  case expr_operation:
    return a->variant.operation.op == b->variant.operation.op &&
           a->variant.operation.operation_kind == b->variant.operation.operation_kind &&
           a->variant.operation.operands_reversed == b->variant.operation.operands_reversed;
  case expr_constant:
    return compare_constants(a->variant.constant.ptr, b->variant.constant.ptr,
                             flags & ~unsigned{ccf_for_sharing});
  case expr_variable:
  case expr_vla_dealloc:
    return a->variant.variable.ptr == b->variant.variable.ptr;
  case expr_field:
    return a->variant.field.ptr == b->variant.field.ptr;
  case expr_routine:
    return a->variant.routine.ptr == b->variant.routine.ptr;
  case expr_type_only:
    return same_type_or_null(a->variant.type_only.ptr, b->variant.type_only.ptr);
  case expr_temp_init:
  case expr_reuse_value:
    return same_dynamic_init(a->variant.dynamic_init, b->variant.dynamic_init, flags);
  case expr_new_delete:
    return same_new_delete(a->variant.new_delete, b->variant.new_delete, flags);
  case expr_lambda:
    return a->variant.lambda.ptr == b->variant.lambda.ptr;
  case expr_throw:
    return same_throw(a->variant.throw_info, b->variant.throw_info, flags);
  case expr_condition:
    return a->variant.condition->scope == b->variant.condition->scope;
  case expr_typed_expr:
    return same_type_or_null(a->variant.typed_expr.type, b->variant.typed_expr.type);
  case expr_sizeof_like:
  case expr_alignof_like:
  case expr_typeid_like:
    return same_sizeof_like(a, b);
  case expr_statement:
    return a->variant.statement == b->variant.statement;
  case expr_dependent_op:
    return a->variant.dependent_op.op == b->variant.dependent_op.op;
  case expr_param_ref:
    return a->variant.param_ref.number == b->variant.param_ref.number &&
           a->variant.param_ref.level == b->variant.param_ref.level;
  case expr_call_like:
    return a->variant.call_like.flag == b->variant.call_like.flag;
  default:
    return true;
  }
}

bool compare_expressions(const an_expr_node* a, const an_expr_node* b, unsigned flags) {
  struct a_pair {
    const an_expr_node* a;
    const an_expr_node* b;
  };
  if (a == b)
    return true;
  if (a == nullptr || b == nullptr)
    return false;
  std::vector<a_pair> pending = {{a, b}};
  while (!pending.empty()) {
    const a_pair pair = pending.back();
    pending.pop_back();
    if (!same_node(pair.a, pair.b, flags))
      return false;
    // The heads are only read.
    an_operand_list_heads lists_a = operand_lists_of_node(const_cast<an_expr_node*>(pair.a));
    an_operand_list_heads lists_b = operand_lists_of_node(const_cast<an_expr_node*>(pair.b));
    if (lists_a.count != lists_b.count)
      return false;
    for (int i = 0; i < lists_a.count; ++i) {
      const an_expr_node* left = *lists_a.heads[i];
      const an_expr_node* right = *lists_b.heads[i];
      for (; left != nullptr && right != nullptr; left = left->next, right = right->next)
        pending.push_back({left, right});
      if (left != right)
        return false;
    }
  }
  return true;
}
