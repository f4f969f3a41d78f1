// RUN: rm -f %t.xref && %krtparse --c99 -n --xref=%t.xref %s
// RUN: cut -f2-3,5- %t.xref | %FileCheck --match-full-lines %s
// One line a declaration or use: letter, line and column.
#define M(a) a + 1
struct u;
struct s { int m; };
typedef int t;
enum e { A };
extern int x;
int x = 1;
int *address(struct s *p)
{
  t *q = &x;
  x = A;
  x += M(1);
  p->m = x;
  return q;
}
#ifdef M
#endif
// CHECK: M{{.}}D{{.}}4{{.}}9
// CHECK: u{{.}}t{{.}}5{{.}}8
// CHECK: s{{.}}T{{.}}6{{.}}8
// CHECK: t{{.}}T{{.}}7{{.}}13
// CHECK: A{{.}}D{{.}}8{{.}}10
// CHECK: x{{.}}d{{.}}9{{.}}12
// CHECK: x{{.}}D{{.}}10{{.}}5
// CHECK: s{{.}}R{{.}}11{{.}}21
// CHECK: address{{.}}D{{.}}11{{.}}6
// CHECK: t{{.}}R{{.}}13{{.}}3
// CHECK: x{{.}}A{{.}}13{{.}}11
// CHECK: A{{.}}R{{.}}14{{.}}7
// CHECK: x{{.}}M{{.}}14{{.}}3
// CHECK: M{{.}}R{{.}}15{{.}}8
// CHECK: x{{.}}C{{.}}15{{.}}3
// CHECK: x{{.}}U{{.}}16{{.}}10
// CHECK: q{{.}}U{{.}}17{{.}}10
// CHECK: M{{.}}R{{.}}19{{.}}8
