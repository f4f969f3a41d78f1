// RUN: %krtparse --no_code_gen --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// RUN: %krtparse --no_code_gen --strict --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,STRICT < %t.out
// Cast operators (C99 6.5.4).
struct s { int n; } s1, s2;
union u { int n; double d; } u1;
int i, *ip, array[3];
char c;
double d;
void (*fp)();
const int *cip;
void good(void) {
  (void)s1;
  (void)array;
  ip = (int *)cip;
  ip = (int *)array;
  ip = (int *)(void *)fp;
  fp = (void (*)())ip;
  i = (int)(char)(unsigned)d;
  d = (double)(float)i;
  c = (char)300;
  ip = (int *)0;
  ip = (int *)(long)i;
  (void)(void)0;
}
void bad(void) {
  s2 = (struct s)s1;
// STRICT: line [[@LINE-1]]: error #120:
  u1 = (union u)i;
// STRICT-NEXT: line [[@LINE-1]]: error #120:
  s2 = (struct s)1;
// CHECK: line [[@LINE-1]]: error #120:
  ip = (int[3])array;
// CHECK-NEXT: line [[@LINE-1]]: error #120:
  fp = (void())fp;
// CHECK-NEXT: line [[@LINE-1]]: error #120:
  i = (struct unknown)1;
// CHECK-NEXT: line [[@LINE-1]]: error #120:
  i = (int)s1;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  ip = (int *)s1;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  d = (double)ip;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  ip = (int *)d;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  i = (int)(void)0;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  c = (char)ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #770-D:
  (int)i = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  ip = &(int)i;
// CHECK-NEXT: line [[@LINE-1]]: error #160:
}
// Any constant may be cast to an integer where checking isn't strict, a
// floating literal alone where it is.
enum { a1 = (int)2.5, a2 = (char)300 == 44 };
int b1[(int)2.5 == 2 ? 1 : -1];
enum { a3 = (int)(1.5 + 2.5) };
// STRICT: line [[@LINE-1]]: error #901:
enum { a4 = (int)(i + 1) };
// CHECK: line [[@LINE-1]]: error #28:
enum { a5 = (int)i };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
struct { int bits : (int)s1; } bits;
// CHECK-NEXT: line [[@LINE-1]]: error #{{28|173}}:
