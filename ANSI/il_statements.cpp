// Statements and dynamic initialisations; lifetimes stand in
// il_statements_lifetime.cpp.

#include "il_statements.h"

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "types.h"

#include <cstring>

template <typename T> static T* alloc_zeroed() {
  T* record = static_cast<T*>(alloc_il_in_current_region(sizeof(T)));
  memset(static_cast<void*>(record), 0, sizeof(T));
  return record;
}

// ---- Statements ----

a_statement* alloc_statement(a_statement_kind kind) {
  a_statement* statement = alloc_zeroed<a_statement>();
  set_statement_kind(statement, kind);
  return statement;
}

void set_statement_kind(a_statement* statement, a_statement_kind kind) {
  statement->kind = kind;
  memset(static_cast<void*>(&statement->variant), 0, sizeof statement->variant);
  switch (kind) {
  case stmk_block:
    statement->variant.block.block_supplement = alloc_zeroed<a_block_supplement>();
    break;
  case stmk_for:
    statement->variant.loop.extra.for_supplement = alloc_zeroed<a_for_loop_supplement>();
    break;
  case stmk_range_for:
    statement->variant.loop.extra.range_for_supplement =
        alloc_zeroed<a_range_based_for_supplement>();
    break;
  case stmk_switch:
    statement->variant.loop.extra.switch_supplement = alloc_zeroed<a_switch_stmt_supplement>();
    break;
  case stmk_try:
    statement->variant.try_supplement = alloc_zeroed<a_try_supplement>();
    break;
  default:
    break;
  }
}

static void set_parent(a_statement* list, a_statement* parent) {
  for (; list != nullptr; list = list->next)
    list->parent = parent;
}

void set_parent_of_substatements(a_statement* statement) {
  switch (statement->kind) {
  case stmk_if:
    set_parent(statement->variant.if_stmt.then_statement, statement);
    set_parent(statement->variant.if_stmt.else_statement, statement);
    break;
  case stmk_for: {
    a_for_loop_supplement* loop = statement->variant.loop.extra.for_supplement;
    set_parent(loop->init_statement, statement);
    set_parent(loop->pre_increment_statement, statement);
    set_parent(loop->pre_condition_statement, statement);
    set_parent(statement->variant.loop.body, statement);
    break;
  }
  case stmk_while:
  case stmk_do:
  case stmk_range_for:
  case stmk_case:
  case stmk_switch:
    set_parent(statement->variant.loop.body, statement);
    break;
  case stmk_block:
    set_parent(statement->variant.block.first_statement, statement);
    break;
  case stmk_try:
    set_parent(statement->variant.try_supplement->try_block, statement);
    for (a_handler* h = statement->variant.try_supplement->handlers; h != nullptr; h = h->next)
      set_parent(h->body, statement);
    break;
  default:
    break;
  }
  set_parent(statement->pre_statement, statement);
}

void copy_statement(const a_statement* source, a_statement* target) {
  if (source == target)
    return;
  a_statement* next = target->next;
  const bool is_generated = target->is_generated;
  *target = *source;
  target->next = next;
  target->is_generated = is_generated;
  set_parent_of_substatements(target);
}

a_statement* alloc_expr_statement(an_expr_node* expr) {
  a_statement* statement = alloc_statement(stmk_expr);
  statement->expr = expr;
  statement->position = expr->range.start;
  statement->end_position = expr->range.end;
  set_expr_result_not_used(expr);
  return statement;
}

a_statement* make_assignment_statement(an_expr_node* left, an_expr_node* right) {
  return alloc_expr_statement(make_assignment_expr(left, eok_assign, right));
}

a_statement* make_array_assignment_statement(an_expr_node* left, an_expr_node* right) {
  return alloc_expr_statement(make_assignment_expr(left, eok_array_assign, right));
}

// What names a statement that moved names the place that it moved to.
static void redirect_references(a_statement* statement, const a_statement* old_place) {
  switch (statement->kind) {
  case stmk_label: {
    a_label* label = statement->variant.label.ptr;
    if (label != nullptr && label->def_statement == old_place)
      label->def_statement = statement;
    break;
  }
  case stmk_goto: {
    a_label* label = statement->variant.label.ptr;
    if (label != nullptr && label->first_goto == old_place)
      label->first_goto = statement;
    break;
  }
  case stmk_case:
    if (statement->variant.loop.extra.switch_case_entry != nullptr)
      statement->variant.loop.extra.switch_case_entry->statement = statement;
    break;
  case stmk_block: {
    a_scope* scope = statement->variant.block.block_supplement->scope;
    if (scope != nullptr && scope->assoc_statement == old_place)
      scope->assoc_statement = statement;
    break;
  }
  default:
    break;
  }
}

// What pragmas say of a loop goes on with it. They are listed with the function.
static void redirect_pragmas_of_loop(a_statement* to, a_statement* from) {
  if (!from->has_associated_pragma || !is_loop_statement(to))
    return;
  const a_statement* body = from;
  while (body->parent != nullptr)
    body = body->parent;
  if (body->kind != stmk_block || !body->variant.block.block_supplement->is_function_body)
    return;
  for (a_pragma* pragma = body->variant.block.block_supplement->scope->pragmas; pragma != nullptr;
       pragma = pragma->next)
    if (pragma->entity == from)
      pragma->entity = to;
  to->has_associated_pragma = true;
  from->has_associated_pragma = false;
}

a_statement* change_statement_into_block(a_statement* statement) {
  a_statement* inner = alloc_statement(stmk_null);
  copy_statement(statement, inner);
  redirect_pragmas_of_loop(inner, statement);
  inner->is_generated = statement->is_generated;
  inner->next = nullptr;
  inner->parent = statement;
  redirect_references(inner, statement);
  statement->expr = nullptr;
  statement->pre_statement = nullptr;
  statement->attributes = nullptr;
  set_statement_kind(statement, stmk_block);
  statement->variant.block.first_statement = inner;
  statement->variant.block.block_supplement->end_position = statement->end_position;
  statement->variant.block.block_supplement->holds_single_statement = true;
  return inner;
}

a_switch_case_entry* alloc_switch_case_entry() {
  return alloc_zeroed<a_switch_case_entry>();
}

a_switch_case_entry* copy_switch_case_entry(const a_switch_case_entry* entry) {
  a_switch_case_entry* copy = alloc_switch_case_entry();
  *copy = *entry;
  copy->next_in_source_order = nullptr;
  copy->next_sorted = nullptr;
  return copy;
}

a_handler* alloc_handler() {
  return alloc_zeroed<a_handler>();
}

void set_block_scope_handler(a_statement* block, a_scope* scope) {
  block->variant.block.block_supplement->scope = scope;
  scope->assoc_statement = block;
}

a_vla_dimension* alloc_vla_dimension(a_type* array_type) {
  a_vla_dimension* dimension = alloc_zeroed<a_vla_dimension>();
  dimension->array_type = array_type;
  return dimension;
}

a_vla_dimension* find_vla_dimension(a_vla_dimension* dimension) {
  while (dimension->canonical != nullptr)
    dimension = dimension->canonical;
  return dimension;
}

// ---- Dynamic initialisations ----

a_dynamic_init* alloc_dynamic_init(a_dynamic_init_kind kind) {
  a_dynamic_init* init = alloc_zeroed<a_dynamic_init>();
  set_dynamic_init_kind(init, kind);
  return init;
}

void set_dynamic_init_kind(a_dynamic_init* init, a_dynamic_init_kind kind) {
  init->kind = kind;
  memset(static_cast<void*>(&init->variant), 0, sizeof init->variant);
}

void set_dynamic_init_constant(a_dynamic_init* init, a_constant* constant) {
  const bool has_parts_to_run =
      constant->kind == con_aggregate && constant->value.aggregate.has_dynamic_init;
  set_dynamic_init_kind(init, has_parts_to_run ? dik_nonconstant_aggregate : dik_constant);
  init->variant.constant = constant;
  init->contains_nonconstant = constant->contains_nonconstant;
}

// The tail of the list, from the scope's entry on the stack when it is open.
static a_dynamic_init* last_dynamic_init(a_scope* scope, a_scope_pointers_block* block) {
  if (block != nullptr)
    return block->last_dynamic_init;
  a_dynamic_init* last = scope->dynamic_inits;
  while (last != nullptr && last->next != nullptr)
    last = last->next;
  return last;
}

void add_to_dynamic_inits_list(a_dynamic_init* init, int depth) {
  a_scope* scope = nullptr;
  if (depth >= 0)
    scope = ensure_il_scope_exists(&scope_stack[depth]);
  else if (init->variable != nullptr)
    scope = f_get_parent_scope_of(&init->variable->source_corresp, iek_variable);
  if (scope == nullptr)
    scope = il_header.primary_scope;
  a_scope_pointers_block* block = get_pointers_block_for_scope(scope);
  a_dynamic_init* last = last_dynamic_init(scope, block);
  (last != nullptr ? last->next : scope->dynamic_inits) = init;
  init->next = nullptr;
  if (block != nullptr)
    block->last_dynamic_init = init;
}

