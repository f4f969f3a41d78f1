// RUN: %krtparse --gcc --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Objects without a name: at file scope, constant, with run-time values, and
   where they are evaluated more than once or not at all. */
int printf(const char *format, ...);

struct point {
  int x, y;
};
struct box {
  struct point low, high;
  const char *name;
};

static int *numbers = (int[]){1, 2, 3, [5] = 6};
static struct point *origin = &(struct point){.y = 7};
static struct point **nested = &(struct point *){&(struct point){8, 9}};
static int calls;
static int scalar = (int){2}, unbound[] = (int[]){3, 4};
static struct box boxes[] = {(struct box){{1}, .name = "a"}, {(struct point){2, 3}, {4}, "b"}};

static int next(void) { return ++calls; }
static int sum(const int *p, int n) {
  int s = 0;
  while (n-- > 0)
    s = s * 10 + *p++;
  return s;
}
static int clear(int *p) {
  int old = *p;
  *p = 0;
  return old;
}
static struct point add(struct point a, struct point b) {
  return (struct point){a.x + b.x, a.y + b.y};
}
static void show(const struct box *b) {
  printf("%d %d %d %d %s\n", b->low.x, b->low.y, b->high.x, b->high.y, b->name);
}

static void repeated(int n) {
  int i, total = 0;
  for (i = 0; i < n; i++) {
    struct point *p = &(struct point){.x = i};
    p->y += 5;
    total += p->x * p->y;
  }
  for (i = 0; i < n && clear((int[]){3}) == 3; i += *(int[]){1})
    total++;
  i = 0;
  while (sum((int[]){i, clear((int[2]){4})}, 2) < 30)
    i++;
  do
    total += (int){5};
  while (--n > (int){0});
  printf("%d %d\n", total, i);
}

int main(void) {
  struct point p = add((struct point){1, 2}, (struct point){.y = next()});
  int x = 3, *q;
  show(&(struct box){{1, 2}, {next(), 4}, "box"});
  show(&(struct box){.high = p, .name = (char[]){"text"}});
  printf("%d %d %d %d\n", numbers[0] + numbers[5], origin->x, origin->y, (*nested)->y);
  printf("%d\n", sum((int[]){x, x + 1, 7}, 3));
  printf("%d\n", (x = 9, sum((int[]){x, 1}, 2)));
  printf("%d %d\n", x > 100 ? sum((int[]){next()}, 1) : 0, x > 1 && sum((int[]){next()}, 1));
  printf("%d %s %d\n", (int){4} + (int){x}, (const char *){"literal"}, (int)sizeof((int[]){1, 2, 3}));
  show(&boxes[0]);
  show(&boxes[1]);
  printf("%d %d\n", scalar, unbound[1] + (int)sizeof unbound);
  q = (int[]){1, 2};
  q[1]++;
  (struct point){1, 2}.x;
  ((struct point){5, 6}).y = 3;
  if ((struct point){x, 1}.x == 9)
    printf("%d %d\n", q[0], q[1]);
  switch ((int){2}) {
  case 2:
    printf("two %g\n", *(double *){&(double){2.5}});
  }
  repeated(4);
  int *first = (int[]){x, 2} ?: &x;
  printf("%d %d %d\n", (struct point){x, 3}.x ?: 4, (struct point){0, x}.x ?: 4, first[0]);
  printf("%d\n", (struct point){calls, 0}.x);
  return 0;
}
