// What a translation unit emits, and the removal of the rest.
//
// While the unit is parsed, an entity that must be emitted is only flagged.
// When the file scope ends, the flagged entities and those that the language
// makes visible to other units are the roots of one walk, which marks all that
// they lead to, function bodies included, as needed and to be kept.

#include "il.h"

#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "il_walk.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_tbl.h"
#include "trans_unit.h"
#include "types.h"

#include <vector>

namespace {

// Set once the file scope has ended: from then on a mark is carried to all that
// the entity refers to.
bool marks_are_carried_on;

struct a_pending_mark {
  void* entry;
  an_il_entry_kind kind;
};

// The state of the walk that is running. A mark made inside a walk joins it.
struct a_marking {
  bool is_running;
  bool sets_needed;
  std::vector<a_pending_mark> pending;
};
a_marking marking;

void add_pending(void* entry, an_il_entry_kind kind) {
  if (entry != nullptr)
    marking.pending.push_back({entry, kind});
}

template <class T> void add_pending_list(T* head, an_il_entry_kind kind) {
  for (; head != nullptr; head = head->next)
    add_pending(head, kind);
}

// What a scope of a function body emits by itself: all of its own variables.
// Its types and what it declares of other scopes are needed only where they are
// used.
void add_pending_parts_of_scope(a_scope* scope) {
  add_pending_list(scope->parameters, iek_variable);
  add_pending_list(scope->ctor_inits, iek_constructor_init);
  add_pending(scope->this_variable, iek_variable);
  add_pending(scope->return_variable, iek_variable);
  if (scope->kind == sk_function)
    add_pending(scope->assoc_statement, iek_statement);
  add_pending_list(scope->local_variables, iek_variable);
  add_pending_list(scope->labels, iek_label);
  add_pending_list(scope->asm_entries, iek_asm_entry);
  add_pending_list(scope->dynamic_inits, iek_dynamic_init);
  add_pending_list(scope->vla_dimensions, iek_vla_dimension);
  add_pending_list(scope->local_expr_refs, iek_local_expr_node_ref);
  for (a_variable* variable = scope->variables; variable != nullptr; variable = variable->next)
    if (variable->storage_kind != sc_extern || variable->source_corresp.needed)
      add_pending(variable, iek_variable);
  add_pending_list(scope->first_nested, iek_scope);
}

void add_pending_local_static_init(a_variable* variable) {
  an_init_kind init_kind;
  void* initializer;
  get_variable_initializer(variable, nullptr, &init_kind, &initializer);
  if (init_kind == initk_constant)
    add_pending(initializer, iek_constant);
  else if (init_kind == initk_dynamic)
    add_pending(initializer, iek_dynamic_init);
}

void enter_marked_entry(void* entry, an_il_entry_kind kind) {
  if (kind == iek_routine && marking.sets_needed) {
    set_routine_definition_needed(static_cast<a_routine*>(entry));
  } else if (kind == iek_variable) {
    auto* variable = static_cast<a_variable*>(entry);
    if (variable->init_kind == initk_local_static)
      add_pending_local_static_init(variable);
  } else if (kind == iek_type && is_class_struct_union_kind(static_cast<a_type*>(entry)->kind)) {
    set_class_keep_definition_in_il(static_cast<a_type*>(entry));
  }
}

bool is_scope_of_function_body(const a_scope* scope) {
  return scope->kind == sk_function || scope->kind == sk_block || scope->kind == sk_condition;
}

// Marks the entry; true ends the visit of it.
bool mark_filter(void* entry, an_il_entry_kind kind) {
  if (kind == iek_il_entity_list_entry)
    return true; // says what a declaration declares, which is no use of it
  // Most entries are expressions.
  a_source_correspondence* head =
      kind == iek_expr_node ? nullptr : source_corresp_for_il_entry(entry, kind);
  bool was_needed = head == nullptr || !marking.sets_needed || head->needed;
  if (head != nullptr && marking.sets_needed)
    head->needed = 1;
  an_il_entry_prefix& prefix = il_entry_prefix_of(entry);
  if (prefix.keep_in_il && was_needed)
    return true;
  prefix.keep_in_il = 1;
  if (kind == iek_scope) {
    auto* scope = static_cast<a_scope*>(entry);
    if (is_scope_of_function_body(scope))
      add_pending_parts_of_scope(scope);
    return true;
  }
  enter_marked_entry(entry, kind);
  return false;
}

constexpr an_il_walk_callbacks mark_callbacks = {nullptr, nullptr,     nullptr,
                                                 nullptr, mark_filter, true};

void mark(void* entry, an_il_entry_kind kind, bool sets_needed) {
  add_pending(entry, kind);
  if (marking.is_running)
    return;
  marking.is_running = true;
  marking.sets_needed = sets_needed;
  while (!marking.pending.empty()) {
    a_pending_mark next = marking.pending.back();
    marking.pending.pop_back();
    walk_il_subtree(next.entry, next.kind, mark_callbacks);
  }
  marking.is_running = false;
}

} // namespace

