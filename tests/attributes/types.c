// RUN: ! %krtparse --gcc --no_code_gen --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='{{error|warning}} #' < %t.err
// Alignment, packing and modes, by what they make of sizes.

#define CHECK_THAT(condition) extern char check[(condition) ? 1 : -1]

typedef int a_wide_int __attribute__((aligned(8)));
CHECK_THAT(sizeof(a_wide_int) == 4 && __alignof__(a_wide_int) == 8);
struct raised { char c; } __attribute__((aligned(16)));
CHECK_THAT(sizeof(struct raised) == 16);
struct __attribute__((aligned(2))) raised_before { char c; };
CHECK_THAT(sizeof(struct raised_before) == 2);
struct with_field { char c; int i __attribute__((aligned(8))); };
CHECK_THAT(__builtin_offsetof(struct with_field, i) == 8 && sizeof(struct with_field) == 16);
struct greatest { char c; } __attribute__((aligned));
CHECK_THAT(sizeof(struct greatest) == 16);
struct bits { int a : 7; int b : 30; };
struct packed_bits { int a : 7; int b : 30; } __attribute__((packed));
CHECK_THAT(sizeof(struct packed_bits) == 5);

enum __attribute__((packed)) tiny { minus = -128, plus = 127 };
CHECK_THAT(sizeof(enum tiny) == 1);
enum small { big = 255, negative = -1 } __attribute__((packed));
CHECK_THAT(sizeof(enum small) == 2);
enum plain { one };
CHECK_THAT(sizeof(enum plain) == 4);

typedef unsigned a_byte __attribute__((mode(QI)));
typedef int a_half __attribute__((mode(__HI__)));
typedef long a_double_word __attribute__((__mode__(__DI__)));
typedef float a_double __attribute__((mode(DF)));
typedef int a_pointer_sized __attribute__((mode(pointer)));
CHECK_THAT(sizeof(a_byte) == 1 && (a_byte)-1 == 255);
CHECK_THAT(sizeof(a_half) == 2 && (a_half)-1 == -1);
CHECK_THAT(sizeof(a_double_word) == 8 && sizeof(a_double) == 8);
CHECK_THAT(sizeof(a_pointer_sized) == sizeof(void *));

// CHECK: line [[#@LINE+1]]: error #1164: the mode is incompatible with the type "float"
typedef float bad_mode __attribute__((mode(SI)));
// CHECK: line [[#@LINE+1]]: error #1165: there is no type with the width of mode "TI"
typedef int no_mode __attribute__((mode(TI)));
// CHECK: line [[#@LINE+1]]: error #1166: invalid alignment value specified by attribute
int odd __attribute__((aligned(3)));
// CHECK: line [[#@LINE+1]]: error #1166: invalid alignment value specified by attribute
int none __attribute__((aligned(0)));
// CHECK: line [[#@LINE+1]]: error #1174: attributes may not appear here
int parameter(int a __attribute__((aligned(4))));
// CHECK: line [[#@LINE+1]]: warning #1167-D: invalid attribute for "struct bits"
struct __attribute__((packed)) bits late;

// The function type may stand behind pointers.
void (*does_not_return)(void) __attribute__((noreturn));
typedef void a_handler(void) __attribute__((noreturn));
a_handler *handler;
int no_value_missing_1(void) { does_not_return(); }
int no_value_missing_2(void) { handler(); }
