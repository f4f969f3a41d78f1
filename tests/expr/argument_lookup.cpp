// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// The arguments of a call bring in functions beside the one that its name means
// (C++11 3.4.2).

void one(int);
void friendly(int);
namespace n {
struct C { friend void friendly(C); };
void one(C);
void local(C);
}
void local(int);
void calls(n::C c) {
  one(c);
  one(3);
  friendly(c);
  n::one(c);
  // CHECK: line [[#@LINE+1]]: error #169: argument of type "n::C" is incompatible
  (one)(c);
  // CHECK: line [[#@LINE+1]]: error #169: argument of type "n::C" is incompatible
  ::one(c);
  void local(int);
  // CHECK: line [[#@LINE+1]]: error #169: argument of type "n::C" is incompatible
  local(c);
}
// CHECK: errors detected
