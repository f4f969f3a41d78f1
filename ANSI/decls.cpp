// The translation unit and the form of its declarations.

#include "decls.h"

#include "attribute.h"
#include "const_ints.h"
#include "decl_inits.h"
#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "statements.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "types.h"

bool is_in_function() {
  return depth_innermost_function_scope >= 0;
}

// ---- Declarations without declarators ----

static void check_lone_tag_declaration(a_decl_parse_state* state) {
  if (state->storage_class != sc_none && state->storage_class != sc_typedef)
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                   ec_storage_class_requires_function_or_variable, &state->storage_class_position);
  else if (state->storage_class == sc_typedef)
    pos_warning(ec_missing_typedef_name, &state->specifiers_position);
  else if (state->qualifiers != tq_none)
    pos_warning(ec_useless_type_qualifiers, &state->specifiers_position);
}

// `struct s;`, `int;` and the like (C99 6.7 p2).
static void check_declaration_without_declarator(a_decl_parse_state* state) {
  if (state->decl_flags.specifier_error || is_error_type(state->type_specifier_type))
    return;
  if (state->decl_flags.defines_tag || state->decl_flags.declares_tag)
    check_lone_tag_declaration(state);
  else if (state->storage_class == sc_typedef && state->decl_flags.is_plain_void)
    pos_warning(ec_decl_of_void_ignored, &state->specifiers_position);
  else if (state->storage_class == sc_typedef)
    pos_error(ec_missing_typedef_name, &state->specifiers_position);
  else if (state->decl_flags.no_type_given && state->qualifiers != tq_none)
    pos_warning(ec_useless_type_qualifiers, &state->specifiers_position);
  else
    pos_diagnostic(strict_ansi_mode ? strict_ansi_error_severity : es_warning, ec_useless_decl,
                   &state->specifiers_position);
}

// ---- One declarator ----

static a_param_id* param_id_on_list(const a_symbol_locator* locator, a_param_id* list) {
  while (list && !(list->symbol && list->symbol->header == locator->header))
    list = list->next;
  return list;
}

// The declarator names one of an identifier list (C99 6.9.1 p6).
static void old_style_param_declaration(a_symbol_locator* locator, a_decl_parse_state* state) {
  if (locator->is_error_locator)
    return;
  a_param_id* param = param_id_on_list(locator, state->param_id_list);
  if (!param || state->storage_class == sc_typedef) {
    pos_error(ec_decl_should_be_of_param, &locator->position);
    return;
  }
  if (param->type) {
    pos_st_error(ec_id_already_declared, &locator->position, locator->header->identifier);
    return;
  }
  param->declared_type = state->declared_type;
  check_and_adjust_parameter_type(state, &locator->position);
  param->type = state->declared_type;
  param->position = locator->position;
  param->storage_class = state->storage_class;
  param->is_register = state->storage_class == sc_register;
  param->attributes = copy_of_attributes_list(state->attributes_before);
  append_attributes(&param->attributes, state->attributes_after);
  // A float argument arrives as a double.
  if (type_kind(param->type) == tk_float &&
      skip_typerefs(param->type)->variant.float_kind == fk_float)
    param->type = make_qualified_type(float_type(fk_double), get_type_qualifiers(param->type));
  if (curr_token == tok_assign) {
    pos_error(ec_initializer_in_param, &pos_curr_token);
    flush_tokens();
  }
}

static void check_nonfunction_declaration_errors(a_decl_parse_state* state,
                                                 const a_symbol_locator* locator) {
  if (state->modifiers.inline_seen)
    pos_error(ec_inline_not_allowed, &state->modifiers.inline_position);
  if (state->storage_class == sc_typedef || locator->is_error_locator)
    return;
  if (is_void_type(state->declared_type)) {
    pos_error(ec_incomplete_type_not_allowed, &locator->position);
    state->declared_type = error_type();
  }
}

static unsigned flags_of_variable(const a_decl_parse_state* state, bool has_initializer) {
  bool is_extern = state->storage_class == sc_extern;
  if (has_initializer)
    return dvf_declaration | dvf_definition | dvf_initialized;
  if (is_in_function())
    return is_extern ? dvf_declaration : dvf_declaration | dvf_definition;
  bool is_tentative = state->storage_class == sc_none || state->storage_class == sc_static;
  return is_tentative ? dvf_declaration | dvf_definition | dvf_tentative : dvf_declaration;
}

