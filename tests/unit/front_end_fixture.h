// A front end that stands at the file scope of an empty C or C++ unit, with its
// diagnostics in a text of its own.

#ifndef FRONT_END_FIXTURE_H
#define FRONT_END_FIXTURE_H

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
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
#include <cstring>
#include <gtest/gtest.h>
#include <string>

class FrontEnd : public ::testing::Test {
protected:
  void SetUp() override {
    start(cd_ansi_c);
  }

  void TearDown() override {
    stop();
  }

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

  // The call ends the run with status 4 and a message that holds the text.
  template <class CALL> static void expect_catastrophe(CALL call, const char* text) {
    EXPECT_EXIT(
        {
          fclose(f_error);
          f_error = stderr;
          call();
        },
        ::testing::ExitedWithCode(4), text);
  }

  std::string messages() {
    fflush(f_error);
    return std::string(messages_text, messages_size);
  }

  a_symbol_locator locator_for(const char* name) {
    a_symbol_locator locator = cleared_locator;
    locator.position.seq = 1;
    locator.position.column = 1;
    find_symbol_header(name, 0, &locator);
    return locator;
  }

  a_symbol* enter(a_symbol_kind kind, const char* name, int depth) {
    a_symbol_locator locator = locator_for(name);
    return enter_symbol(kind, &locator, depth, nullptr);
  }

  a_symbol* enter(a_symbol_kind kind, const char* name) {
    return enter(kind, name, decl_scope_level);
  }

  a_symbol* enter_variable(const char* name, a_storage_kind storage, int depth) {
    a_symbol* symbol = enter(symk_variable, name, depth);
    symbol->variant.variable = make_variable(integer_type(ik_int), storage, depth);
    set_source_corresp(&symbol->variant.variable->source_corresp, symbol);
    return symbol;
  }

  a_routine* enter_function(const char* name) {
    a_symbol* symbol = enter(symk_routine, name, 0);
    a_routine* routine = alloc_routine();
    routine->type = make_routine_type(integer_type(ik_int));
    routine->source_corresp.linkage = idl_external;
    symbol->variant.routine = routine;
    set_source_corresp(&routine->source_corresp, symbol);
    add_to_routines_list(routine, 0);
    return routine;
  }

  a_symbol* look_up(const char* name, uint32_t options = ilo_none) {
    a_symbol_locator locator = locator_for(name);
    return normal_id_lookup(&locator, options);
  }

  a_symbol* look_up_here(const char* name, uint32_t options = ilo_none) {
    a_symbol_locator locator = locator_for(name);
    return curr_scope_id_lookup(&locator, options);
  }

private:
  FILE* saved_f_error = nullptr;
  char* messages_text = nullptr;
  size_t messages_size = 0;
};

#endif
