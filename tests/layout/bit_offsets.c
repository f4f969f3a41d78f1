// Where the members lie, in bits.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --small_container_bitfield_layout --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

struct straddling { int a : 20, b : 10, c : 10; } straddling;
struct bytes { char c; int b : 3; int d : 20; } bytes;
// Bits beyond those of the type pad the field.
struct oversize { int a : 40; char b; } oversize;
struct halves { unsigned short a : 9, b : 9; } halves;
union bits { int a : 5; unsigned char b : 8; } bits;

// CHECK-DAG: csu struct straddling size 40 align 8
// CHECK-DAG: mdata 1 a int offset 0 width 20
// CHECK-DAG: mdata 2 b int offset 20 width 10
// CHECK-DAG: mdata 3 c int offset 30 width 10
// CHECK-DAG: csu struct bytes size 32 align 8
// CHECK-DAG: mdata 2 b int offset 8 width 3
// CHECK-DAG: mdata 3 d int offset 11 width 20
// CHECK-DAG: csu struct oversize size 48 align 8
// CHECK-DAG: mdata 1 a int offset 0 width 32
// CHECK-DAG: mdata 2 b char offset 40
// CHECK-DAG: csu struct halves size 24 align 8
// CHECK-DAG: mdata 2 b unsigned short offset 9 width 9
// CHECK-DAG: csu union bits size 32 align 8
// CHECK-DAG: mdata 2 b unsigned char offset 0 width 8
