// RUN: %krtparse --gcc --c99 --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host -lm
// RUN: %t.host > %t.expected
// RUN: diff %t.out %t.expected
// Complex values in all their uses.

int printf(const char* format, ...);

#define SHOW(z)                                                                                    \
  ({                                                                                               \
    cd value = (z);                                                                                \
    printf("%s: %g %g\n", #z, __real__ value, __imag__ value);                                     \
  })

typedef double _Complex cd;
typedef float _Complex cf;

cd outer = 1.0 + 2.0i;
const cf table[3] = {1.0f, 2.0fi, 3.0f - 1.0fi};
static struct {
  int tag;
  cd value;
} pair = {7, 4.0 - 3.0i};

static cf widen(cf a, double b) {
  a += b;
  return a ? -a : a;
}

static cd add(cd a, cd b) {
  return a + b;
}

static int calls;
static cd* place(cd* p) {
  calls++;
  return p;
}

static void operators(cd z, cd w) {
  SHOW(z + w);
  SHOW(z - w);
  SHOW(z * w);
  SHOW(z / w);
  SHOW(-z);
  SHOW(~z);
  SHOW(+z);
  SHOW(z * 2);
  SHOW(1 / z);
  SHOW((cf)z);
  printf("compare %d %d %d %d\n", z == w, z != w, z == z, (2.0 + 0.0i) == 2);
  printf("truth %d %d %d %d %d\n", !z, z && 1, 0.0i || 0, z ? 1 : 2, (_Bool)w);
}

static void assignments(void) {
  cd z = outer, w = 5;
  __real__ z = 8;
  __imag__ w -= 2;
  SHOW(z);
  SHOW(w);
  SHOW(z += w);
  SHOW(z *= 2.0i);
  SHOW(z -= 1);
  SHOW(z /= 2);
  SHOW(z++);
  SHOW(--z);
  SHOW(*place(&z) += 1);
  SHOW((*place(&z))++);
  printf("calls %d\n", calls);
  int i = 9;
  i += 2.5 + 1.0i;
  double d = z;
  printf("real %d %g\n", i, d);
}

static void places(void) {
  cd local[2] = {[1] = 2.0i};
  cd* p = &local[1];
  struct {
    cf c;
    cd d;
  } s = {.d = add(outer, 1), .c = 3};
  SHOW(*p);
  SHOW(local[0]);
  SHOW(s.c);
  SHOW(s.d);
  SHOW(table[2]);
  SHOW(pair.value);
  SHOW(((cd){6.0i}));
  SHOW(({
    cd t = *p;
    t* t;
  }));
  SHOW(widen(3.0f, 2.0));
  SHOW(1 ? s.c : s.d);
  for (cd c = 3; c; c -= 1)
    printf("turn %g\n", (double)c);
  printf("size %d %d\n", (int)sizeof(cd), (int)sizeof(cf));
}

int main(void) {
  operators(1.0 + 2.0i, 3.0 - 1.0i);
  assignments();
  places();
  return 0;
}
