// The type that the words of the specifiers add up to (C99 6.7.2 p2), and the
// operands of typeof and decltype.

#include "decl_spec_int.h"
#include "declarator.h"
#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "lexical.h"
#include "misra.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "target.h"
#include "types.h"

bool is_gnu_before(int version) {
  return gnu_mode && !clang_mode && gnu_version < version;
}

a_base_type_code base_of_token(a_token_kind token) {
  switch (token) {
  case tok_char:
    return btc_char;
  case tok_double:
    return btc_double;
  case tok_float:
    return btc_float;
  case tok_int:
    return btc_int;
  case tok_void:
    return btc_void;
  case tok_c99_bool:
  case tok_bool:
    return btc_bool;
  case tok_char16_t:
    return btc_char16_t;
  case tok_char32_t:
    return btc_char32_t;
  case tok_wchar_t:
    return btc_wchar_t;
  default:
    return btc_none;
  }
}

void bad_combination(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  if (acc->base != btc_error)
    specifier_error(ec_bad_combination_of_type_specifiers, &pos_curr_token, state);
  acc->base = btc_error;
}

// ---- Words that modify a type name ----

// `unsigned T` and `T unsigned` are a relic of the time before prototypes.
static bool modified_typedef_is_allowed() {
  return C_dialect == cd_k_and_r || gpp_mode || (gcc_mode && is_gnu_before(30400));
}

static a_size_code size_code_of_kind(an_integer_kind kind) {
  switch (signed_int_kind_of(kind)) {
  case ik_short:
    return szc_short;
  case ik_long:
    return szc_long;
  case ik_long_long:
    return szc_long_long;
  default:
    return szc_none;
  }
}

// Takes the type apart into words; false for one that has none.
static bool words_of_type(a_type* type, a_specifier_accumulator* acc) {
  a_type* bare = skip_typerefs(type);
  if (bare->kind == tk_float && acc->sign == sgc_none && bare->variant.float_kind != fk_float) {
    acc->base = btc_double;
    return true;
  }
  if (bare->kind != tk_integer || is_enum_type(bare) || is_bool_type(bare))
    return false;
  an_integer_kind kind = int_kind_of(bare);
  bool is_char = kind <= ik_unsigned_char;
  if (is_char && acc->size != szc_none)
    return false;
  acc->base = is_char ? btc_char : btc_int;
  if (acc->size == szc_none)
    acc->size = size_code_of_kind(kind);
  if (acc->sign == sgc_none && kind != ik_char)
    acc->sign = int_kind_is_signed(kind) ? sgc_signed : sgc_unsigned;
  return true;
}

static void modify_type_name(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  if (is_error_type(acc->type)) {
    acc->base = btc_error;
    return;
  }
  a_type_qualifier_set qualifiers = get_type_qualifiers(acc->type) & tq_all_qualifiers;
  if (!modified_typedef_is_allowed() || !words_of_type(acc->type, acc)) {
    bad_combination(acc, state);
    return;
  }
  state->qualifiers |= qualifiers;
  if (report_gnu_extensions)
    pos_warning(ec_typedef_modification_is_nonstandard, &state->specifiers_position);
}

// ---- The table ----

static a_type* char_type_of_words(const a_specifier_accumulator* acc) {
  if (acc->sign == sgc_none)
    return integer_type(plain_char_int_kind);
  return integer_type(acc->sign == sgc_signed ? ik_signed_char : ik_unsigned_char);
}

static a_type* int_type_of_words(const a_specifier_accumulator* acc) {
  static const an_integer_kind signed_kinds[] = {ik_int, ik_short, ik_long, ik_long_long};
  int kind = signed_kinds[acc->size];
  if (acc->sign == sgc_unsigned)
    kind = unsigned_int_kind_of(kind);
  // Whether a bit-field of it is signed may hang on the word.
  return acc->sign == sgc_signed ? signed_integer_type(kind) : integer_type(kind);
}

static a_type* floating_type_of_words(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  int kind = acc->base == btc_float ? fk_float : fk_double;
  if (acc->size == szc_long && acc->base == btc_double) {
    kind = fk_long_double;
  } else if (acc->size == szc_long && !gnu_mode && !strict_ansi_mode) {
    pos_warning(ec_nonstandard_long_float, &state->specifiers_position);
    kind = fk_double;
  } else if (acc->size != szc_none) {
    bad_combination(acc, state);
    return error_type();
  }
  if (acc->complex == cxc_complex)
    return complex_type(kind);
  return acc->complex == cxc_imaginary ? imaginary_type(kind) : float_type(kind);
}

static bool takes_no_words(a_base_type_code base) {
  return base == btc_void || (base >= btc_wchar_t && base <= btc_bool) || base >= btc_class;
}

static a_type* plain_type_of_base(a_base_type_code base) {
  switch (base) {
  case btc_void:
    return void_type();
  case btc_wchar_t:
    return wchar_t_type();
  case btc_char16_t:
    return char16_t_type();
  case btc_char32_t:
    return char32_t_type();
  default:
    return bool_type();
  }
}

// False after a message: the complex word goes with no such type (C99 6.7.2
// p2).
static bool complex_words_are_good(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  if (acc->complex == cxc_none || acc->base == btc_float || acc->base == btc_double ||
      acc->base == btc_error)
    return true;
  if (acc->base == btc_none && gcc_mode && !any_size_or_sign(acc)) {
    acc->base = btc_double;
    return true;
  }
  note_specifier_error(state);
  if (acc->base == btc_none && !any_size_or_sign(acc))
    pos_error(ec_missing_floating_point_type, &state->specifiers_position);
  else
    pos_st_error(ec_only_applies_to_float_types, &state->specifiers_position,
                 token_names[acc->complex == cxc_complex ? tok_complex : tok_imaginary]);
  return false;
}

