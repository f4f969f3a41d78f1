// RUN: %krtparse -w --i_output_file=%t.if %s && %ifrun %t.if | %FileCheck %s
// Functions of the old style: what arrives is what a call without a prototype
// passes, and a prototype goes on converting the arguments of calls.

extern int printf(const char *format, ...);

int promoted(c, s, f, u) char c; short s; float f; unsigned char u; {
  float copy = f;
  f = f + 1;
  return c + s * 10 + (int)(f * 100) + (int)copy * 1000 + u * 100000;
}
int prototyped(long long wide);
int prototyped(wide) long long wide; { return (int)(wide >> 33); }
int forward();
int forward(int a, int b) { return a * b; }
int tag_of_parameter(p) struct pair { int a, b; } *p; { struct pair copy = *p; return copy.b; }
float *address(f) float f; { static float kept; float *p = &f; kept = *p * 2; return &kept; }

int main() {
  int pair[2] = {7, 8};
  // CHECK: 202171
  printf("%d\n", promoted(1, 2, 0.5f, 2) + 2000);
  // CHECK-NEXT: 5
  printf("%d\n", prototyped(0xa00000000LL));
  // CHECK-NEXT: 12
  printf("%d\n", forward(3, 4));
  // CHECK-NEXT: 8
  printf("%d\n", tag_of_parameter(pair));
  // CHECK-NEXT: 3
  printf("%d\n", (int)*address(1.5));
  return 0;
}
