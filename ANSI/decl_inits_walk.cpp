// The walk of an initialiser's components against a type (C99 6.7.8 p11 to
// p23). An aggregate becomes a con_aggregate whose elements stand in order;
// an element out of order stands behind a con_designator.

#include <algorithm>

#include "class_decl.h"
#include "const_ints.h"
#include "decl_inits_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

namespace {

// Where an aggregate's walk stands. Positions count array elements, and the
// fields that can be initialised.
struct an_aggregate_walk {
  a_type* type; // of the aggregate, without typerefs
  a_constant* aggregate;
  uint64_t position;      // of the next element
  uint64_t next_in_order; // the position behind the last element stored
  uint64_t limit;         // the number of elements; UINT64_MAX: unknown bound
  uint64_t greatest;      // one above the greatest position stored
  a_field* field;         // at `position`, of a struct or union
  bool has_braces;
};

} // namespace

// ---- Expressions ----

// The end of a list's first component.
static void drop_first(an_init_component** list) {
  an_init_component* component = *list;
  *list = component->next;
  component->next = nullptr;
  free_init_component_list(component);
}

static void init_error(an_error_code code, const a_source_position* position,
                       an_init_state* state) {
  if (!state->error_reported)
    pos_error(code, position);
  state->error_reported = true;
}

static void report_bad_designator(const a_source_position* position, a_type* type,
                                  an_init_state* state) {
  if (!state->error_reported)
    pos_ty_error(ec_invalid_designator_kind, position, type);
  state->error_reported = true;
}

const a_constant* string_literal_of_component(const an_init_component* component) {
  if (component->kind != ick_expression)
    return nullptr;
  const an_operand* operand = &component->variant.operand;
  if (!operand_is_string_literal(operand))
    return nullptr;
  if (operand->kind == ok_constant)
    return &operand->variant.constant;
  const an_expr_node* expr = operand->variant.expr;
  return expr->kind == expr_constant ? expr->variant.constant.ptr : nullptr;
}

static a_constant* dynamic_value(an_operand* operand) {
  a_dynamic_init* init = alloc_dynamic_init(dik_expr);
  init->variant.expr = wrap_up_full_expression(make_node_from_operand(operand));
  a_constant* constant = alloc_constant(con_dynamic_init);
  constant->type = operand->type;
  constant->value.dynamic_init = init;
  return constant;
}

a_constant* convert_initializer(an_init_component* component, a_type* type, an_init_state* state) {
  an_operand* operand = &component->variant.operand;
  a_source_position position = operand->position;
  a_constant value;
  prep_initializer_operand(operand, type, ec_bad_initializer_type);
  if (operand->kind == ok_error || is_error_type(type)) {
    state->error_reported = true;
    return nullptr;
  }
  if (operand_constant_value(operand, &value))
    return alloc_unshared_constant(&value);
  if (state->constant_required) {
    init_error(ec_expr_not_constant, &position, state);
    return nullptr;
  }
  return dynamic_value(operand);
}

// ---- Strings (C99 6.7.8 p14, p15) ----

static int size_of_literal_character(const a_constant* literal) {
  return character_size[literal->string_char_kind];
}

// Whether an array of this element type can hold the literal's characters.
static bool literal_fits_element(const a_constant* literal, const a_type* element) {
  const a_type* bare = skip_typerefs(element);
  if (bare->kind != tk_integer || is_enum_type(bare))
    return false;
  if (literal->string_char_kind == sck_ordinary)
    return is_character_type(bare);
  return !is_character_type(bare) &&
         bare->size == static_cast<uint64_t>(size_of_literal_character(literal));
}

