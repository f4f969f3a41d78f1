// Pragmas that bind to the next declaration or statement, and the entries that
// pragmas leave in the intermediate language.

#include <deque>

#include "error.h"
#include "if_util.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lexical_int.h"
#include "mode_words.h"
#include "pragma_int.h"
#include "scope_stk.h"
#include "symbol_tbl.h"

// ---- Selection ----

static a_scope_stack_entry* innermost_entry() {
  return &scope_stack[depth_scope_stack];
}

static void append_pragma(a_pending_pragma** list, a_pending_pragma* pragma) {
  while (*list != nullptr)
    list = &(*list)->next;
  *list = pragma;
}

static void move_construct_pragmas(a_pending_pragma** list) {
  for (a_pending_pragma** link = &curr_token_pragmas; *link != nullptr;) {
    a_pending_pragma* pragma = *link;
    if (pragma->description->binding == pragma_binds_to_construct) {
      *link = pragma->next;
      pragma->next = nullptr;
      append_pragma(list, pragma);
    } else {
      link = &pragma->next;
    }
  }
}

bool f_select_curr_construct_pragmas(bool keep_existing) {
  if (innermost_entry()->pragmas_not_bound)
    return false;
  // Only a construct that was given up after an error leaves some behind.
  if (!keep_existing && total_errors != 0)
    discard_curr_construct_pragmas();
  move_construct_pragmas(&innermost_entry()->construct_pragmas);
  if (curr_token_pragmas != nullptr)
    process_curr_token_pragmas();
  update_initial_get_token_tests_needed();
  return innermost_entry()->construct_pragmas != nullptr;
}

a_pending_pragma* extract_curr_construct_pragmas() {
  a_pending_pragma* pragmas = innermost_entry()->construct_pragmas;
  innermost_entry()->construct_pragmas = nullptr;
  return pragmas;
}

void reactivate_curr_construct_pragmas(a_pending_pragma* pragmas) {
  append_pragma(&innermost_entry()->construct_pragmas, pragmas);
}

void discard_curr_construct_pragmas() {
  free_pending_pragma_list(extract_curr_construct_pragmas());
}

// ---- Binding ----

static void report_pragma(const a_pending_pragma* pragma, an_error_code code) {
  if (pragma->description->misplaced_severity != es_suppressed)
    pos_diagnostic(pragma->description->misplaced_severity, code, &pragma->name_position);
}

static void bind_pragma_to_statement(a_pending_pragma* pragma, a_statement* statement) {
  add_pragma_to_il_if_due(pragma, iek_statement, statement);
  run_pragma_action(pragma, nullptr, statement);
}

static void bind_pragma_to_symbol(a_pending_pragma* pragma, a_symbol* symbol) {
  an_il_entry_kind kind;
  void* entity = il_entry_for_symbol(symbol, &kind);
  if (entity != nullptr)
    add_pragma_to_il_if_due(pragma, kind, entity);
  run_pragma_action(pragma, symbol, nullptr);
}

static void bind_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement) {
  const uint16_t flags = pragma->description->flags;
  if (statement != nullptr && (flags & pragma_may_precede_statement))
    bind_pragma_to_statement(pragma, statement);
  else if (symbol != nullptr && (flags & pragma_may_precede_declaration))
    bind_pragma_to_symbol(pragma, symbol);
  else if (symbol == nullptr && (flags & pragma_may_precede_declaration))
    report_pragma(pragma, ec_pragma_must_precede_declaration);
  else
    report_pragma(pragma, ec_pragma_must_precede_statement);
}

void f_process_curr_construct_pragmas(a_symbol* symbol, a_statement* statement) {
  if (innermost_entry()->pragmas_not_bound)
    return;
  a_pending_pragma* pragmas = extract_curr_construct_pragmas();
  for (a_pending_pragma* pragma = pragmas; pragma != nullptr; pragma = pragma->next)
    bind_pragma(pragma, symbol, statement);
  free_pending_pragma_list(pragmas);
}

void cannot_bind_to_curr_construct() {
  end_of_scope_pragma_processing(extract_curr_construct_pragmas());
}

void end_of_scope_pragma_processing(a_pending_pragma* pragmas) {
  for (const a_pending_pragma* pragma = pragmas; pragma != nullptr; pragma = pragma->next)
    report_pragma(pragma, ec_pragma_may_not_be_used_here);
  free_pending_pragma_list(pragmas);
}

