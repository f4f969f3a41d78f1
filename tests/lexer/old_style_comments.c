/* Macros of old-style preprocessing may make the delimiters of comments.
RUN: %krtparse --old_c --old_style_preprocessing --object_file=%t.if %s > %t.out 2>&1; test $? -eq 2
RUN: %FileCheck %s < %t.out
RUN: %krtparse --c --object_file=%t.if %s > %t.tokens 2>&1; test $? -eq 2
RUN: %FileCheck --check-prefix=TOKENS %s < %t.tokens
*/
#define OPEN //**/*
#define CLOSE */**//
#define OUTER int c; OPEN in
#define TIMES *
int a; OPEN don't "count this CLOSE int b;
OPEN over 12e+ TIMES
lines and "macros */
OUTER the end */ int *p; int d;
int e = 2 TIMES 3;
/*
CHECK-NOT: line {{[0-9]+}}:
TOKENS: line 11: error
*/
undefined_type x;
/*
CHECK: line [[@LINE-2]]: error
CHECK: line [[@LINE+2]]: error: comment unclosed at end of file
*/
int f; OPEN never closed
