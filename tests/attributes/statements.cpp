// RUN: ! %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='{{error|warning}} #' < %t.err
// Attributes of statements, and of declarations in their midst.

void statements(int n) {
  [[QL::unroll(4)]] for (int i = 0; i < n; ++i) [[QL::unroll(2)]] while (n) --n;
  // CHECK: line [[#@LINE+1]]: error #855: attribute unroll must immediately precede for/while/do-while
  [[QL::unroll(4)]] n = 1;
  // CHECK: line [[#@LINE+1]]: error #860: unroll parameter must be greater than zero
  [[QL::unroll(0)]] do --n; while (n);
  // CHECK: line [[#@LINE+1]]: error #2104: attribute "noreturn" does not apply here
  [[noreturn]] n = 2;
  [[]] n = 3;
  [[]] { n = 4; }
  [[deprecated]] int declared = n;
  [[deprecated]] typedef int local_type;
  __attribute__((unused)) static int gnu_declared;
  // CHECK: line [[#@LINE+1]]: warning #1291-D: "declared"
  n = declared;
  // CHECK: line [[#@LINE+1]]: error #2543: attributes require a declaration
  [[deprecated]] static_assert(1, "");
  // CHECK: line [[#@LINE+1]]: warning #1173-D: unknown attribute "fallthrough"
  __attribute__((fallthrough));
label:
  __attribute__((unused));
}
