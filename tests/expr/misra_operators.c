// RUN: %krtparse -n --c99 --check_misra=12.3,12.4,12.5,12.7,12.9,12.10,13.3,17.4,17.6,8.1 --display_error_number %s > %t.out 2>&1; test $? -eq 0
// RUN: %FileCheck %s < %t.out
/* Operators under the rules of MISRA-C:2004. */
static int g(void);
static int *global;
int f(int a, unsigned int u, double d, int *p, int *q);
static int g(void) { return 1; }
int f(int a, unsigned int u, double d, int *p, int *q)
{
  int r = 0;
  int local[3] = {1, 2, 3};
  r = (int)sizeof(r++);
// CHECK: line [[@LINE-1]]: warning #1403-D:
  r = (a != 0) && (r++ != 0);
// CHECK-NEXT: line [[@LINE-1]]: warning #1404-D:
  r = a != 0 && (r != 0);
// CHECK-NEXT: line [[@LINE-1]]: warning #1405-D:
  r = (a != 0) && (r != 0) && r && a;
  r = (a || r) && r;
  r = a && r || r;
// CHECK-NEXT: line [[@LINE-1]]: warning #1405-D:
  r = a & 1;
// CHECK-NEXT: line [[@LINE-1]]: warning #1406-D:
  r = ~a;
// CHECK-NEXT: line [[@LINE-1]]: warning #1406-D:
  u = -u;
// CHECK-NEXT: line [[@LINE-1]]: warning #1408-D:
  r = d == 1.0;
// CHECK-NEXT: line [[@LINE-1]]: warning #1411-D:
  q = p + 1;
// CHECK-NEXT: line [[@LINE-1]]: warning #1476-D:
  p++;
// CHECK-NEXT: line [[@LINE-1]]: warning #1476-D:
  p += 2;
// CHECK-NEXT: line [[@LINE-1]]: warning #1476-D:
  r = q - p;
// CHECK-NEXT: line [[@LINE-1]]: warning #1476-D:
  global = &local[0];
// CHECK-NEXT: line [[@LINE-1]]: warning #1423-D:
  r = (a, r);
// CHECK-NEXT: line [[@LINE-1]]: warning #1500-D:
// CHECK-NEXT: line [[@LINE-2]]: warning #176-D:
  undeclared(3);
// CHECK-NEXT: line [[@LINE-1]]: warning #1384-D:
  return r + (int)u + g() + *global + *p;
}
