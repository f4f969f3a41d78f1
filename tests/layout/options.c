// The options that change the layout of all structs and enums.
// RUN: %krtparse --i_output_file=%t.if -DENUM=4 -DWIDE=4 -DMIXED=5 -DBITS=4 -DSTRADDLE=9 %s
// RUN: %ifrun %t.if | %FileCheck %s --check-prefix=SIGNED
// RUN: %krtparse --pack_all_structs --i_output_file=%t.if -DENUM=4 -DWIDE=4 -DMIXED=5 -DBITS=2 -DSTRADDLE=8 %s
// RUN: %krtparse --small-enum --i_output_file=%t.if -DENUM=1 -DWIDE=2 -DMIXED=4 -DBITS=4 -DSTRADDLE=9 %s
// RUN: %krtparse --short_enums --i_output_file=%t.if -DENUM=1 -DWIDE=2 -DMIXED=4 -DBITS=4 -DSTRADDLE=9 %s
// RUN: %krtparse --align_structs=4 --i_output_file=%t.if -DENUM=4 -DWIDE=4 -DMIXED=8 -DBITS=4 -DSTRADDLE=12 %s
// RUN: %krtparse --unsigned_bit_fields --i_output_file=%t.if -DENUM=4 -DWIDE=4 -DMIXED=5 -DBITS=4 -DSTRADDLE=9 %s
// RUN: %ifrun %t.if | %FileCheck %s --check-prefix=UNSIGNED

#define SAME(a, b) extern char check[(a) == (b) ? 1 : -1]
int printf(const char *, ...);

enum small { A = -1, B = 100 };
enum wide { C = 300 };
SAME(sizeof(enum small), ENUM);
SAME(sizeof(enum wide), WIDE);
SAME(sizeof(A), 4);
struct mixed { enum small e; int bits : 3; };
SAME(sizeof(struct mixed), MIXED);
struct bits { char c; int plain : 3; signed int is_signed : 3; };
SAME(sizeof(struct bits), BITS);
struct straddle { int a : 30; int b : 27; unsigned char c : 7; };
SAME(sizeof(struct straddle), STRADDLE);

int main(void) {
  struct bits b = {1, 7, 7};
  printf("%d %d\n", b.plain, b.is_signed);
  // SIGNED: -1 -1
  // UNSIGNED: 7 -1
  return 0;
}
