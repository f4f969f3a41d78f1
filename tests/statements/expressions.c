// RUN: %krtparse --gcc --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out
// GNU statement expressions in every place of a statement: what they compute,
// and what runs before, between and not at all.

int printf(const char *, ...);
static int calls;
static int f(int x) { calls++; return x; }
#define MAX(a, b) \
  ({ __typeof__(a) _a = (a); __typeof__(b) _b = (b); _a > _b ? _a : _b; })
struct s { int a, b; };
static int find(int *p, int n) {
  return ({ int i; for (i = 0; i < n; i++) if (p[i] == 7) goto found; -1; });
found:
  return 77;
}
static int early(int x) { int y = ({ if (x) return 5; 3; }); return y; }
int main(void) {
  int r = MAX(f(3), MAX(4, f(2)));
  printf("%d\n", r);
  printf("%d\n", ({ struct s v = { 1, 2 }; v; }).b);
  int i = 0;
  while (({ int x = f(i); x < 5; })) i++;
  printf("%d %d\n", i, calls);
  for (i = 0; ({ int t = i * 2; t < 10; }); ({ int k = 1; i += k; })) ;
  printf("%d\n", i);
  do { i--; } while (({ int z = i; z; }));
  printf("%d\n", i);
  calls = 0;
  int c = 0 && ({ f(1); 1; });
  c |= (1 || ({ f(1); 1; })) << 1;
  printf("%d %d\n", c, calls);
  int q = i ? ({ f(9); 8; }) : ({ f(10); 9; });
  int e = q ?: ({ f(3); });
  int e2 = 0 ?: ({ int g = f(3); g + 1; });
  printf("%d %d %d %d\n", q, calls, e, e2);
  q = (i = 4, ({ int j = i; j * 2; }));
  printf("%d\n", q);
  int a[] = { 1, 2, 7 };
  printf("%d %d %d %d\n", find(a, 2), find(a, 3), early(0), early(1));
  if (({ int w = 3; w == 3; }) && q) printf("yes\n");
  switch (({ int w = 3; w; })) { case 3: printf("three\n"); break; default: printf("bad\n"); }
  int arr[2] = { ({ 5; }), ({ int m = 6; m; }) };
  printf("%d %d\n", arr[0], arr[1]);
  ({ printf("void\n"); });
  ({ int l; l = 3; if (l) printf("stmt\n"); });
  (void)({ 3; });
  struct s cl = (struct s){ ({ int n = 11; n; }), 12 };
  printf("%d %d\n", cl.a, cl.b);
  int lp = ({ __label__ out; int v = 0; for (;;) { if (++v > 5) goto out; } out: v; });
  int lq = ({ __label__ out; int v = 0; for (;;) { if (++v > 8) goto out; } out: v; });
  printf("%d %d\n", lp, lq);
  for (i = 0; i < 3; i++) { int z = ({ if (i == 1) continue; i; }); printf("z%d\n", z); }
  while (({ __label__ again; int n = 0; again: n++; if (n < 3) goto again; i++ < 5; })) printf("w\n");
  __extension__ int ext = __extension__ ({ 4; });
  const char *s = ({ char b[4] = "abc"; static char t[4]; t[0] = b[1]; t; });
  printf("%d %s\n", ext, s);
  int once = ({ int z = 3; z; }) ?: 4, other = ({ int z = 0; z; }) ?: 4;
  printf("%d %d\n", once, other);
  return 0;
}
