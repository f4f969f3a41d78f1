/* RUN: %krtparse --old_c --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
   RUN: %FileCheck %s --implicit-check-not=error < %t.err
   C before prototypes: words that modify a type name, names that are types in
   identifier lists, and no order of the specifiers. */

typedef int T;
typedef short S;
typedef char C;
unsigned T t;
T unsigned t2;
long T lt;
unsigned S us = 65535;
unsigned C uc;
int size_1[sizeof(t) == sizeof(int) && sizeof(lt) == sizeof(long) ? 1 : -1];
int size_2[sizeof(us) == sizeof(short) && sizeof(uc) == 1 ? 1 : -1];
int static not_first;
int names(a, T) int a, T; { return a + T; }
int prototype(T a) { return a; }
static implicit_int;
/* CHECK: line [[#@LINE+2]]: error #85: invalid combination of type specifiers
*/
short C short_char;
/* CHECK: line [[#@LINE+2]]: error #85: invalid combination of type specifiers
*/
unsigned struct s { int a; } unsigned_struct;
/* CHECK: line [[#@LINE+2]]: error #93: identifier-list parameters may only be used in a function definition
*/
int no_definition(a, b);
/* CHECK: errors detected
*/
