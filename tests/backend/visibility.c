// The visibility of what other units can see: by option, by modifier, and of what
// is only declared.
// RUN: %krtparse --gcc --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --check-prefix=PLAIN
// RUN: %krtparse --gcc --visibility=hidden --import_undef=1 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

// CHECK: symbol local class static
// CHECK-NEXT: pragma SRC_LANGUAGE
// CHECK: symbol defined class
// CHECK-NEXT: pragma SYM_VISIBILITY "hidden"
// PLAIN: symbol defined class
// PLAIN-NEXT: pragma SRC_LANGUAGE
// CHECK: symbol variable class
// CHECK-NEXT: pragma SYM_VISIBILITY "hidden"
// PLAIN: symbol variable class
// PLAIN-NEXT: symbol
// CHECK: symbol undefined class extern
// CHECK-NEXT: pragma SYM_VISIBILITY "extern"
// CHECK: symbol function class extern
// CHECK-NEXT: pragma SYM_VISIBILITY "extern"
static int local(void) {
  return 1;
}
int function(void);
int variable;
extern int undefined;
int defined(void) {
  return local() + function() + undefined;
}
