// The translation unit and the form of its declarations.

#include "decls.h"

#include "attribute.h"
#include "class_decl.h"
#include "const_ints.h"
#include "decl_inits.h"
#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "extasm.h"
#include "il.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "statements.h"
#include "symbol_ref.h"
#include "types.h"

#include <cstring>

// ---- Declarations without declarators ----

static bool is_unnamed_class(const a_type* type) {
  type = skip_typerefs(type);
  return is_class_struct_union_kind(type->kind) && type->source_corresp.is_unnamed;
}

static void report_useless_declaration(const a_decl_parse_state* state) {
  pos_diagnostic(tolerated_breach_severity(), ec_useless_decl, &state->specifiers_position);
}

// Only a static object at the scope of a namespace, but for one without a name, and
// a static or automatic one in a block.
static void check_storage_class_of_anonymous_union(a_decl_parse_state* state) {
  if (state->storage_class == sc_static)
    return;
  if (!is_in_function()) {
    if (!is_in_unnamed_namespace())
      pos_error(ec_anon_union_storage_class, &state->specifiers_position);
    state->storage_class = sc_static;
    return;
  }
  if (state->storage_class != sc_none && state->storage_class != sc_auto)
    pos_error(ec_storage_class_not_allowed, &state->storage_class_position);
  state->storage_class = sc_auto;
}

// `static union {...};`: the members are names of the scope around it (C++11
// 9.5 p5).
static void anonymous_union_declaration(a_decl_parse_state* state) {
  check_storage_class_of_anonymous_union(state);
  if (state->qualifiers != tq_none)
    pos_diagnostic(gnu_mode ? es_warning : es_discretionary_error,
                   gnu_mode ? ec_anonymous_union_qualifier_ignored
                            : ec_nonstandard_anonymous_union_qualifier,
                   &state->specifiers_position);
  declare_anonymous_union_object(state);
}

static void check_lone_tag_declaration(a_decl_parse_state* state) {
  if (state->storage_class == sc_typedef)
    pos_warning(ec_missing_typedef_name, &state->specifiers_position);
  else if (is_unnamed_class(state->type_specifier_type) && in_cplusplus_mode() &&
           is_union_type(state->type_specifier_type))
    anonymous_union_declaration(state);
  else if (state->storage_class != sc_none)
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                   ec_storage_class_requires_function_or_variable, &state->storage_class_position);
  else if (is_unnamed_class(state->type_specifier_type))
    report_useless_declaration(state); // C99 6.7 p2: neither a declarator nor a tag
  else if (state->qualifiers != tq_none)
    pos_warning(ec_useless_type_qualifiers, &state->specifiers_position);
}

// `struct s;`, `int;` and the like (C99 6.7 p2).
static void check_declaration_without_declarator(a_decl_parse_state* state) {
  if (state->decl_flags.specifier_error || is_error_type(state->type_specifier_type))
    return;
  attach_lone_type_attributes(state);
  if (state->decl_flags.defines_tag || state->decl_flags.declares_tag ||
      is_unnamed_class(state->type_specifier_type))
    check_lone_tag_declaration(state);
  else if (state->storage_class == sc_typedef && state->decl_flags.is_plain_void)
    pos_warning(ec_decl_of_void_ignored, &state->specifiers_position);
  else if (state->storage_class == sc_typedef)
    pos_error(ec_missing_typedef_name, &state->specifiers_position);
  else if (state->qualifiers != tq_none)
    pos_warning(ec_useless_type_qualifiers, &state->specifiers_position);
  else
    report_useless_declaration(state);
}

// Behind a message at the `=`, which is itself a place to go on at.
static void flush_initializer() {
  get_token();
  flush_tokens();
}

// ---- Old-style parameters ----

static a_param_id* param_id_on_list(const a_symbol_locator* locator, a_param_id* list) {
  while (list && !(list->symbol && list->symbol->header == locator->header))
    list = list->next;
  return list;
}

static void declare_old_style_param(const a_symbol_locator* locator, a_decl_parse_state* state) {
  a_param_id* param = param_id_on_list(locator, state->param_id_list);
  if (!param || state->storage_class == sc_typedef) {
    pos_error(ec_decl_should_be_of_param, &locator->position);
    return;
  }
  if (param->type) {
    pos_st_error(ec_id_already_declared, &locator->position, locator->header->identifier);
    return;
  }
  state->param_id_entry = param;
  param->declared_type = state->declared_type;
  check_and_adjust_parameter_type(state, &locator->position);
  param->type = state->declared_type;
  param->vla_fixups = take_vla_fixups();
  param->position = locator->position;
  param->storage_class = state->storage_class;
  param->is_register = state->storage_class == sc_register;
  param->attributes = copy_of_attributes_list(state->attributes_before);
  append_attributes(&param->attributes, state->attributes_after);
}

// The declarator names one of an identifier list (C99 6.9.1 p6).
static void old_style_param_declaration(const a_symbol_locator* locator,
                                        a_decl_parse_state* state) {
  if (!locator->is_error_locator)
    declare_old_style_param(locator, state);
  if (curr_token == tok_assign) {
    pos_error(ec_initializer_in_param, &pos_curr_token);
    flush_initializer();
  }
}

// ---- Variables ----

static void check_nonfunction_declaration_errors(a_decl_parse_state* state,
                                                 const a_symbol_locator* locator) {
  if (state->modifiers.inline_seen)
    pos_error(ec_inline_not_allowed, &state->modifiers.inline_position);
  if (state->storage_class == sc_typedef || locator->is_error_locator)
    return;
  // GNU C has `extern void end;` for an address that the linker makes.
  bool is_address = gnu_mode && in_C_mode() && state->storage_class == sc_extern &&
                    !is_initializer_start(state->declared_type);
  if (is_void_type(state->declared_type) && !is_address) {
    pos_error(ec_incomplete_type_not_allowed, &locator->position);
    state->declared_type = error_type();
  } else if (is_abstract_class_type(state->declared_type)) { // C++11 10.4 p2
    abstract_class_diagnostic(ec_abstract_class_object_not_allowed, state->declared_type,
                              &locator->position);
    state->declared_type = error_type();
  }
}

static unsigned flags_of_variable(const a_decl_parse_state* state, bool has_initializer) {
  bool is_extern = state->storage_class == sc_extern;
  if (has_initializer)
    return dvf_declaration | dvf_definition | dvf_initialized;
  if (is_in_function() || in_cplusplus_mode())
    return is_extern ? dvf_declaration : dvf_declaration | dvf_definition;
  bool is_tentative = state->storage_class == sc_none || state->storage_class == sc_static;
  return is_tentative ? dvf_declaration | dvf_definition | dvf_tentative : dvf_declaration;
}

// An array of unknown bound is completed by its initialiser, or at file scope
// by a later declaration (C99 6.9.2 p3 excepts tentative definitions with
// internal linkage, 6.7 p7 objects without linkage).
static void check_completeness(a_decl_parse_state* state, const a_symbol_locator* locator,
                               unsigned flags) {
  a_type* type = state->declared_type;
  bool needs_type =
      (flags & dvf_definition) && (is_in_function() || in_cplusplus_mode() ||
                                   state->storage_class == sc_static || (flags & dvf_initialized));
  if (!needs_type || !is_incomplete_type(type) || is_error_type(type))
    return;
  if (is_incomplete_array_type(type) && (flags & dvf_initialized))
    return;
  pos_error(ec_incomplete_type_not_allowed, &locator->position);
  state->declared_type = error_type();
}

// The storage class that the declaration has, whatever was written: an object
// of a block is automatic, and `extern int x = 1;` defines x.
static a_storage_kind storage_of_variable(const a_decl_parse_state* state, bool has_initializer) {
  if (is_in_function() && state->storage_class == sc_none)
    return state->modifiers.thread_local_seen ? sc_static : sc_auto;
  if (has_initializer && state->storage_class == sc_extern && !is_in_function())
    return sc_none;
  return state->storage_class;
}

// A static constant that nothing has referenced yet need not be stored.
static void note_unreferenced_static(a_variable* variable) {
  if (!keep_unneeded_statics && !is_in_function() && variable->storage_kind == sc_static &&
      variable->init_kind == initk_constant && !variable->source_corresp.referenced &&
      !variable->is_used && !variable->source_corresp.needed &&
      !is_volatile_qualified_type(variable->type))
    variable->source_corresp.reference_state = ref_state_unreferenced_static;
}

