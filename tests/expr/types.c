// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// What each operator asks of the types of its operands (C99 6.5).
struct s { int n; } s1;
struct h *hp;
union u { int a; } u1;
enum e { E1 } e1;
int *ip, (*fp)(int);
char *cp;
void f(int a) {
  a = s1 + 1;
// CHECK: line [[@LINE-1]]: error #902:
  a = 1 - s1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  a = ip + ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  a = ip * 2;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  a = a - ip;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  ip = hp + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  a = cp - ip;
// CHECK-NEXT: line [[@LINE-1]]: error #1047:
  a = ip % 2;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  a = ip & 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  a = 1 << ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  a = ~ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  a = -ip;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  a = +s1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  a = !s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  a = s1 && 1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  a = 0 || s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  a = s1 < 1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  a = s1 == s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  a += ip;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  ip *= 2;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  ip <<= 1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  a %= ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  if (s1)
// CHECK-NEXT: line [[@LINE-1]]: error #903:
    ;
  while (u1)
// CHECK-NEXT: line [[@LINE-1]]: error #903:
    ;
  switch (ip) {
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  }
  a = s1 ? 1 : 2;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  a = e1 + 1, a = e1 << 1, a = !ip, a = ip && cp, a = ip ? 1 : 2, a = -e1;
}
