// Constant folding: the addresses that expressions have before run time, and
// the values that lie at constant addresses.

#include "const_ints.h"
#include "folding_int.h"
#include "host_envir.h"
#include "il.h"
#include "il_statements.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

// ---- Addresses that expressions have before run time ----

static bool glvalue_address(an_expr_node* expr, a_constant* result, bool address_taken);
static bool prvalue_pointer(an_expr_node* expr, a_constant* result, bool address_taken);

static bool has_static_address(const a_variable* variable) {
  return variable->storage_kind < sc_auto && !variable->is_thread_local;
}

static bool add_to_address(a_constant* address, int64_t distance) {
  if (address->kind == con_address) {
    address->value.address.subobject_path = nullptr;
    return !__builtin_add_overflow(address->value.address.offset, distance,
                                   &address->value.address.offset);
  }
  address->value.int_value =
      truncate_integer_value(address->value.int_value + static_cast<uint64_t>(distance),
                             unsigned_int_kind_of(targ_ptrdiff_t_int_kind));
  return true;
}

// The pointer operand and the constant distance of pointer + integer.
static bool moved_pointer(an_expr_node* expr, a_constant* result, bool address_taken) {
  auto& operation = expr->variant.operation;
  an_expr_node* pointer = operation.operands;
  an_expr_node* integer = pointer->next;
  if (operation.operands_reversed) {
    pointer = integer;
    integer = operation.operands;
  }
  if (integer->kind != expr_constant || integer->variant.constant.ptr->kind != con_integer)
    return false;
  bool overflow;
  int64_t distance, count = value_of_integer_constant(integer->variant.constant.ptr, &overflow);
  int64_t step = static_cast<int64_t>(pointer_step(pointer->type));
  if (operation.op == eok_pointer_subtract)
    step = -step;
  return step != 0 && !overflow && !__builtin_mul_overflow(count, step, &distance) &&
         prvalue_pointer(pointer, result, address_taken) && add_to_address(result, distance);
}

static bool selected_field_address(an_expr_node* expr, a_constant* result, bool address_taken) {
  auto& operation = expr->variant.operation;
  an_expr_node* field_node = operation.operands->next;
  a_field* field = field_node->variant.field.ptr;
  bool known = operation.op == eok_dot_field
                   ? glvalue_address(operation.operands, result, address_taken)
                   : prvalue_pointer(operation.operands, result, address_taken);
  return known && !field->is_bit_field &&
         add_to_address(result, static_cast<int64_t>(field->offset));
}

static bool glvalue_operation_address(an_expr_node* expr, a_constant* result, bool address_taken) {
  auto& operation = expr->variant.operation;
  switch (operation.op) {
  case eok_indirect:
    return prvalue_pointer(operation.operands, result, address_taken);
  case eok_subscript:
    return moved_pointer(expr, result, address_taken);
  case eok_dot_field:
  case eok_arrow_field:
    return selected_field_address(expr, result, address_taken);
  case eok_parens:
  case eok_lvalue_cast:
  case eok_glvalue_cast:
    return glvalue_address(operation.operands, result, address_taken);
  default:
    return false;
  }
}

static bool glvalue_address(an_expr_node* expr, a_constant* result, bool address_taken) {
  check_stack_limit();
  switch (expr->kind) {
  case expr_variable:
    if (!has_static_address(expr->variant.variable.ptr))
      return false;
    set_variable_address_constant(expr->variant.variable.ptr, result, address_taken);
    return true;
  case expr_routine:
    set_routine_address_constant(expr->variant.routine.ptr, result, address_taken);
    return true;
  case expr_constant:
    if (expr->variant.constant.ptr->kind != con_string)
      return false;
    set_constant_address_constant(expr->variant.constant.ptr, result);
    return true;
  case expr_operation:
    return glvalue_operation_address(expr, result, address_taken);
  default:
    return false;
  }
}

static bool prvalue_operation_address(an_expr_node* expr, a_constant* result, bool address_taken) {
  auto& operation = expr->variant.operation;
  switch (operation.op) {
  case eok_address_of:
  case eok_array_to_pointer:
    return glvalue_address(operation.operands, result, address_taken);
  case eok_pointer_add:
  case eok_pointer_subtract:
    return moved_pointer(expr, result, address_taken);
  case eok_cast:
  case eok_base_class_cast:
  case eok_derived_class_cast:
    if (!prvalue_pointer(operation.operands, result, address_taken) ||
        !type_change_constant(result, expr->type))
      return false;
    result->implicit_cast = operation.is_implicit;
    result->explicit_cast = !operation.is_implicit;
    return true;
  case eok_parens:
    return prvalue_pointer(operation.operands, result, address_taken);
  default:
    return false;
  }
}

