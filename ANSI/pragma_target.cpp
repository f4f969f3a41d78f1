// Pragmas of the target: which action each has, the two forms in which they are
// written, and the tests of their subjects.
//
// In C a pragma that says something of a function or object names it, as in
// `#pragma WEAK(f)`, and acts when its scope is closed. In C++ it stands in front
// of the declaration: `#pragma WEAK`.

#include "const_ints.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_entities.h"
#include "lexical_int.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma_int.h"
#include "symbol_tbl.h"

bool pragma_has_parens;
bool pragma_had_error;
static bool pragma_tokens_wrapped; // the action has ended the rescanning

static const struct {
  a_pragma_kind_tag kind;
  a_target_pragma_action action;
} target_actions[] = {{pk_data_align, data_align_pragma},
                      {pk_data_section, data_section_pragma},
                      {pk_code_section, code_section_pragma},
                      {pk_func_never_returns, function_mark_pragma},
                      {pk_func_cannot_inline, function_mark_pragma},
                      {pk_func_always_inline, function_mark_pragma},
                      {pk_func_no_global_asg, function_mark_pragma},
                      {pk_func_no_ind_asg, function_mark_pragma},
                      {pk_func_is_pure, function_mark_pragma},
                      {pk_func_is_system, function_mark_pragma},
                      {pk_hook_function, function_mark_pragma},
                      {pk_func_ext_called, definition_mark_pragma},
                      {pk_func_exceptions_nounwind, definition_mark_pragma},
                      {pk_no_hooks, definition_mark_pragma},
                      {pk_interrupt, interrupt_pragma},
                      {pk_nmi_interrupt, interrupt_pragma},
                      {pk_near, near_far_pragma},
                      {pk_far, near_far_pragma},
                      {pk_retain, retain_clink_pragma},
                      {pk_clink, retain_clink_pragma},
                      {pk_weak, weak_pragma},
                      {pk_location, location_pragma},
                      {pk_noinit, noinit_persistent_pragma},
                      {pk_persistent, noinit_persistent_pragma},
                      {pk_trampoline, trampoline_pragma},
                      {pk_calls, calls_pragma},
                      {pk_function_options, function_options_pragma},
                      {pk_bat_vreg, bat_vreg_pragma},
                      {pk_owl_reg, owl_reg_pragma},
                      {pk_unroll, unroll_pragma},
                      {pk_must_iterate, must_iterate_pragma},
                      {pk_prob_iterate, prob_iterate_pragma},
                      {pk_no_alias_clone, no_alias_clone_pragma},
                      {pk_loop_no_alias, loop_mark_pragma},
                      {pk_parallel_loop, loop_mark_pragma},
                      {pk_mma_loop, loop_mark_pragma},
                      {pk_coalesce_loop, loop_mark_pragma},
                      {pk_no_coalesce_loop, loop_mark_pragma},
                      {pk_forceinline_small, inline_statement_pragma},
                      {pk_forceinline, inline_statement_pragma},
                      {pk_forceinline_recursive, inline_statement_pragma},
                      {pk_noinline_small, inline_statement_pragma},
                      {pk_noinline, inline_statement_pragma}};

static a_target_pragma_action target_pragma_action(a_pragma_kind_tag kind) {
  for (const auto& row : target_actions)
    if (row.kind == kind)
      return row.action;
  return nullptr;
}

// ---- Subjects ----

bool is_routine(const a_symbol* symbol) {
  return symbol != nullptr &&
         (symbol->kind == symk_member_function || symbol->kind == symk_routine) &&
         symbol->variant.routine != nullptr;
}

bool is_routine_definition(const a_symbol* symbol) {
  return is_routine(symbol) && symbol->defined;
}

bool is_file_level_routine(const a_symbol* symbol) {
  return is_routine(symbol) && !symbol->variant.routine->source_corresp.local_to_function;
}

static bool is_variable(const a_symbol* symbol) {
  return symbol != nullptr &&
         (symbol->kind == symk_variable || symbol->kind == symk_static_data_member) &&
         symbol->variant.variable != nullptr;
}

bool is_file_level_variable(const a_symbol* symbol) {
  return is_variable(symbol) && symbol->kind == symk_variable &&
         !symbol->variant.variable->source_corresp.local_to_function &&
         symbol->variant.variable->storage_kind != sc_extern;
}

bool is_static_storage_variable(const a_symbol* symbol) {
  return is_variable(symbol) && (symbol->variant.variable->storage_kind == sc_none ||
                                 symbol->variant.variable->storage_kind == sc_static);
}

// ---- Operands ----

int pragma_fault(an_error_code code, const a_source_position* position) {
  pos_error(code, position);
  pragma_had_error = true;
  return 0;
}

