// Types, with sizes, alignments and offsets in bits.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

typedef struct list {
  struct list *next;
  int (*visit)(struct list *, int);
  const char text[3];
} list_t;
enum color { RED, GREEN = 5, BLUE = -1 } color;
enum wide { WIDE = 0x100000000, LOWEST = -0x7fffffffffffffff } wide;
enum full { FULL = 0xffffffff } full;
union {
  char c;
  volatile short s;
} anonymous;
struct opaque *handle;
list_t *head;
int *restricted(int *__restrict p);
int (*old)();
void *f(void) { return handle ? restricted(0) : 0; }

// CHECK-DAG: csu struct list size 72 align 8 complete at {{.*}}types.c:4:16
// CHECK-DAG: mdata 1 next struct list* offset 0 public
// CHECK-DAG: mdata 2 visit int(struct list*, int)* offset 32 public
// CHECK-DAG: mdata 3 text const char[3] offset 48 public
// CHECK-DAG: csu union $$fake{{[0-9]+}} size 16 align 8 complete
// CHECK-DAG: mdata 2 s volatile short offset 0
// CHECK-DAG: csu struct opaque size 0 align {{[0-9]+}} at
// CHECK-DAG: etor RED 0
// CHECK-DAG: etor GREEN 5
// CHECK-DAG: etor BLUE -1
// CHECK-DAG: enum enum wide size 64 align 8 of long long
// CHECK-DAG: etor WIDE 4294967296
// CHECK-DAG: etor LOWEST -9223372036854775807
// CHECK-DAG: enum enum full size 32 align 8 of unsigned
// CHECK-DAG: etor FULL 4294967295
// CHECK-DAG: typedef list_t {{.*}} at {{.*}}types.c:8:3
// CHECK-DAG: pointer int(struct list*, int)* size 16 align 8
// CHECK-DAG: function int() size 0 align 0 convention 0
// CHECK-DAG: qualified int* restrict size 32 align 8
