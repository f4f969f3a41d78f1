// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* The functions that ifrun has of its own. */
#ifdef __x86_64__
typedef unsigned long size_t;
#else
typedef unsigned size_t;
#endif
int printf(const char *format, ...);
int puts(const char *text);
int putchar(int c);
void *malloc(size_t size);
void *calloc(size_t count, size_t size);
void *realloc(void *p, size_t size);
void free(void *p);
void *memcpy(void *to, const void *from, size_t size);
void *memmove(void *to, const void *from, size_t size);
void *memset(void *to, int value, size_t size);
int memcmp(const void *a, const void *b, size_t size);
size_t strlen(const char *text);
int strcmp(const char *a, const char *b);
int strncmp(const char *a, const char *b, size_t size);
char *strcpy(char *to, const char *from);
char *strcat(char *to, const char *from);
char *strchr(const char *text, int c);

static int sign(int n) {
  return n > 0 ? 1 : n < 0 ? -1 : 0;
}

struct block {
  struct block *next;
  int size, content[1];
};

int main(void) {
  char buffer[40], *p;
  int *numbers, i, sum = 0;
  struct block *list = 0, *b;

  strcpy(buffer, "hello");
  strcat(buffer, ", world");
  printf("%s %d\n", buffer, (int)strlen(buffer));
  memmove(buffer + 2, buffer, 6);
  memcpy(buffer + 10, "!!", 3);
  puts(buffer);
  memset(buffer, 'x' + 256, 4);
  puts(buffer);
  putchar('A');
  putchar('\n');
  printf("%d %d %d\n", sign(strcmp("a", "b")), sign(strcmp("b", "a")), strcmp("same", "same"));
  printf("%d %d\n", sign(strcmp("\377", "a")), sign(strcmp("ab", "a")));
  printf("%d %d\n", strncmp("abcd", "abxx", 2), sign(strncmp("abcd", "abxx", 3)));
  printf("%d %d\n", memcmp("a\0b", "a\0b", 4), sign(memcmp("a\0b", "a\0c", 3)));
  p = strchr(buffer, '!');
  printf("%d %d %d\n", (int)(p - buffer), strchr(buffer, 'Q') == 0, *strchr(buffer, 0));
  numbers = calloc(5, sizeof *numbers);
  for (i = 0; i < 5; i++)
    sum += numbers[i], numbers[i] = i * i;
  numbers = realloc(numbers, 10 * sizeof *numbers);
  for (i = 5; i < 10; i++)
    numbers[i] = -i;
  for (i = 0; i < 10; i++)
    sum += numbers[i];
  printf("%d\n", sum);
  free(numbers);
  free(0);
  for (i = 1; i < 200; i++) {
    b = malloc(sizeof *b + i * sizeof(int));
    b->next = list;
    b->size = i;
    b->content[i] = i;
    list = b;
  }
  for (sum = 0; list; list = b) {
    b = list->next;
    sum += list->content[list->size];
    free(list);
  }
  printf("%d\n", sum);
  return 0;
}
