// Declaration specifiers: the loop over them, and the type that their words
// add up to.

#include "decl_spec.h"

#include <cstring>

#include "attribute.h"
#include "class_decl.h"
#include "declarator.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "lexical.h"
#include "lookup.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pch.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "target.h"
#include "types.h"

// ---- Parse states ----

static a_decl_parse_state* avail_decl_parse_states;
static an_end_of_parse_action* avail_end_of_parse_actions;

void clear_decl_parse_state(a_decl_parse_state* state) {
  *state = a_decl_parse_state();
  state->start_position = pos_curr_token;
  state->head_state = state;
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

// ---- Is it a type? ----

a_symbol* curr_type_symbol() {
  if (curr_token != tok_identifier || locator_for_curr_id.is_error_locator)
    return nullptr;
  a_symbol* symbol = normal_id_lookup(&locator_for_curr_id, ilo_none);
  if (symbol &&
      (symbol->kind == symk_type || (in_cplusplus_mode() && is_tag_symbol_kind(symbol->kind))))
    return symbol;
  return nullptr;
}

static bool is_type_keyword(a_token_kind token) {
  switch (token) {
  case tok_char:
  case tok_double:
  case tok_enum:
  case tok_float:
  case tok_int:
  case tok_long:
  case tok_short:
  case tok_signed:
  case tok_struct:
  case tok_union:
  case tok_class:
  case tok_unsigned:
  case tok_void:
  case tok_c99_bool:
  case tok_bool:
  case tok_wchar_t:
  case tok_char16_t:
  case tok_char32_t:
  case tok_complex:
  case tok_imaginary:
  case tok_typeof:
  case tok_znt_size_type:
  case tok_znt_ptrdiff_type:
  case tok_znt_bool_type:
    return true;
  default:
    return false;
  }
}

static bool is_qualifier_token(a_token_kind token) {
  return token == tok_const || token == tok_volatile || token == tok_restrict ||
         token == tok_gnu_restrict;
}

static bool is_function_specifier(a_token_kind token) {
  return token == tok_inline || token == tok_noreturn;
}

static bool is_modifier_token(a_token_kind token) {
  return token == tok_near || token == tok_far || token == tok_interrupt ||
         token == tok_underscore_interrupt;
}

static bool is_storage_class_token(a_token_kind token) {
  switch (token) {
  case tok_auto:
  case tok_extern:
  case tok_register:
  case tok_static:
  case tok_typedef:
    return true;
  default:
    return false;
  }
}

static bool is_unsupported_specifier(a_token_kind token) {
  return token == tok_gnu_thread || token == tok_thread_local || token == tok_c11_thread_local ||
         token == tok_attribute || token == tok_declspec || token == tok_alignas ||
         token == tok_atomic || is_modifier_token(token);
}

bool is_type_start(unsigned) {
  return is_type_keyword(curr_token) || is_qualifier_token(curr_token) ||
         is_function_specifier(curr_token) || is_modifier_token(curr_token) ||
         curr_token == tok_atomic || is_attribute_start(al_specifiers) ||
         curr_type_symbol() != nullptr;
}

// An undeclared name in front of what can only be a declarator is a misspelled
// type; the declaration road reports it once.
static bool is_misspelled_type(unsigned options) {
  if (curr_token != tok_identifier || locator_for_curr_id.is_error_locator ||
      locator_for_curr_id.is_qualified)
    return false;
  if (normal_id_lookup(&locator_for_curr_id, ilo_none))
    return false;
  a_token_kind next = next_token();
  if (next == tok_identifier)
    return true;
  return !(options & dst_expr_context) && next == tok_star;
}

bool is_decl_start(unsigned options) {
  if (curr_token == tok_auto)
    return auto_storage_class_specifier_enabled || in_C_mode();
  if (is_storage_class_token(curr_token) || is_unsupported_specifier(curr_token) ||
      curr_token == tok_static_assert || curr_token == tok_using || curr_token == tok_namespace ||
      is_type_start(options))
    return true;
  return (options & dst_guess_misspelled_type) && is_misspelled_type(options);
}

bool is_decl_not_expr(unsigned options) {
  return is_decl_start(options);
}

// ---- Qualifiers ----

static a_type_qualifier_set qualifier_of_token(a_token_kind token) {
  return token == tok_const ? tq_const : token == tok_volatile ? tq_volatile : tq_restrict;
}

static a_source_position* qualifier_position(a_decl_parse_state* state,
                                             a_type_qualifier_set qualifier) {
  return qualifier == tq_const      ? &state->const_position
         : qualifier == tq_volatile ? &state->volatile_position
                                    : &state->restrict_position;
}

// C99 6.7.3 p4 permits a repeat.
static void report_repeated_qualifier() {
  bool is_permitted = in_C_mode() && std_version >= 199901;
  pos_diagnostic(is_permitted ? es_warning : es_error, ec_dupl_type_qualifier, &pos_curr_token);
}

static void scan_qualifier(a_type_qualifier_set* qualifiers, a_decl_parse_state* state) {
  a_type_qualifier_set qualifier = qualifier_of_token(curr_token);
  if (*qualifiers & qualifier)
    report_repeated_qualifier();
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

// C99 6.7.3 p2.
bool restrict_qualifier_is_allowed(a_type* type, const a_source_position* position) {
  a_type* bare = skip_typerefs(type);
  if (is_error_type(bare))
    return false;
  if (bare->kind == tk_pointer && !is_function_type(type_pointed_to(bare)))
    return true;
  pos_error(ec_restrict_not_allowed, position);
  return false;
}

// ---- The words of the specifiers ----

namespace {

enum a_base_type_code : uint8_t {
  btc_none,
  btc_void,
  btc_char,
  btc_wchar_t,
  btc_char16_t,
  btc_char32_t,
  btc_bool,
  btc_int,
  btc_float,
  btc_double,
  btc_named, // a typedef name, or the type of a typeof
  btc_class,
  btc_enum,
  btc_auto,
  btc_decltype_auto,
  btc_unknown,
  btc_error
};

enum a_size_code : uint8_t { szc_none, szc_short, szc_long, szc_long_long };
enum a_sign_code : uint8_t { sgc_none, sgc_signed, sgc_unsigned };
enum a_complex_code : uint8_t { cxc_none, cxc_complex, cxc_imaginary };

struct a_specifier_accumulator {
  a_base_type_code base;
  a_size_code size;
  a_sign_code sign;
  a_complex_code complex;
  a_type* type; // btc_named, btc_class, btc_enum
};

} // namespace

static void specifier_error(an_error_code code, a_decl_parse_state* state) {
  pos_error(code, &pos_curr_token);
  state->decl_flags.specifier_error = true;
  state->parse_flags.specifier_error = true;
}

static void bad_combination(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  if (acc->base != btc_error)
    specifier_error(ec_bad_combination_of_type_specifiers, state);
  acc->base = btc_error;
}

static bool any_type_word(const a_specifier_accumulator* acc) {
  return acc->base != btc_none || acc->size != szc_none || acc->sign != sgc_none ||
         acc->complex != cxc_none;
}

// ---- Tags ----

bool scan_tag(a_symbol_locator* locator, an_attribute** attributes) {
  a_source_position position = pos_curr_token;
  get_token();
  *attributes = scan_attributes(al_tag);
  if (curr_token == tok_identifier) {
    *locator = locator_for_curr_id;
    locator->symbol = nullptr;
    get_token();
  } else if (curr_token == tok_lbrace) {
    make_unnamed_locator(locator, &position);
  } else {
    syntax_error(ec_exp_definition_of_tag);
    return false;
  }
  return true;
}

// ---- Storage classes ----

static a_storage_kind storage_of_token(a_token_kind token) {
  switch (token) {
  case tok_auto:
    return sc_auto;
  case tok_extern:
    return sc_extern;
  case tok_register:
    return sc_register;
  case tok_static:
    return sc_static;
  default:
    return sc_typedef;
  }
}

// The number of the rejection of a storage class at this place, or 0.
static an_error_code rejection_of_storage_class(unsigned options, a_storage_kind storage) {
  if (options & dso_parameter) {
    if (storage == sc_register ||
        (storage == sc_typedef && (options & dso_allow_typedef_in_parameter)))
      return 0;
    return storage == sc_typedef ? ec_typedef_not_allowed : ec_bad_param_storage_class;
  }
  if (options & dso_member)
    return ec_bad_member_storage_class;
  if (!(options & dso_storage_class))
    return ec_storage_class_not_allowed;
  if ((options & dso_for_init) && storage != sc_auto && storage != sc_register)
    return ec_invalid_storage_class_in_for_init;
  if ((options & dso_file_scope) && (storage == sc_auto || storage == sc_register)) {
    // A register name of the target makes the variable a register of its own.
    if (storage == sc_register && gnu_mode)
      return 0;
    return storage == sc_auto && gcc_mode ? ec_auto_ignored : ec_bad_file_scope_storage_class;
  }
  return 0;
}

static void scan_storage_class(unsigned options, const a_specifier_accumulator* acc,
                               a_decl_parse_state* state) {
  a_storage_kind storage = storage_of_token(curr_token);
  an_error_code code = rejection_of_storage_class(options, storage);
  if (code == ec_auto_ignored) {
    pos_warning(code, &pos_curr_token);
  } else if (code != 0) {
    specifier_error(code, state);
  } else if (state->storage_class != sc_none) {
    specifier_error(ec_mult_storage_classes, state);
  } else {
    state->storage_class = storage;
    state->storage_class_position = pos_curr_token;
    if (any_type_word(acc) && C_dialect != cd_k_and_r)
      pos_diagnostic(strict_ansi_mode ? es_warning : es_remark, ec_storage_class_not_first,
                     &pos_curr_token);
  }
  get_token();
}

// ---- Type words ----

static void scan_sign(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  a_sign_code sign = curr_token == tok_signed ? sgc_signed : sgc_unsigned;
  if (acc->sign == sign)
    specifier_error(ec_dupl_decl_specifier, state);
  else if (acc->sign != sgc_none || acc->type)
    bad_combination(acc, state);
  acc->sign = sign;
  get_token();
}

static void scan_size(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  bool is_long = curr_token == tok_long;
  if (acc->type) {
    bad_combination(acc, state);
  } else if (acc->size == szc_none) {
    acc->size = is_long ? szc_long : szc_short;
  } else if (is_long && acc->size == szc_long) {
    acc->size = szc_long_long;
    if (strict_ansi_mode && !long_long_is_standard)
      pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_long_long, &pos_curr_token);
  } else if (!(gcc_mode && !clang_mode && gnu_version < 40000)) {
    bad_combination(acc, state);
  }
  get_token();
}

static a_base_type_code base_of_token(a_token_kind token) {
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

static void scan_base_type(unsigned options, a_specifier_accumulator* acc,
                           a_decl_parse_state* state) {
  if (!(options & dso_type_specifiers))
    specifier_error(ec_type_specifier_not_allowed, state);
  else if (acc->base != btc_none)
    bad_combination(acc, state);
  else
    acc->base = base_of_token(curr_token);
  get_token();
}

static void scan_complex_word(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  a_complex_code code = curr_token == tok_complex ? cxc_complex : cxc_imaginary;
  if (acc->complex == code)
    specifier_error(ec_dupl_decl_specifier, state);
  else if (acc->complex != cxc_none)
    bad_combination(acc, state);
  acc->complex = code;
  get_token();
}

static void take_type(a_base_type_code base, a_type* type, a_specifier_accumulator* acc,
                      a_decl_parse_state* state) {
  if (acc->base != btc_none || acc->size != szc_none || acc->sign != sgc_none ||
      acc->complex != cxc_none) {
    bad_combination(acc, state);
    return;
  }
  acc->base = is_error_type(type) ? btc_error : base;
  acc->type = type;
}

static a_type* scan_typeof() {
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return error_type();
  add_stop_token(tok_rparen);
  a_type* type = is_type_start(dst_expr_context) ? type_name() : scan_typeof_operand();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  return type;
}

static a_type* type_of_target_word(a_token_kind token) {
  return token == tok_znt_size_type      ? size_t_type()
         : token == tok_znt_ptrdiff_type ? ptrdiff_t_type()
                                         : bool_type();
}

// A type name ends the list once the type is known, so that `T T;` declares.
// False when the identifier isn't part of the specifiers.
static bool scan_type_name_specifier(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  if (acc->base != btc_none || acc->complex != cxc_none)
    return false;
  bool has_word = acc->size != szc_none || acc->sign != sgc_none;
  if (has_word && C_dialect != cd_k_and_r)
    return false;
  a_symbol* symbol = curr_type_symbol();
  if (!symbol)
    return false;
  record_symbol_reference(srk_reference | srk_type, symbol, &pos_curr_token, true);
  a_type* type = symbol->variant.type;
  get_token();
  if (has_word)
    bad_combination(acc, state);
  else
    take_type(btc_named, type, acc, state);
  return true;
}

// C99 6.7.4 p2: only functions are inline; parameters, members and type names
// are none.
static void scan_function_specifier(unsigned options, a_decl_parse_state* state) {
  if (curr_token == tok_inline) {
    if ((options & dso_parameter) || !(options & dso_storage_class))
      pos_error(ec_inline_not_allowed, &pos_curr_token);
    state->modifiers.inline_seen = true;
    state->modifiers.inline_position = pos_curr_token;
  } else {
    state->modifiers.noreturn_seen = true;
  }
  get_token();
}

static void refuse_specifier(a_decl_parse_state* state) {
  pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, token_names[curr_token]);
  state->decl_flags.specifier_error = true;
  get_token();
  if (curr_token == tok_lparen)
    flush_until_matching_token();
}

// One specifier; false at what is none.
static bool scan_specifier(unsigned options, a_specifier_accumulator* acc,
                           a_decl_parse_state* state) {
  if (is_storage_class_token(curr_token))
    scan_storage_class(options, acc, state);
  else if (is_qualifier_token(curr_token))
    scan_qualifier(&state->qualifiers, state);
  else if (curr_token == tok_signed || curr_token == tok_unsigned)
    scan_sign(acc, state);
  else if (curr_token == tok_short || curr_token == tok_long)
    scan_size(acc, state);
  else if (base_of_token(curr_token) != btc_none)
    scan_base_type(options, acc, state);
  else if (curr_token == tok_complex || curr_token == tok_imaginary)
    scan_complex_word(acc, state);
  else if (curr_token == tok_enum)
    take_type(btc_enum, enum_specifier(state), acc, state);
  else if (curr_token == tok_struct || curr_token == tok_union || curr_token == tok_class)
    take_type(btc_class, class_specifier(state), acc, state);
  else if (curr_token == tok_typeof)
    take_type(btc_named, scan_typeof(), acc, state);
  else if (curr_token >= tok_znt_size_type && curr_token <= tok_znt_bool_type) {
    take_type(btc_named, type_of_target_word(curr_token), acc, state);
    get_token();
  } else if (is_function_specifier(curr_token))
    scan_function_specifier(options, state);
  else if (is_attribute_start(al_specifiers))
    append_attributes(&state->attributes_before, scan_attributes(al_specifiers));
  else if (is_unsupported_specifier(curr_token))
    refuse_specifier(state);
  else
    return curr_token == tok_identifier && scan_type_name_specifier(acc, state);
  return true;
}

// ---- The type of the words (C99 6.7.2 p2) ----

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
  return base == btc_void || (base >= btc_wchar_t && base <= btc_bool);
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

static a_type* type_of_words(a_specifier_accumulator* acc, a_decl_parse_state* state) {
  bool has_words = acc->size != szc_none || acc->sign != sgc_none;
  bool is_floating = acc->base == btc_float || acc->base == btc_double;
  if (acc->complex != cxc_none && !is_floating) {
    if (acc->base == btc_none && gcc_mode && !has_words) {
      acc->base = btc_double;
      return floating_type_of_words(acc, state);
    }
    pos_error(ec_missing_floating_point_type, &state->specifiers_position);
    return error_type();
  }
  if ((is_floating && acc->sign != sgc_none) || (has_words && takes_no_words(acc->base)) ||
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
  case btc_error:
    return error_type();
  default:
    return plain_type_of_base(acc->base);
  }
}

static a_type* apply_qualifiers(a_type* type, a_decl_parse_state* state) {
  a_type_qualifier_set qualifiers = state->qualifiers;
  if (qualifiers == tq_none || is_error_type(type))
    return type;
  if ((qualifiers & tq_restrict) && !restrict_qualifier_is_allowed(type, &state->restrict_position))
    qualifiers &= ~tq_restrict;
  if (is_function_type(type)) {
    pos_warning(ec_cv_qualified_function_type, &state->specifiers_position);
    return type;
  }
  return make_qualified_type(type, qualifiers);
}

// The specifiers name no type. In C before 1999 the type is int.
static void handle_missing_type(unsigned options, a_specifier_accumulator* acc,
                                a_decl_parse_state* state) {
  state->decl_flags.no_type_given = true;
  if (options & dso_no_type_required) {
    acc->base = btc_int;
    return;
  }
  if (curr_token == tok_identifier && is_misspelled_type(0)) {
    pos_st_error(ec_undefined_identifier, &pos_curr_token, locator_for_curr_id.header->identifier);
    get_token();
  } else {
    syntax_error(ec_exp_type_specifier);
  }
  state->decl_flags.specifier_error = true;
  state->parse_flags.specifier_error = true;
  acc->base = btc_error;
}

void decl_specifiers(unsigned options, a_decl_parse_state* state) {
  a_specifier_accumulator acc = {};
  a_token_sequence_number first = curr_token_sequence_number;
  a_token_kind first_token = curr_token;
  int count = 0;
  state->specifiers_position = pos_curr_token;
  error_position = pos_curr_token;
  append_attributes(&state->attributes_before, scan_attributes(al_specifiers));
  for (;;) {
    state->end_position = end_pos_curr_token;
    if (!scan_specifier(options, &acc, state))
      break;
    ++count;
    state->decl_flags.type_specifier_seen = any_type_word(&acc);
  }
  state->decl_flags.is_plain_void = count == 1 && first_token == tok_void && acc.base == btc_void &&
                                    curr_token_sequence_number != first;
  if (!any_type_word(&acc))
    handle_missing_type(options, &acc, state);
  state->type_specifier_type = apply_qualifiers(type_of_words(&acc, state), state);
  state->declared_type = state->base_type = state->type_specifier_type;
  state->storage_class_before_declarator = state->storage_class;
}

void decl_spec_one_time_init() {
  avail_decl_parse_states = nullptr;
  avail_end_of_parse_actions = nullptr;
}
