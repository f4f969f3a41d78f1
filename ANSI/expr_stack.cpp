// The context stack of expression analysis, the references that an expression
// makes, and its diagnostics.

#include "declarator.h"
#include "expr_int.h"
#include "folding_math.h"
#include "il.h"
#include "il_statements.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"

an_expr_stack_entry* expr_stack;
a_ref_entry* curr_expr_ref_entries;
a_source_position curr_construct_end_position;

static a_ref_entry* avail_ref_entries;

// ---- The stack ----

// The temporaries of a full expression live to its end (C++11 12.2 p3), those
// of an old one to the end of the block.
static void open_lifetime_of_entry(an_expr_stack_entry* entry, bool long_lifetime) {
  entry->enclosing_lifetime = curr_object_lifetime;
  if (in_C_mode() || !curr_object_lifetime ||
      (long_lifetime_temps && (long_lifetime || entry->kind < ek_normal)))
    return;
  entry->object_lifetime = push_object_lifetime(iek_expr_node, nullptr, olk_full_expr);
}

static void close_lifetime_of_entry(an_expr_stack_entry* entry) {
  if (!entry->object_lifetime)
    return;
  if (entry->kind < ek_normal)
    mark_object_lifetime_as_useless(entry->object_lifetime);
  pop_object_lifetime();
}

void push_expr_stack(an_expression_kind kind, an_expr_stack_entry* entry, bool long_lifetime,
                     bool no_lifetime) {
  *entry = {};
  entry->previous = expr_stack;
  entry->saved_ref_entries = curr_expr_ref_entries;
  curr_expr_ref_entries = nullptr;
  entry->kind = kind;
  entry->flags.value_is_evaluated = true;
  entry->flags.references_count = true;
  if (kind < ek_normal) {
    entry->flags.constant_context = true;
    entry->flags.strict_constant =
        kind == ek_pp || kind == ek_strict_constant || !constexpr_enabled;
  } else if (kind == ek_unevaluated) {
    entry->flags.value_is_evaluated = false;
    entry->flags.references_count = false;
    entry->flags.unevaluated_operand = true;
  }
  entry->scope_number = depth_scope_stack >= 0 ? scope_stack[depth_scope_stack].number : -1;
  entry->start_position = pos_curr_token;
  if (expr_stack) {
    entry->lambda_context = expr_stack->lambda_context;
    entry->entity_list_tail = expr_stack->entity_list_tail;
  } else if (!no_lifetime) {
    open_lifetime_of_entry(entry, long_lifetime);
  }
  expr_stack = entry;
}

void pop_expr_stack() {
  an_expr_stack_entry* entry = expr_stack;
  close_lifetime_of_entry(entry);
  flush_ref_entries(nullptr, entry->saved_ref_entries);
  expr_stack = entry->previous;
  if (expr_stack && entry->flags.sfinae_context && entry->flags.error_suppressed)
    expr_stack->flags.error_suppressed = true;
}

void transfer_context_from_enclosing_expr_stack_entry(bool full, const an_expr_stack_entry* from,
                                                      an_expr_stack_entry* to) {
  to->flags.in_default_argument = from->flags.in_default_argument;
  to->lambda_context = from->lambda_context;
  to->entity_list_tail = from->entity_list_tail;
  if (!full)
    return;
  to->flags.value_is_evaluated = from->flags.value_is_evaluated;
  to->flags.references_count = from->flags.references_count;
  to->flags.in_decltype_or_typeof = from->flags.in_decltype_or_typeof;
  to->flags.branch_context = from->flags.branch_context;
  to->flags.sfinae_context |= from->flags.sfinae_context;
  to->flags.suppress_errors |= from->flags.suppress_errors;
  to->flags.keep_rescan_info |= from->flags.keep_rescan_info;
  to->flags.carried_17 |= from->flags.carried_17;
}

static void transfer_to_full_expression(const an_expr_stack_entry* from, an_expr_stack_entry* to) {
  bool same_rescan =
      from->rescan_control_block && from->rescan_control_block == to->rescan_control_block;
  if (from->flags.transfer_to_nested_full_expression || same_rescan)
    transfer_context_from_enclosing_expr_stack_entry(true, from, to);
  else if (!to->rescan_control_block && from->scope_number == to->scope_number)
    transfer_context_from_enclosing_expr_stack_entry(false, from, to);
}

