// Parents of entities, and the lists of a scope.

#include "il.h"

#include "il_alloc.h"
#include "il_constants.h"
#include "il_statements.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "trans_unit.h"
#include "types.h"

#include <initializer_list>

void switch_to_scope_region(int depth, int32_t* saved) {
  int32_t region = scope_stack[depth].region_number;
  *saved = 0;
  if (curr_il_region_number == region)
    return;
  *saved = curr_il_region_number;
  curr_il_region_number = region;
}

// --- Parents.
//
// A file-scope entry must not point into a function region, which may be freed
// or written on its own. A file-scope entity that is declared in a function, a
// local class for one, is tied to its scope by a reference in the function.

namespace {

// The function scope around a scope that lies in a function's region.
a_scope* function_scope_around(a_scope* scope) {
  for (int depth = scope->scope_stack_depth; depth >= 0; depth--)
    if (scope_stack[depth].kind == sk_function)
      return scope_stack[depth].il_scope;
  if (scope->scope_stack_depth < 0 && innermost_function_scope != nullptr)
    return innermost_function_scope;
  while (scope != nullptr && scope->kind != sk_function)
    scope = scope->parent;
  return scope;
}

// Makes the function's region current for as long as the object lives.
class FUNCTION_REGION_SWITCH {
public:
  explicit FUNCTION_REGION_SWITCH(const a_scope* function_scope) : saved(curr_il_region_number) {
    switch_il_region(function_scope->assoc.routine->region_number);
  }
  ~FUNCTION_REGION_SWITCH() {
    switch_il_region(saved);
  }
  FUNCTION_REGION_SWITCH(const FUNCTION_REGION_SWITCH&) = delete;
  FUNCTION_REGION_SWITCH& operator=(const FUNCTION_REGION_SWITCH&) = delete;

private:
  int32_t saved;
};

} // namespace

a_local_scope_ref* make_local_scope_ref(a_scope* scope, void* entity, an_il_entry_kind kind,
                                        a_scope* function_scope) {
  FUNCTION_REGION_SWITCH in_function(function_scope);
  a_local_scope_ref* ref = alloc_local_scope_ref();
  ref->scope = scope;
  ref->entity_kind = kind;
  ref->entity = entity;
  ref->next = function_scope->local_scope_refs;
  function_scope->local_scope_refs = ref;
  return ref;
}

a_local_expr_node_ref* make_local_expr_node_ref(void* owner, a_local_expr_ref_kind kind,
                                                an_expr_node* expr, a_scope* function_scope) {
  FUNCTION_REGION_SWITCH in_function(function_scope);
  a_local_expr_node_ref* ref = alloc_local_expr_node_ref();
  ref->kind = kind;
  ref->owner.entity = owner;
  ref->expr = expr;
  ref->next = function_scope->local_expr_refs;
  function_scope->local_expr_refs = ref;
  switch (kind) {
  case lek_constant_backing_expr:
  case lek_constant_param_expr:
    ref->owner.constant->has_local_expr_node_ref = 1;
    break;
  case lek_field:
    ref->owner.field->has_local_expr_ref = 1;
    break;
  default:
    ref->owner.type->has_local_expr_ref = 1;
  }
  return ref;
}

an_expr_node* find_local_expr_node(const void* owner, a_local_expr_ref_kind kind,
                                   a_routine* routine) {
  a_scope* function_scope = routine == nullptr ? nullptr : scope_for_routine_or_null(routine);
  if (function_scope == nullptr)
    return nullptr;
  for (auto* ref = function_scope->local_expr_refs; ref != nullptr; ref = ref->next)
    if (ref->owner.entity == owner && ref->kind == kind)
      return ref->expr;
  return nullptr;
}

a_scope* find_local_scope(const void* entity, an_il_entry_kind kind, a_routine* routine) {
  a_scope* function_scope = routine == nullptr ? nullptr : scope_for_routine_or_null(routine);
  if (function_scope == nullptr)
    return nullptr;
  for (auto* ref = function_scope->local_scope_refs; ref != nullptr; ref = ref->next)
    if (ref->entity == entity && ref->entity_kind == kind)
      return ref->scope;
  return nullptr;
}

