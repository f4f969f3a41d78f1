// RUN: %krtparse --c99 %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck %s < %t.out
// RUN: %krtparse --c99 -P -DQUIET %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=QUIET %s < %t.out

#warning  keep these blanks // and this
// CHECK: error_directive.c", line [[@LINE-1]]: warning: #warning directive: keep these blanks // and this
#ifndef QUIET
#error stop /* here */ now
// CHECK: error_directive.c", line [[@LINE-1]]: fatal error: #error directive: stop /* here */ now
#endif
#nonsense here
// QUIET: line [[@LINE-1]]: error: unrecognized preprocessing directive
