// RUN: (%krtparse --c99 --display_error_number --i_output_file=%t.if %s; echo status=$?) 2>&1 | %FileCheck %s

/* No complex arithmetic is written yet: one error in a file, and no file. */
_Complex double half(_Complex double d) {
  return d / 2;
}
// CHECK: {{[Ee]}}rror #1816: "complex arithmetic" not allowed
_Complex float f(_Complex float x) {
  return x + x;
}
// CHECK-NOT: 1816
// CHECK: status=2