static bool prvalue_pointer(an_expr_node* expr, a_constant* result, bool address_taken) {
  check_stack_limit();
  if (expr->kind == expr_constant) {
    const a_constant* constant = expr->variant.constant.ptr;
    if (constant->kind != con_address && constant->kind != con_integer)
      return false;
    copy_constant(constant, result);
  } else if (expr->kind == expr_routine && !expr->is_lvalue) {
    set_routine_address_constant(expr->variant.routine.ptr, result, address_taken);
  } else if (expr->kind != expr_operation ||
             !prvalue_operation_address(expr, result, address_taken)) {
    return false;
  }
  result->type = expr->type;
  return true;
}

bool constant_prvalue_pointer_full(an_expr_node* expr, a_constant* result, bool address_taken) {
  return prvalue_pointer(expr, result, address_taken);
}

bool constant_prvalue_pointer(an_expr_node* expr, a_constant* result) {
  return prvalue_pointer(expr, result, true);
}

bool constant_glvalue_address(an_expr_node* expr, a_constant* result) {
  return glvalue_address(expr, result, true);
}

// ---- String literals ----

bool constant_is_pointer_to_string_literal(const a_constant* constant) {
  return constant->kind == con_address && constant->value.address.base_kind == abk_constant &&
         constant->value.address.offset == 0 &&
         constant->value.address.base.constant->kind == con_string;
}

bool expr_is_pointer_to_string_literal(an_expr_node* expr, const a_constant** literal) {
  a_constant pointer;
  if (!is_pointer_type(expr->type) || !prvalue_pointer(expr, &pointer, false) ||
      !constant_is_pointer_to_string_literal(&pointer))
    return false;
  *literal = pointer.value.address.base.constant;
  return true;
}

// ---- Values in aggregates ----

// A part of a constant object. Without a value it is zero, as are elements that
// an initialiser doesn't list.
struct a_constant_part {
  const a_constant* value;
  a_type* type;
};

static const a_constant* element_of_array(const a_constant* aggregate, uint64_t index) {
  const a_constant* found = nullptr;
  uint64_t position = 0;
  for (const a_constant* e = aggregate->value.aggregate.first; e; e = e->next) {
    if (e->kind == con_designator) {
      position = e->value.designator.designated.index->value.int_value;
      continue;
    }
    uint64_t count = e->kind == con_repeat ? e->value.repeat.count : 1;
    if (index - position < count) // a later value for the same element counts
      found = e->kind == con_repeat ? e->value.repeat.element : e;
    position += count;
  }
  return found;
}

// *is_present: of a union only one member has a value.
static const a_constant* value_of_field(const a_constant* aggregate, const a_field* wanted,
                                        bool is_union, bool* is_present) {
  const a_constant* found = nullptr;
  a_type* type = f_skip_typerefs(aggregate->type);
  const a_field* field = next_initializable_field(type->variant.class_struct_union.fields);
  *is_present = !is_union;
  for (const a_constant* e = aggregate->value.aggregate.first; e; e = e->next) {
    if (e->kind == con_designator) {
      field = e->value.designator.designated.field;
      continue;
    }
    if (!field)
      break;
    if (is_union)
      *is_present = field == wanted;
    if (field == wanted)
      found = e;
    field = next_initializable_field(field->next);
  }
  return found;
}

static bool select_field_value(const a_constant_part* object, const a_field* field,
                               a_constant_part* result) {
  bool is_union = is_union_type(object->type), is_present = true;
  const a_constant* value = nullptr;
  if (object->value && object->value->kind != con_aggregate)
    return false;
  if (object->value)
    value = value_of_field(object->value, field, is_union, &is_present);
  *result = {value, field->type};
  return is_present;
}

// The value of a part, if the program could not have changed it by computing.
static bool copy_part(const a_constant_part* part, a_constant* result) {
  if (!part->value)
    make_value_initialized_constant(part->type, result);
  else
    copy_constant(part->value, result);
  result->next = nullptr;
  return result->kind != con_error && result->kind != con_dynamic_init &&
         !result->contains_nonconstant;
}

