// Identity and compatibility of types, and composite types (C99 6.2.7).

#include "types.h"

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "mode_words.h"
#include "target.h"
#include "types_int.h"

namespace {

// Qualifiers that two compatible types must agree in: nullability is left out.
constexpr a_type_qualifier_set compared_qualifiers = tq_all_qualifiers & ~tq_nullability;

// An enum matched its integer type up to this version of the compiler whose
// extensions are emulated.
constexpr int last_gnu_version_with_loose_enums = 30399;

bool same_pointer_form(const a_pointer_type_variant& a, const a_pointer_type_variant& b) {
  return a.is_reference == b.is_reference && a.is_rvalue_reference == b.is_rvalue_reference;
}

bool same_special_integer_flags(const an_integer_type_variant& a,
                                const an_integer_type_variant& b) {
  return a.is_wchar_t == b.is_wchar_t && a.is_char16_t == b.is_char16_t &&
         a.is_char32_t == b.is_char32_t && a.is_bool == b.is_bool;
}

bool kinds_match(a_type_kind a, a_type_kind b) {
  auto merged = [](a_type_kind kind) { return kind == tk_class ? tk_struct : kind; };
  return merged(a) == merged(b);
}

bool carries_class_context(const a_type* type) {
  return typeref_is_typedef(type) ||
         (type->kind == tk_typeref &&
          (type->variant.typeref.typeref_qualifiers & tq_carries_attributes));
}

// --- Compatibility by kind.

bool integers_are_compatible(const a_type* a, const a_type* b, unsigned flags) {
  const an_integer_type_variant& first = a->variant.integer;
  const an_integer_type_variant& second = b->variant.integer;
  if (first.is_enum || second.is_enum) {
    if (in_cplusplus_mode() || (flags & tcf_distinct_enums))
      return false;
    bool loose = gcc_mode && gnu_version <= last_gnu_version_with_loose_enums;
    if (first.is_enum && second.is_enum && !loose)
      return false;
  }
  return first.int_kind == second.int_kind && same_special_integer_flags(first, second);
}

bool arrays_are_compatible(a_type* a, a_type* b, unsigned flags,
                           a_type_difference_list* differences) {
  const an_array_type_variant& first = a->variant.array;
  const an_array_type_variant& second = b->variant.array;
  if (!f_types_are_compatible_full(first.element_type, second.element_type, flags, differences))
    return false;
  if (vla_enabled && (is_vla_type(a) || is_vla_type(b)))
    return true;
  if (first.bound_is_constant || second.bound_is_constant)
    return first.bound_is_constant && second.bound_is_constant &&
           eq_constants(first.bound.dependent_constant, second.bound.dependent_constant);
  if (first.bound_is_expr || second.bound_is_expr)
    return first.bound_is_expr && second.bound_is_expr && first.bound.expr == second.bound.expr;
  bool first_is_unbounded = array_has_no_bound(a);
  bool second_is_unbounded = array_has_no_bound(b);
  if (first_is_unbounded == second_is_unbounded)
    return first.bound.number_of_elements == second.bound.number_of_elements;
  return in_C_mode() || (flags & tcf_allow_unknown_bound);
}

bool conventions_match(a_type* a, a_type* b, unsigned flags, a_type_difference_list* differences) {
  if (calling_conventions_are_compatible(a, b))
    return true;
  if (!(flags & tcf_record_convention) || differences == nullptr)
    return false;
  differences->calling_convention_differs = 1;
  return true;
}

bool this_classes_match(const a_routine_type_supplement& a, const a_routine_type_supplement& b,
                        unsigned flags) {
  if (flags & tcf_ignore_this_class)
    return true;
  if (a.this_qualifiers != b.this_qualifiers ||
      a.has_lvalue_ref_qualifier != b.has_lvalue_ref_qualifier ||
      a.has_rvalue_ref_qualifier != b.has_rvalue_ref_qualifier)
    return false;
  if (a.this_class == nullptr || b.this_class == nullptr)
    return a.this_class == b.this_class;
  return f_types_are_compatible(a.this_class, b.this_class, tcf_none);
}

bool is_placeholder_of(const a_type* placeholder, const a_type* type) {
  return is_auto_type(placeholder) && type->kind == tk_typeref &&
         (type->variant.typeref.typeref_qualifiers & (tq_placeholder_1 | tq_placeholder_2));
}

bool return_types_are_compatible(a_type* a, a_type* b, unsigned flags,
                                 a_type_difference_list* differences) {
  if (a == nullptr || b == nullptr)
    return a == b;
  if ((flags & tcf_placeholder_return) && (is_placeholder_of(a, b) || is_placeholder_of(b, a)))
    return true;
  return f_types_are_compatible_full(a, b, flags, differences);
}

bool routines_are_compatible(a_type* a, a_type* b, unsigned flags,
                             a_type_difference_list* differences) {
  const a_routine_type_supplement& first = *a->variant.routine.routine_supplement;
  const a_routine_type_supplement& second = *b->variant.routine.routine_supplement;
  unsigned part_flags =
      flags & ~(tcf_ignore_top_qualifiers | tcf_allow_unknown_bound | tcf_ignore_this_class);
  return return_types_are_compatible(a->variant.routine.return_type, b->variant.routine.return_type,
                                     part_flags, differences) &&
         param_types_are_compatible_full(a, b, part_flags, differences) &&
         conventions_match(a, b, flags, differences) && this_classes_match(first, second, flags) &&
         (!(flags & tcf_enable_if) || first.has_enable_if == second.has_enable_if) &&
         routine_linkages_are_compatible(a, b, flags) &&
         first.register_use == second.register_use && first.stack_use == second.stack_use;
}

bool ptr_to_members_are_compatible(a_type* a, a_type* b, unsigned flags,
                                   a_type_difference_list* differences) {
  unsigned member_flags = flags & ~(tcf_ignore_top_qualifiers | tcf_allow_unknown_bound);
  if (!f_types_are_compatible_full(pm_member_type(a), pm_member_type(b),
                                   member_flags | tcf_ignore_this_class, differences))
    return false;
  return (flags & tcf_classes_only) ||
         f_types_are_compatible_full(pm_class_type(a), pm_class_type(b), member_flags, differences);
}

bool same_kind_types_are_compatible(a_type* a, a_type* b, unsigned flags,
                                    a_type_difference_list* differences) {
  switch (a->kind) {
  case tk_integer:
    return integers_are_compatible(a, b, flags);
  case tk_float:
  case tk_imaginary:
  case tk_complex:
    return a->variant.float_kind == b->variant.float_kind;
  case tk_pointer:
    return same_pointer_form(a->variant.pointer, b->variant.pointer) &&
           f_types_are_compatible_full(
               a->variant.pointer.referenced_type, b->variant.pointer.referenced_type,
               flags & ~(tcf_ignore_top_qualifiers | tcf_allow_unknown_bound), differences);
  case tk_routine:
    return routines_are_compatible(a, b, flags, differences);
  case tk_array:
    return arrays_are_compatible(a, b, flags, differences);
  case tk_class:
  case tk_struct:
  case tk_union:
    return in_cplusplus_mode() && equiv_class_types(a, b);
  case tk_ptr_to_member:
    return ptr_to_members_are_compatible(a, b, flags, differences);
  case tk_template_param:
    return f_identical_types(a, b, flags);
  default: // void, nullptr, the unknown and the error type
    return true;
  }
}

bool explicit_alignments_match(const a_type* a, const a_type* b) {
  a_type_kind kind = type_kind(a);
  if (!gnu_mode || kind == tk_routine || kind == tk_array)
    return true;
  if (is_class_struct_union_kind(kind) && f_skip_typerefs(a)->variant.class_struct_union.is_nonreal)
    return true;
  if ((kind == tk_template_param && gpp_mode) || is_incomplete_type(a) || is_incomplete_type(b))
    return true;
  return explicit_alignment_of_type(a) == explicit_alignment_of_type(b);
}

} // namespace

