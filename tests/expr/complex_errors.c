// RUN: %krtparse --no_code_gen --c99 %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// RUN: %krtparse --no_code_gen --c99 --strict -DSTRICT %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=STRICT %s < %t.out
// RUN: %krtparse --no_code_gen -DGNU %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=GNU %s < %t.out
// What complex and imaginary values can't do.
typedef double _Complex cd;

#if defined STRICT
// STRICT: line [[@LINE+1]]: error: a floating-point type must be included in the type specifier
_Complex no_base;
void steps(cd z, double _Imaginary i) {
  // STRICT: line [[@LINE+1]]: error: complex type is not allowed
  z++;
  // STRICT: line [[@LINE+1]]: error: complex type is not allowed
  --i;
}
#elif defined GNU
// GNU: line [[@LINE+1]]: error: the result of the complex operation is out of range
cd big = (1e308 + 1.0i) * (1e308 + 1.0i);
// GNU-NEXT: line [[@LINE+1]]: error: complex integral types are not supported
cd integral = 1i;
cd in_code(void) {
  // GNU-NEXT: line [[@LINE+1]]: warning: the result of the complex operation is out of range
  return (1e308 + 1.0i) * 10.0;
}
#else
// CHECK: line [[@LINE+1]]: error: _Complex can only be used with floating-point types
_Complex int of_int;
// CHECK-NEXT: line [[@LINE+1]]: error: duplicate specifier in declaration
double _Complex _Complex twice;
// CHECK-NEXT: line [[@LINE+1]]: error: invalid combination of type specifiers
double _Complex _Imaginary both;
void operators(cd z, double _Imaginary i, double* p, struct s* s) {
  // CHECK-NEXT: line [[@LINE+1]]: error: expression must have integral or enum type
  z % 2;
  // CHECK-NEXT: line [[@LINE+1]]: error: complex type is not allowed
  z < 1;
  // CHECK-NEXT: line [[@LINE+1]]: error: complex type is not allowed
  i >= i;
  // CHECK-NEXT: line [[@LINE+1]]: error: expression must have integral or enum type
  p[z];
  // CHECK-NEXT: line [[@LINE+1]]: error: expression must have integral or enum type
  switch (z) {}
  // CHECK-NEXT: line [[@LINE+1]]: error: invalid type conversion
  p = (double*)z;
  // CHECK-NEXT: line [[@LINE+1]]: error: a value of type "double *" cannot be assigned
  z = p;
  // CHECK-NEXT: line [[@LINE+1]]: error: __real and __imag require a complex operand
  __real(p) = 1;
  // CHECK-NEXT: line [[@LINE+1]]: warning: __real or __imag is applied to a real value
  p[0] = __imag(3);
  // CHECK-NEXT: line [[@LINE+1]]: error: the operand must be a real floating-point value
  z = __builtin_complex(1, 2.0);
  // CHECK-NEXT: line [[@LINE+1]]: error: the operands of __builtin_complex must have
  z = __builtin_complex(1.0f, 2.0);
  // CHECK-NEXT: line [[@LINE+1]]: error: expression must be an lvalue
  p = &__real(z + z);
}
#endif
