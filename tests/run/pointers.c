// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Pointer arithmetic, arrays of arrays, pointers to functions. */
int printf(const char *format, ...);

static int numbers[10] = {5, 3, 9, 1, 7, 0, 8, 2, 6, 4};
static short grid[3][4] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};
static long long wide[3] = {1, -2, 3000000000LL};
static const char *words[] = {"zero", "one", "two", 0};

static void sort(int *from, int *to) {
  int *a, *b;
  for (a = from; a < to; a++)
    for (b = a; b > from && b[-1] > *b; --b) {
      int t = *b;
      *b = *(b - 1);
      b[-1] = t;
    }
}

static int add(int a, int b) {
  return a + b;
}
static int sub(int a, int b) {
  return a - b;
}
static int mul(int a, int b) {
  return a * b;
}

typedef int (*operation)(int, int);
static operation table[] = {add, &sub, mul, 0};

static operation choose(char c) {
  switch (c) {
  case '+':
    return table[0];
  case '-':
    return table[1];
  default:
    return *(table + 2);
  }
}

static int fold(int (*f)(int, int), const int *p, int n) {
  int value = *p++;
  while (--n)
    value = f(value, *p++);
  return value;
}

static int sum_rows(short (*rows)[4], int n) {
  int sum = 0, i;
  for (; n--; rows++)
    for (i = 0; i < 4; i++)
      sum = sum * 3 + (*rows)[i];
  return sum;
}

static void copy(char *to, const char *from) {
  while (*to++ = *from++)
    ;
}

int main(void) {
  int *p = numbers, *q = &numbers[9], **pp = &p, i;
  short *s = &grid[1][2];
  long long *w = wide + 3;
  char buffer[20], *c = buffer;
  const char **word;
  void *v;
  operation *o;

  sort(numbers, numbers + 10);
  for (i = 0; i < 10; i++)
    printf("%d ", numbers[i]);
  printf("\n%d %d %d\n", (int)(q - p), q > p, p == numbers);
  printf("%d\n", *p++);
  printf("%d\n", *++p);
  printf("%d\n", (*p)++);
  printf("%d %d %d\n", *p, p[-1], 3 [numbers]);
  p += 4;
  p -= 2;
  printf("%d\n", *--p);
  **pp = 77;
  *pp = *pp + 1;
  printf("%d %d\n", p[-1], *p);
  printf("%d %d %d %d\n", *s, s[-3], s[4], (int)(s - grid[0]));
  printf("%d %d\n", (*(grid + 2))[1], *(*grid + 5));
  printf("%d %d\n", sum_rows(grid, 3), sum_rows(grid + 1, 1));
  printf("%d %d\n", (int)(&grid[2] - &grid[0]), (int)(&grid[2][3] - &grid[0][1]));
  printf("%lld\n", *--w);
  printf("%lld\n", w[-2] + w[-1]);
  printf("%d\n", (int)(w - wide));
  for (word = words; *word; word++)
    printf("%s %c %d\n", *word, **word, (int)(word - words));
  copy(c, "pointer");
  c += 7;
  copy(c, words[2] + 1);
  printf("%s %s\n", buffer, &buffer[3]);
  v = buffer;
  ((char *)v)[0] = 'P';
  *(unsigned short *)&buffer[8] = 0x4241;
  buffer[10] = 0;
  printf("%s\n", (char *)v);
  for (o = table; *o; o++)
    printf("%d %d %d\n", (*o)(7, 3), (**o)(1, 2), fold(*o, numbers + 1, 3));
  printf("%d %d\n", choose('-')(10, 4), (*choose('*'))(10, 4));
  printf("%d %d\n", choose('+') == add, table[3] == 0);
  printf("%d %d\n", !p, p && 1);
  return 0;
}
