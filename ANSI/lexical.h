// The scanner: turns logical lines into tokens, one at a time, the current one
// in global variables; and the token caches, on which look-ahead, delayed
// parsing, replay and pragmas rest. Macros and directives are entered from
// inside get_token; there is no separate preprocessing pass.

#ifndef LEXICAL_H
#define LEXICAL_H

#include "basics.h"
#include "il_constants.h"
#include "symbol_tbl.h"

// -- Token kinds ---------------------------------------------------------------

enum a_token_kind : uint16_t {
#define TOKEN(number, enumerator, name) enumerator = number,
#include "token_kinds.def"
#undef TOKEN
};
inline constexpr int num_token_kinds = tok_last + 1;

// The display name of each kind, used in messages.
extern const char* const token_names[num_token_kinds];

// Whether the kind is a keyword: its name begins like an identifier.
bool is_keyword_token(a_token_kind kind);

// -- The current token -----------------------------------------------------------

// Tokens are numbered by twos, so that tokens inserted later find numbers
// between.
typedef uint32_t a_token_sequence_number;

extern a_token_kind curr_token;
// The first and the last character.
extern a_source_position pos_curr_token;
extern a_source_position end_pos_curr_token;
// The spelling; the end points at the last character. All are null (and 0) for
// a cached token that kept no spelling.
extern char* start_of_curr_token;
extern char* end_of_curr_token;
extern size_t len_of_curr_token;
// The value of a literal.
extern a_constant const_for_curr_token;
// A user-defined literal: the constant as it was spelled, the literal operator
// found for the suffix, and the operator's argument type.
extern a_constant const_with_curr_tok_spelling;
extern a_symbol* ud_lit_op_sym_for_curr_token;
extern a_type* ud_lit_type_for_curr_token;
// The text of an __asm token.
extern const char* curr_token_asm_string;
// The identifier names a macro that is not to be expanded, ever or for the
// present.
extern a_boolean curr_token_is_inert_macro;
extern a_boolean curr_token_is_temporarily_inert_macro;
// In #if, the constant 0 stands for an undefined name.
extern a_boolean curr_token_is_undefined_pp_identifier;
// Pragmas waiting to be acted on at this token.
extern a_pending_pragma* curr_token_pragmas;
extern a_token_sequence_number curr_token_sequence_number;
extern a_token_sequence_number last_token_sequence_number_of_token;
extern a_token_sequence_number last_token_sequence_number_used;
// The cached token from which this token came; null for a fresh one.
extern a_cached_token* curr_cached_token_handle;
// For tok_error: the number to be reported if the token turns out to matter.
extern an_error_code err_code_for_error_token;

// What stood before the current token.
enum a_white_space_kind : uint8_t {
  ws_none = 0,
  ws_old_style_comment = 1, // nothing but a comment, in old-style mode
  ws_real = 2
};
extern uint8_t kind_of_white_space_skipped;

// -- Modes -----------------------------------------------------------------------

extern a_boolean in_preprocessing_directive;
// Preprocessing tokens as such: no keywords, no conversions, no messages.
extern a_boolean fetch_pp_tokens;
extern a_boolean expand_macros;
extern a_boolean do_string_literal_concatenation;
extern a_boolean treat_newline_as_token;
extern a_boolean caching_tokens;
extern a_boolean caching_pragma_tokens;
extern a_boolean scanning_pragma_tokens;
extern a_boolean recognize_keywords_in_pragma;
extern a_boolean in_pp_if_expression;
extern a_boolean exp_header_name;
extern a_boolean exp_system_header_name;
extern a_boolean exp_digit_sequence;
extern a_boolean suppress_keyword_recognition;
extern a_boolean currently_in_pp_if_skip;
extern a_boolean scanning_macro_name;
// Some of: tokens on the rescan list, an open reusable cache, pending pragmas.
extern a_boolean any_initial_get_token_tests_needed;

// -- Cached tokens -----------------------------------------------------------------

enum a_cached_token_extra_kind : uint8_t {
  ctk_plain = 0,
  ctk_identifier = 1,
  ctk_constant = 2,
  ctk_pragma = 3, // no token: pragmas that stood before the next token
  ctk_pp_token = 4,
  ctk_asm = 6,
  ctk_placeholder = 7, // at the head of the rescan list: fresh text is scanned
  ctk_ud_literal = 8
};

