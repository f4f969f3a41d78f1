// Popping scopes: what is due at the end of each kind of scope.

#include "cfe.h"
#include "class_decl.h"
#include "error.h"
#include "expr.h"
#include "host_envir.h"
#include "il.h"
#include "il_statements.h"
#include "lookup.h"
#include "lower_c99.h"
#include "lower_il.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk_int.h"
#include "source_file.h"
#include "statements.h"
#include "symbol_tbl.h"
#include "sys_predef.h"
#include "types.h"

#include <cstring>

a_boolean function_body_processing_delayed_on_some_func_in_primary_il;

namespace {

// A use that is a fault if its routine ends up as an inline definition with
// external linkage.
struct a_c99_inline_use {
  a_c99_inline_use* next;
  a_routine* routine;
  a_source_position position;
  bool defines_static;
};

struct a_saved_name_linkage {
  a_saved_name_linkage* next;
  uint8_t linkage;
};

a_c99_inline_use* first_c99_inline_use;
a_c99_inline_use* last_c99_inline_use;
a_hidden_name* avail_hidden_names;
a_saved_name_linkage* name_linkage_stack;
a_saved_name_linkage* avail_name_linkages;
an_unexpanded_pack* avail_unexpanded_packs;

bool is_file_or_namespace(a_scope_kind kind) {
  return kind == sk_file || (kind >= sk_namespace && kind <= sk_namespace_reactivation);
}

// Scopes whose symbols can be wanted again after the pop.
bool can_be_reopened(a_scope_kind kind) {
  return is_file_or_namespace(kind) || kind == sk_class || kind == sk_class_reactivation;
}

} // namespace

// ---- Unused and undefined entities ----

static bool is_from_system_header(const a_symbol* symbol) {
  return symbol->position.seq != 0 && seq_is_in_system_header(symbol->position.seq);
}

// Says it once, however often the scope is wrapped up.
static void report_once(a_symbol* symbol, an_error_severity severity, an_error_code code) {
  if (symbol->unused_reported)
    return;
  symbol->unused_reported = true;
  pos_sy_diagnostic(severity, code, &symbol->position, symbol);
}

static void check_label(a_symbol* symbol) {
  const a_label* label = symbol->variant.label;
  if (label == nullptr)
    return;
  const bool is_wanted = label->first_goto != nullptr || label->address_taken || label->is_used;
  if (label->def_statement == nullptr) {
    if (is_wanted || symbol->referenced)
      report_once(symbol, es_error, ec_never_defined);
  } else if (!is_wanted && !symbol->referenced && !label->is_unused_attr) {
    report_once(symbol, es_warning, ec_declared_but_not_referenced);
  }
}

static void check_parameter(a_symbol* symbol, const a_variable* variable) {
  if (!symbol->referenced && !variable->source_corresp.referenced && !variable->is_used)
    report_once(symbol, es_remark, ec_unreferenced_function_param);
}

static void check_local_variable(a_symbol* symbol) {
  const a_variable* variable = symbol->variant.variable;
  if (variable == nullptr || variable->is_this_parameter || variable->is_compiler_generated ||
      variable->storage_kind == sc_extern)
    return;
  if (variable->is_parameter) {
    check_parameter(symbol, variable);
    return;
  }
  if (variable->is_handler_parameter || variable->is_used || variable->needs_destruction)
    return;
  if (!symbol->referenced && !variable->source_corresp.referenced)
    report_once(symbol, es_warning, ec_declared_but_not_referenced);
  else if (symbol->value_set && !symbol->value_used && !variable->address_taken)
    report_once(symbol, es_warning, ec_set_but_not_used);
}

// A tentative definition ends as a definition, for which the type must be
// known by now; an array of unknown bound has one element (C99 6.9.2 p2, p5).
static void finish_tentative_definition(a_symbol* symbol) {
  a_variable* variable = symbol->variant.variable;
  if (variable == nullptr || !variable->is_tentative)
    return;
  a_type* type = variable->type;
  if (is_incomplete_array_type(type))
    variable->type =
        type_plus_qualifiers_from_second_type(make_array_type(array_element_type(type), 1), type);
  else if (is_incomplete_type(type) && !is_error_type(type))
    report_once(symbol, es_error, ec_var_retained_incomp_type);
}

