// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %ifdump %t.if | grep '^symbol' | %FileCheck %s
// RUN: %krtparse --display_error_number -DFAULTS --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=FAULT < %t.out
// The target's modifiers reach the file with the symbol.

// CHECK-DAG: symbol in_near {{.*}} qualifiers 0x0001
near int in_near;
// CHECK-DAG: symbol in_far {{.*}} qualifiers 0x0002
__far int in_far;
// CHECK-DAG: symbol handler {{.*}} qualifiers 0x0020
interrupt void handler(void) { in_near = in_far; }
// CHECK-DAG: symbol other_handler {{.*}} qualifiers 0x0020
__interrupt void other_handler(void) {}
#ifdef FAULTS
// FAULT: line [[#@LINE+1]]{{.*}}: error #832: interrupt declarations can only be applied
interrupt int with_result(void) { return 1; }
// FAULT: line [[#@LINE+1]]{{.*}}: error #833: no parameters allowed for interrupt functions such as 'with_parameter'
interrupt void with_parameter(int a) { in_near = a; }
#endif
