// Whether a value of one type converts to another.

#include "types.h"

#include "error_codes.h"
#include "il.h"
#include "il_constants.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"

void clear_std_conv_descr(a_std_conv_descr* descr) {
  *descr = {};
}

bool is_or_might_be_null_pointer_constant(const a_constant* constant) {
  if (constant == nullptr)
    return false;
  if (constant->kind == con_template_param)
    return true;
  if (constant->kind != con_integer || constant->value.int_value != 0)
    return false;
  const a_type* type = constant->type;
  if (is_integral_or_enum_type(type))
    return in_C_mode() || !is_enum_type(type);
  return is_nullptr_type(type) || (in_C_mode() && is_void_star_type(type));
}

// --- Qualification.

namespace {

// The types behind one level of pointers of the same form, or false.
bool step_through_pointers(a_type** a, a_type** b) {
  if (is_pointer_type(*a) && is_pointer_type(*b)) {
    *a = type_pointed_to(*a);
    *b = type_pointed_to(*b);
    return true;
  }
  if (is_ptr_to_member_type(*a) && is_ptr_to_member_type(*b) &&
      f_identical_types(pm_class_type(*a), pm_class_type(*b), tcf_none)) {
    *a = pm_member_type(*a);
    *b = pm_member_type(*b);
    return true;
  }
  return false;
}

// In C++ a pointer may lead to a function of C where it says one of C++, if the
// mode lets it.
bool same_types_below_qualifiers(a_type* a, a_type* b) {
  return in_C_mode()
             ? f_types_are_compatible(a, b, tcf_ignore_top_qualifiers)
             : f_identical_types(a, b, tcf_ignore_top_qualifiers | tcf_allow_c_cpp_conversion);
}

// Qualifiers that a conversion may add. An atomic type is a type of its own,
// no qualified version of another (C11 6.2.5 p27).
a_type_qualifier_set conversion_qualifiers(const a_type* type) {
  return get_type_qualifiers(type) & ~(tq_nullability | tq_atomic);
}

bool are_equally_atomic(const a_type* a, const a_type* b) {
  return ((get_type_qualifiers(a) ^ get_type_qualifiers(b)) & tq_atomic) == 0;
}

} // namespace

bool qualification_conversion_possible_full(a_type* source, a_type* target, bool allow_unsafe,
                                            bool* qualifiers_changed) {
  bool changed = false;
  // Each level above a changed one must be const in the target, but for the
  // first.
  bool all_const_so_far = true;
  if (qualifiers_changed != nullptr)
    *qualifiers_changed = false;
  while (step_through_pointers(&source, &target)) {
    a_type_qualifier_set source_qualifiers = conversion_qualifiers(source);
    a_type_qualifier_set target_qualifiers = conversion_qualifiers(target);
    if ((source_qualifiers & ~target_qualifiers) || !are_equally_atomic(source, target))
      return false;
    if (source_qualifiers != target_qualifiers) {
      if (!all_const_so_far && !allow_unsafe)
        return false;
      changed = true;
    }
    all_const_so_far &= (target_qualifiers & tq_const) != 0;
  }
  if (!same_types_below_qualifiers(source, target))
    return false;
  if (qualifiers_changed != nullptr)
    *qualifiers_changed = changed;
  return true;
}

bool same_type_with_added_qualifiers(a_type* source, a_type* target) {
  return (conversion_qualifiers(source) & ~conversion_qualifiers(target)) == 0 &&
         are_equally_atomic(source, target) && same_types_below_qualifiers(source, target);
}

bool cast_removes_qualifiers(a_type* source, a_type* target) {
  while (step_through_pointers(&source, &target))
    if (conversion_qualifiers(source) & ~conversion_qualifiers(target))
      return true;
  return false;
}

a_type* make_cv_combined_type_if_possible(a_type* a, a_type* b) {
  if (!same_types_below_qualifiers(a, b))
    return nullptr;
  return type_plus_qualifiers_from_second_type(a, b);
}

