// RUN: %krtparse --gcc --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Values that become unions, and builtins that the library computes. */
int printf(const char *format, ...);

union number {
  char small;
  int whole;
  float real;
  double wide;
  struct pair { int a, b; } both;
};
typedef union { int *ints; const char *text; void (*call)(int); } any __attribute__((transparent_union));

union number at_start = (union number)7;
const union number constant = (const union number)1.5f;

static int evaluations;
static int count(void) { return ++evaluations; }
static int whole(union number n) { return n.whole; }
static int first(any argument) { return *argument.ints; }
static int is_null(any argument) { return argument.ints == 0; }
static char letter(any argument) { return *argument.text; }
static void call(any argument) { argument.call(4); }
static void show(int n) { printf("called with %d\n", n); }
static union number result(double d) { return (union number)d; }

int main(void) {
  struct pair p = {3, 4};
  union number n, same;
  int numbers[2] = {11, 12};
  int (*through)(any) = first;
  any direct;
  n = (union number)5;
  printf("%d %d %.2f\n", n.whole, at_start.whole, constant.real);
  printf("%d\n", whole((union number)count()));
  printf("evaluated %d\n", evaluations);
  n = (union number)p;
  same = (union number)n;
  printf("%d %d %.3f\n", n.both.a, same.both.b, result(2.125).wide);
  n = (union number)(char)'x';
  printf("%c\n", n.small);
  p = (struct pair)same.both;
  printf("%d\n", p.b);
  direct.ints = numbers + 1;
  printf("%d %d %d\n", first(numbers), through(&numbers[1]), first(direct));
  printf("%c %d %d\n", letter("text"), is_null(0), is_null((void *)0));
  call(show);
  const char *text = numbers[0] == 11 ? "eleven" : "";
  printf("%d\n", (int)__builtin_strlen(text));
  text += 4;
  printf("%d\n", (int)__builtin_strlen(text));
  return 0;
}
