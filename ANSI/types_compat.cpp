// Identity and compatibility of types (C99 6.2.7).

#include "types.h"

#include "il.h"
#include "il_constants.h"
#include "il_expr.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"
#include "types_int.h"

#include <cstring>
#include <unordered_set>

namespace {

// Qualifiers that two compatible types must agree in: nullability is left out.
constexpr a_type_qualifier_set compared_qualifiers = tq_all_qualifiers & ~tq_nullability;

// Two enums matched up to this version of the compiler whose extensions are
// emulated.
constexpr int last_gnu_version_with_loose_enums = 30399;

constexpr uint8_t enable_if_attribute_kind = 14;

// What remains to be compared. A level of both types is compared at a time,
// in a loop, because chains of derived types may be long.
struct a_type_pair {
  a_type* a;
  a_type* b;
  unsigned flags;
};

// Nothing remains.
bool pair_matches(a_type_pair* pair) {
  pair->a = pair->b = nullptr;
  return true;
}

bool pair_goes_on(a_type_pair* pair, a_type* a, a_type* b, unsigned flags) {
  *pair = {a, b, flags};
  return true;
}

bool same_pointer_form(const a_pointer_type_variant& a, const a_pointer_type_variant& b) {
  return a.is_reference == b.is_reference && a.is_rvalue_reference == b.is_rvalue_reference;
}

bool same_special_integer_flags(const an_integer_type_variant& a,
                                const an_integer_type_variant& b) {
  return a.is_wchar_t == b.is_wchar_t && a.is_char16_t == b.is_char16_t &&
         a.is_char32_t == b.is_char32_t && a.is_bool == b.is_bool;
}

// A prototype's parts are compared with its own rules for arrays and classes.
constexpr unsigned flags_of_parts(unsigned flags) {
  return flags & ~(tcf_ignore_top_qualifiers | tcf_allow_unknown_bound);
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

bool array_bounds_are_compatible(const a_type* a, const a_type* b, unsigned flags) {
  const an_array_type_variant& first = a->variant.array;
  const an_array_type_variant& second = b->variant.array;
  if (vla_enabled && (is_vla_type(a) || is_vla_type(b)))
    return true;
  if (first.bound_is_constant || second.bound_is_constant)
    return first.bound_is_constant && second.bound_is_constant &&
           eq_constants(first.bound.dependent_constant, second.bound.dependent_constant);
  if (first.bound_is_expr || second.bound_is_expr)
    return first.bound_is_expr && second.bound_is_expr && first.bound.expr == second.bound.expr;
  if (array_has_no_bound(a) == array_has_no_bound(b))
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

bool same_this_qualifiers(const a_routine_type_supplement& a, const a_routine_type_supplement& b) {
  return a.this_qualifiers == b.this_qualifiers &&
         a.has_lvalue_ref_qualifier == b.has_lvalue_ref_qualifier &&
         a.has_rvalue_ref_qualifier == b.has_rvalue_ref_qualifier;
}

bool this_classes_match(const a_routine_type_supplement& a, const a_routine_type_supplement& b,
                        unsigned flags) {
  if (flags & tcf_ignore_this_class)
    return true;
  if (!same_this_qualifiers(a, b))
    return false;
  if (a.this_class == nullptr || b.this_class == nullptr)
    return a.this_class == b.this_class;
  if (f_types_are_compatible(a.this_class, b.this_class, tcf_none))
    return true;
  return inexact_ptr_to_member_deduction_enabled && (flags & tcf_inexact_this_class) &&
         (find_base_class_of(a.this_class, b.this_class) != nullptr ||
          find_base_class_of(b.this_class, a.this_class) != nullptr);
}

// The members of two pointers to members: their classes are compared apart.
bool member_qualifiers_match(a_type* a, a_type* b) {
  a = f_skip_typerefs(a);
  b = f_skip_typerefs(b);
  return a->kind != tk_routine || b->kind != tk_routine ||
         same_this_qualifiers(*a->variant.routine.routine_supplement,
                              *b->variant.routine.routine_supplement);
}

const an_attribute* next_enable_if(const an_attribute* attribute) {
  while (attribute != nullptr && attribute->kind != enable_if_attribute_kind)
    attribute = attribute->next;
  return attribute;
}

bool same_condition(const an_attribute_arg* a, const an_attribute_arg* b) {
  if (a == nullptr || b == nullptr || a->arg_kind != b->arg_kind)
    return a == b;
  switch (a->arg_kind) {
  case aak_expression:
    return compare_expressions(a->value.expr, b->value.expr, 0);
  case aak_constant:
    return eq_constants(a->value.constant, b->value.constant);
  default:
    return a->value.generic == b->value.generic;
  }
}

// The conditions in the order of the attributes, each with its equal.
bool same_enable_if_attributes(const a_type* a, const a_type* b) {
  const an_attribute* first = next_enable_if(a->source_corresp.attributes);
  const an_attribute* second = next_enable_if(b->source_corresp.attributes);
  while (first != nullptr && second != nullptr) {
    if (!same_condition(first->arguments, second->arguments))
      return false;
    first = next_enable_if(first->next);
    second = next_enable_if(second->next);
  }
  return first == second;
}

// `auto` against a typeref of the first form, `decltype(auto)` against one of
// the second.
bool is_placeholder_of(const a_type* placeholder, const a_type* type) {
  if (!is_auto_type(placeholder) || type->kind != tk_typeref)
    return false;
  const a_type* bare = f_skip_typerefs(placeholder);
  bool is_auto = bare->variant.template_param.template_param_supplement->placeholder == plk_auto;
  return type->variant.typeref.typeref_qualifiers & (is_auto ? tq_placeholder_1 : tq_placeholder_2);
}

bool routine_level_is_compatible(a_type_pair* pair, a_type_difference_list* differences) {
  a_type* a = pair->a;
  a_type* b = pair->b;
  unsigned flags = pair->flags;
  const a_routine_type_supplement& first = *a->variant.routine.routine_supplement;
  const a_routine_type_supplement& second = *b->variant.routine.routine_supplement;
  unsigned part_flags = flags_of_parts(flags) & ~tcf_ignore_this_class;
  if (!param_types_are_compatible_full(a, b, part_flags, differences) ||
      !conventions_match(a, b, flags, differences) || !this_classes_match(first, second, flags) ||
      ((flags & tcf_enable_if) && !same_enable_if_attributes(a, b)) ||
      !routine_linkages_are_compatible(a, b, flags) || first.register_use != second.register_use ||
      first.stack_use != second.stack_use)
    return false;
  a_type* return_a = a->variant.routine.return_type;
  a_type* return_b = b->variant.routine.return_type;
  if (return_a == nullptr || return_b == nullptr)
    return return_a == return_b && pair_matches(pair);
  if ((flags & tcf_placeholder_return) &&
      (is_placeholder_of(return_a, return_b) || is_placeholder_of(return_b, return_a)))
    return pair_matches(pair);
  return pair_goes_on(pair, return_a, return_b, part_flags);
}

bool ptr_to_member_level_is_compatible(a_type_pair* pair, a_type_difference_list* differences) {
  a_type* a = pair->a;
  a_type* b = pair->b;
  unsigned flags = flags_of_parts(pair->flags);
  if (!member_qualifiers_match(pm_member_type(a), pm_member_type(b)))
    return false;
  if (!(flags & tcf_ignore_ptr_to_member_class) &&
      !f_types_are_compatible_full(pm_class_type(a), pm_class_type(b), flags, differences))
    return false;
  return pair_goes_on(pair, pm_member_type(a), pm_member_type(b), flags | tcf_ignore_this_class);
}

// Two bare types of one kind.
bool bare_level_is_compatible(a_type_pair* pair, a_type_difference_list* differences) {
  a_type* a = pair->a;
  a_type* b = pair->b;
  switch (a->kind) {
  case tk_integer:
    return integers_are_compatible(a, b, pair->flags) && pair_matches(pair);
  case tk_float:
  case tk_imaginary:
  case tk_complex:
    return a->variant.float_kind == b->variant.float_kind && pair_matches(pair);
  case tk_pointer:
    return same_pointer_form(a->variant.pointer, b->variant.pointer) &&
           pair_goes_on(pair, a->variant.pointer.referenced_type,
                        b->variant.pointer.referenced_type, flags_of_parts(pair->flags));
  case tk_routine:
    return routine_level_is_compatible(pair, differences);
  case tk_array:
    return array_bounds_are_compatible(a, b, pair->flags) &&
           pair_goes_on(pair, a->variant.array.element_type, b->variant.array.element_type,
                        pair->flags);
  case tk_class:
  case tk_struct:
  case tk_union:
    return in_cplusplus_mode() && equiv_class_types(a, b) && pair_matches(pair);
  case tk_ptr_to_member:
    return ptr_to_member_level_is_compatible(pair, differences);
  case tk_template_param:
    return f_identical_types(a, b, pair->flags) && pair_matches(pair);
  default: // void, nullptr, the unknown and the error type
    return pair_matches(pair);
  }
}

bool is_nonreal_class(const a_type* type) {
  type = f_skip_typerefs(type);
  return is_class_struct_union_kind(type->kind) && type->variant.class_struct_union.is_nonreal;
}

bool explicit_alignments_match(const a_type* a, const a_type* b) {
  a_type_kind kind = type_kind(a);
  if (!gnu_mode || kind == tk_routine || kind == tk_array)
    return true;
  if (is_nonreal_class(a) || is_nonreal_class(b) || (kind == tk_template_param && gpp_mode) ||
      is_incomplete_type(a) || is_incomplete_type(b))
    return true;
  return explicit_alignment_of_type(a) == explicit_alignment_of_type(b);
}

bool same_template_args(const a_template_arg* a, const a_template_arg* b) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next) {
    if (a->kind != b->kind || a->is_number != b->is_number)
      return false;
    if (a->is_number              ? a->value.number != b->value.number
        : a->kind == tak_type     ? !f_identical_types(a->value.type, b->value.type, tcf_none)
        : a->kind == tak_constant ? !eq_constants(a->value.constant, b->value.constant)
                                  : a->value.template_symbol != b->value.template_symbol)
      return false;
  }
  return a == b;
}

const a_template* canonical_template(const a_template* entry) {
  return entry != nullptr && entry->canonical != nullptr ? entry->canonical : entry;
}

// Whether the chains of typerefs meet in two uses of one alias template with
// the same arguments.
bool meet_in_an_alias(const a_type* a, const a_type* b) {
  for (; a->kind == tk_typeref; a = a->variant.typeref.referenced_type) {
    const a_typeref_type_supplement& first = *a->variant.typeref.typeref_supplement;
    if (first.assoc_template == nullptr)
      continue;
    for (const a_type* other = b; other->kind == tk_typeref;
         other = other->variant.typeref.referenced_type) {
      const a_typeref_type_supplement& second = *other->variant.typeref.typeref_supplement;
      if (canonical_template(first.assoc_template) == canonical_template(second.assoc_template) &&
          same_template_args(first.template_args, second.template_args))
        return true;
    }
  }
  return false;
}

bool same_dependent_decltype(const a_type* a, const a_type* b) {
  const an_expr_node* first = a->variant.typeref.typeref_supplement->decltype_expr;
  const an_expr_node* second = b->variant.typeref.typeref_supplement->decltype_expr;
  return first != nullptr && second != nullptr && compare_expressions(first, second, 0);
}

// Types written with decltype whose expression depends on a template
// parameter: what they are is not known, so the expressions are compared.
bool decide_by_dependent_decltypes(const a_type* a, const a_type* b, bool* result) {
  if (in_C_mode())
    return false;
  a = skip_typerefs_not_dependent_decltypes(a);
  b = skip_typerefs_not_dependent_decltypes(b);
  if (a->kind != tk_typeref && b->kind != tk_typeref)
    return false;
  *result = a == b || (a->kind == b->kind && same_dependent_decltype(a, b));
  return true;
}

// One level of the two types with their typerefs.
bool level_is_compatible(a_type_pair* pair, a_type_difference_list* differences) {
  a_type* a = pair->a;
  a_type* b = pair->b;
  if (carries_class_context(a) || carries_class_context(b))
    pair->flags &= ~(tcf_record_convention | tcf_ignore_this_class);
  if (pair->flags & tcf_allow_unknown_bound)
    pair->flags |= tcf_redeclaration;
  // A difference in qualifiers counts only once the error type has passed.
  bool qualifiers_match = true;
  if (!(pair->flags & tcf_ignore_top_qualifiers)) {
    bool skip_arrays = in_C_mode();
    qualifiers_match =
        ((f_get_type_qualifiers(a, skip_arrays) ^ f_get_type_qualifiers(b, skip_arrays)) &
         compared_qualifiers) == 0;
  }
  a_type* bare_a = f_skip_typerefs(a);
  a_type* bare_b = f_skip_typerefs(b);
  if ((pair->flags & tcf_error_matches) && (bare_a->kind == tk_error || bare_b->kind == tk_error))
    return pair_matches(pair);
  bool result;
  if (qualifiers_match && decide_by_dependent_decltypes(a, b, &result))
    return result && pair_matches(pair);
  if (!type_kinds_match(bare_a->kind, bare_b->kind) || !qualifiers_match ||
      !explicit_alignments_match(a, b))
    return false;
  if (bare_a == bare_b || ((pair->flags & tcf_template_aliases) && meet_in_an_alias(a, b)))
    return pair_matches(pair);
  pair->a = bare_a;
  pair->b = bare_b;
  return bare_level_is_compatible(pair, differences);
}

} // namespace

