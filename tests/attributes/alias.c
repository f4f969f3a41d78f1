// RUN: ! %krtparse --gcc --no_code_gen --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='{{error|warning}} #' < %t.err
// Aliases are resolved at the end of the unit, by names for the assembler.

int late(int) __attribute__((alias("defined_later")));
int defined_later(int a) { return a; }
static int target_only(int a) { return a; }
int of_static(int) __attribute__((alias("target_only")));
int (*resolve(void))(int) { return defined_later; }
int chosen(int) __attribute__((ifunc("resolve")));

// CHECK: line [[#@LINE+1]]: error #2898: an ifunc may not be weak
int weak_ifunc(int) __attribute__((weak, ifunc("resolve")));
// CHECK: line [[#@LINE+1]]: error #1229: the target of alias function "nowhere" must be declared in this translation unit
int nowhere(int) __attribute__((alias("no_such_function")));
// CHECK: line [[#@LINE+1]]: warning #1228-D: the alias function "other_type" and its target function "defined_later" have incompatible types
double other_type(void) __attribute__((alias("defined_later")));
// CHECK: line [[#@LINE+1]]: warning #2896-D: the ifunc resolver must return a pointer to function
int bad_resolver(int) __attribute__((ifunc("defined_later")));
// CHECK: line [[#@LINE+1]]: error #1230: alias function "has_body" must not have a definition
int has_body(int) __attribute__((alias("defined_later")));
int has_body(int a) { return a; }
