// Type qualifiers among the specifiers and behind a `*` (C99 6.7.3).

#include "decl_spec_int.h"
#include "error.h"
#include "lexical.h"
#include "mode_words.h"
#include "types.h"

static a_type_qualifier_set qualifier_of_token(a_token_kind token) {
  switch (token) {
  case tok_const:
    return tq_const;
  case tok_volatile:
    return tq_volatile;
  case tok_restrict:
  case tok_gnu_restrict:
    return tq_restrict;
  case tok_nullable:
    return tq_nullable;
  case tok_nonnull:
    return tq_nonnull;
  case tok_null_unspecified:
    return tq_null_unspecified;
  default:
    return tq_none;
  }
}

bool is_qualifier_token(a_token_kind token) {
  return qualifier_of_token(token) != tq_none;
}

static a_source_position* qualifier_position(a_decl_parse_state* state,
                                             a_type_qualifier_set qualifier) {
  return qualifier == tq_const      ? &state->const_position
         : qualifier == tq_volatile ? &state->volatile_position
                                    : &state->restrict_position;
}

// C99 6.7.3 p4 permits a repeat.
static void report_repeated_qualifier(const a_source_position* position) {
  bool is_permitted = in_C_mode() && std_version >= 199901;
  pos_diagnostic(is_permitted ? es_warning : strict_ansi_error_severity, ec_dupl_type_qualifier,
                 position);
}

void scan_qualifier(a_type_qualifier_set* qualifiers, a_decl_parse_state* state) {
  a_type_qualifier_set qualifier = qualifier_of_token(curr_token);
  if (*qualifiers & qualifier)
    report_repeated_qualifier(&pos_curr_token);
  if (curr_token == tok_gnu_restrict && gnu_mode && report_gnu_extensions)
    pos_warning(ec_gnu_restrict_is_nonstandard, &pos_curr_token);
  *qualifiers |= qualifier;
  if (state)
    *qualifier_position(state, qualifier) = pos_curr_token;
  get_token();
}

a_type_qualifier_set collect_type_qualifiers(a_decl_parse_state* positions) {
  a_type_qualifier_set qualifiers = tq_none;
  while (is_qualifier_token(curr_token))
    scan_qualifier(&qualifiers, positions);
  return qualifiers;
}

// C99 6.7.3 p2. GNU C++ has restricted references.
bool restrict_qualifier_is_allowed(a_type* type, const a_source_position* position) {
  a_type* bare = skip_typerefs(type);
  if (is_error_type(bare))
    return false;
  if (bare->kind == tk_template_param)
    return true;
  if (bare->kind == tk_pointer && !is_function_type(type_pointed_to(bare)))
    return true;
  pos_error(ec_restrict_not_allowed, position);
  return false;
}

bool check_nullability_qualifiers(a_type_qualifier_set bits, a_type* type,
                                  const a_source_position* position) {
  bits &= tq_nullability;
  if (bits == tq_none || is_error_type(type))
    return false;
  if ((bits & (bits - 1)) != 0 || (get_type_qualifiers(type) & tq_nullability & ~bits) != 0) {
    pos_error(ec_conflicting_nullability, position);
    return false;
  }
  a_type_kind kind = type_kind(type);
  if ((kind == tk_pointer && !is_reference_type(type)) || kind == tk_ptr_to_member ||
      kind == tk_template_param)
    return true;
  pos_ty_error(ec_invalid_type_for_nullability, position, type);
  return false;
}

void check_ql_type_qualifiers(a_type*, const a_source_position*, unsigned) {
  // No qualifier of a member is special to this family of processors.
}

// A qualifier that the named type has already. C++ ignores it (C++11 7.1.6.1
// p1).
static void report_qualifiers_of_typedef(a_type* type, const a_decl_parse_state* state) {
  a_type_qualifier_set repeated = state->qualifiers & get_type_qualifiers(type) & tq_all_qualifiers;
  if (in_C_mode() && (repeated & (tq_cv | tq_restrict)) && !is_array_type(type))
    report_repeated_qualifier(&state->specifiers_position);
}

a_type* apply_specifier_qualifiers(a_type* type, a_decl_parse_state* state) {
  a_type_qualifier_set qualifiers = state->qualifiers;
  const a_source_position* position = &state->specifiers_position;
  if (qualifiers == tq_none || is_error_type(type))
    return type;
  report_qualifiers_of_typedef(type, state);
  if ((qualifiers & tq_restrict) && !restrict_qualifier_is_allowed(type, &state->restrict_position))
    qualifiers &= ~tq_restrict;
  if ((qualifiers & tq_nullability) && !check_nullability_qualifiers(qualifiers, type, position))
    qualifiers &= ~tq_nullability;
  if (qualifiers == tq_none)
    return type;
  if (is_function_type(type)) {
    pos_warning(ec_cv_qualified_function_type, position);
    return type;
  }
  if (is_reference_type(type))
    qualifiers &= tq_restrict;
  return make_qualified_type(type, qualifiers);
}
