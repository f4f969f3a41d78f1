#include "ifrun_compile.h"

#include <algorithm>

void a_compiler::refuse(const std::string& what) const {
  throw a_run_error{what};
}

void a_compiler::refuse_node(const an_if_node* node) const {
  refuse(std::string("unsupported node ") + if_opcode_name(node->opcode));
}

// Fixed-point and complex values are refused here, for all nodes.
a_value_type value_type_of(const an_if_type* type) {
  if (type == nullptr)
    return {};
  type = type->stripped();
  if (type->kind == iftk_void)
    return {};
  if (type->kind == iftk_function)
    return {k_function_pointer};
  if (is_aggregate(type))
    return {k_data_pointer};
  if (type->kind == iftk_floating && type->size == 32)
    return {k_f32};
  if (type->kind == iftk_floating && type->size == 64)
    return {k_f64};
  bool is_whole = type->kind == iftk_integral || type->kind == iftk_enum ||
                  type->kind == iftk_pointer || type->kind == iftk_reference;
  uint8_t sign = is_whole && type->is_signed();
  for (uint8_t kind : {k_u8, k_u16, k_u32, k_u64}) {
    if (is_whole && type->size == 8 * size_of_kind(kind))
      return {static_cast<a_scalar_kind>(kind | sign), type->is_bool || type->boolean_int};
  }
  throw a_run_error{"values of the type " + if_type_text(type) + " are not supported"};
}

// -- Code ----------------------------------------------------------------------

an_instruction& a_compiler::emit(an_operation op, uint8_t kind, uint32_t operand) {
  function.code.push_back({op, kind, 0, operand, 0});
  return function.code.back();
}

void a_compiler::constant(uint64_t value) {
  emit(op_const).value = value;
}

uint32_t a_compiler::here() {
  barrier = static_cast<uint32_t>(function.code.size());
  return barrier;
}

size_t a_compiler::jump(an_operation op) {
  emit(op);
  return function.code.size() - 1;
}

void a_compiler::jump_to_label(an_operation op, const an_if_node* label) {
  if (label->opcode != ifop_LABEL)
    refuse_node(label);
  jumps_to_labels.emplace_back(jump(op), static_cast<uint32_t>(label->integer));
}

an_instruction* a_compiler::last(an_operation op) {
  if (function.code.size() <= barrier || function.code.back().op != op)
    return nullptr;
  return &function.code.back();
}

void a_compiler::add_offset(uint64_t bytes) {
  if (bytes == 0)
    return;
  if (an_instruction* local = last(op_local)) {
    local->operand += static_cast<uint32_t>(bytes);
  } else if (an_instruction* address = last(op_const)) {
    address->value = wrap_to_kind(address->value + bytes, k_data_pointer);
  } else {
    constant(bytes);
    emit(op_add, k_data_pointer);
  }
}

void a_compiler::convert(a_value_type from, a_value_type to) {
  if (to.is_bool) {
    if (!from.is_bool)
      emit(is_floating_kind(from.kind) ? op_float_to_bool : op_to_bool);
    return;
  }
  if (is_floating_kind(from.kind) || is_floating_kind(to.kind)) {
    // A float is the double that it equals.
    if (from.kind == to.kind || (from.kind == k_f32 && to.kind == k_f64))
      return;
    if (an_instruction* number = last(op_const))
      number->value = convert_value(number->value, from.kind, to.kind);
    else
      emit(op_convert, to.kind).bit = from.kind;
    return;
  }
  // A value that is extended already is the same one in a larger type, unless
  // a sign is lost.
  bool larger = size_of_kind(to.kind) > size_of_kind(from.kind);
  if (from.kind == to.kind || (larger && (!(from.kind & 1) || (to.kind & 1))))
    return;
  if (an_instruction* number = last(op_const))
    number->value = wrap_to_kind(number->value, to.kind);
  else
    emit(op_wrap, to.kind);
}

void a_compiler::test(a_value_type type) {
  if (is_floating_kind(type.kind))
    emit(op_float_to_bool);
}

