// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=174,176,552,177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=': error' --implicit-check-not=': warning' < %t.err
// Captures of arrays, lambdas in braced lists, and one message for each fault.

struct Copied { Copied(); Copied(const Copied &); };
struct Uncopied { Uncopied(); Uncopied(const Uncopied &) = delete; };
struct Caller {
  int operator()(int);
  // The closure's own operator has no name in the body.
  void call() { [this] { return operator()(42); }(); }
};
void good(int a, int size) {
  int array[3];
  Copied objects[2][3];
  enum { first };
  auto by_copy = [array, objects] { return array[1]; };
  auto by_default = [=] { return array[2] + sizeof(objects[0][0]); };
  int list[] = {[] { return 1; }(), [a](int b) { return a + b; }(2), [&] { return a; }()};
  [](int b) noexcept __attribute__((noinline)) -> int { return b; }(1);
  [=]() mutable __attribute__((noinline, cold)) { return a; }();
  int (*converted)(int) = (int (*)(int))[](int b) { return b; };
  converted = static_cast<int (*)(int)>([](int b) { return b + 1; });
  (+[](int b) { return b; })(1);
  auto left = [] { };
  auto right = [] { };
  void (*chosen)() = left ? left : +right;
  if (left == right || !left)
    chosen();
  struct Taker { Taker(void (*)()) { } } taker([] { });
  void function();
  void (&reference)() = function;
  [reference] { reference(); }();
  [=] { reference(); }();
  int designated[] = {[first] = 1, [2] = 3, [0]{4}};
}

void bad(int a, int b) {
  Uncopied uncopied, array[2];
  // CHECK: line [[@LINE+1]]: error #2009: {{.*}}"uncopied"{{.*}}"Uncopied"
  auto copies = [uncopied] { };
  // CHECK: line [[@LINE+1]]: error #2009: {{.*}}"array"
  auto copies_array = [=] { return array[0]; };
  auto refers = [&uncopied, &array] { };
  // CHECK: line [[@LINE+1]]: error #1861:
  auto list = [x = {1, 2}, a] { return a; };
  // CHECK: line [[@LINE+1]]: error #41:
  auto two_defaults = [&, =] { return 1; };
  // CHECK: line [[@LINE+1]]: error #41:
  auto number = [1, a] { return a; };
  // CHECK: line [[@LINE+1]]: error #41:
  auto ends_with_comma = [a, ] { return a; };
  // CHECK: line [[@LINE+1]]: error #17:
  auto no_comma = [a b] { return a; };
  // CHECK: line [[@LINE+1]]: error #2027:
  auto no_parentheses = [] mutable { return 1; };
  // CHECK: line [[@LINE+1]]: error #2004:
  auto in_nested = [] { return [a] { return a; }(); };
  // CHECK: line [[@LINE+1]]: error #2029:
  auto qualified = []() const { return 1; };
  // CHECK: line [[@LINE+1]]: error #2027:
  auto no_body = [a];
  auto recovered = [a] { return a; };
  recovered();
}
