// The type records of the intermediate language. All types have one shape: the
// common head of named entities, a few common fields, a kind and a variant per
// kind. Types are shared where that is safe: fundamental types are made once,
// and derived types are found again through a list on the type that they are
// derived from.

#ifndef IL_TYPES_H
#define IL_TYPES_H

#include "il_entities.h"

class TYPE;

enum a_type_kind : uint8_t {
  tk_error = 0,
  tk_void = 1,
  tk_integer = 2, // enums too
  tk_float = 3,
  tk_imaginary = 4,
  tk_complex = 5,
  tk_pointer = 6, // references too
  tk_routine = 7,
  tk_array = 8,
  tk_class = 9,
  tk_struct = 10,
  tk_union = 11,
  tk_typeref = 12,
  tk_ptr_to_member = 13,
  tk_template_param = 14,
  tk_nullptr = 15,
  tk_unknown = 16
};

enum an_integer_kind : uint8_t {
  ik_char = 0, // plain
  ik_signed_char = 1,
  ik_unsigned_char = 2,
  ik_short = 3,
  ik_unsigned_short = 4,
  ik_int = 5,
  ik_unsigned_int = 6,
  ik_long = 7,
  ik_unsigned_long = 8,
  ik_long_long = 9,
  ik_unsigned_long_long = 10
};
inline constexpr int num_integer_kinds = 11;

enum a_float_kind : uint8_t {
  fk_float = 0,
  fk_double = 1,
  fk_long_double = 2,
  fk_float80 = 3,
  fk_float128 = 4
};
inline constexpr int num_float_kinds = 5;

// The bits of a qualifier word. Bits above tq_far mark forms of a typeref that
// are no qualifiers.
typedef uint32_t a_type_qualifier_set;
inline constexpr a_type_qualifier_set tq_none = 0;
inline constexpr a_type_qualifier_set tq_const = 1;
inline constexpr a_type_qualifier_set tq_volatile = 2;
inline constexpr a_type_qualifier_set tq_restrict = 4;
inline constexpr a_type_qualifier_set tq_atomic = 8;
inline constexpr a_type_qualifier_set tq_nullable = 16;
inline constexpr a_type_qualifier_set tq_nonnull = 32;
inline constexpr a_type_qualifier_set tq_null_unspecified = 64;
inline constexpr a_type_qualifier_set tq_far = 128;
inline constexpr a_type_qualifier_set tq_attributes = 0x400; // the typeref carries attributes
inline constexpr a_type_qualifier_set tq_placeholder_1 = 0x800;
inline constexpr a_type_qualifier_set tq_placeholder_2 = 0x1000;
inline constexpr a_type_qualifier_set tq_decltype = 0x4000;
inline constexpr a_type_qualifier_set tq_typeof = 0x8000;
inline constexpr a_type_qualifier_set tq_dependent_decltype = 0x20000;

inline constexpr a_type_qualifier_set tq_nullability =
    tq_nullable | tq_nonnull | tq_null_unspecified;
inline constexpr a_type_qualifier_set tq_all_qualifiers = 0xff;
// Typerefs that carry more than a name and qualifiers.
inline constexpr a_type_qualifier_set tq_carries_attributes = 0x100c400;
inline constexpr a_type_qualifier_set tq_cv = tq_const | tq_volatile;

// What a member of a based_types list is to the type that owns the list.
enum a_based_type_kind : uint8_t {
  btk_lhsref = 0,
  btk_qualified = 1,
  btk_rvalue_reference = 2,
  btk_lvalue_reference = 3,
  btk_ptr_to_member = 4,
  btk_qualified_array = 5,
  btk_pointer = 6
};

struct a_based_type_list_member {
  a_based_type_list_member* next;
  a_type* derived_type;
  a_based_type_kind derivation;
  uint8_t remove_at_fixup : 1;
};

enum a_template_param_type_kind : uint8_t {
  tptk_type = 0,
  tptk_nontype_placeholder = 1,
  tptk_unknown = 2
};

enum a_placeholder_kind : uint8_t { plk_none = 0, plk_auto = 1, plk_decltype_auto = 2 };

// Classes of the language linkage of a routine type.
enum a_name_linkage_kind : uint8_t { nlk_none = 0, nlk_c = 1, nlk_cplusplus = 2, nlk_internal = 3 };

struct an_integer_type_supplement {
  uint8_t enum_is_complete : 1;
  uint8_t has_fixed_underlying_type : 1;
  uint8_t is_dependent : 1;
  a_type* underlying_type; // given in the declaration
  a_source_position underlying_type_position;
  a_scope* enumerator_scope;
  a_template* assoc_template;
};

