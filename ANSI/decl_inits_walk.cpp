// The walk of an initialiser's components against a type (C99 6.7.8 p11 to
// p23): one object at a time. Arrays, structs and unions are walked by
// decl_inits_aggregate.cpp.

#include "const_ints.h"
#include "decl_inits_int.h"
#include "expr.h"
#include "expr_int.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lexical.h"
#include "mode_words.h"
#include "overload.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

// ---- Messages ----

void init_error(an_error_code code, const a_source_position* position, an_init_state* state) {
  if (!state->error_reported)
    pos_error(code, position);
  state->error_reported = true;
}

void init_type_error(an_error_code code, const a_source_position* position, a_type* type,
                     an_init_state* state) {
  if (!state->error_reported)
    pos_ty_error(code, position, type);
  state->error_reported = true;
}

void init_feature_error(const char* construct, const a_source_position* position,
                        an_init_state* state) {
  if (!state->error_reported)
    pos_st_error(ec_feature_not_allowed_in_current_mode, position, construct);
  state->error_reported = true;
}

void report_excess_components(an_init_component** list, an_init_state* state) {
  if (!first_init_component(list) || state->error_reported)
    return;
  a_source_position excess = init_component_pos(*list);
  pos_error(ec_too_many_initializer_values, &excess);
}

// ---- Expressions ----

// What a constructor makes for an initialiser is the object itself, and no
// temporary that is copied (C++11 12.8 p31); null for another expression.
static a_dynamic_init* elided_construction(const an_expr_node* expr) {
  if (expr->kind != expr_temp_init || expr->variant.dynamic_init->kind != dik_constructor)
    return nullptr;
  a_dynamic_init* init = expr->variant.dynamic_init;
  init->is_temporary = false;
  init->is_copy_elided = true;
  return init;
}

static a_constant* make_dynamic_value(an_expr_node* expr, a_type* type) {
  a_dynamic_init* init = elided_construction(expr);
  if (init) {
    wrap_up_dynamic_init_full_expression(init);
  } else {
    init = alloc_dynamic_init(dik_expr);
    init->variant.expr = wrap_up_full_expression(expr);
  }
  a_constant* constant = alloc_constant(con_dynamic_init);
  constant->type = type;
  constant->value.dynamic_init = init;
  return constant;
}

// C++11 8.5.4 p7. GNU C++ only warns where the value isn't known.
static void check_narrowing(an_operand* operand, a_type* type, const an_init_state* state) {
  an_error_code code;
  if (!state->is_list_init || !list_init_enabled ||
      !(is_reference_type(type) || is_arithmetic_or_enum_type(type)))
    return;
  if (is_reference_type(type))
    type = type_pointed_to(skip_typerefs(type)); // of the temporary, where one is made
  else
    do_operand_transformations(operand, ot_keep_overload_set);
  if (is_error_operand(operand) || !is_arithmetic_or_enum_type(operand->type))
    return;
  const a_constant* constant = constant_of_operand(operand);
  if (!is_narrowing_conversion(operand->type, constant, type, &code))
    return;
  an_error_severity severity = gnu_mode && constant == nullptr ? es_warning : es_error;
  pos_ty2_diagnostic(severity, code, &operand->position, operand->type, type);
}

a_constant* convert_initializer(an_init_component* component, a_type* type, an_init_state* state) {
  an_operand* operand = &component->variant.operand;
  a_source_position position = operand->position;
  a_constant value;
  const auto errors_before = total_errors;
  check_narrowing(operand, type, state);
  // `T x(value)` may use explicit functions (C++11 13.3.1.5 p1).
  if (state->is_parenthesized && !is_reference_type(type) && !is_class_struct_union_type(type))
    convert_operand_by_conversion_function(operand, type, true);
  if (total_errors == errors_before)
    prep_initializer_operand(operand, type, ec_bad_initializer_type);
  if (total_errors != errors_before || is_error_operand(operand) || is_error_type(type)) {
    state->error_reported = true;
    return nullptr;
  }
  if (operand_constant_value(operand, &value))
    return alloc_unshared_constant(&value);
  if (state->constant_required) {
    init_error(ec_expr_not_constant, &position, state);
    return nullptr;
  }
  return make_dynamic_value(make_node_from_operand(operand), operand->type);
}

static a_constant* expression_element(an_init_component** list, a_type* type,
                                      an_init_state* state) {
  a_constant* value = convert_initializer(*list, type, state);
  drop_first_init_component(list);
  return value;
}

bool whole_aggr_class_init_possible(const an_init_component* component, a_type* type) {
  if (component->kind != ick_expression || !is_class_struct_union_type(type))
    return false;
  if (in_C_mode() && std_version < 199901 && !gnu_mode)
    return false;
  a_type* source = component->variant.operand.type;
  return source && is_class_struct_union_type(source) &&
         types_are_compatible(skip_typerefs(source), skip_typerefs(type));
}

