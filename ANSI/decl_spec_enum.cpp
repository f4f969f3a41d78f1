// Enum specifiers (C99 6.7.2.2, C++11 7.2).

#include "attribute.h"
#include "const_ints.h"
#include "declarator.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
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
  // For the rule on initialised enumerators.
  int count;
  int count_with_value;
  bool first_has_value;
};

// The head of the specifier.
struct an_enum_head {
  a_symbol_locator locator;
  an_attribute* attributes;
  bool is_scoped;
  a_type* underlying_type; // as written; null: none
  a_source_position underlying_position;
};

} // namespace

// A type whose values are known from its underlying type is complete at once
// (C++11 7.2 p3).
static void set_underlying_type(a_type* type, const an_enum_head* head) {
  an_integer_type_supplement* supplement = type->variant.integer.integer_supplement;
  type->variant.integer.is_scoped_enum = head->is_scoped;
  if (!head->underlying_type && !head->is_scoped)
    return;
  a_type* underlying = head->underlying_type ? head->underlying_type : integer_type(ik_int);
  supplement->has_fixed_underlying_type = true;
  supplement->underlying_type = underlying;
  supplement->underlying_type_position = head->underlying_position;
  type->variant.integer.int_kind = int_kind_of(underlying);
  type->is_incomplete = false;
  set_type_size(type);
}

static a_type* make_enum_type(an_enum_head* head) {
  a_symbol_locator* locator = &head->locator;
  a_type* type = alloc_type(tk_integer);
  type->variant.integer.is_enum = true;
  type->is_incomplete = true;
  int depth = decl_level_of_tags();
  a_symbol* symbol = locator->is_unnamed ? make_symbol(symk_enum, locator)
                                         : enter_symbol(symk_enum, locator, depth, nullptr);
  symbol->variant.type = type;
  set_source_corresp_with_scope_depth(&type->source_corresp, symbol, depth);
  type->source_corresp.is_unnamed = locator->is_unnamed;
  set_underlying_type(type, head);
  add_to_types_list(type, depth);
  return type;
}

// Every declaration of an enumeration names one underlying type (C++11 7.2 p3).
static void check_underlying_type(const a_type* type, const an_enum_head* head) {
  const an_integer_type_supplement* supplement = type->variant.integer.integer_supplement;
  if (!head->underlying_type || !supplement->underlying_type ||
      int_kind_of(head->underlying_type) == int_kind_of(supplement->underlying_type))
    return;
  pos_ty2_error(ec_incompatible_enum_base_types, &head->underlying_position, head->underlying_type,
                supplement->underlying_type);
}

