// Members of classes that are declared again outside of their class (C++11 9.3
// p2, 9.4.2 p2): what a qualified declarator means.

#include "class_decl_int.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "lookup.h"
#include "types.h"

static a_symbol* refuse(a_symbol_locator* locator) {
  set_to_error_locator(locator);
  return nullptr;
}

// The member of the class itself that the locator names; null, after a message,
// for none.
static a_symbol* named_member(a_symbol_locator* locator) {
  a_type* class_type = skip_typerefs(locator->qualifier.class_type);
  if (is_incomplete_type(class_type) && !class_type->variant.class_struct_union.is_being_defined) {
    pos_error(ec_incomplete_type_not_allowed, &locator->position);
    return refuse(locator);
  }
  a_symbol* symbol = names_special_function(locator) && !locator->is_conversion_name
                         ? functions_of_name(class_type, locator)
                         : locator->symbol;
  if (!symbol) {
    pos_ty_error(ec_name_not_member_of_class_or_base_classes, &locator->position, class_type);
    return refuse(locator);
  }
  if (symbol->kind == symk_projection) {
    pos_error(ec_inherited_member_not_allowed, &locator->position);
    return refuse(locator);
  }
  return symbol;
}

// The type of a definition says of its object what that of the class does.
static void take_object_of_member(a_type* type, const a_routine* routine) {
  if (!is_function_type(type) || !is_function_type(routine->type))
    return;
  a_routine_type_supplement* supplement = skip_typerefs(type)->variant.routine.routine_supplement;
  const a_routine_type_supplement* of_member =
      skip_typerefs(routine->type)->variant.routine.routine_supplement;
  supplement->this_class = of_member->this_class;
  supplement->name_linkage = of_member->name_linkage;
}

a_symbol* find_member_function_declaration(a_symbol_locator* locator, a_type* type) {
  a_symbol* functions = named_member(locator);
  if (!functions)
    return nullptr;
  a_symbol* symbol = member_function_redecl_sym(functions, type, locator);
  if (!symbol) {
    report_incompatible_redeclaration(&locator->position, functions);
    return refuse(locator);
  }
  a_routine* routine = symbol->variant.routine;
  if (!is_error_type(type) && !is_error_type(routine->type) &&
      !identical_types(return_type_of(type), return_type_of(routine->type))) {
    pos_error(ec_return_type_cannot_distinguish_functions, &locator->position);
    return refuse(locator);
  }
  take_object_of_member(type, routine);
  return symbol;
}

a_symbol* find_data_member_declaration(a_symbol_locator* locator, bool is_definition) {
  a_symbol* symbol = named_member(locator);
  if (!symbol)
    return nullptr;
  if (symbol->kind == symk_field) {
    pos_error(ec_nonstatic_member_def_not_allowed, &locator->position);
    return refuse(locator);
  }
  if (symbol->kind != symk_static_data_member) {
    report_incompatible_redeclaration(&locator->position, symbol);
    return refuse(locator);
  }
  if (is_in_function() || !is_declared_within_current_scope(symbol)) {
    pos_sy_error(is_definition ? ec_bad_scope_for_definition : ec_bad_scope_for_redeclaration,
                 &locator->position, symbol);
    return refuse(locator);
  }
  return symbol;
}
