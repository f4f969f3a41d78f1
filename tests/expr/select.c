// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Members and subscripts (C99 6.5.2.1, 6.5.2.3).
struct s { int n, v[3]; struct { int m; } in; } s1, *sp, sa[4];
struct h *hp;
union u { int a; char b; } u1;
int arr[3], *ip, i;
void *vp;
int (*fp)(void);
struct s fs(void);
void f(void) {
  i = s1.none;
// CHECK: line [[@LINE-1]]: error #137:
  i = sp.n;
// CHECK-NEXT: line [[@LINE-1]]: error #156:
  i = s1->n;
// CHECK-NEXT: line [[@LINE-1]]: error #133:
  i = i.n;
// CHECK-NEXT: line [[@LINE-1]]: error #156:
  i = ip->n;
// CHECK-NEXT: line [[@LINE-1]]: error #133:
  i = hp->n;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = s1.;
// CHECK-NEXT: line [[@LINE-1]]: error #135:
  i = i[i];
// CHECK-NEXT: line [[@LINE-1]]: error #143:
  i = fp[0];
// CHECK-NEXT: line [[@LINE-1]]: error #143:
  i = hp[0];
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = arr[s1];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = arr[3];
  i = arr[4];
// CHECK-NEXT: line [[@LINE-1]]: warning #177-D:
  i = arr[-1];
// CHECK-NEXT: line [[@LINE-1]]: warning #177-D:
  ip = &arr[3];
  i = s1.v[1] + sp->v[2] + 2 [arr] + sa[1].in.m + (*sp).n + (&s1)->n + u1.b + fs().n + fs().v[1];
  sp++->n = (sp + 1)->v[i]++, sa->in.m = (sa + 1)[1].n;
}
