// RUN: %krtparse -n --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// The constraints of postfix operators (C99 6.5.2).
struct s { int n; int bits : 3; int arr[2]; } s1, *sp, by_value(void);
const struct s cs;
union u { int n; char c; } u1, *up;
struct hidden *hp, incomplete(void);
int arr[3], *ip, i, (*fp)(int), none(void), one(int), two(int, char *), any(int, ...);
void *vp, nothing(void);
_Bool flag;
enum e { E1 } e1;
void subscripts(void) {
  arr[1] = 1[arr] = ip[i] = (&arr[1])[-1] = "ab"[1];
  i[i];
// CHECK: line [[@LINE-1]]: error #143:
  s1[0];
// CHECK-NEXT: line [[@LINE-1]]: error #143:
  ip[s1];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  ip[ip];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  vp[0] = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  hp[0];
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  fp[0];
// CHECK-NEXT: line [[@LINE-1]]: error #143:
  arr[3] = 0;
  arr[4] = 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #177-D:
  arr[-1] = 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #177-D:
  ip[2.0];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
}
void calls(void) {
  one(1), (*fp)(1), fp(1), any(1), any(1, 2, s1), two(1, 0);
  i();
// CHECK-NEXT: line [[@LINE-1]]: error #110:
  s1();
// CHECK-NEXT: line [[@LINE-1]]: error #110:
  (&i)(1);
// CHECK-NEXT: line [[@LINE-1]]: error #110:
  one();
// CHECK-NEXT: line [[@LINE-1]]: error #167:
  one(1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #141:
  none(1);
// CHECK-NEXT: line [[@LINE-1]]: error #141:
  any();
// CHECK-NEXT: line [[@LINE-1]]: error #167:
  one(s1);
// CHECK-NEXT: line [[@LINE-1]]: error #169:
  two(ip, "x");
// CHECK-NEXT: line [[@LINE-1]]: warning #169-D:
  two(1, ip);
// CHECK-NEXT: line [[@LINE-1]]: warning #169-D:
  one(nothing());
// CHECK-NEXT: line [[@LINE-1]]: error #169:
  any(1, nothing());
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  any(1, incomplete());
// CHECK-NEXT: line [[@LINE-1]]: error #411:
  incomplete();
// CHECK-NEXT: line [[@LINE-1]]: error #411:
  undeclared(1);
// CHECK-NEXT: line [[@LINE-1]]: warning #225-D:
}
void members(void) {
  s1.n = sp->n = u1.c = up->n = by_value().arr[0];
  s1.missing = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #137:
  sp->missing = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #137:
  s1->n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #133:
  sp.n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #156:
  i.n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #156:
  ip->n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #133:
  hp->n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  vp->n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #133:
  s1.3;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: error #66:
  cs.n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  by_value().n = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  u1.;
// CHECK-NEXT: line [[@LINE-1]]: error #135:
}
void steps(void) {
  i++, ip--, e1++, flag++, s1.bits--, arr[0]++;
  3++;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  arr--;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  s1++;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  hp++;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  cs.n++;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  one++;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  (i + 1)--;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  by_value().n++;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  (*vp)++;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
}
