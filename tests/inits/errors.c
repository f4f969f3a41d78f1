// RUN: %krtparse --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// The constraints of initialisers; each is reported once.

int f(void);
struct point { int x, y; };

// CHECK: line [[#@LINE+1]]: error #147: too many initializer values
int too_many[2] = {1, 2, 3, 4};
// CHECK: line [[#@LINE+1]]: error #147: too many initializer values
int scalar = {1, 2};
// CHECK: line [[#@LINE+1]]: error #147: too many initializer values
int beyond[2] = {[2] = 1};
// CHECK: line [[#@LINE+1]]: error #28: expression must have a constant value
static int not_constant = f();
// CHECK: line [[#@LINE+1]]: error #28: expression must have a constant value
struct point element_not_constant = {1, f()};
// CHECK: line [[#@LINE+1]]: error #522: initialization with "{...}" expected for aggregate object
struct point from_int = 1;
// CHECK: line [[#@LINE+1]]: error #522: initialization with "{...}" expected for aggregate object
int array_from_int[2] = 1;
// CHECK: line [[#@LINE+1]]: error #137: struct "point" has no field "z"
struct point no_field = {.z = 1};
// CHECK: line [[#@LINE+1]]: error #1099
int field_of_array[2] = {.x = 1};
// CHECK: line [[#@LINE+1]]: error #1099
struct point index_of_struct = {[0] = 1};
// CHECK: line [[#@LINE+1]]: error #1625: an empty initializer is invalid for an array with unspecified bound
int no_bound[] = {};
// CHECK: line [[#@LINE+1]]: warning #2097-D: string literal too long -- excess characters ignored
char short_text[2] = "abc";
struct unknown;
// CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
struct unknown incomplete = {1};
typedef int T;
// CHECK: line [[#@LINE+1]]: error #146: type "U" may not be initialized
typedef int U = 1;
void silent_behind_error(void) {
  // CHECK: line [[#@LINE+1]]: error #20: identifier "unknown_name" is undefined
  int elements[] = {1, unknown_name}, others[] = {unknown_name};
  elements[0] = 3;
  // CHECK-NOT: variable "elements"
  // CHECK-NOT: variable "others"
}
// CHECK: line [[#@LINE+1]]: error #146: function "initialized" may not be initialized
int initialized(void) = {1, 2};
// CHECK: line [[#@LINE+1]]: error #29: expected an expression
int nothing = ;
// CHECK-NOT: line {{.*}}: error
int still_parsed = sizeof(no_bound) + sizeof(too_many);
