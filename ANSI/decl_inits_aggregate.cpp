// The walks over arrays, structs and unions. An aggregate becomes a
// con_aggregate whose elements stand in order; an element out of order stands
// behind a con_designator.

#include <algorithm>

#include "class_decl.h"
#include "decl_inits_int.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lexical.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "types.h"

static bool is_array_walk(const an_aggregate_walk* walk) {
  return walk->type->kind == tk_array;
}

static a_field* first_field_of(const a_type* class_type) {
  return next_initializable_field(class_type->variant.class_struct_union.fields);
}

// ---- The walk's place ----

// Sets a walk up: its limit is the bound of an array (unlimited when that is
// unknown), its field the first that can be initialised.
static void prep_aggr_initializer(an_aggregate_walk* walk, a_type* type, a_constant* aggregate,
                                  bool has_braces, const an_init_state* state) {
  *walk = {};
  walk->type = skip_typerefs(type);
  walk->aggregate = aggregate;
  walk->has_braces = has_braces;
  walk->is_outermost = state->depth == 1 || state->enclosing_is_outermost_union;
  walk->limit = UINT64_MAX;
  if (!is_array_walk(walk))
    walk->field = first_field_of(walk->type);
  else if (!is_incomplete_array_type(walk->type))
    walk->limit = num_array_elements(walk->type);
}

static bool is_at_end(const an_aggregate_walk* walk) {
  return is_array_walk(walk) ? walk->position >= walk->limit : !walk->field;
}

static a_type* element_type_of(const an_aggregate_walk* walk) {
  return is_array_walk(walk) ? array_element_type(walk->type) : walk->field->type;
}

static void advance_walk(an_aggregate_walk* walk, uint64_t count) {
  const bool is_union = walk->type->kind == tk_union;
  walk->position += count;
  walk->next_in_order = is_union ? UINT64_MAX : walk->position; // nothing follows a member
  walk->greatest = std::max(walk->greatest, walk->position);
  walk->last_field = walk->field;
  if (walk->field)
    walk->field = is_union ? nullptr : next_initializable_field(walk->field->next);
}

static a_constant* make_designator(const an_aggregate_walk* walk) {
  return is_array_walk(walk) ? make_index_designator(walk->type, walk->position)
                             : make_field_designator(walk->type, walk->field);
}

static void note_run_time_value(a_constant* aggregate, an_init_state* state) {
  if (!aggregate->value.aggregate.has_dynamic_init)
    return;
  aggregate->contains_nonconstant = true;
  state->contains_nonconstant = true;
}

// An aggregate without braces of its own goes on with an earlier value of the
// element.
static bool may_go_on(const an_aggregate_walk* walk, const a_constant* element) {
  if (element->kind == con_repeat)
    element = element->value.repeat.element;
  if (element->kind != con_aggregate || element->braced)
    return false;
  return walk->type->kind == tk_union ? walk->aggregate->value.aggregate.first != nullptr
                                      : walk->position < walk->greatest;
}

static void store_element(an_aggregate_walk* walk, a_constant* element, an_init_state* state) {
  if (walk->position != walk->next_in_order) {
    add_constant_to_aggregate(make_designator(walk), walk->aggregate);
    walk->aggregate->has_designator = true;
    state->designator_used = true;
  }
  state->has_overlaps |= may_go_on(walk, element);
  add_constant_to_aggregate(element, walk->aggregate);
  note_run_time_value(walk->aggregate, state);
}

// ---- One element ----

static a_constant* make_aggregate(a_type* type, const a_source_position* position, bool braced) {
  a_constant* aggregate = alloc_constant(con_aggregate);
  aggregate->type = type;
  aggregate->position = *position;
  aggregate->braced = braced;
  return aggregate;
}

// The value of a range of elements: one that is evaluated can't be repeated.
static a_constant* repeat_nonconstant_init(const a_source_position* position,
                                           an_init_state* state) {
  init_error(ec_no_range_designator_with_dynamic_init, position, state);
  return nullptr;
}

static a_constant* repeated_element(a_constant* element, uint64_t count,
                                    const a_source_position* position, an_init_state* state) {
  if (count > 1 && (element->kind == con_dynamic_init || element->contains_nonconstant))
    return repeat_nonconstant_init(position, state);
  return repeated_constant(element, count);
}

static a_constant* walk_without_braces(an_init_component** list, a_type** type,
                                       const a_source_position* position, an_init_state* state);

