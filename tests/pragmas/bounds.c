// The bound of a parameter's array is kept for the definition of the function; a
// pragma in it acts once all the same.
// RUN: %krtparse --c99 --display_error_number --i_output_file=%t.if %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err
// RUN: %ifdump %t.if | %FileCheck --check-prefix=FILE %s --implicit-check-not='pragma BAT_VREG'

int constant(int a[1 +
// CHECK: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
    2]) { return a[0]; }
int variable(int n, int a[n +
// CHECK-NEXT: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
// FILE: pragma BAT_VREG "r" "1"
#pragma BAT_VREG("r", 1)
    2]) { return a[n]; }
