// Constant folding: the conversion of constants among all their kinds.

#include "const_ints.h"
#include "error.h"
#include "folding_int.h"
#include "il_alloc.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

// ---- To integers (C99 6.3.1.2, 6.3.1.3) ----

static void set_integer(uint64_t value, a_type* type, a_constant* constant) {
  set_constant_kind(constant, con_integer);
  constant->value.int_value = value;
  constant->type = type;
  constant->is_pointer_value = false;
}

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
  if (is_bool_type(type)) {
    set_integer(before != 0, type, constant);
    return;
  }
  int kind = int_kind_of(type);
  uint64_t after = truncate_integer_value(before, kind);
  if (warn && is_integral_or_enum_type(constant->type))
    note_changed_value(before, after, constant, kind, problem);
  set_integer(after, type, constant);
}

// ---- Addresses (C99 6.3.2.3) ----

// A pointer to a class becomes one to its base, or the reverse. Where a virtual
// base lies depends on the object.
static bool fold_base_class_cast(a_constant* constant, const a_base_class* base, bool to_base,
                                 a_type* type) {
  if (base->is_virtual || !base->offset_is_known)
    return false;
  int64_t distance = static_cast<int64_t>(base->offset);
  if (!to_base)
    distance = -distance;
  constant->type = type;
  if (constant->kind == con_address) {
    constant->value.address.subobject_path = nullptr;
    return !__builtin_add_overflow(constant->value.address.offset, distance,
                                   &constant->value.address.offset);
  }
  // The null pointer stays what it is.
  if (constant->value.int_value != 0)
    constant->value.int_value += static_cast<uint64_t>(distance);
  return true;
}

static bool conv_between_pointers(a_constant* constant, a_type* type) {
  a_base_class* base;
  bool derived_first;
  if (f_related_class_pointers(constant->type, type, &base, &derived_first))
    return fold_base_class_cast(constant, base, derived_first, type);
  constant->type = type;
  return true;
}

static bool conv_integer_to_pointer(a_constant* constant, a_type* type) {
  if (is_pointer_type(constant->type) && !conv_between_pointers(constant, type))
    return false;
  int bits = static_cast<int>(size_of_type(type)) * targ_char_bit;
  constant->value.int_value &= make_integer_value_mask(bits);
  constant->type = type;
  constant->is_pointer_value = true;
  return true;
}

static bool conv_address_to_integer(a_constant* constant, a_type* type) {
  if (is_bool_type(type)) {
    if (!constant_bool_value_known_at_compile_time(constant))
      return false;
    set_integer(true, type, constant);
    return true;
  }
  // A wider integer than the pointer has no form in initial data.
  if (size_of_type(type) != size_of_type(constant->type))
    return false;
  constant->is_pointer_value = true;
  constant->type = type;
  return true;
}

static bool conv_address(a_constant* constant, a_type* type) {
  if (is_integral_or_enum_type(type))
    return conv_address_to_integer(constant, type);
  if (!is_pointer_type(type))
    return false;
  constant->is_pointer_value = false;
  if (is_pointer_type(constant->type))
    return conv_between_pointers(constant, type);
  constant->type = type;
  return true;
}

// A symbolic difference stays one: an integer of any width that is filled in
// where the addresses are known.
static bool conv_address_difference(a_constant* constant, a_type* type) {
  if (!is_integral_or_enum_type(type) || is_bool_type(type))
    return false;
  constant->type = type;
  return true;
}

// ---- Pointers to members (C++ 4.11, 5.2.9 p12) ----

// The path from the derived class to the base that the member belongs to.
static bool conv_between_member_classes(a_constant* constant, a_type* type) {
  a_ptr_to_member_value* value = &constant->value.ptr_to_member;
  a_type *from = pm_class_type(constant->type), *to = pm_class_type(type);
  bool is_null = !value->is_routine && !value->member.field;
  if (is_null || equiv_class_types(f_skip_typerefs(from), f_skip_typerefs(to))) {
    constant->type = type;
    return true;
  }
  a_base_class* base = find_base_class_of(to, from);
  bool to_base = !base;
  if (to_base)
    base = find_base_class_of(from, to);
  if (!base || base->is_virtual || base->is_ambiguous || !base->derivations ||
      value->base_class_path)
    return false;
  value->base_class_path = base->derivations->path;
  value->cast_to_base = to_base;
  constant->type = type;
  return true;
}

static bool conv_ptr_to_member(a_constant* constant, a_type* type) {
  if (is_ptr_to_member_type(type))
    return conv_between_member_classes(constant, type);
  if (!is_bool_type(type))
    return false;
  set_integer(constant_bool_value(constant), type, constant);
  return true;
}

// ---- Integers and floating constants ----

static bool conv_integer(a_constant* constant, a_type* type, bool warn, a_fold_problem* problem) {
  if (is_integral_or_enum_type(type)) {
    conv_integer_to_integer(constant, type, warn, problem);
    return true;
  }
  if (is_pointer_type(type))
    return conv_integer_to_pointer(constant, type);
  if (is_floating_type(type) && is_integral_or_enum_type(constant->type)) {
    conv_integer_to_float(constant, type, warn, problem);
    return true;
  }
  if (constant->value.int_value != 0 || !(is_ptr_to_member_type(type) || is_nullptr_type(type)))
    return false;
  set_constant_kind(constant, is_nullptr_type(type) ? con_integer : con_ptr_to_member);
  constant->type = type;
  return true;
}

static bool conv_floating(a_constant* constant, a_type* type, bool is_explicit,
                          a_fold_problem* problem) {
  if (is_floating_type(type))
    conv_float_to_float(constant, type, problem);
  else if (is_bool_type(type))
    set_integer(float_constant_is_true(constant), type, constant);
  else if (is_integral_or_enum_type(type))
    conv_float_to_integer(constant, type, is_explicit, problem);
  else
    return false;
  return true;
}

// ---- Values that wait for a template argument ----

void make_template_param_cast_constant(const a_constant* operand, a_type* type, bool is_implicit,
                                       a_constant* result) {
  a_constant* inner = alloc_unshared_constant(operand);
  clear_constant(result, con_template_param);
  set_template_param_constant_kind(result, is_implicit ? tpck_implicit_cast : tpck_cast);
  result->value.template_param.is_explicit = !is_implicit;
  result->value.template_param.param_data.constant = inner;
  result->type = type;
}

void make_template_param_expr_constant(an_expr_node* expr, a_constant* result) {
  clear_constant(result, con_template_param);
  set_template_param_constant_kind(result, tpck_expression);
  result->value.template_param.param_data.expr = expr;
  result->type = expr->type;
  result->position = expr->position;
}

// ---- Any constant ----

static bool convert(a_constant* constant, a_type* type, bool is_explicit, a_fold_problem* problem) {
  if (is_integral_or_enum_type(type) && is_incomplete_type(type)) {
    *problem = {ec_incomplete_type_not_allowed, es_error};
    return true;
  }
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
  case con_ptr_to_member:
    return conv_ptr_to_member(constant, type);
  case con_address_difference:
    return conv_address_difference(constant, type);
  case con_template_param:
    if (!identical_types(constant->type, type))
      make_template_param_cast_constant(constant, type, !is_explicit, constant);
    return true;
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