void begin_full_expression(an_expression_kind kind, a_full_expression* full) {
  full->saved_expr_stack = expr_stack;
  full->waiting_vla_dimensions = num_waiting_vla_dimensions();
  expr_stack = nullptr;
  push_expr_stack(kind, &full->entry, false, false);
  if (full->saved_expr_stack)
    transfer_to_full_expression(full->saved_expr_stack, &full->entry);
}

void end_full_expression(a_full_expression* full, const an_operand* operand) {
  pop_expr_stack();
  expr_stack = full->saved_expr_stack;
  forget_vla_dimensions(full->waiting_vla_dimensions);
  curr_construct_end_position = operand->end_position;
}

void push_nested_expr_stack(an_expression_kind kind, an_expr_stack_entry* entry) {
  const an_expr_stack_entry* enclosing = expr_stack;
  push_expr_stack(kind, entry, false, false);
  entry->flags.in_default_argument = enclosing->flags.in_default_argument;
  entry->flags.sfinae_context = enclosing->flags.sfinae_context;
  entry->flags.suppress_errors = enclosing->flags.suppress_errors;
  entry->flags.keep_rescan_info = enclosing->flags.keep_rescan_info;
}

// ---- The end of a full expression ----

an_expr_node* wrap_up_full_expression(an_expr_node* node) {
  replace_math_funcs(node, node->type);
  an_object_lifetime* lifetime = expr_stack->object_lifetime;
  if (expr_stack->previous || !lifetime)
    return node;
  if (is_error_node(node))
    mark_object_lifetime_as_useless(lifetime);
  return lifetime->destructions ? add_object_lifetime_to_expr(node, lifetime) : node;
}

void wrap_up_dynamic_init_full_expression(a_dynamic_init* init) {
  an_object_lifetime* lifetime = expr_stack->object_lifetime;
  if (expr_stack->previous || !lifetime)
    return;
  if (is_error_dynamic_init(init))
    mark_object_lifetime_as_useless(lifetime);
  else if (lifetime->destructions)
    bind_object_lifetime(lifetime, iek_dynamic_init, init);
}

void wrap_up_constant_full_expression(const a_constant* constant) {
  an_object_lifetime* lifetime = expr_stack->object_lifetime;
  if (!expr_stack->previous && lifetime && constant->kind != con_dynamic_init)
    mark_object_lifetime_as_useless(lifetime);
}

an_expr_rescan_info_entry* alloc_expr_rescan_info_entry() {
  auto* entry = static_cast<an_expr_rescan_info_entry*>(
      alloc_in_region(0, sizeof(an_expr_rescan_info_entry)));
  *entry = {};
  entry->expr_stack_kind = ek_normal;
  return entry;
}

// ---- References ----

static constexpr uint32_t replaced_ref_kinds = srk_value_read | srk_modified | srk_address_taken |
                                               srk_error | (1u << 12) | srk_template_generic |
                                               srk_folded;

a_ref_entry* make_ref_entry(uint32_t kind, a_symbol* symbol, const a_source_position* position) {
  a_ref_entry* entry = avail_ref_entries;
  if (entry)
    avail_ref_entries = entry->next;
  else
    entry = static_cast<a_ref_entry*>(alloc_in_region(0, sizeof *entry));
  *entry = {kind, false, symbol, nullptr, *position, curr_expr_ref_entries, nullptr};
  curr_expr_ref_entries = entry;
  return entry;
}

// What happens to the value of a variable is followed in the order of the
// source, while references are recorded at sequence points.
static void follow_value(const a_ref_entry* entry) {
  if (entry->symbol->kind == symk_variable && expr_stack->flags.references_count &&
      !expr_stack->flags.suppress_errors)
    note_use_of_value(entry->kind, entry->symbol, &entry->position);
}

void change_ref_kinds(a_ref_entry* entries, uint32_t kind) {
  for (; entries; entries = entries->next_for_operand) {
    entries->kind = (entries->kind & ~replaced_ref_kinds) | kind;
    entries->recorded = false;
    follow_value(entries);
  }
}

void change_unmarked_ref_kinds(a_ref_entry* entries, uint32_t kind) {
  for (; entries; entries = entries->next_for_operand)
    if (!(entries->kind & replaced_ref_kinds)) {
      entries->kind |= kind;
      follow_value(entries);
    }
}

// C99 6.5.3.2 p1; without strict checking the variable loses its register.
static void check_address_of_register(a_variable* variable, const a_source_position* position) {
  if (variable->storage_kind != sc_register || in_cplusplus_mode())
    return;
  bool is_error = strict_ansi_mode && strict_ansi_error_severity == es_error && !SVR4_C_mode;
  expr_pos_diagnostic(is_error ? es_error : es_warning, ec_address_of_register_variable, position);
  variable->address_taken_of_register = true;
  variable->storage_kind = sc_auto;
}

