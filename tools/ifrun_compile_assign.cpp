// Assignments, copies and calls.

#include <algorithm>

#include "ifrun_compile.h"

static constexpr a_value_type address_type{k_data_pointer};

// -- Assignments ---------------------------------------------------------------

a_value_type a_compiler::assignment(const an_if_node* node) {
  const an_if_node* left = node->operand(0);
  a_place to = place(left);
  if (is_aggregate(left->type)) {
    if (!is_aggregate(node->operand(1)->type))
      refuse_node(node->operand(1));
    value(node->operand(1));
    emit(op_copy, 0, static_cast<uint32_t>(byte_size(left->type)));
    return address_type;
  }
  value_as(node->operand(1), to.type);
  store(to);
  return to.type;
}

// C99 6.3.1.1 and 6.3.1.8, by sizes: int and long are of one size.
static a_value_type promoted(const a_place& from) {
  if (is_floating_kind(from.type.kind))
    return {from.type.kind};
  bool fits_int = size_of_kind(from.type.kind) < 4 || (from.width != 0 && from.width < 32);
  return fits_int ? a_value_type{k_s32} : a_value_type{from.type.kind};
}

static a_value_type common_type(a_value_type left, a_value_type right) {
  if (is_floating_kind(left.kind) || is_floating_kind(right.kind))
    return {std::max(left.kind, right.kind)}; // floating kinds are the largest numbers
  if (size_of_kind(left.kind) != size_of_kind(right.kind))
    return {std::max(left.kind, right.kind)};
  return {std::min(left.kind, right.kind)}; // the unsigned one is the smaller number
}

// Whether the tree calls a function of the program.
static bool has_call(const an_if_node* node) {
  for (const an_if_node* each = node; each != node + node->span; each++) {
    if (each->opcode == ifop_CALL || each->opcode == ifop_UCALL)
      return true;
  }
  return false;
}

// The type that the operation of a compound assignment is done in.
static a_value_type type_of_operation(const an_if_node* node, const a_place& to, bool is_shift) {
  if (node->type != nullptr && node->type->stripped()->kind == iftk_pointer)
    return address_type;
  if (is_shift)
    return promoted(to);
  return common_type(promoted(to), promoted({value_type_of(node->operand(1)->type)}));
}

// The operation is done in the common type of the operands, then stored. A
// function that the right operand calls may change the left one, so that one is
// loaded behind it (C11 6.5.16.2).
a_value_type a_compiler::compound_assignment(const an_if_node* node, an_operation op) {
  a_place to = place(node->operand(0));
  const an_if_node* right = node->operand(1);
  bool is_shift = op == op_shl || op == op_shr, calls = has_call(right);
  a_value_type common = type_of_operation(node, to, is_shift);
  auto load_left = [&] {
    load(to);
    convert(to.type, common);
  };
  auto load_right = [&] {
    a_value_type type = value(right);
    if (!is_shift)
      convert(type, common);
  };
  if (calls) {
    load_right();
    emit(op_over);
    load_left();
    emit(op_swap);
  } else {
    an_instruction* local = last(op_local);
    emit(local != nullptr ? op_local : op_dup, 0, local != nullptr ? local->operand : 0);
    load_left();
    load_right();
  }
  emit(operation_of_kind(op, common.kind), common.kind);
  convert(common, to.type);
  store(to);
  return to.type;
}

a_value_type a_compiler::post_increment(const an_if_node* node) {
  a_place to = place(node->operand(0));
  const an_if_node* step = node->operand(1);
  value(step);
  if (is_floating_kind(to.type.kind)) {
    if (node->opcode == ifop_MINMIN)
      emit(op_float_neg, to.type.kind);
    emit(op_post_add_float, to.type.kind);
    return to.type;
  }
  if (node->opcode == ifop_MINMIN) {
    if (an_instruction* number = last(op_const))
      number->value = 0 - number->value;
    else
      emit(op_neg, k_s64);
  }
  an_instruction& add =
      emit(to.width != 0 ? op_post_add_bits : op_post_add, to.type.kind, to.width);
  add.bit = to.bit;
  add.value = to.type.is_bool;
  return to.type;
}

a_value_type a_compiler::memory_copy(const an_if_node* node) {
  std::vector<const an_if_node*> list = comma_list(node->operand(0));
  if (list.size() != 3)
    refuse("MEMCPY has " + std::to_string(list.size()) + " operands");
  value_as(list[0], address_type);
  value_as(list[1], address_type);
  value_as(list[2], {k_u32});
  emit(op_copy_counted);
  return address_type;
}

// -- Calls ---------------------------------------------------------------------

an_argument a_compiler::argument(const an_if_node* node) {
  an_argument made;
  switch (node->opcode) {
  case ifop_STARG:
    if (!is_aggregate(node->type))
      refuse_node(node);
    made.type = value(node->operand(0));
    made.size = byte_size(node->type);
    made.by_copy = true;
    return made;
  case ifop_ARGREF:
    place(node->operand(0));
    made.type = address_type;
    break;
  default:
    if (is_aggregate(node->type))
      refuse("an argument of the type " + if_type_text(node->type) + " without STARG");
    made.type = value(node);
    break;
  }
  made.size = size_of_kind(made.type.kind);
  return made;
}

a_value_type a_compiler::call(const an_if_node* node) {
  const an_if_node* callee = node->operand(0);
  if (callee->opcode == ifop_UAND)
    callee = callee->operand(0);
  a_call_site site;
  const uint32_t* id = function_id(callee);
  site.function = id != nullptr ? *id : 0;
  if (site.function == 0)
    value_as(node->operand(0), {k_function_pointer});
  if (node->opcode == ifop_CALL) {
    for (const an_if_node* each : comma_list(node->operand(1)))
      site.arguments.push_back(argument(each));
  }
  site.result = value_type_of(node->type);
  auto room = result_rooms.find(node);
  if (room != result_rooms.end())
    site.result_offset = room->second;
  emit(site.function != 0 ? op_call : op_call_indirect, 0,
       static_cast<uint32_t>(function.call_sites.size()));
  function.call_sites.push_back(std::move(site));
  return function.call_sites.back().result;
}
