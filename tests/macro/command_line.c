// RUN: %krtparse --c99 -P -DPLAIN -DVALUE=7 '-DF(x)=(x)' -UPLAIN -DPLAIN %s | %FileCheck %s
// RUN: %krtparse --c99 -P '-D9=1' %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=BAD %s < %t.out
// RUN: %krtparse --c99 -P '-U-' %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=BAD-U %s < %t.out
// BAD: invalid macro definition: 9=1
// BAD-U: invalid macro undefinition: -
// CHECK: {{^}}1 7 ((3))
//
// The options count in their order; a text that ends inside a comment, a second
// value and a value without its equals sign are refused.
// RUN: %krtparse --c -P -DPLAIN=1 -UPLAIN -UVALUE -DVALUE=2 '-DF(x)=x' %s | %FileCheck --check-prefix=ORDER %s
// ORDER: {{^}}PLAIN 2 3
// RUN: %krtparse --c -P -DPLAIN=1 -UPLAIN -DPLAIN=2 -DVALUE -UF %s | %FileCheck --check-prefix=AGAIN %s
// AGAIN: {{^}}2 1 F(F(3))
// RUN: %krtparse --c -P '-DPLAIN=/*' %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=COMMENT %s < %t.out
// COMMENT: invalid macro definition: PLAIN=/*
// RUN: %krtparse --c -P -DPLAIN=1 -DPLAIN=2 %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=TWICE %s < %t.out
// TWICE: invalid macro definition: PLAIN=2
// RUN: %krtparse --c --strict -P '-DPLAIN+1' %s > %t.out 2>&1; test $? -ne 0
// RUN: %FileCheck --check-prefix=SIGN %s < %t.out
// SIGN: invalid macro definition: PLAIN+1
PLAIN VALUE F(F(3))