static a_constant* string_initializer(const a_constant* literal, a_type** type,
                                      const a_source_position* position) {
  a_type* array = skip_typerefs(*type);
  uint64_t char_size = size_of_literal_character(literal);
  uint64_t length = literal->value.string.length / char_size; // the terminator counts
  a_constant* constant = alloc_unshared_constant(literal);
  constant->is_string_initializer = true;
  if (is_incomplete_array_type(array)) {
    *type = make_array_type(array_element_type(array), length);
  } else if (num_array_elements(array) < length) {
    uint64_t bound = num_array_elements(array);
    // In C the terminator alone may be left out.
    if (!in_C_mode() || bound + 1 != length)
      pos_warning(ec_excess_characters_in_literal_ignored, position);
    constant->value.string.length = bound * char_size;
  }
  constant->type = *type;
  return constant;
}

// The literal that initialises a whole array, with or without braces.
static const a_constant* whole_array_literal(const an_init_component* component,
                                             const a_type* array) {
  if (component->kind == ick_braced_list) {
    component = component->variant.braced.first;
    if (!component || component->next)
      return nullptr;
  }
  const a_constant* literal = string_literal_of_component(component);
  return literal && literal_fits_element(literal, array_element_type(array)) ? literal : nullptr;
}

// ---- Elements ----

static bool is_aggregate(const a_type* type) {
  return type->kind == tk_array || is_class_struct_union_kind(type->kind);
}

static a_constant* make_designator(const an_aggregate_walk* walk) {
  a_constant* designator = alloc_constant(con_designator);
  designator->type = walk->type;
  if (walk->type->kind == tk_array) {
    designator->value.designator.is_text_or_index = true;
    a_constant* index = alloc_constant(con_integer);
    index->type = size_t_type();
    index->value.int_value = walk->position;
    designator->value.designator.designated.index = index;
  } else {
    designator->value.designator.is_field = true;
    designator->value.designator.designated.field = walk->field;
  }
  return designator;
}

static void store_element(an_aggregate_walk* walk, a_constant* element, an_init_state* state) {
  if (walk->position != walk->next_in_order) {
    add_constant_to_aggregate(make_designator(walk), walk->aggregate);
    walk->aggregate->has_designator = true;
  }
  add_constant_to_aggregate(element, walk->aggregate);
  if (walk->aggregate->value.aggregate.has_dynamic_init) {
    walk->aggregate->contains_nonconstant = true;
    state->contains_nonconstant = true;
  }
}

static void advance(an_aggregate_walk* walk, uint64_t count) {
  walk->position += count;
  walk->next_in_order = walk->position;
  walk->greatest = std::max(walk->greatest, walk->position);
  if (walk->field)
    walk->field =
        walk->type->kind == tk_union ? nullptr : next_initializable_field(walk->field->next);
}

static a_type* element_type_of(const an_aggregate_walk* walk) {
  return walk->type->kind == tk_array ? array_element_type(walk->type) : walk->field->type;
}

// What was stored at the walk's position before, when it is an aggregate that
// a further designator goes on with.
static a_constant* earlier_aggregate(const an_aggregate_walk* walk) {
  a_constant* found = nullptr;
  uint64_t position = 0;
  a_field* field = walk->type->kind == tk_array
                       ? nullptr
                       : next_initializable_field(walk->type->variant.class_struct_union.fields);
  for (a_constant* item = walk->aggregate->value.aggregate.first; item; item = item->next) {
    if (item->kind == con_designator) {
      if (item->value.designator.is_field)
        field = item->value.designator.designated.field;
      else
        position = item->value.designator.designated.index->value.int_value;
      continue;
    }
    bool is_here = walk->type->kind == tk_array ? position == walk->position : field == walk->field;
    if (is_here) {
      if (item->kind == con_string)
        explode_string_initializer(item);
      found = item->kind == con_aggregate ? item : nullptr;
    }
    ++position;
    if (field)
      field = next_initializable_field(field->next);
  }
  return found;
}

// ---- Designators (C99 6.7.8 p6, p7) ----

static uint64_t number_of_field(const a_type* class_type, const a_field* wanted) {
  uint64_t number = 0;
  a_field* field = next_initializable_field(class_type->variant.class_struct_union.fields);
  for (; field && field != wanted; field = next_initializable_field(field->next))
    ++number;
  return number;
}

