// A translation unit with an empty file scope, for tests of the intermediate
// language that need no source text.

#ifndef IL_FIXTURE_H
#define IL_FIXTURE_H

#include "il.h"
#include "il_alloc.h"
#include "il_to_str.h"
#include "il_walk.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

#include <gtest/gtest.h>

class IL_TEST : public testing::Test {
protected:
  void SetUp() override {
    start(cd_ansi_c);
  }

  void TearDown() override {
    free_all_memory();
    reset_mode_words();
  }

  // Begins the unit; a test may begin another one, in another language.
  void start(a_C_dialect dialect) {
    if (mem_region_table != nullptr)
      free_all_memory();
    mem_manage_early_init();
    target_early_init();
    reset_mode_words();
    C_dialect = dialect;
    std_version = dialect == cd_cplusplus ? 201103 : 199901;
    depth_scope_stack = -1;
    trans_unit_early_init();
    types_early_init();
    is_primary_translation_unit = 1;
    compute_il_prefix_size();
    target_one_time_init();
    il_to_str_one_time_init();
    il_one_time_init();
    mem_manage_one_time_init();
    symbol_tbl_one_time_init();
    scope_stk_one_time_init();
    mem_manage_init();
    il_to_str_init();
    il_header.short_enums = 0;
    il_header.enum_type_is_integral = 0;
    il_init();
    il_walk_init();
    symbol_tbl_init();
    scope_stk_init();
    target_init();
    il_trans_unit_init();
    symbol_tbl_trans_unit_init();
    scope_stk_trans_unit_init();
    il_header.macros = nullptr;
    il_header.scope_orphaned_lists = nullptr;
    il_header.secondary_entities = nullptr;
    il_header.main_routine = nullptr;
    il_header.primary_scope = new_file_scope(0);
  }
};

#endif
