#include "lower_c99.h"

#include "decl_spec.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lower_c99_int.h"
#include "lower_complex.h"
#include "lower_il.h"
#include "lower_init.h"
#include "lower_insert.h"
#include "lower_name.h"
#include "lower_stmt_expr.h"
#include "lower_vla.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

bool c99_il_lowering_needed() {
  if (suppress_il_lowering || total_errors != 0 || !in_C_mode())
    return false;
  return designators_allowed || compound_literals_allowed || gnu_mode || c99_bool_is_keyword ||
         c99_complex_enabled || allow_nonconstant_auto_aggr_init_in_c_mode;
}

// ---- Statements ----

static void lower_init_statement(a_statement* statement) {
  a_dynamic_init* init = statement->variant.dynamic_init;
  switch (init->kind) {
  case dik_constant:
    lower_c99_constant(init->variant.constant, init);
    break;
  case dik_expr:
    lower_c99_full_expr(init->variant.expr);
    break;
  case dik_nonconstant_aggregate:
    lower_c99_constant(init->variant.constant, init);
    lower_nonconstant_aggregate(statement);
    break;
  default:
    break;
  }
}

// With what must run before each test.
static void lower_loop_condition(a_statement* loop) {
  if (any_statement_expressions) {
    loop_serialization_init(loop, true);
    lower_c99_statement(loop->kind == stmk_for
                            ? loop->variant.loop.extra.for_supplement->pre_condition_statement
                            : loop->pre_statement);
  }
  loop_repeats_expr = true;
  lower_c99_boolean_controlling_expr(&loop->expr);
  loop_repeats_expr = false;
}

// An initialisation that became several statements stands before the loop, in a
// block around both. The loop's new place is returned.
static a_statement* reinsert_for_loop_initialization(a_statement* loop) {
  a_for_loop_supplement* supplement = loop->variant.loop.extra.for_supplement;
  a_statement* init = supplement->init_statement;
  supplement->init_statement = nullptr;
  return insert_statements_before(loop, init);
}

static a_statement* lower_for_init(a_statement* loop) {
  a_statement* init = loop->variant.loop.extra.for_supplement->init_statement;
  if (init == nullptr)
    return loop;
  bool was_block = init->kind == stmk_block;
  lower_c99_statement(init);
  return init->kind == stmk_block && !was_block ? reinsert_for_loop_initialization(loop) : loop;
}

static void lower_for(a_statement* statement) {
  statement = lower_for_init(statement);
  a_for_loop_supplement* supplement = statement->variant.loop.extra.for_supplement;
  lower_loop_condition(statement);
  if (any_statement_expressions) {
    loop_serialization_init(statement, false);
    lower_c99_statement(supplement->pre_increment_statement);
  }
  loop_repeats_expr = true;
  lower_c99_full_expr(supplement->increment_expr);
  loop_repeats_expr = false;
  lower_c99_statement(statement->variant.loop.body);
}

static void lower_block(a_statement* block) {
  a_scope* scope = block->variant.block.block_supplement->scope;
  a_context context;
  const size_t live_vlas = num_live_vlas();
  if (scope != nullptr)
    push_context(&context, scope, nullptr);
  for (a_statement* item = block->variant.block.first_statement; item != nullptr;) {
    a_statement* next = item->next; // lowering may put a block round the item
    lower_c99_statement(item);
    item = next;
  }
  if (scope != nullptr) {
    pop_context();
    end_block_of_vlas(live_vlas);
  }
}

static void lower_asm_statement(const an_asm_entry* entry) {
  for (const an_asm_operand* operand = entry->operands; operand != nullptr; operand = operand->next)
    lower_c99_expr(operand->expr);
  end_of_full_expr_processing();
}

static void lower_statement_by_kind(a_statement* statement) {
  switch (statement->kind) {
  case stmk_expr:
  case stmk_return:
  case stmk_assigned_goto:
    lower_c99_full_expr(statement->expr);
    break;
  case stmk_if:
    lower_c99_boolean_controlling_expr(&statement->expr);
    lower_c99_statement(statement->variant.if_stmt.then_statement);
    lower_c99_statement(statement->variant.if_stmt.else_statement);
    break;
  case stmk_while:
  case stmk_do:
    lower_loop_condition(statement);
    lower_c99_statement(statement->variant.loop.body);
    break;
  case stmk_for:
    lower_for(statement);
    break;
  case stmk_case:
    lower_c99_statement(statement->variant.loop.body);
    break;
  case stmk_switch:
    lower_c99_full_expr(statement->expr);
    lower_c99_statement(statement->variant.loop.body);
    break;
  case stmk_block:
    lower_block(statement);
    break;
  case stmk_asm:
    lower_asm_statement(statement->variant.asm_entry);
    break;
  case stmk_set_vla_size:
    lower_set_vla_size(statement);
    break;
  case stmk_vla_decl:
    lower_vla_decl(statement);
    break;
  case stmk_goto:
    if (function_has_vlas)
      lower_vla_goto(statement);
    break;
  case stmk_label:
    if (function_has_vlas)
      lower_vla_label(statement);
    break;
  case stmk_init:
    lower_init_statement(statement);
    break;
  default:
    break;
  }
}

