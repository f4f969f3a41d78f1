// The making of types: canonical instances, derived types found again through
// the list on the type that they are derived from, and sizes.

#include "types.h"

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "mode_words.h"
#include "pch.h"
#include "stack_limit.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"
#include "types_int.h"

#include <cstring>
#include <initializer_list>

// --- Canonical types.

namespace {

constexpr int num_char_kinds = 4;
constexpr uint64_t num_cached_literal_lengths = 81; // lengths 0 to 80

// Where a canonical type stands in the tables.
enum a_canonical_type_index : int {
  cti_integer = 0,
  cti_explicitly_signed = cti_integer + num_integer_kinds,
  cti_float = cti_explicitly_signed + num_integer_kinds,
  cti_imaginary = cti_float + num_float_kinds,
  cti_complex = cti_imaginary + num_float_kinds,
  cti_wchar_t = cti_complex + num_float_kinds,
  cti_char16_t,
  cti_char32_t,
  cti_bool,
  cti_void,
  cti_error,
  cti_unknown,
  cti_standard_nullptr,
  cti_managed_nullptr,
  num_canonical_types
};

// Of the current translation unit; null until the first use there.
a_type* canonical_types[num_canonical_types];
// The records themselves, which all units share.
a_type* recorded_builtin_types[num_canonical_types];

// Types of string literals by kind of character and length, in region 0; null
// until the first literal of the unit.
a_type** string_literal_types;

// A type with list members that do_based_type_fixup removes; in region 0.
struct a_based_type_owner {
  a_based_type_owner* next;
  a_type* type;
};
a_based_type_owner* types_with_members_to_remove;

const a_pch_saved_variable pch_saved_variables[] = {
    {canonical_types, sizeof canonical_types, false},
    {recorded_builtin_types, sizeof recorded_builtin_types, false},
    {&string_literal_types, sizeof string_literal_types, false},
    {&types_with_members_to_remove, sizeof types_with_members_to_remove, false},
    {nullptr, 0, false}};

// Makes the type that all units will use: a file-scope entry of the primary
// unit.
template <class INIT>
a_type* record_builtin_type(a_canonical_type_index index, a_type_kind kind, INIT init) {
  int32_t saved_region = file_scope_region_number;
  a_boolean saved_is_primary = is_primary_translation_unit;
  file_scope_region_number = 1;
  is_primary_translation_unit = 1;
  compute_il_prefix_size();
  a_type* type = alloc_type(kind);
  type->is_builtin = 1;
  init(type);
  recorded_builtin_types[index] = type;
  set_type_size(type);
  is_primary_translation_unit = saved_is_primary;
  file_scope_region_number = saved_region;
  compute_il_prefix_size();
  return type;
}

template <class INIT> a_type* canonical_type(int index, a_type_kind kind, INIT init) {
  a_type*& type = canonical_types[index];
  if (type == nullptr)
    type = recorded_builtin_types[index];
  if (type == nullptr)
    type = record_builtin_type(static_cast<a_canonical_type_index>(index), kind, init);
  return type;
}

a_type* canonical_type(a_canonical_type_index index, a_type_kind kind) {
  return canonical_type(index, kind, [](a_type*) {});
}

a_type* canonical_float(int index, a_type_kind kind, int float_kind) {
  return canonical_type(index, kind, [float_kind](a_type* type) {
    type->variant.float_kind = static_cast<a_float_kind>(float_kind);
  });
}

} // namespace

a_type* integer_type(int int_kind) {
  return canonical_type(cti_integer + int_kind, tk_integer, [int_kind](a_type* type) {
    type->variant.integer.int_kind = static_cast<an_integer_kind>(int_kind);
  });
}

a_type* signed_integer_type(int int_kind) {
  return canonical_type(cti_explicitly_signed + int_kind, tk_integer, [int_kind](a_type* type) {
    type->variant.integer.int_kind = static_cast<an_integer_kind>(int_kind);
    type->variant.integer.explicitly_signed = 1;
  });
}

