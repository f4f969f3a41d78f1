// Pragmas of statements with wrong operands and at wrong places.
// RUN: %krtparse --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err
// RUN: %krtparse --c++ -n --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err

// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma UNROLL(2)
int n;
void g(void);
// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma noinline
void f(int a) {
// CHECK-DAG: line [[#@LINE+1]]: error #857: UNROLL pragma must have one parameter
#pragma UNROLL()
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #857: UNROLL pragma must have one parameter
#pragma UNROLL(1, 2)
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #28: expression must have a constant value
#pragma UNROLL(n)
  while (n) --n;
// CHECK-DAG: line [[#@LINE+2]]: error #860: UNROLL parameter must be greater than zero
#pragma UNROLL(0)
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #1453: integer is out of allowable range for parameter
#pragma UNROLL(0x80000000)
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #859: MUST_ITERATE pragma must have 1, 2, or 3 parameters
#pragma MUST_ITERATE(1, 2, 3, 4)
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #859: MUST_ITERATE pragma must have 1, 2, or 3 parameters
#pragma MUST_ITERATE 1
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #856: parameter min cannot be > max in MUST_ITERATE pragma
#pragma MUST_ITERATE(10, 5)
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #858: PROB_ITERATE pragma must have 1 or 2 parameters
#pragma PROB_ITERATE(1, 2, 3)
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #29: expected an expression
#pragma MUST_ITERATE(1, 2, , )
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #857: NO_ALIAS_CLONE pragma must have one parameter
#pragma NO_ALIAS_CLONE
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #14: extra text after expected end of preprocessing directive
#pragma LOOP_NO_ALIAS 1
  while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma forceinline, verify format
#pragma forceinline always
  g();
// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma NOINLINE, verify format
#pragma NOINLINE recursive
  g();

// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma FORCEINLINE, verify format
#pragma FORCEINLINE("recursive")
  g();
// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma FORCEINLINE_RECURSIVE, verify format
#pragma FORCEINLINE_RECURSIVE(recursive)
  g();

  // What is no loop.
// CHECK-DAG: line [[#@LINE+2]]: error #855: COALESCE_LOOP pragma must immediately precede for/while/do-while
// CHECK-DAG: line [[#@LINE+2]]: error #855: NO_COALESCE_LOOP pragma must immediately precede for/while/do-while
#pragma COALESCE_LOOP
#pragma NO_COALESCE_LOOP
  g();
// CHECK-DAG: line [[#@LINE+1]]: error #855: pragma UNROLL must immediately precede for/while/do-while
#pragma UNROLL(2)
  { n = 1; }
// CHECK-DAG: line [[#@LINE+1]]: error #855: MUST_ITERATE pragma must immediately precede for/while/do-while
#pragma MUST_ITERATE(2)
  if (n) {
    n = 1;
  } else
// CHECK-DAG: line [[#@LINE+1]]: error #855: PARALLEL_LOOP pragma must immediately precede for/while/do-while
#pragma PARALLEL_LOOP
    n = 2;
// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma MMA_LOOP
  int local = n;
// CHECK-DAG: line [[#@LINE+1]]: error #612: this kind of pragma may not be used here
#pragma UNROLL(2)
  asm(" nop");

  // No statement follows.
  n = local +
// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma UNROLL(2)
      a;
  while (
// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma UNROLL(2)
      n) --n;
// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma UNROLL(2)
}
struct s {
  int member;
// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma UNROLL(2)
};
// CHECK-DAG: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma UNROLL(2)
