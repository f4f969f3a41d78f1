// Warnings on both roads, and the ends of a run without an assembly header.
// RUN: rm -rf %t && mkdir %t && cp %s %t/w.c && cd %t
// RUN: (%krtparse --asmheaders --stdio_ah_warnings --display_error_number w.c; echo status=$?) 2>&1 \
// RUN:   | %FileCheck %s
// RUN: %FileCheck %s --check-prefix=FILE < w.ah
// RUN: (%krtparse --asmheaders --ah_output_file=/dev/full w.c; echo status=$?) 2>&1 | %FileCheck %s --check-prefix=FULL
// RUN: mkdir dir.ah && (%krtparse --asmheaders --ah_output_file=dir.ah w.c; echo status=$?) 2>&1 \
// RUN:   | %FileCheck %s --check-prefix=DIR

// No sign-off, and nothing of an earlier run is touched, when there is an error.
// RUN: cp w.ah old.ah && (%krtparse --asmheaders -DBROKEN w.c; echo status=$?) 2>&1 | %FileCheck %s --check-prefix=BROKEN
// RUN: cmp w.ah old.ah

// CHECK: "w.c", line [[@LINE+13]] {{.*}}warning #1124-D: pragma RETAIN ignored during assembly header translation
// CHECK-NEXT: "w.c", line [[@LINE+1]] {{.*}}warning #1129-D: function-like macro 'F(x)' ignored during assembly header translation
#define F(x) x
// CHECK: "w.c", line [[@LINE+1]] {{.*}}warning #1130-D: complex string macro 'C' ignored during assembly header translation
#define C "x" "y"
// The pragmas of the file come first.
// FILE: ; ASM HEADER WARNING - pragma 'RETAIN' not supported
// FILE-NEXT: ; =========== MACRO DEFINITIONS
// CHECK: "w.c", line [[@LINE+1]] {{.*}}warning #1127-D: definition of function "int f(void)" ignored
int f(void) {
  return 1;
}
// CHECK: "w.c", line [[@LINE+1]] {{.*}}warning #1126-D: definition of variable 'v' ignored
__attribute__((retain)) int v;
// CHECK-NEXT: status=0

// FULL: {{^}}Error: failed to write intermediate file '/dev/full': No space left on device{{$}}
// FULL-NEXT: {{^}}Error: failed to close intermediate file '/dev/full': No space left on device{{$}}
// FULL-NEXT: status=0
// DIR: Fatal error: cannot open IL output file "dir.ah": is a directory
// DIR: status=4
#ifdef BROKEN
int f;
#endif
// BROKEN: error: declaration is incompatible
// BROKEN-NOT: detected in
// BROKEN: status=2
