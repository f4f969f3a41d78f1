// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// The declarators and specifiers that C++ adds.

struct S { int a; mutable int b; };
typedef int &reference;
int object;
extern int *pointer;

// ---- Pointers, references, pointers to members (C++11 8.3.1 to 8.3.3) ----

extern int &lvalue;
extern int &&rvalue;
extern const S &constant;
extern reference &collapsed;
extern int S::*member;
extern const int S::*const *pointer_to_member_pointer;
extern int (S::*member_function)(int) const;
extern int (*function_reference_param)(int (&)(int), S &&);
// CHECK: line [[#@LINE+1]]: error #250: pointer to reference is not allowed
extern int &*to_reference;
// CHECK: line [[#@LINE+1]]: error #250: pointer to reference is not allowed
extern reference *to_named_reference;
// CHECK: line [[#@LINE+1]]: error #251: reference to reference is not allowed
extern int & &twice;
// CHECK: line [[#@LINE+1]]: error #252: reference to void is not allowed
extern void &to_void;
// CHECK: line [[#@LINE+1]]: error #253: array of references is not allowed
extern int &of_references[2];
// CHECK: line [[#@LINE+1]]: error #514: type qualifier on a reference type is not allowed
extern int &const qualified;
// CHECK: line [[#@LINE+1]]: error #2695: a pointer to member of type void is not allowed
extern void S::*void_member;
// CHECK: line [[#@LINE+1]]: error #2696: a pointer to member of reference type is not allowed
extern int &S::*reference_member;
// CHECK: line [[#@LINE+1]]: error #278: a name followed by "::" must be a class or namespace name
extern int object::*no_class;
// CHECK: line [[#@LINE+1]]: error #278: a name followed by "::" must be a class or namespace name
extern int S::a::*no_nested_class;
// CHECK: line [[#@LINE+1]]: error #20: identifier "missing" is undefined
extern int missing::S::*no_qualifier;
struct outer { struct S { int b; }; };
namespace hiding { struct S { int c; }; extern int ::S::*global_member, outer::S::*nested_member; }
extern int S::*hiding::global_member, outer::S::*hiding::nested_member;

// ---- Functions (8.3.5) ----

typedef int const_function() const;
// CHECK: line [[#@LINE+1]]: error #1044: cannot create a pointer or reference to qualified function type
extern const_function *to_const_function;
extern const_function S::*member_const_function;
// CHECK: line [[#@LINE+1]]: error #1939: a nonmember function may not have a qualifier
int nonmember() const;
// CHECK: line [[#@LINE+1]]: error #2808: a ref-qualifier is not allowed here
int ref_qualified() &;
int throws_nothing() throw();
int throws(int) throw(int, S *);
int never_throws() noexcept;
int may_throw() noexcept(sizeof(int) == 0);
// CHECK: line [[#@LINE+1]]: error #554: an exception specification is not allowed here
typedef int throwing_type() throw();
// CHECK: line [[#@LINE+1]]: error #2827: an exception specification may not have rvalue reference type
int throws_rvalue() throw(int &&);
auto trailing(int a) -> int (*)[3];
// CHECK: line [[#@LINE+1]]: error #2092: a trailing return type requires the "auto" type specifier
int trailing_int() -> int;
// CHECK: line [[#@LINE+1]]: error #2094: a function declarator with a trailing return type
auto *trailing_pointer() -> int;
// CHECK: line [[#@LINE+1]]: error #2095: "auto" function requires a trailing return type
auto no_trailing();
int unprototyped();
int unprototyped(void);
int ellipsis(...);
int no_comma(int...);
// CHECK: line [[#@LINE+1]]: error #18: expected a ")"
int after_ellipsis(int, ..., int);
int with_default(int a, int b = 2);
// CHECK: line [[#@LINE+1]]: error #308: a default argument must not be followed
int default_first(int a = 1, int b);
// CHECK: line [[#@LINE+1]]: error #307: a type definition is not allowed in a function declarator
int defines_type(struct new_tag { int a; } b);

// ---- Specifiers (7.1) ----

// CHECK: line [[#@LINE+1]]: error #722: "mutable" is not allowed here
mutable int not_mutable;
// CHECK: line [[#@LINE+1]]: error #241: invalid specifier outside a class declaration
virtual int not_virtual();
// CHECK: line [[#@LINE+1]]: error #241: invalid specifier outside a class declaration
friend int not_friend();
// CHECK: line [[#@LINE+1]]: error #240: invalid specifier on a parameter
int explicit_param(explicit int a);
constexpr int constant_object = 1;
// CHECK: line [[#@LINE+1]]: error #2746: "constexpr" is not allowed here
constexpr typedef int constant_type;
// CHECK: line [[#@LINE+1]]: error #2746: "constexpr" is not allowed here
int constant_param(constexpr int a);
// CHECK: line [[#@LINE+1]]: error #242: duplicate specifier in declaration
constexpr constexpr int constant_twice = 1;

// ---- auto and decltype (7.1.6) ----

auto from_int = 1;
auto from_pointer = &object;
const auto *through_pointer = &object;
extern int from_int;
extern int *from_pointer;
extern const int *through_pointer;
auto static order = 1, *same_type = &order;
auto(*in_parentheses) = &object;
auto (*returns_trailing)() -> int;
// CHECK: line [[#@LINE+1]]: error #1867: inconsistent deduction of an auto type: "int" and "double"
auto agrees = 1, disagrees = 1.0;
// CHECK: line [[#@LINE+1]]: error #2769: "auto" is used both as a type specifier and as a storage class
auto auto both_meanings = 1;
decltype(object) same;
extern int same;
S s;
const S const_s = {1, 2};
extern decltype(const_s.a) member_type;
extern int member_type;
extern decltype((s.a)) member_lvalue_type;
extern int &member_lvalue_type;
// CHECK: line [[#@LINE+2]]: error #148: declaration is incompatible with
extern decltype((object)) lvalue_type;
extern int lvalue_type;
// CHECK: line [[#@LINE+1]]: error #1866: an auto type requires an initializer
auto no_initializer;
// CHECK: line [[#@LINE+1]]: error #1860: cannot deduce the auto type
auto *not_a_pointer = 1;
// CHECK: line [[#@LINE+1]]: error #20: identifier "undefined" is undefined
auto bad = undefined + 1;
// CHECK: line [[#@LINE+1]]: error #1871: "auto" is not allowed here
int auto_param(auto a);
// CHECK: line [[#@LINE+1]]: error #1862: "auto" may not be the element type of an array
auto elements[2] = {1, 2};

// ---- Enumerations (7.2) ----

enum class scoped : unsigned char { one = 1, two };
enum opaque : short;
enum opaque : short { opaque_one };
static_assert(sizeof(opaque) == sizeof(short) && sizeof(scoped) == 1, "");
// CHECK: line [[#@LINE+1]]: error #2445: a scoped enum must have a name
enum class { unnamed };
// CHECK: line [[#@LINE+1]]: error #1814: the underlying type of an enum must be integral
enum floating : float { f };
// CHECK: line [[#@LINE+1]]: error #2018: the enumeration value is out of the range of its underlying type
enum narrow : unsigned char { wide = 256 };
// CHECK: line [[#@LINE+1]]: error #2702: the underlying types of the enum are incompatible
enum opaque : int;
// CHECK: line [[#@LINE+1]]: error #28: expression must have a constant value
int bounded[object];
// CHECK: line [[#@LINE+1]]: error #2733: this constant expression has type "scoped"
int scoped_bound[scoped()];
// CHECK: errors detected
