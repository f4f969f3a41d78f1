// Enum specifiers (C99 6.7.2.2).

#include "attribute.h"
#include "const_ints.h"
#include "decl_spec.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "types.h"

namespace {

struct an_enum_state {
  a_type* type;
  a_constant* last;    // enumerator
  uint64_t next_value; // of an enumerator without a value
  bool next_is_signed;
  bool next_overflows;
  bool any_negative;
  uint64_t least;    // of those that are negative
  uint64_t greatest; // of those that aren't negative
  bool any_out_of_int_range;
};

} // namespace

static a_type* make_enum_type(a_symbol_locator* locator) {
  a_type* type = alloc_type(tk_integer);
  type->variant.integer.is_enum = true;
  type->is_incomplete = true;
  int depth = decl_level_of_tags();
  a_symbol* symbol = locator->is_unnamed ? make_symbol(symk_enum, locator)
                                         : enter_symbol(symk_enum, locator, depth, nullptr);
  symbol->variant.type = type;
  set_source_corresp_with_scope_depth(&type->source_corresp, symbol, depth);
  type->source_corresp.is_unnamed = locator->is_unnamed;
  add_to_types_list(type, depth);
  return type;
}

static a_type* enum_type_of_tag(a_symbol_locator* locator, bool is_definition) {
  a_symbol* symbol = curr_tag_symbol(locator, is_definition);
  if (!symbol) {
    if (!is_definition && !gnu_mode)
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                     ec_nonstd_forward_decl_enum, &locator->position);
    return make_enum_type(locator);
  }
  if (symbol->kind != symk_enum) {
    pos_sy_error(ec_tag_kind_incompatible_with_declaration, &locator->position, symbol);
    return error_type();
  }
  a_type* type = symbol->variant.type;
  if (is_definition && type->variant.integer.integer_supplement->enum_is_complete) {
    pos_sy_error(ec_already_defined, &locator->position, symbol);
    make_unnamed_locator(locator, &locator->position);
    return make_enum_type(locator);
  }
  if (!is_definition)
    record_symbol_reference(srk_reference | srk_type, symbol, &locator->position, true);
  return type;
}

// ---- Enumerators ----

static void note_value(an_enum_state* state, uint64_t value, bool is_signed) {
  bool is_negative = is_signed && static_cast<int64_t>(value) < 0;
  if (is_negative && (!state->any_negative || value < state->least))
    state->least = value;
  if (is_negative)
    state->any_negative = true;
  else if (value > state->greatest)
    state->greatest = value;
  if (!in_range_for_integer_kind(value, is_signed, ik_int))
    state->any_out_of_int_range = true;
}

// At the `=`, if there is one. The value of an enumerator is its own, or one
// above that of the last.
static void scan_enumerator_value(an_enum_state* state, a_constant* enumerator) {
  uint64_t value = state->next_value;
  bool is_signed = state->next_is_signed;
  a_source_position position = enumerator->source_corresp.position;
  if (curr_token == tok_assign) {
    get_token();
    position = pos_curr_token;
    a_constant constant;
    scan_integral_constant_expression(&constant);
    if (constant.kind == con_integer) {
      value = constant.value.int_value;
      is_signed = int_constant_is_signed(&constant);
    }
  } else if (state->next_overflows) {
    pos_error(ec_enum_value_out_of_int_range, &position);
  }
  if (in_C_mode() && strict_ansi_mode && !in_range_for_integer_kind(value, is_signed, ik_int))
    pos_diagnostic(strict_ansi_error_severity, ec_enum_value_out_of_int_range, &position);
  note_value(state, value, is_signed);
  bool fits_int = in_range_for_integer_kind(value, is_signed, ik_int);
  bool fits_unsigned = in_range_for_integer_kind(value, is_signed, ik_unsigned_int);
  int kind = fits_int        ? ik_int
             : fits_unsigned ? ik_unsigned_int
             : is_signed     ? ik_long_long
                             : ik_unsigned_long_long;
  enumerator->type = integer_type(kind);
  enumerator->value.int_value = value;
  state->next_value = value;
  state->next_is_signed = is_signed;
  add_integer_values(&state->next_value, 1, is_signed, &state->next_overflows);
}

