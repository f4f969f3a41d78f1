// Pragmas of the whole unit with wrong operands.
// RUN: %krtparse --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err
// RUN: %krtparse --display_error_number --check_misra=none --advice:power=all -DCHECKS %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=RULES %s < %t.err

// CHECK-DAG: line [[#@LINE+1]]: error #126: expected a "("
#pragma SET_DATA_SECTION
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma SET_CODE_SECTION(1)
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma SET_CODE_SECTION(".a", 1)
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma SET_DATA_SECTION(L".a")
// CHECK-DAG: line [[#@LINE+1]]: error #14-D: extra text
#pragma SET_CODE_SECTION() now
// CHECK-DAG: line [[#@LINE+1]]: error #14-D: extra text
#pragma ALWAYS_INLINE now
// CHECK-DAG: line [[#@LINE+1]]: error #41: expected an identifier
#pragma redefine_extname old
// CHECK-DAG: line [[#@LINE+1]]: error #41: expected an identifier
#pragma redefine_extname 1 2
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma NRG_PORT_CONFIG
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma NRG_PORT_CONFIG(L)
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma NRG_PORT_CONFIG(23)
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma NRG_PORT_CONFIG(1, IN = {1, 8})
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma NRG_PORT_CONFIG(1, OUT = {1})
// CHECK-DAG: line [[#@LINE+1]]: error #2977: unmatched parentheses
#pragma GCC target(("a"))
// CHECK-DAG: line [[#@LINE+1]]: error #2977: unmatched parentheses
#pragma GCC target("a"
// CHECK-DAG: line [[#@LINE+1]]: error #1092: expected a string literal
#pragma GCC target(a)
// CHECK-DAG: line [[#@LINE+1]]: error #2976: must be a narrow string literal
#pragma GCC target(L"a")
// CHECK-DAG: line [[#@LINE+1]]: error #1288: this pragma cannot be used in a _Pragma operator
_Pragma("hdrstop") int x;
// CHECK-DAG: line [[#@LINE+1]]: error #1327: this pragma cannot be used in a __pragma operator
__pragma(no_pch) int y;
// An operator is a line, and has an end too.
// CHECK-DAG: line [[#@LINE+1]]: error #14-D: extra text
_Pragma("push_macro(\"M\") extra") int z;
// CHECK-DAG: line [[#@LINE+1]]: error #14: extra text
__pragma(redefine_extname old new newer) int w;
#ifdef CHECKS
// RULES: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma CHECK_MISRA("1.1"
// RULES: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma CHECK_MISRA(1)
// RULES: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma RESET_MISRA("-4")
// RULES: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma CHECK_NRG("x")
// RULES: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma RESET_NRG
#pragma CHECK_MISRA("8.6")
// RULES: line [[#@LINE+1]]: {{.*}}8.6
void in_block(void) { int checked(void); }
#pragma RESET_MISRA("8.6")
// RULES-NOT: line [[#@LINE+1]]:
void in_other_block(void) { int unchecked(void); }
#endif
int f(void) {
// CHECK-DAG: line [[#@LINE+1]]: error #2979: this pragma is not allowed inside a function
#pragma GCC target("a")
  return 0;
}
// CHECK-DAG: line [[#@LINE+1]]: warning #609-D: this pragma must immediately precede a declaration
#pragma __printf_args
