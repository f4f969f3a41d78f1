// Labels, jumps and the labels of switch statements (C99 6.8.1, 6.8.6).

#include "attribute.h"
#include "const_ints.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements_int.h"
#include "symbol_ref.h"
#include "types.h"

#include <cstring>

// ---- Labels (C99 6.8.1) ----

static a_symbol* enter_label(a_symbol_locator* locator, bool is_block_local) {
  int depth = is_block_local ? depth_scope_stack : depth_innermost_function_scope;
  a_symbol* symbol = enter_symbol(symk_label, locator, depth, nullptr);
  a_label* label = alloc_label();
  label->is_block_local = is_block_local;
  symbol->variant.label = label;
  set_source_corresp(&label->source_corresp, symbol);
  add_to_labels_list(label, depth_innermost_function_scope);
  return symbol;
}

// The label of this function that the name means; null for none. Those of a
// function around it don't count.
static a_symbol* find_label(const a_symbol_header* header) {
  a_symbol* symbol = find_label_symbol(header);
  bool is_of_this_function =
      symbol && scope_depth_of_symbol(symbol, nullptr) >= depth_innermost_function_scope;
  return is_of_this_function ? symbol : nullptr;
}

// By `__label__` in the block that is open.
static bool is_declared_in_block(const a_symbol* label) {
  return label->variant.label->is_block_local &&
         scope_depth_of_symbol(label, nullptr) == depth_scope_stack;
}

// At the label's name, which is read. A block-local one is declared.
a_label* scan_label(bool is_definition, bool is_block_local) {
  a_symbol_locator locator = locator_for_curr_id;
  locator.symbol = nullptr;
  a_source_position position = pos_curr_token;
  a_symbol* symbol = find_label(locator.header);
  if (is_block_local && symbol && is_declared_in_block(symbol))
    pos_st_error(ec_id_already_declared, &position, locator.header->identifier);
  else if (is_block_local)
    symbol = nullptr;
  get_token();
  if (!symbol)
    symbol = enter_label(&locator, is_block_local);
  a_label* label = symbol->variant.label;
  if (is_block_local)
    return label;
  if (!is_definition) {
    symbol->referenced = true;
    label->is_used = true;
  } else if (symbol->defined) {
    pos_sy_error(ec_already_defined, &position, symbol);
  } else {
    symbol->defined = true;
    symbol->position = label->source_corresp.position = position;
  }
  record_symbol_declaration(is_definition ? srk_definition : srk_reference, symbol, &position,
                            nullptr);
  return label;
}

a_label* scan_label_reference() {
  return scan_label(false, false);
}

static bool is_local_label_keyword() {
  return gnu_mode && curr_token == tok_identifier &&
         strcmp(locator_for_curr_id.header->identifier, "__label__") == 0;
}

void local_label_declarations() {
  while (is_local_label_keyword()) {
    get_token();
    ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
    add_stop_token(tok_comma);
    do {
      if (required_token_no_advance(tok_identifier, ec_exp_identifier))
        scan_label(false, true);
    } while (loop_token(tok_comma));
    remove_stop_token(tok_comma);
    required_semicolon();
  }
}

bool is_label_start() {
  return curr_token == tok_identifier && next_token() == tok_colon;
}

static void label_statement() {
  a_source_position position = pos_curr_token;
  a_label* label = scan_label(true, false);
  get_token(); // the colon
  bool was_reachable = reachability.code_is_reachable != 0;
  mark_reachable();
  if (label->def_statement) // reported as defined twice
    return;
  a_statement* statement = add_statement_at_stmt_pos(stmk_label, &position);
  statement->variant.label.ptr = label;
  top_stmt_entry()->label_seen = true;
  label->def_statement = statement;
  label->was_reachable = was_reachable;
  flow_label(label, &position);
  attach_attributes(scan_gnu_attribute_groups(al_label), label, iek_label);
}

bool scan_labels() {
  for (bool any = false;; any = true) {
    if (is_label_start())
      label_statement();
    else if (curr_token == tok_case)
      case_statement();
    else if (curr_token == tok_default)
      default_statement();
    else
      return any;
  }
}

// ---- Jumps (C99 6.8.6) ----

void break_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  a_struct_stmt_stack_entry* entry = innermost_loop(true);
  get_token();
  if (!entry) {
    pos_error(ec_break_must_be_in_loop_or_switch, &position);
  } else {
    if (entry->kind == ssk_switch)
      merge_reachability(&entry->after, &reachability);
    if (!entry->break_label)
      entry->break_label = make_generated_label(entry->kind == ssk_switch);
    jump_to_label(entry->break_label, &position);
  }
  required_semicolon();
}

