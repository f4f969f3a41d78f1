// RUN: %krtparse --gcc --c99 --no_warnings -I%S/../../include --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host -lm
// RUN: %t.host > %t.expected
// RUN: diff %t.out %t.expected
// Where complex values stand: arguments, members, unions, statics, statement
// expressions, and what names them.

#include <stdarg.h>
int printf(const char* format, ...);
typedef double _Complex cd;
typedef float _Complex cf;
#define SHOW(z)                                                                                    \
  ({                                                                                               \
    cd value = (z);                                                                                \
    printf("%s: %g %g\n", #z, __real__ value, __imag__ value);                                     \
  })
cd va(int n, ...) {
  va_list ap;
  va_start(ap, n);
  cd s = 0;
  while (n--) {
    s += va_arg(ap, cd);
  }
  va_end(ap);
  return s;
}
cd (*fp)(int, ...) = va;
struct S {
  cf a[2];
  int k;
};
struct S mk(struct S s) {
  s.a[1] += 1.0fi;
  return s;
}
int old(a, b)
cf a;
double b;
{ return a == b; }
static volatile cf vol;
_Bool truth(cd z) {
  return z;
}
cd glob[2] = {1, 2.5i};
cd* gp = &glob[1];
static const struct S cs = {{1, [1] = 2.0fi}, 3};
union U {
  cd c;
  double d[2];
};
int main(void) {
  SHOW(va(2, (cd)1, (cd)2.0i));
  SHOW(fp(1, (cd)3));
  struct S s = mk((struct S){{1, 2}, 4});
  SHOW(s.a[1]);
  SHOW(mk(s).a[1]);
  printf("%d %d\n", old((cf)2, 2.0), truth(0.0i));
  vol = 3;
  vol += 1.0fi;
  SHOW(vol);
  vol++;
  SHOW(vol ?: 2);
  SHOW(0.0i ?: 2);
  cd z = glob[0];
  cd w = *gp;
  SHOW(z == w ? z : w);
  union U u = {.c = z};
  u.d[1] = 9;
  SHOW(u.c);
  long double _Complex ld = z;
  ld *= 2;
  SHOW(ld);
  unsigned char uc = 3;
  uc += z;
  printf("%d\n", uc);
  static cd st = 4.0 + 1.0i;
  st++;
  SHOW(st);
  int i = 2;
  i *= z;
  printf("%d\n", i);
  SHOW(cs.a[1]);
  cd arr[3] = {z, w, z + w};
  SHOW(arr[2]);
  do
    z -= 1;
  while (z != 0);
  SHOW(z);
  if (!z && (z || w))
    printf("yes\n");
  switch ((int)(__real__ w)) {
  case 0:
    printf("zero\n");
  }
  SHOW(({
    cd q = w;
    q;
  }));
  SHOW(__builtin_conj(w));
  SHOW((cf)1.1);
  double r = ({ __imag__ w; });
  printf("%g %g\n", r, __builtin_cabs(3 + 4.0i));
  __real__ i = 4;
  __real__ r += 1.5;
  *&__real__ r *= 2;
  printf("%d %g %g\n", i, r, __imag__ r);
  *&z = w;
  cd* p = arr;
  *p++ = 7;
  SHOW(arr[0]);
  (*p)++;
  SHOW(arr[1]);
  p[1] /= 2;
  SHOW(arr[2]);
  return 0;
}
