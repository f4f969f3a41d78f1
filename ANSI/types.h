// Questions asked of types, and the making of types: classification,
// identity, compatibility, composite types, and whether one type converts to
// another. Queries skip typerefs, report nothing and allocate nothing.

#ifndef TYPES_H
#define TYPES_H

#include "il_types.h"

struct a_diag_list;

// --- Skipping typerefs.

a_type* skip_typerefs_of_typeref(const a_type* type);

// What the type is behind typedefs, qualifiers and other typerefs.
inline a_type* f_skip_typerefs(const a_type* type) {
  return type->kind == tk_typeref ? skip_typerefs_of_typeref(type) : const_cast<a_type*>(type);
}
inline a_type* skip_typerefs(const a_type* type) {
  return f_skip_typerefs(type);
}

bool typeref_is_typedef(const a_type* type);
// Stop at a typeref that has qualifiers.
a_type* skip_typedefs(const a_type* type);
// Stop at a named typeref.
a_type* skip_typerefs_not_typedefs(const a_type* type);
a_type* skip_typerefs_not_dependent_decltypes(const a_type* type);
// Stop at qualifiers or a dependent decltype.
a_type* skip_typedefs_not_dependent_decltypes(const a_type* type);

// The qualifiers along the chain of typerefs, and with skip_arrays off also
// those of an array's elements.
a_type_qualifier_set f_get_type_qualifiers(const a_type* type, bool skip_arrays);
inline a_type_qualifier_set get_type_qualifiers(const a_type* type) {
  return f_get_type_qualifiers(type, false);
}
bool is_const_qualified_type(const a_type* type);
bool is_volatile_qualified_type(const a_type* type);
bool is_restrict_qualified_type(const a_type* type);

// --- Classification by kind.

inline a_type_kind type_kind(const a_type* type) {
  return f_skip_typerefs(type)->kind;
}
inline bool is_error_type(const a_type* type) {
  return type_kind(type) == tk_error;
}
inline bool is_void_type(const a_type* type) {
  return type_kind(type) == tk_void;
}
inline bool is_integral_or_enum_type(const a_type* type) {
  return type_kind(type) == tk_integer;
}
inline bool is_real_floating_type(const a_type* type) {
  return type_kind(type) == tk_float;
}
inline bool is_imaginary_type(const a_type* type) {
  return type_kind(type) == tk_imaginary;
}
inline bool is_complex_type(const a_type* type) {
  return type_kind(type) == tk_complex;
}
inline bool is_floating_type(const a_type* type) {
  a_type_kind kind = type_kind(type);
  return kind == tk_float || kind == tk_imaginary || kind == tk_complex;
}
inline bool is_function_type(const a_type* type) {
  return type_kind(type) == tk_routine;
}
inline bool is_array_type(const a_type* type) {
  return type_kind(type) == tk_array;
}
inline bool is_class_struct_type(const a_type* type) {
  a_type_kind kind = type_kind(type);
  return kind == tk_class || kind == tk_struct;
}
inline bool is_union_type(const a_type* type) {
  return type_kind(type) == tk_union;
}
inline bool is_class_struct_union_kind(a_type_kind kind) {
  return kind == tk_class || kind == tk_struct || kind == tk_union;
}
inline bool is_class_struct_union_type(const a_type* type) {
  return is_class_struct_union_kind(type_kind(type));
}
inline bool is_ptr_to_member_type(const a_type* type) {
  return type_kind(type) == tk_ptr_to_member;
}
inline bool is_template_param_type(const a_type* type) {
  return type_kind(type) == tk_template_param;
}
inline bool is_nullptr_type(const a_type* type) {
  return type_kind(type) == tk_nullptr;
}
inline bool is_unknown_type(const a_type* type) {
  return type_kind(type) == tk_unknown;
}

// --- Classification by flags.

bool is_pointer_type(const a_type* type);
bool is_reference_type(const a_type* type);
bool is_lvalue_reference_type(const a_type* type);
bool is_rvalue_reference_type(const a_type* type);
bool is_lhsref_type(const a_type* type);
bool is_enum_type(const a_type* type);
bool is_scoped_enum_type(const a_type* type);
bool is_unscoped_enum_type(const a_type* type);
bool is_bool_type(const a_type* type);
bool is_plain_char_type(const a_type* type);
// char, signed char and unsigned char.
bool is_character_type(const a_type* type);
bool is_wchar_t_type(const a_type* type);
bool is_char16_t_type(const a_type* type);
bool is_char32_t_type(const a_type* type);
bool is_incomplete_type(const a_type* type);
bool is_transparent_union_type(const a_type* type);
bool is_polymorphic_class_type(const a_type* type);
bool is_template_class_type(const a_type* type);
bool is_real_class_type(const a_type* type);
bool is_struct_vector_type(const a_type* type);
bool is_auto_type(const a_type* type);

