// RUN: %krtparse --c99 -P -DPLAIN -DVALUE=7 '-DF(x)=(x)' -UPLAIN -DPLAIN %s | %FileCheck %s
// RUN: %krtparse --c99 -P '-D9=1' %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=BAD %s < %t.out
// RUN: %krtparse --c99 -P '-U-' %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=BAD-U %s < %t.out
// BAD: invalid macro definition: 9=1
// BAD-U: invalid macro undefinition: -
// CHECK: {{^}}1 7 ((3))
PLAIN VALUE F(F(3))
