// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=174,176,552,177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=': error' --implicit-check-not=': warning' < %t.err
// Init-captures (C++14 5.1.2 p11), captures through nested lambdas, and what the
// return statements of a lambda deduce.

int good(int a, int b) {
  auto values = [a, x = b + 1, &y = b]() mutable {
    x++;
    y = x;
    return [x, &y] { return x + y; }() + a;
  };
  auto forms = [x{1}, y(2), z = 1.5] { return x + y; };
  auto by_value = [x = a] { return [=] { return [&] { return x; }(); }(); };
  auto constant = [=] { return [&] { return a; }(); };
  auto by_default = [=] { return [a] { return a; }(); };
  return values() + forms() + by_value() + constant() + by_default();
}

void bad(int a) {
  // CHECK: line [[@LINE+1]]: error #2030: "a"
  auto twice = [a, a = 1] { return a; };
  // CHECK: line [[@LINE+1]]: error #20: {{.*}}"nowhere"
  auto undefined = [x = nowhere] { return 1; };
  // CHECK: line [[@LINE+1]]: error #1999:
  auto function = [bad] { return 1; };
  // CHECK: line [[@LINE+1]]: error #2726:
  auto braced = [] { return {1, 2}; };
  // CHECK: line [[@LINE+1]]: error #2906: {{.*}}"double"{{.*}}"int"
  auto two_types = [](int i) { if (i) return 1; return 2.0; };
  // CHECK: line [[@LINE+1]]: error #1816: "generic lambda"
  auto generic = [](auto i) { return i; };
}

struct Object {
  int member;
  int nested() { return [this] { return [=] { return member; }(); }(); }
  unsigned long unevaluated() { return [] { return sizeof(member) + sizeof(this->member); }(); }
  // CHECK: line [[@LINE+1]]: error #2007:
  int not_captured() { return [] { return member; }(); }
};
