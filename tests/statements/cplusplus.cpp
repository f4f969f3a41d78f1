// RUN: %krtparse --g++ --gnu_version=60000 -n --exceptions --no_warnings --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// Declarations in conditions and loops, handlers, and the scopes of their names
// (C++11 6.4, 6.5, 15.3).

struct incomplete;
struct base {};
struct derived : base {};
int use(int);

void scopes(int n) {
  for (int i = 0; i < n; i++)
    use(i);
  int i = n; // another one
  for (int i = 1; int k = n - i; i++)
    use(k);
  if (int x = n) {
    use(x);
    // CHECK: line [[#@LINE+1]]: error #707: "x", declared in condition, may not be redeclared in this scope
    int x = 2;
  } else {
    use(-x);
  }
  // CHECK: line [[#@LINE+1]]: error #20: identifier "x" is undefined
  use(x);
  // CHECK: line [[#@LINE+2]]: error #782: "j", declared in for-loop initialization, may not be redeclared in this scope
  for (int j = 0; j < n; j++) {
    int j;
  }
  if (n)
    int only_here = 1;
  // CHECK: line [[#@LINE+1]]: error #20: identifier "only_here" is undefined
  use(only_here);
  switch (int y = n) {
  case 1:
    use(y);
  }
  // CHECK: line [[#@LINE+1]]: error #706: expected a declarator with an initializer in the condition
  if (int array[2] = n)
    ;
  // CHECK: line [[#@LINE+1]]: error #706:
  while (int uninitialised)
    ;
label:
  int labelled = i;
  use(labelled);
}

void handlers() {
  try {
    throw 1;
  } catch (int e) {
    // CHECK: line [[#@LINE+1]]: error #1286: declaration of "e" hides handler parameter
    int e;
  } catch (const derived &) {
  } catch (...) {
  }
  try {
  } catch (...) {
    // CHECK: line [[#@LINE+1]]: error #534: this handler is masked by the default handler
  } catch (int) {
  }
  try {
    // CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
  } catch (incomplete) {
    // CHECK: line [[#@LINE+1]]: error #2060: a handler may not have rvalue reference type
  } catch (int &&) {
    // CHECK: line [[#@LINE+1]]: error #533: a handler requires an exception declaration
  } catch () {
  }
  try {
  }
  // CHECK: line [[#@LINE+1]]: error #532: a try block requires at least one handler
}

int function_block(int p) try {
  return p;
  // CHECK: line [[#@LINE+1]]: error #1279: parameter "p" may not be redeclared in a catch clause of function try block
} catch (int p) {
  return 1;
} catch (...) {
  return 2;
}

// A function inside another one leaves the statements around it alone.
void around_a_local_class(int n) {
  switch (n) {
    struct local {
      void f() {
        // CHECK: line [[#@LINE+1]]: error #117: a break statement may only be used within a loop or switch
        break;
      }
    };
  case 1:
    break;
  }
}