void continue_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  if (check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_14_5, &position);
  a_struct_stmt_stack_entry* entry = innermost_loop(false);
  get_token();
  if (!entry) {
    pos_error(ec_continue_must_be_in_loop, &position);
  } else {
    if (!entry->continue_label)
      entry->continue_label = make_generated_label(false);
    jump_to_label(entry->continue_label, &position);
  }
  required_semicolon();
}

// GNU: `goto *address;`. No code can be made of it.
static void assigned_goto(const a_source_position* position) {
  if (strict_ansi_mode)
    pos_diagnostic(strict_ansi_error_severity, ec_nonstd_assigned_goto, position);
  pos_st_error(ec_not_supported, position, "GCC-style assigned goto");
  get_token();
  a_statement* statement = add_statement_at_stmt_pos(stmk_assigned_goto, position);
  statement->expr = scan_typed_expression(void_star_type(), ec_assigned_goto_requires_void_ptr);
  mark_unreachable();
}

void goto_statement() {
  a_source_position position = pos_curr_token;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  if (check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_14_4, &position);
  get_token();
  if (curr_token == tok_star && gnu_mode) {
    assigned_goto(&position);
  } else if (required_token_no_advance(tok_identifier, ec_exp_identifier)) {
    a_label* label = scan_label(false, false);
    a_statement* statement = add_statement_at_stmt_pos(stmk_goto, &position);
    statement->variant.label.ptr = label;
    if (!label->first_goto)
      label->first_goto = statement;
    flow_goto(label, &position);
  }
  required_semicolon();
}

// ---- The labels of a switch (C99 6.8.4.2) ----

static void report_equal_cases(const a_switch_case_entry* entry,
                               const a_switch_case_entry* earlier) {
  pos2_diagnostic(es_error, ec_case_label_conflict, &entry->position, &earlier->position);
}

static const a_constant* greatest_value(const a_switch_case_entry* entry) {
  return entry->case_range_end ? entry->case_range_end : entry->case_value;
}

static constexpr int64_t max_overlap_steps = 1000000;

static bool overlap(const a_switch_case_entry* low, const a_switch_case_entry* high) {
  return cmp_integer_constants(greatest_value(low), high->case_value) >= 0 &&
         cmp_integer_constants(greatest_value(high), low->case_value) >= 0;
}

// Of the entries between which a new one goes, while those of the list are apart.
static const a_switch_case_entry* overlapped_neighbour(const a_switch_case_entry* before,
                                                       const a_switch_case_entry* behind,
                                                       const a_switch_case_entry* entry) {
  if (before && overlap(before, entry))
    return before;
  return behind && overlap(entry, behind) ? behind : nullptr;
}

// An entry that overlaps may lie anywhere in front of the new one. Past a number of
// steps, which only a large switch in error takes, the neighbours must do.
static const a_switch_case_entry* find_overlapped(a_struct_stmt_stack_entry* stack_entry,
                                                  const a_switch_case_entry* sorted_cases,
                                                  const a_switch_case_entry* entry) {
  while (sorted_cases && !overlap(sorted_cases, entry)) {
    sorted_cases = sorted_cases->next_sorted;
    --stack_entry->overlap_steps_left;
  }
  return sorted_cases;
}

// Into the list by value. Most sources give the cases in ascending order, so
// the greatest entry so far is remembered.
static void insert_sorted(a_struct_stmt_stack_entry* stack_entry,
                          a_switch_stmt_supplement* supplement, a_switch_case_entry* entry) {
  a_switch_case_entry* greatest = stack_entry->last_sorted_case;
  a_switch_case_entry** link = &supplement->sorted_cases;
  a_switch_case_entry* before = nullptr;
  if (greatest && cmp_integer_constants(greatest->case_value, entry->case_value) <= 0) {
    before = greatest;
    link = &greatest->next_sorted;
  }
  while (*link && cmp_integer_constants((*link)->case_value, entry->case_value) <= 0) {
    before = *link;
    link = &before->next_sorted;
  }
  const a_switch_case_entry* overlapped =
      stack_entry->overlap_steps_left > 0
          ? find_overlapped(stack_entry, supplement->sorted_cases, entry)
          : overlapped_neighbour(before, *link, entry);
  if (overlapped) {
    const bool is_range = entry->case_range_end || overlapped->case_range_end;
    report_equal_cases(entry, overlapped);
    if (is_range && stack_entry->overlap_steps_left == 0)
      stack_entry->overlap_steps_left = max_overlap_steps;
  }
  entry->next_sorted = *link;
  *link = entry;
  if (!entry->next_sorted)
    stack_entry->last_sorted_case = entry;
}