// A member of an anonymous struct or union leads to that; `goes_on` says that
// the designator has still to be applied inside.
static bool apply_field_designator(an_aggregate_walk* walk, const an_init_component* component,
                                   bool* goes_on, an_init_state* state) {
  a_symbol_locator locator;
  a_source_position position = component->variant.designator.position;
  clear_locator(&locator, &position);
  locator.header = component->variant.designator.field_name;
  a_symbol* symbol = class_qualified_id_lookup(&locator, walk->type, ilo_none);
  if (!symbol || symbol->kind != symk_field) {
    if (!state->error_reported)
      pos_stsy_error(ec_not_a_field, &position, locator.header->identifier,
                     walk->type->source_corresp.symbol);
    state->error_reported = true;
    return false;
  }
  a_field* around = anonymous_field_around(symbol->variant.field, walk->type);
  if (around && !in_C_mode() && !gnu_mode) {
    init_error(ec_indirect_anon_union_designator, &position, state);
    return false;
  }
  *goes_on = around != nullptr;
  walk->field = around ? around : symbol->variant.field;
  walk->position = number_of_field(walk->type, walk->field);
  return true;
}

static bool apply_index_designator(an_aggregate_walk* walk, const an_init_component* component,
                                   uint64_t* count, an_init_state* state) {
  const a_constant* index = component->variant.designator.index;
  const a_constant* end = component->variant.designator.range_end;
  a_source_position position = component->variant.designator.position;
  if (!index) {
    state->error_reported = true;
    return false;
  }
  if (cmplit_integer_constant(index, 0) < 0 || index->value.int_value >= walk->limit ||
      (end && (cmp_integer_constants(end, index) < 0 || end->value.int_value >= walk->limit))) {
    init_error(ec_too_many_initializer_values, &position, state);
    return false;
  }
  walk->position = index->value.int_value;
  *count = end ? end->value.int_value - index->value.int_value + 1 : 1;
  return true;
}

// Takes the designator at the head of the list; `count` is the number of
// elements that it names.
static bool apply_designator(an_aggregate_walk* walk, an_init_component** list, uint64_t* count,
                             an_init_state* state) {
  const an_init_component* component = *list;
  bool names_field = component->variant.designator.field_name != nullptr;
  bool ok, goes_on = false;
  if (names_field == (walk->type->kind == tk_array)) {
    a_source_position position = component->variant.designator.position;
    report_bad_designator(&position, walk->type, state);
    ok = false;
  } else if (names_field) {
    ok = apply_field_designator(walk, component, &goes_on, state);
  } else {
    ok = apply_index_designator(walk, component, count, state);
  }
  if (!goes_on)
    drop_first(list);
  return ok;
}

// ---- Aggregates ----

static void walk_list(an_aggregate_walk* walk, an_init_component** list, an_init_state* state);

static void start_walk(an_aggregate_walk* walk, a_type* type, a_constant* aggregate,
                       bool has_braces) {
  *walk = {};
  walk->type = skip_typerefs(type);
  walk->aggregate = aggregate;
  walk->has_braces = has_braces;
  if (walk->type->kind == tk_array) {
    walk->limit =
        is_incomplete_array_type(walk->type) ? UINT64_MAX : num_array_elements(walk->type);
    return;
  }
  walk->field = next_initializable_field(walk->type->variant.class_struct_union.fields);
  walk->limit = UINT64_MAX;
}

static a_constant* make_aggregate(a_type* type, const a_source_position* position, bool braced) {
  a_constant* aggregate = alloc_constant(con_aggregate);
  aggregate->type = type;
  aggregate->position = *position;
  aggregate->braced = braced;
  return aggregate;
}

static a_constant* repeated(a_constant* element, uint64_t count, const a_source_position* position,
                            an_init_state* state) {
  if (count == 1)
    return element;
  if (element->kind == con_dynamic_init || element->contains_nonconstant) {
    init_error(ec_no_range_designator_with_dynamic_init, position, state);
    return nullptr;
  }
  a_constant* repeat = alloc_constant(con_repeat);
  repeat->type = element->type;
  repeat->value.repeat.element = element;
  repeat->value.repeat.count = count;
  return repeat;
}

