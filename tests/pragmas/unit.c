// Pragmas of the whole unit: default sections, names outside of it, inlining, and
// those of GNU C.
// RUN: %krtparse --display_error_number --i_output_file=%t.if %s > %t.err 2>&1; test $? -eq 0
// RUN: %FileCheck --check-prefix=ERR %s --implicit-check-not='{{error|warning|remark}} #' < %t.err
// RUN: %ifdump %t.if | %FileCheck %s

#pragma SET_DATA_SECTION(".data1")
#pragma SET_CODE_SECTION(".text1")
// CHECK-LABEL: {{^}}symbol defined_here
// CHECK: pragma CODE_SECTION ".text1"
void defined_here(void) {}
// Functions come first in the file.
// CHECK-LABEL: {{^}}symbol inlined
// CHECK: pragma FUNC_ALWAYS_INLINE
// CHECK-LABEL: {{^}}symbol not_inlined
// CHECK-NOT: ALWAYS_INLINE
// CHECK-LABEL: {{^}}symbol by_pragma
// CHECK: pragma DATA_SECTION ".mine"
#pragma DATA_SECTION(by_pragma, ".mine")
int by_pragma;
// CHECK-LABEL: {{^}}symbol by_attribute
// CHECK: pragma DATA_SECTION ".own"
int by_attribute __attribute__((section(".own")));
// CHECK-LABEL: {{^}}symbol by_default
// CHECK: pragma DATA_SECTION ".data1"
int by_default = 1;
// A later definition takes the default that holds there.
// CHECK-LABEL: {{^}}symbol defined_twice
// CHECK: pragma DATA_SECTION ".data2"
int defined_twice;
#pragma SET_DATA_SECTION(".data2")
int defined_twice = 1;
int by_pragma;
#pragma SET_DATA_SECTION()
_Pragma("SET_CODE_SECTION(\"\")")
// CHECK-LABEL: {{^}}symbol behind
// CHECK-NOT: SECTION
int behind;

// CHECK-LABEL: {{^}}symbol new_name
#pragma redefine_extname old_name new_name
extern int old_name;
// CHECK-LABEL: {{^}}symbol user
int *user = &old_name;
// CHECK: {{^}}symbol new_function
#pragma redefine_extname old_function new_function
int old_function(void);
int (*function_user)(void) = old_function;

#pragma GCC push_options
#pragma GCC target("a", "b")
#pragma GCC target ("c")
#pragma GCC pop_options
#pragma GCC reset_options
// ERR: line [[#@LINE+1]]: warning #2978-D: no corresponding "push_options"
#pragma GCC pop_options
// ERR: line [[#@LINE+1]]: warning #1944-D: unrecognized GCC pragma
#pragma GCC unknown
// ERR: line [[#@LINE+1]]: warning #14-D: extra text
#pragma GCC reset_options now
// ERR: line [[#@LINE+1]]: warning #2680-D: #pragma GCC system_header cannot be used in the primary source file
#pragma GCC system_header

// Nothing is said without the checks.
#pragma CHECK_MISRA("1.1"
#pragma CHECK_NRG 5
#pragma NRG_PORT_CONFIG(1)
#pragma NRG_PORT_CONFIG(a, OUT = {0xff, 8}, DIR = {1, 8}, SEL1 = {0, 8}, SEL2 = {0, 16})

// Functions that are declared inline are always inlined.
#pragma ALWAYS_INLINE
static inline int inlined(void) { return 1; }
int not_inlined(void) { return inlined(); }
