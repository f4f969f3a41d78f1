// Selections by the type of an operand: _Generic (C11 6.5.1.1), and the form on
// which <tgmath.h> rests.

#include "declarator.h"
#include "expr_operator.h"
#include "il.h"
#include "mode_words.h"

#include <vector>

// ---- _Generic ----

struct an_association {
  a_type* type;
  a_source_position position;
};

struct a_generic_selection {
  a_type* type; // of the controlling expression; the error type after an error
  an_operand result;
  std::vector<an_association> associations; // with a type, so far
  bool is_matched;
  bool has_default;
};

static void scan_unevaluated(an_operand* operand) {
  an_expr_stack_entry entry;
  push_nested_expr_stack(ek_unevaluated, &entry);
  scan_expr(operand, nullptr, lev_none, sef_no_comma);
  finish_undefined_symbol_operand(operand);
  pop_expr_stack();
}

// The controlling expression has the type of its value: of an object without
// its qualifiers, of an array that of a pointer.
static void scan_controlling_operand(a_generic_selection* selection) {
  an_expr_stack_entry entry;
  an_operand operand;
  push_nested_expr_stack(ek_unevaluated, &entry);
  scan_expr(&operand, nullptr, lev_none, sef_no_comma);
  do_operand_transformations(&operand, ot_all);
  pop_expr_stack();
  selection->type = operand.type;
}

static const an_association* earlier_association(const a_generic_selection* selection,
                                                 a_type* type) {
  for (const an_association& association : selection->associations)
    if (types_are_compatible(association.type, type))
      return &association;
  return nullptr;
}

static an_error_code fault_of_association_type(const a_type* type) {
  if (is_variably_modified_type(type))
    return ec_variably_modified_type_not_allowed_here;
  if (is_function_type(type))
    return ec_function_type_not_allowed;
  return is_incomplete_type(type) || is_void_type(type) ? ec_incomplete_type_not_allowed : 0;
}

// p2: complete object types, of which no two are compatible.
static bool check_association_type(const a_generic_selection* selection, a_type* type,
                                   const a_source_position* position) {
  if (is_error_type(type))
    return false;
  an_error_code code = fault_of_association_type(type);
  if (code != 0) {
    expr_pos_error(code, position);
    return false;
  }
  const an_association* earlier = earlier_association(selection, type);
  if (earlier && expr_error_should_be_issued())
    pos2_ty_diagnostic(es_error, ec_duplicate_type_in_c11_generic, position, &earlier->position,
                       type);
  return !earlier;
}

// The type that the association names; null for `default`.
static a_type* scan_association_type(a_generic_selection* selection) {
  a_source_position position = pos_curr_token;
  if (curr_token == tok_default) {
    if (selection->has_default)
      expr_pos_error(ec_default_association_appears_more_than_once, &position);
    get_token();
    return nullptr;
  }
  a_type* type = type_name();
  if (!check_association_type(selection, type, &position))
    return error_type();
  selection->associations.push_back({type, position});
  return type;
}

static void scan_association(a_generic_selection* selection) {
  bool had_default = selection->has_default;
  a_type* type = scan_association_type(selection);
  required_token(tok_colon, ec_exp_colon);
  bool is_match = type && !is_error_type(type) && !is_error_type(selection->type) &&
                  types_are_compatible(type, selection->type);
  bool is_first_default = !type && !had_default;
  selection->has_default |= !type;
  if (!is_match && !(is_first_default && !selection->is_matched)) {
    an_operand ignored;
    scan_unevaluated(&ignored);
    return;
  }
  scan_expr(&selection->result, nullptr, lev_none, sef_no_comma);
  finish_undefined_symbol_operand(&selection->result);
  selection->is_matched |= is_match;
}

void scan_generic_selection(an_operand* result) {
  check_stack_limit();
  a_source_position start = pos_curr_token;
  a_generic_selection selection = {};
  make_error_operand(&selection.result);
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  add_stop_token(tok_colon);
  scan_controlling_operand(&selection);
  if (curr_token != tok_comma) {
    required_token(tok_comma, ec_exp_comma);
    selection.type = error_type();
  }
  while (loop_token(tok_comma))
    scan_association(&selection);
  remove_stop_token(tok_colon);
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  if (!selection.is_matched && !selection.has_default && !is_error_type(selection.type) &&
      expr_error_should_be_issued())
    pos_ty_error(ec_no_match_in_c11_generic, &start, selection.type);
  *result = selection.result;
  set_operand_range(result, &start, &end);
}

// ---- __generic ----

// Integers take the functions of double (C99 7.22 p3).
static int float_kind_of_argument(const a_type* type) {
  return is_floating_type(type) ? skip_typerefs(type)->variant.float_kind : fk_double;
}

static const a_type* first_param_type(const an_operand* candidate) {
  const a_type* type = candidate->type;
  if (is_pointer_type(type))
    type = type_pointed_to(type);
  if (!is_function_type(type))
    return nullptr;
  const a_param_type* param = param_types_of(skip_typerefs(type));
  return param ? param->type : nullptr;
}

static bool candidate_matches(const an_operand* candidate, const a_type* type) {
  const a_type* param_type = first_param_type(candidate);
  return param_type && is_floating_type(param_type) &&
         is_complex_type(param_type) == is_complex_type(type) &&
         skip_typerefs(param_type)->variant.float_kind == float_kind_of_argument(type);
}

// `__generic(operand, function, ...)`: the function for the operand's type, by
// the kind of its first parameter and whether that is complex.
void scan_type_generic_call(an_operand* result) {
  a_source_position start = pos_curr_token;
  a_generic_selection selection = {};
  make_error_operand(result);
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  scan_controlling_operand(&selection);
  while (loop_token(tok_comma)) {
    an_operand candidate;
    scan_expr(&candidate, nullptr, lev_none, sef_no_comma);
    finish_undefined_symbol_operand(&candidate);
    if (!selection.is_matched && candidate_matches(&candidate, selection.type)) {
      *result = candidate;
      selection.is_matched = true;
    }
  }
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  if (!selection.is_matched && !is_error_type(selection.type) && expr_error_should_be_issued())
    pos_ty_error(ec_type_generic_function_mismatch, &start, selection.type);
  set_operand_range(result, &start, &end);
}
