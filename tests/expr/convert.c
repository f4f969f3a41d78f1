// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Conversions as if by assignment (C99 6.5.16.1), and casts (C99 6.5.4).
struct s { int n; } s1;
struct t { int n; } t1;
enum e { E1 } e1;
enum d { D1 } d1;
int *ip, i;
const int *cip;
unsigned *up;
char *cp;
void *vp;
int (*fp)(void);
signed char sc;
unsigned char uc;
unsigned u;
void f(void) {
  ip = cp;
// CHECK: line [[@LINE-1]]: warning #515-D:
  ip = up;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = cip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  cip = ip;
  ip = vp;
  vp = cip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = 5;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = i;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  i = ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  ip = 0;
  vp = fp;
  s1 = t1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  i = s1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  s1 = 0;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  e1 = 3;
  e1 = d1;
// CHECK-NEXT: line [[@LINE-1]]: warning #190-D:
  sc = 200;
// CHECK-NEXT: line [[@LINE-1]]: warning #70-D:
  uc = -1;
// CHECK-NEXT: line [[@LINE-1]]: warning #69-D:
  uc = 256;
// CHECK-NEXT: line [[@LINE-1]]: warning #70-D:
  u = -1;
// CHECK-NEXT: line [[@LINE-1]]: warning #69-D:
  i = 3000000000u;
// CHECK-NEXT: line [[@LINE-1]]: warning #69-D:
  i = (int)3000000000u, sc = (signed char)200;
  i = (int)s1;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  i = ((struct s)t1).n;
// CHECK-NEXT: line [[@LINE-1]]: error #120:
  ip = (int *)cip, i = (int)ip, ip = (int *)i, vp = (void *)fp, (void)s1, (void)f;
  sc = (char)ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #770-D:
  i = (int[2])ip;
// CHECK-NEXT: line [[@LINE-1]]: error #120:
  fp = (int(void))ip;
// CHECK-NEXT: line [[@LINE-1]]: error #120:
}
int *g(int a) {
  int local[2];
  if (a)
    return local;
// CHECK-NEXT: line [[@LINE-1]]: warning #1132-D:
  if (a > 1)
    return &a;
// CHECK-NEXT: line [[@LINE-1]]: warning #1132-D:
  return "x";
// CHECK-NEXT: line [[@LINE-1]]: warning #121-D:
}