// Whether it is used, only this unit can tell of a variable with internal
// linkage.
static void check_static_variable(a_symbol* symbol) {
  const a_variable* variable = symbol->variant.variable;
  if (variable == nullptr || variable->source_corresp.linkage != idl_internal ||
      variable->is_used || variable->is_compiler_generated || variable->needs_destruction)
    return;
  if (!symbol->referenced && !variable->source_corresp.referenced)
    report_once(symbol, es_warning, ec_declared_but_not_referenced);
}

// A static function that is called must be defined in the unit (C99 6.9 p3).
static void check_undefined_static_routine(a_symbol* symbol, a_routine* routine,
                                           bool is_referenced) {
  if (!is_referenced)
    return;
  if (!gnu_mode) {
    report_once(symbol, es_error, ec_never_defined);
    return;
  }
  report_once(symbol, es_warning, ec_undefined_static_function_treated_as_extern);
  routine->storage_kind = sc_extern;
  routine->source_corresp.linkage = idl_external;
}

static void check_routine(a_symbol* symbol) {
  a_routine* routine = symbol->variant.routine;
  if (routine == nullptr || routine->is_compiler_generated || routine->is_used ||
      routine->special_kind != rsk_ordinary || is_gnu_builtin_function(routine))
    return;
  const bool is_referenced = symbol->referenced || routine->source_corresp.referenced;
  if (routine->source_corresp.linkage == idl_internal) {
    if (!routine->defined)
      check_undefined_static_routine(symbol, routine, is_referenced);
    else if (!is_referenced && !routine->is_inline)
      report_once(symbol, es_warning, ec_declared_but_not_referenced);
  } else if (routine->is_inline && !routine->defined && is_referenced) {
    report_once(symbol, es_warning, ec_inline_never_defined);
  }
}

static void check_symbol_at_end_of_scope(a_symbol* symbol, a_scope_kind kind) {
  if (symbol->not_in_lookup || symbol->is_error || is_from_system_header(symbol))
    return;
  const bool is_local = kind == sk_function || kind == sk_block || kind == sk_condition;
  switch (symbol->kind) {
  case symk_label:
    check_label(symbol);
    break;
  case symk_variable:
    if (is_local)
      check_local_variable(symbol);
    else if (is_file_or_namespace(kind))
      check_static_variable(symbol);
    break;
  case symk_routine:
    if (is_file_or_namespace(kind))
      check_routine(symbol);
    break;
  case symk_overloaded_function:
    for (a_symbol* s = symbol->variant.overload_list; s != nullptr; s = s->next_homonym)
      check_symbol_at_end_of_scope(s, kind);
    break;
  default:
    break;
  }
}

static bool kind_has_checks(a_scope_kind kind) {
  switch (kind) {
  case sk_file:
  case sk_block:
  case sk_condition:
  case sk_function:
    return true;
  default:
    return false;
  }
}

// A namespace may be opened again up to the end of the file.
static void check_namespaces_at_end_of_file(const a_scope* scope) {
  for (const a_namespace* n = scope->namespaces; n != nullptr; n = n->next) {
    if (n->is_alias || n->pointers_block == nullptr)
      continue;
    for (a_symbol* s = n->pointers_block->first_symbol; s != nullptr; s = s->next_in_scope)
      check_symbol_at_end_of_scope(s, sk_namespace);
    check_namespaces_at_end_of_file(n->variant.scope);
  }
}

void wrapup_scope(a_scope* scope, a_scope_kind kind, a_scope_pointers_block* block, int depth) {
  const bool wants_checks =
      kind_has_checks(kind) && (depth < 0 || !scope_stack[depth].unwanted_diagnostics);
  for (a_symbol* symbol = block->first_symbol; symbol != nullptr; symbol = symbol->next_in_scope) {
    if (kind == sk_file && symbol->kind == symk_variable && in_C_mode())
      finish_tentative_definition(symbol);
    if (wants_checks)
      check_symbol_at_end_of_scope(symbol, kind);
    unlink_symbol_from_symbol_table(symbol);
    if (can_be_reopened(kind) && !symbol->hidden_from_ordinary_entry)
      add_symbol_to_inactive_list(symbol);
  }
  if (kind == sk_file && wants_checks && scope != nullptr)
    check_namespaces_at_end_of_file(scope);
}

// ---- Inline definitions of C99 ----

void check_c99_inline_definition(a_routine* routine, const a_source_position* position,
                                 bool defines_static) {
  a_c99_inline_use* use = alloc_front_end_record<a_c99_inline_use>();
  use->routine = routine;
  use->position = *position;
  use->defines_static = defines_static;
  if (last_c99_inline_use != nullptr)
    last_c99_inline_use->next = use;
  else
    first_c99_inline_use = use;
  last_c99_inline_use = use;
}