// --- Combined queries.

// False for an enum unless enum_type_is_integral is on.
bool is_integral_type(const a_type* type);
// Signedness of an integer or enum type as the target has it.
bool is_signed_integral_type(const a_type* type);
bool is_unsigned_integral_type(const a_type* type);
// False for an enum in C++.
bool is_arithmetic_type(const a_type* type);
bool is_arithmetic_or_enum_type(const a_type* type);
bool is_arithmetic_or_unscoped_enum_type(const a_type* type);
bool is_real_type(const a_type* type); // integer, enum or real floating
bool is_scalar_type(const a_type* type);
// C: neither a function nor incomplete. C++: no function, void or reference.
bool is_object_type(const a_type* type);
bool is_complete_object_type(const a_type* type);
bool is_aggregate_type(const a_type* type);
bool is_aggregate_or_union_type(const a_type* type);
bool is_pointer_to_object_type(const a_type* type);
bool is_pointer_to_function_type(const a_type* type);
bool is_pointer_to_void_type(const a_type* type); // void may be qualified
bool is_pointer_to_incomplete_type(const a_type* type);
// A pointer to void with no qualifier anywhere.
bool is_void_star_type(const a_type* type);
bool is_string_type(const a_type* type); // array of any character type
bool is_char_array_type(const a_type* type);
bool is_size_t_type(const a_type* type);
bool is_ptrdiff_t_type(const a_type* type);
// A variable length array, at any level of a multidimensional array.
bool is_vla_type(const a_type* type);
// Involves a variable length array anywhere (C99 6.7.5 p3).
bool is_variably_modified_type(const a_type* type);
bool is_incomplete_array_type(const a_type* type);
bool is_flexible_array_type(const a_type* type);
bool is_std_nothrow_type(const a_type* type);
bool is_passed_by_ref_type(const a_type* type); // false on this target
bool routine_type_is_prototyped(const a_type* type);
bool routine_type_has_ellipsis(const a_type* type);

// --- Parts of types.

a_type* type_pointed_to(const a_type* pointer_or_reference);
a_type* array_element_type(const a_type* array);
// Below all array levels; the qualifiers of the element are kept.
a_type* underlying_array_element_type(const a_type* type);
a_type* skip_array_types(const a_type* type);
a_type* pm_member_type(const a_type* ptr_to_member);
a_type* pm_class_type(const a_type* ptr_to_member);
a_type* return_type_of(const a_type* routine_type);
a_param_type* param_types_of(const a_type* routine_type);
a_class_type_supplement* class_supplement_of(const a_type* type);
an_integer_kind int_kind_of(const a_type* integer_type);
// 0 for an array of unknown or variable bound.
uint64_t num_array_elements(const a_type* array);
bool has_any_zero_bound(const a_type* array);
bool has_any_unknown_specified_bound(const a_type* array);
// The type at the end of the chain of pointers, references, arrays, pointers
// to members and return types that a declarator adds.
a_type* find_bottom_of_type(const a_type* type);
a_type* type_specifier_of_type(const a_type* type);
a_type* f_underlying_type_of_derived_type(const a_type* type);

// --- Integer and floating kinds.

bool int_kind_is_signed(int kind); // plain char as the target has it
an_integer_kind unsigned_int_kind_of(int kind);
an_integer_kind signed_int_kind_of(int kind);
// Size and alignment in bytes, precision in bits; any pointer may be null.
void get_integer_size_and_alignment(int kind, uint64_t* size, uint32_t* alignment,
                                    uint64_t* precision);
void get_float_size_and_alignment(int kind, uint64_t* size, uint32_t* alignment);
int precision_of_int_kind(int kind); // in bits
// Digits of the target's mantissa.
int mantissa_digits_of_float_kind(int kind);
// Bytes of a pointer to the type, which may depend on the address space.
uint64_t size_of_pointer_to(const a_type* type, uint32_t* alignment);

// --- Canonical types, made at first use.

