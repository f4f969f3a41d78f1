// The initializer of `auto` is read twice, its pragmas act once.
// RUN: %krtparse --c++ --g++ --gnu_version=60000 -n --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err

int g(int);
void f() {
  auto value = 1 +
// CHECK: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
      2;
  // The pragma of the loop finds it.
  auto closure = [](int k) {
#pragma UNROLL(2)
// CHECK-NEXT: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
    while (k)
      --k;
// CHECK-NEXT: line [[#@LINE+1]]: error #610: this pragma must immediately precede a statement
#pragma UNROLL(2)
  };
  closure(g(value));
}
// One that waits for the end of the file outlives a faulty initializer.
auto faulty =
#pragma OWL_REG("a", "b")
// CHECK-NEXT: line [[#@LINE+1]]: error #20: identifier "unknown" is undefined
    unknown;
auto later =
#pragma OWL_REG(1, "b")
    3;
// CHECK-NEXT: line [[#@LINE-2]]: error #821: badly formed pragma
