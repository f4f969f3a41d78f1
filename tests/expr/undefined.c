// RUN: %krtparse --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// A name that nothing declares is reported once in each function.
int f(void) {
  missing = 1;
// CHECK: line [[@LINE-1]]: error #20:
  return missing + missing[2] + missing(3);
}
int g(void) {
  int later;
  later = missing;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  {
    int missing = 2;
    later += missing;
  }
  return later + absent.field + sizeof absent;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
}
int missing;
int h(void) { return missing; }
int file_scope = nowhere;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
int again = nowhere;
int nowhere; // a declaration takes the name
char checked[sizeof nowhere == sizeof(int) ? 1 : -1];
void proto(int n, char a[sizeof n], char b[n]);
// CHECK-NEXT: line [[@LINE-1]]: error #413:
typedef int T;
int k(void) { return T + 1; }
// CHECK-NEXT: line [[@LINE-1]]: error #256:
