// Names of namespaces: inline namespaces, using-directives and
// using-declarations (C++11 7.3).

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup_int.h"
#include "mem_manage.h"
#include "types.h"

#include <algorithm>

// A directive that acts for an open scope.
struct an_active_using_directive {
  an_active_using_directive* next;           // of the scope that has it
  an_active_using_directive* next_in_lookup; // of the scope in which its names appear
  a_namespace* nominated;
  int32_t lookup_depth; // of that scope
  bool is_at_rest;      // another unit is current, or it stands too far down
  uint32_t decl_seq;
};

static an_active_using_directive* avail_active_using_directives;

// ---- What was found ----

static a_type* type_of_symbol(const a_symbol* symbol) {
  switch (symbol->kind) {
  case symk_type:
  case symk_class_or_struct:
  case symk_union:
  case symk_enum:
    return symbol->variant.type;
  default:
    return nullptr;
  }
}

// Two declarations of one entity are no ambiguity (C++11 7.3.4 p6).
static bool is_same_entity(a_symbol* a, a_symbol* b) {
  a = fundamental_symbol_of(a);
  b = fundamental_symbol_of(b);
  if (a == b)
    return true;
  a_type* type_a = type_of_symbol(a);
  a_type* type_b = type_of_symbol(b);
  if (type_a != nullptr && type_b != nullptr)
    return identical_types(type_a, type_b);
  an_il_entry_kind kind_a, kind_b;
  const void* entry = il_entry_for_symbol(a, &kind_a);
  return entry != nullptr && entry == il_entry_for_symbol(b, &kind_b) && kind_a == kind_b;
}

void add_to_found_set(a_found_set* set, a_symbol* symbol) {
  for (a_symbol* other : set->symbols)
    if (is_same_entity(other, symbol))
      return;
  set->symbols.push_back(symbol);
}

static void add_functions(a_symbol* symbol, std::vector<a_symbol*>* functions) {
  a_symbol* real = fundamental_symbol_of(symbol);
  if (real->kind != symk_overloaded_function) {
    functions->push_back(real);
    return;
  }
  for (a_symbol* s = real->variant.overload_list; s != nullptr; s = s->next_homonym)
    functions->push_back(fundamental_symbol_of(s));
}

a_symbol* result_of_found_set(const a_found_set* set, a_lookup* lookup) {
  if (set->symbols.size() <= 1)
    return set->symbols.empty() ? nullptr : set->symbols.front();
  std::vector<a_symbol*> functions;
  for (a_symbol* symbol : set->symbols) {
    if (!is_function_symbol_kind(fundamental_symbol_of(symbol)->kind)) {
      lookup->is_ambiguous = true;
      return set->symbols.front();
    }
    add_functions(symbol, &functions);
  }
  return make_overload_set_of(functions);
}

// ---- Namespaces ----

a_namespace* namespace_of_scope(const a_scope* scope) {
  return scope->kind == sk_namespace ? f_skip_namespace_aliases(scope->assoc.namespace_entry)
                                     : nullptr;
}

a_scope* enclosing_namespace_scope(a_source_correspondence* corresp, an_il_entry_kind kind) {
  a_scope* scope = f_get_parent_scope_of(corresp, kind);
  while (scope != nullptr && scope->kind != sk_namespace && scope->kind != sk_file)
    scope = scope->parent;
  return scope == nullptr ? il_header.primary_scope : scope;
}

static bool encloses(const a_scope* outer, const a_scope* inner) {
  while (inner != nullptr && inner != outer)
    inner = inner->parent;
  return inner == outer;
}

void lookup_in_inline_namespace_set(a_scope* scope, a_lookup* lookup, a_found_set* set) {
  std::vector<a_scope*> waiting = {scope};
  while (!waiting.empty()) {
    scope = waiting.back();
    waiting.pop_back();
    a_symbol* symbol = table_lookup(get_pointers_block_for_scope(scope), lookup);
    if (symbol != nullptr)
      add_to_found_set(set, symbol);
    for (a_namespace* n = scope->namespaces; n != nullptr; n = n->next)
      if (n->is_inline && !n->is_alias && n->variant.scope != nullptr)
        waiting.push_back(n->variant.scope);
  }
}

