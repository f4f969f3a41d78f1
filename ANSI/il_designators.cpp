// Aggregates with designators (C99 6.7.8 p17 to p21): what was written, in the
// order of its text, becomes a list of elements in the order of their positions.
// Each element counts as it was given last. One whose braces were left out, or
// that a further designator leads into, goes on with what was given before.

#include <map>

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_statements.h"
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

uint64_t count_of(const a_constant* item) {
  return item->kind == con_repeat ? item->value.repeat.count : 1;
}

a_constant* value_of(a_constant* item) {
  return item->kind == con_repeat ? item->value.repeat.element : item;
}

// Elements that no designator named.
a_constant* zero_gap(a_type* element_type, uint64_t count) {
  a_constant* gap = repeated_constant(zero_of(element_type), count);
  gap->zero_fill = gap->kind == con_repeat;
  return gap;
}

void clear_elements(a_constant* aggregate) {
  aggregate->value.aggregate.first = aggregate->value.aggregate.last = nullptr;
  aggregate->value.aggregate.has_dynamic_init = false;
  aggregate->has_designator = false;
}

a_field* first_field_of(const a_type* class_type) {
  return next_initializable_field(class_type->variant.class_struct_union.fields);
}

// ---- What goes on with an earlier value ----

bool continues_earlier_value(const a_constant* value) {
  return value->kind == con_aggregate && !value->braced;
}

a_constant* designator_of_first_element(a_type* type) {
  const a_type* bare = f_skip_typerefs(type);
  return bare->kind == tk_array ? make_index_designator(type, 0)
                                : make_field_designator(type, first_field_of(bare));
}

// The elements of `addition` go behind those of the earlier value.
a_constant* merged(a_constant* earlier, a_constant* addition) {
  if (earlier->kind == con_string)
    explode_string_initializer(earlier);
  a_constant* item = addition->value.aggregate.first;
  if (earlier->kind != con_aggregate)
    return addition;
  if (item != nullptr && item->kind != con_designator)
    add_constant_to_aggregate(designator_of_first_element(earlier->type), earlier);
  while (item != nullptr) {
    a_constant* next = item->next;
    add_constant_to_aggregate(item, earlier);
    item = next;
  }
  const a_type* array = f_skip_typerefs(addition->type);
  if (array->kind == tk_array &&
      num_array_elements(array) > num_array_elements(f_skip_typerefs(earlier->type)))
    earlier->type = addition->type; // a flexible array member grows
  return earlier;
}

// ---- Arrays ----

// A part that `position` lies within becomes two.
void split_at(an_array_part_map& parts, uint64_t position) {
  auto part = parts.lower_bound(position);
  if (part == parts.begin())
    return;
  --part;
  uint64_t count = position - part->first;
  if (count >= part->second.count)
    return;
  parts[position] = {part->second.count - count, alloc_unshared_constant(part->second.value)};
  part->second.count = count;
}

void replace_elements(an_array_part_map& parts, uint64_t start, uint64_t end, a_constant* value) {
  split_at(parts, start);
  split_at(parts, end);
  parts.erase(parts.lower_bound(start), parts.lower_bound(end));
  parts[start] = {end - start, value};
}

void continue_elements(an_array_part_map& parts, uint64_t start, uint64_t end,
                       a_constant* addition) {
  split_at(parts, start);
  split_at(parts, end);
  while (start < end) {
    auto part = parts.lower_bound(start);
    uint64_t next = part == parts.end() || part->first > end ? end : part->first;
    bool is_given = next == start;
    if (is_given)
      next += part->second.count;
    a_constant* own = next < end ? alloc_unshared_constant(addition) : addition;
    if (is_given)
      part->second.value = merged(part->second.value, own);
    else
      parts[start] = {next - start, own};
    start = next;
  }
}

void order_elements(a_constant* aggregate);

// Adds a value that is final, at its place.
void add_elements(a_constant* aggregate, const a_type* array, uint64_t start, uint64_t* next,
                  a_constant* item) {
  if (start > *next)
    add_constant_to_aggregate(zero_gap(array_element_type(array), start - *next), aggregate);
  order_elements(value_of(item));
  *next = start + count_of(item);
  add_constant_to_aggregate(item, aggregate);
}

// Whether no element is given twice, or behind one that follows it.
bool is_in_order(const a_constant* aggregate) {
  uint64_t position = 0, end = 0;
  for (const a_constant* item = aggregate->value.aggregate.first; item; item = item->next) {
    if (item->kind == con_designator) {
      position = item->value.designator.designated.index->value.int_value;
      if (position < end)
        return false;
      continue;
    }
    position += count_of(item);
    end = position;
  }
  return true;
}

