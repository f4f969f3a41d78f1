// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Variable arguments, which follow the last parameter in memory. */
#ifdef __x86_64__
#include <stdarg.h>
#else
typedef char *va_list;
#define va_start(list, last) ((list) = (char *)__va_parmadr(last) + sizeof(last))
#define va_arg(list, type) (*(type *)(((list) += sizeof(type)) - sizeof(type)))
#define va_end(list) ((void)0)
#endif

int printf(const char *format, ...);

static int sum(int count, ...) {
  va_list list;
  int total = 0;
  va_start(list, count);
  while (count--)
    total = total * 10 + va_arg(list, int);
  va_end(list);
  return total;
}

struct pair {
  int a, b;
};

static long long mixed(const char *kinds, ...) {
  va_list list;
  long long total = 0;
  va_start(list, kinds);
  for (; *kinds; kinds++) {
    switch (*kinds) {
    case 'i':
      total += va_arg(list, int);
      break;
    case 'l':
      total += va_arg(list, long long);
      break;
    case 's':
      total += *va_arg(list, char *);
      break;
    case 'p': {
      struct pair p = va_arg(list, struct pair);
      total += p.a * p.b;
      break;
    }
    }
    printf("%c %lld\n", *kinds, total);
  }
  va_end(list);
  return total;
}

static int apply(int (*f)(int, ...), int n) {
  return f(2, n, n + 1);
}

int main(void) {
  struct pair p = {6, 7};
  signed char small = -5;

  printf("%d %d\n", sum(0), sum(4, 1, small, '\3', 4));
  printf("%lld\n", mixed("ilspi", 1, 1LL << 35, "C", p, small));
  printf("%d\n", apply(sum, 5));
  return 0;
}
