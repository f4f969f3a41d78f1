// The layout of what C++ adds to a class: the virtual function pointer, base
// classes, and the rule that two empty subobjects of one type never share an
// address (Itanium C++ ABI 2.4).

#include <algorithm>
#include <unordered_set>

#include "error.h"
#include "layout_int.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

typedef std::unordered_set<const a_type*> a_class_set;

// A hierarchy of empty classes can have a subobject for each byte of the
// greatest class; a class with more than this many is too large.
static constexpr uint64_t max_subobjects_visited = 1 << 18;

// ---- Classes as bases ----

static a_type* class_of_base(const a_base_class* base) {
  return skip_typerefs(base->type);
}

static a_base_class* first_base(const a_type* class_type) {
  return supplement_of_class(class_type)->base_classes;
}

static bool is_laid_out_class(const a_type* type) {
  return is_class_struct_union_kind(type->kind) && !type->is_incomplete;
}

static bool has_vptr(const a_type* class_type) {
  return class_type->variant.class_struct_union.has_vptr;
}

static bool has_virtual_base(const a_type* class_type) {
  const a_base_class* base = first_base(class_type);
  while (base && !base->is_virtual)
    base = base->next;
  return base != nullptr;
}

static bool reuses_tail_padding() {
  return targ_reuse_tail_padding && reuse_tail_padding;
}

// The bytes of a class without its virtual bases.
static uint64_t padded_size_as_base(const a_type* class_type) {
  const a_class_type_supplement* supplement = supplement_of_class(class_type);
  return has_virtual_base(class_type)
             ? align_up(supplement->nonvirtual_size, supplement->nonvirtual_alignment)
             : class_type->size;
}

// The bytes of a class as a base. The padding at the end
// of a class that isn't POD is free for what follows.
static uint64_t size_as_base(const a_type* class_type) {
  const a_class_type_supplement* supplement = supplement_of_class(class_type);
  bool is_cut = reuses_tail_padding() && !supplement->is_pod && !is_empty_class_type(class_type);
  return is_cut ? supplement->nonvirtual_size : padded_size_as_base(class_type);
}

// An alignment that the class asked for holds for it as a base as well.
static uint64_t alignment_as_base(const a_layout_cursor* cursor, const a_type* class_type) {
  bool counts_all = class_type->has_explicit_alignment || !has_virtual_base(class_type);
  uint64_t alignment =
      counts_all ? class_type->alignment : supplement_of_class(class_type)->nonvirtual_alignment;
  uint64_t pack = pack_alignment_of(cursor->class_type);
  if (cursor->class_type->variant.class_struct_union.is_packed)
    pack = 1;
  return packing_applies_to_base_classes && pack != 0 ? std::min(alignment, pack) : alignment;
}

// ---- Empty subobjects ----

namespace {

// Visits the empty subobjects of an object of the type at `offset`, those of
// its virtual bases only when it is a complete object, and of nothing beyond
// `limit`. The visitor's answer true ends the visit.
template <class VISITOR> struct an_empty_subobject_visit {
  a_layout_cursor* cursor;
  uint64_t limit;
  VISITOR visitor;

  bool visit(const a_type* type, uint64_t offset, bool is_complete) {
    check_stack_limit();
    if (offset > limit || cursor->too_large_reported)
      return false;
    if (++cursor->subobjects_visited > max_subobjects_visited) {
      report_too_large(cursor);
      return true;
    }
    if (is_empty_class_type(type) && visitor(type, offset))
      return true;
    for (const a_base_class* base = first_base(type); base; base = base->next) {
      bool is_here = base->is_virtual ? is_complete : base->is_direct;
      if (is_here && visit(class_of_base(base), offset + base->offset, false))
        return true;
    }
    const a_field* field = type->variant.class_struct_union.fields;
    for (; field; field = field->next)
      if (visit_field(field->type, offset + field->offset))
        return true;
    return false;
  }

  bool visit_field(a_type* type, uint64_t offset) {
    const a_type* element = skip_typerefs(skip_array_types(type));
    if (!is_laid_out_class(element))
      return false;
    uint64_t end = offset + size_of_type(type);
    uint64_t step = std::max<uint64_t>(element->size, 1);
    for (; offset < end && offset <= limit; offset += step)
      if (visit(element, offset, true))
        return true;
    return false;
  }
};

} // namespace

static bool holds_empty_subobject(const a_layout_cursor* cursor, const a_type* type,
                                  uint64_t offset) {
  auto [first, last] = cursor->empty_subobjects.equal_range(offset);
  return std::any_of(first, last, [type](const auto& entry) { return entry.second == type; });
}

