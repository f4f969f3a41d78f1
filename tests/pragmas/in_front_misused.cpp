// What the pragmas of functions and objects say of a wrong subject or of wrong
// operands in their form of C++.
// RUN: %krtparse --c++ -n --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='{{error|warning|remark|INTERNAL}} #' < %t.err

// Operands.
// CHECK-DAG: line [[#@LINE+1]]: error #818: integer parameter of pragma DATA_ALIGN must be power of 2
#pragma DATA_ALIGN(3)
int object;
// CHECK-DAG: line [[#@LINE+1]]: error #29: expected an expression
#pragma DATA_ALIGN
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: error #18: expected a ")"
#pragma DATA_ALIGN(4, 5)
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: error #14: extra text after expected end of preprocessing directive
#pragma DATA_ALIGN(8) int object;
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma CODE_SECTION()
void function();
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma CODE_SECTION(L"x")
void function();
// CHECK-DAG: line [[#@LINE+1]]: error #14: extra text after expected end of preprocessing directive
#pragma FUNC_IS_PURE function
void function();
// CHECK-DAG: line [[#@LINE+1]]: error #29: expected an expression
#pragma LOCATION()
void function() {}
// CHECK-DAG: line [[#@LINE+1]]: error #28: expression must have a constant value
#pragma LOCATION(object)
int located;
// CHECK-DAG: line [[#@LINE+1]]: error #815: pragma TRAMPOLINE not applicable to function "function"
#pragma TRAMPOLINE
void function();
// CHECK-DAG: line [[#@LINE+1]]: error #829: symbol 'object' invalid for specified pragma
#pragma TRAMPOLINE(object)
void function();
// CHECK-DAG: line [[#@LINE+1]]: error #815: pragma CALLS not applicable to function "function"
#pragma CALLS
void function();
// CHECK-DAG: line [[#@LINE+2]]: error #829: symbol 'object' invalid for specified pragma
// CHECK-DAG: line [[#@LINE+1]]: error #829: symbol 'located' invalid for specified pragma
#pragma CALLS(object, function, located)
void function();
// One that means nothing ends it in silence.
#pragma CALLS(nothing, function)
void function();
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma FUNCTION_OPTIONS
void with_options() {}

// Subjects.
// CHECK-DAG: line [[#@LINE+1]]: warning #1373-D: pragma DATA_ALIGN can only be applied to definitions of symbols that have static storage, not "function"
#pragma DATA_ALIGN(4)
void function();
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma CODE_SECTION can only be applied to a function, not "object"
#pragma CODE_SECTION(".x")
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma FUNC_NEVER_RETURNS can only be applied to a function, not "object"
#pragma FUNC_NEVER_RETURNS
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: warning #1112-D: pragma HOOK_FUNCTION can only be applied to a function, not "type"
#pragma HOOK_FUNCTION()
typedef int type;
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma FUNC_EXT_CALLED can only be applied to a function definition, not "object"
#pragma FUNC_EXT_CALLED
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma FUNC_EXCEPTIONS_NOUNWIND can only be applied to a function definition, not "declared"
#pragma FUNC_EXCEPTIONS_NOUNWIND
void declared();
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma FUNCTION_OPTIONS can only be applied to a function definition, not "declared"
#pragma FUNCTION_OPTIONS("-O1")
void declared();
// CHECK-DAG: line [[#@LINE+1]]: warning #832-D: interrupt declarations can only be applied to file scope functions returning void
#pragma INTERRUPT
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: error #833: no parameters allowed for interrupt functions such as 'with_parameter'
#pragma NMI_INTERRUPT
void with_parameter(int);
// CHECK-DAG: line [[#@LINE+1]]: error #828: invalid symbol for specified pragma
#pragma NEAR
void declared();
// CHECK-DAG: line [[#@LINE+1]]: error #828: invalid symbol for specified pragma
#pragma FAR()
typedef int type;
// CHECK-DAG: line [[#@LINE+1]]: warning #1507-D: pragma RETAIN can only be applied to a function or object definition, not "elsewhere"
#pragma RETAIN
extern int elsewhere;
// CHECK-DAG: line [[#@LINE+1]]: warning #1507-D: pragma CLINK can only be applied to a function or object definition, not "declared"
#pragma CLINK
void declared();
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma WEAK can only be applied to a file level symbol, not "elsewhere"
#pragma WEAK
extern int elsewhere;
// CHECK-DAG: line [[#@LINE+1]]: warning #1373-D: pragma LOCATION can only be applied to definitions of symbols that have static storage, not "declared"
#pragma LOCATION(0x100)
void declared();
// CHECK-DAG: line [[#@LINE+1]]: warning #1516-D: pragma NOINIT cannot be applied to functions
#pragma NOINIT
void marked() {}
// CHECK-DAG: line [[#@LINE+1]]: warning #1524-D: PERSISTENT can only be applied to definitions of symbols that have static storage, not "declared"
#pragma PERSISTENT
void declared();
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma TRAMPOLINE can only be applied to a file level symbol, not "object"
#pragma TRAMPOLINE(function)
extern int object;
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma CALLS can only be applied to a file level symbol, not "object"
#pragma CALLS(function)
extern int object;
void scope() {
// CHECK-DAG: line [[#@LINE+1]]: warning #1373-D: pragma RETAIN can only be applied to definitions of symbols that have static storage, not "automatic"
#pragma RETAIN
  int automatic = 1;
#pragma RETAIN
  static int lasting = automatic;
  ++lasting;
}
class some {
// CHECK-DAG: line [[#@LINE+1]]: warning #823-D: pragma WEAK can only be applied to a file level symbol, not "some::counter"
#pragma WEAK
  static int counter;
// CHECK-DAG: line [[#@LINE+1]]: warning #1111-D: pragma FUNC_EXT_CALLED can only be applied to a function definition, not "some::some"
#pragma FUNC_EXT_CALLED
  some();
#pragma NO_HOOKS
  void defined_here() {}
};
#pragma FUNC_EXT_CALLED
some::some() {}

// Of the file, at the end of each scope.
// CHECK-DAG: line [[#@LINE+1]]: error #821: badly formed pragma
#pragma OWL_REG("a", 1)
// CHECK-DAG: line [[#@LINE+2]]: error #126: expected a "("
// CHECK-DAG: line [[#@LINE+1]]: warning #830-D: error processing pragma BAT_VREG, verify format
#pragma BAT_VREG "a", 1
namespace space {
// CHECK-DAG: line [[#@LINE+1]]: error #255: expected a ","
#pragma BAT_VREG("a" 1)
}

// A class definition alone takes this one.
#pragma define_type_info
class with_type_info {
#pragma define_type_info
  struct inner {};
};
// CHECK-DAG: line [[#@LINE+1]]: error #609: this pragma must immediately precede a declaration
#pragma define_type_info
class with_type_info;
