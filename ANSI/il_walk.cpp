#include "il_walk.h"

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_types.h"
#include "il_walk_int.h"
#include "mode_words.h"
#include "trans_unit.h"
#include "types.h"

#include <algorithm>
#include <cstddef>

uint8_t flag_value_meaning_visited;

namespace {

constexpr an_il_walk_callbacks no_callbacks = {};

// The fields of entries have many pointer types; a step knows only the place.
void* pointer_at(const void* place) {
  void* pointer;
  memcpy(&pointer, place, sizeof pointer);
  return pointer;
}

void set_pointer_at(void* place, const void* pointer) {
  memcpy(place, &pointer, sizeof pointer);
}

// A walk keeps the steps still to be done on a stack of its own, the next one
// on top: a list or a tree of any depth is walked without recursion, and yet in
// the order of the fields, each entry done before the field behind it.
class WALK {
public:
  WALK(const an_il_walk_callbacks& walk_callbacks, bool clear, bool only_function_entries)
      : callbacks(walk_callbacks), visitor(callbacks, clear, steps),
        stays_in_function(only_function_entries) {}

  // Does the steps that `add_steps` gives the visitor, and all that they lead to.
  template <class ADD_STEPS> void run(ADD_STEPS add_steps) {
    add_in_order([&] { add_steps(visitor); });
    while (!steps.empty()) {
      a_walk_item item = steps.back();
      steps.pop_back();
      do_step(item);
    }
  }

private:
  // Puts the steps that `add` pushes on the stack so that the first is on top.
  template <class ADD> void add_in_order(ADD add) {
    auto base = static_cast<std::ptrdiff_t>(steps.size());
    add();
    std::reverse(steps.begin() + base, steps.end());
  }

  void do_step(const a_walk_item& item) {
    switch (item.step) {
    case wstep_enter:
      enter(item.place, item.kind);
      break;
    case wstep_fields:
      enter_fields(item.place, item.kind);
      break;
    case wstep_leave:
      callbacks.entry(item.place, item.kind);
      break;
    case wstep_child: {
      void* entry = pointer_at(item.place);
      set_pointer_at(item.place, callbacks.pointer(entry, item.kind));
      enter(entry, item.kind);
      break;
    }
    case wstep_list:
      do_list_step(item);
      break;
    case wstep_sideways:
      set_pointer_at(item.place, callbacks.pointer(pointer_at(item.place), item.kind));
      break;
    case wstep_text:
      set_pointer_at(item.place, callbacks.text(static_cast<char*>(pointer_at(item.place)),
                                                item.kind, static_cast<uint64_t>(item.detail)));
      break;
    }
  }

  // One element of a list; the link behind it comes when the element is done.
  void do_list_step(const a_walk_item& item) {
    void* element = pointer_at(item.place);
    if (callbacks.list != nullptr)
      set_pointer_at(item.place, callbacks.list(element, item.kind));
    char* link = static_cast<char*>(element) + item.detail;
    if (pointer_at(link) != nullptr)
      steps.push_back({link, item.detail, item.kind, wstep_list});
    enter(element, item.kind);
  }

  void enter(void* entry, an_il_entry_kind kind) {
    if (!is_to_be_passed_over(entry, kind))
      enter_fields(entry, kind);
  }

  void enter_fields(void* entry, an_il_entry_kind kind) {
    if (callbacks.entry != nullptr)
      steps.push_back({entry, 0, kind, wstep_leave});
    add_in_order([&] { visit_fields(entry, kind, visitor); });
  }

  bool is_to_be_passed_over(void* entry, an_il_entry_kind kind) {
    if (callbacks.filter != nullptr)
      return callbacks.filter(entry, kind);
    an_il_entry_prefix& prefix = il_entry_prefix_of(entry);
    if (stays_in_function && prefix.file_scope_entry) {
      f_possibly_add_orphaned_file_scope_il_entry(entry, kind, curr_translation_unit);
      return true;
    }
    if (prefix.visited_flag == flag_value_meaning_visited)
      return true;
    prefix.visited_flag = flag_value_meaning_visited;
    return false;
  }

