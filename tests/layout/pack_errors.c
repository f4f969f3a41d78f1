// RUN: %krtparse --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,GNU < %t.err
// RUN: %krtparse --display_error_number --no_gcc %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,ANSI < %t.err
// Faults of #pragma pack.

// CHECK: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
#pragma pack(4)
// CHECK: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is 4
#pragma pack(show)
// CHECK: line [[#@LINE+1]]: warning #1335-D: the arguments of "pack(show)" are ignored
#pragma pack(show, 1)
// GNU: line [[#@LINE+2]]: warning #692-D: empty pack alignment stack
// ANSI: line [[#@LINE+1]]: error #692: empty pack alignment stack
#pragma pack(pop)
// CHECK: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is 4
#pragma pack(show)
#pragma pack(push, here, 2)
// GNU: line [[#@LINE+2]]: warning #691-D: "nowhere" not found on pack alignment stack
// ANSI: line [[#@LINE+1]]: error #691: "nowhere" not found on pack alignment stack
#pragma pack(pop, nowhere)
// CHECK: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is 2
#pragma pack(show)
// CHECK: line [[#@LINE+1]]: error #663: invalid packing alignment value
#pragma pack(3)
// CHECK: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
// CHECK: line [[#@LINE+1]]: error #663: invalid packing alignment value
#pragma pack(65536)
// ANSI: line [[#@LINE+1]]: error #663: invalid packing alignment value
#pragma pack(0)
// CHECK: line [[#@LINE+1]]: error #664: expected an integer constant
#pragma pack(two)
// CHECK: line [[#@LINE+1]]: error #664: expected an integer constant
#pragma pack(push, )
// CHECK: line [[#@LINE+1]]: error #664: expected an integer constant
#pragma pack(-1)
// GNU: line [[#@LINE+2]]: warning #126-D: expected a "("
// ANSI: line [[#@LINE+1]]: error #126: expected a "("
#pragma pack 8
// GNU: line [[#@LINE+2]]: warning #2660-D: expected a ")"; pragma ignored
// ANSI: line [[#@LINE+1]]: error #18: expected a ")"
#pragma pack(16
// GNU: line [[#@LINE+2]]: warning #1334-D: current value of pragma pack is 8
// ANSI: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
// CHECK: line [[#@LINE+1]]: error #14: extra text after expected end of preprocessing directive
#pragma pack(1) 2
int end;
