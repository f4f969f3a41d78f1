// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --c99 --i_output_file=%t.if -DTYPES_ONLY %s && %ifdump %t.if | %FileCheck --check-prefix=TYPES %s

/* A complex value is a struct, each operation a routine with a body of its own in
   the unit, whatever number of times it is called. */
_Complex double unused(_Complex double);
_Complex double stored;
#ifndef TYPES_ONLY
_Complex double half(_Complex double d) {
  return d / 2 + stored / d;
}
_Complex float f(_Complex float x) {
  return x != 0 ? x : -x;
}
#endif
// The bodies come first: the next pass may put them in the place of the calls.
// CHECK: begin_func __c99_complex_double_divide
// CHECK-NOT: begin_func __c99_complex_double_divide
// CHECK: begin_func __c99_complex_float_ne
// CHECK: (RETURN:int ({{.*}} (EXCLAIM:int (ANDAND:int (FEQ:int
// CHECK: begin_func __c99_complex_float_negate
// CHECK: UMINUS:float
// CHECK: begin_func half
// CHECK: CALL:struct _Complex_double (NAME:struct _Complex_double(struct _Complex_double, struct _Complex_double) __c99_complex_double_add)
// CHECK: begin_func f
// CHECK: csu struct _Complex_double size 128 align 8 complete
// CHECK-NEXT: mdata 1 _Vals double[2] offset 0
// CHECK: symbol __c99_complex_double_add class static {{.*}} qualifiers 0x000c

// TYPES-NOT: begin_func
// TYPES: csu struct _Complex_double
// TYPES-NOT: __c99
