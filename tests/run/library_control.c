// RUN: %krtparse --c99 --sys_include=%root/include --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Jumps between functions, calls back from the library, the heap, the exit. */
#include <stddef.h>

#ifdef __x86_64__
#include <setjmp.h>
#else
typedef int jmp_buf[8];
int setjmp(jmp_buf);
void longjmp(jmp_buf, int);
#endif

int printf(const char *, ...);
void qsort(void *, size_t, size_t, int (*)(const void *, const void *));
void *bsearch(const void *, const void *, size_t, size_t, int (*)(const void *, const void *));
void *malloc(size_t), *calloc(size_t, size_t), *realloc(void *, size_t);
void free(void *), exit(int);
int atexit(void (*)(void));
int strcmp(const char *, const char *);

static jmp_buf outer, inner;
static int depth, comparisons;

static void descend(int levels) {
  char space[100];
  space[levels] = (char)levels;
  if (levels == 0)
    longjmp(outer, ++depth);
  descend(levels - 1);
  printf("never %d\n", space[levels]);
}

static void jumps(void) {
  int value = setjmp(outer);
  printf("back with %d\n", value);
  if (value < 3)
    descend(10 * value);
  if (value == 3)
    longjmp(outer, 7);
  if (setjmp(inner) == 0)
    longjmp(inner, 0);
  else
    printf("0 comes as another value\n");
}

static int by_number(const void *a, const void *b) {
  comparisons++;
  return *(const int *)a - *(const int *)b;
}

static int by_name(const void *a, const void *b) {
  return strcmp(*(char *const *)a, *(char *const *)b);
}

/* Leaves the library's function in the middle of its work. */
static int leaving(const void *a, const void *b) {
  if (++comparisons == 3)
    longjmp(inner, 5);
  return by_number(a, b);
}

static int nested(const void *a, const void *b) {
  int numbers[3] = {3, 1, 2};
  qsort(numbers, 3, sizeof numbers[0], by_number);
  return numbers[0] * by_number(a, b);
}

static void callbacks(void) {
  int numbers[] = {5, -3, 9, 0, 12, 7, -8, 5}, wanted = 7, i;
  const char *names[] = {"pear", "apple", "fig"};
  int *found;
  qsort(numbers, 8, sizeof numbers[0], nested);
  for (i = 0; i < 8; i++)
    printf("%d ", numbers[i]);
  found = bsearch(&wanted, numbers, 8, sizeof numbers[0], by_number);
  wanted = 8;
  printf("%d %d\n", (int)(found - numbers),
         bsearch(&wanted, numbers, 8, sizeof numbers[0], by_number) == NULL);
  qsort(names, 3, sizeof names[0], by_name);
  printf("%s %s %s\n", names[0], names[1], names[2]);
  comparisons = 0;
  switch (setjmp(inner)) {
  case 0:
    qsort(numbers, 8, sizeof numbers[0], leaving);
    printf("never\n");
    break;
  default:
    printf("left the sort\n");
  }
}

static int changed = 1;

static int change(void) {
  changed = 40;
  return 2;
}

static void heap(void) {
  int *block = calloc(3, sizeof *block), i;
  int sum = 0;
  block = realloc(block, 100 * sizeof *block);
  for (i = 3; i < 100; i++)
    block[i] = i;
  for (i = 0; i < 100; i++)
    sum += block[i];
  free(block);
  changed += change(); /* the call comes before the left operand is read */
  printf("%d %d\n", sum, changed);
}

static void first(void) {
  printf("first\n");
}

static void second(void) {
  printf("second\n");
}

int main(void) {
  atexit(first);
  atexit(second);
  jumps();
  callbacks();
  heap();
  exit(0);
}