a_type* integer_type(int int_kind);
a_type* signed_integer_type(int int_kind); // with an explicit `signed`
a_type* other_signedness_integer_type(const a_type* type);
a_type* wchar_t_type();
a_type* char16_t_type();
a_type* char32_t_type();
// The types under the special character types.
a_type* eff_wchar_t_type();
a_type* eff_char16_t_type();
a_type* eff_char32_t_type();
a_type* bool_type();
a_type* float_type(int float_kind);
a_type* imaginary_type(int float_kind);
a_type* complex_type(int float_kind);
// Whether the unit has asked for one of these two.
bool any_complex_or_imaginary_types_used_in_primary_IL();
a_type* void_type();
a_type* error_type();
a_type* unknown_type();
a_type* standard_nullptr_type();
a_type* managed_nullptr_type();
a_type* size_t_type();
a_type* ptrdiff_t_type();
a_type* void_star_type();
// An array of `length` plain characters.
a_type* string_type(uint64_t length);
// Of a literal: `length` counts the terminator; const elements in C++.
a_type* string_literal_type(int char_kind, uint64_t length);
a_type* char_type_of_kind(int char_kind);

// --- Derived types.

enum a_make_pointer_flags : unsigned { mpf_none = 0 };
a_type* make_pointer_type_full(a_type* type, unsigned flags);
inline a_type* make_pointer_type(a_type* type) {
  return make_pointer_type_full(type, mpf_none);
}
a_type* make_reference_type(a_type* type);
a_type* make_rvalue_reference_type(a_type* type);
a_type* make_lhsref_type(a_type* type);
a_type* make_ptr_to_const_type(a_type* type);
a_type* make_pointer_type_of_same_kind(const a_type* model, a_type* type);
a_type* make_reference_type_of_same_kind(const a_type* model, a_type* type);
// Reference collapsing.
a_type* make_reference_to_reference(a_type* inner, bool outer_is_rvalue);
a_type* f_make_qualified_type(a_type* type, a_type_qualifier_set qualifiers);
inline a_type* make_qualified_type(a_type* type, a_type_qualifier_set qualifiers) {
  return qualifiers == tq_none ? type : f_make_qualified_type(type, qualifiers);
}
// Drops the qualifiers at the top, of an array those of its elements.
a_type* make_unqualified_type(a_type* type);
a_type* type_plus_qualifiers_from_second_type(a_type* type, const a_type* second);
a_type* ptr_to_member_type_full(a_type* member_type, a_type* class_type, unsigned flags);
a_type* make_partial_ptr_to_member_type(a_type* class_type);
void update_ptr_to_member_type(a_type* type, a_type* member_type);
a_type* related_member_type(a_type* member_type, a_type* class_type);
a_type* related_ptr_to_member_type(a_type* ptr_to_member, a_type* class_type);
// The type of a member selected from an object with these qualifiers.
a_type* make_field_selection_type(a_field* field, a_type_qualifier_set object_qualifiers);
a_type* make_pm_selection_type(a_type* ptr_to_member, a_type_qualifier_set object_qualifiers);

// An array with a known bound, or of unknown bound; its size is set.
a_type* make_array_type(a_type* element_type, uint64_t number_of_elements);
a_type* make_incomplete_array_type(a_type* element_type);
a_type* copy_array_type_replacing_element_type(const a_type* array, a_type* element_type);

// A prototyped routine type with up to seven parameters.
a_type* make_routine_type_full(a_type* return_type, a_type* param1 = nullptr,
                               a_type* param2 = nullptr, a_type* param3 = nullptr,
                               a_type* param4 = nullptr, a_type* param5 = nullptr,
                               a_type* param6 = nullptr, a_type* param7 = nullptr);
// With no information about parameters.
a_type* make_routine_type(a_type* return_type);
a_param_type* make_param_type(a_type* type);
// Appends a parameter; returns its record.
a_param_type* add_param_type(a_type* routine_type, a_type* type);
a_type* copy_type(const a_type* type);
a_type* copy_routine_type_with_param_types(const a_type* routine_type);
a_param_type* copy_param_type_list(const a_param_type* list);
// A class that must go through a copy constructor; C has none.
bool type_returned_by_cctor(const a_type* type);
// For a class that is still incomplete, these two wait for its completion.
void set_arg_transfer_method_flag(a_param_type* param);
void set_routine_calling_method_flag(a_type* routine_type);
a_type* make_auto_type(const a_source_position* position, bool is_decltype_auto);
// A typedef with no symbol yet.
a_type* make_typedef_type(a_type* type);
a_type* make_typeref_with_qualifiers(a_type* type, a_type_qualifier_set qualifiers);

// --- Sizes.

