// RUN: %krtparse -n --c99 --check_misra=all --diag_suppress=179 --display_error_number %s > %t.err 2>&1
// RUN: grep -c 1391 %t.err | %FileCheck %s --check-prefix=COUNT
// RUN: grep 1391 %t.err | %FileCheck %s
// Rule 9.2: braces show the structure, but for a whole that is zero.
// COUNT: {{^}}2{{$}}
struct inner { int a[2]; };
struct outer { struct inner in; char name[4]; };
struct outer zero = {0}, full = {{{1, 2}}, "abc"};
int zeros[2][2] = {0};
struct outer zero_inside = {{0}, "abc"}, zeros_inside[2] = {{{{1, 2}}, "abc"}, {0}};
// CHECK: line [[#@LINE+1]]:
int flat[2][2] = {{1, 2}, 3, 4};
// CHECK: line [[#@LINE+1]]:
struct outer members = {{1, 2}, "abc"};
