// RUN: %krtparse -n --c99 --remarks --display_error_number --diag_suppress=550,179,826 %s 2> %t.err
// RUN: %krtparse -n --c89 --remarks --display_error_number --diag_suppress=550,179,826 %s 2> %t.old.err
// RUN: %FileCheck %s --check-prefix=OLD < %t.old.err
// RUN: %FileCheck %s --implicit-check-not='#112' --implicit-check-not='#994' < %t.err
// What the end of a function says of its value (C99 6.9.1 p12), and who keeps
// it from being reached.

_Noreturn void stop(void);
int f(void);

int behind_stop(int a) {
  if (a)
    return 1;
  stop();
}

int by_comment(int a) {
  if (a)
    return 1;
  f();
  /* NOTREACHED */
}

int by_comment_in_a_branch(int a) {
  switch (a) {
  case 1:
    return 1;
  default:
    /* NOTREACHED */
    break;
  }
  if (a) /* NOTREACHED */
    ;
  else
    return 2;
}

int statement_behind_stop(void) {
  stop();
  f();
  return 1;
}

int known_condition(void) {
  if (1)
    return 1;
}

int by_comma(void) {
  while (1, 2)
    f();
}

// CHECK: line [[#@LINE+3]]: warning #1585-D: function declared with "noreturn" does return
_Noreturn void returns(int a) {
  if (a) stop();
}

// OLD-NOT: #994
int main(int argc, char **argv) {
  if (argc)
    stop();
  else
    stop();
}
// OLD: line [[#@LINE+4]]: remark #994-D: missing return statement at end of non-void function "reached"
// CHECK: line [[#@LINE+3]]: remark #994-D: missing return statement at end of non-void function "reached"
int reached(int a) {
  if (a) return 1; else f();
}
