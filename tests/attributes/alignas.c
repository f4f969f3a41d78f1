// RUN: %krtparse --c11 --no_code_gen --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// Alignment specifiers and assertions where C11 has them (6.7.5, 6.7.2.1).
_Alignas(16) char raised;
_Alignas(int) int kept;
_Alignas(char) _Alignas(int) int strictest_counts;
_Alignas(0) int zero;
struct wide { _Alignas(8) char c; };
// CHECK: line [[#@LINE+1]]: error #2150: alignment cannot be set to less than the default alignment
_Alignas(4) struct wide reduced;
_Alignas(4) _Alignas(8) struct wide not_reduced;
// CHECK: line [[#@LINE+1]]: error #41: expected an identifier
int *_Alignas(8) pointer;

struct s {
  _Static_assert(sizeof(int) == 4, "first");
  int i;
  _Static_assert(1, "between");
  _Alignas(8) char c;
  // CHECK: line [[#@LINE+1]]: error #1847: static assertion failed with "last"
  _Static_assert(sizeof(int) == 5, "last");
};
char offset[__builtin_offsetof(struct s, c) == 8 ? 1 : -1];
