// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Member functions: their declarators, the words in front of them, and what may
// be declared again (C++11 9.3, 9.4, 12, 13.1, 13.5).

struct S {
  S();
  S(int) { }
  S(const S &);
  ~S();
  S &operator=(const S &);
  operator int *() const;
  int operator[](int) const;
  void *operator new(decltype(sizeof 0));
  void operator delete(void *);
  static int count();
  int get() const { return 1; }
  int get() { return 1; }
  virtual int later();
  friend int helper(S &);
  friend void defined_here(S &s) { s.member = 2; }
private:
  int member;
};
S::S() { }
S::~S() { }
S::operator int *() const { return 0; }
int S::operator[](int i) const { return i; }
S &S::operator=(const S &other) { return *this; }
int S::count() { return 1; }
int S::later() { return 2; }

// ---- Words ----

struct Words {
  // CHECK: line [[#@LINE+1]]: error #379: "virtual" is not allowed here
  virtual Words();
  // CHECK: line [[#@LINE+1]]: error #774: "explicit" is not allowed here
  explicit void f();
  // CHECK: line [[#@LINE+1]]: error #316: a static member function may not be virtual
  virtual static void g();
  // CHECK: line [[#@LINE+1]]: error #380: "static" is not allowed here
  static ~Words();
  // CHECK: line [[#@LINE+1]]: error #1936: a static member function may not have a qualifier
  static void h() const;
  // CHECK: line [[#@LINE+1]]: error #438: a conversion function must be a nonstatic member function
  static operator int();
  // CHECK: line [[#@LINE+1]]: error #722: "mutable" is not allowed here
  mutable void m();
  // CHECK: line [[#@LINE+1]]: error #328: "inline" is not allowed here
  inline int field;
};
// CHECK: line [[#@LINE+1]]: error #241: invalid specifier outside a class declaration
virtual int outside();

// ---- Declarators of special functions ----

struct Special {
  // CHECK: line [[#@LINE+1]]: error #1018: a return type may not be specified on a destructor
  void ~Special();
  // CHECK: line [[#@LINE+1]]: error #410: a copy constructor for class "Special" may not have a parameter of type "Special"
  Special(Special);
  // CHECK: line [[#@LINE+1]]: error #1937: a constructor or destructor may not have a qualifier
  Special(int) const;
  // CHECK: line [[#@LINE+1]]: error #345: a conversion function may not have parameters
  operator int(int);
  // CHECK: line [[#@LINE+1]]: error #454: a conversion function may not have a return type
  int operator char();
  // CHECK: line [[#@LINE+1]]: error #407: member function with the same name as its class must be a constructor
  int Special(char);
  // CHECK: line [[#@LINE+1]]: warning #556-D: function "Special::operator Special &" will not be called
  operator Special &();
};
struct WithParams {
  // CHECK: line [[#@LINE+1]]: error #409: a destructor may not have parameters
  ~WithParams(int);
};

// ---- Redeclaration ----

struct Again {
  void f(int);
  // CHECK: line [[#@LINE+1]]: error #405: member function "Again::f" has already been declared
  void f(int);
  void f(int) const;
  // CHECK: line [[#@LINE+1]]: error #754: a static and a nonstatic member function
  static void f(int);
  // CHECK: line [[#@LINE+1]]: error #313: functions that differ only in their return type
  int f(int);
  int field;
  // CHECK: line [[#@LINE+1]]: error #102: "field" has already been declared
  void field();
  typedef int T;
  // CHECK: line [[#@LINE+1]]: error #1587: typedef "T" has already been declared in this class
  typedef int T;
};

// ---- Outside of the class ----

struct Outside {
  void f(int);
  static int s;
  int m;
  struct Nested { typedef int T; T g(T); };
};
struct Derived : Outside { };
void Outside::f(int) { }
Outside::Nested::T Outside::Nested::g(T t) { return t; }
int Outside::s = 1;
// CHECK: line [[#@LINE+1]]: error #148: declaration is incompatible with "void Outside::f(int)"
void Outside::f(char) { }
// CHECK: line [[#@LINE+1]]: error #246: qualified name is not a member of class "Outside"
void Outside::missing() { }
// CHECK: line [[#@LINE+1]]: error #248: a nonstatic data member may not be defined outside its class
int Outside::m = 2;
// CHECK: line [[#@LINE+1]]: error #300: an inherited member may not be redeclared here
void Derived::f(int) { }
// CHECK: line [[#@LINE+1]]: warning #394-D: member function "Outside::f" may not be redeclared outside its class
void Outside::f(int);
// CHECK: line [[#@LINE+1]]: error #304: function "Outside::f"
void Outside::f(int) { }
// CHECK: errors detected