// An array of unknown bound is completed by its initialiser, or at file scope
// by a later declaration.
static void check_completeness(a_decl_parse_state* state, const a_symbol_locator* locator,
                               unsigned flags) {
  a_type* type = state->declared_type;
  bool needs_type =
      (flags & dvf_definition) &&
      (is_in_function() || state->storage_class == sc_static || (flags & dvf_initialized));
  if (!needs_type || !is_incomplete_type(type) || is_error_type(type))
    return;
  if (is_incomplete_array_type(type) && (flags & dvf_initialized))
    return;
  pos_error(ec_incomplete_type_not_allowed, &locator->position);
  state->declared_type = error_type();
}

static void variable_declaration(a_symbol_locator* locator, a_decl_parse_state* state) {
  bool has_initializer = curr_token == tok_assign;
  check_nonfunction_declaration_errors(state, locator);
  a_storage_kind written = state->storage_class;
  if (is_in_function() && written == sc_none)
    state->storage_class = sc_auto;
  else if (has_initializer && written == sc_extern && !is_in_function())
    state->storage_class = sc_none; // `extern int x = 1;` defines x
  unsigned flags = flags_of_variable(state, has_initializer);
  check_completeness(state, locator, flags);
  decl_variable(locator, state, flags);
  if (has_initializer) {
    get_token();
    state->decl_flags.is_initializing = true;
    initializer(state);
    state->decl_flags.is_initializing = false;
    mark_variable_value_set(state->symbol);
  } else if (flags & dvf_definition) {
    def_initializer(state->symbol, &locator->position);
  }
  state->storage_class = written;
}

static void routine_declaration(a_symbol_locator* locator, a_decl_parse_state* state,
                                a_func_info_block* func_info) {
  if (func_info->is_old_style && func_info->param_id_list) {
    pos_error(ec_param_id_list_needs_function_def, &locator->position);
    func_info->param_id_list = nullptr;
  }
  if (state->storage_class == sc_auto || state->storage_class == sc_register) {
    pos_error(ec_bad_function_storage_class, &state->storage_class_position);
    state->storage_class = sc_none;
  }
  if (is_in_function() && state->storage_class == sc_static) {
    pos_error(ec_block_scope_function_must_be_extern, &state->storage_class_position);
    state->storage_class = sc_none;
  }
  decl_routine(locator, state, func_info, drf_declaration);
  if (curr_token == tok_lparen)
    pos_sy_error(ec_lparen_after_function, &pos_curr_token, state->symbol);
}

// Whether a body follows the declarator of a function.
static bool is_start_of_definition(const a_decl_parse_state* state,
                                   const a_func_info_block* func_info) {
  if (!state->parse_flags.is_top_level || state->storage_class == sc_typedef ||
      !is_function_type(state->declared_type))
    return false;
  if (curr_token == tok_lbrace)
    return true;
  return func_info->is_old_style && func_info->param_id_list && is_decl_start(0);
}

// The declarator has been read; false when the declaration ends with it.
static bool declare(a_symbol_locator* locator, a_decl_parse_state* state,
                    a_func_info_block* func_info) {
  if (state->parse_flags.is_old_style_param) {
    old_style_param_declaration(locator, state);
  } else if (is_start_of_definition(state, func_info)) {
    function_definition(locator, state, func_info);
    state->parse_flags.is_function_definition = true;
    return false;
  } else if (state->storage_class == sc_typedef) {
    check_nonfunction_declaration_errors(state, locator);
    decl_typedef(locator, state);
    if (curr_token == tok_assign) {
      pos_sy_error(ec_cannot_initialize, &pos_curr_token, state->symbol);
      flush_tokens();
    }
  } else if (is_function_type(state->declared_type)) {
    routine_declaration(locator, state, func_info);
  } else {
    variable_declaration(locator, state);
  }
  return true;
}

static void refuse_declarator_suffix() {
  if (curr_token != tok_asm)
    return;
  pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, token_names[curr_token]);
  get_token();
  if (curr_token == tok_lparen)
    flush_until_matching_token();
}

static void init_declarator_list(a_decl_parse_state* state) {
  a_symbol_locator locator;
  a_func_info_block func_info;
  a_decl_parse_state specifiers = *state;
  add_stop_token(tok_comma);
  add_stop_token(tok_assign);
  for (;;) {
    clear_func_info(&func_info);
    state->storage_class = specifiers.storage_class;
    state->attributes_after = scan_gnu_attribute_groups(al_specifiers);
    declarator(do_name_required, state, nullptr, &locator, &func_info);
    refuse_declarator_suffix();
    append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
    bool more = declare(&locator, state, &func_info);
    run_end_of_parse_actions(state, true);
    if (!more || !loop_token(tok_comma))
      break;
  }
  remove_stop_token(tok_assign);
  remove_stop_token(tok_comma);
}

