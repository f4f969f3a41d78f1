// Arrays of variable length where they can't be, and jumps past them.
// RUN: %krtparse --c99 --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out

int n;
// CHECK: line [[#@LINE+1]]: error: a variable length array is not allowed here
int file_scope[n];
// CHECK: line [[#@LINE+1]]: error: variable-length array field type will be treated as zero-length array field type
struct s { int field[n]; };
// CHECK: line [[#@LINE+1]]: error: a field may not have a variable length array type
void in_bound(int m, int a[sizeof(struct { int x[m]; })]) {}
// CHECK: line [[#@LINE+1]]: error: variable length array with unspecified bound is not allowed
void star_in_bound(int a[sizeof(int[*])]) {}
void prototype(int a[*], int b[n][*]);
// CHECK: line [[#@LINE+1]]: error: variable length array with unspecified bound is not allowed
void star(int a[*]) {}
void errors(int m) {
// CHECK: line [[#@LINE+1]]: error: a variable length array must have automatic storage duration
  static int fixed[m];
// CHECK: line [[#@LINE+1]]: error: a variable length array must have automatic storage duration
  extern int outer[m];
// CHECK: line [[#@LINE+1]]: error: a variable length array is not allowed here
  extern int (*linked)[m];
  static int (*kept)[m];
// CHECK: line [[#@LINE+1]]: error: variable "set" may not be initialized
  int set[m] = {1};
// CHECK: line [[#@LINE+1]]: error: the size of an array must be greater than zero
  int negative[-1];
// CHECK: line [[#@LINE+1]]: error: array is too large
  int huge[0x7fffffff][0x7fffffff];
  struct t { int (*member)[m]; };
  double d = 1;
// CHECK: line [[#@LINE+1]]: error: expression must have integral or enum type
  int floating[d];
// CHECK: line [[#@LINE+1]]: error: a compound literal may not have type "int [*]"
  (int[m]){1};
// CHECK: line [[#@LINE+1]]: error: a variable-length array is not allowed inside of a statement expression
  ({ int inner[m]; inner[0] = 1; });
// CHECK: line [[#@LINE+1]]: error: transfer of control bypasses initialization of:
  goto in;
  int past[m];
in:;
  switch (m) {
    int cases[m];
// CHECK: line [[#@LINE+1]]: error: transfer of control bypasses initialization of:
  case 1:;
  }
  kept = 0;
  d = sizeof(struct s) + sizeof(void (*)(int k, int (*)[k]));
}