// The statements that stood in its expressions run before the statement.
static bool lower_statement_expressions(a_statement* statement) {
  a_statement* before = take_statement_expressions_out(statement);
  if (before == nullptr)
    return false;
  insert_statements_before(statement, before);
  lower_c99_statement(statement);
  return true;
}

void lower_c99_statement(a_statement* statement) {
  check_stack_limit();
  if (statement == nullptr)
    return;
  code_pos_for_lowering = statement->position;
  if (any_statement_expressions && lower_statement_expressions(statement))
    return;
  a_statement* saved_pending = pending_stmk_init_statements;
  pending_stmk_init_statements = nullptr;
  lower_statement_by_kind(statement);
  insert_pending_stmk_init_statements(statement);
  pending_stmk_init_statements = saved_pending;
}

// ---- Scopes ----

static void lower_variable(a_variable* variable) {
  error_position = variable->source_corresp.position;
  rewrite_ucns_in_name(&variable->source_corresp);
  if (variable->init_kind == initk_constant)
    lower_c99_constant(variable->initializer.constant, nullptr);
  if (force_variable_definition_via_zeroing && variable->storage_kind == sc_none &&
      variable->init_kind == initk_none && !variable->is_tentative)
    variable->init_kind = initk_zero;
}

static void lower_variables(a_variable* list) {
  for (a_variable* variable = list; variable != nullptr; variable = variable->next)
    lower_variable(variable);
}

template <class T> static void rewrite_ucns_in_names(T* list) {
  for (T* entry = list; entry != nullptr; entry = entry->next)
    rewrite_ucns_in_name(&entry->source_corresp);
}

// The names of types, with their fields and enumerators, routines and labels.
static void rewrite_ucns_in_scope(const a_scope* scope) {
  if (!il_header.has_ucn_names)
    return;
  rewrite_ucns_in_names(scope->types);
  for (const a_type* type = scope->types; type != nullptr; type = type->next)
    if (is_class_struct_union_kind(type->kind))
      rewrite_ucns_in_names(type->variant.class_struct_union.fields);
    else if (is_enum_type(type) && type->kind == tk_integer)
      rewrite_ucns_in_names(type->variant.integer.enum_data.first_enumerator);
  rewrite_ucns_in_names(scope->routines);
  rewrite_ucns_in_names(scope->labels);
}

// The next pass may put the body of an inline function in the place of a call.
// It can't take over a frame that is special, or arguments that aren't named.
static void check_routine_for_inlining(a_routine* routine) {
  routine->inline_candidate = !routine->no_inline && !routine->is_naked &&
                              (routine->decl_modifiers & dm_interrupt) == 0 &&
                              !routine_type_has_ellipsis(f_skip_typerefs(routine->type));
}

static void lower_c99_scope(a_scope* scope);

static void lower_parts_of_scope(a_scope* scope) {
  lower_variables(scope->parameters);
  lower_variables(scope->local_variables);
  lower_variables(scope->variables);
  rewrite_ucns_in_scope(scope);
  for (a_scope* nested = scope->first_nested; nested != nullptr; nested = nested->next)
    if (!nested->is_lowered)
      lower_c99_scope(nested);
  for (a_local_static_variable_init* init = scope->local_static_inits; init != nullptr;
       init = init->next)
    if (init->init_kind == initk_constant)
      lower_c99_constant(init->initializer.constant, nullptr);
}

static void lower_c99_scope(a_scope* scope) {
  check_stack_limit();
  a_context context;
  a_scope* saved_function_scope = innermost_function_scope;
  push_context(&context, scope, nullptr);
  scope->is_lowered = true;
  if (scope->kind == sk_function)
    innermost_function_scope = scope;
  lower_parts_of_scope(scope);
  if (scope->kind == sk_function) {
    begin_lowering_of_vlas(scope->assoc.routine);
    lower_c99_statement(scope->assoc_statement);
    end_lowering_of_vlas();
    if (scope->assoc.routine->is_inline)
      check_routine_for_inlining(scope->assoc.routine);
  }
  innermost_function_scope = saved_function_scope;
  pop_context();
}

void lower_c99_il_memory_region(int32_t region) {
  a_lowering_pass pass;
  begin_lowering_pass(&pass, region, il_header.primary_scope);
  nonreal_types_used = any_complex_or_imaginary_types_used_in_primary_IL();
  begin_complex_lowering_of_region();
  for (a_scope* scope = il_header.region_scope_table[region]; scope != nullptr; scope = scope->next)
    if (!scope->is_lowered)
      lower_c99_scope(scope);
  if (region == file_scope_region_number && nonreal_types_used) {
    define_c99_complex_routines();
    lower_c99_nonreal_float_types();
  }
  end_lowering_pass(&pass);
}

void lower_c99_one_time_init() {
  lower_complex_one_time_init();
}

void lower_c99_init() {
  // Nothing of this module lives on from an earlier run.
}

void lower_c99_trans_unit_init() {
  lower_complex_trans_unit_init();
}
