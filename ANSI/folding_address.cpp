// Constant folding: addresses, and the conversion of constants.

#include "const_ints.h"
#include "error.h"
#include "expr.h"
#include "folding_int.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

// ---- Address arithmetic ----

uint64_t pointer_step(a_type* pointer_type) {
  a_type* pointed_to = skip_typerefs(type_pointed_to(pointer_type));
  if (pointed_to->kind == tk_void || pointed_to->kind == tk_routine)
    return 1;
  if (is_incomplete_type(pointed_to) || is_variably_modified_type(pointed_to))
    return 0;
  return size_of_type(pointed_to);
}

static bool same_base(const an_address_value* a, const an_address_value* b) {
  return a->base_kind == b->base_kind && a->base.entry == b->base.entry;
}

// The bytes of the object that an address lies in; 0 when they aren't known.
static uint64_t size_of_base_object(const an_address_value* address) {
  a_type* type = nullptr;
  if (address->base_kind == abk_variable)
    type = address->base.variable->type;
  else if (address->base_kind == abk_constant || address->base_kind == abk_temporary)
    type = address->base.constant->type;
  return type && !is_incomplete_type(type) ? size_of_type(type) : 0;
}

static void move_address(const a_constant* pointer, int64_t distance, a_type* result_type,
                         a_constant* result, a_fold_problem* problem) {
  copy_constant(pointer, result);
  result->type = result_type;
  an_address_value* address = &result->value.address;
  address->subobject_path = nullptr;
  if (__builtin_add_overflow(address->offset, distance, &address->offset)) {
    *problem = {ec_integer_overflow, es_error};
    return;
  }
  uint64_t size = size_of_base_object(address);
  if (size != 0 && (address->offset < 0 || static_cast<uint64_t>(address->offset) > size))
    *problem = {ec_pointer_outside_base_object, es_warning};
}

// A pointer made from an integer stays an integer, at the width of pointers.
static void move_integer_pointer(const a_constant* pointer, int64_t distance, a_type* result_type,
                                 a_constant* result) {
  copy_constant(pointer, result);
  result->type = result_type;
  int kind = unsigned_int_kind_of(targ_ptrdiff_t_int_kind);
  result->value.int_value =
      truncate_integer_value(pointer->value.int_value + static_cast<uint64_t>(distance), kind);
}

void fold_pointer_arithmetic(an_expr_operator_kind op, const a_constant* left,
                             const a_constant* right, a_type* result_type, a_constant* result,
                             a_fold_context* context) {
  bool pointer_is_left = is_pointer_type(left->type);
  const a_constant* pointer = pointer_is_left ? left : right;
  const a_constant* integer = pointer_is_left ? right : left;
  uint64_t step = pointer_step(pointer->type);
  if (step == 0 || integer->kind != con_integer) {
    context->not_folded = true;
    return;
  }
  bool overflow;
  int64_t distance;
  int64_t count = value_of_integer_constant(integer, &overflow);
  a_fold_problem problem = {};
  bool too_far =
      overflow || __builtin_mul_overflow(count, static_cast<int64_t>(step), &distance) ||
      (op == eok_pointer_subtract && __builtin_sub_overflow(int64_t{0}, distance, &distance));
  if (too_far) {
    distance = 0;
    problem = {ec_integer_overflow, es_error};
  }
  if (pointer->kind == con_address) {
    a_fold_problem range = {};
    move_address(pointer, distance, result_type, result, &range);
    if (problem.code == 0)
      problem = range;
  } else {
    move_integer_pointer(pointer, distance, result_type, result);
  }
  report_fold_problem(&problem, result, context);
}

// C99 6.5.6 p9.
void do_pdiff(const a_constant* left, const a_constant* right, a_type* result_type,
              a_constant* result, a_fold_context* context) {
  uint64_t step = pointer_step(left->type);
  bool both_addresses = left->kind == con_address && right->kind == con_address &&
                        same_base(&left->value.address, &right->value.address);
  bool both_integers = left->kind == con_integer && right->kind == con_integer;
  if (step == 0 || (!both_addresses && !both_integers)) {
    context->not_folded = true;
    return;
  }
  uint64_t distance = both_addresses ? static_cast<uint64_t>(left->value.address.offset) -
                                           static_cast<uint64_t>(right->value.address.offset)
                                     : left->value.int_value - right->value.int_value;
  bool overflow;
  a_fold_problem problem = {};
  divide_integer_values(&distance, step, true, &overflow);
  clear_constant(result, con_integer);
  result->type = result_type;
  trunc_and_set_integer(distance, true, result, true, false, &problem.code, &problem.severity);
  report_fold_problem(&problem, result, context);
}

// ---- Comparison ----

static bool has_non_null_address(const a_constant* constant) {
  return constant_bool_value_known_at_compile_time(constant);
}

// Whether the address is that of a byte of its object, so that no other
// object lies at the same place.
static bool is_inside_object(const an_address_value* address) {
  if (address->base_kind == abk_routine)
    return address->offset == 0;
  return address->offset >= 0 &&
         static_cast<uint64_t>(address->offset) < size_of_base_object(address);
}

