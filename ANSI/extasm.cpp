#include "extasm.h"

#include "error.h"
#include "lexical.h"
#include "mode_words.h"

#include <cstring>

static bool is_end_of_section() {
  return curr_token == tok_colon || curr_token == tok_colon_colon || curr_token == tok_rparen ||
         curr_token == tok_end_of_source;
}

static void refuse_operands() {
  pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, "asm operand");
  while (!is_end_of_section()) {
    if (curr_token == tok_lparen || curr_token == tok_lbracket || curr_token == tok_lbrace)
      flush_until_matching_token_full(false);
    else
      get_token();
  }
}

// Memory and the flags are what generated code takes every asm statement to
// change.
static void asm_clobbers_spec() {
  add_stop_token(tok_comma);
  do {
    if (!required_token_no_advance(tok_string, ec_exp_asm_clobber))
      continue;
    const char* name =
        const_for_curr_token.kind == con_string ? const_for_curr_token.value.string.text : "";
    if (strcmp(name, "memory") != 0 && strcmp(name, "cc") != 0)
      pos_st_error(ec_bad_reg_name, &pos_curr_token, name);
    get_token();
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

void asm_operands_spec(an_asm_entry* entry) {
  constexpr int clobber_section = 3;
  int section = 0;
  entry->is_gnu_form = true;
  if (report_gnu_extensions)
    pos_warning(ec_asm_operand_spec_is_gnu_extension, &pos_curr_token);
  while (curr_token == tok_colon || curr_token == tok_colon_colon) {
    section += curr_token == tok_colon_colon ? 2 : 1;
    get_token();
    if (is_end_of_section())
      continue;
    if (section == clobber_section)
      asm_clobbers_spec();
    else
      refuse_operands();
  }
}

void extasm_one_time_init() {
  // No variable of this module is kept for each unit.
}
