// Storage classes, function specifiers and the target's modifiers among the
// declaration specifiers (C99 6.7.1, 6.7.4).

#include "decl_spec_int.h"
#include "error.h"
#include "lexical.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "types.h"

const char* const decl_modifier_names[num_decl_modifiers] = {
    "dllimport", "dllexport", "notshared",     "interrupt",  "NMI interrupt", "near",
    "far",       "reentrant", "port",          "shared",     "sharedpp",      "trap",
    "cregister", "global",    "DATA_MEM_BANK", "DATA_ALIGN", "last"};

bool is_storage_class_token(a_token_kind token) {
  switch (token) {
  case tok_auto:
  case tok_extern:
  case tok_register:
  case tok_static:
  case tok_typedef:
  case tok_mutable:
    return true;
  default:
    return false;
  }
}

bool is_thread_storage_token(a_token_kind token) {
  return token == tok_gnu_thread || token == tok_thread_local || token == tok_c11_thread_local;
}

bool is_function_specifier(a_token_kind token) {
  switch (token) {
  case tok_inline:
  case tok_noreturn:
  case tok_virtual:
  case tok_explicit:
  case tok_friend:
  case tok_constexpr:
  case tok_overload:
    return true;
  default:
    return false;
  }
}

static uint32_t modifier_of_token(a_token_kind token) {
  switch (token) {
  case tok_near:
    return dm_near;
  case tok_far:
    return dm_far;
  case tok_shared:
    return dm_shared;
  case tok_sharedpp:
    return dm_sharedpp;
  case tok_trap:
    return dm_trap;
  case tok_interrupt:
  case tok_underscore_interrupt:
    return dm_interrupt;
  case tok_reentrant:
    return dm_reentrant;
  case tok_cregister:
    return dm_cregister;
  case tok_global:
    return dm_global;
  default:
    return dm_none;
  }
}

bool is_modifier_token(a_token_kind token) {
  return modifier_of_token(token) != dm_none;
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
  case tok_typedef:
    return sc_typedef;
  default:
    return sc_none; // mutable
  }
}

static an_error_code rejection_in_parameter(unsigned options, a_storage_kind storage) {
  if (storage == sc_register ||
      (storage == sc_typedef && (options & dso_allow_typedef_in_parameter)))
    return 0;
  return storage == sc_typedef ? ec_typedef_not_allowed : ec_bad_param_storage_class;
}

static an_error_code rejection_at_file_scope(a_storage_kind storage) {
  if (storage == sc_auto)
    return gcc_mode ? ec_auto_ignored : ec_bad_file_scope_storage_class;
  // A register may be named by the declarator or behind it, and is judged there.
  return 0;
}

// The number of the rejection of a storage class at this place, or 0.
static an_error_code rejection_of_storage_class(unsigned options, a_storage_kind storage) {
  if (options & dso_parameter)
    return rejection_in_parameter(options, storage);
  if (options & dso_member) {
    bool is_allowed =
        (options & dso_storage_class) && (storage == sc_static || storage == sc_typedef);
    return is_allowed ? 0 : ec_bad_member_storage_class;
  }
  if (!(options & dso_storage_class))
    return ec_storage_class_not_allowed;
  if ((options & dso_for_init) && in_C_mode() && storage != sc_auto && storage != sc_register)
    return ec_invalid_storage_class_in_for_init;
  if ((options & dso_file_scope) && (storage == sc_auto || storage == sc_register))
    return rejection_at_file_scope(storage);
  return 0;
}

static void report_order(const a_specifier_accumulator* acc) {
  if (any_type_word(acc) && C_dialect != cd_k_and_r)
    pos_diagnostic(strict_ansi_mode ? es_warning : es_remark, ec_storage_class_not_first,
                   &pos_curr_token);
}

static void scan_mutable(unsigned options, const a_specifier_accumulator* acc,
                         a_decl_parse_state* state) {
  if (embedded_cplusplus_mode)
    pos_diagnostic(es_discretionary_error, ec_mutable_in_embedded_cplusplus, &pos_curr_token);
  if (!(options & dso_member) || (options & dso_parameter)) {
    specifier_error(ec_mutable_not_allowed, &pos_curr_token, state);
  } else if (state->storage_class != sc_none || state->modifiers.mutable_seen) {
    specifier_error(ec_mult_storage_classes, &pos_curr_token, state);
  } else {
    state->modifiers.mutable_seen = true;
    state->modifiers.mutable_position = pos_curr_token;
    report_order(acc);
  }
}

static bool goes_with_thread_storage(a_storage_kind storage) {
  return storage == sc_none || storage == sc_extern || storage == sc_static;
}

