// Objects for which no initialiser was written.

#include "decl_inits.h"
#include "error.h"
#include "il.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "types.h"

// C permits a const object without an initialiser; one of automatic duration
// never gets a value.
static void check_const_object_of_c(a_symbol* symbol, const a_type* type) {
  if (is_const_qualified_type(type) && symbol->variant.variable->storage_kind >= sc_auto)
    pos_sy_diagnostic(strict_ansi_mode ? es_warning : es_remark, ec_missing_initializer_on_const,
                      &symbol->position, symbol);
}

static a_field* next_field_without_value(a_field* field);

// Whether the object gets a value from its own initialiser or from a constructor
// of the program.
static bool has_value(const a_field* field) {
  const a_type* type = underlying_array_element_type(field->type);
  check_stack_limit();
  if (field->has_default_init || !is_class_struct_union_type(type))
    return field->has_default_init;
  const a_type* class_type = skip_typerefs(type);
  return class_supplement_of(class_type)->has_user_constructor ||
         !next_field_without_value(class_type->variant.class_struct_union.fields);
}

// The first member, from the field on, that nothing gives a value.
static a_field* next_field_without_value(a_field* field) {
  field = next_initializable_field(field);
  while (field && has_value(field))
    field = next_initializable_field(field->next);
  return field;
}

// Whether some member without a value is a reference; *is_const: or const.
static bool has_reference_member(a_type* class_type, bool* has_const) {
  bool has_reference = false;
  for (a_field* field = next_field_without_value(class_type->variant.class_struct_union.fields);
       field; field = next_field_without_value(field->next)) {
    a_type* type = underlying_array_element_type(field->type);
    *has_const |= is_const_qualified_type(type);
    has_reference |= is_reference_type(type);
  }
  return has_reference;
}

// C++11 8.5 p6, 12.1 p5: a default constructor that leaves a member without
// its value.
static void check_members_of_class(a_symbol* symbol, a_type* class_type) {
  bool has_const = false;
  const a_source_position* position = &symbol->position;
  bool has_reference = has_reference_member(class_type, &has_const);
  if (!has_reference && !has_const)
    return;
  if (!symbol->header)
    pos_error(ec_unnamed_object_with_uninitialized_field, position);
  else if (has_reference)
    pos_sy_error(ec_var_with_uninitialized_member, position, symbol);
  else
    pos_sy_error(ec_var_with_uninitialized_field, position, symbol);
}

// C++11 8.5 p6: a const object needs a default constructor of the program's
// own. One with no member that would lack a value does without.
static void check_const_class_object(a_symbol* symbol, a_type* type, const a_type* class_type) {
  const a_source_position* position = &symbol->position;
  if (!next_field_without_value(class_type->variant.class_struct_union.fields))
    return;
  if (symbol->header)
    pos_syty_error(ec_missing_default_constructor_on_const, position, symbol,
                   make_unqualified_type(type));
  else
    pos_ty_error(ec_missing_default_constructor_on_unnamed_const, position,
                 make_unqualified_type(type));
}

static void check_class_object(a_symbol* symbol, a_type* type) {
  a_type* class_type = skip_typerefs(type);
  if (!is_complete_object_type(class_type) || class_type->kind == tk_union ||
      class_supplement_of(class_type)->has_user_constructor)
    return;
  if (is_const_qualified_type(type))
    check_const_class_object(symbol, type, class_type);
  else
    check_members_of_class(symbol, class_type);
}

void check_for_missing_initializer_full(a_symbol* symbol, a_type* type) {
  if (is_error_type(type))
    return;
  if (in_C_mode())
    return check_const_object_of_c(symbol, type);
  if (is_reference_type(type)) {
    pos_sy_error(ec_missing_initializer_on_reference, &symbol->position, symbol);
    return;
  }
  a_type* element = underlying_array_element_type(type);
  if (is_class_struct_union_type(element))
    check_class_object(symbol, element);
  else if (is_const_qualified_type(element))
    pos_sy_error(ec_missing_initializer_on_const, &symbol->position, symbol);
}

void def_initializer(a_symbol* symbol, const a_source_position*) {
  const auto errors_before = total_errors;
  if (symbol->kind == symk_variable || symbol->kind == symk_static_data_member)
    check_for_missing_initializer_full(symbol, symbol->variant.variable->type);
  if (in_cplusplus_mode() && symbol->kind == symk_variable && total_errors == errors_before &&
      is_class_struct_union_type(skip_array_types(symbol->variant.variable->type)))
    initialize_by_default_constructor(symbol);
}
