// Expressions: each operator becomes one or a few nodes, followed by its
// operands. Pointer arithmetic is scaled here, in bits, so that the reader of
// the file needs no C semantics of pointers.

#include <cstring>

#include "const_ints.h"
#include "error.h"
#include "il_alloc.h"
#include "il_to_if_int.h"
#include "layout.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"

// The file's message about values it can't hold has been given.
static bool float_values_refused;

// ---- Nodes ----

static void write_node(NODE& node) {
  gen_file->if_write_expr_node(&node);
}

void gen_expr_start() {
  gen_file->if_write_expr(nullptr, gen_position);
}

static TYPE* file_type(a_type* type) {
  return type == nullptr ? type_pkg->void_type : tp_type(type, tpm_lowered);
}

void gen_node(an_if_opcode opcode, a_type* type) {
  NODE node(opcode, file_type(type));
  write_node(node);
}

void gen_void_nodes(an_if_opcode opcode, size_t count) {
  while (count-- > 0)
    gen_node(opcode, nullptr);
}

void gen_label_node(uint32_t label) {
  NODE node(ifop_LABEL, type_pkg->void_type);
  node.value.integer = label;
  write_node(node);
}

void gen_icon(a_type* type, int64_t value) {
  NODE node(ifop_ICON, file_type(type));
  node.value.integer = static_cast<uint64_t>(value);
  write_node(node);
}

void gen_lcon(a_type* type, uint64_t value) {
  NODE node(ifop_LCON, file_type(type));
  node.value.integer = value;
  write_node(node);
}

void gen_fcon(a_type* type, const char* text) {
  NODE node(ifop_FCON, file_type(type));
  node.value.text = text;
  node.length = static_cast<uint32_t>(strlen(text));
  write_node(node);
}

void gen_name(a_type* type, SYMTAB* symbol) {
  NODE node(ifop_NAME, file_type(type));
  node.value.symbol = symbol;
  write_node(node);
}

void gen_conversion(a_type* type) {
  gen_node(type_kind(type) == tk_pointer ? ifop_PCONV : ifop_SCONV, type);
}

void gen_conversion_if_needed(a_type* from, a_type* to) {
  if (!identical_types(from, to))
    gen_conversion(to);
}

// ---- Types of values ----

bool is_class_object(a_type* type) {
  return is_class_struct_union_type(type) && !scalar_csu(type);
}

a_type* integer_type_of_pointer(const a_type* pointed) {
  uint32_t alignment = 0;
  uint64_t size = size_of_pointer_to(pointed, &alignment);
  return integer_type(int_kind_for_size_and_alignment(size, alignment, false));
}

an_if_opcode assignment_opcode(a_type* type) {
  if (is_array_type(type))
    return ifop_ARASG;
  return is_class_object(type) ? ifop_STASG : ifop_ASG;
}

a_type* bit_field_type(const a_field* field, a_type* expected) {
  a_type* type = f_skip_typerefs(field->type);
  const an_integer_type_variant& integer = type->variant.integer;
  bool is_signed =
      int_kind_is_signed(integer.int_kind) && !(integer.is_enum && !enum_bit_field_is_signed(type));
  if (!targ_supports_non_int_bit_field || (integer.is_enum && integer.enum_may_be_smaller_than_int))
    type = integer_type(is_signed ? ik_int : ik_unsigned_int);
  if (!is_signed)
    type = integer_type(unsigned_int_kind_of(type->variant.integer.int_kind));
  return make_qualified_type(type, get_type_qualifiers(expected));
}

void gen_field(a_type* type, a_field* field) {
  if (field->file_member == nullptr)
    internal_error("gen_field: the class of the member is unknown");
  NODE node(ifop_FIELD, file_type(field->is_bit_field ? bit_field_type(field, type) : type));
  node.value.field = field->file_member;
  write_node(node);
}

static a_type* ptrdiff_type() {
  return integer_type(targ_ptrdiff_t_int_kind);
}

// The size of an array element of the type, in bytes.
static uint64_t element_size(a_type* type) {
  if (is_void_type(type) || is_function_type(type))
    return 1;
  uint64_t alignment = f_alignment_of_type(type);
  uint64_t size = size_of_type(type);
  return alignment <= 1 ? size : (size + alignment - 1) / alignment * alignment;
}

static a_type* operation_type(const an_expr_node* pointer) {
  return type_pointed_to(pointer->type);
}