// Equal literals may share their storage.
static bool may_share_storage(const an_address_value* address) {
  return address->base_kind == abk_constant;
}

static bool are_distinct_objects(const a_constant* left, const a_constant* right) {
  const an_address_value *a = &left->value.address, *b = &right->value.address;
  return !(may_share_storage(a) && may_share_storage(b)) && has_non_null_address(left) &&
         has_non_null_address(right) && is_inside_object(a) && is_inside_object(b);
}

static void set_truth(bool truth, a_type* result_type, a_constant* result) {
  clear_constant(result, con_integer);
  result->type = result_type;
  result->value.int_value = truth;
}

void fold_address_comparison(an_expr_operator_kind op, const a_constant* left,
                             const a_constant* right, a_type* result_type, a_constant* result,
                             a_fold_context* context) {
  bool is_equality = op == eok_eq || op == eok_ne;
  if (left->kind == con_address && right->kind == con_address) {
    int64_t a = left->value.address.offset, b = right->value.address.offset;
    if (same_base(&left->value.address, &right->value.address)) {
      bool truth[] = {a == b, a != b, a > b, a < b, a >= b, a <= b};
      set_truth(truth[op - eok_eq], result_type, result);
      return;
    }
    if (is_equality && are_distinct_objects(left, right)) {
      set_truth(op == eok_ne, result_type, result);
      return;
    }
  } else if (is_equality) {
    const a_constant* address = left->kind == con_address ? left : right;
    const a_constant* integer = left->kind == con_address ? right : left;
    if (integer->value.int_value == 0 && has_non_null_address(address) &&
        is_inside_object(&address->value.address)) {
      set_truth(op == eok_ne, result_type, result);
      return;
    }
  }
  context->not_folded = true;
}

// ---- Conversion ----

static void note_changed_value(uint64_t before, uint64_t after, const a_constant* source,
                               int target_kind, a_fold_problem* problem) {
  int target_bits = precision_of_int_kind(target_kind);
  int source_bits = precision_of_int_kind(int_kind_of(source->type));
  uint64_t low = before & make_integer_value_mask(target_bits);
  uint64_t extended =
      low >> (target_bits - 1) & 1 ? low | ~make_integer_value_mask(target_bits) : low;
  if (before == after && int_constant_is_signed(source) == int_kind_is_signed(target_kind))
    return;
  if (cmp_integer_values(before, int_constant_is_signed(source), after,
                         int_kind_is_signed(target_kind)) == 0)
    return;
  if (target_bits < source_bits && extended != before)
    *problem = {ec_integer_truncated, es_warning};
  else if (!source->overflow_or_wrap)
    *problem = {ec_integer_sign_change, es_warning};
}

static void conv_integer_to_integer(a_constant* constant, a_type* type, bool warn,
                                    a_fold_problem* problem) {
  uint64_t before = constant->value.int_value;
  if (is_bool_type(type)) { // C99 6.3.1.2
    constant->value.int_value = before != 0;
    constant->type = type;
    return;
  }
  int kind = int_kind_of(type);
  uint64_t after = truncate_integer_value(before, kind);
  if (warn && !is_pointer_type(constant->type))
    note_changed_value(before, after, constant, kind, problem);
  constant->value.int_value = after;
  constant->type = type;
}

static void conv_integer_to_pointer(a_constant* constant, a_type* type) {
  uint64_t size = size_of_type(type);
  constant->value.int_value &= make_integer_value_mask(static_cast<int>(size) * targ_char_bit);
  constant->type = type;
}

// An address may be held as an integer of its size.
static bool conv_address(a_constant* constant, a_type* type) {
  if (is_pointer_type(type)) {
    constant->type = type;
    constant->is_pointer_value = false;
    return true;
  }
  if (!is_integral_or_enum_type(type))
    return false;
  if (is_bool_type(type)) {
    if (!constant_bool_value_known_at_compile_time(constant))
      return false;
    set_truth(true, type, constant);
    return true;
  }
  // A wider integer than the pointer has no form in initial data.
  if (size_of_type(type) != size_of_type(constant->type))
    return false;
  constant->is_pointer_value = true;
  constant->type = type;
  return true;
}

static bool conv_integer(a_constant* constant, a_type* type, bool warn, a_fold_problem* problem) {
  if (is_integral_or_enum_type(type))
    conv_integer_to_integer(constant, type, warn, problem);
  else if (is_pointer_type(type))
    conv_integer_to_pointer(constant, type);
  else if (is_floating_type(type) && is_integral_or_enum_type(constant->type))
    conv_integer_to_float(constant, type, warn, problem);
  else
    return false;
  return true;
}