static void cut_to_bit_field(const a_field* field, a_constant* value) {
  if (!field->is_bit_field || value->kind != con_integer || field->bit_size == 0)
    return;
  uint64_t mask = make_integer_value_mask(field->bit_size);
  bool negative = int_kind_is_signed(int_kind_of(field->type)) &&
                  value->value.int_value >> (field->bit_size - 1) & 1;
  value->value.int_value &= mask;
  if (negative)
    value->value.int_value |= ~mask;
}

bool fold_field_selection(const a_constant* object, const a_field* field, a_constant* result) {
  a_constant_part whole = {object, object->type}, part;
  if (object->kind != con_aggregate || !select_field_value(&whole, field, &part) ||
      !copy_part(&part, result))
    return false;
  cut_to_bit_field(field, result);
  return true;
}

// ---- Values at addresses ----

static bool character_of_string(const a_constant* string, uint64_t offset, a_type* type,
                                a_constant* result) {
  int size = static_cast<int>(size_of_type(type));
  if (offset % static_cast<uint64_t>(size) != 0)
    return false;
  clear_constant(result, con_integer);
  result->type = type;
  if (offset < string->value.string.length)
    result->value.int_value = truncate_integer_value(
        extract_character_from_string(string->value.string.text + offset, size), int_kind_of(type));
  return true;
}

// The field that the byte lies in. Members of a union all begin at 0; its type
// decides.
static const a_field* field_at(a_type* type, uint64_t offset, a_type* wanted) {
  const a_field* found = nullptr;
  a_field* field = next_initializable_field(type->variant.class_struct_union.fields);
  for (; field; field = next_initializable_field(field->next)) {
    bool lies_here = !field->is_bit_field && field->offset <= offset &&
                     offset - field->offset < size_of_type(field->type);
    if (lies_here && (!found || cast_identical_types(field->type, wanted)))
      found = field;
  }
  return found;
}

// Goes down to the part of the wanted type at the offset.
static bool find_part(a_constant_part part, uint64_t offset, a_type* wanted, a_constant* result) {
  check_stack_limit();
  a_type* type = f_skip_typerefs(part.type);
  if (offset == 0 && cast_identical_types(make_unqualified_type(part.type), wanted))
    return copy_part(&part, result);
  if (type->kind == tk_array) {
    a_type* element = array_element_type(type);
    uint64_t size = size_of_type(element);
    if (size == 0 || is_incomplete_type(type) || offset >= size_of_type(type))
      return false;
    if (part.value && part.value->kind == con_string)
      return cast_identical_types(make_unqualified_type(element), wanted) &&
             character_of_string(part.value, offset, wanted, result);
    if (part.value && part.value->kind != con_aggregate)
      return false;
    const a_constant* value = part.value ? element_of_array(part.value, offset / size) : nullptr;
    return find_part({value, element}, offset % size, wanted, result);
  }
  if (!is_class_struct_union_kind(type->kind))
    return false;
  const a_field* field = field_at(type, offset, wanted);
  a_constant_part member;
  return field && select_field_value(&part, field, &member) &&
         find_part(member, offset - field->offset, wanted, result);
}

static bool is_unchanging(const a_variable* variable) {
  return (is_const_qualified_type(variable->type) || variable->is_constexpr) &&
         !is_volatile_qualified_type(variable->type) && !variable->is_weak;
}

// The constant object that the address lies in.
static bool object_at_address(const an_address_value* address, a_constant_part* object) {
  switch (address->base_kind) {
  case abk_variable: {
    a_variable* variable = address->base.variable;
    const a_constant* value =
        is_unchanging(variable) ? initializer_constant(variable, nullptr) : nullptr;
    *object = {value, variable->type};
    return value != nullptr;
  }
  case abk_constant:
  case abk_temporary:
    *object = {address->base.constant, address->base.constant->type};
    return true;
  default:
    return false;
  }
}

bool constant_value_at_address(const a_constant* address, a_constant* result) {
  a_constant_part object;
  if (address->kind != con_address || address->value.address.offset < 0 ||
      !object_at_address(&address->value.address, &object) || !is_pointer_type(address->type))
    return false;
  a_type* wanted = make_unqualified_type(type_pointed_to(address->type));
  return !is_incomplete_type(wanted) &&
         find_part(object, static_cast<uint64_t>(address->value.address.offset), wanted, result);
}

bool constant_value_addressed_by_node(an_expr_node* node, a_constant* result) {
  a_constant address;
  return prvalue_pointer(node, &address, false) && constant_value_at_address(&address, result);
}