// ---- Operands ----

static an_expr_node* left_of(const an_expr_node* expr) {
  return expr->variant.operation.operands;
}

static an_expr_node* right_of(const an_expr_node* expr) {
  return expr->variant.operation.operands->next;
}

static an_expr_operator_kind op_of(const an_expr_node* expr) {
  return expr->variant.operation.op;
}

static void gen_binary(an_if_opcode opcode, a_type* type, const an_expr_node* expr) {
  gen_node(opcode, type);
  gen_expr(left_of(expr));
  gen_expr(right_of(expr));
}

static bool is_arithmetic_class(const an_expr_node* expr) {
  a_type_kind kind = expr->variant.operation.operation_kind;
  return kind == tk_integer || kind == tk_float;
}

// ---- Pointers ----

void gen_ptr_arith(an_if_opcode opcode, a_type* result, an_expr_node* pointer,
                   an_expr_node* integer) {
  a_type* index_type = is_integral_or_enum_type(integer->type) ? ptrdiff_type() : integer->type;
  gen_node(opcode, result);
  gen_expr(pointer);
  gen_node(ifop_PMCONV, index_type);
  gen_conversion_if_needed(integer->type, index_type);
  gen_expr(integer);
  gen_icon(index_type, static_cast<int64_t>(element_size(operation_type(pointer)) * targ_char_bit));
}

// The sum of a pointer and an integer, which may stand in either order.
static void gen_ptr_sum(a_type* result, const an_expr_node* expr) {
  an_expr_node* pointer = left_of(expr);
  an_expr_node* integer = right_of(expr);
  if (expr->variant.operation.operands_reversed)
    std::swap(pointer, integer);
  gen_ptr_arith(ifop_PLUS, result, pointer, integer);
}

static a_type* pointed_type_of_subscript(const an_expr_node* expr) {
  return operation_type(expr->variant.operation.operands_reversed ? right_of(expr) : left_of(expr));
}

static void gen_ptr_difference(const an_expr_node* expr, a_type* result) {
  gen_node(ifop_PVCONV, ptrdiff_type());
  gen_binary(ifop_MINUS, result, expr);
  gen_icon(ptrdiff_type(),
           static_cast<int64_t>(element_size(operation_type(left_of(expr))) * targ_char_bit));
}

// The address of an lvalue, seen as a pointer to another type.
static void gen_cast_and_address(an_expr_node* expr, a_type* pointer_type) {
  a_type* natural = make_pointer_type(expr->type);
  gen_conversion_if_needed(natural, pointer_type);
  gen_address(expr, natural);
}

static void gen_constant_address(a_constant* constant, a_type* pointer_type) {
  a_constant* address = alloc_constant(con_address);
  set_constant_address_constant(constant, address);
  address->type = is_array_type(constant->type)
                      ? make_pointer_type(array_element_type(f_skip_typerefs(constant->type)))
                      : pointer_type;
  gen_constant(address, pointer_type);
}

void gen_address(an_expr_node* expr, a_type* pointer_type) {
  check_stack_limit();
  if (expr->kind == expr_constant)
    return gen_constant_address(expr->variant.constant.ptr, pointer_type);
  if (expr->kind == expr_operation) {
    switch (op_of(expr)) {
    case eok_indirect:
    case eok_ref_indirect:
      return gen_expr(left_of(expr));
    case eok_lvalue_cast:
    case eok_glvalue_cast:
      return gen_cast_and_address(left_of(expr), pointer_type);
    case eok_subscript:
      return gen_ptr_sum(pointer_type, expr);
    default:
      break;
    }
  }
  gen_node(ifop_UAND, pointer_type);
  gen_expr(expr);
}

static void gen_indirection(an_expr_node* expr) {
  an_expr_node* pointer = left_of(expr);
  a_type* pointed = operation_type(pointer);
  if (!is_function_type(pointed))
    gen_node(ifop_UMULT, pointed);
  gen_expr(pointer);
}

static void gen_glvalue_cast(an_expr_node* expr, a_type* result) {
  an_expr_node* operand = left_of(expr);
  bool is_function = !expr->variant.operation.lvalue_semantics && is_function_type(operand->type) &&
                     is_pointer_to_function_type(result);
  if (is_function)
    return gen_cast_and_address(operand, result);
  gen_node(ifop_UMULT, result);
  gen_cast_and_address(operand, make_pointer_type(result));
}

// ---- Casts ----

