// RUN: %krtparse --no_code_gen --g++ --gnu_version=60000 --display_error_number %s > %t.out 2>&1
// RUN: ! grep "error #" %t.out
// RUN: %krtparse --no_code_gen --g++ --gnu_version=60000 --display_error_number -D=FAULTS %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=FAULT --implicit-check-not='error #' < %t.out
// Namespaces, the names they show elsewhere, and overloaded functions.

namespace first {
int object;
extern int declared_twice;
int declared_twice = 1;
typedef char type;
inline namespace version {
int versioned;
}
namespace inner {
typedef long long deep;
}
}
namespace first {
int behind_reopening = sizeof(object);
}
namespace {
int hidden;
int calls_hidden(int);
}
namespace {
int hidden_too = 1;
}
int uses_unnamed() { return hidden + hidden_too; }
int uses_versioned();

// The same name means another entity outside.
char object;
static_assert(sizeof object == 1, "the global object");

namespace alias = first;
namespace alias = first;
namespace user {
using namespace first;
static_assert(sizeof(type) == sizeof(char), "shown by the directive");
using namespace inner;
static_assert(sizeof(deep) == 8, "of a namespace inside");
int uses() { return versioned + behind_reopening; }
}
void block() {
  using namespace alias;
  behind_reopening = versioned;
}

// Blocks share what they declare with the namespace around them alone.
void first_block() { extern int of_blocks, function_of_blocks(double); }
namespace other {
void block() { extern char of_blocks, function_of_blocks(double); }
}
void second_block() {
  extern int of_blocks;
  of_blocks = 1;
  { extern int of_blocks, function_of_blocks(double), function_of_blocks(char); }
}
int of_blocks;

extern "C" {
int function_of_c(int);
extern "C++" int overloaded(char);
int object_of_c;
}
extern "C" int declared_only;
int declared_only = 1;
int function_of_c(int);  // keeps the linkage of C
namespace other {
extern "C" int function_of_c(int);  // the same function
}

int overloaded(int);
int overloaded(long, int);
int overloaded(const int) { return 1; }
int overloaded(long a, int b) { return static_cast<int>(a) + b; }
int overloaded(int *);
int overloaded(int [3]) { return 2; }
int deleted(int) = delete;

struct stat { int a; };
int stat(struct stat *);  // a function beside a tag

using word = unsigned;
typedef unsigned word;
typedef struct tag { int a; } tag;
static_assert(sizeof(word) == sizeof(unsigned), "");
;

const int constant = 1;
extern const int external_constant = 2;

#ifdef FAULTS
// FAULT: line [[#@LINE+1]]: error #20: identifier "unknown_namespace" is undefined
using namespace unknown_namespace;
// FAULT: line [[#@LINE+1]]: error #20: identifier "constant" is undefined
namespace not_a_namespace = constant;
// FAULT: line [[#@LINE+1]]: error #102: "alias" has already been declared in the current scope
namespace alias = other;
// FAULT: line [[#@LINE+1]]: error #102: "constant" has already been declared in the current scope
namespace constant { int inside; }
// FAULT: line [[#@LINE+1]]: error #2714: the namespace was previously declared without "inline"
inline namespace first { }
// FAULT: line [[#@LINE+1]]: error #2713: "inline" is not allowed on a namespace alias
inline namespace inline_alias = first;
// FAULT: line [[#@LINE+1]]: error #730: a namespace-qualified name is required here
using constant;
void in_function() {
  // FAULT: line [[#@LINE+1]]: error #727: a namespace definition is not allowed here
  namespace local { int a; }
  // FAULT: line [[#@LINE+1]]: error #337: a linkage specification is not allowed here
  extern "C" int in_block;
  extern int shared_by_blocks;
}
void in_another_function() {
  // FAULT: line [[#@LINE+1]]: error #148: declaration is incompatible with variable "shared_by_blocks"
  extern char shared_by_blocks;
}
// FAULT: line [[#@LINE+1]]: error #338: unknown linkage specification: "Ada"
extern "Ada" int in_ada;
// FAULT: line [[#@LINE+1]]: error #82: more than one storage class may not be specified
extern "C" static int static_of_c;
int linked(int);
// FAULT: line [[#@LINE+1]]: error #161: declaration is incompatible with previous "linked"
extern "C" int linked(int);
// FAULT: line [[#@LINE+1]]: error #340: more than one instance of overloaded function "function_of_c" has "C" linkage
extern "C" int function_of_c(char);
// FAULT: line [[#@LINE+1]]: error #313: functions that differ only in their return type may not be overloaded
char overloaded(int);
// FAULT: line [[#@LINE+1]]: error #249: variable "constant" has already been defined
const int constant = 1;
int plain;
// FAULT: line [[#@LINE+1]]: error #249: variable "plain" has already been defined
int plain;
// FAULT: line [[#@LINE+1]]: error #303: typedef name has already been declared
typedef int word;
// FAULT: line [[#@LINE+1]]: error #71: incomplete type is not allowed
struct incomplete no_tentative_definition;
// FAULT: line [[#@LINE+1]]: error #1847: static assertion failed with "message"
static_assert(sizeof(char) == 2, "message");
// FAULT: line [[#@LINE+1]]: warning #3144-D: static_assert without a message is nonstandard
static_assert(1);
// FAULT: line [[#@LINE+1]]: error #367: anonymous union at global or namespace scope must be declared static
union { int anonymous; };
// FAULT: line [[#@LINE+1]]: error #87: invalid storage class for a function
static int main() { return 0; }
// FAULT: errors detected
#endif
