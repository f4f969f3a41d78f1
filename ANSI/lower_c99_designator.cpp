// Designated initialisers (C99 6.7.8): elements that stand behind designators
// are put in the order of their positions.

#include <map>

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_statements.h"
#include "lower_c99.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "types.h"

namespace {

// Array elements by position: `count` elements from there on have the value.
struct an_array_part {
  uint64_t count;
  a_constant* value;
};
typedef std::map<uint64_t, an_array_part> an_array_part_map;

a_constant* zero_of(a_type* type) {
  a_constant value;
  make_value_initialized_constant(type, &value);
  return alloc_unshared_constant(&value);
}

a_constant* repeated(a_constant* value, uint64_t count) {
  if (count == 1)
    return value;
  a_constant* repeat = alloc_constant(con_repeat);
  repeat->type = value->type;
  repeat->value.repeat.element = value;
  repeat->value.repeat.count = count;
  return repeat;
}

// Elements that no designator named.
a_constant* zero_gap(a_type* element_type, uint64_t count) {
  a_constant* gap = repeated(zero_of(element_type), count);
  gap->zero_fill = gap->kind == con_repeat;
  return gap;
}

void clear_elements(a_constant* aggregate) {
  aggregate->value.aggregate.first = aggregate->value.aggregate.last = nullptr;
  aggregate->value.aggregate.has_dynamic_init = false;
  aggregate->has_designator = false;
}

void add_element(a_constant* aggregate, a_constant* element) {
  element->next = nullptr;
  add_constant_to_aggregate(element, aggregate);
}

// ---- Arrays ----

// Cuts what lies at [start, end) out of the parts.
void make_room(an_array_part_map& parts, uint64_t start, uint64_t end) {
  auto part = parts.lower_bound(start);
  if (part != parts.begin() && std::prev(part)->first + std::prev(part)->second.count > start)
    --part;
  while (part != parts.end() && part->first < end) {
    uint64_t part_start = part->first;
    uint64_t part_end = part_start + part->second.count;
    a_constant* value = part->second.value;
    part = parts.erase(part);
    if (part_start < start)
      parts[part_start] = {start - part_start, value};
    if (part_end <= end)
      continue;
    if (part_start < start) // both ends stay, each a link of the list
      value = alloc_unshared_constant(value);
    part = parts.insert({end, {part_end - end, value}}).first;
  }
}

void sort_array(a_constant* aggregate, const a_type* array) {
  an_array_part_map parts;
  uint64_t position = 0;
  for (a_constant* item = aggregate->value.aggregate.first; item != nullptr; item = item->next) {
    if (item->kind == con_designator) {
      position = item->value.designator.designated.index->value.int_value;
      continue;
    }
    bool is_repeat = item->kind == con_repeat;
    uint64_t count = is_repeat ? item->value.repeat.count : 1;
    make_room(parts, position, position + count);
    parts[position] = {count, is_repeat ? item->value.repeat.element : item};
    position += count;
  }
  clear_elements(aggregate);
  uint64_t next = 0;
  for (const auto& [start, part] : parts) {
    if (start > next)
      add_element(aggregate, zero_gap(array_element_type(array), start - next));
    add_element(aggregate, repeated(part.value, part.count));
    next = start + part.count;
  }
}

// ---- Structs and unions ----

void sort_struct(a_constant* aggregate, a_field* first_field) {
  std::map<const a_field*, a_constant*> values;
  const a_field* field = first_field;
  for (a_constant* item = aggregate->value.aggregate.first; item != nullptr; item = item->next) {
    if (item->kind == con_designator) {
      field = item->value.designator.designated.field;
      continue;
    }
    if (field == nullptr)
      break;
    values[field] = item;
    field = next_initializable_field(field->next);
  }
  clear_elements(aggregate);
  size_t left = values.size();
  for (a_field* f = first_field; left > 0 && f != nullptr; f = next_initializable_field(f->next)) {
    auto value = values.find(f);
    left -= value != values.end();
    add_element(aggregate, value != values.end() ? value->second : zero_of(f->type));
  }
}

// The last member that is named holds; the first needs no designator.
void sort_union(a_constant* aggregate, const a_field* first_field) {
  a_constant* designator = nullptr;
  a_constant* value = nullptr;
  for (a_constant* item = aggregate->value.aggregate.first; item != nullptr; item = item->next) {
    if (item->kind == con_designator)
      designator = item;
    else
      value = item;
  }
  clear_elements(aggregate);
  if (designator != nullptr && designator->value.designator.designated.field != first_field)
    add_element(aggregate, designator);
  if (value != nullptr)
    add_element(aggregate, value);
}

void sort_elements(a_constant* aggregate) {
  a_type* type = f_skip_typerefs(aggregate->type);
  if (type->kind == tk_array)
    return sort_array(aggregate, type);
  a_field* first = next_initializable_field(type->variant.class_struct_union.fields);
  if (type->kind == tk_union)
    sort_union(aggregate, first);
  else
    sort_struct(aggregate, first);
}

// Innermost aggregates come first, so that what is put in order is final.
void lower_aggregate(a_constant* constant) {
  check_stack_limit();
  if (constant->kind == con_repeat)
    return lower_aggregate(constant->value.repeat.element);
  if (constant->kind != con_aggregate)
    return;
  for (a_constant* item = constant->value.aggregate.first; item != nullptr; item = item->next)
    lower_aggregate(item);
  if (constant->has_designator)
    sort_elements(constant);
}

} // namespace

void lower_designated_initializers(a_constant* constant, a_dynamic_init* init) {
  if (!designators_allowed || constant->kind != con_aggregate)
    return;
  int32_t saved_region = 0;
  if (is_file_scope_entry(constant))
    switch_to_file_scope_region(&saved_region);
  lower_aggregate(constant);
  switch_back_to_original_region(saved_region);
  if (init != nullptr && init->kind == dik_nonconstant_aggregate)
    init->contains_nonconstant = constant->value.aggregate.has_dynamic_init;
}
