// RUN: %krtparse --c99 --check_misra=12.8 --display_error_number %s > %t.out 2>&1 && %FileCheck %s < %t.out
// A shift count is measured by the type of the left operand before its promotion.
unsigned char c;
unsigned short s;
unsigned u;
void f(void) {
  u = c << 7;
  u = s >> 15;
  u = u << 31;
  // CHECK: line [[@LINE+1]]: warning #1407-D:
  u = c << 8;
  // CHECK: line [[@LINE+1]]: warning #1407-D:
  u = s >> 16;
  // CHECK: line [[@LINE+1]]: warning #1407-D:
  u = u << -1;
  // CHECK: line [[@LINE+1]]: warning #1407-D:
  u = (unsigned char)5 << 8;
  // CHECK: line [[@LINE+1]]: warning #1407-D:
  u = 1u << 32;
  c <<= 7;
  // CHECK: line [[@LINE+1]]: warning #1407-D:
  c <<= 8;
  // CHECK: line [[@LINE+1]]: warning #1407-D:
  u >>= 32;
}
// The value is that of the promoted type.
// CHECK: line [[@LINE+1]]: warning #1407-D:
int value[((unsigned char)5 << 8) == 1280 ? 1 : -1];
// CHECK-NOT: line
