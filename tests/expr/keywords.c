// RUN: %krtparse -n --c99 --diag_suppress=179,552,1494 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Values and questions that keywords name.
int global, array[3];
struct s { int a, b; };
int f(int n, ...) {
  int x = __va_argref(int) + __va_argcsu(struct s) + __va_argcsu(int *);
  int *p = __builtin_addressof(x);
  double d = __NAN__, e = __INFINITY__;
  p = __builtin_addressof(3);
// CHECK: line [[@LINE-1]]: error #160:
  p = __builtin_addressof(x, x);
// CHECK-NEXT: line [[@LINE-1]]: error #18:
  x = __real n + __imag n;
// CHECK-NEXT: line [[@LINE-1]]: warning #1717-D:
// CHECK-NEXT: line [[@LINE-2]]: warning #1717-D:
  x = __real &n;
// CHECK-NEXT: line [[@LINE-1]]: error #1716:
  x = __intaddr__(n);
// CHECK-NEXT: line [[@LINE-1]]: error #28:
  x = __intaddr__(1.5);
// CHECK-NEXT: line [[@LINE-1]]: error #28:
  x = __builtin_offsetof(struct s, missing);
// CHECK-NEXT: line [[@LINE-1]]: error #137:
  x = __builtin_offsetof(int, a);
// CHECK-NEXT: line [[@LINE-1]]: error #1697:
  x = __builtin_offsetof(struct t, a);
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  x = __builtin_offsetof(struct s);
// CHECK-NEXT: line [[@LINE-1]]: error #255:
  x = __builtin_types_compatible_p(int);
// CHECK-NEXT: line [[@LINE-1]]: error #255:
  x = __func__[0] + (d == e);
  return x + *p;
}
char passed[!__va_argref(struct s) && __va_argcsu(struct s) && !__va_argcsu(int) ? 1 : -1];
char offset[__intaddr__(((struct s *)0)->b) == 4 && __builtin_offsetof(struct s, b) == 4 ? 1 : -1];
char nan[sizeof __NAN__ == sizeof(float) && sizeof __INFINITY__ == sizeof(float) ? 1 : -1];
char same[__builtin_types_compatible_p(const int, int) && !__builtin_types_compatible_p(int, long) &&
                  __builtin_types_compatible_p(int[], int[3]) ? 1 : -1];
char literals[sizeof(int[]){1, 2, 3} == 12 && sizeof(struct s){1}.b == 4 ? 1 : -1];