// Beyond the last empty subobject there is nothing to conflict with.
static uint64_t last_empty_subobject(const a_layout_cursor* cursor) {
  return cursor->empty_subobjects.empty() ? 0 : cursor->empty_subobjects.rbegin()->first;
}

template <class VISITOR>
static an_empty_subobject_visit<VISITOR> empty_subobject_visit(a_layout_cursor* cursor,
                                                               uint64_t limit, VISITOR visitor) {
  return {cursor, limit, visitor};
}

static auto conflict_visit(a_layout_cursor* cursor) {
  return empty_subobject_visit(cursor, last_empty_subobject(cursor),
                               [cursor](const a_type* type, uint64_t offset) {
                                 return holds_empty_subobject(cursor, type, offset);
                               });
}

static auto recording_visit(a_layout_cursor* cursor, uint64_t limit) {
  return empty_subobject_visit(cursor, limit, [cursor](const a_type* type, uint64_t offset) {
    cursor->empty_subobjects.emplace(offset, type);
    return false;
  });
}

static bool base_conflicts(a_layout_cursor* cursor, const a_type* type, uint64_t offset) {
  return !cursor->empty_subobjects.empty() && conflict_visit(cursor).visit(type, offset, false);
}

void avoid_empty_subobjects(a_layout_cursor* cursor, a_field* field, uint64_t alignment) {
  if (is_union(cursor))
    return;
  while (!cursor->empty_subobjects.empty() &&
         conflict_visit(cursor).visit_field(field->type, cursor->offset) &&
         move_to(cursor, cursor->offset + alignment)) {
  }
  if (cursor->empty_subobject_limit != 0)
    recording_visit(cursor, cursor->empty_subobject_limit).visit_field(field->type, cursor->offset);
}

// ---- Tail padding ----

static bool lies_in_tail_padding(a_layout_cursor* cursor) {
  if (cursor->offset >= cursor->padded_end)
    return false;
  cursor->padding_used = std::max(cursor->padding_used, cursor->padded_end - cursor->offset);
  return warn_about_tail_padding_use;
}

void note_use_of_tail_padding(a_layout_cursor* cursor, const a_field* field) {
  if (lies_in_tail_padding(cursor))
    pos_sy_warning(ec_field_uses_tail_padding, &field->source_corresp.position,
                   symbol_of_field(field));
}

// ---- The placing of one base ----

// The record of a virtual base, of which a class has one for each type.
static a_base_class* virtual_base_record(const a_type* class_type, const a_type* base_type) {
  a_base_class* base = first_base(class_type);
  while (base && !(base->is_virtual && class_of_base(base) == base_type))
    base = base->next;
  return base;
}

static void set_base_offset(a_layout_cursor* cursor, a_base_class* base, uint64_t offset) {
  base->offset = offset;
  base->offset_is_known = true;
  // Behind the greatest empty base nothing that comes can meet what a base with
  // data holds.
  bool is_empty = is_empty_class_type(base->type);
  if (is_empty || cursor->empty_subobject_limit != 0)
    recording_visit(cursor, is_empty ? UINT64_MAX : cursor->empty_subobject_limit)
        .visit(class_of_base(base), offset, false);
}

// A virtual base that is the primary base of another base lies where that one
// lies, unless it has a place already.
static void claim_primary_bases(a_layout_cursor* cursor, const a_type* type, uint64_t offset,
                                a_class_set* visited) {
  check_stack_limit();
  if (!visited->insert(type).second)
    return;
  const a_base_class* primary = supplement_of_class(type)->primary_base;
  if (primary && primary->is_virtual) {
    a_base_class* base = virtual_base_record(cursor->class_type, class_of_base(primary));
    if (base && !base->offset_is_known) {
      set_base_offset(cursor, base, offset);
      claim_primary_bases(cursor, class_of_base(base), offset, visited);
    }
  }
  for (const a_base_class* base = first_base(type); base; base = base->next)
    if (base->is_direct && !base->is_virtual)
      claim_primary_bases(cursor, class_of_base(base), offset + base->offset, visited);
}

// An empty base lies at the start of the class when it can, and takes no room.
static void place_empty_base(a_layout_cursor* cursor, a_base_class* base, uint64_t alignment) {
  const a_type* type = class_of_base(base);
  uint64_t offset = 0;
  if (base_conflicts(cursor, type, 0)) {
    offset = align_up(cursor->offset, alignment);
    while (base_conflicts(cursor, type, offset) && offset <= targ_max_class_object_size)
      offset += alignment;
  }
  if (offset + type->size > targ_max_class_object_size)
    report_too_large(cursor);
  base->is_empty_at_zero = offset == 0;
  set_base_offset(cursor, base, offset);
  cursor->farthest_end = std::max(cursor->farthest_end, offset + type->size);
}