// Whether the definition is an inline one of a function with external linkage:
// another unit has the external definition (C99 6.7.4 p6).
static bool is_inline_definition(const a_routine* routine) {
  return routine->is_inline && routine->source_corresp.linkage == idl_external &&
         !routine->has_external_declaration;
}

void clear_c99_inline_uses() {
  first_c99_inline_use = nullptr;
  last_c99_inline_use = nullptr;
}

void judge_c99_inline_definitions() {
  const an_error_severity severity =
      strict_ansi_mode ? strict_ansi_discretionary_severity : es_discretionary_error;
  for (const a_c99_inline_use* use = first_c99_inline_use; use != nullptr; use = use->next) {
    if (is_inline_definition(use->routine))
      pos_diagnostic(severity,
                     use->defines_static ? ec_static_variable_in_inline_function
                                         : ec_bad_linkage_of_ref_within_inline_function,
                     &use->position);
  }
  clear_c99_inline_uses();
}

// ---- Names of a for-loop's initialisation ----

void clear_hidden_names() {
  avail_hidden_names = nullptr;
}

static a_hidden_name* alloc_hidden_name() {
  a_hidden_name* record = avail_hidden_names;
  if (record == nullptr)
    return alloc_front_end_record<a_hidden_name>();
  avail_hidden_names = record->next;
  return record;
}

static void free_hidden_names(a_hidden_name** list) {
  while (*list != nullptr) {
    a_hidden_name* record = *list;
    *list = record->next;
    record->next = avail_hidden_names;
    avail_hidden_names = record;
  }
}

void record_for_init_names(const a_scope_pointers_block* block) {
  if (depth_scope_stack < 0)
    return;
  for (a_symbol* symbol = block->first_symbol; symbol != nullptr; symbol = symbol->next_in_scope) {
    a_symbol_locator locator;
    clear_locator(&locator, &symbol->position);
    locator.header = symbol->header;
    a_symbol* outer = normal_id_lookup(&locator, ilo_none);
    if (outer == nullptr)
      continue;
    a_hidden_name* record = alloc_hidden_name();
    record->symbol = symbol;
    record->outer_symbol = outer;
    a_scope_stack_entry* top = &scope_stack[depth_scope_stack];
    record->next = top->for_scope_names;
    top->for_scope_names = record;
  }
}

void report_for_init_difference(a_symbol* symbol, const a_source_position* position) {
  if (!for_init_diff_warning)
    return;
  for (int depth = depth_scope_stack; depth >= 0; --depth) {
    for (a_hidden_name* record = scope_stack[depth].for_scope_names; record != nullptr;
         record = record->next) {
      if (record->outer_symbol != symbol)
        continue;
      pos_sy2_warning(ec_hidden_by_old_for_init, position, symbol, record->symbol);
      return;
    }
  }
}

// ---- Language linkage ----

void push_name_linkage(a_name_linkage_kind kind) {
  a_saved_name_linkage* saved = avail_name_linkages;
  if (saved != nullptr)
    avail_name_linkages = saved->next;
  else
    saved = alloc_front_end_record<a_saved_name_linkage>();
  saved->linkage = default_routine_name_linkage;
  saved->next = name_linkage_stack;
  name_linkage_stack = saved;
  default_routine_name_linkage = kind;
}

void pop_name_linkage() {
  a_saved_name_linkage* saved = name_linkage_stack;
  default_routine_name_linkage = saved->linkage;
  name_linkage_stack = saved->next;
  saved->next = avail_name_linkages;
  avail_name_linkages = saved;
}

void clear_name_linkages() {
  name_linkage_stack = nullptr;
  avail_name_linkages = nullptr;
}

// ---- The end of a function ----

bool should_delay_lowering_on_function(const a_routine* routine, bool) {
  if (in_C_mode())
    return false;
  return routine->is_prototype_instantiation || get_module_id() == nullptr;
}

bool should_delay_finishing_of_function_body(const a_routine* routine) {
  return should_delay_lowering_on_function(routine, false);
}

void routine_defined(a_routine* routine, a_scope* function_scope) {
  if (il_lowering_needed() || c99_il_lowering_needed()) {
    if (should_delay_lowering_on_function(routine, true)) {
      function_body_processing_delayed_on_some_func_in_primary_il = true;
      routine->body_lowering_waits = true;
    } else {
      lower_function_scope(routine, function_scope);
    }
  }
  set_routine_defined(routine);
}