struct a_cached_ud_literal {
  a_constant* constant;
  a_constant* spelled_constant;
  a_symbol* operator_symbol;
  a_symbol_header* suffix;
  a_type* type;
};

// A token kept for later. One size for all, recycled on a free list.
struct a_cached_token {
  a_cached_token* next;
  a_source_position pos;
  a_source_position end_pos;
  a_token_kind kind;
  a_cached_token_extra_kind extra_kind;
  a_token_sequence_number sequence_number;
  a_token_sequence_number last_sequence_number;
  a_cached_token* handle; // its own record while it lies in a reusable cache
  union {
    a_symbol_locator locator;
    a_constant* constant;
    a_pending_pragma* pragmas;
    struct {
      char* start; // a copy of the spelling; `end` is its last character
      char* end;
    } pp_token;
    const char* asm_string;
    a_cached_ud_literal ud_literal;
  } variant;
};

struct a_token_cache {
  a_token_cache* next; // on the free list
  a_cached_token* first;
  a_cached_token* last;
  // Its tokens keep their own record as handle, and its pragmas stay its own.
  bool is_reusable;
};

// A cache that is being read while it stays intact.
struct a_reusable_cache_stack_entry {
  a_reusable_cache_stack_entry* next;
  a_cached_token* saved_rescan_list;
  a_cached_token* next_token;
  a_token_cache* cache;
  a_token_cache saved_cache_contents;
  uint32_t fetch_count;
  uint32_t variadic_rescan_count;
  bool free_when_done;
};
extern a_reusable_cache_stack_entry* curr_reusable_cache;

void clear_token_cache(a_token_cache* cache, bool reusable);
a_token_cache* alloc_token_cache();
// Frees the record and its tokens; a cache that is being read goes when its
// last reader leaves.
void free_token_cache(a_token_cache* cache);
// Frees the tokens, not the record.
void discard_token_cache(a_token_cache* cache);
// Appends an end-of-source token, over which a rescan can't run.
void terminate_token_cache(a_token_cache* cache);

// Appends the current token, with the pragmas that wait at it.
void cache_curr_token(a_token_cache* cache);
a_cached_token* build_cached_token(a_token_kind kind, a_token_sequence_number sequence,
                                   const a_source_position* position);
void append_cached_token(a_token_cache* cache, a_cached_token* token);
// Appends to `target` copies of the tokens numbered `first` to `last`.
void copy_tokens_from_cache(const a_token_cache* cache, a_token_sequence_number first,
                            a_token_sequence_number last, bool with_end_of_source,
                            a_token_cache* target);
// Moves the tokens behind `sequence` (with `before`, from it on) to `to`. False
// when there's no such token, an internal error unless `quiet`. With
// `keep_reader` an open reader of `from` goes on in `to`.
bool split_token_cache(a_token_cache* from, a_token_cache* to, a_token_sequence_number sequence,
                       bool before, bool quiet, bool keep_reader);
// Appends the tokens of `from`, which is empty afterwards.
void move_cached_tokens(a_token_cache* from, a_token_cache* to);
void remove_token_from_cache(a_token_cache* cache, a_cached_token* token);
// Makes each token of a reusable cache its own handle again.
void adjust_token_handles(a_token_cache* cache);
void free_tokens_from_reusable_cache(a_reusable_cache_stack_entry* entry);

// Reading. The plain forms empty the cache; the current token becomes the first
// of the cache, and is itself read again behind the last.
void rescan_cached_tokens(a_token_cache* cache);
void f_rescan_cached_tokens(a_token_cache* cache, bool keep_curr_token);
void rescan_reusable_cache(a_token_cache* cache);
// The cache keeps its tokens, but the pragmas among them go with the copy: they
// act once.
void rescan_copy_of_cache(a_token_cache* cache);
// The open reusable cache goes on behind `token`.
void update_reusable_cache_rescan_location(a_cached_token* token);
void increment_variadic_rescans_for_reusable_cache();
void decrement_variadic_rescans_for_reusable_cache();

// Caching ahead. A set of token kinds at which caching stops.
struct a_token_set_array {
  bool member[num_token_kinds];
};

