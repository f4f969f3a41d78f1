// The IL file: the regions of a compilation as they stand in memory, with an
// index of where each begins.

#ifndef IL_WRITE_H
#define IL_WRITE_H

#include "basics.h"

#include <cstdio>

// The open IL file, null while there is none: then nothing is written.
extern FILE* f_il;

// Writes the heading.
void start_il_file();

// Writes the region, without what has no meaning outside the front end, and
// notes its place in index_for_il_file. A region is written once.
void write_memory_region(int32_t region);

// Writes the index of the regions, and completes the heading.
void finish_il_file();

// Takes back the IL file after an error.
void cancel_il_file();

// Closes the IL file.
void close_il_output_file();

void il_write_early_init();

#endif
