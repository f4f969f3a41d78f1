// The ends of a run that wrote an intermediate file in vain: hard stops of the
// writer, and the removal of an unfinished file.

#ifndef IF_WRITE_UTIL_H
#define IF_WRITE_UTIL_H

// The name of the file being written, copied; null: none. An unfinished file
// of that name doesn't outlive the run, as far as it is a regular file: every
// exit of the process removes it.
void if_set_output_name(const char* name);

// Removes the file being written, if there is one. For the ways out of the run
// that aren't an exit; harmless at any other time, and safe in a signal
// handler.
void if_remove_output_file();

// Writes a line on standard output and exits with status 1.
[[noreturn]] void if_stop(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif
