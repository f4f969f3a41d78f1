// RUN: %krtparse --no_code_gen --g++ --gnu_version=60000 --exceptions --display_error_number --no_warnings %s > %t.out 2>&1
// RUN: ! grep "error #" %t.out
// In parentheses, types and expressions that begin alike (C++11 8.2), pointers
// to members in type names, `::new`, and an empty enumeration.

struct A {
  int member();
  A &operator=(const A &);
};
struct T {
  T(int);
};
struct table {
  bool check(void);
  bool find(bool (table::*const *list)(void));
  typedef int (A::*pointer)();
};
void take(int (A::*)());
enum nothing {};

A *same(A *);

void f(int x, int y) {
  same(&(A() = A()));
  (A(), A());
  T t = (T(T(x = y)));
  static_assert(sizeof(int (A::*)()) > 0, "a pointer to a member function");
  typedef int call(int);
  call *pointer = (int (*)(int))0;
  pointer = (call *)(int (*)(int x))pointer;
  int (A::*m)() = (int (A::*)())0;
  try {
  } catch (int (A::*thrown)()) {
  }
  if (bool(y))
    ;
  A *p = ::new A;
  same(::new A);
  ::delete p;
  nothing none = nothing();
}
