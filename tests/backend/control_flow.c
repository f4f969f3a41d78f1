// Statements become labels and branches. A CBRANCH jumps when its condition is
// false.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --size_speed_goal=low_risk_performance --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s --check-prefix=FAST

void f(int);

// CHECK: begin_func branches
// CHECK: expr {{.*}} (CBRANCH:void (LT:int {{.*}}) (LABEL:void 0))
// CHECK-NEXT: expr {{.*}} (CALL
// CHECK-NEXT: label 0
// CHECK-NEXT: expr {{.*}} (CBRANCH:void (NEQ:int (NAME:int %n) (LCON:int 0)) (LABEL:void 1))
// CHECK-NEXT: expr {{.*}} (CALL
// CHECK-NEXT: expr {{.*}} (BRANCH:void (LABEL:void 2))
// CHECK-NEXT: label 1
// CHECK-NEXT: expr {{.*}} (CALL
// CHECK-NEXT: label 2
// CHECK-NEXT: expr {{.*}} (URETURN
void branches(int n) {
  if (n < 3)
    f(1);
  if (n)
    f(2);
  else
    f(3);
}

// A short test is written twice, a long one at the bottom alone.
// CHECK: begin_func loops
// CHECK: pragma SRC_LOOP "{{.*}}control_flow.c:[[@LINE+21]]" "[[@LINE+22]]" "[[@LINE+22]]" "while" ""
// CHECK-NEXT: expr {{.*}} (CBRANCH:void (GT:int (NAME:int %n) (LCON:int 0)) (LABEL:void 1))
// CHECK-NEXT: label 0
// CHECK-NEXT: expr {{.*}} (MINMIN:int (NAME:int %n) (ICON:int 1))
// CHECK-NEXT: expr {{.*}} (CBRANCH:void (EXCLAIM:int (GT:int (NAME:int %n) (LCON:int 0))) (LABEL:void 0))
// CHECK-NEXT: label 1
// CHECK-NEXT: pragma SRC_LOOP {{.*}} "while" ""
// CHECK-NEXT: expr {{.*}} (BRANCH:void (LABEL:void 3))
// CHECK-NEXT: label 2
// CHECK-NEXT: expr {{.*}} (PLUSPLUS
// CHECK-NEXT: label 3
// CHECK-NEXT: expr {{.*}} (CBRANCH:void (EXCLAIM:int (GT:int (PLUS
// CHECK-NEXT: expr {{.*}} (ASG:int (NAME:int %n) (LCON:int 0))
// CHECK-NEXT: pragma SRC_LOOP {{.*}} "for" ""
// CHECK-NEXT: expr {{.*}} (CBRANCH:void (LT:int {{.*}} (LABEL:void 5))
// CHECK-NEXT: label 4
// CHECK-NEXT: expr {{.*}} (CALL
// CHECK-NEXT: expr {{.*}} (PLUSPLUS:int (NAME:int %n) (ICON:int 1))
// CHECK-NEXT: expr {{.*}} (CBRANCH:void (EXCLAIM:int (LT:int {{.*}} (LABEL:void 4))
// CHECK-NEXT: label 5
void loops(int n) {
  while (n > 0)
    n--;
  while (n + 1 > 0)
    n++;
  for (n = 0; n < 9; n++)
    f(n);
}

// CHECK: begin_func endless
// CHECK: pragma SRC_LOOP {{.*}} "do" ""
// CHECK-NEXT: label 0
// CHECK-NEXT: expr {{.*}} (CALL
// CHECK-NEXT: expr {{.*}} (CBRANCH:void (EXCLAIM:int {{.*}} (LABEL:void 0))
// CHECK-NEXT: pragma SRC_LOOP {{.*}} "for" ""
// CHECK-NEXT: label 1
// CHECK-NEXT: expr {{.*}} (CALL
// CHECK-NEXT: expr {{.*}} (BRANCH:void (LABEL:void 1))
void endless(int n) {
  do
    f(n);
  while (n != 1);
  for (;;)
    f(n);
}

// Labels of the source come first.
// CHECK: begin_func jumps
// CHECK: symbol %again class label {{.*}} value 0
// CHECK: label 0
// CHECK-NEXT: expr {{.*}} (CBRANCH:void {{.*}} (LABEL:void 1))
// CHECK-NEXT: expr {{.*}} (BRANCH:void (LABEL:void 0))
// CHECK-NEXT: label 1
void jumps(int n) {
again:
  if (n > 1)
    goto again;
}

// Where speed counts more, tests of up to 10 nodes are written twice.
// CHECK-LABEL: begin_func limit
// CHECK-COUNT-2: (CBRANCH:void (EXCLAIM:int
// CHECK-NOT: (CBRANCH
// CHECK: end_func
// FAST-LABEL: begin_func limit
// FAST: (CBRANCH:void (LT:int (UMINUS:int (UMINUS:int (UMINUS:int (PLUS:int
// FAST: (CBRANCH:void (EXCLAIM:int (LT:int (UMINUS:int (UMINUS:int (UMINUS:int (PLUS:int
// FAST: pragma SRC_LOOP
// FAST-NEXT: (BRANCH
// FAST: (CBRANCH:void (EXCLAIM:int (LT:int (UMINUS:int (UMINUS:int (UMINUS:int (UMINUS:int (PLUS:int
void limit(int n) {
  while (- - -(n + n) < n * n)
    n++;
  while (- - - -(n + n) < n * n)
    n--;
}

// A loop's record ends with the last line of the body, block or not, whatever
// follows.
// CHECK-LABEL: begin_func bodies
// CHECK: pragma SRC_LOOP "{{.*}}:[[@LINE+9]]" "[[@LINE+10]]" "[[@LINE+14]]" "while" ""
// CHECK: pragma SRC_LOOP "{{.*}}:[[@LINE+15]]" "[[@LINE+15]]" "[[@LINE+19]]" "for" ""
// CHECK: end_block at {{.*}}:[[@LINE+18]]:3
// CHECK: pragma SRC_LOOP "{{.*}}:[[@LINE+18]]" "[[@LINE+19]]" "[[@LINE+20]]" "do" ""
// CHECK: (PLUSPLUS:int (NAME:volatile int %steps) (ICON:int 1))
// CHECK: pragma SRC_LOOP "{{.*}}:[[@LINE+21]]" "[[@LINE+22]]" "[[@LINE+22]]" "while" ""
// CHECK: end_func
void bodies(int n) {
  int volatile steps;
  while (n > 0)
    if (n > 5)
      f(1);
    else
      f(2)
          ;

  for (;;) {
    int local = n;
    if (local)
      continue;
  }
  do
  L:
    steps++;
  while (
      n--);
  while (n)
    ;

  goto L;
}
