// Constants, in expressions and as initial data. An aggregate becomes the
// sequence of its scalars; SKIP passes over those that stay zero.

#include <algorithm>

#include "error.h"
#include "float_pt.h"
#include "il.h"
#include "il_to_if_int.h"
#include "stack_limit.h"
#include "target.h"

namespace {

void gen_skip(uint64_t count) {
  if (count == 0)
    return;
  NODE node(ifop_SKIP, tp_type(integer_type(ik_int), tpm_lowered));
  node.value.integer = count;
  gen_file->if_write_expr_node(&node);
}

// The scalars of an object, as SKIP counts them.
uint64_t flattened_scalar_count(const a_type* type) {
  check_stack_limit();
  type = f_skip_typerefs(type);
  uint64_t count = 0;
  switch (type->kind) {
  case tk_integer:
  case tk_float:
  case tk_pointer:
  case tk_routine:
    return 1;
  case tk_array:
    return flattened_scalar_count(type->variant.array.element_type) * num_array_elements(type);
  case tk_union: {
    const a_field* first = next_initializable_field(type->variant.class_struct_union.fields);
    return first == nullptr ? 0 : flattened_scalar_count(first->type);
  }
  case tk_class:
  case tk_struct:
    for (a_field* field = next_initializable_field(type->variant.class_struct_union.fields);
         field != nullptr; field = next_initializable_field(field->next))
      count += flattened_scalar_count(field->type);
    return count;
  default:
    return 0;
  }
}

// ---- Integers and strings ----

// An integer that the source casts to a pointer shows its conversion.
void gen_integer(const a_constant* constant, a_type* type) {
  if (constant->explicit_cast && type_kind(type) == tk_pointer) {
    gen_conversion(type);
    type = integer_type_of_pointer(type_pointed_to(type));
  }
  gen_lcon(type, constant->value.int_value);
}

void gen_float(const a_constant* constant, a_type* type) {
  const a_type* own = f_skip_typerefs(constant->type);
  gen_fcon(type, fp_to_string(own->variant.float_kind, &constant->value.float_value));
}

int64_t string_element(const char* bytes, const a_type* type) {
  uint64_t size = size_of_type(type);
  uint64_t value = 0;
  for (uint64_t i = 0; i < size; i++) {
    uint64_t byte = static_cast<unsigned char>(bytes[targ_little_endian ? size - 1 - i : i]);
    value = value << 8 | byte;
  }
  uint64_t sign = uint64_t(1) << (size * 8 - 1);
  return static_cast<int64_t>(is_signed_integral_type(type) && (value & sign) ? value - 2 * sign
                                                                              : value);
}

void gen_string(const a_constant* constant, const a_type* expected) {
  a_type* type = f_skip_typerefs(constant->type);
  a_type* element = array_element_type(type);
  uint64_t size = size_of_type(element);
  uint64_t count = constant->value.string.length / size;
  const a_type* array = f_skip_typerefs(expected);
  uint64_t bound = array->kind == tk_array ? num_array_elements(array) : 0;
  // A terminator that has no room is left out (C99 6.7.8 p14).
  uint64_t written = bound == 0 ? count : std::min(count, bound);
  for (uint64_t i = 0; i < written; i++)
    gen_icon(element, string_element(constant->value.string.text + i * size, element));
  if (bound > written)
    gen_skip(bound - written);
}

// ---- Addresses ----

// The type of the address of the base as it stands.
a_type* natural_pointer_type(const a_constant* constant) {
  const an_address_value& address = constant->value.address;
  switch (address.base_kind) {
  case abk_routine:
    return make_pointer_type(address.base.routine->type);
  case abk_variable:
    return make_pointer_type(address.base.variable->type);
  default:
    return make_pointer_type(address.base.constant->type);
  }
}

bool is_pointer_to_element_of(a_type* pointer, const a_type* pointer_to_array) {
  const a_type* array = f_skip_typerefs(type_pointed_to(pointer_to_array));
  return array->kind == tk_array && is_pointer_type(pointer) &&
         f_identical_types(type_pointed_to(pointer), array_element_type(array),
                           tcf_ignore_top_qualifiers);
}

bool is_string_address(const a_constant* constant) {
  const an_address_value& address = constant->value.address;
  return address.base_kind == abk_constant && address.base.constant->kind == con_string;
}

// What a pointer that was converted is before the conversion; null when the
// constant has its natural type.
a_type* type_before_cast(const a_constant* constant, a_type* expected) {
  if (!constant->explicit_cast && !constant->implicit_cast)
    return nullptr;
  a_type* natural = natural_pointer_type(constant);
  if (identical_types(natural, expected) || is_pointer_to_element_of(expected, natural))
    return nullptr;
  if (!is_string_address(constant))
    return natural;
  return make_pointer_type(array_element_type(f_skip_typerefs(type_pointed_to(natural))));
}

void gen_string_address(const a_constant* string, a_type* pointer_type) {
  NODE node(ifop_SCON, tp_type(pointer_type, tpm_lowered));
  node.value.text = string->value.string.text;
  node.length = static_cast<uint32_t>(string->value.string.length);
  gen_file->if_write_expr_node(&node);
}

void gen_address_base(const a_constant* constant, a_type* pointer_type) {
  const an_address_value& address = constant->value.address;
  if (is_string_address(constant))
    return gen_string_address(address.base.constant, pointer_type);
  gen_node(ifop_UAND, pointer_type);
  if (address.base_kind == abk_routine)
    gen_name(address.base.routine->type, referenced_routine_symbol(address.base.routine));
  else if (address.base_kind == abk_variable)
    gen_name(address.base.variable->type, referenced_variable_symbol(address.base.variable));
  else
    gen_constant(address.base.constant, address.base.constant->type);
}

void gen_address_constant(const a_constant* constant, a_type* expected) {
  const an_address_value& address = constant->value.address;
  if (address.base_kind > abk_constant)
    return;
  a_type* pointer_type = is_pointer_type(constant->type) ? constant->type : expected;
  if (a_type* natural = type_before_cast(constant, expected)) {
    gen_conversion(expected);
    pointer_type = natural;
  }
  if (address.offset != 0)
    gen_node(ifop_PLUS, pointer_type);
  gen_address_base(constant, pointer_type);
  if (address.offset != 0)
    gen_lcon(integer_type(targ_ptrdiff_t_int_kind), static_cast<uint64_t>(address.offset));
}

// ---- Aggregates ----

void gen_repeat(const a_constant* constant, a_type* expected) {
  if (constant->zero_fill)
    return gen_skip(constant->value.repeat.count * flattened_scalar_count(expected));
  if (!gen_file->if_has_room_for(constant->value.repeat.count))
    return;
  for (uint64_t i = 0; i < constant->value.repeat.count; i++)
    gen_constant(constant->value.repeat.element, expected);
}

void gen_array(const a_constant* constant, const a_type* array) {
  a_type* element_type = array_element_type(array);
  uint64_t count = 0;
  for (a_constant* item = constant->value.aggregate.first; item != nullptr; item = item->next) {
    gen_constant(item, element_type);
    count += item->kind == con_repeat ? item->value.repeat.count : 1;
  }
  uint64_t bound = num_array_elements(array);
  if (bound > count)
    gen_skip((bound - count) * flattened_scalar_count(element_type));
}

void gen_rest_of_csu(const a_type* csu, a_field* rest, bool is_empty) {
  if (rest == nullptr || (csu->kind == tk_union && !is_empty))
    return;
  uint64_t count = flattened_scalar_count(rest->type);
  if (csu->kind != tk_union)
    for (a_field* field = next_initializable_field(rest->next); field != nullptr;
         field = next_initializable_field(field->next))
      count += flattened_scalar_count(field->type);
  gen_skip(count);
}

void gen_csu(const a_constant* constant, a_type* csu) {
  a_field* field = next_initializable_field(csu->variant.class_struct_union.fields);
  a_constant* first = constant->value.aggregate.first;
  tp_type(csu, tpm_lowered); // numbers the members
  if (csu->kind == tk_union && first != nullptr && first->kind != con_designator &&
      field != nullptr && !scalar_csu(csu))
    gen_field(field->type, field);
  for (a_constant* item = first; item != nullptr; item = item->next) {
    if (item->kind == con_designator) {
      field = item->value.designator.designated.field;
      gen_field(field->type, field);
      continue;
    }
    if (field == nullptr)
      break;
    gen_constant(item, field->type);
    field = next_initializable_field(field->next);
  }
  gen_rest_of_csu(csu, field, first == nullptr);
}

void gen_aggregate(const a_constant* constant, const a_type* expected) {
  a_type* type = f_skip_typerefs(expected);
  if (type->kind == tk_array)
    gen_array(constant, type);
  else if (is_class_struct_union_kind(type->kind))
    gen_csu(constant, type);
}

} // namespace

bool is_empty_aggregate(const a_constant* constant) {
  return constant->kind == con_aggregate && constant->value.aggregate.first == nullptr;
}

void gen_constant(a_constant* constant, a_type* expected) {
  check_stack_limit();
  switch (constant->kind) {
  case con_integer:
    return gen_integer(constant, expected);
  case con_string:
    return gen_string(constant, expected);
  case con_address:
    return gen_address_constant(constant, expected);
  case con_aggregate:
    return gen_aggregate(constant, expected);
  case con_repeat:
    return gen_repeat(constant, expected);
  case con_float:
    return gen_float(constant, expected);
  case con_imaginary:
  case con_complex:
    return refuse_float_values(&constant->position, "complex arithmetic");
  default:
    // Lowering has removed the others.
    return;
  }
}
