// The ends of a run that wrote an intermediate file in vain: hard stops of the
// writer, and the removal of an unfinished file.

#ifndef IF_WRITE_UTIL_H
#define IF_WRITE_UTIL_H

// The name of the file being written, copied; null: none. An unfinished file
// of that name doesn't outlive the run, as far as it is a regular file.
void if_set_output_name(const char* name);

// Removes the file being written, if there is one. For every way out of the
// run that leaves the file unfinished; harmless at any other time.
void if_remove_output_file();

// Reports that closing the file failed: catastrophe 191, or 1972 with a reason
// when `errno_value` isn't 0.
[[noreturn]] void if_write_failure(int errno_value);

// Writes a line on standard output, removes the file being written and exits
// with status 1.
[[noreturn]] void if_stop(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif
