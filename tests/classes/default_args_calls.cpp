// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// Calls that leave arguments out, and calls of member functions (C++11 8.3.6,
// 5.2.2, 13.3).

int defaults(int a, int b = 2, const char *c = "x");
int defaults(int a, int b, const char *);
struct S {
  int get();
  int get() const;
  static int count(int n = 1);
  int on_lvalue() &;
  int on_rvalue() &&;
  void set(int);
  int chosen(int);
  char *chosen(const char *);
  double chosen(double, int = 0);
  virtual int v();
};
struct D : S { int own; int v(); };
typedef int (*an_int_pointer);
int good(S &s, const S &c, D &d) {
  char *text = s.chosen("a");
  double number = s.chosen(1.0) + s.chosen(1.0, 2);
  int sum = defaults(1) + defaults(1, 3) + defaults(1, 3, "y");
  sum += s.get() + c.get() + s.count() + S::count(2) + s.on_lvalue() + d.get() + d.v();
  sum += d.S::v() + (&d)->chosen(3) + d.own;
  return sum + (text != 0) + static_cast<int>(number);
}

void bad(S &s, const S &c, const D &d) {
  // CHECK: line [[#@LINE+1]]: error #1162: the object has type qualifiers that are not compatible with function "S::set"
  c.set(1);
  // CHECK: line [[#@LINE+1]]: error #1162:
  d.set(1);
  // CHECK: line [[#@LINE+1]]: error #2993: function "S::on_rvalue" is &&-qualified
  s.on_rvalue();
  // CHECK: line [[#@LINE+1]]: error #306: no instance of overloaded function "chosen" matches
  s.chosen(s);
  // CHECK: line [[#@LINE+1]]: error #{{[0-9]+}}: a nonstatic member reference must be relative
  S::set(1);
  // CHECK: line [[#@LINE+1]]: error #{{[0-9]+}}: too few arguments in function call
  defaults();
  // CHECK: line [[#@LINE+1]]: error #{{[0-9]+}}: a pointer to a bound function may only be used to call
  s.set;
  // CHECK: line [[#@LINE+1]]: error #{{[0-9]+}}: struct "S" has no member "none"
  s.none();
  // CHECK: line [[#@LINE+1]]: error #260: "this" may only be used inside a nonstatic member function
  this;
}

// ---- Friends ----

void declared_before(S &, int);
struct Befriends {
  // CHECK: line [[#@LINE+1]]: error #2984:
  friend void declared_before(S &, int = 1) { }
  friend void declared_behind(Befriends &, int = 1) { }
  friend void without_default(Befriends &, int) { }
};
// CHECK: line [[#@LINE+1]]: error #1704: {{.*}}"declared_behind"
void declared_behind(Befriends &, int);
void without_default(Befriends &, int);
// CHECK: 11 errors detected
