// RUN: %krtparse --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// The greatest struct has 0x1fffffff bytes; one above it is reported once.

struct greatest { char c[0x1ffffffe]; int bit : 8; };
union greatest_union { char c[0x1fffffff]; int i; };
// CHECK: line [[#@LINE+1]]: error #105: struct or union is too large
struct a_byte_more { struct greatest g; char c; char d; };
// CHECK: line [[#@LINE+1]]: error #105
struct a_bit_more { struct greatest g; int bit : 1; };
// CHECK: line [[#@LINE+1]]: error #105
struct far_more { struct greatest g[3]; char c; };
// CHECK: line [[#@LINE+1]]: error #105
union one_too_large { char c; char d[0x20000000]; };
// The members fit, but not with the padding at the end.
// CHECK: line [[#@LINE+1]]: error #105
struct padded { char c[0x1ffffffd]; } __attribute__((aligned(8)));
// CHECK: 5 errors detected
