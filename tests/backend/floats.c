// RUN: %krtparse --c99 --remarks --display_error_number --i_output_file=%t.if %s > %t.out 2>&1
// RUN: %FileCheck %s --check-prefix=REMARK < %t.out
// RUN: %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --c99 --fp_mode=relaxed --i_output_file=%t.relaxed.if %s
// RUN: %ifdump %t.relaxed.if | %FileCheck %s --check-prefix=RELAXED

/* Constants by their shortest text, and double arithmetic that can be single. */
float f, g;
double d;
int i;
short s;
void take(float, double);

double constants[] = {0.1, 1e100, 1234567.0, -0.0, 5e-324};
float singles[] = {0.1f, 16777217.0f};

void narrowed(void) {
  // Both sides are exact and the result is a float's.
  f = g * 3.0;
  // CHECK: (ASG:float (NAME:float f) (MULT:float (NAME:float g) (FCON:float 3)))
  f = g * 0.1;
  // CHECK: (SCONV:float (MULT:double (SCONV:double (NAME:float g)) (FCON:double 0.1))))
  // RELAXED: (ASG:float (NAME:float f) (MULT:float (NAME:float g) (FCON:float 0.1)))
  d = g * 3.0;
  // CHECK: (ASG:double (NAME:double d) (MULT:double (SCONV:double (NAME:float g)) (FCON:double 3)))
  // REMARK: line [[@LINE-2]] {{.*}}remark #1116-D: may want to suffix float constant with an f
  f = s + 0.5;
  // CHECK: (PLUS:float (SCONV:float (NAME:short s)) (FCON:float 0.5)))
  f = i + 0.5;
  // CHECK: (PLUS:double (SCONV:double (NAME:int i)) (FCON:double 0.5))))
  f = -(double)s;
  // CHECK: (SCONV:float (UMINUS:double (SCONV:double (NAME:short s)))))
  f += 2.0;
  // CHECK: (PLUSASG:float (NAME:float f) (FCON:float 2))
  i = f < 3.0;
  // CHECK: (FLT:int (NAME:float f) (FCON:float 3)))
  i = f != 0.1;
  // CHECK: (FNEQN:int (SCONV:double (NAME:float f)) (FCON:double 0.1)))
  i = d >= 3.0;
  // CHECK: (FGE:int (NAME:double d) (FCON:double 3)))
  f++;
  // CHECK: (FCON:float 1.0)
  take(f, 1.0);
}
// REMARK-NOT: 1116

// CHECK-LABEL: init constants
// CHECK-NEXT: (FCON:double 0.1)
// CHECK-NEXT: (FCON:double 1e+100)
// CHECK-NEXT: (FCON:double 1234567)
// CHECK-NEXT: (FCON:double -0)
// CHECK-NEXT: (FCON:double 5e-324)
// CHECK-LABEL: init singles
// CHECK-NEXT: (FCON:float 0.1)
// CHECK-NEXT: (FCON:float 16777216)
