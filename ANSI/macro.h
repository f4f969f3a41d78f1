// Macros: their definitions, kept as a coded replacement list, and their
// expansion. An invocation builds the expanded text in a side buffer and puts
// it in the place of the invocation; the scanner goes on in that text, so that
// rescanning costs nothing extra.

#ifndef MACRO_H
#define MACRO_H

#include "basics.h"
#include "lexical.h"
#include "lookup.h"

// -- Definitions -----------------------------------------------------------------

struct a_macro_param {
  const char* name; // __VA_ARGS__ for a plain `...`
  a_macro_param* next;
  uint32_t length;
  uint8_t is_referenced_expanded;
  uint8_t is_referenced_raw;
};

// The macros that the expansion itself computes.
enum a_builtin_macro_kind : uint8_t {
  bmk_none = 0,
#define BUILTIN_MACRO(enumerator, name, condition) enumerator,
#include "builtin_macros.def"
#undef BUILTIN_MACRO
};

struct a_macro_def {
  uint8_t is_object_like : 1;
  uint8_t is_protected : 1; // can't be redefined
  uint8_t forbids_pch : 1;  // an expansion makes a precompiled header impossible
  uint8_t is_variadic : 1;
  uint8_t is_predefined : 1;
  a_builtin_macro_kind builtin_kind;
  uint32_t num_params;
  a_macro_param* params; // in order
  uint8_t* body;         // the coded replacement list; null for a built-in macro
  a_macro* il_macro;
};

// The elements of a coded replacement list: a code byte, a 24-bit value with the
// low byte first, and for text its bytes. A 0 byte ends the list.
enum a_macro_body_code : uint8_t {
  mbc_end = 0,
  mbc_text = 1,      // value: its length
  mbc_paste = 2,     // ## between the elements on both sides
  mbc_raw_param = 3, // value: the parameter's number, from 1; its argument as spelled
  mbc_stringize = 4, // #parameter
  mbc_charize = 5,   // #@parameter
  mbc_expanded_param = 6
};

// Behind a NUL in macro text; the line buffer has a few of its own.
enum a_macro_text_marker : char {
  mtm_newline = 2,     // the end of a directive's line
  mtm_end_of_text = 3, // back to the enclosing text
  mtm_separator = 4,   // no white space, but two tokens
  mtm_inert = 5,       // the identifier that follows is never expanded
  mtm_nul_character = 6,
  mtm_arg_comma = 7, // the comma that follows came from an argument
  mtm_temporarily_inert = 8,
  mtm_start_of_text = 9, // the position falls back to the line's own
  mtm_raw_or_expanded = 10,
  mtm_variadic_comma = 11, // a comma that the variadic rule may remove
  mtm_empty_variadic = 12
};

// The macro symbol of a name; null for none, and for the built-in macros that
// are operators.
a_symbol* find_defined_macro(const a_symbol_header* header);
// The definition of a macro symbol.
a_macro_def* macro_def_of(const a_symbol* symbol);

// All of #define behind the directive's name.
void proc_define();
// #undef of a macro: the symbol goes.
void undefine_macro(a_symbol* symbol);
// For #pragma push_macro and pop_macro.
void push_macro_definition(const char* name, size_t length);
void pop_macro_definition(const char* name, size_t length);

// -- Expansion ---------------------------------------------------------------------

// Called by get_token at an identifier that names a macro. With *go_on the text
// has changed and scanning goes on; otherwise the name stays an identifier.
a_token_kind macro_invocation(a_symbol* symbol, a_boolean* go_on);

// How many expansions are being built.
extern int macro_depth;
extern int num_macro_invocations_in_process;
extern a_boolean in_macro_arg_list;
extern a_boolean comma_is_from_argument;
extern a_boolean comma_is_magic;
extern a_boolean choose_raw_or_expanded_arg;
extern a_boolean empty_variadic_macro_seen;
// The start of the source text that the finished invocation will replace.
extern char* delete_source_from_loc;

// Room for `length` bytes of text that stays where it is until the line ends.
char* alloc_macro_text(size_t length);
// Gives the space back; for the start of a line.
void reset_macro_text_buffer();

// -- Predefined and command-line macros ------------------------------------------------

// The text being processed, for messages; null outside.
extern const char* curr_cmd_line_or_predef_macro_def;
extern a_boolean processing_predefined_macro;

extern a_symbol* line_macro_symbol;
extern a_symbol* file_macro_symbol;
extern a_symbol* base_file_macro_symbol;
extern a_symbol* defined_macro_symbol;

void enter_predef_macro(const char* value, const char* name, bool is_protected,
                        bool is_function_like);
// All macros that exist before the first line. `time_string` is the time of the
// compilation in the layout of ctime.
void init_predefined_macros(const char* time_string);
// New bodies for __DATE__ and __TIME__.
void set_date_and_time_macros(const char* time_string);
// Corrects the macros that depend on what is known only after a precompiled
// header was loaded.
void fixup_predefined_macros(const char* time_string);
// The modes that rows of the predefined macro file name.
void set_predef_macro_mode(const char* mode, bool on);
bool is_valid_identifier(const char* text, size_t length);
void make_pp_int_constant(int64_t value);
void clear_macro_def(a_macro_def* def);

void macro_one_time_init();
void macro_trans_unit_init();
void macro_init();

#endif
