// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Widths, signs, promotions and conversions of integers. */
int printf(const char *format, ...);

static void show(const char *what, long long value) {
  printf("%s %lld\n", what, value);
}

static unsigned char uc = 250;
static signed char sc = -3;
static unsigned short us = 65530;
static short ss = -300;
static int i = -7;
static unsigned u = 4000000000u;
static long long ll = -5000000000LL;
static unsigned long long ull = 18446744073709551610ULL;
static char plain = '\377';

static void promotions(void) {
  show("uc+10", uc + 10);
  show("uc*uc", uc * uc);
  show("sc*us", sc * us);
  show("~uc", ~uc);
  show("-us", -us);
  show("!sc", !sc);
  show("plain", plain);
  show("plain<0", plain < 0);
  show("i+u", i + u);
  show("i<u", i < u);
  show("sc<uc", sc < uc);
  show("i/2", i / 2);
  show("i%2", i % 2);
  show("(unsigned)i/2", (unsigned)i / 2);
  show("u%7", u % 7);
  show("i+ll", i + ll);
  show("u+ll", u + ll);
  show("ll/3", ll / 3);
  show("ll%1000", ll % 1000);
  show("ull/10", (long long)(ull / 10));
  show("ull>>1", (long long)(ull >> 1));
  show("ull>ll", ull > ll);
  show("-1>0u", -1 > 0u);
  show("-1>0ull", -1 > 0ull);
  show("cond", 1 ? -1 : 0u);
  show("sizes", sizeof(uc + 1) * 100 + sizeof(uc) * 10 + sizeof(ll));
}

static void conversions(void) {
  show("(char)300", (char)300);
  show("(signed char)200", (signed char)200);
  show("(short)70000", (short)70000);
  show("(unsigned short)-1", (unsigned short)-1);
  show("(unsigned char)i", (unsigned char)i);
  show("(unsigned)sc", (unsigned)sc);
  show("(long long)u", (long long)u);
  show("(long long)(int)u", (long long)(int)u);
  show("(unsigned long long)i>>60", (long long)((unsigned long long)i >> 60));
  show("(int)ll", (int)ll);
  show("(_Bool)256", (_Bool)256);
  show("(_Bool)0", (_Bool)0);
}

static void shifts(void) {
  int n;
  for (n = 0; n < 32; n += 5) {
    show("1<<n", 1 << n);
    show("i>>n", i >> n);
    show("u>>n", u >> n);
    show("u<<n", u << n);
    show("ll>>n", ll >> n);
    show("1ll<<2n", 1LL << 2 * n);
  }
  show("uc<<4", uc << 4);
  show("sc>>1", sc >> 1);
  show("us>>3", us >> 3);
}

static void assignments(void) {
  unsigned char a = 200;
  signed char b = 100;
  short c = 30000;
  unsigned d = 1;
  long long e = 1;
  _Bool f = 0;
  a += 100;
  show("a", a);
  a *= 3;
  show("a", a);
  a /= -2;
  show("a", a);
  a >>= 1;
  show("a", a);
  b += 100;
  show("b", b);
  b <<= 1;
  show("b", b);
  b %= 7;
  show("b", b);
  c *= 2;
  show("c", c);
  c -= 100000;
  show("c", c);
  c ^= 0x5555;
  show("c", c);
  d -= 2;
  show("d", d);
  d /= 3;
  show("d", d);
  d += ll;
  show("d", d);
  d |= 0x80000000;
  show("d", d);
  e <<= 40;
  show("e", e);
  e -= u;
  show("e", e);
  e &= ~0xFFLL;
  show("e", e);
  f = 4;
  show("f", f);
  f += 255;
  show("f", f);
  f -= 1;
  show("f", f);
  show("a++", a++ + a);
  a = 255;
  show("a++", a++);
  show("a", a);
  show("--a", --a);
  b = 127;
  show("++b", ++b);
  us = 0;
  show("us--", us--);
  show("us", us);
  i = 2147483647;
  show("(u = i) + 1", (u = i) + 1);
  ull = 0;
  show("--ull", --ull);
  a = b = c = 1000;
  show("a", a);
  show("b", b);
}

static void logic(void) {
  int calls = 0;
  show("and", 0 && ++calls);
  show("or", 5 || ++calls);
  show("both", 3 && (calls += 10));
  show("neither", 0 || 0);
  show("calls", calls);
  show("not", !!ll);
  show("zero of 64 bits", 0x100000000LL && 1);
  show("condition of 64 bits", 0x100000000LL ? 1 : 2);
  if (0x100000000LL)
    show("if of 64 bits", 1);
  while (ll & 0x100000000LL)
    ll &= 0xFFFFFFFFLL;
  show("masked", ll);
  show("bits", (0x0F0F & 0x00FF) | (0x1000 ^ 0x1100));
  show("mix", 7 & 3 == 3 | 8);
}

int main(void) {
  promotions();
  conversions();
  shifts();
  assignments();
  logic();
  return 0;
}
