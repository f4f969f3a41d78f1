// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Base clauses (C++11 10).

class Declared;
struct First { int i; };
struct Second { };
struct Last final { };
typedef First Alias;
int Second_; void Hidden(); struct Hidden { };
namespace n { struct Inner { }; }

// ---- What may stand there ----

struct Good : public First, protected virtual Second, private n::Inner { };
struct ByAlias : Alias, virtual public Hidden { };
class ByDefault : First { };
struct : First { int j; } unnamed;
struct WithAttributes : public [[gnu::unused]] virtual [[gnu::unused]] First { };
// CHECK: line [[#@LINE+1]]: error #242: duplicate specifier
struct Twice : virtual virtual First { };
// CHECK: line [[#@LINE+1]]: error #244: multiple access control specifiers
struct TwoAccesses : public private First { };

// ---- What may not be a base ----

// CHECK: line [[#@LINE+1]]: error #243: a union may not have a base class
union Union : First { int u; };
// CHECK: line [[#@LINE+1]]: error #2173: a class may not be derived from final class "Last"
struct OfFinal : Last { };
// CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
struct OfDeclared : Declared { };
// CHECK: line [[#@LINE+1]]: error #264: not a class or struct name
struct OfVariable : Second_ { };
// CHECK: line [[#@LINE+1]]: error #264: not a class or struct name
struct OfInt : int { };
// CHECK: line [[#@LINE+1]]: error #266: invalid base class
struct OfUnion : Union { };
// CHECK: line [[#@LINE+1]]: error #2189: the pack expansion contains no parameter packs
struct OfPack : First... { };
// CHECK: line [[#@LINE+1]]: error #265: duplicate base class name
struct Doubled : First, Alias { };
struct Outer {
  // CHECK: line [[#@LINE+1]]: error #1872: base class "Outer" is not complete yet
  struct Nested : Outer { };
};
// CHECK: line [[#@LINE+1]]: error #245: class or struct definition is missing
struct NoBody : First;

// ---- Errors leave the base out, and the class completes ----

// CHECK: line [[#@LINE+1]]: error #264: not a class or struct name
struct Completed : Second_, First { int k; };
int size_of_completed[sizeof(Completed) == 2 * sizeof(int) ? 1 : -1];
// CHECK: errors detected
