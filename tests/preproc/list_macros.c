// RUN: %krtparse --c99 --list_macros -DCMD=5 %s | %FileCheck %s
// RUN: %krtparse --c99 --preproc_macros %s | %FileCheck --check-prefix=FILES %s
// The definitions in force at the end, as directives.
#define A 1
#undef A
#define A(x,  y...)   #x   x ## y  y
#define B(...) #@__VA_ARGS__ __VA_ARGS__
#define GONE 1
#undef GONE
#define EMPTY
// CHECK-NOT: __LINE__
// CHECK-NOT: defined
// CHECK: #define __STDC__ 1
// CHECK: #define CMD 5
// CHECK-NEXT: #define A(x,y...) #x x ## y y
// CHECK-NEXT: #define B(...) #@__VA_ARGS__ __VA_ARGS__
// CHECK-NEXT: #define EMPTY
// CHECK-NOT: #define
// FILES: __STDC__ 1	/* Predefined */
// FILES: B(...) #@__VA_ARGS__ __VA_ARGS__	/* {{.*}}list_macros.c */