// Sets size, alignment and precision; nothing happens when the size is known.
void set_type_size(a_type* type);
// `quiet`: a too large array isn't reported.
void set_array_type_size(a_type* type, bool quiet);
// In bytes.
uint32_t f_alignment_of_type(const a_type* type);
uint64_t size_of_type(const a_type* type);

// Work that waits until an incomplete type is completed.
enum a_dependent_type_fixup_kind : uint8_t {
  dtfk_array_size = 0,
  dtfk_arg_transfer_method = 1,
  dtfk_calling_method = 2
};
void add_to_dependent_type_fixup_list(a_type* incomplete_type, a_dependent_type_fixup_kind kind,
                                      void* entity);
// The type has been completed: does the work that waited for it.
void process_dependent_type_fixups(a_type* type);
// At the end of the unit.
void do_based_type_fixup();

// --- Promotion and arithmetic conversions.

a_type* type_after_integral_promotion(a_type* type);
// Of a bit-field of the width (C99 6.3.1.1 p2).
a_type* type_after_bit_field_promotion(a_type* type, unsigned bit_size);
a_type* default_argument_promotion(a_type* type);
a_type* type_after_array_to_pointer_transformation(a_type* type);
// Arrays and functions as parameters are adjusted (C99 6.7.5.3 p7, p8).
a_type* type_after_parameter_adjustment(a_type* type);
// C99 6.3.1.8, for types that are arithmetic; integers are promoted.
a_type* usual_arithmetic_conversions(a_type* type1, a_type* type2);

// --- Identity and compatibility.

enum a_type_comparison_flags : unsigned {
  tcf_none = 0,
  tcf_error_matches = 1,
  tcf_ignore_top_qualifiers = 2,
  tcf_allow_unknown_bound = 4,
  tcf_ignore_linkage = 8,
  tcf_allow_c_cpp_conversion = 0x10,
  tcf_ignore_ptr_to_member_class = 0x40,
  tcf_distinct_enums = 0x100,
  tcf_template_aliases = 0x800,
  tcf_redeclaration = 0x1000,
  tcf_record_convention = 0x4000,
  tcf_ignore_this_class = 0x8000,
  tcf_placeholder_return = 0x20000,
  tcf_enable_if = 0x40000,
  tcf_inexact_this_class = 0x80000000 // a derived class passes, if the mode allows it
};

// In the GNU modes the default convention matches every other one.
inline constexpr uint16_t default_calling_convention = 0;

// Differences that a comparison found but let pass.
struct a_type_difference_list {
  uint8_t calling_convention_differs : 1;
};

bool f_identical_types(a_type* a, a_type* b, unsigned flags);
inline bool identical_types(a_type* a, a_type* b) {
  return a == b || f_identical_types(a, b, tcf_none);
}
bool f_types_are_compatible_full(a_type* a, a_type* b, unsigned flags,
                                 a_type_difference_list* differences);
inline bool f_types_are_compatible(a_type* a, a_type* b, unsigned flags) {
  return a == b || f_types_are_compatible_full(a, b, flags, nullptr);
}
inline bool types_are_compatible(a_type* a, a_type* b) {
  return f_types_are_compatible(a, b, tcf_none);
}
// Equal kinds; class and struct are one.
bool type_kinds_match(a_type_kind a, a_type_kind b);
// The parameter lists of two routine types.
bool param_types_are_compatible_full(a_type* a, a_type* b, unsigned flags,
                                     a_type_difference_list* differences);
// One class, be it by two records: of two units, or instances of one template
// with the same arguments.
bool equiv_class_types(a_type* a, a_type* b);
bool cast_identical_types(a_type* a, a_type* b);
bool integral_types_the_same_except_for_signedness(a_type* a, a_type* b);
bool interchangeable_types(a_type* a, a_type* b);
bool routine_linkages_are_compatible(a_type* a, a_type* b, unsigned flags);
bool calling_conventions_are_compatible(a_type* a, a_type* b);
// The same set of exceptions, in any order; a missing specification allows all.
// Specifications aren't part of a type's identity.
bool same_exception_spec(const an_exception_specification* a, const an_exception_specification* b);
// Whether `a` lets something through that `b` doesn't (C++ 15.4 p5).
bool exception_spec_is_less_restrictive(const an_exception_specification* a,
                                        const an_exception_specification* b);
// The type of an entity declared with both (C99 6.2.7 p3); the error type when
// they are incompatible.
a_type* composite_type(a_type* a, a_type* b);

// The GNU properties of a routine or array type are given to a record that
// nothing shares yet.
void copy_gnu_type_properties(a_type* to, const a_type* from);

