// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifrun %t.if | %FileCheck %s
// RUN: %ifdump %t.if | %FileCheck %s --check-prefix=FILE
// Imaginary values keep one part only: products of two are real, sums with a
// real value are complex, and conversions between real and imaginary give zero.

int printf(const char* format, ...);

typedef double _Imaginary di;
typedef double _Complex dc;

static double imag(di value) {
  union { di from; double to; } u;
  u.from = value;
  return u.to;
}

static void show(const char* name, dc value) {
  printf("%s: %g %g\n", name, __real(value), __imag(value));
}

static di unit = 1.0 * __I__;

int main(void) {
  di a = 2 * unit, b = 3 * unit;
  double r = 6;
  float _Imaginary f = a;
  show("sum", a + b);
  show("difference", a - b);
  show("real and imaginary", r + a);
  show("imaginary and real", a + r);
  show("real less imaginary", r - a);
  show("imaginary less real", a - r);
  show("with complex", a * (r + b));
  show("steps", f + 1.0);
  printf("product %g quotient %g\n", a * b, b / a);
  printf("scaled %g %g\n", imag(a * r), imag(b / r));
  printf("inverse %g\n", imag(r / a));
  printf("negative %g\n", imag(-a));
  printf("compared %d %d %d %d\n", a == a, a == b, a == r, a != r);
  printf("truth %d %d\n", !a, a ? 1 : 0);
  r = a;
  printf("converted %g", r);
  a = 4.0;
  printf(" %g", imag(a));
  a = 7.0 + 8.0 * __I__;
  printf(" %g\n", imag(a));
  a += b;
  b *= 2;
  printf("assigned %g %g", imag(a), imag(b));
  a *= b;
  printf(" %g\n", imag(a));
  return 0;
}
// CHECK: sum: 0 5
// CHECK-NEXT: difference: 0 -1
// CHECK-NEXT: real and imaginary: 6 2
// CHECK-NEXT: imaginary and real: 6 2
// CHECK-NEXT: real less imaginary: 6 -2
// CHECK-NEXT: imaginary less real: -6 2
// CHECK-NEXT: with complex: -6 12
// CHECK-NEXT: steps: 1 2
// CHECK-NEXT: product -6 quotient 1.5
// CHECK-NEXT: scaled 12 0.5
// CHECK-NEXT: inverse -3
// CHECK-NEXT: negative -2
// CHECK-NEXT: compared 1 0 0 1
// CHECK-NEXT: truth 0 1
// CHECK-NEXT: converted 0 0 8
// CHECK-NEXT: assigned 11 6 0

// FILE-DAG: typedef _Imaginary_float size 32 align 8 of float
// FILE-DAG: csu struct _Complex_double size 128 align 8 complete
// FILE-DAG: mdata 1 _Vals double[2] offset 0
// FILE-DAG: symbol __c99_complex_double_multiply class static
