// _Bool is an integer in the file: conversions and operators that must leave 0
// or 1 are spelled out.
// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

_Bool b;

// CHECK-LABEL: begin_func f
// CHECK: (ASG:unsigned char (NAME:unsigned char b) (SCONV:unsigned char (NEQ:int (NAME:char* %p) (LCON:char* 0))))
// CHECK-NEXT: {{.*}}(ASG:unsigned char (NAME:unsigned char b) (SCONV:unsigned char (NEQ:int (PLUS:int (SCONV:int (NAME:unsigned char b)) (NAME:int %n)) (LCON:int 0))))
// CHECK-NEXT: {{.*}}(ASG:unsigned char (NAME:unsigned char b) (LCON:unsigned char 1))
// CHECK-NEXT: {{.*}}(ASG:unsigned char (NAME:unsigned char b) (SCONV:unsigned char (EXCLAIM:int (NAME:unsigned char b))))
// CHECK-NEXT: {{.*}}(CBRANCH:void (NAME:unsigned char b)
int f(char *p, int n) {
  b = p;
  b += n;
  ++b;
  --b;
  if (b)
    return b;
  return 0;
}
// CHECK: type {{[0-9]+}} uchar unsigned char size 8 align 8 explicit_sign boolean_int
