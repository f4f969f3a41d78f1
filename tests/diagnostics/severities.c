// Severities by option: number and tag, in lists; the number in the message.
//
// RUN: %krtparse -E --display_error_number %s > %t.i 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=NUMBER %s < %t.err
// NUMBER: line [[@LINE+26]]: error #11-D: unrecognized preprocessing directive
// NUMBER: line [[@LINE+26]]: error #11-D:
// NUMBER: line [[@LINE+26]]: warning #1181-D: #warning directive: w
// NUMBER: line [[@LINE+26]]: error #29: expected an expression
// NUMBER: 3 errors detected
//
// RUN: %krtparse -E --diag_suppress=11,preprocessing_warning --diag_remark=29 %s > %t.i 2> %t.err; test $? -eq 4
// RUN: %FileCheck --check-prefix=BADTAG %s < %t.err
// BADTAG: Command-line error: invalid error tag in diagnostic control option: preprocessing_warning
//
// RUN: %krtparse -E --diag_suppress=bad_pp_directive_keyword --diag_error=1181 --diag_suppress=29 %s > %t.i 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=CHANGED %s < %t.err
// CHANGED-NOT: unrecognized
// CHANGED: line [[@LINE+15]]: error: #warning directive: w
// CHANGED: line [[@LINE+15]]: error: expected an expression
// CHANGED: 2 errors detected
//
// Once is for severities up to warning; an error can't be made less.
// RUN: %krtparse -E --diag_warning=11 --diag_once=11 --emit_warnings_as_errors --no_warnings %s > %t.i 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=ASERROR %s < %t.err
// ASERROR: line [[@LINE+6]]: error: unrecognized preprocessing directive
// ASERROR: line [[@LINE+6]]: error: unrecognized preprocessing directive
// ASERROR: line [[@LINE+6]]: error: #warning directive: w
// ASERROR: 4 errors detected
//
//
#a
#b
#warning w
#if 1 +
#endif
