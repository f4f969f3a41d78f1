// Constant folding: arithmetic on addresses, and their comparison.

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

static uint64_t address_step(const a_constant* constant) {
  return is_pointer_type(constant->type) ? pointer_step(constant->type) : 1;
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

static void check_bounds(const an_address_value* address, a_fold_problem* problem) {
  uint64_t size = size_of_base_object(address);
  if (size != 0 && (address->offset < 0 || static_cast<uint64_t>(address->offset) > size))
    *problem = {ec_pointer_outside_base_object, es_warning};
}

static void move_address(const a_constant* pointer, int64_t distance, a_type* result_type,
                         a_constant* result, a_fold_problem* problem) {
  copy_constant(pointer, result);
  result->type = result_type;
  an_address_value* address = &result->value.address;
  address->subobject_path = nullptr;
  if (__builtin_add_overflow(address->offset, distance, &address->offset))
    *problem = {ec_integer_overflow, es_error};
  else if (is_pointer_type(result_type))
    check_bounds(address, problem);
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

// The bytes that adding or subtracting a count moves.
static bool distance_of_steps(an_expr_operator_kind op, const a_constant* count, uint64_t step,
                              int64_t* distance) {
  bool too_great;
  int64_t value = value_of_integer_constant(count, &too_great);
  if (too_great || __builtin_mul_overflow(value, static_cast<int64_t>(step), distance))
    return false;
  return op != eok_pointer_subtract || !__builtin_sub_overflow(int64_t{0}, *distance, distance);
}

static bool is_pointer_side(const a_constant* constant) {
  return is_pointer_type(constant->type) || is_integer_valued_address(constant);
}

void fold_pointer_arithmetic(an_expr_operator_kind op, const a_constant* left,
                             const a_constant* right, a_type* result_type, a_constant* result,
                             a_fold_context* context) {
  const a_constant* pointer = is_pointer_side(left) ? left : right;
  const a_constant* integer = pointer == left ? right : left;
  uint64_t step = address_step(pointer);
  bool is_known = pointer->kind == con_address || pointer->kind == con_integer;
  if (step == 0 || !is_known || integer->kind != con_integer) {
    context->not_folded = true;
    return;
  }
  int64_t distance;
  a_fold_problem problem = {}, bounds = {};
  if (!distance_of_steps(op, integer, step, &distance)) {
    distance = 0;
    problem = {ec_integer_overflow, es_error};
  }
  if (pointer->kind == con_address)
    move_address(pointer, distance, result_type, result, &bounds);
  else
    move_integer_pointer(pointer, distance, result_type, result);
  if (problem.code == 0)
    problem = bounds;
  report_fold_problem(&problem, result, context);
}

// The distance of two labels is known where the code is placed.
static bool may_be_symbolic_difference(const a_constant* left, const a_constant* right) {
  return left->kind == con_address && right->kind == con_address &&
         left->value.address.base_kind == abk_label && right->value.address.base_kind == abk_label;
}

static void make_symbolic_difference(const a_constant* left, const a_constant* right,
                                     a_type* result_type, a_constant* result) {
  a_constant* minuend = alloc_unshared_constant(left);
  a_constant* subtrahend = alloc_unshared_constant(right);
  clear_constant(result, con_address_difference);
  result->type = result_type;
  result->value.address_difference = {minuend, subtrahend};
}

// C99 6.5.6 p9.
void do_pdiff(const a_constant* left, const a_constant* right, a_type* result_type,
              a_constant* result, a_fold_context* context) {
  uint64_t step = address_step(left);
  bool both_addresses = left->kind == con_address && right->kind == con_address &&
                        same_base(&left->value.address, &right->value.address);
  bool both_integers = left->kind == con_integer && right->kind == con_integer;
  if (step == 1 && !both_addresses && may_be_symbolic_difference(left, right)) {
    make_symbolic_difference(left, right, result_type, result);
    return;
  }
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
  start_result(result_type, result, context);
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

// Whether the address is that of an object or just past it, which is no null
// pointer. The size of the object need not be known for its own address.
static bool is_at_object(const an_address_value* address) {
  return address->offset == 0 || (address->offset > 0 && static_cast<uint64_t>(address->offset) <=
                                                             size_of_base_object(address));
}

// Whether unlike operands, of which at least one is an address, are known to
// differ.
static bool are_known_unequal(const a_constant* left, const a_constant* right) {
  if (left->kind == con_address && right->kind == con_address)
    return are_distinct_objects(left, right);
  const a_constant* address = left->kind == con_address ? left : right;
  const a_constant* integer = left->kind == con_address ? right : left;
  return integer->kind == con_integer && integer->value.int_value == 0 &&
         has_non_null_address(address) && is_at_object(&address->value.address);
}

void fold_address_comparison(an_expr_operator_kind op, const a_constant* left,
                             const a_constant* right, a_type* result_type, a_constant* result,
                             a_fold_context* context) {
  bool truth;
  if (left->kind == con_address && right->kind == con_address &&
      same_base(&left->value.address, &right->value.address)) {
    int64_t a = left->value.address.offset, b = right->value.address.offset;
    truth = relation_holds(op, a < b ? -1 : a > b);
  } else if ((op == eok_eq || op == eok_ne) && are_known_unequal(left, right)) {
    truth = op == eok_ne;
  } else {
    context->not_folded = true;
    return;
  }
  start_result(result_type, result, context);
  result->value.int_value = truth;
}
