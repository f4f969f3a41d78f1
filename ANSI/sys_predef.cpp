#include "sys_predef.h"

void enter_system_specific_predeclared_symbols() {
  // Intrinsics come with calls.
}

bool builtin_function_is_enabled(const char*) {
  return false;
}

void sys_predef_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