static void scan_initializer(a_decl_parse_state* state) {
  a_source_position equals_position = pos_curr_token;
  // Names are looked up where the object belongs (C++11 9.4.2 p2, 3.4.1 p13).
  int pushed = push_scopes_of_member(state->symbol);
  initializer(state);
  pop_scopes_of_member(pushed);
  mark_variable_value_set(state->symbol);
  a_variable* variable = state->symbol->variant.variable;
  a_source_range range = variable->initializer_range;
  note_definition_range(&variable->source_corresp, &equals_position, &range);
  note_unreferenced_static(variable);
}

// A constexpr object without an initialiser: its default constructor gives it a
// value (C++11 7.1.5 p9).
static void check_constexpr_without_initializer(const a_decl_parse_state* state) {
  a_type* element = skip_array_types(state->declared_type);
  const a_source_position* position = &state->modifiers.constexpr_position;
  if (state->storage_class == sc_extern || !is_class_struct_union_type(element) ||
      is_incomplete_type(element)) {
    pos_error(ec_constexpr_variable_decl_must_be_definition, position);
    return;
  }
  const a_routine* constructor = special_member_of_class(element, smk_default_constructor, tq_none);
  if (constructor && constructor->is_user_provided && !constructor->is_constexpr)
    pos_ty_error(ec_default_ctor_not_constexpr, position, make_unqualified_type(element));
}

// C++11 7.1.5 p1, p9: such an object is const, and defined here.
static void apply_constexpr(a_decl_parse_state* state, bool has_initializer) {
  if (!state->modifiers.constexpr_seen || is_error_type(state->declared_type))
    return;
  if (!is_reference_type(state->declared_type))
    state->declared_type = make_qualified_type(state->declared_type, tq_const);
  if (!has_initializer)
    check_constexpr_without_initializer(state);
}

// The body of what would be a function, if its type were known.
static bool is_body_of_unknown_type(const a_decl_parse_state* state) {
  return state->parse_flags.is_top_level && curr_token == tok_lbrace &&
         is_error_type(state->declared_type);
}

// Nothing is said about what the body holds.
static void pass_over_body(a_decl_parse_state* state) {
  flush_until_matching_token_full(false);
  state->parse_flags.is_function_definition = curr_token != tok_semicolon;
}

static void variable_declaration(a_symbol_locator* locator, a_decl_parse_state* state) {
  const bool has_body = is_body_of_unknown_type(state);
  bool has_initializer = !has_body && is_initializer_start(state->declared_type);
  check_nonfunction_declaration_errors(state, locator);
  check_storage_of_vla(state, &locator->position);
  apply_constexpr(state, has_initializer);
  a_storage_kind written = state->storage_class;
  state->storage_class = storage_of_variable(state, has_initializer);
  unsigned flags = flags_of_variable(state, has_initializer);
  check_completeness(state, locator, flags);
  decl_variable(locator, state, flags);
  check_access_of_declaration(state->symbol);
  if (has_body)
    pass_over_body(state);
  else if (has_initializer)
    scan_initializer(state);
  else if ((flags & dvf_definition) &&
           state->symbol->variant.variable->init_kind == initk_none) // none in its class
    def_initializer(state->symbol, &locator->position);
  state->storage_class = written;
}

// ---- One declarator ----

static void check_storage_class_of_routine(a_decl_parse_state* state) {
  if (state->storage_class == sc_auto || state->storage_class == sc_register) {
    pos_error(ec_bad_function_storage_class, &state->storage_class_position);
    state->storage_class = sc_none;
  }
  if (is_in_function() && state->storage_class == sc_static) {
    pos_error(ec_block_scope_function_must_be_extern, &state->storage_class_position);
    state->storage_class = sc_none;
  }
}

// What stands behind the declarator of no object (C99 6.7.8 p3).
static void refuse_initializer(a_symbol* symbol) {
  if (curr_token != tok_assign)
    return;
  pos_sy_error(ec_cannot_initialize, &pos_curr_token, symbol);
  flush_initializer();
}