a_type* multilevel_composite_pointer_type(a_type* a, a_type* b) {
  check_stack_limit();
  if (!is_pointer_type(a) || !is_pointer_type(b))
    return make_cv_combined_type_if_possible(a, b);
  a_type* pointee_a = type_pointed_to(a);
  a_type* pointee_b = type_pointed_to(b);
  a_type* combined = multilevel_composite_pointer_type(pointee_a, pointee_b);
  if (combined == nullptr)
    return nullptr;
  a_type_qualifier_set qualifiers = get_type_qualifiers(pointee_a) | get_type_qualifiers(pointee_b);
  // A difference further down is safe only when the levels above are const.
  bool is_pointer = is_pointer_type(combined);
  if (is_pointer && (!f_identical_types(combined, pointee_a, tcf_ignore_top_qualifiers) ||
                     !f_identical_types(combined, pointee_b, tcf_ignore_top_qualifiers)))
    qualifiers |= tq_const;
  return make_pointer_type(make_qualified_type(combined, qualifiers));
}

// --- Pointers.

a_base_class* find_base_class_of(const a_type* derived, const a_type* base) {
  derived = f_skip_typerefs(derived);
  base = f_skip_typerefs(base);
  if (!is_class_struct_union_kind(derived->kind) || !is_class_struct_union_kind(base->kind))
    return nullptr;
  for (a_base_class* entry = class_supplement_of(derived)->base_classes; entry != nullptr;
       entry = entry->next)
    if (equiv_class_types(entry->type, const_cast<a_type*>(base)))
      return entry;
  return nullptr;
}

bool f_related_class_pointers(const a_type* a, const a_type* b, a_base_class** base_class,
                              bool* derived_first) {
  if (!is_pointer_type(a) || !is_pointer_type(b))
    return false;
  *derived_first = true;
  *base_class = find_base_class_of(type_pointed_to(a), type_pointed_to(b));
  if (*base_class != nullptr)
    return true;
  *derived_first = false;
  *base_class = find_base_class_of(type_pointed_to(b), type_pointed_to(a));
  return *base_class != nullptr;
}

namespace {

bool is_void_or_object(const a_type* type) {
  return !is_function_type(type);
}

// The qualifiers that the target's pointee lacks; a difference that C passes
// with a message.
void note_dropped_qualifiers(a_type* source_pointee, a_type* target_pointee,
                             a_std_conv_descr* descr) {
  a_type_qualifier_set source_qualifiers = conversion_qualifiers(source_pointee);
  a_type_qualifier_set target_qualifiers = conversion_qualifiers(target_pointee);
  if (source_qualifiers & ~target_qualifiers)
    descr->drops_qualifiers = 1;
  else if (source_qualifiers != target_qualifiers)
    descr->is_qualification_adjustment = 1;
}

// Conversions from and to pointers to void; false when neither is one.
bool void_pointer_conversion(a_type* source_pointee, a_type* target_pointee,
                             bool allow_mixed_pointers, a_std_conv_descr* descr, bool* possible) {
  bool to_void = is_void_type(target_pointee);
  bool from_void = is_void_type(source_pointee);
  if (!to_void && !from_void)
    return false;
  bool objects = is_void_or_object(source_pointee) && is_void_or_object(target_pointee);
  descr->is_to_void_pointer = to_void;
  descr->is_from_void_pointer = from_void && !to_void;
  descr->function_object_mix = !objects;
  note_dropped_qualifiers(source_pointee, target_pointee, descr);
  bool direction_allowed = to_void || in_C_mode();
  *possible = direction_allowed && (objects || allow_mixed_pointers) &&
              (!descr->drops_qualifiers || allow_mixed_pointers);
  return true;
}

bool derived_to_base_conversion(a_type* source, a_type* target, a_std_conv_descr* descr) {
  a_base_class* base_class;
  bool derived_first;
  if (in_C_mode() || !f_related_class_pointers(source, target, &base_class, &derived_first) ||
      !derived_first || base_class->is_ambiguous)
    return false;
  descr->is_derived_to_base = 1;
  descr->base_class = base_class;
  note_dropped_qualifiers(type_pointed_to(source), type_pointed_to(target), descr);
  return !descr->drops_qualifiers;
}

// What C accepts with a message: pointers to types that don't fit.
void note_mixed_pointers(a_type* source_pointee, a_type* target_pointee, a_std_conv_descr* descr) {
  note_dropped_qualifiers(source_pointee, target_pointee, descr);
  if (f_types_are_compatible(source_pointee, target_pointee, tcf_ignore_top_qualifiers) &&
      are_equally_atomic(source_pointee, target_pointee))
    return;
  descr->is_mixed_pointer = 1;
  descr->signedness_differs =
      integral_types_the_same_except_for_signedness(source_pointee, target_pointee);
}

} // namespace

