// Argument-dependent lookup (C++11 3.4.2).

#include "il.h"
#include "lookup_int.h"
#include "mem_manage.h"
#include "types.h"

#include <algorithm>

namespace {

// The namespaces that the arguments of a call bring in, and the classes that
// bring in their friends, with their bases and the classes around them.
struct an_associated_set {
  std::vector<a_scope*> scopes;
  std::vector<a_type*> classes;
  std::unordered_set<const a_type*> seen;
  std::vector<a_type*> waiting; // types still to be looked at
};

} // namespace

// ---- Associated namespaces and classes ----

// An inline namespace brings in the one around it; lookup in that one takes in
// its inline namespaces anyway.
static void add_scope(an_associated_set* set, a_scope* scope) {
  for (a_namespace* n = namespace_of_scope(scope); n != nullptr && n->is_inline;
       n = namespace_of_scope(scope))
    scope = enclosing_namespace_scope(&n->source_corresp, iek_namespace);
  if (std::find(set->scopes.begin(), set->scopes.end(), scope) == set->scopes.end())
    set->scopes.push_back(scope);
}

static void add_scope_of_type(an_associated_set* set, a_type* type) {
  add_scope(set, enclosing_namespace_scope(&type->source_corresp, iek_type));
}

static a_type* class_around(const a_type* type) {
  a_type* outer = class_of_member(&type->source_corresp);
  return outer == nullptr ? nullptr : f_skip_typerefs(outer);
}

static void add_scopes_of_bases(an_associated_set* set, a_type* class_type) {
  any_base(class_type, [set](const a_base_class* base) {
    add_scope_of_type(set, type_of_base(base));
    return false;
  });
}

static void add_settled_scopes(an_associated_set* set, const a_namespace_list_entry* list) {
  for (; list != nullptr; list = list->next)
    add_scope(set, list->namespace_entry == nullptr ? il_header.primary_scope
                                                    : list->namespace_entry->variant.scope);
}

static void add_template_args(an_associated_set* set, const a_template_arg* args) {
  for (; args != nullptr; args = args->next)
    if (args->kind == tak_type && args->value.type != nullptr)
      set->waiting.push_back(args->value.type);
}

static void add_class(an_associated_set* set, a_type* class_type) {
  set->classes.push_back(class_type);
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (info != nullptr && info->operator_lookup_namespaces != nullptr) {
    add_settled_scopes(set, info->operator_lookup_namespaces);
    return;
  }
  add_scope_of_type(set, class_type);
  add_scopes_of_bases(set, class_type);
  add_template_args(set, class_supplement_of(class_type)->template_args);
}

static void add_type(an_associated_set* set, a_type* type) {
  if (!set->seen.insert(type).second)
    return;
  switch (type->kind) {
  case tk_pointer:
    set->waiting.push_back(type->variant.pointer.referenced_type);
    break;
  case tk_array:
    set->waiting.push_back(type->variant.array.element_type);
    break;
  case tk_routine:
    set->waiting.push_back(type->variant.routine.return_type);
    for (const a_param_type* p = param_types_of(type); p != nullptr; p = p->next)
      set->waiting.push_back(p->type);
    break;
  case tk_ptr_to_member:
    set->waiting.push_back(type->variant.ptr_to_member.class_type);
    set->waiting.push_back(type->variant.ptr_to_member.member_type);
    break;
  case tk_class:
  case tk_struct:
  case tk_union:
    add_class(set, type);
    break;
  case tk_integer:
    if (type->variant.integer.is_enum) {
      if (class_around(type) != nullptr)
        set->classes.push_back(class_around(type));
      add_scope_of_type(set, type);
    }
    break;
  default:
    break;
  }
}

static void add_types(an_associated_set* set, const std::vector<a_type*>& types) {
  set->waiting = types;
  while (!set->waiting.empty()) {
    a_type* type = f_skip_typerefs(set->waiting.back());
    set->waiting.pop_back();
    if (type != nullptr)
      add_type(set, type);
  }
}

// ---- Functions ----

static bool befriends(const a_type* class_type, const a_routine* routine) {
  if (class_type == nullptr)
    return false;
  const a_routine_list_entry* f = class_supplement_of(class_type)->friend_routines;
  while (f != nullptr && f->routine != routine)
    f = f->next;
  return f != nullptr;
}