static void place_nonempty_base(a_layout_cursor* cursor, a_base_class* base, uint64_t alignment) {
  const a_type* type = class_of_base(base);
  align_cursor(cursor, alignment);
  while (base_conflicts(cursor, type, cursor->offset) &&
         move_to(cursor, cursor->offset + alignment)) {
  }
  if (lies_in_tail_padding(cursor))
    pos_ty_warning(ec_base_uses_tail_padding, &cursor->class_type->source_corresp.position, type);
  uint64_t offset = cursor->offset;
  set_base_offset(cursor, base, offset);
  move_to(cursor, offset + size_as_base(type));
  cursor->farthest_end = std::max(cursor->farthest_end, cursor->offset);
  cursor->padded_end = std::max(cursor->padded_end, offset + padded_size_as_base(type));
}

static void place_base(a_layout_cursor* cursor, a_base_class* base) {
  const a_type* type = class_of_base(base);
  if (!is_laid_out_class(type)) {
    base->offset_is_known = true;
    return;
  }
  uint64_t alignment = alignment_as_base(cursor, type);
  if (targ_optimize_empty_base_class_layout && is_empty_class_type(type))
    place_empty_base(cursor, base, alignment);
  else
    place_nonempty_base(cursor, base, alignment);
  raise_class_alignment(cursor, alignment);
  a_class_set visited;
  claim_primary_bases(cursor, type, base->offset, &visited);
}

// ---- The primary base ----

// A class with a virtual function pointer and no other data outside of virtual
// bases.
static bool is_nearly_empty(const a_type* type) {
  if (!has_vptr(type))
    return false;
  const a_field* field = type->variant.class_struct_union.fields;
  for (; field; field = field->next)
    if (!field->is_bit_field || field->bit_size != 0)
      return false;
  int nearly_empty_bases = 0;
  for (const a_base_class* base = first_base(type); base; base = base->next) {
    if (!base->is_direct || base->is_virtual)
      continue;
    const a_type* base_type = class_of_base(base);
    if (is_empty_class_type(base_type) ? base->offset != 0
                                       : !is_nearly_empty(base_type) || ++nearly_empty_bases > 1)
      return false;
  }
  return true;
}

// The virtual bases that are primary bases somewhere in the hierarchy.
static void collect_indirect_primaries(const a_type* type, a_class_set* primaries,
                                       a_class_set* visited) {
  check_stack_limit();
  for (const a_base_class* base = first_base(type); base; base = base->next) {
    const a_type* base_type = class_of_base(base);
    if (!base->is_direct || !visited->insert(base_type).second)
      continue;
    const a_base_class* primary = supplement_of_class(base_type)->primary_base;
    if (primary && primary->is_virtual)
      primaries->insert(class_of_base(primary));
    collect_indirect_primaries(base_type, primaries, visited);
  }
}

// The virtual bases in the order of the inheritance graph: each before its own
// bases, the first mention counts.
static void collect_virtual_bases(a_layout_cursor* cursor, const a_type* type,
                                  std::vector<a_base_class*>* bases, a_class_set* visited,
                                  a_class_set* listed) {
  check_stack_limit();
  if (!visited->insert(type).second)
    return;
  for (const a_base_class* base = first_base(type); base; base = base->next) {
    if (!base->is_direct)
      continue;
    const a_type* base_type = class_of_base(base);
    if (base->is_virtual && listed->insert(base_type).second)
      if (a_base_class* record = virtual_base_record(cursor->class_type, base_type))
        bases->push_back(record);
    collect_virtual_bases(cursor, base_type, bases, visited, listed);
  }
}

static std::vector<a_base_class*> virtual_bases_in_order(a_layout_cursor* cursor) {
  std::vector<a_base_class*> bases;
  a_class_set visited, listed;
  collect_virtual_bases(cursor, cursor->class_type, &bases, &visited, &listed);
  return bases;
}

static a_base_class* nearly_empty_virtual_base(a_layout_cursor* cursor) {
  a_class_set primaries, visited;
  a_base_class* first = nullptr;
  collect_indirect_primaries(cursor->class_type, &primaries, &visited);
  for (a_base_class* base : virtual_bases_in_order(cursor)) {
    if (!is_nearly_empty(class_of_base(base)))
      continue;
    if (!primaries.count(class_of_base(base)))
      return base;
    if (!first)
      first = base;
  }
  return first;
}

// The base whose virtual function table the class goes on with.
static a_base_class* choose_primary_base(a_layout_cursor* cursor) {
  for (a_base_class* base = first_base(cursor->class_type); base; base = base->next)
    if (base->is_direct && !base->is_virtual && has_vptr(class_of_base(base)))
      return base;
  return nearly_empty_virtual_base(cursor);
}

// ---- The class ----

static bool needs_vptr(const a_type* class_type) {
  const auto& info = class_type->variant.class_struct_union;
  if (info.has_virtual_functions || has_virtual_base(class_type))
    return true;
  for (const a_base_class* base = first_base(class_type); base; base = base->next)
    if (base->is_direct && has_vptr(class_of_base(base)))
      return true;
  return false;
}

static void place_vptr(a_layout_cursor* cursor) {
  a_type* class_type = cursor->class_type;
  a_class_type_supplement* supplement = supplement_of_class(class_type);
  class_type->variant.class_struct_union.has_vptr = true;
  a_base_class* primary = choose_primary_base(cursor);
  supplement->primary_base = primary;
  if (primary) {
    primary->shares_virtual_function_info = true;
    place_base(cursor, primary);
    supplement->virtual_function_info_offset =
        static_cast<int64_t>(primary->offset) +
        supplement_of_class(class_of_base(primary))->virtual_function_info_offset;
    return;
  }
  supplement->virtual_function_info_offset = 0;
  raise_class_alignment(cursor, targ_alignof_virtual_function_info);
  move_to(cursor, targ_sizeof_virtual_function_info);
  cursor->farthest_end = cursor->offset;
}

static uint64_t greatest_empty_base(const a_type* class_type) {
  uint64_t size = 0;
  for (const a_base_class* base = first_base(class_type); base; base = base->next)
    if ((base->is_direct || base->is_virtual) && is_empty_class_type(base->type))
      size = std::max(size, class_of_base(base)->size);
  return size;
}

static void forget_base_offsets(a_type* class_type) {
  for (a_base_class* base = first_base(class_type); base; base = base->next) {
    base->offset = 0;
    base->offset_is_known = false;
    base->is_empty_at_zero = false;
    base->shares_virtual_function_info = false;
  }
}

void lay_out_nonvirtual_bases(a_layout_cursor* cursor) {
  a_type* class_type = cursor->class_type;
  forget_base_offsets(class_type);
  cursor->empty_subobject_limit = greatest_empty_base(class_type);
  if (needs_vptr(class_type))
    place_vptr(cursor);
  for (a_base_class* base = first_base(class_type); base; base = base->next)
    if (base->is_direct && !base->is_virtual && !base->offset_is_known)
      place_base(cursor, base);
}

void lay_out_virtual_bases(a_layout_cursor* cursor) {
  for (a_base_class* base : virtual_bases_in_order(cursor))
    if (!base->offset_is_known)
      place_base(cursor, base);
  cursor->offset = std::max(cursor->offset, cursor->farthest_end);
}

// An indirect base lies in the last virtual base on the way to it, or else in
// the class itself.
static void set_indirect_base_offset(const a_type* class_type, a_base_class* base) {
  if (!base->derivations)
    return;
  uint64_t offset = 0;
  for (const a_derivation_step* step = base->derivations->path; step; step = step->next) {
    const a_base_class* record = step->base_class;
    if (record->is_virtual)
      offset = virtual_base_record(class_type, class_of_base(record))->offset;
    else
      offset += record->offset;
  }
  base->offset = offset;
  base->offset_is_known = true;
}

static bool has_data(const a_type* class_type) {
  const a_field* field = class_type->variant.class_struct_union.fields;
  for (; field; field = field->next)
    if (!field->is_bit_field || field->bit_size != 0)
      return true;
  return false;
}

void finish_bases(a_layout_cursor* cursor) {
  a_type* class_type = cursor->class_type;
  auto& info = class_type->variant.class_struct_union;
  for (a_base_class* base = first_base(class_type); base; base = base->next) {
    if (!base->offset_is_known)
      set_indirect_base_offset(class_type, base);
    if (base->is_direct && !is_empty_class_type(base->type))
      info.has_nonempty_base = true;
    if (base->offset > targ_max_base_class_offset)
      pos_sy2_error(ec_base_class_offset_too_large, &class_type->source_corresp.position,
                    class_of_base(base)->source_corresp.symbol, class_type->source_corresp.symbol);
  }
  info.is_empty = class_type->kind != tk_union && !info.has_vptr && !info.has_nonempty_base &&
                  !has_data(class_type);
}