bool impl_pointer_conversion(a_type* source, const a_constant* constant, a_type* target,
                             bool allow_mixed_pointers, a_std_conv_descr* descr) {
  descr->conversion_kind = stdc_pointer;
  if (is_or_might_be_null_pointer_constant(constant) || is_nullptr_type(source)) {
    descr->is_null_pointer_conversion = 1;
    return true;
  }
  if (!is_pointer_type(source)) {
    descr->is_pointer_integer_mix = is_integral_or_enum_type(source);
    return allow_mixed_pointers && descr->is_pointer_integer_mix;
  }
  a_type* source_pointee = type_pointed_to(source);
  a_type* target_pointee = type_pointed_to(target);
  bool changed;
  if (qualification_conversion_possible_full(source, target, false, &changed)) {
    descr->is_qualification_adjustment = changed;
    return true;
  }
  bool possible;
  if (void_pointer_conversion(source_pointee, target_pointee, allow_mixed_pointers, descr,
                              &possible))
    return possible;
  if (derived_to_base_conversion(source, target, descr))
    return true;
  note_mixed_pointers(source_pointee, target_pointee, descr);
  return allow_mixed_pointers;
}

bool impl_ptr_to_member_conversion(a_type* source, const a_constant* constant, a_type* target,
                                   a_std_conv_descr* descr) {
  descr->conversion_kind = stdc_ptr_to_member;
  if (is_or_might_be_null_pointer_constant(constant) || is_nullptr_type(source)) {
    descr->is_null_pointer_conversion = 1;
    return true;
  }
  if (!is_ptr_to_member_type(source))
    return false;
  bool changed;
  if (qualification_conversion_possible_full(source, target, false, &changed)) {
    descr->is_qualification_adjustment = changed;
    return true;
  }
  // A member of a base is a member of the derived class: the reverse of the
  // conversion of pointers.
  a_base_class* base_class = find_base_class_of(pm_class_type(target), pm_class_type(source));
  if (base_class == nullptr || base_class->is_virtual || base_class->is_ambiguous)
    return false;
  descr->base_class = base_class;
  a_type* member_type = related_member_type(pm_member_type(source), pm_class_type(target));
  return same_type_with_added_qualifiers(member_type, pm_member_type(target));
}

// --- Implicit conversion.

namespace {

bool conversion_to_bool(const a_type* source, a_std_conv_descr* descr) {
  if (is_bool_type(source)) {
    descr->conversion_kind = stdc_identity;
    return true;
  }
  descr->conversion_kind = stdc_boolean;
  descr->is_boolean_conversion =
      is_pointer_type(source) || is_ptr_to_member_type(source) || is_nullptr_type(source);
  return is_arithmetic_or_unscoped_enum_type(source) || descr->is_boolean_conversion;
}

// Bits of an integer type, digits of the mantissa of a floating type.
int width_of_arithmetic_type(const a_type* type) {
  type = f_skip_typerefs(type);
  if (type->kind == tk_integer)
    return static_cast<int>(type->precision);
  return mantissa_digits_of_float_kind(type->variant.float_kind);
}

bool conversion_to_arithmetic(a_type* source, const a_constant* constant, a_type* target,
                              a_std_conv_descr* descr) {
  if (f_identical_types(source, target, tcf_ignore_top_qualifiers)) {
    descr->conversion_kind = stdc_identity;
    return true;
  }
  descr->conversion_kind = stdc_arithmetic;
  if (in_cplusplus_mode() && is_enum_type(target)) {
    bool tolerated = cfront_2_1_mode && is_integral_or_enum_type(source);
    descr->error_code = tolerated ? static_cast<int>(ec_mixed_enum_type) : 0;
    return tolerated;
  }
  if (is_scoped_enum_type(source))
    return false;
  if (in_C_mode() && is_pointer_type(source) && is_integral_or_enum_type(target)) {
    descr->is_pointer_integer_mix = 1;
    return true;
  }
  if (!is_arithmetic_or_enum_type(source))
    return false;
  if (lossy_conversion_warning && constant == nullptr &&
      width_of_arithmetic_type(source) > width_of_arithmetic_type(target)) {
    descr->is_lossy = 1;
    descr->error_code = ec_lossy_conversion;
  }
  return true;
}

} // namespace

