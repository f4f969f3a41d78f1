// RUN: %krtparse --strict --c++03 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// RUN: %krtparse --cfront_2.1 --no_code_gen --display_error_number -D=CFRONT %s 2> %t.err
// RUN: %FileCheck %s --check-prefix=OLD --implicit-check-not=error < %t.err
// RUN: %krtparse --embedded_c++ --no_code_gen --display_error_number -D=EMBEDDED %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=EMBEDDED --implicit-check-not=error < %t.err
// RUN: %krtparse --cfront_2.1 --no_code_gen --display_error_number -D=OLD_STYLE %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=STYLE < %t.err
// What classes may not have in the strict standard of 2003, what only the first
// compilers let pass, and what Embedded C++ lacks.

#if defined(CFRONT)
struct Outer { struct Nested { int q; }; };
// OLD: line [[#@LINE+1]]: warning #408-D: nested class name used without qualification (anachronism)
struct OfNested : Nested { };
struct Shared { virtual void f(); virtual int *g(); };
struct Left : virtual Shared { void f(); };
struct Right : virtual Shared { void f(); };
struct Below : Right { };
struct OneLevel : Left, Below { };
// OLD: line [[#@LINE+1]]: warning #909-D: the return type differs
struct Differs : Shared { char *g(); };
#elif defined(OLD_STYLE)
// STYLE: line [[#@LINE+1]]: error #93: identifier-list parameters
struct OldStyle { friend void nonmember(a, b) { } };
#elif defined(EMBEDDED)
struct First { }; struct Second { };
// EMBEDDED: line [[#@LINE+1]]: error #936-D: Embedded C++ does not support multiple or virtual inheritance
struct Both : First, Second { };
// EMBEDDED: line [[#@LINE+1]]: error #936-D: Embedded C++ does not support multiple or virtual inheritance
struct ByVirtual : virtual First { };
// EMBEDDED: line [[#@LINE+1]]: error #935-D: Embedded C++ does not support "mutable"
struct Changes { mutable int x; };
#else
// CHECK: line [[#@LINE+1]]: error #383-D: extra ";" ignored
struct Semicolons { int a; ; void f() { }; };
// CHECK: line [[#@LINE+1]]: error #1864: a static data member initialized in its class must have integral
struct Constant { static const double d = 1.0; };
// CHECK: line [[#@LINE+1]]: error #71{{(-D)?}}: incomplete type is not allowed
struct Flexible { int n; int array[]; };
// CHECK: line [[#@LINE+2]]: error #1065: "typename" may not be used in a friend class declaration
// CHECK: line [[#@LINE+1]]: error #453-D: omission of "class" is nonstandard in a friend declaration
struct Friends { friend typename Constant; };
struct Inherits : Constant {
  // CHECK: line [[#@LINE+1]]: error #1066: a using-declaration may not name a constructor or destructor
  using Constant::Constant;
  // CHECK: line [[#@LINE+1]]: error #774: "explicit" is not allowed here
  explicit operator int();
};
#endif
// CHECK: errors detected
// EMBEDDED: errors detected
