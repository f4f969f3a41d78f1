// Operators and calls. A function that is called by its name is no address.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

struct big {
  int a[4];
} big;
struct big pass(struct big b);
int printf(const char *, ...);

// CHECK-LABEL: begin_func comparisons
// CHECK: (LT:int (NAME:int %i) (LCON:int 1))
// CHECK: (ULT:int (NAME:unsigned %u) (LCON:unsigned 1))
// CHECK: (EQ:int (NAME:unsigned %u) (LCON:unsigned 1))
// CHECK: (UGE:int (NAME:char* %p) (NAME:char* %p))
int comparisons(int i, unsigned u, char *p) {
  i = i < 1;
  i = u < 1;
  i = u == 1;
  return p >= p;
}

// CHECK-LABEL: begin_func calls
// CHECK: (STASG:struct big (NAME:struct big big) (CALL:struct big (NAME:struct big(struct big) pass) (STARG:struct big (NAME:struct big big))))
// CHECK-NEXT: {{.*}}(CALL:int vargs=3 (NAME:int(const char*, ...) printf) (COMMA:void (COMMA:void (PCONV:const char* (SCON:char* "%d %c\x00")) (NAME:int %i)) (ACONV:int (NAME:char %c))))
// CHECK-NEXT: {{.*}}(RETURN:int {{.*}} (QUEST:int (NEQ:int (NAME:int %i) (LCON:int 0)) (COLON:int (ANDAND:int (NEQ:int (NAME:int %i) (LCON:int 0)) (NEQ:int (NAME:char %c) (LCON:char 0))) (COMMAOP:int (NAME:int %i) (EXCLAIM:int (NAME:int %i))))))
int calls(int i, char c) {
  big = pass(big);
  printf("%d %c", i, c);
  return i ? i && c : (i, !i);
}

// A bit-field has its own signedness.
// CHECK-LABEL: begin_func bit_fields
// CHECK: (PLUSASG:unsigned (STREF:unsigned (NAME:struct bits* %b) (FIELD:unsigned bits::u))
// CHECK-NEXT: {{.*}}(RETURN:int {{.*}} (STREF:int (NAME:struct bits* %b) (FIELD:int bits::s)))
// CHECK: mdata 1 u unsigned offset 0 width 3
// CHECK-NEXT: mdata 2 s int offset 3 width 4
struct bits {
  unsigned u : 3;
  int s : 4;
};
int bit_fields(struct bits *b) {
  b->u += 1;
  return b->s;
}