// A further designator leads into the element (`.a.b = 1`).
static a_constant* nested_designation(an_init_component** list, a_type* type,
                                      an_init_state* state) {
  a_source_position position = init_component_pos(*list);
  if (!is_aggregate_or_union_type(type)) {
    init_type_error(ec_invalid_designator_kind, &position, type, state);
    return nullptr;
  }
  return walk_without_braces(list, &type, &position, state);
}

// C99 6.7.2.1 p16: a flexible array member has elements in an object of static
// duration only, and not where its struct is itself a part.
static bool check_flexible_member(const an_aggregate_walk* walk, const a_source_position* position,
                                  an_init_state* state) {
  if (is_array_walk(walk) || !walk->is_outermost || !state->is_static || !gnu_mode) {
    init_error(ec_cannot_initialize_flexible_array_member, position, state);
    return false;
  }
  state->flexible_member = true;
  return true;
}

static bool check_element_type(const an_aggregate_walk* walk, a_type* type, bool is_designated,
                               const a_source_position* position, an_init_state* state) {
  if (is_error_type(type)) {
    state->error_reported = true;
    return false;
  }
  if (is_incomplete_array_type(type))
    return check_flexible_member(walk, position, state);
  if (is_designated && in_cplusplus_mode() && is_class_struct_union_type(type) &&
      !is_aggregate_or_union_type(type)) {
    init_error(ec_designator_for_non_POD, position, state);
    return false;
  }
  return true;
}

// The value of one element. In that of a range nothing is taken but the first
// scalar that the designators lead to.
static a_constant* value_of_element(an_init_component** list, a_type* type, bool is_range,
                                    an_init_state* state) {
  const bool was_in_range = state->in_range_element;
  state->in_range_element |= is_range;
  a_constant* element = (*list)->kind == ick_designator ? nested_designation(list, type, state)
                                                        : init_element(list, &type, state);
  state->flexible_member = false;
  state->in_range_element = was_in_range;
  return element;
}

// One element, with the designators in front of it. False when the walk can't
// go on.
static bool walk_element(an_aggregate_walk* walk, an_init_component** list, an_init_state* state) {
  uint64_t count = 1;
  const uint64_t dropped_before = number_of_dropped_init_components;
  a_source_position position = init_component_pos(*list);
  bool is_designated = (*list)->kind == ick_designator;
  if (is_designated && !apply_designator(walk, list, &count, state))
    return false;
  if (is_at_end(walk) || !first_init_component(list))
    return false;
  a_type* type = element_type_of(walk);
  if (!check_element_type(walk, type, is_designated, &position, state))
    return false;
  state->enclosing_type = walk->type;
  state->enclosing_is_outermost_union = walk->is_outermost && walk->type->kind == tk_union;
  a_constant* element = value_of_element(list, type, count > 1, state);
  if (element)
    element = repeated_element(element, count, &position, state);
  if (!element)
    return false;
  store_element(walk, element, state);
  advance_walk(walk, count);
  // An array of empty structs would never come to the end of the list.
  return number_of_dropped_init_components != dropped_before || !is_array_walk(walk);
}

// ---- Behind a range ----

static an_init_component* designator_component(uint64_t position, a_field* field) {
  an_init_component* component = alloc_init_component(ick_designator);
  component->variant.designator.position = pos_curr_token;
  component->variant.designator.field = field;
  if (!field) {
    component->variant.designator.index = alloc_constant(con_integer);
    component->variant.designator.index->type = size_t_type();
    component->variant.designator.index->value.int_value = position;
  }
  return component;
}

// Adds this walk's part to the designators of what follows: the element that
// was stored last when that goes on inside, else the next one.
static void note_place_behind_range(const an_aggregate_walk* walk, an_init_state* state) {
  an_init_component* inner = state->behind_range;
  if (!inner && is_at_end(walk))
    return;
  state->behind_range = inner ? designator_component(walk->position - 1, walk->last_field)
                              : designator_component(walk->position, walk->field);
  state->behind_range->next = inner;
}

// `[0 ... 1].x = 5, 6`: the 6 is for what follows `[1].x`. True when the list
// begins with such designators now.
static bool resume_behind_range(const an_aggregate_walk* walk, an_init_component** list,
                                an_init_state* state) {
  if (!state->behind_range)
    return false;
  note_place_behind_range(walk, state);
  an_init_component* designators = state->behind_range;
  state->behind_range = nullptr;
  if (!first_init_component(list) || (*list)->kind == ick_designator) {
    free_init_component_list(designators);
    return false;
  }
  an_init_component* last = designators;
  while (last->next)
    last = last->next;
  last->next = *list;
  *list = designators;
  return true;
}

