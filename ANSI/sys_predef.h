// The entities that exist before the first source line.

#ifndef SYS_PREDEF_H
#define SYS_PREDEF_H

#include "basics.h"

struct a_symbol_header;

// Enters the predeclared types, the intrinsic functions of the processor and the
// hooks, and makes the names of the builtin functions known. A builtin function
// itself is loaded where its name is first used, or here with
// preload_builtin_functions.
void enter_system_specific_predeclared_symbols();

// For __has_builtin: whether there is a builtin function of the name.
bool builtin_function_is_enabled(const char* name);

// Declares the builtin function that waits under a name, at file scope; null
// when none does.
a_symbol* load_builtin_function(a_symbol_header* header);

// A function that exists before the program and that the program hasn't declared.
// The hooks are none: they are functions of the program.
bool is_predeclared_function(const a_symbol* symbol);

// For a declaration of something else under the name: takes a predeclared
// function out of its scope, and returns null. Any other symbol, or null, is
// returned.
a_symbol* forget_predeclared_function(a_symbol* symbol);

// What a parameter of any type by reference refers to.
a_type* ql_wildcard_type();

void sys_predef_one_time_init();
void sys_predef_trans_unit_init();

#endif
