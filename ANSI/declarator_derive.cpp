// The types that declarators make of the specifiers' type (C99 6.7.5.1 to
// 6.7.5.3; C++11 8.3).

#include "declarator_int.h"
#include "error.h"
#include "il.h"
#include "mode_words.h"
#include "types.h"

std::vector<a_derivation> derivations;

// ---- Functions ----

bool check_return_type(a_type* type, const a_source_position* position) {
  if (is_function_type(type)) {
    pos_error(ec_function_returning_function, position);
    return false;
  }
  if (is_array_type(type)) {
    pos_error(ec_function_returning_array, position);
    return false;
  }
  if (is_variably_modified_type(type)) {
    pos_error(ec_vla_in_return_type, position);
    return false;
  }
  return true;
}

static bool is_placeholder(const a_type* type) {
  const a_type* bare = skip_typerefs(type);
  return bare->kind == tk_template_param &&
         bare->variant.template_param.template_param_supplement->placeholder != plk_none;
}

static bool contains_placeholder(a_type* type) {
  return is_placeholder(find_bottom_of_type(type));
}

// C++11 8.3.5 p2.
static a_type* trailing_return_type(const a_derivation* function, a_type* type) {
  if (!contains_placeholder(type)) {
    pos_error(ec_trailing_return_type_requires_auto, &function->position);
    return error_type();
  }
  if (!is_placeholder(type) || get_type_qualifiers(type) != tq_none) {
    pos_error(ec_trailing_return_type_function_without_simple_auto, &function->position);
    return error_type();
  }
  return function->trailing_return;
}

static a_type* function_of_derivation(const a_derivation* function, a_type* type) {
  if (function->trailing_return) {
    type = trailing_return_type(function, type);
    if (is_error_type(type))
      return type;
  } else if (contains_placeholder(type)) {
    pos_error(ec_missing_trailing_return_type, &function->position);
    return error_type();
  }
  if (!check_return_type(type, &function->position))
    return error_type();
  function->routine_type->variant.routine.return_type = type;
  set_routine_calling_method_flag(function->routine_type);
  return function->routine_type;
}

// ---- Arrays ----

static bool holds_flexible_array(const a_type* type) {
  const a_type* bare = skip_typerefs(type);
  return is_class_struct_union_kind(bare->kind) && class_supplement_of(bare)->has_flexible_array;
}

// The form of the element type; false after a message.
static bool is_element_type(a_type* type, const a_source_position* position) {
  an_error_code code = is_function_type(type)           ? ec_array_of_function
                       : is_void_type(type)             ? ec_array_of_void
                       : is_reference_type(type)        ? ec_array_of_reference
                       : is_placeholder(type)           ? ec_auto_type_in_array_type
                       : is_incomplete_array_type(type) ? ec_flexible_array_member_not_allowed
                                                        : 0;
  if (code != 0)
    pos_error(code, position);
  return code == 0;
}

// C99 6.7.5.2 p1; 6.7.2.1 p2.
static bool check_element_type(a_type* type, const a_source_position* position) {
  if (!is_element_type(type, position))
    return false;
  const a_type* bare = skip_typerefs(type);
  if (is_incomplete_type(type)) {
    if (gnu_mode || strict_ansi_mode) {
      pos_error(ec_incomplete_type_not_allowed, position);
      return false;
    }
    pos_warning(ec_array_of_incomplete_type, position);
  } else if (holds_flexible_array(type) && (!gnu_mode || report_gnu_extensions)) {
    pos_diagnostic(strict_ansi_discretionary_severity,
                   ec_nonstandard_array_with_flexible_array_element, position);
  } else if (is_class_struct_union_kind(bare->kind) &&
             bare->variant.class_struct_union.is_abstract) {
    pos_ty_error(ec_array_of_abstract_class, position, type);
    return false;
  }
  return true;
}

static a_type* array_of_derivation(const a_derivation* derivation, a_type* type) {
  if (derivation->is_bad || !check_element_type(type, &derivation->position))
    return error_type();
  error_position = derivation->position;
  a_type* array = derivation->bound_is_known ? make_array_type(type, derivation->bound)
                                             : make_incomplete_array_type(type);
  if (array->kind != tk_array)
    return error_type();
  array->variant.array.has_static_bound = derivation->has_static_bound;
  array->variant.array.bound_qualifiers = derivation->qualifiers & 0x1f;
  if (derivation->bound_is_variable) {
    array->variant.array.is_vla = true;
    array->variant.array.bound_is_star = derivation->bound_is_star;
    array->is_incomplete = false;
    array->is_variably_modified = true;
    array->size = 0;
    if (derivation->bound_expr)
      make_vla_dimension(array, derivation->bound_expr, &derivation->position);
    else if (derivation->bound_tokens)
      add_vla_fixup_entry(array, derivation->bound_tokens, &derivation->position);
  }
  return array;
}

// ---- Pointers and references ----

static bool is_qualified_function_type(const a_type* type) {
  if (!is_function_type(type))
    return false;
  const a_routine_type_supplement* supplement =
      skip_typerefs(type)->variant.routine.routine_supplement;
  return supplement->this_qualifiers != 0 || supplement->has_lvalue_ref_qualifier ||
         supplement->has_rvalue_ref_qualifier;
}

// What a pointer or reference may not lead to: the number, or 0.
static an_error_code rejection_of_target(const a_derivation* derivation, const a_type* type) {
  if (derivation->kind != dk_ptr_to_member && is_qualified_function_type(type))
    return ec_ptr_or_ref_to_qualified_function_type;
  bool to_reference = is_reference_type(type);
  switch (derivation->kind) {
  case dk_pointer:
    return to_reference ? ec_pointer_to_reference : 0;
  case dk_ptr_to_member:
    return to_reference                      ? ec_ptr_to_member_of_reference_type
           : is_void_type(type)              ? ec_ptr_to_member_of_type_void
           : is_variably_modified_type(type) ? ec_ptr_to_member_of_vla_type
                                             : 0;
  default:
    // Only a type that has a name may be a reference already (C++11 8.3.2 p6).
    if (to_reference && !(rvalue_references_enabled && type->kind == tk_typeref))
      return ec_reference_to_reference;
    return is_void_type(type) ? ec_reference_to_void : 0;
  }
}

static a_type* pointer_like_of_derivation(const a_derivation* derivation, a_type* type) {
  switch (derivation->kind) {
  case dk_pointer:
    return make_pointer_type(type);
  case dk_ptr_to_member:
    return ptr_to_member_type_full(type, derivation->class_type, 0);
  default:
    return make_reference_to_reference(type, derivation->kind == dk_rvalue_reference);
  }
}

static a_type* pointer_of_derivation(const a_derivation* derivation, a_type* type) {
  an_error_code code = rejection_of_target(derivation, type);
  if (code != 0) {
    pos_error(code, &derivation->position);
    return error_type();
  }
  a_type* result = pointer_like_of_derivation(derivation, type);
  a_type_qualifier_set qualifiers = derivation->qualifiers;
  if ((qualifiers & tq_restrict) && !restrict_qualifier_is_allowed(result, &derivation->position))
    qualifiers &= ~tq_restrict;
  if ((qualifiers & tq_nullability) &&
      !check_nullability_qualifiers(qualifiers, result, &derivation->position))
    qualifiers &= ~tq_nullability;
  return make_qualified_type(result, qualifiers);
}

a_type* add_to_derived_type_list(const a_derivation* derivation, a_type* type) {
  if (is_error_type(type))
    return type;
  switch (derivation->kind) {
  case dk_array:
    return array_of_derivation(derivation, type);
  case dk_function:
    return function_of_derivation(derivation, type);
  default:
    return pointer_of_derivation(derivation, type);
  }
}