// --- Conversions.

// The record by which a class is a base of another, at any distance; null for
// none.
a_base_class* find_base_class_of(const a_type* derived, const a_type* base);
// Whether the pointers point to a class and a base of it, `derived_first` telling
// which is which.
bool f_related_class_pointers(const a_type* a, const a_type* b, a_base_class** base_class,
                              bool* derived_first);

enum a_std_conversion_kind : uint8_t {
  stdc_none = 0,
  stdc_identity = 1,
  stdc_arithmetic = 2,
  stdc_pointer = 3,
  stdc_ptr_to_member = 4,
  stdc_boolean = 5,
  stdc_nullptr = 6
};

// What a standard conversion does, and what is doubtful about it.
struct a_std_conv_descr {
  a_std_conversion_kind conversion_kind;
  an_error_code error_code; // 0, or a diagnostic that the caller may use
  uint16_t is_qualification_adjustment : 1;
  uint16_t is_boolean_conversion : 1;
  uint16_t is_derived_to_base : 1;
  uint16_t is_null_pointer_conversion : 1;
  uint16_t is_to_void_pointer : 1;
  uint16_t is_from_void_pointer : 1;
  uint16_t is_mixed_pointer : 1;       // C: pointers to incompatible types
  uint16_t is_pointer_integer_mix : 1; // C: a pointer and an integer
  uint16_t drops_qualifiers : 1;
  uint16_t signedness_differs : 1;  // pointed-to integer types of other signedness
  uint16_t function_object_mix : 1; // void * and a pointer to function
  uint16_t is_lossy : 1;
  a_base_class* base_class;
};

void clear_std_conv_descr(a_std_conv_descr* descr);

// Whether a value of type `source` converts implicitly to `target`. `constant`
// is the source's value when it is a constant, or null.
bool impl_conversion_possible(a_type* source, bool source_is_lvalue, const a_constant* constant,
                              a_type* target, a_std_conv_descr* descr);
// With `allow_mixed_pointers` what C accepts with a message passes too; the
// descriptor says what it was.
bool impl_pointer_conversion(a_type* source, const a_constant* constant, a_type* target,
                             bool allow_mixed_pointers, a_std_conv_descr* descr);
bool impl_ptr_to_member_conversion(a_type* source, const a_constant* constant, a_type* target,
                                   a_std_conv_descr* descr);
bool qualification_conversion_possible_full(a_type* source, a_type* target, bool allow_unsafe,
                                            bool* qualifiers_changed);
inline bool qualification_conversion_possible(a_type* source, a_type* destination) {
  return qualification_conversion_possible_full(source, destination, false, nullptr);
}
bool static_cast_conversion_possible(a_type* source, a_type* target, const a_constant* constant);
bool reinterpret_cast_conversion_possible(a_type* source, a_type* target);
// By an explicit cast.
bool expl_conversion_possible(a_type* source, const a_constant* constant, a_type* target,
                              a_std_conv_descr* descr);
a_type* make_cv_combined_type_if_possible(a_type* a, a_type* b);
a_type* multilevel_composite_pointer_type(a_type* a, a_type* b);
bool same_type_with_added_qualifiers(a_type* source, a_type* target);
bool cast_removes_qualifiers(a_type* source, a_type* target);
bool is_narrowing_conversion(a_type* source, const a_constant* constant, a_type* target,
                             an_error_code* error_code);
// A constant of integer value 0, or a null pointer of type void *; a value that
// depends on a template parameter might be one.
bool is_or_might_be_null_pointer_constant(const a_constant* constant);

// --- Walking a type.

// What a walk enters beside the chain of derived types.
enum a_type_tree_flags : unsigned {
  ttf_none = 0,
  ttf_array_bounds = 1, // the types that the bound's value or expression names
  ttf_param_types = 2,
  ttf_template_args = 4,
  ttf_base_classes = 8,
  ttf_through_typerefs = 16, // visit typerefs as types of their own
  ttf_all = 31
};
// Calls back for the type and its component types until a call gives true,
// which is then the result.
bool traverse_type_tree(a_type* type, bool (*callback)(a_type* type), unsigned flags);
bool is_template_dependent_type(a_type* type);
bool is_or_contains_error_type(a_type* type);
bool is_or_contains_local_type(a_type* type);
bool is_or_contains_template_param(a_type* type);
bool is_or_contains_unnamed_namespace_type(a_type* type);

void types_early_init();
void types_one_time_init();
// Resets the caches of canonical types.
void types_trans_unit_init();

#endif