// C++17 takes the meaning of the word away, C++11 deprecates it.
static void check_register(a_storage_kind storage) {
  if (storage == sc_register && register_is_disallowed)
    pos_error(ec_register_keyword_disallowed, &pos_curr_token);
  else if (storage == sc_register && register_is_deprecated)
    pos_warning(ec_register_keyword_deprecated, &pos_curr_token);
}

void scan_storage_class(unsigned options, const a_specifier_accumulator* acc,
                        a_decl_parse_state* state) {
  if (curr_token == tok_mutable) {
    scan_mutable(options, acc, state);
    get_token();
    return;
  }
  a_storage_kind storage = storage_of_token(curr_token);
  an_error_code code = rejection_of_storage_class(options, storage);
  if (code == ec_auto_ignored) {
    pos_warning(code, &pos_curr_token);
  } else if (code != 0) {
    specifier_error(code, &pos_curr_token, state);
  } else if (state->storage_class != sc_none || state->modifiers.mutable_seen ||
             (state->modifiers.thread_local_seen && !goes_with_thread_storage(storage))) {
    specifier_error(ec_mult_storage_classes, &pos_curr_token, state);
  } else {
    state->storage_class = storage;
    state->storage_class_position = pos_curr_token;
    check_register(storage);
    report_order(acc);
  }
  get_token();
}

// ---- Thread storage (C11 6.7.1 p3) ----

static an_error_code rejection_of_thread_storage(unsigned options,
                                                 const a_decl_parse_state* state) {
  if (options & dso_parameter)
    return ec_bad_param_storage_class;
  if ((options & dso_member) && !(options & dso_storage_class))
    return ec_bad_member_storage_class;
  if (!(options & dso_storage_class))
    return ec_storage_class_not_allowed;
  if ((options & dso_for_init) && in_C_mode())
    return ec_invalid_storage_class_in_for_init;
  if (state->modifiers.thread_local_seen)
    return ec_multiple_thread_local_storage_specifiers;
  return goes_with_thread_storage(state->storage_class) ? 0 : ec_mult_storage_classes;
}

static bool has_thread_storage_class(const a_variable* variable) {
  return variable->storage_kind != sc_auto && variable->storage_kind != sc_register;
}

// The entity is known now. The target has one thread: no variable of generated
// code can be one of several.
static void check_thread_local_entity(a_decl_parse_state* state) {
  const a_source_position* position = &state->modifiers.thread_local_position;
  const a_symbol* symbol = state->symbol;
  if (!symbol || is_error_type(state->declared_type))
    return;
  bool is_variable = symbol->kind == symk_variable || symbol->kind == symk_static_data_member;
  if (!is_variable || !has_thread_storage_class(symbol->variant.variable))
    pos_error(ec_thread_local_not_allowed, position);
  else if (!suppress_back_end)
    pos_sy_error(ec_cannot_use_thread_local_storage, position, symbol);
}

void scan_thread_storage(unsigned options, a_decl_parse_state* state) {
  an_error_code code = rejection_of_thread_storage(options, state);
  if (code != 0) {
    specifier_error(code, &pos_curr_token, state);
  } else {
    state->modifiers.thread_local_seen = true;
    state->modifiers.thread_local_position = pos_curr_token;
    add_end_of_parse_action(check_thread_local_entity, state, true);
  }
  get_token();
}

// ---- Function specifiers ----

static void scan_inline(unsigned options, a_decl_parse_state* state) {
  if ((options & dso_parameter) || !(options & dso_storage_class))
    specifier_error(ec_inline_not_allowed, &pos_curr_token, state);
  else if (state->modifiers.inline_seen && in_cplusplus_mode())
    pos_diagnostic(strict_ansi_error_severity, ec_dupl_decl_specifier, &pos_curr_token);
  state->modifiers.inline_seen = true;
  state->modifiers.inline_position = pos_curr_token;
}

static void scan_noreturn(unsigned options, a_decl_parse_state* state) {
  if ((options & (dso_parameter | dso_member)) || !(options & dso_storage_class)) {
    specifier_error(ec_bad_c11_noreturn, &pos_curr_token, state);
    return;
  }
  state->modifiers.noreturn_seen = true;
  state->modifiers.noreturn_position = pos_curr_token;
}

static void note_constexpr_entity(a_decl_parse_state* state) {
  const a_symbol* symbol = state->symbol;
  if (symbol && symbol->kind == symk_variable)
    symbol->variant.variable->is_constexpr = true;
  else if (symbol && symbol->kind == symk_routine)
    symbol->variant.routine->is_constexpr = true;
}