static void walk_list(an_aggregate_walk* walk, an_init_component** list, an_init_state* state) {
  bool is_own_designator = true; // of this walk, not of the list in braces around it
  while (first_init_component(list)) {
    if ((*list)->kind == ick_designator && !walk->has_braces && !is_own_designator)
      return;
    if ((*list)->kind != ick_designator && is_at_end(walk))
      return;
    if (!walk_element(walk, list, state)) {
      state->behind_range = nullptr;
      return;
    }
    if (state->in_range_element)
      return note_place_behind_range(walk, state);
    is_own_designator = resume_behind_range(walk, list, state);
  }
}

// ---- Whole aggregates ----

static void complete_array_type(a_type** type, const an_aggregate_walk* walk) {
  if (is_incomplete_array_type(*type))
    *type = make_array_type(array_element_type(*type), walk->greatest);
}

static void check_empty_list(const an_init_component* component, a_type* type,
                             const an_aggregate_walk* walk, bool is_flexible_member,
                             an_init_state* state) {
  const a_source_position* position = &component->variant.braced.start_position;
  const a_field* declared =
      is_array_walk(walk) ? nullptr : walk->type->variant.class_struct_union.fields;
  if (is_incomplete_array_type(type) && !is_flexible_member)
    init_error(ec_bad_initializer_for_array_with_unspecified_bound, position, state);
  else if (in_C_mode() && !gnu_mode && strict_ansi_mode)
    pos_diagnostic(strict_ansi_discretionary_severity, ec_exp_primary_expr,
                   &component->variant.braced.end_position);
  else if (in_cplusplus_mode() && walk->type->kind == tk_union && declared &&
           declared != walk->field)
    init_type_error(ec_ambiguous_union_value_init, position, type, state);
}

// What no element is left for. GNU C drops it from a struct with a warning.
static void report_excess(const an_aggregate_walk* walk, an_init_component** list,
                          an_init_state* state) {
  if (!first_init_component(list) || state->error_reported)
    return;
  a_source_position excess = init_component_pos(*list);
  if (gcc_mode && !is_array_walk(walk))
    pos_warning(ec_excess_initializers_ignored, &excess);
  else
    pos_error(ec_too_many_initializer_values, &excess);
}

// C++11 8.5.1 p4: a reference that no element is left for can't be bound.
static void check_members_left_out(const an_aggregate_walk* walk, const a_source_position* position,
                                   an_init_state* state) {
  if (!in_cplusplus_mode() || is_array_walk(walk) || walk->type->kind == tk_union)
    return;
  for (const a_field* field = walk->field; field; field = next_initializable_field(field->next)) {
    if (!is_reference_type(field->type))
      continue;
    if (!state->symbol)
      init_error(ec_unnamed_object_with_uninitialized_field, position, state);
    else if (!state->error_reported)
      pos_sy_error(ec_var_with_uninitialized_member, position, state->symbol);
    state->error_reported = true;
    return;
  }
}

// ---- What a list leaves out ----

static a_constant* value_of_default_init(a_dynamic_init* init, a_type* type) {
  bool is_constant = init->kind == dik_constant;
  if (init->kind == dik_nonconstant_aggregate && !init->is_default_member_init)
    return init->variant.constant;
  a_constant* value = alloc_constant(con_dynamic_init);
  if (is_constant) { // of a field, which many objects share
    copy_constant(init->variant.constant, value);
    value->next = nullptr;
    return value;
  }
  value->type = type;
  value->value.dynamic_init = init;
  return value;
}

// What an element is made of: the field's own initialiser, or the default
// constructor of its class. Null for nothing: an aggregate without such a
// constructor is made of its members (C++14 8.5.1 p7).
static a_dynamic_init* init_of_left_out(const an_aggregate_walk* walk, a_type* type,
                                        const a_source_position* position) {
  if (!is_array_walk(walk) && walk->field->has_default_init)
    return walk->field->default_init;
  a_type* class_type = skip_typerefs(skip_array_types(type));
  if (!is_class_struct_union_type(class_type) || is_incomplete_type(type))
    return nullptr;
  const a_routine* constructor =
      special_member_of_class(class_type, smk_default_constructor, tq_none);
  bool is_available = constructor && !constructor->is_deleted;
  return is_available || !class_supplement_of(class_type)->is_aggregate
             ? default_constructor_init(type, position)
             : nullptr;
}