bool type_kinds_match(a_type_kind a, a_type_kind b) {
  auto merged = [](a_type_kind kind) { return kind == tk_class ? tk_struct : kind; };
  return merged(a) == merged(b);
}

bool f_types_are_compatible_full(a_type* a, a_type* b, unsigned flags,
                                 a_type_difference_list* differences) {
  check_stack_limit();
  a_type_pair pair = {a, b, flags};
  while (pair.a != pair.b)
    if (!level_is_compatible(&pair, differences))
      return false;
  return true;
}

// --- Parameters.

namespace {

// Pairs of parameter types that the comparison in progress found to match.
// Types that use one another twice over, level upon level, have far more ways
// to a type than types.
struct a_matched_pair {
  a_type* a;
  a_type* b;
  unsigned flags;
  bool identical;
  bool operator==(const a_matched_pair&) const = default;
};

struct a_matched_pair_hash {
  size_t operator()(const a_matched_pair& pair) const {
    return reinterpret_cast<uintptr_t>(pair.a) * 31 + reinterpret_cast<uintptr_t>(pair.b);
  }
};

std::unordered_set<a_matched_pair, a_matched_pair_hash> matched_pairs;
int param_list_depth; // of the parameter lists being compared

template <class COMPARE> bool compare_remembering(const a_matched_pair& pair, COMPARE compare) {
  bool is_nested = param_list_depth > 1;
  if (pair.a == pair.b || (is_nested && matched_pairs.count(pair) != 0))
    return true;
  bool matches = compare(pair.a, pair.b);
  if (matches && is_nested)
    matched_pairs.insert(pair);
  return matches;
}

template <class COMPARE>
bool param_lists_match(const a_param_type* a, const a_param_type* b, unsigned flags, bool identical,
                       COMPARE compare) {
  bool matches = true;
  ++param_list_depth;
  for (; matches && a != nullptr && b != nullptr; a = a->next, b = b->next)
    matches = a->is_parameter_pack == b->is_parameter_pack &&
              compare_remembering({a->type, b->type, flags, identical}, compare);
  if (--param_list_depth == 0 && !matched_pairs.empty())
    matched_pairs.clear();
  return matches && a == nullptr && b == nullptr;
}

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
  flags |= tcf_ignore_top_qualifiers;
  return param_lists_match(first.param_types, second.param_types, flags, false,
                           [=](a_type* t1, a_type* t2) {
                             return f_types_are_compatible_full(t1, t2, flags, differences);
                           });
}

