// What the files of the line buffer share.

#ifndef SOURCE_LINE_INT_H
#define SOURCE_LINE_INT_H

#include "source_line.h"

// Gives the records of the line back. Replacement texts that an expansion in
// process still reads keep theirs.
void free_orig_line_modifs();
void free_source_line_modifs();
// Records a splice. When the backslash was written as a trigraph, the record
// takes the place of the trigraph's.
void add_splice_modif(char* location, uint32_t next_seq);
// Takes the record of a trigraph at the end of the line back.
void remove_trigraph_modif_at(const char* location);
// The bytes from `start` to `end` were replaced by the text as it was written,
// which now stands from `start` to `new_end`.
void restore_orig_line_modifs(char* start, const char* end, char* new_end);
// Adjusts the records to a moved buffer.
void adjust_source_line_modifs(const a_moved_buffer& moved);
// Forgets the free lists, whose records were in regions that are gone.
void clear_source_line_modif_free_lists();

#endif
