// Pragmas of the target in front of statements: what is known of a loop, and
// whether the calls of a statement are to be inlined.

#include <string>

#include "error.h"
#include "if_tags.h"
#include "il_statements.h"
#include "il_types.h"
#include "lexical.h"
#include "mode_words.h"
#include "pragma_int.h"
#include "target.h"

// ---- Loops ----

// Whether the pragma stands in front of a loop; says so if not.
static bool precedes_loop(const a_pending_pragma* pragma, const a_statement* statement) {
  if (is_loop_statement(statement))
    return true;
  const char* name = pragma_name(pragma->description->kind);
  bool word_first = pragma->description->kind == pk_unroll;
  pos_st2_error(ec_pragma_must_precede_loop, &pragma->directive_position,
                word_first ? "pragma" : name, word_first ? name : "pragma");
  pragma_had_error = true;
  return false;
}

static int wrong_number_of_operands(an_error_code code, const a_pending_pragma* pragma) {
  pos_st_error(code, &pragma->directive_position, pragma_name(pragma->description->kind));
  pragma_had_error = true;
  return 0;
}

// ---- UNROLL ----

static uint64_t largest_int() {
  return (uint64_t(1) << (size_of_integer_kind(ik_int) * targ_char_bit - 1)) - 1;
}

void pragma_unroll_backend(a_pending_pragma* pragma, a_statement* statement, uint64_t count,
                           const char* name) {
  pragma->argument_text = lasting_text(std::to_string(count));
  create_il_entry_for_pragma(pragma, nullptr, statement);
  if (count == 0)
    pos_st_error(ec_parm_gt_zero, &statement->position, name);
  else if (count > largest_int())
    pos_error(ec_integer_outofrange, &pragma->directive_position);
  else if (pragma->il_entry != nullptr)
    set_pragma_object(pragma->il_entry, pragma->il_entry->tool_kind, {pragma->argument_text});
}

int unroll_pragma(a_pending_pragma* pragma, a_symbol*, a_statement* statement) {
  uint64_t count;
  if (!precedes_loop(pragma, statement))
    return 0;
  if (curr_token == tok_rparen || curr_token == tok_end_of_source)
    return wrong_number_of_operands(ec_pragma_requires_1_parm, pragma);
  if (!scan_icon(&count))
    return 0;
  if (curr_token != tok_rparen)
    return wrong_number_of_operands(ec_pragma_requires_1_parm, pragma);
  if (scan_end_of_pragma() && !no_loop_pragmas)
    pragma_unroll_backend(pragma, statement, count, "UNROLL");
  return 0;
}

// ---- MUST_ITERATE, PROB_ITERATE ----

namespace {

enum an_iteration_slot { slot_min = 0, slot_max = 1, slot_multiple = 2, num_slots = 3 };

} // namespace

// A slot before the last may be empty, and the list may end before each.
static bool scan_iteration_counts(uint64_t* counts, int num_counts) {
  for (int slot = 0; slot < num_counts && curr_token != tok_rparen; ++slot) {
    bool is_last = slot == num_counts - 1;
    bool is_empty = curr_token == tok_comma && !(is_last && num_counts == num_slots);
    if (!is_empty && !scan_icon(&counts[slot]))
      return false;
    if (!is_last && !loop_token(tok_comma))
      break;
  }
  return true;
}

static int iteration_pragma(a_pending_pragma* pragma, a_statement* statement, int num_counts) {
  uint64_t counts[num_slots] = {0, UINT64_MAX, 1};
  if (!precedes_loop(pragma, statement) || !scan_iteration_counts(counts, num_counts))
    return 0;
  if (curr_token != tok_rparen)
    return wrong_number_of_operands(num_counts == num_slots ? ec_pragma_requires_1or2or3_parms
                                                            : ec_pragma_requires_1or2_parms,
                                    pragma);
  if (!scan_end_of_pragma())
    return 0;
  if (counts[slot_min] > counts[slot_max])
    return wrong_number_of_operands(ec_pragma_arg_min_no_gt_max, pragma);
  if (no_loop_pragmas || no_iterate_pragmas)
    return 0;
  std::vector<std::string> strings;
  std::string text;
  for (int slot = 0; slot < num_counts; ++slot) {
    strings.push_back(std::to_string(counts[slot]));
    text.append(text.empty() ? "" : " ").append(strings.back());
  }
  pragma->argument_text = lasting_text(text);
  make_pragma_entry(pragma, nullptr, statement, std::move(strings));
  return 0;
}

int must_iterate_pragma(a_pending_pragma* pragma, a_symbol*, a_statement* statement) {
  return iteration_pragma(pragma, statement, num_slots);
}

int prob_iterate_pragma(a_pending_pragma* pragma, a_symbol*, a_statement* statement) {
  return iteration_pragma(pragma, statement, slot_multiple);
}

// ---- Marks ----

int no_alias_clone_pragma(a_pending_pragma* pragma, a_symbol*, a_statement* statement) {
  if (!precedes_loop(pragma, statement))
    return 0;
  if (curr_token != tok_rparen)
    return wrong_number_of_operands(ec_pragma_requires_1_parm, pragma);
  if (scan_end_of_pragma() && !no_loop_pragmas)
    make_pragma_entry(pragma, nullptr, statement, {});
  return 0;
}

int loop_mark_pragma(a_pending_pragma* pragma, a_symbol*, a_statement* statement) {
  if (precedes_loop(pragma, statement) && scan_end_of_pragma())
    make_pragma_entry(pragma, nullptr, statement, {});
  return 0;
}

// ---- forceinline and its kin ----

static bool takes_word(a_pragma_kind_tag kind) {
  return kind == pk_forceinline_small || kind == pk_forceinline;
}

// `recursive`, where it may stand. False for anything else there.
static bool scan_inline_word(const a_pending_pragma* pragma, bool* is_recursive) {
  *is_recursive = false;
  if (curr_token == tok_end_of_source || curr_token == tok_rparen || curr_token == tok_semicolon)
    return true;
  if (!takes_word(pragma->description->kind) || !curr_token_is_identifier_string("recursive"))
    return false;
  *is_recursive = true;
  get_token();
  return true;
}

int inline_statement_pragma(a_pending_pragma* pragma, a_symbol*, a_statement* statement) {
  bool is_recursive;
  if (!scan_inline_word(pragma, &is_recursive))
    return 1;
  if (!scan_end_of_pragma())
    return 0;
  create_il_entry_for_pragma(pragma, nullptr, statement);
  if (pragma->il_entry != nullptr)
    set_pragma_object(
        pragma->il_entry,
        is_recursive ? uint8_t(ifpk_FORCEINLINE_RECURSIVE) : pragma->il_entry->tool_kind, {});
  return 0;
}
