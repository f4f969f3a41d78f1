// Comments that act as pragmas.
// RUN: %krtparse --remarks --display_error_number %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err

// CHECK: line [[#@LINE+1]]: remark #880-D:
int reported(int unused) { return 1; }
/*ARGSUSED*/
int quiet(int unused) { return 1; }
/*ARGSUSED*/ int prototype(int unused);
// CHECK: line [[#@LINE+1]]: remark #880-D:
int reported_again(int unused) { return 1; }
/*VARARGS1*/
int printed(const char *format, ...);
int ends(void) {
  prototype(1);
  /*NOTREACHED*/
}
