// Inline functions: candidates for inlining come first, and what another unit
// defines has state 3 and may be there in several units, with its statics.
// RUN: %krtparse --gcc --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --gcc -DGNU89 --gcc89_inlining --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --check-prefix=GNU89

// CHECK: begin_func elsewhere
// CHECK: begin_func here
// CHECK: begin_func local
// CHECK: begin_func caller

#ifndef GNU89
int caller(int a);
inline int elsewhere(int a) {
  static const int s = 1;
  {
    static const int s = 2;
    a += s;
  }
  return a + s;
}
extern inline int here(int a) {
  return a;
}
#else
// GNU89: begin_func elsewhere
// GNU89: begin_func here
// GNU89: begin_func local
extern inline int elsewhere(int a) {
  static const int s = 1;
  return a + s;
}
inline int here(int a) {
  return a;
}
#endif
static inline int local(int a) {
  return a;
}
static inline __attribute__((noinline)) int refuses(int a) {
  return a;
}
static inline int variadic(int a, ...) {
  return a;
}
int caller(int a) {
  int (*pointer)(int) = local;
  return elsewhere(a) + here(a) + pointer(a) + refuses(a) + variadic(a, 1);
}

// CHECK: init s$elsewhere_1
// CHECK-NEXT: (LCON:const int 2)
// CHECK: init s$elsewhere
// CHECK-NEXT: (LCON:const int 1)
// CHECK: symbol elsewhere class global {{.*}} qualifiers 0x000c {{.*}} state 3
// CHECK-NEXT: pragma COMDAT_GROUP "elsewhere"
// CHECK-NEXT: pragma SRC_LANGUAGE
// GNU89: symbol elsewhere class global {{.*}} qualifiers 0x000c {{.*}} state 3
// GNU89-NEXT: pragma COMDAT_GROUP "elsewhere"
// CHECK: symbol here class global {{.*}} qualifiers 0x000c {{.*}} state 0
// CHECK-NEXT: pragma SRC_LANGUAGE
// CHECK-NEXT: symbol local class static {{.*}} qualifiers 0x0004
// GNU89: symbol here class global {{.*}} qualifiers 0x000c {{.*}} state 0
// GNU89-NEXT: pragma SRC_LANGUAGE
// CHECK: symbol refuses {{.*}} qualifiers 0x0000
// CHECK: symbol variadic {{.*}} qualifiers 0x0000
// CHECK: symbol s$elsewhere class global type const int
// CHECK-NEXT: pragma SCOPING_FUNC "elsewhere"
// CHECK-NEXT: pragma COMDAT_GROUP "s$elsewhere"
// CHECK-NEXT: symbol s$elsewhere_1 class global
// CHECK-NEXT: pragma SCOPING_FUNC "elsewhere"
// CHECK-NEXT: pragma COMDAT_GROUP "s$elsewhere_1"
