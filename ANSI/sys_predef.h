// The entities that exist before the first source line.

#ifndef SYS_PREDEF_H
#define SYS_PREDEF_H

#include "basics.h"

// Enters the builtin and intrinsic functions of the processor.
void enter_system_specific_predeclared_symbols();

// For __has_builtin: whether the builtin function exists under the settings.
bool builtin_function_is_enabled(const char* name);

void sys_predef_trans_unit_init();

#endif
