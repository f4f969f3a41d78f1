// Arrays of variable length in loops, recursion, parameters of both styles, and
// what returns and jumps leave.
// RUN: %krtparse --gcc --c99 --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out
int printf(const char *, ...);
int g(n, a) int n; int a[n][n]; { return a[1][1] + sizeof *a; }
int j(int n) { int x[n]; x[0] = 4; { int y[n * 2]; y[1] = 5; if (n > 3) goto l; x[0] += y[1]; } return sizeof x + x[0]; l: return x[0]; }
int l(int n) { int s = 0; for (int a[n], b = 0; b < n; b++) { int c[b + 1]; c[b] = b; a[b] = b; if (b == 1) continue; switch (b) { case 0: { int d[n]; d[0] = 1; s += d[0]; break; } default: s += c[b] + a[b]; } } return s; }
int m(int n) { return n ? sizeof(int[n++]) + n : 1; }
int o(int n) { int a[n]; int b[sizeof a]; __typeof__(a) c; __typeof__(int[n + 1]) d; c[0] = d[0] = b[0] = 1; return sizeof b + sizeof c * 2 + sizeof d * 3; }
int q(int n, const int a[static 2][n], int (*p)[n][n + 1]) { return p[1][1][1] + (&p[1] - p) + (&a[2] - a) + sizeof *p; }
struct big { int v[20]; };
struct big r(int n) { struct big x[n]; x[n - 1].v[3] = n; return x[n - 1]; }
void v(int n, int *out) { char a[n]; a[0] = 3; if (n == 2) return; *out = a[0]; }
int fact(int n) { int a[n + 1]; a[n] = n; int below = n ? fact(n - 1) : 1; return n ? a[n] * below : 1; }
int w(int n) { int s = 0; while (n-- > 0) { do { int a[n + 1]; a[n] = n; if (n & 1) break; s += a[n]; } while (0); } return s; }
// Bounds that are statement expressions.
int st(int n) {
  int a[({ int k = n; k + 1; })], b[2][3] = {{0}, {0, 0, 8}};
  a[n] = sizeof(int[({ int k = n; k * 2; })]);
  return a[n] + sizeof a + ((int (*)[({ int k = n; k + 1; })])b)[1][2];
}
// Compound literals whose types have bounds.
static int calls;
static int called(int n) { calls = calls * 10 + n; return n; }
int literals(int n) {
  int a[2][3] = {{1, 2, 3}, {4, 5, 6}}, (*p)[3] = (int (*)[called(3)]){0};
  p = (int (*)[called(2) + 1]){a};
  int (**q)[n] = &(int (*)[n]){a};
  ++*q;
  return calls * 100 + ***q * 10 + p[1][0] + ((int (*)[({ int k = n; k; })]){a})[1][2];
}
// Bounds in the operand of typeof are evaluated by the declaration.
int typeof_bounds(int n) {
  int a[4][3] = {{1}, {2}, {3}, {4}};
  __typeof__((int (*)[called(3)])a) p;
  typedef __typeof__(*(int (*)[called(n + 2)])a) T;
  p = a + 1;
  if (n)
    p++;
  else
    p--;
  return **p * 100 + (n ? sizeof(T) : sizeof(T) * 2);
}
int main(void) {
  int a[2][2] = {{1, 2}, {3, 4}}, b[2][2][3] = {{{0}}, {{0, 0, 0}, {0, 7, 0}}}, out = 0;
  printf("%d\n", g(2, a)); printf("%d %d\n", j(3), j(4)); printf("%d\n", l(5));
  printf("%d\n", m(3)); printf("%d\n", o(3)); printf("%d\n", q(2, a, b)); printf("%d\n", r(4).v[3]);
  v(2, &out); v(3, &out); printf("%d %d %d\n", out, fact(6), w(9));
  unsigned char bits[sizeof(int[out])]; printf("%d\n", (int)sizeof bits);
  int n = 3; int (*p)[n] = 0; p = p + 2; printf("%d\n", (int)((char *)p - (char *)0));
  volatile int k = 2; int z[k][k + 1][4]; z[1][2][3] = 9; printf("%d %d\n", (*(z + 1))[2][3], (int)(&z[1][2][3] - &z[0][0][0]));
  _Bool t[n]; t[2] = 5; t[2]++; printf("%d\n", t[2]);
  printf("%d %d\n", st(2), literals(3));
  calls = 0;
  printf("%d ", typeof_bounds(0));
  printf("%d ", typeof_bounds(1));
  printf("%d\n", calls);
  return 0;
}
