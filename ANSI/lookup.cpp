#include "lookup_int.h"

#include "error.h"
#include "il.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "types.h"

// ---- What a lookup accepts ----

static uint32_t name_spaces_for_options(uint32_t options) {
  if (in_cplusplus_mode())
    return 1u << ns_ordinary;
  if (options & ilo_tag)
    return 1u << ns_tag;
  return nrg_standalone_iar ? 1u << ns_ordinary | 1u << ns_member : 1u << ns_ordinary;
}

static a_lookup make_lookup(const a_symbol_header* header, uint32_t options) {
  const bool is_limited = depth_innermost_instantiation_scope >= 0;
  return {header, options, name_spaces_for_options(options),
          is_limited ? f_get_effective_decl_seq() : UINT32_MAX, false};
}

static bool is_typedef_for_tag(const a_symbol* symbol) {
  return symbol->kind == symk_type && symbol->extra.typedef_stands_for_tag;
}

static bool is_class_type_symbol(const a_symbol* symbol) {
  switch (symbol->kind) {
  case symk_class_or_struct:
  case symk_union:
  case symk_class_template:
    return true;
  case symk_type: {
    a_type_kind kind = type_kind(symbol->variant.type);
    return is_class_struct_union_kind(kind) || kind == tk_template_param;
  }
  default:
    return false;
  }
}

// A name before `::` (C++ 3.4.3). Only later versions of GNU C++ look closely.
static bool can_qualify(const a_symbol* symbol) {
  if (symbol->kind == symk_namespace || is_class_type_symbol(symbol))
    return true;
  const bool is_strict = gpp_mode && gnu_version >= 30400;
  if (symbol->kind == symk_enum ||
      (symbol->kind == symk_type && is_enum_type(symbol->variant.type)))
    return !is_strict || enum_qualifiers_enabled;
  return symbol->kind == symk_type && !is_strict;
}

// Whether the filters of the options let the real symbol pass.
static bool passes_filters(const a_symbol* symbol, uint32_t options) {
  if (options & ilo_namespaces_only)
    return symbol->kind == symk_namespace;
  if (options & ilo_classes_only)
    return is_class_type_symbol(symbol);
  if ((options & ilo_class_templates_only) &&
      (options & (ilo_template_declarator | ilo_template_name)))
    return symbol->kind == symk_class_template;
  if (options & ilo_followed_by_colons)
    return can_qualify(symbol);
  if ((options & ilo_tag) && in_cplusplus_mode())
    return is_tag_symbol_kind(symbol->kind) || is_typedef_for_tag(symbol) ||
           symbol->kind == symk_class_template ||
           (elab_type_lookup_finds_typedefs && symbol->kind == symk_type);
  return true;
}

bool is_tag_like_symbol(const a_symbol* symbol) {
  return is_tag_symbol_kind(symbol->kind) || is_typedef_for_tag(symbol);
}

// Whether friend declarations alone declare the symbol, or all functions of a set.
static bool is_known_to_friends_only(const a_symbol* symbol) {
  if (symbol->kind != symk_overloaded_function)
    return symbol->is_friend_only;
  for (const a_symbol* s = symbol->variant.overload_list; s != nullptr; s = s->next_homonym)
    if (!s->is_friend_only)
      return false;
  return true;
}

static bool is_hidden(const a_lookup* lookup, const a_symbol* symbol) {
  if (is_known_to_friends_only(symbol))
    return !(lookup->options & ilo_friend_declaration);
  return symbol->is_hidden_union_member || symbol->is_synthesized_namespace ||
         symbol->decl_seq >= lookup->decl_seq_limit;
}

bool is_acceptable(const a_lookup* lookup, const a_symbol* symbol) {
  return (lookup->name_spaces >> name_space_for_symbol_kind[symbol->kind] & 1) &&
         !is_hidden(lookup, symbol) &&
         (lookup->options == ilo_none ||
          passes_filters(fundamental_symbol_of(const_cast<a_symbol*>(symbol)), lookup->options));
}