struct a_routine_type_supplement {
  a_param_type* param_types; // numbered from 1
  a_routine* definition;     // whose body has this type
  uint32_t has_ellipsis : 1;
  uint32_t prototyped : 1;
  uint32_t does_not_return : 1;
  uint32_t has_trailing_return_type : 1;
  uint32_t is_dependent : 1;
  uint32_t returns_via_copy_constructor : 1;
  uint32_t is_pure : 1;
  uint32_t is_const_function : 1; // GNU attribute const
  uint32_t has_lvalue_ref_qualifier : 1;
  uint32_t has_rvalue_ref_qualifier : 1;
  uint32_t old_style_definition : 1;
  uint32_t has_enable_if : 1;
  uint32_t name_linkage : 2; // a_name_linkage_kind
  uint32_t is_lambda_operator : 1;
  uint32_t this_qualifiers : 8; // cv-qualifiers of a member function
  uint32_t is_printf_like : 1;  // as #pragma __printf_args says
  uint32_t is_scanf_like : 1;
  uint32_t unused_flags : 7;
  uint16_t calling_convention_flags;
  uint16_t param_count_info; // 65535 at start
  a_type* this_class;        // class of a nonstatic member function
  a_scope* prototype_scope;
  an_exception_specification* exception_specification;
  uint16_t register_use; // filled by the target
  uint16_t stack_use;
};

// What holds an anonymous union; assoc_entity names it.
enum an_anonymous_union_kind : uint8_t { auk_none = 0, auk_variable = 1, auk_field = 2 };

struct a_class_type_supplement {
  a_base_class* base_classes; // direct bases first
  a_base_class* primary_base;
  a_base_class* virtual_base;
  uint16_t nonvirtual_alignment;        // 1 at start
  uint16_t pack_alignment;              // 0: none in force at the opening brace
  uint16_t max_member_alignment;        // of #pragma pack; 65535: no limit
  int64_t virtual_function_info_offset; // bytes; -3: not assigned
  a_routine_list_entry* constructors;
  a_routine* destructor;
  a_routine_list_entry* conversions;
  a_routine* assoc_operator_delete; // the member that frees an object; null: the global one
  uint16_t has_user_constructor : 1;
  uint16_t has_user_destructor : 1;
  uint16_t is_lambda_closure : 1;
  uint16_t has_implicit_copy : 1;
  uint16_t is_unfinished : 1;
  uint16_t is_final : 1;
  uint16_t is_literal : 1;
  uint16_t is_trivially_copyable : 1;
  uint16_t is_pod : 1;
  uint16_t has_virtual_bases : 1;
  uint16_t has_no_linkage_name : 1;
  uint16_t has_const_or_reference_member : 1;
  uint16_t needs_constructor : 1;
  uint16_t needs_destructor : 1;
  uint16_t has_flexible_array : 1;
  uint16_t assoc_entity_is_set : 1;
  a_class_list_entry* friends;
  a_routine_list_entry* friend_routines;
  a_routine* member_functions;
  a_scope* scope;
  a_template* assoc_template;
  a_template_arg* template_args;
  a_template_arg* partial_template_args;
  an_il_entry_kind assoc_entity_kind; // names which pointer is held
  union {
    a_variable* variable;
    a_field* field;
    a_routine* routine;
    void* generic;
  } assoc_entity;           // what an unnamed class is named after
  uint64_t nonvirtual_size; // bytes
  uint16_t virtual_function_count;
  a_variable* virtual_function_table;
  a_variable* typeinfo_variable;
  a_type* proxy_of; // template parameter that a proxy class stands for
  a_lambda* lambda;
  uint32_t anonymous_union_kind : 2; // an_anonymous_union_kind
  uint32_t has_packed_attribute : 1;
  uint32_t is_std_initializer_list : 1;
  uint32_t is_va_list_tag : 1;
  uint32_t is_aggregate : 1; // in the sense of C++
};

struct a_template_param_type_supplement {
  int32_t index; // -1: a placeholder such as auto
  a_placeholder_kind placeholder;
  uint8_t is_pack : 1;
  uint32_t depth;    // nesting of the clause, from 1
  uint32_t position; // from 1
  a_template_param* param;
  a_type* proxy_class;
  a_type* deduced_type;
};

struct a_typeref_type_supplement {
  a_template_arg* template_args;
  a_template_arg* template_args_2;
  a_template* assoc_template;
  an_expr_node* decltype_expr;
  a_type* underlying_type;
  int32_t index; // -1 at start
  a_source_range range;
};

// The variants of a_type that are records of their own.
struct an_integer_type_variant {
  an_integer_kind int_kind;
  uint16_t explicitly_signed : 1;
  uint16_t is_constexpr_enum : 1;
  uint16_t is_enum : 1;
  uint16_t is_scoped_enum : 1;
  uint16_t is_template_enum : 1;
  uint16_t enum_may_be_smaller_than_int : 1;
  uint16_t is_wchar_t : 1;
  uint16_t is_char16_t : 1;
  uint16_t is_char32_t : 1;
  uint16_t is_bool : 1;
  uint16_t is_packed_enum : 1;
  union {
    a_type* base_type;            // of a non-enum, or null
    a_constant* first_enumerator; // unscoped enum
    a_scope* scope;               // scoped enum
  } enum_data;
  an_integer_type_supplement* integer_supplement;
};

