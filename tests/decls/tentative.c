// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s --check-prefix=FILE
// RUN: %krtparse --display_error_number -D=FAULTS --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=FAULT --implicit-check-not=error < %t.out
// What tentative definitions come to at the end of the file (C99 6.9.2).

struct completed_later first;
struct completed_later { int a, b; };
int unknown_bound[];
typedef int array_type[];
const array_type typedef_bound;
extern int elsewhere[];
int known_later[];
int known_later[3];
int read(void) { return first.b + unknown_bound[0] + typedef_bound[0] + elsewhere[0]; }
// FILE-DAG: symbol unknown_bound class global type int[1] size 32
// FILE-DAG: symbol typedef_bound class global type {{.*}}[1] size 32
// FILE-DAG: symbol known_later class global type int[3] size 96
// FILE-DAG: symbol elsewhere class extern type int[] size 0
// FILE-DAG: symbol first class global type struct completed_later size 64

#ifdef FAULTS
extern struct never external_may_stay;
// FAULT: line [[#@LINE+1]]: error #237: variable "never_completed" was declared with a type that was never completed
struct never never_completed;
// FAULT: 1 error detected
#endif
