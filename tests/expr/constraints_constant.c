// RUN: %krtparse -n --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// The constraints of constant expressions (C99 6.6), and what they may hold.
int v, *p, arr[4], fn(void);
const int ci = 5;
struct s {
  int a, b[3];
} s1;
enum { K = 3 };
enum {
  g1 = K + 1,
  g2 = sizeof(v++) + sizeof(fn()),
  g3 = 'a',
  g4 = (int)2.5,
  g5 = 1 ? 2 : v,
  g6 = 0 && fn(),
  g7 = 1 || v++,
  g8 = 0 ? v = 1 : 2,
  g9 = sizeof(struct s) + sizeof v
};
enum { b1 = fn() };
// CHECK: line [[@LINE-1]]: error #60:
enum { b2 = v++ };
// CHECK-NEXT: line [[@LINE-1]]: error #58:
enum { b3 = v = 3 };
// CHECK-NEXT: line [[@LINE-1]]: error #58:
enum { b4 = v += 1 };
// CHECK-NEXT: line [[@LINE-1]]: error #58:
enum { b5 = *p };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { b6 = arr[1] };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { b7 = s1.a };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { b8 = (&s1)->a };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { b9 = &v };
// CHECK-NEXT: line [[@LINE-1]]: error #159:
enum { c1 = 1.5 };
// CHECK-NEXT: line [[@LINE-1]]: error #901:
enum { c2 = "abc" };
// CHECK-NEXT: line [[@LINE-1]]: error #159:
enum { c3 = 1 / 0 };
// CHECK-NEXT: line [[@LINE-1]]: error #40:
enum { c4 = 1 % 0 };
// CHECK-NEXT: line [[@LINE-1]]: error #181:
enum { c5 = -v };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { c6 = v ? 1 : 2 };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { c7 = (int)&v };
// CHECK-NEXT: line [[@LINE-1]]: error #159:
enum { c8 = 1 ? v : 2 };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { c9 = fn };
// CHECK-NEXT: line [[@LINE-1]]: error #159:
enum { d1 = 1.5 < 2 };
// CHECK-NEXT: line [[@LINE-1]]: error #901:
enum { d2 = s1 };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { d3 = 0 || v };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { d4 = (int)(1.5 + v) };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
enum { d5 = undeclared };
// CHECK-NEXT: line [[@LINE-1]]: error #20:
enum { d6 = };
// CHECK-NEXT: line [[@LINE-1]]: error #29:
struct bits {
  int w : K;
  int x : v;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
  int y : 1.0;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
};
int f(int n) {
  switch (n) {
  case 1:
  case K + 2:
  case (int)7.5:
  case n:
// CHECK-NEXT: line [[@LINE-1]]: error #28:
  case fn():
// CHECK-NEXT: line [[@LINE-1]]: error #60:
  case 2.5:
// CHECK-NEXT: line [[@LINE-1]]: error #901:
    break;
  }
  return 0;
}
// Address constants and arithmetic constants, of objects of static duration.
int *a1 = &v, *a2 = arr + 2, *a3 = &arr[3], *a4 = &s1.b[1], *a5 = 0, *a6 = (int *)16;
int *a7 = &*&v, *a8 = &1 [arr];
int (*a9)(void) = fn, (*aa)(void) = &fn;
char *ab = "abc" + 1;
double ac = 1.5 * 2 + K, ad = -1;
int ae = 2.5;
int *e1 = p;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
int e2 = v;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
int e3 = fn();
// CHECK-NEXT: line [[@LINE-1]]: error #28:
int *e4 = &arr[v];
// CHECK-NEXT: line [[@LINE-1]]: error #28:
int e5 = v++;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
int e6 = *&v;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
int e7 = s1.a;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
struct s e8 = s1;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
double e9 = v + 1.5;
// CHECK-NEXT: line [[@LINE-1]]: error #28:
