// Array declarators (C99 6.7.5.2).

#include "const_ints.h"
#include "declarator_int.h"
#include "error.h"
#include "expr_int.h"
#include "lexical.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "types.h"

static void set_bound(a_derivation* array, const a_constant* constant,
                      const a_source_position* position) {
  if (constant->kind != con_integer) {
    array->is_bad = true;
    return;
  }
  int order = cmplit_integer_constant(constant, 0);
  if (order < 0 || (order == 0 && !gnu_mode)) {
    pos_error(ec_array_size_must_be_positive, position);
    array->is_bad = true;
    return;
  }
  if (order == 0 && report_gnu_extensions)
    pos_warning(ec_zero_length_array_is_gnu_extension, position);
  array->bound_is_known = true;
  array->bound = constant->value.int_value;
}

// The bound of a parameter's array is being read, and with it the bounds of the
// type names in it, as in `a[sizeof(int[n])]`.
static bool in_parameter_bound;

// Of a parameter, whichever the style of its function.
static bool is_parameter(unsigned options) {
  return (options & (do_parameter | do_k_and_r_parameter)) != 0;
}

static bool belongs_to_parameter(unsigned options) {
  return in_parameter_bound || is_parameter(options);
}

// A bound that isn't constant (C99 6.7.5.2 p5). In a prototype it says no more
// than `*` does.
static void set_variable_bound(unsigned options, a_derivation* array,
                               const a_source_position* position) {
  if (std_version < 199901 && report_gnu_extensions)
    pos_warning(ec_vla_is_nonstandard, position);
  if (belongs_to_parameter(options)) {
    array->bound_is_variable = true;
  } else if (options & do_member) {
    pos_diagnostic(es_discretionary_error, ec_vla_size_ignored, position);
    array->bound_is_known = true;
  } else if ((options & do_vla) && depth_innermost_function_scope >= 0) {
    array->bound_is_variable = true;
  } else {
    pos_error(ec_vla_not_allowed, position);
    array->is_bad = true;
  }
}

// The bound of a parameter's array may name other parameters, which have no
// values here: it is read like the operand of sizeof. False for a bound that
// isn't constant.
static bool scan_parameter_bound(a_constant* constant, bool* is_bad) {
  const bool was_in_bound = in_parameter_bound;
  in_parameter_bound = true;
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_unevaluated, &full);
  scan_expr(&operand, nullptr, lev_none, sef_no_comma);
  do_operand_transformations(&operand, ot_all);
  check_integral_or_enum_operand(&operand);
  *is_bad = is_error_operand(&operand);
  bool is_constant = operand.kind == ok_constant && operand_constant_value(&operand, constant);
  end_full_expression(&full, &operand);
  in_parameter_bound = was_in_bound;
  return is_constant;
}

// The tokens up to the `]` are read, and kept for the definition of the function;
// null where the value is plain to see.
static a_token_cache* keep_tokens_of_bound() {
  if (curr_token == tok_integer && next_token() == tok_rbracket)
    return nullptr;
  static const a_token_set_array at_end = [] {
    a_token_set_array set = {};
    set.member[tok_rbracket] = true;
    return set;
  }();
  a_token_cache* cache = alloc_token_cache();
  cache_token_stream(cache, &at_end);
  rescan_copy_of_cache(cache);
  return cache;
}

static bool scan_bound_of_parameter(a_derivation* array, a_constant* constant) {
  if (in_parameter_bound)
    return scan_parameter_bound(constant, &array->is_bad);
  a_token_cache* tokens = keep_tokens_of_bound();
  bool is_constant = scan_parameter_bound(constant, &array->is_bad);
  if (tokens && (is_constant || array->is_bad))
    free_token_cache(tokens);
  else
    array->bound_tokens = tokens;
  return is_constant;
}

static void scan_bound(unsigned options, a_derivation* array) {
  a_source_position position = pos_curr_token;
  a_constant constant;
  bool is_constant;
  if (belongs_to_parameter(options) && vla_enabled && in_C_mode()) {
    is_constant = scan_bound_of_parameter(array, &constant);
  } else {
    is_constant = scan_array_bound_expression(&constant, &array->bound_expr);
    array->is_bad = !is_constant && is_error_type(array->bound_expr->type);
  }
  if (is_constant)
    set_bound(array, &constant, &position);
  else if (!array->is_bad)
    set_variable_bound(options, array, &position);
}

// At the `*` of `[*]`.
static void scan_unspecified_bound(unsigned options, a_derivation* array) {
  if (vla_enabled && in_C_mode() && (options & do_parameter)) {
    array->bound_is_variable = array->bound_is_star = true;
  } else {
    pos_error(ec_vla_with_unspecified_bound_not_allowed, &pos_curr_token);
    array->is_bad = true;
  }
  get_token();
}

// Qualifiers and `static` stand in a parameter's outermost array alone (C99
// 6.7.5.2 p1).
static void scan_bound_qualifiers(unsigned options, a_derivation* array, bool is_outermost) {
  a_source_position position = pos_curr_token;
  if (loop_token(tok_static))
    array->has_static_bound = true;
  array->qualifiers = collect_type_qualifiers(nullptr);
  if (!array->has_static_bound && loop_token(tok_static))
    array->has_static_bound = true;
  if ((array->has_static_bound || array->qualifiers != tq_none) &&
      !(is_parameter(options) && is_outermost && in_C_mode())) {
    pos_error(ec_type_qualifier_not_allowed, &position);
    array->qualifiers = tq_none;
  }
}

void array_declarator(unsigned options, bool is_outermost) {
  a_derivation array = {};
  array.kind = dk_array;
  array.position = pos_curr_token;
  get_token();
  add_stop_token(tok_rbracket);
  scan_bound_qualifiers(options, &array, is_outermost);
  if (curr_token == tok_star && next_token() == tok_rbracket)
    scan_unspecified_bound(options, &array);
  else if (curr_token != tok_rbracket)
    scan_bound(options, &array);
  else if (array.has_static_bound)
    pos_error(ec_exp_primary_expr, &pos_curr_token);
  remove_stop_token(tok_rbracket);
  required_token(tok_rbracket, ec_exp_rbracket);
  derivations.push_back(array);
}
