// RUN: %krtparse --gcc --i_output_file=%t.if %s && %ifrun %t.if > %t.out
// RUN: gcc -w %s -o %t.host && %t.host > %t.expected
// RUN: diff %t.expected %t.out
// What a name stands for: aliases, also of statics and of one another, and weak
// symbols that are nowhere.
int printf(const char *format, ...);

static int hidden(int a) { return a + 1; }
int alias(int) __attribute__((alias("hidden")));
int alias_of_alias(int) __attribute__((alias("alias")));
int (*through_pointer)(int) = alias_of_alias;

extern int missing(int) __attribute__((weak));
extern int missing_object __attribute__((weak));
int here(int) __attribute__((weak));
int here(int a) { return a * 2; }

int main(void) {
  printf("%d %d %d\n", alias(1), alias_of_alias(2), through_pointer(3));
  printf("%d %d %d\n", missing != 0, &missing_object != 0, here != 0 ? here(4) : 0);
  return 0;
}
