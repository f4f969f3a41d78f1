// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen %s
// What the completion of a class settles: trivial members, standard layout, POD.

struct Plain { int i; };
struct Special { Special(); Special(const Special &); ~Special(); };
struct Initialized { int x = 3; };
struct Virtual { virtual ~Virtual(); };
struct HasVirtualBase : virtual Plain { };
struct Derived : Plain { };
struct BothHaveFields : Plain { int j; };
struct Empty { };
struct FirstIsBase : Empty { Empty e; };
struct Mixed { int a; private: int b; };
struct Reference { int &r; Reference(); };
struct Deleted { Deleted(const Deleted &) = delete; };
#define IS(x) static_assert(x, "");
#define NOT(x) static_assert(!(x), "");

IS(__has_trivial_constructor(Plain)) NOT(__has_trivial_constructor(Special))
NOT(__has_trivial_constructor(Initialized)) NOT(__has_trivial_constructor(Virtual))
NOT(__has_trivial_constructor(HasVirtualBase)) IS(__has_trivial_constructor(int))
IS(__has_trivial_copy(Plain)) NOT(__has_trivial_copy(Special)) NOT(__has_trivial_copy(Virtual))
NOT(__has_trivial_copy(Deleted)) IS(__has_trivial_copy(Initialized)) IS(__has_trivial_copy(int &))
IS(__has_trivial_assign(Plain)) IS(__has_trivial_assign(Special)) NOT(__has_trivial_assign(const int))
NOT(__has_trivial_assign(Reference)) NOT(__has_trivial_assign(Virtual))
IS(__has_trivial_destructor(Plain)) NOT(__has_trivial_destructor(Virtual))
IS(__is_standard_layout(Plain)) IS(__is_standard_layout(Derived)) IS(__is_standard_layout(Special))
NOT(__is_standard_layout(BothHaveFields)) NOT(__is_standard_layout(FirstIsBase))
NOT(__is_standard_layout(Mixed)) NOT(__is_standard_layout(Reference))
NOT(__is_standard_layout(HasVirtualBase)) NOT(__is_standard_layout(Virtual))
IS(__is_pod(Plain)) NOT(__is_pod(Initialized)) NOT(__is_pod(Mixed)) NOT(__is_pod(Special))
IS(__is_trivial(Mixed)) NOT(__is_trivial(Initialized))