static void note_address_taken(const a_ref_entry* entry) {
  a_symbol* symbol = entry->symbol;
  if (symbol->kind == symk_variable) {
    check_address_of_register(symbol->variant.variable, &entry->position);
    set_variable_address_taken(symbol->variant.variable);
  } else if (symbol->kind == symk_routine) {
    set_routine_address_taken(symbol->variant.routine);
  }
}

static void record_ref_entry(a_ref_entry* entry) {
  if (entry->recorded)
    return;
  entry->recorded = true;
  bool evaluated = expr_stack->flags.references_count;
  if ((entry->kind & srk_address_taken) && evaluated)
    note_address_taken(entry);
  record_symbol_reference_full(entry->kind, entry->symbol, &entry->position, entry->source_corresp,
                               evaluated);
}

static bool is_held_by(const a_ref_entry* entry, const an_operand* operand) {
  if (!operand)
    return false;
  for (const a_ref_entry* held = operand->ref_entries; held; held = held->next_for_operand)
    if (held == entry)
      return true;
  return false;
}

void flush_ref_entries(const an_operand* kept, a_ref_entry* saved) {
  a_ref_entry* entry = curr_expr_ref_entries;
  curr_expr_ref_entries = saved;
  while (entry) {
    a_ref_entry* next = entry->next;
    if (is_held_by(entry, kept)) {
      entry->next = curr_expr_ref_entries;
      curr_expr_ref_entries = entry;
    } else {
      record_ref_entry(entry);
      entry->next = avail_ref_entries;
      avail_ref_entries = entry;
    }
    entry = next;
  }
}

void flush_operand_ref_entries(an_operand* operand) {
  for (a_ref_entry* entry = operand->ref_entries; entry; entry = entry->next_for_operand)
    record_ref_entry(entry);
}

void operand_will_not_be_used_because_of_error(an_operand* operand) {
  change_ref_kinds(operand->ref_entries, srk_error);
  operand->ref_entries = nullptr;
}

// ---- Diagnostics ----

bool expr_error_should_be_issued() {
  if (!expr_stack || !expr_stack->flags.suppress_errors)
    return true;
  expr_stack->flags.error_suppressed = true;
  return false;
}

bool expr_diagnostic_should_be_issued(an_error_severity severity, an_error_code code,
                                      const a_source_position* position) {
  if (!expr_stack || !expr_stack->flags.suppress_errors)
    return true;
  if (is_effective_sfinae_error(code, severity, position))
    expr_stack->flags.error_suppressed = true;
  return false;
}

void expr_pos_error(an_error_code code, const a_source_position* position) {
  if (expr_error_should_be_issued())
    pos_error(code, position);
}

void expr_pos_warning(an_error_code code, const a_source_position* position) {
  expr_pos_diagnostic(es_warning, code, position);
}

void expr_pos_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position) {
  if (expr_diagnostic_should_be_issued(severity, code, position))
    pos_diagnostic(severity, code, position);
}

void expr_syntax_error(an_error_code code) {
  if (expr_error_should_be_issued())
    syntax_error(code);
  else
    flush_tokens_without_warning();
}

void refuse_construct(const char* construct, const a_source_position* position) {
  if (expr_error_should_be_issued())
    pos_st_error(ec_feature_not_allowed_in_current_mode, position, construct);
}

void error_in_operand(an_error_code code, an_operand* operand) {
  if (is_error_operand(operand))
    return;
  expr_pos_error(code, &operand->position);
  conv_to_error_operand(operand);
}

void type2_error_in_operand(an_error_code code, an_operand* operand, a_type* type1, a_type* type2) {
  if (is_error_operand(operand))
    return;
  if (expr_error_should_be_issued())
    pos_ty2_error(code, &operand->position, type1, type2);
  conv_to_error_operand(operand);
}

void error_and_make_error_operand(an_error_code code, const a_source_position* position,
                                  an_operand* operand) {
  expr_pos_error(code, position);
  make_error_operand(operand);
  operand->position = *position;
}

// ---- Initialisation ----

void expr_one_time_init() {
  // No variable of this module is kept for each unit.
}

void expr_init() {
  expr_stack = nullptr;
  curr_expr_ref_entries = nullptr;
  avail_ref_entries = nullptr;
}

void expr_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