void mark_as_needed(void* entry, an_il_entry_kind kind) {
  a_source_correspondence* head = source_corresp_for_il_entry(entry, kind);
  if (head != nullptr)
    head->needed = 1;
  if (marks_are_carried_on)
    mark(entry, kind, true);
}

void remark_as_needed(void* entry, an_il_entry_kind kind) {
  if (!marks_are_carried_on) {
    mark_as_needed(entry, kind);
    return;
  }
  il_entry_prefix_of(entry).keep_in_il = 0;
  mark(entry, kind, true);
}

void mark_as_needed_like(void* entry, an_il_entry_kind kind, const a_source_correspondence* model) {
  if (model->needed)
    mark_as_needed(entry, kind);
}

namespace {

template <class T> void keep_list(T* head, an_il_entry_kind kind) {
  for (; head != nullptr; head = head->next)
    mark(head, kind, false);
}

void keep_orphaned_lists() {
  for (auto* list = il_header.scope_orphaned_lists; list != nullptr; list = list->next) {
    if (!list->routine->keep_definition_in_il && !il_entry_prefix_of(list->routine).keep_in_il)
      continue;
    keep_list(list->types, iek_type);
    keep_list(list->variables, iek_variable);
    keep_list(list->namespaces, iek_namespace);
  }
  for (int kind = 0; kind <= last_il_entry_kind; kind++)
    for (void* entry = orphaned_file_scope_il_entries[kind].head; entry != nullptr;
         entry = orphan_link_of(entry))
      mark(entry, static_cast<an_il_entry_kind>(kind), false);
}

template <class CALL> void for_each_real_namespace(a_scope* scope, CALL call) {
  for (a_namespace* entry = scope->namespaces; entry != nullptr; entry = entry->next)
    if (!entry->is_alias && entry->variant.scope != nullptr)
      call(entry->variant.scope);
}

void keep_types_of_scope(a_scope* scope) {
  check_stack_limit(); // namespaces nest as deep as the source has them
  keep_list(scope->types, iek_type);
  for_each_real_namespace(scope, keep_types_of_scope);
}

} // namespace

void mark_to_keep_in_il(void* entry, an_il_entry_kind kind) {
  if (kind != iek_scope) {
    mark(entry, kind, false);
    return;
  }
  // What the scope's needed entities lead to is marked to be kept already.
  auto* scope = static_cast<a_scope*>(entry);
  if (keep_unneeded_types)
    keep_types_of_scope(scope);
  if (scope != il_header.primary_scope)
    return;
  keep_list(il_header.macros, iek_macro);
  keep_orphaned_lists();
}

void set_class_keep_definition_in_il(a_type* type) {
  type->keep_definition_in_il = 1;
}

// --- Definitions of routines.

void set_routine_definition_needed(a_routine* routine) {
  routine->definition_needed = 1;
  remark_routine_definition_needed(routine);
}

void set_routine_keep_definition_in_il(a_routine* routine) {
  routine->keep_definition_in_il = 1;
  remark_routine_definition_needed(routine);
}

void remark_routine_definition_needed(a_routine* routine) {
  if (!routine->defined || !marks_are_carried_on)
    return;
  a_scope* scope = scope_for_routine_or_null(routine);
  if (scope != nullptr && !il_entry_prefix_of(scope).keep_in_il)
    mark(scope, iek_scope, routine->definition_needed);
}

void set_routine_defined(a_routine* routine) {
  routine->defined = 1;
  if (il_header.main_routine == nullptr && is_main_function(routine))
    il_header.main_routine = routine;
  remark_routine_definition_needed(routine);
}

// --- The roots.

