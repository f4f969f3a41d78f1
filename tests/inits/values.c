// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -funsigned-char -w %s -o %t.host && %t.host > %t.expected
// RUN: diff %t.expected %t.out
// Initialisers of all shapes, static and automatic, compared with the host's.

int printf(const char *format, ...);

struct point { int x, y; };
struct line { struct point from, to; char name[4]; };
union number { char c; int i; short s[2]; };
struct bits { unsigned a : 3, : 2, b : 4; int c : 5; };

int elided[2][3] = {1, 2, 3, 4};
int sparse[] = {1, [5] = 2, 3, [2] = 9};
int again[4] = {[1] = 5, 6, [1] = 7};
int ranges[8] = {[1 ... 3] = 4, [6] = 1};
char text[] = "abc", full[3] = "abc", padded[6] = {"ab"}, braces[] = {'x', 'y', 0};
char *pointers[] = {"one", "two", text + 1, &text[2], 0};
struct point swapped = {.y = 1, .x = 2};
struct line lines[] = {{{1, 2}, {3, 4}, "l1"}, 5, 6, 7, 8, "l2", [3] = {.to.y = 9, .from = {1}}};
struct line nested = {.to.x = 1, .to.y = 2, .from.y = 3, .name = "n", .name[1] = 'm'};
union number first = {'a'}, second = {.i = 0x01020304}, third = {.s[1] = 7};
struct bits packed = {5, 9, -3};
struct { struct { int a[2]; } in[2]; int tail; } deep = {{{{1, 2}}, {3}}, 4};
int (*functions[])(const char *, ...) = {printf};
int *inside = &sparse[5], *behind = sparse + 7;
struct point *second_end = &lines[1].to;
long long wide = -1, wider = 0x123456789aLL;
unsigned char cut = 300;

static void print_ints(const char *name, const int *p, int n) {
  printf("%s:", name);
  while (n-- > 0)
    printf(" %d", *p++);
  printf("\n");
}

static void print_lines(const char *name, const struct line *l, int n) {
  for (; n-- > 0; l++)
    printf("%s: %d %d %d %d %.4s\n", name, l->from.x, l->from.y, l->to.x, l->to.y, l->name);
}

static void print_statics(void) {
  int i;
  print_ints("elided", &elided[0][0], 6);
  print_ints("sparse", sparse, sizeof sparse / sizeof *sparse);
  print_ints("again", again, 4);
  print_ints("ranges", ranges, 8);
  printf("%d %d %.3s %s %d %s\n", (int)sizeof text, (int)sizeof full, full, padded, padded[5], braces);
  for (i = 0; pointers[i]; i++)
    printf("%s ", pointers[i]);
  printf("\n%d %d\n", swapped.x, swapped.y);
  print_lines("lines", lines, sizeof lines / sizeof *lines);
  print_lines("nested", &nested, 1);
  printf("%c %x %d\n", first.c, second.i, third.s[1]);
  printf("%u %u %d\n", packed.a, packed.b, packed.c);
  printf("%d %d %d %d %d\n", deep.in[0].a[0], deep.in[0].a[1], deep.in[1].a[0], deep.in[1].a[1], deep.tail);
  functions[0]("%d %d %d\n", *inside, (int)(behind - sparse), second_end->y);
  printf("%lld %llx %d\n", wide, wider, cut);
}

static struct point make(int x) {
  struct point p = {x, x * 2};
  return p;
}

static void print_automatics(int n) {
  int values[3] = {n, n + 1}, more[] = {n, [3] = n * n, n};
  struct point a = {n, 5}, b = a, c = make(n), both[2] = {a, {.y = n}};
  struct line mixed = {c, {n, 1}, {'m', n + '0'}}, designated = {.to = a, .from.y = n};
  union number u = {.s = {n, 2}};
  char local[8] = "xy", *p = local + 1;
  static int calls = 10, kept[2] = {1, 2};
  int scalar = {n};
  print_ints("values", values, 3);
  print_ints("more", more, sizeof more / sizeof *more);
  printf("%d %d %d %d %d %d\n", a.x, b.y, c.x, c.y, both[0].y, both[1].y);
  print_lines("mixed", &mixed, 1);
  print_lines("designated", &designated, 1);
  printf("%d %d %s %s %d %d\n", u.s[0], u.s[1], local, p, local[7], scalar);
  printf("%d %d\n", calls++, kept[1]++);
}

int main(void) {
  print_statics();
  print_automatics(3);
  print_automatics(4);
  return 0;
}
