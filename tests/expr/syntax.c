// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Expressions that break off, and where the parse goes on.
int a, b, *p;
void f(void) {
  a = ;
// CHECK: line [[@LINE-1]]: error #29:
  a = b + ;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  a = (b;
// CHECK-NEXT: line [[@LINE-1]]: error #18:
  a = p[b;
// CHECK-NEXT: line [[@LINE-1]]: error #17:
  f(;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
// CHECK-NEXT: line [[@LINE-2]]: error #18:
  f(a, );
// CHECK-NEXT: line [[@LINE-1]]: error #29:
// CHECK-NEXT: line [[@LINE-2]]: error #141:
  a = b ? a;
// CHECK-NEXT: line [[@LINE-1]]: error #54:
  a = b ? : a;
  a = sizeof;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  a = sizeof(int;
// CHECK-NEXT: line [[@LINE-1]]: error #18:
  a = (int;
// CHECK-NEXT: line [[@LINE-1]]: error #18:
// CHECK-NEXT: line [[@LINE-2]]: error #29:
  a = (int);
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  a = b c;
// CHECK-NEXT: line [[@LINE-1]]: error #66:
  a = * ;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  a = int;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  a = if;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  a = "x" + b );
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
// CHECK-NEXT: line [[@LINE-2]]: error #66:
  b = 1;
}
