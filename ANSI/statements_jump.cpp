// The labels of switch statements, and return statements.

#include "const_ints.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_constants.h"
#include "lexical.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements_int.h"
#include "types.h"

// ---- Case labels (C99 6.8.1, 6.8.4.2) ----

static void report_equal_cases(const a_switch_case_entry* entry,
                               const a_switch_case_entry* earlier) {
  pos2_diagnostic(es_error, ec_case_label_conflict, &entry->position, &earlier->position);
}

static const a_constant* greatest_value(const a_switch_case_entry* entry) {
  return entry->case_range_end ? entry->case_range_end : entry->case_value;
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
  if (before && cmp_integer_constants(greatest_value(before), entry->case_value) >= 0)
    report_equal_cases(entry, before);
  else if (*link && cmp_integer_constants(greatest_value(entry), (*link)->case_value) >= 0)
    report_equal_cases(entry, *link);
  entry->next_sorted = *link;
  *link = entry;
  if (!entry->next_sorted)
    stack_entry->last_sorted_case = entry;
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
  if (entry->case_value)
    insert_sorted(stack_entry, supplement, entry);
  else if (supplement->default_case)
    pos_error(ec_default_label_appears_more_than_once, &entry->position);
  else
    supplement->default_case = entry;
}

static a_constant* scan_case_value(a_struct_stmt_stack_entry* stack_entry) {
  a_constant value;
  scan_case_label_constant(stack_entry ? stack_entry->switch_type : error_type(), &value);
  return value.kind == con_integer ? alloc_unshared_constant(&value) : nullptr;
}

// GNU: `case low ... high`.
static void scan_case_range(a_struct_stmt_stack_entry* stack_entry, a_switch_case_entry* entry) {
  a_source_position position = pos_curr_token;
  get_token();
  a_constant* end = scan_case_value(stack_entry);
  if (!end || !entry->case_value)
    return;
  if (cmp_integer_constants(end, entry->case_value) < 0)
    pos_warning(ec_invalid_case_range, &position);
  else
    entry->case_range_end = end;
}

// The statement of a label of a switch, whose state flows in here.
static void attach_case(a_struct_stmt_stack_entry* stack_entry, a_switch_case_entry* entry) {
  if (stack_entry)
    merge_reachability(&reachability, &stack_entry->saved);
  else
    mark_reachable();
  reachability.unreachable_warned = false;
  a_statement* statement = add_statement_at_stmt_pos(stmk_case, &entry->position);
  statement->variant.loop.extra.switch_case_entry = entry;
  entry->statement = statement;
  top_stmt_entry()->case_seen = true;
}

// What isn't in a switch or has no value isn't listed.
static void enter_case(a_switch_case_entry* entry, bool is_default) {
  a_struct_stmt_stack_entry* stack_entry = innermost_switch();
  attach_case(stack_entry, entry);
  if (stack_entry && (is_default || entry->case_value))
    add_case_to_struct_stmt_stack_entry(entry, stack_entry);
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
  if (entry->case_value)
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

// ---- Return (C99 6.8.6.4, 6.9.1 p12) ----

static a_routine* curr_routine() {
  return scope_stack[depth_innermost_function_scope].routine;
}

static a_type* curr_return_type() {
  a_type* type = curr_routine()->type;
  return is_error_type(type) ? error_type() : return_type_of(type);
}

static an_expr_node* zero_of_type(a_type* type) {
  a_constant zero;
  clear_constant(&zero, con_integer);
  make_zero_of_proper_type(type, &zero);
  return alloc_node_for_constant(&zero);
}

static an_error_severity severity_of_missing_value(bool at_end) {
  if (at_end)
    return in_C_mode() ? es_remark : es_warning;
  if (in_C_mode() && std_version >= 199901)
    return gcc_mode ? es_warning : es_error;
  return es_warning;
}

// `return;` in main, or its end: C99 5.1.2.2.3.
static void check_return_from_main(bool at_end, const a_source_position* position) {
  a_symbol* symbol = curr_routine()->source_corresp.symbol;
  if (at_end) {
    if (in_C_mode() && std_version < 199901)
      pos_sy_remark(ec_implicit_return_from_non_void_function, position, symbol);
    return;
  }
  an_error_severity severity = es_warning;
  if (strict_ansi_mode && !(in_C_mode() && std_version < 199901))
    severity = strict_ansi_discretionary_severity;
  pos_sy_diagnostic(severity, ec_no_value_returned_in_non_void_function, position, symbol);
}

// A return without a value; the value that it gets, or null.
static an_expr_node* missing_value(bool at_end, const a_source_position* position) {
  a_type* type = curr_return_type();
  if (is_void_type(type) || is_error_type(type))
    return nullptr;
  if (is_main_function(curr_routine()) && is_integral_or_enum_type(type)) {
    check_return_from_main(at_end, position);
    return zero_of_type(type);
  }
  an_error_severity severity = severity_of_missing_value(at_end);
  bool is_moot = at_end && !reachability.code_can_fall_through && severity < es_advice;
  if (!is_moot)
    pos_sy_diagnostic(severity,
                      at_end ? ec_implicit_return_from_non_void_function
                             : ec_no_value_returned_in_non_void_function,
                      position, curr_routine()->source_corresp.symbol);
  return nullptr;
}

static void check_noreturn(const a_source_position* position) {
  if (curr_routine()->no_return && reachability.code_can_fall_through)
    pos_warning(ec_noreturn_function_does_return, position);
}

// The value of a return in a void function is evaluated in front of it.
static void discarded_return_value(const a_source_position* position) {
  a_statement* statement = add_statement_at_stmt_pos(stmk_expr, position);
  statement->expr = scan_void_expression();
  bool is_void = is_void_type(statement->expr->type) || is_error_type(statement->expr->type);
  if (in_C_mode() && !gcc_mode && (!is_void || strict_ansi_mode))
    pos_diagnostic(is_void ? strict_ansi_discretionary_severity : es_discretionary_error,
                   ec_value_returned_in_void_function, &statement->expr->position);
}

void return_statement() {
  a_source_position position = pos_curr_token;
  a_type* type = curr_return_type();
  an_expr_node* value = nullptr;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  get_token();
  if (curr_token == tok_semicolon)
    value = missing_value(false, &position);
  else if (is_void_type(type))
    discarded_return_value(&position);
  else
    value = scan_return_expression(type);
  check_noreturn(&position);
  a_statement* statement = add_statement_at_stmt_pos(stmk_return, &position);
  statement->expr = value;
  statement->end_position = curr_construct_end_position;
  required_token(tok_semicolon, ec_exp_semicolon);
}

void return_at_end_of_function(const a_source_position* position) {
  an_expr_node* value = missing_value(true, position);
  check_noreturn(position);
  a_statement* statement = add_statement_at_stmt_pos(stmk_return, position);
  statement->is_generated = true;
  statement->expr = value;
}
