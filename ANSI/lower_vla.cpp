#include "lower_vla.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "il.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lower_c99_int.h"
#include "lower_context.h"
#include "lower_il.h"
#include "lower_insert.h"
#include "lower_runtime.h"
#include "mode_words.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

namespace {

// A jump to a label that is still to come, with the arrays alive where it starts.
struct a_forward_goto {
  a_statement* statement;
  std::vector<a_variable*> arrays;
};

std::vector<a_variable*> live_arrays; // in the order of their declarations
std::unordered_map<const a_label*, size_t> live_arrays_of_label;
std::vector<a_forward_goto> forward_gotos;

// Of the unit.
a_routine* vla_alloc_routine;
a_routine* vla_dealloc_routine;

} // namespace

bool function_has_vlas;

void begin_lowering_of_vlas(const a_routine* routine) {
  function_has_vlas = routine->has_vla;
}

void end_lowering_of_vlas() {
  if (!function_has_vlas)
    return;
  function_has_vlas = false;
  live_arrays.clear();
  live_arrays_of_label.clear();
  forward_gotos.clear();
}

// ---- Dimensions ----

static a_type* size_type() {
  return integer_type(static_cast<an_integer_kind>(targ_size_t_int_kind));
}

static a_type* distance_type() {
  return integer_type(static_cast<an_integer_kind>(targ_ptrdiff_t_int_kind));
}

static a_vla_dimension* dimension_of(const a_type* array) {
  a_vla_dimension* dimension = array->variant.array.is_vla && array->variant.array.has_vla_dimension
                                   ? array->variant.array.bound.vla_dimension
                                   : nullptr;
  return dimension != nullptr ? find_vla_dimension(dimension) : nullptr;
}

// Calls `action` with the dimensions of a type, the outermost first.
template <class Action> static void for_each_dimension(a_type* type, Action action) {
  for (;;) {
    type = f_skip_typerefs(type);
    if (type->kind == tk_pointer) {
      type = type->variant.pointer.referenced_type;
    } else if (type->kind == tk_array) {
      if (a_vla_dimension* dimension = dimension_of(type))
        action(dimension);
      type = type->variant.array.element_type;
    } else {
      return;
    }
  }
}

std::vector<an_expr_node*> unevaluated_bounds(const an_expr_node* node) {
  std::vector<an_expr_node*> bounds;
  a_type* type = nullptr;
  if (is_operation_node(node, eok_cast) || node->kind == expr_temp_init)
    type = node->type;
  else if (node->kind == expr_type_only)
    type = node->variant.type_only.ptr;
  if (function_has_vlas && type != nullptr)
    for_each_dimension(type, [&](const a_vla_dimension* dimension) {
      if (dimension->size_expr != nullptr)
        bounds.push_back(dimension->size_expr);
    });
  return bounds;
}

// The bound's value goes to its variable; null when it has gone there already.
static an_expr_node* lower_vla_dimension(a_vla_dimension* dimension) {
  an_expr_node* bound = dimension->size_expr;
  if (bound == nullptr)
    return nullptr;
  dimension->size_expr = nullptr;
  lower_c99_expr(bound);
  bound = add_cast_if_necessary(bound, dimension->size_variable->type);
  an_expr_node* result =
      make_assignment_expr(var_lvalue_expr(dimension->size_variable), eok_assign, bound);
  set_expr_result_not_used(result);
  return result;
}

an_expr_node* lower_vla_dimensions_in_type(a_type* type) {
  an_expr_node* result = nullptr;
  if (!function_has_vlas)
    return result;
  for_each_dimension(type, [&](a_vla_dimension* dimension) {
    if (an_expr_node* next = lower_vla_dimension(dimension))
      result = make_comma_node_if_necessary(result, next);
  });
  return result;
}

// The bytes of an array: its constant dimensions times those of run time.
static an_expr_node* size_of_vla(a_type* type) {
  an_expr_node* dimensions = lower_vla_dimensions_in_type(type);
  uint64_t constant_part = 1;
  std::vector<a_variable*> factors;
  for (type = f_skip_typerefs(type); type->kind == tk_array;
       type = f_skip_typerefs(type->variant.array.element_type)) {
    if (!type->variant.array.is_vla)
      constant_part *= num_array_elements(type);
    else if (a_vla_dimension* dimension = dimension_of(type))
      factors.push_back(dimension->size_variable);
  }
  constant_part *= is_void_type(type) || is_function_type(type) ? 1 : size_of_type(type);
  an_expr_node* size = nullptr;
  if (constant_part != 1 || factors.empty())
    size = node_for_unsigned_constant(constant_part,
                                      static_cast<an_integer_kind>(targ_size_t_int_kind));
  for (a_variable* factor : factors) {
    an_expr_node* value = var_rvalue_expr(factor);
    if (size != nullptr) {
      size->next = value;
      value = make_operator_node(eok_multiply, size_type(), size);
    }
    size = value;
  }
  return make_comma_node_if_necessary(dimensions, size);
}

void lower_set_vla_size(a_statement* statement) {
  a_vla_dimension* dimension = find_vla_dimension(statement->variant.vla_dimension);
  an_expr_node* value = lower_vla_dimension(dimension);
  end_of_full_expr_processing();
  set_statement_kind(statement, value != nullptr ? stmk_expr : stmk_null);
  statement->expr = value;
}

// ---- Room ----

// The address of the pointer that the array became.
static an_expr_node* address_of_pointer(a_variable* variable) {
  return add_cast(var_addr_expr(variable), void_star_type());
}

static an_expr_node* deallocation_of(a_variable* variable) {
  return f_make_prototyped_runtime_call("__vla_dealloc", &vla_dealloc_routine, void_type(),
                                        address_of_pointer(variable));
}

static void make_zero_statement(a_statement* statement) {
  statement->expr = node_for_integer_constant(0, ik_int);
  statement->expr->result_not_used = true;
}

void lower_vla_decl(a_statement* statement) {
  a_variable* variable = statement->variant.vla_decl.variable;
  set_statement_kind(statement, stmk_expr);
  if (!variable->is_vla)
    return make_zero_statement(statement);
  an_expr_node* size = size_of_vla(variable->type);
  variable->type = make_pointer_type(array_element_type(variable->type));
  an_expr_node* arguments = address_of_pointer(variable);
  arguments->next = size;
  statement->expr =
      f_make_prototyped_runtime_call("__vla_alloc", &vla_alloc_routine, void_type(), arguments);
  live_arrays.push_back(variable);
}

size_t num_live_vlas() {
  return live_arrays.size();
}

void end_block_of_vlas(size_t count) {
  live_arrays.resize(count);
}

// ---- Jumps out of the scope of arrays ----

// Gives back the arrays behind the first `count`, in front of the jump.
static void deallocate_before_goto(a_statement* jump, const std::vector<a_variable*>& arrays,
                                   size_t count) {
  if (arrays.size() <= count)
    return;
  change_statement_into_block(jump);
  an_insert_location location;
  set_block_start_insert_location(jump, &location);
  for (size_t i = arrays.size(); i-- > count;) {
    a_statement* statement = alloc_expr_statement(deallocation_of(arrays[i]));
    statement->position = jump->position;
    insert_statement(statement, &location);
  }
}

void lower_vla_goto(a_statement* statement) {
  if (!vla_deallocations_in_il || live_arrays.empty())
    return;
  auto known = live_arrays_of_label.find(statement->variant.label.ptr);
  if (known != live_arrays_of_label.end())
    deallocate_before_goto(statement, live_arrays, known->second);
  else
    forward_gotos.push_back({statement, live_arrays});
}

void lower_vla_label(const a_statement* statement) {
  const a_label* label = statement->variant.label.ptr;
  live_arrays_of_label[label] = live_arrays.size();
  auto leads_here = [&](const a_forward_goto& jump) {
    if (jump.statement->variant.label.ptr != label)
      return false;
    deallocate_before_goto(jump.statement, jump.arrays, live_arrays.size());
    return true;
  };
  forward_gotos.erase(std::remove_if(forward_gotos.begin(), forward_gotos.end(), leads_here),
                      forward_gotos.end());
}

// ---- Objects and sizes ----

// The implicit conversions of pointers that stand below another one go.
static an_expr_node* convert_pointer(an_expr_node* pointer, a_type* type) {
  while (is_operation_node(pointer, eok_cast) && pointer->variant.operation.is_implicit &&
         is_pointer_type(pointer->type) &&
         is_pointer_type(pointer->variant.operation.operands->type))
    pointer = pointer->variant.operation.operands;
  return add_cast_if_necessary(pointer, make_unqualified_type(type));
}

// `*pointer`, in the place of an array.
static void lower_vla_variable_lvalue(an_expr_node* node) {
  an_expr_node* pointer = var_rvalue_expr(node->variant.variable.ptr);
  pointer = convert_pointer(pointer, make_pointer_type(node->type));
  overwrite_node(node, add_indirection_to_node(pointer));
}

static void lower_array_to_pointer(an_expr_node* node) {
  a_type* type = node->type;
  an_expr_node* pointer = add_address_of_to_node(node->variant.operation.operands);
  overwrite_node(node, convert_pointer(pointer, type));
}

static void put_dimensions_before(an_expr_node* node, a_type* type) {
  an_insert_location location;
  set_expr_insert_location(node, &location);
  if (an_expr_node* dimensions = lower_vla_dimensions_in_type(type))
    insert_expr(dimensions, &location);
}

static void lower_runtime_sizeof(an_expr_node* node) {
  overwrite_node(node, add_cast_if_necessary(size_of_vla(node->variant.type_only.ptr), node->type));
}

// ---- Pointer arithmetic ----

static bool points_to_vla(const a_type* type) {
  return is_pointer_type(type) && is_vla_type(type_pointed_to(type));
}