void a_compiler::load(const a_place& place) {
  if (place.width != 0) {
    emit(op_load_bits, place.type.kind, place.width).bit = place.bit;
  } else if (an_instruction* local = last(op_local)) {
    local->op = place.type.kind == k_s32 ? op_load_word : op_load_local;
    local->kind = place.type.kind;
  } else {
    emit(place.type.kind == k_s32  ? op_load_s32
         : place.type.kind == k_u8 ? op_load_u8
                                   : op_load,
         place.type.kind);
  }
}

void a_compiler::store(const a_place& place) {
  if (place.width != 0)
    emit(op_store_bits, place.type.kind, place.width).bit = place.bit;
  else
    emit(op_store, place.type.kind);
}

void a_compiler::discard() {
  if (an_instruction* stored = last(op_store))
    stored->op = op_store_pop;
  else
    emit(op_pop);
}

// -- Functions -----------------------------------------------------------------

// Gives each local its place in the frame, and each call that yields a
// structure room for it. The parameter that variable arguments follow is the
// frame's end.
void a_compiler::lay_out_frame() {
  const an_if_function& source = *function.source;
  function.has_ellipsis =
      source.parameter_count != 0 && source.symbol->type->stripped()->has_ellipsis;
  size_t last_number = function.has_ellipsis ? source.parameter_count - 1 : SIZE_MAX;
  for (const an_if_symbol& symbol : source.locals) {
    if (symbol.type == nullptr && symbol.id < source.parameter_count)
      refuse("a parameter without a type");
    if (symbol.storage_class != ifsc_label && symbol.type != nullptr && symbol.id != last_number)
      offsets[&symbol] = frame_room(byte_size(symbol.type));
  }
  for (const an_if_statement& each : source.statements) {
    if (each.expr == nullptr)
      continue;
    for (const an_if_node* node = each.expr; node != each.expr + each.expr->span; node++) {
      if ((node->opcode == ifop_CALL || node->opcode == ifop_UCALL) && is_aggregate(node->type))
        result_rooms[node] = frame_room(byte_size(node->type));
    }
  }
  if (function.has_ellipsis) {
    const an_if_symbol& symbol = source.locals[last_number];
    offsets[&symbol] = frame_room(in_slots(byte_size(symbol.type)));
  }
  for (size_t i = 0; i < source.parameter_count; i++) {
    const an_if_symbol& symbol = source.locals[i];
    function.parameters.push_back({offsets.at(&symbol), value_type_of(symbol.type).kind,
                                   byte_size(symbol.type), is_aggregate(symbol.type)});
  }
}

uint32_t a_compiler::frame_room(uint64_t bytes) {
  uint32_t offset = (function.frame_size + 7) & ~7u;
  if (bytes > program.memory.stack_size || offset + bytes > program.memory.stack_size)
    refuse("the locals don't fit the stack");
  function.frame_size = offset + static_cast<uint32_t>(bytes);
  return offset;
}

void a_compiler::whole_function() {
  const an_if_function& source = *function.source;
  lay_out_frame();
  size_t largest = 0;
  for (const an_if_statement& each : source.statements) {
    if (each.expr != nullptr)
      largest = std::max<size_t>(largest, each.expr->span);
  }
  for (const an_if_statement& each : source.statements)
    statement(each);
  emit(op_return_nothing);
  for (auto [instruction, label] : jumps_to_labels)
    function.code[instruction].operand = label_targets.at(label);
  for (const a_case_label& each : cases_to_labels) {
    a_switch_table& table = function.switches[each.table];
    (each.is_default ? table.default_target : table.cases[each.number].second) =
        label_targets.at(each.label);
  }
  for (a_switch_table& table : function.switches)
    std::sort(table.cases.begin(), table.cases.end());
  // A node leaves at most one value, and needs two more at a time.
  function.evaluation_depth = static_cast<uint32_t>(3 * largest + 4);
}

void a_compiler::whole_expression(const an_if_node* node, const an_if_type* type) {
  value_as(node, value_type_of(type));
  emit(op_return);
  function.evaluation_depth = 3 * node->span + 4;
}

// -- Statements ----------------------------------------------------------------

