// Declaration specifiers: the parse states, and the loop over the specifiers.

#include "decl_spec_int.h"

#include "attribute.h"
#include "class_decl.h"
#include "error.h"
#include "lexical.h"
#include "lookup.h"
#include "mem_manage.h"
#include "misra.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "types.h"

// ---- Parse states ----

static a_decl_parse_state* avail_decl_parse_states;
static an_end_of_parse_action* avail_end_of_parse_actions;

void clear_decl_parse_state(a_decl_parse_state* state) {
  *state = a_decl_parse_state();
  state->start_position = pos_curr_token;
  state->head_state = state;
  state->modifiers.before_gnu_40800 = gpp_mode && gnu_version < 40800;
}

a_decl_parse_state* alloc_decl_parse_state() {
  a_decl_parse_state* state = avail_decl_parse_states;
  if (state)
    avail_decl_parse_states = state->next_free;
  else
    state = static_cast<a_decl_parse_state*>(alloc_in_region(0, sizeof *state));
  clear_decl_parse_state(state);
  return state;
}

void free_decl_parse_state(a_decl_parse_state* state) {
  state->next_free = avail_decl_parse_states;
  avail_decl_parse_states = state;
}

void add_end_of_parse_action(an_end_of_parse_function function, a_decl_parse_state* state,
                             bool keep) {
  an_end_of_parse_action* action = avail_end_of_parse_actions;
  if (action)
    avail_end_of_parse_actions = action->next;
  else
    action = static_cast<an_end_of_parse_action*>(alloc_in_region(0, sizeof *action));
  *action = {state->end_of_parse_actions, function, keep};
  state->end_of_parse_actions = action;
}

static void free_end_of_parse_action(an_end_of_parse_action* action) {
  action->next = avail_end_of_parse_actions;
  avail_end_of_parse_actions = action;
}

void run_end_of_parse_actions(a_decl_parse_state* state, bool final) {
  an_end_of_parse_action* kept = nullptr;
  while (an_end_of_parse_action* action = state->end_of_parse_actions) {
    state->end_of_parse_actions = action->next;
    action->function(state);
    if (final && action->keep) {
      action->next = kept;
      kept = action;
    } else {
      free_end_of_parse_action(action);
    }
  }
  state->end_of_parse_actions = kept;
}

void discard_end_of_parse_actions(a_decl_parse_state* state) {
  while (an_end_of_parse_action* action = state->end_of_parse_actions) {
    state->end_of_parse_actions = action->next;
    free_end_of_parse_action(action);
  }
}

// ---- Errors ----

void note_specifier_error(a_decl_parse_state* state) {
  state->decl_flags.specifier_error = true;
  state->parse_flags.specifier_error = true;
}

void specifier_error(an_error_code code, const a_source_position* position,
                     a_decl_parse_state* state) {
  pos_error(code, position);
  note_specifier_error(state);
}

// ---- Tags ----

bool scan_tag(a_symbol_locator* locator, an_attribute** attributes, a_decl_parse_state* state) {
  a_source_position position = pos_curr_token;
  get_token();
  *attributes = scan_attributes(al_tag);
  if (f_is_generalized_identifier_start() && curr_token != tok_operator) {
    if (in_cplusplus_mode())
      coalesce_and_lookup_qualified_name(ilo_tag);
    *locator = locator_for_curr_id;
    if (!locator->is_qualified)
      locator->symbol = nullptr;
    state->end_position = end_pos_curr_token;
    get_token();
  } else if (curr_token == tok_lbrace || (curr_token == tok_colon && in_cplusplus_mode())) {
    make_unnamed_locator(locator, &position);
  } else {
    syntax_error(ec_exp_definition_of_tag);
    return false;
  }
  return true;
}

// ---- Type words ----

// Old compilers let a repeated word pass.
static an_error_severity severity_of_repeated_sign(const a_decl_parse_state* state) {
  bool is_old = cfront_2_1_mode || cfront_3_0_mode || is_gnu_before(30300) ||
                (is_gnu_before(40000) && state->storage_class != sc_typedef);
  return is_old ? es_warning : es_error;
}

static void repeated_word(an_error_severity severity, a_decl_parse_state* state) {
  pos_diagnostic(severity, ec_dupl_decl_specifier, &pos_curr_token);
  if (severity >= es_error)
    note_specifier_error(state);
}

static void scan_sign(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  a_sign_code sign = curr_token == tok_signed ? sgc_signed : sgc_unsigned;
  if (acc->sign == sign)
    repeated_word(severity_of_repeated_sign(state), state);
  else if (acc->sign != sgc_none)
    bad_combination(acc, state);
  acc->sign = sign;
  get_token();
}