namespace {

// A definition that another unit may refer to. An inline function is emitted
// only where the language makes it an external definition.
bool is_external_definition(const a_routine* routine) {
  if (!routine->defined || routine->source_corresp.linkage != idl_external)
    return false;
  return !routine->is_inline || (in_C_mode() && routine->has_external_declaration);
}

bool is_root(const a_routine* routine) {
  return routine->source_corresp.needed || routine->is_used || routine->in_init_array ||
         is_external_definition(routine);
}

bool is_root(const a_variable* variable) {
  return variable->source_corresp.needed || variable->is_used ||
         (variable->storage_kind == sc_none && variable->source_corresp.linkage == idl_external);
}

template <class T> void mark_roots(T* head, an_il_entry_kind kind) {
  for (; head != nullptr; head = head->next)
    if (is_root(head))
      mark(head, kind, true);
}

void mark_roots_of_scope(a_scope* scope);

void mark_roots_of_classes(a_type* type) {
  for (; type != nullptr; type = type->next)
    if (is_class_struct_union_kind(type->kind) && class_supplement_of(type)->scope != nullptr)
      mark_roots_of_scope(class_supplement_of(type)->scope);
}

void mark_roots_of_scope(a_scope* scope) {
  check_stack_limit();
  mark_roots(scope->routines, iek_routine);
  mark_roots(scope->variables, iek_variable);
  for (an_asm_entry* entry = scope->asm_entries; entry != nullptr; entry = entry->next)
    mark(entry, iek_asm_entry, true);
  for (a_dynamic_init* init = scope->dynamic_inits; init != nullptr; init = init->next)
    mark(init, iek_dynamic_init, true);
  if (in_cplusplus_mode())
    mark_roots_of_classes(scope->types);
  for_each_real_namespace(scope, mark_roots_of_scope);
}

} // namespace

void set_needed_flags_at_end_of_file_scope(a_scope* scope) {
  marks_are_carried_on = true;
  mark_roots_of_scope(scope);
}

void begin_marking_for_trans_unit() {
  marks_are_carried_on = false;
  marking = {};
}

// --- Removal.

namespace {

void detach_lifetime_of_expr(an_expr_node* expr, an_expr_or_stmt_traversal_block*) {
  if (expr->kind == expr_with_lifetime && expr->variant.with_lifetime.object_lifetime != nullptr)
    detach_from_object_lifetime_tree(expr->variant.with_lifetime.object_lifetime);
}

a_type* routine_type_in(a_type* type) {
  while (type != nullptr) {
    type = f_skip_typerefs(type);
    switch (type->kind) {
    case tk_routine:
      return type;
    case tk_pointer:
      type = type->variant.pointer.referenced_type;
      break;
    case tk_array:
      type = type->variant.array.element_type;
      break;
    case tk_ptr_to_member:
      type = type->variant.ptr_to_member.member_type;
      break;
    default:
      return nullptr;
    }
  }
  return nullptr;
}

} // namespace

void eliminate_default_arg_object_lifetimes(a_type* type) {
  type = routine_type_in(type);
  if (type == nullptr || il_entry_prefix_of(type).keep_in_il)
    return;
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.process_expr = detach_lifetime_of_expr;
  a_param_type* param = type->variant.routine.routine_supplement->param_types;
  for (; param != nullptr; param = param->next)
    if (param->default_arg_expr != nullptr)
      traverse_expr(param->default_arg_expr, &block);
}

namespace {

void note_removal(a_routine* routine) {
  if (il_header.main_routine == routine)
    il_header.main_routine = nullptr;
  eliminate_default_arg_object_lifetimes(routine->type);
}
void note_removal(a_variable* variable) {
  eliminate_default_arg_object_lifetimes(variable->type);
}
void note_removal(a_type*) {}
void note_removal(a_namespace*) {}

// Unlinks what isn't marked to be kept; returns the last entry that stays.
template <class T> T* remove_unkept(T** link) {
  T* last = nullptr;
  while (T* entity = *link) {
    if (il_entry_prefix_of(entity).keep_in_il) {
      last = entity;
      link = &entity->next;
      continue;
    }
    note_removal(entity);
    *link = entity->next;
    entity->next = nullptr;
  }
  return last;
}

void remove_unkept_secondary_entities() {
  an_il_entity_list_entry** link = &il_header.secondary_entities;
  while (an_il_entity_list_entry* entry = *link) {
    if (il_entry_prefix_of(entry->entity).keep_in_il)
      link = &entry->next;
    else
      *link = entry->next;
  }
}

// What was declared in a discarded body goes unless something else needs it.
void remove_unkept_of_discarded_bodies() {
  a_scope_orphaned_list** link = &il_header.scope_orphaned_lists;
  while (a_scope_orphaned_list* list = *link) {
    if (!keep_unneeded_types)
      remove_unkept(&list->types);
    remove_unkept(&list->variables);
    remove_unkept(&list->namespaces);
    if (list->types == nullptr && list->variables == nullptr && list->namespaces == nullptr)
      *link = list->next;
    else
      link = &list->next;
  }
}

} // namespace

