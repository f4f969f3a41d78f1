// Pragmas of the target that say something of the whole unit or of all that
// follows: reserved registers, default sections, inlining, rule checks.

#include <string>

#include "decls.h"
#include "error.h"
#include "lexical_int.h"
#include "misra.h"
#include "mode_words.h"
#include "nrg.h"
#include "pragma_int.h"

a_boolean always_inline_funcs;

// ---- BAT_VREG, OWL_REG ----

static int make_fact_of_file(a_pending_pragma* pragma, const std::string& first,
                             const std::string& second) {
  if (!scan_end_of_pragma() || caching_tokens)
    return 0;
  pragma->argument_text = lasting_text(first + " " + second);
  add_pragma_to_il(pragma, iek_none, nullptr, true);
  if (pragma->il_entry != nullptr)
    set_pragma_object(pragma->il_entry, pragma->il_entry->tool_kind, {first, second});
  return 0;
}

static bool scan_comma() {
  if (loop_token(tok_comma))
    return true;
  pragma_fault(ec_exp_comma, &pos_curr_token);
  return false;
}

int bat_vreg_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  uint64_t number;
  const char* name = scan_pragma_string();
  if (name == nullptr || !scan_comma() || !scan_icon(&number))
    return 0;
  return make_fact_of_file(pragma, name, std::to_string(number));
}

int owl_reg_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  const char* first = scan_pragma_string();
  if (first == nullptr || !scan_comma())
    return 0;
  const char* second = scan_pragma_string();
  return second == nullptr ? 0 : make_fact_of_file(pragma, first, second);
}

// ---- SET_DATA_SECTION, SET_CODE_SECTION ----

// `("name")` or `()`, as it is spelled. False after a message.
static bool scan_section_operand(std::string* name) {
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return false;
  bool is_plain = curr_token == tok_string && len_of_curr_token >= 2 && *start_of_curr_token == '"';
  if (is_plain) {
    *name = std::string(start_of_curr_token + 1, len_of_curr_token - 2);
    get_token();
  }
  return required_token(tok_rparen, ec_exp_rparen);
}

void process_set_section_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  std::string name;
  add_stop_token(tok_rparen);
  bool is_good = scan_section_operand(&name);
  remove_stop_token(tok_rparen);
  if (!is_good) {
    skip_operands();
    return;
  }
  set_default_section(pragma->description->kind == pk_set_code_section,
                      name.empty() ? nullptr : lasting_text(name), &pragma->directive_position);
}

// ---- ALWAYS_INLINE ----

void always_inline_pragma(a_pending_pragma*, a_symbol*, a_statement*) {
  always_inline_funcs = 1;
  get_token();
}

// ---- Rule checks ----

// `("list")`; null after a message.
static const char* scan_rule_list() {
  if (!required_token(tok_lparen, ec_bad_pragma_format))
    return nullptr;
  const char* list = scan_pragma_string();
  return list != nullptr && required_token(tok_rparen, ec_bad_pragma_format) ? list : nullptr;
}

// Reads the list and selects its rules; a bad one is reported.
static void select_rules(a_pending_pragma* pragma,
                         void (*select)(const char* list, a_source_position* position,
                                        a_boolean* is_bad, bool is_reset),
                         int reset_kind) {
  begin_rescan_of_pragma_tokens(pragma);
  const char* list = scan_rule_list();
  wrapup_rescan_of_pragma_tokens(list == nullptr);
  a_boolean is_bad = 0;
  if (list != nullptr)
    select(list, &pragma->directive_position, &is_bad, pragma->description->kind == reset_kind);
  if (is_bad)
    pos_error(ec_bad_pragma_format, &pragma->directive_position);
}

void pragma_misra_action(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  auto select = [](const char* list, a_source_position* position, a_boolean* is_bad,
                   bool is_reset) { process_check_misra(list, position, is_bad, false, is_reset); };
  if (check_misra_c_2004)
    select_rules(pragma, select, pk_reset_misra);
}

void pragma_nrg_action(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  auto select = [](const char* list, a_source_position* position, a_boolean* is_bad,
                   bool is_reset) { process_check_nrg(list, is_bad, position, false, is_reset); };
  if (check_nrg)
    select_rules(pragma, select, pk_reset_nrg);
}
