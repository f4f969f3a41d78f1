// Programs that must do without a floating-point format.
// RUN: %krtparse --display_error_number --float_operations_allowed=none --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,SINGLE,DOUBLE < %t.out
// RUN: %krtparse --display_error_number --float_operations_allowed=32 --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,DOUBLE < %t.out
// RUN: %krtparse --display_error_number --float_operations_allowed=3 --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,SINGLE < %t.out
// RUN: %krtparse --float_operations_allowed=1 --i_output_file=%t.if %s
float f1, f2;
double d1, d2;
int i;
float single(void) { return f1; }
// SINGLE: line [[@LINE-1]] (col. 7): error #1558-D: {{(32-bit )?}}floating-point operations are not allowed
void by_double(long double d) {}
// DOUBLE: line [[@LINE-1]] (col. 6): error #1558-D: {{(64-bit )?}}floating-point
void calculate(void) {
  f1 = f2;
  d1 = d2;
  f1 += f2;
// SINGLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  d1 = -d2;
// DOUBLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  i = f1;
// SINGLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  d1 = i;
// DOUBLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  i = d1 < d2;
// DOUBLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  single();
// SINGLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  by_double(d1);
// DOUBLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  float local = f1;
// SINGLE-NEXT: line [[@LINE-1]] {{.*}}error #1558
  i = i + 1;
  f1 = d1;
// CHECK: line [[@LINE-1]] {{.*}}error #1558
// CHECK-NEXT: errors detected
}