bool f_types_are_compatible_full(a_type* a, a_type* b, unsigned flags,
                                 a_type_difference_list* differences) {
  if (a == b)
    return true;
  if (carries_class_context(a) || carries_class_context(b))
    flags &= ~(tcf_record_convention | tcf_ignore_this_class);
  if (flags & tcf_allow_unknown_bound)
    flags |= tcf_redeclaration;
  // A difference in qualifiers counts only once the error type has passed.
  bool qualifiers_match = true;
  if (!(flags & tcf_ignore_top_qualifiers)) {
    bool skip_arrays = in_C_mode();
    qualifiers_match =
        ((f_get_type_qualifiers(a, skip_arrays) ^ f_get_type_qualifiers(b, skip_arrays)) &
         compared_qualifiers) == 0;
  }
  a_type* bare_a = f_skip_typerefs(a);
  a_type* bare_b = f_skip_typerefs(b);
  if ((flags & tcf_error_matches) && (bare_a->kind == tk_error || bare_b->kind == tk_error))
    return true;
  if (!kinds_match(bare_a->kind, bare_b->kind) || !qualifiers_match)
    return false;
  return (bare_a == bare_b || same_kind_types_are_compatible(bare_a, bare_b, flags, differences)) &&
         explicit_alignments_match(a, b);
}

