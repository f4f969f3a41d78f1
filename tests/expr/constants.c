// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// What a constant expression may not hold (C99 6.6).
int v;
const int cv = 3;
int fn(void);
int *p = &v;
char a1[v];
// CHECK: line [[@LINE-1]]: error #28:
char a2[fn()];
// CHECK-NEXT: line [[@LINE-1]]: error #60:
char a3[v = 3];
// CHECK-NEXT: line [[@LINE-1]]: error #58:
char a4[v++];
// CHECK-NEXT: line [[@LINE-1]]: error #58:
char a5[(1, 2)];
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: error #58:
char a6[1 / 0];
// CHECK-NEXT: line [[@LINE-1]]: error #40:
char a7[1 % 0];
// CHECK-NEXT: line [[@LINE-1]]: error #181:
char a8[(int)&v];
// CHECK-NEXT: line [[@LINE-1]]: error #159:
char a9[1.5 > 1];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
char b1[0 && v];
char b2[1 || v];
char b3[1 ? 2 : v];
char b4[sizeof(v++)];
char b5[sizeof(fn())];
char b6[v ? 1 : 2];
// CHECK-NEXT: line [[@LINE-1]]: error #28:
char b7[-1];
// CHECK-NEXT: line [[@LINE-1]]: error #95:
enum { E1 = v, E2 = 1 << 31, E3 = *p };
// CHECK-NEXT: line [[@LINE-1]]: error #28:
// CHECK-NEXT: line [[@LINE-2]]: error #28:
int f(int i) {
  switch (i) {
  case v:
// CHECK-NEXT: line [[@LINE-1]]: error #28:
  case 'a' + 1:
  case sizeof(int):
  case fn():
// CHECK-NEXT: line [[@LINE-1]]: error #60:
  case 1 / 0:
// CHECK-NEXT: line [[@LINE-1]]: error #40:
    break;
  }
  return E2;
}
