// The entities that exist before the first source line.

#ifndef SYS_PREDEF_H
#define SYS_PREDEF_H

#include "basics.h"

struct a_symbol_header;

// Makes the names of the builtin functions known. A function itself is loaded
// where its name is first used, or here with preload_builtin_functions.
void enter_system_specific_predeclared_symbols();

// For __has_builtin: whether there is a builtin function of the name.
bool builtin_function_is_enabled(const char* name);

// Declares the builtin function that waits under a name, at file scope; null
// when none does.
a_symbol* load_builtin_function(a_symbol_header* header);

void sys_predef_trans_unit_init();

#endif
