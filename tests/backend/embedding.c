// What keeps a file from being embedded for link-time optimisation: assembly and
// weak symbols. Each is told once, and a bit of the header's flags says so.
// RUN: (%krtparse --gcc --embed_icode --remarks --display_error_number --i_output_file=%t.if %s && %ifdump %t.if) 2>&1 | %FileCheck %s
// RUN: (%krtparse --gcc --embed_icode --embed_inline_assembly --remarks -DNO_WEAK --i_output_file=%t.if %s && %ifdump %t.if) 2>&1 \
// RUN:   | %FileCheck %s --check-prefix=EMBEDDED
// RUN: (%krtparse --gcc --remarks --i_output_file=%t.if %s && %ifdump %t.if) 2>&1 | %FileCheck %s --check-prefix=PLAIN

// CHECK: remark #1463-D: Link-time optimization is disabled for this file due to the use of weak symbols
// CHECK: remark #1463-D: Link-time optimization is disabled for this file due to the use of inline assembly
// CHECK-NOT: 1463
// CHECK: file {{.*}} flags 0x1
// CHECK: assembly " .text" at {{.*}}:[[@LINE+7]]:1
// CHECK: assembly " .data"
// EMBEDDED-NOT: Link-time
// EMBEDDED: flags 0x0
// PLAIN-NOT: Link-time
// PLAIN: flags 0x1

asm(" .text");
asm(" .data");
#ifndef NO_WEAK
__attribute__((weak)) void first(void) {}
__attribute__((weak)) void second(void) {}
// A weak variable alone tells nothing.
__attribute__((weak)) int variable;
#endif
int last;
