// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host && %t.host > %t.expected
// RUN: diff %t.expected %t.out
// RUN: %krtparse -n --c99 --define=FAULTS --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// RUN: %krtparse -n --c99 --strict --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=STRICT < %t.err
// Designators: ranges, values set twice, anonymous members, old forms.
int printf(const char *format, ...);
struct point { int x, y; };
struct nest {
  int a;
  struct {
    int b;
    union { int c; char d; };
  };
  int e;
};
int split[6] = {[0 ... 4] = 7, [2] = 3};
struct point part[4] = {[0 ... 3] = {1, 2}, [1].x = 5, [2 ... 3].y = 9};
int table[3][3] = {[1][2] = 4, 5, [0] = {1}, [2] = {[1] = 3}};
int grid[2][2] = {[0 ... 1][0 ... 1] = 4};
struct nest nests[] = {{1, {2, {3}}, 4}, {1, 2, 3, 4}, {.b = 1, .d = 2, 7}, {.c = 1, 2}};
int after = sizeof nests;
union { struct point p; long l; } twice = {.p.x = 1, .p.y = 2}, last = {.l = 1, .p = {3, 4}};
// STRICT: line [[#@LINE+1]]: error #
struct point old = {y: 3, x: 4};
// STRICT: line [[#@LINE+1]]: error #705: expected an "="
int without[] = {[2] 5, [1] = 3};
struct point kept[2][1] = {{{1, .x = 3}}, [0][0].y = 25};
struct line { struct point from, to; int width; };
struct point ranged[3] = {[0 ... 1].x = 5, 6, 7, 8};
struct line lines[3] = {[0 ... 1].from.y = 3, 4, [2] = {.to.y = 8, 9}};
union mixed { int i; char c[8]; struct point p; };
union mixed mixed[] = {{.c = "abc"}, {.c[1] = 'x', .c[0] = 'y'}, [0].p.y = 65};
union { struct point s; int k[2]; } other = {.s.x = 1, .k[1] = 2}, same = {.k = {1, 2}, .k[0] = 4};
struct { struct { int k[4]; } m[2]; int z; } tree = {
    .m[1].k[2] = 5, 6, .m[0].k = {1, 2}, .m[0].k[1] = 9, 10, 11, 12, .z = 1};
int sparse[] = {[1000000] = 3, [2] = 7};
int *literal = (int[]){[3] = 4, [0 ... 1] = 8};
char letters[2][4] = {"abc", [0][1] = 'x', [1] = {[2] = 'z'}};

struct block { int a[3]; struct point p[2]; int *self; };
struct block blocks[2][2] = {[0 ... 1] = {[1] = {.p = {[1].y = 3}, .a[2] = 4, .self = sparse}}};
union mixed sides[3] = {[0 ... 2] = {.p = {.y = 67}}};

static int calls;
static int next(void) { return ++calls; }

// What is set anew is not evaluated for its old value.
static void set_twice(struct point q) {
  struct line l = {q, .to = q, .to.x = next(), .width = next(), .from.y = next()};
  struct line m = {.from = {.x = 1, .y = 2}, .from.x = 5, .width = next(), .width = 3};
  struct point points[] = {q, {1}, q, [1].y = 4, 3, 5};
  printf("%d %d %d %d %d\n", l.from.x, l.from.y, l.to.x, l.to.y, l.width);
  printf("%d %d %d %d\n", m.from.x, m.from.y, m.width, calls);
  printf("%d %d %d %d\n", points[1].x, points[1].y, points[2].x, points[2].y);
}

static void nested(void) {
  int i;
  for (i = 0; i < 3; i++)
    printf("(%d %d) ", ranged[i].x, ranged[i].y);
  for (i = 0; i < 3; i++)
    printf("(%d %d %d %d %d) ", lines[i].from.x, lines[i].from.y, lines[i].to.x, lines[i].to.y,
           lines[i].width);
  for (i = 0; i < 8; i++)
    printf("%d ", tree.m[i / 4].k[i % 4]);
  printf("%d %d %d %d\n", other.k[0], other.k[1], same.k[0], same.k[1]);
  printf("%d\n%d %d %s\n", tree.z, mixed[0].p.x, mixed[0].p.y, mixed[1].c);
  printf("%d %d %d %d %d\n", sparse[2], sparse[1000000], literal[0], literal[2], literal[3]);
}

