// RUN: %krtparse --c99 --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// The declaration of a for statement declares objects of automatic storage
// (C99 6.8.5).

int loops(void) {
  for (register int i = 0; i < 3; i++)
    ;
  for (struct pair { int a, b; } p = {0, 3}; p.a < p.b; p.a++) {
    int p = 1; // the body is a scope of its own
    p++;
  }
  // CHECK: line [[#@LINE+1]]: error #1220: storage class must be auto or register
  for (int f(void); ;)
    break;
  // CHECK: line [[#@LINE+1]]: error #1220: storage class must be auto or register
  for (int i = 0, g(void); i < g();)
    break;
  // CHECK: line [[#@LINE+1]]: error #1220: storage class must be auto or register
  for (static int i = 0; i < 3; i++)
    ;
  // CHECK: line [[#@LINE+1]]: error #1220: storage class must be auto or register
  for (extern int f(void); ;)
    return 1;
}
// CHECK: 4 errors detected
