#include "types.h"

#include "il.h"
#include "il_constants.h"
#include "il_expr.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"

#include <cstring>
#include <unordered_set>

// --- Skipping typerefs.

a_type* skip_typerefs_of_typeref(const a_type* type) {
  do
    type = type->variant.typeref.referenced_type;
  while (type->kind == tk_typeref);
  return const_cast<a_type*>(type);
}

bool typeref_is_typedef(const a_type* type) {
  return type->kind == tk_typeref && type->source_corresp.name != nullptr;
}

namespace {

// Passes typerefs until `stop` is true for one.
template <class PREDICATE> a_type* skip_until(const a_type* type, PREDICATE stop) {
  while (type->kind == tk_typeref && !stop(type))
    type = type->variant.typeref.referenced_type;
  return const_cast<a_type*>(type);
}

bool has_qualifiers(const a_type* typeref) {
  return (typeref->variant.typeref.typeref_qualifiers & tq_all_qualifiers) != 0;
}

bool is_dependent_decltype(const a_type* typeref) {
  return (typeref->variant.typeref.typeref_qualifiers & tq_dependent_decltype) != 0;
}

} // namespace

a_type* skip_typedefs(const a_type* type) {
  return skip_until(type, has_qualifiers);
}

a_type* skip_typerefs_not_typedefs(const a_type* type) {
  return skip_until(type, typeref_is_typedef);
}

a_type* skip_typerefs_not_dependent_decltypes(const a_type* type) {
  return skip_until(type, is_dependent_decltype);
}

a_type* skip_typedefs_not_dependent_decltypes(const a_type* type) {
  return skip_until(type, [](const a_type* typeref) {
    return has_qualifiers(typeref) || is_dependent_decltype(typeref);
  });
}

a_type_qualifier_set f_get_type_qualifiers(const a_type* type, bool skip_arrays) {
  a_type_qualifier_set qualifiers = tq_none;
  for (;;) {
    if (type->kind == tk_typeref) {
      qualifiers |= type->variant.typeref.typeref_qualifiers;
      type = type->variant.typeref.referenced_type;
    } else if (type->kind == tk_array && !skip_arrays) {
      type = type->variant.array.element_type;
    } else {
      return qualifiers & tq_all_qualifiers;
    }
  }
}

bool is_const_qualified_type(const a_type* type) {
  return (get_type_qualifiers(type) & tq_const) != 0;
}

bool is_volatile_qualified_type(const a_type* type) {
  return (get_type_qualifiers(type) & tq_volatile) != 0;
}

bool is_restrict_qualified_type(const a_type* type) {
  return (get_type_qualifiers(type) & tq_restrict) != 0;
}

// --- Classification by flags.

bool is_pointer_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_pointer && !type->variant.pointer.is_reference;
}

bool is_reference_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_pointer && type->variant.pointer.is_reference;
}

bool is_lvalue_reference_type(const a_type* type) {
  return is_reference_type(type) && !f_skip_typerefs(type)->variant.pointer.is_rvalue_reference;
}

bool is_rvalue_reference_type(const a_type* type) {
  return is_reference_type(type) && f_skip_typerefs(type)->variant.pointer.is_rvalue_reference;
}

bool is_lhsref_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_pointer && type->variant.pointer.lhsref_flag;
}

bool is_enum_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_integer && type->variant.integer.is_enum;
}

bool is_scoped_enum_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_integer && type->variant.integer.is_scoped_enum;
}

bool is_unscoped_enum_type(const a_type* type) {
  return is_enum_type(type) && !is_scoped_enum_type(type);
}

bool is_bool_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_integer && type->variant.integer.is_bool;
}

namespace {

bool is_wide_character_variant(const an_integer_type_variant& integer) {
  return integer.is_wchar_t || integer.is_char16_t || integer.is_char32_t;
}

} // namespace

bool is_plain_char_type(const a_type* type) {
  return is_character_type(type) &&
         f_skip_typerefs(type)->variant.integer.int_kind == plain_char_int_kind;
}

bool is_character_type(const a_type* type) {
  type = f_skip_typerefs(type);
  if (type->kind != tk_integer)
    return false;
  const an_integer_type_variant& integer = type->variant.integer;
  return integer.int_kind <= ik_unsigned_char && !integer.is_bool && !integer.is_enum &&
         !is_wide_character_variant(integer);
}

bool is_wchar_t_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_integer && type->variant.integer.is_wchar_t;
}

bool is_char16_t_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_integer && type->variant.integer.is_char16_t;
}

bool is_char32_t_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_integer && type->variant.integer.is_char32_t;
}

bool is_incomplete_type(const a_type* type) {
  return f_skip_typerefs(type)->is_incomplete;
}

bool is_transparent_union_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_union && type->variant.class_struct_union.is_transparent_union;
}

bool is_polymorphic_class_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return is_class_struct_union_kind(type->kind) && type->variant.class_struct_union.is_polymorphic;
}

bool is_template_class_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return is_class_struct_union_kind(type->kind) &&
         type->variant.class_struct_union.is_template_class;
}

bool is_real_class_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return is_class_struct_union_kind(type->kind) && !type->variant.class_struct_union.is_nonreal;
}

bool is_struct_vector_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return is_class_struct_union_kind(type->kind) &&
         type->variant.class_struct_union.is_struct_vector;
}

bool is_auto_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_template_param &&
         type->variant.template_param.template_param_kind == tptk_type &&
         type->variant.template_param.template_param_supplement->index == -1;
}

// --- Combined queries.

bool is_integral_type(const a_type* type) {
  return is_integral_or_enum_type(type) && (il_header.enum_type_is_integral || !is_enum_type(type));
}

bool is_signed_integral_type(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_integer && int_kind_is_signed(type->variant.integer.int_kind) &&
         !type->variant.integer.is_bool;
}

bool is_unsigned_integral_type(const a_type* type) {
  return is_integral_or_enum_type(type) && !is_signed_integral_type(type);
}

bool is_arithmetic_type(const a_type* type) {
  if (is_floating_type(type))
    return true;
  return is_integral_or_enum_type(type) && !(in_cplusplus_mode() && is_enum_type(type));
}

bool is_arithmetic_or_enum_type(const a_type* type) {
  return is_integral_or_enum_type(type) || is_floating_type(type);
}

bool is_arithmetic_or_unscoped_enum_type(const a_type* type) {
  return is_arithmetic_or_enum_type(type) && !is_scoped_enum_type(type);
}

bool is_real_type(const a_type* type) {
  return is_integral_or_enum_type(type) || is_real_floating_type(type);
}

bool is_scalar_type(const a_type* type) {
  return is_arithmetic_or_enum_type(type) || is_pointer_type(type) || is_ptr_to_member_type(type) ||
         is_nullptr_type(type);
}

bool is_object_type(const a_type* type) {
  if (is_function_type(type))
    return false;
  if (in_C_mode())
    return !is_incomplete_type(type);
  return !is_void_type(type) && !is_reference_type(type);
}

bool is_complete_object_type(const a_type* type) {
  return is_object_type(type) && !is_incomplete_type(type);
}

bool is_aggregate_type(const a_type* type) {
  if (is_array_type(type))
    return true;
  if (!is_class_struct_type(type))
    return false;
  return in_C_mode() || class_supplement_of(type)->is_aggregate;
}

bool is_aggregate_or_union_type(const a_type* type) {
  return is_aggregate_type(type) || is_union_type(type);
}

bool is_pointer_to_object_type(const a_type* type) {
  return is_pointer_type(type) && !is_function_type(type_pointed_to(type)) &&
         !is_void_type(type_pointed_to(type));
}

bool is_pointer_to_function_type(const a_type* type) {
  return is_pointer_type(type) && is_function_type(type_pointed_to(type));
}

bool is_pointer_to_void_type(const a_type* type) {
  return is_pointer_type(type) && is_void_type(type_pointed_to(type));
}

bool is_pointer_to_incomplete_type(const a_type* type) {
  return is_pointer_type(type) && is_incomplete_type(type_pointed_to(type));
}

bool is_void_star_type(const a_type* type) {
  return is_pointer_to_void_type(type) && get_type_qualifiers(type) == tq_none &&
         get_type_qualifiers(type_pointed_to(type)) == tq_none;
}

bool is_string_type(const a_type* type) {
  if (!is_array_type(type))
    return false;
  const a_type* element = f_skip_typerefs(array_element_type(type));
  return is_character_type(element) ||
         (element->kind == tk_integer &&
          (is_wide_character_variant(element->variant.integer) ||
           element->variant.integer.int_kind == targ_wchar_t_int_kind));
}

bool is_char_array_type(const a_type* type) {
  return is_array_type(type) && is_character_type(array_element_type(type));
}

namespace {

bool is_plain_integer_of_kind(const a_type* type, int int_kind) {
  type = f_skip_typerefs(type);
  if (type->kind != tk_integer)
    return false;
  const an_integer_type_variant& integer = type->variant.integer;
  return integer.int_kind == int_kind && !integer.is_enum && !integer.is_bool &&
         !is_wide_character_variant(integer);
}

} // namespace

bool is_size_t_type(const a_type* type) {
  return is_plain_integer_of_kind(type, targ_size_t_int_kind);
}

bool is_ptrdiff_t_type(const a_type* type) {
  return is_plain_integer_of_kind(type, targ_ptrdiff_t_int_kind);
}

namespace {

bool is_vla_level(const a_type* array) {
  return array->variant.array.is_vla || array->variant.array.bound_is_star;
}

} // namespace

bool is_vla_type(const a_type* type) {
  for (type = f_skip_typerefs(type); type->kind == tk_array;
       type = f_skip_typerefs(type->variant.array.element_type))
    if (is_vla_level(type))
      return true;
  return false;
}

bool is_variably_modified_type(const a_type* type) {
  return traverse_type_tree(
      const_cast<a_type*>(type),
      [](a_type* component) { return component->kind == tk_array && is_vla_level(component); },
      ttf_none);
}

bool is_incomplete_array_type(const a_type* type) {
  type = f_skip_typerefs(type);
  if (type->kind != tk_array)
    return false;
  const an_array_type_variant& array = type->variant.array;
  return !array.bound_is_constant && !array.bound_is_expr && !array.is_vla &&
         !array.flexible_not_allowed && array.bound.number_of_elements == 0;
}

bool is_flexible_array_type(const a_type* type) {
  type = f_skip_typerefs(type);
  if (type->kind != tk_array)
    return false;
  const an_array_type_variant& array = type->variant.array;
  return !array.bound_is_constant && !array.bound_is_expr && !array.is_vla &&
         array.bound.number_of_elements == 0 && (!array.flexible_not_allowed || gpp_mode);
}

bool is_std_nothrow_type(const a_type* type) {
  const a_source_correspondence& head = f_skip_typerefs(type)->source_corresp;
  const a_scope* parent = head.parent_scope;
  return is_class_struct_union_type(type) && head.name != nullptr &&
         strcmp(head.name, "nothrow_t") == 0 && parent != nullptr && parent->kind == sk_namespace &&
         parent->assoc.namespace_entry->is_std;
}

bool is_passed_by_ref_type(const a_type*) {
  return false;
}

bool routine_type_is_prototyped(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_routine && type->variant.routine.routine_supplement->prototyped;
}

bool routine_type_has_ellipsis(const a_type* type) {
  type = f_skip_typerefs(type);
  return type->kind == tk_routine && type->variant.routine.routine_supplement->has_ellipsis;
}

// --- Parts of types.

a_type* type_pointed_to(const a_type* pointer_or_reference) {
  const a_type* type = f_skip_typerefs(pointer_or_reference);
  return type->kind == tk_pointer ? type->variant.pointer.referenced_type : error_type();
}

a_type* array_element_type(const a_type* array) {
  const a_type* type = f_skip_typerefs(array);
  return type->kind == tk_array ? type->variant.array.element_type : error_type();
}

a_type* underlying_array_element_type(const a_type* type) {
  while (is_array_type(type))
    type = array_element_type(type);
  return const_cast<a_type*>(type);
}

a_type* skip_array_types(const a_type* type) {
  return underlying_array_element_type(type);
}

a_type* pm_member_type(const a_type* ptr_to_member) {
  const a_type* type = f_skip_typerefs(ptr_to_member);
  return type->kind == tk_ptr_to_member ? type->variant.ptr_to_member.member_type : error_type();
}

