// Aggregates of a function: cleared, copied from data, or assigned.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --scalar_replacement --i_output_file=%t.scalar.if %s
// RUN: %ifdump %t.scalar.if | %FileCheck %s --check-prefix=SCALAR

struct pair {
  int a, b;
};

// CHECK-LABEL: begin_func constant
// CHECK: (CALL:void* {{.*}}memset{{.*}} (COMMA:void (COMMA:void (PCONV:void* (UAND:char[100]* (NAME:char[100] %zero))) (LCON:int 0)) (LCON:unsigned 100)))
// CHECK-NEXT: {{.*}}(ARASG:int[3] (NAME:int[3] %data) (NAME:const int[3] [[DATA:[^ ]+]]))
// CHECK-NEXT: {{.*}}(STASG:struct pair (NAME:struct pair %p) (NAME:struct pair %q))
// CHECK-NEXT: {{.*}}(CALL:void* {{.*}}memset{{.*}} (UAND:char[4]* (NAME:char[4] %text))
// CHECK-NEXT: {{.*}}(ARASG:float[2] (NAME:float[2] %floats) (NAME:const float[2] {{[^ ]+}}))
// CHECK-NEXT: {{.*}}(STASG:struct outer (NAME:struct outer %o) (NAME:const struct outer {{[^ ]+}}))
int constant(struct pair q) {
  char zero[100] = {0};
  int data[3] = {1, 2, 3};
  struct pair p = q;
  char text[4] = "";
  // Only integers that are zero show as such.
  float floats[2] = {0.0f};
  struct outer { struct pair in; } o = {{0}};
  return zero[1] + data[1] + p.a;
}

// Values of run time that fill the object need no data.
// CHECK-LABEL: begin_func run_time
// CHECK: end_locals
// CHECK-NEXT: {{.*}}(ASG:int (STDOT:int (NAME:struct pair %p) (FIELD:int pair::a)) (NAME:int %n))
// CHECK-NEXT: {{.*}}(ASG:int (STDOT:int (NAME:struct pair %p) (FIELD:int pair::b)) (PLUS:int {{.*}}))
// CHECK-NEXT: {{.*}}(ARASG:int[9] (NAME:int[9] %mixed) (NAME:const int[9] [[MIXED:[^ ]+]]))
// CHECK-NEXT: {{.*}}(ASG:int (UMULT:int (PLUS:int* (UAND:int* (NAME:int[9] %mixed)) (PMCONV:long (LCON:long 1) (ICON:long 32)))) (NAME:int %n))
int run_time(int n) {
  struct pair p = {n, n + 1};
  int mixed[9] = {5, n};
  return p.a + mixed[1];
}

// CHECK: init [[MIXED]]
// CHECK-NEXT: (LCON:const int 5)
// CHECK-NEXT: (LCON:const int 0)
// CHECK-NEXT: (SKIP:int 7)
// CHECK: init [[DATA]]
// CHECK-NEXT: (LCON:const int 1)
// CHECK-NEXT: (LCON:const int 2)
// CHECK-NEXT: (LCON:const int 3)

// A class that stands for its scalar is assigned as one, but without a value it
// is cleared.
// SCALAR-LABEL: begin_func scalars
// SCALAR: (ASG:int (NAME:int %one) (LCON:int 1))
// SCALAR-NEXT: (CALL:void* {{.*}}memset{{.*}} (UAND:int* (NAME:int %none))
// SCALAR-NEXT: (ASG:int (UMULT:int (NAME:int* %p)) (PLUS:int (NAME:int %one) (NAME:int %none)))
struct single { int a; };
void scalars(struct single *p) {
  struct single one = {1}, none = {};
  p->a = one.a + none.a;
}
