// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=174,176,177,179,550,2023 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=': error' < %t.err
// What stands for a body, constructors that constant expressions run or that a
// class takes from its base, and the object that a declarator names.

typedef decltype(sizeof 0) size_t;
struct Plain { int i; };
struct Empty { };
struct Run { Run(); Run(int); };
struct NoDefault { NoDefault(int); };

// ---- `= default` and `= delete` behind the class ----

struct Late {
  Late();
  Late(const Late &);
  Late(int);
  Late &operator=(const Late &);
  ~Late();
  void f();
  void g();
};
Late::Late() = default;
Late::Late(const Late &) = default;
Late &Late::operator=(const Late &) = default;
Late::~Late() = default;
static_assert(!__has_trivial_constructor(Late) && !__has_trivial_destructor(Late), "");
// CHECK: line [[@LINE+1]]: error #2043:
void Late::f() = default;
// CHECK: line [[@LINE+1]]: error #2077:
Late::Late(int) = default;
// CHECK: line [[@LINE+1]]: error #2044:
void Late::g() = delete;
struct LateWithout { LateWithout(); NoDefault member; };
// CHECK: line [[@LINE+1]]: error #2077:
LateWithout::LateWithout() = default;
void deleted_at_once() = delete;
void deleted_late();
// CHECK: line [[@LINE+1]]: error #2044:
void deleted_late() = delete;

// ---- Exception specifications of defaulted functions ----

struct Throws { Throws() noexcept = default; int i = 1; };
// CHECK: line [[@LINE+1]]: error #2727:
struct MayThrow { MayThrow() noexcept = default; Run member; };

// ---- Constexpr constructors ----

// CHECK: line [[@LINE+1]]: error #3142: {{.*}}"Run::Run"
struct Calls { Run run; constexpr Calls() : run(1) { } };
// CHECK: line [[@LINE+1]]: error #3142: {{.*}}"Run::Run"
struct CallsUnseen { Run run; constexpr CallsUnseen() { } };
// CHECK: line [[@LINE+1]]: error #2793: {{.*}}"Plain"
struct LeavesBase : Plain { constexpr LeavesBase() { } };
// CHECK: line [[@LINE+1]]: error #2758: {{.*}}"LeavesField"
struct LeavesField { Plain plain; constexpr LeavesField() { } };
struct Zeroes : Empty { Plain plain; constexpr Zeroes() : plain() { } };
// CHECK: line [[@LINE+1]]: error #2763:
struct OfVirtual : virtual Empty { constexpr OfVirtual() { } };
// CHECK: line [[@LINE+1]]: error #2757:
struct Tries { int i; constexpr Tries() try : i(0) { } catch (...) { } };

// ---- Inherited constructors ----

struct Base {
  Base(int);
  Base(int, char *);
  Base(const Base &, int = 0);
  explicit Base(char *);
};
struct Inherits : Base {
  using Base::Base;
  Inherits(int, int, int);
};
Inherits by_base(1), by_two(1, nullptr), by_own(1, 2, 3);
// CHECK: line [[@LINE+1]]: error #293:
Inherits by_nothing;
// CHECK: line [[@LINE+1]]: error #145:
Inherits by_explicit = static_cast<char *>(nullptr);
struct Left { Left(long); };
struct Right { Right(long); };
// CHECK: line [[@LINE+1]]: error #2900:
struct Both : Left, Right { using Left::Left; using Right::Right; };
struct Own : Left, Right { using Left::Left; using Right::Right; Own(long); };

// ---- What frees an object ----

// CHECK: line [[@LINE+1]]: error #1828: {{.*}}"Unusual"
struct Unusual { void operator delete(void *, int); virtual ~Unusual(); };
struct Sized { void operator delete(void *, size_t); virtual ~Sized(); };
struct NotVirtual { void operator delete(void *, int); ~NotVirtual(); };

// ---- The object in a declarator ----

struct Names {
  int member;
  auto value() -> decltype(this->member);
  auto lvalue() const -> decltype((member));
  int checked() noexcept(noexcept(this->value()));
  // CHECK: line [[@LINE+1]]: error #260:
  static auto of_none() -> decltype(this->member);
  // CHECK: line [[@LINE+1]]: error #1871:
  auto deduced = 1;
};
// CHECK: line [[@LINE+1]]: error #138:
void writes(const Names &names) { names.lvalue() = 1; }