// --- Further relations.

namespace {

// Two records for one class: in two translation units, or as an instance of
// one template with the same arguments.
bool is_same_instance(const a_type* a, const a_type* b) {
  const a_class_type_supplement& first = *a->variant.class_struct_union.class_supplement;
  const a_class_type_supplement& second = *b->variant.class_struct_union.class_supplement;
  if (first.proxy_of != nullptr || second.proxy_of != nullptr)
    return first.proxy_of != nullptr && second.proxy_of != nullptr &&
           f_identical_types(first.proxy_of, second.proxy_of, tcf_none);
  return first.assoc_template != nullptr && first.template_args != nullptr &&
         canonical_template(first.assoc_template) == canonical_template(second.assoc_template) &&
         same_template_args(first.template_args, second.template_args);
}

} // namespace

bool equiv_class_types(a_type* a, a_type* b) {
  a = f_skip_typerefs(a);
  b = f_skip_typerefs(b);
  if (a == b)
    return true;
  if (!is_class_struct_union_kind(a->kind) || !type_kinds_match(a->kind, b->kind))
    return false;
  const a_trans_unit_corresp* corresp = a->source_corresp.trans_unit_corresp;
  return (corresp != nullptr && corresp == b->source_corresp.trans_unit_corresp) ||
         is_same_instance(a, b);
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

// Whether a handler of the type would catch what is thrown (C++ 15.3 p3).
bool handler_catches(a_type* handler, a_type* thrown) {
  if (f_identical_types(handler, thrown, tcf_ignore_top_qualifiers))
    return true;
  if (is_reference_type(handler))
    handler = type_pointed_to(handler);
  if (is_reference_type(thrown))
    thrown = type_pointed_to(thrown);
  if (is_class_struct_union_type(handler)) {
    const a_base_class* base = find_base_class_of(thrown, handler);
    return f_identical_types(handler, thrown, tcf_ignore_top_qualifiers) ||
           (base != nullptr && !base->is_ambiguous);
  }
  a_std_conv_descr descr = {};
  return is_pointer_type(handler) && (is_pointer_type(thrown) || is_nullptr_type(thrown)) &&
         impl_pointer_conversion(thrown, nullptr, handler, false, &descr);
}

bool spec_allows_type(const an_exception_specification* spec, a_type* type) {
  for (auto* entry = spec->types; entry != nullptr; entry = entry->next)
    if (handler_catches(entry->type, type))
      return true;
  return false;
}

bool spec_lists_type(const an_exception_specification* spec, a_type* type) {
  for (auto* entry = spec->types; entry != nullptr; entry = entry->next)
    if (f_identical_types(entry->type, type, tcf_ignore_top_qualifiers))
      return true;
  return false;
}

bool spec_lists_all_of(const an_exception_specification* spec,
                       const an_exception_specification* other) {
  for (auto* entry = other->types; entry != nullptr; entry = entry->next)
    if (!spec_lists_type(spec, entry->type))
      return false;
  return true;
}

// The condition of a noexcept that waits for template arguments.
const a_constant* dependent_condition(const an_exception_specification* spec) {
  bool is_dependent = spec != nullptr && spec->is_noexcept && spec->noexcept_constant != nullptr &&
                      spec->noexcept_constant->kind == con_template_param;
  return is_dependent ? spec->noexcept_constant : nullptr;
}

} // namespace

