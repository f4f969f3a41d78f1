/* RUN: %krtparse --display_error_number --c89 --no_gcc %s > %t.err 2>&1; test $? -eq 0
   RUN: %FileCheck %s --check-prefix=LAX < %t.err
   RUN: %krtparse --display_error_number --c89 --strict %s > %t.err 2>&1; test $? -eq 2
   RUN: %FileCheck %s --check-prefix=STRICT < %t.err
   RUN: %krtparse --display_error_number --c89 --gcc --report_gnu_extensions %s > %t.err 2>&1
   RUN: %FileCheck %s --check-prefix=GNU < %t.err
   What C90 lacks. */

/*
   LAX: line [[#@LINE+4]]: warning #71-D: incomplete type is not allowed
   STRICT: line [[#@LINE+3]]: error #71: incomplete type is not allowed
   GNU: line [[#@LINE+2]]: warning #1891-D: flexible array members are nonstandard
*/
struct flexible { int n; char rest[]; };
/*
   LAX: line [[#@LINE+4]]: warning #622-D: an unnamed field of this kind is nonstandard
   STRICT: line [[#@LINE+3]]: error #622-D: an unnamed field of this kind is nonstandard
   GNU-NOT: #622
*/
struct anonymous { int a; union { int b; char c; }; };
/*
   STRICT: line [[#@LINE+2]]: error #232-D: nonstandard type for a bit field
*/
struct bits { unsigned char a : 3; };
/*
   LAX: line [[#@LINE+3]]: warning #621-D
   STRICT: line [[#@LINE+2]]: error #621-D
*/
struct empty { int : 3; };
