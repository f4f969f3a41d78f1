// RUN: %krtparse --g++ --gnu_version=60000 --exceptions --no_code_gen --display_error_number --diag_suppress=177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=': error' < %t.err
// Where special members are used without being named, and what implicit ones throw.

// ---- Destructors ----

struct Undestroyed { Undestroyed(); Undestroyed(int); ~Undestroyed() = delete; };
struct Hidden { Hidden(); private: ~Hidden(); };
struct OfHidden : Hidden { OfHidden(); };
Undestroyed *on_the_heap = new Undestroyed(1);
extern Undestroyed elsewhere;
// CHECK: line [[@LINE+1]]: error #2045: function "Undestroyed::~Undestroyed"
Undestroyed at_file_scope;
// CHECK: line [[@LINE+1]]: error #2045: function "OfHidden::~OfHidden"
OfHidden of_hidden[2];
void destroys() {
  // CHECK: line [[@LINE+1]]: error #267: function "Hidden::~Hidden"
  Hidden local;
  // CHECK: line [[@LINE+1]]: error #2045: function "Undestroyed::~Undestroyed"
  Undestroyed initialized(1);
  // CHECK: line [[@LINE+1]]: error #2045: function "Undestroyed::~Undestroyed"
  Undestroyed(2);
}
// A constructor may have to take back what it has built.
struct OfUndestroyed {
  Undestroyed member;
  // CHECK: line [[@LINE+1]]: error #2045: function "Undestroyed::~Undestroyed"
  OfUndestroyed() { }
};

// ---- Constructors that do nothing ----

class Closed { Closed() = default; public: int value; static Closed *make() { return new Closed; } };
// CHECK: line [[@LINE+1]]: error #267: function "Closed::Closed"
Closed closed;
// CHECK: line [[@LINE+1]]: error #267: function "Closed::Closed"
Closed *of_new = new Closed;
// CHECK: line [[@LINE+1]]: error #267: function "Closed::Closed"
struct OfClosed { Closed member; OfClosed() { } };

// ---- Const members ----

struct Valued { Valued(); };
struct Plain { int value; };
struct OfConst { const Valued valued; const int given = 1; };
OfConst has_values;
const OfConst constant_has_values;
struct OfPlain { const Plain plain; };
// CHECK: line [[@LINE+1]]: error #372: variable "lacks_value"
OfPlain lacks_value;
struct HoldsOfPlain { OfPlain member; };
// CHECK: line [[@LINE+1]]: error #2045: function "HoldsOfPlain::HoldsOfPlain"
HoldsOfPlain holds;

struct Empty { };
struct OfEmpty { Empty empty; };
const OfEmpty nothing_to_value;

// ---- Unions, mutable members, abstract classes ----

struct Destroyed { Destroyed(); ~Destroyed(); };
struct OfUnion { union { Destroyed variant; }; OfUnion() { } ~OfUnion() { } };
struct BothCopies {
  BothCopies &operator=(BothCopies &);
private:
  BothCopies &operator=(const BothCopies &);
};
struct OfMutable { mutable BothCopies member; };
void copies(OfMutable &to, const OfMutable &from) { to = from; }
struct NoDefault { NoDefault(int); };
struct Abstract : virtual NoDefault { virtual void pure() = 0; int member = 1; };
struct AbstractToo : virtual NoDefault { AbstractToo() { } virtual void pure() = 0; };
struct Concrete : Abstract { Concrete() : NoDefault(1) { } void pure(); };
Concrete concrete;
struct OfNone { NoDefault none[0]; OfNone() { } };
struct OfNoneToo { NoDefault none[0]; };
OfNoneToo of_none;
union Nested { union { int begins = 7; }; };
Nested nested;

// ---- Copies ----

struct Copied { Copied(); Copied(const Copied &); };
struct OfCopied : Copied { };
OfCopied make_copied();
void take_copied(Copied);
const Copied &bound = make_copied();
void copies_base() { Copied copy(make_copied()); take_copied(make_copied()); }
struct CopiedOnce { CopiedOnce(const CopiedOnce &) = default; CopiedOnce &operator=(const CopiedOnce &) = delete; };
struct NeverCopied { NeverCopied(const NeverCopied &) = delete; NeverCopied &operator=(const NeverCopied &) = delete; };
static_assert(__is_trivially_copyable(CopiedOnce) && !__is_trivially_copyable(NeverCopied), "");

