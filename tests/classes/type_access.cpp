// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Access of the types that declarations name: they have the access of what is
// declared (C++11 11 p6, p7).

class A {
  typedef int I;
  I f();
  friend I g(I);
  static I x;
  class Inner;
  friend struct Friend;
  class Hidden {
  public:
    typedef int T;
    static int s;
    void m();
  };
  static I first();

protected:
  struct B { };
  typedef int PT;
};
A::I A::f() { return 0; }
A::I g(A::I p);
A::I g(A::I p) { return p; }
A::I A::x = A::first();
class A::Inner { I i; };
void A::Hidden::m() { T q; I z; q = z = 0; }
int A::Hidden::s = A::x;
struct Derived : A::B, A { PT q; A::PT z; };
struct Friend { A::I i; A::Hidden p; int m() { return A::x; } };
// A friend that another class befriends too names what it may itself.
struct Other { friend A::I g(A::I); };

// CHECK: line [[#@LINE+1]]: error #267: type "A::I" is inaccessible
A::I bad;
// CHECK: line [[#@LINE+2]]: error #267: type "A::I" is inaccessible
// CHECK: line [[#@LINE+1]]: error #267: type "A::I" is inaccessible
A::I h(A::I);
// CHECK: line [[#@LINE+1]]: error #267: class "A::Hidden" is inaccessible
A::Hidden::T t;
// CHECK: line [[#@LINE+1]]: error #267: type "A::I" is inaccessible
struct Stranger { A::I i; };
// CHECK: line [[#@LINE+1]]: error #267: struct "A::B" is inaccessible
struct Heir : A::B { };
void body() {
  // CHECK: line [[#@LINE+1]]: error #267: type "A::I" is inaccessible
  A::I v = 1;
  // CHECK: line [[#@LINE+1]]: error #267: class "A::Hidden" is inaccessible
  A::Hidden::T w = sizeof(int);
  // CHECK: line [[#@LINE+1]]: error #267: type "A::I" is inaccessible
  v = w = A::I(3);
}

// ---- Types of bases ----

class Base {
public:
  typedef int T;
  struct N { int z; };
  enum E { e1 };
};
class Private : Base { T ok; N n; E e; };
class Public : public Base { };
void inherited() {
  Public::T a = Public::T(3);
  Public::N b = {a};
  Public::E e = Public::e1;
  a = b.z + e;
  // CHECK: line [[#@LINE+1]]: error #267: type "Base::T" is inaccessible
  Private::T c = a;
  // CHECK: line [[#@LINE+1]]: error #267: constant "Base::e1" is inaccessible
  a = c + Private::e1;
}
// CHECK: line [[#@LINE+1]]: error #267: class "Base" is inaccessible
struct Grandchild : Private { Base b; };
struct GlobalName : Private { ::Base b; };
// CHECK: errors detected
