// RUN: %krtparse -n --g++ --gnu_version=60000 --diag_suppress=179,370 --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// RUN: %krtparse -n --c++03 --diag_suppress=179,370 --display_error_number --define=OLD %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=OLD < %t.err
// The forms of initialisers of C++, and objects without one (C++11 8.5).

struct point { int x, y; };
struct bound { int n; int &r; };
struct constant { const int c; int d; };
union number { int : 3; int i; };
enum colour { red };
int run_time = 3;
int in_parentheses(3), chained = in_parentheses + run_time;
char text[]("abc");
int size_of_text[sizeof text == 4 ? 1 : -1];
point copied(*new point);
#ifdef OLD
// OLD: line [[#@LINE+1]]: error #2337: list initialization syntax is a C++11 feature
int braces{1};
// OLD: line [[#@LINE+1]]: error #29: expected an expression
int empty = {};
const int given = 3;
int in_bound[given];
#else

// ---- Lists ----
int direct{3}, with_equals = {3}, zero{}, zero_too = {};
int *null{};
int elements[]{1, 2, 3}, elided[2][2]{1, 2, 3, 4};
char word[]{"abc"};
int sizes[sizeof elements == 3 * sizeof(int) && sizeof word == 4 ? 1 : -1];
point p{1, 2}, same{p}, also = {p}, nothing{}, designated = {.x = 1, .y = run_time};
float exact{1.5};
char letter{65};
int enumerator{red};
// CHECK: line [[#@LINE+1]]: error #2722: invalid narrowing conversion from "double" to "int": constant value does not fit in destination type
int narrowed{3.5};
// CHECK-NEXT: line [[#@LINE+1]]: error #2722: invalid narrowing conversion from "int" to "char"
char narrow_elements[] = {1, 300};
// CHECK-NEXT: line [[#@LINE+1]]: error #2722: invalid narrowing conversion from "unsigned int" to "int"
point narrow_members[] = {{3000000000u, 2}};
// CHECK-NEXT: line [[#@LINE+1]]: error #147: too many initializer values
int two{1, 2};
// CHECK-NEXT: line [[#@LINE+1]]: error #18: expected a ")"
int many(1, 2);
// CHECK-NEXT: line [[#@LINE+1]]: error #29: expected an expression
int &nowhere{};
// CHECK-NEXT: line [[#@LINE+1]]: error #371: variable "unbound" has an uninitialized const or reference member
bound unbound = {1};
constant value_of_member = {1};
// CHECK-NEXT: line [[#@LINE+1]]: error #2796: the member of union "number" to be initialized by "{}" is ambiguous
number ambiguous = {};
// CHECK-NEXT: line [[#@LINE+1]]: error #145: a value of type "int" cannot be used to initialize an entity of type "int [2]"
int array_of_int[2] = 5;
// CHECK-NEXT: line [[#@LINE+1]]: error #2097:
char no_terminator[3] = "abc";

// ---- Classes with constructors ----
struct made {
  made(int, int = 0);
  made(const char *, const point &);
  ~made();
  int n;
};
struct holder { int n; made m; };
made from_list{1, 2}, from_copy = {"text", p}, from_value(3), from_object = made(4), again{from_list};
made several[] = {{1, 2}, made{3}, 4};
holder held = {1, {2, 3}};
int of_temporary = made{5}.n + int{6} + point{7, 8}.y;
// CHECK-NEXT: line [[#@LINE+1]]: error #293: no default constructor exists for class "made"
made nothing_made{};
// CHECK-NEXT: line [[#@LINE+1]]: error #2722: invalid narrowing conversion from "double" to "int"
int narrowed_temporary = int{3.5};

// ---- References to temporaries that lists make ----
const point &of_list = {1, 2}, &direct_list{3}, &whole = {p};
point &&of_values = {run_time, 4};
const made &of_arguments = {1, 2};
point &of_point = {p};
// CHECK-NEXT: line [[#@LINE+1]]: error #147: too many initializer values
const point &too_many = {1, 2, 3};
// CHECK-NEXT: line [[#@LINE+1]]: error #436: initial value of reference to non-const must be an lvalue
point &not_const = {1, 2};

// ---- auto ----
auto a(5);
auto b{6}, c = a + 1;
auto *pointer(&a);
int *same_type = pointer, sum = b + c;
// CHECK-NEXT: line [[#@LINE+1]]: error #3023: direct-list-initialization of an auto type requires exactly one element
auto both{1, 2};
// CHECK-NEXT: line [[#@LINE+1]]: error #1861: an initialization with "{...}" is not allowed for an auto type
auto list = {1};

// ---- constexpr ----
constexpr int known = 3 * 4;
int bounds[known];
// CHECK-NEXT: line [[#@LINE+1]]: error #28: expression must have a constant value
constexpr int unknown = run_time;
// CHECK-NEXT: line [[#@LINE+1]]: error #28:
constexpr point half_known = {1, run_time};

// ---- No initialiser ----
// CHECK-NEXT: line [[#@LINE+1]]: error #259: const variable "without_value" requires an initializer
const int without_value;
// CHECK-NEXT: line [[#@LINE+1]]: error #259:
const int array_without[2] [3];
extern const int elsewhere;
// CHECK-NEXT: line [[#@LINE+1]]: error #254: reference variable "without_object" requires an initializer
int &without_object;
// CHECK-NEXT: line [[#@LINE+1]]: error #865: variable "constant_point" is const, and its type "point" has no user-provided default constructor
const point constant_point;
// CHECK-NEXT: line [[#@LINE+1]]: error #371: variable "bound_to_nothing" has an uninitialized const or reference member
bound bound_to_nothing;
// CHECK-NEXT: line [[#@LINE+1]]: error #372: variable "member_without_value" has an uninitialized const field
constant member_without_value;

int f(int n) {
  int direct{n}, in_parentheses(n);
  static int kept = n, kept_list{n + 1};
  static point kept_point = {n, 2};
  point p{n, 1}, q = p, r(q);
  // CHECK-NEXT: line [[#@LINE+1]]: warning #2721-D: invalid narrowing conversion from "int" to "char"
  char narrow{n};
  // CHECK-NEXT: line [[#@LINE+1]]: error #259:
  const int local;
  return direct + in_parentheses + kept + kept_list + kept_point.x + r.x;
}
// CHECK-NOT: #{{[0-9]+}}
#endif
// OLD-NOT: #{{[0-9]+}}
