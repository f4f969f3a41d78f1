// Return statements and the ends of functions (C99 6.8.6.4, 6.9.1 p12).

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
  if (!at_end && in_C_mode() && std_version >= 199901)
    return gcc_mode ? es_warning : es_error;
  if (in_cplusplus_mode() && strict_ansi_mode)
    return strict_ansi_discretionary_severity;
  if (curr_routine()->is_constexpr && !relaxed_constexpr_enabled)
    return es_error;
  return at_end && in_C_mode() ? es_remark : es_warning;
}

// `return;` in main, or its end: C99 5.1.2.2.3.
static void check_return_from_main(bool at_end, const a_source_position* position) {
  a_symbol* symbol = curr_routine()->source_corresp.symbol;
  if (at_end) {
    if (in_C_mode() && std_version < 199901 && reachability.code_can_fall_through)
      pos_sy_remark(ec_implicit_return_from_non_void_function, position, symbol);
    return;
  }
  an_error_severity severity = es_warning;
  if (strict_ansi_mode && !(in_C_mode() && std_version < 199901))
    severity = strict_ansi_discretionary_severity;
  pos_sy_diagnostic(severity, ec_no_value_returned_in_non_void_function, position, symbol);
}

static bool is_constructor_or_destructor(const a_routine* routine) {
  return routine->special_kind == rsk_constructor || routine->special_kind == rsk_destructor;
}

static an_error_code code_of_missing_value(bool at_end) {
  if (check_misra_c_2004 &&
      misra_c_2004_generate_diagnostic(ec_misra_c_2004_16_8, misra_required_severity))
    return ec_misra_c_2004_16_8;
  return at_end ? ec_implicit_return_from_non_void_function
                : ec_no_value_returned_in_non_void_function;
}

static void report_missing_value(bool at_end, const a_source_position* position) {
  an_error_severity severity = severity_of_missing_value(at_end);
  if (at_end && !reachability.code_can_fall_through && severity < es_advice)
    return;
  an_error_code code = code_of_missing_value(at_end);
  if (code == ec_misra_c_2004_16_8)
    pos_diagnostic(misra_required_severity, code, position);
  else
    pos_sy_diagnostic(severity, code, position, curr_routine()->source_corresp.symbol);
}

// A return without a value; the value that it gets, or null.
static an_expr_node* missing_value(bool at_end, const a_source_position* position) {
  a_type* type = curr_return_type();
  if (is_constructor_or_destructor(curr_routine()) || is_void_type(type) || is_error_type(type) ||
      type_kind(type) == tk_template_param)
    return nullptr;
  if (is_main_function(curr_routine()) && is_integral_or_enum_type(type)) {
    check_return_from_main(at_end, position);
    return zero_of_type(type);
  }
  report_missing_value(at_end, position);
  return nullptr;
}

static void check_noreturn(const a_source_position* position) {
  if (curr_routine()->no_return && reachability.code_can_fall_through)
    pos_warning(ec_noreturn_function_does_return, position);
}

static an_error_severity severity_of_value_in_void_function(bool is_void) {
  if (in_cplusplus_mode())
    return is_void && !cfront_3_0_mode ? es_none : es_error;
  if (gcc_mode || (is_void && !strict_ansi_mode))
    return es_none;
  return is_void ? strict_ansi_discretionary_severity : es_discretionary_error;
}

// The value of a return in a void function is evaluated in front of it.
static void discarded_return_value(const a_source_position* position) {
  a_statement* statement = add_statement_at_stmt_pos(stmk_expr, position);
  statement->expr = scan_void_expression();
  bool is_void = is_void_type(statement->expr->type) || is_error_type(statement->expr->type);
  an_error_severity severity = severity_of_value_in_void_function(is_void);
  if (severity != es_none)
    pos_diagnostic(severity, ec_value_returned_in_void_function, &statement->expr->position);
}

// C++11 12.1 p12, 15.3 p13.
static void value_in_constructor() {
  pos_error(ec_value_returned_in_constructor, &pos_curr_token);
  scan_void_expression();
}

static bool in_handler_of_constructor() {
  for (int depth = depth_stmt_stack; depth >= 0; --depth)
    if (struct_stmt_stack[depth].is_constructor_handler)
      return true;
  return false;
}

void return_statement() {
  a_source_position position = pos_curr_token;
  a_type* type = curr_return_type();
  an_expr_node* value = nullptr;
  warn_if_code_is_unreachable(ec_code_is_unreachable, &position);
  if (in_handler_of_constructor())
    pos_error(ec_return_from_ctor_function_try_block_handler, &position);
  get_token();
  if (curr_token == tok_semicolon)
    value = missing_value(false, &position);
  else if (is_constructor_or_destructor(curr_routine()))
    value_in_constructor();
  else if (is_void_type(type))
    discarded_return_value(&position);
  else
    value = scan_return_expression(type);
  check_noreturn(&position);
  value = add_vla_deallocations_of_return(value, &position);
  a_statement* statement = add_statement_at_stmt_pos(stmk_return, &position);
  statement->expr = value;
  statement->end_position = curr_construct_end_position;
  required_semicolon();
}

void return_at_end_of_function(const a_source_position* position) {
  an_expr_node* value = missing_value(true, position);
  check_noreturn(position);
  a_statement* statement = add_statement_at_stmt_pos(stmk_return, position);
  statement->is_generated = true;
  statement->expr = value;
}
