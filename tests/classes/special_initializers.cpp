// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// The initialisers of constructors (C++11 12.6.2).

struct Member { Member(int); Member(const Member &); ~Member(); int v; };
struct WithDefault { WithDefault(); };
struct Base { Base(int, int = 0); };
struct VirtualBase { VirtualBase(); };

struct Good : Base, virtual VirtualBase {
  int a, b;
  const int c;
  int &r;
  Member m;
  WithDefault array[2][3];
  int zero[4];
  union { int u; float f; };
  int with_init = 3;
  Good(int a) : Base(a), a(a), b(a + 1), c(2), r(b), m(3), zero(), u(1) { }
  Good() : Good(3) { }
  Good(char *);
};
Good::Good(char *) : Base(1, 2), a{1}, b(this->a), c(), r(a), m(Member(1)) { a = b; }

struct Bad : Base {
  int a, b;
  const int c;
  int &r;
  // CHECK-DAG: line [[#@LINE+1]]: error #294: "nothing" is not a nonstatic data member or base class of class "Bad"
  Bad(int) : Base(1), nothing(3), c(1), r(a) { }
  // CHECK-DAG: line [[#@LINE+1]]: error #361: field "Bad::a" has already been initialized
  Bad(char) : Base(1), a(1), c(1), r(a), a(2) { }
  // CHECK-DAG: line [[#@LINE+1]]: error #359: base class "Base" has already been initialized
  Bad(short) : Base(1), Base(2), c(1), r(a) { }
  // CHECK-DAG: line [[#@LINE+2]]: error #862: a reference may not be initialized by default
  // CHECK-DAG: line [[#@LINE+1]]: error #1110: const field "Bad::c" has no initializer
  Bad(long) : Base(1) { }
  // CHECK-DAG: line [[#@LINE+1]]: error #293: no default constructor exists for class "Base"
  Bad(float) : c(1), r(a) { }
  // CHECK-DAG: line [[#@LINE+1]]: warning #1988{{.*}}: field "Bad::a" will be initialized before field "Bad::b"
  Bad(double) : Base(1), b(1), a(2), c(1), r(a) { }
  // CHECK-DAG: line [[#@LINE+1]]: error #2807: a delegation to another constructor must be the only initializer
  Bad(int, int) : Bad(1), a(1) { }
  // CHECK-DAG: line [[#@LINE+1]]: error #147: too many initializer values
  Bad(int, char) : Base(1), a(1, 2), c(1), r(a) { }
};
struct Array {
  int zero[2];
  // CHECK-DAG: line [[#@LINE+1]]: error #776: a member of array type cannot be initialized
  Array() : zero(1) { }
};
union Union {
  int i;
  float f;
  // CHECK-DAG: line [[#@LINE+1]]: error #881: another member of the union has already been initialized
  Union() : i(1), f(2) { }
};
