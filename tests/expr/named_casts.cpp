// RUN: %krtparse --c++ --no_code_gen --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// The casts of C++ (C++11 5.2.3, 5.2.9 to 5.2.11), and the literals of 2.14.
struct s { int n; } s1;
struct t { int n; } t1;
typedef int number;
int i, *ip;
const int *cip;
volatile int *vip;
void *vp;
char *cp;
double d;
bool b;
s *sp;
const s *csp;
t *tp;
int function(int);
char size1[sizeof bool(1) == sizeof(bool) ? 1 : -1];
char size2[int(2.5) == 2 ? 1 : -1];
char size3[static_cast<int>(2.5) + number() == 2 ? 1 : -1];
char size4[true + true == 2 && !false ? 1 : -1];
char size5[static_cast<bool>(7) == true ? 1 : -1];
void good() {
  i = static_cast<int>(d);
  i = static_cast<number>('a');
  i = int(d) + number(d) + int();
  d = double(i) * float(i);
  ip = static_cast<int *>(vp);
  vp = static_cast<void *>(ip);
  cip = static_cast<const int *>(ip);
  static_cast<void>(i);
  ip = const_cast<int *>(cip);
  cip = const_cast<const int *>(ip);
  ip = const_cast<int *>(vip);
  i = reinterpret_cast<long>(ip) != 0;
  ip = reinterpret_cast<int *>(cp);
  ip = reinterpret_cast<int *>(8);
  sp = reinterpret_cast<s *>(tp);
  csp = dynamic_cast<const s *>(sp);
  i = ::i + ::function(1);
  b = reinterpret_cast<int>(1) == static_cast<int>((1 > 0));
}
void bad() {
  ip = static_cast<int *>(cp);
// CHECK: line [[@LINE-1]]: error #173:
  ip = static_cast<int *>(cip);
// CHECK-NEXT: line [[@LINE-1]]: error #697:
  i = static_cast<int>(ip);
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  i = static_cast<int>(s1);
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  s1 = static_cast<s>(t1);
// CHECK-NEXT: line [[@LINE-1]]: error #306:
  cp = const_cast<char *>(cip);
// CHECK-NEXT: line [[@LINE-1]]: error #721:
  i = const_cast<int>(i);
// CHECK-NEXT: line [[@LINE-1]]: error #720:
  d = reinterpret_cast<double>(i);
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  ip = reinterpret_cast<int *>(d);
// CHECK-NEXT: line [[@LINE-1]]: error #173:
  cp = reinterpret_cast<char *>(cip);
// CHECK-NEXT: line [[@LINE-1]]: error #697:
  i = dynamic_cast<int>(sp);
// CHECK-NEXT: line [[@LINE-1]]: error #698:
  sp = dynamic_cast<s *>(ip);
// CHECK-NEXT: line [[@LINE-1]]: error #699:
  sp = dynamic_cast<s *>(csp);
// CHECK-NEXT: line [[@LINE-1]]: error #697:
  tp = dynamic_cast<t *>(sp);
// CHECK-NEXT: line [[@LINE-1]]: error #701:
  i = static_cast int(1);
// CHECK-NEXT: line [[@LINE-1]]: error #440:
  i = static_cast<int> 1;
// CHECK-NEXT: line [[@LINE-1]]: error #126:
  i = int(1, 2);
// CHECK-NEXT: line [[@LINE-1]]: error #18:
  i = int;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  s1 = s();
  sp = this;
// CHECK-NEXT: line [[@LINE-1]]: error #260:
}
