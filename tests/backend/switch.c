// A switch jumps to its dispatch, which stands behind the body.
// RUN: %krtparse --gcc --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

// CHECK: begin_func ranges
// CHECK: expr {{.*}} (BRANCH:void (LABEL:void [[D:[0-9]+]]))
// CHECK: label [[RANGE:[0-9]+]]
// CHECK: label [[DEFAULT:[0-9]+]]
// CHECK: label [[D]]
// CHECK-NEXT: expr {{.*}} (SWITCH:int 3 (NAME:int %n) (COMMA:void (COMMA:void (COMMA:void (CASE:int (LCON:int -1) (LABEL:void [[RANGE]])) (CASE:int (LCON:int 0) (LABEL:void [[RANGE]]))) (CASE:int (LCON:int 1) (LABEL:void [[RANGE]]))) (DEFAULT:void (LABEL:void [[DEFAULT]]))))
int ranges(int n) {
  switch (n) {
  case -1 ... 1:
    return 5;
  default:
    return 6;
  }
}

// CHECK: begin_func one_case
// CHECK: (SWITCH:int 1 (NAME:int %n) (CASE:int (LCON:int 2) (LABEL:void {{[0-9]+}})))
int one_case(int n) {
  switch (n) {
  case 2:
    n++;
  }
  return n;
}

// CHECK: begin_func no_case
// CHECK: expr {{.*}} (BRANCH:void (LABEL:void 0))
// CHECK-NEXT: expr {{.*}} (BRANCH:void (LABEL:void 1))
// CHECK-NEXT: label 0
// CHECK-NEXT: expr {{.*}} (SWITCH:int 0 (NAME:int %n) (DEFAULT:void (LABEL:void 1)))
// CHECK-NEXT: label 1
int no_case(int n) {
  switch (n) {
  }
  return n;
}

// The selector is promoted, and the values of the cases with it.
// CHECK: begin_func promoted
// CHECK: (SWITCH:int 2 (SCONV:int (NAME:unsigned char %c)) (COMMA:void (CASE:int (LCON:int -1) {{.*}}) (CASE:int (LCON:int 255)
int promoted(unsigned char c) {
  switch (c) {
  case -1:
    return 1;
  case 255:
    return 2;
  }
  return 0;
}

// A default that begins with _never_executed is announced before the dispatch.
// CHECK: begin_func never
// CHECK-NOT: DEFAULT_NEVER_EXECUTED
// CHECK: label
// CHECK: pragma DEFAULT_NEVER_EXECUTED
// CHECK-NEXT: (SWITCH
// CHECK-NOT: DEFAULT_NEVER_EXECUTED
// CHECK: end_func
int never(int n) {
  switch (n) {
  case 1:
    return 2;
  default: {
    _never_executed();
  }
  }
  switch (n) {
  default:
    n++;
    _never_executed();
  }
  return n;
}
