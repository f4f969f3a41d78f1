// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Virtual functions: overriding, final overriders, abstract classes (C++11 10.3,
// 10.4).

struct Base {
  virtual ~Base();
  virtual int f(int);
  virtual void g() const;
  virtual Base *self();
  virtual void last() final;
  void plain();
};
struct Unrelated { };

// ---- What overrides ----

struct Good : Base {
  ~Good();
  int f(int) override;
  void g() const final;
  Good *self();
  virtual void fresh() final;
};
struct Bad : Base {
  // CHECK: line [[#@LINE+1]]: error #1729: member function declared with "override" does not override
  int f(long) override;
  // CHECK: line [[#@LINE+1]]: error #1729: member function declared with "override" does not override
  void g() override;
  // CHECK: line [[#@LINE+1]]: error #319: return type is not identical to, nor covariant with
  Unrelated *self();
  // CHECK: line [[#@LINE+1]]: error #2119: overriding final
  void last();
  // CHECK: line [[#@LINE+1]]: error #2974: "final" requires a virtual function
  void plain() final;
  // CHECK: line [[#@LINE+1]]: error #316: a static member function may not be virtual
  static int f(int);
};
struct Words {
  // CHECK: line [[#@LINE+1]]: error #321: a pure specifier may only be used on a virtual function
  void f() = 0;
  // CHECK: line [[#@LINE+1]]: error #322: badly formed pure specifier
  virtual void g() = 1;
  // CHECK: line [[#@LINE+1]]: error #2118: a pure virtual function may not be final
  virtual void h() final = 0;
  // CHECK: line [[#@LINE+1]]: error #2750: a function cannot be both constexpr and virtual
  virtual constexpr int i();
};
// CHECK: line [[#@LINE+1]]: error #2288: a pure virtual function may not be defined in its class
struct PureBody { virtual void f() = 0 { } };
struct Deleted : Base {
  // CHECK: line [[#@LINE+1]]: error #2057: deleted function "Deleted::f" overrides the function "Base::f"
  int f(int) = delete;
};

struct Repeated : Base {
  // CHECK: line [[#@LINE+1]]: error #242: duplicate specifier
  int f(int) override override;
  // CHECK: line [[#@LINE+1]]: error #2974: "final" requires a virtual function
  friend void nonmember() final;
};
struct Secret : private Base { };
struct Returns { virtual Base *f(); virtual Base *g(); };
struct ReturnsSecret : Returns {
  // CHECK: line [[#@LINE+1]]: error #319: return type is not identical to, nor covariant with
  Secret *f();
  Repeated *g();
};

// ---- Final overriders ----

struct Shared { virtual void f(); virtual void g(); };
struct Left : virtual Shared { void f(); };
struct Right : virtual Shared { void f(); };
struct OneSide : virtual Shared { };
// CHECK: line [[#@LINE+1]]: error #320-D: more than one virtual function could be overridden by function "Shared::f"
struct Torn : Left, Right { };
struct Settled : Left, Right { void f(); };
struct Dominated : Left, OneSide { };
struct TwoCopiesA : Shared { void f(); };
struct TwoCopiesB : Shared { void f(); };
struct TwoCopies : TwoCopiesA, TwoCopiesB { };

// ---- Hidden functions ----

struct Overloads { virtual void f(int); virtual void f(char); virtual void g(int); };
// CHECK: line [[#@LINE+1]]: warning #614-D: overloaded virtual function
struct Partial : Overloads { void f(int); };
// CHECK: line [[#@LINE+1]]: warning #1051-D: "Hides::g" hides virtual function
struct Hides : Overloads { void g(char); };
struct Shows : Overloads { using Overloads::f; void f(int); };

// ---- Abstract classes ----

struct Abstract { virtual void f() = 0; virtual void g() = 0; };
struct Half : Abstract { void f(); };
struct Whole : Half { void g(); };
Whole whole;
// CHECK: line [[#@LINE+2]]: error #324: an object of abstract class type "Half" is not allowed:
// CHECK-NEXT: pure virtual function "Abstract::g" has no overrider
Half half;
// CHECK: line [[#@LINE+1]]: error #606: a parameter of abstract class type "Abstract" is not allowed:
struct User { void f(Abstract); };
// CHECK: line [[#@LINE+1]]: error #606: a parameter of abstract class type "Abstract" is not allowed:
void takes(Abstract);
// CHECK: line [[#@LINE+1]]: error #325: a function may not return abstract class type "Abstract":
Abstract returns();
// CHECK: line [[#@LINE+1]]: error #324: an object of abstract class type "Abstract" is not allowed:
struct Holder { Abstract member; };
Abstract *pointer;
Abstract &reference(Abstract &);
// CHECK: errors detected
