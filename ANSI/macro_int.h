// Private to the modules of the macros and the scanner.

#ifndef MACRO_INT_H
#define MACRO_INT_H

#include <string>

#include "lexical_int.h"
#include "macro.h"

// How deep expansions may nest in one another's arguments.
inline constexpr int max_macro_depth = 800;
// In old-style mode a macro may expand in its own expansion, this deep.
inline constexpr int max_old_style_levels = 299;

// The scanner's state around an invocation: saved at its start, and restored at
// its end, when scanning goes on in the expansion.
struct a_macro_state {
  a_macro_state();
  ~a_macro_state();
  a_macro_state(const a_macro_state&) = delete;
  a_macro_state& operator=(const a_macro_state&) = delete;
  a_saved_line_loc saved_delete_from;
  a_boolean saved_fetch_pp_tokens;
  a_boolean saved_expand_macros;
  a_boolean saved_in_macro_arg_list;
  a_boolean saved_concatenation;
  a_boolean saved_exp_header_name;
  a_boolean saved_exp_system_header_name;
  a_boolean saved_exp_digit_sequence;
  a_line_end_action saved_line_end_action;
  uint8_t saved_white_space;
};

// Scanning modes for reading preprocessing tokens as they stand.
void fetch_unexpanded_pp_tokens();

// Whether the current place lies in the expansion of the macro.
bool macro_is_being_expanded(const a_symbol* symbol);

// The text of an invocation, from delete_source_from_loc to the place of
// scanning, is replaced by a text, in which scanning goes on. The text lies in
// the macro text buffer and ends with an end marker at `text_end`.
a_source_line_modif* replace_invocation(a_symbol* symbol, char* text, char* text_end,
                                        const a_source_position& position);
// The same for a text that is to be copied.
void replace_invocation_by_string(a_symbol* symbol, const char* text, size_t length,
                                  const a_source_position& position);

a_token_kind builtin_macro_invocation(a_symbol* symbol, a_boolean* go_on);

// A token ended at `location` in the text of a modification: reports the pasting
// whose seam lies there.
void report_failed_concatenation(a_source_line_modif* modif, const char* location);

// A place in the macro text buffer to which it can be taken back.
struct a_macro_text_mark {
  size_t chunk;
  size_t used;
  size_t expansion_memory;
};
a_macro_text_mark mark_macro_text();
void release_macro_text(const a_macro_text_mark& mark);

// What becomes of two operands of ##.
struct a_pasting {
  size_t right_length; // of the first token of the right operand
  bool makes_token;
  // The token would take in what stands behind the right operand, too.
  bool takes_more;
  // It makes none, and the text would be read as other tokens than the two.
  bool splits_right;
};
// Where the last token begins in the macro text from `start`, at which one does.
size_t offset_of_last_pp_token(const char* start, const char* end);
// Looks at the token between `left` and `seam` with the one at `right`, of a
// text that reaches to `end`.
a_pasting paste_tokens(const char* left, const char* seam, const char* right, const char* end);

// The MISRA-C:2004 rules about macros: the start of a replacement list, each of
// its tokens, and its end; and an argument that is missing.
void misra_begin_macro();
void misra_check_macro_token(bool is_param);
void misra_check_macro_definition(const a_macro_def* def, const a_source_position& position);
void misra_check_missing_macro_argument(const a_source_position& position);
// A use of `defined`, which has a standard form unless its operand is none or a
// macro brought the operator in.
void misra_check_defined_operator(bool has_standard_form, const a_source_position& position);

// Whether two tokens could run together where a text ends with `last` and the
// next begins with `next`; true when in doubt.
bool may_join(char last, char next);

void enter_builtin_macros();
void process_command_line_macros();
// Scans a text as the operand of #define.
void define_macro_from_text(const std::string& text, const a_source_position& position);
// The header of the current identifier of a directive, in which the scanner
// looks nothing up.
a_symbol_header* header_of_curr_identifier();
void macro_expand_init();

#endif
