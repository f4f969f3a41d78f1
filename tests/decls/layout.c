// RUN: %krtparse --i_output_file=%t.if %s
// Sizes and offsets of structs; everything is aligned to the byte.

#define SAME(a, b) extern char check[(a) == (b) ? 1 : -1]

struct plain { char a; int b; short c; };
SAME(sizeof(struct plain), 7);
SAME((unsigned)&((struct plain *)0)->b, 1);
SAME((unsigned)&((struct plain *)0)->c, 5);

// 29 bits are left in the first container, so the second field opens another.
struct cut { int a : 3; int b : 30; };
SAME(sizeof(struct cut), 5);
struct shared { int a : 3; int b : 29; };
SAME(sizeof(struct shared), 4);
// The declared container reaches beyond the field.
struct behind_char { char c; int b : 3; };
SAME(sizeof(struct behind_char), 4);
struct closed { int a : 3; int : 0; int b : 3; };
SAME(sizeof(struct closed), 4);
struct narrow { unsigned char a : 3, b : 5, c : 1; };
SAME(sizeof(struct narrow), 2);

union widest { char a; int b; short c[5]; };
SAME(sizeof(union widest), 10);
struct nested { char a; struct plain p[2]; union widest w; };
SAME(sizeof(struct nested), 25);
SAME((unsigned)&((struct nested *)0)->p[1].c, 1 + 7 + 5);
struct flexible { int a; char rest[]; };
SAME(sizeof(struct flexible), 4);
struct later;
struct later *forward;
struct later { int a, b; };
SAME(sizeof *forward, 8);

enum small { ONE = 1 };
SAME(sizeof(enum small), 4);
SAME(sizeof(int *), 4);
SAME(sizeof(int (*)(void)), 2);
SAME(sizeof(long), 4);
SAME(sizeof(long long), 8);
SAME((char)-1 > 0, 1);
SAME('\xff', 255);