static a_type* enum_type_of_tag(an_enum_head* head, bool is_definition, bool is_declaration) {
  a_symbol_locator* locator = &head->locator;
  a_symbol* symbol = curr_tag_symbol(locator, is_definition || is_declaration);
  if (!symbol) {
    if (!is_definition && !is_declaration && !gnu_mode)
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                     ec_nonstd_forward_decl_enum, &locator->position);
    return make_enum_type(head);
  }
  if (symbol->kind != symk_enum) {
    pos_sy_error(ec_tag_kind_incompatible_with_declaration, &locator->position, symbol);
    return error_type();
  }
  a_type* type = symbol->variant.type;
  check_underlying_type(type, head);
  if (is_definition && type->variant.integer.integer_supplement->enum_is_complete) {
    pos_sy_error(ec_already_defined, &locator->position, symbol);
    make_unnamed_locator(locator, &locator->position);
    return make_enum_type(head);
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

// The kind that holds the value: of the enumeration, or the first of four that
// does.
static int kind_for_value(const an_enum_state* state, uint64_t value, bool is_signed,
                          const a_source_position* position) {
  const an_integer_type_variant& variant = state->type->variant.integer;
  if (variant.integer_supplement->has_fixed_underlying_type) {
    if (!in_range_for_integer_kind(value, is_signed, variant.int_kind))
      pos_ty_error(ec_enum_value_out_of_underlying_range, position,
                   variant.integer_supplement->underlying_type);
    return variant.int_kind;
  }
  if (in_C_mode() && strict_ansi_mode && !in_range_for_integer_kind(value, is_signed, ik_int))
    pos_diagnostic(strict_ansi_error_severity, ec_enum_value_out_of_int_range, position);
  return in_range_for_integer_kind(value, is_signed, ik_int)            ? ik_int
         : in_range_for_integer_kind(value, is_signed, ik_unsigned_int) ? ik_unsigned_int
         : is_signed                                                    ? ik_long_long
                                                                        : ik_unsigned_long_long;
}

// At the `=`, if there is one. The value of an enumerator is its own, or one
// above that of the last.
static void scan_enumerator_value(an_enum_state* state, a_constant* enumerator) {
  uint64_t value = state->next_value;
  bool is_signed = state->next_is_signed;
  a_source_position position = enumerator->source_corresp.position;
  ++state->count;
  if (curr_token == tok_assign) {
    get_token();
    ++state->count_with_value;
    state->first_has_value |= state->count == 1;
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
  int kind = kind_for_value(state, value, is_signed, &position);
  note_value(state, value, is_signed);
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
  bool is_scoped = state->type->variant.integer.is_scoped_enum;
  int depth = is_scoped ? depth_scope_stack : decl_level_of_tags();
  a_symbol* symbol = make_symbol(symk_constant, locator);
  symbol->variant.constant = enumerator;
  set_source_corresp_with_scope_depth(&enumerator->source_corresp, symbol, depth);
  enumerator->is_enumerator = true;
  enumerator->position = locator->position;
  // Its scope begins behind its value (C99 6.2.1 p7).
  scan_enumerator_value(state, enumerator);
  add_symbol_to_symbol_table(symbol, depth, nullptr);
  record_symbol_declaration(srk_definition, symbol, &locator->position, nullptr);
  process_curr_construct_pragmas(symbol, nullptr);
  return enumerator;
}

static void enumerator_definition(an_enum_state* state) {
  // Those in front of the declaration wait for its first declarator.
  a_pending_pragma* outer_pragmas =
      has_construct_pragmas() ? extract_curr_construct_pragmas() : nullptr;
  select_curr_construct_pragmas(true);
  a_symbol_locator locator = locator_for_curr_id;
  get_token();
  an_attribute* attributes = scan_attributes(al_enumerator);
  a_constant* enumerator = make_enumerator(state, &locator);
  attach_attributes(attributes, enumerator, iek_constant);
  reactivate_curr_construct_pragmas(outer_pragmas);
  if (state->type->variant.integer.is_scoped_enum)
    add_to_constants_list(enumerator, depth_scope_stack);
  else if (state->last)
    state->last->next = enumerator;
  else
    state->type->variant.integer.enum_data.first_enumerator = enumerator;
  state->last = enumerator;
}

// At the `{`.
static void enumerator_list(an_enum_state* state, a_decl_parse_state* decl_state) {
  add_stop_token(tok_rbrace);
  add_stop_token(tok_comma);
  get_token();
  // C++11 7.2 p1: the list may be empty.
  while (in_C_mode() || curr_token != tok_rbrace) {
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
  decl_state->end_position = end_pos_curr_token;
}

// Rule 9.3: the first enumerator alone, or all of them.
static void check_misra_values(const an_enum_state* state, const a_source_position* position) {
  bool is_good = state->count_with_value == 0 || state->count_with_value == state->count ||
                 (state->count_with_value == 1 && state->first_has_value);
  if (check_misra_c_2004 && !is_good)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_9_3, position);
}

// Behind the `}` an enumerator of C++ has the type of its enumeration (C++11
// 7.2 p5).
static void give_enumerators_their_type(a_type* type) {
  for (a_constant* enumerator = first_enumerator_of_enum(type); enumerator;
       enumerator = enumerator->next)
    enumerator->type = type;
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
  an_integer_type_supplement* supplement = type->variant.integer.integer_supplement;
  if (!supplement->has_fixed_underlying_type)
    type->variant.integer.int_kind = kind_for_values(state);
  supplement->enum_is_complete = true;
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
  bool is_scoped = type->variant.integer.is_scoped_enum;
  if (is_scoped) {
    push_scope(sk_enum, -1, type, nullptr);
    type->variant.integer.enum_data.scope = scope_stack[depth_scope_stack].il_scope;
  }
  enumerator_list(&state, decl_state);
  if (is_scoped)
    pop_scope();
  required_token(tok_rbrace, ec_exp_rbrace);
  append_attributes(&attributes, scan_gnu_attribute_groups(al_tag_end));
  attach_type_attributes(type, attributes);
  complete_enum_type(&state);
  if (in_cplusplus_mode())
    give_enumerators_their_type(type);
  check_misra_values(&state, &type->source_corresp.position);
  record_symbol_declaration(srk_definition, type->source_corresp.symbol,
                            &type->source_corresp.position, nullptr);
  return type;
}

// ---- The specifier ----

// `enum class`, at the `class`.
static void scan_scoped_keyword(an_enum_head* head) {
  head->is_scoped = true;
  if (std_version < 201103)
    pos_warning(ec_scoped_enum_nonstandard_in_current_mode, &pos_curr_token);
}

// At the `:`.
static void scan_underlying_type(an_enum_head* head) {
  if (std_version < 201103)
    pos_warning(ec_explicit_enum_base_nonstandard_in_current_mode, &pos_curr_token);
  get_token();
  head->underlying_position = pos_curr_token;
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  decl_specifiers(dso_type_specifiers, &state);
  a_type* type = make_unqualified_type(state.type_specifier_type);
  if (!is_error_type(type) && (!is_integral_or_enum_type(type) || is_enum_type(type)))
    pos_error(ec_enum_base_type_must_be_integral, &head->underlying_position);
  else if (!is_error_type(type))
    head->underlying_type = type;
}

// False after a message.
static bool scan_enum_head(an_enum_head* head, a_decl_parse_state* state) {
  *head = an_enum_head();
  if (in_cplusplus_mode() && (next_token() == tok_class || next_token() == tok_struct)) {
    get_token();
    scan_scoped_keyword(head);
  }
  // An underlying type can stand in for the tag.
  if (in_cplusplus_mode() && next_token() == tok_colon) {
    make_unnamed_locator(&head->locator, &pos_curr_token);
    get_token();
  } else if (!scan_tag(&head->locator, &head->attributes, state)) {
    return false;
  }
  if (head->is_scoped && head->locator.is_unnamed)
    pos_error(ec_unnamed_scoped_enum, &head->locator.position);
  if (in_cplusplus_mode() && curr_token == tok_colon)
    scan_underlying_type(head);
  return true;
}

a_type* enum_specifier(a_decl_parse_state* state) {
  an_enum_head head;
  if (!scan_enum_head(&head, state))
    return error_type();
  bool is_definition = curr_token == tok_lbrace;
  // `enum class E;` and `enum E : int;` declare it (C++11 7.2 p3).
  bool is_declaration =
      curr_token == tok_semicolon && (head.is_scoped || head.underlying_type != nullptr);
  state->decl_flags.declares_tag = !head.locator.is_unnamed;
  if (head.is_scoped && !is_definition && !is_declaration)
    pos_error(ec_invalid_scoped_enum_elaboration, &head.locator.position);
  a_type* type = head.locator.is_unnamed ? make_enum_type(&head)
                                         : enum_type_of_tag(&head, is_definition, is_declaration);
  if (!is_definition)
    return attach_type_attributes(type, head.attributes);
  if (is_error_type(type)) {
    flush_until_matching_token();
    return type;
  }
  return scan_enum_definition(type, head.attributes, state);
}