static void routine_declaration(a_symbol_locator* locator, a_decl_parse_state* state,
                                a_func_info_block* func_info) {
  if (func_info->is_old_style && func_info->param_id_list) {
    pos_error(ec_param_id_list_needs_function_def, &locator->position);
    func_info->param_id_list = nullptr;
  }
  check_storage_class_of_routine(state);
  decl_routine(locator, state, func_info, drf_declaration);
  check_access_of_declaration(state->symbol);
  if (curr_token == tok_lparen) {
    pos_sy_error(ec_lparen_after_function, &pos_curr_token, state->symbol);
    flush_tokens();
  }
  refuse_initializer(state->symbol);
}

static void typedef_declaration(a_symbol_locator* locator, a_decl_parse_state* state) {
  check_nonfunction_declaration_errors(state, locator);
  decl_typedef(locator, state);
  refuse_initializer(state->symbol);
}

// Whether a body follows the declarator of a function.
static bool is_start_of_definition(const a_decl_parse_state* state, const a_symbol_locator* locator,
                                   const a_func_info_block* func_info) {
  if (!state->parse_flags.is_top_level || state->storage_class == sc_typedef ||
      !is_function_type(state->declared_type))
    return false;
  if (curr_token == tok_lbrace || curr_token == tok_try || is_definition_by_word() ||
      (curr_token == tok_colon && locator->is_constructor_name))
    return true;
  return func_info->is_old_style && func_info->param_id_list && is_decl_start(0);
}

// The declarator has been read; false when the declaration ends with it.
static bool declare(a_symbol_locator* locator, a_decl_parse_state* state,
                    a_func_info_block* func_info) {
  if (state->parse_flags.is_old_style_param) {
    old_style_param_declaration(locator, state);
  } else if (is_start_of_definition(state, locator, func_info)) {
    function_definition(locator, state, func_info);
    return false;
  } else if (state->storage_class == sc_typedef) {
    typedef_declaration(locator, state);
  } else if (is_function_type(state->declared_type)) {
    routine_declaration(locator, state, func_info);
  } else {
    variable_declaration(locator, state);
  }
  return true;
}

static unsigned options_of_declarator(const a_decl_parse_state* state) {
  unsigned options = do_name_required;
  if (state->parse_flags.is_old_style_param)
    options |= do_k_and_r_parameter;
  if (state->parse_flags.is_for_init)
    options |= do_for_init;
  if (vla_enabled && in_C_mode() && !state->parse_flags.is_old_style_param)
    options |= do_vla;
  return options;
}

static void init_declarator_list(a_decl_parse_state* state) {
  a_symbol_locator locator;
  a_func_info_block func_info;
  const size_t waiting_dimensions = num_waiting_vla_dimensions();
  const a_storage_kind storage_class = state->storage_class;
  add_stop_token(tok_comma);
  add_stop_token(tok_assign);
  for (;;) {
    clear_func_info(&func_info);
    state->storage_class = storage_class;
    state->asm_name = nullptr;
    state->attributes_after = scan_gnu_attribute_groups(al_specifiers);
    declarator(options_of_declarator(state), state, nullptr, &locator, &func_info);
    scan_gnu_asm_name(state);
    append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
    add_vla_size_statements(waiting_dimensions);
    bool more = declare(&locator, state, &func_info);
    if (!more || curr_token != tok_comma)
      break;
    run_end_of_parse_actions(state, true);
    get_token();
  }
  remove_stop_token(tok_assign);
  remove_stop_token(tok_comma);
}

// ---- Declarations ----

// What follows the name of an int in `a;` and `a = 1, b;`, which old C and GNU C
// take at file scope.
static bool follows_name_of_int(a_token_kind token) {
  return (gcc_mode || C_dialect == cd_k_and_r) && (token == tok_semicolon || token == tok_comma ||
                                                   token == tok_assign || token == tok_lbracket);
}

// `f() {...}` is a function that returns int, in C++ for `main` alone.
static bool is_start_without_type(const a_decl_parse_state* state) {
  if (!state->parse_flags.is_top_level || curr_token != tok_identifier)
    return false;
  if (in_cplusplus_mode() && strcmp(locator_for_curr_id.header->identifier, "main") != 0)
    return false;
  a_token_kind next = next_token();
  return (next == tok_lparen || follows_name_of_int(next)) && !curr_type_symbol();
}

