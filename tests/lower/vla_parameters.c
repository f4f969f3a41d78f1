// Bounds of parameters: side effects in them, type names in them, both styles of
// declaring parameters, arrays of more than one dimension.
// RUN: %krtparse --gcc --c99 --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out
int printf(const char *, ...);
static int calls;
static int count(int n) { calls++; return n; }
// Type names in bounds see the parameters too.
int in_name(int n, int a[n = n + 1], int b[sizeof(int[n])]) { return n; }
int both(int n, int (*a)[sizeof(int[n])], int b[][sizeof(char[n][2])]);
int both(int n, int (*a)[sizeof(int[n])], int b[][sizeof(char[n][2])]) {
  return sizeof *a + sizeof *b;
}
int in_prototype(int n, int (*f)(int k, int (*)[sizeof(int[k])]), int m[sizeof(int(*)[n])]) {
  return f ? n : n + 1;
}
// An identifier list may name the array in front of its bound.
int list(a, n) int n; int a[n]; { return a[n - 1]; }
int lists(b, m, a, n) int n, m; int a[n][m]; int b[m]; {
  return a[n - 1][m - 1] + sizeof a[0] + b[0];
}
int with_static(int n, int a[static count(1)]) { return calls; }
int called(int n, int a[count(1)][count(2)]) { return calls + sizeof *a; }
int qualified(int n, int m, int a[restrict n][m], int (*b)[m][n]) {
  return sizeof *b + sizeof **b + a[1][0];
}
int through_pointers(int n, int (*(*p)[2])[n]) { return (*(*p)[0])[1] + (*(*p)[1])[0]; }
int pointers(int n, int *a[n]) { return *a[1]; }
int routine(int n, int (*f)(int n, int (*)[n])) { int a[n][n]; a[0][n - 1] = n; return f(n, a); }
int last(int n, int (*a)[n]) { return (*a)[n - 1] + sizeof *a; }
int narrow(unsigned char n, char a[][n]) { n = 0; return sizeof a[0]; }
int wide(long long n, short a[][n + 1]) { return sizeof a[0]; }
int global = 5;
int in_order(int (*a)[global], int (*b)[global++], int (*c)[global]) {
  return sizeof *a + sizeof *b * 10 + sizeof *c * 100;
}
int transposed(int n, int a[n][n]) {
  int b[n][n];
  for (int i = 0; i < n; i++)
    for (int j = 0; j < n; j++)
      b[i][j] = a[j][i];
  return n > 2 ? transposed(n - 1, (int (*)[n - 1])b) + b[0][1] : b[1][0];
}
int main(void) {
  int x[3] = {1, 2, 3}, y[2][3] = {{1, 2, 3}, {4, 5, 6}}, z[4][4];
  printf("%d %d %d\n", in_name(3, 0, 0), both(3, 0, 0), in_prototype(2, 0, 0));
  printf("%d %d\n", list(x, 3), lists(x, 3, y, 2));
  printf("%d\n", with_static(1, x));
  printf("%d\n", called(1, (int (*)[2])y));
  printf("%d\n", qualified(2, 2, (int (*)[2])y, 0));
  int (*rows[2])[3] = {y, y + 1}, *values[2] = {x, x + 1};
  printf("%d %d\n", through_pointers(3, &rows), pointers(2, values));
  printf("%d %d %d %d\n", routine(3, last), narrow(4, 0), wide(3, 0), in_order(0, 0, 0));
  for (int i = 0; i < 16; i++)
    z[i / 4][i % 4] = i;
  printf("%d\n", transposed(4, z));
  return 0;
}