a_type* pm_class_type(const a_type* ptr_to_member) {
  const a_type* type = f_skip_typerefs(ptr_to_member);
  return type->kind == tk_ptr_to_member ? type->variant.ptr_to_member.class_type : error_type();
}

a_type* return_type_of(const a_type* routine_type) {
  const a_type* type = f_skip_typerefs(routine_type);
  return type->kind == tk_routine ? type->variant.routine.return_type : error_type();
}

a_param_type* param_types_of(const a_type* routine_type) {
  const a_type* type = f_skip_typerefs(routine_type);
  return type->kind == tk_routine ? type->variant.routine.routine_supplement->param_types : nullptr;
}

a_class_type_supplement* class_supplement_of(const a_type* type) {
  return f_skip_typerefs(type)->variant.class_struct_union.class_supplement;
}

an_integer_kind int_kind_of(const a_type* integer_type) {
  return f_skip_typerefs(integer_type)->variant.integer.int_kind;
}

namespace {

bool bound_is_a_number(const an_array_type_variant& array) {
  return !array.bound_is_constant && !array.bound_is_expr && !array.is_vla;
}

} // namespace

uint64_t num_array_elements(const a_type* array) {
  const a_type* type = f_skip_typerefs(array);
  if (type->kind != tk_array || !bound_is_a_number(type->variant.array))
    return 0;
  return type->variant.array.bound.number_of_elements;
}

bool has_any_zero_bound(const a_type* array) {
  for (const a_type* type = f_skip_typerefs(array); type->kind == tk_array;
       type = f_skip_typerefs(type->variant.array.element_type))
    if (bound_is_a_number(type->variant.array) && type->variant.array.bound.number_of_elements == 0)
      return true;
  return false;
}

bool has_any_unknown_specified_bound(const a_type* array) {
  for (const a_type* type = f_skip_typerefs(array); type->kind == tk_array;
       type = f_skip_typerefs(type->variant.array.element_type))
    if (!bound_is_a_number(type->variant.array))
      return true;
  return false;
}

a_type* f_underlying_type_of_derived_type(const a_type* type) {
  switch (type->kind) {
  case tk_pointer:
    return type->variant.pointer.referenced_type;
  case tk_routine:
    return type->variant.routine.return_type;
  case tk_array:
    return type->variant.array.element_type;
  case tk_ptr_to_member:
    return type->variant.ptr_to_member.member_type;
  default:
    return nullptr;
  }
}

a_type* find_bottom_of_type(const a_type* type) {
  for (;;) {
    const a_type* bare = f_skip_typerefs(type);
    const a_type* underlying = f_underlying_type_of_derived_type(bare);
    if (underlying == nullptr)
      return const_cast<a_type*>(bare);
    type = underlying;
  }
}

a_type* type_specifier_of_type(const a_type* type) {
  for (;;) {
    // A typedef, a qualified type of one, or any type that no declarator makes
    // is what the specifiers gave.
    const a_type* unnamed = skip_typerefs_not_typedefs(type);
    const a_type* underlying = f_underlying_type_of_derived_type(unnamed);
    if (underlying == nullptr)
      return const_cast<a_type*>(type);
    type = underlying;
  }
}

// --- Integer and floating kinds.

bool int_kind_is_signed(int kind) {
  switch (kind) {
  case ik_char:
    return targ_has_signed_chars;
  case ik_signed_char:
  case ik_short:
  case ik_int:
  case ik_long:
  case ik_long_long:
    return true;
  default:
    return false;
  }
}

an_integer_kind unsigned_int_kind_of(int kind) {
  if (kind <= ik_unsigned_char)
    return ik_unsigned_char;
  return static_cast<an_integer_kind>((kind + 1) / 2 * 2);
}

an_integer_kind signed_int_kind_of(int kind) {
  return static_cast<an_integer_kind>(unsigned_int_kind_of(kind) - 1);
}