// --- Parameters.

namespace {

// The type survives the promotions of a call without a prototype (C99
// 6.7.5.3 p15).
bool survives_promotion(a_type* type, unsigned flags) {
  return f_types_are_compatible(default_argument_promotion(type), type,
                                flags | tcf_ignore_top_qualifiers);
}

// A prototype against a type without one: from an old-style definition the
// parameters are known, else only that there is no ellipsis.
bool prototype_matches_old_style(const a_routine_type_supplement& prototype,
                                 const a_routine_type_supplement& old_style, unsigned flags) {
  if (prototype.has_ellipsis || old_style.has_ellipsis)
    return false;
  const a_param_type* old_param = old_style.param_types;
  bool params_are_known = old_style.old_style_definition || old_param != nullptr;
  for (const a_param_type* param = prototype.param_types; param != nullptr; param = param->next) {
    if (!params_are_known) {
      if (!survives_promotion(param->type, flags))
        return false;
      continue;
    }
    if (old_param == nullptr ||
        !f_types_are_compatible(param->type, default_argument_promotion(old_param->type),
                                flags | tcf_ignore_top_qualifiers))
      return false;
    old_param = old_param->next;
  }
  return !params_are_known || old_param == nullptr;
}

template <class COMPARE>
bool param_lists_match(const a_param_type* a, const a_param_type* b, COMPARE compare) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next)
    if (!compare(a->type, b->type))
      return false;
  return a == nullptr && b == nullptr;
}

} // namespace

bool param_types_are_compatible_full(a_type* a, a_type* b, unsigned flags,
                                     a_type_difference_list* differences) {
  const a_routine_type_supplement& first = *f_skip_typerefs(a)->variant.routine.routine_supplement;
  const a_routine_type_supplement& second = *f_skip_typerefs(b)->variant.routine.routine_supplement;
  if (!first.prototyped && !second.prototyped)
    return true;
  if (!second.prototyped)
    return prototype_matches_old_style(first, second, flags);
  if (!first.prototyped)
    return prototype_matches_old_style(second, first, flags);
  if (first.has_ellipsis != second.has_ellipsis)
    return false;
  return param_lists_match(first.param_types, second.param_types, [=](a_type* t1, a_type* t2) {
    return f_types_are_compatible_full(t1, t2, flags | tcf_ignore_top_qualifiers, differences);
  });
}

// --- Further relations.

bool equiv_class_types(a_type* a, a_type* b) {
  return f_skip_typerefs(a) == f_skip_typerefs(b);
}

bool cast_identical_types(a_type* a, a_type* b) {
  return f_identical_types(a, b, tcf_ignore_top_qualifiers);
}

