// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Anonymous unions outside of classes: their members are names of the scope around
// them (C++11 9.5 p5).

static union { int number; float real; struct { int deep; }; };
namespace n {
static union { int z; };
namespace { union { int needs_no_static; }; }
}
// CHECK: line [[#@LINE+1]]: error #367: anonymous union at global or namespace scope must be declared static
union { int external; };
int copy = number + n::z + n::needs_no_static;

int uses() {
  union { int x; char y; struct { short s; }; };
  x = 1;
  s = deep;
  ::real = 1.0f;
  static union { int q; long r; };
  q = x;
  { union { int x; }; x = 3; }
  auto of_static = [] { return number + q; };
  // CHECK: line [[#@LINE+1]]: error #2003: a member of an anonymous union of an enclosing function
  auto of_automatic = [=] { return y; };
  return *&x + r + of_static() + of_automatic() + sizeof(y);
}

void conflicts() {
  int x;
  // CHECK: line [[#@LINE+1]]: error #102: "x" has already been declared
  union { int x; int w; };
  // CHECK: line [[#@LINE+1]]: error #102: "w" has already been declared
  union { int w; };
  // CHECK: line [[#@LINE+1]]: error #148: declaration is incompatible with field
  union { int v; }; int v;
  // CHECK: line [[#@LINE+1]]: error #2818: an anonymous union must have at least one member
  union { };
  // CHECK: line [[#@LINE+1]]: error #365: a member of an anonymous union may not have this access
  union { int k; private: int l; };
  // CHECK: line [[#@LINE+1]]: error #81: a storage class is not allowed here
  register union { int m; };
}
// CHECK: errors detected
