// The compilation driver: the one path from main to the process's exit.

#ifndef CFE_H
#define CFE_H

#include "basics.h"

#include <cstdio>

// The version of the front end, which the files that store its memory carry.
inline constexpr char front_end_version[] = "4.13";

// The streams of the run. f_error is standard error unless redirected; the
// others are null while they aren't open.
extern FILE* f_error;
extern FILE* f_pp_output;
extern FILE* f_raw_listing;
extern FILE* f_xref_info;

// The time at which the compilation began, as ctime writes it, without the
// newline: the time stamp of the IL and of __DATE__ and __TIME__.
extern char compilation_time_stamp[32];

// The whole run; never returns. `main` forwards to it.
[[noreturn]] void compiler_main(int argc, char** argv);

// Ends the process with the status that belongs to the severity: 0 up to
// warnings, 2 after errors, 4 for catastrophes and command-line errors; an
// internal error aborts.
[[noreturn]] void exit_compilation(an_error_severity severity);

// write_signoff, then exit_compilation.
[[noreturn]] void term_compilation(an_error_severity severity);

// Writes the closing line with the counts of errors to f_error; silent when
// there are none and when an assembly header is made.
void write_signoff();

// The lists of the IL are complete: finishes scopes, lowers, drops what is not
// needed, and closes the listing files.
void fe_wrapup();

// Closes the IL file, writes the signoff and releases all memory.
void fe_wrapup_part_2();

// The parts of process_translation_unit: see trans_unit.h.
void fe_init_part_1();
void fe_translation_unit_init();
void fe_init_part_2();
void translation_unit_wrapup();

#endif
