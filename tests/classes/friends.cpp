// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Friends (C++11 11.3), using-declarations (7.3.3) and access (11).

class Secret {
  static int value;
  friend class Named;
  friend void function();
  friend int inside(Secret &) { return value; }
  friend class Outer;
};
int Secret::value = 1;
class Named { int f() { return Secret::value; } };
void function() { Secret::value = 2; }
// CHECK: line [[#@LINE+1]]: error #267: member "Secret::value"
int stranger = Secret::value;
// CHECK: line [[#@LINE+1]]: error #20: identifier "Outer" is undefined
Outer *unseen;
class Outer { };
Outer *seen;

// ---- Invalid friends ----

struct Other { void member(int); };
struct Bad {
  // CHECK: line [[#@LINE+1]]: error #524: a class may not be declared its own friend
  friend struct Bad;
  // CHECK: line [[#@LINE+1]]: error #787: a storage class is not allowed in a friend declaration
  friend static void f();
  // CHECK: line [[#@LINE+1]]: error #379: "virtual" is not allowed here
  friend virtual void g();
  // CHECK: line [[#@LINE+1]]: error #1939: a nonmember function may not have a qualifier
  friend void h() const;
  friend void Other::member(int);
  // CHECK: line [[#@LINE+1]]: error #148: declaration is incompatible with "void Other::member(int)"
  friend void Other::member(char);
  // CHECK: line [[#@LINE+1]]: error #1052: a friend function with a qualified name may not be defined in a class
  friend void Other::member(int) { }
  // CHECK: line [[#@LINE+1]]: error #279: invalid friend declaration
  friend int field;
};
namespace q { struct Inner; }
struct OfTypename { friend typename q::Inner; };

// ---- Using-declarations ----

struct Functions { void f(int); void g(); int field; protected: typedef int T; int kept; };
struct Uses : private Functions {
  using Functions::f;
  void f(char);
  Functions::g;
  using Functions::T;
  // CHECK: line [[#@LINE+1]]: error #995: duplicate using-declaration of function "Functions::f"
  using Functions::f;
  // CHECK: line [[#@LINE+1]]: error #266: invalid base class
  using Other::member;
  // CHECK: line [[#@LINE+1]]: error #136: {{.*}} has no member "missing"
  using Functions::missing;
  // CHECK: line [[#@LINE+1]]: error #741: a class-qualified name is required here
  using function;
};
Uses::T of_type;
union Union {
  // CHECK: line [[#@LINE+1]]: error #1075: a using-declaration or access declaration is not allowed in a union
  using Functions::f;
};

// ---- Access labels ----

class Labels {
  static int hidden;
public:
  static int open;
// CHECK: line [[#@LINE+2]]: error #54: expected a ":"
protected
  static int guarded;
};
int open_value = Labels::open;
// CHECK: line [[#@LINE+1]]: error #267: member "Labels::hidden"
int hidden_value = Labels::hidden;
// CHECK: errors detected