static bool conv_floating(a_constant* constant, a_type* type, bool is_explicit,
                          a_fold_problem* problem) {
  if (is_floating_type(type))
    conv_float_to_float(constant, type, problem);
  else if (is_bool_type(type)) // C99 6.3.1.2
    set_truth(float_constant_is_true(constant), type, constant);
  else if (is_integral_or_enum_type(type))
    conv_float_to_integer(constant, type, is_explicit, problem);
  else
    return false;
  return true;
}

static bool convert(a_constant* constant, a_type* type, bool is_explicit, a_fold_problem* problem) {
  switch (constant->kind) {
  case con_error:
    return true;
  case con_integer:
    return conv_integer(constant, type, !is_explicit, problem);
  case con_float:
  case con_imaginary:
  case con_complex:
    return conv_floating(constant, type, is_explicit, problem);
  case con_address:
    return conv_address(constant, type);
  default:
    if (!cast_identical_types(constant->type, type))
      return false;
    constant->type = type;
    return true;
  }
}

void type_change_constant_full(a_constant* constant, a_type* type, bool is_explicit,
                               a_fold_context* context) {
  a_fold_problem problem = {};
  const a_constant before = *constant;
  if (!convert(constant, type, is_explicit, &problem)) {
    context->not_folded = true;
    *constant = before;
    return;
  }
  // A literal stops being one when it gets another type.
  constant->is_null_literal = before.is_null_literal && !is_explicit;
  constant->is_character_literal = false;
  constant->explicit_cast = is_explicit;
  constant->implicit_cast = !is_explicit;
  // Where the value isn't wanted, what merely changes it goes without a word.
  if (context->value_evaluated || problem.severity >= es_error)
    report_fold_problem(&problem, constant, context);
  if (context->not_folded)
    *constant = before;
}

bool type_change_constant(a_constant* constant, a_type* type) {
  a_fold_problem problem = {};
  return convert(constant, type, true, &problem) && problem.severity < es_error;
}

// ---- Addresses that expressions have before run time ----

static bool has_static_address(const a_variable* variable) {
  return variable->storage_kind < sc_auto;
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
static bool moved_pointer(an_expr_node* expr, a_constant* result) {
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
         constant_prvalue_pointer(pointer, result) && add_to_address(result, distance);
}

static bool selected_field_address(an_expr_node* expr, a_constant* result) {
  auto& operation = expr->variant.operation;
  an_expr_node* field_node = operation.operands->next;
  a_field* field = field_node->variant.field.ptr;
  bool known = operation.op == eok_dot_field ? constant_glvalue_address(operation.operands, result)
                                             : constant_prvalue_pointer(operation.operands, result);
  return known && !field->is_bit_field &&
         add_to_address(result, static_cast<int64_t>(field->offset));
}

static bool glvalue_operation_address(an_expr_node* expr, a_constant* result) {
  auto& operation = expr->variant.operation;
  switch (operation.op) {
  case eok_indirect:
    return constant_prvalue_pointer(operation.operands, result);
  case eok_subscript:
    return moved_pointer(expr, result);
  case eok_dot_field:
  case eok_arrow_field:
    return selected_field_address(expr, result);
  case eok_parens:
    return constant_glvalue_address(operation.operands, result);
  default:
    return false;
  }
}

bool constant_glvalue_address(an_expr_node* expr, a_constant* result) {
  switch (expr->kind) {
  case expr_variable:
    if (!has_static_address(expr->variant.variable.ptr))
      return false;
    set_variable_address_constant(expr->variant.variable.ptr, result, true);
    return true;
  case expr_routine:
    set_routine_address_constant(expr->variant.routine.ptr, result, true);
    return true;
  case expr_constant:
    if (expr->variant.constant.ptr->kind != con_string)
      return false;
    set_constant_address_constant(expr->variant.constant.ptr, result);
    return true;
  case expr_operation:
    return glvalue_operation_address(expr, result);
  default:
    return false;
  }
}

static bool prvalue_operation_address(an_expr_node* expr, a_constant* result) {
  auto& operation = expr->variant.operation;
  switch (operation.op) {
  case eok_address_of:
  case eok_array_to_pointer:
    return constant_glvalue_address(operation.operands, result);
  case eok_pointer_add:
  case eok_pointer_subtract:
    return moved_pointer(expr, result);
  case eok_cast:
    return constant_prvalue_pointer(operation.operands, result) &&
           type_change_constant(result, expr->type);
  case eok_parens:
    return constant_prvalue_pointer(operation.operands, result);
  default:
    return false;
  }
}

bool constant_prvalue_pointer(an_expr_node* expr, a_constant* result) {
  if (expr->kind == expr_constant) {
    const a_constant* constant = expr->variant.constant.ptr;
    if (constant->kind != con_address && constant->kind != con_integer)
      return false;
    copy_constant(constant, result);
  } else if (expr->kind == expr_routine && !expr->is_lvalue) {
    set_routine_address_constant(expr->variant.routine.ptr, result, true);
  } else if (expr->kind != expr_operation || !prvalue_operation_address(expr, result)) {
    return false;
  }
  result->type = expr->type;
  return true;
}