bool impl_conversion_possible(a_type* source, bool, const a_constant* constant, a_type* target,
                              a_std_conv_descr* descr) {
  a_std_conv_descr local_descr;
  if (descr == nullptr)
    descr = &local_descr;
  clear_std_conv_descr(descr);
  source = f_skip_typerefs(source);
  target = f_skip_typerefs(target);
  if (target->kind == tk_error || target->kind == tk_template_param || source->kind == tk_error)
    return true;
  if (target->is_incomplete)
    return false;
  switch (target->kind) {
  case tk_integer:
    if (target->variant.integer.is_bool)
      return conversion_to_bool(source, descr);
    return conversion_to_arithmetic(source, constant, target, descr);
  case tk_float:
  case tk_imaginary:
  case tk_complex:
    return conversion_to_arithmetic(source, constant, target, descr);
  case tk_pointer:
    return !target->variant.pointer.is_reference &&
           impl_pointer_conversion(source, constant, target, in_C_mode(), descr);
  case tk_ptr_to_member:
    return impl_ptr_to_member_conversion(source, constant, target, descr);
  case tk_nullptr:
    descr->conversion_kind = stdc_nullptr;
    return source->kind == tk_nullptr || is_or_might_be_null_pointer_constant(constant);
  case tk_class:
  case tk_struct:
  case tk_union:
    // The same class, in C; conversions between classes are the business of
    // overload resolution.
    descr->conversion_kind = stdc_identity;
    return source == target;
  default:
    return false;
  }
}

// --- Explicit conversion.

bool reinterpret_cast_conversion_possible(a_type* source, a_type* target) {
  // Of an lvalue, whatever it refers to (C++ 5.2.10 p11).
  if (is_reference_type(target))
    return !is_void_type(source);
  bool source_is_pointer = is_pointer_type(source);
  bool target_is_pointer = is_pointer_type(target);
  if (source_is_pointer && target_is_pointer)
    return true;
  if (target_is_pointer)
    return is_integral_or_enum_type(source);
  if (is_integral_or_enum_type(target))
    return source_is_pointer || is_nullptr_type(source) || cast_identical_types(source, target);
  return is_ptr_to_member_type(source) && is_ptr_to_member_type(target) &&
         is_function_type(pm_member_type(source)) == is_function_type(pm_member_type(target));
}

namespace {

bool is_unique_nonvirtual_base(const a_base_class* base_class) {
  return base_class != nullptr && !base_class->is_virtual && !base_class->is_ambiguous;
}

// The reverse of an implicit conversion: from void, and down a hierarchy.
bool static_cast_of_pointer_possible(a_type* source, a_type* target) {
  a_type* source_pointee = type_pointed_to(source);
  a_type* target_pointee = type_pointed_to(target);
  if (conversion_qualifiers(source_pointee) & ~conversion_qualifiers(target_pointee))
    return false;
  if (is_void_type(source_pointee))
    return is_void_or_object(target_pointee);
  return is_unique_nonvirtual_base(find_base_class_of(target_pointee, source_pointee));
}

bool static_cast_of_ptr_to_member_possible(a_type* source, a_type* target) {
  a_type* base = pm_class_type(target);
  return is_unique_nonvirtual_base(find_base_class_of(pm_class_type(source), base)) &&
         same_type_with_added_qualifiers(related_member_type(pm_member_type(source), base),
                                         pm_member_type(target));
}

// To a reference: the object's own type, a base or a derived class of it.
bool static_cast_to_reference_possible(a_type* source, a_type* target) {
  a_type* referenced = type_pointed_to(target);
  if (is_reference_type(source))
    source = type_pointed_to(source);
  if (conversion_qualifiers(source) & ~conversion_qualifiers(referenced))
    return false;
  const a_base_class* base_class = find_base_class_of(source, referenced);
  return cast_identical_types(source, referenced) ||
         (base_class != nullptr && !base_class->is_ambiguous) ||
         is_unique_nonvirtual_base(find_base_class_of(referenced, source));
}

} // namespace

bool static_cast_conversion_possible(a_type* source, a_type* target, const a_constant* constant) {
  if (is_void_type(target))
    return true;
  if (is_reference_type(target))
    return static_cast_to_reference_possible(source, target);
  a_std_conv_descr descr;
  if (impl_conversion_possible(source, false, constant, target, &descr))
    return true;
  if (is_arithmetic_or_enum_type(source) && is_arithmetic_or_enum_type(target))
    return true;
  if (is_pointer_type(source) && is_pointer_type(target))
    return static_cast_of_pointer_possible(source, target);
  return is_ptr_to_member_type(source) && is_ptr_to_member_type(target) &&
         static_cast_of_ptr_to_member_possible(source, target);
}