a_type* other_signedness_integer_type(const a_type* type) {
  int int_kind = int_kind_of(type);
  return integer_type(int_kind_is_signed(int_kind) ? unsigned_int_kind_of(int_kind)
                                                   : signed_int_kind_of(int_kind));
}

a_type* wchar_t_type() {
  return canonical_type(cti_wchar_t, tk_integer, [](a_type* type) {
    type->variant.integer.int_kind = static_cast<an_integer_kind>(targ_wchar_t_int_kind);
    type->variant.integer.is_wchar_t = 1;
  });
}

a_type* char16_t_type() {
  return canonical_type(cti_char16_t, tk_integer, [](a_type* type) {
    type->variant.integer.int_kind = static_cast<an_integer_kind>(targ_char16_t_int_kind);
    type->variant.integer.is_char16_t = 1;
  });
}

a_type* char32_t_type() {
  return canonical_type(cti_char32_t, tk_integer, [](a_type* type) {
    type->variant.integer.int_kind = static_cast<an_integer_kind>(targ_char32_t_int_kind);
    type->variant.integer.is_char32_t = 1;
  });
}

a_type* eff_wchar_t_type() {
  return integer_type(targ_wchar_t_int_kind);
}

a_type* eff_char16_t_type() {
  return integer_type(targ_char16_t_int_kind);
}

a_type* eff_char32_t_type() {
  return integer_type(targ_char32_t_int_kind);
}

a_type* bool_type() {
  return canonical_type(cti_bool, tk_integer, [](a_type* type) {
    int int_kind = in_cplusplus_mode() ? targ_bool_int_kind : targ_c_bool_int_kind;
    type->variant.integer.int_kind = static_cast<an_integer_kind>(int_kind);
    type->variant.integer.is_bool = 1;
  });
}

a_type* float_type(int float_kind) {
  return canonical_float(cti_float + float_kind, tk_float, float_kind);
}

a_type* imaginary_type(int float_kind) {
  return canonical_float(cti_imaginary + float_kind, tk_imaginary, float_kind);
}

a_type* complex_type(int float_kind) {
  return canonical_float(cti_complex + float_kind, tk_complex, float_kind);
}

bool any_complex_or_imaginary_types_used_in_primary_IL() {
  for (int index = cti_imaginary; index < cti_complex + num_float_kinds; index++)
    if (canonical_types[index] != nullptr)
      return true;
  return false;
}

a_type* void_type() {
  return canonical_type(cti_void, tk_void);
}

a_type* error_type() {
  return canonical_type(cti_error, tk_error);
}

a_type* unknown_type() {
  return canonical_type(cti_unknown, tk_unknown);
}

a_type* standard_nullptr_type() {
  return canonical_type(cti_standard_nullptr, tk_nullptr);
}

a_type* managed_nullptr_type() {
  return canonical_type(cti_managed_nullptr, tk_nullptr,
                        [](a_type* type) { type->variant.nullptr_is_managed = 1; });
}

a_type* size_t_type() {
  return integer_type(targ_size_t_int_kind);
}

a_type* ptrdiff_t_type() {
  return integer_type(targ_ptrdiff_t_int_kind);
}

a_type* void_star_type() {
  return make_pointer_type(void_type());
}

a_type* char_type_of_kind(int char_kind) {
  switch (char_kind) {
  case sck_wide:
    return in_cplusplus_mode() ? wchar_t_type() : eff_wchar_t_type();
  case sck_char16:
    return in_cplusplus_mode() ? char16_t_type() : eff_char16_t_type();
  case sck_char32:
    return in_cplusplus_mode() ? char32_t_type() : eff_char32_t_type();
  default:
    return integer_type(plain_char_int_kind);
  }
}

a_type* string_type(uint64_t length) {
  return make_array_type(integer_type(plain_char_int_kind), length);
}

