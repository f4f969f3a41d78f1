// The order of the type section: classes by name, then their lists, then the tree
// by key and age below the type that each is built on. Basic types have fixed
// numbers, and a type of one structure is made once.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump --raw %t.if | sed -n '/^section types/,/^section files/s/^ *[0-9]* type *[0-9]* //p' > %t.types
// RUN: %FileCheck %s < %t.types
// RUN: %krtparse --keep_unneeded_types=1 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --check-prefix=KEEP

struct zebra {
  struct ape *next;
  const const int *p;
} z;
struct ape {
  struct zebra zebra;
  const int *q, *r;
} a;
union {
  int one;
} u;
struct {
  int one;
} s;
typedef int number;
typedef int integer;
enum { FIRST } nameless;
enum named { SECOND } named;
number n;
integer i;
int call(const int *, number);
int use(void) {
  return call(a.q, n);
}
enum unneeded_enum { UNNEEDED };
struct unneeded_struct {
  int a;
};
typedef struct unneeded_struct unneeded_typedef;

// The nameless ones go by their kind.
// CHECK: csu [[S:[0-9]+]] 24 0 "$$fake
// CHECK-NEXT: csu [[U:[0-9]+]] 24 1 "$$fake
// CHECK-NEXT: csu [[APE:[0-9]+]] 24 0 "ape"
// CHECK-NEXT: csu [[ZEBRA:[0-9]+]] 24 0 "zebra"
// CHECK-NEXT: int 10 6 1 32 8 0 0
// CHECK-NEXT: list_header [[S]] 254 7
// CHECK: list_trailer [[S]] 255 7
// CHECK-NEXT: list_header [[U]] 254 7
// CHECK: list_trailer [[U]] 255 7
// CHECK-NEXT: qualified [[CONST:[0-9]+]] 17 10 1 32 8
// CHECK-NEXT: pointer [[POINTER:[0-9]+]] 15 [[CONST]] 32 8
// CHECK-NEXT: list_header [[APE]] 254 7
// CHECK-NEXT: mdata [[APE]] 28 1 "zebra" [[ZEBRA]] 0 0
// CHECK-NEXT: mdata [[APE]] 28 2 "q" [[POINTER]] 0 64
// CHECK-NEXT: mdata [[APE]] 28 3 "r" [[POINTER]] 0 96
// CHECK-NEXT: list_trailer [[APE]] 255 7
// CHECK-NEXT: pointer [[TO_APE:[0-9]+]] 15 [[APE]] 32 8
// CHECK-NEXT: list_header [[ZEBRA]] 254 7
// CHECK-NEXT: mdata [[ZEBRA]] 28 1 "next" [[TO_APE]] 0 0
// CHECK-NEXT: mdata [[ZEBRA]] 28 2 "p" [[POINTER]] 0 32
// CHECK-NEXT: list_trailer [[ZEBRA]] 255 7
// CHECK-NEXT: void 1 49
// CHECK-NEXT: void 2 49
// Below int the enum without a name is first, then what has no name by nature.
// CHECK-NEXT: enum [[NAMELESS:[0-9]+]] 22 "$$fake
// CHECK: list_trailer [[NAMELESS]] 255 1
// A record is behind those that it names, a list behind its elements' types.
// CHECK-NEXT: function [[FUNCTION:[0-9]+]] 20 10 0 1 0 0
// CHECK-NEXT: typedef [[NUMBER:[0-9]+]] 14 "number" 10
// CHECK-NEXT: list_header [[FUNCTION]] 254 0
// CHECK-NEXT: param [[FUNCTION]] 21 [[POINTER]] 0 0 ""
// CHECK-NEXT: param [[FUNCTION]] 21 [[NUMBER]] 0 0 ""
// CHECK-NEXT: list_trailer [[FUNCTION]] 255 0
// An empty list is written too.
// CHECK-NEXT: function [[USE:[0-9]+]] 20 10 0 1 0 0
// CHECK-NEXT: list_header [[USE]] 254 0
// CHECK-NEXT: list_trailer [[USE]] 255 0
// CHECK-NEXT: typedef {{[0-9]+}} 14 "integer" 10
// CHECK-NEXT: enum {{[0-9]+}} 22 "named" 32 8 10
// CHECK-NOT: unneeded

// KEEP-DAG: csu struct unneeded_struct
// KEEP-DAG: typedef unneeded_typedef
// KEEP-DAG: etor UNNEEDED 0
