#include "lower_complex.h"

#include <unordered_map>

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "lower_c99_int.h"
#include "lower_complex_int.h"
#include "lower_context.h"
#include "lower_init.h"
#include "lower_runtime.h"
#include "stack_limit.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

a_routine* complex_routines[num_complex_families][num_float_kinds];

// The struct for each float kind; null: not needed yet.
static a_type* lowered_complex_types[fk_long_double + 1];

static a_float_kind float_kind_of(const a_type* type) {
  return f_skip_typerefs(type)->variant.float_kind;
}

static bool is_nonreal_type(const a_type* type) {
  return is_complex_type(type) || is_imaginary_type(type);
}

// ---- The lowered types ----

static a_type* make_lowered_complex_type(int float_kind) {
  static const char* const names[] = {"_Complex_float", "_Complex_double", "_Complex_long_double"};
  a_field* field = alloc_field(make_array_type(float_type(float_kind), 2));
  field->source_corresp.name = "_Vals";
  field->is_compiler_generated = true;
  a_type* type = alloc_type(tk_struct);
  clear_class_type_definition_fields(type);
  type->source_corresp.name = names[float_kind];
  type->variant.class_struct_union.fields = field;
  type->variant.class_struct_union.is_complete_definition = true;
  type->is_incomplete = false;
  type->size = field->type->size;
  type->alignment = f_alignment_of_type(field->type);
  add_to_types_list(type, 0);
  return type;
}

a_type* lowered_complex_type(int float_kind) {
  if (float_kind > fk_long_double)
    return nullptr;
  a_type*& type = lowered_complex_types[float_kind];
  if (type == nullptr)
    type = make_lowered_complex_type(float_kind);
  return type;
}

a_field* vals_field(a_type* type) {
  a_type* bare = f_skip_typerefs(type);
  if (bare->kind == tk_complex)
    bare = lowered_complex_type(bare->variant.float_kind);
  return bare->variant.class_struct_union.fields;
}

// A typeref with the size of what it was: only its meaning changes.
static void turn_into_typeref(a_type* type, const char* name, a_type* referenced_type) {
  type->kind = tk_typeref;
  type->source_corresp.name = name;
  type->variant.typeref = {};
  type->variant.typeref.referenced_type = referenced_type;
}

void lower_c99_nonreal_float_types() {
  static const char* const names[] = {"_Imaginary_float", "_Imaginary_double",
                                      "_Imaginary_long_double"};
  for (int kind = fk_float; kind <= fk_long_double; kind++) {
    turn_into_typeref(imaginary_type(kind), names[kind], float_type(kind));
    turn_into_typeref(complex_type(kind), nullptr, lowered_complex_type(kind));
  }
}

// ---- Calls of the routines ----

static const char* name_of_routine(a_complex_family family, int float_kind) {
  for (const a_complex_routine_descr& descr : complex_routine_descrs)
    if (descr.family == family && descr.float_kind == float_kind)
      return descr.name;
  return nullptr;
}

static an_expr_node* call_of(a_complex_family family, int float_kind, a_type* result,
                             an_expr_node* arguments, a_type* param1, a_type* param2 = nullptr) {
  a_routine** slot = &complex_routines[family][float_kind];
  const char* name = *slot == nullptr ? name_of_routine(family, float_kind) : nullptr;
  return make_call_node(make_prototyped_runtime_routine(name, slot, result, param1, param2),
                        arguments);
}

static an_expr_node* unary_call(a_complex_family family, an_expr_node* operand) {
  int kind = float_kind_of(operand->type);
  return call_of(family, kind, complex_type(kind), operand, complex_type(kind));
}

static an_expr_node* binary_call(a_complex_family family, an_expr_node* operands, a_type* result) {
  int kind = float_kind_of(operands->type);
  return call_of(family, kind, result, operands, complex_type(kind), complex_type(kind));
}

// ---- The parts of a value ----

an_expr_node* element_lvalue_expr(an_expr_node* array, int64_t index) {
  a_type* element = array_element_type(f_skip_typerefs(array->type));
  an_expr_node* pointer =
      make_operator_node(eok_array_to_pointer, make_pointer_type(element), array);
  pointer->next =
      node_for_integer_constant(index, static_cast<an_integer_kind>(targ_ptrdiff_t_int_kind));
  return make_lvalue_operator_node(eok_subscript, element, pointer);
}

static an_expr_node* part_lvalue(an_expr_node* object, int index) {
  return element_lvalue_expr(field_lvalue_selection_expr(object, vals_field(object->type)), index);
}

static an_expr_node* assignment_of_part(a_variable* variable, int index, an_expr_node* value) {
  return make_assignment_expr(part_lvalue(var_lvalue_expr(variable), index), eok_assign, value);
}

