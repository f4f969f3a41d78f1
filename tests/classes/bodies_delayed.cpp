// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not="): error" < %t.err
// What a class delays until the outermost class is complete: bodies, default
// arguments, exception specifications and field initialisers (C++11 9.2 p2).

// ---- Members that are declared later ----

struct Later {
  int sum() const { return a + b() + value + Nested().get() + this->a; }
  int with_default(int n = b() + value) { return n; }
  void nothrow() noexcept(sizeof(a) > sizeof(char));
  int initialized = value * 2 + b();
  Later *self = this;
  int listed{value};
  struct Nested {
    int get() { return value + inner; } // waits for Later
    int inner = 3;
  };
  static int b() { return 1; }
  int a;
  static const int value = 4;
  friend int friendly(Later &l) { return l.hidden + value; }
private:
  int hidden;
};
int use(Later &l) { return l.with_default() + l.with_default(1) + l.sum() + friendly(l); }

// A body that is out of the class sees the class behind its name.
struct Outside {
  int size();
  void take(int n = limit);
  enum { limit = 3 };
  int limit_of_this;
};
int Outside::size() { return limit + limit_of_this; }

// Local classes are finished where they end.
int local(int n) {
  struct Local {
    int twice() { return 2 * m; }
    int m;
  } l;
  l.m = n;
  if (n)
    return l.twice();
  return l.m;
}

// ---- Faults in what is delayed ----

struct Faulty {
  // CHECK-DAG: line [[#@LINE+1]]: error #20: identifier "nowhere" is undefined
  int f() { return nowhere; }
  // CHECK-DAG: line [[#@LINE+1]]: error #20: identifier "unknown" is undefined
  int field = unknown;
  // CHECK-DAG: line [[#@LINE+1]]: error #810: unexpected end of default argument expression
  void two(int n = 1 2);
  // CHECK-DAG: line [[#@LINE+1]]: error #308: a default argument must not be followed
  void gap(int a = 1, int b, int c);
  // CHECK-DAG: line [[#@LINE+1]]: error #{{[0-9]+}}: a nonstatic member reference must be relative
  void member(int a = field);
  // CHECK-DAG: line [[#@LINE+1]]: error #{{[0-9]+}}: a parameter is not allowed here
  void parameter(int a, int b = a);
  void unevaluated(int a, int b = sizeof a);
};
// The later parameters of `gap` have what no message names again.
void calls(Faulty &f) { f.gap(); f.unevaluated(1); }

// ---- Exception specifications of overriders (C++11 15.4 p5) ----

struct Base {
  virtual void strict() noexcept(sizeof(later) == sizeof(int));
  int later;
};
struct Derived : Base {
  // CHECK-DAG: line [[#@LINE+1]]: error #769: the exception specification of "Derived::strict"
  void strict();
};
// CHECK: 7 errors detected
