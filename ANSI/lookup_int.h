// Shared by the files of the lookup.

#ifndef LOOKUP_INT_H
#define LOOKUP_INT_H

#include "lookup.h"
#include "scope_stk.h"
#include "types.h"

#include <unordered_set>
#include <vector>

// One lookup on its way through the scopes.
struct a_lookup {
  const a_symbol_header* header;
  uint32_t options;     // an_id_lookup_option bits
  uint32_t name_spaces; // a bit for each a_name_space that is wanted
  uint32_t decl_seq_limit;
  bool is_ambiguous; // declarations of different entities were found
};

bool is_tag_like_symbol(const a_symbol* symbol);
// Whether the lookup may end at a symbol of a scope's table or the name chain.
bool is_acceptable(const a_lookup* lookup, const a_symbol* symbol);
// The symbol of the name in one scope's table.
a_symbol* table_lookup(a_scope_pointers_block* block, const a_lookup* lookup);

// ---- Base classes ----

inline a_base_class* first_base_of(const a_type* class_type) {
  return is_class_struct_union_type(class_type)
             ? class_supplement_of(f_skip_typerefs(class_type))->base_classes
             : nullptr;
}

inline a_type* type_of_base(const a_base_class* base) {
  return f_skip_typerefs(base->type);
}

// The record itself or the next that is a direct base and a known class.
inline a_base_class* next_direct_base(a_base_class* base) {
  while (base != nullptr && (!base->is_direct || !is_class_struct_union_type(base->type)))
    base = base->next;
  return base;
}

// Calls `test` for each record of a direct base, at any depth, each class being
// entered once, until one answers true. Without recursion: a chain of bases may
// be long.
template <typename F> bool any_base(const a_type* class_type, F test) {
  std::vector<const a_type*> waiting = {f_skip_typerefs(class_type)};
  std::unordered_set<const a_type*> seen;
  while (!waiting.empty()) {
    const a_type* type = waiting.back();
    waiting.pop_back();
    for (a_base_class* base = next_direct_base(first_base_of(type)); base != nullptr;
         base = next_direct_base(base->next)) {
      if (test(base))
        return true;
      if (seen.insert(type_of_base(base)).second)
        waiting.push_back(type_of_base(base));
    }
  }
  return false;
}

// A member of the class or of its bases.
a_symbol* find_projected_symbol(a_type* class_type, a_lookup* lookup);
// A member of the bases, were the class itself to declare none.
a_symbol* find_progenitor_symbol(a_type* class_type, a_lookup* lookup);

// ---- Namespaces ----

// The namespace of a scope; null for the file scope.
a_namespace* namespace_of_scope(const a_scope* scope);
// The scope of a namespace or the file scope in which an entity is declared.
a_scope* enclosing_namespace_scope(a_source_correspondence* corresp, an_il_entry_kind kind);
// Declarations that one lookup found in several namespaces.
struct a_found_set {
  std::vector<a_symbol*> symbols;
};
void add_to_found_set(a_found_set* set, a_symbol* symbol);
// The one declaration, the set of all functions, or the first of ambiguous
// ones.
a_symbol* result_of_found_set(const a_found_set* set, a_lookup* lookup);
// A namespace or the file scope with its inline namespaces.
void lookup_in_inline_namespace_set(a_scope* scope, a_lookup* lookup, a_found_set* set);
// An open namespace or file scope, and what directives make visible in it.
a_symbol* open_namespace_lookup(a_scope_stack_entry* entry, a_lookup* lookup);
// A qualified name in a namespace or the file scope (C++11 3.4.3.2).
a_symbol* qualified_namespace_lookup(a_scope* scope, a_lookup* lookup);

void access_init();
void using_init();

#endif
