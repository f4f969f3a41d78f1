// RUN: %krtparse -n --c++ --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Operators as C++ has them: objects as results, bool, enumerations, and classes
// without operator functions.
struct P { int a, b; };
struct incomplete;
enum D { d1, d2 };
typedef int integer;
int f(int);
void nothing();
void objects(int n, bool b, char c, P *p) {
  ++n = 5, (n = 3) = 4, --n += 2, (b ? n : n) = 2;
  (nothing(), n) = 3;
  (b ? *p : *p).a = 3;
  &(b ? n : n), &++n, &(n += 2);
// CHECK: line [[@LINE-1]]: warning #176-D:
  n++ = 2;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  (b ? n : c) = 2;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  &n++;
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &(n + 1);
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  b ? n : c = 2;
}
void bools_and_enums(bool b, D d, int n) {
  b++;
  ++b;
  b--;
// CHECK-NEXT: line [[@LINE-1]]: error #712:
  --b;
// CHECK-NEXT: line [[@LINE-1]]: error #712:
  d++;
// CHECK-NEXT: line [[@LINE-1]]: error #513:
  d += 1;
// CHECK-NEXT: line [[@LINE-1]]: error #513:
  d = 1;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
  n = d + 1;
}
void classes(P p, P *q) {
  p = *q;
  p + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: P + int
  1 - p;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: int - P
  -p;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: - P
  !p;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: ! P
  p == p;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: P == P
  p < 1;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: P < int
  p[0];
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: P [] int
  p++;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: ++ P
  p += 1;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: P += int
  p && 1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  p ? 1 : 2;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  1 ? p : 2;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  p();
// CHECK-NEXT: line [[@LINE-1]]: error #110:
  p->a;
// CHECK-NEXT: line [[@LINE-1]]: error #351:
// CHECK-NEXT: operand types are: -> P
  q.a;
// CHECK-NEXT: line [[@LINE-1]]: error #155:
  p.missing;
// CHECK-NEXT: line [[@LINE-1]]: error #136:
  q->missing;
// CHECK-NEXT: line [[@LINE-1]]: error #136:
}
void pointers(P *p, int *q, void *v, const int *c) {
  p == v, q == 0, q < q, q == c;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-3]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-4]]: warning #176-D:
  p == q;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  q == 3;
// CHECK-NEXT: line [[@LINE-1]]: error #43:
  q < v;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
  q - q;
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
  p - q;
// CHECK-NEXT: line [[@LINE-1]]: error #1047:
  q + q;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  v + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  f + 1;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  *v;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
}
void scalars(int n, int *q) {
  n.~integer();
  q->~integer();
  n.~missing();
// CHECK-NEXT: line [[@LINE-1]]: error #480:
  n.~int();
// CHECK-NEXT: line [[@LINE-1]]: error #41:
// CHECK-NEXT: line [[@LINE-2]]: error #126:
  n.x;
// CHECK-NEXT: line [[@LINE-1]]: error #155:
  q->x;
// CHECK-NEXT: line [[@LINE-1]]: error #132:
}
