// Expressions: values, and the places of lvalues.

#include <algorithm>
#include <charconv>

#include "ifrun_compile.h"

static constexpr a_value_type int_type{k_s32};

a_value_type a_compiler::value(const an_if_node* node) {
  static constexpr unsigned deepest = 100000;
  if (++depth > deepest)
    refuse("an expression is nested too deeply");
  a_value_type type = value_of_operator(node);
  --depth;
  return type;
}

a_value_type a_compiler::value_of_operator(const an_if_node* node) {
  switch (node->opcode) {
  case ifop_NAME:
    return name(node);
  case ifop_ICON:
  case ifop_LCON: {
    a_value_type type = value_type_of(node->type);
    constant(wrap_to_kind(node->integer, type.kind));
    return type;
  }
  case ifop_SCON:
    return string(node);
  case ifop_FCON:
    return float_constant(node);
  case ifop_PLUS:
    return arithmetic(node, op_add);
  case ifop_MINUS:
    return arithmetic(node, op_sub);
  case ifop_MULT:
    return arithmetic(node, op_mul);
  case ifop_DIV:
    return arithmetic(node, op_div);
  case ifop_MOD:
    return arithmetic(node, op_mod);
  case ifop_ANDB:
    return arithmetic(node, op_and);
  case ifop_ORB:
    return arithmetic(node, op_or);
  case ifop_XORB:
    return arithmetic(node, op_xor);
  case ifop_SLL:
    return shift(node, op_shl);
  case ifop_SRL:
    return shift(node, op_shr);
  case ifop_UMINUS:
    return unary(node, op_neg);
  case ifop_NOTB:
    return unary(node, op_complement);
  case ifop_ABS:
    return unary(node, op_abs);
  case ifop_SQRT:
    return unary(node, op_float_sqrt);
  case ifop_EXCLAIM:
    test(value(node->operand(0)));
    emit(op_not);
    return int_type;
  case ifop_EQ:
    return comparison(node, op_eq, false);
  case ifop_NEQ:
    return comparison(node, op_ne, false);
  case ifop_LT:
    return comparison(node, op_lt, true);
  case ifop_LE:
    return comparison(node, op_le, true);
  case ifop_GT:
    return comparison(node, op_gt, true);
  case ifop_GE:
    return comparison(node, op_ge, true);
  case ifop_ULT:
    return comparison(node, op_ult, false);
  case ifop_ULE:
    return comparison(node, op_ule, false);
  case ifop_UGT:
    return comparison(node, op_ugt, false);
  case ifop_UGE:
    return comparison(node, op_uge, false);
  case ifop_FEQ:
    return float_comparison(node, op_float_eq, false);
  case ifop_FNEQ:
    return float_comparison(node, op_float_ne, false);
  case ifop_FLT:
    return float_comparison(node, op_float_lt, false);
  case ifop_FLE:
    return float_comparison(node, op_float_le, false);
  case ifop_FGT:
    return float_comparison(node, op_float_gt, false);
  case ifop_FGE:
    return float_comparison(node, op_float_ge, false);
  // The negation of the opposite: true also of values without an order.
  case ifop_FEQN:
    return float_comparison(node, op_float_ne, true);
  case ifop_FNEQN:
    return float_comparison(node, op_float_eq, true);
  case ifop_FLTN:
    return float_comparison(node, op_float_ge, true);
  case ifop_FLEN:
    return float_comparison(node, op_float_gt, true);
  case ifop_FGTN:
    return float_comparison(node, op_float_le, true);
  case ifop_FGEN:
    return float_comparison(node, op_float_lt, true);
  case ifop_FORD:
    return float_comparison(node, op_float_ordered, false);
  case ifop_FUNO:
    return float_comparison(node, op_float_ordered, true);
  case ifop_ANDAND:
  case ifop_OROR:
    return short_circuit(node);
  case ifop_QUEST:
    return conditional(node);
  case ifop_COMMAOP:
  case ifop_PCOMMA:
    discarded_value(node->operand(0));
    return value(node->operand(1));
  case ifop_SCONV:
  case ifop_PCONV:
  case ifop_ACONV:
    return conversion(node);
  case ifop_PMCONV:
    return scaled_index(node);
  case ifop_PVCONV:
    return address_difference(node);
  case ifop_UAND:
    return address_of(node);
  case ifop_UMULT:
    if (is_function(node->type))
      return value(node->operand(0));
    return from_place(node);
  case ifop_STDOT:
  case ifop_STREF:
    return from_place(node);
  case ifop_ASG:
  case ifop_STASG:
  case ifop_ARASG:
    return assignment(node);
  case ifop_PLUSASG:
    return compound_assignment(node, op_add);
  case ifop_MINUSASG:
    return compound_assignment(node, op_sub);
  case ifop_MULTASG:
    return compound_assignment(node, op_mul);
  case ifop_DIVASG:
    return compound_assignment(node, op_div);
  case ifop_MODASG:
    return compound_assignment(node, op_mod);
  case ifop_ANDBASG:
    return compound_assignment(node, op_and);
  case ifop_ORBASG:
    return compound_assignment(node, op_or);
  case ifop_XORBASG:
    return compound_assignment(node, op_xor);
  case ifop_SLLASG:
    return compound_assignment(node, op_shl);
  case ifop_SRLASG:
    return compound_assignment(node, op_shr);
  case ifop_PLUSPLUS:
  case ifop_MINMIN:
    return post_increment(node);
  case ifop_MEMCPY:
    return memory_copy(node);
  case ifop_CALL:
  case ifop_UCALL:
    return call(node);
  case ifop_ASSERT:
  case ifop_NASSERT: // advice to the optimizer, which isn't evaluated
    constant(0);
    return int_type;
  default:
    refuse_node(node);
  }
}

