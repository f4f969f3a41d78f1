// RUN: %krtparse --c --svr4 -DSVR4 -P %s 2>&1 | %FileCheck --check-prefix=SVR4 %s
// RUN: %krtparse --old_c --old_style_preprocessing -P %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=OLD %s < %t.out
#ifdef SVR4
#define CAT(a, b) a/**/b
// SVR4: line [[@LINE-1]]: warning: empty comment interpreted as token-pasting operator "##"
#define APART(a) a /**/ a+/**/
CAT(x, y) APART(1)
// SVR4: {{^}}xy 1 1+
#else
#define CTRL(c) ('c' & 037)
#define SHOW(x, n) "x is x" n 'x'
#define CAT(a, b) a/**/b
#define A a
CTRL(G) SHOW(A, A) CAT(foo, A)
#define again again
again;
#endif
#if 0
OLD: line 17: error: macro recursion
OLD: {{^}}('G' & 037) "A is A" a 'A' fooA
OLD: {{^}}again;
#endif
