// RUN: %krtparse -n --g++ --gnu_version=60000 --diag_suppress=179,370,177,552 --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// Lists in braces wherever an object is initialised (C++11 8.5.4).

struct point { int x, y; };
struct made { made(int, int = 0); made(); ~made(); int n; };
struct guarded { explicit guarded(int); guarded(int, int); int n; };
struct needy { needy(int); };
int run_time = 3;

// ---- The value of a function ----
point point_returned() { return {1, run_time}; }
int int_returned() { return {3}; }
int zero_returned() { return {}; }
made made_returned(int n) { if (n) return {1, 2}; return {}; }
const point &reference_returned() { return {1, 2}; }
guarded two_returned() { return {1, 2}; }
// CHECK: line [[#@LINE+1]]: error #147: too many initializer values
int many_returned() { return {1, 2}; }
// CHECK-NEXT: line [[#@LINE+1]]: error #2722: invalid narrowing conversion from "int" to "char"
char narrow_returned() { return {300}; }
// CHECK-NEXT: line [[#@LINE+1]]: error #2694: copy-list-initialization cannot use a constructor marked "explicit"
guarded one_returned() { return {1}; }

// ---- Arguments, and what stands for them ----
void by_default(point p = {1, 2}, int k = {4}, const made &m = {1});
struct holds_defaults { void member(point p = {1, 2}, int = {3}); };
void take_point(point);
void take_both(const point &, int);
void take_guarded(guarded);
// CHECK-NEXT: line [[#@LINE+1]]: error #147:
void many_by_default(int k = {1, 2});
void calls() {
  take_point({1, run_time});
  take_point({});
  take_both({1}, {2});
  take_guarded({1, 2});
  by_default();
  by_default({3});
  holds_defaults().member({});
  // CHECK-NEXT: line [[#@LINE+1]]: error #2694:
  take_guarded({1});
  // CHECK-NEXT: line [[#@LINE+1]]: error #147:
  take_point({1, 2, 3});
}

// ---- Assignment ----
void assign(point p, made m, int i) {
  p = {1, run_time};
  m = {1, 2};
  i = {5};
  i = {};
  // CHECK-NEXT: line [[#@LINE+1]]: error #147:
  i = {1, 2};
  // CHECK-NEXT: line [[#@LINE+1]]: error #2698: a brace-enclosed list is not allowed here
  i += {1};
}

// ---- new ----
point *new_point = new point{1, run_time}, *new_points = new point[2]{{1, 2}, {3}};
made *new_made = new made{1, 2}, *new_several = new made[3]{{1}, 2};
int *new_int = new int{4}, *new_ints = new int[3]{1, 2, 3}, *new_zero = new int{};
int *new_some = new int[run_time]{1, 2};
guarded *new_guarded = new guarded{1};
// CHECK-NEXT: line [[#@LINE+1]]: error #147:
int *new_many = new int[2]{1, 2, 3};

// ---- References ----
int array[2];
const int (&of_list)[3] = {1, 2, 3}, (&direct)[2]{1}, (&bound)[2] = {array};
int (&&of_values)[2] = {run_time, 2};
const char (&of_text)[4] = {"abc"};
const point (&of_points)[2] = {{1, 2}, {3, 4}};
const double &of_int = {3};
struct line { point from; int width; };
const line &of_member = {point{1, 2}};
// CHECK-NEXT: line [[#@LINE+1]]: error #436: initial value of reference to non-const must be an lvalue
int (&not_const)[2] = {1, 2};
// CHECK-NEXT: line [[#@LINE+1]]: error #147:
const int (&too_many)[2] = {1, 2, 3};
// CHECK-NEXT: line [[#@LINE+1]]: error #2722:
const char &narrow_temporary = {300};

// ---- Explicit constructors ----
guarded direct_guarded{1}, pairs[2]{{1, 2}, {1, 2}};
int of_guarded = guarded{1}.n;
// CHECK-NEXT: line [[#@LINE+1]]: error #2694:
guarded copied_guarded = {1};
// CHECK-NEXT: line [[#@LINE+1]]: error #2694:
guarded guarded_elements[] = {{1}, {1, 2}};

// ---- What a list leaves out ----
struct holder { int n; made m; made several[2]; };
struct plain { int n; point p; point several[2]; };
struct needs { int n; needy d; };
holder short_holder = {1}, holders[3] = {{1, {2}}, {2}}, empty_holder{};
made short_array[4] = {{1}};
plain short_plain = {1}, plains[3] = {{1}};
// CHECK-NEXT: line [[#@LINE+1]]: error #293: no default constructor exists for class "needy"
needs short_needs = {1};
// CHECK-NEXT: line [[#@LINE+1]]: error #293:
needy short_needy[2] = {{1}};

// ---- Parts of constexpr objects ----
constexpr point known = {1, 2};
constexpr int member = known.y, elements[] = {1, 2, 3}, element = elements[1];
constexpr plain nested = {1, {2, 3}, {{4, 5}}};
constexpr int sum = nested.several[0].y + nested.several[1].x + nested.p.x;
int sizes[member == 2 && element == 2 && sum == 7 ? 1 : -1];
enum { enumerator = elements[0] };
// CHECK-NEXT: line [[#@LINE+1]]: error #28: expression must have a constant value
constexpr int beyond = elements[3];

// ---- Literals for pointers to char ----
void take_chars(char *);
void prefers_const(char *);
int prefers_const(const char *);
int preferred = prefers_const("x");
// CHECK-NEXT: line [[#@LINE+1]]: warning #2824-D: conversion from a string literal to "char *" is deprecated
char *text = "ab";
// CHECK-NEXT: line [[#@LINE+1]]: warning #2824-D:
char *texts[] = {"a"};
// CHECK-NEXT: line [[#@LINE+1]]: warning #2825-D: conversion from a string literal to "wchar_t *" is deprecated
wchar_t *wide = L"x";
// CHECK-NEXT: line [[#@LINE+1]]: warning #2824-D:
void pass_text() { take_chars("x"); }
// CHECK-NEXT: line [[#@LINE+1]]: error #145: a value of type "const char *" cannot be used
char *either = run_time ? "a" : "b";

// ---- Statics of a function ----
int statement_expressions() {
  int known = ({ static int value = 3; value; });
  // CHECK-NEXT: line [[#@LINE+1]]: error #1308: a local static variable with dynamic initialization is not allowed
  return ({ static int value = run_time; value; });
  // CHECK-NEXT: line [[#@LINE+1]]: warning #187-D: initialization is not reachable
  static int not_reached = run_time;
}
// CHECK-NOT: #{{[0-9]+}}
