// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -funsigned-char -w %s -o %t.host && %t.host > %t.expected
// RUN: diff %t.expected %t.out
// RUN: %ifdump %t.if | %FileCheck %s
// RUN: %krtparse -n --c99 --define=FAULTS --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=FAULT < %t.err
// RUN: %krtparse -n --c99 --strict --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=STRICT < %t.err
// Flexible array members with elements: the object grows by them.
int printf(const char *format, ...);
struct text { int length; char bytes[]; };
struct pairs { short n; struct { char a; int b; } pair[]; };
// STRICT: line [[#@LINE+1]]: error #1103: a flexible array member may not be initialized
struct text text = {5, "hello"};
struct text listed = {3, {'x', 'y', 0}}, elided = {2, 'p', 0}, none = {0}, empty = {1, {}};
struct text designated = {.bytes[3] = 'd', .bytes[1] = 'b', .length = 4};
struct pairs pairs = {2, {{'a', 1}, {'b', 2}}};
// CHECK-DAG: symbol text class {{.*}} size 80
// CHECK-DAG: symbol designated class {{.*}} size 64
// CHECK-DAG: symbol none class {{.*}} size 32
union { struct text text; char room[16]; } shared = {{4, "abcd"}};
// CHECK-DAG: symbol small class {{.*}} size 72
union { struct text text; int n; } small = {{4, "abcd"}};
struct text *all[] = {&text, &listed, &elided, &designated};

int main(void) {
  static struct pairs local = {3, {[2] = {'z', 26}}};
  int i;
  for (i = 0; i < 4; i++)
    printf("%d %d %d\n", all[i]->length, all[i]->bytes[0], all[i]->bytes[1]);
  printf("%s %d %d\n", text.bytes, designated.bytes[2], designated.bytes[3]);
  printf("%d %c %d\n", pairs.n, pairs.pair[1].a, pairs.pair[1].b);
  printf("%d %d %d %c\n", local.n, local.pair[0].b, local.pair[2].b, local.pair[2].a);
  printf("%d %s %d\n", shared.text.length, shared.text.bytes, shared.room[8]);
  printf("%d %s\n", small.n, small.text.bytes);
  printf("%d\n", (int)(sizeof text + sizeof none));
  return 0;
}
#ifdef FAULTS
struct holder { struct text inner; };
// FAULT: line [[#@LINE+1]]: error #1103: a flexible array member may not be initialized
struct holder nested = {{1, "x"}};
void automatic(void) {
  // FAULT: line [[#@LINE+1]]: error #1103:
  struct text object = {1, "x"};
  struct text without = {1};
}
// FAULT-NOT: error #
#endif