static void scan_size(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  bool is_long = curr_token == tok_long;
  if (acc->size == szc_none) {
    acc->size = is_long ? szc_long : szc_short;
  } else if (is_long && acc->size == szc_long) {
    acc->size = szc_long_long;
    if (strict_ansi_mode && !long_long_is_standard)
      pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_long_long, &pos_curr_token);
  } else if (!(gcc_mode && is_gnu_before(40000))) {
    bad_combination(acc, state);
  }
  get_token();
}

// `typedef int void;` of headers that were written for compilers without void.
static bool is_old_void_typedef(const a_specifier_accumulator* acc,
                                const a_decl_parse_state* state) {
  return curr_token == tok_void && in_C_mode() && state->storage_class == sc_typedef &&
         acc->base != btc_void && next_token() == tok_semicolon;
}

static void scan_base_type(unsigned options, a_specifier_accumulator* acc,
                           a_decl_parse_state* state) {
  if (!(options & dso_type_specifiers))
    specifier_error(ec_type_specifier_not_allowed, &pos_curr_token, state);
  else if (is_old_void_typedef(acc, state))
    state->decl_flags.is_plain_void = true;
  else if (acc->base != btc_none && !is_gnu_before(30300))
    bad_combination(acc, state);
  if (acc->base == btc_none)
    acc->base = base_of_token(curr_token);
  get_token();
}

static void scan_complex_word(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  a_complex_code code = curr_token == tok_complex ? cxc_complex : cxc_imaginary;
  if (acc->complex == code)
    repeated_word(es_error, state);
  else if (acc->complex != cxc_none)
    bad_combination(acc, state);
  acc->complex = code;
  get_token();
}

static void take_type(a_base_type_code base, a_type* type, a_specifier_accumulator* acc,
                      a_decl_parse_state* state) {
  bool modifies_type = base == btc_named && acc->base == btc_none && any_size_or_sign(acc);
  if (any_type_word(acc) && !modifies_type) {
    bad_combination(acc, state);
    return;
  }
  acc->base = type && is_error_type(type) ? btc_error : base;
  acc->type = type;
}

static a_type* type_of_target_word(a_token_kind token) {
  return token == tok_znt_size_type      ? size_t_type()
         : token == tok_znt_ptrdiff_type ? ptrdiff_t_type()
                                         : bool_type();
}

static void scan_struct_or_union(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  if (check_misra_c_2004 && curr_token == tok_union)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_18_4, &pos_curr_token);
  take_type(btc_class, class_specifier(state), acc, state);
}

static void scan_decltype_specifier(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  a_base_type_code base;
  a_type* type = scan_decltype(&base, state);
  take_type(base, base == btc_decltype_auto ? nullptr : type, acc, state);
}

// ---- `auto` as a type (C++11 7.1.6.4) ----

// Where the word has both meanings it is a storage class before a type alone.
static bool auto_is_type(const a_specifier_accumulator* acc) {
  if (!in_cplusplus_mode() || !auto_type_specifier_enabled)
    return false;
  if (any_type_word(acc))
    return acc->base == btc_auto;
  return !auto_storage_class_specifier_enabled || !is_type_keyword(next_token());
}

static void scan_auto_type(unsigned options, a_specifier_accumulator* acc,
                           a_decl_parse_state* state) {
  if (acc->base == btc_auto) {
    specifier_error(ec_auto_used_two_ways, &pos_curr_token, state);
  } else if (!(options & dso_storage_class) || (options & dso_parameter)) {
    specifier_error(ec_auto_not_allowed_here, &pos_curr_token, state);
    acc->base = btc_error;
  } else {
    acc->base = btc_auto;
  }
  get_token();
}

// ---- Type names ----

// Whether the type name at hand leaves a name to be declared: `unsigned T x;`
// modifies T, `unsigned T;` declares it again.
static bool declarator_follows_type_name() {
  a_token_kind next = next_token();
  return next == tok_identifier || next == tok_star || next == tok_ampersand ||
         next == tok_and_and || is_qualifier_token(next);
}

static bool takes_type_name(unsigned options, const a_specifier_accumulator* acc) {
  if (acc->base != btc_none || acc->complex != cxc_none)
    return false;
  if (!any_size_or_sign(acc))
    return true;
  bool is_possible = C_dialect == cd_k_and_r ||
                     ((options & dso_modified_typedef_allowed) && gpp_mode && gnu_version >= 30400);
  return is_possible && declarator_follows_type_name();
}