a_type* string_literal_type(int char_kind, uint64_t length) {
  a_type** slot = nullptr;
  if (length < num_cached_literal_lengths) {
    if (string_literal_types == nullptr) {
      uint64_t size = num_char_kinds * num_cached_literal_lengths * sizeof(a_type*);
      string_literal_types = static_cast<a_type**>(alloc_in_region(front_end_region, size));
      memset(string_literal_types, 0, size);
    }
    slot = &string_literal_types[static_cast<uint64_t>(char_kind) * num_cached_literal_lengths +
                                 length];
    if (*slot != nullptr)
      return *slot;
  }
  a_type* element = char_type_of_kind(char_kind);
  if (in_cplusplus_mode())
    element = make_qualified_type(element, tq_const);
  a_type* type = make_array_type(element, length);
  if (slot != nullptr)
    *slot = type;
  return type;
}

// --- Derived types.

namespace {

// Finds the type derived from `base` for which `matches` holds, and moves it to
// the front of the list: the common derivation stays the first.
template <class PREDICATE>
a_type* find_based_type(a_type* base, a_based_type_kind derivation, PREDICATE matches) {
  a_based_type_list_member** link = &base->based_types;
  while (a_based_type_list_member* member = *link) {
    if (member->derivation == derivation && matches(member->derived_type)) {
      *link = member->next;
      member->next = base->based_types;
      base->based_types = member;
      return member->derived_type;
    }
    link = &member->next;
  }
  return nullptr;
}

void add_based_type(a_type* base, a_based_type_kind derivation, a_type* derived) {
  a_based_type_list_member* member =
      alloc_based_type_list_member(derivation, &base->source_corresp);
  member->derived_type = derived;
  member->next = base->based_types;
  base->based_types = member;
}

a_type* pointer_like_type(a_type* type, a_based_type_kind derivation) {
  a_type* result = find_based_type(type, derivation, [](a_type*) { return true; });
  if (result != nullptr)
    return result;
  result = alloc_type(tk_pointer);
  a_pointer_type_variant& pointer = result->variant.pointer;
  pointer.referenced_type = type;
  pointer.is_reference = derivation != btk_pointer;
  pointer.is_rvalue_reference = derivation == btk_rvalue_reference;
  pointer.lhsref_flag = derivation == btk_lhsref;
  set_type_size(result);
  add_based_type(type, derivation, result);
  return result;
}

} // namespace

a_type* make_pointer_type_full(a_type* type, unsigned) {
  return pointer_like_type(type, btk_pointer);
}

a_type* make_reference_type(a_type* type) {
  return pointer_like_type(type, btk_lvalue_reference);
}

a_type* make_rvalue_reference_type(a_type* type) {
  return pointer_like_type(type, btk_rvalue_reference);
}

a_type* make_lhsref_type(a_type* type) {
  return pointer_like_type(type, btk_lhsref);
}

a_type* make_ptr_to_const_type(a_type* type) {
  return make_pointer_type(make_qualified_type(type, tq_const));
}

a_type* make_pointer_type_of_same_kind(const a_type* model, a_type* type) {
  return is_reference_type(model) ? make_reference_type_of_same_kind(model, type)
                                  : make_pointer_type(type);
}

a_type* make_reference_type_of_same_kind(const a_type* model, a_type* type) {
  if (is_lhsref_type(model))
    return make_lhsref_type(type);
  return is_rvalue_reference_type(model) ? make_rvalue_reference_type(type)
                                         : make_reference_type(type);
}

a_type* make_reference_to_reference(a_type* inner, bool outer_is_rvalue) {
  if (!is_reference_type(inner))
    return outer_is_rvalue ? make_rvalue_reference_type(inner) : make_reference_type(inner);
  if (outer_is_rvalue)
    return inner;
  return make_reference_type(type_pointed_to(inner));
}

a_type* make_typeref_with_qualifiers(a_type* type, a_type_qualifier_set qualifiers) {
  a_type* typeref = alloc_type(tk_typeref);
  typeref->variant.typeref.referenced_type = type;
  typeref->variant.typeref.typeref_qualifiers = qualifiers;
  return typeref;
}