// ---- Constexpr objects ----

struct Constexpr { int value; constexpr Constexpr() : value(1) { } };
constexpr Constexpr by_constructor, several[2];
constexpr Empty empty_constexpr;
// CHECK: line [[@LINE+1]]: error #2761: {{.*}}"Valued"
constexpr Valued not_constexpr;
// CHECK: line [[@LINE+1]]: error #2745:
extern constexpr Constexpr declared;

// ---- Members that a list leaves out ----

struct ConstMember { const int member; };
struct OfConstMember2 { ConstMember aggregate; };
OfConstMember2 from_nothing = {};
struct WithValues { int first; NoDefault second{20}; int third = 3; int fourth = third + 1; };
WithValues left_out = {1};
struct Constants { int first; int second = 5; };
constexpr Constants known = {1};
static_assert(known.second == 5, "");
struct OfNoDefault { int first; NoDefault second; };
// CHECK: line [[@LINE+1]]: error #293: {{.*}}"NoDefault"
OfNoDefault lacks = {1};

// ---- Delegation in a circle ----

struct Circle {
  Circle() : Circle(1) { }
  Circle(int) : Circle('a') { }
  // CHECK: line [[@LINE+1]]: error #2806:
  Circle(char) : Circle() { }
  Circle(long) : Circle(1) { }
  // CHECK: line [[@LINE+1]]: error #2806:
  Circle(float f) : Circle(f) { }
};

// ---- Defaulted assignment ----

struct Assigned {
  // CHECK: line [[@LINE+1]]: error #2075:
  void operator=(const Assigned &) = default;
};
struct AssignedConst {
  // CHECK: line [[@LINE+1]]: error #2075:
  AssignedConst &operator=(const AssignedConst &) const = default;
};

// ---- Inherited constructors ----

struct From { From(int); };
struct Named : From { using From::From; Named(int, int); From member; };
// CHECK: line [[@LINE+1]]: error #2045: function "Named::Named"
Named named(1);
typedef From AlsoFrom;
struct ByTypedef : AlsoFrom { using AlsoFrom::AlsoFrom; ByTypedef(int); };
ByTypedef by_typedef(1);
union OfConstMember { int given; const int constant; };
// CHECK: line [[@LINE+1]]: error #2045: function "OfConstMember::operator ="
void assigns(OfConstMember &u) { u = u; }
struct Twice : From {
  using From::From;
  // CHECK: line [[@LINE+1]]: error #995: {{.*}}"From"
  using From::From;
};

// ---- What implicit functions throw ----

struct Throwing { Throwing(); Throwing(const Throwing &) noexcept; ~Throwing() noexcept(false); };
struct Quiet { ~Quiet() { } };
struct DefinedLater { virtual ~DefinedLater(); };
DefinedLater::~DefinedLater() { }
struct OfThrowing { Throwing member; };
struct InitThrows { int member = function(); static int function(); };
struct Virtual { virtual ~Virtual() noexcept; };
struct Derived : Virtual { ~Derived() { } };
struct DerivesBoth : Virtual { DefinedLater member; };
struct Implicit : Virtual { Quiet member; };
// CHECK: line [[@LINE+1]]: error #{{[0-9]+}}: {{.*}}exception specification
struct Looser : Virtual { Throwing member; };
// CHECK: line [[@LINE+1]]: error #769: {{.*}}"LooserWritten::~LooserWritten"
struct LooserWritten : Virtual { ~LooserWritten() noexcept(sizeof(char) > 1); };
struct Trivial { ~Trivial() noexcept(false); };
static_assert(!noexcept(Trivial()), "");
static_assert(noexcept(Quiet()) && noexcept(Plain()), "");
static_assert(!noexcept(Throwing()) && !noexcept(OfThrowing()) && !noexcept(InitThrows()), "");
