// What the file gets: room is asked for, and given back on each way out.
// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s

// CHECK: begin_func f
// CHECK: (ASG:unsigned (NAME:unsigned %$P$T0) (SCONV:unsigned (NAME:int %n)))
// CHECK: __vla_alloc) (COMMA:void (PCONV:void* (UAND:int** (NAME:int* %a))) (MULT:unsigned (LCON:unsigned 4) (NAME:unsigned %$P$T0))))
// CHECK: (ASG:int (NAME:int [[VALUE:%\$P\$T[0-9]+]]) (UMULT:int (PLUS:int* (NAME:int* %a)
// CHECK: __vla_dealloc) (PCONV:void* (UAND:int** (NAME:int* %a))))
// CHECK: (RETURN:int (NAME:int(int) f) (NAME:int [[VALUE]]))
int f(int n) {
  int a[n];
  a[0] = n;
  return a[0];
}

// CHECK: begin_func g
// CHECK: __vla_alloc
// CHECK: __vla_dealloc
// CHECK: BRANCH
// CHECK: __vla_dealloc
void g(int n) {
  for (;;) {
    int a[n];
    a[0] = n;
    if (a[0])
      break;
  }
}