struct a_pointer_type_variant {
  a_type* referenced_type;
  uint8_t is_reference : 1;
  uint8_t is_rvalue_reference : 1;
  uint8_t lhsref_flag;
};

struct a_routine_type_variant {
  a_type* return_type;
  a_routine_type_supplement* routine_supplement;
};

struct an_array_type_variant {
  a_type* element_type;
  uint16_t is_vector_like : 1;
  uint16_t is_generated : 1;
  uint16_t has_static_bound : 1; // [static n] of a parameter
  uint16_t bound_qualifiers : 5; // qualifiers inside the brackets of a parameter
  uint16_t bound_is_constant : 1;
  uint16_t bound_is_expr : 1;
  uint16_t is_vla : 1;
  uint16_t bound_is_star : 1; // [*]
  uint16_t unused_flag : 1;
  uint16_t has_vla_dimension : 1;
  uint16_t flexible_not_allowed : 1;
  union {
    uint64_t number_of_elements;
    a_constant* dependent_constant; // bound_is_constant
    an_expr_node* expr;             // bound_is_expr
    a_vla_dimension* vla_dimension; // is_vla; null unless has_vla_dimension
  } bound;
  a_constant* bound_constant; // kept for a bound written in the source
};

struct a_class_type_variant {
  a_field* fields; // declaration order
  a_class_type_supplement* class_supplement;
  uint32_t is_complete_definition : 1;
  uint32_t is_empty : 1;
  uint32_t has_virtual_functions : 1;
  uint32_t layout_pending : 1;
  uint32_t is_being_defined : 1;
  uint32_t is_abstract : 1;
  uint32_t is_local_class : 1;
  uint32_t is_member_of_local_class : 1;
  uint32_t is_polymorphic : 1;
  uint32_t is_anonymous_union : 1;
  uint32_t is_standard_layout : 1;
  uint32_t has_nonempty_base : 1;
  uint32_t is_template_class : 1;
  uint32_t is_nonreal : 1;
  uint32_t is_template_instance : 1;
  uint32_t is_specialized : 1;
  uint32_t is_prototype_instantiation : 1;
  uint32_t has_error_in_definition : 1;
  uint32_t any_volatile_fields : 1;
  uint32_t any_const_fields : 1;
  uint32_t is_lowered : 1;
  uint32_t is_prelowered : 1;
  uint32_t is_packed : 1;
  uint32_t has_vptr : 1;
  uint32_t is_dependent : 1;
  uint32_t is_partial_specialization : 1;
  uint32_t instantiation_given_up : 1;
  uint32_t is_transparent_union : 1;
  uint32_t is_base_check : 1;
  uint32_t is_declared_final : 1;
  uint32_t unused_flags : 2;
  uint8_t is_struct_vector : 1;
};

struct a_typeref_type_variant {
  a_type* referenced_type;
  a_typeref_type_supplement* typeref_supplement;
  a_type_qualifier_set typeref_qualifiers;
};

struct a_ptr_to_member_type_variant {
  a_type* class_type;
  a_type* member_type;
};

struct a_template_param_type_variant {
  a_template_param_type_kind template_param_kind;
  uint8_t is_pack : 1;
  uint8_t is_generated : 1;
  a_template_param_type_supplement* template_param_supplement;
};

struct a_type {
  a_source_correspondence source_corresp;
  a_type* next;
  a_based_type_list_member* based_types;
  uint64_t size;      // bytes; 0 until known
  uint32_t alignment; // bytes; 1 at start
  a_type_kind kind;
  uint16_t is_incomplete : 1;
  uint16_t is_declared_in_condition : 1;
  uint16_t is_local_or_anonymous_class : 1;
  uint16_t is_builtin : 1;
  uint16_t size_depends_on_template : 1;
  uint16_t keep_definition_in_il : 1;
  uint16_t has_explicit_alignment : 1;
  uint16_t is_variably_modified : 1;
  uint16_t has_local_expr_ref : 1;
  uint16_t alignment_reduced_by_packing : 1;
  uint16_t is_dependent_member : 1;
  uint16_t is_generated : 1; // made by the tool, not declared
  a_variable* lowering_variable;
  union {
    an_integer_type_variant integer;
    a_float_kind float_kind; // floating, imaginary and complex types
    a_pointer_type_variant pointer;
    a_routine_type_variant routine;
    an_array_type_variant array;
    a_class_type_variant class_struct_union;
    a_typeref_type_variant typeref;
    a_ptr_to_member_type_variant ptr_to_member;
    a_template_param_type_variant template_param;
    uint8_t nullptr_is_managed; // tk_nullptr
  } variant;
  uint64_t precision; // value bits of an integer type
  // The type's form in the intermediate file: as lowered, and as written.
  TYPE* lowered_file_type;
  TYPE* source_file_type;
};

#endif
