// RUN: %krtparse -n --c11 --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// RUN: %krtparse -n --c++ --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=CXX < %t.err
// Strings that initialise arrays.
#ifdef __cplusplus
#define SAME(type, other) type
#else
#define SAME(type, other) other
#endif
char counted[] = "abc";
int size_of_counted[sizeof counted == 4 ? 1 : -1];
// CXX: line [[#@LINE+1]]: error #2097: string literal too long -- excess characters ignored
char exact[3] = "abc";
// CHECK: line [[#@LINE+2]]: warning #2097-D: string literal too long -- excess characters ignored
// CXX: line [[#@LINE+1]]: error #2097:
char cut[2] = "abc";
char braces[] = {"ab"}, trailing[4] = {"ab", }, rows[][3] = {"ab", {"c"}, {'d', 0}};
int size_of_rows[sizeof rows == 9 ? 1 : -1];
signed char plus[] = "s";
unsigned char minus[] = {"u"};
SAME(wchar_t, unsigned) wide[] = L"wide";
int size_of_wide[sizeof wide == 5 * sizeof(L' ') ? 1 : -1];
// CHECK: line [[#@LINE+1]]: warning #1857-D: parentheses around a string initializer are nonstandard
char enclosed[] = ("abc");
struct { char name[4]; int n; } structs[] = {"one", 1, {"two", 2}, {{"six"}, 3}};
int size_of_structs[sizeof structs == 3 * sizeof structs[0] ? 1 : -1];
#ifndef __cplusplus
// CHECK: line [[#@LINE+1]]: error #145: a value of type "unsigned int *" cannot be used to initialize an entity of type "char [4]"
char mixed[4] = L"abc";
// CHECK: line [[#@LINE+1]]: error #145:
int numbers[4] = "abc";
#endif
// CHECK-NOT: #{{[0-9]+}}