static bool has_known_value(const a_switch_case_entry* entry) {
  return entry->case_value->kind == con_integer &&
         (!entry->case_range_end || entry->case_range_end->kind == con_integer);
}

static void add_case_to_struct_stmt_stack_entry(a_switch_case_entry* entry,
                                                a_struct_stmt_stack_entry* stack_entry) {
  a_switch_stmt_supplement* supplement =
      stack_entry->statement->variant.loop.extra.switch_supplement;
  if (stack_entry->last_case)
    stack_entry->last_case->next_in_source_order = entry;
  else
    supplement->first_case = entry;
  stack_entry->last_case = entry;
  if (entry->case_value && has_known_value(entry))
    insert_sorted(stack_entry, supplement, entry);
  else if (entry->case_value)
    stack_entry->has_dependent_case = true;
  else if (supplement->default_case)
    pos_error(ec_default_label_appears_more_than_once, &entry->position);
  else
    supplement->default_case = entry;
}

static a_constant* scan_case_value(const a_struct_stmt_stack_entry* stack_entry) {
  a_constant value;
  scan_case_label_constant(stack_entry ? stack_entry->switch_type : error_type(), &value);
  return value.kind == con_integer || value.kind == con_template_param
             ? alloc_unshared_constant(&value)
             : nullptr;
}

// GNU: `case low ... high`.
static void scan_case_range(a_struct_stmt_stack_entry* stack_entry, a_switch_case_entry* entry) {
  a_source_position position = pos_curr_token;
  get_token();
  a_constant* end = scan_case_value(stack_entry);
  if (!end || !entry->case_value)
    return;
  bool is_known = end->kind == con_integer && entry->case_value->kind == con_integer;
  if (is_known && cmp_integer_constants(end, entry->case_value) < 0)
    pos_error(ec_invalid_case_range, &position);
  else
    entry->case_range_end = end;
}

// MISRA 15.1: the block around the label is the body of the switch.
static void check_place_of_case(const a_struct_stmt_stack_entry* stack_entry,
                                const a_source_position* position) {
  if (!check_misra_c_2004 || !stack_entry)
    return;
  const a_struct_stmt_stack_entry* block = top_stmt_entry();
  while (block > stack_entry && block->kind == ssk_block && block->statement->is_generated)
    --block;
  if (block->kind != ssk_block || block->statement->parent != stack_entry->statement)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_15_1, position);
}

// The statement of a label of a switch, whose state flows in here.
static void attach_case(a_struct_stmt_stack_entry* stack_entry, a_switch_case_entry* entry) {
  if (stack_entry)
    merge_reachability(&reachability, &stack_entry->saved);
  else
    mark_reachable();
  if (reachability.code_is_reachable)
    reachability.unreachable_warned = false;
  a_statement* statement = add_statement_at_stmt_pos(stmk_case, &entry->position);
  statement->variant.loop.extra.switch_case_entry = entry;
  entry->statement = statement;
  top_stmt_entry()->case_seen = true;
}

// What isn't in a switch or has no value isn't listed.
static void enter_case(a_switch_case_entry* entry, bool is_default) {
  a_struct_stmt_stack_entry* stack_entry = innermost_switch();
  check_place_of_case(stack_entry, &entry->position);
  attach_case(stack_entry, entry);
  if (!stack_entry)
    return;
  if (is_default || entry->case_value)
    add_case_to_struct_stmt_stack_entry(entry, stack_entry);
  flow_case(stack_entry, &entry->position);
}

void case_statement() {
  a_switch_case_entry* entry = alloc_switch_case_entry();
  entry->position = pos_curr_token;
  a_struct_stmt_stack_entry* stack_entry = innermost_switch();
  if (!stack_entry)
    pos_error(ec_case_label_must_be_in_switch, &pos_curr_token);
  get_token();
  add_stop_token(tok_colon);
  entry->value_range.start = pos_curr_token;
  entry->case_value = scan_case_value(stack_entry);
  if (curr_token == tok_ellipsis && gnu_mode)
    scan_case_range(stack_entry, entry);
  entry->value_range.end = curr_construct_end_position;
  remove_stop_token(tok_colon);
  required_token(tok_colon, ec_exp_colon);
  entry->is_dependent = entry->case_value && !has_known_value(entry);
  if (entry->case_value && !entry->is_dependent)
    entry->is_unsigned = !int_constant_is_signed(entry->case_value);
  enter_case(entry, false);
}

void default_statement() {
  a_switch_case_entry* entry = alloc_switch_case_entry();
  entry->position = pos_curr_token;
  if (!innermost_switch())
    pos_error(ec_default_label_must_be_in_switch, &pos_curr_token);
  get_token();
  required_token(tok_colon, ec_exp_colon);
  enter_case(entry, true);
}
