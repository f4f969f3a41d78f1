// RUN: %krtparse -n --strict --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,STRICT --implicit-check-not="error #" < %t.out
// RUN: %krtparse -n --gcc --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,GNU --implicit-check-not="error #" < %t.out
// Constant expressions under strict checking, and as GNU C takes them: with
// anything at all in the branches that aren't evaluated.
int v, *p, fn(void);
enum { a1 = sizeof(v++) + sizeof fn(), a2 = 1 || 2, a3 = 0 ? 1 : 2 };
enum { b1 = 1 || v };
// STRICT: line [[@LINE-1]]: error #28:
enum { b2 = 0 && v++ };
// STRICT: line [[@LINE-1]]: error #58:
enum { b3 = 1 ? 2 : v };
// STRICT: line [[@LINE-1]]: error #28:
enum { b4 = 0 ? fn() : 2 };
// STRICT: line [[@LINE-1]]: error #60:
enum { c1 = 0 || v };
// CHECK: line [[@LINE-1]]: error #28:
enum { c2 = (int *)4 };
// STRICT: line [[@LINE-1]]: error #2772: this constant expression has type "int *" instead of the required integral or enum type
// GNU: line [[@LINE-2]]: error #159:
enum { c3 = (int)(long)&v };
// STRICT: line [[@LINE-1]]: error #61:
// GNU: line [[@LINE-2]]: error #159:
int c4[(long)&v];
// STRICT: line [[@LINE-1]]: error #61:
// GNU: line [[@LINE-2]]: error #159:
struct s {
  int c5 : (long)"a";
// CHECK: line [[@LINE-1]]: error #159:
};
void f(int n) {
  switch (n) {
  case 1 || 0:
  case (long)"a":
// CHECK: line [[@LINE-1]]: error #159:
    break;
  }
}
