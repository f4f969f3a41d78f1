// RUN: %krtparse --c99 -n %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --implicit-check-not=line %s < %t.out
// RUN: %krtparse -n %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=C89 %s < %t.out

#pragma STDC FP_CONTRACT ON
// C89: line [[@LINE-1]]: warning: unrecognized #pragma
int a;
#pragma STDC FENV_ACCESS OFF
#pragma STDC CX_LIMITED_RANGE DEFAULT
int f(void)
{
#pragma STDC FP_CONTRACT OFF
  int x;
#pragma STDC FP_CONTRACT ON
// CHECK: line [[@LINE-1]]: warning: a STDC pragma may only appear between declarations
  x = 1;
  {
#pragma STDC FP_CONTRACT OFF
    x = 2;
  }
  return x;
#pragma STDC FP_CONTRACT ON
// CHECK: line [[@LINE-1]]: warning: a STDC pragma may only appear between declarations
}
#pragma STDC BOGUS ON
// CHECK: line [[@LINE-1]]: warning: unrecognized STDC pragma
#pragma STDC FP_CONTRACT MAYBE
// CHECK: line [[@LINE-1]]: warning: expected "ON", "OFF", or "DEFAULT"
#pragma STDC FP_CONTRACT ON ON
// CHECK: line [[@LINE-1]]: error: extra text
#pragma STDC
// CHECK: line [[@LINE-1]]: warning: unrecognized STDC pragma
// Nothing is said of pragmas for precompiled headers.
#pragma hdrstop
#pragma no_pch at all
int z;
_Pragma("hdrstop")
// CHECK: line [[@LINE-1]]: error: this pragma cannot be used in a _Pragma operator
#pragma STDC FP_CONTRACT OFF
// CHECK: errors detected