// The object whose value the node is; null for a value that no object holds.
static an_expr_node* object_of_value(an_expr_node* value) {
  bool is_object = value->kind == expr_variable || is_operation_node(value, eok_indirect) ||
                   is_operation_node(value, eok_subscript) ||
                   is_operation_node(value, eok_dot_field) ||
                   is_operation_node(value, eok_arrow_field);
  if (!is_object)
    return nullptr;
  an_expr_node* object = copy_node(value);
  object->next = nullptr;
  object->is_lvalue = true;
  return object;
}

// __real__ and __imag__: an element of the object, or of a copy of the value.
static void lower_complex_projection(an_expr_node* node) {
  an_expr_node* operand = node->variant.operation.operands;
  int index = node->variant.operation.op == eok_imag_part;
  an_expr_node* object = operand->is_lvalue ? operand : object_of_value(operand);
  if (object != nullptr) {
    an_expr_node* part = part_lvalue(object, index);
    part->is_lvalue = node->is_lvalue;
    part->type = node->type;
    overwrite_node(node, part);
    return;
  }
  a_variable* copy = make_temporary(operand->type, true);
  an_expr_node* part = part_lvalue(var_lvalue_expr(copy), index);
  part->is_lvalue = false;
  an_expr_node* making = make_assignment_expr(var_lvalue_expr(copy), eok_assign, operand);
  overwrite_node(node, make_comma_node(making, part));
}

static an_expr_node* negated(an_expr_node* value) {
  return make_operator_node(eok_negate, value->type, value);
}

// A real and an imaginary value side by side.
static void lower_sum_of_parts(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  an_expr_node* left = node->variant.operation.operands;
  an_expr_node* right = left->next;
  left->next = nullptr;
  bool is_difference = op == eok_real_minus_imag || op == eok_imag_minus_real;
  bool real_first = op == eok_real_plus_imag || op == eok_real_minus_imag;
  a_variable* sum = make_temporary(node->type, true);
  an_expr_node* result =
      assignment_of_part(sum, !real_first ? 0 : 1, is_difference ? negated(right) : right);
  result = make_comma_node(assignment_of_part(sum, real_first ? 0 : 1, left), result);
  overwrite_node(node, make_comma_node(result, var_rvalue_expr(sum)));
}

// ---- Conversions (C99 6.3.1.6, 6.3.1.7, G.4) ----

static an_expr_node* zero_node(a_type* type) {
  a_constant zero;
  make_zero_of_proper_type(make_unqualified_type(type), &zero);
  an_expr_node* node = alloc_node_for_constant(&zero);
  lower_c99_complex_node(node);
  return node;
}

an_expr_node* complex_ne_0(an_expr_node* value) {
  value->next = zero_node(value->type);
  return binary_call(cf_ne, value, integer_type(ik_int));
}

static an_expr_node* to_complex(an_expr_node* value, int kind) {
  if (is_complex_type(value->type)) {
    int from = float_kind_of(value->type);
    if (from == kind)
      return value;
    auto family = static_cast<a_complex_family>(cf_cfloat_to + from);
    return call_of(family, kind, complex_type(kind), value, complex_type(from));
  }
  bool is_imaginary = is_imaginary_type(value->type);
  a_type* part_type = is_imaginary ? imaginary_type(kind) : float_type(kind);
  return call_of(is_imaginary ? cf_imag_to_complex : cf_real_to_complex, kind, complex_type(kind),
                 add_cast_if_necessary(value, part_type), part_type);
}

static an_expr_node* from_complex(an_expr_node* value, a_type* type) {
  int kind = float_kind_of(value->type);
  bool is_imaginary = is_imaginary_type(type);
  a_type* part_type = is_imaginary ? imaginary_type(kind) : float_type(kind);
  an_expr_node* part = call_of(is_imaginary ? cf_complex_to_imag : cf_complex_to_real, kind,
                               part_type, value, complex_type(kind));
  return add_cast_if_necessary(part, type);
}

static void lower_c99_complex_cast(an_expr_node* node) {
  an_expr_node* operand = node->variant.operation.operands;
  a_type* type = make_unqualified_type(node->type);
  if (is_void_type(type) || (is_nonreal_type(type) && is_error_type(operand->type)))
    return;
  an_expr_node* result = nullptr;
  if (is_bool_type(type))
    result = is_complex_type(operand->type) ? add_cast_if_necessary(complex_ne_0(operand), type)
                                            : nullptr;
  else if (is_complex_type(type))
    result = to_complex(operand, float_kind_of(type));
  else if (is_complex_type(operand->type))
    result = from_complex(operand, type);
  else if (is_imaginary_type(type) != is_imaginary_type(operand->type))
    // A real value has no imaginary part, and the reverse.
    result = make_comma_node(add_cast(operand, void_type()), zero_node(type));
  if (result != nullptr)
    overwrite_node(node, result == operand ? copy_node(operand) : result);
}