static unsigned options_of_specifiers(const a_decl_parse_state* state) {
  unsigned options = dso_type_specifiers | dso_storage_class | dso_modified_typedef_allowed;
  if (state->parse_flags.is_file_scope)
    options |= dso_file_scope;
  if (state->parse_flags.is_old_style_param)
    options |= dso_parameter | dso_allow_typedef_in_parameter; // refused with the name
  if (state->parse_flags.is_for_init)
    options |= dso_for_init;
  if (is_start_without_type(state))
    options |= dso_no_type_required;
  return options;
}

static void lone_semicolon(const a_decl_parse_state* state) {
  if (!state->parse_flags.is_file_scope)
    pos_error(ec_exp_declaration, &pos_curr_token);
  else if (in_C_mode() || std_version < 201103) // C++11 has empty declarations
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_remark,
                   ec_extra_semicolon, &pos_curr_token);
}

// A body behind the `;` of `int f(void);`, which is passed over as a whole, or a
// closing bracket too many: the declaration after it is read.
static bool is_stray_bracket(a_decl_parse_state* state) {
  if (!state->parse_flags.is_top_level || (curr_token != tok_lbrace && curr_token != tok_rbrace &&
                                           curr_token != tok_rparen && curr_token != tok_rbracket))
    return false;
  pos_error(ec_exp_declaration, &pos_curr_token);
  if (curr_token == tok_lbrace)
    flush_until_matching_token_full(false);
  else
    get_token();
  state->parse_flags.is_function_definition = true; // no `;` follows
  return true;
}

// What is no list of specifiers and declarators, up to its `;`.
static bool is_special_declaration(a_decl_parse_state* state) {
  if (curr_token == tok_semicolon)
    lone_semicolon(state);
  else if (curr_token == tok_static_assert)
    static_assert_declaration();
  else if (curr_token == tok_asm || curr_token == tok_ms_asm)
    asm_declaration(false);
  else if (!is_cplusplus_declaration(state) && !is_stray_bracket(state))
    return false;
  state->declared_type = error_type();
  return true;
}

static bool can_begin_declarator() {
  return curr_token == tok_identifier || curr_token == tok_star || curr_token == tok_lparen ||
         (in_cplusplus_mode() && (curr_token == tok_ampersand || curr_token == tok_and_and ||
                                  curr_token == tok_colon_colon));
}

static void report_missing_type(const a_decl_parse_state* state) {
  if (!state->decl_flags.no_type_given || state->decl_flags.specifier_error)
    return;
  bool is_main =
      curr_token == tok_identifier && strcmp(locator_for_curr_id.header->identifier, "main") == 0;
  report_missing_type_specifier(is_main ? ec_implicit_int_on_main : ec_missing_type_specifier,
                                &state->specifiers_position);
}

// A single declaration of `extern "C"` is `extern`, and nothing else (C++11 7.5
// p7).
static void apply_linkage_prefix(a_decl_parse_state* state) {
  if (!state->parse_flags.has_linkage_specification)
    return;
  if (state->storage_class == sc_none)
    state->storage_class = state->storage_class_before_declarator = sc_extern;
  else if (state->storage_class == sc_static)
    pos_error(ec_mult_storage_classes, &state->storage_class_position);
}

void check_access_of_declaration(const a_symbol* symbol) {
  if (curr_deferred_access_scope == depth_scope_stack)
    perform_deferred_access_checks_at_depth(depth_scope_stack, symbol);
}

// The specifiers end with the definition of a class or an enum, and with no `;`.
static bool is_semicolon_missing(const a_decl_parse_state* state) {
  return state->decl_flags.defines_tag && state->parse_flags.is_top_level && is_decl_start(0) &&
         (curr_token != tok_identifier || next_token() == tok_identifier ||
          next_token() == tok_star);
}

