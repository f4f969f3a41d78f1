// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s
// In the older GNU meaning the body of an `extern inline` function is there to
// be inlined, and the definition may follow.

// CHECK: begin_func replaced
// CHECK-NOT: begin_func replaced
extern inline int replaced(int a) { return a + 1; }
int before(void) { return replaced(1); }
int replaced(int a) { return a + 2; }
