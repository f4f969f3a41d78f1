// Lookup of class members through base classes (C++11 10.2), and access to
// what it finds (C++11 11).

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup_int.h"
#include "mem_manage.h"
#include "types.h"

#include <deque>
#include <unordered_map>

namespace {

// One step of a way from a class to a base; ways that end alike share steps.
struct a_path_step {
  a_base_class* base;
  const a_path_step* next;
};

// A declaration found in a base class subobject. Behind its last virtual base
// the rest of the way names the subobject, whichever way led there.
struct a_hit {
  a_symbol* symbol;
  a_type* class_type;
  const a_path_step* path;
  const a_path_step* last_virtual; // null: none on the way
};

typedef std::vector<a_hit> a_hit_set;

struct a_base_search {
  const a_lookup* lookup;
  std::deque<a_path_step> steps;
  std::unordered_map<const a_type*, a_hit_set> hits; // of the classes done
};

} // namespace

// ---- The tree of bases ----

bool is_derived_class(const a_type* derived, const a_type* base) {
  base = f_skip_typerefs(base);
  return any_base(derived, [base](const a_base_class* b) { return type_of_base(b) == base; });
}

static bool has_virtual_base(const a_type* class_type, const a_type* base) {
  return any_base(class_type, [base](const a_base_class* b) {
    return b->is_virtual && type_of_base(b) == base;
  });
}

// ---- Sets of hits ----

static bool is_same_subobject(const a_hit& a, const a_hit& b) {
  if (a.class_type != b.class_type)
    return false;
  const a_path_step* x = a.path;
  const a_path_step* y = b.path;
  if (a.last_virtual != nullptr && b.last_virtual != nullptr) {
    if (type_of_base(a.last_virtual->base) != type_of_base(b.last_virtual->base))
      return false;
    x = a.last_virtual->next;
    y = b.last_virtual->next;
  } else if (a.last_virtual != b.last_virtual) {
    return false;
  }
  while (x != nullptr && y != nullptr && x != y && x->base == y->base) {
    x = x->next;
    y = y->next;
  }
  return x == y;
}

// Whether the first was found in a subobject of the second's, which hides it:
// two direct bases have in common only what lies in virtual bases.
static bool is_hidden_by(const a_hit& hidden, const a_hit& hider) {
  return hidden.last_virtual != nullptr &&
         has_virtual_base(hider.class_type, type_of_base(hidden.last_virtual->base));
}

// A third subobject with the same declaration says no more than two do.
static bool is_one_too_many(const a_hit_set& set, const a_hit& hit) {
  int count = 0;
  for (const a_hit& other : set) {
    const bool same_virtual = (other.last_virtual == nullptr) == (hit.last_virtual == nullptr) &&
                              (hit.last_virtual == nullptr ||
                               other.last_virtual->base->type == hit.last_virtual->base->type);
    count += other.symbol == hit.symbol && same_virtual;
  }
  return count >= 2;
}

static void add_hit(a_hit_set* set, const a_hit& hit) {
  for (const a_hit& other : *set)
    if (is_same_subobject(other, hit) || is_hidden_by(hit, other))
      return;
  if (is_one_too_many(*set, hit))
    return;
  std::erase_if(*set, [&hit](const a_hit& other) { return is_hidden_by(other, hit); });
  set->push_back(hit);
}

static void add_hits_of_base(a_base_search* search, a_base_class* base, a_hit_set* set) {
  for (const a_hit& hit : search->hits[type_of_base(base)]) {
    search->steps.push_back({base, hit.path});
    const a_path_step* step = &search->steps.back();
    const a_path_step* last_virtual = hit.last_virtual;
    if (last_virtual == nullptr && base->is_virtual)
      last_virtual = step;
    add_hit(set, {hit.symbol, hit.class_type, step, last_virtual});
  }
}

// The declarations of the bases that the class sees if all bases are done; puts
// those that are not on the list of waiting classes.
static bool merge_bases(a_base_search* search, a_type* class_type, std::vector<a_type*>* waiting) {
  bool all_done = true;
  for (a_base_class* base = next_direct_base(first_base_of(class_type)); base != nullptr;
       base = next_direct_base(base->next)) {
    if (search->hits.count(type_of_base(base)) == 0) {
      waiting->push_back(type_of_base(base));
      all_done = false;
    }
  }
  if (!all_done)
    return false;
  a_hit_set set;
  for (a_base_class* base = next_direct_base(first_base_of(class_type)); base != nullptr;
       base = next_direct_base(base->next))
    add_hits_of_base(search, base, &set);
  search->hits[class_type] = std::move(set);
  return true;
}

static a_symbol* own_member(const a_type* class_type, const a_lookup* lookup) {
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  return info == nullptr ? nullptr : table_lookup(info->pointers_block, lookup);
}

