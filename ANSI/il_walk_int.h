// What the walker and the table of fields share.

#ifndef IL_WALK_INT_H
#define IL_WALK_INT_H

#include "il_alloc.h"
#include "il_walk.h"

#include <cstring>
#include <vector>

enum a_walk_step : uint8_t {
  wstep_enter,    // `place` is an entry to visit
  wstep_fields,   // the same, and the filter has let it pass
  wstep_leave,    // all fields of the entry `place` are done
  wstep_child,    // `place` is a pointer field, to be mapped and followed
  wstep_list,     // `place` is the head or a link of a list
  wstep_sideways, // `place` is a pointer field, to be mapped alone
  wstep_text      // `place` is a text field
};

// One step of a walk that is still to be done.
struct a_walk_item {
  void* place;
  int64_t detail; // of a list: where the link lies in an element; of a text: its length
  an_il_entry_kind kind;
  a_walk_step step;
};

// Turns the fields of one entry into steps, in the order of the fields. What
// no callback wants to see makes no step.
class FIELD_VISITOR {
public:
  FIELD_VISITOR(const an_il_walk_callbacks& walk_callbacks, bool clear,
                std::vector<a_walk_item>& work)
      : callbacks(walk_callbacks), clear_front_end_fields(clear), steps(work) {}

  // An entry that no field leads to.
  void root(void* entry, an_il_entry_kind kind) {
    add(entry, 0, kind, wstep_enter);
  }

  // A pointer to an entry that belongs to this one, or that it needs.
  template <class T> void child(T*& pointer, an_il_entry_kind kind) {
    if (pointer == nullptr)
      return;
    if (callbacks.pointer != nullptr)
      add(&pointer, 0, kind, wstep_child);
    else if (callbacks.filter == nullptr)
      add(pointer, 0, kind, wstep_enter);
    else if (kind == iek_type && callbacks.passes_over_kept_types && is_kept_type(pointer))
      return;
    else if (!callbacks.filter(pointer, kind)) // most are turned away: no step is made
      add(pointer, 0, kind, wstep_fields);
  }

  // The head of a list; the elements are chained by `next`.
  template <class T> void list(T*& head, an_il_entry_kind kind, T* T::*next = &T::next) {
    if (head == nullptr)
      return;
    const auto* link = reinterpret_cast<const char*>(&(head->*next));
    add(&head, link - reinterpret_cast<const char*>(head), kind, wstep_list);
  }

  // A list chained by a link that lies `link_offset` bytes from its elements.
  void list_by_offset(void*& head, an_il_entry_kind kind, int64_t link_offset) {
    if (head != nullptr)
      add(&head, link_offset, kind, wstep_list);
  }

  // A pointer that only refers: it isn't followed.
  template <class T> void sideways(T*& pointer, an_il_entry_kind kind) {
    if (pointer != nullptr && callbacks.pointer != nullptr)
      add(&pointer, 0, kind, wstep_sideways);
  }

  void text(const char*& field, an_il_entry_kind kind) {
    if (field != nullptr && callbacks.text != nullptr)
      sized_text(field, strlen(field) + 1, kind);
  }

  void sized_text(const char*& field, uint64_t length, an_il_entry_kind kind) {
    if (field != nullptr && callbacks.text != nullptr)
      add(&field, static_cast<int64_t>(length), kind, wstep_text);
  }

  // A field that has no meaning outside the front end.
  template <class T> void front_end(T*& pointer) {
    if (clear_front_end_fields)
      pointer = nullptr;
  }

  // A pointer whose kind is known only from a byte of the record.
  void child_of_kind(void*& pointer, an_il_entry_kind kind) {
    if (kind != iek_none)
      child(pointer, kind);
  }
  void sideways_of_kind(void*& pointer, an_il_entry_kind kind) {
    if (kind != iek_none)
      sideways(pointer, kind);
  }

private:
  // A type begins with its correspondence to the source.
  static bool is_kept_type(const void* type) {
    return il_entry_prefix_of(type).keep_in_il &&
           static_cast<const a_source_correspondence*>(type)->needed;
  }

  void add(const void* place, int64_t detail, an_il_entry_kind kind, a_walk_step step) {
    steps.push_back({const_cast<void*>(place), detail, kind, step});
  }

  const an_il_walk_callbacks& callbacks;
  bool clear_front_end_fields;
  std::vector<a_walk_item>& steps;
};

// Visits all fields of the entry, in their order in the record.
void visit_fields(void* entry, an_il_entry_kind kind, FIELD_VISITOR& visitor);
// Visits the fields of the header of the IL, and the lists of orphaned entries
// in the order of their kinds.
void visit_il_header(FIELD_VISITOR& visitor);

#endif
