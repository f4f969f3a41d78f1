// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -ffp-contract=off %s -o %t.host -lm
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Floating arithmetic, comparisons and conversions, as the host computes them. */
int printf(const char *format, ...);
double sqrt(double);
float fabsf(float);
#ifdef __x86_64__
float sqrtf(float);
#define __sqrtf sqrtf
#else
float __sqrtf(float);
#endif

struct point {
  float x;
  double y;
};

static double table[] = {1.5, -0.0, 1e300, 4.9406564584124654e-324, 0.1, 1e-5, 123456789.125};
static float floats[4] = {1.1f, 3.4028235e38f, 1e-45f};
static const struct point corner = {.y = 2.25, .x = 0.1f};
static double folded = (1.0 / 3 + 2) * 7 - 0.1f, negative = -(2.5 > 2 ? 1e10 : 0);
static int truncated = (int)-3.99, rounded_up = (int)(2.5f + 0.5);
static unsigned char byte = (unsigned char)200.7;

static float single(float a, float b) { return a * b + 0.1f; }
static double old_style(f, d) float f; double d; { return f / d; }
static struct point add(struct point p, double by) {
  p.x += by;
  p.y -= by;
  return p;
}

static void arithmetic(double a, double b) {
  printf("%a %a %a %a %a\n", a + b, a - b, a * b, a / b, -a);
  printf("%d%d%d%d%d%d\n", a < b, a <= b, a > b, a >= b, a == b, a != b);
  printf("%d %d %d %d\n", !a, a && b, a || b, a ? 1 : 2);
}

static void steps(void) {
  double d = 0.1;
  float f = 16777216.0f;
  int i = 7;
  printf("%a ", d++);
  printf("%a ", ++d);
  printf("%a ", d--);
  printf("%a %a\n", f++, (double)f);
  f *= 1.1;
  i *= 1.5;
  i += 0.75f;
  d /= 3;
  printf("%a %d %a\n", f, i, d);
  f = f * 3.0 + 0.1;
  d = f * 3.0;
  printf("%a %a\n", f, d);
  for (f = 0; f < 1.0; f += 0.25)
    printf("%g ", f);
  while (d > 1)
    d /= 2;
  if (d)
    printf("%a\n", d);
}

static void conversions(long long wide, unsigned long long unsigned_wide, double d) {
  printf("%a %a %a\n", (double)wide, (float)wide, (double)unsigned_wide);
  printf("%a %a\n", (float)unsigned_wide, (double)(float)d);
  printf("%d %u %lld %llu\n", (int)d, (unsigned)d, (long long)d, (unsigned long long)d);
  printf("%d %d %d\n", (signed char)d, (short)d, (_Bool)d);
}

int main(void) {
  struct point p = add(corner, 0.7), local = {1, 2};
  unsigned i;
  double nothing = 0, infinite = 1 / nothing, nan = infinite - infinite;
  for (i = 0; i < sizeof table / sizeof *table; i++)
    printf("%a %g\n", table[i], table[i]);
  for (i = 0; i < 4; i++)
    printf("%a\n", floats[i]);
  printf("%a %a %a %a %d %d %d\n", p.x, p.y, folded, negative, truncated, rounded_up, byte);
  printf("%a %a %a %a\n", local.x, local.y, single(1.1f, 2.2f), old_style(1.1f, 3.0));
  arithmetic(1.25, -3.7);
  arithmetic(0, 1e308);
  arithmetic(nan, 1);
  arithmetic(infinite, -infinite);
  steps();
  conversions(-9007199254740993LL, 18446744073709551615ULL, 100.99);
  conversions(9223372036854775807LL, 16777217, 1.5);
  printf("%.3f %10.2e|%-8.1f|%+g %s\n", 3.14159, 31415.9, 2.5, 1e10, sqrt(2) > 1.41 ? "yes" : "no");
  printf("%a %a\n", fabsf(-1.5f), sqrt(-0.0));
  printf("%.9g\n", __sqrtf(2.0f));
  return 0;
}
