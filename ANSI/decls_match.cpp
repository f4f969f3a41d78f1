// The earlier declarations of a name, and what a new declaration shares with
// them (C99 6.2.2, 6.2.7; C++11 3.5).

#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "types.h"

#include <vector>

bool is_in_function() {
  return depth_innermost_function_scope >= 0;
}

int depth_of_linked_entities() {
  return in_C_mode() || depth_innermost_namespace_scope < 0 ? 0 : depth_innermost_namespace_scope;
}

bool is_in_unnamed_namespace() {
  for (int64_t depth = depth_of_linked_entities(); depth > 0;
       depth = scope_stack[depth].parent_depth)
    if (scope_stack[depth].namespace_entry &&
        scope_stack[depth].namespace_entry->source_corresp.is_unnamed)
      return true;
  return false;
}

an_error_severity tolerated_breach_severity() {
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

// ---- Types ----

// C99 6.7 p4. An unknown bound and an error type match anything; the GNU modes
// overlook the linkage of routine types.
bool redeclaration_types_are_compatible(a_type* new_type, a_type* old_type) {
  unsigned flags = tcf_error_matches | tcf_allow_unknown_bound;
  if (gnu_mode)
    flags |= tcf_ignore_linkage;
  return f_types_are_compatible(new_type, old_type, flags);
}

void report_incompatible_redeclaration(const a_source_position* position, a_symbol* symbol) {
  pos_sy_error(ec_not_compatible_with_previous_decl, position, symbol);
}

void report_linkage_conflict(const a_source_position* position) {
  pos_diagnostic(tolerated_breach_severity(), ec_linkage_conflict, position);
}

// ---- Names without a qualifier ----

static bool symbol_has_linkage(const a_symbol* symbol) {
  const a_source_correspondence* corresp = source_corresp_entry_for_symbol(symbol);
  return corresp && corresp->linkage != idl_none &&
         (symbol->kind == symk_variable || symbol->kind == symk_routine);
}

// A set of functions has linkage as each of them has.
static bool may_be_joined(const a_symbol* symbol) {
  return symbol->kind == symk_overloaded_function || symbol_has_linkage(symbol);
}

bool is_hidden_by_local(const a_symbol_locator* locator) {
  a_symbol_locator own = *locator;
  own.symbol = nullptr;
  a_symbol* symbol = normal_id_lookup(&own, ilo_none);
  return symbol && scope_depth_of_symbol(symbol, nullptr) > depth_of_linked_entities() &&
         !may_be_joined(symbol);
}

// What the current scope itself declares. In C++ a tag gives way to another
// name of its scope (C++11 3.3.10 p2).
static a_symbol* declaration_of_scope(a_symbol_locator* locator) {
  locator->symbol = nullptr;
  a_symbol* symbol = curr_scope_id_lookup(locator, ilo_none);
  const a_symbol* written = locator->symbol;
  locator->symbol = nullptr;
  if (!symbol || (in_cplusplus_mode() && is_tag_symbol_kind(symbol->kind)))
    return nullptr;
  if (written && written->kind == symk_namespace_projection &&
      !is_function_symbol_kind(symbol->kind)) {
    pos_sy_error(ec_conflicts_with_using_decl, &locator->position, symbol);
    set_to_error_locator(locator);
    return nullptr;
  }
  return symbol;
}

static a_symbol* declaration_at_depth(const a_symbol_header* header, int depth) {
  const int32_t number = scope_stack[depth].number;
  for (a_symbol* symbol = header->first_symbol; symbol; symbol = symbol->next_homonym)
    if (symbol->scope_number == number && may_be_joined(symbol))
      return symbol;
  return nullptr;
}

static const a_scope* scope_of_block_extern(const a_symbol* symbol) {
  return symbol->kind == symk_extern_variable
             ? symbol->variant.variable->source_corresp.parent_scope
             : symbol->variant.routine->source_corresp.parent_scope;
}

// What a block declared that is out of sight now. In C++ the name in another
// namespace is another entity (C++11 3.5 p7).
static a_symbol* declaration_of_other_block(const a_symbol_header* header) {
  const a_scope* scope = scope_stack[depth_of_linked_entities()].il_scope;
  for (a_symbol* symbol = find_extern_symbol(header); symbol; symbol = symbol->next_homonym)
    if ((symbol->kind == symk_extern_variable || symbol->kind == symk_extern_routine) &&
        scope_of_block_extern(symbol) == scope)
      return symbol;
  return nullptr;
}

// C99 6.2.2 p4: a declaration with linkage names the entity that an outer
// declaration of that name with linkage does, visible or not.
a_symbol* find_linked_declaration(a_symbol_locator* locator, bool has_linkage) {
  if (locator->is_error_locator)
    return nullptr;
  a_symbol* symbol = declaration_of_scope(locator);
  if (symbol || !has_linkage || locator->is_error_locator)
    return symbol;
  if (in_C_mode()) {
    symbol = normal_id_lookup(locator, ilo_none);
    locator->symbol = nullptr;
    if (symbol && symbol_has_linkage(symbol))
      return symbol;
  }
  if (is_in_function()) {
    symbol = declaration_at_depth(locator->header, depth_of_linked_entities());
    if (symbol)
      return symbol;
  }
  return declaration_of_other_block(locator->header);
}

// ---- Qualified names ----

static a_scope* scope_of_member(const a_symbol* member) {
  return member->is_namespace_member ? scope_of_namespace(member->parent.namespace_entry)
                                     : il_header.primary_scope;
}

static bool is_within_current_scope(const a_scope* scope) {
  while (scope && scope != scope_stack[decl_scope_level].il_scope)
    scope = scope->parent;
  return scope != nullptr;
}

static a_symbol* look_up_qualified(a_symbol_locator* locator) {
  if (locator->symbol)
    return fundamental_symbol_of(locator->symbol);
  if (locator->is_class_qualified || locator->is_enum_qualified)
    return class_qualified_id_lookup(locator, locator->qualifier.class_type, ilo_none);
  if (locator->qualifier.namespace_entry)
    return namespace_qualified_id_lookup(locator, locator->qualifier.namespace_entry,
                                         ilo_ignore_using_directives);
  return file_scope_id_lookup(il_header.primary_scope, locator, ilo_ignore_using_directives);
}

static void report_no_prior_declaration(a_symbol_locator* locator) {
  a_symbol_locator own = *locator;
  set_to_error_locator(&own);
  own.symbol = nullptr;
  pos_sy_error(ec_no_prior_declaration, &locator->position, make_symbol(symk_undefined, &own));
}

a_symbol* find_qualified_declaration(a_symbol_locator* locator, bool is_definition) {
  if (locator->is_error_locator)
    return nullptr;
  a_symbol* symbol = look_up_qualified(locator);
  if (!symbol) {
    report_no_prior_declaration(locator);
  } else if (locator->is_ambiguous) {
    pos_sy_error(ec_ambiguous_name, &locator->position, symbol);
  } else if (symbol->is_class_member) {
    pos_st_error(ec_feature_not_allowed_in_current_mode, &locator->position,
                 locator->header->identifier);
  } else if (is_in_function() || !is_within_current_scope(scope_of_member(symbol))) {
    pos_sy_error(is_definition ? ec_bad_scope_for_definition : ec_bad_scope_for_redeclaration,
                 &locator->position, symbol);
  } else {
    if (scope_of_member(symbol) == scope_stack[decl_scope_level].il_scope)
      pos_diagnostic(gnu_mode ? es_warning : es_discretionary_error,
                     gnu_mode ? ec_nonstd_qualifier_in_namespace_member_decl
                              : ec_qualifier_in_namespace_member_decl,
                     &locator->position);
    locator->symbol = nullptr;
    return symbol;
  }
  set_to_error_locator(locator);
  return nullptr;
}

// The innermost scope around a member that is no class.
static a_scope* namespace_scope_of_member(const a_symbol* member) {
  while (member->is_class_member) {
    const a_symbol* class_symbol = skip_typerefs(member->parent.class_type)->source_corresp.symbol;
    if (!class_symbol)
      return nullptr;
    member = class_symbol;
  }
  return member->is_namespace_member || !is_in_function() ? scope_of_member(member) : nullptr;
}

bool is_declared_within_current_scope(const a_symbol* symbol) {
  for (const a_symbol* s = symbol; s && s->is_class_member;
       s = skip_typerefs(s->parent.class_type)->source_corresp.symbol)
    if (scope_stack[decl_scope_level].il_scope &&
        class_supplement_of(s->parent.class_type)->scope == scope_stack[decl_scope_level].il_scope)
      return true;
  a_scope* scope = namespace_scope_of_member(symbol);
  return scope && is_within_current_scope(scope);
}

static bool class_is_open(const a_type* class_type) {
  for (int64_t depth = depth_scope_stack; depth >= 0; depth = scope_stack[depth].parent_depth)
    if ((scope_stack[depth].kind == sk_class || scope_stack[depth].kind == sk_class_reactivation) &&
        scope_stack[depth].assoc_type == class_type)
      return true;
  return false;
}

// What push_scopes_of_member answers when it has opened a class.
static constexpr int pushed_class = -1;

// Opens what is closed between the current scope and that of a namespace, none
// when that lies elsewhere.
static int push_namespaces_down_to(a_scope* innermost) {
  if (!is_within_current_scope(innermost))
    return 0;
  std::vector<a_namespace*> closed;
  for (a_scope* scope = innermost; scope != scope_stack[decl_scope_level].il_scope;
       scope = scope->parent)
    closed.push_back(scope->assoc.namespace_entry);
  for (size_t i = closed.size(); i-- > 0;)
    f_push_namespace_extension_scope(closed[i]);
  return static_cast<int>(closed.size());
}

int push_scopes_of_member(const a_symbol* member) {
  if (member->is_class_member) {
    a_type* class_type = skip_typerefs(member->parent.class_type);
    if (class_is_open(class_type) || !class_supplement_of(class_type)->scope)
      return 0;
    push_class_and_template_reactivation_scope(class_type);
    return pushed_class;
  }
  return member->is_namespace_member ? push_namespaces_down_to(scope_of_member(member)) : 0;
}

int push_scopes_of_qualifier(const a_symbol_locator* locator) {
  if (locator->is_error_locator || locator->is_enum_qualified || !locator->qualifier.entry)
    return 0;
  if (!locator->is_class_qualified)
    return push_namespaces_down_to(scope_of_namespace(locator->qualifier.namespace_entry));
  a_type* class_type = skip_typerefs(locator->qualifier.class_type);
  if (!is_class_struct_union_kind(class_type->kind) || !class_supplement_of(class_type)->scope)
    return 0;
  push_class_and_template_reactivation_scope(class_type);
  return pushed_class;
}

void pop_scopes_of_member(int pushed) {
  if (pushed == pushed_class)
    pop_class_reactivation_scope();
  for (; pushed > 0; --pushed)
    pop_scope();
}

// ---- Positions ----

void update_decl_pos_info(a_source_correspondence* source_corresp,
                          const a_decl_parse_state* state) {
  if (!source_corresp->decl_position_supplement)
    source_corresp->decl_position_supplement =
        alloc_decl_position_supplement(is_file_scope_entry(source_corresp));
  a_decl_position_supplement* positions = source_corresp->decl_position_supplement;
  const a_decl_pos_block* block = &state->positions;
  positions->specifiers_range = block->specifiers_range;
  positions->declarator_range = block->declarator_range;
  positions->name_end_position = block->name_end_position;
  positions->storage_class_position = block->storage_class_position;
}

void note_definition_range(a_source_correspondence* source_corresp,
                           const a_source_position* equals_position, const a_source_range* range) {
  a_decl_position_supplement* positions = source_corresp->decl_position_supplement;
  if (!positions)
    return;
  if (equals_position)
    positions->equals_position = *equals_position;
  positions->variant_range = *range;
}
