// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --display_error_number -D=FAULTS --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=FAULT --implicit-check-not='error #' < %t.out
// Text for the assembler, and names that it knows entities by.

// CHECK-DAG: assembly "\t.global anything"
asm("\t.global anything");
// CHECK-DAG: symbol other_object class global
int object asm("other_object") = 1;
// CHECK-DAG: symbol other_function class global
int function(void) asm("other_function");
int function(void) {
  // CHECK-DAG: symbol other_static$1 class static
  static int counter asm("other_static");
  asm volatile(" NOP");
  __asm__(" IDLE" : : : "memory", "cc");
  return counter++;
}
// CHECK-DAG: " NOP"
// CHECK-DAG: " IDLE"

#ifdef FAULTS
// FAULT: line [[#@LINE+1]]: error #2839: a wide string literal is not allowed in an asm statement
int wide asm(L"x");
// FAULT: line [[#@LINE+1]]: error #196: expected an asm string
asm(1);
// FAULT: line [[#@LINE+1]]: error #1192: an asm name is not permitted in a function definition
int named(void) asm("n") { return 1; }
// FAULT: line [[#@LINE+1]]: error #1193: an asm name is not permitted in a typedef
typedef int name asm("t");
// FAULT: line [[#@LINE+1]]: error #1194: unknown register name "r5"
register int global_register asm("r5");
int renamed asm("first");
// FAULT: line [[#@LINE+1]]: warning #1586-D: asm name ignored because it conflicts with a previous declaration
extern int renamed asm("second");
int defined = 1;
// FAULT: line [[#@LINE+1]]: warning #1882-D: asm name ignored for previously defined entity
extern int defined asm("late");
void statements(int a) {
  // FAULT: line [[#@LINE+1]]: warning #1244-D: an asm name is ignored on a variable with automatic storage duration
  int automatic asm("auto_name");
  // FAULT: line [[#@LINE+1]]: error #1489: operand in an asm text not supported
  asm("mov %0" : "=r"(a));
  // FAULT: line [[#@LINE+1]]: error #1194: unknown register name "r1"
  asm("x" : : : "r1");
  // FAULT: line [[#@LINE+1]]: error #1570: only "volatile" is allowed as a qualifier of an asm statement
  asm const("x");
}
#endif
