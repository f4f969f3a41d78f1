// Precompiled header files.

#ifndef PCH_H
#define PCH_H

#include "basics.h"

// Something was met that no precompiled header can hold.
extern a_boolean cannot_create_pch_file;

// The place up to which a precompiled header is to be made lies ahead: no
// region is written until then.
extern a_boolean header_stop_position_pending;

// Records an option that a precompiled header must agree with.
void add_command_line_pch_event(int kind, int option, int value, const char* text);

// Prepares the scan of the header prefix.
void fe_init_for_pch_prefix_scan();

// Uses or makes a precompiled header for the prefix of the unit.
void precompiled_header_processing();

void pch_early_init();
void pch_one_time_init();
void pch_init();

#endif
