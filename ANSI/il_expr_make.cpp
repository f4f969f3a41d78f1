// Nodes of values, addresses, casts and selections.

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "types.h"

#include <vector>

// ---- Constants ----

an_expr_node* alloc_node_for_allocated_constant(a_constant* constant) {
  an_expr_node* node = alloc_expr_node(expr_constant);
  node->type = constant->type;
  node->variant.constant.ptr = constant;
  node->position = constant->position;
  // A string literal is an lvalue (C99 6.5.1 p4).
  node->is_lvalue = constant->kind == con_string;
  return node;
}

an_expr_node* alloc_node_for_constant(const a_constant* constant) {
  if (constant->kind == con_error)
    return error_node();
  return alloc_node_for_allocated_constant(alloc_shareable_constant(constant));
}

an_expr_node* node_for_integer_constant(int64_t value, an_integer_kind int_kind) {
  return node_for_unsigned_constant(static_cast<uint64_t>(value), int_kind);
}

an_expr_node* node_for_unsigned_constant(uint64_t value, an_integer_kind int_kind) {
  a_constant constant;
  set_unsigned_integer_constant(&constant, value, int_kind);
  return alloc_node_for_constant(&constant);
}

// ---- Variables and routines ----

static an_expr_node* variable_node(a_variable* variable, bool is_lvalue) {
  an_expr_node* node = alloc_expr_node(expr_variable);
  node->variant.variable.ptr = variable;
  node->type = variable->type;
  node->is_lvalue = is_lvalue;
  return node;
}

an_expr_node* var_lvalue_expr(a_variable* variable) {
  if (!is_reference_type(variable->type))
    return variable_node(variable, true);
  return add_ref_indirection_to_node(variable_node(variable, false));
}

an_expr_node* var_rvalue_expr(a_variable* variable) {
  an_expr_node* node;
  if (is_reference_type(variable->type)) {
    node = add_ref_indirection_to_node(variable_node(variable, false));
    node->is_lvalue = false;
    node->variant.operation.lvalue_semantics = false;
  } else {
    node = variable_node(variable, false);
  }
  node->is_volatile_access = is_volatile_qualified_type(node->type);
  node->type = make_unqualified_type(node->type);
  return node;
}

an_expr_node* var_addr_expr(a_variable* variable) {
  return add_address_of_to_node(var_lvalue_expr(variable));
}

static an_expr_node* routine_node(a_routine* routine, a_type* type, bool is_lvalue) {
  an_expr_node* node = alloc_expr_node(expr_routine);
  node->variant.routine.ptr = routine;
  node->type = type;
  node->is_lvalue = is_lvalue;
  return node;
}

an_expr_node* function_lvalue_expr(a_routine* routine) {
  return routine_node(routine, routine->type, true);
}

an_expr_node* function_rvalue_expr(a_routine* routine) {
  return routine_node(routine, make_pointer_type(routine->type), false);
}

an_expr_node* function_addr_expr(a_routine* routine) {
  set_routine_address_taken(routine);
  return function_rvalue_expr(routine);
}

an_expr_node* type_only_expr(a_type* type) {
  an_expr_node* node = alloc_expr_node(expr_type_only);
  node->type = type;
  node->variant.type_only.ptr = type;
  return node;
}

// ---- Addresses and indirections ----

// The operand through which a glvalue operation reaches its object; null when
// the object is that of a pointer, or none.
static an_expr_node* operand_with_object(an_expr_node* node) {
  an_expr_node* first = node->variant.operation.operands;
  switch (node->variant.operation.op) {
  case eok_dot_field:
  case eok_dot_base_field:
  case eok_lvalue_cast:
  case eok_glvalue_cast:
  case eok_base_class_cast:
  case eok_derived_class_cast:
  case eok_parens:
    return is_pointer_type(first->type) ? nullptr : first;
  case eok_subscript: {
    // Of an array itself, not of a pointer.
    an_expr_node* base = node->variant.operation.operands_reversed ? first->next : first;
    return is_operation_node(base, eok_array_to_pointer) ? base->variant.operation.operands
                                                         : nullptr;
  }
  case eok_comma:
    return first->next;
  case eok_question:
  case eok_binary_question:
    return first->next; // the third operand is left to the caller
  case eok_assign:
  case eok_pre_incr:
  case eok_pre_decr:
    return first; // lvalues in C++ (C++11 5.17 p1, 5.3.2 p1)
  default:
    return is_compound_assignment_operator(node->variant.operation.op) ? first : nullptr;
  }
}

// Marks the entity, or passes on to the node that leads to it; null when there
// is none further.
static an_expr_node* mark_entity_of_lvalue(an_expr_node* node) {
  switch (node->kind) {
  case expr_variable:
    set_variable_address_taken(node->variant.variable.ptr);
    return nullptr;
  case expr_routine:
    set_routine_address_taken(node->variant.routine.ptr);
    return nullptr;
  case expr_with_lifetime:
    return node->variant.with_lifetime.expr;
  case expr_operation:
    return operand_with_object(node);
  default:
    return nullptr;
  }
}

// The other object that a conditional may name.
static an_expr_node* other_object_of_conditional(an_expr_node* node) {
  if (is_operation_node(node, eok_question))
    return node->variant.operation.operands->next->next;
  return is_operation_node(node, eok_binary_question) ? node->variant.operation.operands : nullptr;
}