static bool is_portable_operator(const an_expr_node* operand) {
  switch (op_of(operand)) {
  case eok_indirect:
  case eok_cast:
  case eok_unary_plus:
  case eok_gnu_min:
  case eok_gnu_max:
  case eok_subscript:
  case eok_dot_field:
  case eok_question:
  case eok_call:
    return true;
  case eok_assign:
    return is_arithmetic_class(operand);
  default:
    return (op_of(operand) >= eok_eq && op_of(operand) <= eok_le) ||
           (op_of(operand) >= eok_add_assign && op_of(operand) <= eok_pointer_subtract_assign);
  }
}

void check_int_portability(const an_expr_node* operand, a_type* target) {
  if (!check_32bit_int_portability || operand->kind != expr_operation ||
      is_portable_operator(operand) || !is_integral_or_enum_type(operand->type))
    return;
  uint64_t int_size = integer_type(ik_int)->size;
  bool is_wider = is_floating_type(target) ||
                  (is_integral_or_enum_type(target) && size_of_type(target) > int_size);
  if (size_of_type(operand->type) <= int_size && is_wider)
    pos_warning(ec_cast_int_to_wider, &operand->position);
}

static void gen_cast(an_expr_node* expr, a_type* result) {
  an_expr_node* operand = left_of(expr);
  check_int_portability(operand, result);
  gen_conversion_if_needed(operand->type, result);
  gen_expr(operand);
}

// ---- Increments ----

static void gen_step(a_type* type) {
  if (type_kind(type) == tk_pointer) {
    gen_icon(integer_type(ik_int), static_cast<int64_t>(element_size(type_pointed_to(type))));
  } else if (is_floating_type(type)) {
    gen_fcon(type, "1.0");
  } else {
    gen_icon(type, 1);
  }
}

static void gen_increment(an_if_opcode opcode, const an_expr_node* expr, a_type* result) {
  gen_node(opcode, result);
  gen_expr(left_of(expr));
  gen_step(make_unqualified_type(left_of(expr)->type));
}

// ---- Comparisons ----

static void gen_comparison(const an_expr_node* expr) {
  static const an_if_opcode opcodes[][3] = {
      // signed, unsigned or pointer, floating
      {ifop_EQ, ifop_EQ, ifop_FEQ},  {ifop_NEQ, ifop_NEQ, ifop_FNEQN},
      {ifop_GT, ifop_UGT, ifop_FGT}, {ifop_LT, ifop_ULT, ifop_FLT},
      {ifop_GE, ifop_UGE, ifop_FGE}, {ifop_LE, ifop_ULE, ifop_FLE}};
  a_type_kind kind = expr->variant.operation.operation_kind;
  int column = 0;
  if (kind == tk_float)
    column = 2;
  else if (kind == tk_pointer ||
           (kind == tk_integer && !is_signed_integral_type(left_of(expr)->type)))
    column = 1;
  gen_binary(opcodes[op_of(expr) - eok_eq][column], integer_type(ik_int), expr);
}

// ---- Selections ----

// The type of the member with the qualifiers of the object and its own.
static a_type* selection_type(const an_expr_node* expr, a_type* object, const a_field* field,
                              a_type* result) {
  a_type_qualifier_set qualifiers = get_type_qualifiers(object) & tq_all_qualifiers;
  if (field != nullptr)
    qualifiers |= get_type_qualifiers(field->type) & tq_all_qualifiers;
  bool is_reference = type_kind(result) == tk_pointer && field != nullptr &&
                      is_reference_type(field->type) && !expr->variant.operation.lvalue_semantics;
  a_type* type = make_qualified_type(result, qualifiers);
  if (!is_reference)
    return type;
  return is_rvalue_reference_type(field->type) ? make_rvalue_reference_type(type_pointed_to(type))
                                               : make_reference_type(type_pointed_to(type));
}

static void gen_selection(const an_expr_node* expr, a_type* result) {
  an_expr_node* left = left_of(expr);
  an_expr_node* right = right_of(expr);
  bool is_arrow = op_of(expr) == eok_arrow_field;
  a_type* object = is_arrow ? operation_type(left) : left->type;
  if (scalar_csu(object)) {
    if (is_arrow)
      gen_node(ifop_UMULT, object);
    return gen_expr(left);
  }
  tp_type(object, tpm_lowered); // numbers the members
  const a_field* field = right->kind == expr_field ? right->variant.field.ptr : nullptr;
  a_type* type = selection_type(expr, object, field, result);
  bool is_bit_field = field != nullptr && field->is_bit_field;
  gen_node(is_arrow ? ifop_STREF : ifop_STDOT, is_bit_field ? bit_field_type(field, type) : type);
  gen_expr(left);
  gen_expr(right, type);
}

