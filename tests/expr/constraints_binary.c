// RUN: %krtparse -n --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// The constraints of binary operators (C99 6.5.5 to 6.5.14).
struct s { int n; } s1;
struct hidden *hp;
int arr[3], *ip, i, (*fp)(void), zero_div;
const int *cip;
char *cp;
void *vp, nothing(void);
unsigned u;
double d;
_Bool flag;
void multiplicative(void) {
  i = i * d / u % 3 * flag;
// CHECK: line [[@LINE-1]]: error #901:
  i = ip * 2;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = 2 / ip;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = s1 * 1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = d % 2;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = 2 % d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = ip % 2;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = nothing() * 2;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = i / 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #40-D:
  i = i % 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #181-D:
}
void additive(void) {
  ip = ip + 1, ip = 1 + ip, ip = ip - 1, i = ip - arr, i = ip - cip, i = i + d;
  ip = ip + ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  ip = ip + d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  ip = 1 - ip;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = ip - cp;
// CHECK-NEXT: line [[@LINE-1]]: error #1047:
  i = ip - 1.0;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  ip = hp + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  ip = fp + 1;
// CHECK-NEXT: line [[@LINE-1]]: warning #515-D:
  i = s1 + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = s1 - s1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
// CHECK-NEXT: line [[@LINE-2]]: error #902:
  i = ip - d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = vp - vp;
}
void shifts(void) {
  i = i << 1 >> u << flag;
  i = i << d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = d >> 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = ip << 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = 1 << s1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = i << 32;
// CHECK-NEXT: line [[@LINE-1]]: warning #64-D:
  i = i << -1;
// CHECK-NEXT: line [[@LINE-1]]: warning #63-D:
  i = 1 >> 40;
// CHECK-NEXT: line [[@LINE-1]]: warning #64-D:
}
void relational(void) {
  i = i < d, i = ip < arr, i = ip >= cip, i = u > 1;
  i = ip < cp;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  i = ip < 5;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  i = ip > d;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  i = s1 < s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = s1 < 1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = vp < fp;
  i = u < 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #188-D:
  i = u >= 0;
// CHECK-NEXT: line [[@LINE-1]]: warning #188-D:
}
void equality(void) {
  i = i == d, i = ip == 0, i = ip != vp, i = fp == 0, i = ip == cip, i = 0 == vp;
  i = ip == cp;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  i = ip == i;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  i = fp != ip;
// CHECK-NEXT: line [[@LINE-1]]: warning #43-D:
  i = ip == d;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  i = s1 == s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = nothing() == 0;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = u == -1;
// CHECK-NEXT: line [[@LINE-1]]: warning #516-D:
  i = &i == 0;
}
void bitwise(void) {
  i = (i & u) | (flag ^ 3);
  i = i & d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = d | 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = ip ^ 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = s1 & 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
}
void logical(void) {
  i = i && d || ip && fp;
  i = s1 && 1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = 1 || s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = nothing() && 1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
}