// ---- Declarations ----

static unsigned options_of_specifiers(const a_decl_parse_state* state) {
  unsigned options = dso_type_specifiers | dso_storage_class;
  if (state->parse_flags.is_file_scope)
    options |= dso_file_scope;
  if (state->parse_flags.is_old_style_param)
    options |= dso_parameter;
  if (state->parse_flags.is_for_init)
    options |= dso_for_init;
  // `f() {...}` is a function that returns int.
  if (state->parse_flags.is_top_level && in_C_mode() && curr_token == tok_identifier) {
    a_token_kind next = next_token();
    if (next == tok_lparen && !curr_type_symbol())
      options |= dso_no_type_required;
  }
  return options;
}

static bool is_special_declaration(a_decl_parse_state* state) {
  if (curr_token == tok_semicolon) {
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_remark,
                   ec_extra_semicolon, &pos_curr_token);
  } else if (curr_token == tok_static_assert) {
    static_assert_declaration();
  } else if (curr_token == tok_asm || curr_token == tok_ms_asm) {
    pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, token_names[curr_token]);
    flush_tokens();
  } else {
    return false;
  }
  state->declared_type = error_type();
  return true;
}

static bool can_begin_declarator() {
  return curr_token == tok_identifier || curr_token == tok_star || curr_token == tok_lparen;
}

static void report_missing_type(const a_decl_parse_state* state) {
  if (!state->decl_flags.no_type_given || state->decl_flags.specifier_error)
    return;
  bool is_error = std_version >= 199901 && strict_ansi_mode;
  pos_diagnostic(is_error ? strict_ansi_error_severity : es_warning, ec_missing_type_specifier,
                 &state->specifiers_position);
}

void scan_nonmember_declaration(a_decl_parse_state* state, a_source_range* range) {
  check_stack_limit();
  if (range)
    range->start = pos_curr_token;
  while (curr_token == tok_extension)
    get_token();
  add_stop_token(tok_semicolon);
  if (!is_special_declaration(state)) {
    a_token_sequence_number first = curr_token_sequence_number;
    decl_specifiers(options_of_specifiers(state), state);
    report_missing_type(state);
    if (curr_token == tok_semicolon)
      check_declaration_without_declarator(state);
    else if (can_begin_declarator() || !state->decl_flags.specifier_error)
      init_declarator_list(state);
    // A token that begins no declaration must not hold the loop.
    if (curr_token_sequence_number == first && curr_token != tok_end_of_source)
      get_token();
  }
  discard_end_of_parse_actions(state);
  if (range)
    range->end = end_pos_curr_token;
  if (!state->parse_flags.is_function_definition && !state->parse_flags.is_for_init)
    required_token(tok_semicolon, ec_exp_semicolon);
  remove_stop_token(tok_semicolon);
}

void declaration(bool is_file_scope, bool is_old_style_param, bool is_top_level,
                 bool has_extension_prefix, a_func_info_block* param_ids, a_source_range* range) {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  state.parse_flags.is_file_scope = is_file_scope;
  state.parse_flags.is_old_style_param = is_old_style_param;
  state.parse_flags.is_top_level = is_top_level;
  state.parse_flags.has_extension_prefix = has_extension_prefix;
  state.param_id_list = param_ids ? param_ids->param_id_list : nullptr;
  scan_nonmember_declaration(&state, range);
}

void for_init_declaration() {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  state.parse_flags.is_for_init = true;
  scan_nonmember_declaration(&state, nullptr);
}

// C11 6.7.10, at the keyword; the `;` is left.
void static_assert_declaration() {
  a_source_position position = pos_curr_token;
  a_constant condition;
  const char* message = "";
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return;
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  scan_integral_constant_expression(&condition);
  remove_stop_token(tok_comma);
  if (required_token(tok_comma, ec_exp_comma)) {
    if (curr_token == tok_string && const_for_curr_token.kind == con_string)
      message = const_for_curr_token.value.string.text;
    required_token(tok_string, ec_exp_string_literal);
  }
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  if (condition.kind == con_integer && condition.value.int_value == 0)
    pos_st_error(ec_static_assert, &position, message);
}

// ---- Typedefs ----

