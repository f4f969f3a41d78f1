// RUN: %krtparse --display_error_number --remarks %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='#148' --implicit-check-not='#174' < %t.err
// Redeclarations that the language permits, and the conflicts of linkage that
// are warned of.

#define SAME(condition) extern char check[(condition) ? 1 : -1]

int tentative;
int tentative;
int tentative = 1;
int tentative;

static int stays_static;
extern int stays_static;
extern int ends_static;
// CHECK: line [[#@LINE+1]]: warning #174-D: external/internal linkage conflict
static int ends_static;
int stays_external;
// CHECK: line [[#@LINE+1]]: warning #174-D: external/internal linkage conflict
static int stays_external;

extern int completed[];
int completed[3];
SAME(sizeof completed == 12);  // the composite type has the bound

int prototyped();
int prototyped(int a) { return a; }
int float_parameter();
int array_parameter(int a[3]);
int array_parameter(int *a);
int function_parameter(int f(void));
int function_parameter(int (*f)(void));
int const_parameter(const int a);
int const_parameter(int a);

typedef int T;
// CHECK: line [[#@LINE+1]]: {{.*}} #303-D: typedef name has already been declared (with same type)
typedef int T;
// The second T declares.
struct uses_name { int T; T t; };
void hides(void) {
  unsigned T = 1;
  T++;
}

int counter;
void block_extern(void) {
  int counter = 2;
  {
    extern int counter;
    counter = 3;
  }
  extern int late_variable, late_function(int);
  late_variable = late_function(counter);
}
int late_variable;
int late_function(int a) { return a; }

// An extern declaration behind a local name doesn't see the static one.
static int hidden_static;
static int hidden_function(void) { return hidden_static; }
int uses_hidden(int hidden_function_result) {
  int hidden_static = hidden_function() + hidden_function_result, hidden_function = 1;
  {
    // CHECK: line [[#@LINE+1]]: warning #174-D: external/internal linkage conflict
    extern int hidden_static;
    // CHECK: line [[#@LINE+1]]: warning #174-D: external/internal linkage conflict
    extern int hidden_function(void);
    return hidden_static + hidden_function();
  }
}
int sees_static(void) {
  extern int hidden_static, hidden_function(void);
  {
    extern int hidden_static;
    return hidden_static + hidden_function();
  }
}

// A tag of the parameter list is known in the body.
int local_tag(struct local { int a; } *p) { struct local copy = *p; return copy.a; }

long int unsigned long any_order;
SAME(sizeof any_order == 8);  // unsigned long long
int *(*(*declarator)(char))[3];
SAME(sizeof *declarator('a') == 12);  // pointer to function returning pointer to array
SAME(sizeof **declarator('a') == 4);  // of pointers
