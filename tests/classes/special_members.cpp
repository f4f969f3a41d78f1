// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// Special member functions: which are trivial, deleted or missing (C++11 12).

// ---- Trivial ----

struct Plain { int i; char c[3]; };
struct UserCtor { UserCtor(); int i; };
struct UserDtor { ~UserDtor(); };
struct UserCopy { UserCopy(const UserCopy &); UserCopy(); };
struct Defaulted { Defaulted() = default; Defaulted(const Defaulted &) = default; int i; };
struct Virtual { virtual void f(); };
struct WithInit { int i = 1; };
struct OfArray { UserDtor array[2][3]; };
struct VirtualBase : virtual Plain { };
static_assert(__is_trivial(Plain) && __is_pod(Plain) && __is_literal_type(Plain), "");
static_assert(!__is_trivial(UserCtor) && __is_trivially_copyable(UserCtor), "");
static_assert(!__is_trivially_copyable(UserDtor) && !__is_literal_type(UserDtor), "");
static_assert(!__is_trivially_copyable(UserCopy), "");
static_assert(__is_trivial(Defaulted), "");
static_assert(!__is_trivially_copyable(Virtual), "");
static_assert(!__is_trivial(WithInit) && __is_trivially_copyable(WithInit), "");
static_assert(!__has_trivial_destructor(OfArray), "");
static_assert(!__is_trivially_copyable(VirtualBase), "");
union OfPlain { Plain p; int i; };
static_assert(__is_trivial(OfPlain), "");

// ---- Deleted ----

struct NoCopy { NoCopy(); NoCopy(const NoCopy &) = delete; NoCopy &operator=(const NoCopy &) = delete; };
struct HoldsNoCopy { NoCopy member; };
struct Hidden { Hidden(); private: Hidden(const Hidden &); };
struct HoldsHidden { Hidden h; };
struct Moves { Moves(); Moves(Moves &&); };
struct NoDefault { NoDefault(int); };
struct HoldsNoDefault { NoDefault n; };
struct Reference { Reference(); int &r; };
struct Constant { Constant(); const int c; };
Constant::Constant() : c(1) { }
struct NoDtor { ~NoDtor() = delete; };
struct HoldsNoDtor { NoDtor n; };
struct ConstCopy { ConstCopy(ConstCopy &); ConstCopy(); };
struct HoldsConstCopy { ConstCopy c; };

void use(HoldsNoCopy &a, HoldsHidden &b, Moves &c, Reference &r, Constant &k, Defaulted &d,
         HoldsConstCopy &cc, const HoldsConstCopy &ccc) {
  // CHECK: line [[#@LINE+1]]: error #2045: function "HoldsNoCopy::HoldsNoCopy" cannot be referenced
  HoldsNoCopy copy1(a);
  // CHECK: line [[#@LINE+1]]: error #2045: function "HoldsNoCopy::operator =" cannot be referenced
  a = a;
  // CHECK: line [[#@LINE+1]]: error #2045: function "HoldsHidden::HoldsHidden" cannot be referenced
  HoldsHidden copy2(b);
  // CHECK: line [[#@LINE+1]]: error #2045: function "Moves::Moves" cannot be referenced
  Moves copy3(c);
  // CHECK: line [[#@LINE+1]]: error #2045: function "Reference::operator =" cannot be referenced
  r = r;
  // CHECK: line [[#@LINE+1]]: error #2045: function "Constant::operator =" cannot be referenced
  k = k;
  // CHECK: line [[#@LINE+1]]: error #2045: function "HoldsNoDefault::HoldsNoDefault" cannot be referenced
  HoldsNoDefault none;
  // CHECK: line [[#@LINE+1]]: error #293: no default constructor exists for class "NoDefault"
  NoDefault no_default;
  Defaulted copy4(d);
  d = copy4;
  HoldsConstCopy copy5(cc);
  // CHECK: line [[#@LINE+1]]: error #306:
  HoldsConstCopy copy6(ccc);
}

// ---- new and delete ----

void allocate(NoDtor *n, Hidden *hidden) {
  delete new NoDefault(1);
  delete[] new UserCtor[2];
  Plain *plain = new Plain, *zero = new Plain();
  delete plain, delete zero, delete hidden;
  // CHECK: line [[#@LINE+1]]: error #293: no default constructor exists for class "NoDefault"
  new NoDefault;
  // CHECK: line [[#@LINE+1]]: error #2045: function "NoDtor::~NoDtor" cannot be referenced
  delete n;
}

// ---- Defaulted functions that can't be ----

struct BadDefaults {
  // CHECK: line [[#@LINE+1]]: error #2043: this function cannot be defaulted
  void f() = default;
  // CHECK: line [[#@LINE+1]]: error #2077: this constructor cannot be defaulted
  BadDefaults(int) = default;
  // CHECK: line [[#@LINE+1]]: error #2075: this assignment operator cannot be defaulted
  BadDefaults &operator=(int) = default;
};
struct ConstParam {
  ConstCopy member;
  // CHECK: line [[#@LINE+1]]: error #2816: the defaulted copy constructor cannot have a parameter of reference-to-const
  ConstParam(const ConstParam &) = default;
};
// CHECK: 15 errors detected
