// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.err
// A class has at most 65533 places for virtual functions; a destructor takes two.

#define F1(p) virtual void p##0(); virtual void p##1(); virtual void p##2(); virtual void p##3(); \
  virtual void p##4(); virtual void p##5(); virtual void p##6(); virtual void p##7(); \
  virtual void p##8(); virtual void p##9();
#define F2(p) F1(p##0) F1(p##1) F1(p##2) F1(p##3) F1(p##4) F1(p##5) F1(p##6) F1(p##7) F1(p##8) F1(p##9)
#define F3(p) F2(p##0) F2(p##1) F2(p##2) F2(p##3) F2(p##4) F2(p##5) F2(p##6) F2(p##7) F2(p##8) F2(p##9)
#define F4(p) F3(p##0) F3(p##1) F3(p##2) F3(p##3) F3(p##4) F3(p##5) F3(p##6) F3(p##7) F3(p##8) F3(p##9)
#define FUNCTIONS F4(a) F4(b) F4(c) F4(d) F4(e) F4(f) F3(g) F3(h) F3(i) F3(j) F3(k) \
  F2(l) F2(m) F2(n) F2(o) F2(p) F1(q) F1(r) F1(s) virtual void t(); virtual void u();

struct WithFunction {
  FUNCTIONS
  virtual void last();
};
struct WithDestructor {
  FUNCTIONS
  // CHECK: line [[#@LINE+1]]: error #318: program too large to compile (too many virtual functions)
  virtual ~WithDestructor();
};
// An overrider keeps the place that the base gave it.
struct Derived : WithFunction {
  void t();
  void last();
};
