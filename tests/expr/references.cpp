// RUN: %krtparse -n --c++ --diag_suppress=552,179 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// References (C++11 8.5.3) and the casts to them (C++11 5.2.9 to 5.2.11).
struct S {
  int a;
  int bits : 3;
} s, t;
struct Q {
  int a;
} q;
int x, array[5], function(int);
const int ci = 5;
double d;
int &r = x;
const int &cr = x;
int (&ra)[5] = array;
int (&rf)(int) = function;
int &r1 = d;
// CHECK: line [[@LINE-1]]: error #145:
int &r2 = ci;
// CHECK-NEXT: line [[@LINE-1]]: error #435:
int &r3 = 5;
// CHECK-NEXT: line [[@LINE-1]]: error #436:
int &r4 = function;
// CHECK-NEXT: line [[@LINE-1]]: error #145:
int &r5 = s.bits;
// CHECK-NEXT: line [[@LINE-1]]: error #145:
const int &r6 = 5;
S &r7 = q;
// CHECK-NEXT: line [[@LINE-1]]: error #145:
char size1[sizeof r == sizeof(int) && sizeof ra == sizeof array ? 1 : -1];
void take(int &, S &, const int &);
void good(int &p, S &ps, const int *cp) {
  int &l = p, &m = l, &n = *&array[1];
  l = 1, r = 2, p = 3, ++r, r += l;
  x = l + r + cr + ra[2] + rf(1) + -m;
  ps.a = 1, s = ps, ps = s, (&ps)->a = 2;
  int *pointer = &l;
  x = *pointer;
  const int &c = *cp;
  take(x, s, ci), take(r, ps, cr), take(array[2], ps, c);
  (double &)x = 1.5;
  const_cast<int &>(cr) = 1;
  reinterpret_cast<S &>(x).a = 1;
  static_cast<const int &>(x) + n;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
}
void bad(int &p) {
  cr = 4;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  static_cast<const int &>(x) = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  x = (int &)5;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  x = static_cast<S &>(x).a;
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  x = static_cast<int &>(cr);
// CHECK-NEXT: line [[@LINE-1]]: error #697:
  x = reinterpret_cast<int &>(cr);
// CHECK-NEXT: line [[@LINE-1]]: error #697:
  x = const_cast<int &>(d);
// CHECK-NEXT: line [[@LINE-1]]: error #721:
  take(5, s, x);
// CHECK-NEXT: line [[@LINE-1]]: error #436:
  take(x, q, x);
// CHECK-NEXT: line [[@LINE-1]]: error #169:
  take(ci, s, x);
// CHECK-NEXT: line [[@LINE-1]]: error #435:
  S &missing = p;
// CHECK-NEXT: line [[@LINE-1]]: error #145:
}
