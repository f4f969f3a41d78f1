// What the unit tests of the host environment and of source files share.

#ifndef SOURCE_TEST_UTIL_H
#define SOURCE_TEST_UTIL_H

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il_alloc.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "source_file.h"
#include "source_line.h"
#include "trans_unit.h"

#include <cstdio>
#include <cstdlib>

// Readies memory and the source modules for a test, once a process, and
// forgets what earlier tests have read.
inline void start_front_end_for_tests() {
  static bool started;
  if (!started) {
    f_error = stderr;
    mem_manage_early_init();
    reset_mode_words();
    host_envir_early_init();
    error_early_init();
    is_primary_translation_unit = 1;
    compute_il_prefix_size();
    mem_manage_one_time_init();
    host_envir_one_time_init();
    mem_manage_init();
    host_envir_init();
    atexit(free_all_memory);
    started = true;
  }
  error_init();
  host_envir_trans_unit_init();
}

#endif
