// RUN: %krtparse --c89 --check_misra=6.3,8.2,9.3,16.5,17.5,18.4 --no_code_gen --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not=MISRA < %t.err
// Rules on declarations.

typedef int INT;
typedef unsigned char U8;
// CHECK: line [[#@LINE+1]]: {{.*}} #1498{{.*}}6.3
extern short basic;
extern INT named;
// CHECK: line [[#@LINE+1]]: {{.*}} #1498{{.*}}6.3
extern INT basic_param(unsigned char a);
extern void no_basic(void);
// CHECK: line [[#@LINE+3]]: {{.*}} #1498{{.*}}6.3
// CHECK: line [[#@LINE+2]]: {{.*}} #1385{{.*}}8.2
// CHECK-NEXT: line [[#@LINE+1]]: {{.*}}type is missing
static untyped;
// CHECK: line [[#@LINE+1]]: {{.*}} #1420{{.*}}16.5
extern INT no_prototype();
// CHECK: line [[#@LINE+1]]: {{.*}} #1474{{.*}}17.5
extern INT ***three_levels;
extern INT **two_levels;
extern INT *(*two[3])[2];
// CHECK: line [[#@LINE+1]]: {{.*}} #1474{{.*}}17.5
extern INT ***(*result_of_three)(void);
extern void array_param(INT **a[]);
// CHECK: line [[#@LINE+1]]: {{.*}} #1424{{.*}}18.4
union u { INT a; };
enum first { F1 = 1, F2, F3 };
enum all { A1 = 1, A2 = 2 };
enum none { N1, N2 };
// CHECK: line [[#@LINE+1]]: {{.*}} #1392{{.*}}9.3
enum some { S1, S2 = 4, S3 };