bool integral_types_the_same_except_for_signedness(a_type* a, a_type* b) {
  a = f_skip_typerefs(a);
  b = f_skip_typerefs(b);
  if (a->kind != tk_integer || b->kind != tk_integer)
    return false;
  return unsigned_int_kind_of(a->variant.integer.int_kind) ==
             unsigned_int_kind_of(b->variant.integer.int_kind) &&
         same_special_integer_flags(a->variant.integer, b->variant.integer);
}

bool interchangeable_types(a_type* a, a_type* b) {
  if (f_types_are_compatible(a, b, tcf_ignore_top_qualifiers))
    return true;
  a = f_skip_typerefs(a);
  b = f_skip_typerefs(b);
  return a->kind == tk_integer && b->kind == tk_integer && a->size == b->size &&
         int_kind_is_signed(a->variant.integer.int_kind) ==
             int_kind_is_signed(b->variant.integer.int_kind);
}

bool routine_linkages_are_compatible(a_type* a, a_type* b, unsigned flags) {
  if (!c_and_cpp_function_types_are_distinct || (flags & tcf_ignore_linkage))
    return true;
  if ((flags & tcf_allow_c_cpp_conversion) && impl_conv_between_c_and_cpp_function_ptrs_allowed)
    return true;
  return f_skip_typerefs(a)->variant.routine.routine_supplement->name_linkage ==
         f_skip_typerefs(b)->variant.routine.routine_supplement->name_linkage;
}

bool calling_conventions_are_compatible(a_type* a, a_type* b) {
  constexpr unsigned default_calling_convention = 0;
  unsigned first = f_skip_typerefs(a)->variant.routine.routine_supplement->calling_convention_flags;
  unsigned second =
      f_skip_typerefs(b)->variant.routine.routine_supplement->calling_convention_flags;
  return first == second || (gnu_mode && (first == default_calling_convention ||
                                          second == default_calling_convention));
}

namespace {

bool allows_everything(const an_exception_specification* spec) {
  return spec == nullptr || spec->is_any ||
         (spec->is_noexcept && spec->noexcept_constant != nullptr &&
          is_zero_constant(spec->noexcept_constant));
}

bool spec_lists_type(const an_exception_specification* spec, a_type* type) {
  for (auto* entry = spec->types; entry != nullptr; entry = entry->next)
    if (f_identical_types(entry->type, type, tcf_none))
      return true;
  return false;
}

} // namespace

bool exception_spec_is_less_restrictive(const an_exception_specification* a,
                                        const an_exception_specification* b) {
  if (allows_everything(b))
    return false;
  if (allows_everything(a))
    return true;
  for (auto* entry = a->types; entry != nullptr; entry = entry->next)
    if (!spec_lists_type(b, entry->type))
      return true;
  return false;
}

bool same_exception_spec(const an_exception_specification* a, const an_exception_specification* b) {
  return !exception_spec_is_less_restrictive(a, b) && !exception_spec_is_less_restrictive(b, a);
}

// --- Identity.

