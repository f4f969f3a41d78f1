// A front end that stands at the file scope of an empty C or C++ unit, with its
// diagnostics in a text of its own.

#ifndef FRONT_END_STATE_H
#define FRONT_END_STATE_H

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "il_alloc.h"
#include "il_to_str.h"
#include "il_walk.h"
#include "lookup.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

#include <cstdio>
#include <cstdlib>
#include <string>

class FRONT_END_STATE {
public:
  // What happens once in a process: buffers of several modules last until its
  // end.
  static void start_process() {
    static bool is_started;
    if (is_started)
      return;
    is_started = true;
    mem_manage_early_init();
    host_envir_early_init();
    target_early_init();
    error_early_init();
    trans_unit_early_init();
    types_early_init();
    target_one_time_init();
    error_one_time_init();
    il_to_str_one_time_init();
    il_one_time_init();
    mem_manage_one_time_init();
    scope_stk_one_time_init();
    atexit(free_all_memory);
  }

  void start(int dialect) {
    saved_f_error = f_error;
    f_error = open_memstream(&messages_text, &messages_size);
    start_process();
    reset_mode_words();
    C_dialect = dialect;
    std_version = dialect == cd_cplusplus ? 201103 : 199901;
    in_front_end = 1;
    total_errors = total_warnings = total_remarks = 0;
    error_threshold = es_remark;
    symbol_tbl_one_time_init(); // the name spaces depend on the dialect
    is_primary_translation_unit = 1;
    curr_translation_unit = nullptr;
    compute_il_prefix_size();
    error_init();
    mem_manage_init();
    il_to_str_init();
    il_init();
    il_walk_init();
    symbol_tbl_init();
    lookup_init();
    scope_stk_init();
    target_init();
    mem_manage_trans_unit_init();
    il_trans_unit_init();
    symbol_tbl_trans_unit_init();
    scope_stk_trans_unit_init();
    il_header.primary_scope = new_file_scope(file_scope_number);
    push_file_scope(false);
  }

  void stop() {
    if (f_error == saved_f_error)
      return;
    for (int32_t region = 0; region <= highest_used_region_number; ++region)
      free_memory_region(region);
    fclose(f_error);
    free(messages_text);
    f_error = saved_f_error;
  }

  // In a test that needs another language from the start.
  void restart(int dialect) {
    stop();
    start(dialect);
  }

  void restart_in_cplusplus() {
    restart(cd_cplusplus);
  }

  std::string messages() {
    fflush(f_error);
    return std::string(messages_text, messages_size);
  }

private:
  FILE* saved_f_error = nullptr;
  char* messages_text = nullptr;
  size_t messages_size = 0;
};

#endif