static void redeclare_typedef(a_symbol* previous, a_symbol_locator* locator,
                              a_decl_parse_state* state) {
  if (previous->kind != symk_type) {
    pos_sy_error(ec_not_compatible_with_previous_decl, &locator->position, previous);
  } else if (identical_types(previous->variant.type, state->declared_type)) {
    // C11 6.7 p3.
    bool is_permitted = std_version >= 201112 || gnu_mode;
    pos_diagnostic(is_permitted       ? es_remark
                   : strict_ansi_mode ? strict_ansi_error_severity
                                      : es_warning,
                   ec_duplicate_typedef, &locator->position);
  } else if (!is_error_type(state->declared_type) && !is_error_type(previous->variant.type)) {
    pos_sy_error(ec_not_compatible_with_previous_decl, &locator->position, previous);
  }
  state->symbol = previous;
}

void decl_typedef(a_symbol_locator* locator, a_decl_parse_state* state) {
  locator->symbol = nullptr;
  a_symbol* previous = forget_predeclared_function(curr_scope_id_lookup(locator, ilo_none));
  if (previous) {
    redeclare_typedef(previous, locator, state);
    attach_decl_attributes(state, false);
    return;
  }
  locator->symbol = nullptr;
  bool check = true;
  a_type* type = make_typedef_type(state->declared_type);
  a_symbol* symbol = enter_symbol(symk_type, locator, decl_scope_level, &check);
  symbol->variant.type = type;
  set_source_corresp_with_scope_depth(&type->source_corresp, symbol, decl_scope_level);
  add_to_types_list(type, decl_scope_level);
  record_symbol_declaration(srk_definition, symbol, &locator->position, nullptr);
  record_entity_in_decl_stmt_if_needed(symbol);
  state->symbol = symbol;
  attach_decl_attributes(state, false);
}

// ---- Redeclaration ----

// C99 6.7 p4. An unknown bound and an error type match anything.
bool redeclaration_types_are_compatible(a_type* new_type, a_type* old_type) {
  return f_types_are_compatible(new_type, old_type, tcf_error_matches | tcf_allow_unknown_bound);
}

void report_incompatible_redeclaration(const a_source_position* position, a_symbol* symbol) {
  pos_sy_error(ec_not_compatible_with_previous_decl, position, symbol);
}

static bool symbol_has_linkage(const a_symbol* symbol) {
  const a_source_correspondence* corresp = source_corresp_entry_for_symbol(symbol);
  return corresp && corresp->linkage != idl_none &&
         (symbol->kind == symk_variable || symbol->kind == symk_routine ||
          symbol->kind == symk_extern_variable || symbol->kind == symk_extern_routine);
}

bool is_hidden_by_local(const a_symbol_locator* locator) {
  a_symbol_locator own = *locator;
  own.symbol = nullptr;
  a_symbol* symbol = normal_id_lookup(&own, ilo_none);
  return symbol && symbol->scope_number != file_scope_number && !symbol_has_linkage(symbol);
}

// C99 6.2.2 p4: a declaration with linkage names the entity that an outer
// declaration of that name with linkage does, visible or not.
a_symbol* find_linked_declaration(a_symbol_locator* locator, bool has_linkage) {
  if (locator->is_error_locator)
    return nullptr;
  locator->symbol = nullptr;
  a_symbol* symbol = curr_scope_id_lookup(locator, ilo_none);
  locator->symbol = nullptr;
  if (symbol || !has_linkage)
    return symbol;
  symbol = normal_id_lookup(locator, ilo_none);
  locator->symbol = nullptr;
  if (symbol && symbol_has_linkage(symbol))
    return symbol;
  for (symbol = locator->header->first_symbol; symbol; symbol = symbol->next_homonym)
    if (symbol->scope_number == file_scope_number && symbol_has_linkage(symbol))
      return symbol;
  return find_extern_symbol(locator->header);
}

// ---- The translation unit ----

void translation_unit() {
  get_token();
  if (curr_token == tok_end_of_source && in_C_mode() && strict_ansi_mode)
    pos_diagnostic(strict_ansi_error_severity, ec_empty_translation_unit, &pos_curr_token);
  push_stop_token_stack();
  check_for_stdc_pragmas();
  while (curr_token != tok_end_of_source) {
    declaration(true, false, true, false, nullptr, nullptr);
    check_for_stdc_pragmas();
  }
  pop_stop_token_stack();
  process_alias_fixup_list();
  process_pragmas_at_end_of_source();
}

void decls_one_time_init() {
  // No variable of this module is kept for each unit.
}

void decls_init() {
  // Nothing of this module lives on from an earlier run.
}

void decls_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
