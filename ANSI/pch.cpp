#include "pch.h"

#include "mode_words.h"

a_boolean cannot_create_pch_file;
a_boolean header_stop_position_pending;

void add_command_line_pch_event(int, int, int, const char*) {
  // Options matter only to a header that is used.
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
