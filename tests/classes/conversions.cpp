// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Conversion functions (C++11 12.3.2): their declarations, and the conversions that
// they make.

struct Int { operator int(); };
struct Text { operator const char *() const; };
struct Test { explicit operator bool() const; };
struct Ref { operator int &(); };
struct Base { operator int() const; operator long() const; };
struct Derived : Base { operator int() const; };
struct Pointer { operator int *(); };
struct Target { };
struct Source { operator Target(); };
struct Enum { enum X { a }; operator X(); };
struct Secret { private: operator int(); };
struct Virtual { virtual operator int(); };
struct Overrides : Virtual { operator int() override; };
void take_int(int);
void take_text(const char *);
void take_target(Target);
void take_reference(int &);
void take_const(const int &);
void choose(int);
void choose(Target);

int good(Int i, Text s, Test b, Ref r, Derived d, Pointer p, Source t, Enum e) {
  int n = i;
  n = i + 1;
  n += i;
  if (i || b) { }
  while (b) break;
  bool q = b ? true : !b && b;
  bool direct(b);
  switch (i) { case 1: ; }
  switch (e) { case Enum::a: ; }
  int array[3];
  array[i] = *p + p[1];
  int &bound = r;
  long l = d.operator long() + d.Base::operator int() + d.operator int();
  const char *text = s;
  take_int(i);
  take_text(s);
  take_target(t);
  take_reference(r);
  take_const(i);
  choose(i);
  choose(t);
  Target made = t, cast = (Target)t, named = static_cast<Target>(t);
  made = t;
  delete p;
  n = (int)i + static_cast<int>(i) + int(i) + static_cast<bool>(b);
  double real = b ? i : n;
  real = b ? 2.5 : r;
  Base sliced = b ? d : Base();
  return i + q + direct + bound + l + *text + real;
}

void bad(Int i, Test b, Derived d, Pointer p, Secret s, const Int constant) {
  // CHECK: line [[#@LINE+1]]: error #145: a value of type "const Int" cannot be used to initialize
  int n = constant;
  // CHECK: line [[#@LINE+1]]: error #420: more than one conversion function from "Derived" to a built-in type
  n = d + 1;
  // CHECK: line [[#@LINE+1]]: error #145: a value of type "Test" cannot be used to initialize
  bool q = b;
  // CHECK: line [[#@LINE+1]]: error #351: no operator "+" matches
  n = b + 1;
  // CHECK: line [[#@LINE+1]]: error #515: a value of type "Pointer" cannot be assigned
  n = p;
  // CHECK: line [[#@LINE+1]]: error #136: struct "Pointer" has no member "operator char"
  n = p.operator char();
  // CHECK: line [[#@LINE+1]]: error #2409: expression must have integral or unscoped enum type
  switch (p) { }
  // CHECK: line [[#@LINE+1]]: error #351: no operator "~" matches
  ~p;
  // CHECK: line [[#@LINE+1]]: error #145: a value of type "Int" cannot be used to initialize
  int &bound = i;
  // CHECK: line [[#@LINE+1]]: error #267: function "Secret::operator int" is inaccessible
  n = s;
}
// CHECK: errors detected
