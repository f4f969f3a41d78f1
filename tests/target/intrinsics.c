// The calls that the next pass turns into instructions: with a node of their own,
// by name, and by name with effects. Objects go to the transfer functions by
// reference, whatever their type.
// RUN: %krtparse --version=3 --i_output_file=%t.if %s
// RUN: %ifdump %t.if | grep -E '^  expr|^symbol' > %t.dump
// RUN: %FileCheck %s < %t.dump
// RUN: ! grep -E 'symbol (abs|memcpy|__halt) ' %t.dump
struct s {
  int a[10];
} v;
int buf[5], n;
char from[4], to[4];
static int twice(int x) { return 2 * x; }
void f(struct s *p, float x, unsigned long long wide) {
  n = abs(n);
// CHECK: (ASG:int (NAME:int n) (ABS:int (NAME:int n)))
  labs(7L);
// CHECK: (ABS:long (LCON:long 7))
  memcpy(to, from, 4);
// CHECK: (MEMCPY:void* (COMMA:void (COMMA:void
  _assert(n == 1, "text");
// CHECK: (ASSERT:void (COMMA:void (EQ:int (NAME:int n) (LCON:int 1)) {{.*}}SCON
  _nassert(n == 1);
// CHECK: (NASSERT:void (EQ:int
  x = __sqrtf(x);
// CHECK: (SQRT:float (NAME:float %x))
  n = _symval(&twice);
// CHECK: (ICALL:unsigned long "_symval" (PCONV:const void* (UAND:
  n = _symval(buf);
// CHECK: (ICALL:unsigned long "_symval"
  n = __lmbd(1, n);
// CHECK: (ICALL:unsigned "__lmbd" (COMMA:void (LCON:unsigned 1) (SCONV:unsigned (NAME:int n))))
  x = __u32_bits_as_f32(__f32_bits_as_u32(x));
// CHECK: (ICALL:float "__u32_bits_as_f32" (ICALL:unsigned "__f32_bits_as_u32" (NAME:float %x)))
  wide = __f64_bits_as_u64(__u64_bits_as_f64(wide));
// CHECK: (ICALL:unsigned long long "__f64_bits_as_u64" (ICALL:double "__u64_bits_as_f64"
  __halt();
// CHECK: (UMCALL:void "__halt")
  __delay_cycles(4294967295u);
// CHECK: (MCALL:void "__delay_cycles" (LCON:unsigned 4294967295))
  __xin(10, 4, 0, v);
// CHECK: (MCALL:void "__xin" (COMMA:void (COMMA:void (COMMA:void (LCON:unsigned 10) (LCON:unsigned 4)) (LCON:unsigned 0)) (ARGREF:struct s* (NAME:struct s v))))
  __xout(10, 4, 0, *p);
// CHECK: (ARGREF:struct s* (UMULT:struct s (NAME:struct s* %p)))
  __xchg(10, 25, 1, buf);
// CHECK: (MCALL:void "__xchg" {{.*}}(ARGREF:int[5]* (NAME:int[5] buf))
  __sxin(1, 4, 0, p->a[2]);
// CHECK: (MCALL:void "__sxin" {{.*}}(ARGREF:int*
  __sxout(1, 4, 0, n);
  __sxchg(1, 4, 0, n);
// CHECK: (MCALL:void "__sxout"
// CHECK: (MCALL:void "__sxchg"
}
void (*transfer(void))() {
  return (void (*)())__xin;
// CHECK: (UAND:void(unsigned, unsigned, unsigned, void*)* (NAME:void(unsigned, unsigned, unsigned, void*) __xin))
}
