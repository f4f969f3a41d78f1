// RUN: %krtparse -n --diag_suppress=552,112 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// new, delete, throw and typeid: what they take, and what they refuse.
struct P { int a, b; };
struct incomplete;
int f(int);
void nothing();
void news(int n) {
  int *a = new int, *b = new int[n + 3], *c = new (int), *d = new int(4), *e = new int();
  int (*rows)[3] = new int[n][3];
  P *p = new P, *q = new P[3];
  int **pointers = new int *[2];
  char *bad = new int;
// CHECK: line [[@LINE-1]]: error #145:
  new void;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  new incomplete;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  new int[-1];
// CHECK-NEXT: line [[@LINE-1]]: error #431:
  new int[2](3);
// CHECK-NEXT: line [[@LINE-1]]: error #393:
  new int("text");
// CHECK-NEXT: line [[@LINE-1]]: error #145:
  new int[n][n];
// CHECK-NEXT: line [[@LINE-1]]: error #28:
  new int[1.5];
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  *new int = 3, delete (new int), (void)(a + *b + *c + *d + *e), (void)(rows, p, q, pointers, bad);
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-2]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-3]]: warning #176-D:
// CHECK-NEXT: line [[@LINE-4]]: warning #176-D:
}
void deletes(int *p, int n, void *v, incomplete *i, int (*array)[3]) {
  delete p;
  delete[] p;
  delete v;
  delete n;
// CHECK-NEXT: line [[@LINE-1]]: error #45:
  delete 3;
// CHECK-NEXT: line [[@LINE-1]]: error #45:
  delete f;
// CHECK-NEXT: line [[@LINE-1]]: error #437:
  delete i;
// CHECK-NEXT: line [[@LINE-1]]: warning #416-D:
  delete array;
// CHECK-NEXT: line [[@LINE-1]]: warning #2035-D:
  delete[3] p;
// CHECK-NEXT: line [[@LINE-1]]: error #389:
  n = delete p;
// CHECK-NEXT: line [[@LINE-1]]: error #515:
}
void throws(int n, incomplete *i) {
  throw n;
// CHECK-NEXT: line [[@LINE-1]]: error #542:
  throw;
// CHECK-NEXT: line [[@LINE-1]]: error #542:
  throw "text";
// CHECK-NEXT: line [[@LINE-1]]: error #542:
  n = n ? n : throw n;
// CHECK-NEXT: line [[@LINE-1]]: error #542:
  throw nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #542:
// CHECK-NEXT: line [[@LINE-2]]: error #604:
  throw i;
// CHECK-NEXT: line [[@LINE-1]]: error #542:
// CHECK-NEXT: line [[@LINE-2]]: error #1348:
}
void types(int n) {
  typeid(int);
// CHECK-NEXT: line [[@LINE-1]]: error #696:
  typeid(n);
// CHECK-NEXT: line [[@LINE-1]]: error #696:
}