// ---- The table of one scope ----

static bool is_remembered_projection(const a_symbol* symbol) {
  return symbol->kind == symk_projection && !symbol->variant.projection->is_using_decl;
}

// A tag is held back until a name that hides it has been ruled out (C++11
// 3.3.10); so is the projection of one, which gives way to a tag declared here.
// A name that was used undefined gives way to any declaration. What an earlier
// lookup found in a base class is no declaration of the scope.
a_symbol* table_lookup(a_scope_pointers_block* block, const a_lookup* lookup) {
  if (block == nullptr || block->symbols == nullptr)
    return nullptr;
  a_hash_table_entry* entry = hash_find(block->symbols, lookup->header, false);
  if (entry == nullptr)
    return nullptr;
  a_symbol* tag = nullptr;
  a_symbol* undefined = nullptr;
  for (a_symbol* symbol = entry->first; symbol != nullptr; symbol = symbol->next_in_table_list) {
    if (!is_acceptable(lookup, symbol) || is_remembered_projection(symbol))
      continue;
    if (symbol->kind == symk_undefined)
      undefined = symbol;
    else if (!is_tag_like_symbol(fundamental_symbol_of(symbol)))
      return symbol;
    else if (tag == nullptr || tag->kind == symk_namespace_projection)
      tag = symbol;
  }
  return tag != nullptr ? tag : undefined;
}

// ---- Lookups ----

// What is common to the start of all lookups: true when the answer is settled,
// and then in `*result`.
static bool is_settled(a_symbol_locator* locator, a_symbol** result) {
  *result = nullptr;
  if (locator->is_error_locator || locator->header == nullptr)
    return true;
  if (locator->symbol == nullptr)
    return false;
  *result = fundamental_symbol_of(locator->symbol);
  return true;
}

static a_symbol* settle(a_symbol_locator* locator, a_symbol* found) {
  locator->symbol = found;
  return found == nullptr ? nullptr : fundamental_symbol_of(found);
}

static a_symbol* settle_lookup(a_symbol_locator* locator, const a_lookup* lookup, a_symbol* found) {
  locator->is_ambiguous = found != nullptr && lookup->is_ambiguous;
  return settle(locator, found);
}

// Whether the symbol is a declaration of its scope for these options. A name
// that was used undefined is free for a declaration.
static bool is_declared_for(const a_lookup* lookup, const a_symbol* symbol) {
  if (symbol->kind == symk_undefined)
    return false;
  return symbol->kind != symk_projection || (lookup->options & ilo_accept_projections);
}

static bool is_wanted_in_scope(const a_lookup* lookup, const a_symbol* symbol) {
  if (!(lookup->name_spaces >> name_space_for_symbol_kind[symbol->kind] & 1) ||
      !is_declared_for(lookup, symbol))
    return false;
  return !(lookup->options & ilo_tag) ||
         is_tag_like_symbol(fundamental_symbol_of(const_cast<a_symbol*>(symbol)));
}

// In a scope that is open for the second time, names joined the table only.
static a_symbol* reopened_scope_lookup(a_scope_stack_entry* entry, const a_lookup* lookup) {
  switch (entry->kind) {
  case sk_file:
  case sk_namespace_extension:
  case sk_namespace_reactivation:
  case sk_class_reactivation:
    break;
  default:
    return nullptr;
  }
  a_symbol* found = table_lookup(pointers_block_of_entry(entry), lookup);
  return found != nullptr && is_declared_for(lookup, found) ? found : nullptr;
}

static a_symbol* lookup_in_open_scope(const a_symbol_header* header, int depth, uint32_t options) {
  a_lookup lookup = make_lookup(header, options);
  if (in_C_mode())
    lookup.name_spaces &= ~(1u << ns_member);
  a_scope_stack_entry* entry = &scope_stack[depth];
  for (a_symbol* symbol = header->first_symbol; symbol != nullptr; symbol = symbol->next_homonym) {
    if (symbol->scope_number == entry->number && is_wanted_in_scope(&lookup, symbol))
      return symbol;
  }
  return reopened_scope_lookup(entry, &lookup);
}