// ---- Unexpanded packs ----

void clear_unexpanded_packs() {
  avail_unexpanded_packs = nullptr;
}

void record_unexpanded_pack(const a_symbol* symbol, const a_source_position* position) {
  an_unexpanded_pack* pack = avail_unexpanded_packs;
  if (pack != nullptr)
    avail_unexpanded_packs = pack->next;
  else
    pack = alloc_front_end_record<an_unexpanded_pack>();
  *pack = {nullptr, symbol, *position};
  an_unexpanded_pack** link = &scope_stack[depth_scope_stack].unexpanded_packs;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = pack;
}

static void free_unexpanded_packs(an_unexpanded_pack** list) {
  while (*list != nullptr) {
    an_unexpanded_pack* pack = *list;
    *list = pack->next;
    pack->next = avail_unexpanded_packs;
    avail_unexpanded_packs = pack;
  }
}

void forget_unexpanded_packs() {
  free_unexpanded_packs(&scope_stack[depth_scope_stack].unexpanded_packs);
}

static void report_unexpanded_packs(a_scope_stack_entry* entry) {
  for (const an_unexpanded_pack* pack = entry->unexpanded_packs; pack != nullptr; pack = pack->next)
    pos_st_error(ec_pack_not_expanded, &pack->position, pack->symbol->header->identifier);
  free_unexpanded_packs(&entry->unexpanded_packs);
}

// ---- The steps of a pop ----

static void run_pending_pragmas(a_scope_stack_entry* entry) {
  a_pending_pragma* pragmas = entry->pending_pragmas;
  entry->pending_pragmas = nullptr;
  for (a_pending_pragma* pragma = pragmas; pragma != nullptr; pragma = pragma->next) {
    if (pragma->description->binding == pragma_runs_at_end_of_scope)
      process_c_pragma(pragma);
    else
      fputs("INTERNAL ERROR!  Cannot process pragma!\n", f_error);
  }
  free_pending_pragma_list(pragmas);
}

static void end_constructs_of_scope(a_scope_stack_entry* entry) {
  a_pending_pragma* pragmas = entry->construct_pragmas;
  entry->construct_pragmas = nullptr;
  const bool is_body = entry->kind == sk_function || entry->kind == sk_block;
  if (in_cplusplus_mode() && is_body) {
    generate_required_virtual_destructor_bodies(entry->il_scope);
    end_of_scope_pragma_processing(pragmas);
  } else {
    free_pending_pragma_list(pragmas);
  }
}

// The symbols without a scope go when the file scope goes.
static void retire_symbols_with_no_scope() {
  for (a_symbol* symbol = symbols_with_no_scope; symbol != nullptr;
       symbol = symbol->next_in_scope) {
    unlink_symbol_from_symbol_table(symbol);
    add_symbol_to_inactive_list(symbol);
  }
  file_scope_symbols_are_on_inactive_list = true;
}

static void restore_lifetime(a_scope_stack_entry* entry) {
  if (!in_cplusplus_mode())
    return;
  switch (entry->kind) {
  case sk_block:
  case sk_condition:
  case sk_function:
    if (entry->owns_lifetime) {
      // Lifetimes of expressions cut short by an error may still be open.
      while (curr_object_lifetime != entry->object_lifetime)
        curr_object_lifetime = curr_object_lifetime->parent;
      pop_object_lifetime();
    }
    if (entry->kind == sk_function)
      curr_object_lifetime = entry->saved_curr_object_lifetime;
    break;
  default:
    curr_object_lifetime = entry->saved_curr_object_lifetime;
    break;
  }
}

static void restore_pragma_states(const a_scope_stack_entry* entry) {
  if (entry->kind == sk_file)
    return;
  curr_fp_contract_state = entry->fp_contract_state;
  curr_fenv_access_state = entry->fenv_access_state;
  curr_cx_limited_range_state = entry->cx_limited_range_state;
}

static bool region_is_in_use_below(int32_t region, int depth) {
  if (region == file_scope_region_number)
    return true;
  for (int d = depth - 1; d >= 0; --d) {
    if (scope_stack[d].region_number == region)
      return true;
  }
  return false;
}

static void finish_function(a_scope_stack_entry* entry, int depth) {
  a_scope* scope = entry->il_scope;
  const int32_t region = entry->region_number;
  if (!entry->routine->is_prototype_instantiation)
    routine_defined(entry->routine, scope);
  scope->scope_stack_depth = -1;
  if (!region_is_in_use_below(region, depth))
    check_for_done_with_memory_region(region);
}

