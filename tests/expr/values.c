// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 0
// RUN: %FileCheck %s < %t.out
// Values of constant expressions in the target's arithmetic (C99 6.6).
#define SAME(name, expr, value) extern char name[(expr) == (value) ? 1 : -1]
typedef unsigned char u8;
struct q { struct q *next; int v[3]; union { int a; char b; } u; };
enum { K = 'a' + 1, L, M = -3, N = 1 ? 4 : 1 / 0 };
static struct q pool[4];
SAME(a1, K, 98); SAME(a2, L, 99); SAME(a3, M * -2, 6); SAME(a4, N, 4);
SAME(b1, 7 / -2, -3); SAME(b2, 7 % -2, 1); SAME(b3, -7 >> 1, -4); SAME(b4, -7u >> 28, 15);
SAME(c1, ~0u, 4294967295u); SAME(c2, ~0, -1); SAME(c3, -1 > 0u, 1); SAME(c4, (u8)300, 44);
// CHECK: line [[@LINE-1]]: warning #516-D:
SAME(d1, (signed char)200, -56); SAME(d2, (char)0x1ff == (char)0xff, 1); SAME(d3, 1ull << 40 >> 38, 4);
SAME(e1, 1 + 2 * 3 - 4 / 2, 5); SAME(e2, 10 - 4 - 3, 3); SAME(e3, 2 * 7 % 5, 4); SAME(e4, 1 | 6 & 3 ^ 8, 11);
SAME(f1, 1 < 2 == 1, 1); SAME(f2, !0 + !5, 1); SAME(f3, -(-3), 3); SAME(f4, 3 > 2 > 1, 0);
SAME(g1, 1 ? 2 : 3 ? 4 : 5, 2); SAME(g2, 0 ? 2 : 0 ? 4 : 5, 5); SAME(g3, 0 && 1 / 0, 0); SAME(g4, 1 || 1 / 0, 1);
SAME(h1, sizeof(struct q), 20); SAME(h2, sizeof pool / sizeof pool[0], 4); SAME(h3, sizeof "abc", 4);
SAME(h4, sizeof 'a', 4); SAME(h5, sizeof(char), 1); SAME(h6, sizeof(pool)[1], 20); SAME(h7, sizeof ((struct q *)0)->v, 12);
SAME(i1, sizeof(1 ? (char)1 : (short)2), 4); SAME(i2, sizeof(1 ? 1 : 2ll), 8); SAME(i3, sizeof(pool[0].v[0]++), 4);
SAME(j1, sizeof(int *), 4); SAME(j2, sizeof(int[3][2]), 24); SAME(j3, sizeof &pool, 4); SAME(j4, sizeof *&pool, 80);
SAME(k1, (int)&((struct q *)0)->v[2], 12); SAME(k2, __builtin_offsetof(struct q, u.b), 16);
struct __attribute__((packed)) packed { char c; int i; }; struct raised { char c __attribute__((aligned(8))); };
SAME(l5, __alignof__(((struct packed *)0)->i), 1); SAME(l6, __alignof__(((struct raised *)0)->c), 8);
SAME(l1, '\377' == (char)255, 1); SAME(l2, L'a', 97); SAME(l3, (1 ? -1 : 0u) > 0, 1); SAME(l4, __alignof__(char), 1);
// CHECK-NEXT: line [[@LINE-1]]: warning #69-D:
SAME(m1, sizeof(-(u8)1), 4); SAME(m2, ~(u8)0, -1); SAME(m3, (u8)~0, 255); SAME(m4, (int)(u8)-1 << 1, 510);
