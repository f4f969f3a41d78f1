// RUN: %krtparse --version=2 --display_error_number --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// RUN: test ! -e %t.if
struct large {
  int a[12];
} large;
struct ten {
  int a[10];
} ten;
int buf[5], n;
char c;
void f(int local) {
  __xin(10, 1, 0, buf);
// CHECK: line [[@LINE-1]] {{.*}}error #2586: Register R2 is used for the stack pointer
  __xin(10, 1, 1, buf);
  __xin(10, 3, 0, buf);
  __xin(256, 4, 0, c);
// CHECK-NEXT: line [[@LINE-1]] {{.*}}error #23:
  __xin(n, 4, n, c);
// CHECK-NEXT: line [[@LINE-1]] (col. 9): error #664:
// CHECK-NEXT: line [[@LINE-2]] (col. 15): error #664:
  __xin(10, 32, 0, ten);
// CHECK-NEXT: line [[@LINE-1]] (col. 13): error #23:
  __xin(10, 4, 0, large);
// CHECK-NEXT: line [[@LINE-1]] {{.*}}error #2554: The size of the second parameter to __xin must be less than 45 bytes. The size of "struct large" is 48 bytes.
  __xin(10, 22, 0, ten);
// CHECK-NEXT: line [[@LINE-1]] {{.*}}error #2585: Cannot use base register 22 to access a type of size 40
  __xin(10, 21, 0, ten);
  _symval((void *)5);
// CHECK-NEXT: line [[@LINE-1]] {{.*}}error #2635: The argument to _symval must be the address of a global scope variable
  // An ordinary function from here on.
  _symval((void *)(&n + 1));
  __delay_cycles(n);
// CHECK-NEXT: line [[@LINE-1]] {{.*}}error #664:
// CHECK-NEXT: 9 errors detected
}
