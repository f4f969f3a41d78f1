// RUN: %krtparse --gcc --i_output_file=%t.if %s > %t.out 2>&1
// RUN: test ! -s %t.out
// RUN: %ifdump %t.if | %FileCheck %s
// What attributes come to in the intermediate file.

__attribute__((section(".code"), noinline)) int f(int a) { return a; }
// CHECK: symbol f class global
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_CANNOT_INLINE
// CHECK-NEXT: pragma CODE_SECTION ".code"
__attribute__((constructor)) static void start(void) {}
// CHECK: symbol start class static
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_IN_INIT_ARRAY
static __attribute__((used)) int kept_function(void) { return 1; }
// CHECK: symbol kept_function class static {{.*}} state 1
int aliased(int a) { return a + 1; }
int alias(int) __attribute__((weak, alias("aliased")));
// CHECK: symbol alias class global
// CHECK-NEXT: pragma FUNC_SYNONYM "aliased" ""
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma QL_WEAK
int in_section __attribute__((section(".mine"))) = 1;
// CHECK: symbol in_section
// CHECK-NEXT: pragma DATA_SECTION ".mine"
int weak_one __attribute__((weak)) = 2;
// CHECK: symbol weak_one
// CHECK-NEXT: pragma QL_WEAK
static int kept __attribute__((used)) = 3;
// CHECK: symbol kept class static {{.*}} state 1
int placed __attribute__((location(0x1000)));
// CHECK: symbol placed
// CHECK-NEXT: pragma LOCATION "4096"
int uninitialised __attribute__((noinit));
// CHECK: symbol uninitialised
// CHECK-NEXT: pragma NOINIT
int persistent_one __attribute__((persistent)) = 4;
// CHECK: symbol persistent_one
// CHECK-NEXT: pragma PERSISTENT
static int retained __attribute__((retain)) = 5;
// CHECK: symbol retained {{.*}} state 1
// CHECK-NEXT: pragma RETAIN
int aligned_one __attribute__((aligned(16))) = 6;
// CHECK: symbol aligned_one {{.*}} align 128
void stop(void) __attribute__((noreturn));
// CHECK: symbol stop class extern
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_NEVER_RETURNS
int pure_one(int) __attribute__((pure));
// CHECK: symbol pure_one
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_IS_PURE
int user(int a) {
  if (a)
    stop();
  return pure_one(a) + aliased(a);
}
