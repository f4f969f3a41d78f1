// RUN: %krtparse --c99 -P %s | %FileCheck --match-full-lines --strict-whitespace %s
// RUN: %krtparse --c99 -P --no_token_separators_in_pp_output %s | %FileCheck --check-prefix=NONE --match-full-lines %s
// A blank comes where two tokens would join, and nowhere else.
#define EMPTY
#define ID(x) x
#define MINUS -
     //CHECK:+ + - - & & < < << = . . 1 1 1 . 1e +1 a b a1 L "x"
     //NONE:++ -- && << <<= .. 11 1. 1e+1 ab a1 L"x"
+EMPTY+ -EMPTY- &EMPTY& <EMPTY< <<EMPTY= .EMPTY. ID(1)ID(1) ID(1)EMPTY. ID(1e)EMPTY+1 ID(a)ID(b) a1 ID(L)ID("x")
     //CHECK:1 .5 1 . x.y x->y (a)[b];c,d ?e: f 1+1 a+1 "a"b 'a'b a"b" L "b" 1e +2 0x1p -3 x.e+1
ID(1)ID(.5) ID(1)ID(.) ID(x).ID(y) ID(x)->ID(y) ID((a))[ID(b)];ID(c),ID(d) ID(?)e: f ID(1)+ID(1) ID(a)+1 ID("a")ID(b) ID('a')ID(b) ID(a)ID("b") ID(L)ID("b") ID(1e)ID(+2) ID(0x1p)-3 x.ID(e)+1
     //CHECK:a b
a/**/b
     //CHECK:- - -1 - -1 / / / * % : < : ##
-MINUS-ID(1) ID(-)ID(-1) ID(/)ID(/) ID(/)ID(*) ID(%)ID(:) ID(<)ID(:) ##
