// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Function calls (C99 6.5.2.2) and the implicit declaration of functions.
struct s { int n; };
struct h;
int one(int a);
int two(int, char *);
int any(const char *, ...);
int none(void);
int old();
int defined_old(a, b) int a; char b; { return a + b; }
struct h incomplete(void);
struct s by_value(struct s);
void nothing(void);
int (*fp)(int), v;
int f(int *ip, const char *cp, struct s s1) {
  one();
// CHECK: line [[@LINE-1]]: error #167:
  one(1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #141:
  two(1, ip);
// CHECK-NEXT: line [[@LINE-1]]: warning #169-D:
  two(1, 0);
  two(1, cp);
// CHECK-NEXT: line [[@LINE-1]]: warning #169-D:
  two(ip, "x");
// CHECK-NEXT: line [[@LINE-1]]: warning #169-D:
  one(s1);
// CHECK-NEXT: line [[@LINE-1]]: error #169:
  by_value(1);
// CHECK-NEXT: line [[@LINE-1]]: error #169:
  none(1);
// CHECK-NEXT: line [[@LINE-1]]: error #141:
  any();
// CHECK-NEXT: line [[@LINE-1]]: error #167:
  any(ip);
// CHECK-NEXT: line [[@LINE-1]]: warning #169-D:
  any("x", 1, s1, ip, 'c');
  old(1, "x", s1);
  defined_old(1);
// CHECK-NEXT: line [[@LINE-1]]: warning #167-D:
  defined_old(1, 2, 3);
// CHECK-NEXT: line [[@LINE-1]]: warning #141-D:
  defined_old(ip, 'c');
// CHECK-NEXT: line [[@LINE-1]]: warning #182-D:
  incomplete();
// CHECK-NEXT: line [[@LINE-1]]: error #411:
  nothing() + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  one(nothing());
// CHECK-NEXT: line [[@LINE-1]]: error #169:
  v(1);
// CHECK-NEXT: line [[@LINE-1]]: error #110:
  (*fp)(1) + (**fp)(2) + fp(3) + (v ? one : fp)(4) + (&one)(5);
  undeclared(1);
// CHECK-NEXT: line [[@LINE-1]]: warning #225-D:
  undeclared(2, 3);
  by_value(s1).n = by_value(by_value(s1)).n;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  return by_value(s1).n;
}
