// RUN: %krtparse --gcc --no_code_gen --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// RUN: %krtparse --gcc -DVALID --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --check-prefix=IF
// GNU C declares with `extern void` what has an address alone.
extern void start;
void *first = &start;
unsigned long where(void) {
  extern void end;
  return (unsigned long)&end;
}
// IF: NAME:void end
// IF: init first
// IF-NEXT: (UAND:void* (NAME:void start))
#ifndef VALID
// CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
extern void initialised = 1;
// CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
void defined;
void uses(void) {
  start;
  // CHECK: line [[#@LINE+1]]: error #138: expression must be a modifiable lvalue
  start = 1;
  // CHECK: line [[#@LINE+1]]: error #145: a value of type "void" cannot be used to initialize an entity of type "int"
  int copy = start;
}
#endif
