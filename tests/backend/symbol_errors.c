// What the output stage refuses of attributes. Its errors leave no file.
// RUN: rm -f %t.if && (%krtparse --gcc --c99 --display_error_number --keep_unneeded_statics --i_output_file=%t.if %s; echo status=$?) 2>&1 \
// RUN:   | %FileCheck %s --implicit-check-not='{{error|warning}} #'
// RUN: test ! -e %t.if
// RUN: %krtparse --gcc --c99 -w -DNO_ERRORS --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --check-prefix=KEPT

#define A(...) __attribute__((__VA_ARGS__))

#ifndef NO_ERRORS
// CHECK: line [[@LINE+1]] {{.*}}error #832: interrupt declarations can only be applied to file scope functions returning void
__interrupt int returns(void) {
  return 0;
}
// CHECK: line [[@LINE+1]] {{.*}}error #833: no parameters allowed for interrupt functions such as 'takes'
__interrupt void takes(int a) {}
#endif

// Routines come first, so theirs is the section.
A(section(".shared")) void in_shared(void) {}
// CHECK: line [[@LINE+1]] {{.*}}warning #849-D: The section .shared contains incompatible objects "in_shared" (text) and "data" (data), "data" will not be included in .shared
A(section(".shared")) int data;
// KEPT: symbol data class
// KEPT-NOT: pragma
// CHECK: line [[@LINE+1]] {{.*}}warning #1514-D: Symbol variable "odd" requires an alignment of 4, but its location is 257
A(location(0x101), aligned(4)) int odd;
// KEPT: symbol odd
// KEPT-NOT: pragma
A(location(0x101)) int even;
// KEPT: symbol even
// KEPT-NEXT: pragma LOCATION "257"
// CHECK: line [[@LINE+1]] {{.*}}warning #1518-D: variable "cleared" was declared noinit and should not be initialized
A(noinit) int cleared = 3;
// CHECK: line [[@LINE+1]] {{.*}}warning #1519-D: variable "unset" was declared persistent and should be explicitly initialized
A(persistent) int unset;
// CHECK: line [[@LINE+1]] {{.*}}warning #1519-D: variable "empty" was declared persistent and should be explicitly initialized
A(persistent) int empty[2] = {};
// CHECK: line [[@LINE+1]] {{.*}}warning #1522-D: variable "both" cannot be both persistent and noinit
A(persistent, noinit) int both = 1;
// KEPT: symbol both
// KEPT-NEXT: pragma PERSISTENT
// KEPT-NOT: pragma
#ifndef NO_ERRORS
// CHECK: line [[@LINE+1]] {{.*}}error #1521: variable "elsewhere" cannot be noinit and also have DATA_SECTION pragma.
A(noinit, section(".d")) int elsewhere;
// CHECK: line [[@LINE+1]] {{.*}}error #2588: The cregister attribute cannot be combined with the data section pragma or attribute
A(section(".s"), cregister("R", near)) int sectioned;
// CHECK: line [[@LINE+1]] {{.*}}error #2588: The cregister attribute cannot be combined with the location pragma or attribute
A(location(4), cregister("R", near)) int located;
// CHECK: line [[@LINE+1]] {{.*}}error #2589: The peripheral attribute requires the cregister attribute
A(peripheral) int peripheral;
#endif
// KEPT: symbol last
int last;
// CHECK: status=2
