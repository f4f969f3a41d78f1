// RUN: %krtparse -n --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// The constraints of the conditional operator, of assignment and of the comma
// (C99 6.5.15 to 6.5.17).
struct s { int n; const int c; } s1, s2, by_value(void);
struct t { int n; } t1, t2;
struct hidden *hp;
const int ci = 1;
const int *cip;
int arr[3], *ip, **ipp, i, (*fp)(void), function(void);
char *cp;
void *vp, nothing(void);
unsigned u;
double d;
enum e { E1 } e1;
_Bool flag;
void conditional(void) {
  i = i ? d : u, ip = i ? ip : 0, vp = i ? ip : vp, cip = i ? ip : cip, t1 = i ? t1 : t2;
  i ? nothing() : nothing();
  i = s1 ? 1 : 2;
// CHECK: line [[@LINE-1]]: error #903:
  i = nothing() ? 1 : 2;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = i ? t1 : s1;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  i = i ? ip : 1;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
// CHECK-NEXT: line [[@LINE-2]]: warning #515-D:
  ip = i ? ip : cp;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  ip = i ? ip : d;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  ip = i ? ip : i;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  i ? nothing() : 1;
  vp = i ? vp : fp;
  i ? i : d = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  i = i ? 1;
// CHECK-NEXT: line [[@LINE-1]]: error #54:
}
void simple(void) {
  i = d, d = i, ip = 0, ip = vp, vp = ip, cip = ip, flag = ip, e1 = 1, t1 = t2, u = -i;
  3 = i;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  i + 1 = i;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  i++ = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  arr = 0;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  ci = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  *cip = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  s1 = s2;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  function = 0;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  by_value().n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  *hp = *hp;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  i = t1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  t1 = i;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  t1 = s1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  i = nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  ip = cip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = cp;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = i;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  i = ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = d;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  d = ip;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  fp = function, fp = vp;
  ipp = ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  i = i = 3 = 4;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  ip = ;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
}
void compound(void) {
  i += d, d *= i, i <<= u, ip += 1, ip -= i, u %= 3, flag |= 2, e1 += 1;
  i += ip;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  ip *= 2;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  ip += d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  ip -= ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  hp += 1;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  fp += 1;
  d %= 2;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  d <<= 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i &= d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i |= ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  t1 += 1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i += t1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  ci += 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  3 += i;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  arr += 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  i /= 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #40-D:
  i %= 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #181-D:
  i <<= 32;
// CHECK-NEXT: line [[@LINE-1]]: warning #64-D:
}
void comma(void) {
  i = (nothing(), i), i = (i++, d), (void)(i, i++);
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
  i, i = 1;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
  (i, i) = 1;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: error #138:
  &(i, i);
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: error #160:
}
char size[(1, 2)];
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: error #1029:
enum { E2 = (i, 1) };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
// CHECK-NEXT: line [[@LINE-2]]: error #58:
