// Arrays of variable length: objects, sizes, steps, parameters and jumps.
// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out
int printf(const char *, ...);
static int calls;
static int f(int n) { calls++; return n; }
static int sum(int n, int m, int a[n][m]) {
  int s = 0;
  for (int i = 0; i < n; i++)
    for (int j = 0; j < m; j++)
      s += a[i][j];
  return s + (int)sizeof a[0];
}
static int old(n, a) int n; int a[n][n + 1]; { return sizeof a[0] / sizeof(int) + a[1][0]; }
static int entry(int n, int a[n++], int b[n]) { return n; }
static int ret(int n) { int a[n]; for (int i = 0; i < n; i++) a[i] = i; return a[n - 1] + a[0]; }
int main(void) {
  int n = 3, m = 4;
  int a[f(n)][m];
  for (int i = 0; i < n; i++)
    for (int j = 0; j < m; j++)
      a[i][j] = 10 * i + j;
  printf("%d %d %d %d\n", a[2][3], (int)sizeof a, (int)sizeof a[0], calls);
  n = 100;
  printf("%d\n", (int)sizeof a);
  printf("%d\n", sum(3, 4, a));
  int (*p)[m] = a;
  p++;
  printf("%d %d\n", (*p)[1], p[1][2]);
  p += 1;
  printf("%d %d\n", (int)(p - a), **p);
  int (*q)[m] = p--;
  printf("%d %d\n", (int)(q - p), **p);
  typedef int T[m + 1];
  m = 50;
  T t, *tp = &t;
  printf("%d %d %d\n", (int)sizeof t, (int)sizeof(T), (int)sizeof *tp);
  printf("%d\n", (int)sizeof(int[f(7)]));
  int b[2][3] = {{1, 2, 3}, {4, 5, 6}};
  int k = 3;
  printf("%d\n", ((int (*)[k])b)[1][2]);
  printf("%d\n", old(2, (int (*)[3])b));
  printf("%d\n", entry(5, 0, 0));
  printf("%d\n", ret(6));
  int total = 0;
  for (int i = 1; i < 1000; i++) {
    unsigned char big[i * 100];
    big[0] = i; big[i * 100 - 1] = 1;
    if (i % 7 == 0) continue;
    total += big[0] + big[i * 100 - 1];
    if (i == 990) break;
  }
  printf("%d\n", total);
  int count = 0;
again:;
  long long w[count + 1];
  w[count] = count;
  if (++count < 2000) goto again;
  printf("%d %d\n", (int)w[1999], (int)sizeof w);
  struct s { int x, y; } ss[k];
  ss[2].y = 9;
  struct s *sp = &ss[2];
  printf("%d %d\n", sp->y, (int)(sp - ss));
  int i = 1;
  printf("%d\n", (int)sizeof a[i++]);
  printf("%d\n", i);
  for (int z[k], y = 0; y < k; y++) { z[y] = y; total = z[y]; }
  printf("%d\n", total);
  return 0;
}
