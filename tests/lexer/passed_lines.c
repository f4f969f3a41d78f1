// Lines of comments and of skipped groups are counted, and end where they must.
// RUN: %krtparse --no_code_gen --trigraphs %s > %t 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t
/* A comment that only
 * counts its lines
 * ends behind a splice: *\
/
int in_comment_1 = ;
// CHECK: line [[@LINE-1]]: error: expected an expression
/* and behind a trigraph that makes one
 * here: *??/
/
int in_comment_2 = ;
// CHECK: line [[@LINE-1]]: error: expected an expression
#if 0
plain words + numbers - 1 2 3;
'an open literal
/* #endif in a comment
#endif
*/ more words
#if nested
#else
#endif
"#endif /*"
text \
#endif
#elif 1
int after_group = ;
// CHECK: line [[@LINE-1]]: error: expected an expression
#else
more words
#endif
int at_end = __LINE__ == 34 ? 1 : ;
// CHECK: line [[@LINE-1]]: error: expected an expression
// CHECK: 4 errors detected
#if 0
the last line of all is one of a skipped group;
#endif