// A friend that nothing but the declaration in a class declares is found
// through that class alone (C++11 7.3.1.2 p3).
static bool is_friend_of_any(const a_symbol* function, const an_associated_set* set) {
  const a_routine* routine = function->variant.routine;
  for (const a_type* class_type : set->classes) {
    if (befriends(class_type, routine) || befriends(class_around(class_type), routine) ||
        any_base(class_type, [routine](const a_base_class* base) {
          return befriends(type_of_base(base), routine);
        }))
      return true;
  }
  return false;
}

static void add_function(std::vector<a_symbol*>* functions, a_symbol* function,
                         const an_associated_set* set) {
  function = fundamental_symbol_of(function);
  if (!is_function_symbol_kind(function->kind) ||
      (function->is_friend_only && !is_friend_of_any(function, set)))
    return;
  if (std::find(functions->begin(), functions->end(), function) == functions->end())
    functions->push_back(function);
}

static size_t count_of_functions(const a_symbol* symbol) {
  size_t count = 1;
  if (symbol->kind == symk_overloaded_function) {
    count = 0;
    for (const a_symbol* s = symbol->variant.overload_list; s != nullptr; s = s->next_homonym)
      ++count;
  }
  return count;
}

static void add_functions(std::vector<a_symbol*>* functions, a_symbol* symbol,
                          const an_associated_set* set) {
  a_symbol* real = fundamental_symbol_of(symbol);
  if (real->kind != symk_overloaded_function) {
    add_function(functions, real, set);
    return;
  }
  for (a_symbol* s = real->variant.overload_list; s != nullptr; s = s->next_homonym)
    add_function(functions, s, set);
}

static bool is_block_entry(const a_scope_stack_entry* entry) {
  return entry != nullptr &&
         (entry->kind == sk_block || entry->kind == sk_function || entry->kind == sk_condition);
}

// Ordinary lookup has the last word when it found a member, a declaration in a
// block, or something that is no function (C++11 3.4.2 p3).
static bool rules_out_arguments(a_symbol* symbol) {
  if (!is_function_symbol_kind(fundamental_symbol_of(symbol)->kind) || symbol->is_class_member)
    return true;
  a_scope_stack_entry* entry;
  scope_depth_of_symbol(symbol, &entry);
  return is_block_entry(entry) && symbol->kind != symk_namespace_projection;
}

a_symbol* argument_dependent_lookup(a_symbol* symbol, a_symbol_locator* locator,
                                    const std::vector<a_type*>& argument_types) {
  if (locator->is_error_locator || locator->header == nullptr ||
      (symbol != nullptr && rules_out_arguments(symbol)))
    return symbol;
  an_associated_set set;
  add_types(&set, argument_types);
  std::vector<a_symbol*> functions;
  if (symbol != nullptr)
    add_functions(&functions, symbol, &set);
  const size_t found_before = functions.size();
  for (a_scope* scope : set.scopes) {
    a_lookup lookup = {locator->header, ilo_friend_declaration | ilo_ignore_using_directives,
                       1u << ns_ordinary, UINT32_MAX, false};
    a_found_set found;
    lookup_in_inline_namespace_set(scope, &lookup, &found);
    for (a_symbol* s : found.symbols)
      add_functions(&functions, s, &set);
  }
  // Of the functions that were found some may be known to friends only.
  const bool is_whole_set =
      symbol == nullptr || found_before == count_of_functions(fundamental_symbol_of(symbol));
  if (functions.empty() || (functions.size() == found_before && is_whole_set))
    return symbol;
  locator->is_found_by_adl = true;
  locator->symbol = functions.size() == 1 ? functions.front() : make_overload_set_of(functions);
  return locator->symbol;
}

void determine_operator_lookup_namespaces(a_type* class_type) {
  class_type = f_skip_typerefs(class_type);
  a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (info == nullptr || info->operator_lookup_namespaces != nullptr)
    return;
  an_associated_set set;
  add_types(&set, {class_type});
  a_namespace_list_entry** link = &info->operator_lookup_namespaces;
  for (const a_scope* scope : set.scopes) {
    *link = alloc_front_end_record<a_namespace_list_entry>();
    (*link)->namespace_entry = namespace_of_scope(scope);
    link = &(*link)->next;
  }
}