namespace {

void remove_local_scope_ref(a_source_correspondence* source_corresp, an_il_entry_kind kind) {
  a_scope* function_scope = scope_for_routine_or_null(source_corresp->enclosing_routine);
  if (function_scope != nullptr) {
    a_local_scope_ref** link = &function_scope->local_scope_refs;
    while (*link != nullptr && ((*link)->entity != source_corresp || (*link)->entity_kind != kind))
      link = &(*link)->next;
    if (*link != nullptr)
      *link = (*link)->next;
  }
  source_corresp->has_local_scope_ref = 0;
}

} // namespace

void set_parent_scope(a_source_correspondence* source_corresp, an_il_entry_kind kind,
                      a_scope* scope) {
  if (source_corresp->has_local_scope_ref)
    remove_local_scope_ref(source_corresp, kind);
  source_corresp->parent_scope = scope;
  source_corresp->is_class_member = scope != nullptr && scope->kind == sk_class;
  if (scope == nullptr || is_file_scope_entry(scope))
    return;
  a_scope* function_scope = function_scope_around(scope);
  if (function_scope == nullptr)
    return;
  source_corresp->enclosing_routine = function_scope->assoc.routine;
  source_corresp->local_to_function = 1;
  if (!is_file_scope_entry(source_corresp))
    return;
  make_local_scope_ref(scope, source_corresp, kind, function_scope);
  source_corresp->parent_scope = nullptr;
  source_corresp->has_local_scope_ref = 1;
}

void clear_parent(a_source_correspondence* source_corresp, an_il_entry_kind kind) {
  if (source_corresp->has_local_scope_ref)
    remove_local_scope_ref(source_corresp, kind);
  source_corresp->parent_scope = nullptr;
  source_corresp->enclosing_routine = nullptr;
  source_corresp->is_class_member = 0;
}

a_scope* f_get_parent_scope_of(a_source_correspondence* source_corresp, an_il_entry_kind kind) {
  return source_corresp->has_local_scope_ref
             ? find_local_scope(source_corresp, kind, source_corresp->enclosing_routine)
             : source_corresp->parent_scope;
}

static bool is_expr_of_function(const an_expr_node* expr) {
  return expr != nullptr && !is_file_scope_entry(expr);
}

void fix_memory_region_problems_in_copied_constant(a_constant* constant) {
  if (!is_file_scope_entry(constant))
    return;
  if (is_expr_of_function(constant->source_expr)) {
    constant->source_expr = nullptr;
    constant->has_local_expr_node_ref = 0;
  }
  a_template_param_value& value = constant->value.template_param;
  if (constant->kind != con_template_param || value.param_kind != tpck_expression ||
      !is_expr_of_function(value.param_data.expr) || innermost_function_scope == nullptr)
    return;
  make_local_expr_node_ref(constant, lek_constant_param_expr, value.param_data.expr,
                           innermost_function_scope);
  value.param_data.expr = nullptr;
}

int walk_parents(void* entity, an_il_entry_kind kind,
                 int (*callback)(void* entity, an_il_entry_kind kind, void* control_block),
                 void* control_block, unsigned flags) {
  int result = 0;
  if (flags & wp_entity_itself)
    result = callback(entity, kind, control_block);
  while (result == 0) {
    a_source_correspondence* head = source_corresp_for_il_entry(entity, kind);
    if (head == nullptr ||
        (kind == iek_type && static_cast<a_type*>(entity)->kind == tk_template_param))
      break;
    a_scope* parent = f_get_parent_scope_of(head, kind);
    unsigned wanted = 0;
    if (parent != nullptr && parent->kind == sk_class) {
      entity = parent->assoc.type;
      kind = iek_type;
      wanted = wp_classes;
    } else if (parent != nullptr && parent->kind == sk_namespace) {
      entity = parent->assoc.namespace_entry;
      kind = iek_namespace;
      wanted = wp_namespaces;
    } else if (head->local_to_function && head->enclosing_routine != nullptr) {
      entity = head->enclosing_routine;
      kind = iek_routine;
      wanted = wp_routines;
    } else {
      break;
    }
    if (flags & wanted)
      result = callback(entity, kind, control_block);
  }
  return result;
}

// --- The lists of a scope.

