// RUN: %krtparse --c11 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// RUN: %krtparse --strict --c99 --no_code_gen --display_error_number -DSTRICT %s 2> %t.strict; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=STRICT < %t.strict
// The constraints of declaration specifiers (C99 6.7.1 to 6.7.4), each with its
// number and line.

#ifndef STRICT
// ---- Storage classes (6.7.1) ----

// CHECK: line [[#@LINE+1]]: error #82: more than one storage class
static extern int static_extern;
// CHECK: line [[#@LINE+1]]: error #82: more than one storage class
typedef static int typedef_static;
// CHECK: line [[#@LINE+1]]: error #82: more than one storage class
typedef _Thread_local int typedef_thread;
// CHECK: line [[#@LINE+1]]: error #1561: more than one thread storage specifier
static _Thread_local _Thread_local int thread_twice;
// CHECK: line [[#@LINE+1]]: error #2861: "thread_local" is not allowed on this declaration
_Thread_local int thread_function(void);
// CHECK: line [[#@LINE+1]]: error #151: a global-scope declaration may not have this storage class
register int global_register;
// CHECK: line [[#@LINE+1]]: error #86: invalid storage class for a parameter
void extern_param(extern int a);
// CHECK: line [[#@LINE+1]]: error #86: invalid storage class for a parameter
void thread_param(_Thread_local int a);
// CHECK: line [[#@LINE+1]]: error #989: "typedef" may not be specified here
void typedef_param(typedef int a);
void register_param(register int a);
struct storage_in_member {
  // CHECK: line [[#@LINE+1]]: error #330: invalid storage class for a class member
  register int a;
  // CHECK: line [[#@LINE+1]]: error #330: invalid storage class for a class member
  _Thread_local int b;
};
// CHECK: line [[#@LINE+1]]: error #81: a storage class is not allowed here
int storage_in_type_name = sizeof(int static);
void storage_in_block(void) {
  // CHECK: line [[#@LINE+1]]: error #2905: "_Thread_local" at block scope requires "static" or "extern"
  _Thread_local int automatic;
  static _Thread_local int local;
  // CHECK: line [[#@LINE+1]]: error #1220: storage class must be auto or register
  for (static int i = 0; i < 1; i++)
    local = automatic = i;
  for (register int i = 0; i < 1; i++)
    local = i;
  // CHECK: line [[#@LINE+1]]: warning #257-D: a type definition is not allowed here
  for (struct s { int a; } x = {1}; x.a < 1;)
    x.a++;
}

// ---- Type specifiers (6.7.2) ----

int long unsigned long any_order;
unsigned alone;
_Static_assert((unsigned)-1 > 0 && sizeof(any_order) == sizeof(long long), "");
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
long long long too_long;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
short float short_float;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
long float long_float;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
signed unsigned both_signs;
// CHECK: line [[#@LINE+1]]: error #242: duplicate specifier in declaration
signed signed same_sign;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
unsigned _Bool unsigned_bool;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
long void *long_void;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
unsigned double unsigned_double;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
int char int_char;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
struct tag { int a; } int struct_int;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
unsigned enum { E1 } unsigned_enum;
// CHECK: line [[#@LINE+1]]: error #1097: _Complex can only be used with floating-point types
int _Complex int_complex;
// CHECK: line [[#@LINE+1]]: error #1097: _Complex can only be used with floating-point types
unsigned _Complex unsigned_complex;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
unsigned _Complex double unsigned_complex_double;
// CHECK: line [[#@LINE+1]]: error #242: duplicate specifier in declaration
_Complex _Complex double complex_twice;
typedef int T;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
T unsigned modified_name;
// CHECK: line [[#@LINE+2]]: error #148: declaration is incompatible with type "T"
// CHECK: line [[#@LINE+1]]: error #66: expected a ";"
unsigned T declares_T_again;
// CHECK: line [[#@LINE+1]]: error #20: identifier "Foo" is undefined
Foo unknown;
Foo2_is_a_function();
// CHECK: line [[#@LINE+1]]: warning #234-D: old-fashioned typedef of "void" ignored
typedef void;
// CHECK: line [[#@LINE+1]]: warning #234-D: old-fashioned typedef of "void" ignored
typedef int void;
// CHECK: line [[#@LINE+1]]: warning #262-D: explicit type is missing ("int" assumed)
static implicit_int;
// CHECK: line [[#@LINE+1]]: warning #262-D: explicit type is missing ("int" assumed)
void implicit_int_param(register a);
void hidden_type(void) {
  int T = 1;
  // CHECK: line [[#@LINE+1]]: error #66: expected a ";"
  T x;
}
typedef int T2;
T2 T2_value(T2 T2) { return T2; }

// ---- Qualifiers (6.7.3) ----

// CHECK: line [[#@LINE+1]]: warning #84-D: type qualifier specified more than once
int const const twice;
// CHECK: line [[#@LINE+1]]: warning #84-D: type qualifier specified more than once
int *const volatile const pointer_twice;
typedef const int const_int;
// CHECK: line [[#@LINE+1]]: warning #84-D: type qualifier specified more than once
const const_int const_again;
// CHECK: line [[#@LINE+1]]: error #646: "restrict" is not allowed here
restrict int restricted_int;
// CHECK: line [[#@LINE+1]]: error #646: "restrict" is not allowed here
void (*restrict restricted_function)(void);
int *restrict restricted;
typedef int function(void);
// CHECK: line [[#@LINE+1]]: warning #979-D: type qualifiers on function types are ignored
const function qualified_function;
// CHECK: line [[#@LINE+2]]: error #646: "restrict" is not allowed here
// CHECK-NOT: line [[#@LINE+1]]: warning #979-D
restrict function restricted_function_type;

// ---- Function specifiers (6.7.4) ----

inline inline int inline_twice(void) { return 1; }
// CHECK: line [[#@LINE+1]]: error #328: "inline" is not allowed here
inline int inline_object;
// CHECK: line [[#@LINE+1]]: error #328: "inline" is not allowed here
inline typedef int inline_type;
// CHECK: line [[#@LINE+1]]: error #2889: _Noreturn may only be used on a function
_Noreturn int noreturn_object;
// CHECK: line [[#@LINE+1]]: error #2889: _Noreturn may only be used on a function
void noreturn_param(_Noreturn int a);
_Noreturn void noreturn_function(void);

// ---- Modifiers of the target ----

// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
near far int near_and_far;
// CHECK: line [[#@LINE+1]]: error #242: duplicate specifier in declaration
far far int far_twice;
// CHECK: line [[#@LINE+1]]: error #240: invalid specifier on a parameter
void far_param(far int a);
// CHECK: line [[#@LINE+1]]: error #81: a storage class is not allowed here
typedef far int far_type;
// CHECK: line [[#@LINE+1]]: error #1559: an interrupt function is not allowed here
interrupt int interrupt_object;
// CHECK: errors detected
#else
// STRICT: line [[#@LINE+1]]: warning #83-D: storage class is not first
int static not_first;
// STRICT: line [[#@LINE+1]]: error #262: explicit type is missing ("int" assumed)
extern no_type;
// STRICT: line [[#@LINE+1]]: error #151: a global-scope declaration may not have this storage class
auto int global_auto;
void f(void) {
  // STRICT: line [[#@LINE+1]]: error #257: a type definition is not allowed here
  for (struct s { int a; } x = {1}; x.a < 1;)
    x.a++;
}
#endif