int pragma_symbol_fault(an_error_code code, const a_pending_pragma* pragma,
                        const a_symbol* symbol) {
  pos_stsy_warning(code, &pragma->directive_position, pragma_name(pragma->description->kind),
                   symbol);
  pragma_had_error = true;
  return 0;
}

bool scan_end_of_pragma() {
  if (pragma_has_parens && !loop_token(tok_rparen)) {
    pragma_fault(ec_exp_rparen, &pos_curr_token);
    return false;
  }
  loop_token(tok_semicolon);
  pragma_tokens_wrapped = true;
  wrapup_rescan_of_pragma_tokens(pragma_had_error);
  return true;
}

bool scan_icon(uint64_t* value) {
  a_constant constant;
  clear_constant(&constant, con_error);
  scan_integral_constant_expression(&constant);
  if (constant.kind != con_integer) {
    pragma_had_error = true;
    if (constant.kind != con_error)
      pos_error(ec_exp_int_constant, &error_position);
    return false;
  }
  bool overflow = false;
  *value = static_cast<uint64_t>(value_of_integer_constant(&constant, &overflow));
  if (overflow) {
    overflow = false;
    *value = unsigned_value_of_integer_constant(&constant, &overflow);
  }
  if (overflow)
    pragma_fault(ec_integer_too_large, &error_position);
  return !overflow;
}

const char* scan_pragma_string() {
  if (curr_token != tok_string || const_for_curr_token.kind != con_string ||
      const_for_curr_token.string_char_kind != sck_ordinary) {
    pragma_fault(ec_bad_pragma_format, &pos_curr_token);
    return nullptr;
  }
  const char* text = lasting_text(const_for_curr_token.value.string.text);
  get_token();
  return text;
}

bool scan_comma_behind_symbol() {
  if (in_cplusplus_mode() || loop_token(tok_comma))
    return true;
  pragma_fault(ec_exp_comma, &pos_curr_token);
  return false;
}

// ---- Entries ----

void make_pragma_entry(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement,
                       std::vector<std::string> strings) {
  create_il_entry_for_pragma(pragma, symbol, statement);
  if (pragma->il_entry != nullptr)
    set_pragma_object(pragma->il_entry, pragma->il_entry->tool_kind, std::move(strings));
}

// ---- Dispatch ----

static void begin_dispatch(a_pending_pragma* pragma) {
  pragma_has_parens = pragma_had_error = pragma_tokens_wrapped = false;
  begin_rescan_of_pragma_tokens(pragma);
}

static void end_dispatch(const a_pending_pragma* pragma, bool is_bad_form) {
  if (is_bad_form) {
    pragma_had_error = true;
    pos_st_warning(ec_pragma_processing_error, &pragma->directive_position,
                   pragma_name(pragma->description->kind));
  }
  if (!pragma_tokens_wrapped)
    wrapup_rescan_of_pragma_tokens(pragma_had_error);
}

static int act(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement) {
  return target_pragma_action(pragma->description->kind)(pragma, symbol, statement);
}

static int act_on_unknown_symbol(const a_pending_pragma* pragma, const char* name) {
  a_pragma_kind_tag kind = pragma->description->kind;
  bool wants_file_level = kind == pk_data_align || kind == pk_data_section;
  pos_st_warning(wants_file_level ? ec_pragma_requires_file_level : ec_pragma_bad_symbol,
                 &pragma->directive_position, name);
  pragma_had_error = true;
  return 0;
}

// The symbol that the form of C names.
static int act_on_named_symbol(a_pending_pragma* pragma) {
  if (curr_token != tok_identifier) {
    pos_error(ec_exp_identifier, &pos_curr_token);
    return 1;
  }
  a_symbol_locator locator = locator_for_curr_id;
  a_symbol* symbol = normal_id_lookup(&locator, ilo_none);
  get_token();
  return symbol != nullptr ? act(pragma, symbol, nullptr)
                           : act_on_unknown_symbol(pragma, locator.header->identifier);
}

static bool is_fact_of_file(const a_pending_pragma* pragma) {
  return pragma->description->kind == pk_bat_vreg || pragma->description->kind == pk_owl_reg;
}

void process_c_pragma(a_pending_pragma* pragma) {
  begin_dispatch(pragma);
  pragma_has_parens = true;
  int result = 1;
  if (!loop_token(tok_lparen))
    pos_error(ec_exp_lparen, &pos_curr_token);
  else if (is_fact_of_file(pragma))
    result = act(pragma, nullptr, nullptr);
  else
    result = act_on_named_symbol(pragma);
  end_dispatch(pragma, result == 1);
}

void process_cpp_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement) {
  begin_dispatch(pragma);
  pragma_has_parens = loop_token(tok_lparen);
  int result = act(pragma, symbol, statement);
  end_dispatch(pragma, result == 1);
}