bool exception_spec_is_less_restrictive(const an_exception_specification* a,
                                        const an_exception_specification* b) {
  if (allows_everything(b))
    return false;
  if (allows_everything(a))
    return true;
  for (auto* entry = a->types; entry != nullptr; entry = entry->next)
    if (!spec_allows_type(b, entry->type))
      return true;
  return false;
}

bool same_exception_spec(const an_exception_specification* a, const an_exception_specification* b) {
  const a_constant* condition_a = dependent_condition(a);
  const a_constant* condition_b = dependent_condition(b);
  if (condition_a != nullptr || condition_b != nullptr)
    return condition_a != nullptr && condition_b != nullptr &&
           eq_constants(condition_a, condition_b);
  if (allows_everything(a) || allows_everything(b))
    return allows_everything(a) && allows_everything(b);
  return spec_lists_all_of(a, b) && spec_lists_all_of(b, a);
}

// --- Identity.

namespace {

bool identical_routine_level(a_type_pair* pair) {
  a_type* a = pair->a;
  a_type* b = pair->b;
  unsigned flags = pair->flags & ~tcf_ignore_top_qualifiers;
  const a_routine_type_supplement& first = *a->variant.routine.routine_supplement;
  const a_routine_type_supplement& second = *b->variant.routine.routine_supplement;
  unsigned param_flags = (flags | tcf_ignore_top_qualifiers) & ~tcf_ignore_this_class;
  auto compare = [=](a_type* t1, a_type* t2) { return f_identical_types(t1, t2, param_flags); };
  if (first.prototyped != second.prototyped || first.has_ellipsis != second.has_ellipsis ||
      first.calling_convention_flags != second.calling_convention_flags ||
      !this_classes_match(first, second, flags) || !routine_linkages_are_compatible(a, b, flags) ||
      ((flags & tcf_enable_if) && !same_enable_if_attributes(a, b)) ||
      !param_lists_match(first.param_types, second.param_types, param_flags, true, compare))
    return false;
  a_type* return_a = a->variant.routine.return_type;
  a_type* return_b = b->variant.routine.return_type;
  if (return_a == nullptr || return_b == nullptr)
    return return_a == return_b && pair_matches(pair);
  return pair_goes_on(pair, return_a, return_b, flags & ~tcf_ignore_this_class);
}

bool identical_bounds(const a_type* a, const a_type* b) {
  const an_array_type_variant& first = a->variant.array;
  const an_array_type_variant& second = b->variant.array;
  if (first.bound_is_constant != second.bound_is_constant ||
      first.bound_is_expr != second.bound_is_expr || first.is_vla != second.is_vla)
    return false;
  if (first.bound_is_constant)
    return eq_constants(first.bound.dependent_constant, second.bound.dependent_constant);
  if (first.is_vla)
    return first.bound.vla_dimension == second.bound.vla_dimension;
  if (first.bound_is_expr)
    return first.bound.expr == second.bound.expr;
  return first.bound.number_of_elements == second.bound.number_of_elements &&
         array_has_no_bound(a) == array_has_no_bound(b);
}

// A member of a class that depends on template parameters (T::name).
bool identical_dependent_members(const a_type* a, const a_type* b) {
  const a_source_correspondence& first = a->source_corresp;
  const a_source_correspondence& second = b->source_corresp;
  return first.is_class_member && second.is_class_member && first.name != nullptr &&
         second.name != nullptr && strcmp(first.name, second.name) == 0 &&
         equiv_class_types(first.parent_scope->assoc.type, second.parent_scope->assoc.type);
}

bool identical_template_params(const a_type* a, const a_type* b) {
  const auto& first = *a->variant.template_param.template_param_supplement;
  const auto& second = *b->variant.template_param.template_param_supplement;
  a_template_param_type_kind kind = a->variant.template_param.template_param_kind;
  if (first.placeholder != plk_none || second.placeholder != plk_none)
    return first.placeholder == second.placeholder;
  if (kind != b->variant.template_param.template_param_kind)
    return false;
  switch (kind) {
  case tptk_nontype_placeholder:
    return identical_dependent_members(a, b);
  case tptk_unknown:
    return true;
  default:
    return first.depth == second.depth && first.position == second.position &&
           first.is_pack == second.is_pack && first.depth != 0;
  }
}

// Two bare types of one kind.
bool identical_bare_level(a_type_pair* pair) {
  a_type* a = pair->a;
  a_type* b = pair->b;
  unsigned part_flags = pair->flags & ~tcf_ignore_top_qualifiers;
  switch (a->kind) {
  case tk_integer:
    return !a->variant.integer.is_enum && !b->variant.integer.is_enum &&
           a->variant.integer.int_kind == b->variant.integer.int_kind &&
           same_special_integer_flags(a->variant.integer, b->variant.integer) && pair_matches(pair);
  case tk_float:
  case tk_imaginary:
  case tk_complex:
    return a->variant.float_kind == b->variant.float_kind && pair_matches(pair);
  case tk_pointer:
    return same_pointer_form(a->variant.pointer, b->variant.pointer) &&
           pair_goes_on(pair, a->variant.pointer.referenced_type,
                        b->variant.pointer.referenced_type, part_flags);
  case tk_routine:
    return identical_routine_level(pair);
  case tk_array:
    return identical_bounds(a, b) && pair_goes_on(pair, a->variant.array.element_type,
                                                  b->variant.array.element_type, pair->flags);
  case tk_class:
  case tk_struct:
  case tk_union:
    return equiv_class_types(a, b) && pair_matches(pair);
  case tk_ptr_to_member:
    return member_qualifiers_match(pm_member_type(a), pm_member_type(b)) &&
           ((pair->flags & tcf_ignore_ptr_to_member_class) ||
            f_identical_types(pm_class_type(a), pm_class_type(b), part_flags)) &&
           pair_goes_on(pair, pm_member_type(a), pm_member_type(b),
                        part_flags | tcf_ignore_this_class);
  case tk_template_param:
    return identical_template_params(a, b) && pair_matches(pair);
  case tk_nullptr:
    return a->variant.nullptr_is_managed == b->variant.nullptr_is_managed && pair_matches(pair);
  default:
    return pair_matches(pair);
  }
}

bool identical_level(a_type_pair* pair) {
  if (!(pair->flags & tcf_ignore_top_qualifiers) &&
      get_type_qualifiers(pair->a) != get_type_qualifiers(pair->b))
    return false;
  bool result;
  if (decide_by_dependent_decltypes(pair->a, pair->b, &result))
    return result && pair_matches(pair);
  pair->a = f_skip_typerefs(pair->a);
  pair->b = f_skip_typerefs(pair->b);
  if (pair->a == pair->b)
    return true;
  if ((pair->flags & tcf_error_matches) && (pair->a->kind == tk_error || pair->b->kind == tk_error))
    return pair_matches(pair);
  return type_kinds_match(pair->a->kind, pair->b->kind) && identical_bare_level(pair);
}

} // namespace

bool f_identical_types(a_type* a, a_type* b, unsigned flags) {
  check_stack_limit();
  a_type_pair pair = {a, b, flags};
  while (pair.a != pair.b)
    if (!identical_level(&pair))
      return false;
  return true;
}
