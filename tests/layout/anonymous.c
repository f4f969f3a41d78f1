// The members of anonymous structs and unions are members of the struct around
// them: in layout, lookup and initialisers.
// RUN: %krtparse --i_output_file=%t.if %s && %ifrun %t.if | %FileCheck %s
// RUN: %krtparse --c11 --strict -DSTRICT --i_output_file=%t.if %s
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --check-prefix=DUMP

#define SAME(a, b) extern char check[(a) == (b) ? 1 : -1]
#ifdef STRICT
#define OFFSET(type, member) (unsigned)&((type *)0)->member
#else
#define OFFSET(type, member) __builtin_offsetof(type, member)
#endif
int printf(const char *, ...);

struct point {
  char kind;
  union {
    struct {
      short x, y;
    };
    int both;
    unsigned char bytes[4];
  };
  const struct {
    int fixed;
  };
  int last;
};
SAME(sizeof(struct point), 13);
SAME(OFFSET(struct point, x), 1);
SAME(OFFSET(struct point, y), 3);
SAME(OFFSET(struct point, bytes[2]), 3);
SAME(OFFSET(struct point, fixed), 5);
SAME(OFFSET(struct point, last), 9);
// DUMP-DAG: csu struct point size 104 align 8

struct point in_order = {'a', {{1, 2}}, {3}, 4};
struct point flat = {'b', 5, 6, 7, 8};
struct point named = {.y = 9, .x = 10, .last = 11, .fixed = 12, .kind = 'c'};
struct point by_union = {.both = 0x00020001, .last = 1};

static int sum(const struct point *p) {
  return p->x + p->y + p->fixed + p->last;
}

int main(void) {
  struct point copy = in_order;
  int *inside = &copy.both;
  printf("%d %d %d %d\n", sum(&in_order), sum(&flat), sum(&named), sum(&by_union));
  // CHECK: 10 26 42 4
  copy.y = 7;
  copy.x++;
  printf("%x %d\n", *inside, copy.bytes[2]);
  // CHECK: 70002 7
  printf("%c %c\n", flat.kind, (&named)->kind);
  // CHECK: b c
  return 0;
}
