// RUN: %krtparse --no_code_gen %s
// RUN: %krtparse --display_error_number --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// RUN: test ! -e %t.if
// Floating values aren't written yet, which a file is told once.
double d;
float fl = 1.5f;
int f(double x) {
  d = x + fl;
// CHECK: line [[@LINE-1]] {{.*}}error #1816: "floating point" not allowed
// CHECK-NOT: #1816
  return d * 2;
}
