// RUN: %krtparse --c99 --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -fwrapv -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Every binary operator on every pair of arithmetic types, with its compound
   assignment; every conversion and unary operator. A line holds the hash of the
   results of a pair on values that include the limits of the types. */
int printf(const char *format, ...);

#ifdef __x86_64__
typedef int word;
typedef unsigned uword;
#else
typedef long word;
typedef unsigned long uword;
#endif
typedef signed char schar;
typedef unsigned char uchar;
typedef unsigned short ushort;
typedef unsigned uint;
typedef long long llong;
typedef unsigned long long ullong;
typedef _Bool boolean;

static ullong hash;
static void integer(llong value) {
  hash = hash * 31 + (ullong)value + 7;
}
static void real(double value) {
  union {
    double d;
    ullong bits;
  } u = {value};
  integer(value != value ? 99 : (llong)u.bits);
}

/* The types with their values, and the range of values that convert. */
#define INTEGERS(M)                                                                                \
  M(boolean, -1e99, 1e99, 0, 1, 1, 0, 1)                                                           \
  M(char, -1.0, 256.0, 0, 1, 65, 128, 255)                                                         \
  M(schar, -129.0, 128.0, 0, 3, -1, -128, 127)                                                     \
  M(uchar, -1.0, 256.0, 0, 7, 127, 128, 255)                                                       \
  M(short, -32769.0, 32768.0, 3, -1, 300, -32768, 32767)                                           \
  M(ushort, -1.0, 65536.0, 0, 1, 300, 32768, 65535)                                                \
  M(int, -2147483649.0, 2147483648.0, -7, 31, 65536, -2147483647 - 1, 2147483647)                  \
  M(uint, -1.0, 4294967296.0, 0, 1, 100000, 2147483648u, 4294967295u)                              \
  M(word, -2147483649.0, 2147483648.0, 5, -1, 70000, -2147483647 - 1, 2147483647)                  \
  M(uword, -1.0, 4294967296.0, 0, 9, 70000, 2147483648u, 4294967295u)                              \
  M(llong, -9223372036854775808.0, 9223372036854775808.0, -5, 1, 4294967296, -4294967297,          \
    9223372036854775807)                                                                           \
  M(ullong, -1.0, 18446744073709551616.0, 63, 1, 4294967295, 123456789012345,                      \
    18446744073709551615u)
#define FLOATS(M)                                                                                  \
  M(float, -1e99, 1e99, 0, 3.25f, -7, 0.1f, 1e10f)                                                 \
  M(double, -1e308, 1e308, -1.5, 3.25, 0.1, 4294967295.0, -1e300)

#define VALUES(type, low, high, ...)                                                               \
  static type type##_values[] = {__VA_ARGS__};                                                     \
  static int fits_##type(double value) {                                                           \
    return value > low && value < high;                                                            \
  }
INTEGERS(VALUES)
FLOATS(VALUES)

