// RUN: %krtparse -n --c++ --diag_suppress=552,179 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Names as operands (C++11 5.1.1), and types that begin a cast (C++11 5.2.3).
int x;
enum F { f1, f2 };
struct S {
  int a;
};
typedef int T;
namespace N {
int y;
int g(int);
enum E { e1 = 7 };
typedef char C;
namespace M {
int z;
}
} // namespace N
char size1[N::e1 == 7 && sizeof(N::C) == 1 && sizeof N::y == sizeof(int) ? 1 : -1];
int good(int x) {
  ::x = x + N::y + N::M::z + N::g(1) + ::N::y;
  F e = f1;
  e = F(1), e = f2, x = e;
  x = T(2.5) + T() + N::C('a') + int(f1) + unsigned(1) + bool(x);
  (x = 1) = 2, ++x = 3, (x, e) = f1;
// CHECK: line [[@LINE-1]]: warning #176-D:
  (x ? x : ::x) = 4;
  return N::e1;
}
int bad(int x) {
  x = N;
// CHECK-NEXT: line [[@LINE-1]]: error #731:
  x = N::missing;
// CHECK-NEXT: line [[@LINE-1]]: error #136:
  x = missing::y;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  x = T;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  x = S;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  x = N::C;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  x = ::missing;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  x = y;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  x = T(1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #18:
  x = S(1);
// CHECK-NEXT: line [[@LINE-1]]: error #306:
  x = int;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  x = this;
// CHECK-NEXT: line [[@LINE-1]]: error #260:
  return x;
}
