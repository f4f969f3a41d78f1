// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Definitions in the old style, promotions of arguments, formats of printf. */
int printf(const char *format, ...);

int old_style(a, b, c, p)
unsigned char a;
short b;
int c;
char *p;
{
  a += 10;
  return a + b * c + *p;
}

int implicit_int(n) {
  return n * 2;
}

static int no_prototype();

static unsigned char narrow(unsigned char c) {
  return c + 1;
}

static short narrow_short(int n) {
  return n;
}

static long long wide(long long a, int b, unsigned char c, long long d) {
  return a * b - c + d;
}

static int many(int a, int b, int c, int d, int e, int f, int g, int h, int i, int j) {
  return a + 2 * b + 3 * c + 4 * d + 5 * e + 6 * f + 7 * g + 8 * h + 9 * i + 10 * j;
}

static int evaluated(int *n) {
  return ++*n;
}

static int no_prototype(a, s)
int a;
char *s;
{
  return a + s[0];
}

int main(void) {
  signed char small = -5;
  int n = 0;

  printf("%d\n", old_style(250, -3, 1000, "A"));
  printf("%d %d\n", implicit_int(21), no_prototype(1, "B"));
  printf("%d %d %d\n", narrow(255), narrow(1000), narrow_short(70000));
  printf("%lld\n", wide(1LL << 33, 3, 300, -1));
  printf("%d\n", many(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
  printf("%d %d %d\n", small, (char)-5, narrow(small));
  printf("%d\n", evaluated(&n));
  (void)evaluated(&n);
  printf("%d\n", n);
  printf("%d %u %x %X %o %c %s %%\n", -1, -1, 255, 255, 8, 'c', "s");
  printf("[%5d] [%-5d] [%05d] [%+d] [% d] [%.3d] [%8.3d]\n", 42, 42, 42, 42, 42, 42, 42);
  printf("[%10s] [%-10s] [%.2s] [%*s] [%-*d] [%.*s]\n", "abc", "abc", "abc", 6, "abc", 4, 7, 1,
         "abc");
  printf("[%#x] [%#o] [%08x] [%3c] [%lld] [%llu] [%llx]\n", 255, 8, 0xBEEF, 'x', -1LL, -1LL,
         1LL << 36);
  printf("[%hhd] [%hd] [%hhu] [%hu]\n", 300, 70000, 300, 70000);
  return 0;
}
