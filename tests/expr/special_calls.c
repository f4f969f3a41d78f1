// RUN: %krtparse -n --c99 --diag_suppress=179,552,1494 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Builtin functions whose arguments aren't those of a call.
int global, array[3];
const int constant = 3;
struct s { int a; } s1, *sp;
int function(void);
double infinity = __builtin_inf();
unsigned length = __builtin_strlen("text");
int __builtin_abs(int); // declared again, it stays the builtin
int absolute = __builtin_abs(-3);
char known[__builtin_constant_p(3) && __builtin_constant_p("text") && __builtin_constant_p(1.5) &&
                   !__builtin_constant_p("text" + 1) && !__builtin_constant_p(global) && !__builtin_constant_p(&global) &&
                   !__builtin_constant_p(function()) ? 1 : -1];
char chosen[__builtin_choose_expr(sizeof(int) == 4, 5, global)];
char five[sizeof chosen == 5 ? 1 : -1];
int f(int n) {
  int x = __builtin_constant_p(n++);
  __builtin_choose_expr(1, x, 1.5) = 3;
  __builtin_choose_expr(0, x, s1).a = 3;
  __builtin_choose_expr(0, x, 3) = 3;
// CHECK: line [[@LINE-1]]: error #138:
  x = __builtin_choose_expr(n, 1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #28:
  x = __builtin_choose_expr(1.5, 1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  x = __builtin_choose_expr(1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #167:
  x = __builtin_choose_expr(1, 2, 3, 4);
// CHECK-NEXT: line [[@LINE-1]]: error #141:
  x = __builtin_choose_expr(1, 2, s1 + 1);
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  x = __builtin_choose_expr(1, 2, undefined);
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  x = __builtin_constant_p();
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  x = __builtin_constant_p(1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #141:
  x = __builtin_constant_p(undefined);
  return x + n;
}
