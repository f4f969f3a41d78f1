// The comments in front of functions that a class defines.
// RUN: %krtparse --c++ -n --remarks --display_error_number %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err

struct a_class {
  /*ARGSUSED*/
  a_class(int unused) {}
  // CHECK: line [[#@LINE+1]]: remark #880-D:
  int reported(int unused) { return 1; }
  /*ARGSUSED*/ int quiet(int unused) { return 1; }
  /*ARGSUSED*/
  int declared(int unused);
  int ends(int n) {
    for (; n; --n) {
      /*NOTREACHED*/
    }
    /*NOTREACHED*/
  }
};
// CHECK: line [[#@LINE+1]]: remark #880-D:
int a_class::declared(int unused) { return 1; }
