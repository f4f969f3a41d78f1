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
// Text that is compiled later has no macros: what a pragma reads expanded goes
// out expanded, as directive and as operator.
#define COUNT 4
#define ON 1
#pragma UNROLL(COUNT)
_Pragma("pack(COUNT)")
#pragma STDC FP_CONTRACT ON
_Pragma("STDC FP_CONTRACT ON")
_Pragma("unknown COUNT \"COUNT\" 4COUNT")
// CHECK: #pragma UNROLL(4)
// CHECK: #pragma pack(4)
// CHECK: #pragma STDC FP_CONTRACT ON
// CHECK: #pragma STDC FP_CONTRACT ON
// CHECK: #pragma unknown COUNT "COUNT" 4COUNT
