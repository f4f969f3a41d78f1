// Text of the assembler in declarations and statements, and names that it
// knows entities by.

#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "extasm.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "types.h"

#include <cstring>

// ---- Asm names ----

static bool is_narrow_string() {
  return curr_token == tok_string && const_for_curr_token.kind == con_string &&
         const_for_curr_token.string_char_kind == sck_ordinary;
}

static void report_bad_asm_string() {
  if (curr_token == tok_string)
    pos_error(ec_wide_string_invalid_in_asm, &pos_curr_token);
  else
    syntax_error(ec_exp_asm_string);
}

static void report_gnu_asm_name() {
  if (report_gnu_extensions)
    pos_warning(ec_asm_name_is_gnu_extension, &pos_curr_token);
  else if (!gnu_mode && strict_ansi_mode)
    pos_diagnostic(strict_ansi_discretionary_severity, ec_asm_name_is_gnu_extension,
                   &pos_curr_token);
}

void scan_gnu_asm_name(a_decl_parse_state* state) {
  if (curr_token != tok_asm || next_token() != tok_lparen)
    return;
  report_gnu_asm_name();
  state->asm_name_position = pos_curr_token;
  get_token();
  get_token();
  add_stop_token(tok_rparen);
  if (is_narrow_string()) {
    state->asm_name =
        copy_string_to_region(file_scope_region_number, const_for_curr_token.value.string.text);
    get_token();
  } else {
    report_bad_asm_string();
    if (curr_token == tok_string)
      get_token();
  }
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
}

// Whether the name may still be given: uses may have been translated with the
// one that the entity had.
static bool may_be_renamed(const char* old_name, bool is_defined, const a_decl_parse_state* state) {
  if (old_name && strcmp(old_name, state->asm_name) == 0)
    return false;
  if (old_name)
    pos_warning(ec_asm_name_conflict, &state->asm_name_position);
  else if (is_defined)
    pos_warning(ec_asm_name_after_definition, &state->asm_name_position);
  else
    return true;
  return false;
}

// An external name without one of its own may have been given another for all
// its declarations.
static void take_redefined_name(const a_symbol* symbol, const a_source_correspondence& entity,
                                a_decl_parse_state* state) {
  if (state->asm_name || entity.linkage != idl_external || entity.is_class_member)
    return;
  state->asm_name = redefined_external_name(symbol->header->identifier);
  state->asm_name_position = symbol->position;
}

void apply_asm_name_to_variable(a_symbol* symbol, a_decl_parse_state* state, bool is_redeclared) {
  take_redefined_name(symbol, symbol->variant.variable->source_corresp, state);
  if (!state->asm_name)
    return;
  a_variable* variable = symbol->variant.variable;
  const a_source_position* position = &state->asm_name_position;
  if (state->storage_class_before_declarator == sc_register) {
    // The registers of the target have no names that a program could use.
    pos_st_error(ec_bad_reg_name, position, state->asm_name);
  } else if (variable->storage_kind == sc_auto) {
    pos_warning(ec_asm_name_on_auto_variable, position);
  } else if (state->asm_name[0] == ':' && gnu_version > 30000) {
    pos_error(ec_register_name_on_nonregister, position);
  } else {
    const char* old_name = variable->name_in_own_text ? variable->asm_name.text : nullptr;
    bool is_defined = is_redeclared && symbol->defined;
    if (!may_be_renamed(old_name, is_defined, state))
      return;
    variable->holds_asm_name = true;
    variable->asm_name.text = state->asm_name;
    variable->name_in_own_text = true;
  }
}

void apply_asm_name_to_routine(a_symbol* symbol, a_decl_parse_state* state, bool is_redeclared) {
  take_redefined_name(symbol, symbol->variant.routine->source_corresp, state);
  if (!state->asm_name)
    return;
  a_routine* routine = symbol->variant.routine;
  const char* old_name = routine->gnu_supplement ? routine->gnu_supplement->asm_name : nullptr;
  if (!may_be_renamed(old_name, is_redeclared && routine->has_body, state))
    return;
  if (!routine->gnu_supplement)
    routine->gnu_supplement = alloc_gnu_supplement_for_routine();
  routine->gnu_supplement->asm_name = state->asm_name;
}

// ---- Asm declarations and statements ----

static void scan_asm_qualifiers(an_asm_entry* entry, bool is_statement) {
  while (curr_token == tok_volatile || curr_token == tok_const || curr_token == tok_goto ||
         curr_token == tok_inline) {
    if (curr_token == tok_goto && gnu_mode && is_statement)
      entry->is_goto = entry->is_volatile = true;
    else if (curr_token != tok_volatile)
      pos_error(ec_invalid_asm_qualifiers, &pos_curr_token);
    else if (report_gnu_extensions)
      pos_warning(ec_volatile_asm_is_gnu_extension, &pos_curr_token);
    entry->is_volatile |= curr_token == tok_volatile;
    get_token();
  }
}

static a_constant* make_asm_text(const char* text) {
  a_constant* constant = alloc_constant(con_string);
  size_t length = strlen(text) + 1;
  char* copy = alloc_text_of_string_literal(length);
  memcpy(copy, text, length);
  constant->type = string_literal_type(sck_ordinary, length);
  constant->value.string.text = copy;
  constant->value.string.length = length;
  return constant;
}

// The parentheses and what is between them.
static void scan_asm_text(an_asm_entry* entry) {
  if (!required_token(tok_lparen, ec_exp_lparen))
    return;
  add_stop_token(tok_rparen);
  add_stop_token(tok_colon);
  if (is_narrow_string()) {
    entry->text = make_asm_text(const_for_curr_token.value.string.text);
    get_token();
  } else {
    report_bad_asm_string();
    if (curr_token == tok_string)
      get_token();
    else
      flush_tokens();
  }
  if (curr_token == tok_colon || curr_token == tok_colon_colon)
    asm_operands_spec(entry);
  remove_stop_token(tok_colon);
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
}

an_asm_entry* asm_declaration(bool is_statement) {
  cannot_bind_to_curr_construct();
  int32_t saved_region = 0;
  if (!is_statement)
    switch_to_file_scope_region(&saved_region);
  an_asm_entry* entry = alloc_asm_entry();
  entry->source_corresp.position = pos_curr_token;
  get_token();
  scan_asm_qualifiers(entry, is_statement);
  scan_asm_text(entry);
  if (!entry->text)
    entry->text = make_asm_text("");
  if (!is_statement)
    add_to_asm_entries_list(entry, depth_of_linked_entities());
  entry->is_basic_in_function = is_statement && !entry->is_gnu_form;
  switch_back_to_original_region(saved_region);
  return entry;
}