// Makes `count` elements at the walk's place. False when there is nothing to do.
static bool construct_at_place(an_aggregate_walk* walk, uint64_t count,
                               const a_source_position* position, an_init_state* state) {
  a_type* type = element_type_of(walk);
  a_dynamic_init* init = init_of_left_out(walk, type, position);
  if (!init)
    return false;
  if (is_error_dynamic_init(init)) {
    state->error_reported = true;
    return false;
  }
  store_element(walk, repeated_constant(value_of_default_init(init, type), count), state);
  return true;
}

// C++11 8.5.1 p7: members without a value are made of an empty list, which calls
// the constructors of classes.
static void construct_what_is_left_out(an_aggregate_walk* walk, const a_source_position* position,
                                       an_init_state* state) {
  if (!in_cplusplus_mode() || walk->type->kind == tk_union)
    return;
  if (is_array_walk(walk)) {
    bool is_rest_known = walk->limit != UINT64_MAX && walk->position == walk->greatest;
    if (is_rest_known && !is_at_end(walk) && !state->error_reported)
      construct_at_place(walk, walk->limit - walk->position, position, state);
    return;
  }
  for (; walk->field && !state->error_reported;
       walk->field = next_initializable_field(walk->field->next), ++walk->position)
    if (construct_at_place(walk, 1, position, state))
      walk->next_in_order = walk->position + 1;
}

static bool is_scalar_zero(const an_init_component* component) {
  if (component->kind != ick_expression || component->variant.operand.kind != ok_constant)
    return false;
  const a_constant& value = component->variant.operand.variant.constant;
  return value.kind == con_integer && value.value.int_value == 0;
}

// A class takes an expression of its own type in braces whole (C++14 8.5.4 p3).
static bool is_copy_in_braces(const an_init_component* component, a_type* type) {
  const an_init_component* first = component->variant.braced.first;
  return in_cplusplus_mode() && first && !first->next &&
         whole_aggr_class_init_possible(first, type);
}

a_constant* braced_aggregate(an_init_component** list, a_type** type, an_init_state* state) {
  an_init_component* component = *list;
  an_init_component** elements = &component->variant.braced.first;
  a_source_position position = component->variant.braced.start_position;
  if (is_copy_in_braces(component, *type)) {
    a_constant* value = init_element(elements, type, state);
    drop_first_init_component(list);
    return value;
  }
  bool is_flexible_member = state->flexible_member;
  state->flexible_member = false;
  const bool was_scalar_zero = state->is_scalar_zero;
  state->is_scalar_zero = *elements && !(*elements)->next && is_scalar_zero(*elements);
  ++state->depth;
  a_constant* aggregate = make_aggregate(*type, &position, true);
  an_aggregate_walk walk;
  const bool was_in_range = state->in_range_element;
  state->in_range_element = false;
  prep_aggr_initializer(&walk, *type, aggregate, true, state);
  if (!*elements)
    check_empty_list(component, *type, &walk, is_flexible_member, state);
  walk_list(&walk, elements, state);
  report_excess(&walk, elements, state);
  check_members_left_out(&walk, &position, state);
  construct_what_is_left_out(&walk, &position, state);
  state->in_range_element = was_in_range;
  state->is_scalar_zero = was_scalar_zero;
  drop_first_init_component(list);
  complete_array_type(type, &walk);
  aggregate->type = *type;
  if (--state->depth == 0 && state->has_overlaps && !state->error_reported)
    put_elements_in_order(aggregate);
  return state->error_reported ? nullptr : aggregate;
}

// `T x{1, 2}` of strict C++11 has braces around every aggregate (C++11 8.5.1
// p11), and so has every non-zero initialiser under rule 9.2.
static void check_elided_braces(const a_source_position* position, an_init_state* state) {
  if (state->is_direct_list && strict_ansi_mode && std_version < 201402)
    init_error(ec_cannot_elide_braces, position, state);
  if (check_misra_c_2004 && !state->is_scalar_zero)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_9_2, position);
}

static a_constant* walk_without_braces(an_init_component** list, a_type** type,
                                       const a_source_position* position, an_init_state* state) {
  check_stack_limit();
  a_constant* aggregate = make_aggregate(*type, position, false);
  an_aggregate_walk walk;
  ++state->depth;
  prep_aggr_initializer(&walk, *type, aggregate, false, state);
  walk_list(&walk, list, state);
  construct_what_is_left_out(&walk, position, state);
  --state->depth;
  complete_array_type(type, &walk);
  aggregate->type = *type;
  return state->error_reported ? nullptr : aggregate;
}

a_constant* unbraced_aggregate(an_init_component** list, a_type** type, an_init_state* state) {
  a_source_position position = init_component_pos(*list);
  state->flexible_member = false;
  check_elided_braces(&position, state);
  return walk_without_braces(list, type, &position, state);
}
