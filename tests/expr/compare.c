// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 0
// RUN: %FileCheck %s < %t.out
// Comparisons: pointers, and values that cannot be (C99 6.5.8, 6.5.9).
int *ip;
char *cp;
const int *cip;
void *vp;
int f(int a, unsigned u, unsigned char uc) {
  int r;
  r = ip == cp;
// CHECK: line [[@LINE-1]]: warning #43-D:
  r = ip < cp;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  r = ip == 3;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  r = ip == a;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  r = ip == 0;
  r = ip == (void *)0;
  r = ip == vp;
  r = vp > ip;
  r = ip != cip;
  r = u < 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #188-D:
  r = 0 <= u;
// CHECK-NEXT: line [[@LINE-1]]: warning #188-D:
  r = u >= 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #188-D:
  r = u > 0;
  r = u == -1;
// CHECK-NEXT: line [[@LINE-1]]: warning #516-D:
  r = -1 < u;
// CHECK-NEXT: line [[@LINE-1]]: warning #516-D:
  r = uc < 0;
  r = a < 0;
  return r;
}
