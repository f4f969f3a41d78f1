// RUN: %krtparse --gcc --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %ifrun %t.if
// All uses of a complex constant in a function have one static; other functions
// find the constant as it was.
typedef double _Complex cd;

static cd first(cd z) {
  z += 1.0 + 2.0i;
  z *= 1.0 + 2.0i;
  return z == 1.0 + 2.0i ? z : z - (3.0 + 0.0i);
}
static cd second(cd z) {
  return z - (1.0 + 2.0i);
}
static cd kept = 1.0 + 2.0i;

int main(void) {
  cd z = second(first(0.0 + 0.0i));
  return z != -7.0 + 2.0i || kept != 1.0 + 2.0i;
}
// CHECK: begin_func first
// CHECK: __c99_complex_double_add{{.*}} [[SHARED:[$]P[$]T[0-9$]+]])
// CHECK: __c99_complex_double_multiply{{.*}} [[SHARED]])
// CHECK: __c99_complex_double_eq{{.*}} [[SHARED]])
// CHECK-SAME: __c99_complex_double_subtract
// CHECK-NOT: [[SHARED]])
// CHECK: begin_func second
