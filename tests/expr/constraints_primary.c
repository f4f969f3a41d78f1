// RUN: %krtparse -n --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Primary expressions (C99 6.5.1).
typedef int T;
enum { K = 1 };
int i, fn(void);
char *s;
double d;
long long big = 0x7fffffffffffffffLL;
struct tag {
  int n;
} t;
int good(void) {
  s = "abc"
      "def";
  d = 1.5e3 + .5 + 1.f + 2.L + 0x1p3;
  s = (char *)__func__;
  return i + K + 'a' + L'b' + 0x1f + 017 + (((i))) + fn() + sizeof(("abc"));
}
int bad(void) {
  i = unknown1;
// CHECK: line [[@LINE-1]]: error #20:
  i = unknown1 + unknown2;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  i = (unknown3);
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  i = T;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  i = tag;
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  i = t.missing;
// CHECK-NEXT: line [[@LINE-1]]: error #137:
  i = K = 2;
// CHECK-NEXT: line [[@LINE-1]]: error #138:
  i = 'ab';
  i = '';
// CHECK-NEXT: line [[@LINE-1]]: error #25:
  i = 99999999999999999999;
// CHECK-NEXT: line [[@LINE-1]]: error #23:
  i = 08;
// CHECK-NEXT: line [[@LINE-1]]: error #24:
  i = 1.5.2;
// CHECK-NEXT: line [[@LINE-1]]: error #66:
  i = (1;
// CHECK-NEXT: line [[@LINE-1]]: error #18:
  i = ();
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  i = );
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  i = ;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  i = int;
// CHECK-NEXT: line [[@LINE-1]]: error #256:
  i = (struct tag);
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  i = goto;
// CHECK-NEXT: line [[@LINE-1]]: error #29:
  i = 1 2;
// CHECK-NEXT: line [[@LINE-1]]: error #66:
  "abc";
// CHECK-NEXT: line [[@LINE-1]]: warning #176-D:
  return __func__[0];
}