a_type* make_typedef_type(a_type* type) {
  return make_typeref_with_qualifiers(type, tq_none);
}

namespace {

// The qualifiers of `wanted` that the type lacks and can take.
a_type_qualifier_set qualifiers_to_add(const a_type* type, a_type_qualifier_set wanted) {
  a_type_qualifier_set present = get_type_qualifiers(type);
  a_type_qualifier_set added = wanted & ~present;
  if (is_reference_type(type))
    added &= tq_restrict;
  a_type_qualifier_set nullability = added & tq_nullability;
  added &= ~tq_nullability;
  // They exclude each other: the first one stays.
  if (!(present & tq_nullability))
    added |= nullability & -nullability;
  return added;
}

// The array with another form of its elements, shared by all who ask for it.
a_type* array_of_requalified_elements(const a_type* array, a_type* element) {
  a_type* bare = f_skip_typerefs(array);
  uint32_t alignment = explicit_alignment_of_type(array);
  a_type* result = find_based_type(bare, btk_qualified_array, [=](a_type* candidate) {
    // The size may have been unknown when the sharing began.
    return candidate->variant.array.element_type == element &&
           candidate->is_incomplete == bare->is_incomplete && candidate->size == bare->size &&
           explicit_alignment_of_type(candidate) == alignment;
  });
  if (result != nullptr)
    return result;
  result = copy_array_type_replacing_element_type(bare, element);
  if (alignment != 0) {
    result->has_explicit_alignment = 1;
    result->alignment = alignment;
  }
  add_based_type(bare, btk_qualified_array, result);
  return result;
}

// A typeref that says nothing but which qualifiers the type has.
bool is_mere_qualification(const a_type* type) {
  return type->kind == tk_typeref && !typeref_is_typedef(type) && !type->has_explicit_alignment &&
         type->source_corresp.attributes == nullptr &&
         (type->variant.typeref.typeref_qualifiers & ~tq_all_qualifiers) == 0;
}

// The type with qualifiers that it lacks and can take. They are the same for
// all levels of an array.
a_type* with_added_qualifiers(a_type* type, a_type_qualifier_set added) {
  check_stack_limit();
  if (is_error_type(type))
    return type;
  if (is_array_type(type)) {
    a_type* old_element = array_element_type(type);
    a_type* element = with_added_qualifiers(old_element, added);
    return element == old_element ? type : array_of_requalified_elements(type, element);
  }
  a_type* base = type;
  while (is_mere_qualification(base)) {
    added |= base->variant.typeref.typeref_qualifiers;
    base = base->variant.typeref.referenced_type;
  }
  a_type* result = find_based_type(base, btk_qualified, [added](a_type* candidate) {
    return candidate->variant.typeref.typeref_qualifiers == added;
  });
  if (result != nullptr)
    return result;
  result = make_typeref_with_qualifiers(base, added);
  add_based_type(base, btk_qualified, result);
  return result;
}

// The type, which has qualifiers, without them.
a_type* without_qualifiers(a_type* type) {
  check_stack_limit();
  if (is_array_type(type))
    return array_of_requalified_elements(type, without_qualifiers(array_element_type(type)));
  while (get_type_qualifiers(type) != tq_none)
    type = type->variant.typeref.referenced_type;
  return type;
}

} // namespace

a_type* f_make_qualified_type(a_type* type, a_type_qualifier_set qualifiers) {
  a_type_qualifier_set added = qualifiers_to_add(type, qualifiers);
  return added == tq_none ? type : with_added_qualifiers(type, added);
}

a_type* make_unqualified_type(a_type* type) {
  return get_type_qualifiers(type) == tq_none ? type : without_qualifiers(type);
}

a_type* type_plus_qualifiers_from_second_type(a_type* type, const a_type* second) {
  return make_qualified_type(type, get_type_qualifiers(second));
}

