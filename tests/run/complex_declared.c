// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifrun %t.if | %FileCheck %s
// A program that declares the names of the routines for complex operations: one
// of the right type is the routine, its body too; any other is none of them.
typedef double _Complex cd;
int printf(const char* format, ...);
cd __c99_complex_double_add();
cd __c99_complex_double_subtract(cd z);
int __c99_complex_double_eq(double a, double b);
int __c99_complex_double_negate;
cd __c99_complex_double_multiply(cd a, cd b);

static cd f(cd z) {
  return z == z ? -(z - 1) + z : z;
}
int main(void) {
  cd z = f(5), w = z * 2;
  printf("%g %g\n", (double)z, (double)w);
  return 0;
}
// CHECK: 1 8
cd __c99_complex_double_multiply(cd a, cd b) {
  __real(a) = 8;
  return a;
}
