// #pragma pack: every value, the stack, and what it acts on. Structs have an
// alignment of 16 here, whatever their members.
// RUN: for n in 1 2 4 8 16 32768; do \
// RUN:   %krtparse --align_structs=16 -DPACK=$n -DAT=$((n < 16 ? n : 16)) --i_output_file=%t.if %s || exit 1; \
// RUN: done
// RUN: for n in 1 2 4 8 16; do \
// RUN:   %krtparse --align_structs=16 --pack_alignment=$n -DPACK= -DAT=16 -DSTART=$n --i_output_file=%t.if %s || exit 1; \
// RUN: done
// RUN: %krtparse --align_structs=16 --remarks --display_error_number -DPACK=2 -DAT=2 %s > %t.err 2>&1; %FileCheck %s < %t.err

#define SAME(a, b) extern char check[(a) == (b) ? 1 : -1]
#define OFFSET(type, member) __builtin_offsetof(type, member)
#ifndef START
#define START 16
#endif

struct inner { char c; };
SAME(sizeof(struct inner), 16);

struct at_start { char c; struct inner i; };
SAME(OFFSET(struct at_start, i), START);

#pragma pack(PACK)
struct packed { char c; struct inner i; char d; struct inner a[2]; };
SAME(OFFSET(struct packed, i), AT);
SAME(OFFSET(struct packed, d), AT + 16);
SAME(OFFSET(struct packed, a), AT + 16 + AT);
SAME(sizeof(struct packed), (AT + 16 + AT + 32 + 15) / 16 * 16);
union packed_union { char c; struct inner i; };
SAME(sizeof(union packed_union), 16);

#pragma pack()
struct unlimited { char c; struct inner i; };
SAME(OFFSET(struct unlimited, i), 16);

#pragma pack(push, 4)
#pragma pack(push, mark, 2)
#pragma pack(push)
#pragma pack(1)
struct one { char c; struct inner i; };
SAME(OFFSET(struct one, i), 1);
#pragma pack(pop)
struct two { char c; struct inner i; };
SAME(OFFSET(struct two, i), 2);
#pragma pack(push, other, 8)
#pragma pack(push, 1)
// The entries above the named one go with it.
#pragma pack(pop, mark)
struct four { char c; struct inner i; };
SAME(OFFSET(struct four, i), 4);
#pragma pack(pop, 8)
struct eight { char c; struct inner i; };
SAME(OFFSET(struct eight, i), 8);
#pragma pack()

// A value counts from the next class on, or to the end of the function.
struct outer {
  char c;
// CHECK: line [[#@LINE+1]]: remark #917-D: effect of this "#pragma pack" directive is local to struct "outer"
#pragma pack(2)
  struct inner i;
  struct { char c; struct inner i; } next;
};
SAME(OFFSET(struct outer, i), 16);
SAME(OFFSET(struct outer, next.i), 32 + 2);
#pragma pack()
struct first_thing {
// CHECK: line [[#@LINE+1]]: remark #917-D: effect of this "#pragma pack" directive is local to struct "first_thing"
#pragma pack(2)
  char c;
  struct inner i;
#pragma pack()
};
SAME(OFFSET(struct first_thing, i), 16);
struct before_brace
#pragma pack(2)
{
  char c;
  struct inner i;
// CHECK: line [[#@LINE+1]]: remark #917-D: effect of this "#pragma pack" directive is local to struct "before_brace"
#pragma pack()
};
SAME(OFFSET(struct before_brace, i), 2);
int function(void) {
// CHECK: line [[#@LINE+1]]: remark #917-D: effect of this "#pragma pack" directive is local to function "function"
#pragma pack(push, 1)
  struct local { char c; struct inner i; };
  SAME(OFFSET(struct local, i), 1);
// CHECK: line [[#@LINE+1]]: remark #917-D
#pragma pack(push, 2)
  return 0;
// CHECK: line [[#@LINE+1]]: remark #917-D
#pragma pack(4)
}
// CHECK-NOT: #917
struct behind { char c; struct inner i; };
SAME(OFFSET(struct behind, i), 16);
_Pragma("pack(2)") struct by_operator { char c; struct inner i; };
SAME(OFFSET(struct by_operator, i), 2);
