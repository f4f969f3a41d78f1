// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=174,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// What can be a declaration is one (C++11 6.8, 8.2).

typedef int T;
struct S { int a; };
int x;

// Parameters, not the initialisers of variables.
int function(T(), T(a), T (&b)[2], T((*c)));
int (*to_function)(T (*)(), T, T (&)[2], T *) = function;

void statements(T value, S *s) {
  {
    T(a);
    T(*b) = &x;
    T(c) = 1, d = 2;
    T(e)[3];
    T((*f)(int));
    T *g = &x;
    const T(h) = 1, (*i) = &h;
    T((((j))));
    a = c + d + *b + e[0] + f(*g) + h + *i + j;
  }
  (T) x;
  (T(*)(T))0;
  x = sizeof(T(*)(T)) + sizeof(T[2]) + (T)(x);
  for (T i = 0; i < 3; ++i)
    s->a = i;
  for (T(k) = 0, (*m) = &k; *m < 3; ++k)
    s->a = *m;
  // CHECK: line [[#@LINE+1]]: error #102: "value" has already been declared in the current scope
  T(value);
}
// CHECK: error detected