enum a_cache_token_stream_flag : unsigned {
  ctsf_template_argument = 1, // < and > are balanced where a template-id can begin
  ctsf_coalesce_identifiers = 2,
  ctsf_stop_at_unbalanced = 4
};
void cache_token_stream(a_token_cache* cache, const a_token_set_array* stop_set);
void cache_token_stream_coalesce_identifiers(a_token_cache* cache,
                                             const a_token_set_array* stop_set);
void cache_token_stream_full(a_token_cache* cache, const a_token_set_array* stop_set,
                             unsigned flags);
// At an opening token: caches through its partner, which becomes the current
// token. False, after a message, when there's none.
bool cache_token_stream_until_matching_token(a_token_cache* cache, unsigned flags);
// At the `{`, `:` or `try` of a function's definition: caches all of it; the
// closing brace becomes the current token.
bool cache_function_body(a_token_cache* cache);
// At `[[`: caches the attribute; the token behind it becomes the current one.
void cache_std_attribute(a_token_cache* cache, bool keep);

// Between the two, every token fetched is also cached.
void begin_caching_fetched_tokens(bool include_curr_token);
void end_caching_fetched_tokens(a_token_cache* cache);

// -- Scanning ------------------------------------------------------------------------

// Advances; returns and sets curr_token.
a_token_kind get_token();
a_token_kind get_token_to_be_cached();
// The kind of the token behind the current one, which is not consumed. Both
// result pointers may be null; the header is null for no identifier.
a_token_kind next_token_full(a_token_sequence_number* sequence, a_symbol_header** header);
inline a_token_kind next_token() {
  return next_token_full(nullptr, nullptr);
}
// Two tokens ahead; the second is looked at only when the first is as given.
bool next_two_tokens(a_token_kind first_kind, a_token_kind* second);
// Makes the current token the next one to be read.
void unget_token();

// Both are true when the current token is of the kind; otherwise they report
// `code` and skip to a stop token or to the kind itself. The first advances
// past the token.
bool required_token(a_token_kind kind, an_error_code code);
bool required_token_no_advance(a_token_kind kind, an_error_code code);
// Advances if the current token is of the kind.
bool loop_token(a_token_kind kind);

// Leaves curr_char_loc at the next token and notes what was skipped.
void skip_white_space();

// Scans a generated text as if it stood in the source, all of it at
// `position`.
void insert_string_into_token_stream(const char* text, size_t length, bool expand,
                                     const a_source_position* position);

bool curr_token_is_identifier_string(const char* text);
// An identifier of this spelling becomes the keyword `kind`.
bool check_context_sensitive_keyword(a_token_kind kind, const char* text);

// A pragma's saved tokens as the input, and back; see pragma.h.
void begin_rescan_of_pragma_tokens(a_pending_pragma* pragma);
void wrapup_rescan_of_pragma_tokens(bool had_error);

// -- The lexical state stack --------------------------------------------------------------

struct a_lexical_state_stack_entry {
  a_lexical_state_stack_entry* next;
  int caching_depth;
  a_token_sequence_number first_sequence_cached;
  a_source_position saved_error_position;
  a_token_cache cached_tokens;
  a_boolean saved_caching_tokens;
  bool misra_token_seen;
};
extern a_lexical_state_stack_entry* lexical_state_stack;

void push_lexical_state_stack();
void pop_lexical_state_stack();

// -- Error recovery ---------------------------------------------------------------------------

// At how many levels of the parser each kind stops flush_tokens.
struct a_stop_token_stack_entry {
  a_stop_token_stack_entry* next;
  uint8_t stop_tokens[num_token_kinds];
};
extern a_stop_token_stack_entry* curr_stop_token_stack_entry;

void push_stop_token_stack();
void pop_stop_token_stack();

inline void add_stop_token(a_token_kind kind) {
  if (curr_stop_token_stack_entry->stop_tokens[kind] != UINT8_MAX)
    ++curr_stop_token_stack_entry->stop_tokens[kind];
}

inline void remove_stop_token(a_token_kind kind) {
  if (curr_stop_token_stack_entry->stop_tokens[kind] != 0)
    --curr_stop_token_stack_entry->stop_tokens[kind];
}

// Discard tokens up to a stop token. Where tokens were discarded, remark 12
// tells where the parse goes on, but for the second form.
void flush_tokens();
void flush_tokens_without_warning();
void flush_tokens_with_stop_tokens_and_warning_flag(const a_token_set_array* extra_stop_tokens,
                                                    bool warn);
