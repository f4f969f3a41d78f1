// Designated initialisers reach the file in the order of the members.
// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

union u {
  char c[4];
  int i;
};
// CHECK-LABEL: init last
// CHECK-NEXT: (FIELD:int u::i)
// CHECK-NEXT: (LCON:int 7)
union u last = {.i = 7};
// CHECK-LABEL: init first
// CHECK-NEXT: (FIELD:char[4] u::c)
// CHECK-NEXT: (ICON:char 120)
union u first = {.i = 1, .c = "x"};
// CHECK-LABEL: init order
// CHECK-NEXT: (LCON:int 1)
// CHECK-NEXT: (LCON:int 2)
// CHECK-NEXT: (SKIP:int 1)
struct {
  int x, y, z;
} order = {.y = 2, .x = 1};
// Later elements win, also inside of a gap.
// CHECK-LABEL: init gaps
// CHECK-NEXT: (LCON:int 0)
// CHECK-NEXT: (LCON:int 2)
// CHECK-NEXT: (LCON:int 3)
// CHECK-NEXT: (LCON:int 0)
// CHECK-NEXT: (LCON:int 5)
// CHECK-NEXT: (SKIP:int 1)
int gaps[6] = {[4] = 1, [1] = 2, 3, [4] = 5};
// CHECK-LABEL: init nested
// CHECK-NEXT: (SKIP:int 2)
// CHECK-NEXT: (LCON:int 9)
// CHECK-NEXT: (SKIP:int 1)
struct {
  struct {
    int a, b;
  } in[2];
} nested = {.in[1].a = 9};
