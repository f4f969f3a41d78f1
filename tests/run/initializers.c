// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Initialisers of all shapes, of static and of automatic objects. */
int printf(const char *format, ...);

struct point {
  int x, y;
};
struct shape {
  const char *name;
  struct point points[3];
  int (*measure)(const struct shape *);
  char tag[4];
  unsigned visible : 1, layer : 4;
};

static int first(const struct shape *s) {
  return s->points[0].x;
}
static int total(const struct shape *s) {
  return s->points[0].x + s->points[1].y + s->points[2].x;
}

int tentative;
int tentative;
int zero = 0, negative = -5, folded = 3 * 4 + (7 > 2);
unsigned char bytes[5] = {1, 2, 255};
char exact[3] = "abc", padded[8] = "hi", sized[] = "sized", *text = "text" + 1;
int matrix[2][3] = {{1, 2}, {4, 5, 6}}, elided[2][3] = {1, 2, 3, 4};
int designated[8] = {[5] = 50, 60, [1] = 10, [6] = 66};
struct point origin, corner = {.y = 4, .x = 3}, row[] = {{1, 2}, {3}, 5, 6};
struct shape shapes[] = {
    {"first", {{1, 2}, {3, 4}}, first, "ab", 1, 9},
    {.measure = total, .points[1] = {7, 8}, .points[2].x = 9, .name = "total", .layer = 3},
    {"flat", 1, 2, 3, 4, 5, 6, &total, {'x', 'y'}},
};
union {
  unsigned char c;
  unsigned w;
  struct point p;
} u1 = {200}, u2 = {.w = 0x12345678}, u3 = {.p = {1, -1}};
struct {
  int before;
  union {
    char c;
    int i;
  } in[2];
  int after;
} nested = {1, {{2}, {.i = 70000}}, 3};
int *inside = &matrix[1][1], *behind = elided[1] + 2, *member = &corner.y;
const char *const list[3] = {"a", padded + 1, sized + sizeof sized - 3};
struct shape *self = &shapes[2];
struct ring {
  struct ring *next;
  int value;
} ring_a, ring_b = {&ring_a, 2}, ring_a = {&ring_b, 1};
unsigned wrapped = -1, masked = 0xFFFFFFFFu & ~0xFu;
signed char narrowed = 200;
long long large = 1LL << 40;
_Bool truth = 1;

static void show(const struct shape *s) {
  printf("%s %d %d %d [%.4s] %u %u\n", s->name, s->points[1].x, s->points[2].y, s->measure(s),
         s->tag, s->visible, s->layer);
}

static void numbers(const int *p, int n) {
  while (n--)
    printf("%d ", *p++);
  printf("\n");
}

static void automatic(int n) {
  int plain = n * 2, array[4] = {n, n + 1}, all_zero[6] = {0}, constant[3] = {7, 8, 9};
  int table[2][2] = {{n}, {n + 1, n + 2}}, gaps[5] = {[3] = n, 1};
  struct point p = {n, -n}, q = p, pair[2] = {{n, 1}, {.y = n}};
  struct shape s = {"auto", {{n}}, total, "t", n & 1, n};
  char local[8] = "loc", *pointer = local + 1, chars[] = {'o', 'k', 0};
  union {
    int i;
    char c[4];
  } u = {n};
  static int kept[3] = {1, 2}, *where = &kept[2];
  const char *names[] = {"n", pointer};

  kept[2] += n;
  printf("%d %d %d %d %d\n", plain, q.x, q.y, pair[0].x, pair[1].y);
  numbers(array, 4);
  numbers(all_zero, 6);
  numbers(constant, 3);
  numbers(table[0], 4);
  numbers(gaps, 5);
  show(&s);
  printf("%s %s %s %s%s %d %d\n", local, pointer, chars, names[0], names[1], u.c[0], *where);
  pointer[0] = 'O';
  constant[1] = 0;
}

int main(void) {
  int i;

  printf("%d %d %d %d\n", tentative, zero, negative, folded);
  printf("%d %d %d\n", bytes[0], bytes[2], bytes[4]);
  printf("%.3s %s %d %s %d %s\n", exact, padded, padded[7], sized, (int)sizeof sized, text);
  numbers(matrix[0], 6);
  numbers(elided[0], 6);
  numbers(designated, 8);
  printf("%d %d %d\n", origin.x, corner.x, corner.y);
  numbers(&row[0].x, sizeof row / sizeof(int));
  for (i = 0; i < 3; i++)
    show(&shapes[i]);
  printf("%u %u %d %d\n", u1.c, u2.w, u3.p.x, u3.p.y);
  printf("%d %d %d %d\n", nested.before, nested.in[0].c, nested.in[1].i, nested.after);
  printf("%d %d %d\n", *inside, behind[-1], *member);
  printf("%s %s %s\n", list[0], list[1], list[2]);
  printf("%s %d %d\n", self->name, ring_a.next->value, ring_b.next->next->value);
  printf("%u %u %d %lld %d\n", wrapped, masked, narrowed, large, truth);
  automatic(3);
  automatic(4);
  return 0;
}
