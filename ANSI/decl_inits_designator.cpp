// Designators (C99 6.7.8 p6, p7).

#include "class_decl.h"
#include "const_ints.h"
#include "decl_inits_int.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"
#include "types.h"

static uint64_t number_of_field(const a_type* class_type, const a_field* wanted) {
  uint64_t number = 0;
  a_field* field = next_initializable_field(class_type->variant.class_struct_union.fields);
  for (; field && field != wanted; field = next_initializable_field(field->next))
    ++number;
  return number;
}

// The field that a designator names; null behind a message.
static a_field* designated_field(const an_aggregate_walk* walk, const an_init_component* component,
                                 an_init_state* state) {
  a_symbol_locator locator;
  a_source_position position = component->variant.designator.position;
  clear_locator(&locator, &position);
  locator.header = component->variant.designator.field_name;
  a_symbol* symbol = class_qualified_id_lookup(&locator, walk->type, ilo_none);
  if (symbol && symbol->kind == symk_field)
    return symbol->variant.field;
  if (!state->error_reported && symbol)
    pos_st_error(ec_not_a_field_name, &position, locator.header->identifier);
  else if (!state->error_reported)
    pos_stsy_error(ec_not_a_field, &position, locator.header->identifier,
                   walk->type->source_corresp.symbol);
  state->error_reported = true;
  return nullptr;
}

// A member of an anonymous struct or union leads to that; `goes_on` says that
// the designator has still to be applied inside.
static bool apply_field_designator(an_aggregate_walk* walk, const an_init_component* component,
                                   bool* goes_on, an_init_state* state) {
  a_source_position position = component->variant.designator.position;
  if (is_template_dependent_type(walk->type)) {
    init_error(ec_designator_for_template_dependent_type, &position, state);
    return false;
  }
  a_field* field = component->variant.designator.field;
  if (!field)
    field = designated_field(walk, component, state);
  if (!field)
    return false;
  a_field* around = anonymous_field_around(field, walk->type);
  if (around && !in_C_mode() && !gnu_mode) {
    init_error(ec_indirect_anon_union_designator, &position, state);
    return false;
  }
  *goes_on = around != nullptr;
  walk->field = around ? around : field;
  walk->position = number_of_field(walk->type, walk->field);
  return true;
}

static bool is_within_bound(const an_aggregate_walk* walk, const a_constant* index) {
  return cmplit_integer_constant(index, 0) >= 0 && index->value.int_value < walk->limit;
}

static bool apply_index_designator(an_aggregate_walk* walk, const an_init_component* component,
                                   uint64_t* count, an_init_state* state) {
  const a_constant* index = component->variant.designator.index;
  const a_constant* end = component->variant.designator.range_end;
  a_source_position position = component->variant.designator.position;
  if (!index) { // reported
    state->error_reported = true;
    return false;
  }
  if (!is_within_bound(walk, index) ||
      (end && (cmp_integer_constants(end, index) < 0 || !is_within_bound(walk, end)))) {
    init_error(ec_too_many_initializer_values, &position, state);
    return false;
  }
  walk->position = index->value.int_value;
  *count = end ? end->value.int_value - index->value.int_value + 1 : 1;
  return true;
}

bool apply_designator(an_aggregate_walk* walk, an_init_component** list, uint64_t* count,
                      an_init_state* state) {
  const an_init_component* component = *list;
  bool names_field = component->variant.designator.field_name != nullptr ||
                     component->variant.designator.field != nullptr;
  bool ok = false, goes_on = false;
  if (names_field == (walk->type->kind == tk_array)) {
    a_source_position position = component->variant.designator.position;
    init_type_error(ec_invalid_designator_kind, &position, walk->type, state);
  } else if (names_field) {
    ok = apply_field_designator(walk, component, &goes_on, state);
  } else {
    ok = apply_index_designator(walk, component, count, state);
  }
  if (!goes_on)
    drop_first_init_component(list);
  return ok;
}
