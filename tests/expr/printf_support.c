// What the chosen printf of the library can't do.
// RUN: %krtparse -n --display_error_number --printf_support=minimal %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err
// RUN: %krtparse -n --display_error_number --printf_support=nofloat %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck --check-prefix=NOFLOAT %s --implicit-check-not='{{error|warning|remark}} #' < %t.err
// RUN: %krtparse -n --display_error_number --printf_support=full %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck --allow-empty --check-prefix=FULL %s < %t.err
// FULL-NOT: #263

#pragma __printf_args
extern int print(const char *format, ...);
#pragma __scanf_args
extern int scan(const char *format, ...);
void f(void) {
  int i = 1;
  print("%d %s %c %x %o %%", i, "s", i, i, i);
  // CHECK: line [[#@LINE+1]]: warning #2632-D: the modifier 5.2l is not supported by the level of printf support that was chosen
  print("%5.2ld", 1L);
  // CHECK: line [[#@LINE+2]]: warning #2631-D: the conversion %f is not supported by the level of printf support that was chosen
  // NOFLOAT: line [[#@LINE+1]]: warning #2631-D: the conversion %f is not supported
  print("%.2f", 1.0);
  scan("%3f", (float *)0);
}