namespace {

// A scope, and the tails of its lists where they are known.
struct a_list_place {
  a_scope* scope;
  a_scope_pointers_block* tails; // null: the lists must be walked
};

a_list_place place_at_depth(int depth) {
  a_scope_stack_entry* entry = &scope_stack[depth];
  a_scope* scope = ensure_il_scope_exists(entry);
  return {scope, pointers_block_of_entry(&scope_stack[depth])};
}

a_list_place place_of_scope(a_scope* scope) {
  return {scope, get_pointers_block_for_scope(scope)};
}

a_scope* file_scope_of(const a_source_correspondence* source_corresp) {
  if (source_corresp->symbol != nullptr) {
    a_translation_unit* unit = trans_unit_for_symbol(source_corresp->symbol);
    if (unit != nullptr && unit->unit_file_scope != nullptr)
      return unit->unit_file_scope;
  }
  return il_header.primary_scope;
}

// The scope that lists an entity whose declaration is not being parsed: a
// class, a namespace or, failing these, the file.
a_scope* listing_scope_of(const a_source_correspondence* source_corresp) {
  a_scope* parent = source_corresp->parent_scope;
  if (parent != nullptr && parent->kind == sk_class)
    return parent;
  if (parent != nullptr && parent->kind == sk_namespace)
    return scope_of_namespace(parent->assoc.namespace_entry);
  return file_scope_of(source_corresp);
}

// The place for an entity; links it to the scope at the depth, if one is given.
a_list_place place_for(a_source_correspondence* source_corresp, an_il_entry_kind kind, int depth) {
  if (depth == -1)
    return place_of_scope(listing_scope_of(source_corresp));
  a_list_place place = place_at_depth(depth);
  set_parent_scope(source_corresp, kind, place.scope);
  return place;
}

template <class T> void append(T** head, T** tail, T* entity, T* T::*next = &T::next) {
  T* last = tail != nullptr && *tail != nullptr ? *tail : *head;
  entity->*next = nullptr;
  if (last == nullptr) {
    *head = entity;
  } else {
    while (last->*next != nullptr)
      last = last->*next;
    last->*next = entity;
  }
  if (tail != nullptr)
    *tail = entity;
}

template <class T> void unlink(T** head, T** tail, T* entity) {
  T* previous = nullptr;
  T** link = head;
  while (*link != nullptr && *link != entity) {
    previous = *link;
    link = &(*link)->next;
  }
  if (*link == nullptr)
    return;
  *link = entity->next;
  entity->next = nullptr;
  if (tail != nullptr && *tail == entity)
    *tail = previous;
}

// The tail of one list; null when the tails of the scope aren't known.
template <class T> T** tail_of(const a_list_place& place, T* a_scope_pointers_block::*member) {
  return place.tails == nullptr ? nullptr : &(place.tails->*member);
}

struct a_variable_list {
  a_variable** head;
  a_variable** tail;
};

// Automatic variables have a list of their own, but at file scope.
a_variable_list variable_list(const a_list_place& place, a_storage_kind storage_kind) {
  if (storage_kind >= sc_auto && place.scope->kind != sk_file)
    return {&place.scope->local_variables,
            tail_of(place, &a_scope_pointers_block::last_local_variable)};
  return {&place.scope->variables, tail_of(place, &a_scope_pointers_block::last_variable)};
}

} // namespace

void add_to_variables_list(a_variable* variable, int depth) {
  a_list_place place = place_for(&variable->source_corresp, iek_variable, depth);
  a_variable_list list = variable_list(place, variable->storage_kind);
  variable->previous = list.tail != nullptr ? *list.tail : nullptr;
  append(list.head, list.tail, variable);
}

// Unlinks with the hint of the variable's place; false when that is stale.
static bool unlink_behind_previous(const a_variable_list& list, a_variable* variable) {
  a_variable* previous = variable->previous;
  a_variable** link = previous != nullptr ? &previous->next : list.head;
  const bool is_last = variable->next == nullptr;
  if (*link != variable || (is_last && (list.tail == nullptr || *list.tail != variable)))
    return false;
  *link = variable->next;
  if (is_last)
    *list.tail = previous;
  else
    variable->next->previous = previous;
  variable->next = variable->previous = nullptr;
  return true;
}

