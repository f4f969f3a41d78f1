// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Structures and unions as values: copies, arguments, results. */
int printf(const char *format, ...);

struct point {
  int x, y;
};
struct line {
  struct point from, to;
  char name[10];
};
struct small {
  unsigned char c;
};
struct node {
  struct node *next;
  int value;
};
union number {
  unsigned word;
  unsigned char bytes[4];
  struct point *p;
};

static struct point make(int x, int y) {
  struct point p;
  p.x = x;
  p.y = y;
  return p;
}

static struct line turn(struct line l) {
  struct point swap = l.from;
  l.from = l.to;
  l.to = swap;
  l.name[0] = '~';
  return l;
}

static struct small next(struct small s) {
  s.c++;
  return s;
}

static int length(struct line l, struct point scale) {
  return (l.to.x - l.from.x) * scale.x + (l.to.y - l.from.y) * scale.y;
}

static void show(struct line l) {
  printf("%s: %d,%d - %d,%d\n", l.name, l.from.x, l.from.y, l.to.x, l.to.y);
}

static struct node *push(struct node *top, struct node *fresh, int value) {
  fresh->next = top;
  fresh->value = value;
  return fresh;
}

static union number number_of(unsigned word) {
  union number n;
  n.word = word;
  return n;
}

static struct point factorial(struct point p) {
  if (p.x <= 1)
    return make(1, p.y);
  return make(p.x * factorial(make(p.x - 1, p.y + 1)).x, p.y);
}

int main(void) {
  struct line l = {{1, 2}, {3, 5}, "abc"}, copy, lines[3], *p = lines;
  struct small s = {254};
  struct node nodes[4], *top = 0, *n;
  union number u;
  int i;

  copy = l;
  copy.name[1] = 'X';
  copy.to = make(10, 20);
  show(l);
  show(copy);
  show(turn(copy));
  show(turn(turn(l)));
  printf("%d\n", length(copy, make(2, 3)));
  printf("%d %d\n", make(7, 8).y, turn(copy).from.x);
  lines[0] = lines[1] = lines[2] = copy;
  p[1].from.x = 99;
  *++p = turn(*p);
  p[1] = p[0];
  p[1].name[2] = '!';
  for (i = 0; i < 3; i++)
    show(lines[i]);
  show(i > 2 ? l : copy);
  show((i++, copy));
  printf("%d\n", i);
  s = next(next(next(s)));
  printf("%d\n", s.c);
  for (i = 0; i < 4; i++)
    top = push(top, &nodes[i], i * i);
  for (n = top; n; n = n->next)
    printf("%d ", n->value);
  printf("%d\n", top->next->next->value);
  u = number_of(0x11223344);
  printf("%x %x %x\n", u.word, u.bytes[0], number_of(513).bytes[1]);
  u.bytes[3] = 0xFF;
  printf("%x\n", u.word);
  u.p = &l.to;
  u.p->x = -1;
  printf("%d %d\n", l.to.x, (*u.p).y);
  printf("%d %d\n", factorial(make(6, 0)).x, factorial(make(3, 4)).y);
  return 0;
}