void a_compiler::value_as(const an_if_node* node, a_value_type type) {
  convert(value(node), type);
}

void a_compiler::discarded_value(const an_if_node* node) {
  value(node);
  discard();
}

// -- Operands ------------------------------------------------------------------

const uint32_t* a_compiler::function_id(const an_if_node* node) const {
  if (node->opcode != ifop_NAME || !is_function(node->symbol->type) || node->symbol->level != 0)
    return nullptr;
  auto entry = program.function_ids.find(node->symbol->id);
  return entry != program.function_ids.end() ? &entry->second : nullptr;
}

void a_compiler::variable_address(const an_if_node* node) {
  const an_if_symbol* symbol = node->symbol;
  if (symbol->level != 0) {
    auto entry = offsets.find(symbol);
    if (entry == offsets.end())
      refuse("a local name that is no variable");
    emit(op_local, 0, entry->second);
    return;
  }
  auto entry = program.addresses.find(symbol->id);
  if (entry == program.addresses.end())
    refuse("undefined variable " + std::string(symbol->name));
  constant(entry->second);
}

a_value_type a_compiler::name(const an_if_node* node) {
  if (const uint32_t* id = function_id(node)) {
    constant(*id);
    return {k_function_pointer};
  }
  return from_place(node);
}

a_value_type a_compiler::string(const an_if_node* node) {
  constant(program.memory.add_text(node->text));
  return {k_data_pointer};
}

a_value_type a_compiler::float_constant(const an_if_node* node) {
  a_value_type type = value_type_of(node->type);
  const char* end = node->text.data() + node->text.size();
  // A float is read as one: rounding twice could miss it.
  double number = 0;
  float short_number = 0;
  bool is_short = type.kind == k_f32;
  auto [stop, error] = is_short ? std::from_chars(node->text.data(), end, short_number)
                                : std::from_chars(node->text.data(), end, number);
  if (error != std::errc() || stop != end)
    refuse("the text of a floating constant is " + std::string(node->text));
  constant(bits_of(is_short ? short_number : number));
  return type;
}

// The value of an lvalue; of an aggregate, its address.
a_value_type a_compiler::from_place(const an_if_node* node) {
  a_place from = place(node);
  if (!is_aggregate(node->type))
    load(from);
  return from.type;
}

a_value_type a_compiler::address_of(const an_if_node* node) {
  if (const uint32_t* id = function_id(node->operand(0))) {
    constant(*id);
    return {k_function_pointer};
  }
  place(node->operand(0));
  return {k_data_pointer};
}

a_place a_compiler::place(const an_if_node* node) {
  switch (node->opcode) {
  case ifop_NAME:
    variable_address(node);
    return {value_type_of(node->type)};
  case ifop_UMULT:
    value_as(node->operand(0), {k_data_pointer});
    return {value_type_of(node->type)};
  case ifop_STDOT:
  case ifop_STREF:
    return member_place(node);
  case ifop_SCON:
    return {string(node)};
  default:
    if (!is_aggregate(node->type))
      refuse_node(node);
    return {value(node)};
  }
}

a_place a_compiler::member_place(const an_if_node* node) {
  const an_if_node* field = node->operand(1);
  if (field->opcode != ifop_FIELD)
    refuse_node(field);
  if (node->opcode == ifop_STREF)
    value_as(node->operand(0), {k_data_pointer});
  else
    place(node->operand(0));
  const an_if_member& member = *field->member;
  add_offset(static_cast<uint64_t>(member.bit_offset) / 8);
  a_place result{value_type_of(node->type)};
  if (!member.is_bitfield)
    return result;
  // The node of a bit field has a plain integer type; the member tells more.
  if (member.bit_width == 0 || member.bit_width > 64)
    refuse("a bit field of " + std::to_string(member.bit_width) + " bits");
  a_value_type declared = value_type_of(member.type);
  if (member.bit_width > 8 * size_of_kind(result.type.kind))
    result.type.kind = declared.kind;
  result.type.is_bool = declared.is_bool;
  result.bit = static_cast<uint8_t>(member.bit_offset % 8);
  result.width = member.bit_width;
  return result;
}

