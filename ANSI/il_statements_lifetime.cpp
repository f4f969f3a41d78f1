// The tree of object lifetimes, parallel to blocks and full expressions, and
// the destructions that fall due at the end of each.

#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "mem_manage.h"
#include "scope_stk.h"

#include <cstring>

an_object_lifetime* curr_object_lifetime;

// ---- Records ----

// The function whose list of free lifetimes serves the current region; null at
// file scope.
static a_scope_stack_entry* function_with_free_lifetimes() {
  if (curr_il_region_number == file_scope_region_number || depth_innermost_function_scope < 0)
    return nullptr;
  a_scope_stack_entry* entry = &scope_stack[depth_innermost_function_scope];
  // A record is only good for the region that it lies in.
  return entry->region_number == curr_il_region_number ? entry : nullptr;
}

an_object_lifetime* alloc_object_lifetime(an_object_lifetime_kind kind) {
  a_scope_stack_entry* function = function_with_free_lifetimes();
  an_object_lifetime* lifetime;
  if (function != nullptr && function->free_lifetimes != nullptr) {
    lifetime = function->free_lifetimes;
    function->free_lifetimes = lifetime->next_sibling;
  } else {
    lifetime =
        static_cast<an_object_lifetime*>(alloc_il_in_current_region(sizeof(an_object_lifetime)));
  }
  memset(static_cast<void*>(lifetime), 0, sizeof *lifetime);
  lifetime->kind = kind;
  return lifetime;
}

void free_object_lifetime(an_object_lifetime* lifetime) {
  a_scope_stack_entry* function = function_with_free_lifetimes();
  if (function == nullptr || is_file_scope_entry(lifetime))
    return;
  lifetime->next_sibling = function->free_lifetimes;
  function->free_lifetimes = lifetime;
}

// ---- Binding ----

// The field of the entry that leads back to its lifetime.
static an_object_lifetime** lifetime_field_of_entry(const an_object_lifetime* lifetime) {
  if (lifetime->assoc.entry == nullptr)
    return nullptr;
  switch (lifetime->assoc_kind) {
  case iek_expr_node:
    return lifetime->assoc.expr->kind == expr_with_lifetime
               ? &lifetime->assoc.expr->variant.with_lifetime.object_lifetime
               : nullptr;
  case iek_try_supplement:
    return &lifetime->assoc.try_supplement->lifetime;
  case iek_block_supplement:
    return &lifetime->assoc.block->object_lifetime;
  case iek_scope:
    return lifetime->kind == olk_function ? &lifetime->assoc.scope->first_lifetime
                                          : &lifetime->assoc.scope->object_lifetime;
  case iek_dynamic_init:
    return &lifetime->assoc.dynamic_init->following_lifetime;
  case iek_local_static_variable_init:
    return &lifetime->assoc.local_static_init->lifetime;
  default:
    return nullptr;
  }
}

void bind_object_lifetime(an_object_lifetime* lifetime, an_il_entry_kind kind, void* entry) {
  lifetime->assoc_kind = kind;
  lifetime->assoc.entry = entry;
  if (lifetime->kind == olk_full_expr)
    return;
  an_object_lifetime** field = lifetime_field_of_entry(lifetime);
  if (field != nullptr)
    *field = lifetime;
}

void unbind_object_lifetime(an_object_lifetime* lifetime) {
  an_object_lifetime** field = lifetime_field_of_entry(lifetime);
  if (field != nullptr && *field == lifetime)
    *field = nullptr;
  lifetime->assoc_kind = iek_none;
  lifetime->assoc.entry = nullptr;
}

// ---- The tree ----

static bool is_scope_of_function(an_il_entry_kind kind, const void* entry) {
  return kind == iek_scope && entry != nullptr &&
         static_cast<const a_scope*>(entry)->kind == sk_function;
}

static void link_into_tree(an_object_lifetime* lifetime, an_il_entry_kind kind, const void* entry) {
  an_object_lifetime* parent = curr_object_lifetime;
  lifetime->parent = parent;
  if (parent == nullptr || is_scope_of_function(kind, entry))
    return;
  lifetime->next_sibling = parent->first_child;
  parent->first_child = lifetime;
  lifetime->is_linked = true;
  if (lifetime->kind == olk_full_expr)
    parent->has_full_expr_child = true;
  lifetime->first_destruction_at_entry = parent->destructions;
}

