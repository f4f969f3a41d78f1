// RUN: %krtparse --c99 -n %s 2>&1 | %FileCheck %s
#define CALL(x) _Pragma(#x)
#define MS(...) __pragma(__VA_ARGS__)
CALL(push_macro("CALL")) MS(pop_macro("CALL"))
// CHECK-NOT: [[@LINE-1]]
_Pragma("hdrstop")
// CHECK: line [[@LINE-1]]: error: this pragma cannot be used in a _Pragma operator
__pragma(hdrstop)
// CHECK: line [[@LINE-1]]: error: this pragma cannot be used in a __pragma operator
_Pragma(once)
// CHECK: line [[@LINE-1]]: error: expected a string literal
_Pragma("once" 1)
// CHECK: line [[@LINE-1]]: error: expected a ")"
_Pragma + 1;
// CHECK: line [[@LINE-1]]: error: expected a "("
__pragma(x /*
// CHECK: line [[@LINE-1]]: error: comment unclosed at end of file