// Whether the current name is that of the class being defined and begins the
// declarator of a constructor (C++11 12.1 p1).
static bool is_constructor_decl(unsigned options) {
  if (!(options & dso_member) || !in_cplusplus_mode() || curr_token != tok_identifier)
    return false;
  const a_type* class_type = scope_stack[depth_scope_stack].assoc_type;
  if (scope_stack[depth_scope_stack].kind != sk_class || class_type->source_corresp.is_unnamed ||
      class_type->source_corresp.symbol->header != locator_for_curr_id.header)
    return false;
  a_token_kind second;
  return next_two_tokens(tok_lparen, &second) && second != tok_star && second != tok_ampersand;
}

// Whether a constructor, a destructor or a conversion function is declared,
// which have no type among their specifiers.
static bool is_name_without_type(unsigned options) {
  if (in_C_mode() || !(options & dso_storage_class))
    return false;
  if (curr_token == tok_operator)
    coalesce_and_lookup_generalized_identifier(ilo_none);
  if (curr_token == tok_compl)
    return (options & dso_member) != 0;
  if (curr_token != tok_identifier)
    return false;
  const a_symbol_locator& locator = locator_for_curr_id;
  return locator.is_constructor_name || locator.is_destructor_name || locator.is_conversion_name ||
         is_constructor_decl(options);
}

// A type name ends the list once the type is known, so that `T T;` declares.
// False when the identifier isn't part of the specifiers.
static bool scan_type_name_specifier(unsigned options, a_specifier_accumulator* acc,
                                     a_decl_parse_state* state) {
  if (!takes_type_name(options, acc) || is_constructor_decl(options))
    return false;
  a_symbol* symbol = curr_type_symbol();
  if (!symbol)
    return false;
  check_access_to_name(&locator_for_curr_id, &pos_curr_token);
  record_symbol_reference(srk_reference | srk_type, symbol, &pos_curr_token, true);
  a_type* type = symbol->variant.type;
  get_token();
  take_type(btc_named, type, acc, state);
  return true;
}

static void refuse_specifier(a_decl_parse_state* state) {
  pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, token_names[curr_token]);
  note_specifier_error(state);
  get_token();
  if (curr_token == tok_lparen)
    flush_until_matching_token();
}

// `friend typename T;` is new in C++11 (11.3 p3).
static bool is_typename_of_friend(const a_decl_parse_state* state) {
  if (curr_token != tok_typename || !state->modifiers.friend_seen)
    return false;
  if (std_version < 201103)
    pos_error(ec_no_typename_in_friend_class_decl, &pos_curr_token);
  return true;
}

static bool is_unsupported_specifier(a_token_kind token) {
  return token == tok_atomic || token == tok_auto_type || token == tok_typename ||
         token == tok_underlying_type || token == tok_znt_vector_type;
}

// ---- The loop ----

// A specifier that is part of the type; false at what is none.
static bool scan_type_specifier(unsigned options, a_specifier_accumulator* acc,
                                a_decl_parse_state* state) {
  switch (curr_token) {
  case tok_signed:
  case tok_unsigned:
    scan_sign(acc, state);
    return true;
  case tok_short:
  case tok_long:
    scan_size(acc, state);
    return true;
  case tok_complex:
  case tok_imaginary:
    scan_complex_word(acc, state);
    return true;
  case tok_enum:
    take_type(btc_enum, enum_specifier(state), acc, state);
    return true;
  case tok_struct:
  case tok_union:
  case tok_class:
    scan_struct_or_union(acc, state);
    return true;
  case tok_typeof:
    take_type(btc_named, scan_typeof(state), acc, state);
    return true;
  case tok_decltype:
    scan_decltype_specifier(acc, state);
    return true;
  case tok_znt_size_type:
  case tok_znt_ptrdiff_type:
  case tok_znt_bool_type:
    take_type(btc_named, type_of_target_word(curr_token), acc, state);
    get_token();
    return true;
  case tok_identifier:
  case tok_colon_colon:
    return scan_type_name_specifier(options, acc, state);
  default:
    if (base_of_token(curr_token) == btc_none)
      return false;
    scan_base_type(options, acc, state);
    return true;
  }
}

// One specifier; false at what is none.
static bool scan_specifier(unsigned options, a_specifier_accumulator* acc,
                           a_decl_parse_state* state) {
  if (curr_token == tok_auto && auto_is_type(acc))
    scan_auto_type(options, acc, state);
  else if (is_storage_class_token(curr_token))
    scan_storage_class(options, acc, state);
  else if (is_thread_storage_token(curr_token))
    scan_thread_storage(options, state);
  else if (is_qualifier_token(curr_token))
    scan_qualifier(&state->qualifiers, state);
  else if (is_function_specifier(curr_token))
    scan_function_specifier(options, state);
  else if (is_modifier_token(curr_token))
    scan_modifier(options, state);
  else if (is_attribute_start(al_specifiers))
    append_attributes(&state->attributes_before, scan_attributes(al_specifiers));
  else if (is_typename_of_friend(state))
    get_token();
  else if (is_unsupported_specifier(curr_token))
    refuse_specifier(state);
  else
    return scan_type_specifier(options, acc, state);
  return true;
}