void a_compiler::statement(const an_if_statement& statement) {
  current = &statement;
  switch (statement.tag) {
  case iftag_expr:
    if (statement.expr == nullptr)
      break;
    function.statement_starts.emplace_back(function.code.size(), &statement);
    if (program.limits.trace)
      emit(op_trace);
    expression_statement(statement.expr);
    break;
  case iftag_label:
    label_targets[statement.label] = here();
    break;
  case iftag_assembly:
    if (statement.text.find_first_not_of(" \t\n;") != std::string_view::npos)
      refuse("assembly text is not supported");
    break;
  default:
    break;
  }
}

void a_compiler::expression_statement(const an_if_node* node) {
  switch (node->opcode) {
  case ifop_CBRANCH:
    return branch_if_false(node);
  case ifop_BRANCH:
    return jump_to_label(op_jump, node->operand(0));
  case ifop_SWITCH:
    return switch_table(node);
  case ifop_RETURN:
    return return_value(node);
  case ifop_URETURN:
    emit(op_return_nothing);
    return;
  default:
    return discarded_value(node);
  }
}

void a_compiler::branch_if_false(const an_if_node* node) {
  an_operation op = op_jump_false;
  const an_if_node* condition = node->operand(0);
  while (condition->opcode == ifop_EXCLAIM) {
    op = op == op_jump_false ? op_jump_true : op_jump_false;
    condition = condition->operand(0);
  }
  test(value(condition));
  jump_to_label(op, node->operand(1));
}

// The first operand names the function, whose result type counts.
void a_compiler::return_value(const an_if_node* node) {
  const an_if_type* type = node->operand(0)->type;
  type = is_function(type) ? type->stripped()->target : node->type;
  const an_if_node* result = node->operand(1);
  if (is_aggregate(type)) {
    value(result);
    emit(op_return, 0, static_cast<uint32_t>(byte_size(type)));
  } else {
    value_as(result, value_type_of(type));
    emit(op_return);
  }
}

void a_compiler::switch_table(const an_if_node* node) {
  a_value_type type = value_type_of(node->type);
  value_as(node->operand(0), type);
  size_t number = function.switches.size();
  emit(op_switch, type.kind, static_cast<uint32_t>(number));
  a_switch_table table;
  table.default_target = here();
  for (const an_if_node* entry : comma_list(node->operand(1))) {
    const an_if_node* label = entry->operand(entry->opcode == ifop_CASE ? 1 : 0);
    if (label->opcode != ifop_LABEL)
      refuse_node(label);
    uint32_t id = static_cast<uint32_t>(label->integer);
    if (entry->opcode == ifop_DEFAULT) {
      cases_to_labels.push_back({number, 0, true, id});
      continue;
    }
    if (entry->opcode != ifop_CASE || entry->operand(0)->opcode != ifop_LCON)
      refuse_node(entry);
    cases_to_labels.push_back({number, table.cases.size(), false, id});
    uint64_t value = wrap_to_kind(entry->operand(0)->integer, type.kind);
    table.cases.emplace_back(static_cast<int64_t>(value), 0);
  }
  if (table.cases.size() != node->integer)
    refuse("a switch has " + std::to_string(table.cases.size()) + " cases, not " +
           std::to_string(node->integer));
  function.switches.push_back(std::move(table));
}

std::vector<const an_if_node*> comma_list(const an_if_node* node) {
  // n elements are n - 1 COMMA nodes in a row and then the elements.
  size_t count = 1;
  while (node->opcode == ifop_COMMA) {
    ++count;
    node = node->operand(0);
  }
  std::vector<const an_if_node*> list;
  for (; count != 0; count--) {
    list.push_back(node);
    node += node->span;
  }
  return list;
}

void compile_function(a_program* program, a_function* function) {
  a_compiler compiler(program, function);
  try {
    compiler.whole_function();
  } catch (a_run_error& error) {
    error.place = place_text(program->file, *function, compiler.current_statement());
    throw;
  }
  function->compiled = true;
}

void compile_expression(a_program* program, const an_if_node* node, const an_if_type* type,
                        a_function* function) {
  a_compiler(program, function).whole_expression(node, type);
  function->compiled = true;
}
