// Marks on functions and objects, by pragmas that name them on either side of
// their declarations, and what each leaves in the file.
// RUN: %krtparse --display_error_number --i_output_file=%t.if %s
// RUN: %ifdump %t.if > %t.txt
// RUN: %FileCheck %s < %t.txt

// Of the file; a function may hold them too.
// CHECK-DAG: {{^}}pragma BAT_VREG "r" "3"
// CHECK-DAG: {{^}}pragma OWL_REG "a" "b"
#define PAIR "a", "b"
#pragma BAT_VREG("r", 1 + 2)

// CHECK-LABEL: {{^}}symbol function
// CHECK-SAME: state 0
// CHECK-DAG: pragma FUNC_NEVER_RETURNS
// CHECK-DAG: pragma FUNC_CANNOT_INLINE
// CHECK-DAG: pragma FUNC_ALWAYS_INLINE
// CHECK-DAG: pragma FUNC_NO_GLOBAL_ASG
// CHECK-DAG: pragma FUNC_NO_IND_ASG
// CHECK-DAG: pragma FUNC_IS_PURE
// CHECK-DAG: pragma FUNC_IS_SYSTEM
// CHECK-DAG: pragma HOOK_FUNCTION
// CHECK-DAG: pragma FUNC_EXCEPTIONS_NOUNWIND
// CHECK-DAG: pragma NO_HOOKS
// CHECK-DAG: pragma CLINK
// CHECK-DAG: pragma QL_WEAK
// CHECK-DAG: pragma CODE_SECTION ".fast"
// CHECK-DAG: pragma LOCATION "4096"
// CHECK-DAG: pragma CALLS "called" "other"
// CHECK-DAG: pragma TRAMPOLINE "other"
#pragma FUNC_NEVER_RETURNS(function)
#pragma FUNC_CANNOT_INLINE(function);
#pragma FUNC_ALWAYS_INLINE(function)
#pragma FUNC_NO_GLOBAL_ASG(function)
#pragma FUNC_NO_IND_ASG(function)
#pragma FUNC_IS_PURE(function)
_Pragma("FUNC_IS_SYSTEM(function)")
__pragma(HOOK_FUNCTION(function))
void called(void);
void (other)(void);
void function(void)
{
#pragma FUNC_EXCEPTIONS_NOUNWIND(function)
#pragma OWL_REG(PAIR)
}
#pragma NO_HOOKS(function)
#pragma CLINK(function)
#pragma WEAK(function)
#pragma CODE_SECTION(function, ".fast")
#pragma LOCATION(function, 0x1000)
#pragma CALLS(function, called, other)
#pragma TRAMPOLINE(function, other)

// Another unit calls it: state 1, and no record of its own.
// CHECK-LABEL: {{^}}symbol called_from_outside
// CHECK-SAME: state 1
// CHECK-NOT: EXT_CALLED
#pragma FUNC_EXT_CALLED(called_from_outside)
void called_from_outside(void) {}

// CHECK-LABEL: {{^}}symbol isr
// CHECK-SAME: qualifiers 0x0020
// CHECK: pragma INTERRUPT{{$}}
#pragma INTERRUPT(isr)
void isr(void) {}
// CHECK-LABEL: {{^}}symbol nmi
// CHECK: pragma NMI_INTERRUPT{{$}}
void nmi(void) {}
#pragma NMI_INTERRUPT(nmi)

// Nobody uses it.
// CHECK-LABEL: {{^}}symbol kept_function class static
// CHECK-SAME: state 1
// CHECK: pragma RETAIN
#pragma RETAIN(kept_function)
static void kept_function(void) {}

// CHECK-LABEL: {{^}}symbol kept class static
// CHECK-SAME: state 1
// CHECK: pragma RETAIN
static int kept;
#pragma RETAIN(kept)
// CHECK-NOT: symbol dropped
static int dropped;
#pragma CLINK(dropped)

// CHECK-LABEL: {{^}}symbol aligned
// CHECK-SAME: align 256
// CHECK-NEXT: pragma DATA_SECTION ".mine"
#pragma DATA_ALIGN(aligned, 32)
#pragma DATA_SECTION(aligned, ".mi" "ne")
char aligned;

// CHECK-LABEL: {{^}}symbol at_address
// CHECK: pragma LOCATION "512"
int at_address;
#pragma LOCATION(at_address, 2 * 256)
// CHECK-LABEL: {{^}}symbol not_cleared
// CHECK: pragma NOINIT
int not_cleared;
#pragma NOINIT(not_cleared)
// CHECK-LABEL: {{^}}symbol lasting
// CHECK: pragma PERSISTENT
int lasting = 1;
#pragma PERSISTENT(lasting)
// CHECK-LABEL: {{^}}symbol weak
// CHECK: pragma QL_WEAK
int weak;
#pragma WEAK(weak)
// CHECK-LABEL: {{^}}symbol close
// CHECK-SAME: qualifiers 0x0001
int close;
#pragma NEAR(close)
// CHECK-LABEL: {{^}}symbol distant
// CHECK-SAME: qualifiers 0x0002
extern int distant;
#pragma FAR(distant)
int *address_of_distant = &distant;

// The name is looked up where the scope ends, from there.
// CHECK-LABEL: {{^}}symbol inner
// CHECK: pragma NOINIT
int inner;
void scope(void)
{
  {
#pragma NOINIT(inner)
  }
}

// CHECK-LABEL: {{^}}symbol kept_constant class static
// CHECK-SAME: state 1
static const int kept_constant = 1;
#pragma RETAIN(kept_constant)

// The section comes before the other marks, which stand from the last to the first.
// CHECK-LABEL: {{^}}symbol ordered
// CHECK-NEXT: SRC_LANGUAGE
// CHECK-NEXT: FUNC_IS_PURE
// CHECK-NEXT: FUNC_IS_SYSTEM
// CHECK-NEXT: FUNC_NO_IND_ASG
// CHECK-NEXT: CODE_SECTION ".s"
// CHECK-NOT: pragma
#pragma FUNC_NO_IND_ASG(ordered)
#pragma FUNC_IS_SYSTEM(ordered)
#pragma CODE_SECTION(ordered, ".s")
#pragma FUNC_IS_PURE(ordered)
void ordered(void);
void (*address_of_ordered)(void) = ordered;
