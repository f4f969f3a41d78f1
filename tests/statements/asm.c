// RUN: %krtparse -n --gcc --no_warnings --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// The operands of asm statements: constraints, expressions, clobbers, labels.

struct s { int a[4]; };

int right(int a, const int b, struct s *p) {
  register int r = a;
  asm("mov %1, %0" : "=r"(a) : "r"(b));
  asm volatile("add %[in], %[out]" : [out] "+&r"(r) : [in] "ri"(4), "0"(a) : "memory", "cc");
  asm("" : "=m"(*p), "=m"(p->a) : "m"(p->a[1]));
  asm("nop" ::: "memory");
  asm("nop" :: "r"(a + 1));
  asm goto("jmp %l0" : : "r"(a) : "memory" : out, other);
  return r;
other:
  return a;
out:
  return b;
}

void wrong(int a, const int b) {
  // CHECK: line [[#@LINE+1]]: error #1199: an asm output operand must have one of the modifiers "=" and "+"
  asm("x" : "r"(a));
  // CHECK: line [[#@LINE+1]]: error #1200: an asm input operand may not have one of the modifiers "=" and "+"
  asm("x" : : "=r"(a));
  // CHECK: line [[#@LINE+1]]: error #1198: the asm constraint has no constraint letter
  asm("x" : "="(a));
  // CHECK: line [[#@LINE+1]]: error #1197: invalid letter in an asm constraint: $
  asm("x" : "=$"(a));
  // CHECK: line [[#@LINE+1]]: error #1197: invalid letter in an asm constraint: 1
  asm("x" : "=r"(a) : "1"(a));
  // CHECK: line [[#@LINE+1]]: error #138: expression must be a modifiable lvalue
  asm("x" : "=r"(a + 1));
  // CHECK: line [[#@LINE+1]]: error #127: expression must be an lvalue
  asm("x" : : "m"(a + 1));
  // CHECK: line [[#@LINE+1]]: error #1688: invalid symbolic name of an asm operand: n
  asm("x" : [n] "=r"(a) : [n] "r"(b));
  // CHECK: line [[#@LINE+1]]: error #1209: expected an asm operand
  asm("x" : a);
  // CHECK: line [[#@LINE+1]]: error #1210: expected the name of a clobbered register
  asm("x" : : : a);
  // CHECK: line [[#@LINE+1]]: error #1194: unknown register name "r77"
  asm("x" : : : "r77");
  // CHECK: line [[#@LINE+1]]: error #2836: expected the name of a label in the asm statement
  asm goto("x" : : : : 3);
  // CHECK: line [[#@LINE+1]]: error #20: identifier "undeclared" is undefined
  asm("x" : "=r"(undeclared));
  // CHECK: line [[#@LINE+1]]: error #115: label "nowhere" was referenced but not defined
  asm goto("x" : : : : nowhere);
}