an_object_lifetime* push_or_repush_object_lifetime(an_il_entry_kind kind, void* entry,
                                                   an_object_lifetime* existing,
                                                   an_object_lifetime_kind lifetime_kind,
                                                   bool repush) {
  an_object_lifetime* lifetime =
      existing != nullptr ? existing : alloc_object_lifetime(lifetime_kind);
  const bool is_still_linked = repush && lifetime->is_linked;
  if (lifetime->kind != olk_none && !is_still_linked)
    link_into_tree(lifetime, kind, entry);
  if (!repush)
    bind_object_lifetime(lifetime, kind, entry);
  curr_object_lifetime = lifetime;
  return lifetime;
}

an_object_lifetime* push_object_lifetime(an_il_entry_kind kind, void* entry,
                                         an_object_lifetime_kind lifetime_kind) {
  return push_or_repush_object_lifetime(kind, entry, nullptr, lifetime_kind, false);
}

// The link of the parent's list of children that leads to the lifetime.
static an_object_lifetime** link_in_parent(an_object_lifetime* lifetime) {
  an_object_lifetime** link = &lifetime->parent->first_child;
  while (*link != nullptr && *link != lifetime)
    link = &(*link)->next_sibling;
  return link;
}

static bool has_full_expr_among_children(const an_object_lifetime* lifetime) {
  const an_object_lifetime* child = lifetime->first_child;
  while (child != nullptr && child->kind != olk_full_expr)
    child = child->next_sibling;
  return child != nullptr;
}

// After a child of the kind has left.
static void redo_full_expr_flag(an_object_lifetime* parent, an_object_lifetime_kind kind_of_child) {
  if (kind_of_child == olk_full_expr)
    parent->has_full_expr_child = has_full_expr_among_children(parent);
}

void detach_from_object_lifetime_tree(an_object_lifetime* lifetime) {
  if (lifetime->is_linked) {
    *link_in_parent(lifetime) = lifetime->next_sibling;
    redo_full_expr_flag(lifetime->parent, lifetime->kind);
  }
  lifetime->is_linked = false;
  lifetime->next_sibling = nullptr;
  lifetime->parent = nullptr;
}

// What a child of the lifetime has to know when it becomes one of an enclosing
// lifetime. Where it had nothing to destroy behind itself, it goes on with what
// the lifetime itself began with.
static void move_to_parent(an_object_lifetime* child, const an_object_lifetime* lifetime,
                           an_object_lifetime* parent) {
  child->parent = parent;
  if (child->first_destruction_at_entry == nullptr)
    child->first_destruction_at_entry = lifetime->first_destruction_at_entry;
  if (child->kind == olk_full_expr)
    parent->has_full_expr_child = true;
}

// Puts the children of a lifetime in its place among its parent's.
static void replace_by_children(an_object_lifetime* lifetime) {
  an_object_lifetime* parent = lifetime->parent;
  an_object_lifetime** link = link_in_parent(lifetime);
  *link = lifetime->first_child;
  while (*link != nullptr) {
    an_object_lifetime* child = *link;
    move_to_parent(child, lifetime, parent);
    link = &child->next_sibling;
  }
  *link = lifetime->next_sibling;
  lifetime->first_child = nullptr;
  lifetime->next_sibling = nullptr;
  lifetime->is_linked = false;
  redo_full_expr_flag(parent, lifetime->kind);
}

// The lifetime of all that is open in a function hangs from nothing: what is
// in it has no other place. The lifetime of the function as a whole hangs from
// it.
static bool is_empty_function_lifetime(const an_object_lifetime* lifetime) {
  return lifetime->assoc_kind == iek_scope && lifetime->assoc.scope != nullptr &&
         lifetime->assoc.scope->first_lifetime == nullptr && lifetime->first_child == nullptr;
}

bool is_useless_object_lifetime(const an_object_lifetime* lifetime) {
  if (lifetime->destructions != nullptr || lifetime->useful_inner_function_lifetime)
    return false;
  switch (lifetime->kind) {
  case olk_block:
  case olk_full_expr:
  case olk_other:
    return lifetime->is_linked || is_empty_function_lifetime(lifetime);
  case olk_conditional:
    // Whether its children began depends on the condition: they need it.
    return lifetime->is_linked && lifetime->first_child == nullptr;
  default:
    return false;
  }
}

