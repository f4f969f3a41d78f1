// RUN: %krtparse --no_code_gen --g++ --gnu_version=60000 --display_error_number %s > %t.out 2>&1
// RUN: ! grep "error #" %t.out
// RUN: %krtparse --no_code_gen --g++ --gnu_version=60000 --display_error_number -D=FAULTS %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=FAULT --implicit-check-not='error #' < %t.out
// Members of namespaces named from outside, default arguments, constants.

namespace n {
int f(int);
extern int x;
int overloaded(int);
int overloaded(char);
namespace m {
extern char y;
}
}
int n::x = 1;
int n::f(int a) { return a + x; }
char n::m::y = sizeof x;

// What follows the name sees the namespace's members (C++11 3.4.1 p8).
namespace o {
struct item {};
enum { length = 3 };
item pass(item, int = length);
extern int list[length];
namespace p {
struct user {
  void use(item);
};
}
}
o::item o::pass(item i, int) { return i; }
int o::list[length];
void o::p::user::use(item) {}

int defaults(int, int, int = 1);
int defaults(int, int = 2, int);
int defaults(int a, int b, int c) { return a + b + c; }

constexpr int constant = 3;
extern const int external_constant = 4;
static_assert(constant == 3, "");
constexpr int twice(int a) { return a + a; }

#ifdef FAULTS
// FAULT: line [[#@LINE+1]]: error #755: {{.*}} has no prior declaration in its scope
int n::nothing;
// FAULT: line [[#@LINE+1]]: error #148: declaration is incompatible with
int n::overloaded(long) { return 1; }
namespace elsewhere {
// FAULT: line [[#@LINE+1]]: error #553: {{.*}} cannot be defined in the current scope
int n::f(int a) { return a; }
}
// FAULT: line [[#@LINE+1]]: error #304: {{.*}} has already been defined
int n::f(int a) { return a; }
// FAULT: line [[#@LINE+1]]: error #309: a default argument has already been given for this parameter
int defaults(int, int, int = 3);
// FAULT: line [[#@LINE+1]]: error #308: a default argument must not be followed by a parameter without one
int not_at_end(int = 1, int);
// FAULT: line [[#@LINE+1]]: error #2745: a constexpr variable declaration must be a definition
constexpr extern int declared_constant;
// FAULT: line [[#@LINE+1]]: error #2744: {{.*}} was previously not declared constexpr
constexpr int defaults(int, int, int);
// FAULT: line [[#@LINE+1]]: error #2743: {{.*}} was previously declared constexpr
int twice(int);
// FAULT: line [[#@LINE+1]]: error #2765: function "main" may not be declared constexpr
constexpr int main() { return 0; }
// FAULT: errors detected
#endif