// The value of a compound literal that stands for a constant initialiser of
// its type: GNU C takes it as if its braces stood alone. Null for others.
static const a_constant* value_of_compound_literal(const an_init_component* component, a_type* type,
                                                   const an_init_state* state) {
  if (!gnu_mode || !state->constant_required || component->kind != ick_expression ||
      component->variant.operand.kind != ok_expression)
    return nullptr;
  const an_expr_node* expr = component->variant.operand.variant.expr;
  const a_constant* value = nullptr;
  if (expr->kind == expr_variable && expr->variant.variable.ptr->source_corresp.name == nullptr &&
      expr->variant.variable.ptr->init_kind == initk_constant)
    value = expr->variant.variable.ptr->initializer.constant;
  else if (expr->kind == expr_temp_init && expr->variant.dynamic_init->kind == dik_constant)
    value = expr->variant.dynamic_init->variant.constant;
  bool fits =
      value != nullptr && types_are_compatible(skip_typerefs(expr->type), skip_typerefs(type));
  return fits ? value : nullptr;
}

// ---- Lists against scalars ----

// An array or a class, that the components of a list initialise one by one.
static bool takes_list(const a_type* bare) {
  return bare->kind == tk_array || is_class_struct_union_kind(bare->kind);
}

a_constant* value_initialized_scalar(a_type* type, const a_source_position* position,
                                     an_init_state* state) {
  if (is_reference_type(type)) {
    init_error(ec_exp_primary_expr, position, state);
    return nullptr;
  }
  a_constant zero;
  make_value_initialized_constant(make_unqualified_type(skip_typerefs(type)), &zero);
  return alloc_unshared_constant(&zero);
}

static a_constant* value_of_empty_list(const an_init_component* list, a_type* type,
                                       an_init_state* state) {
  const a_source_position* position = &list->variant.braced.end_position;
  if (in_cplusplus_mode() && list_init_enabled)
    return value_initialized_scalar(type, position, state);
  init_error(ec_exp_primary_expr, position, state);
  return nullptr;
}

static a_constant* scalar_in_braces(an_init_component** list, a_type** type, an_init_state* state) {
  an_init_component* component = *list;
  a_source_position position = component->variant.braced.start_position;
  a_constant* value = nullptr;
  if (!component->variant.braced.first)
    value = value_of_empty_list(component, *type, state);
  else if (component->variant.braced.first->kind == ick_designator)
    init_type_error(ec_invalid_designator_kind, &position, *type, state);
  else
    value = init_element(&component->variant.braced.first, type, state);
  report_excess_components(&component->variant.braced.first, state);
  drop_first_init_component(list);
  return value;
}

// ---- References (C++11 8.5.4 p3) ----

static bool is_object_of_class(a_type* given, a_type* wanted) {
  return is_class_struct_union_type(given) &&
         (cast_identical_types(given, wanted) || find_base_class_of(given, wanted));
}

// A list for a reference to a class or an array makes a temporary, unless it
// holds one such object that the reference may be bound to.
static bool needs_temporary(an_init_component* list, const a_type* bare) {
  if (!list_init_enabled || !is_reference_type(bare))
    return false;
  a_type* referenced = type_pointed_to(bare);
  const bool is_array = is_array_type(referenced);
  if (is_array ? is_incomplete_array_type(referenced) : !is_class_struct_union_type(referenced))
    return false;
  an_init_component* first = first_init_component(&list->variant.braced.first);
  if (!first || first->kind != ick_expression || first_init_component(&first->next))
    return true;
  a_type* given = first->variant.operand.type;
  return is_array ? !is_array_type(given) : !is_object_of_class(given, referenced);
}

static a_constant* temporary_for_reference(an_init_component** list, a_type* type,
                                           an_init_state* state) {
  an_init_component* braces = *list;
  a_source_position position = braces->variant.braced.start_position;
  an_init_component* object = alloc_init_component(ick_expression);
  *list = braces->next;
  braces->next = nullptr;
  make_list_operand(braces, type_pointed_to(skip_typerefs(type)), false, &position,
                    &object->variant.operand);
  set_operand_range(&object->variant.operand, &position, &curr_construct_end_position);
  a_constant* value = convert_initializer(object, type, state);
  free_init_component_list(object);
  return value;
}

// ---- Complex values: GNU C's `{re, im}` ----

static bool is_pair_for_complex(an_init_component* component, const a_type* bare) {
  if (bare->kind != tk_complex || !gcc_mode || gnu_version < 40700)
    return false;
  an_init_component* first = first_init_component(&component->variant.braced.first);
  return first && first->kind == ick_expression && first_init_component(&first->next) &&
         first->next->kind == ick_expression;
}

static an_expr_node* node_of_value(a_constant* value) {
  return value->kind == con_dynamic_init ? value->value.dynamic_init->variant.expr
                                         : alloc_node_for_constant(value);
}

static a_constant* complex_value(a_constant* real, a_constant* imaginary, a_type* type) {
  if (real->kind == con_float && imaginary->kind == con_float) {
    a_constant* value = alloc_constant(con_complex);
    value->type = type;
    value->value.complex_value = alloc_complex_value();
    value->value.complex_value->real = real->value.float_value;
    value->value.complex_value->imaginary = imaginary->value.float_value;
    return value;
  }
  an_expr_node* first = node_of_value(real);
  first->next = node_of_value(imaginary);
  first->next->next = nullptr;
  return make_dynamic_value(make_operator_node(eok_real_plus_imag, type, first), type);
}

