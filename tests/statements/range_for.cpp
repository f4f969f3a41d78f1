// RUN: %krtparse --g++ --gnu_version=60000 -n --no_warnings --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// Range-based for (C++11 6.5.4): what the loop runs over, and its variable.

int use(int);
struct nobody { int x; };
extern int unbounded[];

void arrays(int n) {
  int a[3] = {1, 2, 3};
  int m[2][2] = {{1, 2}, {3, 4}};
  for (int x : a)
    use(x);
  for (auto &x : a)
    x = 3;
  for (const auto &x : a)
    // CHECK: line [[#@LINE+1]]: error #138: expression must be a modifiable lvalue
    x = 4;
  for (char c : "abc")
    use(c);
  for (auto &row : m)
    for (int x : row) {
      if (x)
        continue;
      break;
    }
  for (int x : a) {
    // CHECK: line [[#@LINE+1]]: error #3161: "x", declared as iterator of range-based "for" statement, may not be redeclared in this scope
    int x;
  }
  // CHECK: line [[#@LINE+1]]: error #20: identifier "x" is undefined
  use(x);
  for (int n : a) { // hides the parameter, which the range still sees
    use(n);
  }
  for (int inner : a)
    for (int a : m[inner])
      use(a);
}

void faults(nobody n) {
  int a[2] = {1, 2};
  // CHECK: line [[#@LINE+1]]: error #145: a value of type "int" cannot be used to initialize an entity of type "int *"
  for (int *p : a)
    use(*p);
  // CHECK: line [[#@LINE+1]]: error #20: identifier "undefined" is undefined
  for (int x : undefined)
    use(x);
  // CHECK: line [[#@LINE+1]]: error #2651: this range-based "for" statement requires "begin", which is undefined
  for (auto x : n)
    use(x);
  // CHECK: line [[#@LINE+1]]: error #2647: a range-based "for" statement cannot be used on incomplete array type "int []"
  for (int x : unbounded)
    use(x);
  for (int x : a) {
  inside:
    use(x);
  }
  // CHECK: line [[#@LINE+2]]: error #548: transfer of control bypasses initialization of:
  // CHECK-NEXT: variable "x"
  goto inside;
}