a_symbol* open_namespace_lookup(a_scope_stack_entry* entry, a_lookup* lookup) {
  a_found_set set;
  lookup_in_inline_namespace_set(entry->il_scope, lookup, &set);
  if (!(lookup->options & ilo_ignore_using_directives)) {
    for (const an_active_using_directive* directive = entry->lookup_using_list;
         directive != nullptr; directive = directive->next_in_lookup)
      if (!directive->is_at_rest && directive->decl_seq <= lookup->decl_seq_limit)
        lookup_in_inline_namespace_set(scope_of_namespace(directive->nominated), lookup, &set);
  }
  return result_of_found_set(&set, lookup);
}

template <typename F> static void for_each_directive(const a_scope* scope, F action) {
  for (a_using_decl* decl = scope->using_decls; decl != nullptr; decl = decl->next)
    if (decl->is_using_directive)
      action(f_skip_namespace_aliases(static_cast<a_namespace*>(decl->entity)));
}

// A directive leads on only from a namespace that doesn't declare the name.
a_symbol* qualified_namespace_lookup(a_scope* scope, a_lookup* lookup) {
  a_found_set set;
  std::vector<a_scope*> waiting = {scope};
  for (size_t i = 0; i < waiting.size(); ++i) {
    a_found_set found;
    lookup_in_inline_namespace_set(waiting[i], lookup, &found);
    for (a_symbol* symbol : found.symbols)
      add_to_found_set(&set, symbol);
    if (!found.symbols.empty() || (lookup->options & ilo_ignore_using_directives))
      continue;
    for_each_directive(waiting[i], [&waiting](a_namespace* nominated) {
      a_scope* next = scope_of_namespace(nominated);
      if (std::find(waiting.begin(), waiting.end(), next) == waiting.end())
        waiting.push_back(next);
    });
  }
  return result_of_found_set(&set, lookup);
}

// ---- Using-directives ----

static bool is_namespace_entry(const a_scope_stack_entry* entry) {
  return entry->kind == sk_file ||
         (entry->kind >= sk_namespace && entry->kind <= sk_namespace_reactivation);
}

// Names appear as in the nearest namespace around both the directive and the
// namespace that it nominates (C++11 7.3.4 p2).
static int32_t depth_of_lookup_scope(const a_namespace* nominated, int32_t depth) {
  const a_scope* inner = nominated->variant.scope;
  while (depth > 0 &&
         !(is_namespace_entry(&scope_stack[depth]) && encloses(scope_stack[depth].il_scope, inner)))
    depth = static_cast<int32_t>(scope_stack[depth].parent_depth);
  return depth < 0 ? 0 : depth;
}

static bool is_active_at(const a_namespace* nominated, int32_t depth) {
  const an_active_using_directive* directive = scope_stack[depth].active_using_directives;
  while (directive != nullptr && directive->nominated != nominated)
    directive = directive->next;
  return directive != nullptr;
}

static void activate_one(a_namespace* nominated, int32_t depth) {
  an_active_using_directive* directive = avail_active_using_directives;
  if (directive != nullptr)
    avail_active_using_directives = directive->next;
  else
    directive = alloc_front_end_record<an_active_using_directive>();
  a_scope_stack_entry* owner = &scope_stack[depth];
  directive->nominated = nominated;
  directive->is_at_rest = false;
  directive->decl_seq = decl_seq_counter;
  directive->lookup_depth = depth_of_lookup_scope(nominated, depth);
  directive->next = owner->active_using_directives;
  owner->active_using_directives = directive;
  a_scope_stack_entry* place = &scope_stack[directive->lookup_depth];
  directive->next_in_lookup = place->lookup_using_list;
  place->lookup_using_list = directive;
}

// Directives of a nominated namespace act as if they stood here too (p4).
static void activate(a_namespace* nominated, int32_t depth) {
  std::vector<a_namespace*> waiting = {nominated};
  while (!waiting.empty()) {
    nominated = waiting.back();
    waiting.pop_back();
    if (nominated->variant.scope == nullptr || is_active_at(nominated, depth))
      continue;
    activate_one(nominated, depth);
    for_each_directive(nominated->variant.scope,
                       [&waiting](a_namespace* next) { waiting.push_back(next); });
  }
  for (int32_t d = depth; d <= depth_scope_stack; ++d)
    scope_stack[d].use_scope_lookup = true;
}

