#include "pch.h"

#include "error.h"
#include "mode_words.h"

#include <algorithm>

a_boolean cannot_create_pch_file;
a_boolean header_stop_position_pending;
const a_pch_saved_variable* pch_saved_variable_tables[max_pch_saved_variable_tables];
int num_pch_saved_variable_tables;

void add_command_line_pch_event(int, int, int, const char*) {
  // Options matter only to a header that is used.
}

void register_pch_saved_variables(const a_pch_saved_variable* table) {
  const a_pch_saved_variable** end = pch_saved_variable_tables + num_pch_saved_variable_tables;
  if (std::find(pch_saved_variable_tables, end, table) != end)
    return;
  if (num_pch_saved_variable_tables == max_pch_saved_variable_tables)
    internal_error("too many tables of saved variables");
  *end = table;
  ++num_pch_saved_variable_tables;
}

void fe_init_for_pch_prefix_scan() {
  building_pch_prefix = 0;
}

void precompiled_header_processing() {
  cannot_do_pch_processing = 1;
}

void pch_early_init() {
  using_a_pch_file = 0;
  building_pch_prefix = 0;
  header_stop_position_pending = 0;
}

void pch_one_time_init() {
  // No variable of this module is kept for each unit.
}

void pch_init() {
  // Nothing of this module lives on from an earlier run.
}
