// What attributes and specifiers make of symbols: pragmas newest first, the bits
// of the qualifier word, alignments in bits, sections and definition states.
// RUN: %krtparse --gcc --c99 --i_output_file=%t.if %s && %ifdump %t.if > %t.dump && %FileCheck %s < %t.dump
// RUN: %krtparse --gcc --c99 --mem_model:data=near --i_output_file=%t.near.if %s && %ifdump %t.near.if | %FileCheck %s --check-prefix=NEAR
// RUN: %krtparse --gcc --c99 --ramfunc --i_output_file=%t.ram.if %s && %ifdump %t.ram.if | %FileCheck %s --check-prefix=RAM
// RUN: %krtparse --gcc --c99 --abi=eabi --i_output_file=%t.eabi.if %s 2>&1 | %FileCheck %s --check-prefix=EABI --allow-empty

#define A(...) __attribute__((__VA_ARGS__))

// CHECK: section globals

// CHECK: symbol plain class global type int(short) size 32 align 0 value 0 qualifiers 0x0000 level 0 id 0 options 0 state 0
// CHECK-NEXT: pragma SRC_LANGUAGE "C"
int plain(short s) {
  return s;
}
// CHECK-NEXT: symbol weak_function class global type void() size 0 align 64
// CHECK-NEXT: pragma SRC_LANGUAGE "C"
// CHECK-NEXT: pragma QL_WEAK
A(weak, aligned(8)) void weak_function(void) {}
// CHECK-NEXT: symbol in_text
// CHECK-NEXT: pragma SRC_LANGUAGE "C"
// CHECK-NEXT: pragma FUNC_NEVER_RETURNS
// CHECK-NEXT: pragma FUNC_CANNOT_INLINE
// CHECK-NEXT: pragma CODE_SECTION ".mytext"
A(section(".mytext"), noinline, noreturn) void in_text(void) {
  for (;;)
    ;
}
// CHECK-NEXT: symbol pure {{.*}}
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_IS_PURE
A(pure) int pure(int a) {
  return a;
}
// CHECK-NEXT: symbol naked
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_CANNOT_INLINE
// CHECK-NEXT: pragma FUNC_IS_NAKED
A(naked) void naked(void) {}
// CHECK-NEXT: symbol start
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_IN_INIT_ARRAY
A(constructor) void start(void) {}
// CHECK-NEXT: symbol used_function class static {{.*}} state 1
// CHECK-NEXT: SRC_LANGUAGE
A(used) static void used_function(void) {}
// An asm name replaces the name, an alias keeps its own.
// CHECK-NEXT: symbol assembler_name
// CHECK-NEXT: SRC_LANGUAGE
int renamed(void) __asm__("assembler_name");
int renamed(void) {
  return 1;
}
// CHECK-NEXT: symbol alias class global {{.*}}
// CHECK-NEXT: pragma FUNC_SYNONYM "plain" ""
// CHECK-NEXT: SRC_LANGUAGE
int alias(short) A(alias("plain"));
// CHECK-NEXT: symbol handler class global type void() {{.*}} qualifiers 0x0020
// CHECK-NEXT: SRC_LANGUAGE
__interrupt void handler(void) {}
// CHECK-NEXT: symbol from_ram
// CHECK-NEXT: pragma RAMFUNC
// CHECK-NEXT: SRC_LANGUAGE
// RAM: symbol plain
// RAM-NEXT: pragma RAMFUNC
A(ramfunc) void from_ram(void) {}
// CHECK-NEXT: symbol use class global
// CHECK-NEXT: SRC_LANGUAGE

// CHECK-NEXT: symbol weak_variable class global type int size 32 align 8 value 0 qualifiers 0x0001 level 0
// CHECK-NEXT: pragma QL_WEAK
// NEAR: symbol weak_variable {{.*}} qualifiers 0x0002
A(weak) int weak_variable;
// CHECK-NEXT: symbol in_data {{.*}} align 32
// CHECK-NEXT: pragma DATA_SECTION ".mydata"
A(section(".mydata"), aligned(4)) int in_data;
// CHECK-NEXT: symbol retained {{.*}} state 1
// CHECK-NEXT: pragma RETAIN
A(retain) int retained;
// A used static stays, also when nothing refers to it.
// CHECK-NEXT: symbol used_variable class static {{.*}} state 1
A(used) static int used_variable = 1;
// CHECK-NEXT: symbol volatile_variable class static
static volatile int volatile_variable = 1;
// CHECK-NEXT: symbol retained_static class static {{.*}} state 1
// CHECK-NEXT: pragma RETAIN
static A(retain) int retained_static = 1;
static int dropped = 1;
// CHECK-NEXT: symbol located
// CHECK-NEXT: pragma LOCATION "256"
A(location(0x100)) int located;
// CHECK-NEXT: symbol kept
// CHECK-NEXT: pragma PERSISTENT
A(persistent) int kept = 4;
// CHECK-NEXT: symbol not_cleared
// CHECK-NEXT: pragma NOINIT
A(noinit) int not_cleared;
// CHECK-NEXT: symbol control class extern
// CHECK-NEXT: pragma DATA_SECTION ".creg.REGS.near"
// CHECK-NEXT: pragma CREGISTER "REGS" "near"
extern int control A(cregister("REGS", near));
// CHECK-NEXT: symbol unit class extern type struct unit
// CHECK-NEXT: pragma DATA_SECTION ".creg.UNIT.noload.far"
// CHECK-NEXT: pragma CREGISTER "UNIT" "far"
// CHECK-NEXT: pragma QL_WEAK
extern struct unit {
  int a;
} unit A(cregister("UNIT", far), peripheral);
// CHECK-NEXT: symbol constant class
// CHECK-NEXT: pragma DATA_SECTION ".mixed"
// The uses come last.
// CHECK-NEXT: symbol allocate class extern
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: pragma FUNC_RET_UNIQUE_POINTER
A(malloc) void *allocate(int size);
void *use(void) {
  return control + unit.a ? allocate(3) : 0;
}

// Constants and variables share a section under the EABI only.
// EABI-NOT: incompatible
A(section(".mixed")) const int constant = 1;
#ifdef __QL_EABI__
A(section(".mixed")) int variable = 1;
#endif