a_symbol* curr_scope_id_lookup(a_symbol_locator* locator, uint32_t options) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  return settle(locator, lookup_in_open_scope(locator->header, decl_scope_level, options));
}

// A typedef is kept in a tag lookup until its scope is seen to have no tag.
static bool may_give_way_to_tag(const a_lookup* lookup, const a_symbol* symbol) {
  return (lookup->options & ilo_tag) && in_cplusplus_mode() && symbol->kind == symk_type &&
         !symbol->extra.typedef_stands_for_tag;
}

// The body of a lambda means by a name what the code around it does (C++11 5.1.2 p7).
static bool is_hidden_in_lambda(const a_symbol* symbol) {
  return symbol->kind == symk_member_function && symbol->variant.routine->is_lambda_body;
}

// The first symbol of the name chain that is wanted; the chain is in the order
// of the scope stack.
static a_symbol* name_chain_lookup(const a_lookup* lookup) {
  a_symbol* kept = nullptr;
  for (a_symbol* symbol = lookup->header->first_symbol; symbol != nullptr;
       symbol = symbol->next_homonym) {
    if (kept != nullptr && symbol->scope_number != kept->scope_number)
      break;
    if (!is_acceptable(lookup, symbol) || is_hidden_in_lambda(symbol))
      continue;
    if (!may_give_way_to_tag(lookup, symbol))
      return symbol;
    if (kept == nullptr)
      kept = symbol;
  }
  return kept;
}

// A block, function or parameter scope: its symbols are on the name chain only.
static a_symbol* listed_scope_lookup(const a_scope_stack_entry* entry, const a_lookup* lookup) {
  for (a_symbol* symbol = lookup->header->first_symbol; symbol != nullptr;
       symbol = symbol->next_homonym) {
    if (symbol->scope_number == entry->number && is_acceptable(lookup, symbol))
      return symbol;
  }
  return nullptr;
}

static bool is_passed_by(const a_scope_stack_entry* entry, uint32_t options) {
  switch (entry->kind) {
  case sk_template_declaration:
    return (options & (ilo_skip_template_declaration_scopes | ilo_skip_template_params)) != 0;
  case sk_template_instantiation:
    return (options & (ilo_ignore_instantiation_scopes | ilo_skip_template_params)) != 0;
  case sk_block:
  case sk_condition:
    return (options & ilo_exclude_block_scopes) != 0;
  default:
    return false;
  }
}

// From scope to scope by the lexical parents, for C++ scopes whose symbols may
// be off the name chain (C++11 3.4.1).
static a_symbol* scope_walk_lookup(a_lookup* lookup) {
  for (int64_t depth = depth_of_initial_lookup_scope; depth >= 0;
       depth = scope_stack[depth].parent_depth) {
    a_scope_stack_entry* entry = &scope_stack[depth];
    if (is_passed_by(entry, lookup->options))
      continue;
    a_symbol* found;
    switch (entry->kind) {
    case sk_file:
    case sk_namespace:
    case sk_namespace_extension:
    case sk_namespace_reactivation:
      found = open_namespace_lookup(entry, lookup);
      break;
    case sk_class:
    case sk_class_reactivation:
      found = find_projected_symbol(entry->assoc_type, lookup);
      break;
    default:
      found = listed_scope_lookup(entry, lookup);
      break;
    }
    if (found != nullptr && !is_hidden_in_lambda(found))
      return found;
  }
  return nullptr;
}

static bool must_walk_scopes(const a_symbol_header* header, uint32_t options) {
  if (in_C_mode())
    return false;
  constexpr uint32_t walk_options = ilo_ignore_using_directives | ilo_template_declarator |
                                    ilo_exclude_block_scopes | ilo_template_name;
  if (options & walk_options)
    return true;
  return header->first_inactive_symbol != nullptr ||
         (depth_scope_stack >= 0 && scope_stack[depth_scope_stack].use_scope_lookup);
}

