// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Classes with the attribute "base_check" say what they override and hide.

struct Base { virtual void f(); virtual void g(); int field; typedef int T; };
struct [[base_check]] Checked : Base {
  [[override]] void f();
  // CHECK: line [[#@LINE+1]]: error #2161: overriding virtual function "Checked::g" of a "base_check" class
  void g();
  // CHECK: line [[#@LINE+1]]: error #2164: {{.*}}"Checked::field" hides an inherited member
  int field;
  [[hiding]] typedef char T;
  // CHECK: line [[#@LINE+1]]: error #2163: the attribute "hiding" is given on
  int fresh [[hiding]];
};
struct Unchecked : Base { void g(); int field; };
// CHECK: errors detected