void order_sorted_array(a_constant* aggregate, const a_type* array) {
  uint64_t position = 0, next = 0;
  a_constant* item = aggregate->value.aggregate.first;
  clear_elements(aggregate);
  while (item != nullptr) {
    a_constant* following = item->next;
    if (item->kind == con_designator) {
      position = item->value.designator.designated.index->value.int_value;
    } else {
      add_elements(aggregate, array, position, &next, item);
      position = next;
    }
    item = following;
  }
}

void order_array(a_constant* aggregate, const a_type* array) {
  if (is_in_order(aggregate))
    return order_sorted_array(aggregate, array);
  an_array_part_map parts;
  uint64_t position = 0;
  for (a_constant* item = aggregate->value.aggregate.first; item != nullptr; item = item->next) {
    if (item->kind == con_designator) {
      position = item->value.designator.designated.index->value.int_value;
      continue;
    }
    a_constant* value = value_of(item);
    uint64_t end = position + count_of(item);
    if (continues_earlier_value(value))
      continue_elements(parts, position, end, value);
    else
      replace_elements(parts, position, end, value);
    position = end;
  }
  clear_elements(aggregate);
  uint64_t next = 0;
  for (const auto& [start, part] : parts)
    add_elements(aggregate, array, start, &next, repeated_constant(part.value, part.count));
}

// ---- Structs and unions ----

void order_struct(a_constant* aggregate, a_field* first_field) {
  std::map<const a_field*, a_constant*> values;
  const a_field* field = first_field;
  a_constant* next = nullptr;
  for (a_constant* item = aggregate->value.aggregate.first; item != nullptr; item = next) {
    next = item->next;
    if (item->kind == con_designator) {
      field = item->value.designator.designated.field;
      continue;
    }
    if (field == nullptr)
      break;
    a_constant*& value = values[field];
    value = value && continues_earlier_value(item) ? merged(value, item) : item;
    field = next_initializable_field(field->next);
  }
  clear_elements(aggregate);
  size_t left = values.size();
  for (a_field* f = first_field; left > 0 && f != nullptr; f = next_initializable_field(f->next)) {
    auto value = values.find(f);
    left -= value != values.end();
    if (value != values.end())
      order_elements(value->second);
    add_constant_to_aggregate(value != values.end() ? value->second : zero_of(f->type), aggregate);
  }
}

// The last member that is named holds; the first needs no designator.
void order_union(a_constant* aggregate, a_type* union_type, a_field* first_field) {
  a_field* field = first_field;
  a_field* given = nullptr;
  a_constant *value = nullptr, *next = nullptr;
  for (a_constant* item = aggregate->value.aggregate.first; item != nullptr; item = next) {
    next = item->next;
    if (item->kind == con_designator) {
      field = item->value.designator.designated.field;
      continue;
    }
    value = value && field == given && continues_earlier_value(item) ? merged(value, item) : item;
    given = field;
  }
  clear_elements(aggregate);
  if (value == nullptr)
    return;
  if (given != first_field)
    add_constant_to_aggregate(make_field_designator(union_type, given), aggregate);
  order_elements(value);
  add_constant_to_aggregate(value, aggregate);
}

void order_elements(a_constant* aggregate) {
  check_stack_limit();
  if (aggregate->kind != con_aggregate || !aggregate->has_designator)
    return;
  a_type* type = f_skip_typerefs(aggregate->type);
  if (type->kind == tk_array)
    order_array(aggregate, type);
  else if (type->kind == tk_union)
    order_union(aggregate, type, first_field_of(type));
  else
    order_struct(aggregate, first_field_of(type));
}

} // namespace

a_constant* make_index_designator(a_type* array, uint64_t position) {
  a_constant* designator = alloc_constant(con_designator);
  a_constant* index = alloc_constant(con_integer);
  index->type = size_t_type();
  index->value.int_value = position;
  designator->type = array;
  designator->value.designator.is_text_or_index = true;
  designator->value.designator.designated.index = index;
  return designator;
}

a_constant* make_field_designator(a_type* class_type, a_field* field) {
  a_constant* designator = alloc_constant(con_designator);
  designator->type = class_type;
  designator->value.designator.is_field = true;
  designator->value.designator.designated.field = field;
  return designator;
}

void put_elements_in_order(a_constant* aggregate) {
  int32_t saved_region = 0;
  if (is_file_scope_entry(aggregate))
    switch_to_file_scope_region(&saved_region);
  order_elements(aggregate);
  switch_back_to_original_region(saved_region);
}
