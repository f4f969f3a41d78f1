// The arguments of functions like printf and scanf against a literal format.
// RUN: %krtparse --gcc -n --display_error_number %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err
// RUN: %krtparse --c++ --g++ -n --display_error_number %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #' < %t.err

typedef unsigned int size;
#pragma __printf_args
extern int print(const char *format, ...);
#pragma __scanf_args
extern int scan(const char *text, const char *format, ...);
int log_line(int level, const char *format, ...) __attribute__((format(__printf__, 2, 3)));
int log_list(int level, const char *format, ...) __attribute__((format(printf, 2, 0)));
int unchecked(const char *format, ...);
// Declared again.
extern int print(const char *format, ...);
int log_line(int level, const char *format, ...);
int i;
unsigned u;
long l;
long long ll;
char c, text[4];
float f;
double d;
long double ld;
void *p;
const char *format;

void good(void) {
  print("plain\n");
  print("%d %i %u %x %X %o %c %hd %hhu", i, u, u, i, u, i, c, c, c);
  print("%+5.3d|%-*.*s|%#lx %lld %llu", i, i, i, text, l, ll, ll);
  print("%f %.3e %g %a %Lf %lf %%", f, d, d, d, ld, d);
  print("%s %p %p %n %zu %td", "s", p, text, &i, sizeof i, &i - &i);
  print(format, 1, 2);
  scan(text, "%d %ld %lld %hd %hhd", &i, &l, &ll, (short *)p, &c);
  scan(text, "%f %lf %Lf %3c %s %[^]a] %*d %p %n", &f, &d, &ld, text, text, text, &p, &i);
  log_line(1, "%d", i);
  log_list(1, "%d", text);
  unchecked("%d");
}

void bad(void) {
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "long" is incompatible with the corresponding format string conversion
  print("%d %d", i, l);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "int" is incompatible
  print("%ld", i);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "double" is incompatible
  print("%d", f);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "int" is incompatible
  print("%f", i);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "double" is incompatible
  print("%Lf", d);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "int *" is incompatible
  print("%s", &i);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "int" is incompatible
  print("%p", i);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "long" is incompatible
  print("%*d", l, i);
  // CHECK: line [[#@LINE+1]]: warning #226-D: the format string requires additional arguments
  print("%d %d", i);
  // CHECK: line [[#@LINE+1]]: warning #226-D:
  print("%.*d", i);
  // CHECK: line [[#@LINE+1]]: warning #227-D: the format string ends before this argument
  print("%d", i, i, i);
  // CHECK: line [[#@LINE+1]]: warning #228-D: invalid format string conversion
  print("%d %y", i, i);
  // CHECK: line [[#@LINE+1]]: warning #228-D:
  print("100%");
  // CHECK: line [[#@LINE+1]]: warning #228-D:
  print("%[a]", text);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "double *" is incompatible
  scan(text, "%f", &d);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "int" is incompatible
  scan(text, "%d", i);
  // CHECK: line [[#@LINE+1]]: warning #228-D:
  scan(text, "%[abc", text);
  // CHECK: line [[#@LINE+1]]: warning #183-D: argument of type "char *" is incompatible
  log_line(1, "%d", text);
}
