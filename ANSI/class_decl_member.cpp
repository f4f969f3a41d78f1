// The member declarations of a class (C99 6.7.2.1, C++11 9.2).

#include "class_decl_int.h"

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "types.h"

namespace {

// Where the members of a class go.
struct a_member_list {
  a_type* class_type;
  a_field* last_field;
};

} // namespace

static void append_field(a_member_list* members, a_field* field) {
  if (members->last_field)
    members->last_field->next = field;
  else
    members->class_type->variant.class_struct_union.fields = field;
  members->last_field = field;
}

// ---- Data members ----

// Behind a `:`, without a name.
static a_field* unnamed_bit_field(a_type* class_type, a_decl_parse_state* state) {
  a_field* field = make_unnamed_field(class_type, state->type_specifier_type, &pos_curr_token);
  scan_bit_field_width(field);
  return field;
}

static a_field* named_field(a_type* class_type, a_decl_parse_state* state,
                            a_symbol_locator* locator) {
  check_ql_type_qualifiers(state->declared_type, &locator->position, 0);
  a_field* field = make_named_field(class_type, state->declared_type, locator);
  field->is_mutable = state->modifiers.mutable_seen;
  finish_field(class_type, field);
  if (in_cplusplus_mode())
    check_field_of_cplusplus(class_type, field, state);
  return field;
}

static void add_field(a_member_list* members, a_decl_parse_state* state, a_field* field) {
  append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
  attach_declarator_attributes(state, field, iek_field);
  append_field(members, field);
  process_curr_construct_pragmas(field->source_corresp.symbol, nullptr);
  if (in_cplusplus_mode() && (curr_token == tok_assign || curr_token == tok_lbrace))
    field_initializer_in_class(members->class_type, field);
}

// What `inline`, `virtual` and the like say of no object or type.
static void check_words_of_nonfunction(const a_decl_parse_state* state) {
  const a_decl_modifiers_block& modifiers = state->modifiers;
  if (modifiers.virtual_seen)
    pos_error(ec_virtual_not_allowed, &modifiers.virtual_position);
  if (modifiers.explicit_seen)
    pos_error(ec_explicit_not_allowed, &modifiers.explicit_position);
  if (modifiers.inline_seen)
    pos_error(ec_inline_not_allowed, &modifiers.inline_position);
  if (modifiers.friend_seen)
    pos_error(ec_bad_friend_decl, &modifiers.friend_position);
}

// ---- Declarators ----

static bool at_function_body(const a_symbol_locator* locator) {
  return curr_token == tok_lbrace || curr_token == tok_try ||
         (curr_token == tok_colon && locator->is_constructor_name);
}

// No declarations of old-style parameters follow in a class.
static void refuse_old_style_params(a_func_info_block* func_info,
                                    const a_source_position* position) {
  if (!func_info->is_old_style || !func_info->param_id_list)
    return;
  pos_error(ec_param_id_list_needs_function_def, position);
  func_info->param_id_list = nullptr;
}

// A function, whose declarator has been read; false when a body ended the
// declaration.
static bool function_member(a_member_list* members, a_decl_parse_state* state,
                            a_symbol_locator* locator, a_func_info_block* func_info) {
  a_type* class_type = members->class_type;
  a_virt_specifiers virt = {};
  refuse_old_style_params(func_info, &locator->position);
  scan_gnu_asm_name(state);
  append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
  scan_virt_specifiers(&virt);
  a_routine* routine = state->modifiers.friend_seen
                           ? decl_friend_function(class_type, state, locator, func_info, &virt)
                           : decl_member_function(class_type, state, locator, func_info, &virt);
  check_access_of_declaration(state->symbol);
  run_end_of_parse_actions(state, true);
  scan_function_definition_word(routine, state);
  if (!at_function_body(locator))
    return true;
  function_body_in_class(routine, class_type, state, locator, func_info);
  return false;
}

// One declarator of a list; false when the declaration ends with it.
static bool member_declarator(a_member_list* members, a_decl_parse_state* state) {
  a_symbol_locator locator;
  a_func_info_block func_info;
  clear_func_info(&func_info);
  state->attributes_after = scan_gnu_attribute_groups(al_specifiers);
  state->asm_name = nullptr;
  if (curr_token == tok_colon) {
    if (in_cplusplus_mode())
      check_words_of_nonfunction(state);
    add_field(members, state, unnamed_bit_field(members->class_type, state));
    return true;
  }
  unsigned options = do_name_required | do_member;
  if (state->storage_class == sc_static || state->modifiers.friend_seen)
    options |= do_no_object;
  add_stop_token(tok_colon);
  declarator(options, state, nullptr, &locator, &func_info);
  append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
  remove_stop_token(tok_colon);
  if (in_C_mode()) {
    add_field(members, state, named_field(members->class_type, state, &locator));
    return true;
  }
  if (state->storage_class != sc_typedef && is_function_type(state->declared_type)) {
    bool more = function_member(members, state, &locator, &func_info);
    process_curr_construct_pragmas(state->symbol, nullptr);
    return more;
  }
  if (state->modifiers.friend_seen && is_error_type(state->declared_type))
    return true;
  check_words_of_nonfunction(state);
  if (state->storage_class == sc_typedef)
    decl_member_typedef(&locator, state);
  else if (state->storage_class == sc_static)
    decl_static_data_member(members->class_type, &locator, state);
  else
    add_field(members, state, named_field(members->class_type, state, &locator));
  process_curr_construct_pragmas(state->symbol, nullptr);
  return true;
}

