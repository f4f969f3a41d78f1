/*
RUN: %krtparse --c99 --include_directory=%S/../../include --i_output_file=%t.if %s
RUN: %ifrun %t.if | %FileCheck %s
RUN: %krtparse --c99 --no_gcc --include_directory=%S/../../include --i_output_file=%t.if %s
RUN: %ifrun %t.if | %FileCheck %s
RUN: %krtparse --c11 --strict --include_directory=%S/../../include --no_code_gen %s
RUN: %krtparse --gcc --include_directory=%S/../../include --no_code_gen %s
*/

/* The headers that come with the parser. */
#include <float.h>
#include <iso646.h>
#include <limits.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

int printf(const char *format, ...);

struct mixed {
  char c;
  int i[3];
};

static size_t third = offsetof(struct mixed, i[2]);
static char fits[offsetof(struct mixed, i) == 1 and sizeof(ptrdiff_t) == sizeof(void *) ? 1 : -1];
static bool yes = true;

struct odd {
  char text[5];
};

static int last_of(int first, ...) {
  va_list list;
  struct odd odd;
  int next;
  va_start(list, first);
  odd = va_arg(list, struct odd);
  next = va_arg(list, int);
  va_end(list);
  return odd.text[4] * 100 + next;
}

static int64_t total(int count, ...) {
  va_list list, again;
  int64_t sum = 0;
  int i;
  va_start(list, count);
  va_copy(again, list);
  for (i = 0; i < count; i++)
    sum += va_arg(list, int64_t);
  sum *= va_arg(again, int64_t);
  va_end(again);
  va_end(list);
  return sum;
}

int main(void) {
  // CHECK: 9 1 1 255 2147483647
  printf("%d %d %d %d %d\n", (int)third, (int)sizeof fits, yes, CHAR_MAX, INT_MAX);
  // CHECK-NEXT: 1000000000000
  printf("%lld\n", total(2, INT64_C(1000000), (int64_t)0));
  // CHECK-NEXT: 1 1 1
  printf("%d %d %d\n", 1.0 + DBL_EPSILON > 1.0, FLT_MAX * 2.0 > FLT_MAX, INT64_MIN < INT32_MIN);
  // CHECK-NEXT: 511
  struct odd odd = {{1, 2, 3, 4, 5}};
  printf("%d\n", last_of(0, odd, 11));
  return 0;
}