void mark_object_lifetime_as_useless(an_object_lifetime* lifetime) {
  lifetime->useful_inner_function_lifetime = false;
  for (an_object_lifetime* child = lifetime->first_child; child != nullptr;
       child = child->next_sibling) {
    const a_dynamic_init* first = child->first_destruction_at_entry;
    if (first != nullptr && first->lifetime == lifetime)
      child->first_destruction_at_entry = nullptr;
  }
  while (lifetime->destructions != nullptr) {
    a_dynamic_init* init = lifetime->destructions;
    lifetime->destructions = init->next_destruction;
    init->next_destruction = nullptr;
    init->lifetime = nullptr;
  }
}

bool pop_object_lifetime_full(bool keep) {
  an_object_lifetime* lifetime = curr_object_lifetime;
  an_object_lifetime* parent = lifetime->parent;
  curr_object_lifetime = parent;
  if (!keep && is_useless_object_lifetime(lifetime)) {
    if (lifetime->is_linked)
      replace_by_children(lifetime);
    unbind_object_lifetime(lifetime);
    free_object_lifetime(lifetime);
    return false;
  }
  // A function's lifetime hangs from no list of children.
  if (parent != nullptr && !lifetime->is_linked && lifetime->kind != olk_none)
    parent->useful_inner_function_lifetime = true;
  return true;
}

bool pop_object_lifetime() {
  return pop_object_lifetime_full(false);
}

// In front of the target's children, which are older, in the same order.
static void promote_children(an_object_lifetime* lifetime, an_object_lifetime* target) {
  an_object_lifetime** link = &lifetime->first_child;
  while (*link != nullptr) {
    move_to_parent(*link, lifetime, target);
    link = &(*link)->next_sibling;
  }
  *link = target->first_child;
  target->first_child = lifetime->first_child;
  lifetime->first_child = nullptr;
  lifetime->has_full_expr_child = false;
}

// Behind what the target has to destroy already, that is in front of it.
static void promote_destructions(an_object_lifetime* lifetime, an_object_lifetime* target) {
  a_dynamic_init** link = &lifetime->destructions;
  while (*link != nullptr) {
    (*link)->lifetime = target;
    link = &(*link)->next_destruction;
  }
  *link = target->destructions;
  target->destructions = lifetime->destructions;
  lifetime->destructions = nullptr;
}

void promote_lifetime_contents_to_curr_object_lifetime(an_object_lifetime* lifetime) {
  promote_children(lifetime, curr_object_lifetime);
  promote_destructions(lifetime, curr_object_lifetime);
}

an_object_lifetime* innermost_block_object_lifetime() {
  an_object_lifetime* lifetime = curr_object_lifetime;
  while (lifetime != nullptr && lifetime->kind != olk_block)
    lifetime = lifetime->parent;
  return lifetime;
}

// ---- Destructions ----

// The lifetime of the innermost function as a whole, made when it is wanted;
// outside functions the root.
static an_object_lifetime* lifetime_of_innermost_function() {
  a_scope* scope = innermost_function_scope;
  if (scope == nullptr) {
    an_object_lifetime* root = curr_object_lifetime;
    while (root != nullptr && root->parent != nullptr)
      root = root->parent;
    return root;
  }
  if (scope->first_lifetime == nullptr) {
    an_object_lifetime* lifetime = alloc_object_lifetime(olk_function);
    lifetime->parent = scope->object_lifetime;
    bind_object_lifetime(lifetime, iek_scope, scope);
  }
  return scope->first_lifetime;
}

static an_object_lifetime* target_of_destruction(bool to_function_lifetime, bool to_block) {
  if (to_function_lifetime)
    return lifetime_of_innermost_function();
  an_object_lifetime* target = curr_object_lifetime;
  while (to_block && target != nullptr && target->kind != olk_block &&
         target->kind != olk_full_expr)
    target = target->parent;
  return target;
}