static a_type* byte_pointer_type() {
  return make_pointer_type(integer_type(ik_char));
}

// `pointer + integer` or `pointer - integer`, of the pointer's type.
static an_expr_node* vla_step(an_expr_node* pointer, an_expr_node* integer, bool is_add) {
  a_type* type = make_unqualified_type(pointer->type);
  an_expr_node* distance = add_cast_if_necessary(integer, distance_type());
  distance->next = add_cast_if_necessary(size_of_vla(type_pointed_to(type)), distance_type());
  distance = make_operator_node(eok_multiply, distance_type(), distance);
  an_expr_node* base = convert_pointer(pointer, byte_pointer_type());
  base->next = distance;
  an_expr_node* sum = make_operator_node(is_add ? eok_pointer_add : eok_pointer_subtract,
                                         byte_pointer_type(), base);
  return add_cast(sum, type);
}

static void lower_vla_pointer_integer_arithmetic(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  an_expr_node* pointer = node->variant.operation.operands;
  an_expr_node* integer = pointer->next;
  if (!is_pointer_type(pointer->type))
    std::swap(pointer, integer);
  if (!points_to_vla(pointer->type))
    return;
  pointer->next = integer->next = nullptr;
  an_expr_node* sum = vla_step(pointer, integer, op != eok_pointer_subtract);
  overwrite_node(node, op == eok_subscript ? add_indirection_to_node(sum) : sum);
}

static void lower_vla_pointer_difference(an_expr_node* node) {
  an_expr_node* left = node->variant.operation.operands;
  an_expr_node* right = left->next;
  a_type* type = points_to_vla(left->type) ? left->type : right->type;
  if (!points_to_vla(type))
    return;
  left = convert_pointer(left, byte_pointer_type());
  left->next = convert_pointer(right, byte_pointer_type());
  an_expr_node* bytes = make_operator_node(eok_pointer_difference, distance_type(), left);
  bytes->next = add_cast_if_necessary(size_of_vla(type_pointed_to(type)), distance_type());
  an_expr_node* count = make_operator_node(eok_divide, distance_type(), bytes);
  overwrite_node(node, add_cast_if_necessary(count, node->type));
}

// `p += i` and its like; the operand doesn't do anything when it is evaluated.
static void lower_change_of_vla_pointer(an_expr_node* node) {
  const an_expr_operator_kind op = node->variant.operation.op;
  an_expr_node* object = node->variant.operation.operands;
  an_expr_node* integer =
      is_increment_operator(op) ? node_for_integer_constant(1, ik_int) : object->next;
  const bool is_add = op == eok_pointer_add_assign || op == eok_post_incr || op == eok_pre_incr;
  an_expr_node* old_value = copy_expr_tree(object, cef_none);
  old_value->next = nullptr;
  a_kept_value kept;
  old_value = keep_old_value(node, old_value, &kept);
  an_expr_node* change =
      make_assignment_expr(object, eok_assign, vla_step(old_value, integer, is_add));
  overwrite_node(node, change_with_kept_value(kept, change));
}

static void lower_vla_operator(an_expr_node* node) {
  switch (node->variant.operation.op) {
  case eok_array_to_pointer:
    if (is_vla_type(node->variant.operation.operands->type))
      lower_array_to_pointer(node);
    break;
  case eok_subscript:
  case eok_pointer_add:
  case eok_pointer_subtract:
    lower_vla_pointer_integer_arithmetic(node);
    break;
  case eok_pointer_difference:
    lower_vla_pointer_difference(node);
    break;
  case eok_cast:
    put_dimensions_before(node, node->type);
    break;
  case eok_post_incr:
  case eok_post_decr:
  case eok_pre_incr:
  case eok_pre_decr:
  case eok_pointer_add_assign:
  case eok_pointer_subtract_assign:
    if (points_to_vla(node->variant.operation.operands->type))
      lower_change_of_object(node, lower_change_of_vla_pointer);
    break;
  default:
    break;
  }
}

void lower_vla_node(an_expr_node* node) {
  switch (node->kind) {
  case expr_operation:
    lower_vla_operator(node);
    break;
  case expr_variable:
    if (node->variant.variable.ptr->is_vla && is_array_type(node->type))
      lower_vla_variable_lvalue(node);
    break;
  case expr_type_only:
    if (is_vla_type(node->variant.type_only.ptr))
      lower_runtime_sizeof(node);
    break;
  case expr_vla_dealloc:
    overwrite_node(node, deallocation_of(node->variant.variable.ptr));
    break;
  default:
    break;
  }
}

// ---- Life of the module ----

void lower_vla_one_time_init() {
  f_register_trans_unit_variable(&vla_alloc_routine, sizeof vla_alloc_routine, 0);
  f_register_trans_unit_variable(&vla_dealloc_routine, sizeof vla_dealloc_routine, 0);
}

void lower_vla_trans_unit_init() {
  vla_alloc_routine = nullptr;
  vla_dealloc_routine = nullptr;
  end_lowering_of_vlas();
}
