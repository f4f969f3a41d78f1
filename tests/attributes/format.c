// RUN: ! %krtparse --gcc --no_code_gen --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='{{error|warning}} #' < %t.err
// The parameters that the attributes of format strings name.

int good(int, const char *, ...) __attribute__((format(printf, 2, 3)));
int gather(const char *, char *) __attribute__((__format__(__scanf__, 1, 0)));
int (*pointer)(const char *, ...) __attribute__((format(gnu_printf, 1, 2)));
typedef int a_function(const char *, ...) __attribute__((format(printf, 1, 2)));
const char *translate(const char *) __attribute__((format_arg(1)));
int unprototyped() __attribute__((format(printf, 1, 2)));

// CHECK: line [[#@LINE+1]]: error #1213: the format string argument does not exist
int b1(const char *, ...) __attribute__((format(printf, 3, 2)));
// CHECK: line [[#@LINE+1]]: error #1214: the format argument is not a string
int b2(int, const char *, ...) __attribute__((format(printf, 1, 3)));
// CHECK: line [[#@LINE+1]]: error #1211: a function with the attribute "format" must have a variable argument list
int b3(const char *, int) __attribute__((format(printf, 1, 2)));
// CHECK: line [[#@LINE+1]]: error #1212: the first argument to be checked is not the first variable argument
int b4(const char *, int, ...) __attribute__((format(printf, 1, 2)));
// CHECK: line [[#@LINE+1]]: error #1293: unrecognized kind of format function: "prnt"
int b5(const char *, ...) __attribute__((format(prnt, 1, 2)));
// CHECK: line [[#@LINE+1]]: error #1218: attribute "format" does not apply to non-function type "int"
int b6 __attribute__((format(printf, 1, 2)));
// CHECK: line [[#@LINE+1]]: error #1214: the format argument is not a string
const char *b7(int) __attribute__((format_arg(1)));