// ---- Constants in expressions ----

struct a_complex_static {
  const a_constant* constant;
  a_variable* variable;
};

// The statics of the region being lowered, by the hash of the constant.
static std::unordered_multimap<uint64_t, a_complex_static> complex_statics;

void begin_complex_lowering_of_region() {
  complex_statics.clear();
}

// All uses of one value in a function share a static. The constant itself stays
// as it is: other functions may have it too.
static a_variable* static_of_complex_constant(const a_constant* constant) {
  uint64_t hash = hash_constant(constant);
  auto [first, last] = complex_statics.equal_range(hash);
  for (; first != last; ++first)
    if (eq_constants(first->second.constant, constant))
      return first->second.variable;
  a_constant* value = alloc_unshared_constant(constant);
  lower_c99_complex_constant(value);
  a_variable* variable = static_copy_of(value)->variant.variable.ptr;
  complex_statics.insert({hash, {constant, variable}});
  return variable;
}

// ---- Operators ----

static void lower_complex_not(an_expr_node* node) {
  node->variant.operation.operands = complex_ne_0(node->variant.operation.operands);
  node->variant.operation.operation_kind = tk_integer;
}

static an_expr_node* value_of(const an_expr_node* object) {
  an_expr_node* value = copy_expr_tree(object, cef_none);
  value->next = nullptr;
  value->is_lvalue = false;
  return value;
}

// `object = left op right`, computed in `type`.
static an_expr_node* assignment_of_operation(const an_expr_node* object, an_expr_node* left,
                                             an_expr_operator_kind op, an_expr_node* right,
                                             a_type* type) {
  an_expr_node* converted = make_operator_node(eok_cast, type, left);
  lower_c99_complex_node(converted);
  converted->next = make_operator_node(eok_cast, type, right);
  lower_c99_complex_node(converted->next);
  bool is_product = op == eok_multiply || op == eok_divide;
  if (is_imaginary_type(type) && is_product) {
    op = op == eok_multiply ? eok_imag_multiply : eok_imag_divide;
    type = float_type(float_kind_of(type));
  }
  an_expr_node* value = make_operator_node(op, type, converted);
  lower_c99_complex_node(value);
  value = make_operator_node(eok_cast, make_unqualified_type(object->type), value);
  lower_c99_complex_node(value);
  an_expr_node* place = copy_expr_tree(object, cef_none);
  place->next = nullptr;
  return make_assignment_expr(place, eok_assign, value);
}

static void lower_complex_compound_assignment(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  an_expr_node* object = node->variant.operation.operands;
  an_expr_node* right = object->next;
  a_type* type = compound_assignment_operation_type(op, object, right);
  right->next = nullptr;
  overwrite_node(node, assignment_of_operation(object, value_of(object),
                                               operator_of_compound_assignment(op), right, type));
}

// `z++` steps the real part; an imaginary value keeps its own.
static void lower_c99_xincr_decr(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  an_expr_node* object = node->variant.operation.operands;
  bool is_incr = op == eok_post_incr || op == eok_pre_incr;
  a_kept_value kept;
  an_expr_node* value = keep_old_value(node, value_of(object), &kept);
  an_expr_node* one = node_for_integer_constant(1, ik_int);
  a_type* type = complex_type(float_kind_of(object->type));
  an_expr_node* step =
      assignment_of_operation(object, value, is_incr ? eok_add : eok_subtract, one, type);
  overwrite_node(node, change_with_kept_value(kept, step));
}

// Products and quotients with two imaginary factors, or an imaginary divisor:
// i * i = -1, 1 / i = -i.
static void lower_imaginary_product(an_expr_node* node) {
  an_expr_operator_kind op = node->variant.operation.op;
  an_expr_node* operands = node->variant.operation.operands;
  a_type* type = float_type(float_kind_of(node->type));
  bool is_negative =
      op == eok_imag_multiply || (op == eok_divide && is_imaginary_type(operands->next->type) &&
                                  !is_imaginary_type(operands->type));
  bool is_quotient = op == eok_divide || op == eok_imag_divide;
  an_expr_node* value = make_operator_node(is_quotient ? eok_divide : eok_multiply, type, operands);
  value = is_negative ? negated(value) : value;
  value->type = node->type;
  overwrite_node(node, value);
}

