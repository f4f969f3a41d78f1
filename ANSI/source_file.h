// Source files: opening them, the stack of files being read, the tree of file
// records, the mapping from sequence numbers to files and lines, the search
// for included files and the record of include guards.

#ifndef SOURCE_FILE_H
#define SOURCE_FILE_H

#include "basics.h"
#include "host_envir.h"

// -- Positions ---------------------------------------------------------------------

// The numbers of the last physical line read, and of the physical line in which
// the current logical line begins. All files together are numbered from 1.
extern uint32_t seq_number_last_read;
extern uint32_t curr_seq_number;

// -1, 0 or 1, by sequence number, then column.
int compare_source_positions(const a_source_position& a, const a_source_position& b);

// -- The tree of source files --------------------------------------------------------

// One reading of a file, or the section of a file behind a #line (a clone).
struct a_source_file {
  const char* file_name;       // as displayed; after #line, the directive's name
  const char* full_name;       // as opened; null for a clone
  const char* name_as_written; // in the #include or on the command line
  uint32_t first_seq;
  uint32_t last_seq;          // set at the end of the file
  uint32_t first_line;        // number of the first line
  a_source_file* first_child; // files included here, and clones, in order
  a_source_file* last_child;
  a_source_file* next; // sibling; primary files hang on the IL header
  uint8_t is_include_file : 1;
  uint8_t is_angle_bracket_include : 1;
  uint8_t is_preinclude : 1;
  uint8_t is_macro_preinclude : 1;
  uint8_t is_system_header : 1;
  uint8_t is_primary_source_file : 1;
};

// A stretch of consecutive sequence numbers that belongs to one record, with
// the place of its text in the file that was read.
struct a_seq_number_lookup_entry {
  a_seq_number_lookup_entry* next;
  uint32_t first_seq;
  uint32_t last_seq; // seq_lookup_open while the stretch is open
  uint32_t first_line;
  a_source_file* source_file;
  uint32_t first_physical_line;
  a_source_file* physical_file;
};
inline constexpr uint32_t seq_lookup_open = 0xFFFFFFFF;

// What a record of a file begins with; the rest of its fields is set here.
struct a_source_file_start {
  const char* file_name;
  const char* full_name; // null for a clone
  const char* name_as_written;
  uint32_t first_line;
  a_source_file* physical_file; // of a clone
  uint32_t first_physical_line;
  bool is_include_file;
  bool is_angle_bracket_include;
  bool is_preinclude;
  bool is_macro_preinclude;
  bool is_system_header;
};

// Makes a record for the lines to be read next, as the last child of `parent`
// or, without one, as a primary file, and opens its first stretch.
a_source_file* record_start_of_source_file(const a_source_file_start& start, a_source_file* parent);
// Opens a stretch of an existing record for the lines to be read next.
void record_resumption_of_source_file(a_source_file* file, uint32_t line,
                                      a_source_file* physical_file, uint32_t physical_line);
// Closes the record at the last line read.
void record_end_of_source_file(a_source_file* file);
// Takes over the stretches that the IL header lists.
void rebuild_seq_number_lookup();

// The record in effect at a sequence number, null for 0. `physical` looks
// through #line. The line, and whether the number lies past the end of a
// primary file, go to the result pointers, which may be null.
a_source_file* source_file_for_seq(uint32_t seq, uint32_t* line, a_boolean* at_end, bool physical);
// The name and line that a reader is to see. The pointers may be null.
void conv_seq_to_file_and_line(uint32_t seq, const char** name, const char** full_name,
                               uint32_t* line, a_boolean* at_end);
// The file that holds the text, and the line in it.
void conv_seq_to_physical_file_and_line(uint32_t seq, a_source_file** file, uint32_t* line,
                                        a_boolean* at_end);
a_source_file* primary_source_file_for_seq(uint32_t seq);
bool seq_is_in_system_header(uint32_t seq);
bool seq_is_in_include_file(uint32_t seq);
// The primary file of the translation unit being processed.
a_source_file* eff_primary_source_file();

// -- The text of a file ------------------------------------------------------------------

