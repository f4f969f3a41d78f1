// RUN: %krtparse --i_output_file=%t.if --c99 --gcc --no_warnings %s && %ifrun %t.if
// RUN: %krtparse --i_output_file=%t.if --c99 --no_warnings %s && %ifrun %t.if
// Initialisers of static duration hold only what was folded. Each row is 1; the
// program returns the number of the first that isn't.

struct s { int a; char b[6]; struct { short c, d; } e[2]; } x, y;
int array[10];
void f(void), g(void);
#define INT_MAX 2147483647
#define INT_MIN (-INT_MAX - 1)
#define LLONG_MAX 9223372036854775807LL

static const int rows[] = {
    // Integers wrap and extend at their widths.
    INT_MAX + 1 == INT_MIN, INT_MIN % -1 == 0, INT_MIN / -1 == INT_MIN, -7 / 2 == -3, -7 % 2 == -1,
    -8 >> 1 == -4, ~0u >> 31 == 1, 0 - 1u == 4294967295u, (unsigned char)300 == 44,
    (signed char)200 == -56, -1 < 1u ? 0 : 1, -1LL < 1u, LLONG_MAX + 1 == -LLONG_MAX - 1,
    18446744073709551615ull * 18446744073709551615ull == 1, 1ull << 63 > LLONG_MAX,
    (short)98304 == -32768, (long long)0x80000000 > 0, !5 == 0, (5 ^ 3) == 6,
    // Every operation of floats is one of floats, and rounds once, ties to even.
    0.1 + 0.2 != 0.3, 0.1f + 0.2f == 0.3f, 16777216.0f + 1.0f == 16777216.0f,
    16777216.0f + 3.0f == 16777220.0f, 16777217.0f == 16777216.0f,
    (float)9007199791611905LL == 9007200328482816.0f, (float)1.000000178813934326171874999 == 1.0000002384185791015625f,
    1.000000178813934326171874999f == 1.00000011920928955078125f, (double)9007199254740993LL == 9007199254740992.0,
    18446744073709551615ull == 18446744073709551616.0, 1.0 / 3 * 3 == 1, 1.0f / 3 != 1.0 / 3,
    // Denormals keep their last place.
    1.4e-45f > 0, 1.4e-45f == 1.0e-45f, 1.4e-45f * 1.5f == 2.8e-45f, 4.9e-324 > 0, 1e-310 / 3 * 3 != 0,
    2.2250738585072014e-308 / 2 * 2 == 2.2250738585072014e-308,
    // Signed zeros, infinities and NaNs.
    0.0 == -0.0, 1 / 0.0 > 1e308, -1 / 0.0 < -1e308, 1 / -0.0 < 0, 0.0 / 0.0 != 0.0 / 0.0,
    !(0.0 / 0.0 == 0.0 / 0.0), !(0.0 / 0.0 < 1), !(0.0 / 0.0 >= 1), -0.0 ? 0 : 1, 0.0 / 0.0 ? 1 : 0,
    !-0.0, 1 / (1 / 0.0) == 0, 0e999 == 0, 0x1.8p1 == 3,
    // Truncation comes before the test of the range.
    (unsigned)-0.9 == 0, (unsigned char)255.9 == 255, (int)-2147483648.9 == INT_MIN,
    (int)2147483647.9 == INT_MAX, (int)-1.9 == -1, (unsigned long long)1.8446744073709550e19 == 18446744073709549568ull,
    (long long)-9.2233720368547758e18 == -LLONG_MAX - 1, (_Bool)0.1 == 1, (_Bool)-0.0 == 0, (_Bool)256 == 1,
    // Addresses.
    &array[3] - &array[1] == 2, &array[9] > &array[0], (char *)&x.e[1].d - (char *)&x == sizeof x - 2,
    &x != &y, &x.a == (int *)&x, &array[10] == array + 10, &f != &g, &x ? 1 : 0, !&x == 0,
    (int *)4 + 1 == (int *)8, (char *)8 - (char *)4 == 4,
    "abc" ? 1 : 0, array ? 1 : 0, !array == 0, f && 1, array && &x, &array[9] > array,
    // Builtin functions.
    __builtin_abs(-5) == 5, __builtin_inf() == 1 / 0.0, __builtin_huge_valf() > 3e38f,
    __builtin_nan("") != __builtin_nan("1"), __builtin_strlen("abc") == 3,
    __builtin_strlen("a\0b") == 1, sizeof __builtin_inff() == 4,
    (int)&((struct s *)0)->b[2] == 6, &((struct s *)16)->e[1].c > (short *)16,
};

int main(void) {
  for (unsigned i = 0; i < sizeof rows / sizeof *rows; ++i)
    if (rows[i] != 1)
      return i + 1;
  return 0;
}