void remove_from_variables_list(a_variable* variable, int depth) {
  a_list_place place = depth == -1 ? place_of_scope(listing_scope_of(&variable->source_corresp))
                                   : place_at_depth(depth);
  // The storage may have changed since the variable was entered.
  for (a_storage_kind storage_kind : {sc_none, sc_auto}) {
    a_variable_list list = variable_list(place, storage_kind);
    if (unlink_behind_previous(list, variable))
      return;
    unlink(list.head, list.tail, variable);
  }
}

void add_to_routines_list(a_routine* routine, int depth) {
  a_list_place place = place_for(&routine->source_corresp, iek_routine, depth);
  append(&place.scope->routines, tail_of(place, &a_scope_pointers_block::last_routine), routine);
}

void remove_from_routines_list(a_routine* routine, int depth) {
  a_list_place place = depth == -1 ? place_of_scope(listing_scope_of(&routine->source_corresp))
                                   : place_at_depth(depth);
  unlink(&place.scope->routines, tail_of(place, &a_scope_pointers_block::last_routine), routine);
}

bool may_be_added_to_types_list(a_type* type) {
  bool is_tag = is_class_struct_union_kind(type->kind) ||
                (type->kind == tk_integer && type->variant.integer.is_enum);
  if (in_cplusplus_mode() && is_tag) {
    a_type* parent_class = class_of_member(&type->source_corresp);
    if (parent_class != nullptr && parent_class->variant.class_struct_union.is_nonreal)
      return false;
  }
  return !is_or_contains_error_type(type);
}

void add_to_types_list(a_type* type, int depth) {
  a_list_place place = place_for(&type->source_corresp, iek_type, depth);
  append(&place.scope->types, tail_of(place, &a_scope_pointers_block::last_type), type);
}

void move_to_end_of_types_list(a_type* type, int depth) {
  a_list_place place =
      depth == -1 ? place_of_scope(listing_scope_of(&type->source_corresp)) : place_at_depth(depth);
  a_type** tail = tail_of(place, &a_scope_pointers_block::last_type);
  // Most types are declared and defined at once; spare them the walk.
  if (tail != nullptr && *tail == type)
    return;
  unlink(&place.scope->types, tail, type);
  append(&place.scope->types, tail, type);
}

void add_to_constants_list(a_constant* constant, int depth) {
  a_list_place place = place_for(&constant->source_corresp, iek_constant, depth);
  append(&place.scope->constants, tail_of(place, &a_scope_pointers_block::last_constant), constant);
}

void add_to_labels_list(a_label* label, int depth) {
  a_list_place place = place_for(&label->source_corresp, iek_label, depth);
  append(&place.scope->labels, tail_of(place, &a_scope_pointers_block::last_label), label);
}

void add_to_parameters_list(a_variable* parameter, int depth) {
  parameter->is_parameter = 1;
  a_list_place place = place_for(&parameter->source_corresp, iek_variable, depth);
  append(&place.scope->parameters, tail_of(place, &a_scope_pointers_block::last_parameter),
         parameter);
}

void add_to_asm_entries_list(an_asm_entry* entry, int depth) {
  a_list_place place = place_for(&entry->source_corresp, iek_asm_entry, depth);
  append(&place.scope->asm_entries, tail_of(place, &a_scope_pointers_block::last_asm_entry), entry);
}

void add_to_namespaces_list(a_namespace* namespace_entry, int depth) {
  a_list_place place = place_for(&namespace_entry->source_corresp, iek_namespace, depth);
  append(&place.scope->namespaces, tail_of(place, &a_scope_pointers_block::last_namespace),
         namespace_entry);
}

void add_to_using_decls_list(a_using_decl* using_decl, int depth) {
  a_list_place place =
      depth == -1 ? place_of_scope(using_decl->parent_scope != nullptr ? using_decl->parent_scope
                                                                       : il_header.primary_scope)
                  : place_at_depth(depth);
  using_decl->parent_scope = place.scope;
  append(&place.scope->using_decls, tail_of(place, &a_scope_pointers_block::last_using_decl),
         using_decl);
}

void add_to_templates_list(a_template* templ, int depth) {
  a_list_place place = place_for(&templ->source_corresp, iek_template, depth);
  append(&place.scope->templates, tail_of(place, &a_scope_pointers_block::last_template), templ);
}

