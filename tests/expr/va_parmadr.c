// RUN: %krtparse --c99 -n %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// The address of a parameter, where the variable arguments start.
int global;
int f(int a, ...) {
  int local;
  int *p = __va_parmadr(a);
  // CHECK: line [[@LINE+1]]: error: the argument of __va_parmadr must be a parameter of the current function
  p = __va_parmadr(global);
  // CHECK: line [[@LINE+1]]: error: the argument of __va_parmadr must be a parameter of the current function
  p = __va_parmadr(local);
  // CHECK: line [[@LINE+1]]: error: the argument of __va_parmadr must be a parameter of the current function
  p = __va_parmadr(a + 1);
  return *p;
}
int small(char a, ...) {
  // CHECK: line [[@LINE+1]]: error: the argument of __va_parmadr must be a parameter of the current function
  return *(int *)__va_parmadr(a);
}
// CHECK: 4 errors detected
