// RUN: %krtparse --no_code_gen --g++ --gnu_version=60000 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='rror #' --implicit-check-not=INTERNAL < %t.out
// Definitions of members that don't exist, or exist otherwise, end in messages.

enum A {};
// CHECK: line [[# @LINE + 1]]: error #755: "f" has no prior declaration
void A::f() {}

namespace outer {
namespace inner {
class d {
  // CHECK: line [[# @LINE + 1]]: error #80:
  void c(b);
};
// CHECK: line [[# @LINE + 4]]: error #71:
// CHECK: line [[# @LINE + 3]]: error #148:
// CHECK: line [[# @LINE + 2]]: error #20: identifier "b" is undefined
// CHECK: line [[# @LINE + 1]]: error #66:
void d::c(b) {}
}
}

class holder {
  int hidden;
  friend int taker(void);
};
// CHECK: line [[# @LINE + 1]]: error #161:
extern "C" int taker(void) {
  holder one;
  return one.hidden;
}