  const an_il_walk_callbacks& callbacks;
  std::vector<a_walk_item> steps;
  FIELD_VISITOR visitor;
  bool stays_in_function;
};

// Without a filter, a walk is two passes with opposite meanings of the visited
// flag: the first sets it in all entries, the second, which calls back, finds
// them set and clears them. So all flags are clear between walks.
template <class ADD_STEPS>
void walk(ADD_STEPS add_steps, const an_il_walk_callbacks& callbacks, bool clear,
          bool stays_in_function) {
  uint8_t saved_meaning = flag_value_meaning_visited;
  if (callbacks.filter == nullptr) {
    flag_value_meaning_visited = 1;
    WALK(no_callbacks, false, stays_in_function).run(add_steps);
    flag_value_meaning_visited = 0;
  }
  WALK(callbacks, clear, stays_in_function).run(add_steps);
  flag_value_meaning_visited = saved_meaning;
}

} // namespace

void walk_file_scope_il(const an_il_walk_callbacks& callbacks, bool clear_front_end_fields) {
  walk(visit_il_header, callbacks, clear_front_end_fields, false);
}

void walk_routine_scope_il(int32_t region, const an_il_walk_callbacks& callbacks,
                           bool clear_front_end_fields) {
  // The table itself is no part of the region.
  a_scope* head = il_header.region_scope_table[region];
  walk([&](FIELD_VISITOR& visitor) { visitor.list(head, iek_scope); }, callbacks,
       clear_front_end_fields, true);
}

void walk_il_subtree(void* entry, an_il_entry_kind kind, const an_il_walk_callbacks& callbacks) {
  walk([&](FIELD_VISITOR& visitor) { visitor.root(entry, kind); }, callbacks, false, false);
}

// --- File-scope entries that no scope leads to.

namespace {

bool is_reachable_from_a_scope(const a_source_correspondence& head) {
  return head.name != nullptr || head.is_class_member ||
         (head.parent_scope != nullptr && head.parent_scope->kind == sk_namespace);
}

bool constant_may_be_orphaned(const a_constant* constant) {
  if (constant->kind == con_template_param)
    return true;
  if (constant->kind == con_integer && !constant->is_unnamed_enumerator)
    return false;
  return !is_reachable_from_a_scope(constant->source_corresp);
}

bool type_may_be_orphaned(const a_type* type) {
  if (is_class_struct_union_kind(type->kind))
    return false;
  if (type->kind == tk_template_param)
    return true;
  if (type->kind == tk_routine && type->variant.routine.routine_supplement->param_types != nullptr)
    return false;
  if (type->kind == tk_integer && type->variant.integer.is_enum)
    return false;
  return !is_reachable_from_a_scope(type->source_corresp);
}

bool may_be_orphaned(const void* entry, an_il_entry_kind kind) {
  switch (kind) {
  case iek_constant:
    return constant_may_be_orphaned(static_cast<const a_constant*>(entry));
  case iek_type:
    return type_may_be_orphaned(static_cast<const a_type*>(entry));
  case iek_complex_value:
  case iek_template_arg:
  case iek_name_reference:
  case iek_attribute:
  case iek_base_class:
    return true;
  default:
    return false;
  }
}

// A unit's lists are the global ones while it is current, and once the front
// end has finished all are.
an_orphaned_entry_list* orphaned_lists_of(const a_translation_unit* unit) {
  if (unit == nullptr || unit == curr_translation_unit || !in_front_end)
    return orphaned_file_scope_il_entries;
  return unit->orphaned_entries;
}

} // namespace

void f_possibly_add_orphaned_file_scope_il_entry(void* entry, an_il_entry_kind kind,
                                                 a_translation_unit* unit) {
  an_orphaned_entry_list& list = orphaned_lists_of(unit)[kind];
  bool is_listed = orphan_link_of(entry) != nullptr || list.tail == entry;
  if (is_listed || !may_be_orphaned(entry, kind))
    return;
  if (list.tail == nullptr)
    list.head = entry;
  else
    orphan_link_of(list.tail) = entry;
  list.tail = entry;
}

void il_walk_init() {
  flag_value_meaning_visited = 0;
}
