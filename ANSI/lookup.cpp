#include "lookup.h"

#include "error.h"
#include "il.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "types.h"

// ---- What a lookup accepts ----

static a_name_space name_space_for_options(uint32_t options) {
  return in_C_mode() && (options & ilo_tag) ? ns_tag : ns_ordinary;
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

static bool is_hidden_member(const a_symbol* symbol) {
  return symbol->is_hidden_union_member || symbol->is_synthesized_namespace;
}

// ---- The table of one scope ----

// The symbols of the name in a scope's own table, oldest first. A tag is held
// back until a name that hides it has been ruled out (C++ 3.3.10).
static a_symbol* table_lookup(a_scope_pointers_block* block, const a_symbol_header* header,
                              uint32_t options, a_name_space name_space) {
  if (block == nullptr || block->symbols == nullptr)
    return nullptr;
  a_hash_table_entry* entry = hash_find(block->symbols, header, false);
  if (entry == nullptr)
    return nullptr;
  a_symbol* tag = nullptr;
  a_symbol* projection = nullptr;
  for (a_symbol* symbol = entry->first; symbol != nullptr; symbol = symbol->next_in_table_list) {
    if (name_space_for_symbol_kind[symbol->kind] != name_space || is_hidden_member(symbol))
      continue;
    const a_symbol* real = fundamental_symbol_of(symbol);
    if (!passes_filters(real, options))
      continue;
    if (symbol->kind == symk_namespace_projection)
      projection = symbol; // gives way to a name declared here
    else if (is_tag_symbol_kind(real->kind) || is_typedef_for_tag(real))
      tag = symbol;
    else
      return symbol;
  }
  return tag != nullptr ? tag : projection;
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

static bool is_wanted_in_scope(const a_symbol* symbol, uint32_t options, a_name_space name_space) {
  if (name_space_for_symbol_kind[symbol->kind] != name_space)
    return false;
  // A name that was used undefined is free for a declaration.
  if (symbol->kind == symk_undefined)
    return false;
  if (symbol->kind == symk_projection && !(options & ilo_accept_projections))
    return false;
  if ((options & ilo_tag) && !is_tag_symbol_kind(symbol->kind) && !is_typedef_for_tag(symbol))
    return false;
  return true;
}

static a_symbol* lookup_in_open_scope(const a_symbol_header* header, int depth, uint32_t options) {
  const a_name_space name_space = name_space_for_options(options);
  a_scope_stack_entry* entry = &scope_stack[depth];
  for (a_symbol* symbol = header->first_symbol; symbol != nullptr; symbol = symbol->next_homonym) {
    if (symbol->scope_number == entry->number && is_wanted_in_scope(symbol, options, name_space))
      return symbol;
  }
  if (entry->kind != sk_file && entry->kind != sk_namespace_extension)
    return nullptr;
  a_symbol* found = table_lookup(pointers_block_of_entry(entry), header, options, name_space);
  if (found != nullptr && found->kind == symk_projection && !(options & ilo_accept_projections))
    return nullptr;
  return found;
}

a_symbol* curr_scope_id_lookup(a_symbol_locator* locator, uint32_t options) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  return settle(locator, lookup_in_open_scope(locator->header, decl_scope_level, options));
}

// The first symbol of the name chain that is wanted; the chain is in the order
// of the scope stack.
static a_symbol* name_chain_lookup(const a_symbol_header* header, uint32_t options,
                                   a_name_space name_space) {
  for (a_symbol* symbol = header->first_symbol; symbol != nullptr; symbol = symbol->next_homonym) {
    if (name_space_for_symbol_kind[symbol->kind] != name_space || is_hidden_member(symbol))
      continue;
    if (passes_filters(fundamental_symbol_of(symbol), options))
      return symbol;
  }
  return nullptr;
}

static bool scope_has_table(a_scope_kind kind) {
  return kind == sk_file || (kind >= sk_namespace && kind <= sk_class_reactivation);
}

// From scope to scope by the lexical parents, for C++ scopes whose symbols may
// be off the name chain.
static a_symbol* scope_walk_lookup(const a_symbol_header* header, uint32_t options,
                                   a_name_space name_space) {
  for (int64_t depth = depth_of_initial_lookup_scope; depth >= 0;
       depth = scope_stack[depth].parent_depth) {
    a_scope_stack_entry* entry = &scope_stack[depth];
    if (entry->kind == sk_template_declaration && (options & ilo_skip_template_declaration_scopes))
      continue;
    if (entry->kind == sk_block && (options & ilo_exclude_block_scopes))
      continue;
    if (scope_has_table(entry->kind)) {
      a_symbol* found = table_lookup(pointers_block_of_entry(entry), header, options, name_space);
      if (found != nullptr)
        return found;
      continue;
    }
    for (a_symbol* symbol = header->first_symbol; symbol != nullptr;
         symbol = symbol->next_homonym) {
      if (symbol->scope_number == entry->number &&
          name_space_for_symbol_kind[symbol->kind] == name_space && !is_hidden_member(symbol) &&
          passes_filters(fundamental_symbol_of(symbol), options))
        return symbol;
    }
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
  const a_symbol_header* header = locator->header;
  const a_name_space name_space = name_space_for_options(options);
  a_symbol* found = must_walk_scopes(header, options)
                        ? scope_walk_lookup(header, options, name_space)
                        : name_chain_lookup(header, options, name_space);
  if (found == nullptr && in_C_mode() && nrg_standalone_iar)
    found = name_chain_lookup(header, options, ns_member);
  return settle(locator, found);
}

a_symbol* class_qualified_id_lookup(a_symbol_locator* locator, a_type* class_type,
                                    uint32_t options) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (info == nullptr)
    return nullptr;
  const a_name_space name_space = in_C_mode() ? ns_member : ns_ordinary;
  return settle(locator, table_lookup(info->pointers_block, locator->header, options, name_space));
}

a_symbol* namespace_qualified_id_lookup(a_symbol_locator* locator, a_namespace* namespace_entry,
                                        uint32_t options) {
  a_symbol* result;
  if (is_settled(locator, &result))
    return result;
  a_namespace* owner = f_skip_namespace_aliases(namespace_entry);
  return settle(locator, table_lookup(owner->pointers_block, locator->header, options,
                                      name_space_for_options(options)));
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
  return settle(locator, table_lookup(get_pointers_block_for_scope(scope), locator->header, options,
                                      name_space_for_options(options)));
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

void lookup_one_time_init() {}

void lookup_init() {}