void mark_address_taken_in_lvalue(an_expr_node* node) {
  std::vector<an_expr_node*> others;
  while (node != nullptr) {
    an_expr_node* other = other_object_of_conditional(node);
    if (other != nullptr)
      others.push_back(other);
    node = mark_entity_of_lvalue(node);
    if (node == nullptr && !others.empty()) {
      node = others.back();
      others.pop_back();
    }
  }
}

static bool lowering_is_underway() {
  return initial_value_for_il_lowering_flag != 0;
}

an_expr_node* add_address_of_to_node(an_expr_node* node) {
  if (is_error_node(node))
    return node;
  if (is_operation_node(node, eok_indirect) &&
      (node->variant.operation.is_implicit || lowering_is_underway())) {
    an_expr_node* pointer = node->variant.operation.operands;
    pointer->next = nullptr;
    return pointer;
  }
  node->next = nullptr;
  if (node->is_lvalue)
    mark_address_taken_in_lvalue(node);
  an_expr_node* address = make_operator_node(eok_address_of, make_pointer_type(node->type), node);
  address->variant.operation.is_implicit = true;
  return address;
}

an_expr_node* add_indirection_to_node(an_expr_node* node) {
  if (is_error_node(node))
    return node;
  if (is_operation_node(node, eok_address_of) && node->variant.operation.is_implicit) {
    an_expr_node* object = node->variant.operation.operands;
    object->next = nullptr;
    return object;
  }
  node->next = nullptr;
  an_expr_node* object = make_lvalue_operator_node(eok_indirect, type_pointed_to(node->type), node);
  object->variant.operation.is_implicit = true;
  return object;
}

an_expr_node* add_reference_to_to_node(an_expr_node* node) {
  if (is_error_node(node))
    return node;
  if (is_operation_node(node, eok_ref_indirect)) {
    an_expr_node* reference = node->variant.operation.operands;
    reference->next = nullptr;
    return reference;
  }
  node->next = nullptr;
  if (node->is_lvalue)
    mark_address_taken_in_lvalue(node);
  an_expr_node* reference =
      make_operator_node(eok_address_of, make_reference_type(node->type), node);
  reference->variant.operation.is_implicit = true;
  return reference;
}

an_expr_node* add_ref_indirection_to_node(an_expr_node* node) {
  if (is_error_node(node))
    return node;
  node->next = nullptr;
  an_expr_node* object =
      make_lvalue_operator_node(eok_ref_indirect, type_pointed_to(node->type), node);
  object->variant.operation.is_implicit = true;
  return object;
}

// ---- Casts ----

an_expr_node* add_cast(an_expr_node* node, a_type* type) {
  if (is_error_node(node))
    return node;
  node->next = nullptr;
  an_expr_node* cast = make_operator_node(eok_cast, type, node);
  cast->variant.operation.is_implicit = true;
  return cast;
}

an_expr_node* add_cast_if_necessary(an_expr_node* node, a_type* type) {
  return identical_types(node->type, type) ? node : add_cast(node, type);
}

an_expr_node* add_cast_to_glvalue(an_expr_node* node, a_type* type) {
  if (is_error_node(node) || identical_types(node->type, type))
    return node;
  node->next = nullptr;
  an_expr_node* cast = make_lvalue_operator_node(eok_glvalue_cast, type, node);
  cast->variant.operation.is_implicit = true;
  copy_node_value_category(node, cast);
  return cast;
}

// ---- Selections ----

static an_expr_node* field_selection(an_expr_node* object, a_field* field, bool is_lvalue) {
  if (is_error_node(object))
    return object;
  const bool through_pointer = is_pointer_type(object->type);
  const a_type* class_type = through_pointer ? type_pointed_to(object->type) : object->type;
  a_type* type = make_field_selection_type(field, get_type_qualifiers(class_type));
  an_expr_node* name = alloc_expr_node(expr_field);
  name->variant.field.ptr = field;
  name->type = field->type;
  object->next = name;
  an_expr_operator_kind op = through_pointer ? eok_arrow_field : eok_dot_field;
  if (is_lvalue)
    return make_lvalue_operator_node(op, type, object);
  an_expr_node* value = make_operator_node(op, make_unqualified_type(type), object);
  value->is_volatile_access = is_volatile_qualified_type(type);
  return value;
}

an_expr_node* field_lvalue_selection_expr(an_expr_node* object, a_field* field) {
  return field_selection(object, field, true);
}

an_expr_node* field_rvalue_selection_expr(an_expr_node* object, a_field* field) {
  return field_selection(object, field, false);
}

an_expr_node* base_class_selection_expr(an_expr_node* object, a_base_class* base_class) {
  if (is_error_node(object))
    return object;
  object->next = nullptr;
  const bool through_pointer = is_pointer_type(object->type);
  const a_type* class_type = through_pointer ? type_pointed_to(object->type) : object->type;
  a_type* base_type = make_qualified_type(base_class->type, get_type_qualifiers(class_type));
  an_expr_node* node = make_operator_node(
      eok_base_class_cast, through_pointer ? make_pointer_type(base_type) : base_type, object);
  node->variant.operation.is_implicit = true;
  copy_node_value_category(object, node);
  node->variant.operation.lvalue_semantics = object->is_lvalue;
  return node;
}

an_expr_node* make_assignment_expr(an_expr_node* left, an_expr_operator_kind op,
                                   an_expr_node* right) {
  left->next = right;
  right->next = nullptr;
  return make_operator_node(op, make_unqualified_type(left->type), left);
}
