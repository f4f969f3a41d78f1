// Which redeclarations and assignments the rules on compatible types let pass,
// and the composite type of those that do.
// RUN: ! %krtparse --i_output_file=%t.if %s 2> %t.err
// RUN: %FileCheck --implicit-check-not=error: --implicit-check-not=warning: %s < %t.err

typedef int A3[3];
enum e { e1, e2 };
enum f { f1 };
struct s { int i; };
struct t { int i; };

// Compatible: nothing is said.
extern int a[];
extern int a[3];
extern int (*pa)[];
extern int (*pa)[4];
extern int to_enum;
extern enum e to_enum;
int old_style();
int old_style(int);
int qualified_param(const int);
int qualified_param(int);
int restricted(int *restrict);
int restricted(int *);
int inner_bound(int (*)[]);
int inner_bound(int (*)[5]);
int array_param(int[3]);
int array_param(int *);
int function_param(int (*)(void));
int function_param(int(void));
extern const A3 k1;
extern const int k1[3];
// The composite type has the bound and the parameters.
char size_of_a[sizeof a == 3 * sizeof(int) ? 1 : -1];
char size_of_pa[sizeof *pa == 4 * sizeof(int) ? 1 : -1];

// CHECK: [[@LINE+2]]: error: declaration is incompatible with variable "x1"
extern enum e x1;
extern enum f x1;
// CHECK: [[@LINE+2]]: error: declaration is incompatible with "int g1()"
int g1();
int g1(char);
// CHECK: [[@LINE+2]]: error: declaration is incompatible with "int g2()"
int g2();
int g2(int, ...);
// CHECK: [[@LINE+2]]: error: declaration is incompatible with "int g3(const int *)"
int g3(const int *);
int g3(int *);
// CHECK: [[@LINE+2]]: error: declaration is incompatible with "int (*g4(void))[2]"
int (*g4(void))[2];
int (*g4(void))[3];
// CHECK: [[@LINE+2]]: error: declaration is incompatible with variable "c1"
extern char c1;
extern signed char c1;
// CHECK: [[@LINE+2]]: error: declaration is incompatible with variable "c2"
extern unsigned char c2;
extern char c2;
// CHECK: [[@LINE+2]]: error: declaration is incompatible with variable "s1"
extern struct s *s1;
extern struct t *s1;
// CHECK: [[@LINE+1]]: error: declaration is incompatible with variable "k1"
extern int k1[3];
// CHECK: [[@LINE+1]]: warning: a value of type "int (*)(int (*)[5])" cannot be used to initialize an entity of type "int (*)(int (*)[6])"
int (*q1)(int (*)[6]) = inner_bound;
// CHECK: [[@LINE+1]]: warning: a value of type "int (*)(int)" cannot be used to initialize an entity of type "int (*)(void)"
int (*q2)(void) = old_style;