// --- Pointers to members.

namespace {

a_based_type_owner* alloc_based_type_owner(a_type* type) {
  auto* owner = static_cast<a_based_type_owner*>(
      alloc_in_region(front_end_region, sizeof(a_based_type_owner)));
  *owner = {types_with_members_to_remove, type};
  return owner;
}

} // namespace

a_type* related_member_type(a_type* member_type, a_type* class_type) {
  a_type* bare = f_skip_typerefs(member_type);
  if (bare->kind != tk_routine || bare->variant.routine.routine_supplement->this_class == nullptr ||
      bare->variant.routine.routine_supplement->this_class == class_type)
    return member_type;
  a_type* copy = copy_routine_type_with_param_types(bare);
  copy->variant.routine.routine_supplement->this_class = class_type;
  return copy;
}

// The type with the class as that of its object. The qualifiers of the class are
// those of `this`.
static a_type* type_of_member_function(a_type* type, a_type* bare_class, a_type* class_type) {
  a_type* bare = f_skip_typerefs(type);
  const a_routine_type_supplement* supplement = bare->variant.routine.routine_supplement;
  a_type_qualifier_set qualifiers = get_type_qualifiers(class_type) & tq_cv;
  if (supplement->this_class == bare_class &&
      (qualifiers & ~supplement->this_qualifiers) == tq_none)
    return type;
  a_type* copy = copy_routine_type_with_param_types(bare);
  copy->variant.routine.routine_supplement->this_class = bare_class;
  copy->variant.routine.routine_supplement->this_qualifiers |= qualifiers;
  return copy;
}

a_type* ptr_to_member_type_full(a_type* member_type, a_type* class_type, unsigned) {
  a_type* bare_class = f_skip_typerefs(class_type);
  if (is_function_type(member_type))
    member_type = type_of_member_function(member_type, bare_class, class_type);
  a_type* result = find_based_type(member_type, btk_ptr_to_member, [bare_class](a_type* candidate) {
    return candidate->variant.ptr_to_member.class_type == bare_class;
  });
  if (result != nullptr)
    return result;
  result = make_partial_ptr_to_member_type(bare_class);
  update_ptr_to_member_type(result, member_type);
  add_based_type(member_type, btk_ptr_to_member, result);
  if (is_template_dependent_type(bare_class) || is_template_dependent_type(member_type)) {
    member_type->based_types->remove_at_fixup = 1;
    types_with_members_to_remove = alloc_based_type_owner(member_type);
  }
  return result;
}

void do_based_type_fixup() {
  if (il_header.prototype_instantiations_in_il || il_header.all_nonclass_prototypes_in_il)
    return;
  for (a_based_type_owner* owner = types_with_members_to_remove; owner != nullptr;
       owner = owner->next) {
    a_based_type_list_member** link = &owner->type->based_types;
    while (*link != nullptr) {
      if ((*link)->remove_at_fixup)
        *link = (*link)->next;
      else
        link = &(*link)->next;
    }
  }
  types_with_members_to_remove = nullptr;
}

a_type* make_partial_ptr_to_member_type(a_type* class_type) {
  a_type* type = alloc_type(tk_ptr_to_member);
  type->variant.ptr_to_member.class_type = class_type;
  return type;
}

void update_ptr_to_member_type(a_type* type, a_type* member_type) {
  type->variant.ptr_to_member.member_type = member_type;
  set_type_size(type);
}

a_type* related_ptr_to_member_type(a_type* ptr_to_member, a_type* class_type) {
  a_type* member_type = related_member_type(pm_member_type(ptr_to_member), class_type);
  a_type* result = ptr_to_member_type_full(member_type, class_type, 0);
  return type_plus_qualifiers_from_second_type(result, ptr_to_member);
}

namespace {

a_type* selected_member_type(a_type* type, a_type_qualifier_set qualifiers) {
  return is_reference_type(type) || is_function_type(type) ? type
                                                           : make_qualified_type(type, qualifiers);
}

} // namespace

