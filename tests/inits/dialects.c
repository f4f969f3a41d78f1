// RUN: %krtparse -n --display_error_number --diag_suppress=179 %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=GNU < %t.err
// RUN: %krtparse -n --strict --display_error_number --diag_suppress=179 %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=STRICT < %t.err
// RUN: %krtparse -n --strict --c99 --display_error_number --diag_suppress=179 %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=C99 < %t.err
// What the dialects of C differ in.

int f(void);
struct pair { int x, y; } pair;
int scalar = {1};
// GNU: line [[#@LINE+3]]: error #147: too many initializer values
// STRICT: line [[#@LINE+2]]: error #147:
// C99: line [[#@LINE+1]]: error #147:
int two = {1, 2};
// GNU: line [[#@LINE+3]]: warning #1238-D: excess initializers are ignored
// STRICT: line [[#@LINE+2]]: error #147: too many initializer values
// C99: line [[#@LINE+1]]: error #147:
struct pair excess = {1, 2, 3};
// GNU: line [[#@LINE+3]]: error #522: initialization with "{...}" expected for aggregate object
// STRICT: line [[#@LINE+2]]: error #522:
// C99: line [[#@LINE+1]]: error #145: a value of type "int" cannot be used to initialize an entity of type "int [2]"
int array[2] = 1;
// STRICT: line [[#@LINE+2]]: error #29-D: expected an expression
// C99: line [[#@LINE+1]]: error #29-D:
struct pair empty = {};
// GNU: line [[#@LINE+3]]: error #705: expected an "="
// STRICT: line [[#@LINE+2]]: error #705:
// C99: line [[#@LINE+1]]: error #705:
int no_equals {1};
// GNU: line [[#@LINE+3]]: error #28: expression must have a constant value
// STRICT: line [[#@LINE+2]]: error #28:
// C99: line [[#@LINE+1]]: error #28:
static int run_time = f();

void g(int n) {
  // Only constants stand between the braces of strict C89.
  // STRICT: line [[#@LINE+1]]: error #28: expression must have a constant value
  int values[2] = {f(), 1};
  // STRICT: line [[#@LINE+1]]: error #28:
  struct pair members = {0, n};
  struct pair whole = pair;
  int one = {n};
  // GNU: line [[#@LINE+3]]: error #28:
  // STRICT: line [[#@LINE+2]]: error #28:
  // C99: line [[#@LINE+1]]: error #28:
  static int kept = n;
  // GNU: line [[#@LINE+3]]: error #146: variable "outside" may not be initialized
  // STRICT: line [[#@LINE+2]]: error #146:
  // C99: line [[#@LINE+1]]: error #146:
  extern int outside = 1;
}
int once = 1;
// GNU: line [[#@LINE+3]]: error #150: variable "once" has already been initialized
// STRICT: line [[#@LINE+2]]: error #150:
// C99: line [[#@LINE+1]]: error #150:
int once = 2;
int faulty = f;
int faulty = 1;
// GNU-NOT: #150
// GNU: line [[#@LINE+3]]: error #79: a parameter declaration may not have an initializer
// STRICT: line [[#@LINE+2]]: error #79:
// C99: line [[#@LINE+1]]: error #79:
int old(a) int a = 1; { return a; }
