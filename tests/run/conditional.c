// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Conditionals: each operand is evaluated once or not at all, that of `a ?: b`
   too. */
int printf(const char *format, ...);
static int calls, values[] = {0, 7, 0, 9};
static int next(void) { return values[calls++ & 3]; }
static const char *name(int n) { return n ? "name" : 0; }
struct pair { int a, b; };
static struct pair first = {1, 2}, second = {3, 4};
static int sum(struct pair p) { return p.a * 10 + p.b; }
int main(void) {
  int i = 3, *p = 0, *q = &i;
  volatile int v = 5;
  char c = 0;
  double d = 2.5;
  printf("%d", next() ?: 1);
  printf(" %d", next() ?: 1);
  printf(" %d\n", calls);
  printf("%d", i++ ?: 9);
  printf(" %d\n", i);
  printf("%d %d\n", v ?: 1, c ?: 'x');
  printf("%s %s\n", name(1) ?: "none", name(0) ?: "none");
  printf("%d %d\n", *(p ?: q), (p ?: q) == q);
  printf("%g", d++ ?: 1.0);
  printf(" %g\n", d ?: 1);
  for (i = 4; i--;)
    printf("%d%c", i ?: -1, i ? ' ' : '\n');
  printf("%d %d\n", sum(i ? first : second), (i < 0 ? first : second).b);
  printf("%d\n", i ? v > 3 ? 1 : 2 : 3);
  printf("%d %d\n", (1 ? i : v), (0 ? next() : 6));
  i = (v = 3, v + 1), printf("%d\n", (next(), next() ?: 8) + i);
  return 0;
}