bool expl_conversion_possible(a_type* source, const a_constant* constant, a_type* target,
                              a_std_conv_descr* descr) {
  if (is_void_type(target))
    return true;
  if (impl_conversion_possible(source, false, constant, target, descr))
    return true;
  if (is_arithmetic_or_enum_type(source) && is_arithmetic_or_enum_type(target))
    return true;
  return reinterpret_cast_conversion_possible(source, target) ||
         static_cast_conversion_possible(source, target, constant);
}

// --- Narrowing.

namespace {

bool integer_fits(const a_constant* constant, const a_type* target) {
  uint64_t value = constant->value.int_value;
  bool is_negative = is_signed_integral_type(constant->type) && (value >> 63) != 0;
  uint64_t precision = f_skip_typerefs(target)->precision;
  bool target_is_signed = is_signed_integral_type(target);
  if (is_negative)
    return target_is_signed && (precision >= 64 || ~value >> (precision - 1) == 0);
  uint64_t value_bits = target_is_signed ? precision - 1 : precision;
  return value_bits >= 64 || value >> value_bits == 0;
}

// An integer that a mantissa of so many digits holds exactly.
bool integer_is_exact_in_float(const a_constant* constant, int mantissa_digits) {
  uint64_t value = constant->value.int_value;
  if (is_signed_integral_type(constant->type) && (value >> 63) != 0)
    value = 0 - value;
  while (value != 0 && (value & 1) == 0)
    value >>= 1;
  return mantissa_digits >= 64 || value >> mantissa_digits == 0;
}

bool all_values_fit(const a_type* source, const a_type* target) {
  bool source_is_signed = is_signed_integral_type(source);
  bool target_is_signed = is_signed_integral_type(target);
  uint64_t source_precision = f_skip_typerefs(source)->precision;
  uint64_t target_precision = f_skip_typerefs(target)->precision;
  if (source_is_signed == target_is_signed)
    return source_precision <= target_precision;
  return !source_is_signed && source_precision < target_precision;
}

int max_exponent_of_float_kind(int kind) {
  switch (kind) {
  case fk_float:
    return targ_flt_max_exp;
  case fk_double:
    return targ_dbl_max_exp;
  case fk_float80:
    return targ_flt80_max_exp;
  case fk_float128:
    return targ_flt128_max_exp;
  default:
    return targ_ldbl_max_exp;
  }
}

bool narrows_to_integer(const a_type* source, const a_constant* constant, const a_type* target) {
  if (is_floating_type(source))
    return true;
  if (!is_integral_or_enum_type(source))
    return is_bool_type(target);
  if (constant != nullptr && constant->kind == con_integer)
    return !integer_fits(constant, target);
  return !all_values_fit(source, target);
}

bool narrows_to_float(const a_type* source, const a_constant* constant, const a_type* target) {
  int target_kind = f_skip_typerefs(target)->variant.float_kind;
  int target_digits = mantissa_digits_of_float_kind(target_kind);
  if (is_integral_or_enum_type(source))
    return constant == nullptr || constant->kind != con_integer ||
           !integer_is_exact_in_float(constant, target_digits);
  if (!is_floating_type(source))
    return false;
  // A constant narrows by its range only, not by its precision.
  if (constant != nullptr && constant->kind == con_float)
    return constant->value.float_value.exponent > max_exponent_of_float_kind(target_kind);
  return constant == nullptr &&
         mantissa_digits_of_float_kind(f_skip_typerefs(source)->variant.float_kind) > target_digits;
}

} // namespace

bool is_narrowing_conversion(a_type* source, const a_constant* constant, a_type* target,
                             an_error_code* error_code) {
  bool narrows = false;
  if (is_integral_or_enum_type(target))
    narrows = narrows_to_integer(source, constant, target);
  else if (is_floating_type(target))
    narrows = narrows_to_float(source, constant, target);
  if (narrows && error_code != nullptr)
    *error_code = constant != nullptr ? ec_constant_narrowing_conversion : ec_narrowing_conversion;
  return narrows;
}
