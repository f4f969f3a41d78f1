// RUN: %krtparse -n --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// The constraints of unary operators (C99 6.5.3).
struct s { int n; int bits : 3; } s1, by_value(void);
struct hidden *hp;
extern struct hidden h;
const int ci = 1;
int arr[3], *ip, i, function(int);
extern int unknown[];
void *vp, nothing(void);
unsigned u;
double d;
enum e { E1 } e1;
void steps(void) {
  ++i, --ip, ++e1, --d, ++s1.bits, ++*ip;
  ++3;
// CHECK: line [[@LINE-1]]: error #138:
  --arr;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  ++s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  ++hp;
// CHECK-NEXT: line [[@LINE-1]]: error #906:
  --ci;
// CHECK-NEXT: line [[@LINE-1]]: error #138-D:
  ++function;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  --(i + 1);
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  ++i++;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
}
void addresses(int a) {
  register int ri = a, ra[2];
  (void)&i, (void)&arr, (void)&arr[1], (void)&s1, (void)&s1.n, (void)&function;
  (void)&*ip, (void)&*vp, (void)&h, (void)&"text";
  &3;
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &(i + 1);
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &i++;
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &by_value();
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &by_value().n;
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &s1.bits;
// CHECK-NEXT: line [[@LINE-1]]: error #140:
  &nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  &E1;
// CHECK-NEXT: line [[@LINE-1]]: error #160:
  ip = &ri;
// CHECK-NEXT: line [[@LINE-1]]: warning #139-D:
  ra[0] = ri;
}
void indirections(void) {
  (void)*ip, (void)*arr, (void)*function, (void)**function, (void)*"text", (void)*vp;
  *i;
// CHECK-NEXT: line [[@LINE-1]]: error #76:
  *s1;
// CHECK-NEXT: line [[@LINE-1]]: error #76:
  *d;
// CHECK-NEXT: line [[@LINE-1]]: error #76:
  *nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #76:
  i = *hp;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
}
void arithmetic(void) {
  i = +i - -d + ~u + !ip + !d + -e1 + ~e1 + !arr;
  i = -ip;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = +s1;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = -function;
// CHECK-NEXT: line [[@LINE-1]]: error #902:
  i = ~d;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = ~ip;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = ~s1;
// CHECK-NEXT: line [[@LINE-1]]: error #901:
  i = !s1;
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = !nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #903:
  i = -nothing();
// CHECK-NEXT: line [[@LINE-1]]: error #902:
}
char sizes[sizeof i + sizeof(int) + sizeof arr + sizeof "abc" + sizeof(int[2]) + sizeof *ip];
void size_of(void) {
  i = sizeof function;
  i = sizeof(int(int));
  i = sizeof(struct hidden);
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = sizeof h;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = sizeof unknown;
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = sizeof(int[]);
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = sizeof s1.bits;
// CHECK-NEXT: line [[@LINE-1]]: error #72:
  i = sizeof nothing();
  i = sizeof(void);
  i = sizeof();
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  i = sizeof undefined;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
}
