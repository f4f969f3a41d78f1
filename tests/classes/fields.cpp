// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Data members of C++ classes: fields, bit-fields, static members, anonymous
// unions, nested types (C++11 9.2, 9.4.2, 9.5, 9.6).

struct Fields {
  int plain, *pointer, array[3];
  mutable int changeable;
  int &reference;
  // CHECK: line [[#@LINE+1]]: error #1845: a reference may not be declared mutable
  mutable int &bad_reference;
  // CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
  Fields itself;
  // CHECK: line [[#@LINE+1]]: error #102: "plain" has already been declared
  char plain;
  // CHECK: line [[#@LINE+1]]: error #379: "virtual" is not allowed here
  virtual int not_virtual;
  // CHECK: line [[#@LINE+1]]: error #282: declaration of a member with the same name as its class
  int Fields;
  Fields(int);
};
union Union {
  int a;
  // CHECK: line [[#@LINE+1]]: error #988: a union may not have a member of reference type
  int &r;
};

// ---- Bit-fields ----

enum Wide { from = 0, to = 9 };
struct Bits {
  int normal : 3, : 0, other : 4;
  bool flag : 1;
  // CHECK: line [[#@LINE+1]]: warning #1013-D: the bit field has more bits
  int wide : 33;
  // CHECK: line [[#@LINE+1]]: error #108: zero-length bit field must be unnamed
  int zero : 0;
  // CHECK: line [[#@LINE+1]]: error #107: invalid type for a bit field
  float real : 3;
  // CHECK: line [[#@LINE+1]]: error #106: invalid size for bit field
  int negative : -1;
  // CHECK: line [[#@LINE+1]]: warning #231-D: the bit field is too small
  Wide narrow : 2;
};

// ---- Static data members ----

struct Statics {
  static int declared;
  static const int constant = 3;
  static constexpr double real = 1.5;
  static const int *pointer;
  int by_constant[constant];
  // CHECK: line [[#@LINE+1]]: error #1865: a static data member initialized in its class must be const
  static int variable = 3;
  // CHECK: line [[#@LINE+1]]: error #2789: a constexpr static data member requires an initializer
  static constexpr int without;
  // CHECK: line [[#@LINE+1]]: error #1864: a static data member initialized in its class must have integral
  static const Wide *const address = 0;
};
int Statics::declared = Statics::constant;
const int Statics::constant;
int size_of_array[sizeof(Statics) == 3 * sizeof(int) ? 1 : -1];
void local() {
  struct Local {
    // CHECK: line [[#@LINE+1]]: error #871: a static data member is not allowed here
    static int s;
    // CHECK: line [[#@LINE+1]]: error #331: member function "Local::missing" of a local class
    void missing();
    int defined() { return 1; }
  };
}

// ---- Anonymous unions ----

struct Anonymous {
  union { int i; float f; };
  // CHECK: line [[#@LINE+1]]: error #366: an anonymous union may not have a member function
  union { int j; void g(); };
  // CHECK: line [[#@LINE+1]]: error #365: a member of an anonymous union may not have this access
  union { int k; private: int l; };
  // CHECK: line [[#@LINE+1]]: error #102: "i" has already been declared
  int i;
};
extern int Anonymous::*to_i;

// CHECK: line [[#@LINE+1]]: warning #377-D: declaration requires a typedef name
struct NoName { typedef union { int i; }; int i; void body() { }; };
// CHECK: line [[#@LINE+1]]: error #282: declaration of a member with the same name as its class
struct NamesClass { typedef int NamesClass; };
struct NamedField { int NamedField; } *named_field; struct NamedField *again = named_field;
struct Unfinished {
  int a;
  // CHECK: line [[#@LINE+2]]: error #171: expected a declaration
  int b,
};
// CHECK: line [[#@LINE+1]]: warning #370-D: class "ConstBits" defines no constructor to initialize the following:
struct ConstBits { const int bits : 3; };
// CHECK: line [[#@LINE+1]]: error #1864: a static data member initialized in its class must have integral
struct FloatingConstant { static const double d = 1.0; };

// ---- Types ----

struct Types {
  struct Nested { enum Inner { one, two }; int array[two]; };
  struct Later;
  typedef Nested N;
  using A = Nested;
  N n; A a; Nested::Inner inner;
private:
  enum { hidden = 5 };
};
struct Types::Later { N n; };
Types::N of_nested;
Types::A of_alias;
// CHECK: line [[#@LINE+1]]: error #1072: "Missing" is not a member class of
struct Types::Missing *missing;
// CHECK: line [[#@LINE+1]]: error #1706: the qualifier is not valid in the definition of class
namespace n { struct ::Types::Later { }; }
// CHECK: errors detected
