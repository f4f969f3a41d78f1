// What the walker and the table of fields share.

#ifndef IL_WALK_INT_H
#define IL_WALK_INT_H

#include "il_walk.h"

#include <cstring>
#include <vector>

struct a_walk_item {
  void* entry;
  an_il_entry_kind kind;
  bool fields_are_done; // only the entry callback is left
};

// Applies the callbacks to the fields of one entry, and pushes the entries that
// they lead to on the stack of work.
class FIELD_VISITOR {
public:
  FIELD_VISITOR(const an_il_walk_callbacks& walk_callbacks, bool clear,
                std::vector<a_walk_item>& work)
      : callbacks(walk_callbacks), clear_front_end_fields(clear), stack(work) {}

  // A pointer to an entry that belongs to this one, or that it needs.
  template <class T> void child(T*& pointer, an_il_entry_kind kind) {
    if (pointer == nullptr)
      return;
    push(pointer, kind);
    sideways(pointer, kind);
  }

  // The head of a list; the elements are chained by `next`.
  template <class T> void list(T*& head, an_il_entry_kind kind, T* T::*next = &T::next) {
    T** link = &head;
    while (T* element = *link) {
      push(element, kind);
      if (callbacks.list != nullptr)
        *link = static_cast<T*>(callbacks.list(element, kind));
      link = &(element->*next);
    }
  }

  // A pointer that only refers: it isn't followed.
  template <class T> void sideways(T*& pointer, an_il_entry_kind kind) {
    if (pointer != nullptr && callbacks.pointer != nullptr)
      pointer = static_cast<T*>(callbacks.pointer(pointer, kind));
  }

  void text(const char*& field, an_il_entry_kind kind) {
    if (field != nullptr && callbacks.text != nullptr)
      field = callbacks.text(field, kind, strlen(field) + 1);
  }

  void sized_text(const char*& field, uint64_t length, an_il_entry_kind kind) {
    if (field != nullptr && callbacks.text != nullptr)
      field = callbacks.text(field, kind, length);
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
  template <class T> void push(T* pointer, an_il_entry_kind kind) {
    stack.push_back({const_cast<void*>(static_cast<const void*>(pointer)), kind, false});
  }

  const an_il_walk_callbacks& callbacks;
  bool clear_front_end_fields;
  std::vector<a_walk_item>& stack;
};

// Visits all fields of the entry, in their order in the record.
void visit_fields(void* entry, an_il_entry_kind kind, FIELD_VISITOR& visitor);

#endif
