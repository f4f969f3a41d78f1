// Every way out of a block gives back the room of its arrays, once: the program
// counts what the run-time library is asked for.
// RUN: %krtparse --gcc --c99 --no_warnings --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=gnu99 -w -DHOST %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out
int printf(const char *, ...);
static int live;
#ifndef HOST
void *malloc(unsigned);
void free(void *);
void __vla_alloc(void *p, unsigned bytes) { *(void **)p = malloc(bytes); live++; }
void __vla_dealloc(void *p) { if (!*(void **)p) printf("twice\n"); free(*(void **)p); *(void **)p = 0; live--; }
#endif
void of_void(int n) { int a[n]; return (void)(a[0] = 1); }
int in_value(int n) { int a[n]; a[0] = n; int x = ({ if (n > 2) return a[0]; 5; }); return x; }
int out_of_value(int n) {
  int r = 0;
  for (int i = 0; i < 3; i++) {
    int a[n];
    a[0] = i;
    r += ({ if (i == 1) continue; int q = a[0]; if (q == 2) break; q; });
  }
  return r;
}
int goto_in_value(int n) { int a[n]; a[0] = 1; ({ int k = 3; if (n > 3) goto o; a[0] = k; }); return a[0]; o: return -1; }
int switches(int n) {
  for (int i = 0;; i++) {
    int a[n];
    switch (i) {
    case 0: continue;
    case 1: break;
    case 2: { int b[n]; b[0] = 1; switch (b[0]) { case 1: goto l; } }
    default: return i;
    }
  l:;
    if (i > 4) break;
  }
  return 9;
}
struct s { int x[5]; };
struct s structs(int n) { struct s a[n]; a[n - 1].x[4] = n; if (n == 3) { struct s b[n]; b[0] = a[2]; return b[0]; } return a[n - 1]; }
double _Complex complex(int n) { int a[n]; a[0] = n; return a[0]; }
int constant(int n) { int a[n]; a[0] = n; return 7; }
int loops(int n) {
  int i = 0;
  while (1) { int a[n]; a[0] = i; if (a[0] > 3) { int b[n]; b[0] = 1; break; } i++; { int c[n]; c[0] = 1; continue; } }
  do { int a[n]; a[0] = i; { int b[n]; b[0] = 0; if (i > 6) break; } i++; if (i == 5) continue; } while (1);
  return i;
}
int for_clause(int n) {
  int s = 0;
  for (int a[n], i = 0; i < n; i++) { a[i] = i; if (i == 3) goto out; s += a[i]; }
out:
  for (int a[n], i = 0; i < n; i++) { a[i] = i; if (i == 2) return s + a[i]; }
  return s;
}
int unreached(int n) { int a[n]; a[0] = 1; return a[0]; a[0] = 2; { int b[n]; b[0] = 1; } }
int nested(int n) { for (;;) { int a[n]; a[0] = n; for (;;) { int b[n]; b[0] = a[0]; if (n++ > 5) goto d; break; } } d: return n; }
int inner_labels(int n) { { int a[n]; a[0] = 1; if (n > 1) goto in; a[0] = 2; in: n += a[0]; goto in2; in2: n++; } return n; }
int back(int n) { int k = 0; { l: k++; int a[n]; a[0] = k; if (k < 3) goto l; { int b[n]; b[0] = k; if (k < 5) goto l; } k += a[0]; } return k; }
int levels(int n) {
  int s = 0;
  for (int i = 0; i < 3; i++) {
    int a[n]; a[0] = i;
    for (int j = 0; j < 3; j++) {
      int b[n + j]; b[j] = j;
      for (int k = 0; k < 3; k++) { int c[n + k]; c[k] = k; if (k == 1 && j == 1) goto next; if (i == 2 && j == 2) goto done; s += a[0] + b[j] + c[k]; }
    }
  next:;
  }
done:
  return s;
}
int main(void) {
  of_void(2);
  printf("%d %d %d %d %d %d\n", in_value(2), in_value(3), out_of_value(2), goto_in_value(2), goto_in_value(5), switches(3));
  printf("%d %d %d %d\n", structs(3).x[4], structs(4).x[4], (int)__real__ complex(6), constant(1));
  printf("%d %d %d %d\n", loops(2), for_clause(2), for_clause(6), unreached(2));
  printf("%d %d %d %d\n", nested(2), inner_labels(1) + inner_labels(2), back(2), levels(3));
  printf("%d\n", live);
  return 0;
}
