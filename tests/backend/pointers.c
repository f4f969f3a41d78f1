// Pointer arithmetic is scaled in bits, steps of ++ and -- in bytes.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

struct pair {
  int a;
  char b;
} pairs[4];
int table[2][3];

// CHECK-LABEL: begin_func arithmetic
// CHECK: (ASG:int* (NAME:int* %p) (PLUS:int* (NAME:int* %p) (PMCONV:long (SCONV:long (LCON:int 1)) (ICON:long 32))))
// CHECK-NEXT: {{.*}}(ASG:int* (NAME:int* %p) (PLUS:int* (NAME:int* %p) (PMCONV:long (NAME:long %l) (ICON:long 32))))
// CHECK-NEXT: {{.*}}(MINUSASG:struct pair* (NAME:struct pair* %q) (PMCONV:long (SCONV:long (LCON:int 2)) (ICON:long 40)))
// CHECK-NEXT: {{.*}}(PLUSPLUS:struct pair* (NAME:struct pair* %q) (ICON:int 5))
// CHECK-NEXT: {{.*}}(MINUSASG:int* (NAME:int* %p) (ICON:int 4))
// CHECK-NEXT: {{.*}}(RETURN:long (NAME:{{.*}} arithmetic) (PVCONV:long (MINUS:long (NAME:int* %p) (NAME:int* %p)) (ICON:long 32)))
long arithmetic(int *p, struct pair *q, long l) {
  p = p + 1;
  p = l + p;
  q -= 2;
  q++;
  --p;
  return p - p;
}

// The address of an element needs no UAND, a function through a pointer no UMULT.
// CHECK-LABEL: begin_func addresses
// CHECK: (ASG:char* {{.*}} (UAND:char* (STDOT:char (UMULT:struct pair (PLUS:struct pair* (UAND:struct pair* (NAME:struct pair[4] pairs)) (PMCONV:long (SCONV:long (NAME:int %i)) (ICON:long 40)))) (FIELD:char pair::b))))
// CHECK-NEXT: {{.*}}(ASG:int* {{.*}} (PLUS:int* (PLUS:int* (UAND:int[3]* (NAME:int[2][3] table)) (PMCONV:long (SCONV:long (NAME:int %i)) (ICON:long 96))) (PMCONV:long (SCONV:long (LCON:int 2)) (ICON:long 32))))
// CHECK: (RETURN:int {{.*}} (CALL:int (NAME:int(int)* %f) (NAME:int %i)))
int addresses(int i, int (*f)(int)) {
  char *c = &pairs[i].b;
  int *t = &table[i][2];
  return (*f)(i);
}