a_symbol* normal_id_lookup(a_symbol_locator* locator, uint32_t options) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  if (locator->is_qualified)
    return nullptr;
  a_lookup lookup = make_lookup(locator->header, options);
  a_symbol* found = must_walk_scopes(locator->header, options) ? scope_walk_lookup(&lookup)
                                                               : name_chain_lookup(&lookup);
  return settle_lookup(locator, &lookup, found);
}

a_symbol* class_qualified_id_lookup(a_symbol_locator* locator, a_type* class_type,
                                    uint32_t options) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (info == nullptr)
    return nullptr;
  a_lookup lookup = make_lookup(locator->header, options);
  if (in_C_mode()) {
    lookup.name_spaces = 1u << ns_member;
    return settle(locator, table_lookup(info->pointers_block, &lookup));
  }
  return settle_lookup(locator, &lookup, find_projected_symbol(class_type, &lookup));
}

a_symbol* namespace_qualified_id_lookup(a_symbol_locator* locator, a_namespace* namespace_entry,
                                        uint32_t options) {
  return file_scope_id_lookup(scope_of_namespace(namespace_entry), locator, options);
}

a_symbol* enum_qualified_id_lookup(a_symbol_locator* locator, a_type* enum_type) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  const an_enum_symbol_supplement* info = enum_symbol_supplement_of(enum_type);
  if (info == nullptr || info->pointers_block == nullptr)
    return nullptr;
  a_symbol* enumerator = info->pointers_block->first_symbol;
  while (enumerator != nullptr && enumerator->header != locator->header)
    enumerator = enumerator->next_in_scope;
  return settle(locator, enumerator);
}

a_symbol* file_scope_id_lookup(a_scope* scope, a_symbol_locator* locator, uint32_t options) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  a_lookup lookup = make_lookup(locator->header, options);
  return settle_lookup(locator, &lookup, qualified_namespace_lookup(scope, &lookup));
}

a_symbol* curr_tag_symbol(a_symbol_locator* locator, bool current_scope_only) {
  if (!current_scope_only)
    return normal_id_lookup(locator, ilo_tag);
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  return settle(locator, lookup_in_open_scope(locator->header, decl_level_of_tags(), ilo_tag));
}

// ---- The other name spaces ----

static a_symbol* find_in_name_space(const a_symbol_header* header, a_name_space name_space) {
  a_symbol* symbol = header->first_symbol;
  while (symbol != nullptr && name_space_for_symbol_kind[symbol->kind] != name_space)
    symbol = symbol->next_homonym;
  return symbol;
}

a_symbol* find_label_symbol(const a_symbol_header* header) {
  return find_in_name_space(header, ns_label);
}

a_symbol* find_macro_symbol(const a_symbol_header* header) {
  return header->is_macro ? find_in_name_space(header, ns_macro) : nullptr;
}

a_symbol* find_keyword_symbol(const a_symbol_header* header) {
  return header->is_keyword ? find_in_name_space(header, ns_keyword) : nullptr;
}

a_symbol* find_extern_symbol(const a_symbol_header* header) {
  return find_in_name_space(header, ns_block_extern);
}

void reference_to_invalid_name(a_symbol_locator* locator) {
  if (locator->is_error_locator)
    return;
  pos_st_error(ec_undefined_identifier, &locator->position, locator->header->identifier);
  set_to_error_locator(locator);
}

void report_ambiguous_name(a_symbol_locator* locator) {
  if (locator->is_error_locator)
    return;
  pos_sy_error(ec_ambiguous_name, &locator->position, fundamental_symbol_of(locator->symbol));
  set_to_error_locator(locator);
}

void lookup_one_time_init() {
  // No variable of this module is kept for each unit.
}

void lookup_init() {
  access_init();
  using_init();
}
