// RUN: %krtparse --c99 -P %s > %t.out
// RUN: sed -n 's/^ *\/\/> //p' %s > %t.expected
// RUN: grep -v '^ *$' %t.out | diff - %t.expected
// Names in their own expansion, calls that reach over lines and directives, and
// pastings; a comment that begins with > shows the line that comes out.
#define id(x) x
#define cat(a, b) a##b
#define xcat(a, b) cat(a, b)
#define empty
#define lparen (
#define f(x) [x f]
#define foo foo a
#define ping pong
#define pong ping
//> [1 f] [[2 f] f] [3 f](4)
f(1) f(f(2)) id(f(3)(4))
//> foo a foo a ping pong
id(id(foo)) cat(f,oo) ping pong
// A mark holds in arguments and in later rescans; a pasted name has none.
#define call(g) g(7)
#define mark(x) x f
//> [1 f](7)  f [7 f]
call(f(1)) mark() call(f)
#define AB AB cat(A, B)
//> AB AB
AB
// Whether a name is followed by a parenthesis is asked when it is met.
#define later f lparen 1)
//> f ( 1) [2 f] [3 f]
later id(f (2)) id(f lparen 3))
#define NIL(x) x
#define G_0(arg) NIL(G_1)(arg)
#define G_1(arg) NIL(arg)
//> 42
G_0(42)
//> f
//> (5) +
//> f + 
//> f;
f
#define between 1
(5) +
f + f
;
//> [6 + 7 f]
f(6
#ifdef between
+ 7
#else
+ 8
#endif
)
// Pastings keep out of what stands beside them.
#define grow(x) x##E+1
#define dash(x) - x ## -x -x##>
//> 1E +1 2E +3 4E+5 6e -x
grow(1) cat(2,E+3) cat(4E+,5) cat(6,e-x)
//> - - - > - -- - - ->
dash() dash(-)
// What makes no token stays two, and what makes one takes in nothing else.
#define arrow(x) -##x
#define chain(a, b, c) a##b##c
//> -> - -> - --> -= - = 1e+ 2 . .. .. . < << >>= = == --- <<= a1+ x
arrow(>) arrow(->) arrow(-->) arrow(=) arrow( ) = cat(1e,+2) cat(.,..) cat(..,.) cat(<,<<) cat(>>,=) cat(=,==) chain(-,-,-) chain(<,<,=) chain(a,1,+ x)
//> -foo a
id(arrow(foo))
#define slashes(a, b) a##b
#define comment /##/
//> / / / * / / 0
slashes(/,/) slashes(/,*) comment 0
//> foo a 1 foo a 2
id(xcat(foo,) 1) id(xcat(,foo) 2)
#define left(a, b) a b##1
//> foo a 1
left(id(foo),)
// A number and a sign, an operator and its like, two words.
#define neg(x) -x
#define num 1e
//> - -1 + +2 1e +3 4 5
neg(-1) id(+)id(+)2 num+3 id(4)5