namespace {

struct a_size_and_alignment {
  int size;      // bytes
  int alignment; // bytes
  int precision; // bits
};

a_size_and_alignment integer_layout(int kind) {
  switch (kind) {
  case ik_short:
  case ik_unsigned_short:
    return {targ_sizeof_short, targ_alignof_short, targ_precisionof_short};
  case ik_int:
  case ik_unsigned_int:
    return {targ_sizeof_int, targ_alignof_int, targ_precisionof_int};
  case ik_long:
  case ik_unsigned_long:
    return {targ_sizeof_long, targ_alignof_long, targ_precisionof_long};
  case ik_long_long:
  case ik_unsigned_long_long:
    return {targ_sizeof_long_long, targ_alignof_long_long, targ_precisionof_long_long};
  default:
    return {1, 1, targ_char_bit};
  }
}

a_size_and_alignment float_layout(int kind) {
  switch (kind) {
  case fk_float:
    return {targ_sizeof_float, targ_alignof_float, targ_flt_mant_dig};
  case fk_double:
    return {targ_sizeof_double, targ_alignof_double, targ_dbl_mant_dig};
  case fk_float80:
    return {targ_sizeof_float80, targ_alignof_float80, targ_flt80_mant_dig};
  case fk_float128:
    return {targ_sizeof_float128, targ_alignof_float128, targ_flt128_mant_dig};
  default:
    return {targ_sizeof_long_double, targ_alignof_long_double, targ_ldbl_mant_dig};
  }
}

} // namespace

void get_integer_size_and_alignment(int kind, uint64_t* size, uint32_t* alignment,
                                    uint64_t* precision) {
  a_size_and_alignment layout = integer_layout(kind);
  if (size != nullptr)
    *size = static_cast<uint64_t>(layout.size);
  if (alignment != nullptr)
    *alignment = static_cast<uint32_t>(layout.alignment);
  if (precision != nullptr)
    *precision = static_cast<uint64_t>(layout.precision);
}

void get_float_size_and_alignment(int kind, uint64_t* size, uint32_t* alignment) {
  a_size_and_alignment layout = float_layout(kind);
  if (size != nullptr)
    *size = static_cast<uint64_t>(layout.size);
  if (alignment != nullptr)
    *alignment = static_cast<uint32_t>(layout.alignment);
}

int precision_of_int_kind(int kind) {
  return integer_layout(kind).precision;
}

int mantissa_digits_of_float_kind(int kind) {
  return float_layout(kind).precision;
}

uint64_t size_of_pointer_to(const a_type* type, uint32_t* alignment) {
  if (targ_all_pointers_same_size) {
    if (alignment != nullptr)
      *alignment = static_cast<uint32_t>(targ_alignof_pointer);
    return static_cast<uint64_t>(targ_sizeof_pointer);
  }
  if (alignment != nullptr)
    *alignment = 1;
  return static_cast<uint64_t>(type != nullptr && is_function_type(type)
                                   ? targ_sizeof_function_pointer
                                   : targ_sizeof_data_pointer);
}

// --- Walking a type.

namespace {

// One walk. Several ways may lead to a routine type or a class, and the
// template arguments of a base class may name the derived class; the set keeps
// each from being entered twice.
struct a_type_traversal {
  bool (*callback)(a_type* type);
  unsigned flags;
  std::unordered_set<const a_type*> entered;

  // Expressions name types of their own: of casts, of the operands of sizeof.
  bool visit_types_of_expr(an_expr_node* expr) {
    an_expr_or_stmt_traversal_block block;
    clear_expr_or_stmt_traversal_block(&block);
    block.data = this;
    block.process_expr = [](an_expr_node* node, an_expr_or_stmt_traversal_block* state) {
      bool has_type_operand = (node->kind == expr_sizeof_like || node->kind == expr_alignof_like) &&
                              node->variant.sizeof_like.is_type;
      auto* traversal = static_cast<a_type_traversal*>(state->data);
      state->found = traversal->visit(node->type) ||
                     (has_type_operand && traversal->visit(node->variant.sizeof_like.operand.type));
      state->terminate = state->found;
    };
    block.process_constant = [](a_constant* constant, an_expr_or_stmt_traversal_block* state) {
      state->found = static_cast<a_type_traversal*>(state->data)->visit_constant(constant);
      state->terminate = state->found;
    };
    traverse_expr(expr, &block);
    return block.found;
  }

  bool visit_constant(const a_constant* constant) {
    if (constant->type != nullptr && visit(constant->type))
      return true;
    if (constant->kind != con_template_param)
      return false;
    const a_template_param_value& value = constant->value.template_param;
    return value.is_type && value.param_data.type != nullptr && visit(value.param_data.type);
  }