// What lies under the entry is the context again.
static void restore_context(const a_scope_stack_entry* entry) {
  depth_of_initial_lookup_scope = entry->saved_depth_of_initial_lookup_scope;
  decl_scope_level = entry->saved_decl_scope_level;
  depth_template_declaration_scope = entry->saved_depth_template_declaration_scope;
  depth_innermost_instantiation_scope = entry->saved_depth_innermost_instantiation_scope;
  depth_innermost_function_scope = entry->saved_depth_innermost_function_scope;
  depth_innermost_namespace_scope = entry->saved_depth_innermost_namespace_scope;
  depth_of_innermost_scope_that_affects_access_control =
      entry->saved_depth_affecting_access_control;
  curr_deferred_access_scope = entry->saved_curr_deferred_access_scope;
  expr_stack = entry->saved_expr_stack;
  if (entry->kind == sk_template_declaration || entry->kind == sk_template_instantiation)
    pack_expansion_stack = entry->saved_curr_pack_expansion_stack;
  if (entry->kind == sk_class || entry->kind == sk_class_reactivation)
    --num_classes_on_scope_stack;
  innermost_function_scope = depth_innermost_function_scope < 0
                                 ? nullptr
                                 : scope_stack[depth_innermost_function_scope].il_scope;
  inside_local_class = depth_scope_stack >= 0 && scope_stack[depth_scope_stack].is_local_class;
  if (curr_il_region_number != entry->region_at_push)
    switch_il_region(entry->region_at_push);
}

// A scope that was opened again may still be open further down.
static void reset_depth_of_il_scope(const a_scope_stack_entry* entry, int depth) {
  a_scope* scope = entry->il_scope;
  if (scope == nullptr || scope->scope_stack_depth != depth)
    return;
  scope->scope_stack_depth = -1;
  if (!can_be_reopened(entry->kind))
    return;
  while (--depth >= 0 && scope_stack[depth].il_scope != scope)
    continue;
  scope->scope_stack_depth = depth;
}

// The symbols go, and what the scope's end makes due is done.
static void close_names(a_scope_stack_entry* entry, int depth) {
  run_pending_pragmas(entry);
  if (entry->kind == sk_file)
    retire_symbols_with_no_scope();
  wrapup_scope(entry->il_scope, entry->kind, pointers_block_of_entry(entry), depth);
  if (entry->kind == sk_file)
    judge_c99_inline_definitions();
  end_constructs_of_scope(entry);
  deactivate_using_directives();
}

static void pop_top_scope(bool keep_symbols) {
  const int depth = depth_scope_stack;
  scope_stack[depth].unwanted_diagnostics |= keep_symbols;
  close_names(&scope_stack[depth], depth);
  // A pragma's action may have pushed scopes and so moved the stack.
  a_scope_stack_entry* entry = &scope_stack[depth];
  const bool ends_function = entry->kind == sk_function && !entry->is_reactivation;
  restore_lifetime(entry);
  if (ends_function && !entry->routine->is_prototype_instantiation)
    wrapup_control_flow_processing(entry->il_scope);
  if (entry->kind == sk_file || entry->kind == sk_namespace ||
      entry->kind == sk_namespace_extension)
    pointers_block_of_entry(entry)->closed_once = true;
  restore_pragma_states(entry);
  if (ends_function)
    finish_function(entry, depth);
  // So may lowering.
  entry = &scope_stack[depth];
  reset_depth_of_il_scope(entry, depth);
  report_unexpanded_packs(entry);
  discard_deferred_access_checks_at_depth(depth);
  free_hidden_names(&entry->for_scope_names);
  --depth_scope_stack;
  restore_context(entry);
  // The popped entry keeps its fields until the next push.
  if (entry->in_for_init)
    record_for_init_names(pointers_block_of_entry(entry));
  if (function_body_processing_delayed_on_some_func_in_primary_il &&
      depth_innermost_function_scope < 0 && get_module_id() != nullptr)
    lower_functions_waiting_for_module_id();
}

void pop_scope() {
  pop_top_scope(false);
}

void pop_block_scope(bool keep_symbols) {
  pop_top_scope(keep_symbols);
}

void pop_namespace_scope() {
  pop_top_scope(false);
}

void pop_class_reactivation_scope() {
  pop_top_scope(false);
  while (depth_scope_stack > 0 && scope_stack[depth_scope_stack].pushed_for_inner_scope)
    pop_top_scope(false);
}
