// Variables of the file that stand for registers of the processor.
// RUN: rm -rf %t && mkdir %t && cp %s %t/r.cpp
// RUN: %krtparse --strict --i_output_file=%t/r.if %s
// RUN: %ifdump %t/r.if | grep '^symbol __' | %FileCheck %s
// RUN: %krtparse --display_error_number --define=FAULTS %s > %t/out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=C < %t/out
// RUN: %krtparse --no_code_gen --c++03 --display_error_number --define=FAULTS %t/r.cpp > %t/out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=CPP < %t/out
#ifndef FAULTS
register volatile unsigned int __R30;
register unsigned __R31;
register unsigned __R31;
register int *__SP;
int f(void) {
  __R30 |= 4;
  return __R31 + *__SP;
}
// CHECK: symbol __R30 class extern type volatile unsigned {{.*}}qualifiers 0x0081
// CHECK: symbol __R31 class extern type volatile unsigned {{.*}}qualifiers 0x0081
// CHECK: symbol __SP class extern type int* {{.*}}qualifiers 0x0081
#else
// C: line [[#@LINE+2]]: error #841: a global register may only be declared with an integral or pointer type
// CPP: line [[#@LINE+1]]: error #841
register double __R30;
// C: line [[#@LINE+2]]: error #151
// CPP: line [[#@LINE+1]]: error #840: unrecognized global register "__R32"
register int __R32;
// C: line [[#@LINE+2]]: error #151
// CPP: line [[#@LINE+1]]: error #151
register unsigned __R31 = 1;
// C: line [[#@LINE+2]]: error #151
// CPP: line [[#@LINE+1]]: error #840: unrecognized global register "other"
register int *__SP, other;
// C: line [[#@LINE+3]]: error #82
// CPP: line [[#@LINE+2]]: error #82
// C-NEXT: errors detected
register typedef int both;
#endif
