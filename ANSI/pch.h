// Precompiled header files.

#ifndef PCH_H
#define PCH_H

#include "basics.h"

#include <cstddef>

// A variable whose bytes a precompiled header stores raw.
struct a_pch_saved_variable {
  void* address;
  size_t size;           // bytes
  uint8_t holds_pointer; // the address is that of a pointer to the bytes
};

// Something was met that no precompiled header can hold.
extern a_boolean cannot_create_pch_file;

// The place up to which a precompiled header is to be made lies ahead: no
// region is written until then.
extern a_boolean header_stop_position_pending;

// Records an option that a precompiled header must agree with.
void add_command_line_pch_event(int kind, int option, int value, const char* text);

// Adds a module's table to those that a precompiled header saves and restores,
// in the order of registration. A row without an address ends the table, which
// must last; a table that is registered already is left where it stands.
void register_pch_saved_variables(const a_pch_saved_variable* table);
// The tables registered so far, for the writer and the reader of the header.
inline constexpr int max_pch_saved_variable_tables = 64;
extern const a_pch_saved_variable* pch_saved_variable_tables[max_pch_saved_variable_tables];
extern int num_pch_saved_variable_tables;

// Prepares the scan of the header prefix.
void fe_init_for_pch_prefix_scan();

// Uses or makes a precompiled header for the prefix of the unit.
void precompiled_header_processing();

void pch_early_init();
void pch_one_time_init();
void pch_init();

#endif