static a_constant* complex_in_braces(an_init_component** list, const a_type* bare,
                                     an_init_state* state) {
  an_init_component** elements = &(*list)->variant.braced.first;
  a_type* part = float_type(bare->variant.float_kind);
  a_constant* real = expression_element(elements, part, state);
  a_constant* imaginary = expression_element(elements, part, state);
  report_excess_components(elements, state);
  drop_first_init_component(list);
  return real && imaginary ? complex_value(real, imaginary, complex_type(bare->variant.float_kind))
                           : nullptr;
}

// ---- One object ----

// Takes a whole object in one step where its component allows it: a compound
// literal that stands for its value, a string for an array.
static a_constant* take_whole_object(an_init_component** list, a_type** type,
                                     const an_init_state* state) {
  const an_init_component* component = *list;
  bool is_parenthesized = false;
  a_constant* value = nullptr;
  a_type* bare = skip_typerefs(*type);
  if (const a_constant* literal = value_of_compound_literal(component, *type, state)) {
    value = alloc_unshared_constant(literal);
    if (is_incomplete_array_type(*type))
      *type = value->type;
  } else if (bare->kind == tk_array) {
    literal = whole_array_init_possible(component, bare, &is_parenthesized);
    if (!literal)
      return nullptr;
    a_source_position position = init_component_pos(component);
    if (is_parenthesized)
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                     ec_nonstandard_parenthesized_string_initializer, &position);
    value = string_initializer(literal, type, &position);
  }
  if (value)
    drop_first_init_component(list);
  return value;
}

static bool uses_explicit_constructor(const an_operand* object) {
  return object->kind == ok_expression && object->variant.expr->kind == expr_temp_init &&
         object->variant.expr->variant.dynamic_init->kind == dik_constructor &&
         object->variant.expr->variant.dynamic_init->variant.constructor.routine->is_explicit;
}

// A class with constructors, bases or hidden members has no members to be
// listed: the list holds the arguments of a constructor (C++11 8.5.4 p3).
static a_constant* construct_from_list(an_init_component** list, a_type* type,
                                       an_init_state* state) {
  a_source_position position = init_component_pos(*list);
  an_operand object;
  if (!list_init_enabled) {
    init_type_error(ec_brace_initialization_not_allowed, &position, type, state);
    drop_first_init_component(list);
    return nullptr;
  }
  complete_braced_init_list_parsing(*list);
  make_class_temporary(skip_typerefs(type), (*list)->variant.braced.first, &position, &object);
  drop_first_init_component(list);
  if (uses_explicit_constructor(&object) && !(state->is_direct_list && state->depth == 0))
    init_error(ec_explicit_ctor_in_copy_list_init, &position, state);
  if (is_error_operand(&object) || state->error_reported) {
    state->error_reported = true;
    return nullptr;
  }
  return make_dynamic_value(make_node_from_operand(&object), object.type);
}

static a_constant* drop_element(an_init_component** list, an_init_state* state) {
  drop_first_init_component(list);
  state->error_reported = true;
  return nullptr;
}

a_constant* init_element(an_init_component** list, a_type** type, an_init_state* state) {
  check_stack_limit();
  a_type* bare = skip_typerefs(*type);
  if (is_error_type(bare))
    return drop_element(list, state);
  if (a_constant* value = take_whole_object(list, type, state))
    return value;
  const bool is_list = (*list)->kind == ick_braced_list;
  if (is_list && takes_list(bare) && !is_aggregate_or_union_type(bare))
    return construct_from_list(list, *type, state);
  if (is_list && takes_list(bare))
    return braced_aggregate(list, type, state);
  if (is_list && needs_temporary(*list, bare))
    return temporary_for_reference(list, *type, state);
  if (is_list && is_pair_for_complex(*list, bare))
    return complex_in_braces(list, bare, state);
  if (is_list)
    return scalar_in_braces(list, type, state);
  if (!is_aggregate_or_union_type(bare) || whole_aggr_class_init_possible(*list, *type))
    return expression_element(list, *type, state);
  return unbraced_aggregate(list, type, state);
}

// C89 says what is missing where an aggregate has no braces.
static bool lacks_braces(const an_init_component* component, const a_type* type) {
  if (!in_C_mode() || std_version >= 199901)
    return false;
  return is_array_type(type) || !is_class_struct_union_type(component->variant.operand.type);
}

a_constant* init_object(an_init_component** list, a_type** type, an_init_state* state) {
  if (is_error_component(*list))
    return drop_element(list, state);
  if ((*list)->kind == ick_braced_list || is_error_type(*type) || !takes_list(skip_typerefs(*type)))
    return init_element(list, type, state);
  if (a_constant* value = take_whole_object(list, type, state))
    return value;
  if (lacks_braces(*list, *type)) {
    a_source_position position = init_component_pos(*list);
    init_error(ec_missing_initializer_list, &position, state);
    return drop_element(list, state);
  }
  return expression_element(list, *type, state);
}
