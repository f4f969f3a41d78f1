// RUN: %krtparse --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// The constraints of declarations.

// CHECK: line [[#@LINE+1]]: error #82: more than one storage class may not be specified
static extern int two_classes;
// CHECK: line [[#@LINE+1]]: warning #1235-D: the auto specifier is ignored here
auto int global_auto;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
long long long too_long;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
signed unsigned both_signs;
// CHECK: line [[#@LINE+1]]: error #85: invalid combination of type specifiers
short char short_char;
// CHECK: line [[#@LINE+1]]: error #242: duplicate specifier in declaration
unsigned unsigned twice;
// CHECK: line [[#@LINE+1]]: error #20: identifier "Foo" is undefined
Foo unknown_type;
int *use_unknown(void) { return unknown_type; }

// CHECK: line [[#@LINE+1]]: error #95: the size of an array must be greater than zero
int negative[-1];
// CHECK: line [[#@LINE+1]]: error #89: array of functions is not allowed
int of_functions[3](void);
// CHECK: line [[#@LINE+1]]: error #92: a function may not return an array
int returns_array(void)[3];
// CHECK: line [[#@LINE+1]]: error #91: a function may not return a function
int returns_function(void)(int);
// CHECK: line [[#@LINE+1]]: error #90: array of elements of type void is not allowed
void of_void[2];
// CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
void of_type_void;

// CHECK: line [[#@LINE+1]]: error #752: a type qualifier is not allowed
void inner_static(int a[static 3], int b[const 2], int c[2][static 3]);
// CHECK: line [[#@LINE+1]]: error #29: expected an expression
void static_without_bound(int a[static]);
// CHECK: line [[#@LINE+1]]: error #28: expression must have a constant value
long long wide_address = (long long)&inner_static;

// CHECK: line [[#@LINE+1]]: error #528: a parameter may not have void type
void void_param(void, int);
// CHECK: line [[#@LINE+1]]: error #86: invalid storage class for a parameter
void static_param(static int a);
// CHECK: line [[#@LINE+1]]: error #328: "inline" is not allowed here
void inline_param(inline int a);
struct has_inline_member {
  // CHECK: line [[#@LINE+1]]: error #328: "inline" is not allowed here
  inline int member;
};
// CHECK: line [[#@LINE+1]]: error #101: duplicate parameter name
void same_params(int a, int a);
// CHECK: line [[#@LINE+1]]: error #93: identifier-list parameters may only be used in a function definition
void names_only(a, b);
// CHECK: line [[#@LINE+1]]: error #79: a parameter declaration may not have an initializer
void param_value(int a = 1);
// CHECK: line [[#@LINE+1]]: error #100: a declaration here must declare a parameter
int old_style(a) int b; { return a; }
// CHECK: line [[#@LINE+1]]: error #142{{.*}}: unnamed prototyped parameters not allowed when body is present
int unnamed(int) { return 1; }
typedef int function_type(void);
// CHECK: line [[#@LINE+1]]: error #94: function type may not come from a typedef
function_type from_typedef { return 1; }

int defined_twice(void) { return 1; }
// CHECK: line [[#@LINE+1]]: error #304: function "defined_twice" has already been defined
int defined_twice(void) { return 2; }
int initialized_twice = 1;
// CHECK: line [[#@LINE+1]]: error #150: variable "initialized_twice" has already been initialized
int initialized_twice = 2;
extern int other_type;
// CHECK: line [[#@LINE+1]]: error #148: declaration is incompatible with variable "other_type" (declared at line [[#@LINE-1]])
extern char other_type;
int other_prototype(int);
// CHECK: line [[#@LINE+1]]: error #148: declaration is incompatible with "int other_prototype(int)" (declared at line [[#@LINE-1]])
int other_prototype(int, int);

struct twice { int a; };
// CHECK: line [[#@LINE+1]]: error #249: struct "twice" has already been defined
struct twice { int a; };
// CHECK: line [[#@LINE+1]]: error #471: the kind of tag is incompatible with the declaration of "twice"
union twice as_union;
struct members {
  int a;
  // CHECK: line [[#@LINE+1]]: error #102: "a" has already been declared in the current scope
  int a;
  // CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
  struct members self;
  // CHECK: line [[#@LINE+1]]: error #170: a function type is not allowed here
  int function(void);
  // CHECK: line [[#@LINE+1]]: warning #1013-D: the bit field has more bits than its type; the extra bits are ignored
  int wide : 33;
  // CHECK: line [[#@LINE+1]]: error #108: zero-length bit field must be unnamed
  int empty : 0;
  // CHECK: line [[#@LINE+1]]: error #107: invalid type for a bit field
  int *pointer : 3;
  // CHECK: line [[#@LINE+1]]: error #330: invalid storage class for a class member
  static int shared;
};
enum values {
  FIRST,
  // CHECK: line [[#@LINE+1]]: error #40: division by zero
  SECOND = 1 / 0,
  // CHECK: line [[#@LINE+1]]: error #102: "FIRST" has already been declared in the current scope
  FIRST
};

// A misspelled type behind other specifiers.
// CHECK: line [[#@LINE+1]]: error #20: identifier "Baz" is undefined
static const Baz *misspelled = 0;
// CHECK: line [[#@LINE+1]]: error #20: identifier "Baz" is undefined
int misspelled_parameter(const Baz *parameter) {
  return *parameter + *misspelled;
}
// A definition without its semicolon ends in front of the next line's declaration.
struct without_semicolon { int a; }
// CHECK: line [[#@LINE+1]]: error #66: expected a ";"
static int behind_struct(void) { return misspelled_parameter(0); }
enum enum_without_semicolon { E_BEHIND }
// CHECK: line [[#@LINE+1]]: error #66: expected a ";"
int behind_enum = E_BEHIND + sizeof(struct without_semicolon);
// CHECK-NOT: line [[#@LINE-1]]
int *use_behind_enum(void) { behind_struct(); return &behind_enum; }
// The body of a function of unknown type is passed over.
// CHECK: line [[#@LINE+1]]: error #20: identifier "Bar" is undefined
Bar unknown_function(int a) {
  return no_more_messages;
}
// CHECK-NOT: line [[#@LINE-1]]
int behind_body, *use_behind_body = &behind_body;

// A closing bracket too many: the declaration behind it is read.
// CHECK: line [[#@LINE+1]]: error #171: expected a declaration
)
int behind_parenthesis;
// CHECK: line [[#@LINE+1]]: error #171: expected a declaration
]
int *behind_bracket = &behind_parenthesis;
int **use_behind_bracket = &behind_bracket;

void block(void) {
  int a;
  // CHECK: line [[#@LINE+1]]: error #102: "a" has already been declared in the current scope
  int a;
  // CHECK: line [[#@LINE+1]]: error #130: a block-scope function may only have extern storage class
  static int local_function(void);
  typedef int T;
  {
    int T = 1;
    // CHECK: line [[#@LINE+1]]: error #66: expected a ";"
    T x;
  }
  // CHECK: line [[#@LINE+1]]: error #146: variable "block_extern" may not be initialized
  extern int block_extern = 1;
}
// CHECK: line [[#@LINE+1]]: error #406: function "main" may not be declared inline
inline int main(void) { return 0; }
// CHECK: errors detected in the compilation
