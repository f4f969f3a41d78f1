// What can't fit into a file isn't begun to be written.
// RUN: (%krtparse --gcc --c99 --i_output_file=%t.if %s; echo status=$?) 2>&1 | %FileCheck %s
// RUN: (%krtparse --gcc --c99 -DDATA --i_output_file=%t.if %s; echo status=$?) 2>&1 | %FileCheck %s
// RUN: test ! -e %t.if
// CHECK: error while writing generated IL output file: File too large
// CHECK: status=4
#ifdef DATA
char data[2000000000] = {[0 ... 1999999999] = 1};
#else
int f(int n, unsigned long long wide) {
  switch (n) {
  case 0 ... 2147483647:
    n++;
  }
  switch (wide) {
  case 0 ... 18446744073709551615u:
    n++;
  }
  return n;
}
#endif
