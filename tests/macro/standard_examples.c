// RUN: %krtparse --c99 -P %s > %t.out
// RUN: sed -n 's/^ *\/\/> //p' %s > %t.expected
// RUN: grep -v '^ *$' %t.out | diff - %t.expected
// The examples of the C standard (C99 6.10.3.5), and what it says in words; a
// comment that begins with > shows the line that comes out.
#define x 3
#define f(a) f(x * (a))
#undef x
#define x 2
#define g f
#define z z[0]
#define h g(~
#define m(a) a(w)
#define w 0,1
#define t(a) a
#define p() int
#define q(x) x
#define r(x,y) x ## y
#define str(x) # x
//> f(2 * (y+1)) + f(2 * (f(2 * (z[0])))) % f(2 * (0)) + t(1);
f(y+1) + f(f(z)) % t(t(g)(0) + t)(1);
//> f(2 * (2+(3,4)-0,1)) | f(2 * (~ 5)) & 
//> f(2 * (0,1))^m(0,1);
g(x+(3,4)-w) | h 5) & m
   (f)^m(m);
//> int i[] = { 1, 23, 4, 5,  };
p() i[q()] = { q(1), r(2,3), r(4,), r(,5), r(,) };
//> char c[2][6] = { "hello", "" };
char c[2][6] = { str(hello), str() };
#undef x
#undef h
#undef str
#define str(s) # s
#define xstr(s) str(s)
#define debug(s, t) printf("x" # s "= %d, x" # t "= %s", \
                           x ## s, x ## t)
#define INCFILE(n) vers ## n
#define glue(a, b) a ## b
#define xglue(a, b) glue(a, b)
#define HIGHLOW "hello"
#define LOW LOW ", world"
//> printf("x" "1" "= %d, x" "2" "= %s", x1, x2);
debug(1, 2);
//> fputs("strncmp(\"abc\\0d\", \"abc\", '\\4') == 0" ": @\n", s);
fputs(str(strncmp("abc\0d", "abc", '\4') // this goes away
          == 0) str(: @\n), s);
//> "vers2.h"
xstr(INCFILE(2).h)
//> "hello";
glue(HIGH, LOW);
//> "hello" ", world"
xglue(HIGH, LOW)
#define hash_hash # ## #
#define mkstr(a) # a
#define in_between(a) mkstr(a)
#define join(c, d) in_between(c hash_hash d)
//> char p[] = "x ## y";
char p[] = join(x, y);
#undef t
#define t(x,y,z) x ## y ## z
//> int j[] = { 123, 45, 67, 89,
//>           10, 11, 12,  };
int j[] = { t(1,2,3), t(,4,5), t(6,,7), t(8,9,),
          t(10,,), t(,11,), t(,,12), t(,,) };
#undef debug
#define debug(...) fprintf(stderr, __VA_ARGS__)
#define showlist(...) puts(#__VA_ARGS__)
#define report(test, ...) ((test)?puts(#test):\
                           printf(__VA_ARGS__))
//> fprintf(stderr, "Flag");
debug("Flag");
//> fprintf(stderr, "X = %d\n", x);
debug("X = %d\n", x);
//> puts("The first, second, and third items.");
showlist(The first, second, and third items.);
//> ((x>y)?puts("x>y"): printf("x is %d but y is %d", x, y));
report(x>y, "x is %d but y is %d", x, y);
