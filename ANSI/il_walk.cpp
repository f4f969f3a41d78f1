#include "il_walk.h"

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_types.h"
#include "il_walk_int.h"
#include "types.h"

uint8_t flag_value_meaning_visited;

namespace {

constexpr an_il_walk_callbacks no_callbacks = {};

class WALK {
public:
  WALK(const an_il_walk_callbacks& walk_callbacks, bool clear, bool only_function_entries)
      : callbacks(walk_callbacks), visitor(callbacks, clear, stack),
        stays_in_function(only_function_entries) {}

  // The work is kept on a stack of its own: a list or a tree of any depth is
  // walked without recursion.
  void run(void* entry, an_il_entry_kind kind) {
    stack.push_back({entry, kind, false});
    while (!stack.empty()) {
      a_walk_item item = stack.back();
      stack.pop_back();
      if (item.fields_are_done)
        callbacks.entry(item.entry, item.kind);
      else if (enters(item.entry, item.kind))
        walk_entry(item);
    }
  }

private:
  void walk_entry(a_walk_item item) {
    if (callbacks.entry != nullptr)
      stack.push_back({item.entry, item.kind, true});
    visit_fields(item.entry, item.kind, visitor);
  }

  bool enters(void* entry, an_il_entry_kind kind) {
    if (callbacks.filter != nullptr)
      return !callbacks.filter(entry, kind);
    an_il_entry_prefix& prefix = il_entry_prefix_of(entry);
    if (stays_in_function && prefix.file_scope_entry) {
      f_possibly_add_orphaned_file_scope_il_entry(entry, kind, nullptr);
      return false;
    }
    if (prefix.visited_flag == flag_value_meaning_visited)
      return false;
    prefix.visited_flag = flag_value_meaning_visited;
    return true;
  }

  const an_il_walk_callbacks& callbacks;
  std::vector<a_walk_item> stack;
  FIELD_VISITOR visitor;
  bool stays_in_function;
};

// Without a filter, a walk is two passes with opposite meanings of the visited
// flag: the first sets it in all entries, the second, which calls back, finds
// them set and clears them. So all flags are clear between walks.
void walk(void* entry, an_il_entry_kind kind, const an_il_walk_callbacks& callbacks, bool clear,
          bool stays_in_function) {
  uint8_t saved_meaning = flag_value_meaning_visited;
  if (callbacks.filter == nullptr) {
    flag_value_meaning_visited = 1;
    WALK(no_callbacks, false, stays_in_function).run(entry, kind);
    flag_value_meaning_visited = 0;
  }
  WALK(callbacks, clear, stays_in_function).run(entry, kind);
  flag_value_meaning_visited = saved_meaning;
}

} // namespace

void walk_file_scope_il(const an_il_walk_callbacks& callbacks, bool clear_front_end_fields) {
  walk(il_header.primary_scope, iek_scope, callbacks, clear_front_end_fields, false);
  for (a_macro* macro = il_header.macros; macro != nullptr; macro = macro->next)
    walk(macro, iek_macro, callbacks, clear_front_end_fields, false);
  for (auto* list = il_header.scope_orphaned_lists; list != nullptr; list = list->next)
    walk(list, iek_scope_orphaned_list, callbacks, clear_front_end_fields, false);
}

void walk_routine_scope_il(int32_t region, const an_il_walk_callbacks& callbacks,
                           bool clear_front_end_fields) {
  for (a_scope* scope = il_header.region_scope_table[region]; scope != nullptr; scope = scope->next)
    walk(scope, iek_scope, callbacks, clear_front_end_fields, true);
}

void walk_il_subtree(void* entry, an_il_entry_kind kind, const an_il_walk_callbacks& callbacks) {
  walk(entry, kind, callbacks, false, false);
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

} // namespace

void f_possibly_add_orphaned_file_scope_il_entry(void* entry, an_il_entry_kind kind,
                                                 a_translation_unit*) {
  an_orphaned_entry_list& list = orphaned_file_scope_il_entries[kind];
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