a_using_decl* enter_using_directive(a_namespace* nominated, int depth,
                                    const a_source_position* position) {
  nominated = f_skip_namespace_aliases(nominated);
  a_using_decl* decl = alloc_using_decl();
  decl->entity_kind = iek_namespace;
  decl->is_using_directive = true;
  decl->entity = nominated;
  decl->position = *position;
  add_to_using_decls_list(decl, depth);
  activate(nominated, depth);
  // It acts wherever a directive nominates the namespace that has it.
  const a_scope* scope = scope_stack[depth].il_scope;
  if (scope == nullptr || scope->kind != sk_namespace)
    return decl;
  for (int32_t d = depth_scope_stack; d >= 0; --d)
    if (is_active_at(namespace_of_scope(scope), d))
      activate(nominated, d);
  return decl;
}

void activate_using_directives_of_scope(a_scope* scope, int depth) {
  for_each_directive(scope, [depth](a_namespace* nominated) { activate(nominated, depth); });
}

static void take_off_lookup_list(an_active_using_directive* directive, int32_t depth) {
  an_active_using_directive** link = &scope_stack[depth].lookup_using_list;
  while (*link != directive)
    link = &(*link)->next_in_lookup;
  *link = directive->next_in_lookup;
}

void deactivate_using_directives() {
  a_scope_stack_entry* entry = &scope_stack[depth_scope_stack];
  while (entry->active_using_directives != nullptr) {
    an_active_using_directive* directive = entry->active_using_directives;
    entry->active_using_directives = directive->next;
    take_off_lookup_list(directive, directive->lookup_depth);
    directive->next = avail_active_using_directives;
    avail_active_using_directives = directive;
  }
}

void set_active_using_list_scope_depths(int depth, bool unit_is_current, uint32_t decl_seq) {
  for (int32_t d = depth; d >= 0; --d) {
    for (an_active_using_directive* directive = scope_stack[d].lookup_using_list;
         directive != nullptr; directive = directive->next_in_lookup) {
      const bool is_seen = decl_seq == 0 || directive->decl_seq <= decl_seq;
      directive->is_at_rest = !unit_is_current || !is_seen;
    }
  }
}

// ---- Using-declarations ----

static bool is_class_entry(const a_scope_stack_entry* entry) {
  return entry->kind == sk_class || entry->kind == sk_class_reactivation;
}

// The tag that another name of its scope hides: a using-declaration names both.
static a_symbol* tag_hidden_by(const a_symbol* symbol) {
  a_scope_pointers_block* block = nullptr;
  if (symbol->is_class_member)
    block = class_symbol_supplement_of(symbol->parent.class_type)->pointers_block;
  else if (symbol->is_namespace_member)
    block = f_skip_namespace_aliases(symbol->parent.namespace_entry)->pointers_block;
  else if (symbol->scope_number == file_scope_number)
    block = get_pointers_block_for_scope(il_header.primary_scope);
  if (block == nullptr || block->symbols == nullptr || is_tag_like_symbol(symbol))
    return nullptr;
  a_hash_table_entry* entry = hash_find(block->symbols, symbol->header, false);
  a_symbol* tag = entry == nullptr ? nullptr : entry->first;
  while (tag != nullptr && !is_tag_symbol_kind(tag->kind))
    tag = tag->next_in_table_list;
  return tag;
}

static a_symbol* make_class_using_projection(a_symbol* named, a_type* class_type) {
  a_symbol* projection;
  if (named->kind == symk_projection) {
    const a_projection_descr* descr = named->variant.projection;
    projection = make_projection_symbol(descr->member_symbol, class_type, descr->base_class,
                                        descr->derivation);
  } else {
    projection = make_projection_symbol(named, class_type, nullptr, nullptr);
  }
  projection->variant.projection->is_using_decl = true;
  return projection;
}