  bool visit_bound(const an_array_type_variant& array) {
    if (array.bound_is_constant)
      return visit_constant(array.bound.dependent_constant);
    return array.bound_is_expr && !array.is_vla && array.bound.expr != nullptr &&
           visit_types_of_expr(array.bound.expr);
  }

  bool visit_params(a_type* routine_type) {
    for (a_param_type* param = param_types_of(routine_type); param != nullptr; param = param->next)
      if (visit(param->type))
        return true;
    return false;
  }

  bool visit_template_args(const a_template_arg* args) {
    for (; args != nullptr; args = args->next)
      if (args->kind == tak_type && args->value.type != nullptr && visit(args->value.type))
        return true;
    return false;
  }

  bool visit_class(a_type* type) {
    const a_class_type_supplement* supplement = class_supplement_of(type);
    if (!(flags & (ttf_template_args | ttf_base_classes)) || !entered.insert(type).second)
      return false;
    if ((flags & ttf_template_args) && visit_template_args(supplement->template_args))
      return true;
    if (flags & ttf_base_classes)
      for (a_base_class* base = supplement->base_classes; base != nullptr; base = base->next)
        if (base->is_direct && visit(base->type))
          return true;
    return false;
  }

  // The parts beside the type on which the type is built.
  bool visit_side_parts(a_type* type) {
    switch (type->kind) {
    case tk_routine:
      return (flags & ttf_param_types) && entered.insert(type).second && visit_params(type);
    case tk_array:
      return (flags & ttf_array_bounds) && visit_bound(type->variant.array);
    case tk_ptr_to_member:
      return visit(type->variant.ptr_to_member.class_type);
    case tk_class:
    case tk_struct:
    case tk_union:
      return visit_class(type);
    default:
      return false;
    }
  }

  bool visit(a_type* type) {
    check_stack_limit();
    for (; type != nullptr; type = f_underlying_type_of_derived_type(type)) {
      for (; type->kind == tk_typeref; type = type->variant.typeref.referenced_type)
        if ((flags & ttf_through_typerefs) && callback(type))
          return true;
      if (callback(type) || visit_side_parts(type))
        return true;
    }
    return false;
  }
};

} // namespace

bool traverse_type_tree(a_type* type, bool (*callback)(a_type* type), unsigned flags) {
  a_type_traversal traversal = {callback, flags, {}};
  return traversal.visit(type);
}

bool is_template_dependent_type(a_type* type) {
  return traverse_type_tree(
      type,
      [](a_type* component) {
        switch (component->kind) {
        case tk_template_param:
          return true;
        case tk_typeref:
          return is_dependent_decltype(component);
        case tk_array:
          return component->variant.array.bound_is_constant != 0;
        case tk_class:
        case tk_struct:
        case tk_union:
          return component->variant.class_struct_union.is_dependent != 0;
        default:
          return false;
        }
      },
      ttf_array_bounds | ttf_param_types | ttf_template_args | ttf_through_typerefs);
}

bool is_or_contains_error_type(a_type* type) {
  return traverse_type_tree(
      type, [](a_type* component) { return component->kind == tk_error; },
      ttf_array_bounds | ttf_param_types | ttf_template_args);
}

bool is_or_contains_local_type(a_type* type) {
  return traverse_type_tree(
      type,
      [](a_type* component) {
        bool is_tag = is_class_struct_union_kind(component->kind) || is_enum_type(component);
        return is_tag && component->source_corresp.local_to_function;
      },
      ttf_param_types | ttf_template_args);
}

bool is_or_contains_template_param(a_type* type) {
  return traverse_type_tree(
      type, [](a_type* component) { return component->kind == tk_template_param; },
      ttf_array_bounds | ttf_param_types | ttf_template_args);
}

bool is_or_contains_unnamed_namespace_type(a_type* type) {
  return traverse_type_tree(
      type,
      [](a_type* component) {
        for (const a_scope* scope = component->source_corresp.parent_scope; scope != nullptr;
             scope = scope->parent)
          if (scope->kind == sk_namespace &&
              scope->assoc.namespace_entry->source_corresp.is_unnamed)
            return true;
        return false;
      },
      ttf_param_types | ttf_template_args);
}
