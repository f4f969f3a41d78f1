// RUN: %krtparse --c99 -P %s | %FileCheck --match-full-lines --strict-whitespace %s
// Only what a macro replaced differs from the source; blanks keep tokens apart.
#define NEG -
#define EMPTY
#define ID(x) x
#define PAIR(x, y) x y
     //CHECK:int a = - - 1 + - 1;
int a = NEG NEG 1 + NEG 1;
     //CHECK:x = - -1;
x = -ID(-1);
     //CHECK:x  y [1 2] ;
x EMPTY y [PAIR(1, 2)] ;
     //CHECK:  spaced    out
  spaced    out
     //CHECK:ID ID 
     //CHECK:ID(2)
ID ID ID
(ID)(2)
