// The line buffer: one logical line of source, the record of what differs in
// it from the physical text, and the positions of places in it.

#ifndef SOURCE_LINE_H
#define SOURCE_LINE_H

#include "basics.h"

// -- Markers ---------------------------------------------------------------------------

// A NUL in the line buffer is followed by one of these; macro text has more.
inline constexpr char lm_end_of_line = 1;   // the end of the logical line
inline constexpr char lm_newline = 2;       // an end of physical line that the end of input hides
inline constexpr char lm_nul_character = 6; // a NUL byte of the source

// -- The buffer ---------------------------------------------------------------------------

// The logical line, with one blank in front of it.
extern char* curr_source_line;
// Behind the end marker.
extern char* after_end_of_curr_source_line;
// The scanner's read pointer.
extern char* curr_char_loc;
// No splice, trigraph, NUL or character of several bytes is in the line: a
// column is the distance to curr_source_line plus 1, the sequence number
// curr_seq_number.
extern a_boolean curr_source_line_is_plain;
// The line isn't to appear in the preprocessed output.
extern a_boolean do_not_put_curr_line_in_pp_output;
// Behind a macro expansion in the line: the position that counts for its text.
extern a_source_position pos_of_macro_invocation;

// Reads the next logical line into the buffer, or with `append` behind the text
// that's there. At the end of a file, with `pop_at_eof`, goes on in the file
// that included it. True at the end of the input, or, without `pop_at_eof` or
// in a file whose entry says so, at the end of the file.
bool read_logical_source_line(bool pop_at_eof, bool append);

// Inside a block comment, before its next line is read: counts the lines in
// which it can't end and that nothing else is made of.
void pass_over_comment_lines();

// Whether the text, which begins with # or %:, begins with ## or %:%:.
inline bool is_double_sharp(const char* p) {
  return *p == '#' ? p[1] == '#' : p[2] == '%' && p[3] == ':';
}
// Whether the physical line with which the current line begins is a directive.
bool curr_line_is_directive();
// Writes what the current line owes to the preprocessed output and the listing.
void flush_pp_output_of_curr_line();

// Makes room for `length` bytes in the buffer.
void ensure_min_curr_source_line_length(size_t length);

// A buffer that moved: pointers from old_start to old_end, the end included,
// are to be adjusted.
struct a_moved_buffer {
  char* old_start;
  char* old_end;
  char* new_start;
};

inline char* moved_pointer(const a_moved_buffer& moved, char* p) {
  return p >= moved.old_start && p <= moved.old_end ? moved.new_start + (p - moved.old_start) : p;
}

// Adjusts everything that points into a moved buffer: the line's own records
// and whatever the registered adjusters know.
void adjust_curr_source_line_structure_after_realloc(const a_moved_buffer& moved);
// Registers a function that adjusts the pointers of another module.
void register_source_line_adjuster(void (*adjust)(const a_moved_buffer& moved));

// -- Changes against the physical text --------------------------------------------------------

enum an_orig_line_modif_kind : uint8_t {
  olm_trigraph = 0, // `extra` is its third character
  olm_splice = 1,   // `extra` is the sequence number of the next physical line
  olm_newline = 2,  // an appended line begins; `extra` as for a splice
  olm_nul = 3       // a marker was inserted behind a NUL
};

struct an_orig_line_modif {
  an_orig_line_modif* next;
  char* location;
  an_orig_line_modif_kind kind;
  uint32_t extra;
};

extern an_orig_line_modif* orig_line_modif_list;
extern an_orig_line_modif* end_orig_line_modif_list;

// Adds a record at the end of the list.
an_orig_line_modif* add_orig_line_modif(char* location, an_orig_line_modif_kind kind,
                                        uint32_t extra);

// Puts a text in the place of `length` bytes at `location`: those bytes as they
// were written, with their trigraphs, splices and newlines. What stands behind
// them in the line moves.
void replace_orig_line_text(char* location, size_t length, const char* text, size_t text_length);

// -- Replaced text ------------------------------------------------------------------------------

// A piece of the line replaced by text that lies elsewhere, above all a macro
// invocation by its expansion. The byte at `location` is overwritten with a
// newline, which stands for nothing else in the buffer.
struct a_source_line_modif {
  a_source_line_modif* next; // most recently used first
  a_source_line_modif* hash_next;
  char* location;              // null: the text at the start of a line
  a_source_line_modif* parent; // whose text holds the location; cached
  size_t length;               // bytes that the modification covers
  uint32_t parent_is_valid : 1;
  uint32_t stays_in_place : 1; // in the list
  uint32_t is_macro_expansion : 1;
  uint32_t position_is_fixed : 1;
  uint32_t stops_scan : 1; // the end of the text ends the scanning
  char saved_char;
  char* text_start;
  char* text_end;
  a_symbol* macro;
  uint32_t sequence_id;
  a_source_position position;  // of all text in it
  void* concatenation_records; // kept by the macro expansion
};

extern a_source_line_modif* source_line_modif_list;
// The record whose text stands at the start of the current line, or null.
extern a_source_line_modif* line_start_source_line_modif;
extern uint32_t sequence_id_for_source_line_modifs;

// Replaces `length` bytes at `location` by the text. A null location makes the
// text the start of the line.
a_source_line_modif* add_source_line_modif(char* location, size_t length, char* text_start,
                                           char* text_end);
// Takes a modification back; the saved byte returns to its place.
void remove_source_line_modif(a_source_line_modif* modif);
// The modification whose marker stands at `location`, or null.
a_source_line_modif* source_line_modif_at(const char* location);
// The modification whose text holds `location`, or null for a location in the
// line buffer.
a_source_line_modif* assoc_source_line_modif(const char* location);
// The modification whose text holds the location of `modif`, or null.
a_source_line_modif* parent_source_line_modif(a_source_line_modif* modif);

// -- Positions --------------------------------------------------------------------------

// The position of a place in the line buffer or in a replacement text. Text of
// a macro expansion has the position of the invocation.
void conv_line_loc_to_source_pos(const char* location, a_source_position* position);

// -- Initialisation ---------------------------------------------------------------------

void source_line_one_time_init();
void source_line_init();
void source_line_reset();

#endif
