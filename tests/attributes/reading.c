// RUN: ! %krtparse --gcc --no_code_gen --remarks --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark}} #{{[0-9]*[013-9]-|[0-9]+:}}' < %t.err
// How attributes are written: names, arguments, repeats and faults.

// Both spellings of a name mean the same, a keyword is a name, and items may be
// empty.
typedef int an_int_16 __attribute__((__aligned__(16)));
typedef int an_other_int_16 __attribute__((aligned(16)));
char same[__alignof__(an_int_16) == 16 && __alignof__(an_other_int_16) == 16 ? 1 : -1];
int pi(int) __attribute__((const)) __attribute__((__const__));
int empties __attribute__(()), more_empties __attribute__((, unused, ,));

// Where they may stand.
__attribute__((unused)) static int before;
static __attribute__((unused)) int __attribute__((unused)) between;
int *__attribute__((unused)) behind_star, *const __attribute__((unused)) behind_const;
int (__attribute__((noreturn)) * in_parentheses)(void);
int first __attribute__((unused)) = 1, __attribute__((unused)) second = 2;
void parameters(int a __attribute__((unused)), __attribute__((unused)) int b,
                int __attribute__((unused)));
enum __attribute__((unused)) an_enum { a __attribute__((deprecated)), b = 2 } __attribute__((unused));
struct __attribute__((packed)) a_struct {
  int field __attribute__((aligned(4)));
  int bits : 3 __attribute__((packed)), more_bits __attribute__((packed)) : 4;
  __attribute__((deprecated)) int at_start;
} __attribute__((aligned(4)));
unsigned long size = sizeof(int __attribute__((aligned(8)))) + sizeof(int *__attribute__((unused)));
int old_style(x) int x __attribute__((unused));
{
label:
  __attribute__((unused));
  return 0;
}

// CHECK: line [[#@LINE+1]]: remark #2103-D: attribute appears more than once
int twice(void) __attribute__((noreturn, noreturn));
int not_twice(void) __attribute__((noreturn)) __attribute__((noreturn));

// What this processor doesn't know is passed over.
// CHECK: line [[#@LINE+1]]: warning #1173-D: unknown attribute "nonnull"
int unknown(char *) __attribute__((nonnull(1)));
// CHECK: line [[#@LINE+1]]: warning #1173-D: unknown attribute "__vector_size__"
int unknown_too __attribute__((__vector_size__((8) + (8))));

// Faults drop the attribute, and the declaration goes on.
// CHECK: line [[#@LINE+1]]: error #1170: attribute "packed" does not take arguments
struct s1 { int a __attribute__((packed(1, (2)))); } v1;
// CHECK: line [[#@LINE+1]]: error #126: expected a "("
int f1(const char *, ...) __attribute__((format));
// CHECK: line [[#@LINE+1]]: error #2179: missing arguments for attribute "format"
int f2(const char *, ...) __attribute__((format(printf, 1)));
// CHECK: line [[#@LINE+1]]: error #2102: attribute "section" does not allow an empty argument list
int v2 __attribute__((section()));
// CHECK: line [[#@LINE+1]]: error #1092: expected a string literal
int v3 __attribute__((section(4)));
// CHECK: line [[#@LINE+1]]: error #41: expected an identifier
int v4 __attribute__((4, unused));
// CHECK: line [[#@LINE+3]]: warning #1173-D: unknown attribute "nowhere"
// CHECK: line [[#@LINE+2]]: error #2147: this attribute argument contains unmatched parentheses, brackets, or braces
// CHECK: line [[#@LINE+1]]: error #18: expected a ")"
int v5 __attribute__((nowhere(1, ])));
int v6 = sizeof v1 + sizeof v2 + sizeof v3 + sizeof v4 + sizeof v5;