static void declaration_with_specifiers(a_decl_parse_state* state) {
  a_token_sequence_number first = curr_token_sequence_number;
  const size_t waiting_dimensions = num_waiting_vla_dimensions();
  if (in_cplusplus_mode())
    defer_access_checks(depth_scope_stack);
  decl_specifiers(options_of_specifiers(state), state);
  add_vla_size_statements(waiting_dimensions);
  report_missing_type(state);
  apply_linkage_prefix(state);
  if (curr_token == tok_semicolon) {
    check_declaration_without_declarator(state);
  } else if (is_semicolon_missing(state)) {
    pos_error(ec_exp_semicolon, &pos_curr_token);
    state->parse_flags.is_function_definition = true; // nothing is passed over
  } else if (can_begin_declarator() || !state->decl_flags.specifier_error) {
    init_declarator_list(state);
  }
  check_access_of_declaration(nullptr);
  // A token that begins no declaration must not hold the loop.
  if (curr_token_sequence_number == first && curr_token != tok_end_of_source)
    get_token();
}

void scan_nonmember_declaration(a_decl_parse_state* state, a_source_range* range) {
  check_stack_limit();
  // A declaration in a block was selected for as a statement.
  select_curr_construct_pragmas(is_in_function());
  if (range)
    range->start = pos_curr_token;
  while (loop_token(tok_extension))
    state->parse_flags.has_extension_prefix = true;
  add_stop_token(tok_semicolon);
  scan_linkage_prefix(state);
  if (!is_special_declaration(state))
    declaration_with_specifiers(state);
  process_curr_construct_pragmas(nullptr, nullptr);
  run_end_of_parse_actions(state, false);
  if (state->parse_flags.has_linkage_specification)
    pop_name_linkage();
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

// ---- Static assertions (C11 6.7.10, C++11 7 p4) ----

// The message, behind its comma. C++17 lets it away.
static const char* static_assert_message() {
  const char* message = "";
  if (in_cplusplus_mode() && curr_token == tok_rparen) {
    if (std_version < 201703)
      pos_diagnostic(gnu_mode ? es_warning : es_discretionary_error, ec_terse_static_assert,
                     &pos_curr_token);
    return message;
  }
  if (required_token(tok_comma, ec_exp_comma)) {
    if (curr_token == tok_string && const_for_curr_token.kind == con_string)
      message = const_for_curr_token.value.string.text;
    required_token(tok_string, ec_exp_string_literal);
  }
  return message;
}

void static_assert_declaration() {
  cannot_bind_to_curr_construct();
  a_source_position position = pos_curr_token;
  a_constant condition;
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return;
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  scan_integral_constant_expression(&condition);
  remove_stop_token(tok_comma);
  const char* message = static_assert_message();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  if (condition.kind == con_integer && condition.value.int_value == 0)
    pos_st_error(ec_static_assert, &position, message);
}

// ---- The translation unit ----

// C99 6.7.4 p6: another unit has the external definition of such a function;
// the body here is for inlining, and other units may have it too.
static void mark_inline_definitions() {
  if (!in_C_mode())
    return;
  for (a_routine* routine = il_header.primary_scope->routines; routine; routine = routine->next)
    if (routine->is_inline && routine->defined && !routine->has_external_declaration &&
        routine->source_corresp.linkage == idl_external)
      routine->defined_elsewhere = routine->is_inline_comdat = true;
}

static void check_misra_rules_at_start() {
  if (check_misra_c_2004 && in_C_mode() && curr_token != tok_end_of_source && !strict_ansi_mode)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_1_1, &pos_curr_token);
}

static void check_misra_rules_at_end() {
  if (!check_misra_c_2004)
    return;
  for (a_variable* variable = il_header.primary_scope->variables; variable;
       variable = variable->next)
    if (variable->storage_kind == sc_extern && variable->source_corresp.symbol)
      pos_sy_diagnostic(misra_required_severity, ec_misra_c_2004_8_7,
                        &variable->source_corresp.position, variable->source_corresp.symbol);
}

void translation_unit() {
  get_token();
  if (curr_token == tok_end_of_source && in_C_mode() && strict_ansi_mode)
    pos_diagnostic(strict_ansi_error_severity, ec_empty_translation_unit, &pos_curr_token);
  check_misra_rules_at_start();
  push_stop_token_stack();
  check_for_stdc_pragmas();
  while (curr_token != tok_end_of_source) {
    declaration(true, false, true, false, nullptr, nullptr);
    check_for_stdc_pragmas();
  }
  pop_stop_token_stack();
  check_misra_rules_at_end();
  mark_inline_definitions();
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
  clear_default_sections();
}
