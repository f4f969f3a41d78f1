// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// The access of a member depends on the class in which it is named: on the bases on
// the way to it, and on using-declarations (C++11 11.2 p5, 7.3.3).

struct Base {
  int field;
  void set();
  void set(int);
  static int shared;
protected:
  int kept;
  void run();
};
class Private : Base {
public:
  using Base::kept;
  using Base::run;
};
class Protected : protected Base {
  void inside() { field = 1; set(); kept = 2; }
public:
  using Base::set;
  // CHECK: line [[#@LINE+1]]: error #267: field "Base::kept" is inaccessible
  int h(Protected *p, Private *q, Base *b) { return p->kept + q->kept + b->kept; }
};
void outside(Private p, Protected q) {
  p.kept = 3;
  p.run();
  q.set();
  q.set(3);
  // CHECK: line [[#@LINE+1]]: error #267: field "Base::field" is inaccessible
  p.field = 1;
  // CHECK: line [[#@LINE+1]]: error #267: function "Base::set" is inaccessible
  p.set(3);
  // CHECK: line [[#@LINE+1]]: error #267: member "Base::shared" is inaccessible
  p.shared = 1;
  // CHECK: line [[#@LINE+1]]: error #267: field "Base::field" is inaccessible
  (&q)->field = 2;
  // CHECK: line [[#@LINE+1]]: error #267: field "Base::field" is inaccessible
  p.Private::field = 4;
  p.Private::kept = 4;
}

// ---- Conversions to bases (C++11 4.10 p3) ----

struct Public : Base { };
class Inside : Base {
  Base *up() { return this; }
  friend Base &befriended(Inside &i) { return i; }
};
void convert(Public *p, Inside *i) {
  Base *to_public = p;
  // CHECK: line [[#@LINE+1]]: error #271: conversion to inaccessible base class "Base" is not allowed
  Base *to_private = i;
  // CHECK: line [[#@LINE+1]]: error #271: conversion to inaccessible base class "Base" is not allowed
  Base &reference = *i;
  to_private = (Base *)i;
}

// ---- Using-declarations of overloaded functions ----

struct Twice : Base {
  using Base::set;
  // CHECK: line [[#@LINE+1]]: error #995: duplicate using-declaration of overloaded function "set"
  using Base::set;
  using Base::Base;
  // CHECK: line [[#@LINE+1]]: error #995: duplicate using-declaration of struct "Base"
  using Base::Base;
};
struct Hides : Base {
  void set(int);
  using Base::set;
};
void call(Twice t, Hides h) { t.set(3); h.set(3); h.set(); }

// ---- Access declarations ----

struct Types : private Base { struct Other; Base::field; };
struct WithType { typedef int T; };
struct Shows : private WithType { WithType::T; };
Shows::T of_type;

// ---- Friends that are overloaded ----

struct Friendly {
  friend void known(Friendly, int);
  friend void known(Friendly, long);
  friend void hidden(int);
  friend void hidden(long);
  friend void defined(Friendly) { }
  // CHECK: line [[#@LINE+1]]: error #304: function "defined" has already been defined
  friend void defined(Friendly) { }
};
void hidden(char *);
void use(Friendly f) {
  known(f, 3);
  // CHECK: line [[#@LINE+1]]: error #306: no instance of overloaded function "known"
  known(f);
}
void not_found() {
  // CHECK: line [[#@LINE+1]]: error #306: no instance of function "hidden"
  hidden(3);
}
// CHECK: errors detected
