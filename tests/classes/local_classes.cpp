// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number --diag_suppress=177,179,550 %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=': error' < %t.err
// Classes in functions and in other classes (C++11 9.7, 9.8).

// ---- What a local class reaches ----

void reach(int parameter) {
  int variable = 1;
  static int fixed;
  const int constant = 3;
  constexpr struct { int member; } object = {1};
  enum { enumerator = 4 };
  extern int outside;
  struct Local {
    int allowed() { return fixed + constant + enumerator + outside + sizeof(variable); }
    int array[constant];
    int of_object() { return object.member; }
    // CHECK-DAG: line [[@LINE+1]]: error #396:
    int body() { return variable; }
    // CHECK-DAG: line [[@LINE+1]]: error #396:
    int field = parameter;
    // CHECK-DAG: line [[@LINE+1]]: error #396:
    int default_arg(int a = variable) { return a; }
    int own(int a) { int b = a; return [&] { return b; }(); }
  };
  // CHECK-DAG: line [[@LINE+1]]: error #396:
  void declared(int a = variable);
  auto lambda = [=] {
    int inner = variable;
    // CHECK-DAG: line [[@LINE+1]]: error #396:
    struct InLambda { int get() { return inner; } };
    return inner;
  };
}

// ---- Functions without a body ----

void missing() {
  // CHECK-DAG: line [[@LINE+1]]: error #331: {{.*}}"Local::later"
  struct Local { void later(); virtual void pure() = 0; void gone() = delete; int here() { return 1; } };
  // CHECK-DAG: line [[@LINE+1]]: error #331: {{.*}}"Outer::Inner::later"
  struct Outer { struct Inner { void later(); }; };
}

struct Method { void method() {
  // CHECK-DAG: line [[@LINE+1]]: error #331: {{.*}}"InMethod::later"
  struct InMethod { void later(); };
} };
// CHECK-DAG: line [[@LINE+1]]: error #331: {{.*}}"InLambda::later"
auto of_lambda = [] { struct InLambda { void later(); }; return 1; };
struct Overloaded {
  static void function(int);
  void function(char *);
  void calls() { [] { function(1); }(); [this] { function(nullptr); }(); }
};

// ---- Nested classes ----

struct Base { int in_base; };
struct Object : Base {
  int member;
  union { int in_union; };
  void function();
  static void fixed();
  struct Part {
    // CHECK-DAG: line [[@LINE+1]]: error #247:
    int field = member;
    // CHECK-DAG: line [[@LINE+1]]: error #247:
    int get() { fixed(); return sizeof(member) + member; }
    // CHECK-DAG: line [[@LINE+1]]: error #247:
    int get_base() { return in_base; }
    // CHECK-DAG: line [[@LINE+1]]: error #247:
    int get_union() { return in_union; }
    // CHECK-DAG: line [[@LINE+1]]: error #{{[0-9]+}}:
    void call() { function(); }
    int of_object(Object &o) { o.function(); return o.member + o.in_base + o.in_union; }
  };
  int own() { function(); fixed(); return [this] { return member + in_base + in_union; }(); }
};


struct Around {
  struct Inner;
  class Behind;
  static int hidden_later() { return hidden; }
private:
  static int hidden;
};
struct Around::Inner { int get() { return hidden; } void behind(); class Third; };
void Around::Inner::behind() { hidden = 1; }
class Around::Inner::Third { int get() { return hidden; } };
// CHECK-DAG: line [[@LINE+1]]: error #1072: {{.*}}"Unknown"
struct Around::Unknown { };
