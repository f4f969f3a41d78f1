// RUN: %krtparse --c99 --sys_include=%root/include --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Formatted output and input, strings, characters, numbers in strings. */
#include <stdarg.h>
#include <stddef.h>

int printf(const char *, ...);
int sprintf(char *, const char *, ...);
int snprintf(char *, size_t, const char *, ...);
int vprintf(const char *, va_list);
int vsnprintf(char *, size_t, const char *, va_list);
int sscanf(const char *, const char *, ...);
int puts(const char *);
void *memchr(const void *, int, size_t);
char *strncpy(char *, const char *, size_t);
char *strncat(char *, const char *, size_t);
char *strrchr(const char *, int);
char *strstr(const char *, const char *);
char *strpbrk(const char *, const char *);
size_t strspn(const char *, const char *);
size_t strcspn(const char *, const char *);
char *strtok(char *, const char *);
int isalpha(int), isxdigit(int), isspace(int), ispunct(int), toupper(int);
int atoi(const char *);
double atof(const char *), strtod(const char *, char **);
long long strtoll(const char *, char **, int);
unsigned long long strtoull(const char *, char **, int);

static void report(const char *format, ...) {
  char text[24];
  va_list list, again;
  va_start(list, format);
  va_copy(again, list);
  vprintf(format, list);
  printf("%d: ", vsnprintf(text, sizeof text, format, again));
  puts(text);
  va_end(again);
  va_end(list);
}

static void output(void) {
  char text[64];
  int written = 0, star = -7;
  report("%d %s %c %llx %g|\n", -5, "five", 'v', 0x123456789abcdefLL, 2.5);
  report("%hhd %hu %5.3d|%-6i|%+d|% d|\n", 300, 70000, 7, 8, 9, 10);
  printf("%o %#o %#x %X %08.3f %-10.2e|%G\n", 8, 8, 255, 255, 3.14159, 31415.9, 1e-10);
  printf("%*d|%-*d|%.*s|%.3s|%%|%5s|%-5s|\n", star, 3, 6, 4, 2, "abc", "defgh", "r", "l");
  printf("%a %.0f %#.0f %f %f\n", 1.0, 2.5, 2.0, 1e300 * 1e10, -(1e300 * 1e10));
  printf("%d%n", 12345, &written);
  printf(" %d\n", written);
  printf("%d ", sprintf(text, "<%s>", "in brackets"));
  puts(text);
  printf("%d ", snprintf(text, 5, "truncated"));
  puts(text);
  printf("%d\n", snprintf(NULL, 0, "%s", "counted"));
}

static void input(void) {
  int a = 0, b = 0, c = 0, count;
  char word[16], letters[4] = "", rest[16] = "";
  float f;
  double d;
  long long big;
  short small;
  count = sscanf(" 12 0x1f 077 word", "%d %i %o %15s", &a, &b, &c, word);
  printf("%d: %d %d %d %s\n", count, a, b, c, word);
  count = sscanf("1.5e2,-0.25;", "%f,%lf%c", &f, &d, letters);
  printf("%d: %g %g %s\n", count, f, d, letters);
  count = sscanf("123456789012 -3 42", "%lld %hd%n", &big, &small, &a);
  printf("%d: %lld %d %d\n", count, big, small, a);
  count = sscanf("abc123 [x]", "%[a-c]%*d [%[^]]]", word, rest);
  printf("%d: %s %s\n", count, word, rest);
  printf("%d %d\n", sscanf("", "%d", &a), sscanf("x", "%d", &a));
  count = sscanf("123456", "%3d%d", &a, &b);
  printf("%d: %d %d\n", count, a, b);
}

static void strings(void) {
  char buffer[16] = "...............";
  const char *text = "a needle in a needlecase";
  char list[] = ",one,,two,";
  char *token;
  strncpy(buffer, "abc", 8);
  printf("%s %d %c\n", buffer, buffer[7], buffer[8]);
  printf("%s\n", strncat(buffer, "defgh", 3));
  printf("%td %td %td\n", strstr(text, "needle") - text, strrchr(text, 'n') - text,
         (char *)memchr(text, 'd', 9) - text);
  printf("%d %d %s\n", strstr(text, "nail") == NULL, strstr(text, "") == text,
         strpbrk(text, "xyzi"));
  printf("%d %d\n", (int)strspn("aabbc", "ab"), (int)strcspn("aabbc", "c"));
  for (token = strtok(list, ","); token; token = strtok(NULL, ","))
    puts(token);
}

static void characters(void) {
  int c, counts[4] = {0, 0, 0, 0};
  for (c = 0; c < 128; c++) {
    counts[0] += !!isalpha(c);
    counts[1] += !!isxdigit(c);
    counts[2] += !!isspace(c);
    counts[3] += !!ispunct(c);
  }
  printf("%d %d %d %d %c%c\n", counts[0], counts[1], counts[2], counts[3], toupper('q'),
         toupper('1'));
}

static void numbers(void) {
  const char *text = "  -0x7fz";
  char *stop;
  printf("%lld ", strtoll(text, &stop, 16));
  puts(stop);
  printf("%llu ", strtoull("18446744073709551615", &stop, 10));
  printf("%lld %lld\n", strtoll("777", NULL, 8), strtoll("99999999999999999999", NULL, 0));
  printf("%d %g %g ", atoi("42nd"), atof("1e3x"), strtod("-.5 rest", &stop));
  puts(stop);
}

int main(void) {
  output();
  input();
  strings();
  characters();
  numbers();
  return 0;
}