void flush_to_closing_paren();
void flush_to_end_of_arg_list();
// At an opening token: discards to behind its partner.
void flush_until_matching_token();
void flush_until_matching_token_full(bool warn);

// -- Literals -------------------------------------------------------------------------------------

// The spelling of the current token to a value in const_for_curr_token. An
// error number other than 0 goes to *error with the place of the fault; the
// value is then 0.
void conv_integer_literal(bool is_pp, an_error_code* error, char** error_location);
void conv_float_literal(an_error_code* error);
void conv_char_literal();
void conv_string_literal();
// Makes a narrow literal one of the wider character kind.
void widen_string_literal(a_constant* constant, a_string_char_kind char_kind);
void concat_string_literals(const a_constant* first, const a_constant* second, a_constant* result);
// One source unit at *location, to its value; the location moves behind it.
uint32_t conv_single_char(char** location, char* end, a_string_char_kind char_kind,
                          bool* is_code_point);

// The header under which the literal operator for a suffix is declared.
a_symbol_header* literal_operator_header(const a_symbol_header* suffix);
// The literal operator that the value of the current token, a user-defined
// literal, calls, and the type of its parameter; null for none (C++11 2.14.8).
a_symbol* find_literal_operator(const a_symbol_header* suffix, a_type** type);

// The prefix of a character or string literal at `text`.
enum an_encoding_prefix : unsigned {
  ep_none = 1,
  ep_u8 = 2,
  ep_u = 3,
  ep_U = 4,
  ep_L = 5,
  ep_kind_mask = 7,
  ep_raw = 8,
  ep_string = 16
};
// 0 when no literal begins at `text`; otherwise or-ed from the values above.
unsigned scan_encoding_prefix(const char* text, size_t* prefix_length);

// -- Characters of names
// ------------------------------------------------------------------------------

extern bool is_id_char[256];
extern bool is_raw_string_delimiter_char[256];

// A \u or \U at *location, which moves behind it. The code point; 0 after a
// fault, which is reported when `report` is on.
uint32_t scan_universal_character(char** location, bool is_id, bool at_start, bool report);
// Whether an identifier character of several bytes or a universal character
// name begins at `location`; its length goes to *length.
bool f_is_identifier_char(const char* location, bool at_start, size_t* length,
                          uint32_t* code_point);
// The name with every extended character as its \u form; in a static buffer.
const char* make_canonical_identifier(const char* text, size_t* length);
bool is_nonstandard_character(const char* location);

// -- Names of several tokens ------------------------------------------------------------

// At `operator`: folds it with what follows into one identifier token.
void fold_operator_name();
// At the `~` of a destructor of the class: the same.
void fold_destructor_name(a_type* class_type);
// The headers under which the destructor of a class and a function that
// converts to a type are declared.
a_symbol_header* destructor_header(const a_type* class_type);
a_symbol_header* conversion_header(const a_type* type);
// Whether the current token begins a name that may be qualified.
bool f_is_generalized_identifier_start();
// At a qualified name: folds it into one identifier token and looks it up, with
// the options of lookup.h. Null, with the token as it was, where no qualifier
// stands; null with an error locator behind a message.
a_symbol* coalesce_and_lookup_qualified_name(uint32_t options);
// The same for a name with or without a qualifier.
a_symbol* coalesce_and_lookup_generalized_identifier(uint32_t options);
// At `C::*`: reads through the `*`. The class, or null behind a message.
a_type* scan_class_of_ptr_to_member();
// The form in which a name was written, of the current token or a locator; null
// for a plain name.
a_name_reference* make_name_reference();
a_name_reference* make_name_reference_from_locator(const a_symbol_locator* locator,
                                                   const a_source_range* range);

// -- Keywords
// ------------------------------------------------------------------------------------------

// Enters the keywords of the dialect.
void enter_keywords();
// Enters __name and __name__.
void enter_gnu_keyword(a_token_kind kind, const char* name);

// -- Initialisation
// ---------------------------------------------------------------------------------------

void lexical_one_time_init();
void lexical_init();
void lexical_trans_unit_init();
void lexical_reset();
void lexical_pch_reset();

#endif