// Rule 6.3: the basic numerical types stand in typedefs alone.
static void check_misra_basic_type(unsigned options, const a_specifier_accumulator* acc,
                                   const a_decl_parse_state* state) {
  bool is_basic = acc->base == btc_char || acc->base == btc_int || acc->base == btc_float ||
                  acc->base == btc_double || (acc->base == btc_none && any_size_or_sign(acc));
  if (check_misra_c_2004 && is_basic && state->storage_class != sc_typedef &&
      !(options & dso_skip_misra_basic_type_check))
    pos_diagnostic(misra_advisory_severity, ec_misra_c_2004_6_3, &state->specifiers_position);
}

// A type of the enclosing function whose size is known at run time only.
static bool is_nonlocal_vla_type(unsigned options, const a_specifier_accumulator* acc) {
  return (options & dso_member) && acc->base == btc_named && in_cplusplus_mode() &&
         depth_innermost_function_scope >= 0 && is_variably_modified_type(acc->type);
}

a_type* type_of_words(unsigned options, a_specifier_accumulator* acc, a_decl_parse_state* state) {
  if (!complex_words_are_good(acc, state))
    return error_type();
  if (is_nonlocal_vla_type(options, acc)) {
    pos_error(ec_nonlocal_vla_not_allowed, &state->specifiers_position);
    return error_type();
  }
  if (acc->base == btc_named && any_size_or_sign(acc))
    modify_type_name(acc, state);
  check_misra_basic_type(options, acc, state);
  bool is_floating = acc->base == btc_float || acc->base == btc_double;
  if ((is_floating && acc->sign != sgc_none) ||
      (any_size_or_sign(acc) && takes_no_words(acc->base)) ||
      (acc->base == btc_char && acc->size != szc_none)) {
    bad_combination(acc, state);
    return error_type();
  }
  switch (acc->base) {
  case btc_none:
  case btc_int:
    return int_type_of_words(acc);
  case btc_char:
    return char_type_of_words(acc);
  case btc_float:
  case btc_double:
    return floating_type_of_words(acc, state);
  case btc_named:
  case btc_class:
  case btc_enum:
    return acc->type;
  case btc_auto:
  case btc_decltype_auto:
    state->decl_flags.has_auto_type = true;
    return make_auto_type(&state->specifiers_position, acc->base == btc_decltype_auto);
  case btc_unknown:
    return unknown_type();
  case btc_error:
    return error_type();
  default:
    return plain_type_of_base(acc->base);
  }
}

// ---- typeof and decltype ----

a_type* scan_typeof(a_decl_parse_state* state) {
  check_stack_limit();
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return error_type();
  add_stop_token(tok_rparen);
  a_type* type = is_decl_not_expr(dst_expr_context) ? type_name() : scan_typeof_operand();
  remove_stop_token(tok_rparen);
  state->end_position = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  return type;
}

// The declared type of the member that the operand selects; null when it is no
// `object.member` or `pointer->member`.
static a_type* type_of_selected_member(const an_operand* operand) {
  if (operand->kind != ok_expression || operand->variant.expr->kind != expr_operation)
    return nullptr;
  const an_expr_node* node = operand->variant.expr;
  const an_expr_node* inner = node->variant.operation.operands;
  // The member may be a reference.
  if (node->variant.operation.op == eok_ref_indirect && inner->kind == expr_operation)
    node = inner;
  const auto& operation = node->variant.operation;
  bool is_selection = operation.op == eok_dot_field || operation.op == eok_arrow_field;
  return is_selection ? operation.operands->next->type : nullptr;
}

// C++11 7.1.6.2 p4.
static a_type* decltype_of_operand(const an_operand* operand) {
  a_type* type = operand->type;
  if (is_error_operand(operand) || is_error_type(type))
    return error_type();
  if (!operand->flags.parenthesized) {
    if (operand->flags.names_variable)
      return type;
    if (a_type* member_type = type_of_selected_member(operand))
      return member_type;
  }
  if (operand->state != os_glvalue)
    return type;
  bool is_xvalue = operand->kind == ok_expression && operand->variant.expr->is_xvalue;
  return make_reference_to_reference(type, is_xvalue);
}

void scan_operand_for_its_type(an_unevaluated_operand* out, bool stops_at_comma) {
  a_full_expression full;
  an_operand operand;
  begin_full_expression(ek_unevaluated, &full);
  full.entry.flags.in_decltype_or_typeof = true;
  uint32_t flags = stops_at_comma ? sef_no_comma : 0u;
  scan_expr(&operand, nullptr, lev_none, flags);
  out->decltype_type = decltype_of_operand(&operand);
  out->is_lvalue = operand.state == os_glvalue || operand.state == os_function_designator;
  eliminate_unusual_operand_kinds(&operand);
  out->type = is_error_operand(&operand) ? error_type() : operand.type;
  end_full_expression(&full, &operand);
}

a_type* scan_decltype(a_base_type_code* base, a_decl_parse_state* state) {
  check_stack_limit();
  a_type* type = error_type();
  *base = btc_named;
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return type;
  add_stop_token(tok_rparen);
  if (curr_token == tok_auto && auto_type_specifier_enabled && std_version >= 201402) {
    *base = btc_decltype_auto;
    get_token();
  } else {
    an_unevaluated_operand operand;
    scan_operand_for_its_type(&operand, false);
    type = operand.decltype_type;
  }
  remove_stop_token(tok_rparen);
  state->end_position = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  return type;
}