a_pending_pragma* extract_specific_pragmas(a_pragma_kind_tag kind) {
  a_pending_pragma* found = nullptr;
  for (a_pending_pragma** link = &innermost_entry()->construct_pragmas; *link != nullptr;) {
    a_pending_pragma* pragma = *link;
    if (pragma->description->kind == kind) {
      *link = pragma->next;
      pragma->next = nullptr;
      append_pragma(&found, pragma);
    } else {
      link = &pragma->next;
    }
  }
  return found;
}

// ---- Entries of the intermediate language ----

static bool can_hold_declarations(a_scope_kind kind) {
  switch (kind) {
  case sk_file:
  case sk_block:
  case sk_namespace:
  case sk_namespace_extension:
  case sk_enum:
  case sk_function:
    return true;
  case sk_class:
    return in_cplusplus_mode();
  default:
    return false;
  }
}

static int depth_of_innermost_declarations() {
  int depth = depth_scope_stack;
  while (depth > 0 && !can_hold_declarations(scope_stack[depth].kind))
    --depth;
  return depth;
}

// The depth of the scope that lists the pragmas of an entity; -1 for one whose
// scope need not be open.
static int depth_for_entity(const a_source_correspondence* entity) {
  if (!entity->local_to_function || entity->is_class_member)
    return -1;
  return is_file_scope_entry(entity) ? 0 : depth_of_innermost_declarations();
}

static int depth_for_scope(bool to_file_scope) {
  return to_file_scope ? 0 : depth_of_innermost_declarations();
}

// In the scope at the depth.
static a_pragma* add_pragma_entry(a_pending_pragma* pragma, int depth,
                                  a_source_correspondence* owner) {
  int32_t saved_region = 0;
  a_scope* scope = nullptr;
  if (depth >= 0) {
    scope = ensure_il_scope_exists(&scope_stack[depth]);
    switch_to_scope_region(depth, &saved_region);
  }
  a_pragma* entry = alloc_pragma(pragma->description->kind, owner);
  entry->position = pragma->directive_position;
  entry->argument_text = pragma->argument_text;
  entry->is_disabled = (pragma->description->flags & pragma_front_end_only) != 0;
  add_to_pragma_list(entry, scope, owner);
  switch_back_to_original_region(saved_region);
  return entry;
}

void add_pragma_to_il(a_pending_pragma* pragma, an_il_entry_kind kind, void* entity,
                      bool to_file_scope) {
  if (depth_scope_stack < 0 || innermost_entry()->no_il_generation)
    return;
  int depth;
  a_source_correspondence* owner = nullptr;
  if (kind == iek_statement) {
    static_cast<a_statement*>(entity)->has_associated_pragma = true;
    depth = depth_innermost_function_scope;
  } else if (kind != iek_none) {
    owner = source_corresp_for_il_entry(entity, kind);
    depth = depth_for_entity(owner);
  } else {
    depth = depth_for_scope(to_file_scope);
  }
  a_pragma* entry = add_pragma_entry(pragma, depth, owner);
  entry->entity_kind = kind;
  entry->entity = entity;
  pragma->il_entry = entry;
}

void add_pragma_to_il_if_due(a_pending_pragma* pragma, an_il_entry_kind kind, void* entity) {
  const uint16_t flags = pragma->description->flags;
  if ((flags & pragma_add_to_il) && !caching_tokens)
    add_pragma_to_il(pragma, kind, entity, (flags & pragma_to_file_scope) != 0);
}

void create_il_entry_for_pragma(a_pending_pragma* pragma, a_symbol* symbol,
                                a_statement* statement) {
  if (caching_tokens)
    return;
  const bool to_file_scope = (pragma->description->flags & pragma_to_file_scope) != 0;
  an_il_entry_kind kind = iek_none;
  void* entity = symbol != nullptr ? il_entry_for_symbol(symbol, &kind) : nullptr;
  if (statement != nullptr)
    add_pragma_to_il(pragma, iek_statement, statement, to_file_scope);
  else
    add_pragma_to_il(pragma, kind, entity, to_file_scope);
}

// Of all units of the run: an entry refers to its own for good.
static std::deque<PRAGMA> pragma_objects;

void set_pragma_object(a_pragma* entry, uint8_t kind, std::vector<std::string> strings) {
  entry->pragma_object = &pragma_objects.emplace_back(kind, std::move(strings));
}