a_type* make_field_selection_type(a_field* field, a_type_qualifier_set object_qualifiers) {
  a_type_qualifier_set qualifiers = object_qualifiers & (tq_cv | tq_far);
  if (field->is_mutable)
    qualifiers &= ~tq_const;
  return selected_member_type(field->type, qualifiers);
}

a_type* make_pm_selection_type(a_type* ptr_to_member, a_type_qualifier_set object_qualifiers) {
  return selected_member_type(pm_member_type(ptr_to_member), object_qualifiers & tq_cv);
}

// --- Arrays.

a_type* make_array_type(a_type* element_type, uint64_t number_of_elements) {
  a_type* type = alloc_type(tk_array);
  type->variant.array.element_type = element_type;
  type->variant.array.bound.number_of_elements = number_of_elements;
  type->variant.array.flexible_not_allowed = number_of_elements == 0;
  set_array_type_size(type, false);
  return type;
}

a_type* make_incomplete_array_type(a_type* element_type) {
  a_type* type = alloc_type(tk_array);
  type->variant.array.element_type = element_type;
  set_array_type_size(type, false);
  return type;
}

a_type* copy_array_type_replacing_element_type(const a_type* array, a_type* element_type) {
  a_type* copy = alloc_type(tk_array);
  copy->variant.array = array->variant.array;
  copy->variant.array.element_type = element_type;
  set_array_type_size(copy, true);
  return copy;
}

// --- Routine types.

a_type* make_routine_type(a_type* return_type) {
  a_type* type = alloc_type(tk_routine);
  type->variant.routine.return_type = return_type;
  return type;
}

a_type* make_routine_type_full(a_type* return_type, a_type* param1, a_type* param2, a_type* param3,
                               a_type* param4, a_type* param5, a_type* param6, a_type* param7) {
  a_type* type = make_routine_type(return_type);
  type->variant.routine.routine_supplement->prototyped = 1;
  for (a_type* param : {param1, param2, param3, param4, param5, param6, param7}) {
    if (param == nullptr)
      break;
    add_param_type(type, param);
  }
  return type;
}

a_param_type* make_param_type(a_type* type) {
  a_type* adjusted = type_after_parameter_adjustment(type);
  a_param_type* param = alloc_param_type(
      remove_qualifiers_from_param_types ? make_unqualified_type(adjusted) : adjusted);
  param->declared_type = type;
  param->param_qualifiers = get_type_qualifiers(adjusted) & 0xff;
  return param;
}

a_param_type* add_param_type(a_type* routine_type, a_type* type) {
  a_param_type** link = &routine_type->variant.routine.routine_supplement->param_types;
  uint32_t number = 1;
  for (; *link != nullptr; link = &(*link)->next)
    number++;
  *link = make_param_type(type);
  (*link)->param_number = number;
  return *link;
}

a_param_type* copy_param_type_list(const a_param_type* list) {
  a_param_type* head = nullptr;
  a_param_type** link = &head;
  for (; list != nullptr; list = list->next) {
    *link = alloc_param_type(list->type);
    **link = *list;
    (*link)->next = nullptr;
    link = &(*link)->next;
  }
  return head;
}

namespace {

template <class T> T* copy_supplement(const T* supplement) {
  T* copy = static_cast<T*>(alloc_il(sizeof(T)));
  *copy = *supplement;
  return copy;
}

} // namespace

a_type* copy_type(const a_type* type) {
  a_type* copy = static_cast<a_type*>(alloc_il(sizeof(a_type)));
  *copy = *type;
  copy->next = nullptr;
  copy->based_types = nullptr;
  copy->is_builtin = 0;
  copy->lowered_file_type = nullptr;
  copy->source_file_type = nullptr;
  break_source_corresp(&copy->source_corresp);
  auto& variant = copy->variant;
  switch (copy->kind) {
  case tk_integer:
    variant.integer.integer_supplement = copy_supplement(variant.integer.integer_supplement);
    break;
  case tk_routine:
    variant.routine.routine_supplement = copy_supplement(variant.routine.routine_supplement);
    variant.routine.routine_supplement->definition = nullptr;
    break;
  case tk_typeref:
    variant.typeref.typeref_supplement = copy_supplement(variant.typeref.typeref_supplement);
    break;
  case tk_template_param:
    variant.template_param.template_param_supplement =
        copy_supplement(variant.template_param.template_param_supplement);
    break;
  default:
    break;
  }
  return copy;
}

