// RUN: %krtparse --c99 -P %s > %t.out 2> %t.err; test $? -eq 2
// RUN: %FileCheck --match-full-lines %s < %t.out
// RUN: %FileCheck --check-prefix=ERR --implicit-check-not=line %s < %t.err
// RUN: %krtparse --c99 -P --strict %s > %t.strict 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=STRICT %s < %t.strict
// The GNU modes let a program take all predefined names back, but not the
// operator of conditions.
#pragma push_macro("__LINE__")
#undef __LINE__
// STRICT: line [[@LINE-1]]: error: #undef may not be used on this predefined name
#undef __DATE__
// STRICT: line [[@LINE-1]]: error: #undef may not be used on this predefined name
#undef defined
// ERR: line [[@LINE-1]]: error: #undef may not be used on this predefined name
#undef never_defined
__LINE__ __DATE__
// CHECK: __LINE__ __DATE__
#define __LINE__ mine
__LINE__
// CHECK: mine
#pragma pop_macro("__LINE__")
__LINE__
// CHECK: 22
#if defined(__LINE__) && !defined(__DATE__)
kept
#endif
// CHECK: kept