namespace {

bool identical_routines(a_type* a, a_type* b, unsigned flags) {
  const a_routine_type_supplement& first = *a->variant.routine.routine_supplement;
  const a_routine_type_supplement& second = *b->variant.routine.routine_supplement;
  a_type* return_a = a->variant.routine.return_type;
  a_type* return_b = b->variant.routine.return_type;
  if (return_a == nullptr || return_b == nullptr ? return_a != return_b
                                                 : !f_identical_types(return_a, return_b, flags))
    return false;
  return first.prototyped == second.prototyped && first.has_ellipsis == second.has_ellipsis &&
         this_classes_match(first, second, flags) &&
         first.calling_convention_flags == second.calling_convention_flags &&
         routine_linkages_are_compatible(a, b, flags) &&
         param_lists_match(first.param_types, second.param_types, [=](a_type* t1, a_type* t2) {
           return f_identical_types(t1, t2, flags | tcf_ignore_top_qualifiers);
         });
}

bool identical_arrays(a_type* a, a_type* b, unsigned flags) {
  const an_array_type_variant& first = a->variant.array;
  const an_array_type_variant& second = b->variant.array;
  if (!f_identical_types(first.element_type, second.element_type, flags) ||
      first.bound_is_constant != second.bound_is_constant ||
      first.bound_is_expr != second.bound_is_expr || first.is_vla != second.is_vla)
    return false;
  if (first.bound_is_constant)
    return eq_constants(first.bound.dependent_constant, second.bound.dependent_constant);
  if (first.bound_is_expr || first.is_vla)
    return first.bound.expr == second.bound.expr;
  return first.bound.number_of_elements == second.bound.number_of_elements &&
         array_has_no_bound(a) == array_has_no_bound(b);
}

bool identical_template_params(const a_type* a, const a_type* b) {
  const auto& first = *a->variant.template_param.template_param_supplement;
  const auto& second = *b->variant.template_param.template_param_supplement;
  if (first.placeholder != plk_none || second.placeholder != plk_none)
    return first.placeholder == second.placeholder;
  return a->variant.template_param.template_param_kind ==
             b->variant.template_param.template_param_kind &&
         first.depth == second.depth && first.position == second.position &&
         first.is_pack == second.is_pack && first.depth != 0;
}

bool identical_types_of_same_kind(a_type* a, a_type* b, unsigned flags) {
  unsigned part_flags = flags & ~tcf_ignore_top_qualifiers;
  switch (a->kind) {
  case tk_integer:
    return !a->variant.integer.is_enum && !b->variant.integer.is_enum &&
           a->variant.integer.int_kind == b->variant.integer.int_kind &&
           same_special_integer_flags(a->variant.integer, b->variant.integer);
  case tk_float:
  case tk_imaginary:
  case tk_complex:
    return a->variant.float_kind == b->variant.float_kind;
  case tk_pointer:
    return same_pointer_form(a->variant.pointer, b->variant.pointer) &&
           f_identical_types(a->variant.pointer.referenced_type, b->variant.pointer.referenced_type,
                             part_flags);
  case tk_routine:
    return identical_routines(a, b, part_flags);
  case tk_array:
    return identical_arrays(a, b, flags);
  case tk_class:
  case tk_struct:
  case tk_union:
    return equiv_class_types(a, b);
  case tk_ptr_to_member:
    return f_identical_types(pm_member_type(a), pm_member_type(b),
                             part_flags | tcf_ignore_this_class) &&
           ((flags & tcf_classes_only) ||
            f_identical_types(pm_class_type(a), pm_class_type(b), part_flags));
  case tk_template_param:
    return identical_template_params(a, b);
  case tk_nullptr:
    return a->variant.nullptr_is_managed == b->variant.nullptr_is_managed;
  default:
    return true;
  }
}

} // namespace

bool f_identical_types(a_type* a, a_type* b, unsigned flags) {
  if (a == b)
    return true;
  if (!(flags & tcf_ignore_top_qualifiers) && get_type_qualifiers(a) != get_type_qualifiers(b))
    return false;
  a = f_skip_typerefs(a);
  b = f_skip_typerefs(b);
  if (a == b)
    return true;
  if ((flags & tcf_error_matches) && (a->kind == tk_error || b->kind == tk_error))
    return true;
  return kinds_match(a->kind, b->kind) && identical_types_of_same_kind(a, b, flags);
}

// --- Composite types.