void eliminate_unneeded_il_entries(a_scope* scope) {
  check_stack_limit();
  for_each_real_namespace(scope, eliminate_unneeded_il_entries);
  a_scope_pointers_block* tails = get_pointers_block_for_scope(scope);
  a_variable* last_variable = remove_unkept(&scope->variables);
  a_routine* last_routine = remove_unkept(&scope->routines);
  if (tails != nullptr) {
    tails->last_variable = last_variable;
    tails->last_routine = last_routine;
  }
  if (!keep_unneeded_types) {
    a_type* last_type = remove_unkept(&scope->types);
    if (tails != nullptr)
      tails->last_type = last_type;
  }
  if (scope == il_header.primary_scope) {
    remove_unkept_secondary_entities();
    remove_unkept_of_discarded_bodies();
  }
}

namespace {

bool belongs_to_curr_unit(const a_scope* function_scope) {
  bool is_of_primary_unit = !il_entry_prefix_of(function_scope).secondary_trans_unit_entry;
  if (is_of_primary_unit != (is_primary_translation_unit != 0))
    return false;
  const a_symbol* symbol = function_scope->assoc.routine->source_corresp.symbol;
  const a_translation_unit* unit = symbol == nullptr ? nullptr : trans_unit_for_symbol(symbol);
  return unit == nullptr || unit == curr_translation_unit;
}

} // namespace

void eliminate_bodies_of_unneeded_functions() {
  for (int32_t number = 1; number <= highest_used_function_def_number; number++) {
    a_scope* scope = il_header.function_def_table[number].scope;
    int32_t region = il_header.function_def_table[number].region_number;
    if (scope == nullptr || mem_region_table[region] == nullptr || !belongs_to_curr_unit(scope))
      continue;
    const a_routine* routine = scope->assoc.routine;
    if (!routine->definition_needed && !routine->keep_definition_in_il)
      clear_function_body(scope);
  }
}

bool keep_function_body_for_possible_inlining(const a_routine* routine) {
  return routine->body_may_be_needed;
}

namespace {

void reset_body_flags(a_routine* routine) {
  routine->defined = 0;
  routine->has_body = 0;
  routine->owns_region = 0;
  routine->is_lowered = 0;
  routine->body_lowering_waits = 0;
  routine->has_local_statics = 0;
  routine->has_local_class = 0;
  routine->has_vla = 0;
  routine->inline_candidate = 0;
}

// The routine's type leads neither to the body nor to a scope in its region.
void forget_body_in_type(a_routine* routine) {
  a_type* type = f_skip_typerefs(routine->type);
  if (type->kind != tk_routine)
    return;
  a_routine_type_supplement* supplement = type->variant.routine.routine_supplement;
  if (supplement->definition == routine)
    supplement->definition = nullptr;
  if (supplement->prototype_scope != nullptr && !is_file_scope_entry(supplement->prototype_scope))
    supplement->prototype_scope = nullptr;
}

void unlink_function_scope(a_scope* scope, int32_t region) {
  if (scope->prev != nullptr)
    scope->prev->next = scope->next;
  else
    il_header.region_scope_table[region] = scope->next;
  if (scope->next != nullptr)
    scope->next->prev = scope->prev;
}

} // namespace

void clear_function_body(a_scope* function_scope) {
  a_routine* routine = function_scope->assoc.routine;
  int32_t region = routine->region_number;
  add_scope_orphaned_il_lists(function_scope);
  il_header.function_def_table[routine->function_def_number] = {nullptr, 0};
  routine->function_def_number = 0;
  routine->region_number = 0;
  reset_body_flags(routine);
  forget_body_in_type(routine);
  unlink_function_scope(function_scope, region);
  if (il_header.region_scope_table[region] == nullptr)
    free_memory_region(region);
}

void clear_variable_definition(a_variable* variable) {
  variable->init_kind = initk_none;
  variable->initializer.generic = nullptr;
  variable->is_defined = 0;
  variable->is_tentative = 0;
  if (variable->storage_kind == sc_none)
    variable->storage_kind = sc_extern;
}