// -- Operators -----------------------------------------------------------------

an_operation a_compiler::operation_of_kind(an_operation op, uint8_t kind) const {
  if (!is_floating_kind(kind))
    return op;
  switch (op) {
  case op_add:
    return op_float_add;
  case op_sub:
    return op_float_sub;
  case op_mul:
    return op_float_mul;
  case op_div:
    return op_float_div;
  case op_neg:
    return op_float_neg;
  case op_abs:
    return op_float_abs;
  case op_float_sqrt:
    return op;
  default:
    refuse("an operation that has no floating form");
  }
}

a_value_type a_compiler::arithmetic(const an_if_node* node, an_operation op) {
  a_value_type type = value_type_of(node->type);
  value_as(node->operand(0), type);
  value_as(node->operand(1), type);
  emit(operation_of_kind(op, type.kind), type.kind);
  return type;
}

a_value_type a_compiler::shift(const an_if_node* node, an_operation op) {
  a_value_type type = value_type_of(node->type);
  value_as(node->operand(0), type);
  value(node->operand(1));
  emit(op, type.kind);
  return type;
}

a_value_type a_compiler::unary(const an_if_node* node, an_operation op) {
  a_value_type type = value_type_of(node->type);
  value_as(node->operand(0), type);
  emit(operation_of_kind(op, type.kind), type.kind);
  return type;
}

// Operands are compared as doubles, which hold every float.
a_value_type a_compiler::float_comparison(const an_if_node* node, an_operation op, bool negated) {
  value_as(node->operand(0), {k_f64});
  value_as(node->operand(1), {k_f64});
  emit(op);
  if (negated)
    emit(op_not);
  return int_type;
}

// Compares in the larger type of the operands, signed or not as the opcode
// tells. Extended values of one type are equal when the scalars are.
a_value_type a_compiler::comparison(const an_if_node* node, an_operation op, bool is_signed) {
  a_value_type left = value(node->operand(0));
  a_value_type right = value(node->operand(1));
  if (is_floating_kind(left.kind) || is_floating_kind(right.kind))
    refuse("a whole comparison of floating values");
  a_scalar_kind common =
      static_cast<a_scalar_kind>((std::max(left.kind, right.kind) & ~1) | is_signed);
  bool is_equality = op == op_eq || op == op_ne;
  if (left.kind != right.kind || (!is_equality && left.kind != common)) {
    convert(right, {common});
    emit(op_wrap_below, common);
  }
  emit(op);
  return int_type;
}

a_value_type a_compiler::short_circuit(const an_if_node* node) {
  bool is_and = node->opcode == ifop_ANDAND;
  test(value(node->operand(0)));
  size_t decided = jump(is_and ? op_jump_false : op_jump_true);
  convert(value(node->operand(1)), {k_s32, true});
  size_t done = jump(op_jump);
  function.code[decided].operand = here();
  constant(!is_and);
  function.code[done].operand = here();
  return int_type;
}

a_value_type a_compiler::conditional(const an_if_node* node) {
  const an_if_node* results = node->operand(1);
  if (results->opcode != ifop_COLON)
    refuse_node(results);
  a_value_type type = value_type_of(node->type);
  test(value(node->operand(0)));
  size_t otherwise = jump(op_jump_false);
  value_as(results->operand(0), type);
  size_t done = jump(op_jump);
  function.code[otherwise].operand = here();
  value_as(results->operand(1), type);
  function.code[done].operand = here();
  return type;
}

a_value_type a_compiler::conversion(const an_if_node* node) {
  a_value_type from = value(node->operand(0));
  if (node->type == nullptr || node->type->stripped()->kind == iftk_void)
    return from;
  a_value_type to = value_type_of(node->type);
  convert(from, to);
  return to;
}

// An index times the size in bits of what a pointer points at. The products
// only ever are parts of addresses, so they count bytes here.
a_value_type a_compiler::scaled_index(const an_if_node* node) {
  const an_if_node* size = node->operand(1);
  value(node->operand(0));
  if (size->opcode == ifop_ICON || size->opcode == ifop_LCON) {
    if (size->integer == 8)
      return {k_s64};
    constant(size->integer / 8);
    emit(op_mul, k_s64);
    return {k_s64};
  }
  value(size);
  emit(op_mul, k_s64);
  constant(8);
  emit(op_div, k_s64);
  return {k_s64};
}

// The inverse: a difference of addresses by the size in bits.
a_value_type a_compiler::address_difference(const an_if_node* node) {
  a_value_type type = value_type_of(node->type);
  value_as(node->operand(0), type);
  const an_if_node* size = node->operand(1);
  if (size->opcode == ifop_ICON || size->opcode == ifop_LCON) {
    constant(size->integer / 8);
  } else {
    value(size);
    constant(8);
    emit(op_div, k_s64);
  }
  emit(op_div, type.kind);
  return type;
}
