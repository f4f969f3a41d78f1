// RUN: %krtparse --c99 -P %s > %t.out 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// RUN: %krtparse --c99 %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=WARN %s < %t.out

#define MACRO replaced
#pragma unknown MACRO "text"  x
// CHECK: #pragma unknown MACRO "text"  x
// WARN: pragmas.c", line [[@LINE-2]]: warning: unrecognized #pragma
#define OP(x) before _Pragma(#x) after
OP(some "quoted" text)
// CHECK: before
// CHECK: #pragma some "quoted" text
// CHECK: after
// WARN: pragmas.c", line [[@LINE-4]]: warning: unrecognized #pragma
_Pragma "no parenthesis"
// WARN: pragmas.c", line [[@LINE-1]]: error: expected a "("
_Pragma(no literal)
// WARN: pragmas.c", line [[@LINE-1]]: error: expected a string literal
_Pragma("push_macro(\"MACRO\")")
#undef MACRO
#define MACRO other
inner MACRO
// CHECK: inner other
_Pragma("pop_macro(\"MACRO\")")
outer MACRO
// CHECK-NOT: _macro
// CHECK: outer replaced
