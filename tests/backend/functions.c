// Functions: parameters, their copies, locals, promoted statics.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

int external(int);
extern int unused_external(int);

// CHECK: begin_func plain at {{.*}}functions.c:[[@LINE+6]]:5
// CHECK-NEXT: symbol %a class param type int size 32 align 8 value 0 qualifiers 0x0000 level 1 id 0
// CHECK-NEXT: end_args
// CHECK-NEXT: end_locals
// CHECK-NEXT: expr {{.*}} (RETURN:int (NAME:int(int) plain) (PLUS:int (CALL:int {{.*}} external){{.*}}
// CHECK-NEXT: end_func
int plain(int a) { return external(a) + 1; }

// An old-style parameter comes in promoted.
// CHECK: begin_func old_style
// CHECK-NEXT: symbol %c#0 class param type int size 32
// CHECK-NEXT: end_args
// CHECK-NEXT: symbol %c#1 class auto type char size 8
// CHECK-NEXT: end_locals
// CHECK-NEXT: expr {{.*}} (ASG:char (NAME:char %c#1) (SCONV:char (NAME:int %c#0)))
// CHECK-NEXT: {{.*}}(RETURN:int (NAME:int(int) old_style) (SCONV:int (NAME:char %c#1)))
int old_style(c)
char c;
{ return c; }

// CHECK: begin_func old_style_float
// CHECK-NEXT: symbol %f#0 class param type double size 64
// CHECK-NEXT: end_args
// CHECK-NEXT: symbol %f#1 class auto type float size 32
// CHECK-NEXT: end_locals
// CHECK-NEXT: expr {{.*}} (ASG:float (NAME:float %f#1) (SCONV:float (NAME:double %f#0)))
// CHECK-NEXT: {{.*}}(RETURN:float
float old_style_float(f)
float f;
{ return f; }

// So it does where a prototype is in force too.
// CHECK: begin_func prototyped_before
// CHECK-NEXT: symbol %c#0 class param type int size 32
// CHECK-NEXT: symbol %d#1 class param type double size 64
// CHECK: expr {{.*}} (PCOMMA:void (ASG:char (NAME:char %c#2) (SCONV:char (NAME:int %c#0))) (ASG:const float (NAME:const float %d#3) (SCONV:const float (NAME:double %d#1))))
int prototyped_before(int, double);
int prototyped_before(c, d)
char c;
const float d;
{ return c; }
int prototyped_before(int, double);

// The last parameter before an ellipsis is copied, all copies in one expression.
// CHECK: begin_func variadic
// CHECK-NEXT: symbol %a class param type int
// CHECK-NEXT: symbol %fmt#1 class last_param type const char*
// CHECK-NEXT: end_args
// CHECK-NEXT: symbol %fmt#2 class auto type const char*
// CHECK-NEXT: end_locals
// CHECK-NEXT: expr {{.*}} (ASG:const char* (NAME:const char* %fmt#2) (NAME:const char* %fmt#1))
// CHECK-NEXT: expr {{.*}} (URETURN:void (NAME:{{.*}} variadic))
void variadic(int a, const char *fmt, ...) {}

// CHECK: begin_func two_copies
// CHECK: expr {{.*}} (PCOMMA:void (ASG:short (NAME:short %a#2) (SCONV:short (NAME:int %a#0))) (ASG:char (NAME:char %b#3) (SCONV:char (NAME:int %b#1))))
int two_copies(a, b)
short a;
char b;
{ return a + b; }

// Registers are numbered through the file; a volatile one is none.
// CHECK: begin_func registers
// CHECK: symbol %a class temp type int size 32 align 8 value 0
// CHECK: symbol %b class temp type int size 32 align 8 value 1
// CHECK: symbol %c class auto type volatile int
int registers(void) {
  register int a = 1, b = 2;
  register volatile int c = 3;
  static int x, y = 4;
  return a + b + c + x + y;
}

// CHECK: begin_func blocks
// CHECK: expr {{.*}} (ASG:int (NAME:int x$3) (LCON:int 1))
// CHECK-NEXT: begin_block
// CHECK-NEXT: symbol %x class auto type int {{.*}} level 3
// CHECK-NEXT: end_locals
// CHECK-NEXT: expr {{.*}} (ASG:int (NAME:int %x) (LCON:int 2))
// CHECK-NEXT: end_block
// CHECK-NEXT: expr {{.*}} (RETURN:int (NAME:int() blocks) (NAME:int x$3))
int blocks(void) {
  static int x;
  x = 1;
  {
    int x;
    x = 2;
  }
  return x;
}

// CHECK: init y$2
// CHECK-NEXT: (LCON:int 4)
// CHECK: section globals
// CHECK-NOT: unused_external
// CHECK: symbol external class extern type int(int)
// CHECK-NEXT: pragma SRC_LANGUAGE "C"
// CHECK-NOT: unused_external
// CHECK: symbol x$1 class static type int
// CHECK-NEXT: pragma SCOPING_FUNC "registers"
// CHECK: symbol x$3 class static type int
// CHECK-NEXT: pragma SCOPING_FUNC "blocks"
