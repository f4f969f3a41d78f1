// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Floating point is refused, once an expression, where a value is needed.
double d, fd(float, double);
float fl;
struct s { double d; } s1, s2;
int i, *ip;
char size[sizeof(d + 1.5f) == 8 && sizeof(fl) == 4 && sizeof(float) == 4 ? 1 : -1];
void f(void) {
  i = d;
// CHECK: line [[@LINE-1]]: error #1816:
  d = i;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  i = 1.5 + 2.5 * d;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  d++;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  d += 1;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  i = (int)1.5;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  i = (float)i;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  i = -d;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  if (d)
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
    i = fd(1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
  s1 = s2;
  ip = (int *)&d;
  double local = 1.0;
// CHECK-NEXT: line [[@LINE-1]]: error #1816:
// CHECK-NEXT: line [[@LINE-2]]: warning #179-D:
}
