// RUN: %krtparse -n --c11 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Selections by type (C11 6.5.1.1).
struct s { int n; } s1;
struct incomplete;
int i, arr[3], function(int);
const int ci;
typedef int integer;
char by_type[_Generic(1, char: -1, int: 1, default: -1)];
char by_default[_Generic(1.5, char: -1, int: -1, default: 1)];
char of_value[_Generic(ci, int: 1, default: -1)];
char decays[_Generic(arr, int *: _Generic(function, int (*)(int): 1, default: -1), default: -1)];
char unevaluated[_Generic(1, double: i, int: 2)];
void f(void) {
  _Generic(i, int: i, default: s1) = 3;
  i = _Generic(s1, int: 1);
// CHECK: line [[@LINE-1]]: error #2895:
  i = _Generic(i, int: 1, integer: 2);
// CHECK-NEXT: line [[@LINE-1]]: error #2894:
  i = _Generic(i, default: 1, default: 2);
// CHECK-NEXT: line [[@LINE-1]]: error #2892:
  i = _Generic(i, struct incomplete: 1, int: 2);
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = _Generic(i, int(int): 1, int: 2);
// CHECK-NEXT: line [[@LINE-1]]: error #170:
  i = _Generic(i, void: 1, int: 2);
// CHECK-NEXT: line [[@LINE-1]]: error #71:
  i = _Generic(i);
// CHECK-NEXT: line [[@LINE-1]]: error #255:
  i = _Generic(i, int 1);
// CHECK-NEXT: line [[@LINE-1]]: error #54:
// CHECK-NEXT: line [[@LINE-2]]: error #29:
  i = _Generic(i, int: undefined);
// CHECK-NEXT: line [[@LINE-1]]: error #20:
  i = _Generic(i, int: 1, float: undefined);
}
