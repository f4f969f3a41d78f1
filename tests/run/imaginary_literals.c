// RUN: gcc -std=gnu99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: %krtparse --gcc --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if | diff - %t.expected
// RUN: %krtparse --gcc --c99 --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if | diff - %t.expected
// Imaginary literals of GNU C give what its complex values of no real part give,
// whether the language has imaginary types or not.

int printf(const char* format, ...);

#define SHOW(z)                                                                                    \
  ({                                                                                               \
    double _Complex value = (z);                                                                   \
    printf("%s: %g %g\n", #z, __real__ value, __imag__ value);                                     \
  })

static void folded(void) {
  SHOW(2.0i * 3.0i);
  SHOW(6.0i / 2.0i);
  SHOW(3.0 / 2.0i);
  SHOW(2.0i / 4);
  SHOW(1 - 2.0i);
  SHOW(2.0i - 1);
  SHOW(2.0i + 1.0fi);
  SHOW(__real__ 1.0i);
  SHOW(__imag__ 3.0i);
  SHOW(__builtin_complex(1.0, -0.0) * 2.0i);
  printf("%d %d %d %d\n", 1.0i == 1.0i, 1.0i != 1.0, !1.0i, 1.0i && 1);
  printf("%d %d %d\n", (_Bool)1.0i, (int)1.0i, (int)sizeof(__imag__ 1.0fi));
}

static void computed(double d, int i) {
  SHOW(d * 2.0i);
  SHOW(2.0i / d);
  SHOW(d / 2.0i);
  SHOW(2.0i - d);
  SHOW(d * 1.0i * 2.0i);
  SHOW(d * 1.0i / 2.0i);
  SHOW(i * 1.0i * i * 1.0i);
  SHOW(d ? 1.0i : 2.0);
  SHOW(__imag__(d * 3.0i));
  SHOW(__imag__ ~(d * 2.0i));
  printf("%d %d %d\n", d * 1.0i == d * 1.0i, d * 0.0i == 0, d == d * 1.0i);
  printf("%d %d", d * 1.0i && i, d * 0.0i || d * 0.0i);
  printf(" %d %d\n", d * 0.0i ? 1 : 2, !(d * 1.0i));
  while (d * 1.0i)
    printf("turn %g\n", d--);
}

int main(void) {
  folded();
  computed(3, 4);
  return 0;
}
