#include "decls.h"

#include "error.h"
#include "lexical.h"
#include "mode_words.h"
#include "pragma.h"
#include "preproc.h"
#include "source_file.h"

void translation_unit() {
  if (macro_preinclude_file_list != nullptr)
    process_macro_preincludes();
  get_token();
  // C99 6.9: a translation unit has at least one external declaration.
  if (curr_token == tok_end_of_source && in_C_mode() && strict_ansi_mode)
    pos_diagnostic(strict_ansi_error_severity, ec_empty_translation_unit, &pos_curr_token);
  while (curr_token != tok_end_of_source) {
    a_decl_parse_state state = {};
    state.start_position = pos_curr_token;
    scan_nonmember_declaration(&state, nullptr);
  }
  process_pragmas_at_end_of_source();
}

void scan_nonmember_declaration(a_decl_parse_state* state, a_source_range*) {
  constexpr an_error_code ec_plain_text = 3016;
  pos_st_error(ec_plain_text, &state->start_position,
               "declarations are not accepted by this version");
  while (curr_token != tok_semicolon && curr_token != tok_end_of_source)
    get_token();
  if (curr_token == tok_semicolon)
    get_token();
}

void decls_one_time_init() {
  // Registers the variables kept for each unit.
}

void decls_init() {
  // Clears the free lists of declaration records.
}

void decls_trans_unit_init() {
  // Clears the state of the outermost declaration.
}
