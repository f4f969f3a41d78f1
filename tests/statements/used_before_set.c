// RUN: %krtparse --gcc --c99 -n --display_error_number %s 2>&1 | %FileCheck %s
// RUN: %krtparse --gcc --c99 -n --no_use_before_set_warnings %s 2>&1 | %FileCheck %s --check-prefix=OFF --allow-empty

/* A variable that nothing can have given a value where it is used. What a branch,
   a turn of a loop, a jump, an address or an asm statement may have set is left
   alone. */
int g(int*);
int cond(void);
// CHECK: line [[@LINE+2]]: warning #551-D: variable "a" is used before its value is set
int plain(void) {
  int a; return a;
}
// CHECK-NEXT: line [[@LINE+2]]: warning #551-D: variable "a" is used
int in_initialiser(void) {
  int a, b = a; return b;
}
// CHECK-NEXT: line [[@LINE+2]]: warning #551-D: variable "a" is used
int step(void) {
  int a; a++; return a;
}
// CHECK-NEXT: line [[@LINE+2]]: warning #551-D: variable "s" is used
int sum(void) {
  int s; for (int i = 0; i < 3; i++) s += i; return s;
}
// CHECK-NEXT: line [[@LINE+2]]: warning #551-D: variable "x" is used
int early(int n) {
  int x; if (n) return x; x = 1; return x;
}
// CHECK-NOT: 551
// OFF-NOT: value is set
int by_address(void) { int a; g(&a); return a; }
int by_branch(int n) { int a; if (n) a = 1; return a; }
int by_turn(int n) { int a; while (n--) { if (n == 3) a = 4; else n += a; } return 0; }
int by_case(int n) { int a; switch (n) { case 1: a = 2; break; default: a = 3; } return a; }
int by_jump(void) { int a; goto in; back: return a; in: a = 3; goto back; }
int by_asm(void) { int x; asm("foo" : "=r"(x)); return x; }
int* by_condition(void) { int* p; if ((p = (int*)cond()) && *p) return p; return p; }
int by_comma(void) { int x; int y = (x = 3, x); return y + x; }
int by_body(int n) { int x; do { x = n; } while (x); return x; }
int by_flag(int n) { int first = 1, v; for (;;) { if (!first) n += v; v = n; first = 0; if (n > 9) return n; } }
int of_size(void) { int i; return sizeof i; }
int of_parts(void) { struct { int a; } s; s.a = 1; int array[2]; array[0] = 1; return s.a + array[0]; }