// Whether the declarators were read up to where a `;` belongs.
static bool member_declarator_list(a_member_list* members, a_decl_parse_state* state) {
  bool more = true;
  add_stop_token(tok_comma);
  do {
    if (curr_token == tok_semicolon) { // `int a, ;`
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                     ec_nonstd_extra_comma, &pos_curr_token);
      break;
    }
    if (curr_token == tok_rbrace) { // `int a, }`
      pos_error(ec_exp_declaration, &pos_curr_token);
      more = false;
      break;
    }
    more = member_declarator(members, state);
    run_end_of_parse_actions(state, true);
  } while (more && loop_token(tok_comma));
  remove_stop_token(tok_comma);
  discard_end_of_parse_actions(state);
  return more;
}

// ---- Declarations ----

// `friend class C;`, in C++11 also `friend C;`.
static bool is_friend_type_declaration(const a_decl_parse_state* state) {
  return state->modifiers.friend_seen && curr_token == tok_semicolon;
}

// Behind the specifiers; true when a `;` belongs behind the declaration.
static bool member_declarators(a_member_list* members, a_decl_parse_state* state) {
  if (is_friend_type_declaration(state)) {
    decl_friend_class(members->class_type, state);
    return true;
  }
  if (curr_token == tok_semicolon) {
    attach_lone_type_attributes(state);
    if (in_cplusplus_mode() && !is_error_type(state->type_specifier_type))
      check_words_of_nonfunction(state);
    if (a_field* field = member_without_declarator(members->class_type, state))
      append_field(members, field);
    return true;
  }
  return member_declarator_list(members, state);
}

static bool member_declaration_with_specifiers(a_member_list* members) {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  while (loop_token(tok_extension))
    state.parse_flags.has_extension_prefix = true;
  unsigned options = dso_type_specifiers | dso_member;
  if (in_cplusplus_mode()) {
    options |= dso_storage_class | dso_class_words;
    defer_access_checks(depth_scope_stack);
  }
  decl_specifiers(options, &state);
  bool needs_semicolon = member_declarators(members, &state);
  check_access_of_declaration(nullptr);
  return needs_semicolon;
}

// At an access specifier.
static void access_label() {
  an_access_specifier access;
  access_of_token(curr_token, &access);
  scope_stack[depth_scope_stack].member_access = access;
  get_token();
  if (!loop_token(tok_colon))
    pos_error(ec_exp_colon, &pos_curr_token);
}

static void extra_semicolon() {
  pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_remark,
                 ec_extra_semicolon, &pos_curr_token);
  get_token();
}

// What a class has beside specifiers and declarators, in C assertions alone (C11
// 6.7.2.1 p1); false for none of it.
static bool is_special_member_declaration(a_member_list* members, bool* needs_semicolon) {
  if (curr_token == tok_static_assert) {
    static_assert_declaration();
  } else if (in_C_mode()) {
    return false;
  } else if (curr_token == tok_asm || curr_token == tok_ms_asm) {
    asm_declaration(false);
  } else if (curr_token == tok_using) {
    member_using_declaration(members->class_type);
  } else if (curr_token == tok_template) {
    a_decl_parse_state state;
    clear_decl_parse_state(&state);
    is_cplusplus_declaration(&state);
    *needs_semicolon = !state.parse_flags.is_function_definition;
  } else if (is_access_declaration()) {
    access_declaration(members->class_type);
  } else {
    return false;
  }
  return true;
}

// A declaration in error leaves the class not empty.
static void add_error_field(a_member_list* members) {
  if (in_C_mode() || members->class_type->variant.class_struct_union.fields)
    return;
  a_field* field = make_unnamed_field(members->class_type, error_type(), &pos_curr_token);
  field->is_error = true;
  append_field(members, field);
}

static void member_declaration(a_member_list* members) {
  check_stack_limit();
  select_curr_construct_pragmas(false);
  bool needs_semicolon = true;
  a_token_sequence_number start = curr_token_sequence_number;
  uint64_t errors_before = total_errors;
  if (!is_special_member_declaration(members, &needs_semicolon))
    needs_semicolon = member_declaration_with_specifiers(members);
  process_curr_construct_pragmas(nullptr, nullptr);
  if (total_errors != errors_before)
    add_error_field(members);
  if (!needs_semicolon) {
    loop_token(tok_semicolon); // C++03 9.2: one may stand behind a body
    return;
  }
  // What can't even begin a declaration must not hold the loop.
  if (!required_token(tok_semicolon, ec_exp_semicolon) && curr_token_sequence_number == start)
    get_token();
}

void member_declaration_list(a_type* class_type) {
  a_member_list members = {class_type, nullptr};
  an_access_specifier access;
  add_stop_token(tok_semicolon);
  add_stop_token(tok_rbrace);
  while (curr_token != tok_rbrace && curr_token != tok_end_of_source) {
    if (curr_token == tok_semicolon)
      extra_semicolon();
    else if (in_cplusplus_mode() && access_of_token(curr_token, &access))
      access_label();
    else
      member_declaration(&members);
  }
  remove_stop_token(tok_rbrace);
  remove_stop_token(tok_semicolon);
}
