// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=174,176,552,177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// Lambda expressions (C++11 5.1.2).

// ---- Captures ----

struct Object {
  int member;
  int sum(int n) {
    auto by_this = [this](int a) { return member + a; };
    auto by_default = [=] { return this->member + n + sum(1); };
    auto nested = [&] { return [&] { return member + n; }(); };
    return by_this(2) + by_default() + nested();
  }
  int initialized = [] { return 3; }();
};
int good(int x, int &r) {
  int y = 1;
  const int constant = 5;
  auto explicitly = [x, &y, &r](int z) -> int { y = z; r = z; return x + y; };
  auto mutable_copy = [=]() mutable { x = 3; return x + r; };
  auto outer = [&] {
    y++;
    auto inner = [&, x] { return y + x; };
    return inner();
  };
  int (*pointer)(int) = [](int q) { return q + 1; };
  auto nothing = [] { };
  nothing();
  auto no_capture = [] { return constant; };
  static_assert(sizeof(explicitly(1)) == sizeof(int), "");
  return explicitly(1) + mutable_copy() + outer() + pointer(3) + no_capture();
}
auto at_file_scope = [](int a, int b) { return a < b; };
bool less = at_file_scope(1, 2);

// ---- Faults ----

int file_scope_variable;
void bad(int x) {
  int y = 0;
  static int fixed;
  // CHECK: line [[#@LINE+1]]: error #138: expression must be a modifiable lvalue
  [=] { x = 3; };
  // CHECK: line [[#@LINE+1]]: error #2004: enclosing-function local variable "y" cannot be referenced
  [] { return y; };
  // CHECK: line [[#@LINE+1]]: error #2030: "x" has already been captured
  [x, x] { };
  // CHECK: line [[#@LINE+1]]: error #1998-D: the explicit capture matches the default capture mode
  [=, x] { };
  // CHECK: line [[#@LINE+1]]: error #1998-D:
  [&, &x] { };
  // CHECK: line [[#@LINE+1]]: error #260: "this" may only be used inside
  [this] { };
  // CHECK: line [[#@LINE+1]]: error #2000: variable "fixed" has static storage duration
  [fixed] { };
  // CHECK: line [[#@LINE+1]]: error #20: identifier "missing" is undefined
  [missing] { };
  // CHECK: line [[#@LINE+1]]: error #2146: parameter "x" cannot be implicitly captured: an enclosing lambda has no default capture
  [] { [=] { return x; }; };
  // CHECK: line [[#@LINE+1]]: error #2046: a lambda is not allowed in an unevaluated expression
  (void)sizeof([] { });
  // CHECK: line [[#@LINE+1]]: error #2027: expected the body of a lambda
  [x];
}
struct NeedsThis {
  int m;
  // CHECK: line [[#@LINE+1]]: error #2007: "this" cannot be used in a lambda body unless
  void f() { [] { return m; }; }
};
// CHECK: 12 errors detected