// Bottom up, without recursion: a chain of bases may be long.
static const a_hit_set& hits_in_bases(a_base_search* search, a_type* class_type) {
  std::vector<a_type*> waiting = {class_type};
  while (!waiting.empty()) {
    a_type* type = waiting.back();
    if (search->hits.count(type) != 0) {
      waiting.pop_back();
      continue;
    }
    a_symbol* member = type == class_type ? nullptr : own_member(type, search->lookup);
    if (member != nullptr)
      search->hits[type] = {{member, type, nullptr, nullptr}};
    else
      merge_bases(search, type, &waiting);
  }
  return search->hits[class_type];
}

// ---- Projections ----

// Members that mean the same in whichever subobject they are found.
static bool needs_no_object(const a_symbol* symbol) {
  switch (symbol->kind) {
  case symk_field:
    return false;
  case symk_member_function:
  case symk_routine:
    return symbol->variant.routine != nullptr && symbol->variant.routine->is_static_member;
  case symk_overloaded_function:
    for (a_symbol* s = symbol->variant.overload_list; s != nullptr; s = s->next_homonym)
      if (!needs_no_object(fundamental_symbol_of(s)))
        return false;
    return true;
  default:
    return true;
  }
}

static bool hits_are_ambiguous(const a_hit_set& set) {
  const a_symbol* first = fundamental_symbol_of(set.front().symbol);
  for (const a_hit& hit : set)
    if (fundamental_symbol_of(hit.symbol) != first)
      return true;
  return set.size() > 1 && !needs_no_object(first);
}

a_symbol* make_projection_symbol(a_symbol* member, a_type* class_type, a_base_class* base_class,
                                 a_derivation_step* derivation) {
  a_symbol_locator locator;
  clear_locator(&locator, &member->position);
  locator.header = member->header;
  a_symbol* symbol = make_symbol(symk_projection, &locator);
  symbol->decl_seq = member->decl_seq;
  symbol->parent.class_type = class_type;
  symbol->is_class_member = true;
  a_projection_descr* descr = symbol->variant.projection;
  descr->fundamental_symbol = fundamental_symbol_of(member);
  descr->member_symbol = member;
  descr->base_class = base_class;
  descr->derivation = derivation;
  return symbol;
}

static a_symbol* project_hit(const a_hit& hit, a_type* class_type) {
  a_derivation_step* first = nullptr;
  a_derivation_step** link = &first;
  a_base_class* base = nullptr;
  for (const a_path_step* step = hit.path; step != nullptr; step = step->next) {
    base = step->base;
    *link = alloc_derivation_step();
    (*link)->base_class = base;
    link = &(*link)->next;
  }
  return make_projection_symbol(hit.symbol, class_type, base, first);
}

a_symbol* find_progenitor_symbol(a_type* class_type, a_lookup* lookup) {
  class_type = f_skip_typerefs(class_type);
  if (first_base_of(class_type) == nullptr)
    return nullptr;
  a_base_search search = {lookup, {}, {}};
  const a_hit_set& set = hits_in_bases(&search, class_type);
  if (set.empty())
    return nullptr;
  a_symbol* projection = project_hit(set.front(), class_type);
  projection->variant.projection->is_ambiguous = hits_are_ambiguous(set);
  return projection;
}

// What an earlier lookup left in the table of the class.
static a_symbol* remembered_projection(const a_class_symbol_supplement* info,
                                       const a_lookup* lookup) {
  if (info->pointers_block == nullptr || info->pointers_block->symbols == nullptr)
    return nullptr;
  a_hash_table_entry* entry = hash_find(info->pointers_block->symbols, lookup->header, false);
  if (entry == nullptr)
    return nullptr;
  for (a_symbol* symbol = entry->first; symbol != nullptr; symbol = symbol->next_in_table_list)
    if (symbol->kind == symk_projection && !symbol->variant.projection->is_using_decl &&
        is_acceptable(lookup, symbol))
      return symbol;
  return nullptr;
}

// Only the result of a lookup without filters is kept: where one passes a
// filter, the lookup with the filter has no other.
static bool result_can_be_kept(const a_lookup* lookup, const a_type* class_type) {
  return lookup->options == ilo_none && lookup->decl_seq_limit == UINT32_MAX &&
         !class_type->is_incomplete;
}

a_symbol* find_projected_symbol(a_type* class_type, a_lookup* lookup) {
  class_type = f_skip_typerefs(class_type);
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (info == nullptr)
    return nullptr;
  a_symbol* member = table_lookup(info->pointers_block, lookup);
  if (member != nullptr)
    return member;
  a_symbol* projection = remembered_projection(info, lookup);
  if (projection == nullptr) {
    projection = find_progenitor_symbol(class_type, lookup);
    if (projection != nullptr && result_can_be_kept(lookup, class_type))
      add_symbol_to_table_of_class(projection, class_type);
  }
  if (projection != nullptr && projection->variant.projection->is_ambiguous)
    lookup->is_ambiguous = true;
  return projection;
}