enum a_unicode_source_kind_tag : uint8_t {
  usk_none = 0,
  usk_utf8 = 1,
  usk_utf16_le = 2,
  usk_utf16_be = 3
};

// A whole file in memory, without its byte order mark; UTF-16 is there as
// UTF-8. A large file is mapped, others are read.
struct a_source_text {
  char* storage;      // null when no text is held
  size_t mapped_size; // 0 for text on the heap
  const char* start;
  const char* end;
  const char* next_trigraph; // the first at or behind the line being read, or
                             // one before it; null: none is left
  a_unique_file_id unique_id;
  a_unicode_source_kind_tag unicode_kind;
  bool may_hold_nul;
  bool is_ascii;
};

// The first `??c` that stands for a character (C99 5.2.1.1), or null.
const char* find_trigraph(const char* p, const char* end);

// Reads a file; "-" is standard input. False with the reason in `result`.
bool open_source_file(const char* name, a_source_text* text, an_open_file_result* result);
// Reads it again; a catastrophe if it can't be read or has another encoding.
void reopen_source_file(const char* name, a_unicode_source_kind_tag kind, a_source_text* text);
void close_source_file(a_source_text* text);

// Line `line` of the physical file of a record, without its newline, found by
// reading on from line `from_line` at byte `from_offset` of the text (as given
// to update_file_index). False when there's no such line or the file can't be
// read again. The text is valid until the next call.
bool fetch_physical_source_line(const a_source_file* file, uint32_t line, uint32_t from_line,
                                size_t from_offset, const char** start, size_t* length);
// Gives back what fetch_physical_source_line keeps.
void release_fetched_source_text();

// -- The input stack -------------------------------------------------------------------------

// The states of an include guard; see the directives.
enum an_include_guard_state : uint8_t {
  igs_start = 0,  // only comments so far
  igs_closed = 1, // behind the guard's #endif
  igs_unguarded = 2,
  igs_inside = 3,
  igs_pragma_once = 4
};

struct an_input_stack_entry {
  a_source_text text;    // no text while it is given back to save memory
  const char* cursor;    // the next byte to be read
  size_t saved_offset;   // of the cursor, while the text is given back
  const char* file_name; // as displayed
  const char* full_name; // as opened
  const char* directory;
  a_directory_name_entry* search_path_entry; // where the file was found
  uint32_t lines_read;                // the number of the physical line last read, after #line its
  a_source_file* source_file;         // of this reading
  a_source_file* current_source_file; // in effect, differs after #line
  int pp_if_stack_depth;              // base_pp_if_stack_depth of the file below
  uint32_t lines_since_start;         // physical lines read
  uint32_t next_index_line;           // at which update_file_index is due
  an_include_guard_state guard_state;
  an_include_file_history* include_history;
  uint32_t misra_token_count; // tokens outside directives, for the directive checks
  uint8_t is_include_file : 1;
  uint8_t is_system_directory : 1;
  uint8_t is_recursive : 1; // the file was on the stack already
  uint8_t saved_any_tokens_fetched : 1;
  uint8_t is_preinclude : 1;
  uint8_t stop_at_end_of_file : 1; // a macro preinclude, or set for a while by the
                                   // scanner: the reader doesn't pop the file
  uint8_t is_cloned : 1;           // of `# 1 "name" 1`
};

// The entry of the file being read; null when the stack is empty.
extern an_input_stack_entry* curr_ise;
// The number of entries less 1; -1 when the stack is empty.
extern int depth_input_stack;
// The stack from the bottom.
an_input_stack_entry* input_stack_entry(int depth);

// The reader met the end of a file on its last call.
extern a_boolean at_end_of_source_file;
// A token was seen outside of directives in the current file.
extern a_boolean any_tokens_fetched_from_curr_input_file;
// The file of the last #include was skipped.
extern a_boolean actual_include_was_suppressed;
// How the current file is encoded.
extern a_unicode_source_kind_tag curr_file_unicode_source_kind;
// The current file counts as a system header.
extern a_boolean in_system_header;

// How a file is to be found and entered.
struct an_include_request {
  bool use_search_path;
  bool is_include;
  bool is_angle_bracket;
  bool is_preinclude;
  bool is_macro_preinclude;
  bool from_next_directory; // #include_next
};

// Finds, opens and enters a file, or skips it for its guard: then
// actual_include_was_suppressed is set. False when it was skipped, or wasn't
// found and that is no reason to stop.
bool open_file_and_push_input_stack(const char* name, const an_include_request& request);
// For __has_include: whether the file is found.
bool header_can_be_found(const char* name, bool is_angle_bracket, bool from_next_directory);
void pop_input_stack();
// Enters the next of the macro preinclude files, then of the preinclude files;
// called once when the primary file was opened, and by pop_input_stack. False
// when there's none left.
bool push_next_preinclude_file();

bool processing_primary_source_file();
bool in_included_file();

// #line with a new file name: the next physical line is line `line` of `name`.
void clone_current_input_file(const char* name, uint32_t line, bool is_system);
// #line without a file name, or with the one in effect.
void renumber_current_input_file(uint32_t line);
// `# line "name" 1`: the lines that follow are those of an included file, until
// pop_cloned_input_stack_entry at `# line "name" 2`, which is false when no such
// entry is open.
void push_cloned_input_stack_entry(const char* name, uint32_t line, bool is_system);
bool pop_cloned_input_stack_entry(uint32_t line);
// #pragma GCC system_header: from the next line on, the included file is a system
// header. Reported at the position in a primary file.
void mark_current_file_as_system_header(const a_source_position& position);

// -- The include search path -------------------------------------------------------------------

struct a_directory_name_entry {
  const char* name; // in internal encoding
  a_directory_name_entry* next;
  bool is_system;
  bool is_current_directory_slot; // holds the directory of the current file
};

extern a_directory_name_entry* incl_search_path;
extern a_directory_name_entry* end_incl_search_path;
// Where the search for <...> begins, the current file's directory set aside.
extern a_directory_name_entry* sys_incl_search_path;

// A list of names from the command line, in order.
struct a_file_name_list_entry {
  const char* name;
  a_file_name_list_entry* next;
};
extern a_file_name_list_entry* preinclude_file_list;
extern a_file_name_list_entry* macro_preinclude_file_list;
void add_to_file_name_list(a_file_name_list_entry** list, const char* name);

// Adds a directory at the end of the path.
void add_to_include_search_path(const char* name, bool is_system);
// The marker `-I-`: entries added from here on are searched for <...>, those
// before only for "...".
void mark_start_of_sys_incl_search_path();
// Takes away every later mention of a directory, and, of one that is a system
// directory too, the user's (as GNU compilers do).
void remove_duplicate_include_directories();
// Puts the slot for the current file's directory at the front of the path.
void put_current_directory_slot_on_incl_search_path(const char* directory);

// -- Include guards ---------------------------------------------------------------------

struct an_include_file_history {
  an_include_file_history* next;       // in the table by name
  an_include_file_history* next_by_id; // in the table by unique id
  const char* file_name;
  const char* guard_macro_name;
  a_unique_file_id unique_id;
  uint8_t is_guarded : 1; // all text lies inside the guard
  uint8_t is_pragma_once : 1;
  uint8_t guard_tests_defined : 1;     // the text counts if the macro is defined
  uint8_t guard_tests_not_defined : 1; // the text counts if it isn't
};

an_include_guard_state get_ifg_state();
void set_ifg_state(an_include_guard_state state);
// Keeps the macro of the guard that begins in the current file, and enters
// igs_inside.
void record_include_guard(const char* macro_name, size_t length, bool tests_not_defined);
// The record of an included file under its full name, or by its identity; null
// when there's none and `create` is off.
an_include_file_history* find_include_history(const char* full_name, bool create);
// Whether the guard of the file excludes it now.
bool suppress_subsequent_include_of_file(const char* full_name);

// -- Initialisation ---------------------------------------------------------------------

void source_file_early_init();
void source_file_one_time_init();
void source_file_init();
// Sequence numbers start anew only for the primary translation unit.
void source_file_trans_unit_init();
// Forgets what was read, for a new start on the same unit.
void source_file_reset();

#endif
