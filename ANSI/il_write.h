// The IL file.

#ifndef IL_WRITE_H
#define IL_WRITE_H

#include "basics.h"

#include <cstdio>

// The open IL file, null while there is none.
extern FILE* f_il;

// Opens the IL and writes its heading when a file is open.
void start_il_file();

// Writes the regions that are still to be written.
void finish_il_file();

// Takes back the IL file after an error.
void cancel_il_file();

// Closes the IL file.
void close_il_output_file();

void il_write_early_init();

#endif
