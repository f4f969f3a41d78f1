// What the files of the source file module share.

#ifndef SOURCE_FILE_INT_H
#define SOURCE_FILE_INT_H

#include "source_file.h"

// A file that a search found.
struct a_found_file {
  a_source_text text;
  const char* full_name;
  a_directory_name_entry* search_path_entry; // null if the path wasn't searched
  bool was_suppressed;                       // found, but excluded by its guard: there's no text
};

// Copies a name into memory that lives as long as the IL.
const char* copy_of_file_name(const char* name);

// Finds and reads a file. `result` is not set for a search.
bool open_file_for_input(const char* name, const an_include_request& request, a_found_file* found,
                         an_open_file_result* result);

// The line number that the next physical line of the current file has.
uint32_t next_line_of_current_file();
uint32_t next_physical_line_of_current_file();

// The slot for the current file's directory: its text changes with the file.
void push_current_directory(const char* directory);
void pop_current_directory(const char* directory);

// Per-unit state of the parts of the module.
void source_file_seq_reset(bool is_primary_unit);
void source_file_search_one_time_init();
void source_file_search_reset();

#endif
