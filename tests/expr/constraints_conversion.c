// RUN: %krtparse -n --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Conversions of operands (C99 6.3): values of objects, decay, pointers.
int i, *ip, arr[3], fn(void);
const int ci = 3;
const int *cip;
char c;
unsigned u;
long long ll;
float f;
double d;
_Bool b;
void *vp, (*fp)(void);
struct s {
  int bits : 3;
  int a[3];
} s1, by_value(void);
struct hidden;
struct hidden *hp;
extern struct hidden h;
extern int unknown[];
enum e { E1 } e1;
// Integers, floating values and _Bool (C99 6.3.1).
void arithmetic(void) {
  b = ip, b = fp, b = d, b = 0.5, b = 2;
  i = ll, f = d, d = i, e1 = 1, i = e1, c = i;
  c = 300;
// CHECK: line [[@LINE-1]]: warning #70-D:
  u = -1;
// CHECK-NEXT: line [[@LINE-1]]: warning #69-D:
  i = 3000000000;
// CHECK-NEXT: line [[@LINE-1]]: warning #70-D:
  b = s1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  i = by_value();
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  f = ip;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
}
// The results of the integer promotions and of 6.3.1.8.
char p1[sizeof(c + c) == sizeof(int) ? 1 : -1];
char p2[sizeof(-s1.bits) == sizeof(int) ? 1 : -1];
char p3[(-1 < 0u) == 0 && (-1 < 0ll) == 1 ? 1 : -1];
// CHECK-NEXT: line [[@LINE-1]]: warning #516-D:
char p4[sizeof(u + ll) == sizeof(long long) && -1 + 0u > 0 ? 1 : -1];
// CHECK-NEXT: line [[@LINE-1]]: warning #69-D:
char p5[(unsigned char)-1 + 1 == 256 && (char)1 - 2 < 0 ? 1 : -1];
char p6[sizeof(1 ? 1 : 2.0) == sizeof(double) && sizeof(f + 1) == sizeof(float) ? 1 : -1];
char p7[(_Bool)0.5 == 1 && (_Bool)2 == 1 ? 1 : -1];
// Lvalues, arrays and functions (C99 6.3.2.1).
void objects(void) {
  h;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  *hp;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = h;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = *vp;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  ip = arr, ip = unknown, fp = (void (*)(void))fn, i = (*fn)(), i = (**fn)();
  i = sizeof unknown;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  ip = by_value().a;
  i = by_value().a[1];
  by_value().a[0] = 1;
  arr = ip;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  fn = 0;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
}
// void (C99 6.3.2.2).
void nothing(void) {
  i = nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  i = (void)0;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  (void)nothing(), (void)0, (void)s1;
  nothing() + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  b = !nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  return nothing();
}
// Pointers (C99 6.3.2.3).
void pointers(void) {
  ip = vp, vp = ip, cip = ip, ip = 0, ip = (void *)0, fp = 0, ip = 1 - 1;
  ip = cip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  vp = cip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = 3;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = ci - 3;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  i = ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = hp;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = d;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  ip = s1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  ip = ""[0];
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  d = vp;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  e1 = ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
}
