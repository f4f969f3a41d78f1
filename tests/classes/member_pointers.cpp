// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// Pointers to members (C++11 5.5, 8.3.3), and references as members (5.2.5 p4).

struct M {
  typedef bool (M::*Guard)() const;
  typedef void (M::*Action)(int);
  struct Row { Guard guard; Action action; };
  bool ready() const;
  void go(int);
  virtual void turn(int) volatile;
  int x;
  static void fixed(int);
  static const Row table[];
  void step(const Row &row) {
    if (row.guard && (this->*row.guard)())
      (this->*(row.action))(1);
  }
};
const M::Row M::table[] = {{&M::ready, &M::go}, {nullptr, &M::go}, {0, 0}};
M::Action action = &M::go;
bool (M::*guard)() const = &M::ready;
void (M::*turn)(int) volatile = &M::turn;
int M::*field = &M::x;
void (*fixed)(int) = &M::fixed;
struct D : M { void own(); };
void (D::*of_derived)(int) = &M::go;
void use(M *m, M &r, D *d, const M &c, volatile M *v) {
  (m->*action)(1);
  (r.*guard)();
  (c.*guard)();
  (v->*turn)(1);
  (d->*action)(2);
  (d->*of_derived)(3);
  m->*field = r.*field;
  action = 0;
  if (action == &M::go || !guard)
    action = &M::go;
  // CHECK: line [[#@LINE+1]]: error #317: the object has type qualifiers that are not compatible with the member function
  (c.*action)(1);
  // CHECK: line [[#@LINE+1]]: error #167: too few arguments in function call
  (m->*action)();
  // CHECK: line [[#@LINE+1]]: error #302: a pointer to a bound function may only be used to call the function
  (m->*action);
  // CHECK: line [[#@LINE+1]]: error #110: expression must have (pointer-to-) function type
  action(1);
}
// CHECK: line [[#@LINE+1]]: error #145: a value of type "void (M::*)(int)" cannot be used to initialize an entity of type "M::Guard"
M::Guard wrong = &M::go;
// CHECK: line [[#@LINE+1]]: error #145: a value of type "void (D::*)()" cannot be used to initialize an entity of type "void (M::*)()"
void (M::*narrow)() = &D::own;

// A qualified name behind & means the member in its own class too.
struct Inside {
  int one, list[2];
  void pointers() {
    int Inside::*member = &Inside::one;
    int *element = &Inside::list[1], *object = &(Inside::one);
    [] { return &Inside::one; }();
  }
};

// ---- References as members ----

struct Register { int data; int read() const; };
struct Port {
  Register &regs;
  int &count;
  Register &&moved;
  Port(Register &r, int &c) : regs(r), count(c), moved(static_cast<Register &&>(r)) { count = 2; }
  int get() const { regs.data = 1; return regs.read() + ++count; }
};
int use(Port &p, const Port *q) {
  p.regs.data = 1;
  q->regs.data = 2;
  q->count += 4;
  decltype(p.regs) same = q->regs;
  Register &named = p.moved;
  decltype(p.moved) kind = static_cast<Register &&>(named);
  return p.regs.read() + q->regs.read() + same.data + kind.data;
}
// CHECK: errors detected
