// RUN: %krtparse --c99 --remarks --i_output_file=%t.if %s 2>&1 | %FileCheck %s --check-prefix=REMARK
// RUN: %ifdump %t.if | %FileCheck %s

/* Constants by their shortest text; double arithmetic that can be single. */
float f, g;
double d;
int i;
short s;

double constants[] = {0.1, 1e100, 100.0, -0.0, 5e-324};
// CHECK-LABEL: constants
// CHECK: FCON {{.*}}0.1
// CHECK: FCON {{.*}}1e+100
// CHECK: FCON {{.*}}100
// CHECK: FCON {{.*}}-0
float singles[] = {0.1f, 16777217.0f};

void narrowed(void) {
  f = g * 3.0;         // both sides exact
  f = g * 0.1;         // the constant isn't
  d = g * 3.0;         // the product goes to a double
  f = s + 0.5;         // a short is exact
  f = i + 0.5;         // an int isn't
  f += 2.0;
  i = f < 3.0;
  i = f < 0.1;
  i = d < 3.0;
}
