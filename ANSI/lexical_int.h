// Private to the scanner, the macro expansion and the directives: the place of
// scanning, and the steps of get_token.

#ifndef LEXICAL_INT_H
#define LEXICAL_INT_H

#include "lexical.h"
#include "source_line.h"

// -- The place of scanning ---------------------------------------------------------

// The modification whose replacement text curr_char_loc lies in; null for the
// line buffer.
extern a_source_line_modif* curr_text_modif;
// A token of the current physical line was seen, so a # in it is no directive.
extern a_boolean line_has_token;

// What the end of the line buffer means outside of directives.
enum a_line_end_action : uint8_t {
  lea_read_next,    // go on in the next line, leaving finished files
  lea_append,       // keep the line, for the invocation that began in it
  lea_read_in_file, // go on in the next line, but not behind the end of the file
  lea_look_ahead    // the same, to see what follows the name of a macro
};
extern a_line_end_action line_end_action;
// Counts the lines read under lea_look_ahead.
extern unsigned num_lines_read_ahead;

// A pointer into the line buffer that is kept right while the buffer may move.
struct a_saved_line_loc {
  explicit a_saved_line_loc(char* location);
  ~a_saved_line_loc();
  a_saved_line_loc(const a_saved_line_loc&) = delete;
  a_saved_line_loc& operator=(const a_saved_line_loc&) = delete;
  char* loc;
  a_saved_line_loc* next;
};

// Makes `text`, which ends before `text_end` with an end marker, stand in the
// place of `length` bytes at `location`; scanning isn't moved.
a_source_line_modif* add_text_modif(char* location, size_t length, char* text, char* text_end);
// Takes back all modifications made since `mark`, a value of
// sequence_id_for_source_line_modifs.
void discard_text_modifs_since(uint32_t mark);
// At the end marker of the current text: goes on in the text around it. False
// when the text ends the scanning.
bool leave_macro_text();
// The position of a place in the text being scanned.
void position_of_loc(const char* location, a_source_position* position);

// While it lives, the scanner reads a text of its own, which ends with an end
// marker at `text_end`; get_token delivers tok_end_of_source there.
struct a_text_scan {
  a_text_scan(char* text, char* text_end, const a_source_position& position);
  ~a_text_scan();
  a_text_scan(const a_text_scan&) = delete;
  a_text_scan& operator=(const a_text_scan&) = delete;
  a_source_line_modif modif;
  a_saved_line_loc saved_loc;
  a_source_line_modif* saved_text;
  a_boolean saved_line_has_token;
  a_cached_token* saved_list;
  a_boolean saved_tests_needed;
};

// Goes to the next token. False at what isn't passed: the end of a directive,
// of a text that ends the scanning, or of the input.
bool skip_to_token();

// -- The steps of get_token ----------------------------------------------------------

// Returned by a step when the text has changed and scanning starts again.
inline constexpr a_token_kind scan_again = tok_last;

// Sets the spelling of the token from start_of_curr_token and curr_char_loc, and
// its positions.
void set_curr_token_spelling_and_position();
// Numbers the token being scanned.
void number_curr_token();
// Takes a token from the rescan list or an open reusable cache. False when
// fresh text is to be scanned.
bool get_saved_token();
void update_initial_get_token_tests_needed();
// While fresh text is to be read although saved tokens wait.
a_cached_token* hide_rescan_list();
void restore_rescan_list(a_cached_token* saved);

// A fault in the token being scanned: reported at `location`, or kept when
// preprocessing tokens are fetched.
void report_token_error(an_error_code code, const char* location);
void report_token_diagnostic(an_error_severity severity, an_error_code code, const char* location);

enum an_inert_mark : uint8_t { inert_none = 0, inert_for_good = 1, inert_for_now = 2 };
a_token_kind scan_identifier(char* start, an_inert_mark mark);
a_token_kind scan_number(char* start);
// At start_of_curr_token, a prefix included.
a_token_kind scan_char_literal(unsigned prefix, size_t prefix_length);
a_token_kind scan_string_literal(unsigned prefix, size_t prefix_length);
a_token_kind scan_header_name(char* start, char closing_delimiter);
// Behind a string literal that get_token is to deliver: joins those that
// follow it.
void concat_adjacent_string_literals();
// String literals are delivered as spelled, without a value.
extern a_boolean keep_string_literals_raw;

// The suffix of the user-defined literal that is the current token.
extern a_symbol_header* ud_lit_suffix_for_curr_token;

// The closing delimiter of a literal whose text begins at `text`; null with
// *text_end set when the line ends first.
char* find_closing_quote(char* text, char quote, bool has_escapes, char** text_end);

// The keyword that a symbol header stands for at this place, or tok_identifier.
a_token_kind keyword_at_this_place(const a_symbol_header* header);
extern a_symbol_header* va_args_header;

// Behind an identifier whose first character is at `start`, and in which a
// character that is no plain one stands at `p`: its end.
char* end_of_extended_identifier(char* start, char* p);
// The header of an identifier that may hold extended characters.
a_symbol_header* header_of_identifier(const char* start, const char* end);

void lexical_identifier_trans_unit_init();
void lexical_cache_init();
void lexical_parse_init();
void lexical_string_one_time_init();

#endif
