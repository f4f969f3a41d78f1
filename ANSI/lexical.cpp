// The scanner's state and its life cycle.

#include "lexical.h"

#include <cstring>

#include "error.h"
#include "lexical_int.h"
#include "mode_words.h"

const char* const token_names[num_token_kinds] = {
#define TOKEN(number, enumerator, name) name,
#include "token_kinds.def"
#undef TOKEN
};

a_token_kind curr_token;
a_source_position pos_curr_token;
a_source_position end_pos_curr_token;
char* start_of_curr_token;
char* end_of_curr_token;
size_t len_of_curr_token;
a_constant const_for_curr_token;
a_constant const_with_curr_tok_spelling;
a_symbol* ud_lit_op_sym_for_curr_token;
a_type* ud_lit_type_for_curr_token;
const char* curr_token_asm_string;
a_boolean curr_token_is_inert_macro;
a_boolean curr_token_is_temporarily_inert_macro;
a_boolean curr_token_is_undefined_pp_identifier;
a_pending_pragma* curr_token_pragmas;
a_token_sequence_number curr_token_sequence_number;
a_token_sequence_number last_token_sequence_number_of_token;
a_token_sequence_number last_token_sequence_number_used;
a_cached_token* curr_cached_token_handle;
an_error_code err_code_for_error_token;
uint8_t kind_of_white_space_skipped;

a_boolean in_preprocessing_directive;
a_boolean fetch_pp_tokens;
a_boolean expand_macros;
a_boolean do_string_literal_concatenation;
a_boolean treat_newline_as_token;
a_boolean caching_tokens;
a_boolean caching_pragma_tokens;
a_boolean scanning_pragma_tokens;
a_boolean recognize_keywords_in_pragma;
a_boolean in_pp_if_expression;
a_boolean exp_header_name;
a_boolean exp_system_header_name;
a_boolean exp_digit_sequence;
a_boolean suppress_keyword_recognition;
a_boolean currently_in_pp_if_skip;
a_boolean scanning_macro_name;
a_boolean any_initial_get_token_tests_needed;

a_reusable_cache_stack_entry* curr_reusable_cache;
a_lexical_state_stack_entry* lexical_state_stack;
a_stop_token_stack_entry* stop_token_stack;

bool is_id_char[256];

bool is_keyword_token(a_token_kind kind) {
  return kind >= tok_lbracket && is_id_char[static_cast<unsigned char>(token_names[kind][0])];
}

void lexical_one_time_init() {
  for (int c = 0; c < 128; ++c)
    is_id_char[c] = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                    c == '_' || (c == '$' && allow_dollar_in_id_chars);
}

void lexical_init() {
  lexical_state_stack = nullptr;
  stop_token_stack = nullptr;
}

void lexical_reset() {
  curr_token = tok_error;
  pos_curr_token = end_pos_curr_token = null_source_position;
}

void lexical_trans_unit_init() {
  lexical_reset();
}

void lexical_pch_reset() {
  lexical_reset();
}