a_type* copy_routine_type_with_param_types(const a_type* routine_type) {
  a_type* copy = copy_type(routine_type);
  a_routine_type_supplement* supplement = copy->variant.routine.routine_supplement;
  supplement->param_types = copy_param_type_list(supplement->param_types);
  return copy;
}

bool type_returned_by_cctor(const a_type* type) {
  return in_cplusplus_mode() && is_class_struct_union_type(type) &&
         !class_supplement_of(type)->has_implicit_copy &&
         !class_supplement_of(type)->is_trivially_copyable;
}

namespace {

bool is_incomplete_class(const a_type* type) {
  return is_class_struct_union_type(type) && is_incomplete_type(type);
}

} // namespace

void set_arg_transfer_method_flag(a_param_type* param) {
  if (in_C_mode())
    return;
  if (is_incomplete_class(param->type))
    add_to_dependent_type_fixup_list(f_skip_typerefs(param->type), dtfk_arg_transfer_method, param);
  else
    param->passed_via_copy_constructor = type_returned_by_cctor(param->type);
}

void set_routine_calling_method_flag(a_type* routine_type) {
  a_type* return_type = routine_type->variant.routine.return_type;
  if (in_C_mode() || return_type == nullptr)
    return;
  if (is_incomplete_class(return_type))
    add_to_dependent_type_fixup_list(f_skip_typerefs(return_type), dtfk_calling_method,
                                     routine_type);
  else
    routine_type->variant.routine.routine_supplement->returns_via_copy_constructor =
        type_returned_by_cctor(return_type);
}

a_type* make_auto_type(const a_source_position* position, bool is_decltype_auto) {
  a_type* type = alloc_type(tk_template_param);
  a_symbol_locator locator;
  make_unnamed_locator(&locator, position);
  a_symbol* symbol = make_symbol(symk_type, &locator);
  symbol->variant.type = type;
  set_source_corresp(&type->source_corresp, symbol);
  type->source_corresp.is_unnamed = 1;
  a_template_param_type_variant& variant = type->variant.template_param;
  variant.template_param_kind = tptk_type;
  variant.template_param_supplement->index = -1;
  variant.template_param_supplement->placeholder = is_decltype_auto ? plk_decltype_auto : plk_auto;
  set_type_size(type);
  return type;
}

// --- Life cycle.

void types_early_init() {
  memset(canonical_types, 0, sizeof canonical_types);
  memset(recorded_builtin_types, 0, sizeof recorded_builtin_types);
  string_literal_types = nullptr;
  types_with_members_to_remove = nullptr;
  reset_dependent_type_fixups(true);
}

void types_one_time_init() {
  f_register_trans_unit_variable(canonical_types, sizeof canonical_types, 0);
  f_register_trans_unit_variable(&string_literal_types, sizeof string_literal_types, 0);
  f_register_trans_unit_variable(&types_with_members_to_remove, sizeof types_with_members_to_remove,
                                 0);
  register_pch_saved_variables(pch_saved_variables);
  register_dependent_type_fixups();
}

void types_trans_unit_init() {
  memset(canonical_types, 0, sizeof canonical_types);
  string_literal_types = nullptr;
  types_with_members_to_remove = nullptr;
  // A run's memory begins with the primary unit.
  if (is_primary_translation_unit)
    memset(recorded_builtin_types, 0, sizeof recorded_builtin_types);
  reset_dependent_type_fixups(is_primary_translation_unit);
}