namespace {

a_type* composite_pointer(a_type* a, a_type* b) {
  a_type* referenced = a->variant.pointer.referenced_type;
  a_type* composite = composite_type(referenced, b->variant.pointer.referenced_type);
  if (composite == referenced || is_error_type(composite))
    return composite == referenced ? a : composite;
  return make_pointer_type_of_same_kind(a, composite);
}

// The composite parameter list of two prototypes; null when it is that of the
// first.
a_param_type* composite_param_list(const a_param_type* a, const a_param_type* b) {
  a_param_type* head = copy_param_type_list(a);
  bool changed = false;
  for (a_param_type* param = head; param != nullptr && b != nullptr;
       param = param->next, b = b->next) {
    a_type* composite = composite_type(param->type, b->type);
    changed |= composite != param->type;
    param->type = composite;
    if (param->default_arg_expr == nullptr && b->default_arg_expr != nullptr) {
      param->default_arg_expr = b->default_arg_expr;
      param->has_default_arg = 1;
      changed = true;
    }
  }
  return changed ? head : nullptr;
}

a_type* composite_routine(a_type* a, a_type* b) {
  const a_routine_type_supplement& first = *a->variant.routine.routine_supplement;
  const a_routine_type_supplement& second = *b->variant.routine.routine_supplement;
  a_type* return_type = a->variant.routine.return_type;
  a_type* composite_return = return_type == nullptr || b->variant.routine.return_type == nullptr
                                 ? return_type
                                 : composite_type(return_type, b->variant.routine.return_type);
  a_param_type* params = nullptr;
  bool takes_prototype = !first.prototyped && second.prototyped;
  if (takes_prototype)
    params = copy_param_type_list(second.param_types);
  else if (first.prototyped && second.prototyped)
    params = composite_param_list(first.param_types, second.param_types);
  if (composite_return == return_type && params == nullptr && !takes_prototype)
    return a;
  a_type* result =
      params != nullptr || takes_prototype ? copy_type(a) : copy_routine_type_with_param_types(a);
  a_routine_type_supplement& supplement = *result->variant.routine.routine_supplement;
  result->variant.routine.return_type = composite_return;
  if (params != nullptr || takes_prototype)
    supplement.param_types = params;
  if (takes_prototype) {
    supplement.prototyped = 1;
    supplement.old_style_definition = 0;
    supplement.has_ellipsis = second.has_ellipsis;
  }
  return result;
}

a_type* composite_array(a_type* a, a_type* b) {
  a_type* element = a->variant.array.element_type;
  a_type* composite = composite_type(element, b->variant.array.element_type);
  bool takes_bound = array_has_no_bound(a) && !array_has_no_bound(b);
  bool bounds_differ = !array_has_no_bound(a) && !array_has_no_bound(b) && !is_vla_type(a) &&
                       !is_vla_type(b) && num_array_elements(a) != num_array_elements(b);
  if (is_error_type(composite) || bounds_differ)
    return error_type();
  if (takes_bound)
    return composite == b->variant.array.element_type
               ? b
               : copy_array_type_replacing_element_type(b, composite);
  return composite == element ? a : copy_array_type_replacing_element_type(a, composite);
}

a_type* composite_ptr_to_member(a_type* a, a_type* b) {
  a_type* composite = composite_type(pm_member_type(a), pm_member_type(b));
  return composite == pm_member_type(a) ? a
                                        : ptr_to_member_type_full(composite, pm_class_type(a), 0);
}

a_type* composite_of_bare_types(a_type* a, a_type* b) {
  switch (a->kind) {
  case tk_pointer:
    return composite_pointer(a, b);
  case tk_routine:
    return composite_routine(a, b);
  case tk_array:
    return composite_array(a, b);
  case tk_ptr_to_member:
    return composite_ptr_to_member(a, b);
  default:
    return f_types_are_compatible(a, b, tcf_ignore_top_qualifiers) ? a : error_type();
  }
}

} // namespace

a_type* composite_type(a_type* a, a_type* b) {
  if (a == b)
    return a;
  a_type* bare_a = f_skip_typerefs(a);
  a_type* bare_b = f_skip_typerefs(b);
  if (bare_a->kind == tk_error || bare_b->kind == tk_error ||
      !kinds_match(bare_a->kind, bare_b->kind))
    return error_type();
  a_type* composite = composite_of_bare_types(bare_a, bare_b);
  // Nothing was added to the first: its typedef names are kept.
  a_type* result = composite == bare_a ? a : type_plus_qualifiers_from_second_type(composite, a);
  return type_plus_qualifiers_from_second_type(result, b);
}
