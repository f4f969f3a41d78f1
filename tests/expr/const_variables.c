// RUN: %krtparse -n --gcc --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,GNU < %t.out
// RUN: %krtparse -n --strict --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,STRICT < %t.out
// RUN: %krtparse -n --c++ --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK < %t.out
// The values of const variables in constant expressions: an extension in GNU C,
// part of the language in C++ (C++11 5.19).
const int size = 4;
const volatile int device = 4;
int variable = 4;
const int later = variable;
// GNU: line [[@LINE-1]]: error #28:
// STRICT: line [[@LINE-2]]: error #28:
enum { e1 = size + 1 };
// GNU: line [[@LINE-1]]: warning #2170-D:
// STRICT: line [[@LINE-2]]: error #28:
enum { e2 = device };
// CHECK: line [[@LINE-1]]: error #28:
enum { e3 = variable };
// CHECK: line [[@LINE-1]]: error #28:
char checked[e1 == 5 ? 1 : -1];
// STRICT: line [[@LINE-1]]: error #95:
struct s {
  int bits : size;
// GNU: line [[@LINE-1]]: warning #2170-D:
// STRICT: line [[@LINE-2]]: error #28:
};
int f(int i) {
  switch (i) {
  case size:
// GNU: line [[@LINE-1]]: warning #2170-D:
// STRICT: line [[@LINE-2]]: error #28:
    return 1;
  case device:
// CHECK: line [[@LINE-1]]: error #28:
    return 2;
  }
  return i + size;
}