// The list of macros may have thousands of entries: its last one is kept, with
// the first one to tell whose list it ends.
static a_macro* last_macro;
static a_macro* first_macro;

void add_to_macros_list(a_macro* macro) {
  if (il_header.macros == nullptr || il_header.macros != first_macro)
    last_macro = nullptr;
  append(&il_header.macros, &last_macro, macro);
  first_macro = il_header.macros;
}

void add_to_pragma_list(a_pragma* pragma, a_scope* scope, a_source_correspondence* owner) {
  if (scope == nullptr)
    scope = owner == nullptr ? il_header.primary_scope : listing_scope_of(owner);
  a_list_place place = place_of_scope(scope);
  append(&scope->pragmas, tail_of(place, &a_scope_pointers_block::last_pragma), pragma);
  if (owner != nullptr)
    owner->has_associated_pragma = 1;
}

namespace {

// Moves the file-scope entities of one list to the other.
template <class T> void move_file_scope_entities(T** from, T** to) {
  while (*to != nullptr)
    to = &(*to)->next;
  while (*from != nullptr) {
    T* entity = *from;
    if (!is_file_scope_entry(entity)) {
      from = &entity->next;
      continue;
    }
    *from = entity->next;
    entity->next = nullptr;
    *to = entity;
    to = &entity->next;
  }
}

// What a scope of the function declares for the file is listed apart.
void move_to_orphaned_lists(a_scope* scope, a_routine* routine) {
  a_scope_orphaned_list lists = {};
  move_file_scope_entities(&scope->types, &lists.types);
  move_file_scope_entities(&scope->variables, &lists.variables);
  move_file_scope_entities(&scope->namespaces, &lists.namespaces);
  if (lists.types == nullptr && lists.variables == nullptr && lists.namespaces == nullptr)
    return;
  a_scope_orphaned_list* header = alloc_scope_orphaned_list_header();
  *header = lists;
  header->routine = routine;
  header->scope_number = scope->scope_number;
  header->next = il_header.scope_orphaned_lists;
  il_header.scope_orphaned_lists = header;
  scope->moved_to_orphaned_lists = 1;
}

// The scope behind another one, in the order of the source, among those nested
// in the root.
a_scope* next_nested_scope(a_scope* scope, const a_scope* root) {
  if (scope->first_nested != nullptr)
    return scope->first_nested;
  while (scope != root && scope->next == nullptr)
    scope = scope->parent;
  return scope == root ? nullptr : scope->next;
}

} // namespace

void add_scope_orphaned_il_lists(a_scope* function_scope) {
  for (a_scope* scope = function_scope; scope != nullptr;
       scope = next_nested_scope(scope, function_scope))
    move_to_orphaned_lists(scope, function_scope->assoc.routine);
}

// --- Variables made by the front end.

a_variable* make_variable(a_type* type, a_storage_kind storage_kind, int depth) {
  a_variable* variable = alloc_variable(storage_kind);
  variable->type = type;
  add_to_variables_list(variable, depth);
  return variable;
}

a_variable* alloc_temporary_variable(a_type* type, bool static_wanted) {
  bool is_static = static_wanted || curr_il_region_number == file_scope_region_number;
  a_variable* variable = alloc_variable(is_static ? sc_static : sc_auto);
  variable->type = type;
  variable->is_temporary = 1;
  variable->is_compiler_generated = 1;
  if (!is_static)
    variable->source_corresp.local_to_function = 1;
  return variable;
}

void add_temporary_to_front_of_variables_list(a_variable* variable, a_scope* scope) {
  a_list_place place = {scope, scope->scope_stack_depth >= 0 ? get_pointers_block_for_scope(scope)
                                                             : nullptr};
  set_parent_scope(&variable->source_corresp, iek_variable, scope);
  a_variable_list list = variable_list(place, variable->storage_kind);
  a_variable** link = list.head;
  while (*link != nullptr && (*link)->source_corresp.name == nullptr)
    link = &(*link)->next;
  variable->next = *link;
  *link = variable;
  if (variable->next == nullptr && list.tail != nullptr)
    *list.tail = variable;
}

a_variable* make_handler_parameter(a_type* type) {
  a_variable* variable = alloc_variable(sc_auto);
  variable->type = type;
  variable->is_handler_parameter = 1;
  return variable;
}
