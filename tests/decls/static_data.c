// RUN: %krtparse -w --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s
// RUN: %krtparse -w --keep_unneeded_statics --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s --check-prefix=KEPT
// What becomes of objects that nothing refers to.

// CHECK-NOT: unused_constant
// KEPT-DAG: symbol unused_constant class static
static const int unused_constant = 1;
// CHECK-DAG: symbol used_later class static
static int used_later = 2;
// CHECK-DAG: symbol kept_volatile class static
static volatile int kept_volatile = 3;
// CHECK-DAG: symbol by_address class static
static int by_address = 4;
// CHECK-DAG: symbol table class static
static int *const table[] = {&by_address};
int *const *use(void) { used_later++; return table; }