// The lifetime just below the target, on the way up from where the object was
// made, that already has destructions: leaving it has to know the new one too.
static an_object_lifetime* nested_lifetime_with_destructions(an_object_lifetime* from,
                                                             const an_object_lifetime* target) {
  an_object_lifetime* found = nullptr;
  for (; from != nullptr && from != target; from = from->parent) {
    if (from->destructions != nullptr)
      found = from;
  }
  return from == target ? found : nullptr;
}

// The statements of a template are translated with each instance.
static bool in_template_definition() {
  return depth_template_declaration_scope != -1 && initial_value_for_il_lowering_flag == 0;
}

void record_end_of_lifetime_destruction(a_dynamic_init* init, bool to_function_lifetime,
                                        bool to_block) {
  const bool has_destruction = init->destructor != nullptr ||
                               (init->variable != nullptr && init->variable->needs_destruction);
  if (!has_destruction || in_template_definition())
    return;
  an_object_lifetime* target = target_of_destruction(to_function_lifetime, to_block);
  if (target == nullptr)
    return;
  if (init->following_lifetime != target) {
    an_object_lifetime* from =
        init->following_lifetime != nullptr ? init->following_lifetime : curr_object_lifetime;
    an_object_lifetime* nested = nested_lifetime_with_destructions(from, target);
    if (nested != nullptr) {
      nested->first_destruction_at_entry = init;
      init->cleanup_by_nested_lifetime = true;
      init->source_lifetime = nested;
    }
  }
  init->lifetime = target;
  init->next_destruction = target->destructions;
  target->destructions = init;
}

void record_partial_aggregate_cleanup_destruction(a_dynamic_init* part, a_dynamic_init* whole) {
  // Parts are cleaned up, the last one first, if a later part is left by an
  // exception; the whole has a destruction of its own.
  part->is_partial_aggregate_cleanup = true;
  part->destroys_on_exception_only = true;
  part->partial_cleanup_next = whole->partial_cleanup_next;
  whole->partial_cleanup_next = part;
  record_end_of_lifetime_destruction(part, false, false);
}

void add_to_end_of_destructions_list(a_dynamic_init* init, an_object_lifetime* lifetime) {
  a_dynamic_init** link = &lifetime->destructions;
  while (*link != nullptr)
    link = &(*link)->next_destruction;
  *link = init;
  init->next_destruction = nullptr;
  init->lifetime = lifetime;
}

void add_to_destructions_list_following(a_dynamic_init* init, a_dynamic_init* position) {
  init->lifetime = position->lifetime;
  init->next_destruction = position->next_destruction;
  position->next_destruction = init;
}

// A lifetime that began while the destruction headed the list now begins with
// the one behind it.
static void replace_first_destruction_in_children(an_object_lifetime* lifetime,
                                                  const a_dynamic_init* init) {
  for (an_object_lifetime* child = lifetime->first_child; child != nullptr;
       child = child->next_sibling) {
    if (child->first_destruction_at_entry == init)
      child->first_destruction_at_entry = init->next_destruction;
  }
}

void remove_from_destruction_list(a_dynamic_init* init) {
  an_object_lifetime* lifetime = init->lifetime;
  if (lifetime == nullptr)
    return;
  a_dynamic_init** link = &lifetime->destructions;
  while (*link != nullptr && *link != init)
    link = &(*link)->next_destruction;
  if (*link == nullptr)
    return;
  replace_first_destruction_in_children(lifetime, init);
  if (init->cleanup_by_nested_lifetime) {
    if (init->source_lifetime->first_destruction_at_entry == init)
      init->source_lifetime->first_destruction_at_entry = init->next_destruction;
    init->source_lifetime = nullptr;
    init->cleanup_by_nested_lifetime = false;
  }
  *link = init->next_destruction;
  init->next_destruction = nullptr;
  init->lifetime = nullptr;
}

an_expr_node* add_object_lifetime_to_expr(an_expr_node* expr, an_object_lifetime* lifetime) {
  an_expr_node* node = alloc_expr_node(expr_with_lifetime);
  node->type = expr->type;
  node->position = expr->position;
  node->range = expr->range;
  copy_node_value_category(expr, node);
  expr->next = nullptr;
  node->variant.with_lifetime.expr = expr;
  node->variant.with_lifetime.object_lifetime = lifetime;
  lifetime->assoc_kind = iek_expr_node;
  lifetime->assoc.expr = node;
  return node;
}
