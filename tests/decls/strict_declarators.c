// RUN: %krtparse --strict --c99 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// What only the strict modes report of declarators.

struct flexible { int a; int b[]; };
// CHECK: line [[#@LINE+1]]: error #1986-D: array of elements containing a flexible array member is nonstandard
struct flexible of_flexible[2];
// CHECK: line [[#@LINE+1]]: error #95: the size of an array must be greater than zero
int zero[0];
// CHECK: line [[#@LINE+1]]: error #671: ellipsis with no explicit parameters is nonstandard
int only_ellipsis(...);
// CHECK: line [[#@LINE+1]]: error #2770-D: declaring a void parameter list with a qualified void type
int empty(const void);
// CHECK: errors detected