#define BEGIN(T, U)                                                                                \
  static void T##_##U(void) {                                                                      \
    hash = 1;                                                                                      \
    for (int i = 0; i < 25; i++) {                                                                 \
      T a = T##_values[i / 5], x = a;                                                              \
      struct {                                                                                     \
        char pad;                                                                                  \
        U b;                                                                                       \
      } s = {1, U##_values[i % 5]}, *p = &s;
#define END(T, U)                                                                                  \
  }                                                                                                \
  printf(#T " " #U " %llx\n", hash);                                                               \
  }

#define COMPARE(op) integer(a op s.b), integer(p->b op a);
#define COMPARISONS                                                                                \
  COMPARE(==)                                                                                      \
  COMPARE(!=)                                                                                      \
  COMPARE(<)                                                                                       \
  COMPARE(>)                                                                                       \
  COMPARE(<=)                                                                                      \
  COMPARE(>=)                                                                                      \
  COMPARE(&&)                                                                                      \
  COMPARE(||)

#define COMPUTE(op) integer(a op s.b), integer(x op## = p->b), integer(x);
#define INTEGER_PAIR(T, U)                                                                         \
  BEGIN(T, U)                                                                                      \
  COMPUTE(+)                                                                                       \
  COMPUTE(-)                                                                                       \
  COMPUTE(*)                                                                                       \
  COMPUTE(&)                                                                                       \
  COMPUTE(|)                                                                                       \
  COMPUTE(^)                                                                                       \
  x = a;                                                                                           \
  if (s.b != 0 && s.b + 1 != 0) {                                                                  \
    COMPUTE(/)                                                                                     \
    COMPUTE(%)                                                                                     \
  }                                                                                                \
  if ((llong)s.b >= 0 && (llong)s.b < (int)sizeof(+a) * 8) {                                       \
    COMPUTE(<<)                                                                                    \
    COMPUTE(>>)                                                                                    \
  }                                                                                                \
  COMPARISONS                                                                                      \
  integer(i & 1 ? a : s.b), integer((a, s.b)), integer((U)a), integer(p->b = a);                   \
  END(T, U)

#define COMPUTE_REAL(T, op)                                                                        \
  real(a op s.b), x = a;                                                                           \
  if (fits_##T(a op s.b))                                                                          \
    real(x op## = p->b), real(x);
#define REAL_PAIR(T, U)                                                                            \
  BEGIN(T, U)                                                                                      \
  COMPUTE_REAL(T, +)                                                                               \
  COMPUTE_REAL(T, -)                                                                               \
  COMPUTE_REAL(T, *)                                                                               \
  COMPUTE_REAL(T, /)                                                                               \
  COMPARISONS                                                                                      \
  real(i & 1 ? a : s.b), real((a, s.b));                                                           \
  if (fits_##U(a))                                                                                 \
    real((U)a), real(p->b = a);                                                                    \
  END(T, U)

#define WITH_INTEGERS(M, T)                                                                        \
  M(T, boolean) M(T, char) M(T, schar) M(T, uchar) M(T, short) M(T, ushort)                        \
  M(T, int) M(T, uint) M(T, word) M(T, uword) M(T, llong) M(T, ullong)
#define WITH_FLOATS(M, T) M(T, float) M(T, double)
#define INTEGER_TYPE(T, ...) WITH_INTEGERS(INTEGER_PAIR, T) WITH_FLOATS(REAL_PAIR, T)
#define REAL_TYPE(T, ...) WITH_INTEGERS(REAL_PAIR, T) WITH_FLOATS(REAL_PAIR, T)
INTEGERS(INTEGER_TYPE)
FLOATS(REAL_TYPE)

#define STEPS(T, show)                                                                             \
  show(x++), show(x), show(++x), show(x--), show(x), show(--x), show(-x), show(+x), show(!x);      \
  show(x ? 1 : 2);                                                                                 \
  while (x) {                                                                                      \
    show(3);                                                                                       \
    break;                                                                                         \
  }
#define UNARY(T, ...)                                                                              \
  hash = 1;                                                                                        \
  for (int i = 0; i < 5; i++) {                                                                    \
    T x = T##_values[i];                                                                           \
    STEPS(T, integer)                                                                              \
    integer(~x);                                                                                   \
  }                                                                                                \
  printf(#T " %llx\n", hash);
#define UNARY_REAL(T, ...)                                                                         \
  hash = 1;                                                                                        \
  for (int i = 0; i < 5; i++) {                                                                    \
    T x = T##_values[i];                                                                           \
    STEPS(T, real)                                                                                 \
  }                                                                                                \
  printf(#T " %llx\n", hash);

#define CALL(T, U) T##_##U();
#define CALLS(T, ...) WITH_INTEGERS(CALL, T) WITH_FLOATS(CALL, T)
int main(void) {
  INTEGERS(CALLS)
  FLOATS(CALLS)
  INTEGERS(UNARY)
  FLOATS(UNARY_REAL)
  return 0;
}
