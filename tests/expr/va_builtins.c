// RUN: %krtparse --gcc --nonstd_gnu_keywords --no_code_gen %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=": error" < %t.out

/* The builtin functions of variable arguments, and what they refuse. */
typedef __builtin_va_list va_list;
struct pair {
  int a, b;
};
struct unknown;

int good(int n, ...) {
  va_list list, copy;
  int total = 0;
  __builtin_va_start(list, n);
  __builtin_va_copy(copy, list);
  while (n--)
    total += __builtin_va_arg(list, typeof(n)) + __builtin_va_arg(copy, struct pair).b;
  __builtin_va_end(copy);
  __builtin_va_end(list);
  return total;
}

int through_pointer(va_list *list) {
  return *__builtin_va_arg(*list, int *);
}

void bad(int n, ...) {
  va_list list;
  int *p = &n;
  *p = 1;
  __builtin_va_start(list, n);
  // CHECK: line [[@LINE+1]]: error: the argument of __va_parmadr must be a parameter of the current function
  __builtin_va_start(list, p);
  // CHECK: line [[@LINE+1]]: error: the first argument of va_arg must be an lvalue of type "va_list"
  n = __builtin_va_arg(p, int);
  // CHECK: line [[@LINE+1]]: error: the first argument of va_arg must be an lvalue of type "va_list"
  n = __builtin_va_arg(list + 1, int);
  // CHECK: line [[@LINE+1]]: warning: the va_arg type "short" would have been promoted when passed through "..."
  n = __builtin_va_arg(list, short);
  // CHECK: line [[@LINE+1]]: error: incomplete type is not allowed
  __builtin_va_arg(list, struct unknown);
  // CHECK: line [[@LINE+1]]: error: too few arguments in function call
  __builtin_va_copy(list);
  // CHECK: line [[@LINE+1]]: error: the arguments of va_copy must have type "va_list"
  __builtin_va_copy(list, n);
  // CHECK: line [[@LINE+1]]: error: the argument of va_end must be an lvalue of type "va_list"
  __builtin_va_end(1);
  // CHECK: line [[@LINE+1]]: error: too many arguments in function call
  __builtin_va_end(list, n);
}

void fixed(int n) {
  va_list list;
  // CHECK: line [[@LINE+1]]: error: va_start may only be used in a function with an ellipsis parameter
  __builtin_va_start(list, n);
  __builtin_va_end(list);
}
