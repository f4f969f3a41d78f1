// RUN: %krtparse --c99 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// The constraints of declarators and type names (C99 6.7.5, 6.7.6).

struct incomplete;
struct flexible { int a; int b[]; };

// ---- Arrays (6.7.5.2) ----

// CHECK: line [[#@LINE+1]]: error #89: array of functions is not allowed
int of_functions[3](void);
// CHECK: line [[#@LINE+1]]: error #90: array of elements of type void is not allowed
void of_void[2];
// CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
struct incomplete of_incomplete[2];
// CHECK: line [[#@LINE+1]]: error #1083: type containing an unknown-size array is not allowed
int unknown_inside[2][];
int (*pointer_to_unknown)[];
// CHECK: line [[#@LINE+1]]: error #95: the size of an array must be greater than zero
int negative[-1];
int zero[0];
// CHECK: line [[#@LINE+1]]: error #96: array is too large
char huge[1u << 31][1u << 31];
// CHECK: line [[#@LINE+1]]: error #752: a type qualifier is not allowed
int qualified_bound[const 2];
// CHECK: line [[#@LINE+1]]: error #752: a type qualifier is not allowed
void inner_static(int a[2][static 3]);
// CHECK: line [[#@LINE+1]]: error #944: variable length array with unspecified bound is not allowed
int star[*];
int variable;
// CHECK: line [[#@LINE+1]]: error #1029: a variable length array is not allowed here
int variable_bound[variable];
struct variable_field {
  // CHECK: line [[#@LINE+1]]: error #1231-D: variable-length array field type will be treated as zero-length
  int a[variable];
};
// Parameters may have any bound, which only a definition asks for.
int bounds(int n, int a[n], int b[*], int c[const static 3], int d[n][n], int (*e)[*]);
int bounds(int n, int *a, int *b, int *const c, int d[n][n], int (*e)[n]);
// CHECK: line [[#@LINE+1]]: error #148: declaration is incompatible with
int bounds(int n, int **a, int *b, int *c, int d[n][n], int (*e)[n]);
int outermost(int n, const int a[n + 1]) { return a[n]; }
// CHECK: line [[#@LINE+1]]: error #944: variable length array with unspecified bound is not allowed
int star_in_definition(int a[*]) { return a != 0; }
int inner_bound(int n, int a[2][n]) { return n; }
int old_style_bound(n, a) int n; int a[n]; { return a[0]; }
// CHECK: line [[#@LINE+1]]: error #944: variable length array with unspecified bound is not allowed
int old_style_star(a) int a[*]; { return a[0]; }
// CHECK: line [[#@LINE+1]]: error #{{[0-9]+}}: a parameter is not allowed
int bound_before_declaration(a, n) int a[n]; int n; { return a[0]; }
// CHECK: line [[#@LINE+1]]: error
void bad_bound(int n, int a[n.x], int b[n]);

// ---- Functions (6.7.5.3) ----

// CHECK: line [[#@LINE+1]]: error #91: a function may not return a function
int returns_function(void)(int);
// CHECK: line [[#@LINE+1]]: error #92: a function may not return an array
int returns_array(void)[3];
int (*returns_pointer_to_array(void))[3];
typedef void VOID;
int empty(void);
int empty(VOID);
// CHECK: line [[#@LINE+1]]: warning #2770-D: declaring a void parameter list with a qualified void type
int empty(const void);
// CHECK: line [[#@LINE+1]]: error #528: a parameter may not have void type
int void_and_int(void, int);
// CHECK: line [[#@LINE+1]]: error #528: a parameter may not have void type
int named_void(void a);
// CHECK: line [[#@LINE+1]]: error #528: a parameter may not have void type
int register_void(register void);
// CHECK: line [[#@LINE+1]]: error #93: identifier-list parameters may only be used in a function definition
int names(a, b);
// CHECK: line [[#@LINE+1]]: error #93: identifier-list parameters may only be used in a function definition
int (*pointer_to_names)(a, b);
typedef int T;
// CHECK: line [[#@LINE+1]]: error #153: a typedef name may not be redeclared as a parameter
int type_in_names(a, T) int a, T; { return a; }
// CHECK: line [[#@LINE+1]]: error #873: "..." is not allowed
int ellipsis_in_names(a, ...) int a; { return a; }
// CHECK: line [[#@LINE+1]]: error #41: expected an identifier
int number_in_names(a, 3) int a; { return a; }
int only_ellipsis(...);
// CHECK: line [[#@LINE+1]]: error #18: expected a ")"
int after_ellipsis(int, ..., int);
// CHECK: line [[#@LINE+1]]: error #101: duplicate parameter name
int twice(int a, char a);
// CHECK: line [[#@LINE+1]]: error #79: a parameter declaration may not have an initializer
int initialized(int a = 1);
int T_is_a_type(T);
int T_is_a_name(int T, char c[sizeof(T)]);
int abstract(int (), int (*)(void), int (*[])(int), int *(*(*)(int))[2], T (T));
int nested_names(int (a), int (b)(int c), int *(d[3]));

// ---- Type names (6.7.6) ----

// CHECK: line [[#@LINE+1]]: error #18: expected a ")"
int named = sizeof(int a);
int sizes = sizeof(int *(*)[3]) + sizeof(int (*(*)(void))[3]) + sizeof(struct flexible[1]);
// CHECK: line [[#@LINE+1]]: error
int of_function = sizeof(int(void)[3]);
// CHECK: errors detected