static a_constant* make_enumerator(an_enum_state* state, a_symbol_locator* locator) {
  a_constant* enumerator = fs_constant(con_integer);
  locator->symbol = nullptr;
  a_symbol* previous = forget_predeclared_function(curr_scope_id_lookup(locator, ilo_none));
  if (previous) {
    pos_st_error(ec_id_already_declared, &locator->position, locator->header->identifier);
    set_to_error_locator(locator);
  }
  locator->symbol = nullptr;
  int depth = decl_level_of_tags();
  a_symbol* symbol = make_symbol(symk_constant, locator);
  symbol->variant.constant = enumerator;
  set_source_corresp_with_scope_depth(&enumerator->source_corresp, symbol, depth);
  enumerator->is_enumerator = true;
  enumerator->position = locator->position;
  // Its scope begins behind its value (C99 6.2.1 p7).
  scan_enumerator_value(state, enumerator);
  add_symbol_to_symbol_table(symbol, depth, nullptr);
  record_symbol_declaration(srk_definition, symbol, &locator->position, nullptr);
  return enumerator;
}

static void enumerator_definition(an_enum_state* state) {
  a_symbol_locator locator = locator_for_curr_id;
  get_token();
  an_attribute* attributes = scan_attributes(al_enumerator);
  a_constant* enumerator = make_enumerator(state, &locator);
  attach_attributes(attributes, enumerator, iek_constant);
  if (state->last)
    state->last->next = enumerator;
  else
    state->type->variant.integer.enum_data.first_enumerator = enumerator;
  state->last = enumerator;
}

// At the `{`.
static void enumerator_list(an_enum_state* state) {
  add_stop_token(tok_rbrace);
  add_stop_token(tok_comma);
  get_token();
  for (;;) {
    if (curr_token == tok_identifier)
      enumerator_definition(state);
    else if (!required_token_no_advance(tok_identifier, ec_exp_identifier) &&
             curr_token == tok_identifier)
      continue;
    a_source_position comma = pos_curr_token;
    if (!loop_token(tok_comma))
      break;
    if (curr_token == tok_rbrace) {
      if (in_C_mode() && strict_ansi_mode && std_version < 199901)
        pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_extra_comma, &comma);
      break;
    }
  }
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rbrace);
  required_token(tok_rbrace, ec_exp_rbrace);
}

static bool holds_values(const an_enum_state* state, an_integer_kind kind) {
  if (kind == ik_int)
    return !state->any_out_of_int_range;
  return le_max_integer_value_of_kind(state->greatest, kind) &&
         !(state->any_negative &&
           (!int_kind_is_signed(kind) || !in_range_for_integer_kind(state->least, true, kind)));
}

// An enum is an int, or the smallest wider kind that holds all its values; a
// packed one may be narrower.
static an_integer_kind kind_for_values(const an_enum_state* state) {
  static const an_integer_kind kinds[] = {
      ik_signed_char, ik_unsigned_char, ik_short,     ik_unsigned_short,
      ik_int,         ik_unsigned_int,  ik_long_long, ik_unsigned_long_long};
  const an_integer_type_variant& info = state->type->variant.integer;
  const bool may_be_small = info.is_packed_enum || info.enum_may_be_smaller_than_int;
  const an_integer_kind least = may_be_small ? ik_signed_char : ik_int;
  for (an_integer_kind kind : kinds)
    if (kind >= least && holds_values(state, kind))
      return kind;
  return ik_long_long;
}

static void complete_enum_type(an_enum_state* state) {
  a_type* type = state->type;
  type->variant.integer.int_kind = kind_for_values(state);
  type->variant.integer.integer_supplement->enum_is_complete = true;
  type->is_incomplete = false;
  set_type_size(type);
  process_dependent_type_fixups(type);
}

static a_type* scan_enum_definition(a_type* type, an_attribute* attributes,
                                    a_decl_parse_state* decl_state) {
  an_enum_state state = {};
  state.type = type;
  state.next_is_signed = true;
  decl_state->decl_flags.defines_tag = true;
  enumerator_list(&state);
  append_attributes(&attributes, scan_gnu_attribute_groups(al_tag_end));
  attach_type_attributes(type, attributes);
  complete_enum_type(&state);
  record_symbol_declaration(srk_definition, type->source_corresp.symbol,
                            &type->source_corresp.position, nullptr);
  return type;
}

a_type* enum_specifier(a_decl_parse_state* state) {
  a_symbol_locator locator;
  an_attribute* attributes;
  if (!scan_tag(&locator, &attributes))
    return error_type();
  bool is_definition = curr_token == tok_lbrace;
  state->decl_flags.declares_tag = !locator.is_unnamed;
  a_type* type =
      locator.is_unnamed ? make_enum_type(&locator) : enum_type_of_tag(&locator, is_definition);
  if (!is_definition)
    return attach_type_attributes(type, attributes);
  if (is_error_type(type)) {
    flush_until_matching_token();
    return type;
  }
  return scan_enum_definition(type, attributes, state);
}
