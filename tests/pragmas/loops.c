// Pragmas in front of statements, and what each leaves in the file.
// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --no_loop_pragmas --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck --check-prefix=NO-LOOP %s
// NO-LOOP-NOT: {{UNROLL|_ITERATE|CLONE}}
// RUN: %krtparse --no_iterate_pragmas --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck --check-prefix=NO-ITERATE %s
// NO-ITERATE-NOT: _ITERATE
// NO-ITERATE: UNROLL
// NO-ITERATE-NOT: _ITERATE

int n;
void g(void);
#define COUNT 3
void f(int a) {
// CHECK: SRC_LOOP "{{.*}}:[[#@LINE+9]]"
// CHECK-NEXT: pragma UNROLL "3"
// CHECK-NEXT: pragma MUST_ITERATE "1" "18446744073709551615" "4"
// CHECK-NEXT: pragma LOOP_NO_ALIAS
// CHECK-NEXT: pragma PARALLEL_LOOP
#pragma UNROLL(COUNT)
#pragma MUST_ITERATE(1,,4)
#pragma LOOP_NO_ALIAS
#pragma PARALLEL_LOOP
  for (n = 0; n < a; n++)
// CHECK: SRC_LOOP
// CHECK-NEXT: pragma MUST_ITERATE "0" "18446744073709551615" "1"
// CHECK-NEXT: pragma PROB_ITERATE "0" "8"
// CHECK-NEXT: pragma NO_ALIAS_CLONE{{$}}
#pragma MUST_ITERATE()
    _Pragma("PROB_ITERATE(,8)")
#pragma NO_ALIAS_CLONE()
    while (a > n)
      --a;
  if (n)
    g();
  else
// CHECK: SRC_LOOP
// CHECK-NEXT: pragma MMA_LOOP
// CHECK-NEXT: pragma MUST_ITERATE "0" "18446744073709551615" "4"
#pragma MMA_LOOP
#pragma MUST_ITERATE(,,4)
    do --n; while (n > 0);
again:
// Behind a label or a case too.
// CHECK: SRC_LOOP
// CHECK-NEXT: pragma COALESCE_LOOP
// CHECK-NEXT: pragma PROB_ITERATE "2" "18446744073709551615"
#pragma COALESCE_LOOP
#pragma PROB_ITERATE(2)
  for (; n < 2; n++)
// CHECK: SRC_LOOP
// CHECK-NEXT: pragma NO_COALESCE_LOOP
#pragma NO_COALESCE_LOOP
    while (n) ++n;
  switch (a) {
#pragma UNROLL(2)
  case 1:
// CHECK: SRC_LOOP
// CHECK-NEXT: pragma UNROLL "2"
    while (n) ++n;
  }
// CHECK: pragma FORCEINLINE{{$}}
#pragma forceinline
  g();
// CHECK: pragma FORCEINLINE_RECURSIVE
#pragma FORCEINLINE(recursive)
  g();
// CHECK: pragma FORCEINLINE_RECURSIVE
#pragma FORCEINLINE_RECURSIVE
  { g(); }
// CHECK: pragma NOINLINE
#pragma noinline
  if (a) goto again;
// CHECK: pragma NOINLINE
  __pragma(NOINLINE) g();
// CHECK-NOT: {{pragma (UNROLL|NOINLINE|FORCE)}}
  n = ({
    int m = 0;
// CHECK: SRC_LOOP
// CHECK-NEXT: pragma UNROLL "5"
#pragma UNROLL(5)
    while (m < 4) ++m;
    m;
  });
  // Lowering puts the first clause in front of the loop.
// CHECK: SRC_LOOP
// CHECK-NEXT: pragma UNROLL "6"
#pragma UNROLL(6)
  for (n = ({ int m = a; m; }); n < 3; n++)
    g();
}
// The pragma goes to the whole statement, not into the expression.
int returns(void) {
// CHECK: pragma FORCEINLINE
#pragma FORCEINLINE
  return ({
    int m = 2;
    m;
  });
}
