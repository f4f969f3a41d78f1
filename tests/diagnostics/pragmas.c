// Severities by pragma: numbers and tags, in lists, from their place on.
//
// RUN: %krtparse --display_error_number --remarks %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck --implicit-check-not='{{error #[0-9]+-D|warning|remark}}' %s < %t.err
//
// A run that only preprocesses leaves them to the reader of its output.
// RUN: %krtparse -E %s > %t.i 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=PP %s < %t.i
// PP: #pragma diag_suppress 163
#pragma diag_suppress 163
#pragma unknown
#pragma diag_default = unrecognized_pragma
#pragma unknown
// CHECK: line [[@LINE-1]]: warning #163-D: unrecognized #pragma

#pragma diag_push
#pragma diag_error 163, bad_pp_directive_keyword
#pragma unknown
// CHECK: line [[@LINE-1]]: error #163-D: unrecognized #pragma
#pragma diag_push
#pragma diag_remark 11
#pragma diag_warning 163
#frobnicate
// CHECK: line [[@LINE-1]]: remark #11-D:
#pragma unknown
// CHECK: line [[@LINE-1]]: warning #163-D:
#pragma diag_pop
#pragma unknown
// CHECK: line [[@LINE-1]]: error #163-D:
#frobnicate
// CHECK: line [[@LINE-1]]: error #11-D:
#pragma diag_pop
#pragma unknown
// CHECK: line [[@LINE-1]]: warning #163-D:

// In the arguments of a macro, and by the operator, before the next token.
#define SECOND(a, b) b
SECOND(
#pragma diag_suppress 163
#pragma unknown
#pragma diag_default 163
#pragma unknown
// CHECK: line [[@LINE-1]]: warning #163-D:
  , int x = 0;)
int y = _Pragma("diag_suppress 194") '\q'; // the escape is unrecognized
int z = _Pragma("diag_default 194") '\q';
// CHECK: line [[@LINE-1]]: warning #194-D:
_Pragma("diag_suppress 163")
#pragma unknown
_Pragma("diag_default 163")

// A place in a pragma's list that is no number and no tag.
#pragma diag_suppress 0, 3190, no_such_tag, 163
// CHECK: line [[@LINE-1]]: warning #1298-D: invalid error number
// CHECK: line [[@LINE-2]]: warning #1298-D:
// CHECK: line [[@LINE-3]]: warning #1299-D: invalid error tag
#pragma unknown
#pragma diag_default 163 11
// CHECK: line [[@LINE-1]]: warning #255-D: expected a ","
#pragma diag_suppress 14,
// CHECK: line [[@LINE-1]]: warning #1300-D: expected an error number or error tag
#pragma diag_suppress
// CHECK: line [[@LINE-1]]: warning #1300-D:
#pragma diag_push 163
// CHECK: line [[@LINE-1]]: warning #821-D: badly formed pragma
#pragma diag_pop
// CHECK: line [[@LINE-1]]: warning #2613-D: "#pragma diag_pop" must be preceded by matching "#pragma diag_push"

// What was issued before doesn't come again.
#pragma diag_once 163
#pragma unknown
