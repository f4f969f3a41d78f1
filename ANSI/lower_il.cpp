#include "lower_il.h"

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_statements.h"
#include "lower_c99.h"
#include "lower_context.h"
#include "lower_stmt_expr.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "type_pkg.h"

a_boolean il_lowering_underway;
a_source_position code_pos_for_lowering;

bool il_lowering_needed() {
  return in_cplusplus_mode() && !suppress_il_lowering && total_errors == 0;
}

bool cpp_il_lowering_occured() {
  return il_header.file_scope_is_lowered && in_cplusplus_mode();
}

// ---- Passes ----

void begin_lowering_pass(a_lowering_pass* pass, int32_t region, a_scope* scope) {
  pass->error_position = error_position;
  pass->function_scope = innermost_function_scope;
  pass->was_underway = il_lowering_underway;
  pass->flag = initial_value_for_il_lowering_flag;
  il_lowering_underway = 1;
  innermost_function_scope = nullptr;
  save_and_push_context(&pass->saved, &pass->context, region, scope);
  initial_value_for_il_lowering_flag = 1;
}

void end_lowering_pass(const a_lowering_pass* pass) {
  restore_saved_context(&pass->saved);
  initial_value_for_il_lowering_flag = pass->flag;
  innermost_function_scope = pass->function_scope;
  il_lowering_underway = pass->was_underway;
  error_position = pass->error_position;
}

// ---- The lowering of C++ ----

static void lower_scope(a_scope* scope);

static void lower_nested_scopes(const a_scope* scope) {
  for (a_scope* nested = scope->first_nested; nested != nullptr; nested = nested->next)
    if (!nested->is_lowered)
      lower_scope(nested);
  for (a_namespace* entry = scope->namespaces; entry != nullptr; entry = entry->next)
    if (!entry->is_alias && entry->variant.scope != nullptr && !entry->variant.scope->is_lowered)
      lower_scope(entry->variant.scope);
}

static void lower_scope(a_scope* scope) {
  check_stack_limit();
  scope->is_lowered = true;
  a_scope* saved_function_scope = innermost_function_scope;
  if (scope->kind == sk_function)
    innermost_function_scope = scope;
  a_context context;
  push_context(&context, scope, scope->object_lifetime);
  lower_nested_scopes(scope);
  pop_context();
  innermost_function_scope = saved_function_scope;
}

// Takes each entry off a list, and gives it to the file scope.
template <class T> static void move_to_file_scope(T*& list, void (*add)(T*, int)) {
  while (T* entry = list) {
    list = entry->next;
    entry->next = nullptr;
    add(entry, 0);
  }
}

// The output stage knows no namespaces.
static void flatten_namespaces(const a_scope* scope) {
  check_stack_limit();
  for (a_namespace* entry = scope->namespaces; entry != nullptr; entry = entry->next) {
    a_scope* inner = entry->is_alias ? nullptr : entry->variant.scope;
    if (inner == nullptr)
      continue;
    flatten_namespaces(inner);
    move_to_file_scope(inner->types, add_to_types_list);
    move_to_file_scope(inner->constants, add_to_constants_list);
    move_to_file_scope(inner->variables, add_to_variables_list);
    move_to_file_scope(inner->routines, add_to_routines_list);
    move_to_file_scope(inner->asm_entries, add_to_asm_entries_list);
    move_to_file_scope(inner->dynamic_inits, add_to_dynamic_inits_list);
  }
}

static void lower_scope_and_region(a_scope* scope, int32_t region) {
  bool is_file_scope = region == file_scope_region_number;
  a_lowering_pass pass;
  begin_lowering_pass(&pass, region, scope);
  curr_object_lifetime = il_header.primary_scope->object_lifetime;
  if (!scope->is_lowered)
    lower_scope(scope);
  if (is_file_scope) {
    flatten_namespaces(scope);
    il_header.file_scope_is_lowered = true;
  }
  end_lowering_pass(&pass);
}

// ---- The driver ----

// The back end sees nothing of a unit with errors, so nothing of it is lowered.
static void lower_region(a_scope* scope, int32_t region) {
  if (il_lowering_needed())
    lower_scope_and_region(scope, region);
  else if (c99_il_lowering_needed())
    lower_c99_il_memory_region(region);
}

void lower_function_scope(a_routine* routine, a_scope* scope) {
  routine->body_lowering_waits = false;
  routine->is_lowered = true;
  lower_region(scope, routine->region_number);
}

void lower_file_scope() {
  lower_region(il_header.primary_scope, file_scope_region_number);
}

static void lower_waiting_function(int function_number) {
  a_scope* scope = il_header.function_def_table[function_number].scope;
  if (scope == nullptr)
    return;
  a_routine* routine = scope->assoc.routine;
  if (routine->body_lowering_waits && !routine->is_prototype_instantiation)
    lower_function_scope(routine, scope);
}

void lower_functions_waiting_for_module_id() {
  for (int number = 1; number <= highest_used_function_def_number; number++)
    lower_waiting_function(number);
}

void finish_function_processing_for_function_def(int function_number, bool first_pass) {
  if (!first_pass)
    lower_waiting_function(function_number);
}

void clear_parent_information() {
  // Entities of C have no parent.
}

// ---- Life of the module ----

void il_lower_one_time_init() {
  // No variable of this module is kept for each unit.
}

void il_lower_init() {
  il_lowering_underway = 0;
  curr_context = nullptr;
}

void il_lower_trans_unit_init() {
  code_pos_for_lowering = null_source_position;
  any_statement_expressions = false;
  if (type_pkg == nullptr)
    init_tp();
}
