// RUN: %krtparse --c99 --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=ALL,LAX --implicit-check-not='error #' < %t.out
// RUN: %krtparse --c99 --strict --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=ALL,STRICT --implicit-check-not=': error #' < %t.out
// The constraints on declarations and external definitions.

// ---- Declarations that declare nothing (C99 6.7 p2) ----

// LAX: line [[#@LINE+2]]: warning #65-D: declaration does not declare anything
// STRICT: line [[#@LINE+1]]: error #65:
int;
// LAX: line [[#@LINE+2]]: warning #65-D
// STRICT: line [[#@LINE+1]]: error #65:
struct { int without_tag; };
// ALL: line [[#@LINE+1]]: warning #21-D: type qualifiers are meaningless in this declaration
const int;
// ALL: line [[#@LINE+1]]: warning #21-D:
volatile struct only_a_tag;
// ALL: line [[#@LINE+1]]: {{.*}} #1054-D: a storage class may not be specified here
static struct with_class { int a; };
// ALL: line [[#@LINE+1]]: warning #377-D: declaration requires a typedef name
typedef struct with_typedef { int a; };
// ALL: line [[#@LINE+1]]: error #377: declaration requires a typedef name
typedef int;
// ALL: line [[#@LINE+1]]: warning #234-D: old-fashioned typedef of "void" ignored
typedef void;
enum { ENUMERATORS_ARE_ENOUGH };

// ---- No linkage, one scope (C99 6.7 p3) ----

// ALL: line [[#@LINE+1]]: error #303: typedef name has already been declared
typedef int number; typedef char number;
// ALL: line [[#@LINE+1]]: error #1037: typedef name has already been declared (with similar type)
typedef int open_array[]; typedef int open_array[3];
// ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with type "number"
int number;
void no_linkage(int parameter) {
  int local;
  // ALL: line [[#@LINE+1]]: error #102: "local" has already been declared in the current scope
  int local;
  // ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with variable "local"
  extern int local;
  extern int with_linkage;
  // ALL: line [[#@LINE+1]]: error #102: "with_linkage" has already been declared
  int with_linkage;
  { int parameter; }
}

// ---- Compatible types (C99 6.7 p4, 6.2.7) ----

extern int object;
// ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with variable "object" (declared at line [[#@LINE-1]])
extern char object;
int bounds[3];
// ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with variable "bounds"
extern int bounds[4];
// ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with variable "either"
int either; int either(void);
// ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with "int or(void)"
int or(void); int or;
// ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with "int parameters(int)"
int parameters(int); int parameters(int, ...);
int in_block(int);
void declares_in_block(void) {
  // ALL: line [[#@LINE+1]]: error #148: declaration is incompatible with "int in_block(int)"
  extern char in_block(int);
}

// ---- Linkage (C99 6.2.2 p7) ----

extern int ends_static;
// LAX: line [[#@LINE+2]]: warning #174-D: external/internal linkage conflict with previous declaration
// STRICT: line [[#@LINE+1]]: error #174:
static int ends_static;
int stays_external(void);
// LAX: line [[#@LINE+2]]: warning #174-D:
// STRICT: line [[#@LINE+1]]: error #174:
static int stays_external(void) { return ends_static; }
static int use_static = 1;
int use(void) { return stays_external() + use_static; }

// ---- External definitions (C99 6.9 p2, p3, 6.9.1, 6.9.2 p3) ----

// LAX: line [[#@LINE+2]]: error #87: invalid storage class for a function
// STRICT: line [[#@LINE+1]]: error #151: a global-scope declaration may not have this storage class
register int in_register(void);
// ALL: line [[#@LINE+1]]: error #71: incomplete type is not allowed
static int internal_and_incomplete[];
// ALL: line [[#@LINE+1]]: error #150: variable "twice" has already been initialized
int twice = 1; int twice = 2;
int defined(void) { return 1; }
// ALL: line [[#@LINE+1]]: error #304: function "defined" has already been defined
int defined(void) { return 2; }
typedef int function_type(void);
// ALL: line [[#@LINE+1]]: error #94: function type may not come from a typedef
function_type from_typedef { return 1; }
// LAX: line [[#@LINE+2]]: warning #1105-D: standard requires that parameter "a" be given a type by a subsequent declaration ("int" assumed)
// STRICT: line [[#@LINE+1]]: error #1105:
int old_style(a, b) char b; { return a + b; }
// ALL: line [[#@LINE+1]]: error #100: a declaration here must declare a parameter
int not_listed(a) int a, b; { return a; }
// ALL: line [[#@LINE+1]]: error #100: a declaration here must declare a parameter
int lists_a_type(a) int a; typedef int type; { return a; }
// ALL: line [[#@LINE+1]]: error #102: "a" has already been declared in the current scope
int listed_twice(a) int a; int a; { return a; }
// ALL: line [[#@LINE+1]]: error #79: a parameter declaration may not have an initializer
int initialized(a) int a = 1; { return a; }
// ALL: line [[#@LINE+1]]: error #142{{.*}}: unnamed prototyped parameters not allowed when body is present
int unnamed(int) { return 1; }

// ---- What begins no declaration ----

int body_behind_semicolon(int a);
// ALL: line [[#@LINE+1]]: error #171: expected a declaration
{ return a; }
// ALL: line [[#@LINE+1]]: error #171: expected a declaration
} typedef int read_on; read_on object_behind;

// ---- Functions of blocks (C99 6.7.1 p5) ----

void block(void) {
  // ALL: line [[#@LINE+1]]: error #130: a block-scope function may only have extern storage class
  static int local_function(void);
  // ALL: line [[#@LINE+1]]: error #87: invalid storage class for a function
  auto int automatic_function(void);
  // ALL: line [[#@LINE+1]]: error #146: variable "block_extern" may not be initialized
  extern int block_extern = 1;
}

// ---- Function specifiers (C99 6.7.4) ----

// ALL: line [[#@LINE+1]]: error #328: "inline" is not allowed here
inline int inline_object;
// ALL: line [[#@LINE+1]]: error #406: function "main" may not be declared inline
inline int main(void) { return 0; }
// ALL: {{[0-9]+}} errors detected