// `constexpr` stands on objects and functions, not on what has neither.
static void scan_constexpr(unsigned options, a_decl_parse_state* state) {
  if ((options & (dso_parameter | dso_for_init)) || !(options & dso_storage_class))
    specifier_error(ec_invalid_constexpr, &pos_curr_token, state);
  else if (state->modifiers.constexpr_seen)
    specifier_error(ec_dupl_decl_specifier, &pos_curr_token, state);
  else
    add_end_of_parse_action(note_constexpr_entity, state, true);
  state->modifiers.constexpr_seen = true;
  state->modifiers.constexpr_position = pos_curr_token;
}

// `virtual`, `explicit` and `friend` belong to the members of a class.
static void scan_class_word(unsigned options, a_decl_parse_state* state) {
  a_decl_modifiers_block& modifiers = state->modifiers;
  if (options & dso_parameter)
    specifier_error(ec_bad_param_specifier, &pos_curr_token, state);
  else if (!(options & dso_member))
    specifier_error(ec_bad_specifier_outside_class_decl, &pos_curr_token, state);
  else if (!(options & dso_class_words))
    pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, token_names[curr_token]);
  else if (curr_token == tok_virtual  ? modifiers.virtual_seen
           : curr_token == tok_friend ? modifiers.friend_seen
                                      : modifiers.explicit_seen)
    specifier_error(ec_dupl_decl_specifier, &pos_curr_token, state);
  if (curr_token == tok_virtual) {
    modifiers.virtual_seen = true;
    modifiers.virtual_position = pos_curr_token;
  } else if (curr_token == tok_friend) {
    modifiers.friend_seen = true;
    modifiers.friend_position = pos_curr_token;
  } else {
    modifiers.explicit_seen = true;
    modifiers.explicit_position = pos_curr_token;
  }
}

void scan_function_specifier(unsigned options, a_decl_parse_state* state) {
  switch (curr_token) {
  case tok_inline:
    scan_inline(options, state);
    break;
  case tok_noreturn:
    scan_noreturn(options, state);
    break;
  case tok_constexpr:
    scan_constexpr(options, state);
    break;
  case tok_overload: // of early C++: says nothing any more
    break;
  default:
    scan_class_word(options, state);
  }
  get_token();
}

// ---- Modifiers of the target ----

static an_error_code rejection_of_modifier(unsigned options, uint32_t bit,
                                           const a_decl_parse_state* state) {
  if (options & dso_parameter)
    return ec_bad_param_specifier;
  if (options & dso_member)
    return ec_bad_member_storage_class;
  if (!(options & dso_storage_class))
    return ec_storage_class_not_allowed;
  uint32_t opposite = bit == dm_near ? dm_far : bit == dm_far ? dm_near : dm_none;
  if (state->modifiers.mask & opposite)
    return ec_bad_combination_of_type_specifiers;
  return state->modifiers.mask & bit ? ec_dupl_decl_specifier : 0;
}

void scan_modifier(unsigned options, a_decl_parse_state* state) {
  uint32_t bit = modifier_of_token(curr_token);
  an_error_code code = rejection_of_modifier(options, bit, state);
  if (code != 0) {
    specifier_error(code, &pos_curr_token, state);
  } else {
    state->modifiers.mask |= bit;
    state->modifiers.position = pos_curr_token;
  }
  get_token();
}

// ---- The whole ----

void check_storage_of_specifiers(unsigned options, a_decl_parse_state* state) {
  a_decl_modifiers_block& modifiers = state->modifiers;
  if (in_cplusplus_mode() && modifiers.inline_seen && state->storage_class == sc_extern &&
      !extern_inline_allowed)
    specifier_error(ec_bad_storage_class_with_inline, &state->storage_class_position, state);
  const uint32_t dll_modifiers = dm_dllimport | dm_dllexport;
  if ((modifiers.mask & dll_modifiers) == dll_modifiers)
    specifier_error(ec_bad_combination_of_dll_attributes, &modifiers.position, state);
  // C11 6.7.1 p3.
  if (in_C_mode() && modifiers.thread_local_seen && state->storage_class == sc_none &&
      (options & dso_storage_class) && !(options & (dso_file_scope | dso_member))) {
    specifier_error(ec_thread_local_must_include_static_or_extern, &modifiers.thread_local_position,
                    state);
    state->storage_class = sc_static;
  }
  if (state->storage_class != sc_typedef)
    return;
  if (modifiers.constexpr_seen)
    specifier_error(ec_invalid_constexpr, &modifiers.constexpr_position, state);
  if (modifiers.noreturn_seen)
    specifier_error(ec_bad_c11_noreturn, &modifiers.noreturn_position, state);
  if (modifiers.mask != dm_none)
    specifier_error(ec_storage_class_not_allowed, &modifiers.position, state);
  modifiers.mask = dm_none;
}
