// RUN: %krtparse --check_misra=1.1,8 --display_error_number %s > %t.out 2>&1
// RUN: %FileCheck %s < %t.out
// The rules on declarations.

// CHECK: line [[#@LINE+1]]: warning #1376-D: (MISRA-C:2004 1.1/R)
static int internal;
// CHECK: line [[#@LINE+1]]: warning #1388-D: (MISRA-C:2004 8.11/R)
extern int internal;
static int internal_function(void);
// CHECK: line [[#@LINE+1]]: warning #1388-D: (MISRA-C:2004 8.11/R)
int internal_function(void) { return internal; }
// CHECK: line [[#@LINE+1]]: warning #1383-D: (MISRA-C:2004 8.1/R)
int without_prototype() {
  // CHECK: line [[#@LINE+1]]: warning #1386-D: (MISRA-C:2004 8.6/R)
  extern int in_block(void);
  return internal_function() + in_block();
}
// CHECK: line [[#@LINE+1]]: warning #1387-D: (MISRA-C:2004 8.7/R) {{.*}}"elsewhere"
extern int elsewhere;