// ---- Assignments ----

static void gen_assignment(const an_expr_node* expr, a_type* result) {
  constexpr auto no_opcode = static_cast<an_if_opcode>(255);
  switch (expr->variant.operation.operation_kind) {
  case tk_integer:
  case tk_float:
  case tk_pointer:
    return gen_binary(ifop_ASG, result, expr);
  case tk_class:
  case tk_struct:
  case tk_union:
    return gen_binary(scalar_csu(left_of(expr)->type) ? ifop_ASG : ifop_STASG, result, expr);
  default:
    return gen_binary(no_opcode, result, expr);
  }
}

static void gen_array_assignment(const an_expr_node* expr) {
  a_type* array = left_of(expr)->type;
  gen_node(ifop_MEMCPY, make_pointer_type(integer_type(ik_char)));
  gen_void_nodes(ifop_COMMA, 2);
  gen_address(left_of(expr), make_pointer_type(array));
  gen_address(right_of(expr), make_pointer_type(right_of(expr)->type));
  gen_icon(integer_type(ik_int), static_cast<int64_t>(size_of_type(array)));
}

// ---- Other operators ----

static void gen_conditional(const an_expr_node* expr, a_type* result) {
  an_expr_node* condition = left_of(expr);
  gen_node(ifop_QUEST, result);
  gen_expr(condition);
  gen_node(ifop_COLON, result);
  gen_expr(condition->next);
  gen_expr(condition->next->next);
}

static void gen_logical(an_if_opcode opcode, const an_expr_node* expr) {
  gen_node(opcode, integer_type(ik_int));
  gen_expr(left_of(expr));
  gen_expr(right_of(expr)); // a lone operand stays alone
}

static void gen_unary(an_if_opcode opcode, a_type* type, const an_expr_node* expr) {
  gen_node(opcode, type);
  gen_expr(left_of(expr));
}

// The address of a parameter as it came in.
static void gen_parameter_address(const an_expr_node* expr) {
  an_expr_node* operand = left_of(expr);
  if (operand->kind != expr_variable)
    return;
  a_variable* variable = operand->variant.variable.ptr;
  const a_parameter_copy* copy = find_parameter_copy(variable);
  gen_node(ifop_UAND, make_pointer_type(operand->type));
  if (copy != nullptr)
    gen_name(copy->incoming_type, copy->incoming);
  else
    gen_name(variable->type, referenced_variable_symbol(variable));
}

// The operators that become one node with two operands of class 2 or 3.
static an_if_opcode arithmetic_opcode(an_expr_operator_kind op) {
  switch (op) {
  case eok_add:
    return ifop_PLUS;
  case eok_subtract:
    return ifop_MINUS;
  case eok_multiply:
    return ifop_MULT;
  case eok_divide:
    return ifop_DIV;
  case eok_remainder:
    return ifop_MOD;
  case eok_shift_left:
    return ifop_SLL;
  case eok_shift_right:
    return ifop_SRL;
  case eok_bit_and:
    return ifop_ANDB;
  case eok_bit_or:
    return ifop_ORB;
  case eok_bit_xor:
    return ifop_XORB;
  case eok_add_assign:
    return ifop_PLUSASG;
  case eok_subtract_assign:
    return ifop_MINUSASG;
  case eok_multiply_assign:
    return ifop_MULTASG;
  case eok_divide_assign:
    return ifop_DIVASG;
  case eok_remainder_assign:
    return ifop_MODASG;
  case eok_shift_left_assign:
    return ifop_SLLASG;
  case eok_shift_right_assign:
    return ifop_SRLASG;
  case eok_and_assign:
    return ifop_ANDBASG;
  case eok_or_assign:
    return ifop_ORBASG;
  case eok_xor_assign:
    return ifop_XORBASG;
  default:
    return ifop_NOP;
  }
}