// A further designator leads into the element (`.a.b = 1`).
static a_constant* nested_designation(an_aggregate_walk* walk, an_init_component** list,
                                      a_type* element_type, an_init_state* state, bool* is_stored) {
  a_source_position position = init_component_pos(*list);
  a_constant* aggregate = earlier_aggregate(walk);
  an_aggregate_walk inner;
  *is_stored = aggregate != nullptr;
  if (!is_aggregate(skip_typerefs(element_type))) {
    report_bad_designator(&position, element_type, state);
    return nullptr;
  }
  bool continues = aggregate != nullptr;
  if (!aggregate)
    aggregate = make_aggregate(element_type, &position, false);
  start_walk(&inner, element_type, aggregate, false);
  if (continues)
    inner.next_in_order = UINT64_MAX; // behind what was stored nothing is in order
  walk_list(&inner, list, state);
  return aggregate;
}

static bool is_at_end(const an_aggregate_walk* walk) {
  return walk->type->kind == tk_array ? walk->position >= walk->limit : !walk->field;
}

// One element, with the designators in front of it. False when the walk can't
// go on.
static bool walk_element(an_aggregate_walk* walk, an_init_component** list, an_init_state* state) {
  uint64_t count = 1;
  const an_init_component* first = *list;
  a_source_position position = init_component_pos(first);
  bool is_designated = first->kind == ick_designator;
  if (is_designated && !apply_designator(walk, list, &count, state))
    return false;
  if (is_at_end(walk) || !*list)
    return false;
  a_type* type = element_type_of(walk);
  bool is_stored = false;
  a_constant* element;
  if ((*list)->kind == ick_designator)
    element = nested_designation(walk, list, type, state, &is_stored);
  else if (is_incomplete_array_type(type) || is_error_type(type))
    return init_error(ec_cannot_initialize_flexible_array_member, &position, state), false;
  else
    element = init_element(list, &type, state);
  if (element && !is_stored)
    element = repeated(element, count, &position, state);
  if (!element)
    return false;
  if (!is_stored)
    store_element(walk, element, state);
  advance(walk, count);
  if (is_stored)
    walk->next_in_order = UINT64_MAX;
  // An array of empty structs would never come to the end of the list.
  return *list != first || walk->type->kind != tk_array;
}

static void walk_list(an_aggregate_walk* walk, an_init_component** list, an_init_state* state) {
  bool is_first = true;
  while (*list) {
    // A designator belongs to the list in braces around it.
    if ((*list)->kind == ick_designator && !walk->has_braces && !is_first)
      return;
    if ((*list)->kind != ick_designator && is_at_end(walk))
      return;
    if (!walk_element(walk, list, state))
      return;
    is_first = false;
  }
}

static void complete_array_type(a_type** type, const an_aggregate_walk* walk) {
  if (is_incomplete_array_type(*type))
    *type = make_array_type(array_element_type(*type), walk->greatest);
}

static a_constant* braced_aggregate(an_init_component** list, a_type** type, an_init_state* state) {
  an_init_component* component = *list;
  a_source_position position = component->variant.braced.start_position;
  a_constant* aggregate = make_aggregate(*type, &position, true);
  an_aggregate_walk walk;
  start_walk(&walk, *type, aggregate, true);
  if (!component->variant.braced.first) {
    if (is_incomplete_array_type(*type))
      init_error(ec_bad_initializer_for_array_with_unspecified_bound, &position, state);
    else if (!gnu_mode && strict_ansi_mode)
      pos_diagnostic(strict_ansi_discretionary_severity, ec_exp_primary_expr,
                     &component->variant.braced.end_position);
  }
  walk_list(&walk, &component->variant.braced.first, state);
  if (component->variant.braced.first) {
    a_source_position excess = init_component_pos(component->variant.braced.first);
    if (gcc_mode && !state->error_reported)
      pos_warning(ec_excess_initializers_ignored, &excess);
    else
      init_error(ec_too_many_initializer_values, &excess, state);
  }
  drop_first(list);
  complete_array_type(type, &walk);
  aggregate->type = *type;
  return state->error_reported ? nullptr : aggregate;
}

