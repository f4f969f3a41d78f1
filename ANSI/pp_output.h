// Text output of the preprocessor: the preprocessed source, the raw listing
// and the list of macros.

#ifndef PP_OUTPUT_H
#define PP_OUTPUT_H

#include "basics.h"

// Closes the raw listing; a fatal diagnostic ends it too. A catastrophe when it
// could not be written.
void finish_raw_listing_file();

// Writes each macro of the unit as a #define directive to f_pp_output.
void gen_pp_output_for_macro_definitions();

#endif
