// The object of a member function, and the initialisers of fields (C++11 9.3.2,
// 9.2 p5).

#include "class_decl_int.h"
#include "decl_inits_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lambda.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "types.h"

// ---- `this` ----

// C++11 9.3.2: a pointer that can't be changed, to the class with the qualifiers
// of the function.
static a_variable* make_this_variable(a_type* class_type, a_type_qualifier_set qualifiers) {
  a_type* object_type = make_qualified_type(class_type, qualifiers & tq_cv);
  a_variable* variable = alloc_variable(sc_auto);
  variable->type = make_qualified_type(make_pointer_type(object_type), tq_const);
  variable->is_this_parameter = true;
  variable->is_parameter = true;
  variable->is_compiler_generated = true;
  variable->is_defined = true;
  variable->source_corresp.local_to_function = true;
  return variable;
}

void declare_this_parameter(a_routine* routine, a_scope* scope) {
  if (is_error_type(routine->type) || routine->is_static_member)
    return;
  const a_routine_type_supplement* supplement =
      skip_typerefs(routine->type)->variant.routine.routine_supplement;
  if (!supplement->this_class)
    return;
  scope->this_variable = make_this_variable(supplement->this_class, supplement->this_qualifiers);
  scope->this_variable->source_corresp.position = routine->source_corresp.position;
  set_parent_scope(&scope->this_variable->source_corresp, iek_variable, scope);
}

a_variable* set_this_of_class(a_type* class_type, a_variable* variable) {
  a_scope* scope = class_supplement_of(class_type)->scope;
  a_variable* saved = scope->this_variable;
  scope->this_variable = variable;
  return saved;
}

a_variable* make_this_of_class(a_type* class_type, a_type_qualifier_set qualifiers) {
  a_variable* variable = make_this_variable(class_type, qualifiers);
  variable->source_corresp.position = class_type->source_corresp.position;
  return variable;
}

// ---- Subobjects ----

static a_dynamic_init* dynamic_init_of_value(a_constant* value, bool contains_nonconstant) {
  if (value->kind == con_dynamic_init)
    return value->value.dynamic_init;
  a_dynamic_init* init =
      alloc_dynamic_init(contains_nonconstant ? dik_nonconstant_aggregate : dik_constant);
  init->variant.constant = value;
  init->contains_nonconstant = contains_nonconstant;
  return init;
}

a_dynamic_init* initialize_subobject(a_type* type, an_init_component** list) {
  an_init_state state = {};
  a_constant* value = init_object(list, &type, &state);
  if (*list && !state.error_reported) {
    a_source_position position = init_component_pos(*list);
    pos_error(ec_too_many_initializer_values, &position);
    state.error_reported = true;
  }
  return value && !state.error_reported ? dynamic_init_of_value(value, state.contains_nonconstant)
                                        : make_error_constant_dynamic_init();
}

// ---- Field initialisers ----

// The initialiser behind `=`, or a braced list.
static a_dynamic_init* scan_initializer_of_field(a_field* field) {
  an_expr_stack_entry entry;
  bool is_direct = curr_token != tok_assign;
  if (!is_direct)
    get_token();
  push_expr_stack(ek_normal, &entry, false, false);
  an_init_component* list = scan_init_component();
  field->default_init_range.end = curr_construct_end_position;
  a_dynamic_init* init = initialize_subobject(field->type, &list);
  free_init_component_list(list);
  pop_expr_stack();
  init->is_default_member_init = true;
  init->is_list_init = is_direct;
  return init;
}

void scan_field_initializer(a_field* field, a_type* class_type) {
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  a_variable* saved_this = set_this_of_class(class_type, make_this_of_class(class_type, tq_none));
  void* saved_entity = set_initialized_entity(field);
  field->default_init = scan_initializer_of_field(field);
  set_initialized_entity(saved_entity);
  set_parent_field_for_closure_types(field);
  set_this_of_class(class_type, saved_this);
  switch_back_to_original_region(saved_region);
}
