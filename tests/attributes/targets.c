// RUN: ! %krtparse --gcc --no_code_gen --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='{{error|warning}} #' < %t.err
// What each attribute may belong to.

// CHECK: line [[#@LINE+1]]: error #2104: attribute "noreturn" does not apply here
struct s1 { int a; } __attribute__((noreturn));
// CHECK: line [[#@LINE+1]]: warning #2135-D: these attributes do not apply to anything
__attribute__((aligned(8))) struct lone { int a; };
// CHECK: line [[#@LINE+1]]: error #1218: attribute "noreturn" does not apply to non-function type "int"
int v1 __attribute__((noreturn));
// CHECK: line [[#@LINE+1]]: error #2104: attribute "malloc" does not apply here
int v2 __attribute__((malloc));
// CHECK: line [[#@LINE+1]]: warning #2104-D: attribute "packed" does not apply here
int v3 __attribute__((packed));
// CHECK: line [[#@LINE+1]]: warning #2104-D: attribute "always_inline" does not apply here
typedef int t1(void) __attribute__((always_inline));
// CHECK: line [[#@LINE+1]]: error #1681: the "weak" attribute can only appear on functions and variables with external linkage
static int v4 __attribute__((weak));
int v4_user(void) { return v4; }
// CHECK: line [[#@LINE+1]]: warning #2140-D: attribute "artificial" requires a inline function
int f1(void) __attribute__((artificial));
inline int f2(void) __attribute__((artificial));

// CHECK: line [[#@LINE+3]]: error #2130: attribute "section" does not apply to automatic variables
// CHECK: line [[#@LINE+3]]: error #1188: attribute "alias" does not apply to local variables
int f3(void) {
  int a __attribute__((section(".a"))) = 0;
  static int b __attribute__((alias("f2")));
  static int c __attribute__((section(".c")));
  return a + b + c;
}

// CHECK: line [[#@LINE+1]]: error #2612: The alias attribute is not supported for variables.
extern int v5 __attribute__((alias("v4")));
// CHECK: line [[#@LINE+1]]: error #1183: the attribute transparent_union requires a union type
typedef struct { int a; } t2 __attribute__((transparent_union));
typedef union { int *a; char *b; } t3 __attribute__((transparent_union));
// CHECK: line [[#@LINE+1]]: warning #2123-D: the gnu_inline attribute is ignored on a function that is not inline
int f4(void) __attribute__((gnu_inline));
// CHECK: line [[#@LINE+1]]: warning #1491-D: the attribute "warn_unused_result" has no effect on a function that returns void
void f5(void) __attribute__((warn_unused_result));
// CHECK: line [[#@LINE+1]]: warning #3006-D: the attribute "abi_tag" is ignored in C
int f6(void) __attribute__((abi_tag("x")));
// CHECK: line [[#@LINE+1]]: error #1189: attributes are not permitted in a function definition
int f7(void) __attribute__((noinline)) { return 0; }
__attribute__((noinline)) int f8(void) { return 0; }
// CHECK: line [[#@LINE+1]]: error #2587: The cregister attribute requires near or far as the second parameter.
int v6 __attribute__((cregister("creg", middle)));
extern int v7 __attribute__((cregister("creg", near)));
extern int v8 __attribute__((section(".one")));
// CHECK: line [[#@LINE+1]]: error #657: declaration modifiers are incompatible with previous "v8"
extern int v8 __attribute__((section(".two")));
