// RUN: %krtparse -n --gcc --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// RUN: %krtparse -n --no_gcc --c99 --display_error_number %s > %t.plain 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=PLAIN %s < %t.plain
// Casts to unions are of GNU C, and want a member of just the operand's type.
union u { int i; double d; struct s { int a; } *p; };
typedef union { int *i; char *c; } any __attribute__((transparent_union));
union incomplete;
void take(any argument);
// CHECK-NOT: : error
void f(int i, double d, struct s *p) {
  // PLAIN: line [[#@LINE+1]]: error #120
  union u a = (union u)i, b = (union u)d, c = (union u)p;
  a = (union u)b;
  // CHECK: line [[#@LINE+1]]: error
  a = (union u)1.0f;
  // CHECK: line [[#@LINE+1]]: error
  a = (union u)"text";
  // CHECK: line [[#@LINE+1]]: error
  (union incomplete)i;
  // CHECK-NOT: : error
  take(0);
  // CHECK: line [[#@LINE+1]]: error
  take(&d);
  // CHECK: line [[#@LINE+1]]: error
  take(p);
  // CHECK: line [[#@LINE+1]]: error
  take(1);
}
