// Every operator, from the source to the running program.
// RUN: cp %s %t.c && cd $(dirname %t.c) && %krtparse --c99 %t.c
// RUN: %ifrun %t.if > %t.out
// RUN: %FileCheck %s < %t.out
int printf(const char *, ...);
struct p {
  int x, y;
  struct p *next;
  unsigned f : 3;
  int g : 5;
  char c[5];
};
static struct p list[3] = {{1, 2, &list[1]}, {3, 4, &list[2]}, {5, 6}};
static int calls;

int sum(struct p *q) {
  int s = 0;
  for (; q; q = q->next)
    s += q->x * q->y;
  return s;
}
struct p make(int x) {
  struct p r;
  r.x = x, r.y = -x, r.next = 0, r.f = x, r.g = x - 8, r.c[1] = 'q';
  return r;
}
int fact(int n) { return n ? n * fact(n - 1) : 1; }
int twice(int (*f)(int), int v) { return f((*f)(v)); }
int inc(int x) { return x + 1; }
int touch(int r) { return calls++, r; }

void pointers(void) {
  int i, arr[5], *p = arr, *q;
  for (i = 0; i < 5; i++)
    *p++ = i * i;
  q = arr + 1;
  printf("%d %d %d %d\n", p - arr, p[-1], *(p - 2), 2 [arr]);
  // CHECK: 5 16 9 4
  q++;
  ++*q;
  (*q)--;
  p = &arr[4];
  printf("%d %d %d %d\n", p > arr, p == arr + 4, !p, p && 0);
  // CHECK: 1 1 0 0
  p -= 2, p += 1;
  printf("%d %s %c %d\n", *p, "abc" "def", "xyz"[1], sizeof arr / sizeof *arr);
  // CHECK-NEXT: 9 abcdef y 5
}
void structs(void) {
  struct p z = make(9), w, *pw = &w;
  w = z;
  printf("%d %d %d %d %c\n", w.x, w.f, pw->g, make(3).g, pw->c[1]);
  // CHECK-NEXT: 9 1 1 -5 q
  w.f += 3, w.g--, w.f++;
  pw->g -= 20;
  printf("%d %d %d\n", w.f, w.g, sum(list));
  // CHECK-NEXT: 5 12 44
  printf("%d\n", list[1].next->x + (*list).next->next->y + (&list[0])->x);
  // CHECK-NEXT: 12
}
void arithmetic(void) {
  unsigned u = 7;
  unsigned char uc = 250;
  short sh = -3;
  long long ll = 1;
  printf("%d %d %d %d\n", -7 / 2, -7 % 2, -7 >> 1, 7u / 2);
  // CHECK-NEXT: -3 -1 -4 3
  u <<= 3, u |= 1, u ^= 0xf, u &= ~2u;
  printf("%u %u %d\n", u, ~u, !u);
  // CHECK-NEXT: 52 4294967243 0
  u -= 100;
  uc += 10, sh *= sh, ll <<= 40;
  printf("%d %d %d %d\n", u > 100, uc, sh, (int)(ll >> 38));
  // CHECK-NEXT: 1 4 9 4
  uc = 255, uc++;
  printf("%d %d %d %d\n", uc, (signed char)(uc - 1), uc - 1 < 0u, uc - 1 == -1);
  // CHECK-NEXT: 0 -1 0 1
}
void control(void) {
  int i = 5;
  touch(0) && touch(1);
  touch(1) || touch(1);
  i = touch(1) ? touch(5), 6 : touch(7);
  printf("%d %d\n", calls, i);
  // CHECK-NEXT: 4 6
  printf("%d %d %d %s\n", fact(6), twice(inc, 3), (i > 3 ? inc : fact)(4), __func__);
  // CHECK-NEXT: 720 5 5 control
  int imaginary = __imag__ ++i; // zero, behind the effect
  printf("%d %d\n", i, imaginary);
  // CHECK-NEXT: 7 0
}
int main(void) {
  pointers();
  structs();
  arithmetic();
  control();
  return 0;
}
