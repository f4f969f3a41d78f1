// RUN: %krtparse --gcc --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

/* The statics of functions are numbered through the file, those with an asm name
   too. */
int f(int n) {
  static int plain;
  static int named __asm__("given");
  plain += n;
  return named += plain;
}
// CHECK: symbol plain$1 class static
// CHECK: symbol given$2 class static
