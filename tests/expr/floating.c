// RUN: %krtparse --no_code_gen --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Floating values as operands: types of results, conversions, and what the
// operators ask of them.
double d, fd(float, double);
float fl;
long double ld;
float _Complex fc;
double _Complex dc;
struct s { double d; } s1, s2;
int i, *ip;
long long ll;
double at_file_scope = 1.5;
// The usual arithmetic conversions (C99 6.3.1.8); sizes tell the types.
char c1[sizeof(fl + 1) == sizeof(float) ? 1 : -1];
char c2[sizeof(fl + ll) == sizeof(float) ? 1 : -1];
char c3[sizeof(fl + 1.) == sizeof(double) ? 1 : -1];
char c4[sizeof(fl * 1.f) == sizeof(float) ? 1 : -1];
char c5[sizeof(fc + 1) == 2 * sizeof(float) ? 1 : -1];
char c6[sizeof(fc * d) == 2 * sizeof(double) ? 1 : -1];
char c7[sizeof(d ? fl : i) == sizeof(float) ? 1 : -1];
char c8[sizeof(d < fl) == sizeof(int) ? 1 : -1];
char c9[sizeof(-fl) == sizeof(float) ? 1 : -1];
char c10[sizeof(!d) == sizeof(int) ? 1 : -1];
char c11[sizeof((float)d) == sizeof(float) && sizeof(fl = d) == sizeof(float) ? 1 : -1];
void good(void) {
  i = d;
  d = i;
  i = 1.5 + 2.5 * d;
  d++;
  --fl;
  d += 1;
  i -= 2.5;
  i = (int)1.5;
  i = (float)i;
  i = -d;
  if (d)
    i = fd(1, 2);
  while (d < fl && fl != i)
    d = d ? d : i;
  dc = d;
  dc = fc * dc + fl;
  d = dc;
  s1 = s2;
  ip = (int *)&d;
  double local = 1.0;
  for (; local || !d;)
    local = +d;
}
// A cast alone may have a floating literal in an integral constant expression
// (C99 6.6 p6).
int a1[1.5];
// CHECK: line [[@LINE-1]]: error #901:
int a2[1 < 2.0];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
enum { e1 = 2.5 };
// CHECK-NEXT: line [[@LINE-1]]: error #901:
struct { int b : 3.0; } bits;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
int a3[(int)sizeof(1.5)];
void bad(void) {
  switch (d) {
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  case 1:;
  }
  switch (i) {
  case 1.0:;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  }
  i = dc < dc;
// CHECK-NEXT: line [[@LINE-1]]: error #1098:
  i = d >= fc;
// CHECK-NEXT: line [[@LINE-1]]: error #1098:
  i = d % 2;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = d << 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = 1 >> fl;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = ~d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = i | d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  d %= 2;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i <<= d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = ip[d];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  ip = ip + d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  ip = d;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  d = ip;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  d = s1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  i = ip == d;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  ip = (int *)d;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  d = (double)ip;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
}