// Designators within the value of a range hold for each of its elements.
static void repeated(void) {
  static struct block kept[2] = {[0 ... 1] = {.p[1] = {1, 2}, .a = {[2] = 9, [0] = 4}}};
  struct block local[2] = {[0 ... 1] = {.p[1] = {1, 2}, .a = {[2] = 9, [0] = 4}}};
  int i;
  for (i = 0; i < 4; i++)
    printf("%d %d %d ", blocks[i / 2][i % 2].p[1].y, blocks[i / 2][i % 2].a[2],
           blocks[i / 2][i % 2].self == sparse);
  for (i = 0; i < 2; i++)
    printf("%d %d %d %d ", kept[i].a[0], kept[i].a[2], local[i].p[1].x, local[i].a[2]);
  printf("%d %d\n", sides[0].p.y, sides[2].p.y);
}

static void automatic(int n) {
  int shorts[4] = {[0 ... 2] = -4, -7, [1] = n}, i;
  struct nest nest = {.c = n, .a = n + 1}, changed = {1, {2, {3}}, .d = n};
  for (i = 0; i < 4; i++)
    printf(" %d", shorts[i]);
  printf(" %d %d %d %d\n", nest.a, nest.c, nest.e, changed.d);
}

int main(void) {
  int i;
  for (i = 0; i < 6; i++)
    printf(" %d", split[i]);
  for (i = 0; i < 4; i++)
    printf(" (%d %d)", part[i].x, part[i].y);
  for (i = 0; i < 9; i++)
    printf(" %d", table[i / 3][i % 3]);
  for (i = 0; i < 4; i++)
    printf(" %d [%d %d %d %d]", grid[i / 2][i % 2], nests[i].a, nests[i].b, nests[i].c, nests[i].e);
  printf("\n%d %d %d %d %d\n", after, twice.p.x, twice.p.y, last.p.x, last.p.y);
  printf("%d %d %d %d %s %c\n", old.x, old.y, without[2], without[1], letters[0], letters[1][2]);
  printf("%d %d\n", kept[0][0].x, kept[0][0].y);
  automatic(6);
  nested();
  repeated();
  set_twice((struct point){7, 8});
  return 0;
}
#ifdef FAULTS
int f(void);
// CHECK: line [[#@LINE+1]]: error #147: too many initializer values
int beyond[3] = {[1 ... 3] = 1};
// CHECK: line [[#@LINE+1]]: error #147:
int backwards[3] = {[2 ... 1] = 1};
// CHECK: line [[#@LINE+1]]: error #147:
int negative[3] = {[-1] = 1};
// CHECK: line [[#@LINE+1]]: error #28:
int variable[3] = {[after] = 1};
// CHECK: line [[#@LINE+1]]: error #705: expected an "="
struct point no_equals = {.x 1};
// CHECK: line [[#@LINE+1]]: error #41:
struct point no_name = {. = 1};
// CHECK: line [[#@LINE+1]]: error #1099: this kind of designator cannot be used for type "int"
struct point deep = {.x.y = 1};
// CHECK: line [[#@LINE+1]]: error #1099:
int scalar = {[0] = 1};
void automatic_ranges(void) {
  // CHECK: line [[#@LINE+1]]: error #1025: array range designators cannot be applied to dynamic initializers
  int repeated[5] = {[1 ... 3] = f()};
  // CHECK: line [[#@LINE+1]]: error #1025:
  struct point inside[3] = {[0 ... 1] = {1, f()}};
  int once[3] = {[1 ... 1] = f()};
}
// CHECK-NOT: error #
#endif