// Braces were left out: the aggregate takes what it needs from the list
// around it.
static a_constant* unbraced_aggregate(an_init_component** list, a_type* type,
                                      an_init_state* state) {
  a_source_position position = init_component_pos(*list);
  a_constant* aggregate = make_aggregate(type, &position, false);
  an_aggregate_walk walk;
  start_walk(&walk, type, aggregate, false);
  walk_list(&walk, list, state);
  return state->error_reported ? nullptr : aggregate;
}

// An expression of the struct's own type initialises it as a whole (p13).
static bool whole_aggr_class_init_possible(const an_init_component* component, a_type* type) {
  if (component->kind != ick_expression || !is_class_struct_union_type(type))
    return false;
  a_type* source = component->variant.operand.type;
  return source && is_class_struct_union_type(source) &&
         types_are_compatible(skip_typerefs(source), skip_typerefs(type));
}

static a_constant* scalar_in_braces(an_init_component** list, a_type** type, an_init_state* state) {
  an_init_component* component = *list;
  a_source_position position = component->variant.braced.start_position;
  a_constant* value = nullptr;
  if (!component->variant.braced.first)
    init_error(ec_exp_primary_expr, &component->variant.braced.end_position, state);
  else if (component->variant.braced.first->kind == ick_designator)
    report_bad_designator(&position, *type, state);
  else
    value = init_element(&component->variant.braced.first, type, state);
  if (component->variant.braced.first) {
    a_source_position excess = init_component_pos(component->variant.braced.first);
    init_error(ec_too_many_initializer_values, &excess, state);
  }
  drop_first(list);
  return value;
}

static a_constant* expression_element(an_init_component** list, a_type* type,
                                      an_init_state* state) {
  a_constant* value = convert_initializer(*list, type, state);
  drop_first(list);
  return value;
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

a_constant* init_element(an_init_component** list, a_type** type, an_init_state* state) {
  check_stack_limit();
  an_init_component* component = *list;
  a_type* bare = skip_typerefs(*type);
  if (is_error_type(bare)) {
    drop_first(list);
    state->error_reported = true;
    return nullptr;
  }
  if (const a_constant* literal = value_of_compound_literal(component, *type, state)) {
    a_constant* value = alloc_unshared_constant(literal);
    *type = is_incomplete_array_type(*type) ? value->type : *type;
    drop_first(list);
    return value;
  }
  if (bare->kind == tk_array) {
    if (const a_constant* literal = whole_array_literal(component, bare)) {
      a_source_position position = init_component_pos(component);
      if (component->parenthesized)
        pos_remark(ec_nonstandard_parenthesized_string_initializer, &position);
      a_constant* value = string_initializer(literal, type, &position);
      drop_first(list);
      return value;
    }
  }
  if (component->kind == ick_braced_list)
    return is_aggregate(bare) ? braced_aggregate(list, type, state)
                              : scalar_in_braces(list, type, state);
  if (!is_aggregate(bare) || whole_aggr_class_init_possible(component, *type))
    return expression_element(list, *type, state);
  return unbraced_aggregate(list, *type, state);
}

a_constant* init_object(an_init_component** list, a_type** type, an_init_state* state) {
  const an_init_component* component = *list;
  a_type* bare = skip_typerefs(*type);
  if (component->kind == ick_braced_list || !is_aggregate(bare) ||
      value_of_compound_literal(component, *type, state) != nullptr)
    return init_element(list, type, state);
  if (bare->kind != tk_array)
    return expression_element(list, *type, state);
  if (whole_array_literal(component, bare))
    return init_element(list, type, state);
  a_source_position position = init_component_pos(component);
  init_error(ec_missing_initializer_list, &position, state);
  drop_first(list);
  return nullptr;
}