void report_missing_type_specifier(an_error_code code, const a_source_position* position) {
  bool is_error = std_version >= 199901 && strict_ansi_mode;
  if (check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_8_2, position);
  pos_diagnostic(is_error ? strict_ansi_error_severity : es_warning, code, position);
}

// `__attribute__((...)) f() {...}`
static bool begins_function_behind_attributes(unsigned options, const a_decl_parse_state* state) {
  return (options & dso_file_scope) && state->attributes_before && gcc_mode &&
         curr_token == tok_identifier && next_token() == tok_lparen;
}

// The specifiers name no type, which C took for int before 1999. A declaration
// is reported by the one who parses it, when it is known what it declares.
static void handle_missing_type(unsigned options, a_specifier_accumulator* acc,
                                a_decl_parse_state* state, bool any_specifier) {
  const bool is_misspelled = curr_token == tok_identifier && is_misspelled_type(0);
  bool is_int = (any_specifier || begins_function_behind_attributes(options, state)) &&
                in_C_mode() && !(options & dso_member) && !is_misspelled;
  // `const;` is useless in any case.
  state->decl_flags.no_type_given = !(is_int && curr_token == tok_semicolon);
  if ((options & dso_no_type_required) || is_int) {
    acc->base = btc_int;
    if ((options & dso_parameter) || !(options & dso_storage_class))
      report_missing_type_specifier(ec_missing_type_specifier, &state->specifiers_position);
    return;
  }
  if (is_misspelled) {
    pos_st_error(ec_undefined_identifier, &pos_curr_token, locator_for_curr_id.header->identifier);
    get_token();
  } else {
    syntax_error(ec_exp_type_specifier);
  }
  note_specifier_error(state);
  acc->base = btc_error;
}

static bool is_plain_void_specifier(const a_specifier_accumulator* acc,
                                    const a_decl_parse_state* state, int count) {
  bool is_typedef = state->storage_class == sc_typedef && in_C_mode();
  return acc->base == btc_void &&
         (count == 1 || (count == 2 && is_typedef && curr_token == tok_semicolon));
}

// C99 6.8.5 p3: the clause of a for statement declares objects alone.
static void check_type_definition(unsigned options, const a_decl_parse_state* state) {
  if ((options & dso_for_init) && state->decl_flags.defines_tag)
    pos_diagnostic(in_C_mode() ? strict_ansi_error_severity : es_error,
                   ec_type_definition_not_allowed, &state->specifiers_position);
}

// What begins a line behind the definition of a class or an enum and can't go on with
// it: the `;` of the definition is missing.
static bool begins_next_declaration(const a_decl_parse_state* state) {
  if (!state->decl_flags.defines_tag || !state->parse_flags.is_top_level ||
      state->end_position.seq >= pos_curr_token.seq)
    return false;
  if (is_storage_class_token(curr_token))
    return is_type_keyword(next_token());
  return is_type_keyword(curr_token) ||
         (curr_type_symbol() && (next_token() == tok_identifier || next_token() == tok_star));
}

void decl_specifiers(unsigned options, a_decl_parse_state* state) {
  a_specifier_accumulator acc = {};
  int count = 0;
  state->specifiers_position = pos_curr_token;
  error_position = pos_curr_token;
  append_attributes(&state->attributes_before, scan_attributes(al_specifiers));
  while (!begins_next_declaration(state)) {
    // Of a specifier that is one token; the others set the end themselves.
    a_source_position last_end = state->end_position;
    state->end_position = end_pos_curr_token;
    if (!scan_specifier(options, &acc, state)) {
      state->end_position = last_end;
      break;
    }
    ++count;
    state->decl_flags.type_specifier_seen = any_type_word(&acc);
  }
  if (is_plain_void_specifier(&acc, state, count))
    state->decl_flags.is_plain_void = true;
  if (!any_type_word(&acc) && is_name_without_type(options))
    acc.base = btc_unknown;
  if (!any_type_word(&acc))
    handle_missing_type(options, &acc, state, count != 0);
  a_type* type = type_of_words(options, &acc, state);
  state->type_specifier_type = apply_specifier_qualifiers(type, state);
  check_storage_of_specifiers(options, state);
  check_type_definition(options, state);
  state->declared_type = state->base_type = state->type_specifier_type;
  state->storage_class_before_declarator = state->storage_class;
  state->positions.specifiers_range = {state->specifiers_position, state->end_position};
  state->positions.storage_class_position = state->storage_class_position;
}

void decl_spec_one_time_init() {
  avail_decl_parse_states = nullptr;
  avail_end_of_parse_actions = nullptr;
}
