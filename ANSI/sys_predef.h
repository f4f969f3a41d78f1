// The entities that exist before the first source line.

#ifndef SYS_PREDEF_H
#define SYS_PREDEF_H

#include "basics.h"

struct a_routine;
struct a_symbol_header;

// Codes of builtin functions that the analysis knows. From bc_library_function
// on they are its own and don't reach the instruction file.
enum a_builtin_code : int64_t {
  bc_classify_type = 379,
  bc_constant_p = 398,
  bc_va_arg_pack = 3825,
  bc_va_arg_pack_len = 3826,
  bc_choose_expr = 3849,
  bc_library_function = 4000, // a call is one of the library function of its asm name
  bc_isgreater,
  bc_isgreaterequal,
  bc_isless,
  bc_islessequal,
  bc_object_size,
  bc_prefetch,
  bc_va_arg,
  bc_va_copy,
  bc_va_end,
  bc_va_start
};

// Enters the predeclared types, the intrinsic functions of the processor and the
// hooks, and makes the names of the builtin functions known. A builtin function
// itself is loaded where its name is first used, or here with
// preload_builtin_functions.
void enter_system_specific_predeclared_symbols();

// The code of a builtin function; 0 for any other routine, and for null.
int64_t builtin_code_of(const a_routine* routine);
// Whether a routine is a builtin function, of GNU or of the processor.
bool is_gnu_builtin_function(const a_routine* routine);

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
