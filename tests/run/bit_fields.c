// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Bit-fields of all widths and signs. */
int printf(const char *format, ...);

struct flags {
  unsigned a : 1, b : 3, c : 7;
  int d : 5;
  unsigned e : 16;
  int f : 32;
  unsigned : 0;
  unsigned g : 31;
  signed int h : 1;
};

struct mixed {
  unsigned char tag;
  unsigned value : 12;
  unsigned char end;
};

static struct flags global = {1, 5, 100, -9, 0xBEEF, -123456, 0x7FFFFFFF, -1};
static struct mixed pairs[2] = {{1, 2, 3}, {4, 0xFFF, 6}};

static void show(const struct flags *f) {
  printf("%u %u %u %d %u %d %u %d\n", f->a, f->b, f->c, f->d, f->e, f->f, f->g, f->h);
}

/* Wider than an int, and of an enumeration that has a name of its own. */
typedef enum { low, high, highest = 7 } level;
struct wide {
  long long field : 52;
  level level : 3;
};

static struct wide changed(struct wide w) {
  w.field |= 0x0008765412345678LL;
  w.level++;
  return w;
}

int main(void) {
  struct wide w = {0xFFF000FFF000FLL, low};
  struct flags f = {0};
  struct flags *p = &f;
  struct {
    _Bool flag : 1;
  } b = {0};
  union {
    struct {
      unsigned low : 4, middle : 8, high : 20;
    } part;
    unsigned all;
  } u;
  int i = 0;

  show(&global);
  show(p);
  f.b = 9;
  p->c = -1;
  p->d = 15;
  show(p);
  p->d++;
  f.a = 1;
  show(p);
  --p->d;
  f.a += 1;
  f.b -= 3;
  show(p);
  f.c *= 3;
  f.c >>= 1;
  f.e = ~0;
  f.e /= -2 + 5;
  f.f = 0x80000000;
  f.g = f.f + 1u;
  f.h = 1;
  show(p);
  printf("%d\n", f.c++);
  printf("%d\n", f.c--);
  printf("%d\n", ++f.b);
  printf("%d\n", f.d = 31);
  printf("%d\n", (f.b = 15) + 1);
  printf("%d\n", f.b < -1);
  printf("%d\n", f.e - 70000 < 0);
  ++b.flag;
  printf("%d\n", b.flag++);
  printf("%d\n", b.flag += 3);
  printf("%d\n", b.flag = i * 0 + 4);
  f = global;
  f.a = f.b = f.c = 6;
  show(&f);
  for (i = 0; i < 2; i++) {
    pairs[i].value += 2;
    printf("%u %u %u\n", pairs[i].tag, pairs[i].value, pairs[i].end);
  }
  u.all = 0xABCDE123;
  printf("%x %x %x\n", u.part.low, u.part.middle, u.part.high);
  u.part.middle = 0x77;
  printf("%x\n", u.all);
  w = changed(w);
  printf("%d ", w.level);
  w.level = highest; /* without negative values no bit is a sign's */
  printf("%llx %d\n", (unsigned long long)w.field, w.level);
  return 0;
}