a_dynamic_init* copy_dynamic_init(const a_dynamic_init* init) {
  check_stack_limit();
  a_dynamic_init* copy = alloc_dynamic_init(dik_none);
  *copy = *init;
  copy->next = nullptr;
  copy->lifetime = nullptr;
  copy->next_destruction = nullptr;
  copy->following_lifetime = nullptr;
  copy->source_lifetime = nullptr;
  copy->next_aggregate_part = nullptr;
  copy->partial_cleanup_next = nullptr;
  switch (copy->kind) {
  case dik_none:
  case dik_zero:
    break;
  case dik_constant:
  case dik_nonconstant_aggregate: {
    a_constant* constant = alloc_constant(con_error);
    copy_constant_full(init->variant.constant, constant);
    copy->variant.constant = constant;
    break;
  }
  case dik_expr:
  case dik_class_expr:
  case dik_bitwise_copy:
    copy->variant.expr = copy_expr_tree(init->variant.expr, cef_copy_dynamic_inits);
    break;
  case dik_constructor:
    copy->variant.constructor.args =
        copy_list_of_expr_trees(init->variant.constructor.args, cef_copy_dynamic_inits);
    break;
  }
  return copy;
}

a_dynamic_init* make_error_constant_dynamic_init() {
  a_constant* constant = alloc_constant(con_error);
  set_error_constant(constant);
  a_dynamic_init* init = alloc_dynamic_init(dik_none);
  set_dynamic_init_constant(init, constant);
  return init;
}

const a_dynamic_init* skip_constexpr_ctor_eval(const a_dynamic_init* init) {
  // A constructor call that was evaluated is a temporary initialised in place.
  while (init->kind == dik_class_expr && init->variant.expr != nullptr &&
         init->variant.expr->kind == expr_temp_init &&
         init->variant.expr->variant.dynamic_init->kind == dik_constant)
    init = init->variant.expr->variant.dynamic_init;
  return init;
}

a_constant* constant_value_of_dynamic_init(const a_dynamic_init* init) {
  init = skip_constexpr_ctor_eval(init);
  if (init->kind == dik_constant)
    return init->variant.constant;
  if (init->kind == dik_expr && init->variant.expr != nullptr &&
      init->variant.expr->kind == expr_constant)
    return init->variant.expr->variant.constant.ptr;
  return nullptr;
}

bool is_generated_dynamic_init(const a_dynamic_init* init) {
  return init->is_generated;
}

bool is_error_dynamic_init(const a_dynamic_init* init) {
  return init->kind == dik_constant && is_error_constant(init->variant.constant);
}

// ---- Initialisers of variables ----

a_local_static_variable_init* alloc_local_static_variable_init() {
  return alloc_zeroed<a_local_static_variable_init>();
}

static void add_to_local_static_inits(a_local_static_variable_init* init, a_scope* scope) {
  a_scope_pointers_block* block = get_pointers_block_for_scope(scope);
  a_local_static_variable_init** link = &scope->local_static_inits;
  if (block != nullptr && block->last_local_static_init != nullptr)
    link = &block->last_local_static_init->next;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = init;
  if (block != nullptr)
    block->last_local_static_init = init;
}

a_local_static_variable_init* make_local_static_variable_init(a_variable* variable,
                                                              const a_routine* routine,
                                                              an_init_kind init_kind,
                                                              a_constant* constant,
                                                              a_dynamic_init* dynamic_init) {
  a_local_static_variable_init* init = alloc_local_static_variable_init();
  init->variable = variable;
  init->init_kind = init_kind;
  if (init_kind == initk_constant)
    init->initializer.constant = constant;
  else
    init->initializer.dynamic = dynamic_init;
  variable->init_kind = initk_local_static;
  variable->initializer.generic = nullptr;
  a_scope* scope = routine == nullptr ? innermost_function_scope : scope_for_routine(routine);
  add_to_local_static_inits(init, scope == nullptr ? il_header.primary_scope : scope);
  return init;
}

a_local_static_variable_init* find_local_static_variable_init(a_variable* variable,
                                                              a_scope* scope) {
  if (scope == nullptr)
    scope = f_get_parent_scope_of(&variable->source_corresp, iek_variable);
  for (; scope != nullptr; scope = scope->parent) {
    for (a_local_static_variable_init* init = scope->local_static_inits; init != nullptr;
         init = init->next) {
      if (init->variable == variable)
        return init;
    }
  }
  return nullptr;
}

void get_variable_initializer(a_variable* variable, a_scope* scope, an_init_kind* init_kind,
                              void** initializer) {
  *init_kind = variable->init_kind;
  *initializer = variable->initializer.generic;
  if (variable->init_kind != initk_local_static)
    return;
  const a_local_static_variable_init* init = find_local_static_variable_init(variable, scope);
  *init_kind = init == nullptr ? initk_none : init->init_kind;
  *initializer = init == nullptr ? nullptr : init->initializer.generic;
}

a_constant* initializer_constant(a_variable* variable, a_scope* scope) {
  an_init_kind init_kind;
  void* initializer;
  get_variable_initializer(variable, scope, &init_kind, &initializer);
  if (init_kind == initk_constant)
    return static_cast<a_constant*>(initializer);
  if (init_kind == initk_dynamic && initializer != nullptr)
    return constant_value_of_dynamic_init(static_cast<a_dynamic_init*>(initializer));
  return nullptr;
}