// One symbol for the name, which isn't in any scope yet.
static a_symbol* make_using_projection(a_symbol* named, a_symbol_locator* locator, int depth) {
  const a_scope_stack_entry* entry = &scope_stack[depth];
  a_symbol* projection;
  if (is_class_entry(entry)) {
    projection = make_class_using_projection(named, entry->assoc_type);
    projection->variant.projection->access = entry->member_access;
  } else {
    locator->symbol = nullptr;
    projection = make_symbol(symk_namespace_projection, locator);
    projection->variant.projected_symbol = fundamental_symbol_of(named);
    if (entry->namespace_entry != nullptr) {
      projection->parent.namespace_entry = entry->namespace_entry;
      projection->is_namespace_member = true;
    }
  }
  projection->position = locator->position;
  projection->decl_seq = decl_seq_counter++;
  return projection;
}

static bool is_function(a_symbol* symbol) {
  return is_function_symbol_kind(fundamental_symbol_of(symbol)->kind);
}

// Whether the functions of the set, or the symbol itself, are the entity, or all
// those of a set.
static bool stands_for(a_symbol* existing, a_symbol* named) {
  if (is_same_entity(existing, named))
    return true;
  a_symbol* real = fundamental_symbol_of(named);
  if (real->kind == symk_overloaded_function) {
    for (a_symbol* s = real->variant.overload_list; s != nullptr; s = s->next_homonym)
      if (!stands_for(existing, s))
        return false;
    return true;
  }
  if (existing->kind != symk_overloaded_function)
    return false;
  for (a_symbol* s = existing->variant.overload_list; s != nullptr; s = s->next_homonym)
    if (is_same_entity(s, named))
      return true;
  return false;
}

static a_symbol* add_using_projection(a_symbol* existing, a_symbol* named,
                                      a_symbol_locator* locator, int depth) {
  a_symbol* projection = make_using_projection(named, locator, depth);
  if (existing != nullptr)
    return add_symbol_to_overload_list(existing, projection);
  add_symbol_to_symbol_table(projection, depth, nullptr);
  return projection;
}

static a_symbol* symbol_in_the_way(a_symbol_locator* locator, int depth, uint32_t options) {
  const int32_t saved_level = decl_scope_level;
  decl_scope_level = depth;
  a_symbol_locator own = *locator;
  own.symbol = nullptr;
  own.is_qualified = false;
  curr_scope_id_lookup(&own, options | ilo_accept_projections);
  decl_scope_level = saved_level;
  return own.symbol;
}

a_symbol* enter_using_declaration(a_symbol* named, a_symbol_locator* locator, int depth) {
  a_symbol* real = fundamental_symbol_of(named);
  a_symbol* existing = symbol_in_the_way(locator, depth, ilo_none);
  if (existing != nullptr && stands_for(existing, named)) {
    // Only in a class a repetition is an error (C++11 7.3.3 p10).
    if (is_class_entry(&scope_stack[depth]))
      pos_sy_error(ec_duplicate_using_decl, &locator->position, real);
    else if (existing == real)
      pos_warning(ec_useless_using_declaration, &locator->position);
    return existing;
  }
  if (existing != nullptr &&
      is_tag_like_symbol(fundamental_symbol_of(existing)) != is_tag_like_symbol(real))
    existing = nullptr; // a tag and another name stand side by side
  if (existing != nullptr && !(is_function(existing) && is_function(named))) {
    pos_sy_error(ec_using_decl_conflicts_with_prev_decl, &locator->position,
                 fundamental_symbol_of(existing));
    return nullptr;
  }
  a_symbol* tag = tag_hidden_by(real);
  a_symbol* result = existing;
  if (real->kind == symk_overloaded_function) {
    for (a_symbol* s = real->variant.overload_list; s != nullptr; s = s->next_homonym)
      if (result == nullptr || !stands_for(result, s))
        result = add_using_projection(result, s, locator, depth);
  } else {
    result = add_using_projection(existing, named, locator, depth);
  }
  if (tag != nullptr && symbol_in_the_way(locator, depth, ilo_tag) == nullptr)
    add_using_projection(nullptr, tag, locator, depth);
  return result;
}

void using_init() {
  avail_active_using_directives = nullptr;
}