static void gen_operation(an_expr_node* expr, a_type* result) {
  switch (op_of(expr)) {
  case eok_address_of:
  case eok_array_to_pointer:
    return gen_address(left_of(expr), result);
  case eok_indirect:
  case eok_ref_indirect:
    return gen_indirection(expr);
  case eok_cast:
    return gen_cast(expr, result);
  case eok_lvalue_cast:
  case eok_glvalue_cast:
    return gen_glvalue_cast(expr, result);
  case eok_negate:
    return gen_unary(ifop_UMINUS, result, expr);
  case eok_unary_plus:
    return gen_expr(left_of(expr), result);
  case eok_complement:
    return gen_unary(ifop_NOTB, result, expr);
  case eok_not:
    return gen_unary(ifop_EXCLAIM, integer_type(ik_int), expr);
  case eok_post_incr:
    return gen_increment(ifop_PLUSPLUS, expr, result);
  case eok_post_decr:
    return gen_increment(ifop_MINMIN, expr, result);
  case eok_pre_incr:
    return gen_increment(ifop_PLUSASG, expr, result);
  case eok_pre_decr:
    return gen_increment(ifop_MINUSASG, expr, result);
  case eok_pointer_add:
    return gen_ptr_sum(result, expr);
  case eok_pointer_subtract:
    return gen_ptr_arith(ifop_MINUS, result, left_of(expr), right_of(expr));
  case eok_pointer_difference:
    return gen_ptr_difference(expr, result);
  case eok_eq:
  case eok_ne:
  case eok_gt:
  case eok_lt:
  case eok_ge:
  case eok_le:
    return gen_comparison(expr);
  case eok_assign:
    return gen_assignment(expr, result);
  case eok_pointer_add_assign:
    return gen_ptr_arith(ifop_PLUSASG, result, left_of(expr), right_of(expr));
  case eok_pointer_subtract_assign:
    return gen_ptr_arith(ifop_MINUSASG, result, left_of(expr), right_of(expr));
  case eok_array_assign:
    return gen_array_assignment(expr);
  case eok_land:
    return gen_logical(ifop_ANDAND, expr);
  case eok_lor:
    return gen_logical(ifop_OROR, expr);
  case eok_comma:
    return gen_binary(ifop_COMMAOP, result, expr);
  case eok_subscript:
    gen_node(ifop_UMULT, pointed_type_of_subscript(expr));
    return gen_ptr_sum(make_pointer_type(pointed_type_of_subscript(expr)), expr);
  case eok_dot_field:
  case eok_arrow_field:
    return gen_selection(expr, result);
  case eok_question:
    return gen_conditional(expr, result);
  case eok_call:
    return gen_call(expr);
  case eok_param_address:
    return gen_parameter_address(expr);
  default:
    break;
  }
  // Lowering has removed what is no arithmetic.
  an_if_opcode opcode = arithmetic_opcode(op_of(expr));
  if (opcode != ifop_NOP && is_arithmetic_class(expr))
    gen_binary(opcode, result, expr);
}

static void gen_routine(const an_expr_node* expr, a_type* result) {
  a_routine* routine = expr->variant.routine.ptr;
  SYMTAB* symbol = referenced_routine_symbol(routine);
  if (!expr->is_lvalue)
    gen_node(ifop_UAND, result);
  gen_name(routine->type, symbol);
}

void refuse_float_values(const a_source_position* position, const char* what) {
  if (float_values_refused)
    return;
  float_values_refused = true;
  pos_st_error(ec_feature_not_allowed_in_current_mode, position, what);
}

void gen_expr(an_expr_node* expr, a_type* type_override) {
  check_stack_limit();
  if (expr == nullptr)
    return;
  if (!expr->is_lvalue && (is_complex_type(expr->type) || is_imaginary_type(expr->type)))
    return refuse_float_values(&expr->position, "complex arithmetic");
  hooks->expression(expr);
  a_type* result = type_override == nullptr ? expr->type : type_override;
  switch (expr->kind) {
  case expr_operation:
    return gen_operation(expr, result);
  case expr_constant:
    return gen_constant(expr->variant.constant.ptr, result);
  case expr_variable:
    return gen_name(expr->variant.variable.ptr->type,
                    referenced_variable_symbol(expr->variant.variable.ptr));
  case expr_field:
    return gen_field(result, expr->variant.field.ptr);
  case expr_call_like: {
    an_expr_node* list = expr->variant.call_like.list;
    return gen_expr(expr->variant.call_like.flag ? list : list->next);
  }
  case expr_routine:
    return gen_routine(expr, result);
  default:
    // Lowering has removed the others.
    return;
  }
}
