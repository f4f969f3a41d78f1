// Pragmas that name their subject: what each says of a wrong one or of wrong
// operands. None of them leaves anything in the file.
// RUN: %krtparse --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark|INTERNAL}} #' < %t.err

void function(void) {}
void declared(void);
int with_result(void) { return 1; }
void with_parameter(int a) { (void)a; }
int object;
extern int elsewhere;
int *use = &elsewhere;
typedef int type;

// The form.
// CHECK-DAG: line [[#@LINE+2]]: error #126: expected a "("
// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma RETAIN, verify format
#pragma RETAIN
// CHECK-DAG: line [[#@LINE+2]]: error #41: expected an identifier
// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma WEAK, verify format
#pragma WEAK(1)
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma FUNC_IS_PURE(function
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma FUNC_IS_PURE(function, object)
// CHECK-DAG: line [[#@LINE+1]]: error #14: extra text after expected end of preprocessing directive
#pragma FUNC_IS_PURE(function) function
// CHECK-DAG: line [[#@LINE+1]]: warning #827-D: specified symbol 'unknown' undefined
#pragma CODE_SECTION(unknown, ".t")
// CHECK-DAG: line [[#@LINE+1]]: warning #837-D: pragma can only be applied to a file level symbol, not 'unknown'
#pragma DATA_SECTION(unknown, ".t")
// CHECK-DAG: line [[#@LINE+1]]: warning #837-D: pragma can only be applied to a file level symbol, not 'unknown'
#pragma DATA_ALIGN(unknown, 4)

// Subjects.
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_CANNOT_INLINE can only be applied to a function, not "object"
#pragma FUNC_CANNOT_INLINE(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma HOOK_FUNCTION can only be applied to a function, not "type"
#pragma HOOK_FUNCTION(type)
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_NEVER_RETURNS can only be applied to a function, not "object"
#pragma FUNC_NEVER_RETURNS(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_ALWAYS_INLINE can only be applied to a function, not "object"
#pragma FUNC_ALWAYS_INLINE(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_NO_GLOBAL_ASG can only be applied to a function, not "object"
#pragma FUNC_NO_GLOBAL_ASG(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_NO_IND_ASG can only be applied to a function, not "object"
#pragma FUNC_NO_IND_ASG(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_IS_PURE can only be applied to a function, not "object"
#pragma FUNC_IS_PURE(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_IS_SYSTEM can only be applied to a function, not "object"
#pragma FUNC_IS_SYSTEM(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma FUNC_EXCEPTIONS_NOUNWIND can only be applied to a function definition, not "declared"
#pragma FUNC_EXCEPTIONS_NOUNWIND(declared)
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma NO_HOOKS can only be applied to a function definition, not "declared"
#pragma NO_HOOKS(declared)
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma FUNC_EXT_CALLED can only be applied to a function definition
#pragma FUNC_EXT_CALLED(object)
// CHECK-DAG: line [[#@LINE+1]]: warning #832-D: interrupt declarations can only be applied to file scope functions returning void
#pragma INTERRUPT(object)
// CHECK-DAG: line [[#@LINE+1]]: error #832: interrupt declarations can only be applied to file scope functions returning void
#pragma INTERRUPT(with_result)
// CHECK-DAG: line [[#@LINE+1]]: error #833: no parameters allowed for interrupt functions such as 'with_parameter'
#pragma NMI_INTERRUPT(with_parameter)
// CHECK-DAG: line [[#@LINE+1]]: error #828: invalid symbol for specified pragma
#pragma FAR(function)
// CHECK-DAG: line [[#@LINE+1]]: error #828: invalid symbol for specified pragma
#pragma NEAR(type)
// CHECK-DAG: line [[#@LINE+1]]: warning #1507-D: pragma RETAIN can only be applied to a function or object definition, not "declared"
#pragma RETAIN(declared)
// CHECK-DAG: line [[#@LINE+1]]: warning #1507-D: pragma CLINK can only be applied to a function or object definition, not "elsewhere"
#pragma CLINK(elsewhere)
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma WEAK can only be applied to a file level symbol, not "type"
#pragma WEAK(type)
// CHECK-DAG: line [[#@LINE+1]]: warning #1516-D: pragma NOINIT cannot be applied to functions
#pragma NOINIT(function)
// CHECK-DAG: line [[#@LINE+1]]: warning #1523-D: PERSISTENT can only be applied to a file level symbol definition, not "elsewhere"
#pragma PERSISTENT(elsewhere)

// The severity is that of the line of the pragma, not that of the end of the file.
#pragma diag_error 1112
// CHECK-DAG: line [[#@LINE+1]]: error #1112-D: pragma HOOK_FUNCTION can only
#pragma HOOK_FUNCTION(object)
#pragma diag_suppress pragma_requires_func
#pragma HOOK_FUNCTION(object)
#pragma diag_default 1112

// Sections and alignment.
// CHECK-DAG: line [[#@LINE+1]]: error #255: expected a ","
#pragma DATA_SECTION(object)
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma DATA_SECTION(object, L".wide")
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma DATA_SECTION(object, 1)
// CHECK-DAG: line [[#@LINE+1]]: warning #824-D: pragma DATA_SECTION can only be applied to a file level symbol definition, not "elsewhere"
#pragma DATA_SECTION(elsewhere, ".s")
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma CODE_SECTION can only be applied to a function, not "object"
#pragma CODE_SECTION(object, ".s")
#pragma DATA_SECTION(object, ".first")
#pragma DATA_SECTION(object, ".first")
// CHECK-DAG: line [[#@LINE+1]]: warning #1508-D: variable "object" has incompatible section specifications, .first and .second, .first will be used
#pragma DATA_SECTION(object, ".second")
// CHECK-DAG: line [[#@LINE+1]]: error #818: integer parameter of pragma DATA_ALIGN must be power of 2
#pragma DATA_ALIGN(object, 3)
// CHECK-DAG: line [[#@LINE+1]]: error #818: integer parameter of pragma DATA_ALIGN must be power of 2
#pragma DATA_ALIGN(object, 0)
// CHECK-DAG: line [[#@LINE+1]]: error #819: alignment too large in pragma DATA_ALIGN
#pragma DATA_ALIGN(object, 65536)
// CHECK-DAG: line [[#@LINE+1]]: error #28: expression must have a constant value
#pragma DATA_ALIGN(object, object)
#pragma DATA_ALIGN(object, 4)
// CHECK-DAG: line [[#@LINE+1]]: error #851: cannot apply DATA_MEM_BANK pragma to variable 'object' which has an explicitly specified alignment
#pragma DATA_ALIGN(object, 8)

// Addresses and names.
// CHECK-DAG: line [[#@LINE+1]]: warning #824-D: pragma LOCATION can only be applied to a file level symbol definition, not "declared"
#pragma LOCATION(declared, 1)
// CHECK-DAG: line [[#@LINE+1]]: warning #1515-D: location pragma address is too large
#pragma LOCATION(object, 0x100000000)
// CHECK-DAG: line [[#@LINE+1]]: warning #1515-D: location pragma address is too large
#pragma LOCATION(object, -1)
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma LOCATION(object, 16, 3)
// CHECK-DAG: line [[#@LINE+1]]: error #901: expression must have integral or enum type
#pragma LOCATION(function, 1.0)
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma TRAMPOLINE can only be applied to a file level symbol, not "object"
#pragma TRAMPOLINE(object, function)
// CHECK-DAG: line [[#@LINE+1]]: error #815: pragma TRAMPOLINE not applicable to function "function"
#pragma TRAMPOLINE(function, 1)
// CHECK-DAG: line [[#@LINE+1]]: error #829: symbol 'object' invalid for specified pragma
#pragma TRAMPOLINE(function, object)
// CHECK-DAG: line [[#@LINE+1]]: error #815: pragma CALLS not applicable to
#pragma CALLS(function, )
// CHECK-DAG: line [[#@LINE+1]]: error #829: symbol 'object' invalid for specified pragma
#pragma CALLS(function, object, declared)
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma CALLS can only be applied to a file level symbol, not "object"
#pragma CALLS(object, declared)

// Of the file.
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma BAT_VREG(1, 2)
// CHECK-DAG: line [[#@LINE+1]]: error #255: expected a ","
#pragma BAT_VREG("r" 2)
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma OWL_REG("r", 1)
// CHECK-DAG: line [[#@LINE+2]]: error #126: expected a "("
// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma OWL_REG, verify format
#pragma OWL_REG "r", "s"

// No source form.
// CHECK-DAG: line [[#@LINE+1]]: warning #163-D: unrecognized #pragma
#pragma LPM_INFO("x")
// CHECK-DAG: line [[#@LINE+1]]: warning #163-D: unrecognized #pragma
#pragma PORTS_INIT_INFO("x")
// CHECK-DAG: line [[#@LINE+1]]: warning #163-D: unrecognized #pragma
#pragma HW_MPY32("x")
// CHECK-DAG: line [[#@LINE+1]]: warning #163-D: unrecognized #pragma
#pragma FOX_STATUS("x")
// CHECK-DAG: line [[#@LINE+1]]: warning #163-D: unrecognized #pragma
#pragma ARGSUSED
// CHECK-DAG: line [[#@LINE+1]]: warning #163-D: unrecognized #pragma
#pragma data_section(object, ".x")

// A name that only an inner scope knows.
void scope(void)
{
  static int local;
  local = 1;
// CHECK-DAG: line [[#@LINE+1]]: warning #824-D: pragma DATA_SECTION can only be applied to a file level symbol definition, not "local"
#pragma DATA_SECTION(local, ".x")
  {
    int automatic = local;
    local = automatic;
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma WEAK can only be applied to a file level symbol, not "automatic"
#pragma WEAK(automatic)
  }
}
