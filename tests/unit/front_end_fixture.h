// Tests that stand at the file scope of an empty C or C++ unit.

#ifndef FRONT_END_FIXTURE_H
#define FRONT_END_FIXTURE_H

#include "front_end_state.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lookup.h"

#include <cstring>
#include <gtest/gtest.h>

class FrontEnd : public ::testing::Test, protected FRONT_END_STATE {
protected:
  void SetUp() override {
    start(cd_ansi_c);
  }

  void TearDown() override {
    stop();
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
};

#endif
