// In C++ what C names stands in front: the first declarator takes the pragma.
// RUN: %krtparse --c++ -n --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark|INTERNAL}} #' < %t.err

#pragma DATA_SECTION(".a")
#pragma RETAIN
static int first, // the second is not kept
// CHECK-DAG: line [[#@LINE+1]]: warning #179-D: variable "second" was declared but never referenced
    second;
#pragma CODE_SECTION ".b"
#pragma FUNC_CANNOT_INLINE()
#pragma CALLS(f)
void f() {}
#pragma LOCATION(0x200);
#pragma DATA_ALIGN 8
#pragma DATA_SECTION ".c"
int object;
// CHECK-DAG: line [[#@LINE+1]]: warning #1508-D: variable "object" {{.*}}has incompatible section specifications, .c and .d, .c will be used
#pragma DATA_SECTION(".d")
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: error #832: interrupt declarations
#pragma INTERRUPT
int interrupted() { return 0; }
// CHECK-DAG: line [[#@LINE+1]]: warning #1373-D: pragma DATA_SECTION can only be applied to definitions of symbols that have static storage, not "elsewhere"
#pragma DATA_SECTION(".d")
extern int elsewhere;
// CHECK-DAG: line [[#@LINE+1]]: warning #1524-D: NOINIT can only be applied to definitions of symbols that have static storage, not "elsewhere"
#pragma NOINIT
extern int elsewhere;
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma NO_HOOKS can only be applied to a function definition, not "declared"
#pragma NO_HOOKS
void declared();
// The form of C.
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma WEAK(declared)
void declared();

// Enumerators have those in front of themselves, a declarator those of its declaration.
#pragma RETAIN
static enum {
// CHECK-DAG: line [[#@LINE+1]]: warning #1524-D: NOINIT can only be applied to definitions {{.*}} not "an_enumerator"
#pragma NOINIT
  an_enumerator,
  another
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma NOINIT
} of_enumeration;

// Nothing to take it.
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma RETAIN
struct a_class;
// CHECK-DAG: line [[#@LINE+1]]: error #612: this kind of pragma may not be used here
#pragma RETAIN
asm(" nop");
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma RETAIN
extern "C" {
#pragma RETAIN
static int in_c_block;
}
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma RETAIN
namespace space {
#pragma RETAIN
static int in_space;
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma RETAIN
}
// CHECK-DAG: line [[#@LINE+1]]: warning #1524-D: NOINIT can only be applied to definitions
#pragma NOINIT
typedef int type;

// A delayed body obeys its pragmas once.
struct with_body {
  int f(int n) {
// CHECK-DAG: line [[#@LINE+2]]: error #860: UNROLL parameter must be greater than zero
#pragma UNROLL(0)
    while (n) --n;
// CHECK-DAG: line [[#@LINE+1]]: warning #1334-D: current value of pragma pack is not set
#pragma pack(show)
    return n;
  }
// CHECK-DAG: line [[#@LINE+1]]: warning #1524-D: NOINIT can only be applied to definitions
#pragma NOINIT
  int field;
// CHECK-DAG: line [[#@LINE+1]]: warning #1524-D: NOINIT can only be applied to definitions
#pragma NOINIT
  static int shared; // defined below
#pragma CODE_SECTION(".m")
  int member();
};
int with_body::shared;
int with_body::member() {
#pragma NOINIT
  static int counter;
// CHECK-DAG: line [[#@LINE+1]]: warning #1524-D: NOINIT can only be applied to definitions
#pragma NOINIT
  int automatic = counter;
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma NOINIT
  return automatic;
}
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma RETAIN
