// RUN: %krtparse --c99 --i_output_file=%t.if %s && test $(wc -c < %t.if) -lt 1000000
// RUN: %ifrun %t.if
// RUN: %krtparse --c99 --define=FAULT --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// Long lists, of which only the element at hand is in memory, and sparse arrays.
#define FIVE(...) __VA_ARGS__, __VA_ARGS__, __VA_ARGS__, __VA_ARGS__, __VA_ARGS__
#define TEN(...) FIVE(__VA_ARGS__), FIVE(__VA_ARGS__)
#define THOUSAND(...) TEN(TEN(TEN(__VA_ARGS__)))
struct item { short n; char text[4]; };
int list[] = {THOUSAND(7), [50000] = 1, THOUSAND(8), 9};
struct item items[] = {TEN(TEN({1, "ab"})), TEN(TEN(TEN(2, 'c', 'd', 0, 0))), {3}};
int sparse[10000000] = {[9999999] = 3, [5000000] = 2};
int deep = {{{{{{1}}}}}};

int main(void) {
  static int local[1000000] = {[999999] = 4};
  int automatic[10000] = {[9999] = 5, [3] = 6};
  int n = sizeof list / sizeof *list, m = sizeof items / sizeof *items;
  if (n != 51002 || list[999] != 7 || list[1000] != 0 || list[51000] != 8 || list[n - 1] != 9)
    return 1;
  if (m != 1101 || items[99].text[1] != 'b' || items[m - 2].n != 2 || items[m - 1].n != 3)
    return 2;
  if (sparse[0] || sparse[4999999] || sparse[5000000] != 2 || sparse[9999999] != 3)
    return 3;
  if (local[999998] || local[999999] != 4 || automatic[9999] != 5 || automatic[3] != 6 || automatic[9998])
    return 4;
  return 0;
}
#ifdef FAULT
// What is behind a fault is read all the same.
// CHECK: line [[#@LINE+1]]: error #28:
struct item faulty[] = {{list[0], {1, {2}, 3}}, THOUSAND(1), {{1, 2, {3}}}};
// CHECK: line [[#@LINE+1]]: error #20: identifier "unknown" is undefined
int faults[][2] = {{1, 2}, {unknown, {3}}, {4, 5}};
// CHECK: line [[#@LINE+1]]: error #29: expected an expression
int syntax[][3] = {1, {2, , 3}, 4};
int behind = sizeof items;
// CHECK: line [[#@LINE+1]]: error #68: expected a "}"
int open[] = {1, 2, 3;
// CHECK-NOT: error #
#endif
