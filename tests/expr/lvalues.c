// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Lvalues and what may be done to them (C99 6.3.2.1, 6.5.2.4, 6.5.3.2, 6.5.16).
struct b { int f : 3; int n; } bb;
struct k { const int c; } k1, k2;
const int ci = 1;
int arr[4], *ip;
struct hidden *sp;
void *vp;
struct b fb(void);
void f(int a) {
  register int ri;
  3 = a;
// CHECK: line [[@LINE-1]]: error #138:
  a + 1 = a;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  a++ = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  (a, a) = 1;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: error #138:
  (int)a = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  ci = 2;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  ci++;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  arr = 0;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  k1 = k2;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  bb = bb;
  fb() = bb;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  fb().n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  &3;
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &fb();
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &bb.f;
// CHECK-NEXT: line [[@LINE-1]]: error #140:
  ip = &ri;
// CHECK-NEXT: line [[@LINE-1]]: warning #139-D:
  *a;
// CHECK-NEXT: line [[@LINE-1]]: error #76:
  bb++;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  sp++;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  *sp = *sp;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  (a) = (*ip) = arr[1] = ip[1] = bb.f = (&bb)->n = 1;
  ip = &*ip, ip = &arr[2], ip = &bb.n, ip = &*&a;
}
