// RUN: %krtparse --c99 %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
char *s = "abc
// CHECK: unterminated.c", line [[@LINE-1]]: error: missing closing quote
char c = 'x
// CHECK: unterminated.c", line [[@LINE-1]]: error: missing closing quote
#define f(x) x
/* /* nested
*/
// CHECK: unterminated.c", line [[@LINE-2]]: warning: nested comment is not allowed
int b = f(
/* ends here
// CHECK: unterminated.c", line [[@LINE-1]]: error: comment unclosed at end of file
// CHECK: unterminated.c", line [[@LINE-3]]: error: expected a ")"
