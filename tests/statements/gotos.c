// RUN: %krtparse -n --gcc --no_warnings --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// RUN: %krtparse --gcc --no_warnings --display_error_number --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,CODE --implicit-check-not='error #' < %t.out
// Gotos whose target is a value are parsed, but no code is made of them.

int computed(int n) {
  // CODE: line [[#@LINE+2]]: error #1489: address of a label not supported
  // CODE-NEXT: error #1489: address of a label
  static void *const table[] = {&&first, &&second};
  // CHECK: line [[#@LINE+1]]: error #1489: GCC-style assigned goto not supported
  goto *table[n];
first:
  return 1;
second:
  return 2;
}