static void lower_complex_arithmetic(an_expr_node* node) {
  static const struct {
    an_expr_operator_kind op;
    a_complex_family family;
  } families[] = {
      {eok_add, cf_add},
      {eok_subtract, cf_subtract},
      {eok_multiply, cf_multiply},
      {eok_divide, cf_divide},
      {eok_eq, cf_eq},
      {eok_ne, cf_ne},
  };
  an_expr_node* operands = node->variant.operation.operands;
  for (const auto& row : families)
    if (row.op == node->variant.operation.op)
      return overwrite_node(node, binary_call(row.family, operands, node->type));
}

static void lower_complex_operation(an_expr_node* node) {
  an_expr_node* operands = node->variant.operation.operands;
  bool is_complex = is_complex_type(operands->type);
  switch (node->variant.operation.op) {
  case eok_cast:
  case eok_to_bool:
    return lower_c99_complex_cast(node);
  case eok_negate:
    return is_complex ? overwrite_node(node, unary_call(cf_negate, operands)) : void();
  case eok_conjugate:
    return overwrite_node(node, unary_call(cf_conjugate, operands));
  case eok_real_part:
  case eok_imag_part:
    return lower_complex_projection(node);
  case eok_real_plus_imag:
  case eok_real_minus_imag:
  case eok_imag_plus_real:
  case eok_imag_minus_real:
    return lower_sum_of_parts(node);
  case eok_imag_multiply:
  case eok_imag_divide:
    return lower_imaginary_product(node);
  case eok_not:
    return is_complex ? lower_complex_not(node) : void();
  case eok_add:
  case eok_subtract:
  case eok_multiply:
  case eok_divide:
  case eok_eq:
  case eok_ne:
    if (is_complex)
      return lower_complex_arithmetic(node);
    return node->variant.operation.op == eok_divide && is_imaginary_type(node->type)
               ? lower_imaginary_product(node)
               : void();
  default:
    if (is_increment_operator(node->variant.operation.op))
      lower_change_of_object(node, lower_c99_xincr_decr);
    else if (is_compound_assignment_operator(node->variant.operation.op))
      lower_change_of_object(node, lower_complex_compound_assignment);
  }
}

bool takes_part_in_complex_arithmetic(const an_expr_node* node) {
  if (is_nonreal_type(node->type))
    return true;
  if (node->kind != expr_operation)
    return false;
  for (const an_expr_node* operand = node->variant.operation.operands; operand != nullptr;
       operand = operand->next)
    if (is_nonreal_type(operand->type))
      return true;
  return false;
}

void lower_c99_complex_node(an_expr_node* node) {
  if (!takes_part_in_complex_arithmetic(node))
    return;
  if (node->kind == expr_operation) {
    a_type_kind& kind = node->variant.operation.operation_kind;
    kind = lowered_nonreal_kind(kind);
    lower_complex_operation(node);
  } else if (is_complex_type(node->type) && node->kind == expr_constant) {
    overwrite_node(node, var_rvalue_expr(static_of_complex_constant(node->variant.constant.ptr)));
  } else if (node->kind == expr_constant) {
    lower_c99_complex_constant(node->variant.constant.ptr);
  }
}

// ---- Constants ----

static a_constant* float_constant(a_type* type, const a_float_value& value) {
  a_constant* constant = alloc_constant(con_float);
  constant->type = type;
  constant->value.float_value = value;
  return constant;
}

static void turn_into_aggregate(a_constant* constant) {
  int kind = float_kind_of(constant->type);
  a_complex_value value = *constant->value.complex_value;
  a_constant* values = alloc_constant(con_aggregate);
  values->type = vals_field(constant->type)->type;
  add_constant_to_aggregate(float_constant(float_type(kind), value.real), values);
  add_constant_to_aggregate(float_constant(float_type(kind), value.imaginary), values);
  set_constant_kind(constant, con_aggregate);
  add_constant_to_aggregate(values, constant);
}

void lower_c99_complex_constant(a_constant* constant) {
  check_stack_limit();
  switch (constant->kind) {
  case con_complex:
    return turn_into_aggregate(constant);
  case con_imaginary:
    constant->kind = con_float;
    return;
  case con_repeat:
    return lower_c99_complex_constant(constant->value.repeat.element);
  case con_aggregate:
    for (a_constant* item = constant->value.aggregate.first; item != nullptr; item = item->next)
      lower_c99_complex_constant(item);
    return;
  default:
    return;
  }
}

void lower_complex_one_time_init() {
  f_register_trans_unit_variable(complex_routines, sizeof complex_routines, 0);
  f_register_trans_unit_variable(lowered_complex_types, sizeof lowered_complex_types, 0);
}

void lower_complex_trans_unit_init() {
  for (auto& family : complex_routines)
    for (a_routine*& routine : family)
      routine = nullptr;
  for (a_type*& type : lowered_complex_types)
    type = nullptr;
}
